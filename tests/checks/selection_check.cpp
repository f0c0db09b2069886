#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/guarded_text.h"

namespace quill::test {

namespace {

// The elements that qSortV compares, as offsets from its base.
Longs* g_compared = nullptr;

int compare_and_note(const void* a, const void* b, char* base,
                     std::int32_t* keys, std::int32_t*, std::int32_t count) {
  const auto* first = static_cast<const char*>(a);
  const auto* second = static_cast<const char*>(b);
  g_compared->insert(g_compared->end(),
                     {static_cast<std::int32_t>(first - base),
                      static_cast<std::int32_t>(second - base), *keys, count});
  return *first / 4 - *second / 4;
}

std::string draw_map(Input& in, std::int32_t text_length) {
  std::string map(static_cast<std::size_t>(text_length + 9) / 8, '\0');
  const int longest = in.pick({3, 50, 400});
  bool is_set = in.flag();
  int left = 0;
  for (std::size_t bit = 0; bit < map.size() * 8; ++bit) {
    if (left-- == 0) {
      left = in.between(0, longest);
      is_set = !is_set;
    }
    if (is_set) map[bit / 8] = static_cast<char>(map[bit / 8] | 1 << bit % 8);
  }
  return map;
}

// In any order and overlapping; the ends not far from the starts.
Longs draw_list(Input& in, std::int32_t size, int most) {
  if (in.one_in(3)) return in.selections(static_cast<std::size_t>(size), most);
  Longs list;
  const int longest = in.pick({3, 70, size});
  for (int left = in.between(0, most / 2); left > 0; --left) {
    const int start = in.between(0, size);
    list.push_back(start);
    list.push_back(std::min(size, start + in.between(-1, longest)));
  }
  return list;
}

// Folds a few letters, or maps also to what is no character.
Mask draw_mask(Input& in) {
  static const Mask folding = {{packed("A"), packed("\xC3\x89")},
                               {packed("a"), packed("\xC3\xA9")}};
  static const Mask odd = {{' ', 'A', 0xA9C3, 0xAC82E2},
                           {0x4180, 'a', 0, static_cast<int>(0xE2808080)}};
  return in.one_in(3) ? in.mask(6) : in.flag() ? folding : odd;
}

}  // namespace

Outcome SelectionCall::run(Side side, QuillYield yield) const {
  const GuardedText source(text);
  const GuardedText bits(map);
  const GuardedText before(prefix);
  const GuardedText after(suffix);
  const int room = operation <= kCopySuper ? std::max(size, 0) : 0;
  const GuardedText destination(
      std::string(static_cast<std::size_t>(room), '#'));
  const auto bytes = static_cast<std::uint32_t>(list.size() * 4);
  Longs longs = list;
  Mask own = mask;
  HeldBlock held;
  HeldBlock made(untouched());
  if (operation >= kOrder && missing != kList) {
    LockBlock(held.block = block_of(list));
  }
  Outcome o;
  YieldRecorder::watch(o.outs);
  const auto copy = [&](auto* copy_to, std::int32_t count) {
    return copy_to(source.data(), destination.data(), size, &o.outs[0],
                   list.data(), count, 81, yield);
  };
  const auto sort = [&](auto* sort_by) {
    const std::int32_t result =
        sort_by(source.data(), longs.data(), bytes, mask.key_data(),
                mask.value_data(), mask_count);
    o.outs = longs;
    return result;
  };
  const auto answer = [&]() -> std::int32_t {
    switch (operation) {
      case kCopy:
        return copy(QUILL_PICK(side, CopySelectionsTo), length_of(list) / 2);
      case kCopySuper:
        return copy(QUILL_PICK(side, CopySuperSelectionsTo),
                    length_of(list) / 4);
      case kCompare:
        if (list.size() < 4) return 0;
        return QUILL_PICK(side, CompareSelections)(
            &list[0], &list[2], source.data(), own.keys.data(),
            own.values.data(), mask_count);
      case kSort:
        return sort(QUILL_PICK(side, utf8_SortSelections));
      case kSortKeys:
        return sort(QUILL_PICK(side, utf8_SortKeySelections));
      case kSortAnything: {
        o.outs.clear();
        g_compared = &o.outs;
        std::int32_t passed_on = 82;
        const auto element_size = static_cast<std::uint32_t>(size);
        const auto count =
            static_cast<std::uint32_t>(text.size()) / element_size;
        QUILL_PICK(side, qSortV)
        (source.data(), count, element_size, compare_and_note, source.data(),
         &passed_on, nullptr, 83);
        return 0;
      }
      case kOrder:
        return QUILL_PICK(side, OrderSelections)(&held.block, size);
      case kToMap:
        return QUILL_PICK(side, SelectionToMap)(bits.data(), size, held.block);
      case kFromMap:
        return QUILL_PICK(side, MapToSelection)(bits.data(), size, &made.block,
                                                &o.outs[0]);
      case kInvert:
        return QUILL_PICK(side, InvertSelections)(&held.block, start, end);
      case kExtract:
        return QUILL_PICK(side, ExtractSelections)(
            missing == kText ? nullptr : source.data(), held.block,
            missing == kPrefix ? nullptr : before.data(), length_of(prefix),
            missing == kSuffix ? nullptr : after.data(), length_of(suffix),
            &made.block, 84, yield);
    }
    return 0;
  };
  o.result = answer();
  o.buffer = std::string(source.view()) + '|';
  o.buffer.append(destination.view()).append(bits.view());
  o.list = state_of(held.block);
  o.text = state_of(made.block);
  return o;
}

std::string SelectionCall::show() const {
  return show_fields("operation", operation, "text", text, "list", list, "keys",
                     mask.keys, "values", mask.values, "of", mask_count, "size",
                     size, "start", start, "end", end, "map", map, "prefix",
                     prefix, "suffix", suffix, "missing", missing);
}

SelectionCall draw_selection_call(Input& in) {
  SelectionCall call;
  call.operation = static_cast<SelectionCall::Operation>(in.between(0, 10));
  if (in.one_in(16)) {
    call.missing = in.pick({SelectionCall::kText, SelectionCall::kPrefix,
                            SelectionCall::kSuffix, SelectionCall::kList});
  }
  switch (call.operation) {
    case SelectionCall::kSortAnything:
      call.size = in.pick({1, 3, 4, 8, 12, 16, 21});
      for (int left = call.size * in.between(0, 40); left > 0; --left) {
        call.text += static_cast<char>(in.between(0, 60));
      }
      return call;
    case SelectionCall::kOrder:
    case SelectionCall::kToMap:
    case SelectionCall::kFromMap:
      call.size = in.one_in(32) ? in.between(-1, 0)
                                : in.between(1, in.pick({20, 300, 9000}));
      call.list = draw_list(in, std::max(call.size, 0), in.pick({6, 60, 400}));
      call.map = draw_map(in, std::max(call.size, 0));
      return call;
    case SelectionCall::kInvert:
      call.list = in.selections(40, 12);
      call.start = in.flag() ? 0 : in.offset(5);
      call.end = in.flag() ? 40 : in.offset(60);
      return call;
    default:
      break;
  }
  call.text = in.any_text(in.pick({12, 40, 300}));
  const auto length = length_of(call.text);
  call.list = draw_list(in, length, in.pick({8, 24, 100}));
  // Of much that is equal.
  for (int left = in.between(0, 3); left > 0; --left) {
    call.list.insert(call.list.end(), call.list.begin(), call.list.end());
  }
  // Operations that get the text's address can't tell where it ends.
  for (std::int32_t& offset : call.list) offset = std::min(offset, length);
  if (!in.one_in(3)) call.mask = draw_mask(in);
  call.mask_count = in.one_in(8) ? -1 : call.mask.count();
  call.size = in.between(-1, in.pick({12, 2 * length + 1}));
  call.prefix = in.text(3);
  call.suffix = in.text(in.pick({3, 70}));
  return call;
}

std::string check_selection(Input& in) {
  const SelectionCall call = draw_selection_call(in);
  return first_difference(call, in.host());
}

}  // namespace quill::test

#include "tests/checks/selection_check.h"

#include "tests/models/selection_model.h"
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
  const auto count = static_cast<std::int32_t>(list.size());
  Longs longs = list;
  Mask own = mask;
  HeldBlock held;
  HeldBlock made(untouched());
  if (operation >= kOrder && missing != kList) {
    LockBlock(held.block = block_of(list));
  }
  Outcome o;
  YieldRecorder::watch(o.outs);
  switch (operation) {
    case kCopy:
    case kCopySuper: {
      const GuardedText out(
          std::string(static_cast<std::size_t>(std::max(size, 0)), '#'));
      const bool is_super = operation == kCopySuper;
      o.result =
          (is_super ? pick(side, ::CopySuperSelectionsTo,
                           naive::CopySuperSelectionsTo)
                    : pick(side, ::CopySelectionsTo, naive::CopySelectionsTo))(
              source.data(), out.data(), size, &o.outs[0], list.data(),
              count / (is_super ? 4 : 2), 81, yield);
      o.buffer = out.view();
      break;
    }
    case kCompare:
      if (count < 4) break;
      o.result = pick(side, ::CompareSelections, naive::CompareSelections)(
          &list[0], &list[2], source.data(), own.keys.data(), own.values.data(),
          mask_count);
      break;
    case kSort:
    case kSortKeys:
      o.result = (operation == kSort ? pick(side, ::utf8_SortSelections,
                                            naive::utf8_SortSelections)
                                     : pick(side, ::utf8_SortKeySelections,
                                            naive::utf8_SortKeySelections))(
          source.data(), longs.data(), static_cast<std::uint32_t>(count * 4),
          mask.key_data(), mask.value_data(), mask_count);
      o.outs = longs;
      break;
    case kSortAnything: {
      o.outs.clear();
      g_compared = &o.outs;
      std::int32_t passed_on = 82;
      pick(side, ::qSortV, naive::qSortV)(
          source.data(),
          static_cast<std::uint32_t>(text.size()) /
              static_cast<std::uint32_t>(size),
          static_cast<std::uint32_t>(size), compare_and_note, source.data(),
          &passed_on, nullptr, 83);
      o.buffer = source.view();
      break;
    }
    case kOrder:
      o.result = pick(side, ::OrderSelections, naive::OrderSelections)(
          &held.block, size);
      break;
    case kToMap:
    case kFromMap: {
      const GuardedText bits(map);
      o.result = operation == kToMap
                     ? pick(side, ::SelectionToMap, naive::SelectionToMap)(
                           bits.data(), size, held.block)
                     : pick(side, ::MapToSelection, naive::MapToSelection)(
                           bits.data(), size, &made.block, &o.outs[0]);
      o.buffer = bits.view();
      break;
    }
    case kInvert:
      o.result = pick(side, ::InvertSelections, naive::InvertSelections)(
          &held.block, start, end);
      break;
    case kExtract: {
      const GuardedText before(prefix);
      const GuardedText after(suffix);
      o.result = pick(side, ::ExtractSelections, naive::ExtractSelections)(
          missing == kText ? nullptr : source.data(), held.block,
          missing == kPrefix ? nullptr : before.data(),
          static_cast<std::int32_t>(prefix.size()),
          missing == kSuffix ? nullptr : after.data(),
          static_cast<std::int32_t>(suffix.size()), &made.block, 84, yield);
      break;
    }
  }
  o.list = state_of(held.block);
  o.text = state_of(made.block);
  return o;
}

std::string SelectionCall::show() const {
  return show_fields("operation", static_cast<int>(operation), "text", text,
                     "list", list, "keys", mask.keys, "values", mask.values,
                     "of", mask_count, "size", size, "start", start, "end", end,
                     "map", map, "prefix", prefix, "suffix", suffix, "missing",
                     static_cast<int>(missing));
}

SelectionCall draw_selection_call(Input& in) {
  SelectionCall call;
  call.operation = static_cast<SelectionCall::Operation>(in.between(0, 10));
  if (in.one_in(16))
    call.missing = in.pick({SelectionCall::kText, SelectionCall::kPrefix,
                            SelectionCall::kSuffix, SelectionCall::kList});
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
  const auto length = static_cast<std::int32_t>(call.text.size());
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

#include <numeric>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/guarded_text.h"
#include "utf8/mask_table.h"

namespace quill::test {

namespace {

Longs look_up(Side side, const Mask& mask, std::int32_t count,
              std::int32_t character) {
  const auto mask_char = QUILL_PICK(side, utf8_MaskChar);
  const auto match = QUILL_PICK(side, utf8_MatchChar);
  const auto in_list = QUILL_PICK(side, utf8_InList);
  const std::int32_t* const keys = mask.key_data();
  Longs found = {mask_char(character, keys, mask.value_data(), count, 1),
                 mask_char(character, keys, mask.value_data(), count, 2),
                 in_list(character, keys, count)};
  // Members are bisected for, which has no answer in a set out of order.
  if (std::is_sorted(mask.keys.begin(), mask.keys.end())) {
    found.push_back(match(keys, count, character, 1));
    found.push_back(match(keys, count, character, 2));
  }
  return found;
}

// A Block of a rewriting that failed half-way is already disposed of.
BlockState state_of_output(HeldBlock& output, std::int32_t result) {
  if (result == 0 && output.block != untouched()) output.block = nullptr;
  return state_of(output.block);
}

}  // namespace

Outcome MaskCall::run(Side side, QuillYield yield) const {
  const std::int32_t* const keys = mask.key_data();
  const std::int32_t* const values = mask.value_data();
  Outcome o;
  switch (operation) {
    case kLookUp:
      o.outs.clear();
      for (const std::int32_t character : longs) {
        const Longs found = look_up(side, mask, mask_count, character);
        o.outs.insert(o.outs.end(), found.begin(), found.end());
      }
      break;
    case kUseTable: {
      MaskTable table({keys, values, mask_count}, end);
      o.outs.clear();
      for (const std::int32_t character : longs) {
        o.outs.push_back(
            side == Side::kLibrary
                ? table.map(character)
                : naive::utf8_MaskChar(character, keys, values, mask_count, 1));
      }
      break;
    }
    case kSort: {
      // Each value is its entry's first place: equal keys can be told apart.
      Longs sorted = mask.keys;
      o.outs.resize(sorted.size());
      std::iota(o.outs.begin(), o.outs.end(), 0);
      QUILL_PICK(side, utf8_SortMask)(sorted.data(), o.outs.data(), start, end);
      o.outs.insert(o.outs.end(), sorted.begin(), sorted.end());
      break;
    }
    case kToArray: {
      const GuardedText held(text);
      Longs array(text.size() + 1, -5);
      o.result = QUILL_PICK(side, utf8_StringToLongArray)(
          has_text ? held.data() : nullptr, start, end, keys, values,
          mask_count, array.data(), &o.outs[0]);
      o.outs.insert(o.outs.end(), array.begin(), array.end());
      break;
    }
    case kRewrite:
    case kRewriteSelections: {
      const HeldBlock source(text);
      LockBlock(source.block);
      const QuillBlock from = has_text ? source.block : nullptr;
      HeldBlock output(untouched());
      o.result = operation == kRewrite
                     ? QUILL_PICK(side, utf8_MaskString)(
                           from, start, end, keys, values, mask_count,
                           &output.block, 77, 42, yield)
                     : QUILL_PICK(side, utf8_MaskStringSelection)(
                           from, longs.data(), length_of(longs), keys, values,
                           mask_count, &output.block, 43, yield);
      o.text = state_of_output(output, o.result);
      o.outs = {is_locked(source.block) ? 1 : 0};
      break;
    }
  }
  return o;
}

std::string MaskCall::show() const {
  return show_fields("operation", operation, "text", text, "start", start,
                     "end", end, "keys", mask.keys, "values", mask.values,
                     "count", mask_count, "longs", longs, "has text", has_text);
}

namespace {

// Of every length, some of them broken, some with zero bytes inside.
std::int32_t draw_character(Input& in) {
  switch (in.between(0, 5)) {
    case 0: {
      std::string bytes;
      for (int i = 0; i < 4; ++i) {
        bytes += in.flag() ? in.pick({'\0', '\1', '\x80', '\xC3'})
                           : static_cast<char>(in.byte());
      }
      return packed(bytes);
    }
    case 1:
      return in.between(0xC0, 0xDF) | in.byte() << 8;
    case 2:
      return 0x80E2 | in.between(0, 0xFFFF) << 8;
    case 3:
      return in.between(0, 127);
    default:
      return packed(in.pick(alphabet()));
  }
}

// Neighbours in ASCII, of two bytes, and of three and four in a few pages.
std::string draw_neighbour(Input& in) {
  const auto last = static_cast<char>(in.between(0x80, 0xBF));
  switch (in.between(0, 4)) {
    case 0:
      return {static_cast<char>(in.between(0xC3, 0xC6)), last};
    case 1:
      return {'\xE3', static_cast<char>(in.between(0x80, 0x83)), last};
    case 2:
      return {in.pick({'\xE1', '\xE1', '\xF0'}), '\x90', last,
              in.one_in(9) ? 'x' : last};
    default:
      return {static_cast<char>(in.between(0, 127))};
  }
}

// Mostly from neighbours to others of the same length.
Mask draw_neighbours_mask(Input& in) {
  Mask mask;
  for (int left = in.between(0, 120); left > 0; --left) {
    const std::string from = draw_neighbour(in).substr(0, 4);
    std::string to = draw_neighbour(in).substr(0, 4);
    if (to.size() != from.size() && !in.one_in(30)) to = from;
    if (to.size() > 1 && to == from) to.back() = '\x85';
    mask.keys.push_back(packed(from));
    mask.values.push_back(packed(to));
  }
  std::sort(mask.keys.begin(), mask.keys.end());
  if (in.flag()) std::sort(mask.values.begin(), mask.values.end());
  return mask;
}

// Any entries, or ranges of ASCII moved by a constant, as foldings are.
Mask draw_mask(Input& in) {
  Mask mask;
  if (in.one_in(3)) return draw_neighbours_mask(in);
  if (in.one_in(4)) {
    for (std::int32_t range = in.between(0, 4); range >= 0; --range) {
      const std::int32_t first = (4 - range) * 25 + in.between(0, 12);
      const std::int32_t change = in.between(-first, 160);
      for (std::int32_t key = first; key < first + 12; ++key) {
        mask.keys.push_back(key);
        mask.values.push_back(key + change);
      }
    }
    return mask;
  }
  for (int left = in.between(0, in.pick({8, 40, 200})); left > 0; --left) {
    mask.keys.push_back(draw_character(in));
    mask.values.push_back(draw_character(in));
  }
  if (!in.one_in(4)) std::sort(mask.keys.begin(), mask.keys.end());
  return mask;
}

MaskCall draw_sort(Input& in) {
  MaskCall call = {.operation = MaskCall::kSort};
  const int spread = in.pick({0, 3, 30, 1'000'000'000});
  Longs& keys = call.mask.keys;
  for (int left = in.between(0, 300); left > 0; --left) {
    keys.push_back(in.between(-spread, spread));
  }
  if (in.one_in(3)) std::sort(keys.begin(), keys.end());
  if (in.one_in(4)) std::reverse(keys.begin(), keys.end());
  call.end = in.between(0, length_of(keys));
  call.start = in.flag() ? 0 : in.between(0, call.end);
  return call;
}

MaskCall draw_lookup(Input& in, MaskCall::Operation operation) {
  MaskCall call = {.operation = operation, .mask = draw_mask(in)};
  call.mask_count = in.one_in(16) ? in.between(-1, 0) : call.mask.count();
  call.end = in.pick({0, 7, 100, 1'000'000});  // for so much text
  // Over and over, until the table thinks it worth being filled.
  for (int left = in.between(0, 40); left > 0; --left) {
    call.longs.push_back(!call.mask.keys.empty() && in.flag()
                             ? in.pick(call.mask.keys)
                             : draw_character(in));
  }
  for (int repeats = in.between(0, 3); repeats > 0; --repeats) {
    const Longs once = call.longs;
    call.longs.insert(call.longs.end(), once.begin(), once.end());
  }
  return call;
}

MaskCall draw_text(Input& in, MaskCall::Operation operation) {
  MaskCall call = {.operation = operation};
  call.text = in.any_text(in.pick({4, 40, 40, 300}));
  for (int runs = in.one_in(16) ? 12 : 0; runs > 0; --runs) {
    call.text += in.long_text(in.between(0, 300)) +
                 std::string(static_cast<std::size_t>(in.between(0, 150)),
                             static_cast<char>(in.between(0, 127)));
  }
  if (in.one_in(3)) {
    std::string once;
    for (int left = in.between(0, 200); left > 0; --left) {
      once += draw_neighbour(in);
    }
    for (int left = in.pick({1, 4, 40}); left > 0; --left) call.text += once;
  }
  call.mask = draw_mask(in);
  call.mask_count = in.one_in(16) ? in.between(-2, 0) : call.mask.count();
  const std::size_t size = call.text.size();
  const auto offset = [&] {
    return in.one_in(16) ? in.offset(size)
                         : in.between(0, static_cast<int>(size));
  };
  call.start = in.flag() ? 0 : offset();
  call.end = in.flag() ? static_cast<std::int32_t>(size) : offset();
  call.has_text = !in.one_in(64);
  // The host vouches for what lies before the end.
  if (operation == MaskCall::kToArray) {
    call.end = std::min(call.end, static_cast<std::int32_t>(size));
  }
  if (in.flag()) {
    call.longs = in.selections(size, in.pick({4, 12, 60}));
    return call;
  }
  for (int left = in.between(0, 9); left > 0; --left) {
    call.longs.push_back(offset());
  }
  if (in.flag()) std::sort(call.longs.begin(), call.longs.end());
  return call;
}

}  // namespace

std::string check_masks(Input& in) {
  const auto operation = static_cast<MaskCall::Operation>(
      in.between(MaskCall::kLookUp, MaskCall::kRewriteSelections));
  return first_difference(operation == MaskCall::kSort ? draw_sort(in)
                          : operation < MaskCall::kSort
                              ? draw_lookup(in, operation)
                              : draw_text(in, operation),
                          in.host());
}

}  // namespace quill::test

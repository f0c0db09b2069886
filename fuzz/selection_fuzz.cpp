// Every operation on selections against its model.
#include <cstdio>

#include "fuzz/support/fuzz_input.h"
#include "tests/models/selection_model.h"
#include "tests/support/blocks.h"
#include "tests/support/guarded_text.h"

namespace quill::fuzz {
namespace {

using test::bytes_of;
using test::GuardedText;
using test::HeldBlock;
using test::Longs;
using test::YieldMaxScope;
using test::YieldRecorder;
namespace model = test::model;

constexpr std::int32_t kUnwritten = 0x5EA75EA7;

void expect(bool holds, const char* what, const std::string& text,
            const Longs& list) {
  if (holds) return;
  std::fprintf(stderr, "%s\ntext:", what);
  for (const char byte : text) {
    std::fprintf(stderr, " %02X", static_cast<unsigned char>(byte));
  }
  std::fprintf(stderr, "\nlist:");
  for (const std::int32_t value : list) std::fprintf(stderr, " %d", value);
  std::fprintf(stderr, "\n");
  __builtin_trap();
}

std::int32_t size_of(const Longs& list) {
  return static_cast<std::int32_t>(list.size());
}

Longs draw_list(FuzzInput& input, std::size_t text_size, int most) {
  Longs list(static_cast<std::size_t>(input.between(0, most)));
  for (std::int32_t& offset : list) offset = input.offset(text_size);
  return list;
}

// Nothing ends behind the text: operations that get its address only can't
// tell.
Longs draw_inside(FuzzInput& input, const std::string& text, int most) {
  Longs list = draw_list(input, text.size(), most);
  for (std::int32_t& offset : list) {
    offset = std::min(offset, static_cast<std::int32_t>(text.size()));
  }
  return list;
}

void copy(FuzzInput& input, const std::string& text) {
  const std::size_t stride = input.flag() ? 2 : 4;
  const Longs list = draw_inside(input, text, 24);
  const auto count = static_cast<std::int32_t>(list.size() / stride);
  const std::int32_t capacity = input.between(-1, 100);
  const FuzzInput::Stop stop = input.stop();
  YieldRecorder expecting(stop.at, stop.answer);
  const model::Copied want =
      model::copy(text, capacity, kUnwritten, list, count, stride,
                  stride / 2 - 1, 7, expecting);
  const GuardedText source(text);
  const GuardedText out(
      std::string(static_cast<std::size_t>(std::max(capacity, 0)), '#'));
  std::int32_t copied = kUnwritten;
  YieldRecorder host(stop.at, stop.answer);
  const auto call = stride == 2 ? CopySelectionsTo : CopySuperSelectionsTo;
  const auto result = call(source.data(), out.data(), capacity, &copied,
                           list.data(), count, 7, host.callback());
  const std::string got(out.view().substr(0, want.bytes.size()));
  expect(model::Copied{result, copied, got} == want, "copy", text, list);
  expect(host.calls() == expecting.calls(), "copy's calls", text, list);
}

void sort(FuzzInput& input, const std::string& text) {
  const std::size_t stride = input.flag() ? 2 : 4;
  Longs list = draw_inside(input, text, 40);
  // A long list of much that is equal.
  for (int left = input.between(0, 3); left > 0; --left) {
    list.insert(list.end(), list.begin(), list.end());
  }
  const FuzzInput::MaskTable drawn = input.mask(6);
  const model::Mask mask{drawn.keys, drawn.values, drawn.count()};
  const GuardedText source(text);
  Longs got = list;
  const auto call = stride == 2 ? utf8_SortSelections : utf8_SortKeySelections;
  call(source.data(), got.data(), static_cast<std::uint32_t>(list.size() * 4),
       drawn.key_data(), drawn.value_data(), drawn.count());
  expect(got == model::sort(text, list, stride, mask), "sort", text, list);
}

void order(FuzzInput& input) {
  const std::int32_t length = input.between(1, 700);
  const Longs list = draw_list(input, static_cast<std::size_t>(length), 60);
  HeldBlock held(list);
  expect(OrderSelections(&held.block, length) == 1, "order", {}, list);
  expect(held.longs() == model::order(list, length), "order", {}, list);
}

void map(FuzzInput& input) {
  const std::int32_t length = input.between(1, 300);
  const auto bits_in_map = static_cast<std::size_t>(length) + 2;
  const Longs list = draw_list(input, static_cast<std::size_t>(length), 30);
  const HeldBlock held(list);
  const GuardedText map(std::string((bits_in_map + 7) / 8, '\0'));
  SelectionToMap(map.data(), length, held.block);
  const model::Bits bits =
      model::add_to_map(model::Bits(bits_in_map), length, list);
  for (std::size_t i = 0; i < bits.size(); ++i) {
    expect(BitTest(map.data(), static_cast<std::int32_t>(i)) == bits[i],
           "to map", {}, list);
  }
  HeldBlock made;
  std::int32_t count = kUnwritten;
  expect(MapToSelection(map.data(), length, &made.block, &count) == 1,
         "from map", {}, list);
  const Longs want = model::list_of_map(bits, length);
  expect(made.longs() == want && count == size_of(want), "from map", {}, list);
}

void invert(FuzzInput& input) {
  Longs list = draw_list(input, 40, 12);
  if (input.between(0, 3) != 0) std::sort(list.begin(), list.end());
  const std::int32_t start = input.offset(40);
  const std::int32_t end = input.offset(40);
  const bool fits =
      list.size() % 2 == 0 && start <= end &&
      std::is_sorted(list.begin(), list.end()) &&
      (list.empty() || (list.front() >= start && list.back() <= end));
  HeldBlock held(list);
  expect(InvertSelections(&held.block, start, end) == 1, "invert", {}, list);
  expect(held.longs() == (fits ? model::invert(list, start, end) : list),
         "invert", {}, list);
}

void extract(FuzzInput& input, const std::string& text) {
  const Longs list = draw_inside(input, text, 24);
  const std::string prefix = input.text(3);
  const std::string suffix = input.text(3);
  const FuzzInput::Stop stop = input.stop();
  YieldRecorder expecting(stop.at, stop.answer);
  const model::Extracted want =
      model::extract(text, list, prefix, suffix, 7, expecting);
  const GuardedText source(text);
  const HeldBlock held(list);
  QuillBlock made = held.block;
  YieldRecorder host(stop.at, stop.answer);
  const auto result = ExtractSelections(
      source.data(), held.block, prefix.data(),
      static_cast<std::int32_t>(prefix.size()), suffix.data(),
      static_cast<std::int32_t>(suffix.size()), &made, 7, host.callback());
  const bool written = made != held.block;
  const bool handed_over = written && made != nullptr;
  expect(written == (result == 1), "extract", text, list);
  expect(model::Extracted{result, handed_over,
                          handed_over ? bytes_of(made) : std::string()} == want,
         "extract", text, list);
  expect(host.calls() == expecting.calls(), "extract's calls", text, list);
  if (handed_over) DisposeBlock(made);
}

}  // namespace
}  // namespace quill::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  using namespace quill::fuzz;
  FuzzInput input(data, size);
  const int operation = input.between(0, 5);
  const YieldMaxScope scope(input.yield_max());
  const std::string text = input.text(40);
  switch (operation) {
    case 0:
      copy(input, text);
      break;
    case 1:
      sort(input, text);
      break;
    case 2:
      order(input);
      break;
    case 3:
      map(input);
      break;
    case 4:
      invert(input);
      break;
    default:
      extract(input, text);
  }
  return 0;
}

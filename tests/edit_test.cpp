// Deleting, wrapping, inserting, overlaying and multiple insertion.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"

namespace quill::test {
namespace {

TEST(Edits, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(51, 40'000, check_edit);
}

TEST(InsertStr, KeepsItsRules) {
  const struct {
    const char* why;
    const char* text;
    Longs list;
    const char* string;
    Flags flags;
    std::int32_t result;
    const char* edited;
    Longs places;
  } cases[] = {
      {"mixed", "AbYYYZ", {1, 1, 2, 5}, "SS", {}, 1, "ASSbSSZ", {1, 1, 2, 4}},
      {"nothing to put in", "abcd", {1, 3}, "", {}, 1, "ad", {1, 3}},
      {"an empty list", "abc", {}, "X", {}, 0, "abc", {}},
      {"fixed by any flag", "abc", {1, 2}, "XY", {1, 2}, 1, "aXYc", {1, 2}},
      {"overlaid", "a 12z", {2, 4}, "(__", {1, 0, 0}, 1, "a (2_z", {2, 4}},
      {"cut", "a\xC3\xA9z", {0, 4}, "XY", {0, 0}, 1, "a\xC3\xA9", {0, 4}},
      {"no character", "abc", {1, 2}, "\x80", {0}, 1, "ac", {1, 2}},
  };
  for (const auto& c : cases) {
    const EditCall call = {.text = c.text,
                           .list = c.list,
                           .string = c.string,
                           .flags = c.flags,
                           .is_locked = false};
    expect_answer(c.why, call,
                  {.result = c.result,
                   .list = unlocked(bytes_in(c.places)),
                   .text = unlocked(c.edited)});
  }
}

TEST(Edits, WrapDeleteAndApplyATable) {
  EditCall call = {.text = "the cat sat on the mat",
                   .list = {0, 3, 8, 11},
                   .string = "upon",
                   .trailing = "<",
                   .entries = {{0, 3, nullptr, 1, 1},
                               {4, 8, nullptr, 4, 2},
                               {8, 11, nullptr, 0, 0},
                               {12, 14, nullptr, 4, 3},
                               {19, 22, nullptr, 0, 1}}};
  call.operation = EditCall::kWrap;
  expect_answer("wrap", call,
                {.text = unlocked("<theupon cat <satupon on the mat")});
  call.operation = EditCall::kDelete;
  expect_answer("delete", call, {.text = unlocked(" cat  on the mat")});
  call.operation = EditCall::kMultiple;
  expect_answer("table", call,
                {.outs = {1, 0, 1, 2, 6, 6, 9, 10, 12, 17, 17},
                 .text = unlocked("u uponsat upon the ")});
}

TEST(Edits, RefuseATextThatIsItsOwnList) {
  const Longs longs = {0, 1, 2, 20};
  const HeldBlock both(longs);
  QuillBlock text = both.block;
  EXPECT_EQ(DelSel(&text, text), 0);
  EXPECT_EQ(InsertStr(&text, text, "xy", 2, nullptr), 0);
  EXPECT_EQ(InsertDualStr(&text, text, "x", 1, "y", 1), 0);
  EXPECT_EQ(InsertMaskedStr(&text, text, &longs[1], 2, Flags(2).data()), 0);
  EXPECT_EQ(state_of(both.block), unlocked(bytes_in(longs)));
}

TEST(InsertMultiple, TakesOneEntryThreeTimes) {
  QuillReplaceEntry first = {0, 4, "x", 1, 1};
  QuillReplaceEntry again = {4, 4, "ab", 2, 3};
  QuillReplaceEntry* entries[] = {&first, &again, &again, &again};
  HeldBlock text("01234567");
  EXPECT_EQ(InsertMultiple(&text.block, entries, 4), 1);
  EXPECT_EQ(text.bytes(), "xababab4567");
}

EditCall many_edits(EditCall::Operation operation, std::int32_t length) {
  const auto size = static_cast<std::size_t>(length);
  EditCall call = {.operation = operation,
                   .text = std::string(300, 'a'),
                   .string = std::string(size, 'x'),
                   .trailing = "))",
                   .characters = Longs(size, 'x')};
  for (int i = 0; i + 3 <= 300; i += 3) {
    const int selected = 1 + i % 2;
    if (operation != EditCall::kMultiple) {
      call.list.insert(call.list.end(), {i, i + selected});
      continue;
    }
    call.entries.push_back(
        {i, i + selected, nullptr, length, naive::kind_of(length, selected)});
  }
  return call;
}

TEST(Edits, LeaveAllAsItWasWhenMemoryIsShort) {
  EditCall calls[] = {
      many_edits(EditCall::kWrap, 100), many_edits(EditCall::kInsert, 100),
      many_edits(EditCall::kMultiple, 100), many_edits(EditCall::kInsert, 100),
      many_edits(EditCall::kOverlay, 100)};
  calls[3].flags = calls[4].flags = Flags(100, 0);
  for (EditCall& call : calls) {
    SCOPED_TRACE(call.operation);
    call.is_locked = false;
    call.missing = EditCall::kLength;
    const Outcome refused = outcome_of(call);
    call.missing = EditCall::kNone;
    expect_all_or_nothing(call, {refused});
  }
}

TEST(Edits, NeedNoMemoryToShrink) {
  for (const std::int32_t length : {0, 1}) {
    for (const auto operation :
         {EditCall::kDelete, EditCall::kInsert, EditCall::kMultiple}) {
      const EditCall call = many_edits(operation, length);
      const HeapWatch heap(0, true);
      EXPECT_EQ(outcome_of(call).result, 1);
    }
  }
}

// A result of 2,147,483,648 bytes or more is refused before anything is asked
// for or read: neither the strings nor the memory exist.
TEST(Edits, RefuseResultsThatDoNotFit) {
  constexpr std::int32_t kHuge = 2147483647;
  const Longs places = {0, 1, 2, 2};
  HeldBlock text("abc");
  const HeldBlock list(places);
  const HeapWatch heap;
  for (const std::int32_t other : {0, 1, kHuge}) {
    EXPECT_EQ(InsertDualStr(&text.block, list.block, "", kHuge, "", other), 0);
  }
  EXPECT_EQ(InsertStr(&text.block, list.block, "", kHuge, nullptr), 0);
  QuillReplaceEntry one = {0, 1, "", kHuge, 3};
  QuillReplaceEntry two = {1, 1, "", 1, 3};
  QuillReplaceEntry* entries[] = {&one, &two};
  EXPECT_EQ(InsertMultiple(&text.block, entries, 2), 0);
  EXPECT_EQ(text.bytes(), "abc");
  EXPECT_EQ(list.longs(), places);
  EXPECT_EQ(heap.requests(), 0);
}

// Templates for which one growth step is too little, and runs that don't fit.
TEST(Overlay, MakesRoomForWhatItWrites) {
  for (const std::size_t size : {250'000u, 250'001u, 700'000u}) {
    const EditCall call = {
        .operation = EditCall::kOverlay,
        .text = std::string(50'000, 'r'),
        .list = {10, 20, 49'000, 49'001},
        .characters = Longs(size, packed("\xF0\x9F\x98\x80")),
        .flags = Flags(size, 1)};
    ASSERT_EQ(first_difference(call), "");
  }
}

// The new Block takes over the old one's contents, wherever they lie: a small
// Block lies with its record, and by itself once it has grown.
TEST(Overlay, HandsOverTextsMadeAndGrownToAnySize) {
  const unsigned char flags[] = {1, 1};
  const Longs form = {'x', 'y'};
  for (const std::int32_t made : {0, 1, 100, 512, 513}) {
    for (const std::size_t size : {0U, 1U, 100U, 600U}) {
      const HeapWatch heap;
      {
        const std::string bytes(size, 'a');
        HeldBlock text(NewBlock(made));
        ResizeBlock(text.block, static_cast<std::int32_t>(size));
        std::copy(bytes.begin(), bytes.end(), *text.block);
        const HeldBlock list(Longs{0, 0});
        EXPECT_EQ(
            InsertMaskedStr(&text.block, list.block, form.data(), 2, flags), 1);
        EXPECT_EQ(text.bytes(), "xy" + bytes) << "made with " << made;
      }
      EXPECT_EQ(heap.outstanding(), 0);
    }
  }
}

}  // namespace
}  // namespace quill::test

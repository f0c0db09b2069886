// The four readers against a model on every window of up to four bytes from a
// set that has every class of byte, at every position and every end.
#include <gtest/gtest.h>

#include <array>

#include "tests/models/characters_model.h"
#include "tests/support/guarded_text.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

using Read = std::int32_t (*)(const char*, std::int32_t, std::int32_t,
                              ReadOuts&);

std::int32_t get_next_as_long(const char* text, std::int32_t position,
                              std::int32_t end, ReadOuts& outs) {
  return utf8_GetNextCharAsLong(text, position, end, &outs.start, &outs.value,
                                &outs.next);
}
std::int32_t get_next_value(const char* text, std::int32_t position,
                            std::int32_t end, ReadOuts& outs) {
  return utf8_GetNextCharValue(text, position, end, &outs.start, &outs.length,
                               &outs.value, &outs.next);
}
std::int32_t get_containing(const char* text, std::int32_t position,
                            std::int32_t end, ReadOuts& outs) {
  return utf8_GetCharAsLong(text, position, end, &outs.start, &outs.value,
                            &outs.next);
}
std::int32_t get_previous(const char* text, std::int32_t position,
                          std::int32_t end, ReadOuts& outs) {
  return utf8_GetPrevCharAsLong(text, position, end, &outs.start, &outs.value,
                                &outs.next);
}

struct Reader {
  const char* name;
  Read library;
  Read model;
};
constexpr Reader kReaders[] = {
    {"next as long", get_next_as_long, model_get_next_as_long},
    {"next value", get_next_value, model_get_next_value},
    {"containing", get_containing, model_get_containing},
    {"previous", get_previous, model_get_previous},
};

void expect_as_models(const char* text, std::int32_t position,
                      std::int32_t end) {
  for (const Reader& reader : kReaders) {
    ReadOuts seen;
    ReadOuts wanted;
    const std::int32_t result = reader.library(text, position, end, seen);
    const std::int32_t model = reader.model(text, position, end, wanted);
    if (result == model && seen == wanted) continue;
    FAIL() << reader.name << " of " << testing::PrintToString(text) << " at "
           << position << ", end " << end << ": " << result << " and start "
           << seen.start << " length " << seen.length << " value " << seen.value
           << " next " << seen.next << ", wanted " << model << " and "
           << wanted.start << " " << wanted.length << " " << wanted.value << " "
           << wanted.next;
  }
}

void expect_as_models_everywhere(const char* text, std::int32_t size) {
  for (std::int32_t end = 0; end <= size; ++end) {
    for (std::int32_t position = 0; position <= size + 1; ++position) {
      expect_as_models(text, position, end);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

// The ends of each class and one byte from within.
constexpr std::array<unsigned char, 14> kBytes = {0x00, 0x41, 0x7F, 0x80, 0x9F,
                                                  0xBF, 0xC0, 0xC3, 0xDF, 0xE0,
                                                  0xEF, 0xF0, 0xF8, 0xFF};

TEST(Readers, AgreeWithModelsOnEveryWindow) {
  std::size_t windows = 1;
  for (std::int32_t size = 0; size <= 4; ++size) {
    const GuardedText text(std::string(static_cast<std::size_t>(size), '?'));
    for (std::size_t window = 0; window < windows; ++window) {
      std::size_t digits = window;
      for (std::int32_t i = 0; i < size; ++i) {
        text.data()[i] = static_cast<char>(kBytes[digits % kBytes.size()]);
        digits /= kBytes.size();
      }
      expect_as_models_everywhere(text.data(), size);
      if (HasFatalFailure()) return;
    }
    windows *= kBytes.size();
  }
}

TEST(Readers, AgreeWithModelsOnRandomBytes) {
  Random random(3);
  for (int round = 0; round < 500; ++round) {
    const GuardedText text(random_bytes(random, random.between(0, 12)));
    expect_as_models_everywhere(text.data(),
                                static_cast<std::int32_t>(text.view().size()));
    if (HasFatalFailure()) return;
  }
}

TEST(Readers, RefuseWhatIsNoText) {
  for (const Reader& reader : kReaders) {
    SCOPED_TRACE(reader.name);
    ReadOuts outs;
    EXPECT_EQ(reader.library(nullptr, 1, 5, outs), 0);
    EXPECT_EQ(outs, (ReadOuts{.next = 5}));
    EXPECT_EQ(reader.library("abc", -1, 3, outs), 0);
    EXPECT_EQ(outs, (ReadOuts{.next = 3}));
    EXPECT_EQ(reader.library("abc", -2147483647 - 1, -5, outs), 0);
    EXPECT_EQ(outs, (ReadOuts{.next = -5}));
  }
}

}  // namespace
}  // namespace quill::test

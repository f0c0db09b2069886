#include "host/listing.h"

#include <algorithm>
#include <cstdio>

#include "quillcore.h"

namespace quill::tool {

namespace {

// How much of a line is shown on either side of a match, in bytes.
constexpr std::int32_t kContext = 160;

constexpr const char* kNameColor = "35";
constexpr const char* kPlaceColor = "32";
constexpr const char* kMatchColor = "1;31";

bool is_continuation(char byte) { return (byte & 0xC0) == 0x80; }

}  // namespace

void LineCursor::move_to(std::int32_t offset) {
  const std::string_view passed =
      text_.substr(static_cast<std::size_t>(position_),
                   static_cast<std::size_t>(offset - position_));
  const auto newlines = std::count(passed.begin(), passed.end(), '\n');
  if (newlines > 0) {
    line_ += newlines;
    column_ = 1;
    line_start_ = position_ + static_cast<std::int32_t>(passed.rfind('\n')) + 1;
    position_ = line_start_;
  }
  std::int32_t characters = 0;
  utf8_CountCharacters(text_.data(), position_, offset, &characters);
  column_ += characters;
  position_ = offset;
}

Listing::Listing(const std::string& name, std::string_view text, bool colored)
    : prefix_(name.empty() ? name : name + ":"),
      text_(text),
      cursor_(text),
      colored_(colored) {}

void Listing::print(Match match) {
  cursor_.move_to(match.start);
  std::int32_t left = std::max(cursor_.line_start(), match.start - kContext);
  while (left < match.start &&
         is_continuation(text_[static_cast<std::size_t>(left)]))
    ++left;

  // Up to the end of the match's first line, or a whole character near there.
  const auto size = static_cast<std::int64_t>(text_.size());
  std::int64_t right =
      std::min<std::int64_t>(match.end + std::int64_t{kContext}, size);
  while (right < size &&
         is_continuation(text_[static_cast<std::size_t>(right)]))
    --right;
  const std::string_view rest =
      between(match.start, static_cast<std::int32_t>(right));
  const std::string_view shown = rest.substr(0, rest.find('\n'));
  const auto matched = static_cast<std::size_t>(match.end - match.start);

  put(prefix_, kNameColor);
  put(std::to_string(cursor_.line()) + ":" + std::to_string(cursor_.column()) +
          ":",
      kPlaceColor);
  put(between(left, match.start));
  put(shown.substr(0, matched), kMatchColor);
  if (matched < shown.size()) put(shown.substr(matched));
  put("\n");
}

std::string_view Listing::between(std::int32_t start, std::int32_t end) const {
  return text_.substr(static_cast<std::size_t>(start),
                      static_cast<std::size_t>(end - start));
}

void Listing::put(std::string_view text, const char* color) const {
  const bool paint = colored_ && color != nullptr && !text.empty();
  if (paint) std::fprintf(stdout, "\033[%sm", color);
  std::fwrite(text.data(), 1, text.size(), stdout);
  if (paint) std::fputs("\033[m", stdout);
}

}  // namespace quill::tool

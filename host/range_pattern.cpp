#include "host/range_pattern.h"

#include <unicode/utf8.h>

#include <string>

#include "host/break_set.h"
#include "host/errors.h"
#include "host/packed.h"
#include "host/search.h"

namespace quill::tool {

const char* const kPatternHelp =
    "Patterns (--pattern) are written as a sequence of:\n"
    "  x        the character x; a punctuation character that means something\n"
    "           here is written \\x; \\n and \\t are newline and tab\n"
    "  .        any character but a newline\n"
    "  [a-z_]   one of these characters and ranges; [^a-z] one of the others\n"
    "  \\d \\w \\s a digit, a word character, white space, also in a set;\n"
    "           \\D \\W \\S any other character\n"
    "and after each, if it is not to match exactly once:\n"
    "  ? * +    up to once, any number of times, at least once\n"
    "  {3} {2,} {2,5}  three times, at least twice, two to five times\n"
    "Each item takes as many characters as it can and gives none back, so .*x\n"
    "never matches: write [^x]*x. Groups, alternatives and anchors don't "
    "exist.\n"
    "Examples:\n"
    "  \\d{4}-\\d{2}-\\d{2}   a date such as 2024-02-29\n"
    "  \"[^\"\\n]*\"          a quoted string within a line\n"
    "  [ \\t]+\\n            blanks at the end of a line, with its newline";

void RangePattern::append(const icu::UnicodeSet& set, Repetition repetition) {
  // A part lists what it matches or what it doesn't, whichever is shorter.
  constexpr std::int32_t kCodePoints = 0x110000;
  const bool include = set.size() <= kCodePoints / 2;
  sets_.push_back(packed_members(
      include ? set : icu::UnicodeSet(set).complement().removeAllStrings()));
  const std::vector<std::int32_t>& members = sets_.back();
  parts_.push_back({members.data(), static_cast<std::int32_t>(members.size()),
                    repetition.minimum, repetition.maximum,
                    static_cast<unsigned char>(include)});
  pointers_.push_back(&parts_.back());
}

namespace {

// Reads the notation from left to right. Invariant: position_ is on a
// character's first byte, or at the end.
class Parser {
 public:
  Parser(std::string_view notation, bool ignore_case)
      : notation_(notation), ignore_case_(ignore_case) {}

  RangePattern parse() {
    RangePattern pattern;
    if (at_end()) fail("empty pattern");
    while (!at_end()) {
      icu::UnicodeSet set = item();
      if (ignore_case_) set.closeOver(USET_CASE_INSENSITIVE).removeAllStrings();
      pattern.append(set, repetition());
    }
    return pattern;
  }

 private:
  bool at_end() const { return position_ == notation_.size(); }

  // The next character, or -1 at the end.
  UChar32 peek() const {
    std::size_t position = position_;
    return at_end() ? -1 : read(position);
  }
  UChar32 next() {
    if (at_end()) fail("unfinished pattern");
    return read(position_);
  }
  bool take(UChar32 wanted) {
    if (peek() != wanted) return false;
    ++position_;  // what is asked for is ASCII
    return true;
  }

  UChar32 read(std::size_t& position) const {
    UChar32 character;
    const auto* const text =
        reinterpret_cast<const std::uint8_t*>(notation_.data());
    U8_NEXT(text, position, notation_.size(), character);
    return character;
  }

  [[noreturn]] void fail(const std::string& reason) const {
    throw UsageError("pattern: " + reason + " (at byte " +
                     std::to_string(position_) + ")");
  }

  icu::UnicodeSet item() {
    if (take('[')) return bracket_set();
    if (take('\\')) return escape();
    if (take('.')) return icu::UnicodeSet(u'\n', u'\n').complement();
    constexpr std::string_view kReserved = "?*+{}]()|^$";
    const UChar32 c = peek();
    if (c < 0x80 && kReserved.find(static_cast<char>(c)) != kReserved.npos) {
      fail(std::string("write \\") + static_cast<char>(c) +
           " for the character " + static_cast<char>(c));
    }
    next();
    return icu::UnicodeSet(c, c);
  }

  // What follows a backslash: a class, or a character.
  icu::UnicodeSet escape() {
    const UChar32 c = next();
    switch (c) {
      case 'd':
        return property(u"[:Nd:]");
      case 'D':
        return property(u"[:^Nd:]");
      case 's':
        return property(u"[:White_Space:]");
      case 'S':
        return property(u"[:^White_Space:]");
      case 'w':
        return icu::UnicodeSet(break_set()).complement();
      case 'W':
        return break_set();
      case 'n':
        return icu::UnicodeSet(u'\n', u'\n');
      case 't':
        return icu::UnicodeSet(u'\t', u'\t');
      default:
        break;
    }
    if (u_isalnum(c)) fail("unknown escape");
    return icu::UnicodeSet(c, c);
  }

  static icu::UnicodeSet property(const char16_t* pattern) {
    UErrorCode status = U_ZERO_ERROR;
    return icu::UnicodeSet(pattern, status);
  }

  // The rest of a set after its opening bracket.
  icu::UnicodeSet bracket_set() {
    const bool complement = take('^');
    icu::UnicodeSet set;
    if (peek() == ']') fail("empty set");
    while (!take(']')) {
      const icu::UnicodeSet first = set_member();
      if (peek() == '-' && !closes_after_hyphen()) {
        take('-');
        set.addAll(range(first, set_member()));
      } else {
        set.addAll(first);
      }
    }
    return complement ? set.complement() : set;
  }

  icu::UnicodeSet set_member() {
    if (take('\\')) return escape();
    const UChar32 c = next();
    return icu::UnicodeSet(c, c);
  }

  // Whether the hyphen here is the last of its set, and stands for itself.
  bool closes_after_hyphen() const {
    return position_ + 1 < notation_.size() && notation_[position_ + 1] == ']';
  }

  icu::UnicodeSet range(const icu::UnicodeSet& first,
                        const icu::UnicodeSet& last) const {
    if (first.size() != 1 || last.size() != 1 ||
        first.charAt(0) > last.charAt(0))
      fail("not a range");
    return icu::UnicodeSet(first.charAt(0), last.charAt(0));
  }

  Repetition repetition() {
    if (take('?')) return {0, 1};
    if (take('*')) return {0, 0};
    if (take('+')) return {1, 0};
    if (!take('{')) return {};
    Repetition result;
    result.minimum = number();
    result.maximum = result.minimum;
    if (take(',')) {
      if (take('}')) return {result.minimum, 0};
      result.maximum = number();
    }
    if (!take('}')) fail("expected }");
    // The library takes a maximum of 0 for no limit.
    if (result.maximum < 1 || result.maximum < result.minimum)
      fail("not a number of repetitions");
    return result;
  }

  std::int32_t number() {
    constexpr std::int32_t kMost = 1'000'000'000;
    if (peek() < '0' || peek() > '9') fail("expected a number");
    std::int64_t value = 0;
    while (peek() >= '0' && peek() <= '9') {
      value = value * 10 + (next() - '0');
      if (value > kMost) fail("number too large");
    }
    return static_cast<std::int32_t>(value);
  }

  std::string_view notation_;
  std::size_t position_ = 0;
  bool ignore_case_;
};

}  // namespace

RangePattern parse_pattern(std::string_view notation, bool ignore_case) {
  return Parser(notation, ignore_case).parse();
}

}  // namespace quill::tool

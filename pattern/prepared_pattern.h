// A range pattern prepared for many attempts in one text.
//
// Answers what the plain matcher answers. The first characters of a run are
// tested one by one; a long run is covered stretch by stretch, and remembered:
// an attempt that comes into it again, anywhere, goes to its end at once. So
// attempts that all run on over the same text stay linear together.
#pragma once

#include <array>
#include <span>

#include "blocks/base.h"
#include "pattern/character_class.h"
#include "pattern/range_pattern.h"
#include "pattern/slot.h"

namespace quill {

class PreparedPattern {
 public:
  PreparedPattern(const Byte* text, RangePattern pattern)
      : text_(text), pattern_(pattern) {}
  PreparedPattern(const PreparedPattern&) = delete;
  PreparedPattern& operator=(const PreparedPattern&) = delete;

  // Prepares the parts, when they are few and their sets in order and small
  // enough to pay in a range of that many bytes. False: there is nothing to
  // use but the plain matcher.
  [[nodiscard]] bool prepare(Offset range_length);

  // A match must begin with a character that the first part, or one of the
  // next ones up to the first that can't be empty, accepts. True when there is
  // such a part: `starters` of them are to be looked at.
  bool has_starters() const { return starters_ > 0; }
  int starters() const { return starters_; }
  const CharacterClass& accepted_by(int part) const {
    return parts_[part].accepted;
  }

  // What every match has in some places, counted in characters from its start:
  // a character that the given part accepts. The first demand is that of the
  // first part at place 0; there are more as long as the parts before have but
  // one length.
  struct Demand {
    int part;
    int place;
  };
  std::span<const Demand> demands() const {
    return {demands_.data(), demand_count_};
  }
  static constexpr int kMostDemandedParts = 4;

  // The part and the place behind the parts of one length that the demands say
  // all about.
  const Demand& settled() const { return settled_; }

  // Whether the first part takes all of a run, and the second something behind.
  bool begins_with_followed_run() const {
    return starters_ == 1 && pattern_.part_count > 1 &&
           limit_of(0) == kMaxLong && minimum_of(1) > 0;
  }

  // The run of a part's characters from `position` on.
  struct Run {
    Offset next;
    Offset count;  // of characters; no more than the part's limit
    bool read;     // false when a character on the way could not be read
  };
  Run run_of(int part, Offset position, Offset end);

  bool allows(int part, Offset count) const {
    const Part& prepared = parts_[part];
    return prepared.minimum <= count && count <= prepared.limit;
  }
  Offset minimum_of(int part) const { return parts_[part].minimum; }
  Offset limit_of(int part) const { return parts_[part].limit; }

  // Where the parts from `part` on end, or -1.
  Offset match_rest(int part, Offset position, Offset end);

  PatternMatch match(Offset position, Offset end);

 private:
  // The characters in [start, end) all belong to one run and are in order.
  // The run ends there, in a range that ends at `range_end`.
  struct LongRun {
    Offset start = 0;
    Offset end = 0;
    Offset range_end = -1;
    bool read = true;
  };
  struct Part {
    Part(const QuillRangePart& part, Offset range_length)
        : accepted(part, range_length),
          minimum(part.minimum),
          limit(quill::limit_of(part)) {}

    CharacterClass accepted;
    Offset minimum;
    Offset limit;
    LongRun known;
  };

  void note_demands();
  static Offset stretch_end(const Part& part, Offset position, Offset end);
  bool step(const Part& part, Run& run, Offset end) const;
  void take_ascii(const Part& part, Run& run, Offset end) const;
  void extend(Part& part, Run& run, Offset end) const;
  bool jump_known(const Part& part, Run& run, Offset end) const;

  const Byte* text_;
  RangePattern pattern_;
  int starters_ = 0;

  static constexpr std::size_t kMostDemands = 6;
  std::array<Demand, kMostDemands> demands_;
  std::size_t demand_count_ = 0;
  Demand settled_{0, 0};

  static constexpr int kMostParts = 8;
  Slots<Part, kMostParts> parts_;
};

}  // namespace quill

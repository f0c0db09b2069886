// Rewriting text through a mask into a new Block.
//
// Characters are written one after the other into an output that starts at the
// size of the source and grows when mapped characters are longer. Only its
// final size can be seen, so it grows for all that is still to come, not in
// small steps.
#include <algorithm>
#include <cstring>
#include <optional>

#include "blocks/active_block.h"
#include "blocks/block_lock.h"
#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "selection/selection_list.h"
#include "utf8/character_map.h"
#include "utf8/characters.h"
#include "utf8/mask_table.h"

using namespace quill;

namespace {

constexpr Offset kLongestCharacter = 4;

// Bytes of text that pay for preparing more than the mask's ASCII characters.
constexpr Offset kWorthMapping = 256;

class MaskedText {
 public:
  MaskedText(const Byte* source, Offset size, const Mask& mask,
             ActiveBlock& output)
      : output_(output), mask_(mask), source_(source), size_(size) {
    map_ascii(mask_, map_);
  }

  // How far the source has been dealt with.
  Offset position() const { return position_; }
  void skip_to(Offset position) { position_ = position; }

  // Masks what starts before `end`, while `wanted` answers true. False when a
  // character can't be read or the output can't grow.
  template <class Wanted, class Progress>
  [[nodiscard]] bool mask_until(Offset end, YieldMeter& meter, Wanted wanted,
                                Progress progress) {
    while (position_ < end && wanted()) {
      if (singly_ == 0) {
        meter.skip(mask_in_place(end, meter.units_left() - 1));
        if (position_ == end) break;
      } else {
        meter.skip(mask_bytes(end, meter.units_left() - 1));
        if (position_ == end) break;
        --singly_;
      }
      const Character read = read_next(source_, position_, end);
      if (!read.found || !write(map_singly(read.packed), read.length())) {
        return false;
      }
      position_ = read.next;
      if (output_.in_use() != position_) copies_ahead_ = false;
      meter.tick(progress());
    }
    return true;
  }

  // Masks some of the next selections, where that is done many at once. Returns
  // their number; the host is not due in them.
  Offset mask_many(std::span<const Selection> selections, YieldMeter& meter) {
    const Offset end = selections.front().end;
    if (!copies_ahead_ || end < position_) return 0;
    bring_ahead(end);
    const Offset units = meter.units_left() - 1;
    Offset left = units;
    const Offset count =
        map_selections(map_, source_, position_, copied_, selections,
                       output_.write_position() - position_, left);
    if (count == 0) return 0;
    meter.skip(units - left);
    const Offset reached = selections[static_cast<std::size_t>(count - 1)].end;
    output_.advance(reached - position_);
    position_ = reached;
    return count;
  }

  // From now on copies more than is asked for, what lies in selections too. The
  // output has room for all of the source.
  void copy_ahead() { copies_ahead_ = output_.in_use() == position_; }

  // Copies the source up to `end` unchanged. False when the output can't grow.
  [[nodiscard]] bool copy_until(Offset end) {
    const Offset byte_count = end - position_;
    if (byte_count <= 0) return true;
    if (!make_room(byte_count, byte_count)) return false;
    if (copies_ahead_) {
      bring_ahead(end);
      output_.advance(byte_count);
    } else {
      output_.append(source_ + position_, byte_count);
    }
    position_ = end;
    return true;
  }

 private:
  // As long as source and output are equally long: has the output hold the
  // source from `position_` to `end`, and whatever else fits the caches.
  void bring_ahead(Offset end) {
    copied_ = std::max(copied_, position_);
    if (copied_ >= end) return;
    const Offset limit = std::min(std::max(end, copied_ + kStretch), size_);
    std::memcpy(output_.write_position() + (copied_ - position_),
                source_ + copied_, static_cast<std::size_t>(limit - copied_));
    copied_ = limit;
  }

  // Masks characters as long as each keeps its length: input and output then
  // advance alike. Returns their number, at most `most`.
  Offset mask_in_place(Offset end, Offset most) {
    const MappedRun run = map_characters(
        map_, source_ + position_, std::min(end - position_, output_.room()),
        output_.write_position(), most);
    output_.advance(run.bytes);
    position_ += run.bytes;
    if (run.bytes < kShortRun) {
      // Where stops are close together, trying costs more than it gains.
      patience_ = std::min(2 * patience_ + 1, kMostSingly);
      singly_ = patience_;
    } else {
      patience_ = 0;
    }
    return run.characters;
  }

  // Masks characters of a single byte, whatever length they become, up to the
  // first longer one. Returns their number, at most `most`; one of those to be
  // taken singly is always left.
  Offset mask_bytes(Offset end, Offset most) {
    const std::int32_t* const ascii = table_ ? table_->ascii() : nullptr;
    if (ascii == nullptr) return 0;
    most = std::min({most, singly_ - 1, end - position_,
                     output_.room() / kLongestCharacter});
    const Byte* const from = source_ + position_;
    char* const start = output_.write_position();
    char* to = start;
    Offset count = 0;
    for (; count < most && from[count] < 0x80; ++count) {
      to += unpack(ascii[from[count]], to);
    }
    output_.advance(to - start);
    position_ += count;
    singly_ -= count;
    if (output_.in_use() != position_) copies_ahead_ = false;
    return count;
  }

  // Maps a character at which a run has stopped. When much is still to come,
  // more such characters will.
  std::int32_t map_singly(std::int32_t character) {
    if (!maps_longer_ && size_ - position_ >= kWorthMapping) {
      map_longer(mask_, map_);
      maps_longer_ = true;
      patience_ = singly_ = 0;
    }
    if (!table_) table_.emplace(mask_, size_ - position_);
    return table_->map(character);
  }

  // Writes a mapped character that stands for `source_length` bytes.
  bool write(std::int32_t mapped, Offset source_length) {
    if (output_.room() < kLongestCharacter) {
      char bytes[kLongestCharacter];
      const Offset length = unpack(mapped, bytes);
      if (!make_room(length, source_length)) return false;
      output_.append(bytes, length);
    } else {
      output_.advance(unpack(mapped, output_.write_position()));
    }
    return true;
  }

  // Makes room for `needed` bytes that stand for the next `source_length` of
  // the source, with all that follows and some slack when it has to grow.
  bool make_room(Offset needed, Offset source_length) {
    if (needed <= output_.room()) return true;
    const Offset least = output_.in_use() + needed;
    const Offset to_come = size_ - position_ - source_length;
    const Offset slack =
        std::clamp<Offset>(output_.capacity() / 4, 64, 1'000'000);
    return least <= kMaxLong &&
           output_.resize(std::min(least + to_come + slack, kMaxLong));
  }

  static constexpr Offset kStretch = 65536;
  static constexpr Offset kShortRun = 16;
  static constexpr Offset kMostSingly = 32;

  ActiveBlock& output_;
  Mask mask_;
  CharacterMap map_;
  bool maps_longer_ = false;
  bool copies_ahead_ = false;       // until source and output differ in length
  std::optional<MaskTable> table_;  // for single characters
  const Byte* source_;
  Offset size_;  // where the part of the source to be rewritten ends
  Offset position_ = 0;
  Offset copied_ = 0;  // how far the source lies in the output, copied ahead
  Offset singly_ = 0;  // characters until the next run is tried
  Offset patience_ = 0;
};

bool is_refused(QuillBlock source, const Mask& mask) {
  return source == nullptr || mask.keys == nullptr || mask.values == nullptr ||
         mask.count == 0;
}

// Whether a selection reaches past the text; one that starts before it or ends
// before it starts is merely cut.
bool any_beyond(const std::int32_t* longs, std::int32_t long_count,
                Offset size) {
  if (long_count < 2) return false;
  if (longs == nullptr) return true;
  const std::int32_t* end = longs + (long_count & ~1);
  return std::any_of(longs, end,
                     [size](std::int32_t offset) { return offset > size; });
}

// Whether selections are short, or few, so that it pays to copy what lies
// between them with them.
bool is_worth_copying(std::span<const Selection> selections, Offset size) {
  constexpr Offset kShort = 128;
  Offset selected = 0;
  for (const Selection& selection : selections) selected += selection.length();
  return selected < std::max(size / 4, kShort * std::ssize(selections));
}

bool mask_selections(MaskedText& text, Offset size,
                     std::span<const Selection> selections, YieldMeter meter) {
  if (is_worth_copying(selections, size)) text.copy_ahead();
  for (std::size_t next = 0; next < selections.size();) {
    next += static_cast<std::size_t>(
        text.mask_many(selections.subspan(next), meter));
    if (next == selections.size()) break;
    const Selection& selection = selections[next++];
    const auto consumed = static_cast<Offset>(2 * next);  // longs
    if (!text.copy_until(selection.start)) return false;
    // A stop takes effect once the selection is done, unless the host is asked
    // again in it and answers true.
    if (!text.mask_until(
            selection.end, meter, [] { return true; },
            [consumed] { return consumed; })) {
      return false;
    }
    if (!meter.go_on()) break;
  }
  return text.copy_until(size);
}

}  // namespace

std::int32_t utf8_MaskString(QuillBlock source, std::int32_t start,
                             std::int32_t end, const std::int32_t* mask_keys,
                             const std::int32_t* mask_values,
                             std::int32_t mask_count, QuillBlock* output,
                             std::int32_t /*ignored*/, std::int32_t reference,
                             QuillYield yield) {
  const Mask mask{mask_keys, mask_values, mask_count};
  if (start < 0 || end <= start || is_refused(source, mask) ||
      end > GetHandleSize(source)) {
    return 0;
  }
  ActiveBlock masked(end - start);
  *output = masked.block();
  if (!masked.alive()) return 0;

  const BlockLock lock(source);
  MaskedText text(lock.bytes(), end, mask, masked);
  text.skip_to(start);
  YieldMeter meter(reference, yield);
  if (!text.mask_until(
          end, meter, [&meter] { return meter.go_on(); },
          [&text] { return text.position(); })) {
    return 0;
  }
  *output = masked.finish();
  return 1;
}

std::int32_t utf8_MaskStringSelection(
    QuillBlock source, const std::int32_t* selections, std::int32_t long_count,
    const std::int32_t* mask_keys, const std::int32_t* mask_values,
    std::int32_t mask_count, QuillBlock* output, std::int32_t reference,
    QuillYield yield) {
  const Mask mask{mask_keys, mask_values, mask_count};
  const std::int32_t size = GetHandleSize(source);
  if (size < 1 || is_refused(source, mask) ||
      any_beyond(selections, long_count, size)) {
    return 0;
  }
  ActiveBlock masked(size);
  *output = masked.block();
  if (!masked.alive()) return 0;

  const BlockLock lock(source);
  MaskedText text(lock.bytes(), size, mask, masked);
  const std::span<const std::int32_t> longs(
      selections, static_cast<std::size_t>(std::max(long_count, 0) & ~1));
  if (!mask_selections(text, size, selections_of(longs),
                       YieldMeter(reference, yield))) {
    return 0;
  }
  *output = masked.finish();
  return 1;
}

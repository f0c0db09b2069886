// Rewriting text through a mask into a new Block.
//
// Characters are written one after the other into an output that starts at the
// size of the source and grows when mapped characters are longer. Only its
// final size can be seen, so it grows for all that is still to come, not in
// small steps.
#include <algorithm>
#include <cstring>

#include "blocks/active_block.h"
#include "blocks/block_lock.h"
#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "selection/selection_list.h"
#include "utf8/ascii_map.h"
#include "utf8/characters.h"
#include "utf8/mask_table.h"

using namespace quill;

namespace {

constexpr Offset kLongestCharacter = 4;

// Bytes of text that pay for preparing more than the mask's ASCII table.
constexpr Offset kLongText = 4096;

class MaskedText {
 public:
  MaskedText(const Byte* source, Offset size, const Mask& mask,
             ActiveBlock& output)
      : output_(output),
        mask_(mask, size),
        ascii_(mask_.ascii()),
        source_(source),
        size_(size) {
    if (size >= kLongText) {
      ascii_.find_ranges();
      mask_.prepare_longer();
    }
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
      meter.skip(mask_in_place(end, meter.units_left() - 1));
      if (position_ == end) break;
      const Character read = read_next(source_, position_, end);
      if (!read.found || !write(mask_.map(read.packed), read.length())) {
        return false;
      }
      position_ = read.next;
      meter.tick(progress());
    }
    return true;
  }

  // Copies the source up to `end` unchanged. False when the output can't grow.
  [[nodiscard]] bool copy_until(Offset end) {
    const Offset byte_count = end - position_;
    if (byte_count <= 0) return true;
    if (!make_room(byte_count, byte_count)) return false;
    output_.append(source_ + position_, byte_count);
    position_ = end;
    return true;
  }

 private:
  // Masks characters as long as each keeps its length, whatever it maps to:
  // input and output then advance alike. Returns their number, at most `most`.
  Offset mask_in_place(Offset end, Offset most) {
    const Byte* from = source_ + position_;
    char* to = output_.write_position();
    const Offset limit = std::min(end - position_, output_.room());
    Offset at = 0;
    Offset characters = 0;
    while (characters < most && at < limit) {
      Offset run = 0;  // characters done
      const Offset left = most - characters;
      if (from[at] < 0x80) {
        run = ascii_.map(from + at, to + at, std::min(limit - at, left));
        at += run;
      } else if (from[at] < 0xE0) {
        run = mask_pairs(from + at, to + at, std::min((limit - at) / 2, left));
        at += 2 * run;
      } else {
        const Offset length = copy_longer(from + at, to + at, limit - at);
        run = length == 0 ? 0 : 1;
        at += length;
      }
      if (run == 0) break;
      characters += run;
    }
    output_.advance(at);
    position_ += at;
    return characters;
  }

  // Masks well-formed characters of two bytes as long as each maps to two.
  // Returns their number, at most `most`.
  Offset mask_pairs(const Byte* from, char* to, Offset most) const {
    if (!mask_.has_longer()) return 0;
    Offset done = 0;
    for (; done < most; ++done) {
      const Byte lead = from[2 * done];
      const Byte second = from[2 * done + 1];
      if ((lead & 0xE0) != 0xC0 || !is_continuation(second)) break;
      // Two bytes are written for values from 0x100 to 0xFFFF.
      const auto bits =
          static_cast<std::uint32_t>(mask_.map_two_bytes(lead, second));
      if (bits - 0x100 > 0xFEFF) break;
      to[2 * done] = static_cast<char>(bits);
      to[2 * done + 1] = static_cast<char>(bits >> 8);
    }
    return done;
  }

  // Copies the well-formed character of three or four bytes at `from` if no
  // key can be equal to it. Returns its length, else 0.
  Offset copy_longer(const Byte* from, char* to, Offset room) const {
    const Offset length = length_from_lead(from[0]);
    if (!mask_.has_longer() || length > room) return 0;
    for (Offset i = 1; i < length; ++i) {
      if (!is_continuation(from[i])) return 0;
    }
    if (!mask_.begins_no_key(from[0], from[1])) return 0;
    std::memcpy(to, from, 3);
    to[length - 1] = static_cast<char>(from[length - 1]);
    return length;
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

  ActiveBlock& output_;
  MaskTable mask_;
  AsciiMap ascii_;
  const Byte* source_;
  Offset size_;  // where the part of the source to be rewritten ends
  Offset position_ = 0;
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

bool mask_selections(MaskedText& text, Offset size,
                     std::span<const Selection> selections, YieldMeter meter) {
  Offset consumed = 0;  // longs
  for (const Selection& selection : selections) {
    consumed += 2;
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

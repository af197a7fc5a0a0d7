// Runs: the maximal stretches of pixels of one kind along a line.
//
// A line has a start, a count and a stride, so that rows and columns share their code.

#ifndef NUV_CORE_RUNS_H
#define NUV_CORE_RUNS_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/views.h"

namespace nuv {

struct Line {
  uint8_t* start;
  int32_t count;
  std::ptrdiff_t stride;

  uint8_t& operator[](int32_t i) const { return start[i * stride]; }
  void fill(int32_t first, int32_t last, uint8_t value) const {
    if (stride == 1 && first <= last) {
      std::memset(start + first, value, static_cast<std::size_t>(last) - static_cast<std::size_t>(first) + 1);
      return;
    }
    for (int32_t i = first; i <= last; ++i) start[i * stride] = value;
  }
};

// Parallel lines of an image: all rows or all columns of a region, which must lie in the image.
struct Lines {
  uint8_t* start;
  int32_t count;   // lines
  int32_t length;  // pixels per line
  std::ptrdiff_t to_next_line;
  std::ptrdiff_t stride;

  Line operator[](int32_t i) const { return {start + i * to_next_line, length, stride}; }
};

inline Lines rows_of(GrayImage image, Region region) {
  if (image.empty() || region.empty()) return {};
  return {image.at(region.x1, region.y1), region.rows(), region.columns(), image.width, 1};
}
inline Lines columns_of(GrayImage image, Region region) {
  if (image.empty() || region.empty()) return {};
  return {image.at(region.x1, region.y1), region.columns(), region.rows(), 1, image.width};
}
inline Lines rows_of(GrayImage image) {
  return rows_of(image, image.whole());
}
inline Lines columns_of(GrayImage image) {
  return columns_of(image, image.whole());
}

// Eight pixels of a row are compared at once as one number, whose lowest byte must be the first pixel.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
constexpr bool kLowestByteFirst = false;
#else
constexpr bool kLowestByteFirst = true;
#endif

// Whether one of eight pixels of a row has the value. This does not depend on the order of the bytes.
inline bool any_of_eight(const uint8_t* pixels, uint8_t value) {
  constexpr uint64_t kOnes = 0x0101010101010101;
  constexpr uint64_t kTopBits = 0x8080808080808080;
  uint64_t eight;
  std::memcpy(&eight, pixels, 8);
  eight ^= value * kOnes;
  return ((eight - kOnes) & ~eight & kTopBits) != 0;
}

// Searches a line. Pixels of the threshold and above are bright, the others are dark.
class Brightness {
 public:
  explicit Brightness(int32_t threshold)
      : threshold_(threshold),
        low_bits_(static_cast<uint64_t>(threshold & 127) * kOnes),
        has_top_bit_(threshold > 127 ? ~uint64_t{0} : 0) {}

  // The first place from i on whose pixel is bright, or dark; the count if there is none.
  int32_t next_bright(Line line, int32_t i) const { return next<true>(line, i); }
  int32_t next_dark(Line line, int32_t i) const { return next<false>(line, i); }

 private:
  static constexpr uint64_t kOnes = 0x0101010101010101;
  static constexpr uint64_t kTopBits = 0x8080808080808080;

  // Sets the top bit of each bright pixel of eight, for a threshold from 1 to 255. The difference compares
  // the lower seven bits; the top bits keep a byte from borrowing from the next.
  uint64_t bright_flags(const uint8_t* pixels) const {
    uint64_t eight;
    std::memcpy(&eight, pixels, 8);
    const uint64_t low_reached = (eight | kTopBits) - low_bits_;
    return ((eight & low_reached) | ((eight | low_reached) & ~has_top_bit_)) & kTopBits;
  }

  // The number of the lowest byte with a flag. The bytes of the factor are these numbers, and the product
  // moves the right one to the top.
  static int32_t lowest_flag(uint64_t flags) {
    return static_cast<int32_t>(((flags & (0 - flags)) >> 7) * 0x0001020304050607 >> 56);
  }

  template <bool Bright>
  int32_t next(Line line, int32_t i) const {
    if (kLowestByteFirst && line.stride == 1 && threshold_ >= 1 && threshold_ <= 255) {
      for (; i + 8 <= line.count; i += 8) {
        const uint64_t flags = bright_flags(line.start + i) ^ (Bright ? 0 : kTopBits);
        if (flags != 0) return i + lowest_flag(flags);
      }
    }
    while (i < line.count && (line[i] >= threshold_) != Bright) ++i;
    return i;
  }

  int32_t threshold_;
  uint64_t low_bits_;
  uint64_t has_top_bit_;  // all ones if the threshold is 128 or more, else 0
};

// The first place from i on whose pixel is 0 (black) or not 0 (white); the count if there is none.
inline int32_t next_black(Line line, int32_t i) {
  return Brightness(1).next_dark(line, i);
}
inline int32_t next_white(Line line, int32_t i) {
  return Brightness(1).next_bright(line, i);
}

// Both functions call action(first, last) for the runs of a line in ascending order, both ends inclusive. The
// action may change the pixels of its run.
template <class Action>
void for_white_runs(Line line, Action action) {
  for (int32_t i = next_white(line, 0); i < line.count;) {
    const int32_t end = next_black(line, i);
    action(i, end - 1);
    i = next_white(line, end);
  }
}
template <class Action>
void for_black_runs(Line line, Action action) {
  for (int32_t i = next_black(line, 0); i < line.count;) {
    const int32_t end = next_white(line, i);
    action(i, end - 1);
    i = next_black(line, end);
  }
}
// Calls action(first, last) for runs that start with a pixel of at least start and continue with pixels of at
// least threshold. The action may change any pixel.
template <class Action>
void for_bright_runs(Line line, int32_t start, int32_t threshold, Action action) {
  const Brightness starts(start);
  const Brightness goes_on(threshold);
  for (int32_t i = starts.next_bright(line, 0); i < line.count;) {
    const int32_t end = goes_on.next_dark(line, i + 1);
    action(i, end - 1);
    i = starts.next_bright(line, end);
  }
}

// A length limit that changes linearly down an image, from at_top at y = 0 to at_bottom at y = span. If span
// is 0 or less, it is at_top everywhere.
inline int32_t limit_at(int32_t y, int32_t span, int32_t at_top, int32_t at_bottom) {
  return (span > 0 ? (at_bottom - at_top) * y / span : 0) + at_top;
}

}  // namespace nuv

#endif

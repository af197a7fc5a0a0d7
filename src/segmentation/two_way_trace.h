// Tracing an outer contour of the pixels above a level, without marks in the image.
//
// Every step of a trace needs the result of the step before it, so a processor cannot work on several steps at
// once, and it cannot foresee their directions. Two walks from the start, one along the contour and one against
// it, keep it busy. They meet halfway. Their steps have no branch that depends on the pixels.

#ifndef NUV_SEGMENTATION_TWO_WAY_TRACE_H
#define NUV_SEGMENTATION_TWO_WAY_TRACE_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "contours/trace.h"
#include "core/neighbours.h"
#include "segmentation/neighbour_bytes.h"

namespace nuv {

// Compares eight bytes with a level at once.
class BytesAbove {
 public:
  explicit BytesAbove(int32_t level)
      : to_top_bit_(kOnes * static_cast<uint64_t>(127 - level % 128)), is_low_(level < 128) {}
  // Sets the highest bit of each byte above the level, and no other bit.
  uint64_t operator()(uint64_t bytes) const {
    const uint64_t low_bits_above = (bytes & ~kTopBits) + to_top_bit_;
    return (is_low_ ? bytes | low_bits_above : bytes & low_bits_above) & kTopBits;
  }

 private:
  static constexpr uint64_t kOnes = UINT64_MAX / 255;
  static constexpr uint64_t kTopBits = 128 * kOnes;

  uint64_t to_top_bit_;
  bool is_low_;
};

class TwoWayTrace {
 public:
  // The contour begins at start, whose left neighbour is not above the level.
  TwoWayTrace(const uint8_t* start, int32_t width, int32_t level)
      : start_(start), width_(width), above_(level) {
    const auto offsets = neighbour_offsets(width);
    for (std::size_t d = 0; d < 8; ++d) {
      ahead_[d] = {offsets[d], kNextSearch[d]};
      back_[d] = {offsets[d], kNextSearchBack[d]};
    }
  }

  static constexpr int32_t kTooLong = -1;

  // Writes the codes of the contour and returns their number, or kTooLong if they exceed the capacity. Sets
  // least to the lowest value on the contour.
  int32_t run(uint8_t* codes, int32_t capacity, uint8_t& least) const {
    least = *start_;
    if (directions_at(start_) == 0) return 0;
    uint8_t* end = codes;               // of the codes from the start on
    uint8_t* begin = codes + capacity;  // of the codes up to the start
    Walk ahead{start_, 5};
    Walk back{start_, 3};
    uint8_t lowest = *start_;
    for (;;) {
      const unsigned next = first_counter_clockwise(directions_at(ahead.pixel), ahead.search);
      if (ahead.pixel == back.pixel && next == opposite(back.last)) break;
      if (end == begin) return kTooLong;
      *end++ = static_cast<uint8_t>(next);
      ahead.go(next, ahead_[next]);
      lowest = std::min(lowest, *ahead.pixel);

      const unsigned previous = first_clockwise(directions_at(back.pixel), back.search);
      if (ahead.pixel == back.pixel && previous == opposite(ahead.last)) break;
      if (end == begin) return kTooLong;
      *--begin = static_cast<uint8_t>(opposite(previous));
      back.go(previous, back_[previous]);
      lowest = std::min(lowest, *back.pixel);
    }
    least = lowest;
    const std::ptrdiff_t rest = codes + capacity - begin;
    std::memmove(end, begin, static_cast<std::size_t>(rest));
    return static_cast<int32_t>(end - codes + rest);
  }

 private:
  static constexpr unsigned kNoDirection = 16;
  // Where the clockwise search begins after a step against the contour: the mirror image of kNextSearch.
  static constexpr std::array<uint8_t, 8> kNextSearchBack = {1, 3, 3, 5, 5, 7, 7, 1};

  // What a step in one direction changes.
  struct Step {
    std::ptrdiff_t offset;
    unsigned search;
  };
  struct Walk {
    const uint8_t* pixel;
    unsigned search;  // the direction in which the search for the next pixel begins
    unsigned last = kNoDirection;

    void go(unsigned direction, const Step& step) {
      pixel += step.offset;
      search = step.search;
      last = direction;
    }
  };

  static unsigned opposite(unsigned direction) { return direction ^ 4; }
  static unsigned first_counter_clockwise(uint64_t directions, unsigned from) {
    const unsigned shift = 8 * from;
    return (from + lowest_byte(directions >> shift | directions << (-shift & 63))) & 7;
  }
  static unsigned first_clockwise(uint64_t directions, unsigned from) {
    const unsigned shift = 8 * (7 - from);
    return (from + 1 + highest_byte(directions << shift | directions >> (-shift & 63))) & 7;
  }
  // A byte for each direction, which is 0 unless the neighbour is above the level.
  uint64_t directions_at(const uint8_t* pixel) const {
    return above_(unchanged_neighbours_of(pixel, width_));
  }

  const uint8_t* start_;
  std::ptrdiff_t width_;
  BytesAbove above_;
  std::array<Step, 8> ahead_;
  std::array<Step, 8> back_;
};

}  // namespace nuv

#endif

// The tracer, and the scan that finds where contours start.

#ifndef NUV_CONTOURS_TRACE_H
#define NUV_CONTOURS_TRACE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "contours/marks.h"
#include "core/neighbours.h"
#include "core/views.h"

namespace nuv {

// Where the search for the next contour pixel begins after a step in direction d. The neighbours in the
// directions before it have been examined from the previous pixel.
constexpr std::array<uint8_t, 8> kNextSearch = {7, 7, 1, 1, 3, 3, 5, 5};

// Follows the contour from start. Calls is_object() for each neighbour that it examines, visit() for each
// pixel that it reaches, the start included, and store() with the code of each step. The search at the start
// leaves out one neighbour, which is known to be background: the left one for an outer contour, the right one
// for a hole.
template <class Pixel, class IsObject, class Visit, class Store>
void follow_contour(Pixel* start, int32_t width, bool is_outer, IsObject is_object, Visit visit,
                    Store store) {
  const std::array<std::ptrdiff_t, 8> offset = neighbour_offsets(width);
  const unsigned first = is_outer ? 5 : 1;

  // Examines at most count neighbours of p, from direction c on, until one is an object.
  const auto search = [&offset, is_object](Pixel* p, unsigned& c, unsigned count) {
    for (; count > 0; --count, c = (c + 1) & 7) {
      if (is_object(p[offset[c]])) return true;
    }
    return false;
  };

  Pixel* p = start;
  unsigned c = first;
  for (;;) {
    visit(*p);
    if (!search(p, c, 7)) return;  // a lone pixel
    store(static_cast<uint8_t>(c));
    p += offset[c];
    if (p == start) {
      // Back at the start. The search from here covers seven directions. The walk goes on if one of those
      // after the way back holds an object.
      const unsigned way_back = (c + 4) & 7;
      const unsigned examined = ((way_back - first) & 7) + 1;
      c = (way_back + 1) & 7;
      if (examined >= 7 || !search(p, c, 7 - examined)) return;
      store(static_cast<uint8_t>(c));
      p += offset[c];
    }
    c = kNextSearch[c];
  }
}

// Traces the contour from start and marks it, handing each code to store().
template <class Store>
void trace_contour(uint8_t* start, int32_t width, bool is_outer, Store store) {
  start[is_outer ? -1 : 1] = kExaminedBackground;
  const auto is_object = [](uint8_t& pixel) {
    if (pixel >= kLeastObject) return true;
    pixel = kExaminedBackground;
    return false;
  };
  const auto mark = [](uint8_t& pixel) { pixel = kTracedContour; };
  follow_contour(start, width, is_outer, is_object, mark, store);
}

// Stores the codes of a trace while they fit.
class ChainSink {
 public:
  // A buffer of capacity bytes takes capacity - 1 codes.
  ChainSink(uint8_t* codes, int32_t capacity) : codes_(codes), limit_(capacity > 0 ? capacity - 1 : 0) {}
  void operator()(uint8_t code) {
    if (count_ < limit_) {
      codes_[count_++] = code;
    } else {
      cut_ = true;
    }
  }
  int32_t count() const { return count_; }
  bool cut() const { return cut_; }

 private:
  uint8_t* codes_;
  int32_t limit_;
  int32_t count_ = 0;
  bool cut_ = false;
};

struct ContourStart {
  int32_t x;
  int32_t y;
  bool is_outer;
};

// Calls action(x, pixel, left) where a pixel differs from the one before it. The action may change the image;
// the scan reads the changed values.
template <class Action>
void scan_row_for_pairs(GrayImage image, int32_t y, int32_t first, int32_t last, Action action) {
  const uint8_t* row = image.row(y);
  int32_t x = first;
  while (x <= last) {
    // Steps over eight pixels at once if each equals the one before it.
    while (x + 7 <= last && std::memcmp(row + x, row + x - 1, 8) == 0) x += 8;
    for (const int32_t end = x + 7 <= last ? x + 7 : last; x <= end; ++x) {
      const uint8_t pixel = row[x];
      const uint8_t left = row[x - 1];
      if (pixel != left) action(x, pixel, left);
    }
  }
}

// The modes of NuvGetContours that leave contours out.
enum ContourMode : int32_t { kOuterOnly = 1, kInnerOnly = 2 };

// Whether a pair of neighbours starts an untraced contour. A pixel of exactly 255 after background starts the
// outer contour of an object. A pixel of exactly 0 after an object pixel starts the contour of a hole, at the
// object pixel.
inline bool starts_outer(uint8_t pixel, uint8_t left, uint8_t background_limit = kBackgroundLimit) {
  return pixel == 255 && left < background_limit;
}
inline bool starts_inner(uint8_t pixel, uint8_t left) {
  return pixel == 0 && left > kGreatestUnreserved;
}

// The index of the first of n pixels at which a contour starts, or n. Also reads the pixel before the first.
std::ptrdiff_t first_start(const uint8_t* pixels, std::ptrdiff_t n, uint8_t background_limit);

// The contour scan of one row: calls action(ContourStart) where an untraced contour starts. The action traces
// the contour, and the scan reads its marks.
template <class Action>
void scan_row_for_contours(GrayImage image, int32_t y, int32_t first, int32_t last, Action action,
                           uint8_t background_limit = kBackgroundLimit) {
  for (int32_t x = first; x <= last; ++x) {
    x += static_cast<int32_t>(first_start(image.at(x, y), last - x + 1, background_limit));
    if (x > last) return;
    const bool is_outer = *image.at(x, y) == 255;
    action(ContourStart{is_outer ? x : x - 1, y, is_outer});
  }
}

// Makes the region of a traced image binary again.
void restore_binary(GrayImage image, Region region);

}  // namespace nuv

#endif

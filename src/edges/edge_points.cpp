// Edges reduced to points and numbers: the strongest pixels of rows and columns, and the votes of gray levels
// around edge pixels.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "frame/arithmetic.h"
#include "frame/byte_counter.h"
#include "frame/column_strips.h"
#include "frame/row_kernel.h"
#include "frame/runs.h"
#include "frame/views.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

// A stretch of a row or a column, from an absolute place on.
struct Stretch {
  Line line;
  int32_t first;
};

Stretch row_stretch(GrayImage image, int32_t y, int32_t x1, int32_t x2) {
  return {{image.at(x1, y), x2 < x1 ? 0 : x2 - x1 + 1, 1}, x1};
}

Stretch column_stretch(GrayImage image, int32_t x, int32_t y1, int32_t y2) {
  return {{image.at(x, y1), y2 < y1 ? 0 : y2 - y1 + 1, image.width}, y1};
}

// Nothing nearer than this to the strongest pixel is taken for a second one.
constexpr int32_t kApart = 10;

// The places of the two strongest pixels, in order; twice the same where there is no second one, and -1 where
// all is 0. Of equals the first is found from the front, and the second from the back.
std::pair<int32_t, int32_t> strongest_two(const Stretch& stretch) {
  int32_t first = -1;
  uint8_t most = 0;
  for (int32_t i = 0; i < stretch.line.count; ++i) {
    if (stretch.line[i] > most) {
      most = stretch.line[i];
      first = stretch.first + i;
    }
  }
  int32_t second = first;
  most = 0;
  for (int32_t i = stretch.line.count - 1; i >= 0; --i) {
    const int32_t place = stretch.first + i;
    const bool apart = place < first - kApart || place > first + kApart;
    if (apart && stretch.line[i] > most) {
      most = stretch.line[i];
      second = place;
    }
  }
  return std::minmax(first, second);
}

NUV_ROW_KERNEL uint8_t greatest_value(const uint8_t* pixels, std::ptrdiff_t n) {
  uint8_t most = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) most = greater(most, pixels[i]);
  return most;
}

// The first place with the greatest value of those from begin to end - 1, or -1 where all are 0.
struct Peak {
  int32_t place;
  uint8_t value;
};
Peak peak_of(Line line, int32_t begin, int32_t end) {
  uint8_t most = 0;
  if (line.stride == 1) {
    most = greatest_value(line.start + begin, std::max(end - begin, 0));
  } else {
    for (int32_t i = begin; i < end; ++i) most = greater(most, line[i]);
  }
  return {most == 0 ? -1 : Brightness(most).next_bright(line, begin), most};
}

// The peak of a line, and that of its places at least min_gap from there; the same one if there is no second.
std::pair<int32_t, int32_t> two_peaks(Line line, int32_t min_gap) {
  const int32_t first = peak_of(line, 0, line.count).place;
  if (first < 0 || min_gap <= 0) return {first, first};
  min_gap = std::min(min_gap, line.count);
  const Peak before = peak_of(line, 0, first - min_gap + 1);
  const Peak behind = peak_of(line, first + min_gap, line.count);
  const int32_t second = behind.value > before.value ? behind.place : before.place;
  return {first, second < 0 ? first : second};
}

struct PairsOfPoints {
  int32_t* left;
  int32_t* right;
  int32_t* top;
  int32_t* bottom;

  // An empty row takes what the host left in the bottom entry of the row's number.
  void store_row(int32_t y, std::pair<int32_t, int32_t> two) const {
    left[y] = two.first < 0 ? bottom[y] : two.first;
    right[y] = two.second;
  }
  void store_column(int32_t x, std::pair<int32_t, int32_t> two) const {
    bottom[x] = two.second;
    top[x] = two.first < 0 ? bottom[x] : two.first;
  }
};

// The ends of an ellipse's stretch: the distance from the centre line to both sides.
struct Ends {
  int32_t low;
  int32_t high;
};

// At offset from the centre along an axis of half length along; the stretch lies across. Without a length
// there is no curve, and an empty stretch.
Ends ellipse_ends(int32_t center, int32_t offset, int32_t along, int32_t across) {
  const double half = along;
  const double d = std::sqrt(along * along - static_cast<double>(offset) * offset) * (across / half);
  const Ends ends{truncated(center - d + 0.5), truncated(center + 0.5 + d)};
  if (ends.low == kNoInteger || ends.high == kNoInteger) return {0, -1};
  return ends;
}

// The samples around an edge pixel, as steps from it.
constexpr std::array<Point, 7> kSamples = {{{1, 0}, {2, -1}, {2, -2}, {1, -3}, {0, -3}, {-1, -2}, {-1, -1}}};

enum VoteMode : int32_t { kDarkSide = 1, kBrightSide = 2 };

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvExtractTwoEdgePointPerCol(uint8_t* pGrdImg, int32_t width, int32_t minGap, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t* pFirst, int32_t* pSecond) {
  for (int32_t x = 0; x < width; ++x) pFirst[x] = pSecond[x] = 0;
  const GrayImage image = image_of_any_height<1>(pGrdImg, width);
  const int32_t top = y1 + 1;
  if (x1 > x2 || top >= y2) return;
  int32_t x = x1;
  for_column_strips({image.at(x1, top), x2 - x1 + 1, y2 - top, 1, width}, [&](Lines strip) {
    for (int32_t i = 0; i < strip.count; ++i, ++x) {
      const auto [first, second] = two_peaks(strip[i], minGap);
      if (first < 0) continue;
      pFirst[x] = top + std::min(first, second);
      pSecond[x] = top + std::max(first, second);
    }
  });
}

void NuvExtractEdgePointInRect(uint8_t* pGrdImg, int32_t width, int32_t x1, int32_t y1, int32_t x2,
                               int32_t y2, int32_t* pLeft, int32_t* pRight, int32_t* pTop, int32_t* pBottom) {
  const GrayImage image = image_of_any_height<1>(pGrdImg, width);
  const PairsOfPoints points{pLeft, pRight, pTop, pBottom};
  for (int32_t y = y1; y <= y2; ++y) points.store_row(y, strongest_two(row_stretch(image, y, x1, x2)));
  for (int32_t x = x1; x <= x2; ++x) points.store_column(x, strongest_two(column_stretch(image, x, y1, y2)));
}

void NuvExtractEdgePointInCircle(uint8_t* pGrdImg, int32_t width, int32_t cx, int32_t cy, int32_t rx,
                                 int32_t ry, int32_t* pLeft, int32_t* pRight, int32_t* pTop,
                                 int32_t* pBottom) {
  const GrayImage image = image_of_any_height<1>(pGrdImg, width);
  const PairsOfPoints points{pLeft, pRight, pTop, pBottom};
  for (int32_t y = cy - ry; y <= cy + ry; ++y) {
    const Ends ends = ellipse_ends(cx, y - cy, ry, rx);
    points.store_row(y, strongest_two(row_stretch(image, y, ends.low, ends.high)));
  }
  for (int32_t x = cx - rx; x <= cx + rx; ++x) {
    const Ends ends = ellipse_ends(cy, x - cx, rx, ry);
    points.store_column(x, strongest_two(column_stretch(image, x, ends.low, ends.high)));
  }
}

int32_t NuvGetThresholdByEdge(uint8_t* pGryImg, uint8_t* pEdgeImg, int32_t width, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, int32_t mode) {
  const GrayImage gray = image_of_any_height<1>(pGryImg, width);
  const GrayImage edges = image_of_any_height<1>(pEdgeImg, width);
  Histogram votes{};
  for (int32_t y = y1 + 1; y < y2; ++y) {
    for (int32_t x = x1 + 1; x < x2; ++x) {
      if (*edges.at(x, y) == 0) continue;
      const uint8_t center = *gray.at(x, y);
      uint8_t low = center;
      uint8_t high = center;
      for (const Point& sample : kSamples) {
        const uint8_t value = *gray.at(x + sample.x, y + sample.y);
        low = std::min(low, value);
        high = std::max(high, value);
      }
      const int32_t first = mode == kBrightSide ? center : low;
      const int32_t last = mode == kDarkSide ? center : high;
      for (int32_t v = first; v <= last; ++v) ++votes[v];
    }
  }
  return static_cast<int32_t>(std::max_element(votes.begin(), votes.end()) - votes.begin());
}

// Edges reduced to points and numbers: the strongest pixels of rows and columns, and a threshold voted for by
// the gray values around edge pixels.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <tuple>
#include <utility>

#include "core/arithmetic.h"
#include "core/byte_counter.h"
#include "core/row_kernel.h"
#include "core/runs.h"
#include "core/views.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

constexpr int32_t kNowhere = -1;

// The places of the two strongest pixels, in rising order.
using Two = std::pair<int32_t, int32_t>;

// The second pixel lies farther than this from the strongest one.
constexpr int32_t kApart = 10;

// A stretch of a row or a column, both ends inclusive.
struct Ends {
  int32_t low;
  int32_t high;
};

// ---- rows ----

NUV_ROW_KERNEL uint8_t greatest_of(const uint8_t* p, std::ptrdiff_t n) {
  uint8_t greatest = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) greatest = greater(greatest, p[i]);
  return greatest;
}

// The two strongest pixels from x1 to x2: twice the same if there is no second one, and kNowhere if all are
// 0. Ties go to the first pixel, and for the second one to the last.
Two strongest_two_in_row(GrayImage image, int32_t y, int32_t x1, int32_t x2) {
  if (x2 < x1) return {kNowhere, kNowhere};
  const uint8_t* row = image.row(y);
  const uint8_t* begin = row + x1;
  const uint8_t* end = row + x2 + 1;
  const uint8_t most = greatest_of(begin, end - begin);
  if (most == 0) return {kNowhere, kNowhere};
  const uint8_t* first = std::find(begin, end, most);
  const uint8_t* left_end = first - std::min<std::ptrdiff_t>(kApart, first - begin);
  const uint8_t* right = first + std::min<std::ptrdiff_t>(kApart + 1, end - first);
  const uint8_t next = greater(greatest_of(begin, left_end - begin), greatest_of(right, end - right));
  const uint8_t* second = first;
  if (next != 0) {
    second = end - 1;
    while (*second != next || (second >= left_end && second < right)) --second;
  }
  return std::minmax(static_cast<int32_t>(first - row), static_cast<int32_t>(second - row));
}

// ---- columns ----
//
// The columns of a strip are searched side by side, in memory order. Rows are taken in blocks, so that a row
// number within a block fits in a byte.

constexpr int32_t kStrip = 1024;
constexpr int32_t kRowsPerBlock = 255;

// A stretch of rows for each column of a strip, from first to end - 1.
struct Stretches {
  std::array<int32_t, kStrip> first;
  std::array<int32_t, kStrip> end;
};

// The same stretches by row numbers within a block.
struct BlockStretches {
  std::array<uint8_t, kStrip> first;
  std::array<uint8_t, kStrip> end;

  void cut(const Stretches& stretches, int32_t top, int32_t n) {
    const auto in_block = [=](int32_t y) {
      return static_cast<uint8_t>(std::clamp<int64_t>(int64_t{y} - top, 0, kRowsPerBlock));
    };
    for (int32_t i = 0; i < n; ++i) {
      first[i] = in_block(stretches.first[i]);
      end[i] = in_block(stretches.end[i]);
    }
  }
};

// Updates the strongest pixel of each column and its place with row y of the block. Only pixels in the
// stretch of their column and outside its gap count. Ties go to the first row, or to the last one if
// last_wins.
NUV_ROW_KERNEL void note_stronger(const uint8_t* row, const BlockStretches& searched,
                                  const BlockStretches& gaps, uint8_t y, bool last_wins,
                                  uint8_t* NUV_RESTRICT most, uint8_t* NUV_RESTRICT places, int32_t n) {
  const uint8_t* searched_first = searched.first.data();
  const uint8_t* searched_end = searched.end.data();
  const uint8_t* gap_first = gaps.first.data();
  const uint8_t* gap_end = gaps.end.data();
  const uint8_t ties_win = last_wins ? 255 : 0;
  for (int32_t i = 0; i < n; ++i) {
    const uint8_t outside = ((y < searched_first[i]) | (y >= searched_end[i])) ? 255 : 0;
    const uint8_t in_gap = ((y >= gap_first[i]) & (y < gap_end[i])) ? 255 : 0;
    const auto value = static_cast<uint8_t>(row[i] & ~(outside | in_gap));
    const uint8_t stronger = value > most[i] ? 255 : 0;
    const uint8_t tie = ((value == most[i]) & (value != 0)) ? 255 : 0;
    const auto wins = static_cast<uint8_t>(stronger | (tie & ties_win));
    most[i] = greater(most[i], value);
    places[i] = static_cast<uint8_t>((y & wins) | (places[i] & ~wins));
  }
}

// Finds the strongest pixel of n columns from x on, within the stretch of each and outside its gap. Columns
// where all of these are 0 keep their entry in found.
void strongest_in_columns(GrayImage image, int32_t x, int32_t n, const Stretches& searched,
                          const Stretches& gaps, bool last_wins, std::array<int32_t, kStrip>& found) {
  int32_t y1 = INT32_MAX;
  int32_t y_end = INT32_MIN;
  for (int32_t i = 0; i < n; ++i) {
    if (searched.first[i] >= searched.end[i]) continue;
    y1 = std::min(y1, searched.first[i]);
    y_end = std::max(y_end, searched.end[i]);
  }
  std::array<uint8_t, kStrip> strongest{};
  std::array<uint8_t, kStrip> most;
  std::array<uint8_t, kStrip> places;
  BlockStretches searched_in_block;
  BlockStretches gaps_in_block;
  for (int32_t top = y1; top < y_end; top += kRowsPerBlock) {
    const int32_t rows = std::min(kRowsPerBlock, y_end - top);
    searched_in_block.cut(searched, top, n);
    gaps_in_block.cut(gaps, top, n);
    most.fill(0);
    for (int32_t y = 0; y < rows; ++y) {
      note_stronger(image.at(x, top + y), searched_in_block, gaps_in_block, static_cast<uint8_t>(y),
                    last_wins, most.data(), places.data(), n);
    }
    for (int32_t i = 0; i < n; ++i) {
      if (most[i] < strongest[i] || most[i] == 0 || (most[i] == strongest[i] && !last_wins)) continue;
      strongest[i] = most[i];
      found[i] = top + places[i];
    }
  }
}

// Calls store(x, places) for columns x1 to x2 with the rows of the two strongest pixels of each. stretch(x)
// gives the rows to search. The second pixel lies at least apart rows from the first. If all pixels are 0,
// the first place is otherwise; if there is no second pixel, the second place is the first.
template <class Stretch, class Store>
void for_strongest_in_columns(GrayImage image, int32_t x1, int32_t x2, int32_t otherwise, int64_t apart,
                              bool last_wins, Stretch stretch, Store store) {
  const auto bounded = [](int64_t y) {
    return static_cast<int32_t>(std::clamp<int64_t>(y, INT32_MIN, INT32_MAX));
  };
  Stretches searched;
  Stretches gaps;
  std::array<int32_t, kStrip> first;
  std::array<int32_t, kStrip> second;
  for (int64_t begin = x1; begin <= x2; begin += kStrip) {
    const auto x = static_cast<int32_t>(begin);
    const auto n = static_cast<int32_t>(std::min<int64_t>(kStrip, x2 - begin + 1));
    for (int32_t i = 0; i < n; ++i) {
      const auto [low, high] = stretch(x + i);
      searched.first[i] = low;
      searched.end[i] = bounded(int64_t{high} + 1);
      gaps.first[i] = gaps.end[i] = 0;
    }
    first.fill(otherwise);
    strongest_in_columns(image, x, n, searched, gaps, false, first);
    for (int32_t i = 0; i < n; ++i) {
      gaps.first[i] = bounded(first[i] - apart + 1);
      gaps.end[i] = bounded(first[i] + apart);
    }
    second = first;
    strongest_in_columns(image, x, n, searched, gaps, last_wins, second);
    for (int32_t i = 0; i < n; ++i) store(x + i, Two(std::minmax(first[i], second[i])));
  }
}

// ---- rows and columns ----

struct PairsOfPoints {
  int32_t* left;
  int32_t* right;
  int32_t* top;
  int32_t* bottom;

  // The left entry of an empty row is the value that the caller left in the bottom entry of the same number.
  void store_row(int32_t y, Two two) const {
    left[y] = two.first < 0 ? bottom[y] : two.first;
    right[y] = two.second;
  }
  template <class Stretch>
  void store_columns(GrayImage image, int32_t x1, int32_t x2, Stretch stretch) const {
    for_strongest_in_columns(image, x1, x2, kNowhere, kApart + 1, true, stretch, [this](int32_t x, Two two) {
      bottom[x] = two.second;
      top[x] = two.first < 0 ? bottom[x] : two.first;
    });
  }
};

// The stretch that an ellipse covers across one axis, at an offset from the centre along the other. along and
// across are the half axes. If along is 0, the stretch is empty.
Ends ellipse_ends(int32_t centre, int32_t offset, int32_t along, int32_t across) {
  const double half = along;
  const double d = std::sqrt(along * along - static_cast<double>(offset) * offset) * (across / half);
  const Ends ends{truncated(centre - d + 0.5), truncated(centre + 0.5 + d)};
  if (ends.low == kNoInteger || ends.high == kNoInteger) return {0, -1};
  return ends;
}

// The least and the greatest of each pixel and of seven samples around it.
NUV_ROW_KERNEL void find_ranges(const uint8_t* row, std::ptrdiff_t width, uint8_t* NUV_RESTRICT lows,
                                uint8_t* NUV_RESTRICT highs, std::ptrdiff_t n) {
  const uint8_t* above = row - width;
  const uint8_t* second_above = above - width;
  const uint8_t* third_above = second_above - width;
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const uint8_t values[] = {row[x + 1],     above[x + 2],        second_above[x + 2], third_above[x + 1],
                              third_above[x], second_above[x - 1], above[x - 1]};
    uint8_t low = row[x];
    uint8_t high = row[x];
    for (const uint8_t value : values) {
      low = lesser(low, value);
      high = greater(high, value);
    }
    lows[x] = low;
    highs[x] = high;
  }
}

enum VoteMode : int32_t { kDarkSide = 1, kBrightSide = 2 };

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvExtractTwoEdgePointPerCol(uint8_t* pGrdImg, int32_t width, int32_t minGap, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t* pFirst, int32_t* pSecond) {
  const GrayImage image = image_of_any_height<1>(pGrdImg, width);
  for (int32_t x = 0; x < width; ++x) pFirst[x] = pSecond[x] = 0;
  // The first and the last row of the range are left out.
  for_strongest_in_columns(
      image, x1, x2, 0, minGap, false,
      [=](int32_t) {
        return Ends{y1 + 1, y2 - 1};
      },
      [=](int32_t x, Two two) { std::tie(pFirst[x], pSecond[x]) = two; });
}

void NuvExtractEdgePointInRect(uint8_t* pGrdImg, int32_t width, int32_t x1, int32_t y1, int32_t x2,
                               int32_t y2, int32_t* pLeft, int32_t* pRight, int32_t* pTop, int32_t* pBottom) {
  const GrayImage image = image_of_any_height<1>(pGrdImg, width);
  const PairsOfPoints points{pLeft, pRight, pTop, pBottom};
  for (int32_t y = y1; y <= y2; ++y) points.store_row(y, strongest_two_in_row(image, y, x1, x2));
  points.store_columns(image, x1, x2, [=](int32_t) { return Ends{y1, y2}; });
}

void NuvExtractEdgePointInCircle(uint8_t* pGrdImg, int32_t width, int32_t cx, int32_t cy, int32_t rx,
                                 int32_t ry, int32_t* pLeft, int32_t* pRight, int32_t* pTop,
                                 int32_t* pBottom) {
  const GrayImage image = image_of_any_height<1>(pGrdImg, width);
  const PairsOfPoints points{pLeft, pRight, pTop, pBottom};
  for (int32_t y = cy - ry; y <= cy + ry; ++y) {
    const Ends ends = ellipse_ends(cx, y - cy, ry, rx);
    points.store_row(y, strongest_two_in_row(image, y, ends.low, ends.high));
  }
  points.store_columns(image, cx - rx, cx + rx, [=](int32_t x) { return ellipse_ends(cy, x - cx, rx, ry); });
}

int32_t NuvGetThresholdByEdge(uint8_t* pGryImg, uint8_t* pEdgeImg, int32_t width, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, int32_t mode) {
  const GrayImage gray = image_of_any_height<1>(pGryImg, width);
  const GrayImage edges = image_of_any_height<1>(pEdgeImg, width);
  // How many ranges of votes begin and end at each gray value.
  ByteCounter lows;
  ByteCounter highs;
  constexpr int32_t kBlock = 64;
  std::array<uint8_t, kBlock> low;
  std::array<uint8_t, kBlock> high;
  const bool has_columns = x1 + 1 < x2;
  for (int32_t y = y1 + 1; y < y2 && has_columns; ++y) {
    const Line row{edges.row(y), x2, 1};
    for (int32_t x = next_white(row, x1 + 1); x < x2; x = next_white(row, x)) {
      // A block begins and ends with an edge pixel, because the samples of other pixels may lie outside the image.
      int32_t end = std::min(x2 - x, kBlock) + x;
      while (row[end - 1] == 0) --end;
      const uint8_t* centres = gray.at(x, y);
      find_ranges(centres, width, low.data(), high.data(), end - x);
      lows.add_masked(mode == kBrightSide ? centres : low.data(), edges.at(x, y), end - x);
      highs.add_masked(mode == kDarkSide ? centres : high.data(), edges.at(x, y), end - x);
      x = end;
    }
  }
  const Histogram begins = lows.counts();
  const Histogram ends = highs.counts();
  // Each range votes for all gray values from its begin to its end.
  Histogram votes;
  int32_t ranges = 0;
  for (int32_t v = 0; v < kBins; ++v) {
    ranges += begins[v];
    votes[v] = ranges;
    ranges -= ends[v];
  }
  return static_cast<int32_t>(std::max_element(votes.begin(), votes.end()) - votes.begin());
}

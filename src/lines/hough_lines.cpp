// The Hough line detector.
//
// In the row of each Theta, a point votes 2 for its Thro and 1 for each of the two cells beside it. Votes
// stay in their row. Single votes, weighted 1-2-1 along the row at the end, therefore give the same counts
// for a third of the work.
//
// If all points vote for the same Thetas, they vote in one row before the next, so that the cells in use stay
// in the cache. Further lines are found in the same accumulator. That search leaves out windows around the
// peaks already taken.

#include "lines/hough_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "core/arithmetic.h"
#include "core/row_kernel.h"
#include "nuv/drawing.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

constexpr int32_t kScaleBits = 10;  // fractional bits of the tables
constexpr int32_t kLeastCount = 3;  // the count of two points in cells side by side
// One row per Theta, and some to spare.
constexpr int32_t kCapacityRows = 186;

// The places of the votes of n points in a row. If a place lies outside the row, because a product wrapped,
// it becomes the place after the row.
NUV_ROW_KERNEL void vote_places(const int32_t* x, const int32_t* y, int32_t cosine, int32_t sine,
                                int32_t n_thro, int32_t* NUV_RESTRICT places, std::ptrdiff_t n) {
  const int32_t middle = n_thro / 2;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const int32_t place = middle + ((x[i] * cosine + y[i] * sine) >> kScaleBits);
    places[i] = static_cast<uint32_t>(place) < static_cast<uint32_t>(n_thro) ? place : n_thro;
  }
}

NUV_ROW_KERNEL int32_t greatest(const int32_t* cells, std::ptrdiff_t n) {
  int32_t most = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) most = cells[i] > most ? cells[i] : most;
  return most;
}

NUV_ROW_KERNEL void weigh(const int32_t* votes, int32_t* NUV_RESTRICT counts, std::ptrdiff_t n) {
  const int32_t* before = votes - 1;
  const int32_t* after = votes + 1;
  for (std::ptrdiff_t i = 0; i < n; ++i) counts[i] = 2 * votes[i] + before[i] + after[i];
}

// Turns the single votes of a row into counts.
void weigh_row(int32_t* row, int32_t n) {
  constexpr int32_t kBlock = 1024;
  std::array<int32_t, kBlock + 2> votes;
  int32_t last_before = 0;
  for (int32_t first = 0; first < n; first += kBlock) {
    const int32_t count = std::min(kBlock, n - first);
    votes[0] = last_before;
    std::copy_n(row + first, count, votes.begin() + 1);
    votes[static_cast<std::size_t>(count) + 1] = first + count < n ? row[first + count] : 0;
    last_before = row[first + count - 1];
    weigh(votes.data() + 1, row + first, count);
  }
}

Region box_of(HoughPoints points) {
  Region box = Region::of({points.x[0], points.y[0]});
  for (int32_t i = 1; i < points.n; ++i) box.take_in({points.x[i], points.y[i]});
  return box;
}

void shift(HoughPoints points, int32_t dx, int32_t dy) {
  for (int32_t i = 0; i < points.n; ++i) {
    points.x[i] += dx;
    points.y[i] += dy;
  }
}

// The number of places in from..to, squared.
double squared_span(int32_t from, int32_t to) {
  const double span = static_cast<double>(to) - from + 1;
  return span * span;
}

}  // namespace

NuvHoughLines::NuvHoughLines() {
  for (int32_t t = 0; t < kThetas; ++t) {
    cos_table_[static_cast<std::size_t>(t)] = truncated(std::cos(radians(t)) * 1024.0);
    sin_table_[static_cast<std::size_t>(t)] = truncated(std::sin(radians(t)) * 1024.0);
  }
}

bool NuvHoughLines::initialize(int32_t width, int32_t height) {
  const int64_t size_x = static_cast<int64_t>(width) + 5;
  const int64_t size_y = static_cast<int64_t>(height) + 5;
  if (width >= 0 && height >= 0 && size_x * size_y > capacity_area_) {
    const double x = static_cast<double>(size_x);
    const double y = static_cast<double>(size_y);
    accumulator_size_ = static_cast<int64_t>(std::sqrt(y * y + x * x) + 6.0) * kCapacityRows;
    accumulator_.reset();
    // One more cell, because a vote outside the last row is cast after it.
    accumulator_ = allocate<int32_t>(accumulator_size_ + 1);
    capacity_area_ = accumulator_ ? size_x * size_y : 0;
    if (!accumulator_) accumulator_size_ = 0;
  }
  peak_count_ = 0;
  return accumulator_ != nullptr;
}

// ---- votes ----

int32_t* NuvHoughLines::row_of(const Space& space, int32_t theta) {
  return accumulator_.get() + static_cast<std::ptrdiff_t>(theta - space.theta_base) * space.n_thro;
}

// Casts the votes of all points in the row of one Theta. Votes outside the row go to the cell after it, which
// gets its value back.
void NuvHoughLines::vote_row(HoughPoints points, const Space& space, int32_t theta) {
  if (theta < 0 || theta >= kThetas) return;
  constexpr int32_t kBlock = 512;
  std::array<int32_t, kBlock> places;
  const auto t = static_cast<std::size_t>(theta);
  int32_t* row = row_of(space, theta);
  const int32_t cell_after = row[space.n_thro];
  for (int32_t first = 0; first < points.n; first += kBlock) {
    const int32_t n = std::min(kBlock, points.n - first);
    vote_places(points.x + first, points.y + first, cos_table_[t], sin_table_[t], space.n_thro, places.data(),
                n);
    for (int32_t i = 0; i < n; ++i) ++row[places[static_cast<std::size_t>(i)]];
  }
  row[space.n_thro] = cell_after;
}

// Runs a transform. vote(points, space) casts the votes, and box is the bounding box of the points.
template <class Vote>
int32_t NuvHoughLines::transform(HoughPoints points, Region box, int32_t theta_base, int64_t n_theta,
                                 Vote vote) {
  const Point centre{(box.x1 + box.x2) / 2, (box.y1 + box.y2) / 2};
  shift(points, -centre.x, -centre.y);
  const int64_t n_thro =
      static_cast<int64_t>(std::sqrt(squared_span(box.y1, box.y2) + squared_span(box.x1, box.x2))) + 5;
  // The header states that the points stay moved in this case.
  if (n_theta > 0 && n_thro > accumulator_size_ / n_theta) return 0;

  Peak peak{0, 0, 0};
  if (n_theta > 0) {
    const Space space{theta_base, static_cast<int32_t>(n_theta), static_cast<int32_t>(n_thro), centre};
    std::fill_n(accumulator_.get(), n_thro * n_theta, 0);
    vote(points, space);
    for (int32_t r = 0; r < space.n_theta; ++r) weigh_row(row_of(space, theta_base + r), space.n_thro);
    peak = strongest(space, [](const Peak&) { return false; });
    if (peak.count >= kLeastCount) space_ = space;
  }
  shift(points, centre.x, centre.y);
  return peak.count >= kLeastCount ? take(peak) : 0;
}

int32_t NuvHoughLines::transform(HoughPoints points, int32_t theta1, int32_t theta2) {
  peak_count_ = 0;
  if (points.n < 2) return 0;
  const int64_t n_theta = static_cast<int64_t>(theta2) - theta1 + 1;
  return transform(points, box_of(points), theta1, n_theta, [=](HoughPoints moved, const Space& space) {
    // The row of the upper bound stays empty.
    for (int32_t theta = theta1; theta < theta2; ++theta) vote_row(moved, space, theta);
  });
}

int32_t NuvHoughLines::transform(HoughPoints points, const bool* theta_mask) {
  // Such a call keeps the peaks of the last transform.
  if (points.n < 2) return 0;
  peak_count_ = 0;
  const bool* end = theta_mask + kThetas;
  const bool* lowest = std::find(theta_mask, end, true);
  if (lowest == end) return 0;
  const auto theta1 = static_cast<int32_t>(lowest - theta_mask);
  int32_t theta2 = kThetas - 1;
  while (!theta_mask[theta2]) --theta2;
  return transform(points, box_of(points), theta1, theta2 - theta1 + 1,
                   [=](HoughPoints moved, const Space& space) {
                     for (int32_t theta = theta1; theta < theta2; ++theta) {
                       if (theta_mask[theta]) vote_row(moved, space, theta);
                     }
                   });
}

int32_t NuvHoughLines::transform(HoughPoints points, const int32_t* thetas, const bool* excluded,
                                 int32_t d_theta) {
  peak_count_ = 0;
  if (points.n < 2) return 0;
  constexpr int64_t kLast = 179;
  // Point 0 counts here even if it is excluded.
  Region box = Region::of({points.x[0], points.y[0]});
  int32_t least = thetas[0];
  int32_t greatest = thetas[0];
  for (int32_t i = 1; i < points.n; ++i) {
    if (excluded[i]) continue;
    box.take_in({points.x[i], points.y[i]});
    least = std::min(least, thetas[i]);
    greatest = std::max(greatest, thetas[i]);
  }
  const int64_t theta1 = std::max<int64_t>(static_cast<int64_t>(least) - d_theta, 0);
  const int64_t theta2 = std::min<int64_t>(static_cast<int64_t>(greatest) + d_theta, kLast);
  return transform(points, box, static_cast<int32_t>(theta1), theta2 - theta1 + 1,
                   [=](HoughPoints moved, const Space& space) {
                     for (int32_t i = 0; i < moved.n; ++i) {
                       if (excluded[i]) continue;
                       const int64_t from = std::max(static_cast<int64_t>(thetas[i]) - d_theta, theta1);
                       const int64_t to = std::min(static_cast<int64_t>(thetas[i]) + d_theta, theta2);
                       for (int64_t theta = from; theta <= to; ++theta) {
                         const auto t = static_cast<std::size_t>(theta);
                         int32_t place = 0;
                         vote_places(moved.x + i, moved.y + i, cos_table_[t], sin_table_[t], space.n_thro,
                                     &place, 1);
                         if (place < space.n_thro) ++row_of(space, static_cast<int32_t>(theta))[place];
                       }
                     }
                   });
}

// ---- peaks ----

// The first cell with the greatest count among those that refuse(cell) does not reject.
template <class Refuse>
NuvHoughLines::Peak NuvHoughLines::strongest(const Space& space, Refuse refuse) const {
  Peak best{0, 0, 0};
  const int32_t* cells = accumulator_.get();
  for (int32_t r = 0; r < space.n_theta; ++r, cells += space.n_thro) {
    if (greatest(cells, space.n_thro) <= best.count) continue;
    for (int32_t c = 0; c < space.n_thro; ++c) {
      if (cells[c] <= best.count) continue;
      const Peak peak{r, c, cells[c]};
      if (!refuse(peak)) best = peak;
    }
  }
  return best;
}

// Takes a peak as the line found, and returns its strength.
int32_t NuvHoughLines::take(const Peak& peak) {
  peaks_[static_cast<std::size_t>(peak_count_++)] = peak;
  const int32_t thro = peak.column - space_.n_thro / 2;
  NuvThroTheta2ABC(space_.centre.x, space_.centre.y, thro, peak.row + space_.theta_base, &line_.a, &line_.b,
                   &line_.c);
  NuvABC2ThroTheta(line_.a, line_.b, line_.c, &line_.thro, &line_.theta);
  return peak.count / 2;
}

int32_t NuvHoughLines::next(int32_t d_thro, int32_t d_theta) {
  const Peak peak = strongest(space_, [=](const Peak& cell) {
    return std::any_of(peaks_.begin(), peaks_.begin() + peak_count_, [=](const Peak& taken) {
      return std::abs(taken.column - cell.column) < d_thro && std::abs(taken.row - cell.row) < d_theta;
    });
  });
  return peak.count >= kLeastCount ? take(peak) : 0;
}

namespace {

NuvHoughLines hough_lines;

// Where a call writes its line.
struct Outputs {
  double* a;
  double* b;
  double* c;
  int32_t* thro;
  int32_t* theta;

  void write(const HoughLine& line) const {
    *a = line.a;
    *b = line.b;
    *c = line.c;
    *thro = line.thro;
    *theta = line.theta;
  }
};

int32_t write_if_found(int32_t strength, const Outputs& outputs) {
  if (strength != 0) outputs.write(hough_lines.line());
  return strength;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

bool NuvHoughLines_Initialize(int32_t width, int32_t height) {
  return hough_lines.initialize(width, height);
}

int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t N, int32_t Theta1, int32_t Theta2, double* pA,
                         double* pB, double* pC, int32_t* pThro, int32_t* pTheta) {
  return write_if_found(hough_lines.transform({pX, pY, N}, Theta1, Theta2), {pA, pB, pC, pThro, pTheta});
}

int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t N, bool* pThetaMask, double* pA, double* pB,
                         double* pC, int32_t* pThro, int32_t* pTheta) {
  return write_if_found(hough_lines.transform({pX, pY, N}, pThetaMask), {pA, pB, pC, pThro, pTheta});
}

int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t* pPointTheta, bool* pPointMask, int32_t N,
                         int32_t dTheta, double* pA, double* pB, double* pC, int32_t* pThro,
                         int32_t* pTheta) {
  return write_if_found(hough_lines.transform({pX, pY, N}, pPointTheta, pPointMask, dTheta),
                        {pA, pB, pC, pThro, pTheta});
}

int32_t NuvHoughLines_GetNextLine(int32_t dThro, int32_t dTheta, double* pA, double* pB, double* pC,
                                  int32_t* pThro, int32_t* pTheta) {
  if (!hough_lines.is_searching()) return 0;
  const Outputs outputs{pA, pB, pC, pThro, pTheta};
  outputs.write({});
  return write_if_found(hough_lines.next(dThro, dTheta), outputs);
}

void NuvHoughLines_Debug(uint8_t* pGryImg, int32_t width, int32_t height, int32_t color) {
  const HoughLine& line = hough_lines.line();
  NuvDrawABCLineByColor(pGryImg, width, height, line.a, line.b, line.c, color);
}

// A reduced gray scale with most of its levels where the histogram is occupied.
//
// The gray scale is divided into cells of equal width. The width is the least that leaves at most two thirds
// as many occupied cells as there are levels. Each occupied cell becomes a level. The gaps between these
// cells share the other levels by their lengths. A gap without a share is divided between its neighbours.

#include <algorithm>
#include <array>

#include "histogram/histogram.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

constexpr int32_t kNoLevel = -1;

// A maximal run of entries without a level. Both ends are inclusive.
struct Gap {
  int32_t start;
  int32_t end;
  int32_t length() const { return end - start + 1; }
};

class Gaps {
 public:
  explicit Gaps(const int32_t* table) {
    for (int32_t i = 0; i < kBins; ++i) {
      if (table[i] != kNoLevel) continue;
      if (i == 0 || table[i - 1] != kNoLevel) gaps_[n_++] = {i, i};
      gaps_[n_ - 1].end = i;
    }
    for (const Gap& gap : *this) ++count_by_length_[gap.length()];
  }

  int32_t size() const { return n_; }
  const Gap* begin() const { return gaps_.data(); }
  const Gap* end() const { return gaps_.data() + n_; }
  int32_t with_length(int32_t length) const { return count_by_length_[length]; }

 private:
  std::array<Gap, kBins> gaps_{};
  int32_t n_ = 0;
  std::array<int32_t, kBins + 1> count_by_length_{};
};

// The number of levels that a gap gets. The index is its length.
using Shares = std::array<int32_t, kBins + 1>;

// Gives each half of a gap the level of its neighbour. A gap at an end of the scale gets that of its only
// neighbour.
void absorb(int32_t* table, const Gap& gap) {
  const bool has_before = gap.start > 0;
  const bool has_after = gap.end < kBins - 1;
  if (!has_before && !has_after) return;
  const int32_t middle = !has_before ? gap.start : !has_after ? gap.end + 1 : (gap.start + gap.end) / 2;
  if (has_before) std::fill(table + gap.start, table + middle, table[gap.start - 1]);
  if (has_after) std::fill(table + middle, table + gap.end + 1, table[gap.end + 1]);
}

// The shares of the finest division whose sum is at most rest. The sum takes each length that occurs once
// only.
Shares share_by_length(const Gaps& gaps, int32_t rest, int32_t min_step) {
  Shares shares{};
  for (int32_t step = min_step; step < kBins; ++step) {
    int32_t sum = 0;
    for (int32_t length = 1; length <= kBins; ++length) {
      if (gaps.with_length(length) == 0) continue;
      shares[length] = (length + step / 2) / step;
      sum += shares[length];
    }
    if (sum <= rest) break;
  }
  return shares;
}

// The least length that count or more gaps do not exceed. If there is none, the value otherwise.
int32_t length_of_shortest(const Gaps& gaps, int32_t count, int32_t otherwise) {
  int32_t found = 0;
  for (int32_t length = 0; length <= kBins; ++length) {
    found += gaps.with_length(length);
    if (found >= count) return length;
  }
  return otherwise;
}

// Divides a gap into parts and gives them the levels from next on. Returns the level after the last one used.
int32_t fill_gap(int32_t* table, const Gap& gap, int32_t parts, int32_t next) {
  int32_t per_part = gap.length() / parts;
  if (gap.length() % parts > per_part) ++per_part;
  for (int32_t j = 0; j < parts; ++j, ++next) {
    const int32_t begin = gap.start + j * per_part;
    for (int32_t i = begin; i < begin + per_part && i <= gap.end; ++i) table[i] = next;
  }
  for (int32_t i = gap.start + per_part * parts - 1; i <= gap.end; ++i) table[i] = next - 1;
  return next;
}

// Turns levels into classes: numbers the runs of equal levels from 0.
void renumber(int32_t* table) {
  int32_t level = table[0];
  int32_t number = 0;
  for (int32_t i = 0; i < kBins; ++i) {
    if (table[i] != level) {
      level = table[i];
      ++number;
    }
    table[i] = number;
  }
}

// The counts of cells of equal width.
class Cells {
 public:
  // counted: the number of leading cells that fill() clears and counts. The others are neither cleared nor
  // counted.
  explicit Cells(int32_t counted) : counted_(std::min(counted, kBins)) {}

  // Fills the cells and returns how many of the counted ones are occupied.
  int32_t fill(const int32_t* bins, int32_t width) {
    std::fill_n(cells_.begin(), counted_, 0);
    for (int32_t v = 0; v < kBins; ++v) cells_[v / width] += bins[v];
    return static_cast<int32_t>(
        std::count_if(cells_.begin(), cells_.begin() + counted_, [](int32_t count) { return count != 0; }));
  }
  bool occupied(int32_t c) const { return cells_[c] != 0; }

 private:
  int32_t counted_;
  Histogram cells_{};
};

// Gives each occupied cell a level and returns the number of levels. The last cell can reach past the 256
// entries.
int32_t give_cells_levels(const Cells& cells, int32_t width, int32_t* table) {
  const int32_t last = (kBins - 1) / width;
  int32_t level = 0;
  for (int32_t c = 0; c <= last; ++c) {
    if (cells.occupied(c)) std::fill_n(table + c * width, width, level++);
  }
  if (cells.occupied(last)) std::fill(table + std::max(kBins - width, 0), table + kBins, level - 1);
  return level;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvGenerateMainGryLUT(int32_t* pHistogram, int32_t minStep, int32_t maxStep, int32_t* pLUT) {
  if (minStep < 1 || maxStep < 1) {
    std::fill_n(pLUT, kBins, 0);
    return 0;
  }
  std::fill_n(pLUT, kBins, kNoLevel);
  const int32_t n_levels = kBins / maxStep;
  const int32_t most_occupied = 2 * n_levels / 3;
  Cells cells(kBins / minStep);
  int32_t width = minStep;
  while (width < maxStep && cells.fill(pHistogram, width) > most_occupied) {
    width = width < kBins ? width + 1 : maxStep;  // from 256 on, one cell holds all bins
  }
  if (width >= maxStep) {
    for (int32_t i = 0; i < kBins; ++i) pLUT[i] = i / maxStep;
    return n_levels;
  }

  const int32_t level = give_cells_levels(cells, width, pLUT);
  const int32_t rest = n_levels - level;
  const Gaps gaps(pLUT);
  Shares shares{};
  if (gaps.size() <= rest) {
    shares = share_by_length(gaps, rest, minStep);
    for (const Gap& gap : gaps) {
      if (shares[gap.length()] == 0) absorb(pLUT, gap);
    }
  } else {
    // There are too many gaps. The shortest are absorbed, but the filling below gives every gap a level of
    // its own.
    const int32_t shortest = length_of_shortest(gaps, gaps.size() - rest, (kBins - 1) / width);
    for (const Gap& gap : gaps) {
      if (gap.length() <= shortest) absorb(pLUT, gap);
    }
    shares.fill(1);
  }
  int32_t next = level;
  for (const Gap& gap : gaps) {
    if (shares[gap.length()] != 0) next = fill_gap(pLUT, gap, shares[gap.length()], next);
  }
  renumber(pLUT);
  return next;
}

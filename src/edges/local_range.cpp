// The local range of gray values.
//
// The extremes of a window are taken in two steps: first those of each column over the rows of the window,
// then those of its columns. The extremes of a stretch of columns come from doubling: those of two columns,
// of four, of eight, and at last of two such stretches that overlap.

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/byte_counter.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

constexpr int32_t kMaxWidth = 4096;

struct Extremes {
  uint8_t least[kMaxWidth];
  uint8_t most[kMaxWidth];
};

// Each pass over the columns loads and stores all extremes, so it takes several rows.
constexpr int32_t kRowsAtATime = 4;

NUV_LOAD_BOUND_ROW_KERNEL void fold_rows(const uint8_t* a, const uint8_t* b, const uint8_t* c,
                                         const uint8_t* d, uint8_t* NUV_RESTRICT least,
                                         uint8_t* NUV_RESTRICT most, int32_t n) {
  for (int32_t x = 0; x < n; ++x) {
    least[x] = lesser(least[x], lesser(lesser(a[x], b[x]), lesser(c[x], d[x])));
    most[x] = greater(most[x], greater(greater(a[x], b[x]), greater(c[x], d[x])));
  }
}

void fold_columns(GrayImage source, int32_t top, int32_t bottom, Extremes& columns) {
  std::memcpy(columns.least, source.row(top), static_cast<std::size_t>(source.width));
  std::memcpy(columns.most, source.row(top), static_cast<std::size_t>(source.width));
  for (int32_t y = top + 1; y <= bottom; y += kRowsAtATime) {
    // If fewer rows are left, the last one is taken again.
    const auto row = [=](int32_t i) { return source.row(std::min(y + i, bottom)); };
    fold_rows(row(0), row(1), row(2), row(3), columns.least, columns.most, source.width);
  }
}

// The extremes of each place and of the place step columns to its right.
NUV_LOAD_BOUND_ROW_KERNEL void fold_ahead(const uint8_t* least_in, const uint8_t* most_in, int32_t step,
                                          uint8_t* NUV_RESTRICT least, uint8_t* NUV_RESTRICT most,
                                          int32_t n) {
  const uint8_t* least_ahead = least_in + step;
  const uint8_t* most_ahead = most_in + step;
  for (int32_t x = 0; x < n; ++x) {
    least[x] = lesser(least_in[x], least_ahead[x]);
    most[x] = greater(most_in[x], most_ahead[x]);
  }
}

// The range of each place and the place step columns to its right.
NUV_LOAD_BOUND_ROW_KERNEL void range_row(const uint8_t* least, const uint8_t* most, int32_t step,
                                         uint8_t* NUV_RESTRICT out, int32_t n) {
  const uint8_t* least_ahead = least + step;
  const uint8_t* most_ahead = most + step;
  for (int32_t x = 0; x < n; ++x) {
    out[x] = static_cast<uint8_t>(greater(most[x], most_ahead[x]) - lesser(least[x], least_ahead[x]));
  }
}

// The ranges of one row, from the extremes of its columns.
class RowRanges {
 public:
  RowRanges(int32_t width, int32_t m) : width_(width), m_(m) {}

  // At both ends the window moves inwards and keeps its width, as far as the row has columns.
  void write(const Extremes& columns, uint8_t* out) {
    if (width_ > 3 * m_) {
      // Every window lies in the row, so the range of each start is computed once and copied.
      uint8_t from_start[kMaxWidth];
      write_windows(columns, from_start, width_ - 2 * m_);
      const int32_t right_begin = width_ - m_ - 1;
      std::copy_n(from_start, m_, out);
      std::copy_n(from_start, right_begin - m_, out + m_);
      std::copy_n(from_start + right_begin - 2 * m_, m_ + 1, out + right_begin);
      return;
    }
    for (int32_t x = 0; x < width_; ++x) {
      const int32_t start = x < m_ ? x : x > width_ - m_ - 2 ? x - 2 * m_ : x - m_;
      out[x] = range_of(columns, start, start + 2 * m_);
    }
  }

 private:
  uint8_t range_of(const Extremes& columns, int32_t first, int32_t last) const {
    uint8_t least = 255;
    uint8_t most = 0;
    for (int32_t x = std::max(first, 0); x <= std::min(last, width_ - 1); ++x) {
      least = lesser(least, columns.least[x]);
      most = greater(most, columns.most[x]);
    }
    return static_cast<uint8_t>(most - least);
  }

  // The windows that start at places 0 to n - 1.
  void write_windows(const Extremes& columns, uint8_t* out, int32_t n) {
    const int32_t window = 2 * m_ + 1;
    const Extremes* current = &columns;
    Extremes* next = &doubled_[0];
    Extremes* other = &doubled_[1];
    int32_t covered = 1;
    while (2 * covered < window) {
      fold_ahead(current->least, current->most, covered, next->least, next->most, n + window - 2 * covered);
      covered *= 2;
      current = next;
      std::swap(next, other);
    }
    range_row(current->least, current->most, window - covered, out, n);
  }

  int32_t width_;
  int32_t m_;
  Extremes doubled_[2];
};

}  // namespace
}  // namespace nuv

using namespace nuv;

bool NuvEdgeTripeDetection(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                           uint8_t* pResImg, int32_t* pHistogram) {
  if (width > kMaxWidth) return false;
  const GrayImage source{pGryImg, width, height};
  const GrayImage result{pResImg, width, height};
  const int64_t n = std::max(N, 0);
  RowRanges ranges(width, std::clamp(M, 0, kMaxWidth));
  Extremes columns;
  ByteCounter counter;
  if (!source.empty()) {
    for (int32_t y = 0; y < height; ++y) {
      // Near the top the window moves down and keeps its height; near the bottom it is cut short.
      const auto top = static_cast<int32_t>(std::max<int64_t>(y - n, 0));
      const auto bottom = static_cast<int32_t>(std::min<int64_t>(top + 2 * n, height - 1));
      fold_columns(source, top, bottom, columns);
      ranges.write(columns, result.row(y));
      counter.add(result.row(y), width);
    }
  }
  counter.store_to(pHistogram);
  return true;
}

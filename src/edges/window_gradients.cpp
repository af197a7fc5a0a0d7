// Gradient images of windows of any size.
//
// Sums over windows are not formed pixel by pixel. Sums of columns slide down with the rows, and their
// running total along the row (a prefix) gives any stretch of columns as one difference. The two diagonals of
// the four-direction operator ask, for each row of the window, for the pixels left and right of a dividing
// line that moves by one column a row: that is a sum of row prefixes along a diagonal, and it slides too, one
// row down and one column aside at a time.

#include <algorithm>
#include <utility>

#include "frame/borders.h"
#include "frame/buffer.h"
#include "frame/row_kernel.h"
#include "frame/views.h"
#include "frame/window_sums.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

// ---- column sums and prefixes ----

// The rows above a row less those below it: n each, the row itself left out.
class AboveLessBelow : public ColumnSums {
 public:
  AboveLessBelow(GrayImage image, int32_t n) : ColumnSums(image), n_(n) {}

  void start(int32_t y) {
    for (int32_t i = 1; i <= n_; ++i) {
      add(y - i);
      subtract(y + i);
    }
  }
  // From row y to row y + 1: y joins the rows above, and y + 1 leaves the rows below.
  void move_down(int32_t y) {
    add(y);
    subtract(y - n_);
    add(y + 1);
    subtract(y + n_ + 1);
  }

 private:
  int32_t n_;
};

// The rows from n above to n below a row.
class WindowRows : public ColumnSums {
 public:
  WindowRows(GrayImage image, int32_t n) : ColumnSums(image), n_(n) {}

  void start(int32_t y) {
    for (int32_t i = -n_; i <= n_; ++i) add(y + i);
  }
  void move_down(int32_t y) {
    subtract(y - n_);
    add(y + n_ + 1);
  }

 private:
  int32_t n_;
};

NUV_INLINE int32_t magnitude(int32_t v) {
  return v < 0 ? -v : v;
}
NUV_INLINE uint8_t at_most_255(int32_t v) {
  return static_cast<uint8_t>(v < 255 ? v : 255);
}

// The 2m + 1 columns around each place from m on.
NUV_ROW_KERNEL void whole_window_row(const int32_t* prefix, int32_t m, uint8_t* NUV_RESTRICT out, int32_t n) {
  const int32_t* behind = prefix + 2 * m + 1;
  for (int32_t k = 0; k < n; ++k) out[k] = at_most_255(magnitude(behind[k] - prefix[k]));
}

// The m columns left of each place from m on, less the m columns at its right.
NUV_ROW_KERNEL void left_less_right_row(const int32_t* prefix, int32_t m, uint8_t* NUV_RESTRICT out,
                                        int32_t n) {
  const int32_t* left_end = prefix + m;
  const int32_t* right_begin = prefix + m + 1;
  const int32_t* right_end = prefix + 2 * m + 1;
  for (int32_t k = 0; k < n; ++k) {
    out[k] = at_most_255(magnitude(left_end[k] - prefix[k] - (right_end[k] - right_begin[k])));
  }
}

// Half sizes below 1 count as 1, and larger ones than the image as the image: nothing changes beyond.
struct HalfSizes {
  int32_t m;
  int32_t n;

  HalfSizes(int32_t m_asked, int32_t n_asked, GrayImage image)
      : m(std::clamp(m_asked, 1, std::max(image.width, 1))),
        n(std::clamp(n_asked, 1, std::max(image.height, 1))) {}
};

// The band of the two one-direction forms: n rows on top, and the n rows that end one row above the last.
void clear_row_bands(GrayImage result, int32_t n) {
  clear_rows(result, 0, n - 1);
  clear_rows(result, result.height - n - 1, result.height - 2);
}

// ---- the four-direction operator ----

constexpr int32_t kMaxWindow = 16129;

// The sums of the pixels at the two sides of a line through a window.
struct Sides {
  int32_t left;
  int32_t right;

  int32_t difference() const { return left - right; }
};

// What the four differences of a window come to. The last one keeps its value unless the left side outweighs.
class FourDirections {
 public:
  uint8_t value(int32_t d1, int32_t d2, int32_t d3, Sides falling) {
    if (falling.left > falling.right) d4_ = falling.difference();
    return d4_ >= 255 ? 255 : at_most_255((magnitude(d1) + magnitude(d2) + magnitude(d3) + d4_) / 4);
  }

 private:
  int32_t d4_ = 0;
};

// The prefix of one row, with room on both sides: 0 before the row, the row's total behind it.
class PaddedPrefix {
 public:
  PaddedPrefix(int32_t width, int32_t padding)
      : width_(width),
        padding_(padding),
        entries_(
            allocate<int32_t>(static_cast<std::size_t>(width) + 1 + 2 * static_cast<std::size_t>(padding))) {
    if (entries_) std::fill_n(entries_.get(), padding, 0);
  }

  bool allocated() const { return entries_ != nullptr; }
  void set(const uint8_t* row) {
    int32_t* prefix = entries_.get() + padding_;
    accumulate(row, width_, prefix);
    std::fill_n(prefix + width_ + 1, padding_, prefix[width_]);
  }
  const int32_t* at(int32_t x) const { return entries_.get() + padding_ + x; }

 private:
  int32_t width_;
  int32_t padding_;
  Buffer<int32_t> entries_;
};

NUV_ROW_KERNEL void slide_diagonal(const int32_t* NUV_RESTRICT from, const int32_t* out_of,
                                   const int32_t* into, int32_t* NUV_RESTRICT to, int32_t n) {
  for (int32_t i = 0; i < n; ++i) to[i] = from[i] - out_of[i] + into[i];
}

// Sums of row prefixes along the two diagonals of the window, for m not below n. With P_r the prefix of row r
// and y the row of the window's centre, over the rows r = 0..2n of the window:
//
//     rising(x)  = sum of P_(y-n+r)[x - m + 2n - r]     x from m to width + m
//     falling(x) = sum of P_(y-n+r)[x - m + r]          x from m - 2n to width - m
//
// One row down the same sums stand one column to the left, or to the right, but for one row that leaves and
// one that enters. At the far end of the range every prefix is the whole row, or none of it.
class DiagonalSums {
 public:
  DiagonalSums(GrayImage image, int32_t m, int32_t n)
      : image_(image),
        m_(m),
        n_(n),
        size_(image.width + 2 * n + 1),
        leaving_(image.width, 2 * n + 1),
        entering_(image.width, 2 * n + 1) {
    for (Buffer<int32_t>& buffer : buffers_) {
      buffer = allocate<int32_t>(static_cast<std::size_t>(size_));
      if (buffer) std::fill_n(buffer.get(), size_, 0);
    }
    allocated_ = leaving_.allocated() && entering_.allocated() && buffers_[0] && buffers_[1] && buffers_[2];
    rising_ = buffers_[0].get();
    falling_ = buffers_[1].get();
    spare_ = buffers_[2].get();
  }

  bool allocated() const { return allocated_; }

  void start(int32_t y) {
    for (int32_t r = 0; r <= 2 * n_; ++r) {
      entering_.set(image_.row(y - n_ + r));
      for (int32_t i = 0; i < rising_count(); ++i)
        rising_[i] += *entering_.at(std::min(i + 2 * n_ - r, image_.width));
      for (int32_t i = 0; i < falling_count(); ++i) falling_[i] += *entering_.at(i - 2 * n_ + r);
    }
  }

  // From row y to row y + 1; all is the sum of all pixels in the rows of the new window.
  void move_down(int32_t y, int32_t all) {
    leaving_.set(image_.row(y - n_));
    entering_.set(image_.row(y + n_ + 1));
    const int32_t rising = rising_count() - 1;
    slide_diagonal(rising_ + 1, leaving_.at(2 * n_ + 1), entering_.at(0), spare_, rising);
    spare_[rising] = all;
    std::swap(rising_, spare_);
    const int32_t falling = falling_count() - 1;
    slide_diagonal(falling_, leaving_.at(-2 * n_), entering_.at(1), spare_ + 1, falling);
    spare_[0] = 0;
    std::swap(falling_, spare_);
  }

  // By x - m, from 0 on.
  const int32_t* rising() const { return rising_; }
  const int32_t* falling() const { return falling_ + 2 * n_; }

 private:
  int32_t rising_count() const { return image_.width + 1; }
  int32_t falling_count() const { return image_.width - 2 * m_ + 2 * n_ + 1; }

  GrayImage image_;
  int32_t m_;
  int32_t n_;
  int32_t size_;
  PaddedPrefix leaving_;
  PaddedPrefix entering_;
  Buffer<int32_t> buffers_[3];
  int32_t* rising_ = nullptr;
  int32_t* falling_ = nullptr;
  int32_t* spare_ = nullptr;
  bool allocated_ = false;
};

// Each row that has a window is written once all sums stand for it.
void four_directions_by_sums(GrayImage source, GrayImage result, int32_t m, int32_t n) {
  AboveLessBelow above_less_below(source, n);
  WindowRows rows(source, n);
  DiagonalSums diagonals(source, m, n);
  if (!above_less_below.allocated() || !rows.allocated() || !diagonals.allocated()) return;
  above_less_below.start(n);
  rows.start(n);
  diagonals.start(n);

  FourDirections directions;
  const int32_t places = source.width - 2 * m;
  for (int32_t y = n;; ++y) {
    const int32_t* vertical = above_less_below.prefix();
    const int32_t* all = rows.prefix();
    const int32_t* rising = diagonals.rising();
    const int32_t* falling = diagonals.falling();
    uint8_t* out = result.at(m, y);
    for (int32_t k = 0; k < places; ++k) {
      // Entry k of a prefix is the window's left side, and entry behind the column behind its right side.
      const int32_t behind = k + 2 * m + 1;
      const int32_t d1 = vertical[behind] - vertical[k];
      const int32_t d2 = all[k + m] - all[k] - (all[behind] - all[k + m + 1]);
      const int32_t d3 = rising[k] - all[k] - (all[behind] - rising[k + 1]);
      const Sides sides{falling[k] - all[k], all[behind] - falling[k + 1]};
      out[k] = directions.value(d1, d2, d3, sides);
    }
    if (y + 1 >= source.height - n) return;
    above_less_below.move_down(y);
    rows.move_down(y);
    diagonals.move_down(y, rows.prefix()[source.width]);
  }
}

// The window row by row, as the diagonals are defined on that order: where the window is higher than wide
// their dividing line passes the end of a row, and the left side goes on in the next row. Behind the last row
// there is nothing. Its prefix gives any stretch of that order as one difference.
class WindowInOrder {
 public:
  WindowInOrder(GrayImage source, int32_t m, int32_t n)
      : source_(source), m_(m), n_(n), columns_(2 * m + 1), rows_(2 * n + 1) {}

  void move_to(int32_t x, int32_t y) {
    int32_t* prefix = prefix_;
    for (int32_t r = 0; r < rows_; ++r) {
      const uint8_t* row = source_.at(x - m_, y - n_ + r);
      for (int32_t c = 0; c < columns_; ++c, ++prefix) prefix[1] = prefix[0] + row[c];
    }
  }

  int32_t above_less_below() const {
    return sum(0, n_ * columns_) - sum((n_ + 1) * columns_, rows_ * columns_);
  }
  // The pixels left and right of the column that divides each row.
  template <class Divide>
  Sides sides(Divide divide) const {
    Sides total{0, 0};
    for (int32_t r = 0; r < rows_; ++r) {
      const int32_t row = r * columns_;
      const int32_t dividing = row + divide(r);
      total.left += sum(row, dividing);
      total.right += sum(dividing + 1, row + columns_);
    }
    return total;
  }

 private:
  int32_t sum(int32_t first, int32_t end) const {
    return first < end ? prefix_[std::min(end, rows_ * columns_)] - prefix_[first] : 0;
  }

  GrayImage source_;
  int32_t m_;
  int32_t n_;
  int32_t columns_;
  int32_t rows_;
  int32_t prefix_[kMaxWindow + 1] = {};
};

void four_directions_by_windows(GrayImage source, GrayImage result, int32_t m, int32_t n) {
  WindowInOrder window(source, m, n);
  FourDirections directions;
  for (int32_t y = n; y < source.height - n; ++y) {
    for (int32_t x = m; x < source.width - m; ++x) {
      window.move_to(x, y);
      const int32_t d2 = window.sides([m](int32_t) { return m; }).difference();
      const int32_t d3 = window.sides([n](int32_t r) { return 2 * n - r; }).difference();
      const Sides falling = window.sides([](int32_t r) { return r; });
      *result.at(x, y) = directions.value(window.above_less_below(), d2, d3, falling);
    }
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGradientByPrewitt0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                           uint8_t* pResImg) {
  const GrayImage source{pGryImg, width, height};
  const GrayImage result{pResImg, width, height};
  const auto [m, n] = HalfSizes(M, N, source);
  clear_row_bands(result, n);
  if (source.empty() || 2 * n + 1 >= height) return;
  const int32_t places = width - 2 * m - 1;  // the last one that fits is left out
  AboveLessBelow sums(source, n);
  if (!sums.allocated()) return;
  sums.start(n);
  for (int32_t y = n; y + n + 1 < height; ++y) {
    clear_columns(result, y, 0, m - 1);
    clear_columns(result, y, width - m, width - 1);
    if (places > 0) whole_window_row(sums.prefix(), m, result.at(m, y), places);
    sums.move_down(y);
  }
}

void NuvGradientByPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                            uint8_t* pResImg) {
  const GrayImage source{pGryImg, width, height};
  const GrayImage result{pResImg, width, height};
  const auto [m, n] = HalfSizes(M, N, source);
  clear_row_bands(result, n);
  const int32_t places = width - 2 * m - 1;  // the last one that fits is left out
  if (source.empty() || places <= 0) return;
  for (int32_t y = std::max(height - n, 0); y < height; ++y) clear_columns(result, y, m, m + places - 1);
  if (2 * n + 1 >= height) return;
  WindowRows sums(source, n);
  if (!sums.allocated()) return;
  sums.start(n);
  for (int32_t y = n; y + n + 1 < height; ++y) {
    left_less_right_row(sums.prefix(), m, result.at(m, y), places);
    sums.move_down(y);
  }
}

void NuvGradientByPrewitt(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                          uint8_t* pResImg) {
  if (M < 0 || N < 0 || M > kMaxWindow || N > kMaxWindow || (2 * M + 1) * (2 * N + 1) > kMaxWindow) return;
  const GrayImage source{pGryImg, width, height};
  if (source.empty()) return;
  const GrayImage result{pResImg, width, height};
  clear_rows(result, 0, N - 1);
  clear_rows(result, height - N, height - 1);
  // At the left the column of the first window is cleared too; the right border is not.
  if (M > 0) {
    for (int32_t y = N; y < height - N; ++y) clear_columns(result, y, 0, M);
  }
  if (width <= 2 * M || height <= 2 * N) return;
  if (M >= N) {
    four_directions_by_sums(source, result, M, N);
  } else {
    four_directions_by_windows(source, result, M, N);
  }
}

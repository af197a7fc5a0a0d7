// Gradient images of windows of any size.
//
// Window sums are not formed pixel by pixel. Sums of columns slide down with the rows, and their running
// total along the row (the prefix) gives the sum of any stretch of columns as one difference. The two
// diagonals of the four-direction operator divide each row of the window at a column that moves by one per
// row. The pixels left of such a line are a sum of row prefixes along a diagonal. That sum slides, too: one
// row down and one column aside.

#include <algorithm>
#include <utility>

#include "core/borders.h"
#include "core/buffer.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

// ---- column sums and prefixes ----

// The n rows above a row minus the n rows below it. The row itself does not count.
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

// The rows from n above a row to n below it.
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

// The sum of 2m + 1 columns around each of n places, the first of which is column m.
NUV_ROW_KERNEL void whole_window_row(const int32_t* prefix, int32_t m, uint8_t* NUV_RESTRICT out, int32_t n) {
  const int32_t* end = prefix + 2 * m + 1;
  for (int32_t k = 0; k < n; ++k) out[k] = at_most_255(magnitude(end[k] - prefix[k]));
}

// The m columns left of each of n places minus the m columns right of it. The first place is column m.
NUV_ROW_KERNEL void left_less_right_row(const int32_t* prefix, int32_t m, uint8_t* NUV_RESTRICT out,
                                        int32_t n) {
  const int32_t* left_end = prefix + m;
  const int32_t* right_begin = prefix + m + 1;
  const int32_t* right_end = prefix + 2 * m + 1;
  for (int32_t k = 0; k < n; ++k) {
    out[k] = at_most_255(magnitude(left_end[k] - prefix[k] - (right_end[k] - right_begin[k])));
  }
}

// Half sizes below 1 count as 1. Those larger than the image are reduced to its size, which gives the same
// result.
struct HalfSizes {
  int32_t m;
  int32_t n;

  HalfSizes(int32_t M, int32_t N, GrayImage image)
      : m(std::clamp(M, 1, std::max(image.width, 1))), n(std::clamp(N, 1, std::max(image.height, 1))) {}
};

// Clears the border rows of the two one-direction forms: the first n rows, and the n rows that end one row
// above the last.
void clear_row_bands(GrayImage result, int32_t n) {
  clear_rows(result, 0, n - 1);
  clear_rows(result, result.height - n - 1, result.height - 2);
}

// ---- the four-direction operator ----

constexpr int32_t kMaxWindow = 16129;

// What the operator needs of up to kPlaces windows side by side: the magnitudes of three differences, added up,
// and the sums of the pixels at the two sides of the falling diagonal.
struct Differences {
  static constexpr int32_t kPlaces = 512;

  int32_t three[kPlaces];
  int32_t left[kPlaces];
  int32_t right[kPlaces];
};

// If the fourth difference alone reaches 255, so does the result.
NUV_ROW_KERNEL void combine(const int32_t* three, const int32_t* fourth, uint8_t* NUV_RESTRICT out,
                            int32_t n) {
  for (int32_t k = 0; k < n; ++k) {
    const uint8_t mean = at_most_255((three[k] + fourth[k]) / 4);
    out[k] = fourth[k] >= 255 ? 255 : mean;
  }
}

// Combines the four differences of windows, in their order. The fourth difference changes only where the left
// side is greater, and is kept from window to window and from row to row.
class FourDirections {
 public:
  void write(const Differences& differences, uint8_t* out, int32_t n) {
    int32_t fourth[Differences::kPlaces];
    for (int32_t k = 0; k < n; ++k) {
      const int32_t left = differences.left[k];
      const int32_t right = differences.right[k];
      // A branch here would be mispredicted. All bits of changes are set if the left side is greater.
      const int32_t changes = -static_cast<int32_t>(left > right);
      kept_ ^= (kept_ ^ (left - right)) & changes;
      fourth[k] = kept_;
    }
    combine(differences.three, fourth, out, n);
  }

  // Writes a row of windows. find(first, n, differences) finds the differences of n windows.
  template <class Find>
  void write_row(uint8_t* out, int32_t places, Find find) {
    Differences differences;
    for (int32_t first = 0; first < places; first += Differences::kPlaces) {
      const int32_t n = std::min(Differences::kPlaces, places - first);
      find(first, n, differences);
      write(differences, out + first, n);
    }
  }

 private:
  int32_t kept_ = 0;
};

// The prefix of one row, padded on both sides: 0 before the row, the total of the row after it.
class PaddedPrefix {
 public:
  PaddedPrefix(int32_t width, int32_t padding)
      : width_(width),
        padding_(padding),
        entries_(allocate<int32_t>(int64_t{width} + 1 + 2 * int64_t{padding})) {
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

NUV_ROW_KERNEL void slide_diagonal(const int32_t* NUV_RESTRICT from, const int32_t* leaving,
                                   const int32_t* entering, int32_t* NUV_RESTRICT to, int32_t n) {
  for (int32_t i = 0; i < n; ++i) to[i] = from[i] - leaving[i] + entering[i];
}

// Sums of row prefixes along the two diagonals of the window, for m not below n. With P_r the prefix of row r
// and y the row of the window's centre, over the rows r = 0..2n of the window:
//
//     rising(x)  = sum of P_(y-n+r)[x - m + 2n - r]     x from m to width + m
//     falling(x) = sum of P_(y-n+r)[x - m + r]          x from m - 2n to width - m
//
// One row down, rising(x) is the old rising(x + 1) and falling(x) is the old falling(x - 1), except for the
// row that leaves and the row that enters. The place that comes in at the end of the range has no old value:
// there every prefix is the whole row for rising, and empty for falling.
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
      buffer = allocate<int32_t>(size_);
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

  // From row y to row y + 1. all is the sum of all pixels in the rows of the new window.
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

  // Entry k belongs to the window around column m + k.
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

// Of windows of 2m + 1 columns. Window k has the columns k to k + 2m, whose sum is all[k + 2m + 1] - all[k].
NUV_ROW_KERNEL void find_differences(const int32_t* vertical, const int32_t* all, const int32_t* rising,
                                     const int32_t* falling, int32_t m, int32_t n,
                                     Differences& NUV_RESTRICT out) {
  for (int32_t k = 0; k < n; ++k) {
    const int32_t end = k + 2 * m + 1;
    const int32_t d1 = vertical[end] - vertical[k];
    const int32_t d2 = all[k + m] - all[k] - (all[end] - all[k + m + 1]);
    const int32_t d3 = rising[k] - all[k] - (all[end] - rising[k + 1]);
    out.three[k] = magnitude(d1) + magnitude(d2) + magnitude(d3);
    out.left[k] = falling[k] - all[k];
    out.right[k] = all[end] - falling[k + 1];
  }
}

// For windows at least as wide as high: writes row by row while all sums slide down.
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
    directions.write_row(result.at(m, y), places, [=](int32_t first, int32_t count, Differences& out) {
      find_differences(vertical + first, all + first, rising + first, falling + first, m, count, out);
    });
    if (y + 1 >= source.height - n) return;
    above_less_below.move_down(y);
    rows.move_down(y);
    diagonals.move_down(y, rows.prefix()[source.width]);
  }
}

// ---- the same for windows higher than wide ----

// The sides of a diagonal are defined on the list of the window's pixels, row after row. In a window higher
// than wide the dividing column can lie past the end of its row. The left side then continues in the next
// rows, up to the end of the list. So the left side of a row consists of full rows and the beginning of one
// more row, and a right side exists only where the dividing column lies in the row. With C columns, and d the
// dividing column in row r,
//
//     left(r)  = rows r to r + d/C - 1, and d%C pixels of row r + d/C
//     right(r) = the pixels of row r after d, for d < C
//
// Full rows are column sums with a weight for each row. Beginnings are row prefixes whose places lie on
// diagonals; a new diagonal starts every C rows.

NUV_ROW_KERNEL void add_entries(int32_t* NUV_RESTRICT sums, const int32_t* entries, int32_t n) {
  for (int32_t i = 0; i < n; ++i) sums[i] += entries[i];
}

NUV_ROW_KERNEL void subtract_entries(int32_t* NUV_RESTRICT sums, const int32_t* entries, int32_t n) {
  for (int32_t i = 0; i < n; ++i) sums[i] -= entries[i];
}

// The rows of a window, each with a weight.
class WeightedRows : public ColumnSums {
 public:
  WeightedRows(GrayImage image, int32_t n)
      : ColumnSums(image), rows_(2 * n + 1), n_(n), changes_(allocate<int32_t>(int64_t{rows_} + 1)) {
    if (changes_) std::fill_n(changes_.get(), rows_ + 1, 0);
  }

  bool allocated() const { return ColumnSums::allocated() && changes_; }

  // Adds to the weight of the window's rows from first to end - 1.
  void include(int32_t first, int32_t end, int32_t weight) {
    changes_[first] += weight;
    changes_[end] -= weight;
  }

  void start(int32_t y) {
    int32_t weight = 0;
    for (int32_t r = 0; r < rows_; ++r) {
      weight += changes_[r];
      add(y - n_ + r, weight);
    }
  }
  // When the window moves, the row at place r of it takes the weight of place r - 1.
  void move_down(int32_t y) {
    for (int32_t r = 0; r <= rows_; ++r) {
      if (changes_[r] != 0) add(y - n_ + r, -changes_[r]);
    }
  }

 private:
  int32_t rows_;
  int32_t n_;
  Buffer<int32_t> changes_;  // entry r is the weight of row r minus that of row r - 1
};

// Sums of row prefixes along diagonals of the window, for each column of its left end. A diagonal begins at a
// row and a column of the window and moves by Step columns with each row.
template <int Step>
class DiagonalPrefixes {
 public:
  DiagonalPrefixes(GrayImage image, int32_t m, int32_t n)
      : image_(image),
        n_(n),
        reach_(2 * m + 2),
        count_(image.width - 2 * m + reach_),
        prefix_(image.width, 2 * reach_),
        diagonals_(allocate<Diagonal>(2 * (2 * int64_t{n} + 1))),
        sums_(allocate<int32_t>(count_)) {
    if (sums_) std::fill_n(sums_.get(), count_, 0);
  }

  bool allocated() const { return prefix_.allocated() && diagonals_ && sums_; }

  // Adds the prefix of a row of the window up to a column. Rows come in rising order.
  void include(int32_t row, int32_t column) {
    if (diagonals_count_ > 0) {
      Diagonal& last = diagonals_[diagonals_count_ - 1];
      if (row == last.row + last.rows && column == last.column + Step * last.rows) {
        ++last.rows;
        return;
      }
    }
    diagonals_[diagonals_count_++] = {row, column, 1};
  }

  void start(int32_t y) {
    for (int32_t i = 0; i < diagonals_count_; ++i) {
      const Diagonal& d = diagonals_[i];
      for (int32_t r = 0; r < d.rows; ++r) {
        add_entries(sums_.get(), prefix(y - n_ + d.row + r, d.column + Step * r), count_);
      }
    }
  }

  // From row y to row y + 1. Each sum is the old one of the place Step columns before it, except for the row
  // that leaves each diagonal and the row that enters. beyond is the sum at the place that comes in, where
  // each prefix is the whole row or empty.
  void move_down(int32_t y, int32_t beyond) {
    int32_t* sums = sums_.get();
    if (Step > 0) {
      std::copy_backward(sums, sums + count_ - 1, sums + count_);
    } else {
      std::copy(sums + 1, sums + count_, sums);
    }
    for (int32_t i = 0; i < diagonals_count_; ++i) {
      const Diagonal& d = diagonals_[i];
      subtract_entries(sums, prefix(y - n_ + d.row, d.column - Step), count_);
      add_entries(sums, prefix(y - n_ + d.row + d.rows, d.column + Step * (d.rows - 1)), count_);
    }
    sums[Step > 0 ? 0 : count_ - 1] = beyond;
  }

  const int32_t* sums() const { return sums_.get() + (Step > 0 ? reach_ : 0); }

 private:
  struct Diagonal {
    int32_t row;
    int32_t column;
    int32_t rows;
  };

  // The prefix of row y of the image at that column of the window, from the first of the count_ places on.
  const int32_t* prefix(int32_t y, int32_t column) {
    prefix_.set(image_.row(y));
    return prefix_.at(column - (Step > 0 ? reach_ : 0));
  }

  GrayImage image_;
  int32_t n_;
  int32_t reach_;  // places to add until every prefix is the whole row or empty
  int32_t count_;
  PaddedPrefix prefix_;
  Buffer<Diagonal> diagonals_;
  int32_t diagonals_count_ = 0;
  Buffer<int32_t> sums_;
};

void four_directions_of_high_windows(GrayImage source, GrayImage result, int32_t m, int32_t n) {
  const int32_t columns = 2 * m + 1;
  const int32_t rows = 2 * n + 1;
  AboveLessBelow above_less_below(source, n);
  WindowRows all_rows(source, n);
  // Weights of the column prefix at the right end of a window, and at its left end.
  WeightedRows rising_at_right(source, n);
  WeightedRows rising_at_left(source, n);
  WeightedRows left_at_right(source, n);
  WeightedRows left_at_left(source, n);
  WeightedRows right_at_right(source, n);
  DiagonalPrefixes<-1> rising(source, m, n);
  DiagonalPrefixes<1> falling_left(source, m, n);
  DiagonalPrefixes<1> falling_right(source, m, n);
  if (!above_less_below.allocated() || !all_rows.allocated() || !rising_at_right.allocated() ||
      !rising_at_left.allocated() || !left_at_right.allocated() || !left_at_left.allocated() ||
      !right_at_right.allocated() || !rising.allocated() || !falling_left.allocated() ||
      !falling_right.allocated()) {
    return;
  }

  const auto include_left = [=](int32_t r, int32_t line, WeightedRows& at_right, WeightedRows& at_left,
                                auto& diagonals) {
    const int32_t last = std::min(r + line / columns, rows);
    at_right.include(r, last, 1);
    at_left.include(r, last, 1);
    if (last == rows || line % columns == 0) return;
    at_left.include(last, last + 1, 1);
    diagonals.include(last, line % columns);
  };
  const auto include_right = [=](int32_t r, int32_t line, WeightedRows& at_right, int32_t sign,
                                 auto& diagonals) {
    if (line >= columns) return;
    at_right.include(r, r + 1, sign);
    diagonals.include(r, line + 1);
  };
  for (int32_t r = 0; r < rows; ++r) {
    include_left(r, rows - 1 - r, rising_at_right, rising_at_left, rising);
    include_left(r, r, left_at_right, left_at_left, falling_left);
    include_right(r, r, right_at_right, 1, falling_right);
  }
  // Only the difference of the sides of the rising diagonal is needed, so its right side counts negative.
  for (int32_t r = 0; r < rows; ++r) include_right(r, rows - 1 - r, rising_at_right, -1, rising);

  above_less_below.start(n);
  all_rows.start(n);
  for (WeightedRows* sums :
       {&rising_at_right, &rising_at_left, &left_at_right, &left_at_left, &right_at_right}) {
    sums->start(n);
  }
  rising.start(n);
  falling_left.start(n);
  falling_right.start(n);

  FourDirections directions;
  const int32_t places = source.width - 2 * m;
  for (int32_t y = n;; ++y) {
    const int32_t* vertical = above_less_below.prefix();
    const int32_t* all = all_rows.prefix();
    const int32_t* rising_right_end = rising_at_right.prefix() + columns;
    const int32_t* rising_left_end = rising_at_left.prefix();
    const int32_t* left_right_end = left_at_right.prefix() + columns;
    const int32_t* left_left_end = left_at_left.prefix();
    const int32_t* right_right_end = right_at_right.prefix() + columns;
    const int32_t* rising_sums = rising.sums();
    const int32_t* left_sums = falling_left.sums();
    const int32_t* right_sums = falling_right.sums();
    directions.write_row(result.at(m, y), places, [=](int32_t first, int32_t count, Differences& out) {
      for (int32_t i = 0; i < count; ++i) {
        const int32_t k = first + i;
        const int32_t end = k + columns;
        const int32_t d1 = vertical[end] - vertical[k];
        const int32_t d2 = all[k + m] - all[k] - (all[end] - all[k + m + 1]);
        const int32_t d3 = rising_right_end[k] - rising_left_end[k] + rising_sums[k];
        out.three[i] = magnitude(d1) + magnitude(d2) + magnitude(d3);
        out.left[i] = left_right_end[k] - left_left_end[k] + left_sums[k];
        out.right[i] = right_right_end[k] - right_sums[k];
      }
    });
    if (y + 1 >= source.height - n) return;
    above_less_below.move_down(y);
    all_rows.move_down(y);
    for (WeightedRows* sums :
         {&rising_at_right, &rising_at_left, &left_at_right, &left_at_left, &right_at_right}) {
      sums->move_down(y);
    }
    rising.move_down(y, rising_at_left.prefix()[source.width] - rising_at_right.prefix()[source.width]);
    falling_left.move_down(y, 0);
    falling_right.move_down(y, 0);
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
  const int32_t places = width - 2 * m - 1;  // the last place that fits is left out
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
  const int32_t places = width - 2 * m - 1;  // the last place that fits is left out
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
  // At the left the column of the first window is cleared, too. The right border is not cleared.
  if (M > 0) {
    for (int32_t y = N; y < height - N; ++y) clear_columns(result, y, 0, M);
  }
  if (width <= 2 * M || height <= 2 * N) return;
  if (M >= N) {
    four_directions_by_sums(source, result, M, N);
  } else {
    four_directions_of_high_windows(source, result, M, N);
  }
}

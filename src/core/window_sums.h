// Sums over sliding windows.
//
// The sum of each column is kept while the window slides down: rows are added and subtracted, so a window
// costs the same whatever its height. Sums wrap, which does not change the difference of two sums.
//
// There are two ways to sum along a row. For windows of many sizes in a row, the running total of the values
// gives the sum of any stretch as one difference. For windows of one size, sums of neighbours grow by
// doubling. With s(k)[i] the sum of the k values at i, i + step, ... i + (k-1)*step,
//
//     s(2k)[i] = s(k)[i] + s(k)[i + k*step]      s(2k+1)[i] = s(2k)[i] + s(1)[i + 2k*step]
//
// A count is reached by its binary digits, and the sums of a row do not depend on each other.

#ifndef NUV_CORE_WINDOW_SUMS_H
#define NUV_CORE_WINDOW_SUMS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "core/buffer.h"
#include "core/row_kernel.h"
#include "core/views.h"

namespace nuv {

template <class Sum>
NUV_ROW_KERNEL void add_row(Sum* NUV_RESTRICT sums, const uint8_t* row, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) sums[i] = static_cast<Sum>(sums[i] + row[i]);
}

template <class Sum>
NUV_ROW_KERNEL void subtract_row(Sum* NUV_RESTRICT sums, const uint8_t* row, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) sums[i] = static_cast<Sum>(sums[i] - row[i]);
}

template <class Sum>
NUV_ROW_KERNEL void exchange_rows(Sum* NUV_RESTRICT sums, const uint8_t* in, const uint8_t* out,
                                  std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) sums[i] = static_cast<Sum>(sums[i] + in[i] - out[i]);
}

template <class Sum>
NUV_ROW_KERNEL void add_weighted_row(Sum* NUV_RESTRICT sums, const uint8_t* row, Sum weight,
                                     std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) sums[i] += weight * row[i];
}

// prefix[x] becomes the sum of the x values before place x; prefix has n + 1 entries.
template <class T>
void accumulate(const T* values, std::ptrdiff_t n, int32_t* prefix) {
  int32_t sum = 0;
  prefix[0] = 0;
#pragma GCC unroll 8
  for (std::ptrdiff_t x = 0; x < n; ++x) prefix[x + 1] = sum += values[x];
}

// The sum of each column of an image over some of its rows, and the running total of these sums.
class ColumnSums {
 public:
  explicit ColumnSums(GrayImage image)
      : image_(image),
        sums_(allocate<int32_t>(image.width)),
        prefix_(allocate<int32_t>(int64_t{image.width} + 1)) {
    if (sums_) clear();
  }

  bool allocated() const { return sums_ && prefix_; }
  // Entry x is the sum of the columns before x over the rows that were added and not subtracted again.
  const int32_t* prefix() {
    accumulate(sums_.get(), image_.width, prefix_.get());
    return prefix_.get();
  }

 protected:
  void clear() { std::fill_n(sums_.get(), image_.width, 0); }
  void add(int32_t y) { add_row(sums_.get(), image_.row(y), image_.width); }
  void subtract(int32_t y) { subtract_row(sums_.get(), image_.row(y), image_.width); }
  void add(int32_t y, int32_t weight) { add_weighted_row(sums_.get(), image_.row(y), weight, image_.width); }

 private:
  GrayImage image_;
  Buffer<int32_t> sums_;
  Buffer<int32_t> prefix_;
};

template <class Sum>
NUV_ROW_KERNEL void double_sums(const Sum* sums, std::ptrdiff_t ahead, Sum* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  const Sum* other = sums + ahead;
  for (std::ptrdiff_t i = 0; i < n; ++i) out[i] = static_cast<Sum>(sums[i] + other[i]);
}

template <class Sum>
NUV_ROW_KERNEL void double_sums_and_one(const Sum* sums, std::ptrdiff_t ahead, const Sum* one,
                                        Sum* NUV_RESTRICT out, std::ptrdiff_t n) {
  const Sum* other = sums + ahead;
  for (std::ptrdiff_t i = 0; i < n; ++i) out[i] = static_cast<Sum>(sums[i] + other[i] + one[i]);
}

// Returns n sums. Each sum has the count values from its place on, step apart; n + (count-1)*step values are
// read. The sums are written to one of two buffers that hold as many values. If count is 1, the result is the
// values themselves.
template <class Sum>
const Sum* neighbour_sums(const Sum* values, std::ptrdiff_t n, std::ptrdiff_t count, std::ptrdiff_t step,
                          Sum* buffer, Sum* other_buffer) {
  int digits = 0;
  while (count >> digits > 1) ++digits;
  const Sum* sums = values;
  while (digits > 0) {
    const std::ptrdiff_t half = count >> digits;
    const std::ptrdiff_t reached = count >> --digits;
    const std::ptrdiff_t places = n + (count - reached) * step;
    if (reached == 2 * half) {
      double_sums(sums, half * step, buffer, places);
    } else {
      double_sums_and_one(sums, half * step, values + 2 * half * step, buffer, places);
    }
    sums = buffer;
    std::swap(buffer, other_buffer);
  }
  return sums;
}

// The sums of the columns of an image and of its windows, over the rows that were added and not subtracted.
// The bytes of RGB pixels stay interleaved: columns are columns of bytes, and horizontal neighbours are
// Channels bytes apart.
template <int Channels, class Sum>
class WindowSums {
 public:
  explicit WindowSums(Image<Channels> image)
      : image_(image), bytes_(static_cast<std::ptrdiff_t>(image.width) * Channels) {
    for (Buffer<Sum>& buffer : buffers_) buffer = allocate<Sum>(bytes_);
    if (buffers_[0]) std::fill_n(buffers_[0].get(), bytes_, Sum{0});
  }

  bool allocated() const { return buffers_[0] && buffers_[1] && buffers_[2]; }

  void add(int32_t y) { add_row(buffers_[0].get(), image_.row(y), bytes_); }
  void subtract(int32_t y) { subtract_row(buffers_[0].get(), image_.row(y), bytes_); }
  void exchange(int32_t in, int32_t out) {
    exchange_rows(buffers_[0].get(), image_.row(in), image_.row(out), bytes_);
  }

  const Sum* of_columns() const { return buffers_[0].get(); }
  // The sums of all windows of that many columns whose columns lie in the row, from the left. The next call
  // overwrites them.
  const Sum* of_windows(int32_t columns) {
    const std::ptrdiff_t n = bytes_ - static_cast<std::ptrdiff_t>(columns - 1) * Channels;
    return neighbour_sums<Sum>(of_columns(), n, columns, Channels, buffers_[1].get(), buffers_[2].get());
  }

 private:
  Image<Channels> image_;
  std::ptrdiff_t bytes_;
  Buffer<Sum> buffers_[3];  // the column sums, and two that neighbour_sums() alternates
};

}  // namespace nuv

#endif

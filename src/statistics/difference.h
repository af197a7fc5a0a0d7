// How much two rectangles of one size differ.

#ifndef NUV_STATISTICS_DIFFERENCE_H
#define NUV_STATISTICS_DIFFERENCE_H

#include <cstddef>
#include <cstdint>

#include "core/arithmetic.h"
#include "nuv/records.h"

namespace nuv {

// The sum of |a - b| over n pairs of bytes.
int32_t sum_of_differences(const uint8_t* a, const uint8_t* b, std::ptrdiff_t n);

// The part of a rectangle that is compared: all but its last row and column.
struct ComparedArea {
  int32_t rows;
  int32_t row_bytes;

  ComparedArea(tagRECT rect, int32_t channels)
      : rows(rect.bottom - rect.top), row_bytes((rect.right - rect.left) * channels) {}

  int32_t bytes() const { return rows * row_bytes; }
  bool empty() const { return rows < 1 || row_bytes < 1 || bytes() == 0; }
  // The mean difference per byte, truncated; 0 if the area is empty.
  int32_t mean(int32_t sum) const { return empty() ? 0 : quotient(sum, bytes()); }
};

}  // namespace nuv

#endif

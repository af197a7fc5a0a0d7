// Passes that map each pixel by itself.

#ifndef NUV_CORE_POINT_PASS_H
#define NUV_CORE_POINT_PASS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/views.h"

namespace nuv {

// Applies row_map(pixels, count) to each row of a region, which must lie in the image. A region of the whole
// width is passed as one long row.
template <class RowMap>
void for_rows(GrayImage image, Region region, RowMap row_map) {
  if (region.empty()) return;
  if (region.columns() == image.width) {
    row_map(image.row(region.y1), static_cast<std::ptrdiff_t>(image.width) * region.rows());
    return;
  }
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    row_map(image.at(region.x1, y), static_cast<std::ptrdiff_t>(region.columns()));
  }
}

// Applies row_map(pixels, results, count) to each row of a region, which must lie in the image. results is
// the same place in a result of the image's size.
template <class RowMap>
void for_rows(GrayImage image, GrayImage result, Region region, RowMap row_map) {
  if (image.empty() || region.empty()) return;
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    row_map(image.at(region.x1, y), result.at(region.x1, y), static_cast<std::ptrdiff_t>(region.columns()));
  }
}

using ByteTable = std::array<uint8_t, 256>;

// Replaces byte i by its entry in table_of(i), eight bytes at a time, with one load and one store for all.
template <class TableOf>
void map_bytes(TableOf table_of, uint8_t* bytes, std::ptrdiff_t n) {
  std::ptrdiff_t i = 0;
  for (; i + 8 <= n; i += 8) {
    uint64_t eight;
    std::memcpy(&eight, bytes + i, 8);
    uint64_t mapped = 0;
    for (int k = 0; k < 8; ++k) {
      mapped |= static_cast<uint64_t>(table_of(i + k)[eight >> 8 * k & 255]) << 8 * k;
    }
    std::memcpy(bytes + i, &mapped, 8);
  }
  for (; i < n; ++i) bytes[i] = table_of(i)[bytes[i]];
}

inline void map_bytes(const ByteTable& table, uint8_t* bytes, std::ptrdiff_t n) {
  map_bytes([&table](std::ptrdiff_t) -> const ByteTable& { return table; }, bytes, n);
}

}  // namespace nuv

#endif

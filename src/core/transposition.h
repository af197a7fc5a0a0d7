// Transposition: rows become columns.

#ifndef NUV_CORE_TRANSPOSITION_H
#define NUV_CORE_TRANSPOSITION_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nuv {

// An image whose rows lie step bytes apart. With a negative step it is walked from its last row up.
template <class Byte>
struct SteppedRows {
  Byte* first;
  std::ptrdiff_t step;

  Byte* operator[](std::ptrdiff_t y) const { return first + y * step; }
};

struct Transposition {
  SteppedRows<const uint8_t> from;
  SteppedRows<uint8_t> to;

  // Copies pixel x of row y to pixel y of row x, for columns x1 to x2 - 1 of rows y1 to y2 - 1.
  template <int PixelBytes>
  void move(std::ptrdiff_t x1, std::ptrdiff_t x2, std::ptrdiff_t y1, std::ptrdiff_t y2) const {
    for (std::ptrdiff_t x = x1; x < x2; ++x) {
      const uint8_t* source = from[y1] + x * PixelBytes;
      uint8_t* target = to[x] + y1 * PixelBytes;
      for (std::ptrdiff_t y = y1; y < y2; ++y, source += from.step, target += PixelBytes) {
        std::memcpy(target, source, PixelBytes);
      }
    }
  }

  // Transposes a whole image, in blocks. PixelBytes is 1, 3 or 4.
  template <int PixelBytes>
  void move_all(std::ptrdiff_t columns, std::ptrdiff_t rows) const;
};

}  // namespace nuv

#endif

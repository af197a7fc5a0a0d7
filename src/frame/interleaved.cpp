// Splitting pixels of three bytes into planes, 16 pixels at a time.

#include "frame/interleaved.h"

#include "frame/lanes.h"
#include "frame/row_kernel.h"

namespace nuv {

NUV_ROW_KERNEL void split_planes(const uint8_t* NUV_RESTRICT pixels, uint8_t* NUV_RESTRICT plane0,
                                 uint8_t* NUV_RESTRICT plane1, uint8_t* NUV_RESTRICT plane2,
                                 std::ptrdiff_t count) {
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES
  for (; i + 16 <= count; i += 16) {
    const Bytes16 a = load16(pixels + 3 * i);
    const Bytes16 b = load16(pixels + 3 * i + 16);
    const Bytes16 c = load16(pixels + 3 * i + 32);
    // Every third byte: first those of a and b, then those of c behind them.
    const Bytes16 ab0 = __builtin_shufflevector(a, b, 0, 3, 6, 9, 12, 15, 18, 21, 24, 27, 30, 0, 0, 0, 0, 0);
    const Bytes16 ab1 = __builtin_shufflevector(a, b, 1, 4, 7, 10, 13, 16, 19, 22, 25, 28, 31, 0, 0, 0, 0, 0);
    const Bytes16 ab2 = __builtin_shufflevector(a, b, 2, 5, 8, 11, 14, 17, 20, 23, 26, 29, 0, 0, 0, 0, 0, 0);
    store16(plane0 + i,
            __builtin_shufflevector(ab0, c, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 17, 20, 23, 26, 29));
    store16(plane1 + i,
            __builtin_shufflevector(ab1, c, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 18, 21, 24, 27, 30));
    store16(plane2 + i,
            __builtin_shufflevector(ab2, c, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 16, 19, 22, 25, 28, 31));
  }
#endif
  for (; i < count; ++i) {
    plane0[i] = pixels[3 * i];
    plane1[i] = pixels[3 * i + 1];
    plane2[i] = pixels[3 * i + 2];
  }
}

}  // namespace nuv

// The row kernels of the colour matrix.

#include "colour/colour_matrix.h"

#include <cstring>

#include "colour/from_rgb_avx512.h"

namespace nuv {
namespace {

NUV_INLINE uint16_t load_pair(const uint8_t* plane, std::ptrdiff_t i) {
  uint16_t pair;
  std::memcpy(&pair, plane + 2 * i, 2);
  return pair;
}

NUV_INLINE void store_pair(uint8_t* plane, std::ptrdiff_t i, uint16_t pair) {
  std::memcpy(plane + 2 * i, &pair, 2);
}

// Y plus a term for both pixels of a pair.
NUV_INLINE void store_sums(uint8_t* plane, std::ptrdiff_t i, uint16_t luma, int16_t term) {
  const uint8_t low = clamped_sum(luma & 255, term);
  const uint8_t high = clamped_sum(static_cast<int16_t>(luma >> 8), term);
  store_pair(plane, i, static_cast<uint16_t>(low | high << 8));
}

// From RGB, with green taken off blue and red: b = B - G, r = R - G. The weights of Y sum up to 2^14 - 2,
// those of c and of d to 1, so
//
//     2^14 * (Y - G) = 1867*b + 4898*r - 2*G  = 64*(28*b + 77*r)  + 23*(b + r) - e - f
//     2^14 * c       = 8192*b - 2763*r + G    = 256*(32*b - 11*r) + e                     e = G + 53*r
//     2^14 * d       = 8192*r - 1332*b + G    = 256*(32*r - 5*b)  + f                     f = G - 52*b
//
// The high sums stay within 16 bits, and of the low ones only what carries over, rounded down, is kept: so
// Y - G comes with 8 bits behind the point, c and d with 6.
struct Factors {
  int16_t e_r = 53;
  int16_t f_b = 52;
  int16_t y_low = 23;
  int16_t y_b = 28;
  int16_t y_r = 77;
  int16_t c_r = 11;
  int16_t d_b = 5;
};

struct Fixed {
  int16_t y_less_green;
  int16_t c;
  int16_t d;
};

NUV_INLINE Fixed from_rgb(int16_t blue, int16_t green, int16_t red, const Factors& by) {
  const auto b = static_cast<int16_t>(blue - green);
  const auto r = static_cast<int16_t>(red - green);
  const auto e = static_cast<int16_t>(green + by.e_r * r);
  const auto f = static_cast<int16_t>(green - by.f_b * b);
  const auto low = static_cast<int16_t>(by.y_low * (b + r) - (e + f));
  return {static_cast<int16_t>(by.y_b * b + by.y_r * r + (low >> 6)),
          static_cast<int16_t>(32 * b - by.c_r * r + (e >> 8)),
          static_cast<int16_t>(32 * r - by.d_b * b + (f >> 8))};
}

// The sum of two numbers with 6 bits behind the point, both rounded down.
NUV_INLINE int16_t sum_of_floors(int16_t a, int16_t b) {
  return static_cast<int16_t>((a + (b & ~63)) >> 6);
}

// The factors come through memory: of those that it knows, a compiler makes chains of shifts and sums, which
// are slower than the products.
NUV_ROW_KERNEL void from_rgb_row(const PlaneBlock& pixels, const Factors& factors, uint8_t* NUV_RESTRICT luma,
                                 ChromaSums& NUV_RESTRICT sums, std::ptrdiff_t pairs) {
  const Factors by = factors;
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    const uint16_t blue = load_pair(pixels.b0, i);
    const uint16_t green = load_pair(pixels.b1, i);
    const uint16_t red = load_pair(pixels.b2, i);
    const Fixed low = from_rgb(blue & 255, green & 255, red & 255, by);
    const Fixed high = from_rgb(blue >> 8, green >> 8, red >> 8, by);
    // A low byte that is below 0 takes its sign along, and green brings all back into bytes.
    store_pair(luma, i, static_cast<uint16_t>((high.y_less_green & ~255) + (low.y_less_green >> 8) + green));
    sums.c[i] = sum_of_floors(low.c, high.c);
    sums.d[i] = sum_of_floors(low.d, high.d);
  }
}

}  // namespace

NUV_ROW_KERNEL void chroma_terms(const uint8_t* cb, const uint8_t* cr, TermBlock& NUV_RESTRICT terms,
                                 std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    terms.blue[i] = blue_term(cb[i]);
    terms.green[i] = green_term(cb[i], cr[i]);
    terms.red[i] = red_term(cr[i]);
  }
}

NUV_ROW_KERNEL void rgb_from_terms(const uint8_t* luma, const TermBlock& terms,
                                   PlaneBlock& NUV_RESTRICT pixels, std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    const uint16_t pair = load_pair(luma, i);
    store_sums(pixels.b0, i, pair, terms.blue[i]);
    store_sums(pixels.b1, i, pair, terms.green[i]);
    store_sums(pixels.b2, i, pair, terms.red[i]);
  }
}

NUV_ROW_KERNEL void red_terms(const uint8_t* cr, TermBlock& NUV_RESTRICT terms, std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) terms.red[i] = red_term(cr[i]);
}

NUV_ROW_KERNEL void red_from_terms(const uint8_t* luma, const TermBlock& terms, uint8_t* NUV_RESTRICT red,
                                   std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) store_sums(red, i, load_pair(luma, i), terms.red[i]);
}

void luma_and_chroma(const uint8_t* rgb, uint8_t* luma, ChromaSums& sums, std::ptrdiff_t pixels) {
#if NUV_HAS_AVX512
  if (pixels >= kWidePixels && has_avx512()) {
    from_rgb_row_avx512(rgb, luma, sums, pixels);
    return;
  }
#endif
  static constexpr Factors kFactors;
  PlaneBlock planes;
  split_planes(rgb, planes.b0, planes.b1, planes.b2, pixels);
  from_rgb_row(planes, kFactors, luma, sums, pixels / 2);
}

NUV_ROW_KERNEL void mean_of_two(const int16_t* sums, uint8_t* NUV_RESTRICT chroma, std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) chroma[i] = static_cast<uint8_t>((sums[i] >> 1) + 128);
}

NUV_ROW_KERNEL void mean_of_four(const int16_t* upper, const int16_t* lower, uint8_t* NUV_RESTRICT chroma,
                                 std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    const auto sum = static_cast<int16_t>(upper[i] + lower[i]);
    chroma[i] = static_cast<uint8_t>((sum >> 2) + 128);
  }
}

}  // namespace nuv

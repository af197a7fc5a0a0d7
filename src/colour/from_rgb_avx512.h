// RGB to Y and chroma with AVX-512, where one instruction adds two products of bytes. The row kernels of
// colour_matrix.cpp are the plain form, and run on all other processors with the same results.
//
// Weights of 14 bits are split into bytes, high * 128 + low. The carry of the sum of the low products,
// rounded down, is added to the sum of the high products, which has 7 fractional bits:
//
//     2^14 * Y = 128*(14*B + 75*G + 38*R) + (75*B + 17*G + 34*R)
//     2^14 * c = 128*(64*B - 42*G - 21*R) - (52*G + 75*R)
//     2^14 * d = 128*(64*R - 53*G - 10*B) - (52*B + 75*G)
//
// Each sum of two products and each total fits in 16 bits.

#ifndef NUV_COLOUR_FROM_RGB_AVX512_H
#define NUV_COLOUR_FROM_RGB_AVX512_H

#include "colour/colour_matrix.h"

// Under AddressSanitizer, and in a build for a level without AVX-512, the plain form runs.
#if defined(__GNUC__) && defined(__x86_64__) && defined(__ELF__) && !defined(__SANITIZE_ADDRESS__) && \
    (!defined(NUV_ONE_LEVEL) || defined(__AVX512BW__))
#define NUV_HAS_AVX512 1
#else
#define NUV_HAS_AVX512 0
#endif

#if NUV_HAS_AVX512

// GCC 12 warns of the vectors that its own header leaves undefined on purpose.
#if !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>
#if !defined(__clang__)
#pragma GCC diagnostic pop
#endif

#include <algorithm>

#define NUV_AVX512 __attribute__((target("avx512f,avx512bw")))

namespace nuv {

constexpr std::ptrdiff_t kWidePixels = 64;

inline bool has_avx512() {
  return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512bw") != 0;
}

// Arranges the sixteen pixels of a load, four to each lane of sixteen bytes. A lane then has four groups of
// four bytes: B and G of its pixels 0 and 2, B and G of 1 and 3, G and R of 0 and 2, G and R of 1 and 3.
NUV_AVX512 NUV_INLINE __m512i lanes_of_four(__m512i bytes, __m512i lanes) {
  const __m512i order =
      _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 6, 7, 3, 4, 9, 10, 1, 2, 7, 8, 4, 5, 10, 11));
  return _mm512_shuffle_epi8(_mm512_permutexvar_epi32(lanes, bytes), order);
}

// The sum of the two bytes of each pair, each byte multiplied by its weight.
NUV_AVX512 NUV_INLINE __m512i weighted(__m512i pairs, int first, int second) {
  return _mm512_maddubs_epi16(pairs, _mm512_set1_epi16(static_cast<int16_t>((first & 255) | second * 256)));
}
NUV_AVX512 NUV_INLINE __m512i with_carry(__m512i high, __m512i low) {
  return _mm512_add_epi16(high, _mm512_srai_epi16(low, 7));
}

// Y, c and d with 7 fractional bits. bg has the bytes B and G of 32 pixels, gr their bytes G and R.
NUV_AVX512 NUV_INLINE __m512i luma_of(__m512i bg, __m512i gr) {
  return with_carry(_mm512_add_epi16(weighted(bg, 14, 75), weighted(gr, 0, 38)),
                    _mm512_add_epi16(weighted(bg, 75, 17), weighted(gr, 0, 34)));
}
NUV_AVX512 NUV_INLINE __m512i c_of(__m512i bg, __m512i gr) {
  return with_carry(_mm512_add_epi16(weighted(bg, 64, -42), weighted(gr, 0, -21)), weighted(gr, -52, -75));
}
NUV_AVX512 NUV_INLINE __m512i d_of(__m512i bg, __m512i gr) {
  return with_carry(_mm512_add_epi16(weighted(bg, -10, -53), weighted(gr, 0, 64)), weighted(bg, -52, -75));
}
NUV_AVX512 NUV_INLINE __m512i sum_of_floors(__m512i a, __m512i b) {
  return _mm512_add_epi16(_mm512_srai_epi16(a, 7), _mm512_srai_epi16(b, 7));
}

// Computes the Y of 64 pixels, and the sums of c and of d over their pairs.
NUV_AVX512 NUV_INLINE void from_rgb_wide(const uint8_t* rgb, uint8_t* luma, int16_t* c, int16_t* d) {
  // The 32-bit words that each lane takes: twelve bytes, from the start of a load or from byte 16 on.
  const __m512i at_start = _mm512_setr_epi32(0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11);
  const __m512i behind_16 = _mm512_add_epi32(at_start, _mm512_set1_epi32(4));
  const __m512i p0 = lanes_of_four(_mm512_loadu_si512(rgb), at_start);
  const __m512i p1 = lanes_of_four(_mm512_loadu_si512(rgb + 32), behind_16);
  const __m512i p2 = lanes_of_four(_mm512_loadu_si512(rgb + 80), behind_16);
  const __m512i p3 = lanes_of_four(_mm512_loadu_si512(rgb + 128), behind_16);

  // Interleaving the groups of the four loads separates the left and the right pixels of pairs.
  const __m512i bg01 = _mm512_unpacklo_epi32(p0, p1);
  const __m512i bg23 = _mm512_unpacklo_epi32(p2, p3);
  const __m512i gr01 = _mm512_unpackhi_epi32(p0, p1);
  const __m512i gr23 = _mm512_unpackhi_epi32(p2, p3);
  const __m512i left_bg = _mm512_unpacklo_epi64(bg01, bg23);
  const __m512i right_bg = _mm512_unpackhi_epi64(bg01, bg23);
  const __m512i left_gr = _mm512_unpacklo_epi64(gr01, gr23);
  const __m512i right_gr = _mm512_unpackhi_epi64(gr01, gr23);

  const __m512i left = _mm512_srli_epi16(luma_of(left_bg, left_gr), 7);
  const __m512i right = _mm512_slli_epi16(luma_of(right_bg, right_gr), 1);
  const __m512i both = _mm512_mask_blend_epi8(0xAAAAAAAAAAAAAAAA, left, right);
  const __m512i c_sums = sum_of_floors(c_of(left_bg, left_gr), c_of(right_bg, right_gr));
  const __m512i d_sums = sum_of_floors(d_of(left_bg, left_gr), d_of(right_bg, right_gr));

  // Place j of lane l has four pixels of load j. They belong at place 4j + l.
  const __m512i in_order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
  _mm512_storeu_si512(luma, _mm512_permutexvar_epi32(in_order, both));
  _mm512_storeu_si512(c, _mm512_permutexvar_epi32(in_order, c_sums));
  _mm512_storeu_si512(d, _mm512_permutexvar_epi32(in_order, d_sums));
}

// The number of pixels must be even and at least 64. The last step ends with the row and may repeat pixels of
// the step before it.
NUV_AVX512 inline void from_rgb_row_avx512(const uint8_t* rgb, uint8_t* luma, ChromaSums& sums,
                                           std::ptrdiff_t pixels) {
  for (std::ptrdiff_t done = 0; done < pixels; done += kWidePixels) {
    const std::ptrdiff_t x = std::min(done, pixels - kWidePixels);
    from_rgb_wide(rgb + 3 * x, luma + x, sums.c + x / 2, sums.d + x / 2);
  }
}

}  // namespace nuv

#endif  // NUV_HAS_AVX512

#endif

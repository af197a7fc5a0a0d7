// From RGB to Y and chroma with AVX-512, where the processor adds two products of bytes in one step. The row
// kernels of colour_matrix.cpp are the plain form of it, and do the same on all other processors.
//
// Weights of 14 bits are split into bytes, high * 128 + low. The sum of the low products, rounded down to
// what it carries over, goes into the sum of the high ones, which then has 7 bits behind the point:
//
//     2^14 * Y = 128*(14*B + 75*G + 38*R) + (75*B + 17*G + 34*R)
//     2^14 * c = 128*(64*B - 42*G - 21*R) - (52*G + 75*R)
//     2^14 * d = 128*(64*R - 53*G - 10*B) - (52*B + 75*G)
//
// No sum of two products, and no sum of all, leaves 16 bits.

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

// The sixteen pixels of 48 bytes behind a load of 64, four to a lane of sixteen bytes, as the bytes B, G and
// G, R: of the pixels 0 and 2, of 1 and 3, then once more.
NUV_AVX512 NUV_INLINE __m512i lanes_of_four(__m512i bytes, __m512i lanes) {
  const __m512i order =
      _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 6, 7, 3, 4, 9, 10, 1, 2, 7, 8, 4, 5, 10, 11));
  return _mm512_shuffle_epi8(_mm512_permutexvar_epi32(lanes, bytes), order);
}

// Weights of the first and of the second byte of each pair.
NUV_AVX512 NUV_INLINE __m512i weighted(__m512i pairs, int first, int second) {
  return _mm512_maddubs_epi16(pairs, _mm512_set1_epi16(static_cast<int16_t>((first & 255) | second * 256)));
}
NUV_AVX512 NUV_INLINE __m512i with_carry(__m512i high, __m512i low) {
  return _mm512_add_epi16(high, _mm512_srai_epi16(low, 7));
}

// Of bg, the bytes B and G of 32 pixels, and gr, their bytes G and R, with 7 bits behind the point.
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

// Sixty-four pixels: their Y, and the sums of c and of d over pairs of them.
NUV_AVX512 NUV_INLINE void from_rgb_wide(const uint8_t* rgb, uint8_t* luma, int16_t* c, int16_t* d) {
  // The places of twelve bytes each, from the start of a load on, or from 16 bytes behind it.
  const __m512i at_start = _mm512_setr_epi32(0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11);
  const __m512i behind_16 = _mm512_add_epi32(at_start, _mm512_set1_epi32(4));
  const __m512i p0 = lanes_of_four(_mm512_loadu_si512(rgb), at_start);
  const __m512i p1 = lanes_of_four(_mm512_loadu_si512(rgb + 32), behind_16);
  const __m512i p2 = lanes_of_four(_mm512_loadu_si512(rgb + 80), behind_16);
  const __m512i p3 = lanes_of_four(_mm512_loadu_si512(rgb + 128), behind_16);

  // Fours of the four loads take turns, until left and right pixels of pairs stand apart.
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

  // Four pixels of load j stand at place j of lane l; they belong at place 4j + l.
  const __m512i in_order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
  _mm512_storeu_si512(luma, _mm512_permutexvar_epi32(in_order, both));
  _mm512_storeu_si512(c, _mm512_permutexvar_epi32(in_order, c_sums));
  _mm512_storeu_si512(d, _mm512_permutexvar_epi32(in_order, d_sums));
}

// At least 64 pixels, an even number: the last step ends with them, over what the one before it did.
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

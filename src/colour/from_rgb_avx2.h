// RGB to Y and chroma with AVX2, where one instruction adds two products of bytes and one adds two products of
// words. The row kernels of colour_matrix.cpp are the plain form, and run on all other processors with the same
// results.
//
// A pixel occupies four bytes, B, G, R and G again. Weights of bytes make two words of them, and weights of
// words make their weighted sum in 32 bits. With G in both words, the weights of the matrix factor exactly:
//
//     2^18 * Y = 1867*(16*B + 47*G) + 2449*(32*R + 27*G)
//     2^16 * c = 2048*(16*B - 13*G) + 1228*(4*G - 9*R)
//     2^16 * d = 2048*(16*R - 10*G) - 148*(36*B + 47*G)
//
// c and d, rounded down, are the upper halves of their sums.

#ifndef NUV_COLOUR_FROM_RGB_AVX2_H
#define NUV_COLOUR_FROM_RGB_AVX2_H

#include "colour/colour_matrix.h"
#include "core/lanes.h"

// Under AddressSanitizer, and in a build for a level without AVX2, the plain form runs.
#if defined(__GNUC__) && defined(__x86_64__) && defined(__ELF__) && !defined(__SANITIZE_ADDRESS__) && \
    (!defined(NUV_ONE_LEVEL) || defined(__AVX2__))
#define NUV_HAS_AVX2 1
#else
#define NUV_HAS_AVX2 0
#endif

#if NUV_HAS_AVX2

#include <immintrin.h>

#define NUV_AVX2 __attribute__((target("avx2")))

namespace nuv {

// The pixels of a step, eight to each vector.
constexpr std::ptrdiff_t kWidePixels = 32;
constexpr int kWideVectors = 4;

inline bool has_avx2() {
  return __builtin_cpu_supports("avx2") != 0;
}

// The factors of one row of the matrix: those of the bytes B and G, of the bytes R and G, and of the two words.
struct WideFactors {
  int b;
  int g_beside_b;
  int r;
  int g_beside_r;
  int word_of_b;
  int word_of_r;

  constexpr bool equal(int blue, int green, int red) const {
    return word_of_b * b == blue && word_of_r * r == red &&
           word_of_b * g_beside_b + word_of_r * g_beside_r == green;
  }
};
constexpr WideFactors kLumaFactors = {16, 47, 32, 27, 1867, 2449};
constexpr WideFactors kCFactors = {16, -13, -9, 4, 2048, 1228};
constexpr WideFactors kDFactors = {-36, -47, 16, -10, 148, 2048};
static_assert(kLumaFactors.equal(16 * 1867, 16 * 9617, 16 * 4898));
static_assert(kCFactors.equal(4 * 8192, 4 * -5428, 4 * -2763));
static_assert(kDFactors.equal(4 * -1332, 4 * -6859, 4 * 8192));

NUV_AVX2 NUV_INLINE __m256i load_wide(const uint8_t* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}
NUV_AVX2 NUV_INLINE void store_wide(uint8_t* p, __m256i bytes) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), bytes);
}

// Loads sixteen bytes for each lane, and repeats the G of the four pixels that start at byte First.
template <int First>
NUV_AVX2 NUV_INLINE __m256i load_bgrg(const uint8_t* low, const uint8_t* high) {
  const __m128i order = _mm_setr_epi8(First + 0, First + 1, First + 2, First + 1, First + 3, First + 4,
                                      First + 5, First + 4, First + 6, First + 7, First + 8, First + 7,
                                      First + 9, First + 10, First + 11, First + 10);
  const __m256i bytes =
      _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(high), reinterpret_cast<const __m128i*>(low));
  return _mm256_shuffle_epi8(bytes, _mm256_broadcastsi128_si256(order));
}

// Loads 32 pixels, sixteen to the lower lanes and sixteen to the upper ones. Packing, which works in each lane,
// leaves them in order. The last load starts four bytes early so that it ends with the pixels.
NUV_AVX2 NUV_INLINE void load_pixels(const uint8_t* rgb, __m256i (&pixels)[kWideVectors]) {
  for (int i = 0; i < 3; ++i) pixels[i] = load_bgrg<0>(rgb + 12 * i, rgb + 48 + 12 * i);
  pixels[3] = load_bgrg<4>(rgb + 32, rgb + 80);
}

NUV_AVX2 NUV_INLINE __m256i weighted(__m256i pixels, const WideFactors& by) {
  const auto bytes = static_cast<int32_t>((by.b & 255u) | (by.g_beside_b & 255u) << 8 | (by.r & 255u) << 16 |
                                          (by.g_beside_r & 255u) << 24);
  const auto words = static_cast<int32_t>((by.word_of_b & 65535u) | (by.word_of_r & 65535u) << 16);
  return _mm256_madd_epi16(_mm256_maddubs_epi16(pixels, _mm256_set1_epi32(bytes)), _mm256_set1_epi32(words));
}

NUV_AVX2 NUV_INLINE __m256i luma_of(const __m256i (&pixels)[kWideVectors]) {
  __m256i y[kWideVectors];
  for (int i = 0; i < kWideVectors; ++i) y[i] = _mm256_srli_epi32(weighted(pixels[i], kLumaFactors), 18);
  return _mm256_packus_epi16(_mm256_packs_epi32(y[0], y[1]), _mm256_packs_epi32(y[2], y[3]));
}

// The c and d of eight pixels, alternating.
NUV_AVX2 NUV_INLINE __m256i chroma_of(__m256i pixels) {
  const __m256i c = _mm256_srli_epi32(weighted(pixels, kCFactors), 16);
  return _mm256_blend_epi16(c, weighted(pixels, kDFactors), 0xAA);
}

// The sums of left and right pixels, for two vectors of eight pixels.
NUV_AVX2 NUV_INLINE __m256i pair_sums(__m256i a, __m256i b) {
  const __m256 x = _mm256_castsi256_ps(a);
  const __m256 y = _mm256_castsi256_ps(b);
  return _mm256_add_epi16(_mm256_castps_si256(_mm256_shuffle_ps(x, y, 0x88)),
                          _mm256_castps_si256(_mm256_shuffle_ps(x, y, 0xDD)));
}

NUV_AVX2 NUV_INLINE void store_chroma(__m256i pairs, ChromaPairs chroma, std::ptrdiff_t x) {
  store_wide(chroma.bytes + x, pairs);
}
NUV_AVX2 NUV_INLINE void store_chroma(__m256i pairs, ChromaPlanes chroma, std::ptrdiff_t x) {
  const __m256i apart = _mm256_shuffle_epi8(
      pairs,
      _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15)));
  const __m256i planes = _mm256_permute4x64_epi64(apart, 0xD8);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(chroma.cb + x / 2), _mm256_castsi256_si128(planes));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(chroma.cr + x / 2), _mm256_extracti128_si256(planes, 1));
}

// The number of pixels must be even and at least 32.
template <int Rows, class Chroma>
NUV_AVX2 void from_rgb_rows_avx2(const uint8_t* const (&rgb)[Rows], uint8_t* const (&luma)[Rows],
                                 Chroma chroma, std::ptrdiff_t pixels) {
  for (const std::ptrdiff_t x : Steps<kWidePixels>(pixels)) {
    __m256i sums[kWideVectors];
    for (int r = 0; r < Rows; ++r) {
      __m256i row[kWideVectors];
      load_pixels(rgb[r] + 3 * x, row);
      store_wide(luma[r] + x, luma_of(row));
      for (int i = 0; i < kWideVectors; ++i) {
        sums[i] = r == 0 ? chroma_of(row[i]) : _mm256_add_epi16(sums[i], chroma_of(row[i]));
      }
    }
    const __m256i low = _mm256_srai_epi16(pair_sums(sums[0], sums[1]), Rows);
    const __m256i high = _mm256_srai_epi16(pair_sums(sums[2], sums[3]), Rows);
    const __m256i means = _mm256_packs_epi16(low, high);
    store_chroma(_mm256_xor_si256(means, _mm256_set1_epi8(-128)), chroma, x);  // adds 128
  }
}

}  // namespace nuv

#endif  // NUV_HAS_AVX2

#endif

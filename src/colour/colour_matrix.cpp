// The row kernels of the colour matrix.

#include "colour/colour_matrix.h"

#include <cstring>

#include "colour/from_rgb_avx2.h"
#include "core/pixel_words.h"

namespace nuv {
namespace {

// Hides the value of a factor. The compiler replaces products with known factors by chains of shifts and
// sums, which are slower.
NUV_INLINE int16_t opaque(int16_t factor) {
  const volatile int16_t seen = factor;
  return seen;
}

// RGB to Y and chroma, with green subtracted from blue and red: b = B - G, r = R - G. The weights of Y add up
// to 2^14 - 2 and those of c and of d to 1. Therefore
//
//     2^14 * (Y - G) = 1867*b + 4898*r - 2*G  = 64*(28*b + 77*r)  + 23*(b + r) - e - f
//     2^14 * c       = 8192*b - 2763*r + G    = 256*(32*b - 11*r) + e                     e = G + 53*r
//     2^14 * d       = 8192*r - 1332*b + G    = 256*(32*r - 5*b)  + f                     f = G - 52*b
//
// The high sums fit in 16 bits. Only the carry of a low sum, rounded down, is added to the high sum. Y - G
// then has 8 fractional bits, c and d have 6.
struct Factors {
  int16_t e_r = opaque(53);
  int16_t f_b = opaque(52);
  int16_t y_low = opaque(23);
  int16_t y_b = opaque(28);
  int16_t y_r = opaque(77);
  int16_t c_r = opaque(11);
  int16_t d_b = opaque(5);
};

// T is int16_t or a vector of it.
template <class T>
struct Fixed {
  T y_less_green;
  T c;
  T d;
};

template <class T>
NUV_INLINE void from_rgb(const T (&pixel)[3], const Factors& by, Fixed<T>& fixed) {
  const T green = pixel[1];
  const T b = static_cast<T>(pixel[0] - green);
  const T r = static_cast<T>(pixel[2] - green);
  const T e = static_cast<T>(green + by.e_r * r);
  const T f = static_cast<T>(green - by.f_b * b);
  const T low = static_cast<T>(by.y_low * (b + r) - (e + f));
  fixed.y_less_green = static_cast<T>(by.y_b * b + by.y_r * r + (low >> 6));
  fixed.c = static_cast<T>((b << 5) - by.c_r * r + (e >> 8));
  fixed.d = static_cast<T>((r << 5) - by.d_b * b + (f >> 8));
}

// The sums of c and of d over each pair.
struct ChromaSums {
  alignas(64) int16_t c[kPlaneBlock / 2];
  alignas(64) int16_t d[kPlaneBlock / 2];
};

// The Y of two pixels as one word, and the sums of their c and of their d, each c and d rounded down first.
template <class T>
struct PairOf {
  T luma;
  T c;
  T d;
};

template <class T>
NUV_INLINE void pair_from_rgb(const T (&left_pixel)[3], const T (&right_pixel)[3], const Factors& by,
                              PairOf<T>& pair) {
  constexpr int16_t kHighByte = -256;
  constexpr int16_t kWhole = -64;
  Fixed<T> left;
  Fixed<T> right;
  from_rgb(left_pixel, by, left);
  from_rgb(right_pixel, by, right);
  // A negative low byte borrows from the high one; adding green restores both.
  pair.luma = static_cast<T>((left.y_less_green >> 8) + left_pixel[1] + (right.y_less_green & kHighByte) +
                             (right_pixel[1] << 8));
  pair.c = static_cast<T>(static_cast<T>(left.c + (right.c & kWhole)) >> 6);
  pair.d = static_cast<T>(static_cast<T>(left.d + (right.d & kWhole)) >> 6);
}

#if NUV_HAS_LANES
// Processes as many pixels at once as a vector has bytes. Returns the number of pixels done: all or none.
template <class Words>
NUV_INLINE std::ptrdiff_t from_rgb_by(const uint8_t* rgb, const Factors& by, uint8_t* luma, ChromaSums& sums,
                                      std::ptrdiff_t pixels) {
  constexpr std::ptrdiff_t kStep = PixelPairs<Words>::kPixels;
  const Steps<kStep> steps(pixels);
  for (const std::ptrdiff_t i : steps) {
    PixelPairs<Words> in;
    split_pixels(rgb + 3 * i, in);
    PairOf<Words> pairs;
    pair_from_rgb(in.left, in.right, by, pairs);
    store_words(luma + i, pairs.luma);
    store_words(reinterpret_cast<uint8_t*>(sums.c + i / 2), pairs.c);
    store_words(reinterpret_cast<uint8_t*>(sums.d + i / 2), pairs.d);
  }
  return steps.covered();
}
#endif

NUV_ROW_KERNEL void from_rgb_row(const uint8_t* NUV_RESTRICT rgb, uint8_t* NUV_RESTRICT luma,
                                 ChromaSums& NUV_RESTRICT sums, std::ptrdiff_t pixels) {
  const Factors by;
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  done = has_wide_lanes() ? from_rgb_by<Shorts16>(rgb, by, luma, sums, pixels)
                          : from_rgb_by<Shorts8>(rgb, by, luma, sums, pixels);
#endif
  for (; done < pixels; done += 2) {
    const uint8_t* p = rgb + 3 * done;
    PairOf<int16_t> pair;
    pair_from_rgb<int16_t>({p[0], p[1], p[2]}, {p[3], p[4], p[5]}, by, pair);
    std::memcpy(luma + done, &pair.luma, 2);
    sums.c[done / 2] = pair.c;
    sums.d[done / 2] = pair.d;
  }
}

NUV_INLINE uint16_t load_pair(const uint8_t* bytes, std::ptrdiff_t i) {
  uint16_t pair;
  std::memcpy(&pair, bytes + 2 * i, 2);
  return pair;
}
NUV_INLINE void store_pair(uint8_t* bytes, std::ptrdiff_t i, uint8_t low, uint8_t high) {
  const auto pair = static_cast<uint16_t>(low | high << 8);
  std::memcpy(bytes + 2 * i, &pair, 2);
}

NUV_INLINE uint8_t mean_of_two(int16_t sum) {
  return static_cast<uint8_t>((sum >> 1) + 128);
}
NUV_INLINE uint8_t mean_of_four(int16_t upper, int16_t lower) {
  return static_cast<uint8_t>((static_cast<int16_t>(upper + lower) >> 2) + 128);
}

NUV_ROW_KERNEL void mean_of_two(const ChromaSums& sums, ChromaPlanes chroma, std::ptrdiff_t pairs) {
  uint8_t* NUV_RESTRICT cb = chroma.cb;
  uint8_t* NUV_RESTRICT cr = chroma.cr;
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    cb[i] = mean_of_two(sums.c[i]);
    cr[i] = mean_of_two(sums.d[i]);
  }
}

NUV_ROW_KERNEL void mean_of_two(const ChromaSums& sums, ChromaPairs chroma, std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    store_pair(chroma.bytes, i, mean_of_two(sums.c[i]), mean_of_two(sums.d[i]));
  }
}

NUV_ROW_KERNEL void mean_of_four(const ChromaSums& upper, const ChromaSums& lower, ChromaPlanes chroma,
                                 std::ptrdiff_t pairs) {
  uint8_t* NUV_RESTRICT cb = chroma.cb;
  uint8_t* NUV_RESTRICT cr = chroma.cr;
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    cb[i] = mean_of_four(upper.c[i], lower.c[i]);
    cr[i] = mean_of_four(upper.d[i], lower.d[i]);
  }
}

NUV_ROW_KERNEL void mean_of_four(const ChromaSums& upper, const ChromaSums& lower, ChromaPairs chroma,
                                 std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    store_pair(chroma.bytes, i, mean_of_four(upper.c[i], lower.c[i]), mean_of_four(upper.d[i], lower.d[i]));
  }
}

#if NUV_HAS_LANES
// Y plus a term, clamped to a byte, for the left or the right pixels of many pairs.
template <class Words>
NUV_INLINE void clamped_sums(const Words& luma, const Words& term, Words& sums) {
  const Words none = {};
  const Words most = none + 255;
  sums = luma + term;
  sums = sums > none ? sums : none;
  sums = sums < most ? sums : most;
}

template <class Words>
NUV_INLINE std::ptrdiff_t rgb_from_terms_by(const uint8_t* luma, const TermBlock& terms, uint8_t* rgb,
                                            std::ptrdiff_t pixels) {
  constexpr std::ptrdiff_t kStep = PixelPairs<Words>::kPixels;
  const Steps<kStep> steps(pixels);
  for (const std::ptrdiff_t i : steps) {
    Words pairs;
    load_words(luma + i, pairs);
    Words luma_left;
    Words luma_right;
    low_bytes(pairs, luma_left);
    high_bytes(pairs, luma_right);
    PixelPairs<Words> out;
    const int16_t* const planes[] = {terms.blue, terms.green, terms.red};
    for (int c = 0; c < 3; ++c) {
      Words term;
      load_words(reinterpret_cast<const uint8_t*>(planes[c] + i / 2), term);
      clamped_sums(luma_left, term, out.left[c]);
      clamped_sums(luma_right, term, out.right[c]);
    }
    join_pixels(out, rgb + 3 * i);
  }
  return steps.covered();
}
#endif

}  // namespace

NUV_ROW_KERNEL void chroma_terms(ChromaPlanes chroma, TermBlock& NUV_RESTRICT terms, std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    terms.blue[i] = blue_term(chroma.cb[i]);
    terms.green[i] = green_term(chroma.cb[i], chroma.cr[i]);
    terms.red[i] = red_term(chroma.cr[i]);
  }
}

NUV_ROW_KERNEL void chroma_terms(ChromaPairs chroma, TermBlock& NUV_RESTRICT terms, std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    const uint16_t pair = load_pair(chroma.bytes, i);
    const auto cb = static_cast<uint8_t>(pair & 255);
    const auto cr = static_cast<uint8_t>(pair >> 8);
    terms.blue[i] = blue_term(cb);
    terms.green[i] = green_term(cb, cr);
    terms.red[i] = red_term(cr);
  }
}

NUV_ROW_KERNEL void rgb_from_terms(const uint8_t* luma, const TermBlock& terms, uint8_t* NUV_RESTRICT rgb,
                                   std::ptrdiff_t pixels) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  done = has_wide_lanes() ? rgb_from_terms_by<Shorts16>(luma, terms, rgb, pixels)
                          : rgb_from_terms_by<Shorts8>(luma, terms, rgb, pixels);
#endif
  for (; done < pixels; ++done) {
    uint8_t* p = rgb + 3 * done;
    p[0] = clamped_sum(luma[done], terms.blue[done / 2]);
    p[1] = clamped_sum(luma[done], terms.green[done / 2]);
    p[2] = clamped_sum(luma[done], terms.red[done / 2]);
  }
}

NUV_ROW_KERNEL void red_terms(ChromaPlanes chroma, TermBlock& NUV_RESTRICT terms, std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) terms.red[i] = red_term(chroma.cr[i]);
}

NUV_ROW_KERNEL void red_terms(ChromaPairs chroma, TermBlock& NUV_RESTRICT terms, std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    terms.red[i] = red_term(static_cast<uint8_t>(load_pair(chroma.bytes, i) >> 8));
  }
}

NUV_ROW_KERNEL void red_from_terms(const uint8_t* luma, const TermBlock& terms, uint8_t* NUV_RESTRICT red,
                                   std::ptrdiff_t pairs) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    const uint16_t pair = load_pair(luma, i);
    store_pair(red, i, clamped_sum(pair & 255, terms.red[i]),
               clamped_sum(static_cast<int16_t>(pair >> 8), terms.red[i]));
  }
}

template <int Rows, class Chroma>
void luma_and_chroma(const uint8_t* const (&rgb)[Rows], uint8_t* const (&luma)[Rows], Chroma chroma,
                     std::ptrdiff_t pixels) {
#if NUV_HAS_AVX2
  if (pixels >= kWidePixels && has_avx2()) {
    from_rgb_rows_avx2(rgb, luma, chroma, pixels);
    return;
  }
#endif
  ChromaSums sums[Rows];
  for (int r = 0; r < Rows; ++r) from_rgb_row(rgb[r], luma[r], sums[r], pixels);
  if constexpr (Rows == 1) {
    mean_of_two(sums[0], chroma, pixels / 2);
  } else {
    mean_of_four(sums[0], sums[1], chroma, pixels / 2);
  }
}

template void luma_and_chroma(const uint8_t* const (&)[1], uint8_t* const (&)[1], ChromaPlanes,
                              std::ptrdiff_t);
template void luma_and_chroma(const uint8_t* const (&)[1], uint8_t* const (&)[1], ChromaPairs,
                              std::ptrdiff_t);
template void luma_and_chroma(const uint8_t* const (&)[2], uint8_t* const (&)[2], ChromaPlanes,
                              std::ptrdiff_t);
template void luma_and_chroma(const uint8_t* const (&)[2], uint8_t* const (&)[2], ChromaPairs,
                              std::ptrdiff_t);

}  // namespace nuv

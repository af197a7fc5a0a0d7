// The colour matrix that all camera formats share: BT.601 of full range in 14-bit fixed point.
//
//     B = (16384*Y + 29032*u) >> 14                u = Cb - 128
//     G = (16384*Y - 5638*u - 11700*v) >> 14       v = Cr - 128
//     R = (16384*Y + 22970*v) >> 14                each clamped to 0..255
//
//     Y = (1867*B + 9617*G + 4898*R) >> 14
//     c = (8192*B - 5428*G - 2763*R) >> 14         Cb is the mean of the c of its pixels, plus 128
//     d = (8192*R - 6859*G - 1332*B) >> 14         Cr is the mean of the d, plus 128
//
// The row kernels process planes, one block of a row at a time. Two pixels side by side share their Cb and
// Cr, so the kernels treat two neighbouring bytes as one 16-bit word and need not split the plane. All
// results are exact in 16 bits; the comments at the formulas show why.

#ifndef NUV_COLOUR_COLOUR_MATRIX_H
#define NUV_COLOUR_COLOUR_MATRIX_H

#include <cstddef>
#include <cstdint>

#include "core/interleaved.h"
#include "core/row_kernel.h"

namespace nuv {

// The terms that chroma adds to Y. Y needs no shift, because 16384*Y is a multiple of 2^14. A term with one
// weight is the upper half of a product of 16-bit numbers. In the term with two weights each weight is
// 256*high + low; the upper byte of the low sum is added to the high sum. Rounding it down loses nothing that
// the shift would keep.
NUV_INLINE int16_t upper_half(int16_t a, int16_t b) {
  return static_cast<int16_t>(a * b >> 16);
}
NUV_INLINE int16_t blue_term(uint8_t cb) {
  return upper_half(static_cast<int16_t>(4 * (cb - 128)), 29032);
}
NUV_INLINE int16_t green_term(uint8_t cb, uint8_t cr) {
  static_assert(5638 == 22 * 256 + 6 && 11700 == 46 * 256 - 76);
  const auto u = static_cast<int16_t>(cb - 128);
  const auto v = static_cast<int16_t>(cr - 128);
  const auto low = static_cast<int16_t>(76 * v - 6 * u);
  return static_cast<int16_t>(static_cast<int16_t>((low >> 8) - 22 * u - 46 * v) >> 6);
}
NUV_INLINE int16_t red_term(uint8_t cr) {
  return upper_half(static_cast<int16_t>(4 * (cr - 128)), 22970);
}

NUV_INLINE uint8_t clamped_sum(int16_t luma, int16_t term) {
  const auto sum = static_cast<int16_t>(luma + term);
  const auto positive = static_cast<int16_t>(sum < 0 ? 0 : sum);
  return static_cast<uint8_t>(positive > 255 ? 255 : positive);
}

// The places of the Cb and Cr of pairs of pixels: each in a plane of its own, or alternating.
struct ChromaPlanes {
  uint8_t* cb;
  uint8_t* cr;
};
struct ChromaPairs {
  uint8_t* bytes;
};

struct TermBlock {
  alignas(64) int16_t blue[kPlaneBlock / 2];
  alignas(64) int16_t green[kPlaneBlock / 2];
  alignas(64) int16_t red[kPlaneBlock / 2];
};

void chroma_terms(ChromaPlanes chroma, TermBlock& terms, std::ptrdiff_t pairs);
void chroma_terms(ChromaPairs chroma, TermBlock& terms, std::ptrdiff_t pairs);
void rgb_from_terms(const uint8_t* luma, const TermBlock& terms, uint8_t* rgb, std::ptrdiff_t pixels);

// The same for red alone.
void red_terms(ChromaPlanes chroma, TermBlock& terms, std::ptrdiff_t pairs);
void red_terms(ChromaPairs chroma, TermBlock& terms, std::ptrdiff_t pairs);
void red_from_terms(const uint8_t* luma, const TermBlock& terms, uint8_t* red, std::ptrdiff_t pairs);

// Computes the Y of packed pixels, and the chroma of their units of two pixels, or of four with two rows: the
// mean of c and of d over the unit, rounded down. The number of pixels in a row is even, at most one block.
template <int Rows, class Chroma>
void luma_and_chroma(const uint8_t* const (&rgb)[Rows], uint8_t* const (&luma)[Rows], Chroma chroma,
                     std::ptrdiff_t pixels);

}  // namespace nuv

#endif

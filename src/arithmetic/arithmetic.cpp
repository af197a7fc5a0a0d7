// Images combined byte by byte.
//
// One pass serves all exports, which differ in the operation, the number of bytes and the place of the
// result. A function in place passes a source as its result.

#include <algorithm>

#include "core/interleaved.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/arithmetic.h"
#include "nuv/colour.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

std::ptrdiff_t bytes_of(int32_t width, int32_t height, bool is_rgb = false) {
  return GrayImage{nullptr, width, height}.size() * channels_of(is_rgb);
}

// ---- operations ----

NUV_INLINE uint8_t excess(uint8_t a, uint8_t b) {
  return static_cast<uint8_t>(greater(a, b) - b);
}
NUV_INLINE uint8_t bits_of_both(uint8_t a, uint8_t b) {
  return a & b;
}
NUV_INLINE uint8_t bits_of_either(uint8_t a, uint8_t b) {
  return a | b;
}
NUV_INLINE uint8_t bits_of_one(uint8_t a, uint8_t b) {
  return a ^ b;
}

// ---- the pass ----

template <uint8_t (*Operation)(uint8_t, uint8_t)>
NUV_LOAD_BOUND_ROW_KERNEL void combine(const uint8_t* a, const uint8_t* b, uint8_t* result,
                                       std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) result[i] = Operation(a[i], b[i]);
}

NUV_LOAD_BOUND_ROW_KERNEL void widen_range(const uint8_t* bytes, uint8_t* NUV_RESTRICT most,
                                           uint8_t* NUV_RESTRICT least, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    most[i] = greater(most[i], bytes[i]);
    least[i] = lesser(least[i], bytes[i]);
  }
}

// Writes the largest of the three differences of each RGB pixel. The images are processed in blocks, so that
// the differences of the bytes stay in the nearest cache.
void largest_differences(const uint8_t* a, const uint8_t* b, uint8_t* result, std::ptrdiff_t pixels) {
  uint8_t differences[3 * kPlaneBlock];
  for (std::ptrdiff_t done = 0; done < pixels; done += kPlaneBlock) {
    const std::ptrdiff_t n = std::min(kPlaneBlock, pixels - done);
    combine<difference>(a + 3 * done, b + 3 * done, differences, 3 * n);
    NuvExtractMaxRGB2GryImg(differences, static_cast<int32_t>(n), 1, result + done);
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvImg1Substract2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height) {
  combine<excess>(pImg1, pImg2, pImg1, bytes_of(width, height));
}

void NuvImg1Substract2To2(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height) {
  combine<excess>(pImg1, pImg2, pImg2, bytes_of(width, height));
}

void NuvImg1SubstractImg2(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                          uint8_t* pResImg) {
  combine<excess>(pImg1, pImg2, pResImg, bytes_of(width, height, bRGB));
}

void NuvImg1Difference2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height) {
  combine<difference>(pImg1, pImg2, pImg1, bytes_of(width, height));
}

void NuvDifferenceImg12(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                        uint8_t* pResImg) {
  const std::ptrdiff_t pixels = bytes_of(width, height);
  if (bRGB) {
    largest_differences(pImg1, pImg2, pResImg, pixels);
  } else {
    combine<difference>(pImg1, pImg2, pResImg, pixels);
  }
}

void NuvDifferenceImg12(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                        uint8_t* pResImg, int32_t* pHistogram) {
  NuvDifferenceImg12(pImg1, pImg2, width, height, bRGB, pResImg);
  NuvGetHistogram(pResImg, width, height, pHistogram);
}

void NuvImg1AndImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N) {
  combine<bits_of_both>(pImg1, pImg2, pImg1, N);
}

void NuvImg1AndImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg) {
  combine<bits_of_both>(pImg1, pImg2, pResImg, N);
}

void NuvImg1XorImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N) {
  combine<bits_of_one>(pImg1, pImg2, pImg1, N);
}

void NuvImg1XorImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg) {
  combine<bits_of_one>(pImg1, pImg2, pResImg, N);
}

void NuvImg1OrImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N) {
  combine<bits_of_either>(pImg1, pImg2, pImg1, N);
}

void NuvImg1OrImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg) {
  combine<bits_of_either>(pImg1, pImg2, pResImg, N);
}

void NuvRemainMaxGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMaxImg) {
  combine<greater>(pImg, pMaxImg, pMaxImg, bytes_of(width, height, bRGB));
}

void NuvRemainMinGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMinImg) {
  combine<lesser>(pImg, pMinImg, pMinImg, bytes_of(width, height, bRGB));
}

void NuvRemainMaxMinGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMaxImg,
                        uint8_t* pMinImg) {
  widen_range(pImg, pMaxImg, pMinImg, bytes_of(width, height, bRGB));
}

// RGB images to gray: one pass over pixels split into planes, with a row kernel per rule.

#include "colour/weighting.h"
#include "core/interleaved.h"
#include "core/pixel_words.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/colour.h"

namespace nuv {
namespace {

// (b0*468 + b1*2404 + b2*1225) >> 12 in 16 bits. Because the weights add up to 4097, this is
//
//     b1 + ((468*(b0 - b1) + 1225*(b2 - b1) + b1) >> 12)
//
// Each weight left is 256*high + low with low from -128 to 127. The low sum stays within +-25,500. Its upper
// byte, rounded down, is added to the high sum, and the shift drops the lower byte in any case. Integers are
// integers or vectors of 16-bit integers.
template <class Integers>
NUV_INLINE void weigh_whole_image(const Integers& b0, const Integers& b1, const Integers& b2,
                                  Integers& gray) {
  static_assert(468 + 2404 + 1225 == 4097 && 468 == 2 * 256 - 44 && 1225 == 5 * 256 - 55);
  const Integers d0 = b0 - b1;
  const Integers d2 = b2 - b1;
  const Integers high = 2 * d0 + 5 * d2;
  const Integers low = -44 * d0 - 55 * d2 + b1;
  gray = b1 + ((high + (low >> 8)) >> 4);
}

// (b0*306 + b1*601 + b2*116) >> 10 in 16 bits, by the same split. The low sum is unsigned and stays within
// 65,025.
NUV_INLINE uint8_t rectangle_weighting(uint8_t b0, uint8_t b1, uint8_t b2) {
  static_assert(306 == 256 + 50 && 601 == 2 * 256 + 89 && 50 + 89 + 116 <= 257);
  const auto high = static_cast<uint16_t>(b0 + 2 * b1);
  const auto low = static_cast<uint16_t>(50 * b0 + 89 * b1 + 116 * b2);
  const auto sum = static_cast<uint16_t>(high + static_cast<uint16_t>(low >> 8));
  return static_cast<uint8_t>(sum >> 2);
}

#if NUV_HAS_LANES
// Writes the gray of 32 pixels, combined with flipped by an exclusive or.
NUV_INLINE void weigh_whole_image(const PlaneBlock& in, std::ptrdiff_t i, uint8_t flipped, uint8_t* out) {
  Shorts16 pixels[3];
  load_words(in.b0 + i, pixels[0]);
  load_words(in.b1 + i, pixels[1]);
  load_words(in.b2 + i, pixels[2]);
  Shorts16 even[3];
  Shorts16 odd[3];
  for (int k = 0; k < 3; ++k) {
    low_bytes(pixels[k], even[k]);
    high_bytes(pixels[k], odd[k]);
  }
  Shorts16 even_gray;
  Shorts16 odd_gray;
  weigh_whole_image(even[0], even[1], even[2], even_gray);
  weigh_whole_image(odd[0], odd[1], odd[2], odd_gray);
  store(out + i, reinterpret_cast<Bytes32>(even_gray | odd_gray << 8) ^ flipped);
}
#endif

// Writes the gray of n pixels. With flipped = 255 the result is 255 minus the gray, which is the complement of
// its bits.
NUV_INLINE void weigh_whole_row(const PlaneBlock& in, uint8_t flipped, uint8_t* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES
  for (; i + 32 <= n; i += 32) weigh_whole_image(in, i, flipped, out);
#endif
  for (; i < n; ++i) {
    int gray;
    weigh_whole_image<int>(in.b0[i], in.b1[i], in.b2[i], gray);
    out[i] = static_cast<uint8_t>(gray ^ flipped);
  }
}

NUV_ROW_KERNEL void whole_image_row(const PlaneBlock& in, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  weigh_whole_row(in, 0, out, n);
}

NUV_ROW_KERNEL void inverted_row(const PlaneBlock& in, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  weigh_whole_row(in, 255, out, n);
}

NUV_ROW_KERNEL void rectangle_row(const PlaneBlock& in, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) out[i] = rectangle_weighting(in.b0[i], in.b1[i], in.b2[i]);
}

NUV_ROW_KERNEL void difference_row(const PlaneBlock& in, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const uint8_t most = greater(greater(in.b0[i], in.b1[i]), in.b2[i]);
    const uint8_t least = lesser(lesser(in.b0[i], in.b1[i]), in.b2[i]);
    out[i] = static_cast<uint8_t>(most - least);
  }
}

NUV_ROW_KERNEL void largest_row(const PlaneBlock& in, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) out[i] = greater(greater(in.b0[i], in.b1[i]), in.b2[i]);
}

}  // namespace

void rectangle_gray(const uint8_t* pixels, std::ptrdiff_t count, uint8_t* gray) {
  map_pixels(pixels, count, gray, rectangle_row);
}

}  // namespace nuv

using namespace nuv;

void NuvRGB2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg) {
  map_pixels(pRGBImg, RgbImage{pRGBImg, width, height}.size(), pGryImg, whole_image_row);
}

void NuvRGB2GryInvert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg) {
  map_pixels(pRGBImg, RgbImage{pRGBImg, width, height}.size(), pGryImg, inverted_row);
}

void NuvRGBsDif2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg) {
  map_pixels(pRGBImg, RgbImage{pRGBImg, width, height}.size(), pGryImg, difference_row);
}

void NuvExtractMaxRGB2GryImg(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg) {
  map_pixels(pRGBImg, RgbImage{pRGBImg, width, height}.size(), pGryImg, largest_row);
}

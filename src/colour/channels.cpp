// Single channels of RGB images: selected, replaced, combined. Planes interleaved to RGB.

#include "core/interleaved.h"
#include "core/views.h"
#include "nuv/colour.h"

namespace nuv {
namespace {

void select_row(const uint8_t* pixels, int32_t channel, uint8_t* plane, std::ptrdiff_t n) {
  if (channel >= 0 && channel < 3) {
    take_plane(pixels, channel, plane, n);
  } else {
    for (std::ptrdiff_t i = 0; i < n; ++i) plane[i] = pixels[3 * i + channel];
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvSelectRGB2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel, uint8_t* pGryImg) {
  select_row(pRGBImg, channel, pGryImg, RgbImage{pRGBImg, width, height}.size());
}

void NuvExtractOneChannelFromRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                                 uint8_t* pGryImg) {
  NuvSelectRGB2Gry(pRGBImg, width, height, channel, pGryImg);
}

void NuvSelectRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2,
                          int32_t y1, int32_t y2, int32_t channel, uint8_t* pGryImg) {
  const RgbImage image = image_of_any_height<3>(pRGBImg, width);
  const Region region{x1, x2, y1, y2};
  if (region.empty()) return;
  for (int32_t y = y1; y <= y2; ++y, pGryImg += region.columns()) {
    select_row(image.at(x1, y), channel, pGryImg, region.columns());
  }
}

void NuvReplaceOneChannelInRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                               uint8_t* pGryImg) {
  replace_plane(pGryImg, channel, pRGBImg, RgbImage{pRGBImg, width, height}.size());
}

void NuvOROneChannelInRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                          uint8_t* pGryImg) {
  or_plane(pGryImg, channel, pRGBImg, RgbImage{pRGBImg, width, height}.size());
}

void NuvGry2RGBImg(uint8_t* pRedImg, uint8_t* pGreenImg, uint8_t* pBlueImg, int32_t width, int32_t height,
                   uint8_t* pRGBImg) {
  join_planes(pBlueImg, pGreenImg, pRedImg, pRGBImg, RgbImage{pRGBImg, width, height}.size());
}

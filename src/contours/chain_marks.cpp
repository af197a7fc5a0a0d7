// Chains drawn into an image.

#include "contours/chain.h"
#include "core/arithmetic.h"
#include "nuv/contours.h"

using namespace nuv;

void NuvMarkChainByColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                         int32_t N, int32_t color) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  walk_start_and_ends({{x, y}, pChainCode, N}, [=](Point p) { *image.at(p.x, p.y) = low_byte(color); });
}

void NuvMarkChainByColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                         int32_t N, int32_t color, int32_t /*ignored*/) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  *image.at(x, y) = low_byte(color);
  int32_t step = 0;
  walk_ends({{x, y}, pChainCode, N}, N, [&](Point p) {
    if (step / 5 % 2 == 0) *image.at(p.x, p.y) = low_byte(color);
    ++step;
  });
}

void NuvMarkChainByInc(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                       int32_t N) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  ++*image.at(x, y);  // the start alone wraps around
  walk_ends({{x, y}, pChainCode, N}, N, [=](Point p) {
    uint8_t& pixel = *image.at(p.x, p.y);
    if (pixel != 255) ++pixel;
  });
}

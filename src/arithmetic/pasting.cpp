// Pasting of images into others.

#include <algorithm>
#include <cstring>

#include "core/views.h"
#include "nuv/arithmetic.h"
#include "nuv/colour.h"

namespace nuv {
namespace {

// Calls copy(from, to, pixels) for each row of the source, placed at (x, y), as far as it lies in the target.
template <int From, int To, class Copy>
void paste(Image<From> source, Image<To> target, int32_t x, int32_t y, Copy copy) {
  if (source.empty() || target.empty()) return;
  const auto end_of = [](int32_t first, int32_t count, int32_t size) {
    return static_cast<int32_t>(std::min<int64_t>(int64_t{first} + count, size));
  };
  const int32_t first = std::max(x, 0);
  const int32_t end = end_of(x, source.width, target.width);
  if (first >= end) return;
  for (int32_t row = std::max(y, 0); row < end_of(y, source.height, target.height); ++row) {
    copy(source.at(first - x, row - y), target.at(first, row), end - first);
  }
}

template <int Channels>
void paste_alike(Image<Channels> source, Image<Channels> target, int32_t x, int32_t y) {
  paste(source, target, x, y, [](const uint8_t* from, uint8_t* to, int32_t pixels) {
    std::memcpy(to, from, static_cast<std::size_t>(pixels) * Channels);
  });
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvPasteGryImg2ResImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                           int32_t resWidth, int32_t resHeight, int32_t x, int32_t y) {
  paste_alike(GrayImage{pGryImg, width, height}, GrayImage{pResImg, resWidth, resHeight}, x, y);
}

void NuvPasteGryImg2RGBImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                           int32_t resWidth, int32_t resHeight, int32_t x, int32_t y) {
  paste(GrayImage{pGryImg, width, height}, RgbImage{pResImg, resWidth, resHeight}, x, y,
        [](uint8_t* from, uint8_t* to, int32_t pixels) { NuvGry2RGBImg(from, from, from, pixels, 1, to); });
}

void NuvPasteRGBImg2ResImg(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg,
                           int32_t resWidth, int32_t resHeight, int32_t x, int32_t y) {
  paste_alike(RgbImage{pRGBImg, width, height}, RgbImage{pResImg, resWidth, resHeight}, x, y);
}

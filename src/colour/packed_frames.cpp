// Packed CbYCrY frames.

#include <cstring>

#include "colour/frame_conversion.h"
#include "core/interleaved.h"
#include "nuv/colour.h"

namespace nuv {
namespace {

// Groups of four bytes for two pixels: Cb, Y, Cr, Y. cb() and cr() address the group that starts with the
// given pixel. No group starts in an odd column: there cb() addresses a Cr, and cr() the next Cb.
struct CbYCrY {
  static constexpr int32_t kLumaStep = 2;
  static constexpr int32_t kChromaStep = 4;
  static constexpr int32_t kChromaRows = 1;

  uint8_t* bytes;
  int32_t width;
  int32_t height;

  uint8_t* cb(int32_t x, int32_t y) const { return bytes + 2 * (static_cast<std::ptrdiff_t>(y) * width + x); }
  uint8_t* luma(int32_t x, int32_t y) const { return cb(x, y) + 1; }
  uint8_t* cr(int32_t x, int32_t y) const { return cb(x, y) + 2; }
};

// For width, height, x1, W, y1 and H.
constexpr Multiples kNoDemands = {1, 1, 1, 1, 1, 1};
constexpr Multiples kFrameOnly = {2, 1, 1, 1, 1, 1};
constexpr Multiples kRectangle = {1, 1, 2, 2, 1, 1};

// Adds a column to a region that ends in the middle of a group.
Region in_whole_groups(Region region) {
  if (!region.empty() && region.columns() % 2 != 0) ++region.x2;
  return region;
}

void to_gray(CbYCrY frame, Region region, uint8_t* gray) {
  const std::ptrdiff_t columns = region.columns();
  for (int32_t y = region.y1; y <= region.y2; ++y, gray += columns) {
    second_of_pairs(frame.cb(region.x1, y), gray, columns);
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

bool NuvCbYCrY2RGB(uint8_t* pCbYCrYImg, int32_t width, int32_t height, uint8_t* pRGBImg) {
  return convert(kFrameOnly, CbYCrY{pCbYCrYImg, width, height}, to_rgb, pRGBImg);
}

bool NuvRGB2CbYCrY(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pCbYCrYImg) {
  return convert(kFrameOnly, CbYCrY{pCbYCrYImg, width, height}, from_rgb, pRGBImg);
}

void NuvCbYCrY2Gry(uint8_t* pCbYCrYImg, int32_t width, int32_t height, uint8_t* pGryImg) {
  convert(kNoDemands, CbYCrY{pCbYCrYImg, width, height}, to_gray, pGryImg);
}

bool NuvCopyCbYCrYRect2RGB(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, uint8_t* pRGBImg) {
  return convert(kRectangle, CbYCrY{pCbYCrYImg, width, height}, {x1, x2, y1, y2}, to_rgb, pRGBImg);
}

bool NuvCopyCbYCrYScale4Rect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                             int32_t y1, int32_t y2, uint8_t* pRGBImg) {
  return convert(kRectangle, CbYCrY{pCbYCrYImg, width, height}, {x1, x2, y1, y2}, to_rgb_by_fours, pRGBImg);
}

bool NuvCopyCbYCrYRect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                       int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg) {
  const CbYCrY frame{pCbYCrYImg, width, height};
  return convert(kRectangle, frame, {x1, x2, y1, y2}, to_rgb, pRGBImg) &&
         convert(kRectangle, frame, {x1, x2, y1, y2}, to_gray, pGryImg);
}

void NuvCopyCbYCrYRect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                       int32_t y2, uint8_t* pResImg) {
  const CbYCrY frame{pCbYCrYImg, width, height};
  const Region region{x1, x2, y1, y2};
  if (region.empty()) return;
  const auto row_bytes = 2 * static_cast<std::size_t>(region.columns());
  for (int32_t y = y1; y <= y2; ++y, pResImg += row_bytes) std::memcpy(pResImg, frame.cb(x1, y), row_bytes);
}

void NuvCopyCbYCrYRect2Gry(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                           int32_t y1, int32_t y2, uint8_t* pGryImg) {
  convert(kNoDemands, CbYCrY{pCbYCrYImg, width, height}, in_whole_groups({x1, x2, y1, y2}), to_gray, pGryImg);
}

void NuvCopyCbYCrYRect2RedImg(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, uint8_t* pRedImg) {
  convert(kNoDemands, CbYCrY{pCbYCrYImg, width, height}, in_whole_groups({x1, x2, y1, y2}), to_red, pRedImg);
}

void NuvCopyCbYCrYRect2RedImgShrink2(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1,
                                     int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg) {
  convert(kNoDemands, CbYCrY{pCbYCrYImg, width, height}, {x1, x2, y1, y2}, to_red_by_twos, pRedImg);
}

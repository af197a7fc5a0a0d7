// Rectangles copied out of an image, whole, thinned, as gray, as planes, and what is measured over them.
//
// A rectangle is a sequence of source rows beside a packed result: for_packed_rows hands both to a function
// of one row.

#include <cstring>

#include "colour/weighting.h"
#include "frame/interleaved.h"
#include "frame/views.h"
#include "nuv/colour.h"

namespace nuv {
namespace {

// Calls action(source_row, offset) for each row of the rectangle, offset being the place of the row's first
// pixel in a packed image.
template <int Channels, class Action>
void for_packed_rows(Image<Channels> image, Region region, Action action) {
  if (region.empty()) return;
  std::ptrdiff_t offset = 0;
  for (int32_t y = region.y1; y <= region.y2; ++y, offset += region.columns()) {
    action(image.at(region.x1, y), offset);
  }
}

template <int Channels>
void copy_rectangle(Image<Channels> image, Region region, uint8_t* result) {
  const auto row_bytes = static_cast<std::size_t>(region.columns()) * Channels;
  for_packed_rows(image, region, [=](const uint8_t* row, std::ptrdiff_t offset) {
    std::memcpy(result + offset * Channels, row, row_bytes);
  });
}

struct Colour {
  int32_t b0 = 0;
  int32_t b1 = 0;
  int32_t b2 = 0;

  int32_t distance2(const uint8_t* pixel) const {
    const int32_t d0 = pixel[0] - b0;
    const int32_t d1 = pixel[1] - b1;
    const int32_t d2 = pixel[2] - b2;
    return d0 * d0 + d1 * d1 + d2 * d2;
  }
};

class ColourMean {
 public:
  void add(const uint8_t* pixel) {
    sum_.b0 += pixel[0];
    sum_.b1 += pixel[1];
    sum_.b2 += pixel[2];
    ++count_;
  }
  // Of no pixels at all, black.
  Colour truncated_mean() const {
    const int32_t n = count_ == 0 ? 1 : count_;
    return {sum_.b0 / n, sum_.b1 / n, sum_.b2 / n};
  }

 private:
  Colour sum_;
  int32_t count_ = 0;
};

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvCopyGryRect(uint8_t* pGryImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2, int32_t y1,
                    int32_t y2, uint8_t* pResImg) {
  copy_rectangle(image_of_any_height<1>(pGryImg, width), {x1, x2, y1, y2}, pResImg);
}

void NuvCopyYUV420PRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pResImg) {
  NuvCopyGryRect(pGryImg, width, height, x1, x2, y1, y2, pResImg);
}

void NuvCopyYUV420SPRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                             int32_t y1, int32_t y2, uint8_t* pResImg) {
  NuvCopyGryRect(pGryImg, width, height, x1, x2, y1, y2, pResImg);
}

void NuvCopyYUV422PRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pResImg) {
  NuvCopyGryRect(pGryImg, width, height, x1, x2, y1, y2, pResImg);
}

void NuvCopyRGBRect(uint8_t* pRGBImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2, int32_t y1,
                    int32_t y2, uint8_t* pResImg) {
  copy_rectangle(image_of_any_height<3>(pRGBImg, width), {x1, x2, y1, y2}, pResImg);
}

void NuvCopyRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                    int32_t y2, uint8_t* pResImg, uint8_t* pResGryImg) {
  NuvCopyRGBRect(pRGBImg, width, height, x1, x2, y1, y2, pResImg);
  NuvCopyRGBRect2Gry(pRGBImg, width, height, x1, x2, y1, y2, pResGryImg);
}

void NuvCopyRGBScale4Rect(uint8_t* pRGBImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2,
                          int32_t y1, int32_t y2, uint8_t* pResImg) {
  const RgbImage image = image_of_any_height<3>(pRGBImg, width);
  if (Region{x1, x2, y1, y2}.empty()) return;
  for (int32_t y = y1; y <= y2; y += 4) {
    for (int32_t x = x1; x <= x2; x += 4, pResImg += 3) std::memcpy(pResImg, image.at(x, y), 3);
  }
}

void NuvCopyRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2,
                        int32_t y1, int32_t y2, uint8_t* pGryImg) {
  const Region region{x1, x2, y1, y2};
  for_packed_rows(image_of_any_height<3>(pRGBImg, width), region,
                  [=](const uint8_t* row, std::ptrdiff_t offset) {
                    rectangle_gray(row, region.columns(), pGryImg + offset);
                  });
}

void NuvCopyRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2,
                        int32_t y1, int32_t y2, uint8_t* pRedImg, uint8_t* pGreenImg, uint8_t* pBlueImg) {
  const Region region{x1, x2, y1, y2};
  for_packed_rows(
      image_of_any_height<3>(pRGBImg, width), region, [=](const uint8_t* row, std::ptrdiff_t offset) {
        split_planes(row, pBlueImg + offset, pGreenImg + offset, pRedImg + offset, region.columns());
      });
}

void NuvCopyRGB2GryBinImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                          int32_t y2, bool bBright, uint8_t* pGryImg, uint8_t* pBinImg, int32_t* pResWidth,
                          int32_t* pResHeight) {
  const RgbImage image = image_of_any_height<3>(pRGBImg, width);
  const Region region{x1, x2, y1, y2};
  *pResWidth = region.columns();
  *pResHeight = region.rows();
  const std::ptrdiff_t area = GrayImage{pGryImg, region.columns(), region.rows()}.size();
  if (region.empty() || area == 0) return;

  NuvCopyRGBRect2Gry(pRGBImg, width, height, x1, x2, y1, y2, pGryImg);
  int32_t sum = 0;
  for (std::ptrdiff_t i = 0; i < area; ++i) sum += pGryImg[i];
  const auto average = static_cast<int32_t>(sum / area);

  ColourMean bright;
  ColourMean dark;
  for_packed_rows(image, region, [&](const uint8_t* pixel, std::ptrdiff_t offset) {
    for (int32_t i = 0; i < region.columns(); ++i, pixel += 3) {
      (pGryImg[offset + i] > average ? bright : dark).add(pixel);
    }
  });
  const Colour target = (bBright ? bright : dark).truncated_mean();
  const Colour other = (bBright ? dark : bright).truncated_mean();
  for_packed_rows(image, region, [&](const uint8_t* pixel, std::ptrdiff_t offset) {
    for (int32_t i = 0; i < region.columns(); ++i, pixel += 3) {
      pBinImg[offset + i] = target.distance2(pixel) < other.distance2(pixel) ? 255 : 0;
    }
  });
}

void NuvRGBRectAvr(uint8_t* pRGBImg, uint8_t* pMskImg, int32_t width, int32_t /*height*/, int32_t x1,
                   int32_t x2, int32_t y1, int32_t y2, int32_t* pRed, int32_t* pGreen, int32_t* pBlue) {
  const RgbImage image = image_of_any_height<3>(pRGBImg, width);
  const GrayImage mask = image_of_any_height<1>(pMskImg, width);
  ColourMean mean;
  for (int32_t y = y1; x1 <= x2 && y <= y2; ++y) {
    // The colours are read from the row's start on, and only a hit moves on to the next pixel.
    const uint8_t* pixel = image.at(x1, y);
    for (int32_t x = x1; x <= x2; ++x) {
      if (*mask.at(x, y) != 255) continue;
      mean.add(pixel);
      pixel += 3;
    }
  }
  const Colour colour = mean.truncated_mean();
  *pRed = colour.b2;
  *pGreen = colour.b1;
  *pBlue = colour.b0;
}

void NuvGetRGBRectAvr(uint8_t* pRGBImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t x1,
                      int32_t x2, int32_t y1, int32_t y2, int32_t* pRed, int32_t* pGreen, int32_t* pBlue) {
  NuvRGBRectAvr(pRGBImg, pMskImg, width, height, x1, x2, y1, y2, pRed, pGreen, pBlue);
}

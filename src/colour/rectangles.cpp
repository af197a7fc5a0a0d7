// Rectangles copied out of an image, whole, thinned, as gray or as planes, and measures over rectangles.
//
// A rectangle is a sequence of source rows and a packed result. for_packed_rows() passes both to a function
// that processes one row.

#include <algorithm>
#include <cstring>

#include "colour/weighting.h"
#include "core/byte_sums.h"
#include "core/interleaved.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/colour.h"

namespace nuv {
namespace {

// Calls action(source_row, offset) for each row of the rectangle. offset is the place of the row's first
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
};

// The sum of colours. It wraps at 32 bits.
class ColourSum {
 public:
  void add(const PlaneBlock& planes, std::ptrdiff_t n) {
    sum_.b0 += sum_of_bytes(planes.b0, n);
    sum_.b1 += sum_of_bytes(planes.b1, n);
    sum_.b2 += sum_of_bytes(planes.b2, n);
  }
  void count(std::ptrdiff_t pixels) { count_ += static_cast<int32_t>(pixels); }

  ColourSum without(const ColourSum& part) const {
    ColourSum rest;
    rest.sum_ = {sum_.b0 - part.sum_.b0, sum_.b1 - part.sum_.b1, sum_.b2 - part.sum_.b2};
    rest.count_ = count_ - part.count_;
    return rest;
  }
  // The mean, truncated per byte; black if there are no pixels.
  Colour mean() const {
    const int32_t n = count_ == 0 ? 1 : count_;
    return {sum_.b0 / n, sum_.b1 / n, sum_.b2 / n};
  }

 private:
  Colour sum_;
  int32_t count_ = 0;
};

// Clears the pixels whose gray is not above the limit, and returns the number of the others.
NUV_ROW_KERNEL int32_t keep_brighter(PlaneBlock& NUV_RESTRICT planes, const uint8_t* NUV_RESTRICT gray,
                                     int16_t limit, std::ptrdiff_t n) {
  int32_t kept = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const auto mask = static_cast<uint8_t>(gray[i] > limit ? 255 : 0);
    planes.b0[i] &= mask;
    planes.b1[i] &= mask;
    planes.b2[i] &= mask;
    kept += mask & 1;
  }
  return kept;
}

NUV_ROW_KERNEL int32_t count_white(const uint8_t* bytes, std::ptrdiff_t n) {
  int32_t count = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) count += bytes[i] == 255 ? 1 : 0;
  return count;
}

// A pixel p is nearer to the target t than to the other colour o if |p-t|^2 < |p-o|^2. That holds if the sum
// of p*2*(o-t) over the three bytes is below the sum of o^2 - t^2.
struct Nearer {
  int16_t weights[3];
  int32_t limit;

  Nearer(Colour t, Colour o)
      : weights{static_cast<int16_t>(2 * (o.b0 - t.b0)), static_cast<int16_t>(2 * (o.b1 - t.b1)),
                static_cast<int16_t>(2 * (o.b2 - t.b2))},
        limit(o.b0 * o.b0 + o.b1 * o.b1 + o.b2 * o.b2 - t.b0 * t.b0 - t.b1 * t.b1 - t.b2 * t.b2) {}
};

NUV_ROW_KERNEL void mark_nearer(const PlaneBlock& in, const Nearer& nearer, uint8_t* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  const Nearer to = nearer;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const int32_t sum = in.b0[i] * to.weights[0] + in.b1[i] * to.weights[1] + in.b2[i] * to.weights[2];
    out[i] = sum < to.limit ? 255 : 0;
  }
}

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
  const auto average = static_cast<int32_t>(sum_of_bytes(pGryImg, area) / area);
  const auto limit = static_cast<int16_t>(std::clamp(average, -1, 255));

  ColourSum all;
  ColourSum bright;
  for_packed_rows(image, region, [&](const uint8_t* row, std::ptrdiff_t offset) {
    map_pixels(row, region.columns(), pGryImg + offset,
               [&](PlaneBlock& planes, const uint8_t* gray, std::ptrdiff_t n) {
                 all.add(planes, n);
                 all.count(n);
                 bright.count(keep_brighter(planes, gray, limit, n));
                 bright.add(planes, n);
               });
  });
  const Colour light = bright.mean();
  const Colour shade = all.without(bright).mean();
  const Nearer nearer(bBright ? light : shade, bBright ? shade : light);
  for_packed_rows(image, region, [&](const uint8_t* row, std::ptrdiff_t offset) {
    map_pixels(row, region.columns(), pBinImg + offset,
               [&](const PlaneBlock& planes, uint8_t* out, std::ptrdiff_t n) {
                 mark_nearer(planes, nearer, out, n);
               });
  });
}

void NuvRGBRectAvr(uint8_t* pRGBImg, uint8_t* pMskImg, int32_t width, int32_t /*height*/, int32_t x1,
                   int32_t x2, int32_t y1, int32_t y2, int32_t* pRed, int32_t* pGreen, int32_t* pBlue) {
  const RgbImage image = image_of_any_height<3>(pRGBImg, width);
  const GrayImage mask = image_of_any_height<1>(pMskImg, width);
  ColourSum sum;
  for (int32_t y = y1; x1 <= x2 && y <= y2; ++y) {
    // A row with k hits counts its first k pixels.
    const int32_t hits = count_white(mask.at(x1, y), std::ptrdiff_t{x2} - x1 + 1);
    const uint8_t* pixels = image.at(x1, y);
    PlaneBlock planes;
    for (std::ptrdiff_t done = 0; done < hits; done += kPlaneBlock) {
      const std::ptrdiff_t n = std::min<std::ptrdiff_t>(kPlaneBlock, hits - done);
      split_planes(pixels + 3 * done, planes.b0, planes.b1, planes.b2, n);
      sum.add(planes, n);
    }
    sum.count(hits);
  }
  const Colour colour = sum.mean();
  *pRed = colour.b2;
  *pGreen = colour.b1;
  *pBlue = colour.b0;
}

void NuvGetRGBRectAvr(uint8_t* pRGBImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t x1,
                      int32_t x2, int32_t y1, int32_t y2, int32_t* pRed, int32_t* pGreen, int32_t* pBlue) {
  NuvRGBRectAvr(pRGBImg, pMskImg, width, height, x1, x2, y1, y2, pRed, pGreen, pBlue);
}

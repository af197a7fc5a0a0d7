// YUV 420SP, 420P and 422P frames: a plane of Y, which is a gray image, followed by chroma.

#include "colour/frame_conversion.h"
#include "nuv/colour.h"

namespace nuv {
namespace {

struct PlanarFrame {
  static constexpr int32_t kLumaStep = 1;

  uint8_t* bytes;
  int32_t width;
  int32_t height;

  uint8_t* luma(int32_t x, int32_t y) const { return GrayImage{bytes, width, height}.at(x, y); }
  uint8_t* chroma() const { return luma(0, height); }
};

// One plane of chroma with Cb and Cr alternating.
struct Yuv420SP : PlanarFrame {
  static constexpr int32_t kChromaStep = 2;
  static constexpr int32_t kChromaRows = 2;

  uint8_t* cb(int32_t x, int32_t y) const {
    return chroma() + static_cast<std::ptrdiff_t>(y / 2) * width + x / 2 * 2;
  }
  uint8_t* cr(int32_t x, int32_t y) const { return cb(x, y) + 1; }
};

// A plane of Cb, then one of Cr.
template <int32_t ChromaRows>
struct YuvP : PlanarFrame {
  static constexpr int32_t kChromaStep = 1;
  static constexpr int32_t kChromaRows = ChromaRows;

  std::ptrdiff_t chroma_width() const { return width / 2; }
  uint8_t* cb(int32_t x, int32_t y) const { return chroma() + y / ChromaRows * chroma_width() + x / 2; }
  uint8_t* cr(int32_t x, int32_t y) const { return cb(x, y) + height / ChromaRows * chroma_width(); }
};
using Yuv420P = YuvP<2>;
using Yuv422P = YuvP<1>;

// For width, height, x1, W, y1 and H. The sets differ from function to function.
constexpr Multiples kFrameOnly420 = {2, 2, 1, 1, 1, 1};  // NuvYUV420*2RGB, NuvRGB2YUV420*
constexpr Multiples kRectangle420 = {1, 1, 2, 2, 2, 2};  // 420SP, and red of 420P
constexpr Multiples kWithFrame420 = {2, 2, 2, 2, 2, 2};  // RGB with gray, and RGB and Scale4 of 420P
constexpr Multiples kFrameFrom422 = {2, 1, 1, 1, 1, 1};  // NuvYUV422P2RGB
constexpr Multiples kFrameInto422 = {2, 2, 1, 1, 1, 1};  // NuvRGB2YUV422P
constexpr Multiples kRectangle422 = {2, 1, 2, 2, 1, 1};  // RGB and red
constexpr Multiples kWithFrame422 = {2, 2, 2, 2, 1, 1};  // RGB with gray
constexpr Multiples kOnlyFours422 = {2, 1, 2, 4, 1, 4};  // Scale4

template <class Format>
void to_gray(Format frame, Region region, uint8_t* gray) {
  NuvCopyGryRect(frame.bytes, frame.width, frame.height, region.x1, region.x2, region.y1, region.y2, gray);
}

// Copies a rectangle of a frame to a frame of its own.
void to_frame(Yuv420SP frame, Region region, uint8_t* result) {
  to_gray(frame, region, result);
  NuvCopyGryRect(frame.chroma(), frame.width, frame.height / 2, region.x1, region.x2, region.y1 / 2,
                 region.y1 / 2 + region.rows() / 2 - 1,
                 result + GrayImage{result, region.columns(), region.rows()}.size());
}

}  // namespace
}  // namespace nuv

using namespace nuv;

// ---- 420SP ----

bool NuvYUV420SP2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg) {
  return convert(kFrameOnly420, Yuv420SP{pYUVImg, width, height}, to_rgb, pRGBImg);
}

bool NuvRGB2YUV420SP(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg) {
  return convert(kFrameOnly420, Yuv420SP{pYUVImg, width, height}, from_rgb, pRGBImg);
}

void NuvYUV420SP2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg) {
  const GrayImage luma{pYUVImg, width, height};
  copy_bytes(pGryImg, pYUVImg, luma.size());
}

bool NuvCopyYUV420SPRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                         int32_t y2, uint8_t* pResImg) {
  return convert(kRectangle420, Yuv420SP{pYUVImg, width, height}, {x1, x2, y1, y2}, to_frame, pResImg);
}

bool NuvCopyYUV420SPRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                         int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg) {
  const Yuv420SP frame{pYUVImg, width, height};
  return convert(kWithFrame420, frame, {x1, x2, y1, y2}, to_rgb, pRGBImg) &&
         convert(kWithFrame420, frame, {x1, x2, y1, y2}, to_gray, pGryImg);
}

bool NuvCopyYUV420SPRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                             int32_t y1, int32_t y2, uint8_t* pRGBImg) {
  return convert(kRectangle420, Yuv420SP{pYUVImg, width, height}, {x1, x2, y1, y2}, to_rgb, pRGBImg);
}

bool NuvCopyYUV420SPScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, uint8_t* pRGBImg) {
  return convert(kRectangle420, Yuv420SP{pYUVImg, width, height}, {x1, x2, y1, y2}, to_rgb_by_fours, pRGBImg);
}

bool NuvCopyYUV420SPRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pRedImg) {
  return convert(kRectangle420, Yuv420SP{pYUVImg, width, height}, {x1, x2, y1, y2}, to_red, pRedImg);
}

bool NuvCopyYUV420SPRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg) {
  return convert(kRectangle420, Yuv420SP{pYUVImg, width, height}, {x1, x2, y1, y2}, to_red_by_twos, pRedImg);
}

// ---- 420P ----

bool NuvYUV420P2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg) {
  return convert(kFrameOnly420, Yuv420P{pYUVImg, width, height}, to_rgb, pRGBImg);
}

bool NuvRGB2YUV420P(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg) {
  return convert(kFrameOnly420, Yuv420P{pYUVImg, width, height}, from_rgb, pRGBImg);
}

void NuvYUV420P2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg) {
  NuvYUV420SP2Gry(pYUVImg, width, height, pGryImg);
}

bool NuvCopyYUV420PRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                        int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg) {
  const Yuv420P frame{pYUVImg, width, height};
  return convert(kWithFrame420, frame, {x1, x2, y1, y2}, to_rgb, pRGBImg) &&
         convert(kWithFrame420, frame, {x1, x2, y1, y2}, to_gray, pGryImg);
}

bool NuvCopyYUV420PRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pRGBImg) {
  return convert(kWithFrame420, Yuv420P{pYUVImg, width, height}, {x1, x2, y1, y2}, to_rgb, pRGBImg);
}

bool NuvCopyYUV420PScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, uint8_t* pRGBImg) {
  return convert(kWithFrame420, Yuv420P{pYUVImg, width, height}, {x1, x2, y1, y2}, to_rgb_by_fours, pRGBImg);
}

bool NuvCopyYUV420PRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, uint8_t* pRedImg) {
  return convert(kRectangle420, Yuv420P{pYUVImg, width, height}, {x1, x2, y1, y2}, to_red, pRedImg);
}

bool NuvCopyYUV420PRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                      int32_t y1, int32_t y2, uint8_t* pRedImg) {
  return convert(kRectangle420, Yuv420P{pYUVImg, width, height}, {x1, x2, y1, y2}, to_red_by_twos, pRedImg);
}

// ---- 422P ----

bool NuvYUV422P2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg) {
  return convert(kFrameFrom422, Yuv422P{pYUVImg, width, height}, to_rgb, pRGBImg);
}

bool NuvRGB2YUV422P(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg) {
  return convert(kFrameInto422, Yuv422P{pYUVImg, width, height}, from_rgb, pRGBImg);
}

void NuvYUV422P2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg) {
  NuvYUV420SP2Gry(pYUVImg, width, height, pGryImg);
}

bool NuvCopyYUV422PRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                        int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg) {
  const Yuv422P frame{pYUVImg, width, height};
  return convert(kWithFrame422, frame, {x1, x2, y1, y2}, to_rgb, pRGBImg) &&
         convert(kWithFrame422, frame, {x1, x2, y1, y2}, to_gray, pGryImg);
}

bool NuvCopyYUV422PRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pRGBImg) {
  return convert(kRectangle422, Yuv422P{pYUVImg, width, height}, {x1, x2, y1, y2}, to_rgb, pRGBImg);
}

bool NuvCopyYUV422PScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, uint8_t* pRGBImg) {
  return convert(kOnlyFours422, Yuv422P{pYUVImg, width, height}, {x1, x2, y1, y2}, to_rgb_by_fours, pRGBImg);
}

bool NuvCopyYUV422PRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, uint8_t* pRedImg) {
  return convert(kRectangle422, Yuv422P{pYUVImg, width, height}, {x1, x2, y1, y2}, to_red, pRedImg);
}

bool NuvCopyYUV422PRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                      int32_t y1, int32_t y2, uint8_t* pRedImg) {
  return convert(kRectangle422, Yuv422P{pYUVImg, width, height}, {x1, x2, y1, y2}, to_red_by_twos, pRedImg);
}

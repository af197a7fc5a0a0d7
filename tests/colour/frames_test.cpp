// The tests of packed_frames.cpp and planar_frames.cpp, and through them of colour_matrix.cpp. One table
// lists all formats.

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;
using Bytes = std::vector<uint8_t>;

using Whole = bool (*)(uint8_t*, int32_t, int32_t, uint8_t*);
using Rectangle = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, uint8_t*);
using TwoResults = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, uint8_t*,
                            uint8_t*);

template <void (*F)(uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, uint8_t*)>
bool always(uint8_t* frame, int32_t w, int32_t h, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
            uint8_t* out) {
  F(frame, w, h, x1, x2, y1, y2, out);
  return true;
}

template <TwoResults F>
bool gray_beside_rgb(uint8_t* frame, int32_t w, int32_t h, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                     uint8_t* gray) {
  Bytes rgb(static_cast<std::size_t>(w * h * 3));
  return F(frame, w, h, x1, x2, y1, y2, rgb.data(), gray);
}

// The places of a pixel's Y, Cb and Cr.
struct Places {
  int32_t y, cb, cr;
};

struct Format {
  const char* name;
  Places (*places)(int32_t w, int32_t h, int32_t x, int32_t y);
  int32_t unit_rows;
  Whole from_rgb;
  Rectangle rgb, gray, by_fours, red, red_by_twos;
};

const Format kFormats[] = {
    {"CbYCrY",
     [](int32_t w, int32_t, int32_t x, int32_t y) {
       const int32_t group = 2 * (y * w + x / 2 * 2);
       return Places{2 * (y * w + x) + 1, group, group + 2};
     },
     1, NuvRGB2CbYCrY, NuvCopyCbYCrYRect2RGB, gray_beside_rgb<NuvCopyCbYCrYRect>, NuvCopyCbYCrYScale4Rect,
     always<NuvCopyCbYCrYRect2RedImg>, always<NuvCopyCbYCrYRect2RedImgShrink2>},
    {"420SP",
     [](int32_t w, int32_t h, int32_t x, int32_t y) {
       const int32_t cb = w * h + y / 2 * w + 2 * (x / 2);
       return Places{y * w + x, cb, cb + 1};
     },
     2, NuvRGB2YUV420SP, NuvCopyYUV420SPRect2RGB, gray_beside_rgb<NuvCopyYUV420SPRect>,
     NuvCopyYUV420SPScale4Rect, NuvCopyYUV420SPRect2RedImg, NuvCopyYUV420SPRect2RedImgShrink2},
    {"420P",
     [](int32_t w, int32_t h, int32_t x, int32_t y) {
       return Places{y * w + x, w * h + y / 2 * (w / 2) + x / 2, w * h + (h / 2 + y / 2) * (w / 2) + x / 2};
     },
     2, NuvRGB2YUV420P, NuvCopyYUV420PRect2RGB, gray_beside_rgb<NuvCopyYUV420PRect>, NuvCopyYUV420PScale4Rect,
     NuvCopyYUV420PRect2RedImg, NuvCopyYUV420PRect2RedImgShrink2},
    {"422P",
     [](int32_t w, int32_t h, int32_t x, int32_t y) {
       return Places{y * w + x, w * h + y * (w / 2) + x / 2, w * h + (h + y) * (w / 2) + x / 2};
     },
     1, NuvRGB2YUV422P, NuvCopyYUV422PRect2RGB, gray_beside_rgb<NuvCopyYUV422PRect>, NuvCopyYUV422PScale4Rect,
     NuvCopyYUV422PRect2RedImg, NuvCopyYUV422PRect2RedImgShrink2},
};

uint8_t clamped(int32_t v) {
  return static_cast<uint8_t>(std::clamp(v, 0, 255));
}
uint8_t blue(int32_t y, int32_t cb) {
  return clamped((16384 * y + 29032 * (cb - 128)) >> 14);
}
uint8_t green(int32_t y, int32_t cb, int32_t cr) {
  return clamped((16384 * y - 5638 * (cb - 128) - 11700 * (cr - 128)) >> 14);
}
uint8_t red(int32_t y, int32_t cr) {
  return clamped((16384 * y + 22970 * (cr - 128)) >> 14);
}
int32_t luma(const uint8_t* p) {
  return (1867 * p[0] + 9617 * p[1] + 4898 * p[2]) >> 14;
}
int32_t c_of(const uint8_t* p) {
  return (8192 * p[0] - 5428 * p[1] - 2763 * p[2]) >> 14;
}
int32_t d_of(const uint8_t* p) {
  return (8192 * p[2] - 6859 * p[1] - 1332 * p[0]) >> 14;
}

// Blue, green, red and Y of each pixel.
std::vector<std::array<uint8_t, 4>> plain(const Format& format, const Bytes& frame, int32_t w, int32_t h) {
  std::vector<std::array<uint8_t, 4>> pixels;
  for (int32_t i = 0; i < w * h; ++i) {
    const Places at = format.places(w, h, i % w, i / w);
    const uint8_t y = frame.data()[at.y];
    const uint8_t cb = frame.data()[at.cb];
    const uint8_t cr = frame.data()[at.cr];
    pixels.push_back({blue(y, cb), green(y, cb, cr), red(y, cr), y});
  }
  return pixels;
}

constexpr std::pair<int32_t, int32_t> kEvenSizes[] = {{2, 2}, {6, 4}, {34, 2}, {64, 6}, {98, 4}, {2118, 2}};

TEST(CameraFrames, AreConvertedPixelByPixel) {
  Random random(31);
  for (const Format& f : kFormats) {
    const struct {
      Rectangle function;
      int32_t step;
      std::vector<std::size_t> bytes;
    } conversions[] = {{f.rgb, 1, {0, 1, 2}},
                       {f.gray, 1, {3}},
                       {f.by_fours, 4, {0, 1, 2}},
                       {f.red, 1, {2}},
                       {f.red_by_twos, 2, {2}}};
    for (const auto& [w, h] : kEvenSizes) {
      Bytes frame = random.bytes(static_cast<std::size_t>(w * h * 2));
      const auto pixels = plain(f, frame, w, h);
      const int32_t x1 = w / 4 * 2;
      const int32_t y1 = h / 4 * 2;
      for (const auto& [function, step, bytes] : conversions) {
        // Scale4 of 422P requires multiples of 4.
        const int32_t unit = step == 4 && std::string(f.name) == "422P" ? 4 : 2;
        const int32_t x2 = x1 + (w - x1) / unit * unit - 1;
        const int32_t y2 = y1 + (h - y1) / unit * unit - 1;
        Bytes expected;
        for (int32_t y = y1; y <= y2; y += step) {
          for (int32_t x = x1; x <= x2; x += step) {
            for (std::size_t byte : bytes)
              expected.push_back(pixels[static_cast<std::size_t>(y * w + x)][byte]);
          }
        }
        expected.push_back(77);  // not written
        Bytes out(expected.size(), 77);
        EXPECT_TRUE(function(frame.data(), w, h, x1, x2, y1, y2, out.data()));
        EXPECT_EQ(out, expected) << f.name << ' ' << w << 'x' << h << ' ' << step;
      }
    }
  }
}

TEST(CameraFrames, ShareTheMeanChromaOfAUnit) {
  Random random(32);
  for (const Format& f : kFormats) {
    for (const auto& [w, h] : kEvenSizes) {
      Bytes rgb = random.bytes(static_cast<std::size_t>(w * h * 3));
      Bytes frame(static_cast<std::size_t>(w * h * 2));
      ASSERT_TRUE(f.from_rgb(rgb.data(), w, h, frame.data()));
      for (int32_t i = 0; i < w * h; ++i) {
        const int32_t unit_x = i % w / 2 * 2;
        const int32_t unit_y = i / w / f.unit_rows * f.unit_rows;
        const int32_t n = 2 * f.unit_rows;
        int32_t c = 0;
        int32_t d = 0;
        for (int32_t k = 0; k < n; ++k) {
          const uint8_t* p = rgb.data() + 3 * ((unit_y + k / 2) * w + unit_x + k % 2);
          c += c_of(p);
          d += d_of(p);
        }
        const Places at = f.places(w, h, i % w, i / w);
        ASSERT_EQ(frame.data()[at.y], luma(rgb.data() + 3 * i)) << f.name << ' ' << w << 'x' << h << ' ' << i;
        ASSERT_EQ(frame.data()[at.cb], (c + 128 * n) / n);
        ASSERT_EQ(frame.data()[at.cr], (d + 128 * n) / n);
      }
    }
  }
}

// The kernels compute in 16 bits what the formulas define in 32.
TEST(ColourMatrix, IsExactForAllColours) {
  constexpr int32_t kWidth = 512;
  constexpr int32_t kHeight = 256;
  constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;
  Bytes rgb(3 * kPixels);
  Bytes frame(2 * kPixels);
  int64_t wrong = 0;
  for (int32_t third = 0; third < 256; ++third) {
    for (std::size_t i = 0; i < kPixels; ++i) {  // both pixels of a pair are equal
      rgb[3 * i] = static_cast<uint8_t>(i / 2 % 256);
      rgb[3 * i + 1] = static_cast<uint8_t>(i / kWidth);
      rgb[3 * i + 2] = static_cast<uint8_t>(third);
    }
    NuvRGB2YUV422P(rgb.data(), kWidth, kHeight, frame.data());
    for (std::size_t i = 0; i < kPixels; i += 2) {
      const uint8_t* p = &rgb[3 * i];
      wrong += frame[i] != luma(p) || frame[i + 1] != luma(p) || frame[kPixels + i / 2] != c_of(p) + 128 ||
               frame[kPixels * 3 / 2 + i / 2] != d_of(p) + 128;
    }
    for (std::size_t i = 0; i < kPixels; ++i) {
      frame[i] = static_cast<uint8_t>(third);
      frame[kPixels + i / 2] = static_cast<uint8_t>(i / 2 % 256);
      frame[kPixels * 3 / 2 + i / 2] = static_cast<uint8_t>(i / kWidth);
    }
    NuvYUV422P2RGB(frame.data(), kWidth, kHeight, rgb.data());
    for (std::size_t i = 0; i < kPixels; ++i) {
      const int32_t cb = frame[kPixels + i / 2];
      const int32_t cr = frame[kPixels * 3 / 2 + i / 2];
      wrong += rgb[3 * i] != blue(third, cb) || rgb[3 * i + 1] != green(third, cb, cr) ||
               rgb[3 * i + 2] != red(third, cr);
    }
  }
  EXPECT_EQ(wrong, 0);
}

template <Whole F>
bool whole(uint8_t* in, int32_t w, int32_t h, int32_t, int32_t, int32_t, int32_t, uint8_t* out) {
  return F(in, w, h, out);
}
template <TwoResults F>
bool one_buffer(uint8_t* in, int32_t w, int32_t h, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                uint8_t* out) {
  return F(in, w, h, x1, x2, y1, y2, out, out);
}

TEST(CameraFrames, AreRefusedByTheParityRulesOfEachFunction) {
  const struct {
    int32_t multiples[6];  // width, height, x1, W, y1, H
    std::vector<Rectangle> functions;
  } rules[] = {
      {{2, 1, 1, 1, 1, 1}, {whole<NuvCbYCrY2RGB>, whole<NuvRGB2CbYCrY>, whole<NuvYUV422P2RGB>}},
      {{2, 2, 1, 1, 1, 1},
       {whole<NuvYUV420SP2RGB>, whole<NuvRGB2YUV420SP>, whole<NuvYUV420P2RGB>, whole<NuvRGB2YUV420P>,
        whole<NuvRGB2YUV422P>}},
      {{1, 1, 2, 2, 1, 1}, {NuvCopyCbYCrYRect2RGB, one_buffer<NuvCopyCbYCrYRect>, NuvCopyCbYCrYScale4Rect}},
      {{1, 1, 2, 2, 2, 2},
       {NuvCopyYUV420SPRect, NuvCopyYUV420SPRect2RGB, NuvCopyYUV420SPScale4Rect, NuvCopyYUV420SPRect2RedImg,
        NuvCopyYUV420SPRect2RedImgShrink2, NuvCopyYUV420PRect2RedImg, NuvCopyYUV420PRect2RedImgShrink2}},
      {{2, 2, 2, 2, 2, 2},
       {one_buffer<NuvCopyYUV420SPRect>, one_buffer<NuvCopyYUV420PRect>, NuvCopyYUV420PRect2RGB,
        NuvCopyYUV420PScale4Rect}},
      {{2, 1, 2, 2, 1, 1},
       {NuvCopyYUV422PRect2RGB, NuvCopyYUV422PRect2RedImg, NuvCopyYUV422PRect2RedImgShrink2}},
      {{2, 2, 2, 2, 1, 1}, {one_buffer<NuvCopyYUV422PRect>}},
      {{2, 1, 2, 4, 1, 4}, {NuvCopyYUV422PScale4Rect}},
  };
  Bytes frame(2000, 128);
  for (const auto& [multiples, functions] : rules) {
    for (int32_t odd = 0; odd < 256; ++odd) {
      const auto bit = [odd](int32_t i) { return odd >> i & 1; };
      // W and H have a second bit, which separates multiples of 4 from other even numbers.
      const int32_t values[] = {
          20 + bit(0), 18 + bit(1), 2 + bit(2), 8 + bit(3) + 2 * bit(6), 4 + bit(4), 8 + bit(5) + 2 * bit(7)};
      bool allowed = true;
      for (int32_t i = 0; i < 6; ++i) allowed = allowed && values[i] % multiples[i] == 0;
      for (const Rectangle& function : functions) {
        Bytes out(2000, 77);
        const bool done = function(frame.data(), values[0], values[1], values[2], values[2] + values[3] - 1,
                                   values[4], values[4] + values[5] - 1, out.data());
        ASSERT_EQ(done, allowed) << testing::PrintToString(multiples) << ' ' << &function - &functions[0];
        ASSERT_EQ(out != Bytes(2000, 77), allowed);
      }
    }
  }
  EXPECT_TRUE(NuvYUV420P2RGB(frame.data(), 4, 0, nullptr)) << "an empty image is accepted";
  EXPECT_TRUE(NuvCopyYUV420PRect2RGB(frame.data(), 4, 4, 2, 1, 0, 3, nullptr));
}

TEST(PackedFrames, OddRectanglesAreCopiedInWholeGroups) {
  //             Cb  Y   Cr   Y   Cb  Y   Cr   Y
  Bytes frame = {10, 50, 128, 60, 20, 70, 138, 80,  //
                 30, 51, 118, 61, 40, 71, 128, 81};
  Bytes out(9, 77);
  NuvCopyCbYCrYRect2Gry(frame.data(), 4, 2, 0, 2, 0, 1, out.data());
  EXPECT_THAT(out, ElementsAre(50, 60, 70, 80, 51, 61, 71, 81, 77));
  out.assign(9, 77);
  NuvCopyCbYCrYRect2RedImg(frame.data(), 4, 2, 2, 2, 0, 1, out.data());
  EXPECT_THAT(out, ElementsAre(84, 94, 71, 81, 77, 77, 77, 77, 77));
  // In an odd column, the next Cb is read as Cr.
  NuvCopyCbYCrYRect2RedImgShrink2(frame.data(), 4, 2, 1, 2, 0, 1, out.data());
  EXPECT_EQ(out[0], red(60, 20));
  NuvCopyCbYCrYRect(frame.data(), 4, 2, 1, 2, 1, 1, out.data());
  EXPECT_THAT(Bytes(out.begin(), out.begin() + 5), ElementsAre(118, 61, 40, 71, 77));
}

}  // namespace

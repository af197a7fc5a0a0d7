#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using Bytes = std::vector<uint8_t>;

using Whole = bool (*)(uint8_t*, int32_t, int32_t, uint8_t*);
using WholeGray = void (*)(uint8_t*, int32_t, int32_t, uint8_t*);
using Rectangle = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, uint8_t*);
using TwoResults = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, uint8_t*,
                            uint8_t*);

void packed_gray(uint8_t* frame, int32_t w, int32_t h, uint8_t* gray) {
  NuvCbYCrY2Gry(frame, w, h, gray);
}
template <void (*F)(uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, uint8_t*)>
bool always(uint8_t* frame, int32_t w, int32_t h, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
            uint8_t* out) {
  F(frame, w, h, x1, x2, y1, y2, out);
  return true;
}

// The places of a pixel's Y, Cb and Cr.
struct Places {
  int32_t y, cb, cr;
};

struct Format {
  const char* name;
  Places (*places)(int32_t w, int32_t h, int32_t x, int32_t y);
  int32_t unit_rows;
  Whole to_rgb, from_rgb;
  WholeGray to_gray;
  TwoResults rgb_and_gray;
  Rectangle rgb, by_fours, red, red_by_twos;
};

const Format kFormats[] = {
    {"CbYCrY",
     [](int32_t w, int32_t, int32_t x, int32_t y) {
       const int32_t group = 2 * (y * w + x / 2 * 2);
       return Places{2 * (y * w + x) + 1, group, group + 2};
     },
     1, NuvCbYCrY2RGB, NuvRGB2CbYCrY, packed_gray, NuvCopyCbYCrYRect, NuvCopyCbYCrYRect2RGB,
     NuvCopyCbYCrYScale4Rect, always<NuvCopyCbYCrYRect2RedImg>, always<NuvCopyCbYCrYRect2RedImgShrink2>},
    {"420SP",
     [](int32_t w, int32_t h, int32_t x, int32_t y) {
       const int32_t cb = w * h + y / 2 * w + 2 * (x / 2);
       return Places{y * w + x, cb, cb + 1};
     },
     2, NuvYUV420SP2RGB, NuvRGB2YUV420SP, NuvYUV420SP2Gry, NuvCopyYUV420SPRect, NuvCopyYUV420SPRect2RGB,
     NuvCopyYUV420SPScale4Rect, NuvCopyYUV420SPRect2RedImg, NuvCopyYUV420SPRect2RedImgShrink2},
    {"420P",
     [](int32_t w, int32_t h, int32_t x, int32_t y) {
       return Places{y * w + x, w * h + y / 2 * (w / 2) + x / 2, w * h + (h / 2 + y / 2) * (w / 2) + x / 2};
     },
     2, NuvYUV420P2RGB, NuvRGB2YUV420P, NuvYUV420P2Gry, NuvCopyYUV420PRect, NuvCopyYUV420PRect2RGB,
     NuvCopyYUV420PScale4Rect, NuvCopyYUV420PRect2RedImg, NuvCopyYUV420PRect2RedImgShrink2},
    {"422P",
     [](int32_t w, int32_t h, int32_t x, int32_t y) {
       return Places{y * w + x, w * h + y * (w / 2) + x / 2, w * h + (h + y) * (w / 2) + x / 2};
     },
     1, NuvYUV422P2RGB, NuvRGB2YUV422P, NuvYUV422P2Gry, NuvCopyYUV422PRect, NuvCopyYUV422PRect2RGB,
     NuvCopyYUV422PScale4Rect, NuvCopyYUV422PRect2RedImg, NuvCopyYUV422PRect2RedImgShrink2},
};

int32_t clamped(int32_t v) {
  return std::clamp(v, 0, 255);
}
int32_t blue(int32_t y, int32_t cb) {
  return clamped((16384 * y + 29032 * (cb - 128)) >> 14);
}
int32_t green(int32_t y, int32_t cb, int32_t cr) {
  return clamped((16384 * y - 5638 * (cb - 128) - 11700 * (cr - 128)) >> 14);
}
int32_t red(int32_t y, int32_t cr) {
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

enum class Result { kRgb, kRed, kGray };

// Every step-th pixel of every step-th row of a rectangle, pixel by pixel, and a byte behind them.
Bytes plain(const Format& format, const Bytes& frame, int32_t w, int32_t h, int32_t x1, int32_t x2,
            int32_t y1, int32_t y2, int32_t step, Result result) {
  Bytes out;
  const auto put = [&out](int32_t v) { out.push_back(static_cast<uint8_t>(v)); };
  for (int32_t y = y1; y <= y2; y += step) {
    for (int32_t x = x1; x <= x2; x += step) {
      const Places at = format.places(w, h, x, y);
      const auto byte = [&frame](int32_t i) { return int32_t{frame[static_cast<std::size_t>(i)]}; };
      if (result == Result::kGray) put(byte(at.y));
      if (result == Result::kRgb) {
        put(blue(byte(at.y), byte(at.cb)));
        put(green(byte(at.y), byte(at.cb), byte(at.cr)));
      }
      if (result != Result::kGray) put(red(byte(at.y), byte(at.cr)));
    }
  }
  put(77);
  return out;
}

constexpr std::pair<int32_t, int32_t> kEvenSizes[] = {{2, 2}, {6, 4}, {34, 2}, {64, 6}, {98, 4}, {2118, 2}};

TEST(CameraFrames, AreConvertedPixelByPixel) {
  Random random(31);
  for (const Format& f : kFormats) {
    for (const auto& size : kEvenSizes) {
      const int32_t w = size.first;
      const int32_t h = size.second;
      SCOPED_TRACE(testing::Message() << f.name << ' ' << w << 'x' << h);
      Bytes frame = random.bytes(static_cast<std::size_t>(w * h * 2));
      const auto expected = [&](int32_t x1, int32_t x2, int32_t y1, int32_t y2, int32_t step, Result result) {
        return plain(f, frame, w, h, x1, x2, y1, y2, step, result);
      };
      const auto fresh = [](const Bytes& like) { return Bytes(like.size(), 77); };

      const Bytes rgb = expected(0, w - 1, 0, h - 1, 1, Result::kRgb);
      const Bytes gray = expected(0, w - 1, 0, h - 1, 1, Result::kGray);
      Bytes out = fresh(rgb);
      EXPECT_TRUE(f.to_rgb(frame.data(), w, h, out.data()));
      EXPECT_EQ(out, rgb);
      Bytes out_gray = fresh(gray);
      f.to_gray(frame.data(), w, h, out_gray.data());
      EXPECT_EQ(out_gray, gray);

      const int32_t x1 = w / 4 * 2;
      const int32_t y1 = h / 4 * 2;
      const Bytes part = expected(x1, w - 1, y1, h - 1, 1, Result::kRgb);
      const Bytes part_gray = expected(x1, w - 1, y1, h - 1, 1, Result::kGray);
      out = fresh(part);
      EXPECT_TRUE(f.rgb(frame.data(), w, h, x1, w - 1, y1, h - 1, out.data()));
      EXPECT_EQ(out, part);
      out = fresh(part);
      out_gray = fresh(part_gray);
      EXPECT_TRUE(f.rgb_and_gray(frame.data(), w, h, x1, w - 1, y1, h - 1, out.data(), out_gray.data()));
      EXPECT_EQ(out, part);
      EXPECT_EQ(out_gray, part_gray);

      const struct {
        Rectangle function;
        int32_t step;
        Result result;
      } copies[] = {
          {f.by_fours, 4, Result::kRgb}, {f.red, 1, Result::kRed}, {f.red_by_twos, 2, Result::kRed}};
      for (const auto& copy : copies) {
        // 422P is thinned by fours in whole fours only.
        const bool fours = copy.step == 4 && std::string(f.name) == "422P";
        const int32_t x2 = fours ? x1 + (w - x1) / 4 * 4 - 1 : w - 1;
        const int32_t y2 = fours ? y1 + (h - y1) / 4 * 4 - 1 : h - 1;
        const Bytes samples = expected(x1, x2, y1, y2, copy.step, copy.result);
        out = fresh(samples);
        EXPECT_TRUE(copy.function(frame.data(), w, h, x1, x2, y1, y2, out.data())) << copy.step;
        EXPECT_EQ(out, samples) << copy.step;
      }
    }
  }
}

TEST(CameraFrames, TakeTheMeanChromaOfAUnit) {
  Random random(32);
  for (const Format& f : kFormats) {
    for (const auto& size : kEvenSizes) {
      const int32_t w = size.first;
      const int32_t h = size.second;
      Bytes rgb = random.bytes(static_cast<std::size_t>(w * h * 3));
      Bytes frame(static_cast<std::size_t>(w * h * 2));
      ASSERT_TRUE(f.from_rgb(rgb.data(), w, h, frame.data()));
      for (int32_t y = 0; y < h; ++y) {
        for (int32_t x = 0; x < w; ++x) {
          const Places at = f.places(w, h, x, y);
          const auto pixel = [&](int32_t px, int32_t py) {
            return &rgb[static_cast<std::size_t>(3 * (py * w + px))];
          };
          int32_t c = 0;
          int32_t d = 0;
          for (int32_t i = 0; i < 2 * f.unit_rows; ++i) {
            const uint8_t* p = pixel(x / 2 * 2 + i % 2, y / f.unit_rows * f.unit_rows + i / 2);
            c += c_of(p) + 128;
            d += d_of(p) + 128;
          }
          ASSERT_EQ(frame[static_cast<std::size_t>(at.y)], luma(pixel(x, y)))
              << f.name << ' ' << x << ',' << y;
          ASSERT_EQ(frame[static_cast<std::size_t>(at.cb)], c / (2 * f.unit_rows));
          ASSERT_EQ(frame[static_cast<std::size_t>(at.cr)], d / (2 * f.unit_rows));
        }
      }
    }
  }
}

// The kernels compute in 16 bits what the formulas say in 32.
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

TEST(ColourMatrix, LosesAsMuchAsItsTableSays) {
  const Bytes table[] = {{255, 255, 255, 254, 128, 128, 254, 254, 254},
                         {128, 128, 128, 127, 128, 128, 127, 127, 127},
                         {1, 1, 1, 0, 128, 128, 0, 0, 0},
                         {255, 0, 0, 29, 255, 107, 254, 0, 0},
                         {0, 255, 0, 149, 43, 21, 0, 254, 0},
                         {0, 0, 255, 76, 84, 255, 0, 0, 254}};
  for (const Bytes& row : table) {
    Bytes rgb;
    for (int i = 0; i < 4; ++i) rgb.insert(rgb.end(), row.begin(), row.begin() + 3);
    Bytes frame(8);
    NuvRGB2YUV420P(rgb.data(), 2, 2, frame.data());
    EXPECT_THAT(frame, ElementsAre(row[3], row[3], row[3], row[3], row[4], row[5], 0, 0));
    NuvRGB2CbYCrY(rgb.data(), 2, 2, frame.data());
    EXPECT_THAT(frame, ElementsAre(row[4], row[3], row[5], row[3], row[4], row[3], row[5], row[3]));
    NuvCbYCrY2RGB(frame.data(), 2, 2, rgb.data());
    EXPECT_EQ(Bytes(rgb.begin(), rgb.begin() + 3), Bytes(row.begin() + 6, row.end()));
  }
}

// What the arguments must be multiples of: width, height, x1, W, y1, H.
struct Rule {
  const char* name;
  Rectangle function;
  int32_t multiples[6];
};

template <Whole F>
bool of_frame(uint8_t* in, int32_t w, int32_t h, int32_t, int32_t, int32_t, int32_t, uint8_t* out) {
  return F(in, w, h, out);
}
template <TwoResults F>
bool one_buffer(uint8_t* in, int32_t w, int32_t h, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                uint8_t* out) {
  return F(in, w, h, x1, x2, y1, y2, out, out);
}

TEST(CameraFrames, AreRefusedByTheParitiesOfEachFunction) {
  const Rule rules[] = {
      {"packed frame", of_frame<NuvCbYCrY2RGB>, {2, 1, 1, 1, 1, 1}},
      {"to packed frame", of_frame<NuvRGB2CbYCrY>, {2, 1, 1, 1, 1, 1}},
      {"packed rgb", NuvCopyCbYCrYRect2RGB, {1, 1, 2, 2, 1, 1}},
      {"packed both", one_buffer<NuvCopyCbYCrYRect>, {1, 1, 2, 2, 1, 1}},
      {"packed fours", NuvCopyCbYCrYScale4Rect, {1, 1, 2, 2, 1, 1}},
      {"SP frame", of_frame<NuvYUV420SP2RGB>, {2, 2, 1, 1, 1, 1}},
      {"to SP frame", of_frame<NuvRGB2YUV420SP>, {2, 2, 1, 1, 1, 1}},
      {"420P frame", of_frame<NuvYUV420P2RGB>, {2, 2, 1, 1, 1, 1}},
      {"to 420P frame", of_frame<NuvRGB2YUV420P>, {2, 2, 1, 1, 1, 1}},
      {"SP frame of frame", NuvCopyYUV420SPRect, {1, 1, 2, 2, 2, 2}},
      {"SP rgb", NuvCopyYUV420SPRect2RGB, {1, 1, 2, 2, 2, 2}},
      {"SP fours", NuvCopyYUV420SPScale4Rect, {1, 1, 2, 2, 2, 2}},
      {"SP red", NuvCopyYUV420SPRect2RedImg, {1, 1, 2, 2, 2, 2}},
      {"SP twos", NuvCopyYUV420SPRect2RedImgShrink2, {1, 1, 2, 2, 2, 2}},
      {"SP both", one_buffer<NuvCopyYUV420SPRect>, {2, 2, 2, 2, 2, 2}},
      {"420P red", NuvCopyYUV420PRect2RedImg, {1, 1, 2, 2, 2, 2}},
      {"420P twos", NuvCopyYUV420PRect2RedImgShrink2, {1, 1, 2, 2, 2, 2}},
      {"420P both", one_buffer<NuvCopyYUV420PRect>, {2, 2, 2, 2, 2, 2}},
      {"420P rgb", NuvCopyYUV420PRect2RGB, {2, 2, 2, 2, 2, 2}},
      {"420P fours", NuvCopyYUV420PScale4Rect, {2, 2, 2, 2, 2, 2}},
      {"422P frame", of_frame<NuvYUV422P2RGB>, {2, 1, 1, 1, 1, 1}},
      {"to 422P frame", of_frame<NuvRGB2YUV422P>, {2, 2, 1, 1, 1, 1}},
      {"422P rgb", NuvCopyYUV422PRect2RGB, {2, 1, 2, 2, 1, 1}},
      {"422P red", NuvCopyYUV422PRect2RedImg, {2, 1, 2, 2, 1, 1}},
      {"422P twos", NuvCopyYUV422PRect2RedImgShrink2, {2, 1, 2, 2, 1, 1}},
      {"422P both", one_buffer<NuvCopyYUV422PRect>, {2, 2, 2, 2, 1, 1}},
      {"422P fours", NuvCopyYUV422PScale4Rect, {2, 1, 2, 4, 1, 4}},
  };
  Bytes frame(2000, 128);
  for (const Rule& rule : rules) {
    for (int32_t odd = 0; odd < 256; ++odd) {
      const auto bit = [odd](int32_t i) { return odd >> i & 1; };
      // Of W and H a second bit tells multiples of 4 from the other even ones.
      const int32_t values[] = {
          20 + bit(0), 18 + bit(1), 2 + bit(2), 8 + bit(3) + 2 * bit(6), 4 + bit(4), 8 + bit(5) + 2 * bit(7)};
      bool allowed = true;
      for (int32_t i = 0; i < 6; ++i) allowed = allowed && values[i] % rule.multiples[i] == 0;
      Bytes out(2000, 77);
      const auto run = [&](int32_t y2) {
        return rule.function(frame.data(), values[0], values[1], values[2], values[2] + values[3] - 1,
                             values[4], y2, out.data());
      };
      ASSERT_EQ(run(values[4] + values[5] - 1), allowed) << rule.name << ' ' << odd;
      ASSERT_EQ(out != Bytes(2000, 77), allowed) << rule.name << ' ' << odd;
    }
  }
}

TEST(CameraFrames, WithoutPixelsWriteNothing) {
  Bytes in(100, 128);
  Bytes out(100, 77);
  for (const Format& f : kFormats) {
    for (int32_t size : {0, -2}) {
      EXPECT_TRUE(f.to_rgb(in.data(), 4, size, out.data()));
      EXPECT_TRUE(f.from_rgb(in.data(), size, 4, out.data()));
      f.to_gray(in.data(), size, size, out.data());
    }
    for (Rectangle copy : {f.rgb, f.by_fours, f.red, f.red_by_twos}) {
      EXPECT_TRUE(copy(in.data(), 4, 4, 0, 3, 4, 3, out.data()));
      EXPECT_TRUE(copy(in.data(), 4, 4, 2, 1, 0, 3, out.data()));
      EXPECT_TRUE(copy(in.data(), 4, 4, 0, 3, 8, 3, out.data()));
    }
  }
  NuvCopyCbYCrYRect(in.data(), 4, 4, 0, 3, 2, 1, out.data());
  NuvCopyCbYCrYRect2Gry(in.data(), 4, 4, 3, 0, 0, 3, out.data());
  EXPECT_THAT(out, Each(77));
}

TEST(PackedFrames, TakeOddRectanglesInWholeGroups) {
  //             Cb  Y   Cr   Y   Cb  Y   Cr   Y
  Bytes frame = {10, 50, 128, 60, 20, 70, 138, 80,  //
                 30, 51, 118, 61, 40, 71, 128, 81};
  Bytes out(9, 77);
  NuvCopyCbYCrYRect2Gry(frame.data(), 4, 2, 0, 2, 0, 1, out.data());
  EXPECT_THAT(out, ElementsAre(50, 60, 70, 80, 51, 61, 71, 81, 77));
  out.assign(9, 77);
  NuvCopyCbYCrYRect2RedImg(frame.data(), 4, 2, 2, 2, 0, 1, out.data());
  EXPECT_THAT(out, ElementsAre(84, 94, 71, 81, 77, 77, 77, 77, 77));
  // From an odd column on, Cr is read where the next Cb stands.
  NuvCopyCbYCrYRect2RedImgShrink2(frame.data(), 4, 2, 1, 2, 0, 1, out.data());
  EXPECT_EQ(out[0], red(60, 20));
  NuvCopyCbYCrYRect(frame.data(), 4, 2, 1, 2, 1, 1, out.data());
  EXPECT_THAT(Bytes(out.begin(), out.begin() + 5), ElementsAre(118, 61, 40, 71, 77));
}

TEST(PlanarFrames, AreCutOutAsFrames) {
  Random random(33);
  const int32_t w = 9;  // odd sizes are not refused here
  const int32_t h = 7;
  Bytes frame = random.bytes(w * h * 2);
  Bytes part(6 * 4 * 3 / 2 + 1, 77);
  ASSERT_TRUE(NuvCopyYUV420SPRect(frame.data(), w, h, 2, 7, 2, 5, part.data()));
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 6; ++x) {
      const Places in_part = kFormats[1].places(6, 4, x, y);
      const Places in_frame = kFormats[1].places(w, h, x + 2, y + 2);
      ASSERT_EQ(part[static_cast<std::size_t>(in_part.y)], frame[static_cast<std::size_t>(in_frame.y)]);
      ASSERT_EQ(part[static_cast<std::size_t>(in_part.cb)], frame[static_cast<std::size_t>(in_frame.cb)]);
      ASSERT_EQ(part[static_cast<std::size_t>(in_part.cr)], frame[static_cast<std::size_t>(in_frame.cr)]);
    }
  }
  EXPECT_EQ(part.back(), 77);
}

}  // namespace

// Text: digits from a font in the library, and Hanzi from a font file.
//
// A glyph is rows of bits. The pen ink draws its set bits and the pen ground its clear ones, each bit as a
// square of pixels. Pixels outside the image are left out. The functions differ in the two pens, the scale,
// and how far down a line of text may begin.

#include <algorithm>
#include <cstring>

#include "drawing/digits.h"
#include "drawing/hanzi_font.h"
#include "drawing/pen.h"
#include "nuv/drawing.h"

namespace nuv {
namespace {

// A pen that draws nothing.
struct NoPen {
  void put(int32_t, int32_t) const {}
};

struct Glyph {
  const uint8_t* bytes;
  int32_t columns;  // a multiple of 8
  int32_t rows;

  bool bit(int32_t x, int32_t y) const { return (bytes[(y * columns + x) / 8] >> (7 - x % 8) & 1) != 0; }
};

template <class Ink, class Ground>
void draw_glyph(const Ink& ink, const Ground& ground, Point at, Glyph glyph, int32_t scale) {
  for (int32_t y = 0; y < glyph.rows * scale; ++y) {
    for (int32_t x = 0; x < glyph.columns * scale; ++x) {
      if (!ink.image.contains(at.x + x, at.y + y)) continue;
      if (glyph.bit(x / scale, y / scale)) {
        ink.put(at.x + x, at.y + y);
      } else {
        ground.put(at.x + x, at.y + y);
      }
    }
  }
}

// A digit may begin up to column width - cell - 1 and row height - bottom_margin.
template <class Ink, class Ground>
int32_t draw_number(const Ink& ink, const Ground& ground, int32_t scale, int32_t bottom_margin, Point at,
                    int32_t gap, const char* text) {
  const int32_t cell = kDigitColumns * scale;
  const int32_t last_x = ink.image.width - cell - 1;
  Point pen{std::max(at.x, 0), std::max(at.y, 0)};
  if (ink.image.empty() || pen.y > ink.image.height - bottom_margin) return pen.x;
  for (; *text != '\0' && pen.x <= last_x; ++text) {
    if (*text < '0' || *text > '9') continue;
    draw_glyph(ink, ground, pen, {kDigits[*text - '0'], kDigitColumns, kDigitRows}, scale);
    pen.x += cell + gap;
  }
  return pen.x;
}

template <class Pen>
bool draw_hanzi(const Pen& ink, const Pen& ground, int32_t scale, int32_t bottom_margin, Point pen,
                int32_t gap, const char* text) {
  const auto& image = ink.image;
  if (pen.y >= int64_t{image.height} - bottom_margin) return false;
  const File font = open_hanzi_font();
  if (!font) return false;
  const int32_t cell = kHanziSize * scale;
  const std::size_t length = std::strlen(text);
  HanziGlyph glyph{};
  // The last byte of a text of odd length is paired with the terminating zero.
  for (std::size_t i = 0; i < length; i += 2) {
    read_glyph(font.get(), static_cast<uint8_t>(text[i]), static_cast<uint8_t>(text[i + 1]), glyph);
    draw_glyph(ink, ground, pen, {glyph.data(), kHanziSize, kHanziSize}, scale);
    pen.x += gap + cell;
    if (pen.x > image.width - cell - 1) {
      pen.x = 0;
      if (pen.y + cell >= image.height) break;
      pen.y += cell;
    }
  }
  return true;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvSetNumberString2GryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                  int32_t gap, int32_t color, char* pStr) {
  return draw_number(GrayPen(pGryImg, width, height, color), NoPen{}, 1, 1, {x, y}, gap, pStr);
}

int32_t NuvSetNumberString2RGBImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                  int32_t gap, int32_t b, int32_t g, int32_t r, char* pStr) {
  return draw_number(RgbPen(pRGBImg, width, height, r, g, b), RgbPen(pRGBImg, width, height, 0, 0, 0), 1, 11,
                     {x, y}, gap, pStr);
}

int32_t NuvSetNumberString20x16RGBImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                      int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB, int32_t fgR,
                                      int32_t fgG, int32_t fgB, char* pStr) {
  return draw_number(RgbPen(pRGBImg, width, height, fgR, fgG, fgB),
                     RgbPen(pRGBImg, width, height, bkR, bkG, bkB), 2, 21, {x, y}, gap, pStr);
}

int32_t NuvSetNumberString20x16GryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                      int32_t gap, int32_t bkColor, int32_t fgColor, char* pStr) {
  return draw_number(GrayPen(pGryImg, width, height, fgColor), GrayPen(pGryImg, width, height, bkColor), 2,
                     21, {x, y}, gap, pStr);
}

void NuvChar2Wide(char* pSrc, char* pDst) {
  for (; *pSrc != '\0'; ++pSrc) {
    const auto c = static_cast<uint8_t>(*pSrc);
    if (c < 128) *pDst++ = '\xA3';
    *pDst++ = static_cast<char>(c | 128);
  }
  *pDst = '\0';
}

bool NuvDrawChineseString16x16(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                               int32_t gap, int32_t bkColor, int32_t fgColor, char* pStr) {
  return draw_hanzi(GrayPen(pGryImg, width, height, fgColor), GrayPen(pGryImg, width, height, bkColor), 1, 16,
                    {x, y}, gap, pStr);
}

bool NuvDrawChineseString16x16(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                               int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB, int32_t fgR, int32_t fgG,
                               int32_t fgB, char* pStr) {
  // This form keeps 4 more rows free at the bottom than the gray one.
  return draw_hanzi(RgbPen(pRGBImg, width, height, fgR, fgG, fgB),
                    RgbPen(pRGBImg, width, height, bkR, bkG, bkB), 1, 20, {x, y}, gap, pStr);
}

bool NuvDrawChineseString32x32(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                               int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB, int32_t fgR, int32_t fgG,
                               int32_t fgB, char* pStr) {
  return draw_hanzi(RgbPen(pRGBImg, width, height, fgR, fgG, fgB),
                    RgbPen(pRGBImg, width, height, bkR, bkG, bkB), 2, 32, {x, y}, gap, pStr);
}

bool NuvDrawChineseString32x32(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                               int32_t gap, int32_t bkColor, int32_t fgColor, char* pStr) {
  return draw_hanzi(GrayPen(pGryImg, width, height, fgColor), GrayPen(pGryImg, width, height, bkColor), 2, 32,
                    {x, y}, gap, pStr);
}

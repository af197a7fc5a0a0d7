#include "boundary/calls.h"

namespace {

// The coordinates of a point in the image or a little outside.
int32_t near_x(Scene& s) {
  return s.integer(-6, std::max(s.width, 0) + 5);
}
int32_t near_y(Scene& s) {
  return s.integer(-6, std::max(s.height, 0) + 5);
}

// A flag, and a gray or an RGB image that agrees with it.
bool is_rgb(Scene& s) {
  return s.count % 2 != 0;
}
uint8_t* gray_or_rgb(Scene& s) {
  return s.picture(is_rgb(s) ? 3 : 1);
}

// A value that a binary image typically holds.
int32_t binary_color(Scene& s) {
  return s.hostile ? s.integer(0, 255) : s.one_of({0, 255});
}

// ---- Projections ----

constexpr int32_t kMostInProjection = 4000;

// The greatest x2 that a projection has entries for. All entries up to x2 are read.
int32_t last_column(Scene& s) {
  return s.count < 0 ? s.count : s.count - 1;
}
// The entries of a projection of rows. Entries from the height on are not read.
std::size_t counted_rows(const Scene& s) {
  return Scene::length(std::min(s.count, s.height));
}

// ---- Texts ----

// A picture that typically has room for a few characters of the largest font.
template <int Channels>
uint8_t* page(Scene& s) {
  if (!s.hostile) {
    s.width += 40;
    s.height += 40;
  }
  return s.picture(Channels);
}

// A text of these characters; in a hostile scene, of any bytes.
template <class Character>
char* text(Scene& s, int32_t length, Character character) {
  char* data = s.memory<char>(Scene::length(length) + 1);
  for (int32_t i = 0; i < length; ++i)
    data[i] = static_cast<char>(s.hostile ? s.between(1, 255) : character(i));
  data[Scene::length(length)] = '\0';
  return data;
}
char* number(Scene& s) {
  const auto digit_or_other = [&](int32_t) { return s.between(0, 9) == 0 ? '-' : s.between('0', '9'); };
  return text(s, s.between(0, 9), digit_or_other);
}
// A text of the first codes of the font.
char* hanzi(Scene& s) {
  return text(s, s.between(1, 12), [&](int32_t i) { return i % 2 == 0 ? 0xA1 : s.between(0xA1, 0xA5); });
}
char* mixed_text(Scene& s) {
  return text(s, s.count, [&](int32_t) { return s.between(1, 255); });
}
char* wide_text(Scene& s) {
  return s.memory<char>(2 * calls::counted(s) + 1);
}

}  // namespace

Calls drawing_calls() {
  using namespace calls;
  const auto projection = integers(counted, 0, kMostInProjection);
  const auto projection_of_rows = integers(counted_rows, 0, kMostInProjection);
  const auto slope = real(-2, 2);
  const auto a = real(0.5, 2);  // a*x + b*y + c = 0, typically in the image
  const auto b = real(-2, 2);
  const auto c = real(-40, 0);
  const auto degree = real(-45, 225);
  const auto size = integer(0, 20);
  const auto gap = integer(-2, 4);
  return {
      EXPORT(NuvGryLine, gray, width, height, near_x, near_y, near_x, near_y, color),
      EXPORT(NuvRGBLine, rgb, width, height, near_x, near_y, near_x, near_y, color, color, color),
      EXPORT(NuvDrawDegreeLine, gray, width, height, near_x, near_y, degree, color),
      EXPORT(NuvDrawKBLine, gray, width, height, integer(0, 1), slope, real(-10, 50), color),
      EXPORT(NuvDrawKBLine, rgb, width, height, integer(0, 1), slope, real(-10, 50), color, color, color),
      EXPORT(NuvDrawABCLineByColor, gray, width, height, a, b, c, color),
      EXPORT(NuvDrawABCLineByColor, gray, width, height, any_x1, any_x2, any_y1, any_y2, a, b, c, color),
      EXPORT(NuvDrawABCLineByInc, gray, width, height, a, b, c),
      EXPORT(NuvDrawHoughLine, gray, width, height, integer(-4, 30), integer(0, 179), byte),

      EXPORT(NuvDrawPolygon, gray, width, height, integers(counted, -5, 55), integers(counted, -5, 50), count,
             integer(-4, 4), integer(-4, 4), color),
      EXPORT(NuvDrawCircle, gray, width, height, near_x, near_y, size, size, color),
      EXPORT(NuvDrawGryRect, gray, width, height, any_x1, any_x2, any_y1, any_y2, color),
      EXPORT(NuvDrawRGBRect, rgb, width, height, any_x1, any_x2, any_y1, any_y2, color, color, color),
      EXPORT(NuvDrawRect, gray_or_rgb, width, height, is_rgb, any_x1, any_x2, any_y1, any_y2, color, color,
             color, color),
      EXPORT(NuvChangeColorOnRect, binary, width, height, any_x1, any_x2, any_y1, any_y2, binary_color,
             color),
      EXPORT(NuvFillGryRect, gray, width, height, any_x1, any_x2, any_y1, any_y2, color),
      EXPORT(NuvFillRGBRect, rgb, width, height, any_x1, any_x2, any_y1, any_y2, color, color, color),

      EXPORT(NuvDrawGryCross, gray, width, height, near_x, near_y, size, byte),
      EXPORT(NuvDrawGryCrossShadow, gray, width, height, near_x, near_y, size, byte),
      EXPORT(NuvDrawRGBCross, rgb, width, height, near_x, near_y, size, color, color, color),

      EXPORT(NuvGryImgDrawArrow, gray, width, height, near_x, near_y, near_x, near_y, color),
      EXPORT(NuvRGBImgDrawArrow, rgb, width, height, near_x, near_y, near_x, near_y, size, color, color,
             color),
      EXPORT(NuvDrawUpArrow, gray, width, height, any_x1, any_x2, any_y1, any_y2, color),
      EXPORT(NuvDrawDownArrow, gray, width, height, any_x1, any_x2, any_y1, any_y2, color),
      EXPORT(NuvDrawLeftArrow, gray, width, height, any_x1, any_x2, any_y1, any_y2, color),
      EXPORT(NuvDrawRightArrow, gray, width, height, any_x1, any_x2, any_y1, any_y2, color),
      EXPORT(NuvDrawUpArrow, gray, width, height, near_x, near_y, size, color),
      EXPORT(NuvDrawDownArrow, gray, width, height, near_x, near_y, size, color),
      EXPORT(NuvDrawRightArrow, gray, width, height, near_x, near_y, size, color),
      EXPORT(NuvDrawLeftArrow, gray, width, height, near_x, near_y, size, color),
      EXPORT(NuvDrawUpArrow, rgb, width, height, near_x, near_y, size, color, color, color),
      EXPORT(NuvDrawDownArrow, rgb, width, height, near_x, near_y, size, color, color, color),
      EXPORT(NuvDrawLeftArrow, rgb, width, height, near_x, near_y, size, color, color, color),
      EXPORT(NuvDrawRightArrow, rgb, width, height, near_x, near_y, size, color, color, color),

      EXPORT(NuvDrawPrjX, gray, width, height, projection, any_x1, last_column, color),
      EXPORT(NuvDrawPrjX, gray, width, height, projection, count, color),
      EXPORT(NuvDrawPrjXMinV0, gray, width, height, projection, count, color),
      EXPORT(NuvDrawPrjY, gray, width, height, projection_of_rows, count, color),
      EXPORT(NuvDrawPrjYMinV0, gray, width, height, projection_of_rows, count, color),

      EXPORT(NuvSetNumberString2GryImg, page<1>, width, height, near_x, near_y, gap, color, number),
      EXPORT(NuvSetNumberString2RGBImg, page<3>, width, height, near_x, near_y, gap, color, color, color,
             number),
      EXPORT(NuvSetNumberString20x16RGBImg, page<3>, width, height, integer(-6, 30), integer(-6, 30), gap,
             color, color, color, color, color, color, number),
      EXPORT(NuvSetNumberString20x16GryImg, page<1>, width, height, integer(-6, 30), integer(-6, 30), gap,
             color, color, number),

      // These draw only if the font is beside the program. The rows do not write a font, because no relative
      // path leads there.
      EXPORT(NuvDrawChineseString16x16, page<1>, width, height, near_x, integer(-6, 14), gap, color, color,
             hanzi),
      EXPORT(NuvDrawChineseString16x16, page<3>, width, height, near_x, integer(-6, 14), gap, color, color,
             color, color, color, color, hanzi),
      EXPORT(NuvDrawChineseString32x32, page<3>, width, height, near_x, integer(-6, 14), gap, color, color,
             color, color, color, color, hanzi),
      EXPORT(NuvDrawChineseString32x32, page<1>, width, height, near_x, integer(-6, 14), gap, color, color,
             hanzi),
      EXPORT(NuvChar2Wide, mixed_text, wide_text),

      EXPORT(NuvSetPrivateLogo, gray_or_rgb, width, height, is_rgb, integer(-8, 20), integer(-8, 20)),
  };
}

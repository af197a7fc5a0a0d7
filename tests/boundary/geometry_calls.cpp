#include <algorithm>
#include <memory>

#include "boundary/calls.h"

namespace {

using namespace calls;

std::size_t four_a_pixel(const Scene& s) {
  return s.pixels() * 4;
}
std::size_t twelve_a_pixel(const Scene& s) {
  return s.pixels() * 12;
}
std::size_t blocks_of(const Scene& s, int32_t columns, int32_t rows) {
  return columns < 1 || rows < 1 ? 0 : Scene::area(s.width / columns, s.height / rows);
}
std::size_t blocks(const Scene& s) {
  return blocks_of(s, block_width(s), block_height(s));
}
std::size_t blocks_of_2(const Scene& s) {
  return blocks_of(s, 2, 2);
}
std::size_t blocks_of_4(const Scene& s) {
  return blocks_of(s, 4, 4);
}
uint8_t* block_means(Scene& s) {
  return s.noise(blocks(s) * (in_color(s) ? 3 : 1));
}

// The sizes of a result that is typically not larger than its source.
int32_t shrunk_width(const Scene& s) {
  return s.hostile ? s.result_width : 1 + s.result_width % s.width;
}
int32_t shrunk_height(const Scene& s) {
  return s.hostile ? s.result_height : 1 + s.result_height % s.height;
}
std::size_t shrunk(const Scene& s) {
  return Scene::area(shrunk_width(s), shrunk_height(s));
}

// A number in memory, which the export changes.
template <class Role>
auto kept(Role role) {
  return [=](Scene& s) {
    auto* memory = s.memory<int32_t>(1);
    *memory = role(s);
    return memory;
  };
}

tagRECT rectangle(Scene& s) {
  return {s.region.x1, s.region.y1, s.region.x2, s.region.y2};
}
// Rectangles with long rows start at the left and are turned so little that most of a row stays in the image.
bool has_long_rows(const Scene& s) {
  return s.is_special() && s.result_width >= 300;
}
int32_t corner_x(Scene& s) {
  const int32_t column = x(s);
  return has_long_rows(s) ? column / 8 : column;
}
auto turn(double most) {
  return [=](Scene& s) {
    const double angle = s.real(-most, most);
    return has_long_rows(s) ? angle / 64 : angle;
  };
}

// An angle of rows. Lines have no direction, so 180 degrees more is the same line.
double slant(Scene& s) {
  const double angle = turn(32)(s);
  return flag(s) ? angle + 180 : angle;
}

}  // namespace

Calls geometry_calls() {
  return {
      EXPORT(NuvFlipVertical, image, width, height, in_color, image_result),
      EXPORT(NuvFlipVertical, image, width, height, in_color),
      EXPORT(NuvFlipHorizontal, gray, width, height),
      EXPORT(NuvReverseImg, gray, width, height, gray_result),
      EXPORT(NuvRGB32Rotate90Degree, bytes(four_a_pixel), width, height, flag, bytes(four_a_pixel)),
      EXPORT(NuvImgRotate90DegreeCS, image, width, height, in_color, image_result),
      EXPORT(NuvImgRotate90DegreeCCS, image, width, height, in_color, image_result),
      EXPORT_BY(NuvRotateImgByCCS, uint8_t*, (uint8_t*, int32_t, int32_t, double, int32_t*, int32_t*),
                [](Scene& s, auto turned) {
                  uint8_t* const source = gray(s);
                  const double angle = turn(180)(s);
                  int32_t* const columns = integer_result(s);
                  int32_t* const rows = integer_result(s);
                  s.remember();
                  const std::unique_ptr<uint8_t[]> result(
                      turned(source, s.width, s.height, angle, columns, rows));
                  if (!result) return;
                  for (std::size_t i = 0; i < Scene::area(*columns, *rows); ++i) s.add_result(result[i]);
                }),
      EXPORT(NuvCopyRectFromRotateCCS, gray, width, height, corner_x, y, turn(90), bytes(result_pixels),
             result_width, result_height),
      EXPORT(NuvCopyRectFromRotateCCS, gray, width, height, corner_x, y, turn(90), color,
             bytes(result_pixels), result_width, result_height),
      EXPORT(NuvRgbCopyRectFromRotateCCS, rgb, width, height, corner_x, y, turn(90), bytes(result_rgb),
             result_width, result_height),
      EXPORT(NuvRgbCopyRectFromRotateCCS, rgb, width, height, corner_x, y, turn(90), color, bytes(result_rgb),
             result_width, result_height),
      // If the shift is 90 degrees more than the angle, nothing is sheared.
      EXPORT(NuvCopyRectFromRotateAndShiftFast, gray, width, height, corner_x, y, slant, real(58, 122),
             bytes(result_pixels), result_width, result_height),
      EXPORT(NuvShiftXPerRowFine, gray, width, height, real(-1, 1), gray_result),
      EXPORT(NuvShiftXPerRowFast, gray, width, height, real(-1, 1), gray_result),
      EXPORT(NuvImageShift, image, width, height, in_color, integer(-5, 5), integer(-5, 5), image_result),
      EXPORT(NuvShiftImg2BasedImg1, image, image, image_result, width, height, in_color, M, N, rectangle,
             integer_result, integer_result),

      EXPORT(NuvZoomGryImg2x2, gray, width, height, bytes(four_a_pixel)),
      EXPORT(NuvZoomRGBImg2x2, rgb, width, height, bytes(twelve_a_pixel)),
      EXPORT(NuvShrinkGryImgByExtract, gray, width, height, block_width, block_height, bytes(blocks)),
      EXPORT(NuvShrinkImgByAvr, image, in_color, width, height, block_width, block_height, block_means),
      EXPORT(NuvShrinkGryImgByMedian, gray, width, height, bytes(shrunk), shrunk_width, shrunk_height),
      EXPORT(NuvShrinkGryImg2x2ByExtract, gray, width, height, bytes(blocks_of_2), integer_result,
             integer_result),
      EXPORT(NuvShrinkGryImg2x2ByAvr, gray, width, height, bytes(blocks_of_2)),
      EXPORT(NuvShrinkGryImg4x4ByAvr, gray, width, height, bytes(blocks_of_4), integer_result,
             integer_result),
      EXPORT(NuvShrinkGryImg4x4ByExtract, gray, width, height, bytes(blocks_of_4), integer_result,
             integer_result),
      EXPORT(NuvGryImgBilinearInterpolattionFast, gray, width, height, bytes(result_pixels), result_width,
             result_height),
      EXPORT(NuvGryImgBilinearInterpolattionStd, gray, width, height, bytes(result_pixels), result_width,
             result_height),
      EXPORT(NuvRgbImgBilinearInterpolattionFast, rgb, width, height, bytes(result_rgb), result_width,
             result_height),
      EXPORT(NuvRectResizeX4, width, height, integer(2, 40), integer(2, 40), kept(any_x1), kept(any_x2),
             kept(any_y1), kept(any_y2)),
  };
}

#include "boundary/calls.h"

namespace {

uint8_t* mask_or_null(Scene& s) {
  return s.between(0, 3) == 0 ? nullptr : s.binary_picture();
}

// The room of a list of points. One point is written even if the capacity is 0 or less.
std::size_t counted_and_at_least_one(const Scene& s) {
  return std::max<std::size_t>(calls::counted(s), 1);
}

// A rectangle whose samples lie in the image. Samples are taken beyond the rectangle's inner pixels.
// Typically the rectangle is larger than the inner region, so that it has inner pixels.
int32_t sampled_x1(Scene& s) {
  return s.hostile ? s.inner.x1 : s.inner.x1 / 2;
}
int32_t sampled_x2(Scene& s) {
  return s.inner.x2 - 1;
}
int32_t sampled_y1(Scene& s) {
  return (s.hostile ? s.inner.y1 : s.inner.y1 / 2) + 2;
}

// Dashes in every fourth row; in a hostile scene, any binary picture.
uint8_t* broken_edges(Scene& s) {
  uint8_t* data = s.binary_picture();
  if (s.hostile) return data;
  const int32_t dash = s.between(2, 5);
  const int32_t gap = s.between(1, 3);
  for (int32_t y = 0; y < s.height; ++y) {
    for (int32_t x = 0; x < s.width; ++x)
      data[y * s.width + x] = y % 4 == 1 && x % (dash + gap) < dash ? 255 : 0;
  }
  return data;
}

// ---- Points in a rectangle ----
//
// Lists by row have entries up to y2, and lists by column up to x2. The list of the bottom points is read by
// both.

std::size_t entries_to_y2(const Scene& s) {
  return Scene::length(s.inner.y2 + 1);
}
std::size_t entries_to_x2(const Scene& s) {
  return Scene::length(s.inner.x2 + 1);
}
std::size_t entries_to_both(const Scene& s) {
  return std::max(entries_to_y2(s), entries_to_x2(s));
}

// ---- Points in an ellipse that lies in the inner region, or has a negative half axis ----

int32_t center_x(Scene& s) {
  return (s.inner.x1 + s.inner.x2) / 2;
}
int32_t center_y(Scene& s) {
  return (s.inner.y1 + s.inner.y2) / 2;
}
int32_t half_axis_x(Scene& s) {
  return (s.inner.x2 - s.inner.x1) / (s.M < 0 ? -2 : 2);
}
int32_t half_axis_y(Scene& s) {
  return (s.inner.y2 - s.inner.y1) / (s.N < 0 ? -2 : 2);
}
std::size_t ellipse_rows(Scene& s) {
  return Scene::length(center_y(s) + half_axis_y(s) + 1);
}
std::size_t ellipse_columns(Scene& s) {
  return Scene::length(center_x(s) + half_axis_x(s) + 1);
}
std::size_t ellipse_rows_and_columns(Scene& s) {
  return std::max(ellipse_rows(s), ellipse_columns(s));
}

}  // namespace

Calls edge_calls() {
  using namespace calls;
  const auto list = [](auto size) { return integers(size, -9, 9); };
  const auto step = integer(0, 60);
  return {
      EXPORT(NuvRobert, gray, width, height, gray_result),
      EXPORT(NuvRobertByMask, gray, mask_or_null, width, height, gray_result),
      EXPORT(NuvRobertRGBImage2GryRobert, rgb, width, height, gray_result),
      EXPORT(NuvRobertRGBImage2RGBRobert, rgb, width, height, rgb_result),
      EXPORT(NuvGryImgSobel, gray, width, height, gray_result),
      EXPORT(NuvGryImgSobel90Just, gray, width, height, gray_result),
      EXPORT(NuvGryImgSobel0Just, gray, width, height, gray_result),
      EXPORT(NuvGryImgSobel0, gray, width, height, gray_result),
      EXPORT(NuvGryImgSobel90, gray, width, height, gray_result),
      EXPORT(NuvGradientByPrewitt0, gray, width, height, M, N, gray_result),
      EXPORT(NuvGradientByPrewitt90, gray, width, height, M, N, gray_result),
      EXPORT(NuvGradient5x5ByPrewitt0_90, gray, width, height, gray_result),
      EXPORT(NuvPrewitt90, gray, width, height, gray_result),
      EXPORT(NuvPrewitt90, gray, width, height, any_x1, any_x2, any_y1, any_y2, gray_result),
      EXPORT(NuvGradient0ByPrewitt5x5, gray, width, height, gray_result),
      EXPORT(NuvGradientByPrewitt, gray, width, height, M, N, gray_result),

      EXPORT(NuvShenJunEdgeStd, gray, gray_result, width, height, real(0.25, 0.75), step, gray_result),
      EXPORT(NuvShenJunEdgeFast, gray, gray_result, width, height, integer(1, 3), step, gray_result),
      EXPORT(NuvShenJunEdgeFast, gray, gray_result, width, height, integer(1, 3), step,
             list(counted_and_at_least_one), list(counted_and_at_least_one), count),
      EXPORT(NuvShenJunEdgeFast, gray, gray_result, width, height, integer(1, 3), step, list(counted),
             list(counted), count, gray_result),
      EXPORT(NuvShenJunEdgeFine, gray, reals(pixels, -9, 9), width, height, real(0.25, 0.75), step,
             gray_result),

      EXPORT(NuvEdgeDeleteNoiseAndCrossPoints, binary, width, height, integer(1, 6)),
      EXPORT(NuvEdgeDeleteNoiseByLength, binary, width, height, integer(0, 20), gray_result),
      EXPORT(NuvRemoveEdgePointsByGrd, binary, gray, width, height, integer(0, 120)),
      EXPORT(NuvConnectEdge, broken_edges, binary, width, height, integer(1, 8)),

      EXPORT(NuvExtractTwoEdgePointPerCol, gray, width, integer(0, 8), inner_x1, inner_x2, inner_y1, inner_y2,
             list(columns), list(columns)),
      EXPORT(NuvExtractEdgePointInRect, gray, width, inner_x1, inner_y1, inner_x2, inner_y2,
             list(entries_to_y2), list(entries_to_y2), list(entries_to_x2), list(entries_to_both)),
      // An ellipse must lie in the image, so there must be pixels.
      EXPORT(NuvExtractEdgePointInCircle, gray, width, center_x, center_y, half_axis_x, half_axis_y,
             list(ellipse_rows), list(ellipse_rows), list(ellipse_columns), list(ellipse_rows_and_columns))
          .where(has_pixels),
      EXPORT(NuvGetThresholdByEdge, gray, binary, width, sampled_x1, sampled_x2, sampled_y1, inner_y2,
             integer(1, 3)),
      EXPORT(NuvEdgeTripeDetection, gray, width, height, M, N, gray_result, histogram_result),
      EXPORT(NuvEdgeModelHistogram, gray, width, height, M, integer(10, 60), histogram_result, gray_result),
  };
}

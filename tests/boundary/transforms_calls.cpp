#include <cstdlib>

#include "boundary/calls.h"

namespace {

using namespace calls;

// What bRGB tells, so that the images before it in a row know their pixels.
bool in_color(Scene& s) {
  return s.count % 2 != 0;
}
uint8_t* image(Scene& s) {
  return s.picture(in_color(s) ? 3 : 1);
}
uint8_t* image_result(Scene& s) {
  return s.noise(s.pixels() * (in_color(s) ? 3 : 1));
}

std::size_t four_a_pixel(const Scene& s) {
  return s.pixels() * 4;
}
std::size_t twelve_a_pixel(const Scene& s) {
  return s.pixels() * 12;
}
std::size_t result_rgb(const Scene& s) {
  return s.result_pixels() * 3;
}

// Blocks and windows that typically have pixels.
int32_t block_width(const Scene& s) {
  return s.hostile ? s.M : s.M + 1;
}
int32_t block_height(const Scene& s) {
  return s.hostile ? s.N : s.N + 1;
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

// A result that is typically not larger than its source.
int32_t shrunk_width(const Scene& s) {
  return s.hostile ? s.result_width : 1 + s.result_width % s.width;
}
int32_t shrunk_height(const Scene& s) {
  return s.hostile ? s.result_height : 1 + s.result_height % s.height;
}
std::size_t shrunk(const Scene& s) {
  return Scene::area(shrunk_width(s), shrunk_height(s));
}

// A number that the export changes.
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
tagRECT inner_rectangle(Scene& s) {
  return {s.inner.x1, s.inner.y1, s.inner.x2, s.inner.y2};
}
// Another one inside, of the size of the first or of its own.
tagRECT other_inner_rectangle(Scene& s) {
  const bool alike = s.between(0, 1) == 0;
  const int32_t least = s.hostile ? 0 : 1;
  const int32_t most_columns = std::max(s.width, 0);
  const int32_t most_rows = std::max(s.height, 0);
  const int32_t columns = alike ? s.inner.columns() : s.between(least, most_columns);
  const int32_t rows = alike ? s.inner.rows() : s.between(least, most_rows);
  const int32_t left = s.between(0, most_columns - columns);
  const int32_t top = s.between(0, most_rows - rows);
  return {left, top, left + columns - 1, top + rows - 1};
}

// Rectangles of long rows start at the left and are turned so little that most of a row stays in the image.
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

// Lines have no direction: above 90 degrees they are taken from their other end.
double slant(Scene& s) {
  const double angle = turn(32)(s);
  return flag(s) ? angle + 180 : angle;
}

uint8_t level_of_binary(Scene& s) {
  return s.one_of<uint8_t>({0, 255, 128});
}

// ---- Regions ----

// Squares in squares: regions with islands in their holes, which split and shrink.
uint8_t* squares(Scene& s) {
  constexpr int32_t kSide = 17;
  uint8_t* const data = s.memory<uint8_t>(s.pixels());
  uint8_t levels[kSide / 2 + 1];
  for (uint8_t& level : levels) level = byte(s);
  for (int32_t i = 0; i < static_cast<int32_t>(s.pixels()); ++i) {
    const int32_t across = std::abs(i % s.width % kSide - kSide / 2);
    const int32_t down = std::abs(i / s.width % kSide - kSide / 2);
    data[i] = levels[std::max(across, down)];
  }
  return data;
}

RegionStruct* regions(Scene& s) {
  const bool has_squares = !flag(s) && !s.is_special();
  uint8_t* const picture = has_squares ? squares(s) : gray(s);
  uint8_t* const work = s.noise(s.pixels() * 2);
  const int32_t min_area = s.integer(1, 30);
  const int32_t min_gray = s.integer(0, 150);
  const double ratio = s.real(0, 1.25);
  s.remember();
  return NuvMergeSplit(picture, work, s.width, s.height, min_area, min_gray, ratio);
}

void add_and_release(Scene& s, RegionStruct* list) {
  for (const RegionStruct* r = list; r != nullptr; r = r->next) {
    for (int32_t field : {r->x0, r->y0, r->N, r->area, r->perimeter, r->gry, r->ID, r->parentID, r->curArea})
      s.add_result(field);
    for (int32_t i = 0; i < r->N; ++i) s.add_result(r->pChainCode[i]);
  }
  NuvFreeRegionStruct(list);
}

void release_an_end(Scene& s, void (*release)(RegionStruct*)) {
  RegionStruct* const list = regions(s);
  RegionStruct* last = list;
  for (int32_t more = s.between(0, 2); more > 0 && last != nullptr && last->next != nullptr; --more)
    last = last->next;
  release(last == nullptr ? nullptr : last->next);
  if (last != nullptr) last->next = nullptr;
  add_and_release(s, list);
}

// ---- Noise ----

// Platforms draw different numbers and round logarithms differently, so what the bytes become is not kept,
// but whether they stay between the least and the greatest of them where the model says so.
void add_noise(Scene& s, void (*add)(uint8_t*, int32_t, double, uint32_t)) {
  const std::size_t size = counted(s);
  uint8_t* const data = s.noise(size);
  const double noise = s.real(-40, 60);
  const auto type = s.hostile ? s.one_of<uint32_t>({0, 1, 2, 3, 4, 5, 0x80000000, 0xFFFFFFFF})
                              : static_cast<uint32_t>(s.between(0, 4));
  const std::vector<uint8_t> before(data, data + size);
  run(s, add, data, s.count, noise, type);
  if (size > 0) {
    const auto ends = std::minmax_element(before.begin(), before.end());
    const bool stay =
        std::all_of(data, data + size, [=](uint8_t v) { return *ends.first <= v && v <= *ends.second; });
    s.add_result(stay || type == 3 || *ends.first == *ends.second);
  }
  std::copy(before.begin(), before.end(), data);
}

}  // namespace

Calls transform_calls() {
  return {
      // Segmentation
      EXPORT_BY(NuvMergeSplit, RegionStruct*,
                (uint8_t*, uint8_t*, int32_t, int32_t, int32_t, int32_t, double),
                [](Scene& s, auto) { add_and_release(s, regions(s)); }),
      EXPORT_BY(NuvFreeRegionStruct, void, (RegionStruct*), release_an_end),

      // Flips, turns, shifts
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
      // A shift of 90 degrees more than the angle does not shear.
      EXPORT(NuvCopyRectFromRotateAndShiftFast, gray, width, height, corner_x, y, slant, real(58, 122),
             bytes(result_pixels), result_width, result_height),
      EXPORT(NuvShiftXPerRowFine, gray, width, height, real(-1, 1), gray_result),
      EXPORT(NuvShiftXPerRowFast, gray, width, height, real(-1, 1), gray_result),
      EXPORT(NuvImageShift, image, width, height, in_color, integer(-5, 5), integer(-5, 5), image_result),
      EXPORT(NuvShiftImg2BasedImg1, image, image, image_result, width, height, in_color, M, N, rectangle,
             integer_result, integer_result),

      // Sizes
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

      // Images combined byte by byte
      EXPORT(NuvImg1Substract2To1, gray, gray, width, height),
      EXPORT(NuvImg1Substract2To2, gray, gray, width, height),
      EXPORT(NuvImg1SubstractImg2, image, image, width, height, in_color, image_result),
      EXPORT(NuvImg1Difference2To1, gray, gray, width, height),
      EXPORT(NuvDifferenceImg12, image, image, width, height, in_color, gray_result),
      EXPORT(NuvDifferenceImg12, image, image, width, height, in_color, gray_result, histogram_result),
      EXPORT(NuvImg1AndImg2To1, bytes(counted), bytes(counted), count),
      EXPORT(NuvImg1AndImg2ToRes, bytes(counted), bytes(counted), count, bytes(counted)),
      EXPORT(NuvImg1XorImg2To1, bytes(counted), bytes(counted), count),
      EXPORT(NuvImg1XorImg2ToRes, bytes(counted), bytes(counted), count, bytes(counted)),
      EXPORT(NuvImg1OrImg2To1, bytes(counted), bytes(counted), count),
      EXPORT(NuvImg1OrImg2ToRes, bytes(counted), bytes(counted), count, bytes(counted)),
      EXPORT(NuvRemainMaxGry, image, width, height, in_color, image),
      EXPORT(NuvRemainMinGry, image, width, height, in_color, image),
      EXPORT(NuvRemainMaxMinGry, image, width, height, in_color, image, image),

      // Sums and differences
      EXPORT(NuvDoSumGryImg, gray, width, height, integers(pixels, -9, 9)),
      EXPORT(NuvImgDifferenceInRect, image, image, in_color, width, inner_rectangle, other_inner_rectangle),
      EXPORT(NuvCenterBlockMeanDif, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2, M),
      EXPORT(NuvGryRectAvr, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2),
      EXPORT(NuvGryMinMaxInRect, gray, width, inner_x1, inner_x2, inner_y1, inner_y2, real(0, 0.5),
             integer_result, integer_result),
      EXPORT(NuvPointsRect, integers(counted_or_one, -99, 99), integers(counted_or_one, -99, 99), count,
             integer_result, integer_result, integer_result, integer_result),
      EXPORT(NuvMaxBrightRect, gray, width, height, block_width, block_height, integer_result,
             integer_result),
      EXPORT(NuvEstimateImgStdev, gray, binary, width, height, block_width, block_height),

      // Pixel values
      EXPORT(NuvInvertGryValue, gray, width, height),
      EXPORT(NuvInvertGryValue, gray, width, height, gray_result),
      EXPORT(NuvGryImgNormalize, gray, width, height, integer(0, 255), integer(0, 99)),
      EXPORT(NuvGryImg4Bit, gray, width, height),
      EXPORT(NuvSetPixelsTo255, binary, width, inner_x1, inner_x2, inner_y1, inner_y2, level_of_binary),
      EXPORT(NuvSetOddPixelsTo255, gray, width, height),
      EXPORT(NuvChange0and250PlusPixels, bytes(pixels), width, height),
      EXPORT(NuvCorrectPixelsGryValueByRow, gray, width, height, real(0.5, 2.5)),
      EXPORT(NuvCorrectPixelsGryValueByCol, gray, width, height, real(0.5, 2.5)),
      EXPORT(NuvLightCorretPerRow, gray, width, height),
      EXPORT(NuvLightCorretPerCol, gray, width, height),
      EXPORT(NuvSetImageBoundary, gray, width, height, color),
      EXPORT(NuvSetRGBImageBoundary, rgb, width, height, color),

      // Pasting
      EXPORT(NuvPasteGryImg2ResImg, gray, width, height, bytes(result_pixels), result_width, result_height,
             integer(-9, 18), integer(-9, 18)),
      EXPORT(NuvPasteGryImg2RGBImg, gray, width, height, bytes(result_rgb), result_width, result_height,
             integer(-9, 18), integer(-9, 18)),
      EXPORT(NuvPasteRGBImg2ResImg, rgb, width, height, bytes(result_rgb), result_width, result_height,
             integer(-9, 18), integer(-9, 18)),

      // Noise
      EXPORT_BY(Brindlemar2008AddNoise, void, (uint8_t*, int32_t, double, uint32_t), add_noise),
  };
}

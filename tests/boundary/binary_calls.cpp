#include "boundary/calls.h"

namespace {

using namespace calls;

using calls::x;
using calls::y;

// ---- Pictures ----

// Objects, and one that fills the region and touches no other, so that the places of its runs are known.
uint8_t* object_in_region(Scene& s) {
  uint8_t* image = s.binary_picture();
  const Box& object = s.inner;
  if (object.columns() == 0 || object.rows() == 0) return image;
  for (int32_t y = std::max(object.y1 - 1, 0); y <= std::min(object.y2 + 1, s.height - 1); ++y) {
    for (int32_t x = std::max(object.x1 - 1, 0); x <= std::min(object.x2 + 1, s.width - 1); ++x) {
      const bool inside = x >= object.x1 && x <= object.x2 && y >= object.y1 && y <= object.y2;
      image[y * s.width + x] = inside ? 255 : 0;
    }
  }
  return image;
}

// Rectangles side by side, some with holes. Each line crosses several runs, most of them of equal length.
uint8_t* rectangles(Scene& s) {
  if (s.hostile) return s.binary_picture();
  const int32_t columns = s.between(4, 14);
  const int32_t rows = s.between(4, 14);
  uint8_t* image = s.memory<uint8_t>(s.pixels());
  for (int32_t i = 0; i < s.width * s.height; ++i) {
    const bool between_them = i % s.width % columns == 0 || i / s.width % rows == 0;
    image[i] = between_them || s.between(0, 60) == 0 ? 0 : 255;
  }
  return image;
}

// White pixels, so few that many have no white neighbour.
uint8_t* sparse_binary(Scene& s) {
  if (s.hostile) return s.binary_picture();
  uint8_t* image = s.noise(s.pixels());
  std::transform(image, image + s.pixels(), image, [](uint8_t p) { return p < 25 ? 255 : 0; });
  return image;
}

uint8_t* gray_with_holes(Scene& s) {
  uint8_t* image = s.picture(1);
  const uint8_t* objects = s.binary_picture();
  std::transform(image, image + s.pixels(), objects, image, [](uint8_t p, uint8_t o) { return p & o; });
  return image;
}

// ---- Numbers ----

// A threshold for the sum of a whole window. It wraps for hostile numbers.
uint32_t sum_threshold(Scene& s) {
  const auto span = [](int32_t half) { return 2 * static_cast<uint32_t>(half) + 1; };
  return span(s.M) * span(s.N) * static_cast<uint32_t>(s.integer(0, 254));
}

uint32_t* column_sums(Scene& s) {
  return reinterpret_cast<uint32_t*>(s.integers(calls::columns(s), -9, 9));
}

int32_t object_or_ground(Scene& s) {
  return s.hostile ? s.integer(0, 255) : s.one_of({0, 255});
}

// The greatest length that has a count of its own, and the counts for lengths from 0 to it.
constexpr auto max_length = calls::count;
int32_t* length_counts(Scene& s) {
  return s.integers(s.count < 0 ? 0 : calls::counted(s) + 1, -9, 9);
}

// ---- Records ----

// In half of the typical scenes the capacity suffices for every run that the image can have.
int32_t room(Scene& s) {
  return s.hostile || s.count % 2 == 0 ? s.count : s.width * s.height;
}
// The last place of a run. Runs of pictures that are shown in several sizes have lengths that do not depend on
// the size, so that their pixels are a share of the picture's.
int32_t end_of_run(const Scene& s, int32_t first, int32_t last) {
  constexpr int32_t kGreatestLength = 64;
  return s.exhibit == nullptr ? last : first + last % kGreatestLength;
}
RLX* row_runs(Scene& s) {
  RLX* runs = s.memory<RLX>(Scene::length(room(s)));
  std::generate_n(runs, Scene::length(room(s)), [&s] {
    RLX run{y(s), x(s), x(s), s.integer(-9, 9)};
    run.x2 = end_of_run(s, run.x1, run.x2);
    return run;
  });
  return runs;
}
RLY* column_runs(Scene& s) {
  RLY* runs = s.memory<RLY>(Scene::length(room(s)));
  std::generate_n(runs, Scene::length(room(s)), [&s] {
    RLY run{x(s), y(s), y(s)};
    run.y2 = end_of_run(s, run.y1, run.y2);
    return run;
  });
  return runs;
}

// Blocks of at least eight columns, so that runs are long enough to be counted.
uint8_t* wide_blocks(Scene& s) {
  uint8_t* pixels = binary(s);
  for (std::size_t i = 0; i < s.pixels(); ++i) pixels[i] = pixels[i - i % columns(s) % 8];
  return pixels;
}

}  // namespace

Calls binary_calls() {
  return {
      EXPORT(NuvBinImgSearchCenterX, wide_blocks, width, height, any_x1, any_x2),
      EXPORT(NuvBinImgCentroid, binary, width, height, integer_result, integer_result),
      EXPORT(NuvPixelsInGryImg, gray, width, height, color),
      EXPORT(NuvGetBlackRatioInBinaryImg, binary, width, inner_x1, inner_x2, inner_y1, inner_y2),
      EXPORT(NuvGetWhitePixelsNum, binary, width, height, any_x1, any_x2, any_y1, any_y2),
      EXPORT(NuvBinImgFilter, binary, width, height, M, N, column_sums, sum_threshold, gray_result),
      EXPORT(NuvBinImgFilter, binary, width, height, M, N, sum_threshold, gray_result),
      EXPORT(NuvBinImgRemoveMskAndFilter, binary, binary, width, height, M, N, integer(0, 255), gray_result),
      EXPORT(NuvBinImgRemoveMskAndFilterUseLUT, binary, gray, width, height, M, N, integer(0, 255),
             gray_result),
      EXPORT(NuvBinImgMinFilter3x3, binary, width, height, gray_result),
      EXPORT(NuvBinImgMinFilter3x3, binary, width, height, any_x1, any_x2, any_y1, any_y2, gray_result),
      EXPORT(NuvBinImgMinFilter3x3ToColor, binary, width, height, byte),
      EXPORT(NuvBinImgMaxFilter3x3, binary, width, height, gray_result),
      EXPORT(NuvBinImgMaxFilter3x3, binary, width, height, any_x1, any_x2, any_y1, any_y2, gray_result),
      EXPORT(NuvBinImgMaxFilter3x3ToColor, binary, width, height, byte),
      EXPORT(NuvBinImgMedFilter3x3, binary, width, height, gray_result),
      EXPORT(NuvBinImgMedFilter3x3, binary, width, height, any_x1, any_x2, any_y1, any_y2, gray_result),
      EXPORT(NuvBinImgMedFilter, binary, width, height, M, N, real(0.5, 2.5), real(0.5, 2.5), gray_result),
      EXPORT(NuvBinImgLittleWhitePixelsMed3x3Filter, binary, width, height, gray_result),
      EXPORT(NuvThresholdAndMedFilter3x3, gray, width, height, integer(60, 200), gray_result),
      EXPORT(NuvBinImgDeleteIsolatedPoints, sparse_binary, width, height),
      EXPORT(NuvBinImgDeletePointsMoreThanN, binary, width, height, object_or_ground, integer(0, 5)),
      EXPORT(NuvBinImgDeletePointsLessThanN, binary, width, height, object_or_ground, integer(3, 8)),
      EXPORT(NuvGetMaxSizeofMinFilter, object_in_region, gray_result, gray_result, width, height,
             integer_result),
      EXPORT(NuvFillHolesByNearNeighbor, gray_with_holes, binary, width, height, integer(0, 9), gray_result),
      EXPORT(NuvBinImgThin, binary, gray_result, width, height, gray_result),
      EXPORT(NuvRLXBlackCount, binary, width, height, length_counts, max_length),
      EXPORT(NuvRLXWhiteCount, binary, width, height, length_counts, max_length),
      EXPORT(NuvRLXWhiteCount, gray, width, height, any_x1, any_x2, any_y1, any_y2, integer_result,
             integer_result, integer_result, integer_result),
      EXPORT(NuvRLXWhiteDeleteLong, rectangles, width, height, integer(0, 8), byte),
      EXPORT(NuvRLXWhiteDeleteShort, binary, width, height, integer(1, 14), color),
      EXPORT(NuvRLXBlackDeleteShort, binary, width, height, integer(1, 14), color),
      EXPORT(NuvRLYBlackCount, binary, width, height, length_counts, max_length),
      EXPORT(NuvRLYWhiteCount, binary, width, height, length_counts, max_length),
      EXPORT(NuvRLYWhiteCount, gray, width, height, any_x1, any_x2, any_y1, any_y2, integer_result,
             integer_result, integer_result, integer_result),
      EXPORT(NuvRLYWhiteDeleteLong, rectangles, width, height, integer(0, 8), color),
      EXPORT(NuvRLYWhiteDeleteIsolated, sparse_binary, width, height, color),
      EXPORT(NuvRLYWhiteDeleteShort, binary, width, height, integer(1, 14), color),
      EXPORT(NuvBinImgMarkMinOfRLXandRLY, binary, width, height),
      EXPORT(NuvBinImg01TimesByX, binary, integers(columns, -9, 9), width, height, integer(0, 12),
             gray_result),
      EXPORT(NuvRLXWhiteLong, rectangles, width, height, integer(1, 5), integer(1, 9), gray_result),
      EXPORT(NuvRLYWhiteShort, gray, width, height, integer(100, 200), integer(2, 12), gray_result),
      EXPORT(NuvRLYWhiteShortAndRLXWhiteLong, gray, gray_result, width, height, integer(100, 200),
             integer(2, 9), integer(1, 3), integer(1, 5), gray_result),
      EXPORT(NuvRLXDeleteWhiteShort, binary, width, height, integer(2, 9), integer(1, 5), gray_result),
      EXPORT(NuvRLYDeleteWhiteShort, binary, width, height, integer(2, 9), integer(1, 5), gray_result),
      EXPORT(NuvRLXRegionsGet, binary, width, height, any_x1, any_x2, any_y1, any_y2, row_runs, room),
      EXPORT(NuvRLXRegionsGrowByYInc, object_in_region, width, height, any_y1, any_x1, any_x2, row_runs,
             room),
      EXPORT(NuvRLXRegionsGrowByYDec, object_in_region, width, height, any_y2, any_x1, any_x2, row_runs,
             room),
      EXPORT(NuvRLXReginsGetAndGrow, rectangles, width, height, any_x1, any_x2, any_y1, any_y2, row_runs,
             room),
      EXPORT(NuvDrawRLXRegions, binary, width, height, row_runs, room, color),
      EXPORT(NuvRLYRegionsGet, binary, width, height, any_x1, any_x2, any_y1, any_y2, column_runs, room),
      EXPORT(NuvRLYRegionsGrowByXInc, object_in_region, width, height, any_x1, any_y1, any_y2, column_runs,
             room),
      EXPORT(NuvRLYRegionsGrowByXDec, object_in_region, width, height, any_x2, any_y1, any_y2, column_runs,
             room),
      EXPORT(NuvRLYReginsGetAndGrow, rectangles, width, height, any_x1, any_x2, any_y1, any_y2, column_runs,
             room),
      EXPORT(NuvDrawRLYRegions, binary, width, height, column_runs, room, color),
      EXPORT(NuvRLXRegionsWithID, binary, width, height, integer(1, 3), integer(1, 5), row_runs, room),
  };
}

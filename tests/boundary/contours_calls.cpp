#include "boundary/calls.h"

namespace {

using namespace calls;

// ---- Chains ----

// The number of codes of the scene's chain. For an empty chain it is 0 or less.
int32_t codes(Scene& s) {
  const int32_t length = chain_length(s);
  return length > 0 ? length : std::min(s.count, 0);
}
std::size_t positions(Scene& s) {
  return Scene::length(codes(s));
}
const uint8_t* const_chain(Scene& s) {
  return chain(s);
}

// Functions without an image accept any start of a chain.
int32_t any_x(Scene& s) {
  return s.hostile ? s.integer(0, 40) : chain_x(s);
}
int32_t any_y(Scene& s) {
  return s.hostile ? s.integer(0, 40) : chain_y(s);
}

struct Point {
  int32_t x;
  int32_t y;
};
// A point on the chain; a scene always gives the same one.
Point point_of_chain(Scene& s) {
  Point p{chain_x(s), chain_y(s)};
  const std::vector<uint8_t>& codes = s.chain().codes;
  for (std::size_t i = 0; i < codes.size() && i < Scene::length(s.count); ++i) {
    p.x += codes[i] % 4 == 2 ? 0 : codes[i] % 7 < 2 ? 1 : -1;
    p.y += codes[i] % 4 == 0 ? 0 : codes[i] < 4 ? -1 : 1;
  }
  return p;
}
// A point on the chain or one row below, so that both answers occur.
int32_t near_chain_x(Scene& s) {
  return s.hostile ? s.integer(0, 40) : point_of_chain(s).x;
}
int32_t near_chain_y(Scene& s) {
  return s.hostile ? s.integer(0, 40) : point_of_chain(s).y + s.between(0, 1);
}

// ---- Bars ----
//
// The functions try every width up to half the perimeter, so perimeters at the ends of the type would take
// seconds.

int32_t perimeter(Scene& s) {
  return s.hostile ? s.between(-65536, 65536) : s.between(20, 120);
}
int32_t least_width(Scene& s) {
  return s.hostile ? s.between(-65536, 65536) : s.between(1, 5);
}

// ---- Pictures of few levels, so that searches find something ----

int32_t level(Scene& s) {
  return s.hostile ? color(s) : 40 * s.between(1, 4);
}
uint8_t byte_level(Scene& s) {
  return static_cast<uint8_t>(level(s));
}
// A picture that typically lacks the values that filling functions use as marks.
uint8_t* levels_picture(Scene& s) {
  uint8_t* pixels = gray(s);
  if (s.hostile) return pixels;
  for (std::size_t i = 0; i < s.pixels(); ++i) pixels[i] = static_cast<uint8_t>(40 + pixels[i] / 8 % 4 * 40);
  return pixels;
}
uint8_t mark(Scene& s) {
  return static_cast<uint8_t>(s.integer(201, 255));
}

// With an empty chain, a value is written after the bins.
int32_t* region_histogram_result(Scene& s) {
  return s.integers(codes(s) < 1 ? 257 : 256, -9, 9);
}

// ---- Results ----

tagRECT* rectangle_result(Scene& s) {
  return s.memory<tagRECT>(1);
}

// ---- Tracing ----

// The border is clear, so a start needs an inner pixel.
bool has_inner_pixels(const Scene& s) {
  return s.width > 2 && s.height > 2;
}

struct Start {
  uint8_t* image;
  int32_t x;
  int32_t y;
  bool is_outer;
};

// The first pixel from some place on that starts a contour; in a hostile scene, any pixel off the border.
Start contour_start(Scene& s) {
  Start start{framed_binary(s), s.between(1, s.width - 2), s.between(1, s.height - 2), flag(s)};
  const auto starts = [&] {
    const uint8_t* pixel = start.image + start.y * s.width + start.x;
    return pixel[0] != 0 && pixel[start.is_outer ? -1 : 1] == 0;
  };
  for (std::size_t tries = s.hostile ? 0 : s.pixels(); tries > 0 && !starts(); --tries) {
    if (++start.x < s.width - 1) continue;
    start.x = 1;
    start.y = start.y % (s.height - 2) + 1;
  }
  return start;
}

template <class Get, class Free>
void play_contour_list(Scene& s, Get get, Free free) {
  uint8_t* image = binary(s);
  uint8_t* work = gray_result(s);
  const int32_t min_perimeter = s.integer(0, 12);
  const int32_t min_area = s.integer(0, 12);
  const int32_t mode = s.integer(0, 3);
  s.remember();
  NUV_CONTOUR_STRUCT* list = get(image, work, s.width, s.height, min_perimeter, min_area, mode);
  for (const NUV_CONTOUR_STRUCT* c = list; c != nullptr; c = c->pNext) {
    for (int32_t value : {c->isOuter ? 1 : 0, c->area, c->perimeter, c->x, c->y, c->N, c->reserved1,
                          c->reserved2, c->reserved3, c->reserved4, c->reserved5}) {
      s.add_result(value);
    }
    for (int32_t i = 0; i < c->N; ++i) s.add_result(c->pChainCode[i]);
  }
  free(list);
}

}  // namespace

Calls contour_calls() {
  return {
      EXPORT_BY(NuvTraceContour, int32_t, (uint8_t*, int32_t, int32_t, int32_t, uint8_t*, int32_t, bool),
                [](Scene& s, auto trace) {
                  const Start start = contour_start(s);
                  const int32_t N = s.hostile ? s.count : s.count * 8;
                  uint8_t* chain = s.noise(Scene::length(std::max(N, 1) - 1));
                  run(s, trace, start.image, s.width, start.x, start.y, chain, N, start.is_outer);
                })
          .where(has_inner_pixels),
      EXPORT_BY(NuvMarkContour, void, (uint8_t*, int32_t, int32_t, int32_t, bool),
                [](Scene& s, auto mark) {
                  const Start start = contour_start(s);
                  run(s, mark, start.image, s.width, start.x, start.y, start.is_outer);
                })
          .where(has_inner_pixels),
      EXPORT_BY(NuvGetContours, NUV_CONTOUR_STRUCT*,
                (uint8_t*, uint8_t*, int32_t, int32_t, int32_t, int32_t, int32_t),
                [](Scene& s, auto get) { play_contour_list(s, get, NuvFreeContours); }),
      EXPORT_BY(NuvFreeContours, void, (NUV_CONTOUR_STRUCT*),
                [](Scene& s, auto free) { play_contour_list(s, NuvGetContours, free); }),
      EXPORT(Nuv255RectWithMaxArea, binary, gray_result, width, height, any_x1, any_x2, any_y1, any_y2,
             integer(0, 3), rectangle_result, integer_result, integer_result),
      EXPORT(Nuv255RectWithMaxPerimeter, binary, gray_result, width, height, any_x1, any_x2, any_y1, any_y2,
             integer(0, 3), rectangle_result, integer_result, integer_result),

      EXPORT(NuvRealAreaAndPerimeter, chain, codes, integer_result, integer_result),
      EXPORT(NuvAreaAndPerimeter, chain, codes, integer_result, integer_result),
      EXPORT(NuvContourCenter, any_x, any_y, chain, codes, integer_result, integer_result),
      EXPORT(NuvContourRect, any_x, any_y, chain, codes, integer_result, integer_result, integer_result,
             integer_result),
      EXPORT(NuvContourRotatedRect, any_x, any_y, chain, codes, real(-180, 180), integer_result,
             integer_result, integer_result, integer_result),
      EXPORT(NuvLineSimilarity, integer(20, 400), perimeter, least_width, integer(5, 30), integer_result,
             integer_result),
      EXPORT(NuvLineSimilarity, any_x, any_y, chain, codes, least_width, integer(5, 30), integer_result,
             integer_result),

      EXPORT(NuvChain2Points, any_x, any_y, chain, codes, integers(positions, -9, 9),
             integers(positions, -9, 9)),
      EXPORT(NuvChain2Points, any_x, any_y, chain, codes, integers(positions, -9, 9),
             integers(positions, -9, 9), integer_result, integer_result),

      // Chains must lie in their image, so the image has at least the pixel of the start.
      EXPORT(NuvPixelsPassedByChain, levels_picture, width, chain_x, chain_y, chain, codes, level)
          .where(has_pixels),
      EXPORT(NuvWhitePixlePassedByChain, binary, width, chain_x, chain_y, chain, codes).where(has_pixels),
      EXPORT(NuvHasPixelsOnChain, levels_picture, width, chain_x, chain_y, chain, codes, level)
          .where(has_pixels),
      EXPORT(NuvContourPosPoints, any_x, any_y, chain, codes, y),
      EXPORT(NuvIsPointOnContour, any_x, any_y, chain, codes, near_chain_x, near_chain_y),
      EXPORT(NuvIsPointIncludedByChain, near_chain_x, near_chain_y, any_x, any_y, chain, codes),
      EXPORT(NuvIsHorizontalLineIntersectContour, any_y, chain, codes, y),
      EXPORT(NuvIsVerticalLineIntersectContour, any_x, chain, codes, x),
      EXPORT(NuvIsVerticalLineIntersectContour, any_x, chain_y, chain, codes, integers(rows, 0, 20))
          .where(has_pixels),

      EXPORT(NuvMarkChainByColor, gray, width, chain_x, chain_y, chain, codes, color).where(has_pixels),
      EXPORT(NuvMarkChainByColor, gray, width, chain_x, chain_y, chain, codes, color, integer(0, 9))
          .where(has_pixels),
      EXPORT(NuvMarkChainByInc, gray, width, chain_x, chain_y, chain, codes).where(has_pixels),

      EXPORT(NuvFillingContour, levels_picture, width, chain_x, chain_y, chain, codes, flag,
             integer(201, 255), color)
          .where(has_pixels),
      EXPORT(NuvReplacePixelsColor, levels_picture, width, chain_x, chain_y, chain, codes, integer(201, 255),
             level, color)
          .where(has_pixels),
      EXPORT(NuvPastePixels2ResImg, levels_picture, width, chain_x, chain_y, chain, codes, integer(201, 255),
             level, gray_result, color)
          .where(has_pixels),
      EXPORT(NuvPastePixels2ResImg, levels_picture, width, chain_x, chain_y, const_chain, codes, mark,
             byte_level, gray_result)
          .where(has_pixels),
      EXPORT(NuvRegionHistogram, levels_picture, width, chain_x, chain_y, chain, codes, mark,
             region_histogram_result)
          .where(has_pixels),
      EXPORT(NuvRealPixelsEnclosed, chain, codes),

      EXPORT(NuvMarkContours, binary, width, height, gray_result),
      EXPORT(NuvSelectContoursByPerimeter, binary, gray_result, width, height, integer(0, 3), integer(0, 12),
             integer(12, 90), gray_result),
      EXPORT(NuvSelectContoursByArea, binary, gray_result, width, height, integer(0, 3), integer(0, 12),
             integer(12, 90), gray_result),
      EXPORT(NuvMarkMaxAreaHoleContour, binary, gray_result, width, height, color),
      EXPORT(NuvContourGryAvr, gray, width, chain_x, chain_y, chain, codes).where(has_pixels),
      EXPORT(Nuv255NRegionsWithMaxArea, binary, width, height, integer(1, 6), integer(0, 8), gray_result),
      EXPORT(NuvRemoveBlackRegionsByArea, binary, gray_result, width, height, integer(0, 2), integer(20, 90),
             gray_result),
      EXPORT(NuvRemoveWhiteRegionsByArea, binary, gray_result, width, height, integer(0, 5), integer(5, 60),
             gray_result),
      EXPORT(NuvDeleteShortContour, binary, gray_result, width, height, integer(0, 20), gray_result),
      EXPORT(NuvGetNSquaresCenter, binary, gray_result, width, height, integer(0, 2), flag, real(0.4, 1),
             integers(counted, -9, 9), integers(counted, -9, 9), reals(counted, -9, 9), count),
  };
}

#include <cmath>

#include "boundary/calls.h"

namespace {

using namespace calls;

// ---- Results ---------------------------------------------------------------------------------------------

// Rounds to a millionth, because machines differ in the last place of sines, cosines and arctangents.
double rounded(double value) {
  return std::floor(value * 1048576 + 0.5) / 1048576;
}
template <class T>
T rounded(T value) {
  return value;
}

template <class T>
void round_in_place(T /*argument*/) {}
void round_in_place(double* result) {
  *result = rounded(*result);
}

template <class Function, class... Arguments>
auto run_and_round(Function function, Arguments... arguments) {
  if constexpr (std::is_void_v<decltype(function(arguments...))>) {
    function(arguments...);
    (round_in_place(arguments), ...);
  } else {
    const auto result = function(arguments...);
    (round_in_place(arguments), ...);
    return rounded(result);
  }
}

// A row whose real results are rounded before they are added to the checksum.
#define EXPORT_ROUNDED(name, ...)                    \
  calls::from_adjusted_roles(                        \
      #name, [](auto... a) { return ::name(a...); }, \
      [](auto f, auto... a) { return run_and_round(f, a...); }, __VA_ARGS__)

// ---- Points ----------------------------------------------------------------------------------------------

std::size_t two(const Scene&) {
  return 2;
}
std::size_t thetas(const Scene&) {
  return 181;
}

template <class Size>
auto flags(Size size) {
  return [=](Scene& s) {
    bool* data = s.memory<bool>(size(s));
    std::generate_n(data, size(s), [&] { return flag(s); });
    return data;
  };
}

int32_t x_inside(Scene& s) {
  return s.between(0, s.width - 1);
}
int32_t y_inside(Scene& s) {
  return s.between(0, s.height - 1);
}

// Two columns with most of the picture between them.
int32_t left(Scene& s) {
  return s.hostile ? s.region.x1 : s.between(0, s.width / 4);
}
int32_t right(Scene& s) {
  return s.hostile ? s.region.x2 : s.between(s.width * 3 / 4, s.width - 1);
}

// A direction, often along an axis.
int32_t theta(Scene& s) {
  return !s.hostile && s.between(0, 3) == 0 ? s.one_of({0, 90, 180}) : s.integer(0, 180);
}

int32_t black_or_white(Scene& s) {
  return s.hostile ? s.integer(0, 255) : s.one_of({0, 255});
}

tagRECT rectangle(Scene& s) {
  return {x(s), y(s), x(s), y(s)};
}

// One coordinate of points that are evenly spaced between two places, within a pixel. Two of these make a
// line.
int32_t* evenly_within(Scene& s, int32_t size) {
  int32_t* data = s.memory<int32_t>(counted(s));
  const int32_t from = s.between(0, std::max(size, 1) - 1);
  const int32_t to = s.between(0, std::max(size, 1) - 1);
  for (int32_t i = 0; i < s.count; ++i) {
    const int32_t place = from + (to - from) * i / s.count + s.one_of({-1, 0, 0, 0, 0, 1});
    data[i] = s.integer(place, place);
  }
  return data;
}
int32_t* line_x(Scene& s) {
  return evenly_within(s, s.width);
}
int32_t* line_y(Scene& s) {
  return evenly_within(s, s.height);
}

int32_t codes(Scene& s) {
  const int32_t length = chain_length(s);
  return s.hostile ? std::min(s.integer(0, length), length) : length;
}

template <class Function>
void play_key_points(Scene& s, Function function) {
  int32_t* point_x = s.integers(counted(s), 0, 55);
  int32_t* point_y = line_y(s);
  const int32_t keys = s.integer(1, 20);
  int32_t* key_x = s.integers(Scene::length(std::min(keys, s.count)), -9, 9);
  int32_t* key_y = s.integers(Scene::length(std::min(keys, s.count)), -9, 9);
  run(s, function, point_x, point_y, s.count, keys, key_x, key_y);
}

// Plays with the points of a chain. In a hostile scene they may lie anywhere.
template <class Function>
void play_corners(Scene& s, Function function) {
  const int32_t start_x = chain_x(s);
  const int32_t start_y = chain_y(s);
  const int32_t n = chain_length(s);
  int32_t* point_x = s.memory<int32_t>(Scene::length(n));
  int32_t* point_y = s.memory<int32_t>(Scene::length(n));
  NuvChain2Points(start_x, start_y, chain(s), n, point_x, point_y);
  for (int32_t* p : {point_x, point_y}) {
    std::transform(p, p + n, p, [&](int32_t place) { return s.integer(place, place); });
  }
  const int32_t points = s.hostile ? std::min(s.integer(0, n), n) : n;
  int32_t* corner_x = s.integers(4, -9, 9);
  int32_t* corner_y = s.integers(4, -9, 9);
  run(s, function, point_x, point_y, points, corner_x, corner_y);
}

// ---- Detectors -------------------------------------------------------------------------------------------

// A row whose export uses the detector as prepare(scene) leaves it.
template <class Prepare>
Call in_detector(Prepare prepare, Call call) {
  return after(prepare, std::move(call)).with_state();
}

// The size of a detector. Detectors keep their memory from scene to scene. Typically they are large enough
// for all scenes, so that earlier scenes make no difference.
int32_t detector_width(Scene& s) {
  return s.hostile && !s.is_special() ? s.result_width : std::max(s.width, 2200);
}
int32_t detector_height(Scene& s) {
  return s.hostile && !s.is_special() ? s.result_height : std::max(s.height, 48);
}

// A picture with one side brighter than the other.
uint8_t* two_sides(Scene& s) {
  uint8_t* data = gray(s);
  const int32_t a = s.between(-4, 4);
  const int32_t b = s.between(1, 4);
  for (std::size_t i = 0; i < s.pixels(); ++i) {
    const int32_t column = static_cast<int32_t>(i) % s.width;
    const int32_t row = static_cast<int32_t>(i) / s.width;
    const bool bright = a * (2 * column - s.width) + b * (2 * row - s.height) > 0;
    data[i] = static_cast<uint8_t>(data[i] / 4 + (bright ? 150 : 0));
  }
  return data;
}

void size_chain_lines(Scene& s) {
  const int32_t width = detector_width(s);
  const int32_t height = detector_height(s);
  const double straightness = s.real(0.5, 0.95);
  const double deviation = s.real(0.5, 2);
  const int32_t length = s.integer(6, 9);
  const int32_t threshold = s.integer(2, 30);
  NuvImgChainLines_Initialize(width, height, straightness, deviation, length, threshold, s.count);
}

int32_t find_chain_lines(Scene& s) {
  size_chain_lines(s);
  uint8_t* image = two_sides(s);
  return NuvImgChainLines_DoGryImg(image, s.width, s.height, s.between(0, 3) != 0);
}

// Finds lines, and then sets up the detector again in half of the scenes.
void find_and_size_anew(Scene& s) {
  find_chain_lines(s);
  if (flag(s)) size_chain_lines(s);
}

template <class Function>
void play_code_lines(Scene& s, Function function) {
  find_and_size_anew(s);
  int32_t* point_x = nullptr;
  int32_t* point_y = nullptr;
  int32_t n = 0;
  while (function(&point_x, &point_y, &n)) {
    for (int32_t i = 0; i < n; ++i) {
      s.add_result(point_x[i]);
      s.add_result(point_y[i]);
    }
  }
}

template <class Function>
void play_segments(Scene& s, Function function) {
  const int32_t n = find_chain_lines(s);
  const TAVI_LINE_SEGMENT* segments = function();
  s.add_result(segments != nullptr);
  for (int32_t i = 0; segments != nullptr && i < n; ++i) {
    const TAVI_LINE_SEGMENT& line = segments[i];
    for (int32_t end : {line.x1, line.y1, line.x2, line.y2}) s.add_result(end);
    for (double factor : {line.A, line.B, line.C}) s.add_result(factor);
  }
}

void size_hough_lines(Scene& s) {
  const int32_t width = detector_width(s);
  NuvHoughLines_Initialize(width, detector_height(s));
}

void find_hough_line(Scene& s) {
  size_hough_lines(s);
  int32_t* point_x = line_x(s);
  int32_t* point_y = line_y(s);
  double abc[3];
  int32_t hough[2];
  NuvHoughLines_HT(point_x, point_y, s.count, 0, 180, &abc[0], &abc[1], &abc[2], &hough[0], &hough[1]);
}

}  // namespace

Calls line_calls() {
  const auto is_vertical = integer(0, 1);
  const auto k = real(-1, 1);
  const auto b = real(-10, 40);
  const auto A = real(-0.5, 2);
  const auto B = real(-0.5, 2);
  const auto C = real(-40, 0);
  const auto thro = integer(-20, 50);
  const auto real_x = real(0, 55);
  const auto real_y = real(0, 47);
  const auto any = integer(-50, 50);
  const auto pair = integers(two, -9, 9);
  const auto out = integer_result;
  const auto real_out = real_result;
  return {
      // Conversions between forms
      EXPORT(NuvLineKBEquation, x, y, x, y, out, real_out, real_out),
      EXPORT_ROUNDED(NuvLineKBEquation, x, y, x, y, out, real_out, real_out, real_out),
      EXPORT(NuvGetLineB, is_vertical, k, x, y),
      EXPORT(NuvKBLine2ABCLine, is_vertical, k, b, real_out, real_out, real_out),
      EXPORT(NuvABCLine2KBLine, A, B, C, out, real_out, real_out),
      EXPORT(NuvTwoPoints2ThroTheta, real_x, real_y, real_x, real_y, out, out),
      EXPORT(NuvABC2ThroTheta, A, B, C, out, out),
      EXPORT_ROUNDED(NuvThroTheta2ABC, x, y, thro, theta, real_out, real_out, real_out),
      EXPORT(NuvCodeLineEstimateTheta, chain_x, chain_y, chain, codes),

      // Intersections
      EXPORT(NuvPointOfIntersection, is_vertical, k, b, is_vertical, k, b, real_out, real_out),
      EXPORT(NuvPointOfIntersection, A, B, C, A, B, C, real_out, real_out),
      // Angles end at 179. Lines at 0 and 180 degrees are so nearly parallel that the last place of a sine
      // moves their point of intersection.
      EXPORT_ROUNDED(NuvPointOfIntersection, thro, integer(0, 179), thro, integer(0, 179), real_out,
                     real_out),
      EXPORT_ROUNDED(NuvGetHoughLinePointX, thro, theta, y, real_out),

      // Distances, sides, angles
      EXPORT(NuvDistBetweenPoint12, real_x, real_y, real_x, real_y),
      EXPORT(NuvDistFromPoint2KBLine, x, y, is_vertical, k, b),
      EXPORT(NuvDistFromPoint3To2PLine, x, y, x, y, x, y),
      EXPORT(NuvWhichSideIsPoint3ToLine, x, y, x, y, x, y),
      EXPORT_ROUNDED(Nuv2PLineAngleDegree2AxisX, real_x, real_y, real_x, real_y),
      EXPORT_ROUNDED(NuvABCLineAngleDegree2AxisX, A, B, C),
      EXPORT_ROUNDED(NuvABCLineIntersectAngleDegree, A, B, C, A, B, C),

      // Overlaps
      EXPORT(NuvLineOverlapLen, any, any, any, any, out, out),
      EXPORT(NuvLineOverlapLen, any, any, any, any),
      EXPORT(NuvRectOverlapArea, rectangle, rectangle),

      // Clipping
      EXPORT(NuvKBLineImgBoundary, width, height, is_vertical, k, b, out, out, out, out),
      EXPORT(NuvABCLineImgBoundary, width, height, A, B, C, out, out, out, out),
      EXPORT(NuvHoughLineImgBoundary, width, height, thro, theta, pair, pair),
      EXPORT(NuvKBLineRectBoundary, width, height, any_x1, any_x2, any_y1, any_y2, is_vertical, k, b, pair,
             pair),
      EXPORT(NuvKBLineBeginEndPoint, width, height, any_x1, any_x2, any_y1, any_y2, is_vertical, k, b, out,
             out, out, out),

      // Pixels along lines
      EXPORT(NuvPixlesOnABCLine, binary, width, height, A, B, C, out, out),
      EXPORT(NuvABCLineHistogram, gray, width, height, A, B, C, histogram_result),
      EXPORT(NuvPixelsOn2PLine, binary, width, x_inside, y_inside, x_inside, y_inside, black_or_white, out,
             out)
          .where(has_pixels),  // which the points lie on
      EXPORT(NuvPixelsOnRect, binary, width, height, any_x1, any_x2, any_y1, any_y2, black_or_white),
      EXPORT(NuvABCLineContrast, gray, width, height, left, right, real(-1, 1), B, C, integer(1, 3), flag),

      // Fitting
      EXPORT_ROUNDED(NuvFittingLine, line_x, line_y, count, out, real_out, real_out, real_out, real_out,
                     real_out),
      EXPORT_ROUNDED(NuvFittingLine, chain_x, chain_y, chain, codes, out, real_out, real_out, real_out,
                     real_out, real_out),
      EXPORT_ROUNDED(NuvFittingLineMsk, line_x, line_y, flags(counted), count, out, real_out, real_out,
                     real_out),
      EXPORT_ROUNDED(NuvFittingLineTwice, line_x, line_y, integers(counted, -9, 9), count, out, real_out,
                     real_out, real_out),
      EXPORT_ROUNDED(NuvFittingLineTwiceByMean, line_x, line_y, integers(counted, -9, 9), count, out,
                     real_out, real_out, real_out),

      // The chain-line detector. It gets no sizes but those of scenes, because larger ones could allocate
      // gigabytes, and the sanitizer marks all of them.
      EXPORT(NuvImgChainLines_Initialize, width, height, real(0.5, 0.95), real(0.5, 2), integer(6, 9),
             integer(2, 30), count)
          .with_state(),
      in_detector(size_chain_lines, EXPORT(NuvImgChainLines_DoBinImg, binary, width, height, flag)),
      in_detector(size_chain_lines, EXPORT(NuvImgChainLines_DoGryImg, two_sides, width, height, flag)),
      EXPORT_BY(NuvImgChainLines_GetNxtCodeLine, bool, (int32_t**, int32_t**, int32_t*),
                [](Scene& s, auto f) { play_code_lines(s, f); })
          .with_state(),
      EXPORT_BY(NuvImgChainLines_GetLines, TAVI_LINE_SEGMENT*, (),
                [](Scene& s, auto f) { play_segments(s, f); })
          .with_state(),
      in_detector(find_and_size_anew,
                  EXPORT(NuvImgChainLines_Debug, bytes([](const Scene& s) { return 6 * s.pixels(); }))),

      // The Hough detector
      EXPORT(NuvHoughLines_Initialize, integer(3, 56), integer(3, 48)).with_state(),
      in_detector(size_hough_lines,
                  EXPORT_ROUNDED(NuvHoughLines_HT, line_x, line_y, count, integer(0, 60), integer(120, 180),
                                 real_out, real_out, real_out, out, out)),
      in_detector(size_hough_lines, EXPORT_ROUNDED(NuvHoughLines_HT, line_x, line_y, count, flags(thetas),
                                                   real_out, real_out, real_out, out, out)),
      in_detector(size_hough_lines,
                  EXPORT_ROUNDED(NuvHoughLines_HT, line_x, line_y, integers(counted, 0, 179), flags(counted),
                                 count, integer(5, 90), real_out, real_out, real_out, out, out)),
      in_detector(find_hough_line, EXPORT_ROUNDED(NuvHoughLines_GetNextLine, integer(1, 5), integer(1, 20),
                                                  real_out, real_out, real_out, out, out)),
      in_detector(find_hough_line, EXPORT(NuvHoughLines_Debug, gray, width, height, color)),

      // Key points
      EXPORT_BY(NuvLineKeyPoints, int32_t, (int32_t*, int32_t*, int32_t, int32_t, int32_t*, int32_t*),
                [](Scene& s, auto f) { play_key_points(s, f); }),
      EXPORT_BY(NuvContour2Poly4, bool, (int32_t*, int32_t*, int32_t, int32_t*, int32_t*),
                [](Scene& s, auto f) { play_corners(s, f); }),
  };
}

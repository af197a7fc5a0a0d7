// Finds the straight edges of a photograph.
//
// A program with the chain-line detector takes these steps: read a picture, initialise the detector for its
// size, detect, read the segments, draw them.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "picture.h"

namespace {

struct Options {
  std::string picture;
  std::string result;
  int32_t threshold = 24;
  int32_t min_length = 0;  // 0: depends on the size of the picture
  double straightness = 0.9;
  double deviation = 1.0;
  int32_t max_lines = 0;  // 0: depends on the size of the picture
  bool csv = false;
};

struct Detection {
  std::vector<TAVI_LINE_SEGMENT> segments;
  double milliseconds = 0.0;
};

double length_of(const TAVI_LINE_SEGMENT& s) {
  return NuvDistBetweenPoint12(s.x1, s.y1, s.x2, s.y2);
}
double angle_of(const TAVI_LINE_SEGMENT& s) {
  return NuvABCLineAngleDegree2AxisX(s.A, s.B, s.C);
}

// Options that are not given depend on the picture. The least length of a line is a share of the shorter side.
void complete(Options& options, const Picture& picture) {
  if (options.min_length == 0) {
    options.min_length = std::max(12, std::min(picture.width, picture.height) / 20);
  }
  if (options.max_lines == 0) options.max_lines = 1000 + picture.width / 10 * (picture.height / 10);
  if (options.result.empty()) {
    options.result = std::filesystem::path(options.picture).stem().string() + "_lines.bmp";
  }
}

Detection detect(Picture& gray, const Options& options) {
  if (!NuvImgChainLines_Initialize(gray.width, gray.height, options.straightness, options.deviation,
                                   options.min_length, options.threshold, options.max_lines)) {
    throw PictureError(options.picture, "not enough memory for its size");
  }
  Detection detection;
  const auto begin = std::chrono::steady_clock::now();
  const int32_t n = NuvImgChainLines_DoGryImg(gray.pixels.data(), gray.width, gray.height, true);
  const auto end = std::chrono::steady_clock::now();
  detection.milliseconds = std::chrono::duration<double, std::milli>(end - begin).count();
  const TAVI_LINE_SEGMENT* segments = NuvImgChainLines_GetLines();
  detection.segments.assign(segments, segments + n);
  return detection;
}

struct Colour {
  int32_t r, g, b;
};

// A colour of the wheel for each angle, so directions can be distinguished.
Colour colour_of(double angle) {
  const auto channel = [angle](double peak) {
    const double distance = std::fabs(std::remainder(angle - peak, 180.0)) / 90.0;
    return static_cast<int32_t>(255 * std::clamp(2.0 - 3.0 * distance, 0.0, 1.0));
  };
  return {channel(0), channel(60), channel(120)};
}

// Darkens the picture and draws the segments in colour.
Picture draw(Picture& picture, const std::vector<TAVI_LINE_SEGMENT>& segments) {
  Picture drawing = to_colour(picture);
  for (uint8_t& byte : drawing.pixels) byte = static_cast<uint8_t>(byte / 2);
  for (const TAVI_LINE_SEGMENT& s : segments) {
    const Colour colour = colour_of(angle_of(s));
    NuvRGBLine(drawing.pixels.data(), drawing.width, drawing.height, s.x1, s.y1, s.x2, s.y2, colour.r,
               colour.g, colour.b);
  }
  return drawing;
}

void print_csv(const std::vector<TAVI_LINE_SEGMENT>& segments) {
  std::puts("x1,y1,x2,y2,length,angle");
  for (const TAVI_LINE_SEGMENT& s : segments) {
    std::printf("%d,%d,%d,%d,%.2f,%.2f\n", s.x1, s.y1, s.x2, s.y2, length_of(s), angle_of(s));
  }
}

void print_table(const Detection& detection, const Options& options) {
  std::puts("         begin           end    length     angle");
  for (const TAVI_LINE_SEGMENT& s : detection.segments) {
    std::printf("  (%4d, %4d)  (%4d, %4d)  %8.1f  %8.1f\n", s.x1, s.y1, s.x2, s.y2, length_of(s),
                angle_of(s));
  }
  std::printf("%zu segments in %.2f ms, drawn into %s\n", detection.segments.size(), detection.milliseconds,
              options.result.c_str());
}

void run(Options options) {
  Picture picture = read_picture(options.picture);
  complete(options, picture);
  check_result(options.picture, options.result);
  Picture gray = to_gray(picture);
  Detection detection = detect(gray, options);
  std::stable_sort(detection.segments.begin(), detection.segments.end(),
                   [](const auto& a, const auto& b) { return length_of(a) > length_of(b); });
  Picture drawing = draw(picture, detection.segments);
  write_picture(drawing, options.result);
  if (options.csv) {
    print_csv(detection.segments);
  } else {
    print_table(detection, options);
  }
}

}  // namespace

int main(int argc, char** argv) try {
  Options options;
  CLI::App app("Finds the straight edges of a photograph, lists them, and draws them into a copy of it.");
  app.add_option("picture", options.picture, "BMP file of 8 or 24 bits per pixel")->required();
  app.add_option("result", options.result,
                 "BMP file to write (default: PICTURE_lines.bmp in the current directory)");
  app.add_option("-t,--threshold", options.threshold,
                 "least step in gray value of an edge, 1 to 255; below 8 the exact edge filter is used")
      ->capture_default_str()
      ->check(CLI::Range(1, 255));
  app.add_option("-l,--min-length", options.min_length,
                 "least length of a segment in pixels (default: 1/20 of the shorter side, at least 12)")
      ->check(CLI::Range(6, 1000000));
  app.add_option("-s,--straightness", options.straightness,
                 "least ratio of the distance between a segment's ends to the length of its edge")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 1.0));
  app.add_option("-d,--deviation", options.deviation,
                 "greatest mean distance of the edge from the line between its ends, in pixels")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 1000.0));
  app.add_option("-m,--max-lines", options.max_lines,
                 "most segments to keep (default: depends on the size of the picture)")
      ->check(CLI::Range(1, 100000000));
  app.add_flag("--csv", options.csv, "print the segments as comma-separated values and nothing else");
  app.footer(
      "Segments are listed from the longest to the shortest. Angles are in degrees to the x axis, from 0 up "
      "to\n"
      "180, and grow clockwise, as y grows downwards.");
  CLI11_PARSE(app, argc, argv);

  run(options);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "find_lines: %s\n", error.what());
  return 1;
}

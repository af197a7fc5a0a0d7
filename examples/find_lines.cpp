// Finds the straight edges of photographs.
//
// A program with the chain-line detector takes these steps: read a picture, initialise the detector for its
// size, detect, read the segments, draw them.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "host.h"
#include "marks.h"
#include "picture.h"

namespace {

struct Options {
  int32_t threshold = 24;
  int32_t min_length = 0;  // 0: depends on the size of the picture
  double straightness = 0.9;
  double deviation = 1.0;
  int32_t max_lines = 0;  // 0: depends on the size of the picture
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
Options completed(Options options, const Picture& picture) {
  if (options.min_length == 0) {
    options.min_length = std::max(12, std::min(picture.width, picture.height) / 20);
  }
  if (options.max_lines == 0) options.max_lines = 1000 + picture.width / 10 * (picture.height / 10);
  return options;
}

// The segments of a picture, the longest first. The detector is one object that all threads share.
Detection detect(Picture& gray, const Options& options) {
  static std::mutex detector;
  const std::lock_guard lock(detector);
  if (!NuvImgChainLines_Initialize(gray.width, gray.height, options.straightness, options.deviation,
                                   options.min_length, options.threshold, options.max_lines)) {
    throw std::bad_alloc();
  }
  Detection detection;
  const auto begin = std::chrono::steady_clock::now();
  const int32_t n = NuvImgChainLines_DoGryImg(gray.pixels.data(), gray.width, gray.height, true);
  const auto end = std::chrono::steady_clock::now();
  detection.milliseconds = std::chrono::duration<double, std::milli>(end - begin).count();
  const TAVI_LINE_SEGMENT* segments = NuvImgChainLines_GetLines();
  detection.segments.assign(segments, segments + n);
  std::stable_sort(detection.segments.begin(), detection.segments.end(),
                   [](const auto& a, const auto& b) { return length_of(a) > length_of(b); });
  return detection;
}

// A colour of the wheel for each angle, so directions can be distinguished. It is lightened, because blue is
// hard to see on a dark picture.
Colour colour_of(const TAVI_LINE_SEGMENT& s) {
  const Colour colour = hue(2 * angle_of(s));
  const auto light = [](uint8_t value) { return static_cast<uint8_t>(70 + value * 185 / 255); };
  return {light(colour.b), light(colour.g), light(colour.r)};
}

// Darkens the picture, and draws the segments and their numbers.
Marks drawn(const Picture& picture, const std::vector<TAVI_LINE_SEGMENT>& segments) {
  Marks marks(picture, 0.5);
  int64_t number = 0;
  for (const TAVI_LINE_SEGMENT& s : segments) {
    const Colour colour = colour_of(s);
    marks.line({double(s.x1), double(s.y1)}, {double(s.x2), double(s.y2)}, colour, 1.4);
    const Place middle = {(s.x1 + s.x2) / 2.0, (s.y1 + s.y2) / 2.0};
    marks.label({middle.x, middle.y, middle.x, middle.y}, std::to_string(++number), colour);
  }
  marks.place_labels();
  return marks;
}

// The segments as lines over the picture, which is part of the file. A viewer shows the number and the length
// of the line under the pointer.
std::string svg_of(const Picture& picture, const std::vector<TAVI_LINE_SEGMENT>& segments) {
  const std::string width = std::to_string(picture.width);
  const std::string height = std::to_string(picture.height);
  const double stroke = std::max(1.0, std::max(picture.width, picture.height) / 500.0);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
                    "\" viewBox=\"0 0 " + width + " " + height + "\">\n<image width=\"" + width +
                    "\" height=\"" + height + "\" href=\"data:image/png;base64," + base64(png_of(picture)) +
                    "\"/>\n<g stroke-linecap=\"round\" stroke-width=\"" + text_of(stroke, 1) + "\">\n";
  int64_t number = 0;
  for (const TAVI_LINE_SEGMENT& s : segments) {
    const Colour c = colour_of(s);
    const auto centre = [](int32_t pixel) { return text_of(pixel + 0.5, 1); };
    const auto channel = [](uint8_t value) { return std::to_string(value); };
    svg += "<line x1=\"" + centre(s.x1) + "\" y1=\"" + centre(s.y1) + "\" x2=\"" + centre(s.x2) + "\" y2=\"" +
           centre(s.y2) + "\" stroke=\"rgb(" + channel(c.r) + "," + channel(c.g) + "," + channel(c.b) +
           ")\"><title>" + std::to_string(++number) + ": " + text_of(length_of(s), 1) +
           " pixels</title></line>\n";
  }
  return svg + "</g>\n</svg>\n";
}

Report work(const Job& job, const Options& given) {
  Picture picture = read_picture(job.input);
  const Options options = completed(given, picture);
  Picture gray = to_gray(picture);
  job.says("detecting");
  const Detection detection = detect(gray, options);
  job.says("drawing");
  Marks marks = drawn(picture, detection.segments);
  write_picture(marks.drawing(), job.results[0]);
  if (!job.results[1].empty()) {
    const std::string svg = svg_of(picture, detection.segments);
    write_file({svg.begin(), svg.end()}, job.results[1]);
  }

  Report report;
  report.numbers = {picture.width, picture.height, options.min_length};
  int64_t number = 0;
  for (const TAVI_LINE_SEGMENT& s : detection.segments) {
    report.rows.push_back({++number, s.x1, s.y1, s.x2, s.y2, length_of(s), angle_of(s)});
  }
  report.conclusion = counted(detection.segments.size(), "segment") + " in " +
                      text_of(detection.milliseconds, 2) + " ms, drawn into " + job.results[0];
  if (number == options.max_lines) report.conclusion += "\nthere may be more: --max-lines is reached";
  report.conclusion += marks.remark();
  return report;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  plan.name = "find_lines";
  plan.purpose = "Finds the straight edges of photographs, lists them, and draws them into a copy.";
  plan.results = {
      {"-o,--output", "_lines", kPictureEndings, "picture to write, with the segments and their numbers"},
      {"--svg", "_lines", {".svg"}, "write the picture with the segments as SVG, too", true}};
  plan.numbers = {{"width", "of the picture, in pixels"},
                  {"height", "of the picture, in pixels"},
                  {"min_length", "least length of a segment that was used, in pixels"}};
  plan.items = "segments";
  plan.columns = {
      {"number", "as in the picture, from the longest segment to the shortest"},
      {"x1", "first end, in pixels"},
      {"y1", "first end, in pixels"},
      {"x2", "second end, in pixels"},
      {"y2", "second end, in pixels"},
      {"length", "in pixels", 2},
      {"angle", "to the x axis in degrees, from 0 up to 180; grows clockwise, as y grows downwards", 2}};
  Host host(plan);
  Options options;
  host.number("-t,--threshold", options.threshold,
              "least step in gray value of an edge; below 8 the exact edge filter is used", 1, 255);
  host.number("-l,--min-length", options.min_length, "least length of a segment in pixels", 6, 1000000,
              "1/20 of the shorter side, at least 12");
  host.number("-s,--straightness", options.straightness,
              "least ratio of the distance between a segment's ends to the length of its edge", 0.0, 1.0);
  host.number("-d,--deviation", options.deviation,
              "greatest mean distance of the edge from the line between its ends, in pixels", 0.0, 1000.0);
  host.number("-m,--max-lines", options.max_lines, "most segments to keep", 1, 100000000,
              "depends on the size of the picture");
  return host.run(argc, argv, [&options](const Job& job) { return work(job, options); });
}

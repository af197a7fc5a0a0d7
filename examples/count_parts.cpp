// Counts the parts in a photograph and measures each.
//
// Most inspections take these steps: threshold, clean-up, contours. Parts are brighter than the background or,
// with --dark, darker. Objects below a least area are ignored, and holes below a least area are closed.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "picture.h"

namespace {

struct Options {
  std::string picture;
  std::string result;
  int32_t threshold = -1;  // below 0: Otsu's
  bool dark = false;
  int32_t background = 0;
  int32_t smooth = 1;
  int32_t min_area = 100;
  int32_t min_hole = 100;
  bool csv = false;
};

struct Part {
  tagRECT box{};
  int32_t x = 0;
  int32_t y = 0;
  int32_t area = 0;
  int32_t perimeter = 0;
  int32_t holes = 0;
  const NUV_CONTOUR_STRUCT* contour = nullptr;
};

// Evens out light that changes across the picture. The result is 128 plus the difference of each pixel from the
// mean of its surroundings.
Picture flattened(Picture& gray, int32_t half_size) {
  Picture mean = blank_like(gray);
  NuvGryAverageFilter(gray.pixels.data(), gray.width, gray.height, half_size, half_size, mean.pixels.data());
  for (std::size_t i = 0; i < mean.pixels.size(); ++i) {
    mean.pixels[i] = static_cast<uint8_t>(std::clamp(128 + gray.pixels[i] - mean.pixels[i], 0, 255));
  }
  return mean;
}

// Sets parts to 255 and the background to 0.
Picture binarised(Picture& gray, Options& options) {
  if (options.threshold < 0) options.threshold = otsu_threshold(gray);
  Picture binary = gray;
  NuvThreshold(binary.pixels.data(), binary.width, binary.height, options.threshold);
  if (options.dark) {
    for (uint8_t& pixel : binary.pixels) pixel = static_cast<uint8_t>(255 - pixel);
  }
  return binary;
}

// Smooths rough outlines.
Picture smoothed(Picture binary, int32_t half_size) {
  if (half_size == 0) return binary;
  Picture result = blank_like(binary);
  const int32_t side = 2 * half_size + 1;
  NuvBinImgFilter(binary.pixels.data(), binary.width, binary.height, half_size, half_size,
                  static_cast<uint32_t>(side * side * 127), result.pixels.data());
  return result;
}

using Contours = std::unique_ptr<NUV_CONTOUR_STRUCT, decltype(&NuvFreeContours)>;

// The outlines of the objects and holes that have at least min_area pixels.
Contours contours_of(Picture& binary, int32_t min_area) {
  std::vector<uint8_t> work(binary.pixels.size());
  return {NuvGetContours(binary.pixels.data(), work.data(), binary.width, binary.height, 1, min_area, 0),
          NuvFreeContours};
}

// The outline of an object or of a hole. Everything inside belongs to it.
struct Outline {
  const NUV_CONTOUR_STRUCT* contour;
  tagRECT box;

  // Whether an outline that starts at (x, y) and has the given area lies inside this one.
  bool holds(int32_t x, int32_t y, int32_t area) const {
    return contour->area > area && x >= box.left && x <= box.right && y >= box.top && y <= box.bottom &&
           NuvIsPointIncludedByChain(x, y, contour->x, contour->y, contour->pChainCode, contour->N);
  }
};

Part measured(const Outline& object) {
  const NUV_CONTOUR_STRUCT& c = *object.contour;
  Part part;
  part.contour = &c;
  part.box = object.box;
  part.area = c.area;
  part.perimeter = c.perimeter;
  NuvContourCenter(c.x, c.y, c.pChainCode, c.N, &part.x, &part.y);
  return part;
}

// The objects that are large enough, each with its holes. A hole that is too small is closed with everything in
// it.
std::vector<Part> parts_of(const NUV_CONTOUR_STRUCT* contours, const Options& options) {
  std::vector<Outline> objects;
  std::vector<Outline> holes;
  std::vector<Outline> closed;
  for (const auto* c = contours; c != nullptr; c = c->pNext) {
    tagRECT box{};
    NuvContourRect(c->x, c->y, c->pChainCode, c->N, &box.left, &box.right, &box.top, &box.bottom);
    (c->isOuter ? objects : c->area < options.min_hole ? closed : holes).push_back({c, box});
  }

  std::vector<Part> parts;
  std::vector<std::size_t> part_of(objects.size(), 0);  // number of the part, from 1; 0 for none
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const NUV_CONTOUR_STRUCT& c = *objects[i].contour;
    const auto holds_it = [&](const Outline& hole) { return hole.holds(c.x, c.y, c.area); };
    if (c.area < options.min_area || std::any_of(closed.begin(), closed.end(), holds_it)) continue;
    parts.push_back(measured(objects[i]));
    part_of[i] = parts.size();
  }
  for (const Outline& hole : holes) {
    const NUV_CONTOUR_STRUCT& h = *hole.contour;
    std::size_t owner = objects.size();  // the smallest object around the hole
    for (std::size_t i = 0; i < objects.size(); ++i) {
      const bool is_smaller =
          owner == objects.size() || objects[i].contour->area < objects[owner].contour->area;
      if (is_smaller && objects[i].holds(h.x, h.y, h.area)) owner = i;
    }
    if (owner == objects.size() || part_of[owner] == 0) continue;
    Part& part = parts[part_of[owner] - 1];
    ++part.holes;
    part.area -= h.area;
  }
  return parts;
}

// Draws the outline of each part into the picture, and its number at its centre.
Picture drawn(Picture picture, const std::vector<Part>& parts) {
  constexpr std::array<uint8_t, 3> kOutline = {60, 220, 60};
  constexpr int32_t kDigitWidth = 8;
  constexpr int32_t kDigitHeight = 9;
  Picture result = to_colour(picture);
  int32_t number = 0;
  for (const Part& part : parts) {
    const NUV_CONTOUR_STRUCT& c = *part.contour;
    std::vector<int32_t> x(static_cast<std::size_t>(c.N) + 1);
    std::vector<int32_t> y(x.size());
    NuvChain2Points(c.x, c.y, c.pChainCode, c.N, x.data(), y.data());
    for (std::size_t i = 0; i < static_cast<std::size_t>(c.N); ++i) {
      std::copy(kOutline.begin(), kOutline.end(), result.pixels.begin() + (y[i] * result.width + x[i]) * 3);
    }
    std::string text = std::to_string(++number);
    const auto text_width = static_cast<int32_t>(text.size()) * kDigitWidth;
    NuvSetNumberString2RGBImg(result.pixels.data(), result.width, result.height, part.x - text_width / 2,
                              part.y - kDigitHeight / 2, 0, 255, 255, 255, text.data());
  }
  return result;
}

void print_table(const std::vector<Part>& parts, const Options& options) {
  const char* row =
      options.csv ? "%d,%d,%d,%d,%d,%d,%d,%d,%d,%d\n" : "%6d  %5d %5d %5d %5d  %5d %5d  %8d %9d %5d\n";
  std::puts(options.csv ? "number,left,top,right,bottom,x,y,area,perimeter,holes"
                        : "number   left   top right bottom     x     y      area perimeter holes");
  int32_t number = 0;
  for (const Part& part : parts) {
    std::printf(row, ++number, part.box.left, part.box.top, part.box.right, part.box.bottom, part.x, part.y,
                part.area, part.perimeter, part.holes);
  }
}

void run(Options options) {
  Picture picture = read_picture(options.picture);
  if (options.result.empty()) {
    options.result = std::filesystem::path(options.picture).stem().string() + "_parts.bmp";
  }
  check_result(options.picture, options.result);

  Picture gray = to_gray(picture);
  if (options.background > 0) gray = flattened(gray, options.background);
  Picture binary = smoothed(binarised(gray, options), options.smooth);
  const Contours contours = contours_of(binary, std::min(options.min_area, options.min_hole));
  const std::vector<Part> parts = parts_of(contours.get(), options);

  print_table(parts, options);
  Picture result = drawn(picture, parts);
  write_picture(result, options.result);
  if (options.csv) return;
  std::printf("%zu parts at threshold %d, drawn in %s\n", parts.size(), options.threshold,
              options.result.c_str());
}

}  // namespace

int main(int argc, char** argv) try {
  Options options;
  CLI::App app("Counts the parts in a photograph: a table, and a picture with outlines and numbers.");
  app.add_option("picture", options.picture, "BMP file of 8 or 24 bits per pixel")->required();
  app.add_option("result", options.result,
                 "BMP file to write (default: PICTURE_parts.bmp in the current directory)");
  app.add_option("-t,--threshold", options.threshold,
                 "gray value from which a pixel belongs to a part (default: Otsu's)")
      ->check(CLI::Range(0, 255));
  app.add_flag("-d,--dark", options.dark, "parts are darker than the background");
  app.add_option(
         "-b,--background", options.background,
         "evens out light that changes across the picture: compares each pixel with the mean over this many "
         "pixels to each side, about the size of a part; 0: off")
      ->capture_default_str()
      ->check(CLI::Range(0, 1000));
  app.add_option("-s,--smooth", options.smooth,
                 "smooths outlines by a majority over this many pixels to each side; 0: off")
      ->capture_default_str()
      ->check(CLI::Range(0, 100));
  app.add_option("-a,--min-area", options.min_area, "parts of fewer pixels are dropped")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  app.add_option("-o,--min-hole", options.min_hole, "holes of fewer pixels are closed")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  app.add_flag("--csv", options.csv, "print the table as comma-separated values");
  app.footer("Coins on dark cloth, lit from one side: count_parts coins.bmp --background 40");
  CLI11_PARSE(app, argc, argv);
  run(options);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "count_parts: %s\n", error.what());
  return 1;
}

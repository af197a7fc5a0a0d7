// Aligns a picture to another one of the same scene.
//
// All shifts up to a limit are tried, and the middle of the first picture is compared. The sums of the library
// have 32 bits. If the differences of a large picture could exceed them, a smaller middle is compared.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "picture.h"

namespace {

struct Options {
  std::string first;
  std::string second;
  std::string result;
  std::string difference;
  int32_t limit = 16;
};

struct Alignment {
  Picture picture;
  int32_t dx = 0;
  int32_t dy = 0;
  int32_t mean = 0;
};

// The part of the picture that lies at least limit pixels inside, or as much of its middle as the sums can
// hold.
tagRECT compared_area(const Picture& picture, int32_t limit) {
  const int32_t columns = picture.width - 2 * limit;
  const int32_t rows = picture.height - 2 * limit;
  const double most_pixels = INT32_MAX / (255 * picture.channels);
  const double scale = std::min(std::sqrt(most_pixels / (static_cast<double>(columns) * rows)), 1.0);
  const auto width = static_cast<int32_t>(columns * scale);
  const auto height = static_cast<int32_t>(rows * scale);
  const int32_t left = (picture.width - width) / 2;
  const int32_t top = (picture.height - height) / 2;
  return {left, top, left + width - 1, top + height - 1};
}

Alignment aligned(Picture& first, Picture& second, int32_t limit, tagRECT area) {
  Alignment result{first};
  result.mean = NuvShiftImg2BasedImg1(first.pixels.data(), second.pixels.data(), result.picture.pixels.data(),
                                      first.width, first.height, first.channels == 3, limit, limit, area,
                                      &result.dx, &result.dy);
  return result;
}

// The absolute difference of each pixel; in colour, the largest of the three channels.
Picture difference_of(Picture& a, Picture& b) {
  Picture result{a.width, a.height, 1,
                 std::vector<uint8_t>(a.pixels.size() / static_cast<std::size_t>(a.channels))};
  NuvDifferenceImg12(a.pixels.data(), b.pixels.data(), a.width, a.height, a.channels == 3,
                     result.pixels.data());
  return result;
}

void run(Options options) {
  Picture first = read_picture(options.first);
  Picture second = read_picture(options.second);
  if (first.width != second.width || first.height != second.height) {
    throw PictureError(options.second, "differs in size from " + options.first);
  }
  if (2 * options.limit + 2 > std::min(first.width, first.height)) {
    throw PictureError(options.first, "too small for shifts of " + std::to_string(options.limit) + " pixels");
  }
  if (first.channels != second.channels) {
    first = to_gray(first);
    second = to_gray(second);
  }
  const std::string name = std::filesystem::path(options.second).stem().string();
  if (options.result.empty()) options.result = name + "_aligned.bmp";
  if (options.difference.empty()) options.difference = name + "_difference.bmp";
  for (const std::string& picture : {options.first, options.second}) {
    check_result(picture, options.result);
    check_result(picture, options.difference);
  }

  const tagRECT area = compared_area(first, options.limit);
  Alignment alignment = aligned(first, second, options.limit, area);
  Picture difference = difference_of(first, alignment.picture);
  std::printf("shift               %d, %d\n", alignment.dx, alignment.dy);
  std::printf("mean difference     %d\n", alignment.mean);
  if (area.left > options.limit || area.top > options.limit) {
    // On Windows the ends of a rectangle have a type of their own.
    const int32_t columns = area.right - area.left + 1;
    const int32_t rows = area.bottom - area.top + 1;
    std::printf("compared            the middle %d x %d pixels\n", columns, rows);
  }
  if (std::max(std::abs(alignment.dx), std::abs(alignment.dy)) == options.limit) {
    std::printf("the shift is at the limit: try --limit %d\n", 2 * options.limit);
  }
  write_picture(alignment.picture, options.result);
  write_picture(difference, options.difference);
  std::printf("written             %s, %s\n", options.result.c_str(), options.difference.c_str());
}

}  // namespace

int main(int argc, char** argv) try {
  Options options;
  CLI::App app("Finds the shift between two pictures of a scene, and moves the second one onto the first.");
  app.add_option("first", options.first, "BMP file of 8 or 24 bits per pixel")->required();
  app.add_option("second", options.second, "BMP file of the same size, to be moved")->required();
  app.add_option("result", options.result,
                 "BMP file to write (default: SECOND_aligned.bmp in the current directory)");
  app.add_option("--difference", options.difference,
                 "BMP file for the difference (default: SECOND_difference.bmp in the current directory)");
  app.add_option("-l,--limit", options.limit, "largest shift to try, in pixels along each axis")
      ->capture_default_str()
      ->check(CLI::Range(1, 1000));
  CLI11_PARSE(app, argc, argv);
  run(options);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "align: %s\n", error.what());
  return 1;
}

// Chooses a gray threshold for a photograph and applies it.
//
// There are four methods, each based on a histogram: Otsu's threshold, a share of the pixels, the noise of a
// difference image, and clusters of gray values.

#include <CLI/CLI.hpp>
#include <algorithm>
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
  std::string histogram;
  std::string method = "otsu";
  double ratio = 0.3;
  int32_t clusters = 3;
};

void print_numbers(Histogram bins) {
  double average = 0;
  double deviation = 0;
  const int32_t pixels = NuvGetImageAvrAndDev(bins.data(), &average, &deviation);
  int32_t count = 0;
  const int32_t most = NuvGetMostInHistogram(bins.data(), &count);
  std::printf("pixels              %d\n", pixels);
  std::printf("mean, deviation     %.2f, %.2f\n", average, deviation);
  std::printf("median              %d\n", NuvGetMedianInHistogram(bins.data()));
  std::printf("most frequent       %d (%d pixels)\n", most, count);
  std::printf("1%% tails            %d, %d\n", NuvGetMinValueInHistogram(bins.data(), 0.01),
              NuvGetMaxValueInHistogram(bins.data(), 0.01));
}

Picture binarised(Picture& gray, int32_t threshold) {
  Picture result = blank_like(gray);
  NuvThreshold(gray.pixels.data(), gray.width, gray.height, threshold, result.pixels.data());
  return result;
}

Picture by_otsu(Picture& gray, const Options& /*options*/) {
  const int32_t threshold = otsu_threshold(gray);
  std::printf("Otsu's threshold    %d\n", threshold);
  return binarised(gray, threshold);
}

Picture by_ratio(Picture& gray, const Options& options) {
  Picture result = blank_like(gray);
  const int32_t threshold =
      NuvThresholdByRatio(gray.pixels.data(), gray.width, gray.height, options.ratio, result.pixels.data());
  std::printf("threshold for %.2f  %d\n", options.ratio, threshold);
  return result;
}

// Pixels are edges if their difference from the neighbours exceeds the noise of the difference image.
Picture by_difference(Picture& gray, const Options& /*options*/) {
  Picture difference = blank_like(gray);
  NuvRobert(gray.pixels.data(), gray.width, gray.height, difference.pixels.data());
  Histogram bins = histogram_of(difference);
  const int32_t threshold = NuvGetDifImgThreshold(bins.data());
  std::printf("noise of difference %d\n", threshold);
  return binarised(difference, threshold);
}

// Sets each pixel to the centre of its cluster.
Picture by_clusters(Picture& gray, const Options& options) {
  // The library adds all pixels to its 32-bit sums in each pass. This number leaves room for 400 passes, and
  // the eps below takes fewer.
  constexpr int32_t kMostPixels = 20000;
  Histogram bins = scaled_down(histogram_of(gray), kMostPixels);
  const auto occupied =
      static_cast<int32_t>(std::count_if(bins.begin(), bins.end(), [](int32_t n) { return n != 0; }));
  std::vector<double> centres(static_cast<std::size_t>(options.clusters));
  NuvClusterHistogram(bins.data(), options.clusters, 0.001, centres.data());
  centres.resize(static_cast<std::size_t>(std::min(options.clusters, occupied)));
  std::sort(centres.begin(), centres.end());
  std::printf("cluster centres    ");
  for (double centre : centres) std::printf(" %.1f", centre);
  std::printf("\n");
  Picture result = blank_like(gray);
  std::transform(gray.pixels.begin(), gray.pixels.end(), result.pixels.begin(), [&centres](uint8_t value) {
    return static_cast<uint8_t>(*std::min_element(
        centres.begin(), centres.end(),
        [value](double a, double b) { return std::fabs(a - value) < std::fabs(b - value); }));
  });
  return result;
}

// Draws the histogram and turns it over, because the bars of the library hang from the top row.
Picture picture_of(Histogram bins) {
  Picture picture{512, 200, 1, std::vector<uint8_t>(512 * 200)};
  NuvDrawHistogram2Img(bins.data(), 256, picture.pixels.data(), picture.width, picture.height);
  for (int32_t y = 0; y < picture.height / 2; ++y) {
    std::swap_ranges(picture.pixels.begin() + y * picture.width,
                     picture.pixels.begin() + (y + 1) * picture.width,
                     picture.pixels.begin() + (picture.height - 1 - y) * picture.width);
  }
  return picture;
}

void run(Options options) {
  Picture picture = read_picture(options.picture);
  Picture gray = to_gray(picture);
  const std::string name = std::filesystem::path(options.picture).stem().string();
  if (options.result.empty()) options.result = name + "_" + options.method + ".bmp";
  if (options.histogram.empty()) options.histogram = name + "_histogram.bmp";
  check_result(options.picture, options.result);
  check_result(options.picture, options.histogram);

  print_numbers(histogram_of(gray));
  Picture result = options.method == "otsu"         ? by_otsu(gray, options)
                   : options.method == "ratio"      ? by_ratio(gray, options)
                   : options.method == "difference" ? by_difference(gray, options)
                                                    : by_clusters(gray, options);
  Picture histogram = picture_of(histogram_of(gray));
  write_picture(result, options.result);
  write_picture(histogram, options.histogram);
  std::printf("written             %s, %s\n", options.result.c_str(), options.histogram.c_str());
}

}  // namespace

int main(int argc, char** argv) try {
  Options options;
  CLI::App app("Picks a gray threshold of a photograph, applies it, and shows the histogram.");
  app.add_option("picture", options.picture, "BMP file of 8 or 24 bits per pixel")->required();
  app.add_option("result", options.result,
                 "BMP file to write (default: PICTURE_METHOD.bmp in the current directory)");
  app.add_option("--histogram", options.histogram,
                 "BMP file for the histogram (default: PICTURE_histogram.bmp in the current directory)");
  app.add_option("-m,--method", options.method,
                 "otsu: two classes; ratio: the brightest share; difference: steps above the noise; kmeans: "
                 "clusters of gray values")
      ->capture_default_str()
      ->check(CLI::IsMember({"otsu", "ratio", "difference", "kmeans"}));
  app.add_option("-r,--ratio", options.ratio, "share of the pixels that become white, for ratio")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 1.0));
  app.add_option("-k,--clusters", options.clusters, "number of clusters, for kmeans")
      ->capture_default_str()
      ->check(CLI::Range(2, 256));
  CLI11_PARSE(app, argc, argv);
  run(options);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "threshold: %s\n", error.what());
  return 1;
}

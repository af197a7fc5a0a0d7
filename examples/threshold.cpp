// Chooses a gray threshold for photographs and applies it.
//
// There are four methods, each based on a histogram: Otsu's threshold, a share of the pixels, the noise of a
// difference image, and clusters of gray values.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "host.h"
#include "marks.h"
#include "picture.h"

namespace {

struct Options {
  std::string method = "otsu";
  double ratio = 0.3;
  int32_t clusters = 3;
};

// A binarised or clustered picture, with the levels that were chosen and the histogram that they stem from.
struct Result {
  Picture picture;
  Histogram bins{};
  std::vector<double> levels;
  std::string says;
};

Picture binarised(Picture& gray, int32_t threshold) {
  Picture result = blank_like(gray);
  NuvThreshold(gray.pixels.data(), gray.width, gray.height, threshold, result.pixels.data());
  return result;
}

Result by_otsu(Picture& gray, const Options& /*options*/) {
  const int32_t threshold = otsu_threshold(gray);
  return {binarised(gray, threshold),
          histogram_of(gray),
          {double(threshold)},
          "pixels from the threshold on are white"};
}

Result by_ratio(Picture& gray, const Options& options) {
  Picture result = blank_like(gray);
  const int32_t threshold =
      NuvThresholdByRatio(gray.pixels.data(), gray.width, gray.height, options.ratio, result.pixels.data());
  return {result,
          histogram_of(gray),
          {double(threshold)},
          "about " + text_of(100 * options.ratio, 1) + " % of the pixels are white"};
}

// Pixels are edges if their difference from the neighbours exceeds the noise of the difference image.
Result by_difference(Picture& gray, const Options& /*options*/) {
  Picture difference = blank_like(gray);
  NuvRobert(gray.pixels.data(), gray.width, gray.height, difference.pixels.data());
  Histogram bins = histogram_of(difference);
  const int32_t threshold = NuvGetDifImgThreshold(bins.data());
  return {binarised(difference, threshold),
          bins,
          {double(threshold)},
          "threshold and histogram are those of the differences between neighbours"};
}

// Sets each pixel to the centre of its cluster.
Result by_clusters(Picture& gray, const Options& options) {
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
  Picture result = blank_like(gray);
  std::transform(gray.pixels.begin(), gray.pixels.end(), result.pixels.begin(), [&centres](uint8_t value) {
    return static_cast<uint8_t>(*std::min_element(
        centres.begin(), centres.end(),
        [value](double a, double b) { return std::fabs(a - value) < std::fabs(b - value); }));
  });
  std::string says = "each pixel has the level of its cluster";
  if (occupied < options.clusters) says += "; the picture has only " + std::to_string(occupied) + " levels";
  return {result, histogram_of(gray), centres, says};
}

// The number of pixels at the top of the axis. Up to four bins that are far taller than the others are cut
// off, so that they do not flatten the rest.
int32_t top_of_axis(const Histogram& bins) {
  Histogram sorted = bins;
  std::sort(sorted.rbegin(), sorted.rend());
  constexpr std::size_t kTall = 4;
  const double usual = 1.25 * sorted[kTall];
  return sorted[kTall] > 0 && sorted[0] > 2 * usual ? static_cast<int32_t>(usual) : std::max(sorted[0], 1);
}

// Draws the histogram with its axes, and a line with its value for each chosen level.
Picture picture_of(const Histogram& bins, const std::vector<double>& levels) {
  constexpr Colour kBar = {150, 110, 70};
  constexpr Colour kAxis = {90, 90, 90};
  constexpr Colour kCutBar = {120, 180, 240};
  constexpr Colour kMark = {40, 40, 220};
  constexpr int32_t kLeft = 90;
  constexpr int32_t kTop = 40;
  constexpr int32_t kBarWidth = 3;
  constexpr int32_t kHeight = 300;
  constexpr int32_t kBottom = kTop + kHeight;
  constexpr int32_t kRight = kLeft + 256 * kBarWidth;
  Picture page = blank(kRight + 30, kBottom + 40, 3, 255);
  const int32_t top = top_of_axis(bins);
  const auto column = [](double level) { return kLeft + (level + 0.5) * kBarWidth; };
  for (int32_t level = 0; level < 256; ++level) {
    const int32_t count = bins[static_cast<std::size_t>(level)];
    if (count == 0) continue;
    const int64_t height = std::max<int64_t>(int64_t{std::min(count, top)} * kHeight / top, 1);
    const Colour colour = count > top ? kCutBar : kBar;
    const int32_t x = kLeft + level * kBarWidth;
    NuvFillRGBRect(page.pixels.data(), page.width, page.height, x, x + kBarWidth - 1,
                   kBottom - static_cast<int32_t>(height), kBottom - 1, colour.r, colour.g, colour.b);
  }

  Marks marks(page, 1.0, kWhite);
  marks.line({kLeft, kBottom}, {kRight, kBottom}, kAxis);
  marks.line({kLeft, kTop}, {kLeft, kBottom}, kAxis);
  for (const int32_t level : {0, 32, 64, 96, 128, 160, 192, 224, 255}) {
    marks.line({column(level), kBottom}, {column(level), kBottom + 6}, kAxis);
    marks.text({column(level), kBottom + 18}, std::to_string(level), kAxis);
  }
  for (const int32_t quarter : {0, 1, 2, 3, 4}) {
    const double y = kBottom - quarter * kHeight / 4.0;
    const std::string count = std::to_string(static_cast<int64_t>(std::lround(top * (quarter / 4.0))));
    marks.line({kLeft - 6, y}, {kLeft, y}, kAxis);
    marks.text({kLeft - 12 - marks.size_of(count).x / 2, y}, count, kAxis);
  }
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const std::string value = text_of(levels[i], levels.size() == 1 ? 0 : 1);
    const double x = column(levels[i]);
    marks.line({x, kTop - 6}, {x, kBottom}, kMark, 1.2);
    marks.label({x, kTop - 16, x, kTop - 16}, value, kMark);
  }
  marks.place_labels();
  return marks.drawing();
}

// The numbers of the gray picture. A median or a tail of the library is that of the histogram.
std::vector<Value> numbers_of(Histogram bins) {
  double average = 0;
  double deviation = 0;
  const int32_t pixels = NuvGetImageAvrAndDev(bins.data(), &average, &deviation);
  int32_t count = 0;
  const int32_t most = NuvGetMostInHistogram(bins.data(), &count);
  return {pixels,
          average,
          deviation,
          NuvGetMedianInHistogram(bins.data()),
          most,
          count,
          NuvGetMinValueInHistogram(bins.data(), 0.01),
          NuvGetMaxValueInHistogram(bins.data(), 0.01)};
}

Report work(const Job& job, const Options& options) {
  Picture picture = read_picture(job.input);
  Picture gray = to_gray(picture);
  const Result result = options.method == "otsu"         ? by_otsu(gray, options)
                        : options.method == "ratio"      ? by_ratio(gray, options)
                        : options.method == "difference" ? by_difference(gray, options)
                                                         : by_clusters(gray, options);
  write_picture(result.picture, job.results[0]);
  write_picture(picture_of(result.bins, result.levels), job.results[1]);

  Report report;
  report.numbers = numbers_of(histogram_of(gray));
  report.numbers.emplace_back(options.method);
  const bool is_threshold = options.method != "kmeans";
  std::string centres;
  for (const double level : result.levels) centres += (centres.empty() ? "" : " ") + text_of(level, 1);
  report.numbers.push_back(is_threshold ? Value(static_cast<int64_t>(result.levels[0])) : Value());
  report.numbers.push_back(is_threshold ? Value() : Value(centres));
  report.conclusion = result.says + "\nwritten to " + job.results[0] + " and " + job.results[1];
  return report;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  plan.name = "threshold";
  plan.purpose = "Picks a gray threshold of photographs, applies it, and draws the histogram.";
  plan.results = {
      {"-o,--output", "_METHOD", kPictureEndings, "picture to write: the result of the threshold"},
      {"--histogram", "_histogram", kPictureEndings,
       "picture to write: the histogram with axes and the threshold; bars that are cut off are light"}};
  plan.numbers = {{"pixels", "number of pixels"},
                  {"mean", "mean gray value", 2},
                  {"deviation", "standard deviation of the gray values", 2},
                  {"median", "median gray value"},
                  {"most_frequent", "the most frequent gray value"},
                  {"most_frequent_pixels", "number of pixels of that level"},
                  {"low_tail", "gray value up to which 1 % of the pixels lie"},
                  {"high_tail", "gray value from which 1 % of the pixels lie"},
                  {"method", "as chosen by --method"},
                  {"threshold", "gray value from which pixels are white; none for kmeans"},
                  {"centres", "gray values of the clusters, for kmeans"}};
  Host host(plan);
  Options options;
  host.choice("-m,--method", options.method,
              "otsu: two classes; ratio: the brightest share; difference: steps above the noise; kmeans: "
              "clusters of gray values",
              {"otsu", "ratio", "difference", "kmeans"});
  host.number("-r,--ratio", options.ratio, "share of the pixels that become white, for ratio", 0.0, 1.0);
  host.number("-k,--clusters", options.clusters, "number of clusters, for kmeans", 2, 256);
  host.check([&] { host.plan().results[0].suffix = "_" + options.method; });
  return host.run(argc, argv, [&options](const Job& job) { return work(job, options); });
}

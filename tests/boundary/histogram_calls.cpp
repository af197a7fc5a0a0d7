#include <cstdlib>

#include "boundary/calls.h"

namespace {

// Two humps of counts with holes in them, and empty bins between and beside them. In a hostile scene the
// counts are any numbers, and the humps may cover two bins, none or all.
template <class Size>
auto humps(Size size) {
  return [=](Scene& s) {
    const auto n = static_cast<int32_t>(size(s));
    const int32_t reach = s.hostile ? s.one_of({0, 1, n / 6, n + 1}) : s.between(n / 24 + 1, n / 5 + 1);
    const int32_t left = s.between(0, n * 2 / 5);
    const int32_t right = s.between(n * 3 / 5, n);
    int32_t* bins = s.integers(size(s), 0, 12);
    for (int32_t v = 0; v < n; ++v) {
      const int32_t rise = reach - std::min(std::abs(v - left), std::abs(v - right));
      if (rise <= 0) bins[v] = 0;
      if (bins[v] != 0 && !s.hostile) bins[v] += rise;
    }
    return bins;
  };
}

int32_t* two_humps(Scene& s) {
  return humps(calls::levels)(s);
}

// A few occupied bins, with many gaps between them.
int32_t* scattered_histogram(Scene& s) {
  int32_t* bins = s.integers(256, s.between(-400, -40), 20);
  for (int32_t v = 0; v < 256 && !s.hostile; ++v) bins[v] = std::max(bins[v], 0);
  return bins;
}

// A histogram whose sum is the number of pixels, as it should be. In a hostile scene it mostly is not.
int32_t* target_histogram(Scene& s) {
  if (s.hostile && s.between(0, 2) != 0) return two_humps(s);
  int32_t* bins = s.memory<int32_t>(256);
  std::fill_n(bins, 256, 0);
  const int32_t lowest = s.between(0, 120);
  for (std::size_t i = 0; i < s.pixels(); ++i) ++bins[s.between(lowest, lowest + 135)];
  return bins;
}

// Limits of each row. They lie beyond the image only if they exclude the whole row.
int32_t* left_limits(Scene& s) {
  int32_t* limits = s.integers(calls::rows(s), 0, std::max(s.width / 2, 0));
  for (int32_t y = 0; y < s.height; ++y) limits[y] = std::max(limits[y], 0);
  return limits;
}
int32_t* right_limits(Scene& s) {
  const int32_t width = std::max(s.width, 0);
  int32_t* limits = s.integers(calls::rows(s), width / 4, width);
  for (int32_t y = 0; y < s.height; ++y) limits[y] = std::min(limits[y], width);
  return limits;
}

// The number of pixels if every M-th pixel of every M-th row is taken.
std::size_t shrunk(const Scene& s) {
  const std::size_t step = Scene::length(std::max(s.M, 1));
  return (calls::columns(s) + step - 1) / step * ((calls::rows(s) + step - 1) / step);
}

std::size_t result_columns(const Scene& s) {
  return Scene::length(s.result_width);
}
std::size_t result_rows(const Scene& s) {
  return Scene::length(s.result_height);
}

}  // namespace

Calls histogram_calls() {
  using namespace calls;
  const auto T = integer(60, 200);
  const auto ratio = real(0, 1);
  const auto data = integers(counted, -100, 100);
  const auto data_or_one = integers(counted_or_one, -100, 100);
  const auto real_data = reals(counted, -100, 100);
  const auto data_result = integers(counted, -9, 9);
  const auto columns_result = integers(columns, -9, 9);
  const auto rows_result = integers(rows, -9, 9);
  const auto window = integer(1, 6);
  return {
      // Capture
      EXPORT(NuvGetHistogram, gray, width, height, histogram_result),
      EXPORT(NuvGetHistogramInRect, gray, width, inner_x1, inner_x2, inner_y1, inner_y2, histogram_result),
      EXPORT(NuvGetHistogramByMasked, gray, binary, width, inner_x1, inner_x2, inner_y1, inner_y2,
             histogram_result),
      EXPORT(NuvGetHistogramByLimited, gray, width, inner_y1, inner_y2, left_limits, right_limits,
             histogram_result),

      // Moments
      EXPORT(NuvGetImageAvrAndDev, two_humps, real_result, real_result),
      EXPORT(NuvGetImageAvrAndDev, gray, width, height, real_result, real_result),
      EXPORT(NuvGetImageAvrAndDevFast, two_humps, real_result, real_result),
      EXPORT(NuvGetImageAvrAndDif, two_humps, integer_result, integer_result),
      EXPORT(NuvGetImageAvrAndDevAndDif, two_humps, real_result, real_result, real_result),

      // Order statistics
      EXPORT(NuvGetMedianInHistogram, two_humps),
      EXPORT(NuvGetMostInHistogram, two_humps, integer_result),
      EXPORT(NuvGetMinValueInHistogram, two_humps, ratio),
      EXPORT(NuvGetMaxValueInHistogram, two_humps, ratio),
      EXPORT(NuvGetPeakInHistogram, two_humps),

      // Threshold selection
      EXPORT(NuvGetOtsuThreshold, humps(counted), count),
      EXPORT(NuvGetThresholdByRatio, two_humps, ratio),
      EXPORT(NuvGetThresholdLimit, two_humps, real(0, 3), integer_result, integer_result),
      EXPORT(NuvGetDifImgThreshold, two_humps),
      EXPORT(NuvGetDifImgThreshold, two_humps, integer(0, 9), integer(100, 250), integer_result),
      EXPORT_BY(NuvClusterHistogram, bool, (int32_t*, int32_t, double, double*),
                [](Scene& s, auto function) {
                  int32_t* bins = two_humps(s);
                  const auto occupied = static_cast<int32_t>(256 - std::count(bins, bins + 256, 0));
                  const int32_t clusters = s.integer(2, 8);
                  const double eps = std::max(1e-4, s.real(0.001, 0.1));  // smaller values take long
                  double* centres = s.reals(Scene::length(std::min(clusters, occupied)), -9, 9);
                  calls::run(s, function, bins, clusters, eps, centres);
                }),

      // Binarising
      EXPORT(NuvThreshold, gray, width, height, T),
      EXPORT(NuvThreshold, gray, width, height, T, gray_result),
      EXPORT(NuvThreshold2V1V2, gray, width, height, T, color, color),
      EXPORT(NuvThresholdInRect, gray, width, inner_x1, inner_x2, inner_y1, inner_y2, T),
      EXPORT(NuvThresholdInRect, gray, width, inner_x1, inner_x2, inner_y1, inner_y2, T, gray_result),
      EXPORT(NuvThresholdAndShrink, gray, width, height, T, M, bytes(shrunk), integer_result, integer_result),
      EXPORT(NuvThresholdByPercent, gray, width, height, integer(0, 100)),
      EXPORT(NuvThresholdByRatio, gray, width, height, ratio),
      EXPORT(NuvThresholdByRatio, gray, width, height, ratio, gray_result),
      EXPORT(NuvThresholdByRatio, gray, width, inner_x1, inner_x2, inner_y1, inner_y2, ratio),
      EXPORT(NuvThresholdByRatio, gray, width, inner_x1, inner_x2, inner_y1, inner_y2, ratio, T, gray_result),
      EXPORT(NuvThresholdByRatioAndMiniT, gray, width, height, ratio, T),

      // Analysis and shaping
      EXPORT(NuvHistogramGaussianSmooth, two_humps, integer(0, 9), real(0.5, 4), real(0.001, 0.2),
             histogram_result),
      EXPORT(NuvHistogramAverageSmooth, two_humps, M, histogram_result),
      EXPORT(NuvSetPeakTo100ValleyTo_100, integers(counted, 0, 4), count, data_result),
      EXPORT(NuvFindTwoPeaks, two_humps, integer(1, 120), integer_result, integer_result),
      EXPORT(NuvHistogramOrder, two_humps, histogram_result),
      EXPORT(NuvHistogramEqualizeFast, gray, width, height),
      EXPORT(NuvHistogramEqualizeStandard, gray, width, height),
      EXPORT(NuvHistogramNormalization, gray, width, height, target_histogram),
      EXPORT(NuvDrawHistogram2Img, humps(counted), count, gray_result, width, height),
      EXPORT(NuvIsHighContrastImg, two_humps, T, M, integer(1, 120), ratio, integer_result, integer_result,
             real_result),
      EXPORT_BY(NuvGenerateMainGryLUT, int32_t, (int32_t*, int32_t, int32_t, int32_t*),
                [](Scene& s, auto function) {
                  int32_t* bins = s.between(0, 1) == 0 ? two_humps(s) : scattered_histogram(s);
                  const int32_t min_step = s.integer(1, 6);
                  // The room that the table needs grows with max_step.
                  const int32_t max_step = std::min(s.integer(6, 16), 65537);
                  int32_t* table = s.integers(255 + Scene::length(std::max(max_step, 1)), -9, 9);
                  calls::run(s, function, bins, min_step, max_step, table);
                }),

      // Data series
      EXPORT(Nuv1DAverageFilter, data, count, M, data_result),
      EXPORT(NuvBin1DMedianFilter, integers(counted, 0, 1), count, M, data_result),
      EXPORT(NuvDataLinearInterpolattion, data, count, integers(result_columns, -9, 9), result_width),
      EXPORT(NuvDataMaxDataPos, data, count),
      EXPORT(NuvDataMaxDataValue, data_or_one, count),
      EXPORT(NuvDataAvrAndDif, data, count, real_result, real_result),
      EXPORT(NuvDataAvrAndDevAndReturnMax, data_or_one, count, real_result, real_result),
      EXPORT(NuvDataAvrAndDevAndReturnSum, data, count, real_result, real_result),
      EXPORT(NuvDataMaxAvrAndPosInMovingWindow, data, count, window, real_result, integer_result),
      EXPORT(NuvDataMaxDevAndPosInMovingWindow, real_data, count, window, real_result, integer_result),
      EXPORT(NuvDataMaxDifAndPosInMovingWindow, real_data, count, window, real_result, integer_result),
      EXPORT(NuvpDataDeleteByWeightReturnNum, data, data, count, integer(-80, -20), integer(20, 80)),
      EXPORT(NuvDataFindPeaks, real_data, count, integer(0, 4), reals(result_rows, -9, 9),
             integers(result_rows, -9, 9), result_height),

      // Profiles
      EXPORT(NuvGryImgColDev100, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2, columns_result),
      EXPORT(NuvGryImgRowDev100, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2, rows_result),
      EXPORT(NuvGryImgColDevDev, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2, columns_result),
      EXPORT(NuvGryImgRowDevDev, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2, rows_result),
      EXPORT(NuvGryImgColsDev100, gray, width, height, integer(1, 9), columns_result),
      EXPORT(NuvGryImgSobel90JustToPrjX, gray, width, height, columns_result),
      EXPORT(NuvGryImgSobel90JustToPrjY, gray, width, height, rows_result),
      EXPORT(NuvRGBImgPrj2X, rgb, width, height, columns_result, columns_result, columns_result),
      EXPORT(NuvRGBImgPrj2X, rgb, width, height, columns_result),
      EXPORT(NuvGryImgPrjXY, gray, width, height, columns_result, rows_result),
      EXPORT(NuvGryImgPrjXYInRect, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2,
             columns_result, rows_result),
      EXPORT(NuvBinImgPrjXYInRect, binary, width, height, inner_x1, inner_x2, inner_y1, inner_y2,
             columns_result, rows_result),
  };
}

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"
#include "vips_work.h"

namespace {

// Calls filter(source, width, height, result) over and over.
template <class Filter>
auto filter_work(BenchPicture picture, Filter filter) {
  return [=, result = picture]() mutable {
    filter(picture.data(), picture.width, picture.height, result.data());
  };
}

// ---- box means, 11 by 11 ----

constexpr int32_t kHalf = 5;
using Box = bool (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, uint8_t*);
using Line = void (*)(uint8_t*, int32_t, int32_t, int32_t, uint8_t*);

auto box_work(BenchPicture picture, Box box) {
  return filter_work(std::move(picture), [=](uint8_t* p, int32_t width, int32_t height, uint8_t* result) {
    box(p, width, height, kHalf, kHalf, result);
  });
}
auto line_work(Line line) {
  return filter_work(gray_picture(), [=](uint8_t* p, int32_t width, int32_t height, uint8_t* result) {
    line(p, width, height, kHalf, result);
  });
}

const Row box_shrinking("NuvGryAverageFilterFast/nuv",
                        [] { return box_work(gray_picture(), NuvGryAverageFilterFast); });
const Row box_replicating("NuvGryAverageFilterFastNonBoundary/nuv",
                          [] { return box_work(gray_picture(), NuvGryAverageFilterFastNonBoundary); });
const Row box_rgb("NuvRGBAverageFilterFast/nuv",
                  [] { return box_work(colour_picture(), NuvRGBAverageFilterFast); });
const Row box_by_x("NuvGryAverageFilterByX/nuv", [] { return line_work(NuvGryAverageFilterByX); });
const Row box_by_y("NuvGryAverageFilterByY/nuv", [] { return line_work(NuvGryAverageFilterByY); });

// ---- extremes and medians ----

using Median = void (*)(uint8_t*, int32_t, int32_t, int32_t, int32_t, uint8_t*);

auto median_work(Median median, int32_t half) {
  return filter_work(gray_picture(), [=](uint8_t* p, int32_t width, int32_t height, uint8_t* result) {
    median(p, width, height, half, half, result);
  });
}

const Row max_in_row("NuvGryImgMaxFilter5xInRow/nuv",
                     [] { return filter_work(gray_picture(), NuvGryImgMaxFilter5xInRow); });
const Row max_in_col("NuvGryImgMaxFilter5xInCol/nuv",
                     [] { return filter_work(gray_picture(), NuvGryImgMaxFilter5xInCol); });
const Row median_zero_3("NuvGryImgMedianBoundary0 3x3/nuv",
                        [] { return median_work(NuvGryImgMedianBoundary0, 1); });
const Row median_zero_5("NuvGryImgMedianBoundary0 5x5/nuv",
                        [] { return median_work(NuvGryImgMedianBoundary0, 2); });
const Row median_zero_15("NuvGryImgMedianBoundary0 15x15/nuv",
                         [] { return median_work(NuvGryImgMedianBoundary0, 7); });
const Row median_zero_63("NuvGryImgMedianBoundary0 63x63/nuv",
                         [] { return median_work(NuvGryImgMedianBoundary0, 31); });
// The fast median reads one row below the picture, so the picture is one row higher.
auto fast_median_work(int32_t half) {
  return [=, picture = gray_picture(1280, 961), result = gray_picture()]() mutable {
    NuvGryFastMedianFilter(picture.data(), 1280, 960, half, half, result.data());
  };
}
const Row fast_median_3("NuvGryFastMedianFilter 3x3/nuv", [] { return fast_median_work(1); });
const Row fast_median_5("NuvGryFastMedianFilter 5x5/nuv", [] { return fast_median_work(2); });
const Row fast_median_15("NuvGryFastMedianFilter 15x15/nuv", [] { return fast_median_work(7); });

// ---- noise ----

const Row noise("NuvEstimateNoiseDelta/nuv", [] {
  return filter_work(gray_picture(), [](uint8_t* p, int32_t width, int32_t height, uint8_t* result) {
    benchmark::DoNotOptimize(NuvEstimateNoiseDelta(p, width, height, result));
  });
});
const Row noise_plain("NuvEstimateNoiseDelta/plain", [] {
  return filter_work(gray_picture(), [](const uint8_t* p, int32_t width, int32_t height, uint8_t* result) {
    uint32_t sum = 0;
    for (int32_t y = 1; y < height - 1; ++y) {
      for (int32_t x = 1; x < width - 1; ++x) {
        const uint8_t* q = p + y * width + x;
        const int d = q[-width - 1] - 2 * q[-width] + q[-width + 1] - 2 * q[-1] + 4 * q[0] - 2 * q[1] +
                      q[width - 1] - 2 * q[width] + q[width + 1];
        const int e = d * d;
        sum += static_cast<uint32_t>(e);
        result[q - p] = static_cast<uint8_t>(std::min(e / 36, 250));
      }
    }
    benchmark::DoNotOptimize(std::sqrt(sum / (36.0 * (width - 2) * (height - 2))));
  });
});

constexpr int32_t kNoise = 12;

const Row zed("NuvGryZedFilter/nuv", [] {
  return filter_work(gray_picture(), [](uint8_t* p, int32_t width, int32_t height, uint8_t* result) {
    NuvGryZedFilter(p, width, height, kNoise, result);
  });
});
const Row zed_plain("NuvGryZedFilter/plain", [] {
  return filter_work(gray_picture(), [](const uint8_t* p, int32_t width, int32_t height, uint8_t* result) {
    for (int32_t y = 1; y < height - 1; ++y) {
      for (int32_t x = 1; x < width - 1; ++x) {
        const uint8_t* q = p + y * width + x;
        int sum = 0;
        for (int32_t dy = -1; dy <= 1; ++dy) {
          for (int32_t dx = -1; dx <= 1; ++dx) {
            const int d = q[dy * width + dx] - q[0];
            const int a = std::abs(d);
            if (a <= kNoise) {
              sum += d;
            } else if (a <= 3 * kNoise) {
              sum += d > 0 ? 3 * kNoise - a : a - 3 * kNoise;
            }
          }
        }
        result[q - p] = static_cast<uint8_t>(q[0] + (sum >> 3));
      }
    }
  });
});

#if NUV_WITH_OPENCV
auto blur_work(BenchPicture picture, cv::Size window) {
  return [=, result = cv::Mat()]() mutable { cv::blur(picture.mat(), result, window); };
}
const Row blur_shrinking("NuvGryAverageFilterFast/opencv blur", [] {
  return blur_work(gray_picture(), {11, 11});
});
const Row blur_replicating("NuvGryAverageFilterFastNonBoundary/opencv blur", [] {
  return blur_work(gray_picture(), {11, 11});
});
const Row blur_rgb("NuvRGBAverageFilterFast/opencv blur", [] {
  return blur_work(colour_picture(), {11, 11});
});
const Row blur_by_x("NuvGryAverageFilterByX/opencv blur", [] { return blur_work(gray_picture(), {11, 1}); });
const Row blur_by_y("NuvGryAverageFilterByY/opencv blur", [] { return blur_work(gray_picture(), {1, 11}); });

auto dilate_work(cv::Size window) {
  return [=, picture = gray_picture(), result = cv::Mat()]() mutable {
    cv::dilate(picture.mat(), result, cv::Mat::ones(window, CV_8U));
  };
}
const Row dilate_row("NuvGryImgMaxFilter5xInRow/opencv dilate", [] { return dilate_work({5, 1}); });
const Row dilate_col("NuvGryImgMaxFilter5xInCol/opencv dilate", [] { return dilate_work({1, 5}); });

auto median_blur_work(int window) {
  return [=, picture = gray_picture(), result = cv::Mat()]() mutable {
    cv::medianBlur(picture.mat(), result, window);
  };
}
const Row median_blur_3("NuvGryImgMedianBoundary0 3x3/opencv medianBlur", [] { return median_blur_work(3); });
const Row median_blur_5("NuvGryImgMedianBoundary0 5x5/opencv medianBlur", [] { return median_blur_work(5); });
const Row median_blur_15("NuvGryImgMedianBoundary0 15x15/opencv medianBlur",
                         [] { return median_blur_work(15); });
const Row median_blur_63("NuvGryImgMedianBoundary0 63x63/opencv medianBlur",
                         [] { return median_blur_work(63); });
const Row fast_blur_3("NuvGryFastMedianFilter 3x3/opencv medianBlur", [] { return median_blur_work(3); });
const Row fast_blur_5("NuvGryFastMedianFilter 5x5/opencv medianBlur", [] { return median_blur_work(5); });
const Row fast_blur_15("NuvGryFastMedianFilter 15x15/opencv medianBlur", [] { return median_blur_work(15); });

// Computes the responses, their energies and the sum of the energies.
const Row energies("NuvEstimateNoiseDelta/opencv filter2D + multiply + norm", [] {
  const cv::Mat mask = (cv::Mat_<float>(3, 3) << 1, -2, 1, -2, 4, -2, 1, -2, 1);
  return [=, picture = gray_picture(), response = cv::Mat(), result = cv::Mat()]() mutable {
    cv::filter2D(picture.mat(), response, CV_16S, mask);
    cv::multiply(response, response, result, 1.0 / 36, CV_8U);
    benchmark::DoNotOptimize(cv::norm(response, cv::NORM_L2SQR));
  };
});
#endif

#if NUV_WITH_VIPS
// The peer rounds after each direction, so its means differ by a few gray values.
const VipsRow vips_box("NuvGryAverageFilterFastNonBoundary/vips convsep", [] {
  constexpr int kSize = 2 * kHalf + 1;
  VipsImage* mask = vips_image_new_matrix(kSize, 1);
  for (int x = 0; x < kSize; ++x) *VIPS_MATRIX(mask, x, 0) = 1;
  vips_image_set_double(mask, "scale", kSize);
  return vips_work(gray_picture(), [mask](VipsImage* image, VipsImage** result) {
    return vips_convsep(image, result, mask, "precision", VIPS_PRECISION_INTEGER, nullptr);
  });
});

auto vips_median_work(int window) {
  return vips_work(gray_picture(), [=](VipsImage* image, VipsImage** result) {
    return vips_median(image, result, window, nullptr);
  });
}
const VipsRow vips_median_3("NuvGryFastMedianFilter 3x3/vips median", [] { return vips_median_work(3); });
const VipsRow vips_median_15("NuvGryFastMedianFilter 15x15/vips median", [] { return vips_median_work(15); });
#endif

}  // namespace

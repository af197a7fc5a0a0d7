#include <cmath>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"
#include "vips_work.h"

namespace {

const Row get_histogram("NuvGetHistogram/nuv", [] {
  return [picture = gray_picture(), bins = std::vector<int32_t>(256)]() mutable {
    NuvGetHistogram(picture.data(), picture.width, picture.height, bins.data());
  };
});

const Row threshold("NuvThreshold/nuv", [] {
  return [picture = gray_picture(), result = gray_picture()]() mutable {
    NuvThreshold(picture.data(), picture.width, picture.height, 128, result.data());
  };
});
const Row threshold_copy("NuvThreshold/copy", [] { return copy_of_bytes(1280 * 960); });

const Row threshold_by_ratio("NuvThresholdByRatio/nuv", [] {
  return [picture = gray_picture(), result = gray_picture()]() mutable {
    NuvThresholdByRatio(picture.data(), picture.width, picture.height, 0.3, result.data());
  };
});

const Row equalize("NuvHistogramEqualizeFast/nuv", [] {
  return [picture = gray_picture()]() mutable {
    NuvHistogramEqualizeFast(picture.data(), picture.width, picture.height);
  };
});

const Row project("NuvGryImgPrjXY/nuv", [] {
  return [picture = gray_picture(), columns = std::vector<int32_t>(1280),
          rows = std::vector<int32_t>(960)]() mutable {
    NuvGryImgPrjXY(picture.data(), picture.width, picture.height, columns.data(), rows.data());
  };
});

const Row masked_histogram("NuvGetHistogramByMasked/nuv", [] {
  return [picture = gray_picture(), mask = binary_picture(), bins = std::vector<int32_t>(256)]() mutable {
    NuvGetHistogramByMasked(picture.data(), mask.data(), picture.width, 0, picture.width - 1, 0,
                            picture.height - 1, bins.data());
  };
});

const Row mean_and_deviation("NuvGetImageAvrAndDev/nuv", [] {
  return [picture = gray_picture()]() mutable {
    double mean = 0;
    double deviation = 0;
    NuvGetImageAvrAndDev(picture.data(), picture.width, picture.height, &mean, &deviation);
    benchmark::DoNotOptimize(deviation);
  };
});

#if NUV_WITH_OPENCV
cv::Mat histogram_of(const cv::Mat& image, const cv::Mat& mask = cv::Mat()) {
  const int channel = 0;
  const int size = 256;
  const float range[] = {0, 256};
  const float* ranges = range;
  cv::Mat bins;
  cv::calcHist(&image, 1, &channel, mask, bins, 1, &size, &ranges);
  return bins;
}

const Row calc_hist("NuvGetHistogram/opencv calcHist",
                    [] { return [picture = gray_picture()]() mutable { histogram_of(picture.mat()); }; });

const Row calc_masked_hist("NuvGetHistogramByMasked/opencv calcHist", [] {
  return [picture = gray_picture(), mask = binary_picture()]() mutable {
    histogram_of(picture.mat(), mask.mat());
  };
});

// The library's deviation is a rounded sum of one term per gray value, so it needs the histogram. The peer does the
// same work.
const Row hist_mean_std_dev("NuvGetImageAvrAndDev/opencv calcHist + moments", [] {
  return [picture = gray_picture()]() mutable {
    const cv::Mat bins = histogram_of(picture.mat());
    double mean = 0;
    for (int v = 0; v < 256; ++v) mean += v * static_cast<double>(bins.at<float>(v));
    mean /= 1280 * 960;
    double squares = 0;
    for (int v = 0; v < 256; ++v) squares += (v - mean) * (v - mean) * static_cast<double>(bins.at<float>(v));
    benchmark::DoNotOptimize(std::sqrt(squares / (1280 * 960)));
  };
});

// Sums of pixels and of their squares need no histogram, but round differently.
const Row mean_std_dev("NuvGetImageAvrAndDev/opencv meanStdDev", [] {
  return [picture = gray_picture()]() mutable {
    cv::Scalar mean;
    cv::Scalar deviation;
    cv::meanStdDev(picture.mat(), mean, deviation);
    benchmark::DoNotOptimize(deviation[0]);
  };
});

const Row cv_threshold("NuvThreshold/opencv threshold", [] {
  return [picture = gray_picture(), result = cv::Mat()]() mutable {
    cv::threshold(picture.mat(), result, 127, 255, cv::THRESH_BINARY);
  };
});

// The peer needs two steps: it finds the threshold from the histogram, then applies it.
const Row cv_threshold_by_ratio("NuvThresholdByRatio/opencv calcHist, threshold", [] {
  return [picture = gray_picture(), result = cv::Mat()]() mutable {
    const cv::Mat bins = histogram_of(picture.mat());
    float count = 0;
    int t = 255;
    while (t > 0 && count <= 0.3F * 1280 * 960) count += bins.at<float>(t--);
    cv::threshold(picture.mat(), result, t, 255, cv::THRESH_BINARY);
  };
});

const Row equalize_hist("NuvHistogramEqualizeFast/opencv equalizeHist", [] {
  return [picture = gray_picture()]() mutable {
    cv::Mat image = picture.mat();
    cv::equalizeHist(image, image);
  };
});

const Row reduce("NuvGryImgPrjXY/opencv reduce", [] {
  return [picture = gray_picture(), columns = cv::Mat(), rows = cv::Mat()]() mutable {
    cv::reduce(picture.mat(), columns, 0, cv::REDUCE_SUM, CV_32S);
    cv::reduce(picture.mat(), rows, 1, cv::REDUCE_SUM, CV_32S);
  };
});
#endif

#if NUV_WITH_VIPS
const VipsRow vips_equalize("NuvHistogramEqualizeFast/vips hist_equal", [] {
  return vips_work(gray_picture(), [](VipsImage* image, VipsImage** result) {
    return vips_hist_equal(image, result, nullptr);
  });
});
#endif

}  // namespace

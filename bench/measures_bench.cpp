// Counts of pixels and measures of rows and columns.

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

// ---- the library ----

const Row count_pixels("NuvPixelsInGryImg/nuv", [] {
  return [picture = binary_picture()]() mutable {
    benchmark::DoNotOptimize(NuvPixelsInGryImg(picture.data(), picture.width, picture.height, 0));
  };
});
const Row count_white("NuvGetWhitePixelsNum/nuv", [] {
  return [picture = binary_picture()]() mutable {
    benchmark::DoNotOptimize(NuvGetWhitePixelsNum(picture.data(), picture.width, picture.height, 0,
                                                  picture.width - 1, 0, picture.height - 1));
  };
});
const Row black_ratio("NuvGetBlackRatioInBinaryImg/nuv", [] {
  return [picture = binary_picture()]() mutable {
    benchmark::DoNotOptimize(NuvGetBlackRatioInBinaryImg(picture.data(), picture.width, 0, picture.width - 1,
                                                         0, picture.height - 1));
  };
});
const Row centroid("NuvBinImgCentroid/nuv", [] {
  return [picture = binary_picture()]() mutable {
    int32_t x = 0;
    int32_t y = 0;
    benchmark::DoNotOptimize(NuvBinImgCentroid(picture.data(), picture.width, picture.height, &x, &y));
  };
});
const Row column_spreads("NuvGryImgColDev100/nuv", [] {
  return [picture = gray_picture(), spreads = std::vector<int32_t>(1280)]() mutable {
    NuvGryImgColDev100(picture.data(), picture.width, picture.height, 0, picture.width - 1, 0,
                       picture.height - 1, spreads.data());
  };
});
const Row row_spreads("NuvGryImgRowDev100/nuv", [] {
  return [picture = gray_picture(), spreads = std::vector<int32_t>(960)]() mutable {
    NuvGryImgRowDev100(picture.data(), picture.width, picture.height, 0, picture.width - 1, 0,
                       picture.height - 1, spreads.data());
  };
});
const Row sobel_columns("NuvGryImgSobel90JustToPrjX/nuv", [] {
  return [picture = gray_picture(), sums = std::vector<int32_t>(1280)]() mutable {
    NuvGryImgSobel90JustToPrjX(picture.data(), picture.width, picture.height, sums.data());
  };
});
const Row sobel_rows("NuvGryImgSobel90JustToPrjY/nuv", [] {
  return [picture = gray_picture(), sums = std::vector<int32_t>(960)]() mutable {
    NuvGryImgSobel90JustToPrjY(picture.data(), picture.width, picture.height, sums.data());
  };
});

#if NUV_WITH_OPENCV

// ---- the peer ----

auto count_non_zero() {
  return
      [picture = binary_picture()]() mutable { benchmark::DoNotOptimize(cv::countNonZero(picture.mat())); };
}
const Row cv_count_pixels("NuvPixelsInGryImg/opencv countNonZero", count_non_zero);
const Row cv_count_white("NuvGetWhitePixelsNum/opencv countNonZero", count_non_zero);
const Row cv_black_ratio("NuvGetBlackRatioInBinaryImg/opencv countNonZero", count_non_zero);
const Row cv_moments("NuvBinImgCentroid/opencv moments", [] {
  return
      [picture = binary_picture()]() mutable { benchmark::DoNotOptimize(cv::moments(picture.mat(), true)); };
});

const Row cv_row_spreads("NuvGryImgRowDev100/opencv meanStdDev", [] {
  return [picture = gray_picture(), spreads = std::vector<double>(960)]() mutable {
    const cv::Mat image = picture.mat();
    for (int y = 0; y < image.rows; ++y) {
      cv::Scalar mean;
      cv::Scalar deviation;
      cv::meanStdDev(image.row(y), mean, deviation);
      spreads[static_cast<std::size_t>(y)] = deviation[0];
    }
  };
});
// Adds up the values and their squares. 16 bits hold a square.
const Row cv_column_spreads("NuvGryImgColDev100/opencv reduce, multiply", [] {
  return [picture = gray_picture()]() mutable {
    const cv::Mat image = picture.mat();
    cv::Mat squares;
    cv::multiply(image, image, squares, 1, CV_16U);
    cv::Mat sums;
    cv::Mat square_sums;
    cv::reduce(image, sums, 0, cv::REDUCE_SUM, CV_32S);
    cv::reduce(squares, square_sums, 0, cv::REDUCE_SUM, CV_32F);
  };
});

// The strengths of the pixels whose edge is more vertical than horizontal.
cv::Mat vertical_strengths(const cv::Mat& image, bool with_rows) {
  cv::Mat x;
  cv::Mat y;
  cv::spatialGradient(image, x, y);
  x = cv::abs(x);
  y = cv::abs(y);
  cv::Mat is_vertical;
  cv::compare(y, x, is_vertical, cv::CMP_LT);
  cv::Mat strengths = cv::Mat::zeros(image.size(), CV_16S);
  if (with_rows) cv::add(x, y, x);
  x.copyTo(strengths, is_vertical);
  return strengths;
}
const Row cv_sobel_columns("NuvGryImgSobel90JustToPrjX/opencv spatialGradient, reduce", [] {
  return [picture = gray_picture()]() mutable {
    cv::Mat sums;
    cv::reduce(vertical_strengths(picture.mat(), true), sums, 0, cv::REDUCE_SUM, CV_32F);
  };
});
const Row cv_sobel_rows("NuvGryImgSobel90JustToPrjY/opencv spatialGradient, reduce", [] {
  return [picture = gray_picture()]() mutable {
    cv::Mat sums;
    cv::reduce(vertical_strengths(picture.mat(), false), sums, 1, cv::REDUCE_SUM, CV_32F);
  };
});

#endif

}  // namespace

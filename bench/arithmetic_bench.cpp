#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

constexpr std::size_t kPixels = 1280 * 960;

BenchPicture inverted_picture() {
  BenchPicture picture = gray_picture();
  NuvInvertGryValue(picture.data(), picture.width, picture.height);
  return picture;
}

const Row integral("NuvDoSumGryImg/nuv", [] {
  return [picture = gray_picture(), sums = LineVector<int32_t>(kPixels)]() mutable {
    NuvDoSumGryImg(picture.data(), picture.width, picture.height, sums.data());
  };
});

const Row difference("NuvDifferenceImg12/nuv", [] {
  return [a = gray_picture(), b = inverted_picture(), result = gray_picture()]() mutable {
    NuvDifferenceImg12(a.data(), b.data(), a.width, a.height, false, result.data());
  };
});

const Row subtract("NuvImg1SubstractImg2/nuv", [] {
  return [a = gray_picture(), b = inverted_picture(), result = gray_picture()]() mutable {
    NuvImg1SubstractImg2(a.data(), b.data(), a.width, a.height, false, result.data());
  };
});

const Row either("NuvImg1OrImg2ToRes/nuv", [] {
  return [a = gray_picture(), b = inverted_picture(), result = gray_picture()]() mutable {
    NuvImg1OrImg2ToRes(a.data(), b.data(), static_cast<int32_t>(kPixels), result.data());
  };
});

const Row most("NuvRemainMaxGry/nuv", [] {
  return [frame = gray_picture(), kept = inverted_picture()]() mutable {
    NuvRemainMaxGry(frame.data(), frame.width, frame.height, false, kept.data());
  };
});

const Row invert("NuvInvertGryValue/nuv", [] {
  return [picture = gray_picture(), result = gray_picture()]() mutable {
    NuvInvertGryValue(picture.data(), picture.width, picture.height, result.data());
  };
});

const Row average("NuvGryRectAvr/nuv", [] {
  return [picture = gray_picture()]() mutable {
    benchmark::DoNotOptimize(NuvGryRectAvr(picture.data(), picture.width, picture.height, 0,
                                           picture.width - 1, 0, picture.height - 1));
  };
});

// Functions of two pictures read two bytes and write one per pixel, 1.5 times as much as a copy moves.
const Row difference_copy("NuvDifferenceImg12/copy", [] { return copy_of_bytes(kPixels * 3 / 2); });
const Row subtract_copy("NuvImg1SubstractImg2/copy", [] { return copy_of_bytes(kPixels * 3 / 2); });
const Row either_copy("NuvImg1OrImg2ToRes/copy", [] { return copy_of_bytes(kPixels * 3 / 2); });
const Row most_copy("NuvRemainMaxGry/copy", [] { return copy_of_bytes(kPixels * 3 / 2); });
const Row invert_copy("NuvInvertGryValue/copy", [] { return copy_of_bytes(kPixels); });

const Row brightest("NuvMaxBrightRect/nuv", [] {
  return [picture = gray_picture()]() mutable {
    int32_t x = 0;
    int32_t y = 0;
    benchmark::DoNotOptimize(NuvMaxBrightRect(picture.data(), picture.width, picture.height, 64, 64, &x, &y));
  };
});

// The window slides along each row and is summed up anew at the start of the next one.
const Row brightest_plain("NuvMaxBrightRect/plain", [] {
  return [picture = gray_picture()]() mutable {
    constexpr int32_t kSize = 64;
    const auto column_of = [&](int32_t x, int32_t y) {
      int32_t sum = 0;
      for (int32_t i = 0; i < kSize; ++i) sum += picture.data()[(y + i) * picture.width + x];
      return sum;
    };
    int32_t best = 0;
    for (int32_t y = 0; y < picture.height - kSize; ++y) {
      int32_t sum = 0;
      for (int32_t x = 0; x < kSize; ++x) sum += column_of(x, y);
      best = std::max(best, sum);
      for (int32_t x = 1; x < picture.width - kSize; ++x) {
        sum += column_of(x - 1 + kSize, y) - column_of(x - 1, y);
        best = std::max(best, sum);
      }
    }
    benchmark::DoNotOptimize(best);
  };
});

#if NUV_WITH_OPENCV
const Row cv_integral("NuvDoSumGryImg/opencv integral", [] {
  return
      [picture = gray_picture(), sums = cv::Mat()]() mutable { cv::integral(picture.mat(), sums, CV_32S); };
});

const Row cv_mean("NuvGryRectAvr/opencv mean", [] {
  return [picture = gray_picture()]() mutable { benchmark::DoNotOptimize(cv::mean(picture.mat())); };
});

// Both sides write to memory of the same allocator, because the speed of memory decides these rows.
const Row cv_difference("NuvDifferenceImg12/opencv absdiff", [] {
  return [a = gray_picture(), b = inverted_picture(), result = gray_picture()]() mutable {
    cv::Mat written = result.mat();
    cv::absdiff(a.mat(), b.mat(), written);
  };
});

const Row cv_subtract("NuvImg1SubstractImg2/opencv subtract", [] {
  return [a = gray_picture(), b = inverted_picture(), result = gray_picture()]() mutable {
    cv::Mat written = result.mat();
    cv::subtract(a.mat(), b.mat(), written);
  };
});

const Row cv_either("NuvImg1OrImg2ToRes/opencv bitwise_or", [] {
  return [a = gray_picture(), b = inverted_picture(), result = gray_picture()]() mutable {
    cv::Mat written = result.mat();
    cv::bitwise_or(a.mat(), b.mat(), written);
  };
});

const Row cv_most("NuvRemainMaxGry/opencv max", [] {
  return [frame = gray_picture(), kept = inverted_picture()]() mutable {
    cv::Mat result = kept.mat();
    cv::max(frame.mat(), result, result);
  };
});

const Row cv_invert("NuvInvertGryValue/opencv bitwise_not", [] {
  return [picture = gray_picture(), result = cv::Mat()]() mutable { cv::bitwise_not(picture.mat(), result); };
});
#endif

}  // namespace

#include <algorithm>
#include <array>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

constexpr int kHalf = 5;
constexpr int kSide = 2 * kHalf + 1;
constexpr uint32_t kMostOfTheWindow = kSide * kSide * 127;

// A picture, and a place for the result.
struct Work {
  BenchPicture picture = binary_picture();
  BenchPicture result = binary_picture();
  int32_t width = picture.width;
  int32_t height = picture.height;
  LineVector<uint8_t> codes = LineVector<uint8_t>(picture.pixels.size());
  std::vector<uint32_t> sums = std::vector<uint32_t>(static_cast<std::size_t>(picture.width));

  uint8_t* in() { return picture.data(); }
  uint8_t* out() { return result.data(); }
};

// ---- the library ----

const Row filter("NuvBinImgFilter/nuv", [] {
  return [w = Work()]() mutable {
    NuvBinImgFilter(w.in(), w.width, w.height, kHalf, kHalf, kMostOfTheWindow, w.out());
  };
});
const Row filter_with_sums("NuvBinImgFilterSums/nuv", [] {
  return [w = Work()]() mutable {
    NuvBinImgFilter(w.in(), w.width, w.height, kHalf, kHalf, w.sums.data(), kMostOfTheWindow, w.out());
  };
});
const Row min_filter("NuvBinImgMinFilter3x3/nuv", [] {
  return [w = Work()]() mutable { NuvBinImgMinFilter3x3(w.in(), w.width, w.height, w.out()); };
});
const Row max_filter("NuvBinImgMaxFilter3x3/nuv", [] {
  return [w = Work()]() mutable { NuvBinImgMaxFilter3x3(w.in(), w.width, w.height, w.out()); };
});
const Row median_filter("NuvBinImgMedFilter3x3/nuv", [] {
  return [w = Work()]() mutable { NuvBinImgMedFilter3x3(w.in(), w.width, w.height, w.out()); };
});
const Row thin("NuvBinImgThin/nuv", [] {
  return [w = Work()]() mutable { NuvBinImgThin(w.in(), w.codes.data(), w.width, w.height, w.out()); };
});
const Row regions("NuvRLXRegionsWithID/nuv", [] {
  return [w = Work(), records = std::vector<RLX>(700000)]() mutable {
    benchmark::DoNotOptimize(NuvRLXRegionsWithID(w.in(), w.width, w.height, 1, 1, records.data(),
                                                 static_cast<int32_t>(records.size())));
  };
});
const Row count_runs("NuvRLXWhiteCount/nuv", [] {
  return [w = Work(), counts = std::vector<int32_t>(1281)]() mutable {
    NuvRLXWhiteCount(w.in(), w.width, w.height, counts.data(), 1280);
  };
});

// ---- plain forms ----

// Every pixel in every pass.
void thin_plainly(const uint8_t* in, int32_t width, int32_t height, uint8_t* before, uint8_t* result) {
  const int32_t offsets[8] = {1, 1 - width, -width, -width - 1, -1, width - 1, width, width + 1};
  for (int32_t i = 0; i < width * height; ++i) {
    const int32_t x = i % width;
    const int32_t y = i / width;
    result[i] = x > 0 && y > 0 && x < width - 1 && y < height - 1 && in[i] != 0 ? 1 : 0;
  }
  for (bool deleted = true; deleted;) {
    deleted = false;
    for (int pass = 0; pass < 2; ++pass) {
      std::copy_n(result, width * height, before);
      for (int32_t i = width; i < width * (height - 1); ++i) {
        const uint8_t* p = before + i;
        if (*p == 0) continue;
        int n[9];
        for (int d = 0; d < 8; ++d) n[d] = p[offsets[d]];
        n[8] = n[0];
        int sum = 0;
        int rises = 0;
        for (int d = 0; d < 8; ++d) {
          sum += n[d];
          rises += n[d] < n[d + 1] ? 1 : 0;
        }
        const bool open = pass == 0 ? n[2] + n[6] + n[0] < 3 && n[4] + n[6] + n[0] < 3
                                    : n[4] + n[2] + n[0] < 3 && n[4] + n[6] + n[2] < 3;
        if (sum < 2 || sum > 6 || rises != 1 || !open) continue;
        result[i] = 0;
        deleted = true;
      }
    }
  }
}

const Row thin_plain("NuvBinImgThin/plain", [] {
  return [w = Work()]() mutable { thin_plainly(w.in(), w.width, w.height, w.codes.data(), w.out()); };
});
const Row count_runs_plain("NuvRLXWhiteCount/plain", [] {
  return [w = Work(), counts = std::vector<int32_t>(1281)]() mutable {
    std::fill(counts.begin(), counts.end(), 0);
    for (int32_t y = 0; y < w.height; ++y) {
      const uint8_t* row = w.in() + y * w.width;
      for (int32_t x = 0, length = 0; x <= w.width; ++x) {
        if (x < w.width && row[x] != 0) {
          ++length;
        } else if (length != 0) {
          ++counts[static_cast<std::size_t>(length)];
          length = 0;
        }
      }
    }
  };
});

#if NUV_WITH_OPENCV

// ---- the peer ----

const Row box_filter("NuvBinImgFilter/opencv", [] {
  return [w = Work()]() mutable {
    cv::Mat sums;
    cv::boxFilter(w.picture.mat(), sums, CV_32S, {kSide, kSide}, {-1, -1}, false, cv::BORDER_REPLICATE);
    cv::Mat result = w.result.mat();
    cv::compare(sums, static_cast<double>(kMostOfTheWindow), result, cv::CMP_GT);
  };
});
const Row box_filter_again("NuvBinImgFilterSums/opencv", [] {
  return [w = Work()]() mutable {
    cv::Mat sums;
    cv::boxFilter(w.picture.mat(), sums, CV_32S, {kSide, kSide}, {-1, -1}, false, cv::BORDER_REPLICATE);
    cv::Mat result = w.result.mat();
    cv::compare(sums, static_cast<double>(kMostOfTheWindow), result, cv::CMP_GT);
  };
});
const Row erode("NuvBinImgMinFilter3x3/opencv", [] {
  return [w = Work()]() mutable {
    cv::Mat result = w.result.mat();
    cv::erode(w.picture.mat(), result, cv::Mat());
  };
});
const Row dilate("NuvBinImgMaxFilter3x3/opencv", [] {
  return [w = Work()]() mutable {
    cv::Mat result = w.result.mat();
    cv::dilate(w.picture.mat(), result, cv::Mat());
  };
});
const Row median_blur("NuvBinImgMedFilter3x3/opencv", [] {
  return [w = Work()]() mutable {
    cv::Mat result = w.result.mat();
    cv::medianBlur(w.picture.mat(), result, 3);
  };
});
const Row connected("NuvRLXRegionsWithID/opencv", [] {
  return [w = Work()]() mutable {
    cv::Mat labels;
    benchmark::DoNotOptimize(cv::connectedComponents(w.picture.mat(), labels, 4));
  };
});

#endif

}  // namespace

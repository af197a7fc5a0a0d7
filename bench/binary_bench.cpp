#include <algorithm>
#include <array>
#include <cstdlib>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

#if NUV_WITH_LEPTONICA
#include <leptonica/allheaders.h>

#include <memory>
#endif

namespace {

constexpr int kHalf = 5;
constexpr int kSide = 2 * kHalf + 1;
constexpr uint32_t kMostOfTheWindow = kSide * kSide * 127;

// A picture and room for the result.
struct Work {
  BenchPicture picture = binary_picture();
  BenchPicture result = binary_picture();
  int32_t width = picture.width;
  int32_t height = picture.height;
  LineVector<uint8_t> codes = LineVector<uint8_t>(picture.pixels.size());
  std::vector<uint32_t> sums = std::vector<uint32_t>(static_cast<std::size_t>(picture.width));

  uint8_t* in() { return picture.data(); }
  uint8_t* out() { return result.data(); }
  // A fresh copy of the picture, for functions that change an image in place.
  uint8_t* copied() {
    result.pixels = picture.pixels;
    return out();
  }
};

constexpr int kLargeHalf = 15;
constexpr int kLargeSide = 2 * kLargeHalf + 1;
constexpr int kLength = 20;  // of runs

// A picture with one hole: its middle is black, and the mask covers that.
struct Hole {
  BenchPicture picture = gray_picture();
  BenchPicture mask = gray_picture();
  BenchPicture result = gray_picture();

  Hole() {
    for (int32_t y = 0; y < picture.height; ++y) {
      for (int32_t x = 0; x < picture.width; ++x) {
        const auto i = static_cast<std::size_t>(y * picture.width + x);
        const bool in_hole = std::abs(2 * x - picture.width) < picture.width / 2 &&
                             std::abs(2 * y - picture.height) < picture.height / 2;
        mask.pixels[i] = in_hole ? 255 : 0;
        picture.pixels[i] = in_hole ? 0 : picture.pixels[i] | 1;
      }
    }
  }
};

// ---- the library ----

const Row filter("NuvBinImgFilter 11x11/nuv", [] {
  return [w = Work()]() mutable {
    NuvBinImgFilter(w.in(), w.width, w.height, kHalf, kHalf, kMostOfTheWindow, w.out());
  };
});
const Row filter_with_sums("NuvBinImgFilter 11x11 with sums/nuv", [] {
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

const Row filter_large("NuvBinImgFilter 31x31/nuv", [] {
  return [w = Work()]() mutable {
    NuvBinImgFilter(w.in(), w.width, w.height, kLargeHalf, kLargeHalf, kLargeSide * kLargeSide * 127,
                    w.out());
  };
});
const Row growing_majority("NuvBinImgMedFilter 7x7/nuv", [] {
  return [w = Work()]() mutable { NuvBinImgMedFilter(w.in(), w.width, w.height, 3, 3, 1, 1, w.out()); };
});
const Row little_white("NuvBinImgLittleWhitePixelsMed3x3Filter/nuv", [] {
  return
      [w = Work()]() mutable { NuvBinImgLittleWhitePixelsMed3x3Filter(w.in(), w.width, w.height, w.out()); };
});
const Row delete_isolated("NuvBinImgDeleteIsolatedPoints/nuv", [] {
  return [w = Work()]() mutable { NuvBinImgDeleteIsolatedPoints(w.copied(), w.width, w.height); };
});
const Row delete_points("NuvBinImgDeletePointsLessThanN/nuv", [] {
  return [w = Work()]() mutable { NuvBinImgDeletePointsLessThanN(w.copied(), w.width, w.height, 255, 3); };
});
const Row erosion_size("NuvGetMaxSizeofMinFilter/nuv", [] {
  return [w = Work()]() mutable {
    int32_t size = 0;
    NuvGetMaxSizeofMinFilter(w.in(), w.codes.data(), w.out(), w.width, w.height, &size);
    benchmark::DoNotOptimize(size);
  };
});
const Row fill_hole("NuvFillHolesByNearNeighbor one hole/nuv", [] {
  return [h = Hole()]() mutable {
    NuvFillHolesByNearNeighbor(h.picture.data(), h.mask.data(), h.picture.width, h.picture.height, 1000,
                               h.result.data());
  };
});
const Row count_column_runs("NuvRLYWhiteCount/nuv", [] {
  return [w = Work(), counts = std::vector<int32_t>(961)]() mutable {
    NuvRLYWhiteCount(w.in(), w.width, w.height, counts.data(), 960);
  };
});
const Row delete_short_rows("NuvRLXWhiteDeleteShort/nuv", [] {
  return [w = Work()]() mutable { NuvRLXWhiteDeleteShort(w.copied(), w.width, w.height, kLength, 0); };
});
const Row delete_short_columns("NuvRLYWhiteDeleteShort/nuv", [] {
  return [w = Work()]() mutable { NuvRLYWhiteDeleteShort(w.copied(), w.width, w.height, kLength, 0); };
});
const Row keep_connected_columns("NuvRLYDeleteWhiteShort/nuv", [] {
  return [w = Work()]() mutable { NuvRLYDeleteWhiteShort(w.in(), w.width, w.height, kLength, 5, w.out()); };
});
const Row mark_lengths("NuvBinImgMarkMinOfRLXandRLY/nuv", [] {
  return [w = Work()]() mutable { NuvBinImgMarkMinOfRLXandRLY(w.copied(), w.width, w.height); };
});
const Row count_starts("NuvBinImg01TimesByX 15/nuv", [] {
  return [w = Work(), buffer = std::vector<int32_t>(1280)]() mutable {
    NuvBinImg01TimesByX(w.in(), buffer.data(), w.width, w.height, 13, w.out());
  };
});

// ---- plain forms ----

// Every pass tests every pixel.
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

const Row box_filter("NuvBinImgFilter 11x11/opencv boxFilter, compare", [] {
  return [w = Work()]() mutable {
    cv::Mat sums;
    cv::boxFilter(w.picture.mat(), sums, CV_32S, {kSide, kSide}, {-1, -1}, false, cv::BORDER_REPLICATE);
    cv::Mat result = w.result.mat();
    cv::compare(sums, static_cast<double>(kMostOfTheWindow), result, cv::CMP_GT);
  };
});
const Row box_filter_again("NuvBinImgFilter 11x11 with sums/opencv boxFilter, compare", [] {
  return [w = Work()]() mutable {
    cv::Mat sums;
    cv::boxFilter(w.picture.mat(), sums, CV_32S, {kSide, kSide}, {-1, -1}, false, cv::BORDER_REPLICATE);
    cv::Mat result = w.result.mat();
    cv::compare(sums, static_cast<double>(kMostOfTheWindow), result, cv::CMP_GT);
  };
});
const Row erode("NuvBinImgMinFilter3x3/opencv erode", [] {
  return [w = Work()]() mutable {
    cv::Mat result = w.result.mat();
    cv::erode(w.picture.mat(), result, cv::Mat());
  };
});
const Row dilate("NuvBinImgMaxFilter3x3/opencv dilate", [] {
  return [w = Work()]() mutable {
    cv::Mat result = w.result.mat();
    cv::dilate(w.picture.mat(), result, cv::Mat());
  };
});
const Row median_blur("NuvBinImgMedFilter3x3/opencv medianBlur", [] {
  return [w = Work()]() mutable {
    cv::Mat result = w.result.mat();
    cv::medianBlur(w.picture.mat(), result, 3);
  };
});
const Row connected("NuvRLXRegionsWithID/opencv connectedComponents", [] {
  return [w = Work()]() mutable {
    cv::Mat labels;
    benchmark::DoNotOptimize(cv::connectedComponents(w.picture.mat(), labels, 4));
  };
});
const Row box_filter_large("NuvBinImgFilter 31x31/opencv boxFilter, compare", [] {
  return [w = Work()]() mutable {
    cv::Mat sums;
    cv::boxFilter(w.picture.mat(), sums, CV_32S, {kLargeSide, kLargeSide}, {-1, -1}, false,
                  cv::BORDER_REPLICATE);
    cv::Mat result = w.result.mat();
    cv::compare(sums, kLargeSide * kLargeSide * 127.0, result, cv::CMP_GT);
  };
});
const Row box_majority("NuvBinImgMedFilter 7x7/opencv boxFilter, compare", [] {
  return [w = Work()]() mutable {
    cv::Mat sums;
    cv::boxFilter(w.picture.mat(), sums, CV_32S, {7, 7}, {-1, -1}, false, cv::BORDER_REPLICATE);
    cv::Mat result = w.result.mat();
    cv::compare(sums, 49 * 127.0, result, cv::CMP_GT);
  };
});
// The sum of the window includes its centre, unlike that of the library.
const Row box_little_white("NuvBinImgLittleWhitePixelsMed3x3Filter/opencv boxFilter, compare", [] {
  return [w = Work()]() mutable {
    cv::Mat sums;
    cv::boxFilter(w.picture.mat(), sums, CV_16U, {3, 3}, {-1, -1}, false, cv::BORDER_REPLICATE);
    cv::Mat result = w.result.mat();
    cv::compare(sums, 1019.0, result, cv::CMP_GT);
  };
});
const Row hit_or_miss("NuvBinImgDeleteIsolatedPoints/opencv morphologyEx, subtract", [] {
  return [w = Work()]() mutable {
    cv::Mat kernel(3, 3, CV_8SC1, cv::Scalar(-1));
    kernel.at<schar>(1, 1) = 1;
    cv::Mat isolated;
    cv::morphologyEx(w.picture.mat(), isolated, cv::MORPH_HITMISS, kernel);
    cv::Mat result = w.result.mat();
    cv::subtract(w.picture.mat(), isolated, result);
  };
});
// Finds the nearest pixel to each place by city-block distance, then takes its value.
const Row nearest_labels("NuvFillHolesByNearNeighbor one hole/opencv distanceTransform", [] {
  return [h = Hole()]() mutable {
    cv::Mat black;
    cv::compare(h.picture.mat(), 0, black, cv::CMP_EQ);
    cv::Mat distances;
    cv::Mat labels;
    cv::distanceTransform(black, distances, labels, cv::DIST_L1, 3, cv::DIST_LABEL_PIXEL);
    std::vector<uint8_t> values(1);
    const uint8_t* pixels = h.picture.data();
    const auto* label = labels.ptr<int>();
    const std::size_t count = h.picture.pixels.size();
    for (std::size_t i = 0; i < count; ++i) {
      if (pixels[i] != 0) values.push_back(pixels[i]);
    }
    for (std::size_t i = 0; i < count; ++i) {
      if (h.mask.pixels[i] != 0) h.result.pixels[i] = values[static_cast<std::size_t>(label[i])];
    }
  };
});
// An opening by a line keeps the runs that the line fits into.
const Row open_rows("NuvRLXWhiteDeleteShort/opencv morphologyEx", [] {
  return [w = Work()]() mutable {
    cv::Mat result = w.result.mat();
    cv::morphologyEx(w.picture.mat(), result, cv::MORPH_OPEN, cv::Mat::ones(1, kLength, CV_8U));
  };
});
const Row open_columns("NuvRLYWhiteDeleteShort/opencv morphologyEx", [] {
  return [w = Work()]() mutable {
    cv::Mat result = w.result.mat();
    cv::morphologyEx(w.picture.mat(), result, cv::MORPH_OPEN, cv::Mat::ones(kLength, 1, CV_8U));
  };
});
const Row box_starts("NuvBinImg01TimesByX 15/opencv boxFilter", [] {
  return [w = Work()]() mutable {
    cv::Mat starts = cv::Mat::zeros(w.height, w.width, CV_8U);
    const cv::Mat picture = w.picture.mat();
    const cv::Mat right = picture.colRange(1, w.width);
    cv::Mat inner = starts.colRange(1, w.width);
    cv::compare(right, picture.colRange(0, w.width - 1), inner, cv::CMP_GT);
    cv::bitwise_and(starts, cv::Scalar(1), starts);
    cv::Mat result = w.result.mat();
    cv::boxFilter(starts, result, CV_8U, {15, 1}, {-1, -1}, false, cv::BORDER_CONSTANT);
  };
});

#endif

#if NUV_WITH_LEPTONICA

// ---- the peer for run lengths; it packs 32 pixels into a word ----

struct FreePix {
  void operator()(Pix* pix) const { pixDestroy(&pix); }
};
using PixPointer = std::unique_ptr<Pix, FreePix>;

// The peer calls object pixels black, so white pixels of the library become 1. The picture is packed only once.
std::shared_ptr<Pix> packed_picture() {
  BenchPicture picture = binary_picture();
  std::shared_ptr<Pix> pix(pixCreate(picture.width, picture.height, 1), FreePix());
  for (int32_t y = 0; y < picture.height; ++y) {
    for (int32_t x = 0; x < picture.width; ++x) {
      if (picture.data()[y * picture.width + x] != 0) pixSetPixel(pix.get(), x, y, 1);
    }
  }
  return pix;
}

const Row run_transform("NuvRLYWhiteCount/leptonica pixRunlengthTransform", [] {
  return [pix = packed_picture()] {
    const PixPointer lengths(pixRunlengthTransform(pix.get(), 1, L_VERTICAL_RUNS, 8));
    benchmark::DoNotOptimize(lengths.get());
  };
});
// The peer takes the least length in two directions.
const Row stroke_width("NuvBinImgMarkMinOfRLXandRLY/leptonica pixStrokeWidthTransform", [] {
  return [pix = packed_picture()] {
    const PixPointer lengths(pixStrokeWidthTransform(pix.get(), 1, 8, 2));
    benchmark::DoNotOptimize(lengths.get());
  };
});

#endif

}  // namespace

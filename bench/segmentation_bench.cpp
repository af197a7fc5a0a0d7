#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

#if NUV_WITH_OPENCV
#include <opencv2/features2d.hpp>
#endif

namespace {

constexpr int kMinArea = 200;

// The picture is inverted by each call: the rows show the mean of both.
const Row merge_split("NuvMergeSplit/nuv", [] {
  return [picture = gray_picture(), work = LineVector<uint8_t>(2 * gray_picture().pixels.size())]() mutable {
    NuvFreeRegionStruct(
        NuvMergeSplit(picture.data(), work.data(), picture.width, picture.height, kMinArea, 0, 0.5));
  };
});

#if NUV_WITH_OPENCV
const Row extremal_regions("NuvMergeSplit/opencv", [] {
  return [picture = gray_picture(), detector = cv::MSER::create(1, kMinArea, 1280 * 960)]() mutable {
    std::vector<std::vector<cv::Point>> regions;
    std::vector<cv::Rect> boxes;
    detector->detectRegions(picture.mat(), regions, boxes);
    benchmark::DoNotOptimize(regions.data());
  };
});
#endif

}  // namespace

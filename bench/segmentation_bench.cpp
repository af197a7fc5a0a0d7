#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

#if NUV_WITH_OPENCV
#include <opencv2/features2d.hpp>
#endif

namespace {

constexpr int32_t kMinArea = 60;

// The library's function changes the picture, so each call gets a copy.
auto merge_split_of(BenchPicture picture) {
  return [source = picture, picture, work = LineVector<uint8_t>(2 * picture.pixels.size())]() mutable {
    picture.pixels = source.pixels;
    NuvFreeRegionStruct(
        NuvMergeSplit(picture.data(), work.data(), picture.width, picture.height, kMinArea, 0, 0.5));
  };
}

const Row merge_split("NuvMergeSplit/nuv", [] { return merge_split_of(gray_picture()); });
const Row merge_split_camera("NuvMergeSplit 512x512 camera/nuv",
                             [] { return merge_split_of(gray_picture(512, 512)); });
const Row merge_split_coins("NuvMergeSplit 384x303 coins/nuv",
                            [] { return merge_split_of(coins_picture()); });

#if NUV_WITH_OPENCV
// The peer has its default delta and, like the library, no effective upper limit of the area.
auto extremal_regions_of(BenchPicture picture) {
  return [picture, detector = cv::MSER::create(5, kMinArea, picture.width * picture.height)]() mutable {
    std::vector<std::vector<cv::Point>> regions;
    std::vector<cv::Rect> boxes;
    detector->detectRegions(picture.mat(), regions, boxes);
    benchmark::DoNotOptimize(regions.data());
  };
}

const Row extremal_regions("NuvMergeSplit/opencv MSER", [] { return extremal_regions_of(gray_picture()); });
const Row extremal_regions_camera("NuvMergeSplit 512x512 camera/opencv MSER",
                                  [] { return extremal_regions_of(gray_picture(512, 512)); });
const Row extremal_regions_coins("NuvMergeSplit 384x303 coins/opencv MSER",
                                 [] { return extremal_regions_of(coins_picture()); });
#endif

}  // namespace

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

// With the settings that find_lines chooses for the size.
auto chain_lines(int32_t width, int32_t height) {
  NuvImgChainLines_Initialize(width, height, 0.9, 1.0, std::min(width, height) / 20, 24, 100000);
  return [picture = gray_picture(width, height)]() mutable {
    NuvImgChainLines_DoGryImg(picture.data(), picture.width, picture.height, true);
  };
}

const Row small("NuvImgChainLines_DoGryImg 640x480/nuv", [] { return chain_lines(640, 480); });
const Row usual("NuvImgChainLines_DoGryImg/nuv", [] { return chain_lines(1280, 960); });
const Row large("NuvImgChainLines_DoGryImg 4000x3000/nuv", [] { return chain_lines(4000, 3000); });

#if NUV_WITH_OPENCV
const Row line_segment_detector("NuvImgChainLines_DoGryImg/opencv", [] {
  return [picture = gray_picture(), detector = cv::createLineSegmentDetector()]() mutable {
    std::vector<cv::Vec4f> lines;
    detector->detect(picture.mat(), lines);
    benchmark::DoNotOptimize(lines.data());
  };
});
#endif

}  // namespace

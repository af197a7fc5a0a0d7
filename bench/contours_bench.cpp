#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

const Row get_contours("NuvGetContours/nuv", [] {
  return [picture = binary_picture(), work = gray_picture()]() mutable {
    // The picture comes back as it was.
    NuvFreeContours(NuvGetContours(picture.data(), work.data(), picture.width, picture.height, 0, 0, 0));
  };
});

#if NUV_WITH_OPENCV
const Row find_contours("NuvGetContours/opencv", [] {
  return [picture = binary_picture()]() mutable {
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(picture.mat(), contours, cv::RETR_LIST, cv::CHAIN_APPROX_NONE);
    benchmark::DoNotOptimize(contours.data());
  };
});
#endif

}  // namespace

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

const Row rgb_to_gray("NuvRGB2Gry/nuv", [] {
  return [picture = colour_picture(), gray = gray_picture()]() mutable {
    NuvRGB2Gry(picture.data(), picture.width, picture.height, gray.data());
  };
});

#if NUV_WITH_OPENCV
const Row cvt_color("NuvRGB2Gry/opencv", [] {
  return [picture = colour_picture(), gray = cv::Mat()]() mutable {
    cv::cvtColor(picture.mat(), gray, cv::COLOR_BGR2GRAY);
  };
});
#endif

}  // namespace

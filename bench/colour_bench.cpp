#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

#if NUV_WITH_LIBYUV
#include <libyuv.h>
#endif

namespace {

const Row rgb_to_gray("NuvRGB2Gry/nuv", [] {
  return [picture = colour_picture(), gray = gray_picture()]() mutable {
    NuvRGB2Gry(picture.data(), picture.width, picture.height, gray.data());
  };
});

const Row join("NuvGry2RGBImg/nuv", [] {
  return [gray = gray_picture(), result = colour_picture()]() mutable {
    NuvGry2RGBImg(gray.data(), gray.data(), gray.data(), gray.width, gray.height, result.data());
  };
});
const Row split("NuvCopyRGBRect2Gry planes/nuv", [] {
  return [picture = colour_picture(), red = gray_picture(), green = gray_picture(),
          blue = gray_picture()]() mutable {
    NuvCopyRGBRect2Gry(picture.data(), picture.width, picture.height, 0, picture.width - 1, 0,
                       picture.height - 1, red.data(), green.data(), blue.data());
  };
});
const Row replace("NuvReplaceOneChannelInRGB/nuv", [] {
  return [picture = colour_picture(), gray = gray_picture()]() mutable {
    NuvReplaceOneChannelInRGB(picture.data(), picture.width, picture.height, 1, gray.data());
  };
});
const Row two_colours("NuvCopyRGB2GryBinImg/nuv", [] {
  return [picture = colour_picture(), gray = gray_picture(), binary = gray_picture()]() mutable {
    int32_t width = 0;
    int32_t height = 0;
    NuvCopyRGB2GryBinImg(picture.data(), picture.width, picture.height, 0, picture.width - 1, 0,
                         picture.height - 1, true, gray.data(), binary.data(), &width, &height);
  };
});

#if NUV_WITH_LIBYUV
const Row merge_rgb("NuvGry2RGBImg/libyuv MergeRGBPlane", [] {
  return [gray = gray_picture(), result = colour_picture()]() mutable {
    libyuv::MergeRGBPlane(gray.data(), gray.width, gray.data(), gray.width, gray.data(), gray.width,
                          result.data(), 3 * gray.width, gray.width, gray.height);
  };
});
const Row split_rgb("NuvCopyRGBRect2Gry planes/libyuv SplitRGBPlane", [] {
  return [picture = colour_picture(), red = gray_picture(), green = gray_picture(),
          blue = gray_picture()]() mutable {
    libyuv::SplitRGBPlane(picture.data(), 3 * picture.width, blue.data(), picture.width, green.data(),
                          picture.width, red.data(), picture.width, picture.width, picture.height);
  };
});
#endif

#if NUV_WITH_OPENCV
const Row cv_merge("NuvGry2RGBImg/opencv merge", [] {
  return [gray = gray_picture(), result = cv::Mat()]() mutable {
    const cv::Mat planes[] = {gray.mat(), gray.mat(), gray.mat()};
    cv::merge(planes, 3, result);
  };
});
const Row cv_split("NuvCopyRGBRect2Gry planes/opencv split", [] {
  return [picture = colour_picture(), planes = std::vector<cv::Mat>()]() mutable {
    cv::split(picture.mat(), planes);
  };
});
const Row cv_insert("NuvReplaceOneChannelInRGB/opencv insertChannel", [] {
  return [picture = colour_picture(), gray = gray_picture()]() mutable {
    cv::Mat image = picture.mat();
    cv::insertChannel(gray.mat(), image, 1);
  };
});
const Row cvt_color("NuvRGB2Gry/opencv cvtColor", [] {
  return [picture = colour_picture(), gray = cv::Mat()]() mutable {
    cv::cvtColor(picture.mat(), gray, cv::COLOR_BGR2GRAY);
  };
});
#endif

}  // namespace

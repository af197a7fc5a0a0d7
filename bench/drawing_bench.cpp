#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

const Row fill_gray("NuvFillGryRect/nuv", [] {
  return [picture = gray_picture()]() mutable {
    NuvFillGryRect(picture.data(), picture.width, picture.height, 1, picture.width - 2, 1, picture.height - 2,
                   77);
  };
});
const Row fill_rgb("NuvFillRGBRect/nuv", [] {
  return [picture = colour_picture()]() mutable {
    NuvFillRGBRect(picture.data(), picture.width, picture.height, 1, picture.width - 2, 1, picture.height - 2,
                   77, 9, 200);
  };
});
const Row circle("NuvDrawCircle/nuv", [] {
  return [picture = gray_picture()]() mutable {
    NuvDrawCircle(picture.data(), picture.width, picture.height, 640, 480, 470, 470, 200);
  };
});

#if NUV_WITH_OPENCV
auto cv_fill_work(BenchPicture picture, cv::Scalar colour) {
  return [picture = std::move(picture), colour]() mutable {
    cv::Mat image = picture.mat();
    cv::rectangle(image, {1, 1}, {picture.width - 2, picture.height - 2}, colour, cv::FILLED);
  };
}
const Row cv_fill_gray("NuvFillGryRect/opencv rectangle", [] { return cv_fill_work(gray_picture(), {77}); });
const Row cv_fill_rgb("NuvFillRGBRect/opencv rectangle", [] {
  return cv_fill_work(colour_picture(), {200, 9, 77});
});
const Row cv_circle("NuvDrawCircle/opencv circle", [] {
  return [picture = gray_picture()]() mutable {
    cv::Mat image = picture.mat();
    cv::circle(image, {640, 480}, 470, {200});
  };
});
#endif

}  // namespace

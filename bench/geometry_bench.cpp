#include <memory>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

#if NUV_WITH_LIBYUV
#include <libyuv.h>
#endif

namespace {

using Turn = void (*)(uint8_t*, int32_t, int32_t, bool, uint8_t*);
using Resize = void (*)(uint8_t*, int32_t, int32_t, uint8_t*, int32_t, int32_t);

constexpr int32_t kWidth = 1700;
constexpr int32_t kHeight = 1300;
constexpr double kAngle = 30;

auto turn_work(Turn turn, BenchPicture picture, bool rgb) {
  return [=, result = picture]() mutable {
    turn(picture.data(), picture.width, picture.height, rgb, result.data());
  };
}
const Row turn_gray("NuvImgRotate90DegreeCS gray/nuv",
                    [] { return turn_work(NuvImgRotate90DegreeCS, gray_picture(), false); });
const Row turn_rgb("NuvImgRotate90DegreeCS RGB/nuv",
                   [] { return turn_work(NuvImgRotate90DegreeCS, colour_picture(), true); });
const Row turn_rgb32("NuvRGB32Rotate90Degree/nuv", [] {
  return [picture = gray_picture(4 * 1280), result = gray_picture(4 * 1280)]() mutable {
    NuvRGB32Rotate90Degree(picture.data(), 1280, 960, true, result.data());
  };
});
const Row flip_vertical("NuvFlipVertical/nuv",
                        [] { return turn_work(NuvFlipVertical, gray_picture(), false); });
const Row flip_horizontal("NuvFlipHorizontal/nuv", [] {
  return [picture = gray_picture()]() mutable {
    NuvFlipHorizontal(picture.data(), picture.width, picture.height);
  };
});

const Row rotate("NuvRotateImgByCCS/nuv", [] {
  return [picture = gray_picture()]() mutable {
    int32_t width = 0;
    int32_t height = 0;
    const std::unique_ptr<uint8_t[]> result(
        NuvRotateImgByCCS(picture.data(), picture.width, picture.height, kAngle, &width, &height));
    benchmark::DoNotOptimize(result.get());
  };
});
const Row copy_turned("NuvCopyRectFromRotateCCS/nuv", [] {
  return [picture = gray_picture(), result = gray_picture(640, 480)]() mutable {
    NuvCopyRectFromRotateCCS(picture.data(), picture.width, picture.height, 400, 40, kAngle, result.data(),
                             640, 480);
  };
});

const Row copy_turned_rgb("NuvRgbCopyRectFromRotateCCS/nuv", [] {
  return [picture = colour_picture(), result = LineVector<uint8_t>(640 * 480 * 3)]() mutable {
    NuvRgbCopyRectFromRotateCCS(picture.data(), picture.width, picture.height, 400, 40, kAngle, result.data(),
                                640, 480);
  };
});

auto resize_work(Resize resize, BenchPicture picture) {
  const auto size = static_cast<std::size_t>(kWidth * kHeight * picture.channels);
  return [=, result = LineVector<uint8_t>(size)]() mutable {
    resize(picture.data(), picture.width, picture.height, result.data(), kWidth, kHeight);
  };
}
const Row resize_gray("NuvGryImgBilinearInterpolattionFast/nuv",
                      [] { return resize_work(NuvGryImgBilinearInterpolattionFast, gray_picture()); });
const Row resize_rgb("NuvRgbImgBilinearInterpolattionFast/nuv",
                     [] { return resize_work(NuvRgbImgBilinearInterpolattionFast, colour_picture()); });

const Row zoom("NuvZoomGryImg2x2/nuv", [] {
  return [picture = gray_picture(), result = gray_picture(2560, 1920)]() mutable {
    NuvZoomGryImg2x2(picture.data(), picture.width, picture.height, result.data());
  };
});
const Row shrink_2("NuvShrinkGryImg2x2ByAvr/nuv", [] {
  return [picture = gray_picture(), result = gray_picture(640, 480)]() mutable {
    NuvShrinkGryImg2x2ByAvr(picture.data(), picture.width, picture.height, result.data());
  };
});
const Row shrink_4("NuvShrinkGryImg4x4ByAvr/nuv", [] {
  return [picture = gray_picture(), result = gray_picture(320, 240)]() mutable {
    int32_t width = 0;
    int32_t height = 0;
    NuvShrinkGryImg4x4ByAvr(picture.data(), picture.width, picture.height, result.data(), &width, &height);
  };
});

auto shrink_8_work(BenchPicture picture) {
  return [=, result = LineVector<uint8_t>(160 * 120 * 3)]() mutable {
    NuvShrinkImgByAvr(picture.data(), picture.channels == 3, picture.width, picture.height, 8, 8,
                      result.data());
  };
}
const Row shrink_8_gray("NuvShrinkImgByAvr 8x8 gray/nuv", [] { return shrink_8_work(gray_picture()); });
const Row shrink_8_rgb("NuvShrinkImgByAvr 8x8 RGB/nuv", [] { return shrink_8_work(colour_picture()); });

// The picture shifted by three columns and two rows, with noise added.
BenchPicture moved_picture() {
  BenchPicture picture = gray_picture();
  BenchPicture moved = gray_picture();
  NuvImageShift(picture.data(), picture.width, picture.height, false, 3, 2, moved.data());
  uint32_t noise = 1;
  for (uint8_t& pixel : moved.pixels) {
    noise = noise * 1664525 + 1013904223;
    pixel = static_cast<uint8_t>(pixel / 8 * 7 + (noise >> 28));
  }
  return moved;
}
const Row align("NuvShiftImg2BasedImg1/nuv", [] {
  return [first = gray_picture(), second = moved_picture(), result = gray_picture()]() mutable {
    int32_t dx = 0;
    int32_t dy = 0;
    NuvShiftImg2BasedImg1(first.data(), second.data(), result.data(), first.width, first.height, false, 8, 8,
                          {0, 0, first.width - 1, first.height - 1}, &dx, &dy);
  };
});

#if NUV_WITH_LIBYUV
const Row yuv_shrink_2("NuvShrinkGryImg2x2ByAvr/libyuv ScalePlane", [] {
  return [picture = gray_picture(), result = gray_picture(640, 480)]() mutable {
    libyuv::ScalePlane(picture.data(), picture.width, picture.width, picture.height, result.data(), 640, 640,
                       480, libyuv::kFilterBox);
  };
});
const Row yuv_turn_rgb32("NuvRGB32Rotate90Degree/libyuv ARGBRotate", [] {
  return [picture = gray_picture(4 * 1280), result = gray_picture(4 * 1280)]() mutable {
    libyuv::ARGBRotate(picture.data(), 4 * 1280, result.data(), 4 * 960, 1280, 960, libyuv::kRotate90);
  };
});
#endif

#if NUV_WITH_OPENCV
auto cv_turn_work(BenchPicture picture) {
  return [picture = std::move(picture), result = cv::Mat()]() mutable {
    cv::rotate(picture.mat(), result, cv::ROTATE_90_CLOCKWISE);
  };
}
const Row cv_turn_gray("NuvImgRotate90DegreeCS gray/opencv rotate",
                       [] { return cv_turn_work(gray_picture()); });
const Row cv_turn_rgb("NuvImgRotate90DegreeCS RGB/opencv rotate",
                      [] { return cv_turn_work(colour_picture()); });
const Row cv_flip_vertical("NuvFlipVertical/opencv flip", [] {
  return [picture = gray_picture(), result = cv::Mat()]() mutable { cv::flip(picture.mat(), result, 0); };
});
const Row cv_flip_horizontal("NuvFlipHorizontal/opencv flip", [] {
  return [picture = gray_picture()]() mutable {
    cv::Mat image = picture.mat();
    cv::flip(image, image, 1);
  };
});

// Maps a place of the result to a place of the source.
cv::Mat turn_matrix(double angle, double x0, double y0) {
  const double c = std::cos(angle * CV_PI / 180);
  const double s = std::sin(angle * CV_PI / 180);
  return (cv::Mat_<double>(2, 3) << c, -s, x0, s, c, y0);
}
const Row warp_nearest("NuvRotateImgByCCS/opencv warpAffine", [] {
  BenchPicture picture = gray_picture();
  int32_t width = 0;
  int32_t height = 0;
  const std::unique_ptr<uint8_t[]> like(
      NuvRotateImgByCCS(picture.data(), picture.width, picture.height, kAngle, &width, &height));
  // The lower left corner of the source lies in column 0 of the result.
  const double left = -(picture.height - 1) * std::sin(kAngle * CV_PI / 180);
  const cv::Mat matrix =
      turn_matrix(-kAngle, left * std::cos(kAngle * CV_PI / 180), -left * std::sin(kAngle * CV_PI / 180));
  return [=]() mutable {
    cv::Mat result;
    cv::warpAffine(picture.mat(), result, matrix, {width, height}, cv::INTER_NEAREST | cv::WARP_INVERSE_MAP);
  };
});
const Row warp_linear("NuvCopyRectFromRotateCCS/opencv warpAffine", [] {
  return [picture = gray_picture(), result = cv::Mat(), matrix = turn_matrix(kAngle, 400, 40)]() mutable {
    cv::warpAffine(picture.mat(), result, matrix, {640, 480}, cv::INTER_LINEAR | cv::WARP_INVERSE_MAP);
  };
});

const Row warp_linear_rgb("NuvRgbCopyRectFromRotateCCS/opencv warpAffine", [] {
  return [picture = colour_picture(), result = cv::Mat(), matrix = turn_matrix(kAngle, 400, 40)]() mutable {
    cv::warpAffine(picture.mat(), result, matrix, {640, 480}, cv::INTER_LINEAR | cv::WARP_INVERSE_MAP);
  };
});
const Row cv_turn_rgb32("NuvRGB32Rotate90Degree/opencv rotate", [] {
  return [picture = gray_picture(4 * 1280), result = cv::Mat()]() mutable {
    cv::rotate(cv::Mat(960, 1280, CV_8UC4, picture.data()), result, cv::ROTATE_90_CLOCKWISE);
  };
});

auto cv_resize_work(BenchPicture picture, cv::Size size, int interpolation) {
  return [=, result = cv::Mat()]() mutable { cv::resize(picture.mat(), result, size, 0, 0, interpolation); };
}
const Row cv_resize_gray("NuvGryImgBilinearInterpolattionFast/opencv resize", [] {
  return cv_resize_work(gray_picture(), {kWidth, kHeight}, cv::INTER_LINEAR);
});
const Row cv_resize_rgb("NuvRgbImgBilinearInterpolattionFast/opencv resize", [] {
  return cv_resize_work(colour_picture(), {kWidth, kHeight}, cv::INTER_LINEAR);
});
const Row cv_zoom("NuvZoomGryImg2x2/opencv resize", [] {
  return cv_resize_work(gray_picture(), {2560, 1920}, cv::INTER_LINEAR);
});
const Row cv_shrink_2("NuvShrinkGryImg2x2ByAvr/opencv resize", [] {
  return cv_resize_work(gray_picture(), {640, 480}, cv::INTER_AREA);
});
const Row cv_shrink_4("NuvShrinkGryImg4x4ByAvr/opencv resize", [] {
  return cv_resize_work(gray_picture(), {320, 240}, cv::INTER_AREA);
});
const Row cv_shrink_8_gray("NuvShrinkImgByAvr 8x8 gray/opencv resize", [] {
  return cv_resize_work(gray_picture(), {160, 120}, cv::INTER_AREA);
});
const Row cv_shrink_8_rgb("NuvShrinkImgByAvr 8x8 RGB/opencv resize", [] {
  return cv_resize_work(colour_picture(), {160, 120}, cv::INTER_AREA);
});

const Row match("NuvShiftImg2BasedImg1/opencv matchTemplate", [] {
  return [first = gray_picture(), second = moved_picture(), result = cv::Mat()]() mutable {
    const cv::Rect inner(8, 8, first.width - 16, first.height - 16);
    cv::matchTemplate(second.mat(), first.mat()(inner), result, cv::TM_SQDIFF);
  };
});
#endif

}  // namespace

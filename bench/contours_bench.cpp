#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

const Row get_contours("NuvGetContours/nuv", [] {
  return [picture = binary_picture(), work = gray_picture()]() mutable {
    // The picture comes back as it was.
    NuvFreeContours(NuvGetContours(picture.data(), work.data(), picture.width, picture.height, 0, 0, 0));
  };
});

const Row mark_contours("NuvMarkContours/nuv", [] {
  return [picture = binary_picture(), result = binary_picture()]() mutable {
    NuvMarkContours(picture.data(), picture.width, picture.height, result.data());
  };
});
const Row remove_holes("NuvRemoveBlackRegionsByArea/nuv", [] {
  return [picture = binary_picture(), result = binary_picture(), work = gray_picture()]() mutable {
    NuvRemoveBlackRegionsByArea(picture.data(), work.data(), picture.width, picture.height, 0, 100,
                                result.data());
  };
});

// Outer contours, filled one after the other.
const Row fill("NuvFillingContour/nuv", [] {
  auto picture = binary_picture();
  auto work = gray_picture();
  NUV_CONTOUR_STRUCT* contours =
      NuvGetContours(picture.data(), work.data(), picture.width, picture.height, 0, 0, 1);
  return [contours, picture]() mutable {
    for (NUV_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->pNext) {
      NuvFillingContour(picture.data(), picture.width, c->x, c->y, c->pChainCode, c->N, true, 128, 255);
    }
  };
});

#if NUV_WITH_OPENCV
using Contours = std::vector<std::vector<cv::Point>>;

Contours contours_of(BenchPicture& picture, int mode) {
  Contours contours;
  cv::findContours(picture.mat(), contours, mode, cv::CHAIN_APPROX_NONE);
  return contours;
}

const Row draw_contours("NuvMarkContours/opencv", [] {
  return [picture = binary_picture(), result = binary_picture()]() mutable {
    cv::Mat drawn = result.mat();
    drawn.setTo(0);
    cv::drawContours(drawn, contours_of(picture, cv::RETR_LIST), -1, 255);
  };
});
const Row fill_holes("NuvRemoveBlackRegionsByArea/opencv", [] {
  return [picture = binary_picture(), result = binary_picture()]() mutable {
    Contours contours;
    std::vector<cv::Vec4i> links;
    cv::findContours(picture.mat(), contours, links, cv::RETR_CCOMP, cv::CHAIN_APPROX_NONE);
    cv::Mat filled = result.mat();
    picture.mat().copyTo(filled);
    for (std::size_t i = 0; i < contours.size(); ++i) {
      const bool is_hole = links[i][3] >= 0;
      if (!is_hole || cv::contourArea(contours[i]) > 100) continue;
      cv::drawContours(filled, contours, static_cast<int>(i), 255, cv::FILLED);
    }
  };
});
const Row fill_contours("NuvFillingContour/opencv", [] {
  auto source = binary_picture();
  return [contours = contours_of(source, cv::RETR_CCOMP), picture = binary_picture()]() mutable {
    cv::Mat filled = picture.mat();
    cv::drawContours(filled, contours, -1, 255, cv::FILLED);
  };
});

const Row find_contours("NuvGetContours/opencv", [] {
  return [picture = binary_picture()]() mutable {
    const Contours contours = contours_of(picture, cv::RETR_LIST);
    benchmark::DoNotOptimize(contours.data());
  };
});
#endif

}  // namespace

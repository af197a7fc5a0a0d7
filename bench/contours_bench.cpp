#include <cmath>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

const Row get_contours("NuvGetContours/nuv", [] {
  return [picture = binary_picture(), work = gray_picture()]() mutable {
    // The call restores the picture.
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

// Fills the outer contours one after the other.
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

// A comb: teeth that hang from a back. Its chain covers most of the picture, and the export draws it again at
// every pair of pixels that differ.
const Row select_on_comb("NuvSelectContoursByArea 640x480 comb/nuv", [] {
  BenchPicture comb{640, 480, 1, LineVector<uint8_t>(std::size_t{640} * 480)};
  for (std::size_t i = 0; i < comb.pixels.size(); ++i)
    comb.pixels[i] = i % 640 % 4 == 2 || i / 640 == 1 ? 255 : 0;
  return [comb, result = comb, work = comb]() mutable {
    // The call restores the picture.
    NuvSelectContoursByArea(comb.data(), work.data(), comb.width, comb.height, 1, 0, comb.width * comb.height,
                            result.data());
  };
});

// The work of the example count_parts without its files: finds parts and holes of 100 pixels or more and
// measures where they are.
const Row count_parts("count_parts/nuv", [] {
  return [picture = gray_picture(), binary = gray_picture(), work = gray_picture()]() mutable {
    NuvThreshold(picture.data(), picture.width, picture.height, 128, binary.data());
    NUV_CONTOUR_STRUCT* contours =
        NuvGetContours(binary.data(), work.data(), picture.width, picture.height, 1, 100, 0);
    for (const NUV_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->pNext) {
      int32_t place[6];
      NuvContourRect(c->x, c->y, c->pChainCode, c->N, place, place + 1, place + 2, place + 3);
      NuvContourCenter(c->x, c->y, c->pChainCode, c->N, place + 4, place + 5);
      benchmark::DoNotOptimize(place);
    }
    NuvFreeContours(contours);
  };
});

#if NUV_WITH_OPENCV
using Contours = std::vector<std::vector<cv::Point>>;

Contours contours_of(BenchPicture& picture, int mode) {
  Contours contours;
  cv::findContours(picture.mat(), contours, mode, cv::CHAIN_APPROX_NONE);
  return contours;
}

const Row draw_contours("NuvMarkContours/opencv findContours + drawContours", [] {
  return [picture = binary_picture(), result = binary_picture()]() mutable {
    cv::Mat drawn = result.mat();
    drawn.setTo(0);
    cv::drawContours(drawn, contours_of(picture, cv::RETR_LIST), -1, 255);
  };
});
const Row fill_holes("NuvRemoveBlackRegionsByArea/opencv findContours + drawContours", [] {
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
const Row fill_contours("NuvFillingContour/opencv drawContours", [] {
  auto source = binary_picture();
  return [contours = contours_of(source, cv::RETR_CCOMP), picture = binary_picture()]() mutable {
    cv::Mat filled = picture.mat();
    cv::drawContours(filled, contours, -1, 255, cv::FILLED);
  };
});

const Row measure_parts("count_parts/opencv findContours", [] {
  return [picture = gray_picture(), binary = gray_picture()]() mutable {
    cv::threshold(picture.mat(), binary.mat(), 127, 255, cv::THRESH_BINARY);
    for (const std::vector<cv::Point>& contour : contours_of(binary, cv::RETR_CCOMP)) {
      if (cv::contourArea(contour) < 100) continue;
      const cv::Rect box = cv::boundingRect(contour);
      const cv::Moments centre = cv::moments(contour);
      const double perimeter = cv::arcLength(contour, true);
      benchmark::DoNotOptimize(box);
      benchmark::DoNotOptimize(centre);
      benchmark::DoNotOptimize(perimeter);
    }
  };
});

const Row find_contours("NuvGetContours/opencv findContours", [] {
  return [picture = binary_picture()]() mutable {
    const Contours contours = contours_of(picture, cv::RETR_LIST);
    benchmark::DoNotOptimize(contours.data());
  };
});
#endif

}  // namespace

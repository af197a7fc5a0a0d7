#include <string>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

#if NUV_WITH_OPENCV
#include <opencv2/features2d.hpp>
#endif

namespace {

constexpr int32_t kMinArea = 60;
constexpr int32_t kSegmentArea = 200;  // of the example

// The library's function changes the picture, so each call gets a copy.
auto merge_split_of(BenchPicture picture) {
  return [source = picture, picture, work = LineVector<uint8_t>(2 * picture.pixels.size())]() mutable {
    picture.pixels = source.pixels;
    NuvFreeRegionStruct(
        NuvMergeSplit(picture.data(), work.data(), picture.width, picture.height, kMinArea, 0, 0.5));
  };
}

// The pictures of the rows, and the sizes and names that the rows carry.
struct Photograph {
  const char* row;
  BenchPicture (*picture)();
};
constexpr Photograph kPhotographs[] = {
    {"NuvMergeSplit", [] { return gray_picture(); }},
    {"NuvMergeSplit 512x512 camera", [] { return gray_picture(512, 512); }},
    {"NuvMergeSplit 384x303 coins", [] { return coins_picture(); }},
    {"NuvMergeSplit 512x512 brick", [] { return brick_picture(); }},
    {"NuvMergeSplit 400x300 clock", [] { return clock_picture(); }},
    {"NuvMergeSplit 600x400 coffee", [] { return coffee_picture(); }},
};

// Adds a row for each photograph.
template <class WorkOf>
std::vector<Row> rows_of(const std::string& side, WorkOf work_of) {
  std::vector<Row> rows;
  for (const Photograph& p : kPhotographs) {
    rows.emplace_back((p.row + side).c_str(), [p, work_of] { return work_of(p.picture()); });
  }
  return rows;
}

const std::vector<Row> merge_split = rows_of("/nuv", merge_split_of);

// The work of the example segment without its files: finds the regions and draws their outlines.
const Row segment("segment 512x512/nuv", [] {
  BenchPicture source = gray_picture(512, 512);
  return [source, picture = source, work = LineVector<uint8_t>(2 * source.pixels.size()),
          drawing = LineVector<uint8_t>(3 * source.pixels.size())]() mutable {
    picture.pixels = source.pixels;
    NuvGry2RGBImg(source.data(), source.data(), source.data(), source.width, source.height, drawing.data());
    RegionStruct* regions =
        NuvMergeSplit(picture.data(), work.data(), picture.width, picture.height, kSegmentArea, 0, 0.5);
    std::vector<int32_t> x;
    std::vector<int32_t> y;
    for (const RegionStruct* r = regions; r != nullptr; r = r->next) {
      x.resize(static_cast<std::size_t>(r->N) + 1);
      y.resize(x.size());
      NuvChain2Points(r->x0, r->y0, r->pChainCode, r->N, x.data(), y.data());
      for (std::size_t i = 0; i + 1 < x.size(); ++i) {
        drawing[static_cast<std::size_t>(y[i] * picture.width + x[i]) * 3] = 255;
      }
    }
    NuvFreeRegionStruct(regions);
  };
});

#if NUV_WITH_OPENCV
// The peer's regions are sets of pixels, and their outlines are found in a mask.
const Row cv_segment("segment 512x512/opencv MSER + findContours", [] {
  BenchPicture source = gray_picture(512, 512);
  return [source, detector = cv::MSER::create(5, kSegmentArea, 512 * 512), drawing = cv::Mat()]() mutable {
    std::vector<std::vector<cv::Point>> regions;
    std::vector<cv::Rect> boxes;
    cv::cvtColor(source.mat(), drawing, cv::COLOR_GRAY2BGR);
    detector->detectRegions(source.mat(), regions, boxes);
    std::vector<std::vector<cv::Point>> outlines;
    for (std::size_t i = 0; i < regions.size(); ++i) {
      cv::Mat mask = cv::Mat::zeros(boxes[i].height, boxes[i].width, CV_8UC1);
      for (const cv::Point& p : regions[i]) mask.at<uint8_t>(p - boxes[i].tl()) = 255;
      cv::findContours(mask, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE, boxes[i].tl());
      for (const std::vector<cv::Point>& outline : outlines) {
        for (const cv::Point& p : outline) drawing.at<cv::Vec3b>(p)[0] = 255;
      }
    }
  };
});

// The peer runs with its default delta, in two rows. The library finds regions of any area, and so does the peer in
// the first row. In the second row its default limit leaves out the large regions.
auto extremal_regions_of(BenchPicture picture, int32_t max_area) {
  return [picture, detector = cv::MSER::create(5, kMinArea, max_area)]() mutable {
    std::vector<std::vector<cv::Point>> regions;
    std::vector<cv::Rect> boxes;
    detector->detectRegions(picture.mat(), regions, boxes);
    benchmark::DoNotOptimize(regions.data());
  };
}

const std::vector<Row> extremal_regions = rows_of("/opencv MSER", [](BenchPicture picture) {
  const int32_t pixels = picture.width * picture.height;
  return extremal_regions_of(std::move(picture), pixels);
});
const std::vector<Row> small_extremal_regions =
    rows_of("/opencv MSER to 14400 pixels",
            [](BenchPicture picture) { return extremal_regions_of(std::move(picture), 14400); });
#endif

}  // namespace

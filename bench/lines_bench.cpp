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

// An image with so many edge points, evenly taken from those of the photograph.
BenchPicture edge_points(std::size_t count) {
  BenchPicture picture = gray_picture();
  BenchPicture edges = picture;
  NuvGryImgSobel(picture.data(), picture.width, picture.height, edges.data());
  NuvThreshold(edges.data(), edges.width, edges.height, 100);
  const auto found = static_cast<std::size_t>(std::count(edges.pixels.begin(), edges.pixels.end(), 255));
  std::size_t credit = 0;
  for (uint8_t& pixel : edges.pixels) {
    if (pixel == 0) continue;
    credit += count;
    pixel = credit >= found ? 255 : 0;
    if (pixel != 0) credit -= found;
  }
  return edges;
}

constexpr std::size_t kEdgePoints = 20000;

const Row hough("NuvHoughLines_HT/nuv", [] {
  BenchPicture edges = edge_points(kEdgePoints);
  std::vector<int32_t> x;
  std::vector<int32_t> y;
  for (int32_t i = 0; i < edges.width * edges.height; ++i) {
    if (edges.pixels[static_cast<std::size_t>(i)] == 0) continue;
    x.push_back(i % edges.width);
    y.push_back(i / edges.width);
  }
  NuvHoughLines_Initialize(edges.width, edges.height);
  return [x, y]() mutable {
    double a = 0;
    double b = 0;
    double c = 0;
    int32_t thro = 0;
    int32_t theta = 0;
    benchmark::DoNotOptimize(NuvHoughLines_HT(x.data(), y.data(), static_cast<int32_t>(x.size()), 0, 180, &a,
                                              &b, &c, &thro, &theta));
  };
});

#if NUV_WITH_OPENCV
const Row hough_lines("NuvHoughLines_HT/opencv", [] {
  return [edges = edge_points(kEdgePoints)]() mutable {
    std::vector<cv::Vec2f> lines;
    cv::HoughLines(edges.mat(), lines, 1, CV_PI / 180, 500);
    benchmark::DoNotOptimize(lines.data());
  };
});

const Row line_segment_detector("NuvImgChainLines_DoGryImg/opencv", [] {
  return [picture = gray_picture(), detector = cv::createLineSegmentDetector()]() mutable {
    std::vector<cv::Vec4f> lines;
    detector->detect(picture.mat(), lines);
    benchmark::DoNotOptimize(lines.data());
  };
});
#endif

}  // namespace

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

struct Points {
  std::vector<int32_t> x;
  std::vector<int32_t> y;

  int32_t n() const { return static_cast<int32_t>(x.size()); }
};

// Uses the settings that the example find_lines chooses for the size.
auto chain_lines(int32_t width, int32_t height) {
  NuvImgChainLines_Initialize(width, height, 0.9, 1.0, std::min(width, height) / 20, 24, 100000);
  return [picture = gray_picture(width, height)]() mutable {
    NuvImgChainLines_DoGryImg(picture.data(), picture.width, picture.height, true);
  };
}

const Row small("NuvImgChainLines_DoGryImg 640x480/nuv", [] { return chain_lines(640, 480); });
const Row usual("NuvImgChainLines_DoGryImg/nuv", [] { return chain_lines(1280, 960); });
const Row large("NuvImgChainLines_DoGryImg 4000x3000/nuv", [] { return chain_lines(4000, 3000); });

// An image with count edge points, which are spread evenly over the edge points of the photograph.
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

// Points from top to bottom of a curve with waves of two lengths.
Points wavy_curve(int32_t count) {
  Points points;
  for (int32_t i = 0; i < count; ++i) {
    points.x.push_back(2000 + static_cast<int32_t>(900 * std::sin(i * 0.0004) + 60 * std::sin(i * 0.013)));
    points.y.push_back(i);
  }
  return points;
}

// Points that alternate between two walls. Each split of them is as uneven as possible.
Points two_walls(int32_t count) {
  Points points;
  for (int32_t i = 0; i < count; ++i) {
    points.x.push_back(i % 2 * 1000);
    points.y.push_back(i % 2 == 0 ? i : count - i);
  }
  return points;
}

auto key_points(const Points& points, int32_t keys) {
  return [points, moved = points, x = std::vector<int32_t>(static_cast<std::size_t>(keys)),
          y = std::vector<int32_t>(static_cast<std::size_t>(keys)), keys]() mutable {
    moved = points;
    NuvLineKeyPoints(moved.x.data(), moved.y.data(), moved.n(), keys, x.data(), y.data());
  };
}
const Row keys("NuvLineKeyPoints 64000 points/nuv", [] { return key_points(wavy_curve(64000), 500); });
const Row keys_of_walls("NuvLineKeyPoints 64000 points on two walls/nuv",
                        [] { return key_points(two_walls(64000), 64000); });

// The pixels of a circle.
Points circle(int32_t count) {
  Points points;
  for (int32_t i = 0; i < count; ++i) {
    points.x.push_back(static_cast<int32_t>(2000 * std::cos(i * 6.2831853 / count)));
    points.y.push_back(static_cast<int32_t>(2000 * std::sin(i * 6.2831853 / count)));
  }
  return points;
}
const Row poly4("NuvContour2Poly4 19200 points/nuv", [] {
  return [points = circle(19200)]() mutable {
    std::array<int32_t, 4> x;
    std::array<int32_t, 4> y;
    NuvContour2Poly4(points.x.data(), points.y.data(), points.n(), x.data(), y.data());
    benchmark::DoNotOptimize(x);
    benchmark::DoNotOptimize(y);
  };
});

Points scattered_about_a_line(int32_t count) {
  Points points;
  uint32_t noise = 1;
  for (int32_t i = 0; i < count; ++i) {
    noise = noise * 1664525 + 1013904223;
    points.x.push_back(i);
    points.y.push_back(i / 3 + static_cast<int32_t>(noise >> 29));
  }
  return points;
}
const Row fit("NuvFittingLine 2000 points/nuv", [] {
  return [points = scattered_about_a_line(2000)]() mutable {
    int32_t is_vertical = 0;
    std::array<double, 5> line;
    NuvFittingLine(points.x.data(), points.y.data(), points.n(), &is_vertical, &line[0], &line[1], &line[2],
                   &line[3], &line[4]);
    benchmark::DoNotOptimize(line);
  };
});

#if NUV_WITH_OPENCV
std::vector<cv::Point> cv_points(const Points& points) {
  std::vector<cv::Point> result;
  for (std::size_t i = 0; i < points.x.size(); ++i) result.emplace_back(points.x[i], points.y[i]);
  return result;
}
const Row approximate("NuvLineKeyPoints 64000 points/opencv approxPolyDP", [] {
  return [points = cv_points(wavy_curve(64000)), keys = std::vector<cv::Point>()]() mutable {
    cv::approxPolyDP(points, keys, 2, false);
  };
});
const Row least_rectangle("NuvContour2Poly4 19200 points/opencv minAreaRect", [] {
  return [points = cv_points(circle(19200))]() mutable { benchmark::DoNotOptimize(cv::minAreaRect(points)); };
});
const Row fit_line("NuvFittingLine 2000 points/opencv fitLine", [] {
  return [points = cv_points(scattered_about_a_line(2000))]() mutable {
    cv::Vec4f line;
    cv::fitLine(points, line, cv::DIST_L2, 0, 0.01, 0.01);
    benchmark::DoNotOptimize(line);
  };
});

const Row hough_lines("NuvHoughLines_HT/opencv HoughLines", [] {
  return [edges = edge_points(kEdgePoints)]() mutable {
    std::vector<cv::Vec2f> lines;
    cv::HoughLines(edges.mat(), lines, 1, CV_PI / 180, 500);
    benchmark::DoNotOptimize(lines.data());
  };
});

const Row line_segment_detector("NuvImgChainLines_DoGryImg/opencv LineSegmentDetector", [] {
  return [picture = gray_picture(), detector = cv::createLineSegmentDetector()]() mutable {
    std::vector<cv::Vec4f> lines;
    detector->detect(picture.mat(), lines);
    benchmark::DoNotOptimize(lines.data());
  };
});
#endif

}  // namespace

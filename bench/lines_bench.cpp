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

// The work of the example find_lines without its files: finds the segments, sorts them by length and draws them.
const Row find_lines("find_lines/nuv", [] {
  NuvImgChainLines_Initialize(1280, 960, 0.9, 1.0, 48, 24, 100000);
  return [picture = gray_picture(), drawing = colour_picture()]() mutable {
    const int32_t n = NuvImgChainLines_DoGryImg(picture.data(), picture.width, picture.height, true);
    const TAVI_LINE_SEGMENT* found = NuvImgChainLines_GetLines();
    std::vector<TAVI_LINE_SEGMENT> segments(found, found + n);
    std::stable_sort(segments.begin(), segments.end(), [](const auto& a, const auto& b) {
      return NuvDistBetweenPoint12(a.x1, a.y1, a.x2, a.y2) > NuvDistBetweenPoint12(b.x1, b.y1, b.x2, b.y2);
    });
    NuvGry2RGBImg(picture.data(), picture.data(), picture.data(), picture.width, picture.height,
                  drawing.data());
    for (const TAVI_LINE_SEGMENT& s : segments) {
      NuvRGBLine(drawing.data(), drawing.width, drawing.height, s.x1, s.y1, s.x2, s.y2, 255, 0, 0);
    }
  };
});

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
const Row approximate_once("NuvLineKeyPoints 64000 points/opencv approxPolyDP", [] {
  return [points = cv_points(wavy_curve(64000)), keys = std::vector<cv::Point>()]() mutable {
    cv::approxPolyDP(points, keys, 2, false);
  };
});
// The peer takes a tolerance and not a number of points, so bisection finds the tolerance for that number.
const Row approximate("NuvLineKeyPoints 64000 points/opencv approxPolyDP bisected", [] {
  return [points = cv_points(wavy_curve(64000)), keys = std::vector<cv::Point>()]() mutable {
    double low = 0;
    double high = 64;
    for (int i = 0; i < 20; ++i) {
      const double tolerance = (low + high) / 2;
      cv::approxPolyDP(points, keys, tolerance, false);
      if (keys.size() == 500) break;
      (keys.size() > 500 ? low : high) = tolerance;
    }
    benchmark::DoNotOptimize(keys.data());
  };
});
const Row least_rectangle("NuvContour2Poly4 19200 points/opencv minAreaRect", [] {
  return [points = cv_points(circle(19200))]() mutable { benchmark::DoNotOptimize(cv::minAreaRect(points)); };
});
// The library also measures the deviation and the greatest distance, which the peer has other functions for.
const Row fit_line("NuvFittingLine 2000 points/opencv fitLine + transform + norm x2", [] {
  return [points = cv_points(scattered_about_a_line(2000)), distances = cv::Mat()]() mutable {
    cv::Vec4f line;
    cv::fitLine(points, line, cv::DIST_L2, 0, 0.01, 0.01);
    const cv::Matx13f across(-line[1], line[0], line[1] * line[2] - line[0] * line[3]);
    cv::transform(cv::Mat_<cv::Point2f>(cv::Mat(points)), distances, across);
    benchmark::DoNotOptimize(cv::norm(distances, cv::NORM_L2));
    benchmark::DoNotOptimize(cv::norm(distances, cv::NORM_INF));
  };
});

const Row hough_lines("NuvHoughLines_HT/opencv HoughLines", [] {
  return [edges = edge_points(kEdgePoints)]() mutable {
    std::vector<cv::Vec2f> lines;
    cv::HoughLines(edges.mat(), lines, 1, CV_PI / 180, 500);
    benchmark::DoNotOptimize(lines.data());
  };
});

const Row cv_find_lines("find_lines/opencv LineSegmentDetector + line", [] {
  return
      [picture = gray_picture(), detector = cv::createLineSegmentDetector(), drawing = cv::Mat()]() mutable {
        std::vector<cv::Vec4f> lines;
        detector->detect(picture.mat(), lines);
        std::stable_sort(lines.begin(), lines.end(), [](const cv::Vec4f& a, const cv::Vec4f& b) {
          return std::hypot(a[0] - a[2], a[1] - a[3]) > std::hypot(b[0] - b[2], b[1] - b[3]);
        });
        cv::cvtColor(picture.mat(), drawing, cv::COLOR_GRAY2BGR);
        for (const cv::Vec4f& s : lines) {
          cv::line(drawing, cv::Point(cvRound(s[0]), cvRound(s[1])), cv::Point(cvRound(s[2]), cvRound(s[3])),
                   cv::Scalar(0, 0, 255));
        }
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

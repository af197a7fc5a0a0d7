#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

constexpr int32_t kSize = 100;

constexpr std::pair<int32_t, int32_t> kCorners[] = {{20, 10}, {85, 30}, {70, 88}, {12, 70}};

// A quadrilateral with the corners kCorners, bright on a dark ground.
TestImage quadrilateral() {
  TestImage image(kSize, kSize, 200);
  for (int32_t y = 0; y < kSize; ++y) {
    for (int32_t x = 0; x < kSize; ++x) {
      for (std::size_t i = 0; i < 4; ++i) {
        const auto [x1, y1] = kCorners[i];
        const auto [x2, y2] = kCorners[(i + 1) % 4];
        if ((x2 - x1) * (y - y1) - (y2 - y1) * (x - x1) < 0) image.at(x, y) = 40;
      }
    }
  }
  return image;
}

struct CodeLine {
  bool found = false;
  int32_t* x = nullptr;
  int32_t* y = nullptr;
  int32_t n = 0;
};
CodeLine next_code_line() {
  CodeLine line;
  line.found = NuvImgChainLines_GetNxtCodeLine(&line.x, &line.y, &line.n);
  return line;
}

std::vector<TAVI_LINE_SEGMENT> segments_of(TestImage& image, int32_t threshold, int32_t min_length = 20) {
  EXPECT_TRUE(NuvImgChainLines_Initialize(image.width, image.height, 0.9, 1.0, min_length, threshold, 1000));
  const int32_t n = NuvImgChainLines_DoGryImg(image.data(), image.width, image.height, true);
  const TAVI_LINE_SEGMENT* segments = NuvImgChainLines_GetLines();
  return {segments, segments + n};
}

// Whether some segment lies on the line from one point to another and covers most of it.
bool covers(const std::vector<TAVI_LINE_SEGMENT>& segments, std::pair<int32_t, int32_t> from,
            std::pair<int32_t, int32_t> to) {
  const double length = NuvDistBetweenPoint12(from.first, from.second, to.first, to.second);
  return std::any_of(segments.begin(), segments.end(), [&](const TAVI_LINE_SEGMENT& s) {
    const auto is_near = [&s](std::pair<int32_t, int32_t> p) {
      return std::fabs(s.A * p.first + s.B * p.second + s.C) / std::hypot(s.A, s.B) < 1.5;
    };
    return is_near(from) && is_near(to) && NuvDistBetweenPoint12(s.x1, s.y1, s.x2, s.y2) > 0.7 * length;
  });
}

TEST(ChainLines, FindTheSidesOfAQuadrilateral) {
  TestImage image = quadrilateral();
  for (int32_t threshold : {5, 60}) {  // the exact and the fast edge filter
    const auto segments = segments_of(image, threshold);
    EXPECT_EQ(segments.size(), 4U) << threshold;
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_TRUE(covers(segments, kCorners[i], kCorners[(i + 1) % 4])) << i;
  }
}

TEST(ChainLines, ReportAThinLineOnce) {
  TestImage image(kSize, kSize, 40);
  for (int32_t x = 15; x < 85; ++x) image.at(x, 20 + x / 3) = 220;
  const auto segments = segments_of(image, 50);
  EXPECT_EQ(segments.size(), 1U) << "the chain runs along the line and back";
}

TEST(ChainLines, RefuseImagesBeyondTheirSize) {
  TestImage image = quadrilateral();
  ASSERT_FALSE(segments_of(image, 60).empty());
  EXPECT_TRUE(NuvImgChainLines_Initialize(50, 50, 0.9, 1.0, 20, 60, 10));
  EXPECT_EQ(NuvImgChainLines_DoGryImg(image.data(), kSize, kSize, false), 0);
  EXPECT_EQ(NuvImgChainLines_GetLines(), nullptr) << "the refused call had bFitLines = false";
  EXPECT_FALSE(next_code_line().found);
  std::vector<uint8_t> panels(6 * image.pixels.size(), 9);
  EXPECT_EQ(NuvImgChainLines_Debug(panels.data()), 0);
  EXPECT_EQ(*std::max_element(panels.begin() + 2 * kSize * kSize, panels.begin() + 3 * kSize * kSize), 0);
  EXPECT_EQ(NuvImgChainLines_DoGryImg(image.data(), 65536, 65536, true), 0) << "65536*65536 is 0 in 32 bits";
}

TEST(ChainLines, ReallocationDropsTheResults) {
  TestImage image = quadrilateral();
  std::vector<uint8_t> panels(6 * image.pixels.size());
  const auto has_lines_after = [&](int32_t side, int32_t max_lines) {
    EXPECT_FALSE(segments_of(image, 60).empty());
    EXPECT_TRUE(NuvImgChainLines_Initialize(side, side, 0.9, 1.0, 20, 60, max_lines));
    const bool has_lines = NuvImgChainLines_Debug(panels.data()) > 0;
    EXPECT_EQ(next_code_line().found, has_lines);
    return has_lines;
  };
  EXPECT_TRUE(has_lines_after(10, 10));
  EXPECT_FALSE(has_lines_after(600, 10));
  EXPECT_FALSE(has_lines_after(10, 5000));
}

TEST(ChainLines, DebugPanelsShowEachStage) {
  TestImage image = quadrilateral();
  image.at(3, 3) = 255;
  const auto segments = segments_of(image, 60);
  const auto n = static_cast<std::ptrdiff_t>(image.pixels.size());
  std::vector<uint8_t> panels(6 * image.pixels.size());
  EXPECT_EQ(NuvImgChainLines_Debug(panels.data()), static_cast<int32_t>(segments.size()));
  const auto panel = [&](int i) {
    return std::vector<uint8_t>(panels.begin() + i * n, panels.begin() + (i + 1) * n);
  };
  EXPECT_EQ(panel(0)[3 * kSize + 3], 250);
  TestImage edges(kSize, kSize);
  TestImage scratch(kSize, kSize);
  NuvShenJunEdgeFast(image.data(), scratch.data(), kSize, kSize, 2, 60, edges.data());
  EXPECT_EQ(panel(1), edges.pixels);
  for (std::size_t i = 0; i < image.pixels.size(); ++i) {
    ASSERT_EQ(panel(3)[i], panel(2)[i] != 0 ? 0 : panel(1)[i]);
    ASSERT_EQ(panel(5)[i], panel(4)[i] != 0 ? 255 : panel(0)[i]);
  }
  const CodeLine line = next_code_line();
  ASSERT_TRUE(line.found) << "NuvImgChainLines_GetNxtCodeLine starts over";
  EXPECT_EQ(panel(2)[static_cast<std::size_t>(line.y[0] * kSize + line.x[0])], 254);

  // An image larger than the memory is refused, and only the source is shown.
  TestImage large(4000, 100, 200);
  EXPECT_EQ(NuvImgChainLines_DoGryImg(large.data(), 4000, 100, true), 0);
  panels.assign(6 * large.pixels.size(), 7);
  EXPECT_EQ(NuvImgChainLines_Debug(panels.data()), 0);
  for (std::size_t i = 0; i < panels.size(); ++i) {
    const std::size_t shown = i / large.pixels.size();
    ASSERT_EQ(panels[i], shown == 0 || shown == 5 ? 200 : 0) << shown;
  }
}

}  // namespace

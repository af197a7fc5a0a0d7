#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include "NuvImgSDK2014DLL.h"
#include "images.h"
#include "lines/chain_cutter.h"

namespace {

using testing::ElementsAre;

constexpr int32_t kSize = 100;

// A bright convex polygon on a dark ground.
TestImage polygon(std::initializer_list<std::pair<int32_t, int32_t>> vertices) {
  TestImage image(kSize, kSize, 40);
  const std::vector<std::pair<int32_t, int32_t>> v(vertices);
  for (int32_t y = 0; y < kSize; ++y) {
    for (int32_t x = 0; x < kSize; ++x) {
      const bool inside = [&] {
        for (std::size_t i = 0; i < v.size(); ++i) {
          const auto [x1, y1] = v[i];
          const auto [x2, y2] = v[(i + 1) % v.size()];
          if ((x2 - x1) * (y - y1) - (y2 - y1) * (x - x1) < 0) return false;
        }
        return true;
      }();
      if (inside) image.at(x, y) = 200;
    }
  }
  return image;
}

std::vector<TAVI_LINE_SEGMENT> segments_of(TestImage& image, int32_t threshold, int32_t min_length = 20) {
  EXPECT_TRUE(NuvImgChainLines_Initialize(image.width, image.height, 0.9, 1.0, min_length, threshold, 1000));
  const int32_t n = NuvImgChainLines_DoGryImg(image.data(), image.width, image.height, true);
  const TAVI_LINE_SEGMENT* segments = NuvImgChainLines_GetLines();
  return {segments, segments + n};
}

double distance_to(const TAVI_LINE_SEGMENT& s, double x, double y) {
  return std::fabs(s.A * x + s.B * y + s.C) / std::hypot(s.A, s.B);
}

// Whether some segment runs along the way from one point to another, covering most of it.
bool covers(const std::vector<TAVI_LINE_SEGMENT>& segments, std::pair<int32_t, int32_t> from,
            std::pair<int32_t, int32_t> to) {
  const double length = NuvDistBetweenPoint12(from.first, from.second, to.first, to.second);
  return std::any_of(segments.begin(), segments.end(), [&](const TAVI_LINE_SEGMENT& s) {
    return distance_to(s, from.first, from.second) < 1.5 && distance_to(s, to.first, to.second) < 1.5 &&
           NuvDistBetweenPoint12(s.x1, s.y1, s.x2, s.y2) > 0.7 * length;
  });
}

TEST(ChainLines, FindTheSidesOfAPolygon) {
  const std::initializer_list<std::pair<int32_t, int32_t>> vertices = {
      {20, 10}, {85, 30}, {70, 88}, {12, 70}};
  TestImage image = polygon(vertices);
  const std::vector<std::pair<int32_t, int32_t>> v(vertices);
  for (int32_t threshold : {5, 60}) {  // the exact and the fast edge filter
    const auto segments = segments_of(image, threshold);
    EXPECT_EQ(segments.size(), 4U) << threshold;
    for (std::size_t i = 0; i < v.size(); ++i)
      EXPECT_TRUE(covers(segments, v[i], v[(i + 1) % v.size()])) << i;
  }
}

TEST(ChainLines, GiveAThinLineOnce) {
  TestImage image(kSize, kSize, 40);
  for (int32_t x = 15; x < 85; ++x) image.at(x, 20 + x / 3) = 220;
  const auto segments = segments_of(image, 50);
  EXPECT_EQ(segments.size(), 1U) << "the tracer walks it out and back";
}

TEST(ChainLines, KeepToTheirCapacity) {
  TestImage image = polygon({{20, 10}, {85, 30}, {70, 88}, {12, 70}});
  for (int32_t capacity : {-4, 0, 1, 2}) {
    NuvImgChainLines_Initialize(kSize, kSize, 0.9, 1.0, 20, 60, capacity);
    for (bool fit : {false, true}) {
      EXPECT_EQ(NuvImgChainLines_DoGryImg(image.data(), kSize, kSize, fit), std::max(capacity, 0));
    }
  }
}

TEST(ChainLines, RefuseImagesBeyondTheirSize) {
  TestImage image = polygon({{20, 10}, {85, 30}, {70, 88}, {12, 70}});
  ASSERT_FALSE(segments_of(image, 60).empty());
  EXPECT_TRUE(NuvImgChainLines_Initialize(50, 50, 0.9, 1.0, 20, 60, 10));
  EXPECT_EQ(NuvImgChainLines_DoGryImg(image.data(), kSize, kSize, false), 0);
  EXPECT_EQ(NuvImgChainLines_GetLines(), nullptr) << "the refused call's flag";
  int32_t* x = nullptr;
  int32_t* y = nullptr;
  int32_t n = 0;
  EXPECT_FALSE(NuvImgChainLines_GetNxtCodeLine(&x, &y, &n));
  std::vector<uint8_t> panels(6 * image.pixels.size(), 9);
  EXPECT_EQ(NuvImgChainLines_Debug(panels.data()), 0);
  EXPECT_EQ(*std::max_element(panels.begin() + 2 * kSize * kSize, panels.begin() + 3 * kSize * kSize), 0);
  EXPECT_EQ(NuvImgChainLines_DoGryImg(image.data(), 65536, 65536, true), 0) << "0 pixels in 32 bits";
}

TEST(ChainLines, GrowingMemoryDropsTheResults) {
  TestImage image = polygon({{20, 10}, {85, 30}, {70, 88}, {12, 70}});
  std::vector<uint8_t> panels(6 * image.pixels.size());
  int32_t* x = nullptr;
  int32_t* y = nullptr;
  int32_t n = 0;
  int32_t side = 500;
  int32_t lines = 5000;
  for (int32_t round = 0; round < 6; ++round) {
    ASSERT_FALSE(segments_of(image, 60).empty());
    (round % 2 == 0 ? side : lines) += 100;
    EXPECT_TRUE(NuvImgChainLines_Initialize(side, side, 0.9, 1.0, 20, 60, lines));
    EXPECT_FALSE(NuvImgChainLines_GetNxtCodeLine(&x, &y, &n));
    EXPECT_EQ(NuvImgChainLines_Debug(panels.data()), 0);
  }
  ASSERT_FALSE(segments_of(image, 60).empty());
  EXPECT_TRUE(NuvImgChainLines_Initialize(10, 10, 0.9, 1.0, 20, 60, 10));
  EXPECT_TRUE(NuvImgChainLines_GetNxtCodeLine(&x, &y, &n)) << "nothing was freed";
}

TEST(ChainLines, DebugPanelsShowEachStage) {
  TestImage image = polygon({{20, 10}, {85, 30}, {70, 88}, {12, 70}});
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
  int32_t* x = nullptr;
  int32_t* y = nullptr;
  int32_t count = 0;
  ASSERT_TRUE(NuvImgChainLines_GetNxtCodeLine(&x, &y, &count)) << "fetching starts over";
  EXPECT_EQ(panel(2)[static_cast<std::size_t>(y[0] * kSize + x[0])], 254);
}

// A chain with its points.
struct Chain {
  std::vector<uint8_t> codes;
  std::vector<int32_t> x;
  std::vector<int32_t> y;

  explicit Chain(std::vector<uint8_t> c) : codes(std::move(c)), x(codes.size()), y(codes.size()) {
    NuvChain2Points(50, 50, codes.data(), static_cast<int32_t>(codes.size()), x.data(), y.data());
  }
  std::vector<std::pair<int32_t, int32_t>> pieces(double straightness = 0.9, int32_t min_length = 6) {
    nuv::Piece pieces[50];
    const int32_t n = nuv::cut_chain({codes.data(), x.data(), y.data(), static_cast<int32_t>(codes.size())},
                                     {straightness, 1.0, min_length}, pieces, 50);
    std::vector<std::pair<int32_t, int32_t>> result;
    for (int32_t i = 0; i < n; ++i) result.emplace_back(pieces[i].start, pieces[i].codes);
    return result;
  }
};

std::vector<uint8_t> repeated(std::initializer_list<std::pair<std::size_t, uint8_t>> runs) {
  std::vector<uint8_t> codes;
  for (const auto& [count, code] : runs) codes.insert(codes.end(), count, code);
  return codes;
}

TEST(ChainCutter, GivesAStraightChainUpToItsLastCode) {
  EXPECT_THAT(Chain(repeated({{20, 0}})).pieces(), ElementsAre(std::pair(0, 19)));
  EXPECT_THAT(Chain(repeated({{5, 0}})).pieces(), ElementsAre());
  EXPECT_THAT(Chain(repeated({{20, 0}})).pieces(0.9, 21), ElementsAre());
}

TEST(ChainCutter, RestartsBeforeACorner) {
  const auto pieces = Chain(repeated({{20, 0}, {20, 6}})).pieces();
  ASSERT_EQ(pieces.size(), 2U);
  const int32_t first_end = pieces[0].first + pieces[0].second;
  EXPECT_NEAR(first_end, 20, 3);
  EXPECT_LT(pieces[1].first, first_end);
  EXPECT_EQ(pieces[1].first + pieces[1].second, 39);
}

// Settings without meaning must not hold the cutter up.
TEST(ChainCutter, EndsForEverySetting) {
  Random random(18);
  for (double straightness : {-3.0, -1.0, -1.0001, 0.0, 0.5, 1.0, 2.0, std::nan("")}) {
    std::vector<uint8_t> codes = repeated({{3000, 7}, {50, 1}});
    for (int i = 0; i < 3000; ++i) codes.push_back(static_cast<uint8_t>(random.between(6, 7)));
    EXPECT_LE(Chain(codes).pieces(straightness).size(), 50U);
  }
}

}  // namespace

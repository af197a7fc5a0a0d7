#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <numeric>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;

// A member as a function of two images and a result, and what it does with a byte of each.
struct Member {
  std::function<void(uint8_t*, uint8_t*, int32_t, int32_t, uint8_t*)> apply;
  std::function<int(int, int)> rule;
};

template <class Logic>
auto logic(Logic function) {
  return
      [=](uint8_t* a, uint8_t* b, int32_t w, int32_t h, uint8_t* result) { function(a, b, w * h, result); };
}

const Member kInto[] = {
    {[](auto a, auto b, auto w, auto h, auto r) { NuvImg1SubstractImg2(a, b, w, h, false, r); },
     [](int a, int b) { return std::max(a - b, 0); }},
    {[](auto a, auto b, auto w, auto h, auto r) { NuvDifferenceImg12(a, b, w, h, false, r); },
     [](int a, int b) { return std::abs(a - b); }},
    {logic(NuvImg1AndImg2ToRes), [](int a, int b) { return a & b; }},
    {logic(NuvImg1XorImg2ToRes), [](int a, int b) { return a ^ b; }},
    {logic(NuvImg1OrImg2ToRes), [](int a, int b) { return a | b; }},
};
// In place of image 1.
const Member kInPlace[] = {
    {[](auto a, auto b, auto w, auto h, auto) { NuvImg1Substract2To1(a, b, w, h); }, kInto[0].rule},
    {[](auto a, auto b, auto w, auto h, auto) { NuvImg1Substract2To2(b, a, w, h); },
     [](int a, int b) { return std::max(b - a, 0); }},
    {[](auto a, auto b, auto w, auto h, auto) { NuvImg1Difference2To1(a, b, w, h); }, kInto[1].rule},
    {[](auto a, auto b, auto w, auto h, auto) { NuvImg1AndImg2To1(a, b, w * h); }, kInto[2].rule},
    {[](auto a, auto b, auto w, auto h, auto) { NuvImg1XorImg2To1(a, b, w * h); }, kInto[3].rule},
    {[](auto a, auto b, auto w, auto h, auto) { NuvImg1OrImg2To1(a, b, w * h); }, kInto[4].rule},
    {[](auto a, auto b, auto w, auto h, auto) { NuvRemainMaxGry(b, w, h, false, a); },
     [](int a, int b) { return std::max(a, b); }},
    {[](auto a, auto b, auto w, auto h, auto) { NuvRemainMinGry(b, w, h, false, a); },
     [](int a, int b) { return std::min(a, b); }},
};

TEST(Arithmetic, FollowsItsRules) {
  Random random(401);
  for (const auto& [width, height] : kOddSizes) {
    const TestImage a = random.gray(width, height);
    const TestImage b = random.gray(width, height);
    const auto check = [&](const Member& member, bool in_place) {
      TestImage first = a;
      TestImage second = b;
      TestImage result(a.width, a.height);
      member.apply(first.data(), second.data(), first.width, first.height, result.data());
      EXPECT_EQ(second, b);
      EXPECT_EQ(in_place || first == a, true);
      for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        ASSERT_EQ((in_place ? first : result).pixels[i], member.rule(a.pixels[i], b.pixels[i])) << i;
      }
    };
    for (const Member& member : kInto) check(member, false);
    for (const Member& member : kInPlace) check(member, true);
  }
}

TEST(Arithmetic, OfRgbImages) {
  Random random(402);
  for (const auto& [width, height] : kOddSizes) {
    const auto pixels = static_cast<std::size_t>(width * height);
    std::vector<uint8_t> a = random.bytes(3 * pixels);
    std::vector<uint8_t> b = random.bytes(3 * pixels);
    TestImage result(width, height);
    int32_t bins[256];
    NuvDifferenceImg12(a.data(), b.data(), width, height, true, result.data(), bins);
    EXPECT_EQ(std::accumulate(bins, bins + 256, 0), width * height);
    std::vector<uint8_t> rest(3 * pixels);
    std::vector<uint8_t> most = b;
    std::vector<uint8_t> least = b;
    NuvImg1SubstractImg2(a.data(), b.data(), width, height, true, rest.data());
    NuvRemainMaxMinGry(a.data(), width, height, true, most.data(), least.data());
    for (std::size_t i = 0; i < pixels; ++i) {
      int largest = 0;
      for (std::size_t k = 3 * i; k < 3 * i + 3; ++k) {
        largest = std::max(largest, std::abs(a[k] - b[k]));
        ASSERT_EQ(rest[k], std::max(a[k] - b[k], 0));
        ASSERT_EQ(most[k], std::max(a[k], b[k]));
        ASSERT_EQ(least[k], std::min(a[k], b[k]));
      }
      ASSERT_EQ(result.pixels[i], largest);
      --bins[largest];
    }
    EXPECT_THAT(bins, Each(0));
  }
}

TEST(IntegralImage, EqualsItsPlainForm) {
  Random random(403);
  std::vector<std::pair<int32_t, int32_t>> sizes(std::begin(kOddSizes), std::end(kOddSizes));
  sizes.emplace_back(4111, 3);
  for (const auto& [width, height] : sizes) {
    TestImage image = random.gray(width, height);
    if (width == 257) image = TestImage(width, height, 255);
    std::vector<int32_t> sums(image.pixels.size());
    NuvDoSumGryImg(image.data(), width, height, sums.data());
    for (int32_t y = 0; y < height; ++y) {
      int32_t sum = 0;
      for (int32_t x = 0; x < width; ++x) {
        sum += image.at(x, y);
        const auto i = static_cast<std::size_t>(y * width + x);
        ASSERT_EQ(sums[i], sum + (y > 0 ? sums[i - static_cast<std::size_t>(width)] : 0)) << x << ',' << y;
      }
    }
  }
}

// A tagRECT as left, top, columns, rows.
tagRECT rect(int32_t left, int32_t top, int32_t columns, int32_t rows) {
  return {left, top, left + columns - 1, top + rows - 1};
}

TEST(DifferenceInRect, OfEqualSizesLeavesOutTheLastRowAndColumn) {
  TestImage a(20, 20, 100);
  TestImage b(20, 20, 100);
  for (int32_t i = 0; i < 10; ++i) b.at(5 + i, 14) = b.at(14, 5 + i) = 0;
  const auto of = [&](tagRECT r1, tagRECT r2) {
    return NuvImgDifferenceInRect(a.data(), b.data(), false, 20, r1, r2);
  };
  EXPECT_EQ(of(rect(5, 5, 10, 10), rect(5, 5, 10, 10)), 0);
  EXPECT_EQ(of(rect(5, 5, 11, 10), rect(5, 5, 11, 10)), 9 * 100 / (9 * 10));
  EXPECT_EQ(of(rect(5, 5, 1, 10), rect(14, 5, 1, 10)), 0);
  EXPECT_EQ(of(rect(5, 5, 10, 1), rect(5, 14, 10, 1)), 0);
}

TEST(DifferenceInRect, OfTwoSizesWalksTheOneOfFewerRows) {
  Random random(404);
  for (int round = 0; round < 60; ++round) {
    const int32_t channels = round % 2 == 0 ? 1 : 3;
    std::vector<uint8_t> a = random.bytes(static_cast<std::size_t>(40 * 40 * channels));
    std::vector<uint8_t> b = random.bytes(a.size());
    const tagRECT r1 = rect(random.between(0, 9), random.between(0, 9), random.between(1, 30), 16);
    const tagRECT r2 = rect(random.between(0, 9), random.between(0, 9), random.between(1, 30), 8);
    const auto byte = [&](const std::vector<uint8_t>& image, int32_t x, int32_t y, int32_t c) {
      return static_cast<int>(image[static_cast<std::size_t>((y * 40 + x) * channels + c)]);
    };
    const int32_t columns = r2.right - r2.left + 1;
    const double step = static_cast<double>(r1.right - r1.left + 1) / columns;
    int32_t sum = 0;
    for (int32_t y = 0; y < 8; ++y) {
      double place = 0;
      for (int32_t x = 0; x < columns; ++x, place += step) {
        for (int32_t c = 0; c < channels; ++c) {
          sum += std::abs(byte(b, r2.left + x, r2.top + y, c) -
                          byte(a, r1.left + static_cast<int32_t>(place), r1.top + 2 * y, c));
        }
      }
    }
    ASSERT_EQ(NuvImgDifferenceInRect(a.data(), b.data(), channels == 3, 40, r1, r2),
              sum / (8 * columns * channels));
    ASSERT_EQ(NuvImgDifferenceInRect(b.data(), a.data(), channels == 3, 40, r2, r1),
              sum / (8 * columns * channels));
  }
}

TEST(CenterBlock, AgainstItsRing) {
  TestImage image = draw({"99999", "91119", "91#19", "91119", "99999"});
  const auto of = [&](int32_t margin) {
    return NuvCenterBlockMeanDif(image.data(), 5, 5, 2, 2, 2, 2, margin);
  };
  EXPECT_EQ(of(0), 0);
  EXPECT_EQ(of(1), 255 - 1);
  EXPECT_EQ(of(2), 255 - (8 * 1 + 16 * 9) / 24);
  EXPECT_EQ(of(2'000'000'000), of(2));
  EXPECT_EQ(NuvCenterBlockMeanDif(image.data(), 5, 5, 0, 4, 0, 4, 3), 0);
}

TEST(Boundary, OfRgbIsThatOfAThirdOfTheRow) {
  TestImage gray(4, 3);
  NuvSetImageBoundary(gray.data(), 4, 3, 0x1FF);
  EXPECT_EQ(gray, draw({"####", "#..#", "####"}));
  TestImage rgb(12, 3);
  NuvSetRGBImageBoundary(rgb.data(), 4, 3, 255);
  EXPECT_EQ(rgb, draw({"####........", "#..#........", "####........"}));
}

}  // namespace

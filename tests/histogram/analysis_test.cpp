#include <gmock/gmock.h>

#include <cstdlib>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

TEST(GaussianSmooth, KeepsTheEndsAndAmplifiesTheMiddle) {
  Bins h = run_of(0, 255, 100);
  Bins smoothed;
  EXPECT_EQ(NuvHistogramGaussianSmooth(h.data(), 0, 1, 0.1, smoothed.data()), 255);
  EXPECT_THAT(std::vector<int32_t>(&smoothed[250], &smoothed[0] + 256),
              ElementsAre(142, 142, 142, 100, 100, 100));
  h = bins({});
  EXPECT_EQ(NuvHistogramGaussianSmooth(h.data(), 0, 1, 0.1, smoothed.data()), 0);
  EXPECT_THAT(smoothed, Each(0));
  h = bins({{100, 1000}});
  EXPECT_EQ(NuvHistogramGaussianSmooth(h.data(), 0, 1, 0.1, smoothed.data()), 0);
  // K = 1024, 621, 139. Bin 100 is the whole middle of the stretch, and bin 99 belongs to its lower end.
  EXPECT_EQ(smoothed[100], 1000 * 1024 / (1024 + 621 + 139));
  EXPECT_EQ(smoothed[99], 621 * 1000 / (1024 + 2 * (621 + 139)));
  EXPECT_EQ(smoothed[96], 0);
}

TEST(PeaksAndValleys, AreMarkedAtTheLastRiseOrFlat) {
  const std::pair<std::vector<int32_t>, std::vector<int32_t>> cases[] = {
      {{1, 5, 2}, {-1, -100, 100}},
      {{3, 3, 5, 5, 5, 2, 4}, {0, 0, 1, 100, 0, -100, 100}},
      {{4}, {0}},
  };
  for (auto [data, expected] : cases) {
    std::vector<int32_t> marks(data.size());
    NuvSetPeakTo100ValleyTo_100(data.data(), static_cast<int32_t>(data.size()), marks.data());
    EXPECT_THAT(marks, ElementsAreArray(expected));
  }
}

TEST(TwoPeaks, AreFarEnoughApartOrEqual) {
  Bins h = bins({{0, 1}, {1, 1}, {39, 2}, {40, 9}, {41, 3}, {60, 7}, {200, 5}});
  int32_t first = -1;
  int32_t second = -1;
  NuvFindTwoPeaks(h.data(), 30, &first, &second);
  EXPECT_EQ(first, 40);
  EXPECT_EQ(second, 200);
  NuvFindTwoPeaks(h.data(), 10, &first, &second);
  EXPECT_EQ(second, 60);
  NuvFindTwoPeaks(h.data(), 250, &first, &second);
  EXPECT_EQ(second, first);
}

TEST(HighContrast, NeedsTwoPeaksAndADeepValley) {
  Bins h{};
  for (int i = -10; i <= 10; ++i)
    h[static_cast<std::size_t>(60 + i)] = h[static_cast<std::size_t>(190 + i)] = 110 - 10 * std::abs(i);
  int32_t left = -1;
  int32_t right = -1;
  double contrast = -1;
  EXPECT_TRUE(NuvIsHighContrastImg(h.data(), 120, 1, 50, 2.0, &left, &right, &contrast));
  EXPECT_EQ(left, 60);
  EXPECT_EQ(right, 190);
  EXPECT_GT(contrast, 5);
  EXPECT_FALSE(NuvIsHighContrastImg(h.data(), 120, 1, 131, 2.0, &left, &right, &contrast));
  EXPECT_EQ(contrast, 0);

  // A window longer than the histogram smooths nothing. The contrast is (0.5*(3 + 5)*119 - 8) / 8.
  h = bins({{10, 3}, {128, 5}});
  for (int32_t M : {256, INT32_MAX}) {
    EXPECT_TRUE(NuvIsHighContrastImg(h.data(), 100, M, 50, 2.0, &left, &right, &contrast));
    EXPECT_EQ(left, 10);
    EXPECT_EQ(right, 128);
    EXPECT_EQ(contrast, 58.5);
  }
  h = bins({{128, 5}});
  EXPECT_TRUE(NuvIsHighContrastImg(h.data(), 100, 256, 50, 2.0, &left, &right, &contrast));
  EXPECT_EQ(left, 256 - 257);
  EXPECT_EQ(contrast, (0.5 * (0 + 5) * 130 - 5) / 5);
}

}  // namespace

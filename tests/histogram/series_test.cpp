#include <gmock/gmock.h>

#include <cmath>

#include "NuvImgSDK2014DLL.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using Series = std::vector<int32_t>;

Series filtered(void (*filter)(int32_t*, int32_t, int32_t, int32_t*), Series data, int32_t m) {
  Series result(data.size(), -7);
  filter(data.data(), static_cast<int32_t>(data.size()), m, result.data());
  return result;
}

TEST(SeriesFilters, RepeatTheNearestFullWindowAtTheEnds) {
  EXPECT_THAT(filtered(Nuv1DAverageFilter, {1, 2, 3, 4, 5}, 1), ElementsAre(2, 2, 3, 4, 4));
  EXPECT_THAT(filtered(Nuv1DAverageFilter, {1, 2, 3, 4, 5}, -2), Each(3));
  EXPECT_THAT(filtered(Nuv1DAverageFilter, {1, 2, 3}, 2), Each(-7)) << "no window fits";
  EXPECT_THAT(filtered(NuvBin1DMedianFilter, {1, 1, 0, 0, 0}, 1), ElementsAre(1, 1, 0, 0, 0));
}

TEST(Interpolation, KeepsTheEnds) {
  const std::pair<Series, Series> cases[] = {
      {{0, 10}, {0, 5, 10}}, {{5, 7, 100}, {5, 100}}, {{-10, 0}, {-10, -6, -3, 0}}};
  for (auto [data, expected] : cases) {
    Series result(expected.size());
    EXPECT_TRUE(NuvDataLinearInterpolattion(data.data(), static_cast<int32_t>(data.size()), result.data(),
                                            static_cast<int32_t>(result.size())));
    EXPECT_THAT(result, ElementsAreArray(expected));
  }
  int32_t one = 1;
  EXPECT_FALSE(NuvDataLinearInterpolattion(&one, 1, &one, 5));
  EXPECT_FALSE(NuvDataLinearInterpolattion(&one, 5, &one, 1));
}

TEST(MovingWindows, ReportTheCentreOfTheBest) {
  Series data = {5, 0, 0, 5, 0, 0};
  double best = -1;
  int32_t position = -1;
  EXPECT_TRUE(NuvDataMaxAvrAndPosInMovingWindow(data.data(), 6, 2, &best, &position));
  EXPECT_EQ(best, 2.5);
  EXPECT_EQ(position, 0 + 2 / 2 + 1) << "half of the two ties on, which lie beyond lower sums";
  EXPECT_FALSE(NuvDataMaxAvrAndPosInMovingWindow(data.data(), 6, 7, &best, &position));
  EXPECT_EQ(best, 0);
  EXPECT_EQ(position, 0);
  EXPECT_FALSE(NuvDataMaxAvrAndPosInMovingWindow(data.data(), 6, 0, &best, &position));

  std::vector<double> real = {1, 1, 4, 1, 1, 1, 4, 1};
  EXPECT_TRUE(NuvDataMaxDevAndPosInMovingWindow(real.data(), 8, 3, &best, &position));
  EXPECT_EQ(best, std::sqrt(2.0));
  EXPECT_EQ(position, 1) << "the first of equals";
  EXPECT_TRUE(NuvDataMaxDifAndPosInMovingWindow(real.data(), 8, 2, &best, &position));
  EXPECT_EQ(best, 3);
  EXPECT_EQ(position, 1 + 1);
}

TEST(SeriesMeasures, OfTiesAndOfMeans) {
  Series data = {4, 9, 9, 2};
  EXPECT_EQ(NuvDataMaxDataPos(data.data(), 4), 1);
  EXPECT_EQ(NuvDataMaxDataValue(data.data(), 4), 9);
  EXPECT_EQ(NuvDataMaxDataValue(data.data(), 1), 4);
  double mean = 0;
  double spread = 0;
  NuvDataAvrAndDif(data.data(), 4, &mean, &spread);
  EXPECT_TRUE(mean == 6 && spread == 3);
  EXPECT_EQ(NuvDataAvrAndDevAndReturnMax(data.data(), 4, &mean, &spread), 9);
  EXPECT_TRUE(mean == 6 && spread == std::sqrt(38 / 4.0));
  EXPECT_EQ(NuvDataAvrAndDevAndReturnSum(data.data(), 4, &mean, &spread), 24);
  EXPECT_TRUE(mean == 6 && spread == std::sqrt(38 / 4.0));
}

TEST(DeleteByWeight, KeepsWhatIsInRange) {
  Series data = {1, 2, 3, 4};
  Series weight = {5, 9, 6, 4};
  EXPECT_EQ(NuvpDataDeleteByWeightReturnNum(data.data(), weight.data(), 4, 5, 6), 2);
  EXPECT_THAT(data, ElementsAre(1, 3, 0, 0));
  EXPECT_THAT(weight, ElementsAre(5, 6, 0, 0));
}

TEST(FindPeaks, TellsThePlaceBehindEach) {
  std::vector<double> data = {0, 1, 5, 1, 0, 3, 0};
  double value[3];
  int32_t position[3];
  EXPECT_TRUE(NuvDataFindPeaks(data.data(), 7, 1, value, position, 2));
  EXPECT_EQ(value[0], 5);
  EXPECT_EQ(position[0], 3);
  EXPECT_EQ(value[1], 3);
  EXPECT_EQ(position[1], 6);
  data = {2, 2, 1};
  EXPECT_TRUE(NuvDataFindPeaks(data.data(), 3, 9, value, position, 3));
  EXPECT_THAT(position, ElementsAre(2, 0, 0)) << "nothing beats the first element; later it is blocked";
  data = {0, 7, 7};
  EXPECT_TRUE(NuvDataFindPeaks(data.data(), 3, 1, value, position, 1));
  EXPECT_EQ(position[0], 3) << "a plateau up to the end";
  EXPECT_FALSE(NuvDataFindPeaks(data.data(), 4097, 1, value, position, 3));
  EXPECT_THAT(value, Each(0));
}

}  // namespace

#include <gmock/gmock.h>

#include <cmath>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

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
  EXPECT_EQ(position, 0 + 2 / 2 + 1) << "the first best window, half of the two later ties, W/2";
  EXPECT_FALSE(NuvDataMaxAvrAndPosInMovingWindow(data.data(), 6, 7, &best, &position));
  EXPECT_EQ(best, 0);
  EXPECT_EQ(position, 0);
  EXPECT_FALSE(NuvDataMaxAvrAndPosInMovingWindow(data.data(), 6, 0, &best, &position));

  std::vector<double> real = {1, 1, 4, 1, 1, 1, 4, 1};
  EXPECT_TRUE(NuvDataMaxDevAndPosInMovingWindow(real.data(), 8, 3, &best, &position));
  EXPECT_EQ(best, std::sqrt(2.0));
  EXPECT_EQ(position, 1) << "ties go to the first";
  EXPECT_TRUE(NuvDataMaxDifAndPosInMovingWindow(real.data(), 8, 2, &best, &position));
  EXPECT_EQ(best, 3);
  EXPECT_EQ(position, 1 + 1);
}

TEST(SeriesMeasures, MaximaMeansAndSpreads) {
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

TEST(MovingWindows, EqualThePlainSearch) {
  Random random(1);
  for (int32_t trial = 0; trial < 600; ++trial) {
    const int32_t n = random.between(1, 300);
    const int32_t window = random.between(1, n);
    const int32_t style = trial % 6;
    const double unit = trial % 4 == 0 ? 0.1 : 1.0;  // sums of tenths are rounded
    const int32_t period = random.between(1, 20);
    std::vector<double> data;
    for (int32_t i = 0; i < n; ++i) {
      const int32_t levels[] = {random.between(0, 255), i % period, i,
                                i > n / 3 && i < n / 2, 7,          random.between(0, 1)};
      data.push_back(levels[style] * unit);
    }
    if (trial % 9 == 0) data[static_cast<std::size_t>(random.between(0, n - 1))] = std::nan("");
    if (trial % 11 == 0) data[static_cast<std::size_t>(random.between(0, n - 1))] = HUGE_VAL;

    double widest = 0;
    double greatest = 0;
    double sum = 0;
    int32_t widest_at = 0;
    int32_t greatest_at = 0;
    for (int32_t i = 0; i < window; ++i) sum += data[static_cast<std::size_t>(i)];
    for (int32_t i = 0; i <= n - window; ++i) {
      const double* const w = data.data() + i;
      if (i > 0) sum = sum + w[window - 1] - w[-1];
      double squares = 0;
      double least = w[0];
      double most = w[0];
      for (int32_t j = 0; j < window; ++j) {
        squares += (w[j] - sum / window) * (w[j] - sum / window);
        if (w[j] < least) least = w[j];
        if (w[j] > most) most = w[j];
      }
      if (squares > widest) {
        widest = squares;
        widest_at = i;
      }
      if (most - least > greatest) {
        greatest = most - least;
        greatest_at = i;
      }
    }
    double value = -1;
    int32_t position = -1;
    ASSERT_TRUE(NuvDataMaxDevAndPosInMovingWindow(data.data(), n, window, &value, &position));
    ASSERT_EQ(value, std::sqrt(widest / window)) << trial;
    ASSERT_EQ(position, widest_at + window / 2) << trial;
    ASSERT_TRUE(NuvDataMaxDifAndPosInMovingWindow(data.data(), n, window, &value, &position));
    ASSERT_EQ(value, greatest) << trial;
    ASSERT_EQ(position, greatest_at + window / 2) << trial;
  }
}

TEST(DeleteByWeight, KeepsWhatIsInRange) {
  Series data = {1, 2, 3, 4};
  Series weight = {5, 9, 6, 4};
  EXPECT_EQ(NuvpDataDeleteByWeightReturnNum(data.data(), weight.data(), 4, 5, 6), 2);
  EXPECT_THAT(data, ElementsAre(1, 3, 0, 0));
  EXPECT_THAT(weight, ElementsAre(5, 6, 0, 0));
}

TEST(FindPeaks, ReturnsThePositionAfterEachPeak) {
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
  EXPECT_THAT(position, ElementsAre(2, 0, 0)) << "no element exceeds the first, which is blocked later";
  data = {0, 7, 7, 7};
  EXPECT_TRUE(NuvDataFindPeaks(data.data(), 3, 1, value, position, 1));
  EXPECT_EQ(position[0], 3) << "the plateau reaches the end";
  data.assign(4097, 0);
  data[4095] = 8;
  EXPECT_TRUE(NuvDataFindPeaks(data.data(), 4096, 1, value, position, 1));
  EXPECT_EQ(position[0], 4096);
  EXPECT_FALSE(NuvDataFindPeaks(data.data(), 4097, 1, value, position, 3));
  EXPECT_THAT(value, Each(0));
}

}  // namespace

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <numeric>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using Profile = std::vector<int32_t>;

Profile filled(int32_t n, int32_t value = -7) {
  return Profile(static_cast<std::size_t>(n), value);
}

struct Sums {
  int32_t n = 0;
  int32_t sum = 0;
  int32_t squares = 0;
  void add(int32_t v) {
    ++n;
    sum += v;
    squares += v * v;
  }
  int32_t dev100() const {
    const double mean = static_cast<double>(sum) / n;
    return static_cast<int32_t>(std::sqrt(static_cast<double>(squares) / n - mean * mean) * 100);
  }
};

TEST(SpreadProfiles, EqualThePlainSums) {
  Random random(25);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    Profile columns = filled(width);
    Profile rows = filled(height);
    NuvGryImgColDev100(image.data(), width, height, 0, width - 1, 0, height - 1, columns.data());
    NuvGryImgRowDev100(image.data(), width, height, 0, width - 1, 0, height - 1, rows.data());
    for (int32_t x = 0; x < width; ++x) {
      Sums column;
      for (int32_t y = 0; y < height; ++y) column.add(image.at(x, y));
      ASSERT_EQ(columns[static_cast<std::size_t>(x)], column.dev100());
    }
    for (int32_t y = 0; y < height; ++y) {
      Sums row;
      for (int32_t x = 0; x < width; ++x) row.add(image.at(x, y));
      ASSERT_EQ(rows[static_cast<std::size_t>(y)], row.dev100());
    }
  }
}

TEST(SpreadProfiles, OfStripsOverlapAtTheEnd) {
  TestImage image = Random(26).gray(10, 5);
  Profile strips = filled(10);
  NuvGryImgColsDev100(image.data(), 10, 5, 4, strips.data());
  const auto strip = [&](int32_t first) {
    Sums sums;
    for (int32_t y = 0; y < 5; ++y) {
      for (int32_t x = first; x < first + 4; ++x) sums.add(image.at(x, y));
    }
    return sums.dev100();
  };
  EXPECT_THAT(strips, ElementsAre(strip(0), strip(0), strip(0), strip(0), strip(4), strip(4), strip(6),
                                  strip(6), strip(6), strip(6)));
  for (int32_t m : {-1, 0, 11}) {
    Profile untouched = filled(10);
    NuvGryImgColsDev100(image.data(), 10, 5, m, untouched.data());
    EXPECT_THAT(untouched, Each(-7));
  }
}

TEST(EdgeStrength, AnswersToVerticalEdgesAlone) {
  TestImage vertical(8, 5);
  TestImage horizontal(8, 5);
  for (int32_t y = 0; y < 5; ++y) {
    for (int32_t x = 0; x < 8; ++x) {
      vertical.at(x, y) = x < 4 ? 10 : 110;
      horizontal.at(x, y) = y < 2 ? 10 : 110;
    }
  }
  Profile columns = filled(8);
  NuvGryImgSobel90JustToPrjX(vertical.data(), 8, 5, columns.data());
  EXPECT_THAT(columns, ElementsAre(0, 0, 0, 1200, 1200, 0, 0, 0));
  Profile rows = filled(5);
  NuvGryImgSobel90JustToPrjY(vertical.data(), 8, 5, rows.data());
  EXPECT_THAT(rows, Each(800)) << "with the ends repeated";
  NuvGryImgSobel90JustToPrjX(horizontal.data(), 8, 5, columns.data());
  EXPECT_THAT(columns, Each(0));
  for (const auto& [width, height] : {std::pair{1, 1}, {2, 2}, {1, 9}, {9, 1}, {2, 9}}) {
    TestImage small(width, height, 50);
    Profile c = filled(width);
    Profile r = filled(height);
    NuvGryImgSobel90JustToPrjX(small.data(), width, height, c.data());
    NuvGryImgSobel90JustToPrjY(small.data(), width, height, r.data());
    EXPECT_THAT(c, Each(0));
    EXPECT_THAT(r, Each(0));
  }
}

TEST(Projections, SumUpToTheImage) {
  Random random(27);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    Profile columns = filled(width);
    Profile rows = filled(height);
    NuvGryImgPrjXY(image.data(), width, height, columns.data(), rows.data());
    const int32_t total = std::accumulate(image.pixels.begin(), image.pixels.end(), 0);
    EXPECT_EQ(std::accumulate(columns.begin(), columns.end(), 0), total);
    EXPECT_EQ(std::accumulate(rows.begin(), rows.end(), 0), total);
    int32_t first_column = 0;
    for (int32_t y = 0; y < height; ++y) first_column += image.at(0, y);
    EXPECT_EQ(columns[0], first_column);
  }
}

TEST(Projections, OfRectanglesClearAllOrTheirEntries) {
  TestImage image = draw({"....", ".12.", ".30.", "...."});
  Profile columns = filled(4);
  Profile rows = filled(4);
  NuvGryImgPrjXYInRect(image.data(), 4, 4, 1, 2, 1, 2, columns.data(), rows.data());
  EXPECT_THAT(columns, ElementsAre(0, 4, 2, 0));
  EXPECT_THAT(rows, ElementsAre(0, 3, 3, 0));
  columns = filled(4);
  rows = filled(4);
  NuvBinImgPrjXYInRect(image.data(), 4, 4, 1, 2, 1, 2, columns.data(), rows.data());
  EXPECT_THAT(columns, ElementsAre(-7, 2, 1, -7));
  EXPECT_THAT(rows, ElementsAre(-7, 2, 1, -7));
}

TEST(Projections, OfColourByChannelAndWeighted) {
  Random random(28);
  const int32_t width = 1030;
  std::vector<uint8_t> rgb = random.bytes(static_cast<std::size_t>(width) * 3 * 3);
  Profile red = filled(width);
  Profile green = filled(width);
  Profile blue = filled(width);
  Profile weighted = filled(width);
  NuvRGBImgPrj2X(rgb.data(), width, 3, red.data(), green.data(), blue.data());
  NuvRGBImgPrj2X(rgb.data(), width, 3, weighted.data());
  for (std::size_t x = 0; x < 1030; ++x) {
    int32_t sums[3] = {};
    for (std::size_t y = 0; y < 3; ++y) {
      for (std::size_t c = 0; c < 3; ++c) sums[c] += rgb[(y * 1030 + x) * 3 + c];
    }
    ASSERT_EQ(blue[x], sums[0]);
    ASSERT_EQ(green[x], sums[1]);
    ASSERT_EQ(red[x], sums[2]);
    ASSERT_EQ(weighted[x], (sums[0] + sums[1] + 2 * sums[2]) >> 2);
  }
}

}  // namespace

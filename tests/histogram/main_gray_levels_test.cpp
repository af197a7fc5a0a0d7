#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "histogram/bins.h"

namespace {

TEST(MainGrayLevels, AreDenserWhereTheHistogramHasPixels) {
  Bins h = run_of(0, 9, 1);
  std::fill(h.begin() + 200, h.begin() + 210, 1);
  std::vector<int32_t> table(256 + 16, -7);
  EXPECT_EQ(NuvGenerateMainGryLUT(h.data(), 2, 16, table.data()), 16);
  const std::pair<std::size_t, int32_t> expected[] = {{0, 0},    {9, 4},    {10, 5},   {48, 6},  {199, 9},
                                                      {200, 10}, {209, 14}, {210, 15}, {255, 15}};
  for (const auto& [level, number] : expected) EXPECT_EQ(table[level], number) << level;
  EXPECT_EQ(table[256], -7);

  h = run_of(0, 255, 1);
  EXPECT_EQ(NuvGenerateMainGryLUT(h.data(), 2, 16, table.data()), 16);
  for (std::size_t i = 0; i < 256; ++i) EXPECT_EQ(table[i], static_cast<int32_t>(i) / 16);
  EXPECT_EQ(NuvGenerateMainGryLUT(h.data(), 0, 16, table.data()), 0);
}

}  // namespace

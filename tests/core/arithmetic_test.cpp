#include "core/arithmetic.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(Truncated, RoundsTowardZeroAndMapsOverflowToTheMostNegative) {
  const std::pair<double, int32_t> cases[] = {
      {0.99, 0},
      {-1.5, -1},
      {2147483647.9, 2147483647},
      {2147483648.0, INT32_MIN},
      {-2147483648.0, INT32_MIN},
      {-2147483647.9, -2147483647},
      {-1e300, INT32_MIN},
      {std::numeric_limits<double>::infinity(), INT32_MIN},
      {std::numeric_limits<double>::quiet_NaN(), INT32_MIN},
  };
  for (const auto& [value, expected] : cases) EXPECT_EQ(nuv::truncated(value), expected) << value;
}

}  // namespace

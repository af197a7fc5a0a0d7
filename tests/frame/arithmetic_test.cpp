#include "frame/arithmetic.h"

#include <gtest/gtest.h>

#include <limits>

#include "frame/lanes.h"

namespace {

TEST(Truncated, GoesTowardZeroAndSendsWhatDoesNotFitToTheMostNegative) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::pair<double, int32_t> cases[] = {
      {0.0, 0},
      {0.99, 0},
      {-0.99, 0},
      {1.5, 1},
      {-1.5, -1},
      {2147483647.0, 2147483647},
      {2147483647.9, 2147483647},
      {2147483648.0, INT32_MIN},
      {-2147483648.0, INT32_MIN},
      {-2147483648.9, INT32_MIN},
      {-2147483647.9, -2147483647},
      {-2147483649.0, INT32_MIN},
      {1e300, INT32_MIN},
      {-1e300, INT32_MIN},
      {kInfinity, INT32_MIN},
      {-kInfinity, INT32_MIN},
      {std::numeric_limits<double>::quiet_NaN(), INT32_MIN},
      {std::numeric_limits<double>::denorm_min(), 0},
  };
  for (const auto& [value, expected] : cases) EXPECT_EQ(nuv::truncated(value), expected) << value;
}

#if NUV_HAS_LANES
TEST(Lanes, TransposeSwapsRowsAndColumns) {
  nuv::Bytes16 rows[16];
  for (int y = 0; y < 16; ++y) {
    for (int x = 0; x < 16; ++x) rows[y][x] = static_cast<uint8_t>(16 * y + x);
  }
  nuv::transpose16(rows);
  for (int y = 0; y < 16; ++y) {
    for (int x = 0; x < 16; ++x) EXPECT_EQ(rows[y][x], 16 * x + y);
  }
}

TEST(Lanes, AverageRoundsUp) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      const nuv::Bytes16 average =
          nuv::average_up(nuv::Bytes16{} + static_cast<uint8_t>(a), nuv::Bytes16{} + static_cast<uint8_t>(b));
      ASSERT_EQ(average[7], (a + b + 1) / 2) << a << ' ' << b;
    }
  }
}
#endif

}  // namespace

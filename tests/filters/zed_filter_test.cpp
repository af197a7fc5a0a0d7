#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

constexpr uint8_t kSentinel = 77;

TEST(ZedFilter, FollowsItsTable) {
  Random random(57);
  for (const auto& [width, height] : kOddSizes) {
    for (int32_t T : {-1, 0, 1, 10, 50, 85, 86, 128, 254, 255, INT32_MAX}) {
      TestImage source = random.gray_in_a_range(width, height);
      TestImage expected(width, height, kSentinel);
      for (int32_t y = 1; y < height - 1; ++y) {
        for (int32_t x = 1; x < width - 1; ++x) {
          const int c = source.at(x, y);
          int sum = 0;
          for (int i = 0; i < 9; ++i) {
            const int n = source.at(x + i % 3 - 1, y + i / 3 - 1);
            const int64_t a = std::abs(n - c);
            const int64_t limit = 3 * static_cast<int64_t>(T);
            if (a <= T) {
              sum += n - c;
            } else if (a <= limit) {
              sum += static_cast<int>(n > c ? limit - a : a - limit);
            }
          }
          expected.at(x, y) = static_cast<uint8_t>(c + (sum >> 3));
        }
      }
      TestImage result(width, height, kSentinel);
      NuvGryZedFilter(source.data(), width, height, T, result.data());
      ASSERT_EQ(result, expected) << width << 'x' << height << ' ' << T;
    }
  }
}

}  // namespace

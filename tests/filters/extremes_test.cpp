#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

constexpr uint8_t kSentinel = 77;

using Pixels = std::vector<uint8_t>;

TEST(Extremes, AreThoseOfTheirWindows) {
  const struct {
    void (*filter)(uint8_t*, int32_t, int32_t, uint8_t*);
    bool greatest;
    bool along_row;
    int32_t first, last;  // the window, relative to the pixel
    int32_t unread;       // number of rows at the bottom that are not read
  } members[] = {{NuvGryImgMaxFilter3xInRow, true, true, -1, 1, 0},
                 {NuvGryImgMaxFilter5xInRow, true, true, -2, 2, 0},
                 {NuvGryImgMaxFilter3xInCol, true, false, -1, 1, 0},
                 {NuvGryImgMaxFilter5xInCol, true, false, -2, 2, 0},
                 {NuvGryImgMinFilter3xInRow, false, true, -1, 1, 0},
                 {NuvGryImgMinFilter5xInRow, false, true, -2, 2, 0},
                 {NuvGryImgMinFilter3xInCol, false, false, -1, 1, 0},
                 {NuvGryImgMinFilter5xInCol, false, false, -3, 1, 1}};
  Random random(53);
  for (const auto& member : members) {
    for (const auto& [width, height] : kOddSizes) {
      TestImage source = random.gray(width, height);
      TestImage expected(width, height);
      const int32_t last_row = std::max(height - 1 - member.unread, 0);
      for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
          // Repeating the pixel at the end gives the extreme of the clipped window.
          Pixels window;
          for (int32_t i = member.first; i <= member.last; ++i) {
            window.push_back(member.along_row ? source.at(std::clamp(x + i, 0, width - 1), y)
                                              : source.at(x, std::clamp(y + i, 0, last_row)));
          }
          const auto [least, most] = std::minmax_element(window.begin(), window.end());
          expected.at(x, y) = member.greatest ? *most : *least;
        }
      }
      TestImage result(width, height, kSentinel);
      member.filter(source.data(), width, height, result.data());
      ASSERT_EQ(result, expected) << &member - members << ' ' << width << 'x' << height;
    }
  }
}

}  // namespace

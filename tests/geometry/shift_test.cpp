#include <gtest/gtest.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

void plain_shift_rows(const TestImage& p, double k, bool fine, TestImage& result) {
  const int32_t size = p.width * p.height;
  const auto pixel = [&](int32_t place) { return p.pixels[static_cast<std::size_t>(place)]; };
  int32_t shift = 0;
  for (int32_t y = 0; y < p.height; ++y, shift += static_cast<int32_t>(k * 4096)) {
    const int32_t first = shift > 0 ? 0 : (shift >> 12) + 2;
    const int32_t last = shift > 0 ? p.width - (shift >> 12) - 2 : p.width - 1;
    for (int32_t x = first; x <= last; ++x) {
      const int32_t place = x * 4096 + shift;
      const int32_t i = place >> 12;
      const int32_t weight = fine ? place - i * 4096 : 0;
      const int32_t from = y * p.width + i;
      const int32_t to = y * p.width + x;
      if (to < 0 || from < 0 || from + (weight != 0 ? 1 : 0) >= size) continue;
      const int32_t mixed =
          weight == 0 ? pixel(from) : ((4096 - weight) * pixel(from) + weight * pixel(from + 1)) >> 12;
      result.pixels[static_cast<std::size_t>(to)] = static_cast<uint8_t>(mixed);
    }
  }
}

TEST(ShiftPerRow, EqualsThePlainForm) {
  Random random(93);
  for (auto [width, height] : kOddSizes) {
    TestImage source = random.gray(width, height);
    for (double k : {0.0, 0.3, -0.3, 1.0, 2.71, -2.0, 40.5, -900.1, 1e5, -1e5, -1.6e5}) {
      for (bool fine : {false, true}) {
        TestImage result(width, height, 77);
        TestImage expected = result;
        (fine ? NuvShiftXPerRowFine : NuvShiftXPerRowFast)(source.data(), width, height, k, result.data());
        plain_shift_rows(source, k, fine, expected);
        ASSERT_EQ(result, expected) << k << ' ' << fine;
      }
    }
  }
}

}  // namespace

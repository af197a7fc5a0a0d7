#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Bytes = std::vector<uint8_t>;

using Aligned = std::array<int32_t, 3>;  // mean, dx, dy

Aligned plain_alignment(Bytes a, Bytes b, int32_t width, int32_t height, bool rgb, int32_t max_dx,
                        int32_t max_dy, tagRECT r) {
  r = {std::max<int32_t>(max_dx, r.left), std::max<int32_t>(max_dy, r.top),
       std::min<int32_t>(r.right, width - max_dx - 1), std::min<int32_t>(r.bottom, height - max_dy - 1)};
  Aligned best{(r.right - r.left + 1) * (r.bottom - r.top + 1) * (rgb ? 765 : 255)};
  if (r.right < r.left || r.bottom < r.top) return best;
  for (int32_t dx = -max_dx; dx <= max_dx; ++dx) {
    for (int32_t dy = -max_dy; dy <= max_dy; ++dy) {
      const tagRECT moved{r.left + dx, r.top + dy, r.right + dx, r.bottom + dy};
      const int32_t mean = NuvImgDifferenceInRect(a.data(), b.data(), rgb, width, r, moved);
      if (mean < best[0]) best = {mean, dx, dy};
    }
  }
  return best;
}

TEST(Alignment, EqualsTheWholeSearch) {
  Random random(95);
  for (int round = 0; round < 400; ++round) {
    const bool rgb = round % 2 != 0;
    const int32_t width = random.between(1, 50);
    const int32_t height = random.between(1, 60);
    Bytes first = random.bytes(static_cast<std::size_t>(width * height * (rgb ? 3 : 1)));
    Bytes second = random.bytes(first.size());
    // With few levels, many shifts are equally good.
    if (round % 3 == 0) {
      for (uint8_t& v : first) v = static_cast<uint8_t>(v / 128);
      for (uint8_t& v : second) v = static_cast<uint8_t>(v / 96);
    }
    if (round % 3 == 1) NuvImageShift(first.data(), width, height, rgb, 2, -1, second.data());
    const int32_t max_dx = random.between(-1, 6);
    const int32_t max_dy = random.between(-1, 6);
    const tagRECT rect{random.between(-5, width), random.between(-5, height), random.between(-5, width + 5),
                       random.between(-5, height + 5)};
    Bytes result(first.size());
    Aligned found{};
    found[0] = NuvShiftImg2BasedImg1(first.data(), second.data(), result.data(), width, height, rgb, max_dx,
                                     max_dy, rect, &found[1], &found[2]);
    ASSERT_EQ(found, plain_alignment(first, second, width, height, rgb, max_dx, max_dy, rect));
    NuvImageShift(second.data(), width, height, rgb, -found[1], -found[2], first.data());
    ASSERT_EQ(result, first);
  }
}

}  // namespace

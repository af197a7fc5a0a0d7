#include <gtest/gtest.h>

#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "contours/chains.h"
#include "images.h"

namespace {

struct Thinned {
  TestImage lines;
  int32_t iterations = 0;
};

Thinned thin(TestImage image) {
  Thinned thinned{TestImage(image.width, image.height, 7), 0};
  TestImage tmp = image;
  thinned.iterations =
      NuvBinImgThin(image.data(), tmp.data(), image.width, image.height, thinned.lines.data());
  return thinned;
}

// The plain form: every pass tests every pixel.
Thinned plainly_thinned(TestImage image) {
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; ++x) {
      const bool side = x == 0 || y == 0 || x == image.width - 1 || y == image.height - 1;
      image.at(x, y) = !side && image.at(x, y) != 0 ? 1 : 0;
    }
  }
  const auto visit = [](TestImage& from, auto action) {
    for (int32_t y = 1; y < from.height - 1; ++y) {
      for (int32_t x = 1; x < from.width - 1; ++x) {
        if (from.at(x, y) == 0) continue;
        int n[8];
        int sum = 0;
        int rises = 0;
        for (int d = 0; d < 8; ++d) n[d] = from.at(x + kStepX[d], y + kStepY[d]) != 0 ? 1 : 0;
        for (int d = 0; d < 8; ++d) {
          sum += n[d];
          rises += n[d] < n[(d + 1) % 8] ? 1 : 0;
        }
        action(x, y, n, sum, rises);
      }
    }
  };
  int32_t iterations = 0;
  for (bool deleted = true; deleted; ++iterations) {
    deleted = false;
    for (int pass = 0; pass < 2; ++pass) {
      TestImage before = image;
      visit(before, [&](int32_t x, int32_t y, const int* n, int sum, int rises) {
        const int e = n[0], no = n[2], w = n[4], s = n[6];
        const bool open = pass == 0 ? no + s + e < 3 && w + s + e < 3 : w + no + e < 3 && w + s + no < 3;
        if (sum < 2 || sum > 6 || rises != 1 || !open) return;
        image.at(x, y) = 0;
        deleted = true;
      });
    }
  }
  visit(image, [&](int32_t x, int32_t y, const int* n, int /*sum*/, int rises) {
    if (rises == 2 && (n[0] + n[4] > 0) && (n[2] + n[6] > 0)) image.at(x, y) = 0;
  });
  for (uint8_t& pixel : image.pixels) pixel = pixel != 0 ? 255 : 0;
  return {image, iterations};
}

TEST(Thin, AgreesWithPassesOverAllPixels) {
  Random random(59);
  std::vector<TestImage> images;
  for (const auto& [width, height] : kOddSizes)
    images.push_back(random.binary(width, height, random.between(30, 97)));
  for (int i = 0; i < 20; ++i) {
    // Smoothed noise gives blobs.
    TestImage noise = random.binary(90, 70, 50);
    TestImage blobs = noise;
    NuvBinImgFilter(noise.data(), 90, 70, 3, 3, 49 * 127, blobs.data());
    images.push_back(blobs);
  }
  for (const TestImage& image : images) {
    const Thinned fast = thin(image);
    const Thinned plain = plainly_thinned(image);
    EXPECT_EQ(fast.iterations, plain.iterations);
    ASSERT_TRUE(fast.lines == plain.lines) << image.width << 'x' << image.height;
  }
}

TEST(Thin, LeavesALineAndClearsTheSides) {
  const Thinned line = thin(draw({"#......", ".......", ".#####.", ".......", "......#"}));
  EXPECT_EQ(line.lines, draw({".......", ".......", ".#####.", ".......", "......."}));
  EXPECT_EQ(line.iterations, 1);
}

}  // namespace

#include <gmock/gmock.h>

#include <climits>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using Bytes = std::vector<uint8_t>;

TEST(Fields, AreTakenOutSplitAndWovenBack) {
  Random random(41);
  for (const auto& [w, h] : kOddSizes) {
    for (bool rgb : {false, true}) {
      const auto row = static_cast<std::size_t>(w) * (rgb ? 3 : 1);
      Bytes frame = random.bytes(row * static_cast<std::size_t>(h));
      Bytes split(frame.size() + 1, 77);
      NuvSplitOddEvenField(frame.data(), w, h, rgb, split.data());
      EXPECT_EQ(split.back(), 77);
      split.pop_back();

      const int32_t rows[] = {(h + 1) / 2, h / 2};
      Bytes stacked;
      for (int32_t second : {0, 1}) {
        Bytes field(row * static_cast<std::size_t>(rows[second]));
        int32_t height = -1;
        NuvExtractOneField(frame.data(), w, h, rgb, second == 1, field.data(), &height);
        EXPECT_EQ(height, rows[second]);
        stacked.insert(stacked.end(), field.begin(), field.end());
      }
      EXPECT_EQ(stacked, split);
      for (std::size_t y = 0; y < static_cast<std::size_t>(h); ++y) {
        const std::size_t at = y / 2 + (y % 2 != 0 ? static_cast<std::size_t>(rows[0]) : 0);
        ASSERT_TRUE(std::equal(&frame[y * row], &frame[y * row] + row, &split[at * row]));
      }
      if (rgb) continue;  // does not weave back without a shift
      Bytes woven(frame.size());
      int32_t height = 0;
      NuvMergeOddEvenField(split.data() + row * static_cast<std::size_t>(rows[0]), split.data(), rows[1],
                           rows[0], w, false, 0, woven.data(), &height);
      EXPECT_EQ(woven, frame);
      EXPECT_EQ(height, h);
    }
  }
}

TEST(Fields, AreWovenWithAShift) {
  Bytes first = {1, 2, 3};
  Bytes second = {4, 5, 6};
  int32_t height = 0;
  const auto woven = [&](int32_t shift) {
    Bytes result(6, 77);
    NuvMergeOddEvenField(second.data(), first.data(), 1, 1, 3, false, shift, result.data(), &height);
    return result;
  };
  EXPECT_THAT(woven(2), ElementsAre(1, 2, 3, 77, 77, 4));
  EXPECT_THAT(woven(-2), ElementsAre(1, 2, 3, 6, 77, 77));
  for (int32_t shift : {3, -3, INT_MAX, INT_MIN}) EXPECT_THAT(woven(shift), ElementsAre(1, 2, 3, 77, 77, 77));

  // In RGB a shift that is not positive moves the row's start into the row above.
  first = {1, 2, 3, 4, 5, 6};
  second = {11, 12, 13, 14, 15, 16};
  const auto woven_rgb = [&](int32_t shift) {
    Bytes result(12, 77);
    NuvMergeOddEvenField(second.data(), first.data(), 1, 1, 2, true, shift, result.data(), &height);
    return result;
  };
  EXPECT_THAT(woven_rgb(1), ElementsAre(1, 2, 3, 4, 5, 6, 77, 77, 77, 11, 12, 13));
  EXPECT_THAT(woven_rgb(0), ElementsAre(1, 2, 11, 12, 13, 14, 15, 16, 77, 77, 77, 77));
  EXPECT_THAT(woven_rgb(-1), ElementsAre(1, 2, 14, 15, 16, 6, 77, 77, 77, 77, 77, 77));
}

TEST(Fields, WithoutPixelsWriteTheirHeightAlone) {
  Bytes in(8, 1);
  Bytes out(8, 77);
  int32_t height = -1;
  NuvExtractOneField(in.data(), 4, 1, false, true, out.data(), &height);
  EXPECT_EQ(height, 0);
  NuvExtractOneField(in.data(), -4, 5, false, false, out.data(), &height);
  EXPECT_EQ(height, 3);
  NuvSplitOddEvenField(in.data(), 4, -1, true, out.data());
  NuvMergeOddEvenField(in.data(), in.data(), 0, -1, 4, true, 1, out.data(), &height);
  EXPECT_EQ(height, -1);
  EXPECT_THAT(out, Each(77));
}

}  // namespace

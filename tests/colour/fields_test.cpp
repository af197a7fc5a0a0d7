#include <gmock/gmock.h>

#include <climits>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::ElementsAre;
using Bytes = std::vector<uint8_t>;

TEST(Fields, AreExtractedSplitAndInterleavedAgain) {
  Random random(41);
  for (const auto& [w, h] : kOddSizes) {
    for (int32_t channels : {1, 3}) {
      TestImage frame = random.gray(w * channels, h);
      Bytes fields[2];
      for (int32_t y = 0; y < h; ++y) {
        for (int32_t x = 0; x < frame.width; ++x) fields[y % 2].push_back(frame.at(x, y));
      }
      for (int32_t second : {0, 1}) {
        Bytes field(fields[second].size());
        int32_t height = -1;
        NuvExtractOneField(frame.data(), w, h, channels == 3, second == 1, field.data(), &height);
        EXPECT_EQ(field, fields[second]);
        EXPECT_EQ(height, (h + 1 - second) / 2);
      }
      Bytes split(frame.pixels.size());
      NuvSplitOddEvenField(frame.data(), w, h, channels == 3, split.data());
      Bytes stacked = fields[0];
      stacked.insert(stacked.end(), fields[1].begin(), fields[1].end());
      EXPECT_EQ(split, stacked);
      if (channels == 3) continue;  // RGB fields without a shift do not give the frame back
      TestImage woven(w, h);
      int32_t height = 0;
      NuvMergeOddEvenField(fields[1].data(), fields[0].data(), h / 2, (h + 1) / 2, w, false, 0, woven.data(),
                           &height);
      EXPECT_EQ(woven, frame);
      EXPECT_EQ(height, h);
    }
  }
}

TEST(Fields, AreInterleavedWithAShift) {
  Bytes first = {1, 2, 3, 4, 5, 6};
  Bytes second = {11, 12, 13, 14, 15, 16};
  const auto woven = [&](bool rgb, int32_t shift) {
    Bytes result(12, 77);
    int32_t height = 0;
    NuvMergeOddEvenField(second.data(), first.data(), 1, 1, rgb ? 2 : 6, rgb, shift, result.data(), &height);
    return result;
  };
  EXPECT_THAT(woven(false, 2), ElementsAre(1, 2, 3, 4, 5, 6, 77, 77, 11, 12, 13, 14));
  EXPECT_THAT(woven(false, -2), ElementsAre(1, 2, 3, 4, 5, 6, 13, 14, 15, 16, 77, 77));
  for (int32_t shift : {6, -6, INT_MIN}) {
    EXPECT_THAT(woven(false, shift), ElementsAre(1, 2, 3, 4, 5, 6, 77, 77, 77, 77, 77, 77));
  }
  // In RGB a shift of 0 or less writes the row over part of the row above.
  EXPECT_THAT(woven(true, 1), ElementsAre(1, 2, 3, 4, 5, 6, 77, 77, 77, 11, 12, 13));
  EXPECT_THAT(woven(true, 0), ElementsAre(1, 2, 11, 12, 13, 14, 15, 16, 77, 77, 77, 77));
  EXPECT_THAT(woven(true, -1), ElementsAre(1, 2, 14, 15, 16, 6, 77, 77, 77, 77, 77, 77));
}

}  // namespace

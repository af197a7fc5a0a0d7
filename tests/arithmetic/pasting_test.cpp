#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TEST(Paste, LeavesOutWhatFallsOutside) {
  TestImage gray = draw({"123", "456"});
  const auto pasted = [&](int32_t x, int32_t y) {
    TestImage result(4, 3);
    NuvPasteGryImg2ResImg(gray.data(), 3, 2, result.data(), 4, 3, x, y);
    return result;
  };
  EXPECT_EQ(pasted(1, 1), draw({"....", ".123", ".456"}));
  EXPECT_EQ(pasted(-1, -1), draw({"56..", "....", "...."}));
  EXPECT_EQ(pasted(3, 2), draw({"....", "....", "...1"}));

  TestImage rgb = draw({"123456789", "987654321"});
  TestImage result(12, 3);
  NuvPasteRGBImg2ResImg(rgb.data(), 3, 2, result.data(), 4, 3, -1, 1);
  EXPECT_EQ(result, draw({"............", "456789......", "654321......"}));
  NuvPasteGryImg2RGBImg(gray.data(), 3, 2, result.data(), 4, 3, 3, -1);
  EXPECT_EQ(result, draw({".........444", "456789......", "654321......"}));
}

}  // namespace

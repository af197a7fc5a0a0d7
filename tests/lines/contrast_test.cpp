#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

TEST(Contrast, OfAStepIsItsHeight) {
  TestImage image(12, 9, 30);
  NuvFillGryRect(image.data(), 12, 9, 0, 11, 4, 8, 130);
  image.at(3, 2) = 0;  // one sample of twelve, trimmed away with its quarter
  EXPECT_EQ(NuvABCLineContrast(image.data(), 12, 9, 0, 11, 0, 1, -4, 2, false), 100);
  EXPECT_EQ(NuvABCLineContrast(image.data(), 12, 9, 0, 11, 0, 1, -8, 2, false), 0)
      << "the samples lie outside the image";
  EXPECT_EQ(NuvABCLineContrast(image.data(), 12, 9, 0, 11, 1, 0, -6, 2, false), 0) << "B = 0 counts nothing";
}

TEST(Contrast, MarksTheCountedPixels) {
  TestImage image(4, 5, 7);
  NuvABCLineContrast(image.data(), 4, 5, 1, 2, 0, 1, -2, 1, true);
  EXPECT_EQ(image, draw({"7777", "7..7", "7##7", "7..7", "7777"}));
}

}  // namespace

#include <gmock/gmock.h>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using Profile = std::vector<int32_t>;

Profile filled(int32_t n) {
  return Profile(static_cast<std::size_t>(n), -7);
}

TEST(SpreadProfiles, OfRectanglesClearAllOrLeaveTheirSurroundings) {
  TestImage image = draw({"2468", "3319", "1517"});
  Profile columns = filled(4);
  Profile rows = filled(3);
  NuvGryImgColDev100(image.data(), 4, 3, 1, 2, 1, 2, columns.data());
  NuvGryImgRowDev100(image.data(), 4, 3, 1, 2, 1, 2, rows.data());
  EXPECT_THAT(columns, ElementsAre(0, 100, 0, 0));
  EXPECT_THAT(rows, ElementsAre(0, 100, 200));
  columns = filled(4);
  rows = filled(3);
  NuvGryImgColDevDev(image.data(), 4, 3, 1, 2, 1, 2, columns.data());
  NuvGryImgRowDevDev(image.data(), 4, 3, 1, 2, 1, 2, rows.data());
  EXPECT_THAT(columns, ElementsAre(-7, 34 * 2 - 8 * 8, 0, -7));
  EXPECT_THAT(rows, ElementsAre(-7, 10 * 2 - 4 * 4, 26 * 2 - 6 * 6));
}

TEST(SpreadProfiles, OfManyColumns) {
  TestImage image(600, 2);
  for (int32_t x = 0; x < 600; ++x) image.at(x, 1) = static_cast<uint8_t>(x);
  Profile columns = filled(600);
  NuvGryImgColDev100(image.data(), 600, 2, 0, 599, 0, 1, columns.data());
  for (int32_t x = 0; x < 600; ++x) ASSERT_EQ(columns[static_cast<std::size_t>(x)], 50 * image.at(x, 1));
}

TEST(SpreadProfiles, OfStripsOverlapAtTheEnd) {
  TestImage image = draw({"1155.."});
  Profile strips = filled(6);
  NuvGryImgColsDev100(image.data(), 6, 1, 4, strips.data());
  EXPECT_THAT(strips, ElementsAre(200, 200, 250, 250, 250, 250));
  strips = filled(6);
  for (int32_t m : {0, 7}) NuvGryImgColsDev100(image.data(), 6, 1, m, strips.data());
  EXPECT_THAT(strips, Each(-7));
}

TEST(EdgeStrength, AnswersToVerticalEdgesAlone) {
  TestImage vertical = draw({"11119999", "11119999", "11119999", "11119999", "11119999"});
  TestImage horizontal = draw({"11111111", "11111111", "99999999", "99999999", "99999999"});
  Profile columns = filled(8);
  NuvGryImgSobel90JustToPrjX(vertical.data(), 8, 5, columns.data());
  EXPECT_THAT(columns, ElementsAre(0, 0, 0, 3 * 32, 3 * 32, 0, 0, 0));
  Profile rows = filled(5);
  NuvGryImgSobel90JustToPrjY(vertical.data(), 8, 5, rows.data());
  EXPECT_THAT(rows, Each(2 * 32)) << "with the ends repeated";
  NuvGryImgSobel90JustToPrjX(horizontal.data(), 8, 5, columns.data());
  EXPECT_THAT(columns, Each(0));
  rows = filled(5);
  NuvGryImgSobel90JustToPrjY(vertical.data(), 2, 5, rows.data());
  EXPECT_THAT(rows, Each(0)) << "no interior";
}

TEST(Projections, SumUpColumnsAndRows) {
  Random random(27);
  for (const auto& [width, height] : kOddSizes) {
    TestImage image = random.gray(width, height);
    Profile columns = filled(width);
    Profile rows = filled(height);
    NuvGryImgPrjXY(image.data(), width, height, columns.data(), rows.data());
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        columns[static_cast<std::size_t>(x)] -= image.at(x, y);
        rows[static_cast<std::size_t>(y)] -= image.at(x, y);
      }
    }
    EXPECT_THAT(columns, Each(0));
    EXPECT_THAT(rows, Each(0));
  }
}

TEST(Projections, OfRectanglesClearAllOrTheirEntries) {
  TestImage image = draw({"1111", "112.", "13..", "1111"});
  Profile columns = filled(4);
  Profile rows = filled(4);
  NuvGryImgPrjXYInRect(image.data(), 4, 4, 1, 2, 1, 2, columns.data(), rows.data());
  EXPECT_THAT(columns, ElementsAre(0, 4, 2, 0));
  EXPECT_THAT(rows, ElementsAre(0, 3, 3, 0));
  columns = filled(4);
  rows = filled(4);
  NuvBinImgPrjXYInRect(image.data(), 4, 4, 1, 2, 1, 2, columns.data(), rows.data());
  EXPECT_THAT(columns, ElementsAre(-7, 2, 1, -7));
  EXPECT_THAT(rows, ElementsAre(-7, 2, 1, -7));
}

TEST(Projections, OfColourByChannelAndWeighted) {
  std::vector<uint8_t> rgb = {1, 2, 3, 10, 20, 30, 1, 2, 4, 10, 20, 30};
  Profile red = filled(2);
  Profile green = filled(2);
  Profile blue = filled(2);
  NuvRGBImgPrj2X(rgb.data(), 2, 2, red.data(), green.data(), blue.data());
  EXPECT_THAT(red, ElementsAre(7, 60));
  EXPECT_THAT(green, ElementsAre(4, 40));
  EXPECT_THAT(blue, ElementsAre(2, 20));
  NuvRGBImgPrj2X(rgb.data(), 2, 2, red.data());
  EXPECT_THAT(red, ElementsAre((2 + 4 + 2 * 7) / 4, (20 + 40 + 2 * 60) / 4));
}

}  // namespace

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

TEST(SpreadProfiles, OfRectanglesClearOrKeepTheOtherEntries) {
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

TEST(SpreadProfiles, OfStripsOverlapAtTheEnd) {
  TestImage image = draw({"1155.."});
  Profile strips = filled(6);
  NuvGryImgColsDev100(image.data(), 6, 1, 4, strips.data());
  EXPECT_THAT(strips, ElementsAre(200, 200, 250, 250, 250, 250));
  strips = filled(6);
  for (int32_t m : {0, 7}) NuvGryImgColsDev100(image.data(), 6, 1, m, strips.data());
  EXPECT_THAT(strips, Each(-7));
}

TEST(EdgeStrength, RespondsOnlyToVerticalEdges) {
  TestImage vertical = draw({"11119999", "11119999", "11119999", "11119999", "11119999"});
  TestImage horizontal = draw({"11111111", "11111111", "99999999", "99999999", "99999999"});
  Profile columns = filled(8);
  NuvGryImgSobel90JustToPrjX(vertical.data(), 8, 5, columns.data());
  EXPECT_THAT(columns, ElementsAre(0, 0, 0, 3 * 32, 3 * 32, 0, 0, 0));
  Profile rows = filled(5);
  NuvGryImgSobel90JustToPrjY(vertical.data(), 8, 5, rows.data());
  EXPECT_THAT(rows, Each(2 * 32)) << "the values at the ends are repeated";
  NuvGryImgSobel90JustToPrjX(horizontal.data(), 8, 5, columns.data());
  EXPECT_THAT(columns, Each(0));
  rows = filled(5);
  NuvGryImgSobel90JustToPrjY(vertical.data(), 2, 5, rows.data());
  EXPECT_THAT(rows, Each(0)) << "the image has no interior";
}

TEST(Projections, OfRectanglesClearAllEntriesOrOnlyTheirOwn) {
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

}  // namespace

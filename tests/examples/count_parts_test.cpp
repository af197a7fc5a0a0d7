// Runs the example count_parts as a user does.

#include <gmock/gmock.h>

#include <algorithm>

#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class CountParts : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_COUNT_PARTS, arguments); }
};

TEST_F(CountParts, CountsTheCoinsThatAPersonCounts) {
  const Outcome outcome = run(NUV_COINS " coins_parts.bmp --background 40");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("\n24 parts at threshold"));
  EXPECT_EQ(read_picture((dir_ / "coins_parts.bmp").string()).channels, 3);
}

TEST_F(CountParts, ReportsHolesAndDarkParts) {
  // A dark frame with a light middle, and a dark square.
  Picture picture{40, 20, 1, std::vector<uint8_t>(800, 220)};
  const auto fill = [&picture](int32_t x1, int32_t x2, int32_t y1, int32_t y2, uint8_t value) {
    for (int32_t y = y1; y <= y2; ++y) std::fill_n(picture.pixels.begin() + y * 40 + x1, x2 - x1 + 1, value);
  };
  fill(3, 14, 3, 14, 30);
  fill(6, 11, 6, 11, 220);
  fill(20, 29, 5, 14, 30);
  write_picture(picture, (dir_ / "parts.bmp").string());
  const Outcome outcome =
      run("parts.bmp --threshold 100 --dark --smooth 0 --min-area 50 --min-hole 10 --csv");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            "number,left,top,right,bottom,x,y,area,perimeter,holes\n"
            "1,3,3,14,14,9,9,108,44,1\n"
            "2,20,5,29,14,25,10,100,36,0\n");
}

TEST_F(CountParts, RefusesBadInput) {
  EXPECT_EQ(run("none.bmp").status, 1);
  EXPECT_NE(run(NUV_COINS " --threshold 300").status, 0);
}

}  // namespace

// Runs the example count_parts as a user does.

#include <gmock/gmock.h>

#include "NuvImgSDK2014DLL.h"
#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;

class CountParts : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_COUNT_PARTS, arguments); }

  static void fill(Picture& picture, int32_t x1, int32_t x2, int32_t y1, int32_t y2, uint8_t value) {
    NuvFillGryRect(picture.pixels.data(), picture.width, picture.height, x1, x2, y1, y2, value);
  }
};

TEST_F(CountParts, CountsTheCoinsThatAPersonCounts) {
  const Outcome outcome = run(NUV_COINS " --background 40");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("\n24 parts at threshold"));
  EXPECT_THAT(outcome.out, HasSubstr("\nthreshold: Otsu's method"));
  EXPECT_EQ(read_picture((dir_ / "coins_parts.png").string()).channels, 3);
}

TEST_F(CountParts, ReportsHolesAndDarkPartsAndTheRim) {
  // A dark frame with a light middle, and a dark square in the corner of the picture.
  Picture picture = blank(40, 20, 1, 220);
  fill(picture, 3, 14, 3, 14, 30);
  fill(picture, 6, 11, 6, 11, 220);
  fill(picture, 30, 39, 10, 19, 30);
  write_picture(picture, (dir_ / "parts.bmp").string());
  for (const std::string smooth : {"0", "1"}) {
    const Outcome outcome = run("parts.bmp --dark --min-area 50 --min-hole 10 --csv --smooth " + smooth);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("\nparts.bmp,1,3,3,14,14,9,9,"));
    EXPECT_THAT(outcome.out, HasSubstr("\nparts.bmp,2,30,10,39,19,35,15,")) << smooth;
  }
  EXPECT_THAT(run("parts.bmp --dark --min-area 50 --min-hole 10 --csv --smooth 0").out,
              HasSubstr(",9,9,108,44,1\n"));
}

TEST_F(CountParts, FindsNothingInAFlatPicture) {
  write_picture(blank(50, 40, 1, 90), (dir_ / "flat.png").string());
  for (const std::string option : {"", " --dark", " --background 5"}) {
    const Outcome outcome = run("flat.png" + option);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("0 parts at threshold"));
  }
}

// Numbers stand beside small parts: every part keeps its own pixels in the drawing, but for its outline.
TEST_F(CountParts, NumbersDoNotCoverSmallParts) {
  Picture picture = blank(600, 500);
  for (int32_t y = 30; y < 470; y += 55) {
    for (int32_t x = 30; x < 570; x += 60) fill(picture, x, x + 8, y, y + 8, 200);
  }
  write_picture(picture, (dir_ / "many.png").string());
  const Outcome outcome = run("many.png --min-area 10 --smooth 0");
  EXPECT_THAT(outcome.out, HasSubstr("\n72 parts"));
  EXPECT_THAT(outcome.out, testing::Not(HasSubstr("no room")));
  const Picture drawing = read_picture((dir_ / "many_parts.png").string());
  for (int32_t y = 30; y < 470; y += 55) {
    for (int32_t x = 30; x < 570; x += 60) {
      for (std::size_t i = 0; i < 25; ++i) {
        const std::size_t at =
            (static_cast<std::size_t>(y + 2) + i / 5) * 600 + static_cast<std::size_t>(x + 2) + i % 5;
        ASSERT_EQ(drawing.pixels[3 * at + 1], 200) << x << ", " << y;
      }
    }
  }
}

}  // namespace

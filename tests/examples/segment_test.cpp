// Runs the example segment as a user does.

#include <gmock/gmock.h>

#include <algorithm>

#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;

class Segment : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_SEGMENT, arguments); }
};

TEST_F(Segment, PrintsTheTreeAndDrawsIt) {
  // Two dark squares in a gray one.
  Picture picture{60, 40, 1, std::vector<uint8_t>(2400, 240)};
  const auto fill = [&picture](int32_t x1, int32_t x2, int32_t y1, int32_t y2, uint8_t value) {
    for (int32_t y = y1; y <= y2; ++y) std::fill_n(picture.pixels.begin() + y * 60 + x1, x2 - x1 + 1, value);
  };
  fill(5, 54, 5, 34, 120);
  fill(10, 24, 10, 29, 40);
  fill(35, 49, 10, 29, 40);
  write_picture(picture, (dir_ / "squares.bmp").string());
  const Outcome outcome = run("squares.bmp regions.bmp --min-area 50 --ratio 1");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("\n0 "));
  EXPECT_THAT(outcome.out, HasSubstr("\n  "));
  EXPECT_THAT(outcome.out, HasSubstr("\n3 regions, drawn in regions.bmp"));
  EXPECT_EQ(read_picture((dir_ / "regions.bmp").string()).channels, 3);
}

TEST_F(Segment, RefusesBadInput) {
  EXPECT_EQ(run("none.bmp").status, 1);
  EXPECT_NE(run(NUV_PHOTOGRAPH " --ratio 2").status, 0);
}

}  // namespace

// Runs the example segment as a user does.

#include <gmock/gmock.h>

#include "NuvImgSDK2014DLL.h"
#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;

class Segment : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_SEGMENT, arguments); }
};

TEST_F(Segment, ListsTheTreeAndDrawsIt) {
  // Two dark squares in a gray one, and the same in negative.
  Picture picture = blank(60, 40, 1, 240);
  const auto fill = [&picture](int32_t x1, int32_t x2, int32_t y1, int32_t y2, uint8_t value) {
    NuvFillGryRect(picture.pixels.data(), picture.width, picture.height, x1, x2, y1, y2, value);
  };
  fill(5, 54, 5, 34, 120);
  fill(10, 24, 10, 29, 40);
  fill(35, 49, 10, 29, 40);
  write_picture(picture, (dir_ / "dark.png").string());
  for (uint8_t& pixel : picture.pixels) pixel = static_cast<uint8_t>(255 - pixel);
  write_picture(picture, (dir_ / "light.png").string());

  const Outcome table = run("dark.png --min-area 50 --ratio 1");
  EXPECT_EQ(table.status, 0) << table.err;
  EXPECT_THAT(table.out, HasSubstr("\n1 "));
  EXPECT_THAT(table.out, HasSubstr("\n  2 "));
  EXPECT_THAT(table.out, HasSubstr("\n  3 "));
  EXPECT_THAT(table.out, HasSubstr("\n3 regions, drawn into dark_regions.png"));
  EXPECT_EQ(read_picture((dir_ / "dark_regions.png").string()).channels, 3);

  // Levels are those of the picture, so dark and light ones add up to 255.
  const auto csv = [this](const std::string& arguments) {
    return run(arguments + " --min-area 50 --ratio 1 --csv").out;
  };
  const std::string dark = csv("dark.png");
  const std::string light = csv("light.png --light");
  const auto level = [](const std::string& line) { return std::stoi(line.substr(line.rfind(',') + 1)); };
  const auto row = [](const std::string& text, const char* start) {
    return text.substr(text.find(start), text.find('\n', text.find(start)) - text.find(start));
  };
  for (const char* number : {"png,1,,0,5,5,54,34,", "png,2,1,1,", "png,3,1,1,"}) {
    ASSERT_THAT(dark, HasSubstr(number));
    ASSERT_THAT(light, HasSubstr(number));
    EXPECT_EQ(level(row(dark, number)) + level(row(light, number)), 255);
  }
  EXPECT_THAT(csv("light.png --light --max-gray 130"), testing::Not(HasSubstr("png,2,1,1")));
}

TEST_F(Segment, RefusesOptionsThatDoNotFit) {
  EXPECT_EQ(run(NUV_PHOTOGRAPH " --ratio 2").err, "segment: --ratio: \"2\" is not a number from 0 to 1\n");
  EXPECT_EQ(run(NUV_PHOTOGRAPH " --max-gray 9").err, "segment: --max-gray needs --light\n");
}

}  // namespace

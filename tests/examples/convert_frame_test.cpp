// Runs the example convert_frame as a user does.

#include <gmock/gmock.h>

#include <cstdlib>

#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;

class ConvertFrame : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_CONVERT_FRAME, arguments); }
  Picture picture(const std::string& name) const { return read_picture((dir_ / name).string()); }
};

TEST_F(ConvertFrame, ARoundTripLosesOneGrayLevel) {
  const Picture photograph = read_picture(NUV_PHOTOGRAPH);
  const int32_t w = photograph.width;
  for (const std::string format : {"cbycry", "420sp", "420p", "422p"}) {
    const Outcome there = run(NUV_PHOTOGRAPH " -f " + format);
    ASSERT_EQ(there.status, 0) << there.err;
    EXPECT_THAT(there.out, HasSubstr("camera_512x512." + format + ": 512x512"));
    const std::string back = "camera_512x512." + format + " -W 512 -H 512 -f " + format;
    EXPECT_EQ(run(back + " colour.bmp").status, 0);
    EXPECT_EQ(run(back + " part.bmp -r 100 149 40 59").status, 0);
    EXPECT_EQ(run(back + " gray.bmp -g -r 100 149 40 59").status, 0);
    EXPECT_EQ(picture("colour.bmp").pixels.size(), photograph.pixels.size() * 3);
    const Picture part = picture("part.bmp");
    const Picture gray = picture("gray.bmp");
    ASSERT_EQ(part.width * part.height * part.channels, 50 * 20 * 3);
    ASSERT_EQ(gray.width * gray.height * gray.channels, 50 * 20);
    for (int32_t i = 0; i < 50 * 20; ++i) {
      const int value = photograph.pixels[static_cast<std::size_t>((40 + i / 50) * w + 100 + i % 50)];
      ASSERT_EQ(gray.pixels[static_cast<std::size_t>(i)], value == 0 ? 0 : value - 1);
      ASSERT_EQ(part.pixels[static_cast<std::size_t>(3 * i)], gray.pixels[static_cast<std::size_t>(i)]);
    }
  }
}

TEST_F(ConvertFrame, ReportsWhatDoesNotFit) {
  write("frame.yuv", std::vector<uint8_t>(23));
  EXPECT_THAT(run("frame.yuv -f 420p -W 4 -H 4").err,
              HasSubstr("frame.yuv: 23 bytes long; a 420p frame of 4x4 has 24"));
  EXPECT_THAT(run(NUV_PHOTOGRAPH " -f 420sp -r 0 2 0 1").err, HasSubstr("needs even widths"));
  EXPECT_THAT(run(NUV_PHOTOGRAPH " -f 420sp -r 0 512 0 1").err, HasSubstr("not inside its 512x512"));
  EXPECT_EQ(run("none.yuv -f 422p -W 2 -H 2").status, 1);
  EXPECT_EQ(run(NUV_PHOTOGRAPH " -f 422p no/such/place.422p").status, 1);
  EXPECT_NE(run("frame.yuv -f 420p -W 4").status, 0);
  EXPECT_NE(run("frame.yuv -f mpeg -W 4 -H 4").status, 0);
}

}  // namespace

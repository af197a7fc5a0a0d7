// Runs the example align as a user does.

#include <gmock/gmock.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;

class Align : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_ALIGN, arguments); }
};

TEST_F(Align, FindsTheShiftAndWritesThePictures) {
  Picture first = read_picture(NUV_PHOTOGRAPH);
  Picture second = first;
  NuvImageShift(first.pixels.data(), first.width, first.height, false, 7, -4, second.pixels.data());
  write_picture(second, (dir_ / "moved.png").string());

  const Outcome outcome = run(NUV_PHOTOGRAPH " moved.png --csv");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("\nmoved.png,7,-4,0,480,480,no\n"));
  const Picture difference = read_picture((dir_ / "moved_difference.png").string());
  // Only the columns that the shift leaves empty differ.
  for (int32_t x : {0, difference.width - 8}) {
    EXPECT_EQ(difference.pixels[static_cast<std::size_t>(200 * difference.width + x)], 0);
  }
  EXPECT_GT(*std::max_element(difference.pixels.begin(), difference.pixels.end()), 0);
  EXPECT_THAT(run(NUV_PHOTOGRAPH " moved.png -l 7").out, HasSubstr("at the limit: try --limit 14"));
}

TEST_F(Align, ComparesTheMiddleOfALargePicture) {
  Picture first{3000, 3000, 1, std::vector<uint8_t>(9000000)};
  for (std::size_t i = 0; i < first.pixels.size(); ++i) {
    first.pixels[i] = static_cast<uint8_t>((i % 3000 * 7 + i / 3000 * 11) % 251);
  }
  Picture second = first;
  NuvImageShift(first.pixels.data(), first.width, first.height, false, 1, -1, second.pixels.data());
  write_picture(first, (dir_ / "first.bmp").string());
  write_picture(second, (dir_ / "moved.bmp").string());
  const Outcome outcome = run("first.bmp moved.bmp --limit 2 -o out.bmp --difference out2.bmp --csv");
  EXPECT_THAT(outcome.out, HasSubstr("\nmoved.bmp,1,-1,0,2901,2901,no\n"));  // times 255, below 2^31
}

TEST_F(Align, RefusesWhatCannotBeAligned) {
  Picture small{20, 20, 1, std::vector<uint8_t>(400)};
  write_picture(small, (dir_ / "small.bmp").string());
  write_picture(small, (dir_ / "same.bmp").string());
  EXPECT_THAT(run(NUV_PHOTOGRAPH " small.bmp").err, HasSubstr("align: small.bmp: is 20x20 pixels large"));
  EXPECT_THAT(run("small.bmp same.bmp").err,
              HasSubstr("same.bmp: 20x20 pixels are too few for shifts of 16"));
  EXPECT_THAT(run("small.bmp same.bmp -o small.bmp").err, HasSubstr("would overwrite an input"));
  EXPECT_EQ(run("none.bmp small.bmp").status, 1);
}

}  // namespace

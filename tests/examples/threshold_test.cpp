// Runs the example threshold as a user does.

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;

class Threshold : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_THRESHOLD, arguments); }
  Picture picture(const std::string& name) const { return read_picture((dir_ / name).string()); }
  std::set<uint8_t> values_of(const std::string& name) const {
    const Picture result = picture(name);
    return {result.pixels.begin(), result.pixels.end()};
  }
};

TEST_F(Threshold, WritesThePictureAndItsHistogram) {
  const struct {
    std::string method, says;
    std::size_t values;
  } cases[] = {{"otsu", "\nthreshold             103\n", 2},
               {"ratio", "30.0 % of the pixels are white", 2},
               {"difference", "differences between neighbours", 2},
               {"kmeans -k 4", "\nthreshold             -\n", 4}};
  for (const auto& c : cases) {
    const Outcome outcome = run(NUV_PHOTOGRAPH " -o result.png --histogram bars.png -m " + c.method);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr(c.says));
    EXPECT_THAT(outcome.out, HasSubstr("pixels                262144"));
    EXPECT_EQ(values_of("result.png").size(), c.values) << c.method;
  }
  EXPECT_EQ(run(NUV_PHOTOGRAPH).status, 0);
  EXPECT_EQ(values_of("camera_otsu.png").size(), 2U);
}

// Bars keep their height although one bin holds nearly all pixels.
TEST_F(Threshold, ATallBinDoesNotFlattenTheHistogram) {
  Picture gray = blank(300, 300);
  for (std::size_t i = 0; i < 256 * 8; ++i) gray.pixels[i] = static_cast<uint8_t>(i / 8);
  write_picture(gray, (dir_ / "tall.png").string());
  EXPECT_EQ(run("tall.png").status, 0);
  const Picture bars = picture("tall_histogram.png");
  int64_t filled = 0;
  for (int32_t y = 0; y < bars.height; ++y) {
    const std::size_t at = 3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(bars.width) +
                                static_cast<std::size_t>(bars.width) / 2);
    filled += bars.pixels[at] < 250 || bars.pixels[at + 2] < 250;
  }
  EXPECT_GT(filled, bars.height / 2);
}

TEST_F(Threshold, IsRightForLargePicturesAndForFewLevels) {
  Picture gray{6000, 4000, 1, std::vector<uint8_t>(24000000)};
  const uint8_t levels[] = {180, 200, 240, 255};
  for (std::size_t i = 0; i < 4; ++i) std::fill_n(gray.pixels.begin() + i * 6000000, 6000000, levels[i]);
  // The highest level is left out. 180 and 200 against 240 have means of 190 and 240; 180 against 200 and 240
  // has 180 and 220, which are nearer.
  EXPECT_EQ(otsu_threshold(gray), 201);
  Histogram bins{};
  bins[7] = 23999999;
  bins[9] = 1;
  const Histogram scaled = scaled_down(bins, 20000);
  EXPECT_EQ(scaled[7], 20000);
  EXPECT_EQ(scaled[9], 1) << "an occupied bin stays occupied";
  Picture two{2, 1, 1, {30, 220}};
  EXPECT_EQ(otsu_threshold(two), 220) << "the brighter of two levels";
}

}  // namespace

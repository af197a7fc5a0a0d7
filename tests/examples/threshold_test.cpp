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
  std::set<uint8_t> values_of(const std::string& name) const {
    const Picture picture = read_picture((dir_ / name).string());
    return {picture.pixels.begin(), picture.pixels.end()};
  }
};

TEST_F(Threshold, WritesThePictureAndItsHistogram) {
  const struct {
    std::string method, says;
    std::size_t values;
  } cases[] = {{"otsu", "Otsu's threshold    103", 2},
               {"ratio", "threshold for 0.30", 2},
               {"difference", "noise of difference", 2},
               {"kmeans -k 4", "cluster centres", 4}};
  for (const auto& c : cases) {
    const Outcome outcome = run(NUV_PHOTOGRAPH " result.bmp --histogram bars.bmp -m " + c.method);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr(c.says));
    EXPECT_THAT(outcome.out, HasSubstr("pixels              262144"));
    EXPECT_EQ(values_of("result.bmp").size(), c.values) << c.method;
    EXPECT_EQ(values_of("bars.bmp"), (std::set<uint8_t>{0, 255}));
  }
}

TEST_F(Threshold, IsRightForLargePictures) {
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
}

TEST_F(Threshold, RefusesBadInput) {
  EXPECT_EQ(run("none.bmp").status, 1);
  EXPECT_NE(run(NUV_PHOTOGRAPH " -m magic").status, 0);
  EXPECT_EQ(run(NUV_PHOTOGRAPH " no/such/place.bmp").status, 1);
}

}  // namespace

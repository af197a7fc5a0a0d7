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

// Four columns and two rows: brightness 1 to 8, Cb 120 and 130, Cr 140 and 150. The pictures follow from the
// matrix; all formats give the same ones.
TEST_F(ConvertFrame, KnowsTheOrderOfBytesOfEachFormat) {
  const std::vector<uint8_t> y = {101, 102, 103, 104, 105, 106, 107, 108};
  const struct {
    std::string format;
    std::vector<uint8_t> bytes;
  } cases[] = {
      {"uyvy", {120, 101, 140, 102, 130, 103, 150, 104, 120, 105, 140, 106, 130, 107, 150, 108}},
      {"yuyv", {101, 120, 102, 140, 103, 130, 104, 150, 105, 120, 106, 140, 107, 130, 108, 150}},
      {"nv12", {101, 102, 103, 104, 105, 106, 107, 108, 120, 140, 130, 150}},
      {"nv21", {101, 102, 103, 104, 105, 106, 107, 108, 140, 120, 150, 130}},
      {"i420", {101, 102, 103, 104, 105, 106, 107, 108, 120, 130, 140, 150}},
      {"yv12", {101, 102, 103, 104, 105, 106, 107, 108, 140, 150, 120, 130}},
      {"yuv422p", {101, 102, 103, 104, 105, 106, 107, 108, 120, 130, 120, 130, 140, 150, 140, 150}},
  };
  for (const auto& c : cases) {
    write("frame.raw", c.bytes);
    const Outcome outcome = run("frame.raw --size 4x2 -f " + c.format);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Picture colour = picture("frame.png");
    for (std::size_t i = 0; i < 8; ++i) {
      const int u = i % 4 < 2 ? -8 : 2;
      const int v = i % 4 < 2 ? 12 : 22;
      EXPECT_EQ(colour.pixels[3 * i], (16384 * y[i] + 29032 * u) >> 14) << c.format;
      EXPECT_EQ(colour.pixels[3 * i + 2], (16384 * y[i] + 22970 * v) >> 14) << c.format;
    }
    // There and back, brightness and chroma move by a few levels.
    EXPECT_EQ(run("frame.png -o back.raw -f " + c.format).status, 0);
    const auto back = read_file((dir_ / "back.raw").string(), 100);
    ASSERT_EQ(back.size(), c.bytes.size());
    for (std::size_t i = 0; i < back.size(); ++i)
      EXPECT_NEAR(back[i], c.bytes[i], 3) << c.format << " byte " << i;
  }
}

TEST_F(ConvertFrame, ConvertsParts) {
  const Picture photograph = read_picture(NUV_PHOTOGRAPH);
  for (const std::string format : {"uyvy", "nv12", "i420", "yuv422p"}) {
    EXPECT_EQ(run(NUV_PHOTOGRAPH " -f " + format).status, 0);
    const std::string back = "camera." + format + " --size 512x512 -r 100 149 40 59 -f " + format;
    EXPECT_EQ(run(back + " -o part.png").status, 0);
    EXPECT_EQ(run(back + " -o gray.png -g").status, 0);
    const Picture part = picture("part.png");
    const Picture gray = picture("gray.png");
    ASSERT_EQ(part.width * part.height * part.channels, 50 * 20 * 3);
    ASSERT_EQ(gray.width * gray.height * gray.channels, 50 * 20);
    for (int32_t i = 0; i < 50 * 20; ++i) {
      const int value = photograph.pixels[static_cast<std::size_t>((40 + i / 50) * 512 + 100 + i % 50)];
      ASSERT_EQ(gray.pixels[static_cast<std::size_t>(i)], value == 0 ? 0 : value - 1);
      ASSERT_EQ(part.pixels[static_cast<std::size_t>(3 * i)], gray.pixels[static_cast<std::size_t>(i)]);
    }
  }
}

// In the limited range, black is 16 and white is 235.
TEST_F(ConvertFrame, StretchesTheLimitedRange) {
  write("frame.nv12", {16, 235, 126, 10, 128, 128});
  EXPECT_EQ(run("frame.nv12 -f nv12 --size 2x2 --range limited -g").status, 0);
  EXPECT_EQ(picture("frame.png").pixels, (std::vector<uint8_t>{0, 255, 128, 0}));
  EXPECT_EQ(run("frame.png -f nv12 --range limited -o back.nv12").status, 0);
  EXPECT_EQ(read_file((dir_ / "back.nv12").string(), 9), (std::vector<uint8_t>{16, 234, 125, 16, 128, 128}));
}

TEST_F(ConvertFrame, ConvertsAStreamOfFrames) {
  std::vector<uint8_t> frames;
  for (uint8_t level : {50, 60, 70}) frames.insert(frames.end(), {level, level, level, level, 128, 128});
  write("three.raw", frames);
  const std::string options = "--format nv12 --size 2x2 -";
  EXPECT_EQ(run(options + " -o out/ < three.raw").status, 0);
  EXPECT_EQ(picture("out/stdin_000003.png").pixels, std::vector<uint8_t>(12, 70));
  EXPECT_EQ(run(options + " -g < three.raw > three.pgm").status, 0);
  std::vector<uint8_t> expected;
  for (uint8_t level : {50, 60, 70}) {
    const auto pgm = pnm_of(blank(2, 2, 1, level));
    expected.insert(expected.end(), pgm.begin(), pgm.end());
  }
  EXPECT_EQ(read_file((dir_ / "three.pgm").string(), 1000), expected);

  frames.pop_back();
  write("cut.raw", frames);
  const Outcome outcome = run(options + " < cut.raw > cut.ppm");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "convert_frame: standard input: ends within frame 3: 5 of 6 bytes\n");
  EXPECT_THAT(run("three.raw --format nv12 --size 2x2").err,
              HasSubstr("three.raw: 18 bytes long; a frame of 2x2 in nv12 has 6. For its 3 frames"));
}

#if !defined(_WIN32)  // ffmpeg belongs to the machine that builds
// Frames of ffmpeg become the pictures that it makes of them, but for rounding.
TEST_F(ConvertFrame, AgreesWithFfmpeg) {
  const auto ffmpeg = [this](const std::string& arguments) {
    return HostTest::run("ffmpeg", "-v error -y " + arguments).status == 0;
  };
  const std::pair<std::string, std::string> formats[] = {{"nv12", "nv12"},    {"nv21", "nv21"},
                                                         {"yuv420p", "i420"}, {"uyvy422", "uyvy"},
                                                         {"yuyv422", "yuyv"}, {"yuv422p", "yuv422p"}};
  for (const auto& [theirs, ours] : formats) {
    ASSERT_TRUE(ffmpeg("-f lavfi -i testsrc=size=64x48:rate=1:duration=2 -f rawvideo -pix_fmt " + theirs +
                       " frames.raw"));
    const Outcome outcome =
        run("--format " + ours + " --size 64x48 --range limited - -o ours.png < frames.raw");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    ASSERT_TRUE(ffmpeg("-f rawvideo -s 64x48 -pix_fmt " + theirs +
                       " -i frames.raw -sws_flags neighbor+accurate_rnd+full_chroma_int -pix_fmt rgb24 "
                       "-frames:v 1 theirs.ppm"));
    const Picture a = picture("ours_000001.png");
    const Picture b = picture("theirs.ppm");
    ASSERT_EQ(a.pixels.size(), b.pixels.size());
    double difference = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) difference += std::abs(a.pixels[i] - b.pixels[i]);
    EXPECT_LT(difference / static_cast<double>(a.pixels.size()), 3) << ours;
  }
}
#endif

TEST_F(ConvertFrame, ReportsWhatDoesNotFit) {
  write("frame.yuv", std::vector<uint8_t>(23));
  const struct {
    std::string arguments;
    int status;
    const char* reason;
  } cases[] = {
      {"frame.yuv -f i420 -s 4x4", 1, "frame.yuv: 23 bytes long; a frame of 4x4 in i420 has 24"},
      {NUV_PHOTOGRAPH " -f nv12 -r 0 2 0 1", 1, "needs even widths"},
      {NUV_PHOTOGRAPH " -f nv12 -r 0 512 0 1", 1, "not inside its 512x512"},
      {"none.yuv -f yuv422p -s 2x2", 1, "No such file"},
      {"frame.yuv -f i420 -s 4", 2, "--size: \"4\" is not a size such as 640x480"},
      {"frame.yuv -f p010 -s 4x4", 2, "--format: \"p010\" is not one of uyvy, yuyv, nv12"},
      {"frame.yuv -f nv12 -s 4x4 -r 0 1 0 -1", 2, "\"-1\" is not a whole number"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = run(c.arguments);
    EXPECT_EQ(outcome.status, c.status) << c.arguments;
    EXPECT_THAT(outcome.err, HasSubstr(c.reason));
  }
}

}  // namespace

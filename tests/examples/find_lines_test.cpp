// Runs the example find_lines as a user does.

#include <gmock/gmock.h>

#include <cstdio>
#include <sstream>
#include <string>

#include "NuvImgSDK2014DLL.h"
#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class FindLines : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_FIND_LINES, arguments); }
};

TEST_F(FindLines, ListsAndDrawsTheLinesOfAPhotograph) {
  const Outcome table = run(NUV_PHOTOGRAPH);
  EXPECT_EQ(table.status, 0) << table.err;
  EXPECT_THAT(table.out, HasSubstr("segments in "));
  const Picture drawing = read_picture((dir_ / "camera_lines.png").string());
  EXPECT_EQ(drawing.channels, 3);
  EXPECT_EQ(drawing.width, 512);

  const Outcome csv = run(NUV_PHOTOGRAPH " -o other.bmp --svg lines.svg --csv");
  EXPECT_THAT(csv.out, StartsWith("file,number,x1,y1,x2,y2,length,angle\n"));
  // The edges of the tripod's upright column are long, and vertical within a degree or two.
  int columns = 0;
  int rows = 0;
  std::istringstream lines(csv.out);
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    int x1 = 0;
    int y1 = 0;
    int x2 = 0;
    int y2 = 0;
    double length = 0;
    double angle = 0;
    const std::string values = line.substr(line.find(',', line.find(',') + 1) + 1);
    ASSERT_EQ(std::sscanf(values.c_str(), "%d,%d,%d,%d,%lf,%lf", &x1, &y1, &x2, &y2, &length, &angle), 6)
        << line;
    columns += x1 > 285 && x1 < 305 && length > 60 && std::abs(angle - 90) < 2;
    ++rows;
  }
  EXPECT_GE(columns, 2);
  EXPECT_GE(rows, 30);
  EXPECT_LE(rows, 300);
  const std::string svg = text_of(dir_ / "lines.svg");
  std::size_t drawn = 0;
  for (std::size_t at = svg.find("<line "); at != std::string::npos; at = svg.find("<line ", at + 1)) ++drawn;
  EXPECT_EQ(drawn, static_cast<std::size_t>(rows));
}

TEST_F(FindLines, TakesColourPicturesAndScalesItsDefaults) {
  for (int32_t side : {40, 700}) {
    Picture picture = blank(side, side, 3, 30);
    NuvFillRGBRect(picture.pixels.data(), side, side, side / 4, side / 2 - 1, side / 4, side / 2 - 1, 30, 250,
                   30);
    write_picture(picture, (dir_ / "square.bmp").string());
    const Outcome outcome = run("square.bmp");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    // In the small picture, a side of 10 pixels is shorter than the least length.
    EXPECT_THAT(outcome.out, HasSubstr(side == 40 ? "0 segments" : "4 segments"));
  }
}

// The detector is one object that all threads share.
TEST_F(FindLines, GivesTheSameLinesOnSeveralThreads) {
  const Picture photograph = read_picture(NUV_PHOTOGRAPH);
  for (int i = 0; i < 6; ++i) {
    Picture part = blank(512, 512 - 40 * i);
    std::copy_n(photograph.pixels.begin(), part.pixels.size(), part.pixels.begin());
    write_picture(part, (dir_ / (std::to_string(i) + ".bmp")).string());
  }
  const Outcome one = run(". -j 1 -o one/ --csv");
  EXPECT_EQ(one.status, 0) << one.err;
  EXPECT_EQ(run(". -j 6 -o six/ --csv").out, one.out);
}

}  // namespace

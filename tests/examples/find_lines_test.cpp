// Runs the example find_lines as a user does.

#include <gmock/gmock.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>

#include "examples/hosts.h"
#include "images.h"
#include "picture.h"

namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class FindLines : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_FIND_LINES, arguments); }
};

std::vector<uint8_t> bmp(int32_t width, int32_t height, uint16_t depth, uint32_t compression = 0) {
  std::vector<uint8_t> bytes(54 + 4000);
  bytes[0] = 'B';
  bytes[1] = 'M';
  const uint32_t offset = 54;
  std::memcpy(&bytes[10], &offset, 4);
  std::memcpy(&bytes[18], &width, 4);
  std::memcpy(&bytes[22], &height, 4);
  std::memcpy(&bytes[28], &depth, 2);
  std::memcpy(&bytes[30], &compression, 4);
  return bytes;
}

TEST_F(FindLines, ListsAndDrawsTheLinesOfAPhotograph) {
  const Outcome table = run(NUV_PHOTOGRAPH);
  EXPECT_EQ(table.status, 0) << table.err;
  EXPECT_THAT(table.out, HasSubstr("segments in "));
  Picture drawing = read_picture((dir_ / "camera_lines.bmp").string());
  EXPECT_EQ(drawing.channels, 3);
  EXPECT_EQ(drawing.width, 512);

  const Outcome csv = run(NUV_PHOTOGRAPH " other.bmp --csv");
  EXPECT_THAT(csv.out, StartsWith("x1,y1,x2,y2,length,angle\n"));
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
    ASSERT_EQ(std::sscanf(line.c_str(), "%d,%d,%d,%d,%lf,%lf", &x1, &y1, &x2, &y2, &length, &angle), 6)
        << line;
    columns += x1 > 285 && x1 < 305 && length > 60 && std::abs(angle - 90) < 2;
    ++rows;
  }
  EXPECT_GE(columns, 2);
  EXPECT_GE(rows, 30);
  EXPECT_LE(rows, 300);
}

TEST_F(FindLines, TakesColourPicturesAndScalesItsDefaults) {
  for (int32_t side : {40, 700}) {
    Picture picture{side, side, 3, std::vector<uint8_t>(static_cast<std::size_t>(side * side * 3), 30)};
    for (int32_t y = side / 4; y < side / 2; ++y) {
      for (int32_t x = side / 4; x < side / 2; ++x) {
        picture.pixels[static_cast<std::size_t>((y * side + x) * 3 + 1)] = 250;
      }
    }
    write_picture(picture, (dir_ / "square.bmp").string());
    const Outcome outcome = run("square.bmp");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    // In the small picture, a side of 10 pixels is shorter than the least length.
    EXPECT_THAT(outcome.out, HasSubstr(side == 40 ? "0 segments" : "4 segments"));
  }
}

TEST_F(FindLines, BadInputGetsOneLineAndWritesNothing) {
  write("text.bmp", {'h', 'e', 'l', 'l', 'o'});
  write("stub.bmp", {'B', 'M', 1, 2, 3});
  write("deep.bmp", bmp(10, 10, 32));
  write("packed.bmp", bmp(10, 10, 8, 1));
  write("short.bmp", bmp(100, 100, 24));
  write("huge.bmp", bmp(2000000000, 2000000000, 8));
  write("flat.bmp", bmp(0, 10, 8));
  write("upside.bmp", bmp(10, -10, 8));
  write("good.bmp", bmp(10, 10, 8));
  struct Case {
    std::string arguments, file, reason;
  };
  const Case cases[] = {
      {"none.bmp", "none.bmp", "No such file"},
      {".", ".", "is a directory"},
      {"text.bmp", "text.bmp", "not a BMP"},
      {"stub.bmp", "stub.bmp", "truncated"},
      {"deep.bmp", "deep.bmp", "32 bits per pixel"},
      {"packed.bmp", "packed.bmp", "compressed"},
      {"short.bmp", "short.bmp", "truncated"},
      {"huge.bmp", "huge.bmp", "unsupported size"},
      {"flat.bmp", "flat.bmp", "unsupported size"},
      {"upside.bmp", "upside.bmp", "unsupported size"},
      {"good.bmp no/such/place.bmp", "no/such/place.bmp", "No such file"},
      {"good.bmp good.bmp", "good.bmp", "is the picture itself"},
  };
  const auto files = [this] { return std::distance(fs::directory_iterator(dir_), fs::directory_iterator()); };
  const auto before = files();
  for (const Case& c : cases) {
    const Outcome outcome = run(c.arguments);
    EXPECT_EQ(outcome.status, 1) << c.arguments;
    EXPECT_THAT(outcome.err, StartsWith("find_lines: " + c.file + ": "));
    EXPECT_THAT(outcome.err, HasSubstr(c.reason));
    EXPECT_THAT(outcome.err, EndsWith("\n"));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(files(), before) << c.arguments;
  }
}

}  // namespace

// Runs the example gauge as a user does, on drawn parts of known sizes.

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <nlohmann/json.hpp>
#include <random>

#include "NuvImgSDK2014DLL.h"
#include "examples/hosts.h"
#include "picture.h"

namespace {

using testing::HasSubstr;

constexpr double kPi = 3.14159265358979323846;

// The distance of a place from the rim of a part; negative inside.
using Shape = std::function<double(double, double)>;

Shape bar(double x, double y, double width, double degrees) {
  const double c = std::cos(degrees * kPi / 180);
  const double s = std::sin(degrees * kPi / 180);
  return [=](double px, double py) { return std::fabs((px - x) * c + (py - y) * s) - width / 2; };
}

Shape disc(double x, double y, double diameter) {
  return [=](double px, double py) { return std::hypot(px - x, py - y) - diameter / 2; };
}

// The share of a pixel that the part covers, from 16 x 16 samples.
double coverage(const Shape& shape, int32_t x, int32_t y) {
  constexpr int32_t kSamples = 16;
  const double distance = shape(x, y);
  if (std::fabs(distance) > 1) return distance < 0 ? 1 : 0;
  int32_t inside = 0;
  for (int32_t i = 0; i < kSamples * kSamples; ++i) {
    inside += shape(x - 0.5 + (i % kSamples + 0.5) / kSamples, y - 0.5 + (i / kSamples + 0.5) / kSamples) < 0;
  }
  return static_cast<double>(inside) / (kSamples * kSamples);
}

// Blurs along the rows, and turns rows into columns. Two calls blur the picture.
std::vector<double> blurred_and_transposed(const std::vector<double>& values, int32_t width, int32_t height,
                                           double sigma) {
  const auto reach = static_cast<int32_t>(std::ceil(4 * sigma));
  std::vector<double> result(values.size());
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      double sum = 0;
      double weights = 0;
      for (int32_t d = -reach; d <= reach; ++d) {
        const double weight = sigma > 0 ? std::exp(-d * d / (2 * sigma * sigma)) : 1;
        sum += weight * values[static_cast<std::size_t>(y * width + std::min(std::max(x + d, 0), width - 1))];
        weights += weight;
      }
      result[static_cast<std::size_t>(x * height + y)] = sum / weights;
    }
  }
  return result;
}

// A part of gray value 160 on 60: anti-aliased, blurred, and with noise.
Picture drawn(const Shape& shape, double sigma, double noise, uint32_t seed) {
  constexpr int32_t kWidth = 200;
  constexpr int32_t kHeight = 180;
  std::vector<double> values;
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x) values.push_back(60 + 100 * coverage(shape, x, y));
  }
  values = blurred_and_transposed(values, kWidth, kHeight, sigma);
  values = blurred_and_transposed(values, kHeight, kWidth, sigma);
  std::mt19937 random(seed);
  std::normal_distribution<double> normal(0, 1);
  Picture picture = blank(kWidth, kHeight);
  for (std::size_t i = 0; i < values.size(); ++i) {
    picture.pixels[i] = static_cast<uint8_t>(std::lround(values[i] + noise * normal(random)));
  }
  return picture;
}

class Gauge : public HostTest {
 protected:
  Outcome run(const std::string& arguments) const { return HostTest::run(NUV_GAUGE, arguments); }

  // Draws a part several times, measures it, and returns the features, one of each picture.
  std::vector<nlohmann::json> measured(const std::vector<Shape>& shapes, double sigma, double noise,
                                       const std::string& arguments) {
    std::filesystem::create_directories(dir_ / "in");
    std::string names;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
      const std::string name = "in/" + std::to_string(i) + ".bmp";
      write_picture(drawn(shapes[i], sigma, noise, static_cast<uint32_t>(i + 1)), (dir_ / name).string());
      names += " " + name;
    }
    const Outcome outcome = run(arguments + " --json -o out/" + names);
    EXPECT_EQ(outcome.status, 0) << outcome.err << outcome.out;
    std::vector<nlohmann::json> features;
    for (const auto& picture : nlohmann::json::parse(outcome.out)) features.push_back(picture["features"][0]);
    return features;
  }
};

// Root mean square.
double size_of(const std::vector<double>& errors) {
  double squares = 0;
  for (const double error : errors) squares += error * error;
  return std::sqrt(squares / static_cast<double>(errors.size()));
}

double greatest_of(const std::vector<double>& errors) {
  double greatest = 0;
  for (const double error : errors) greatest = std::max(greatest, std::fabs(error));
  return greatest;
}

constexpr std::size_t kParts = 6;
constexpr struct { double blur, noise; } kPictures[] = {{0, 0}, {0, 5}, {1.5, 0}, {1.5, 5}};

// Widths at many places between pixels, in rectangles at several angles.
TEST_F(Gauge, MeasuresWidthsToATenthOfAPixel) {
  for (const double angle : {0.0, 10.0, 40.0, 90.0, -117.5}) {
    std::vector<Shape> shapes;
    std::vector<double> widths;
    for (std::size_t i = 0; i < kParts; ++i) {
      const double part = static_cast<double>(i);
      widths.push_back(40 + 0.375 * part);
      shapes.push_back(bar(100 + 0.1875 * part, 90 - 0.3125 * part, widths[i], angle));
    }
    const std::string arguments = "--width 100,90,80,60," + std::to_string(angle);
    for (const auto& picture : kPictures) {
      std::vector<double> errors;
      const auto features = measured(shapes, picture.blur, picture.noise, arguments);
      for (std::size_t i = 0; i < kParts; ++i) {
        errors.push_back(features[i]["size"].get<double>() - widths[i]);
        EXPECT_NEAR(std::remainder(features[i]["angle"].get<double>() - angle, 360), 0, 0.3);
      }
      EXPECT_LT(size_of(errors), picture.noise > 0 ? 0.05 : 0.02) << angle << ", " << picture.blur;
      EXPECT_LT(greatest_of(errors), picture.noise > 0 ? 0.1 : 0.03) << angle << ", " << picture.blur;
    }
  }
}

TEST_F(Gauge, MeasuresCirclesToATenthOfAPixel) {
  std::vector<Shape> shapes;
  std::vector<double> truth[3];
  for (std::size_t i = 0; i < kParts; ++i) {
    const double part = static_cast<double>(i);
    truth[0].push_back(100 + 0.4375 * part);
    truth[1].push_back(90 - 0.3125 * part);
    truth[2].push_back(80 + 1.375 * part);
    shapes.push_back(disc(truth[0][i], truth[1][i], truth[2][i]));
  }
  const std::string names[] = {"x", "y", "size"};
  for (const auto& picture : kPictures) {
    const auto features = measured(shapes, picture.blur, picture.noise, "--circle 100,90,42,18,bright");
    for (std::size_t k = 0; k < 3; ++k) {
      // Blur moves the rim of a disc inwards, by blur*blur/diameter.
      const double shrinkage = k == 2 ? 2 * picture.blur * picture.blur / truth[2][0] : 0;
      std::vector<double> errors;
      for (std::size_t i = 0; i < kParts; ++i) {
        errors.push_back(features[i][names[k]].get<double>() - truth[k][i]);
      }
      EXPECT_LT(size_of(errors), shrinkage + (picture.noise > 0 ? 0.03 : 0.01)) << names[k];
      EXPECT_LT(greatest_of(errors), 0.1) << names[k] << ", " << picture.blur << ", " << picture.noise;
    }
  }
}

// A bar from column 40 to column 79, of gray value 200 on 50: its edges lie at 39.5 and 79.5.
TEST_F(Gauge, ReportsWhatIsFoundAndWhatIsNot) {
  Picture picture = blank(160, 120, 1, 50);
  NuvFillGryRect(picture.pixels.data(), 160, 120, 40, 79, 0, 119, 200);
  write_picture(picture, (dir_ / "bar.png").string());
  write("parts.txt", [] {
    const std::string text =
        "# a bar\n"
        "width bar 60 60 80 21\r\n"
        "\tedge right 60 60 80 21 0 dark  # the second of two\n"
        "edge none 130 60 30 20 0\n"
        "width slot 60 60 80 20 0 dark\n";
    return std::vector<uint8_t>(text.begin(), text.end());
  }());
  const Outcome outcome = run("bar.png -f parts.txt --mm-per-pixel 0.5 --csv");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "file,name,kind,size,unit,x,y,angle,deviation,found,reason\n"
            "bar.png,bar,width,20.0000,mm,59.500,60.000,0.000,0.0000,yes,\n"
            "bar.png,right,edge,,mm,79.500,60.000,0.000,0.0000,yes,\n"
            "bar.png,none,edge,,,,,,,no,no edge of 20 gray values or more\n"
            "bar.png,slot,width,,,,,,,no,no pair of opposite edges\n");
  EXPECT_EQ(read_picture((dir_ / "bar_gauged.png").string()).channels, 3);

  // Two short arcs of edges are no circle.
  EXPECT_THAT(run("bar.png --circle 60,60,30,25").out, HasSubstr("0 of 1 feature found"));
}

// A burr on one edge does not move the line.
TEST_F(Gauge, LeavesOutBurrs) {
  Picture picture = blank(160, 120, 1, 50);
  NuvFillGryRect(picture.pixels.data(), 160, 120, 40, 79, 0, 119, 200);
  NuvFillGryRect(picture.pixels.data(), 160, 120, 80, 83, 50, 56, 200);
  write_picture(picture, (dir_ / "burr.png").string());
  EXPECT_THAT(run("burr.png --width 60,60,80,60 --csv").out, HasSubstr("W1,width,40.0000,px,59.500,"));
}

TEST_F(Gauge, RefusesWhatItCannotMeasure) {
  write_picture(blank(100, 80), (dir_ / "a.png").string());
  write("bad.txt", {'\n', 'w', 'i', 'd', 't', 'h', ' ', 'a', ' ', '1', '\n'});
  write("empty.txt", {'#', '\n'});
  const struct {
    std::string arguments;
    int status;
    std::string reason;
  } cases[] = {
      {"", 2, "there is nothing to measure"},
      {"-f bad.txt", 2, "bad.txt: line 2: a width has the values X Y LENGTH WIDTH"},
      {"-f empty.txt", 2, "empty.txt: has no features"},
      {"-f missing.txt", 2, "missing.txt: "},
      {"--width 50,40,30", 2, "--width 50,40,30: a width has the values"},
      {"--edge 50,40,x,9", 2, "LENGTH \"x\" is not a number from 8 to 4000"},
      {"--edge 50,40,nan,9", 2, "LENGTH \"nan\" is not a number from 8 to 4000"},
      {"--edge 50,40,30,2", 2, "WIDTH \"2\" is not a number from 3 to 4000"},
      {"--circle 50,40,20,20", 2, "REACH must be less than RADIUS"},
      {"--width 50,40,20,9 --smooth 5", 2, "W1: --smooth 5 needs a LENGTH of 35 or more"},
      {"--width 50,40,120,9", 1, "a.png: W1 leaves the picture, which is 100x80 pixels large"},
      {"--circle 50,40,38,10", 1, "a.png: C1 leaves the picture, which is 100x80 pixels large"},
      {"--width 50,40,60,9", 1, ""},  // the table says that nothing is found
  };
  for (const auto& c : cases) {
    const Outcome outcome = run("a.png " + c.arguments);
    EXPECT_EQ(outcome.status, c.status) << c.arguments << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(c.reason)) << c.arguments;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), c.reason.empty() ? 0 : 1)
        << outcome.err;
  }
}

}  // namespace

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <vector>

#include "NuvImgSDK2014DLL.h"

namespace {

using testing::Contains;
using testing::Each;

constexpr int32_t kCount = 200'000;

enum Type : uint32_t { kGaussian, kUniform, kSaltAndPepper, kPoisson, kRician };

// The first call in a process seeds the generator itself, so the seed of a test is set after it.
void seed(unsigned value) {
  Brindlemar2008AddNoise(nullptr, 0, 1.0, kGaussian);
  std::srand(value);
}

// Noisy bytes of one value. The first and the last byte set the range that the noise is clamped to.
std::vector<uint8_t> noisy(uint8_t value, double noise, uint32_t type, uint8_t low = 0, uint8_t high = 255) {
  std::vector<uint8_t> bytes(kCount, value);
  bytes.front() = low;
  bytes.back() = high;
  Brindlemar2008AddNoise(bytes.data(), kCount, noise, type);
  return bytes;
}

TEST(Noise, HasTheMomentsOfItsModel) {
  seed(1);
  const struct {
    uint32_t type;
    uint8_t value;
    double noise;
    double mean;  // truncation lowers it by half a level
    double deviation;
  } models[] = {
      {kGaussian, 128, 10, 127.5, 10},
      {kGaussian, 128, -10, 127.5, 25.5},
      {kUniform, 128, 60, 127.5, 60 / std::sqrt(3.0)},
      {kSaltAndPepper, 128, 20, 0.8 * 128 + 0.2 * 127.5, std::sqrt(0.2) * 127.5},
      {kPoisson, 30, 1, 30, std::sqrt(30.0)},
      {kPoisson, 100, 7, 100, 10},
      {kPoisson, 121, 1, 120.5, 11},
      {kRician, 200, 10, 199.75, 10},
      {kRician, 0, 40, 40 * std::sqrt(3.14159 / 2) - 0.5, 40 * std::sqrt(2 - 3.14159 / 2)},
  };
  for (const auto& model : models) {
    std::vector<uint8_t> bytes = noisy(model.value, model.noise, model.type);
    double mean = 0;
    double deviation = 0;
    NuvGetImageAvrAndDev(bytes.data(), kCount, 1, &mean, &deviation);
    EXPECT_NEAR(mean, model.mean, 0.5) << &model - models;
    // A Poisson count also ends at a sample of 0. About one in 300 counts of mean 100 is too small for this
    // reason.
    EXPECT_NEAR(deviation, model.deviation, 0.08 * model.deviation) << &model - models;
  }
}

TEST(Noise, SaltAndPepperOfAFlatBufferIsBlackAndWhite) {
  seed(3);
  int32_t black = 0;
  int32_t white = 0;
  for (uint8_t v : noisy(100, 100, kSaltAndPepper, 100, 100)) {
    black += v == 0 ? 1 : 0;
    white += v == 255 ? 1 : 0;
  }
  EXPECT_LE(kCount - black - white, 30) << "about 6 bytes stay unchanged";
  EXPECT_NEAR(black, white, 0.02 * kCount);
  uint8_t single = 100;
  Brindlemar2008AddNoise(&single, 1, 101, kSaltAndPepper);
  EXPECT_NE(single, 100);
}

TEST(Noise, PoissonWrapsAndKeepsBlack) {
  seed(4);
  EXPECT_THAT(noisy(0, 1, kPoisson, 0, 0), Each(0));
  EXPECT_THAT(noisy(250, 1, kPoisson), Contains(testing::Le(40)));
  EXPECT_THAT(noisy(50, -5, kPoisson, 50, 50), Contains(testing::Ne(50)))
      << "the strength becomes 0, but Poisson noise ignores it";
}

TEST(Noise, StrengthInPercentIsOfTheRange) {
  seed(6);
  std::vector<uint8_t> bytes = noisy(150, -10, kUniform, 140, 160);
  bytes.front() = bytes.back() = 150;
  EXPECT_THAT(bytes, Each(testing::AllOf(testing::Ge(148), testing::Le(152)))) << "10 % of 20";
  EXPECT_THAT(bytes, Contains(148));
}

TEST(Noise, NoStrengthOrNoModelChangesNothing) {
  for (const uint32_t type : {0U, 1U, 2U, 3U, 4U}) EXPECT_EQ(noisy(9, 0, type)[1], 9);
  EXPECT_THAT(noisy(9, 50, 5, 9, 9), Each(9));
  EXPECT_THAT(noisy(9, -50, kGaussian, 9, 9), Each(9));
}

TEST(Noise, FollowsTheSeedOfTheHost) {
  seed(5);
  const std::vector<uint8_t> first = noisy(128, 20, kGaussian);
  EXPECT_NE(noisy(128, 20, kGaussian), first);
  seed(5);
  EXPECT_EQ(noisy(128, 20, kGaussian), first);
}

}  // namespace

// Noise added to bytes.
//
// A model is a function from a byte to its noisy byte. It draws from a stream of samples that belongs to the
// call. The generator of the C library only seeds the stream, because the host and other threads share it and
// some libraries lock it on every draw.

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <ctime>

#include "core/arithmetic.h"
#include "core/buffer.h"
#include "core/byte_counter.h"
#include "nuv/noise.h"

namespace nuv {
namespace {

constexpr int32_t kMostSample = 32767;

// ---- the generator of the C library ----

// The 15 bits that the generator of every platform has.
uint32_t runtime_sample() {
  return static_cast<uint32_t>(std::rand()) & kMostSample;
}

// Seeds the generator of the C library once per process, from the clock and from the address of an
// allocation.
void NuvSeedRandomOnce() {
  static std::atomic<bool> is_due{true};
  if (!is_due.exchange(false)) return;
  std::srand(static_cast<uint32_t>(std::time(nullptr)));
  const Buffer<char> memory = allocate<char>(runtime_sample() % 2048 + 1);
  const auto place = static_cast<uint32_t>(reinterpret_cast<std::uintptr_t>(memory.get()));
  std::srand(runtime_sample() + place);
}

// ---- samples ----

// A generator of uniform samples: a counter whose bits are mixed. The step is 2^64 divided by the golden
// ratio, as in G. L. Steele, D. Lea and C. H. Flood, Fast splittable pseudorandom number generators, 2014.
// The shifts and factors of the mixer are D. Stafford's variant 13, which they name. Its last shift changes
// only bits that no sample uses, and is left out.
class Samples {
 public:
  Samples() {
    for (int i = 0; i < 5; ++i) state_ = state_ << 15 ^ runtime_sample();
  }

  // uniform() is from 0 to 32767; share() is from 0 to 1.
  int32_t uniform() {
    state_ += kStep;
    uint64_t bits = state_;
    bits = (bits ^ bits >> 30) * kFactor1;
    bits = (bits ^ bits >> 27) * kFactor2;
    return static_cast<int32_t>(bits >> 49);
  }
  double share() { return static_cast<double>(uniform()) / kMostSample; }

 private:
  static constexpr uint64_t kStep = 0x9E3779B97F4A7C15;
  static constexpr uint64_t kFactor1 = 0xBF58476D1CE4E5B9;
  static constexpr uint64_t kFactor2 = 0x94D049BB133111EB;

  uint64_t state_ = 0;
};

// A normal sample of mean 0 and standard deviation 1 by the polar method. The method gives two samples; the
// second one is not used.
double NuvGaussianRandom(Samples& samples) {
  for (;;) {
    const double u1 = samples.uniform() * 2.0 / kMostSample - 1;
    const double u2 = samples.uniform() * 2.0 / kMostSample - 1;
    const double s = u2 * u2 + u1 * u1;
    if (s > 0 && s < 1) return std::sqrt(-2 * std::log(s) / s) * u2;
  }
}

// ---- models ----

enum NoiseModel : uint32_t { kGaussian, kUniform, kSaltAndPepper, kPoisson, kRician };

// The least and the greatest value of a buffer. Most models clamp their results to this range.
struct Range {
  int32_t low;
  int32_t high;

  uint8_t clamped(double value) const {
    if (value > high) value = high;
    if (!(value >= low)) value = low;  // also if it is not a number
    return low_byte(truncated(value));
  }
};

Range range_of(const Histogram& bins) {
  Range range{0, kBins - 1};
  while (range.low < kBins - 1 && bins[range.low] == 0) ++range.low;
  while (range.high > 0 && bins[range.high] == 0) --range.high;
  return range;
}

uint8_t poisson(uint8_t mean, Samples& samples) {
  if (mean == 0) return 0;
  constexpr uint8_t kGreatestCounted = 100;  // above it the normal distribution is near enough
  if (mean > kGreatestCounted)
    return low_byte(truncated(std::sqrt(static_cast<double>(mean)) * NuvGaussianRandom(samples) + mean));
  // Counts how many waiting times -log(share) fit into an interval of length mean: the count is Poisson.
  // Their sum exceeds the interval when the product of the shares falls below exp(-mean).
  const double limit = std::exp(-static_cast<double>(mean));
  int32_t k = 0;
  double product = 1.0;
  do {
    product = samples.share() * product;
    ++k;
  } while (product >= limit);
  return low_byte(k - 1);
}

template <class Model>
void replace_each(uint8_t* bytes, int32_t n, Model model) {
  for (int32_t i = 0; i < n; ++i) bytes[i] = model(bytes[i]);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void Brindlemar2008AddNoise(uint8_t* pImg, int32_t N, double noise, uint32_t type) {
  NuvSeedRandomOnce();
  if (noise == 0 || N <= 0 || type > kRician) return;
  const Range range = range_of(histogram_of({pImg, N, 1}));
  if (noise < 0) noise = (range.high - range.low) * noise / -100.0;

  Samples samples;
  switch (type) {
    case kGaussian:
      replace_each(pImg, N, [&](uint8_t v) { return range.clamped(v + NuvGaussianRandom(samples) * noise); });
      break;
    case kUniform:
      replace_each(pImg, N, [&](uint8_t v) {
        return range.clamped(v + (1 - samples.uniform() * 2.0 / kMostSample) * noise);
      });
      break;
    case kSaltAndPepper: {
      const Range grains = range.low == range.high ? Range{0, kBins - 1} : range;
      replace_each(pImg, N, [&](uint8_t v) {
        if (!(samples.share() * 100 < noise)) return v;
        return low_byte(samples.share() < 0.5 ? grains.high : grains.low);
      });
      break;
    }
    case kPoisson:
      replace_each(pImg, N, [&](uint8_t v) { return poisson(v, samples); });
      break;
    case kRician:
      replace_each(pImg, N, [&](uint8_t v) {
        const double a = v / std::sqrt(2.0);
        const double x = NuvGaussianRandom(samples) * noise + a;
        const double y = NuvGaussianRandom(samples) * noise + a;
        return range.clamped(std::sqrt(x * x + y * y));
      });
  }
}

// Chains for tests.

#ifndef NUV_TESTS_CONTOURS_CHAINS_H
#define NUV_TESTS_CONTOURS_CHAINS_H

#include <cstdint>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

constexpr int32_t kStepX[] = {1, 1, 0, -1, -1, -1, 0, 1};
constexpr int32_t kStepY[] = {0, -1, -1, -1, 0, 1, 1, 1};

// The 3 by 3 square from (1, 1).
struct Square {
  std::vector<uint8_t> codes = {6, 6, 0, 0, 2, 2, 4, 4};
  int32_t x = 1;
  int32_t y = 1;
  uint8_t* data() { return codes.data(); }
};

struct TracedChain {
  int32_t x = 0;
  int32_t y = 0;
  bool is_outer = true;
  std::vector<uint8_t> codes;

  int32_t n() const { return static_cast<int32_t>(codes.size()); }
  uint8_t* data() { return codes.data(); }
};

inline TracedChain trace(TestImage& image, int32_t x, int32_t y, bool is_outer) {
  TracedChain chain{x, y, is_outer, std::vector<uint8_t>(image.pixels.size() * 4 + 1)};
  const auto capacity = static_cast<int32_t>(chain.codes.size());
  const int32_t n = NuvTraceContour(image.data(), image.width, x, y, chain.data(), capacity, is_outer);
  chain.codes.resize(static_cast<std::size_t>(n));
  return chain;
}

// All contours of an image with a clear border, lone pixels included, by the rule of the scan.
inline std::vector<TracedChain> trace_all(TestImage& image) {
  std::vector<TracedChain> chains;
  for (int32_t y = 1; y < image.height; ++y) {
    for (int32_t x = 1; x < image.width; ++x) {
      if (image.at(x, y) == 255 && image.at(x - 1, y) < 10) chains.push_back(trace(image, x, y, true));
      if (image.at(x, y) == 0 && image.at(x - 1, y) > 250) chains.push_back(trace(image, x - 1, y, false));
    }
  }
  return chains;
}

struct Measure {
  int32_t area = 0;
  int32_t perimeter = 0;
};

inline Measure real_measure(TracedChain chain) {
  Measure m;
  NuvRealAreaAndPerimeter(chain.data(), chain.n(), &m.area, &m.perimeter);
  return m;
}

// Random pixels of a random density inside a clear border.
inline TestImage random_blobs(Random& random, int32_t width, int32_t height) {
  TestImage image = random.binary(width, height, random.between(5, 95));
  for (int32_t x = 0; x < width; ++x) image.at(x, 0) = image.at(x, height - 1) = 0;
  for (int32_t y = 0; y < height; ++y) image.at(0, y) = image.at(width - 1, y) = 0;
  return image;
}

// Sets the 4-connected pixels of one value around a pixel to another value.
inline void flood(TestImage& image, int32_t from_x, int32_t from_y, uint8_t value) {
  const uint8_t old = image.at(from_x, from_y);
  std::vector<std::pair<int32_t, int32_t>> open = {{from_x, from_y}};
  while (!open.empty()) {
    const auto [x, y] = open.back();
    open.pop_back();
    if (x < 0 || y < 0 || x >= image.width || y >= image.height || image.at(x, y) != old) continue;
    image.at(x, y) = value;
    for (int d = 0; d < 8; d += 2) open.emplace_back(x + kStepX[d], y + kStepY[d]);
  }
}

// A chain drawn alone in an image of 0: the pixels that it covers, and with them those that it cuts off from
// the corner.
struct Enclosed {
  TestImage region;
  TestImage rim;
};

inline Enclosed enclosed_by(TracedChain& chain, int32_t width, int32_t height) {
  TestImage rim(width, height);
  NuvMarkChainByColor(rim.data(), width, chain.x, chain.y, chain.data(), chain.n(), 255);
  TestImage region = rim;
  flood(region, 0, 0, 1);
  for (uint8_t& pixel : region.pixels) pixel = pixel == 1 ? 0 : 255;
  return {region, rim};
}

#endif

// Times functions on the photograph and prints a line for each: name, tab, microseconds. It needs no benchmark
// library, so that it runs as WebAssembly, too.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

#include "NuvImgSDK2014DLL.h"

namespace {

constexpr int32_t kWidth = 1280;
constexpr int32_t kHeight = 960;
using Bytes = std::vector<uint8_t>;

// The photograph, mirrored at its edges until the size is filled.
Bytes gray_picture() {
  int32_t w = 0;
  int32_t h = 0;
  const std::unique_ptr<uint8_t[]> source(NuvRead8BitBmpFile2Img(NUV_PHOTOGRAPH, &w, &h));
  if (!source) return {};
  const auto mirrored = [](int32_t i, int32_t size) {
    return i / size % 2 == 0 ? i % size : size - 1 - i % size;
  };
  Bytes picture;
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x) picture.push_back(source[mirrored(y, h) * w + mirrored(x, w)]);
  }
  return picture;
}

// Prints the time of the fastest of many calls. The first calls do not count, because engines compile while
// they run.
template <class Work>
void measure(const char* name, Work work) {
  using Clock = std::chrono::steady_clock;
  using Microseconds = std::chrono::duration<double, std::micro>;
  constexpr auto kWarmUp = std::chrono::milliseconds(300);
  constexpr auto kMeasured = std::chrono::milliseconds(300);
  Microseconds least = std::chrono::hours(1);
  const Clock::time_point first = Clock::now();
  for (Clock::time_point start = first; start - first < kWarmUp + kMeasured;) {
    work();
    const Clock::time_point end = Clock::now();
    if (start - first >= kWarmUp) least = std::min<Microseconds>(least, end - start);
    start = end;
  }
  std::printf("%s\t%.1f\n", name, least.count());
}

}  // namespace

int main() {
  Bytes gray = gray_picture();
  if (gray.empty()) {
    std::fprintf(stderr, "%s cannot be read\n", NUV_PHOTOGRAPH);
    return 1;
  }
  Bytes rgb(3 * gray.size());
  NuvGry2RGBImg(gray.data(), gray.data(), gray.data(), kWidth, kHeight, rgb.data());
  Bytes binary(gray.size());
  std::transform(gray.begin(), gray.end(), binary.begin(), [](uint8_t v) { return v >= 128 ? 255 : 0; });
  NuvDrawGryRect(binary.data(), kWidth, kHeight, 0, kWidth, 0, kHeight, 0);
  Bytes result(gray.size());
  Bytes work(gray.size());

  measure("NuvThreshold", [&] { NuvThreshold(gray.data(), kWidth, kHeight, 128, result.data()); });
  measure("NuvGryImgSobel", [&] { NuvGryImgSobel(gray.data(), kWidth, kHeight, result.data()); });
  measure("NuvGryAverageFilterFast 11x11",
          [&] { NuvGryAverageFilterFast(gray.data(), kWidth, kHeight, 5, 5, result.data()); });
  measure("NuvGryImgMedianBoundary0 3x3",
          [&] { NuvGryImgMedianBoundary0(gray.data(), kWidth, kHeight, 1, 1, result.data()); });
  measure("NuvGryImgMedianBoundary0 5x5",
          [&] { NuvGryImgMedianBoundary0(gray.data(), kWidth, kHeight, 2, 2, result.data()); });
  measure("NuvGryImgMedianBoundary0 15x15",
          [&] { NuvGryImgMedianBoundary0(gray.data(), kWidth, kHeight, 7, 7, result.data()); });
  measure("NuvRGB2Gry", [&] { NuvRGB2Gry(rgb.data(), kWidth, kHeight, result.data()); });
  // The call restores the picture.
  measure("NuvGetContours",
          [&] { NuvFreeContours(NuvGetContours(binary.data(), work.data(), kWidth, kHeight, 0, 0, 0)); });
  measure("NuvBinImgThin",
          [&] { NuvBinImgThin(binary.data(), work.data(), kWidth, kHeight, result.data()); });
  measure("NuvImgRotate90DegreeCS",
          [&] { NuvImgRotate90DegreeCS(gray.data(), kWidth, kHeight, false, result.data()); });
  return 0;
}

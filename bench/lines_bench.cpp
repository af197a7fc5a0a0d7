#include <algorithm>

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

// With the settings that find_lines chooses for the size.
void chain_lines(benchmark::State& state, int32_t width, int32_t height) {
  BenchPicture picture = gray_picture(width, height);
  NuvImgChainLines_Initialize(width, height, 0.9, 1.0, std::min(width, height) / 20, 24, 100000);
  int32_t lines = 0;
  for (auto _ : state) {
    lines = NuvImgChainLines_DoGryImg(picture.data(), width, height, true);
    benchmark::DoNotOptimize(lines);
  }
  state.counters["lines"] = lines;
  state.counters["pixels"] = benchmark::Counter(static_cast<double>(picture.pixels.size()),
                                                benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK_CAPTURE(chain_lines, 640, 640, 480)->Name("NuvImgChainLines_DoGryImg 640x480/nuv");
BENCHMARK_CAPTURE(chain_lines, 1280, 1280, 960)->Name("NuvImgChainLines_DoGryImg/nuv");
BENCHMARK_CAPTURE(chain_lines, 4000, 4000, 3000)->Name("NuvImgChainLines_DoGryImg 4000x3000/nuv");

#if NUV_WITH_OPENCV
void line_segment_detector(benchmark::State& state) {
  BenchPicture picture = gray_picture();
  const auto detector = cv::createLineSegmentDetector();
  std::vector<cv::Vec4f> lines;
  for (auto _ : state) {
    detector->detect(picture.mat(), lines);
    benchmark::DoNotOptimize(lines.data());
  }
  state.counters["lines"] = static_cast<double>(lines.size());
}
BENCHMARK(line_segment_detector)->Name("NuvImgChainLines_DoGryImg/opencv");
#endif

}  // namespace

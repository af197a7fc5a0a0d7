#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

void rgb_to_gray(benchmark::State& state) {
  BenchPicture picture = colour_picture();
  std::vector<uint8_t> gray(picture.pixels.size() / 3);
  for (auto _ : state) {
    NuvRGB2Gry(picture.data(), picture.width, picture.height, gray.data());
    benchmark::DoNotOptimize(gray.data());
  }
}
BENCHMARK(rgb_to_gray)->Name("NuvRGB2Gry/nuv");

#if NUV_WITH_OPENCV
void cvt_color(benchmark::State& state) {
  BenchPicture picture = colour_picture();
  cv::Mat gray;
  for (auto _ : state) {
    cv::cvtColor(picture.mat(), gray, cv::COLOR_BGR2GRAY);
    benchmark::DoNotOptimize(gray.data);
  }
}
BENCHMARK(cvt_color)->Name("NuvRGB2Gry/opencv");
#endif

}  // namespace

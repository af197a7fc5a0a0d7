#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

void get_histogram(benchmark::State& state) {
  BenchPicture picture = gray_picture();
  int32_t bins[256];
  for (auto _ : state) {
    NuvGetHistogram(picture.data(), picture.width, picture.height, bins);
    benchmark::DoNotOptimize(bins);
  }
}
BENCHMARK(get_histogram)->Name("NuvGetHistogram/nuv");

#if NUV_WITH_OPENCV
void calc_hist(benchmark::State& state) {
  BenchPicture picture = gray_picture();
  const cv::Mat image = picture.mat();
  const int channel = 0;
  const int size = 256;
  const float range[] = {0, 256};
  const float* ranges = range;
  cv::Mat bins;
  for (auto _ : state) {
    cv::calcHist(&image, 1, &channel, cv::Mat(), bins, 1, &size, &ranges);
    benchmark::DoNotOptimize(bins.data);
  }
}
BENCHMARK(calc_hist)->Name("NuvGetHistogram/opencv");
#endif

}  // namespace

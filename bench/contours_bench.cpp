#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

void get_contours(benchmark::State& state) {
  BenchPicture picture = binary_picture();
  std::vector<uint8_t> work(picture.pixels.size());
  for (auto _ : state) {
    // The picture comes back as it was.
    NUV_CONTOUR_STRUCT* contours =
        NuvGetContours(picture.data(), work.data(), picture.width, picture.height, 0, 0, 0);
    benchmark::DoNotOptimize(contours);
    NuvFreeContours(contours);
  }
}
BENCHMARK(get_contours)->Name("NuvGetContours/nuv");

#if NUV_WITH_OPENCV
void find_contours(benchmark::State& state) {
  BenchPicture picture = binary_picture();
  for (auto _ : state) {
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(picture.mat(), contours, cv::RETR_LIST, cv::CHAIN_APPROX_NONE);
    benchmark::DoNotOptimize(contours.data());
  }
}
BENCHMARK(find_contours)->Name("NuvGetContours/opencv");
#endif

}  // namespace

#include "NuvImgSDK2014DLL.h"
#include "pictures.h"

namespace {

void shen_jun_edge_fast(benchmark::State& state) {
  BenchPicture picture = gray_picture();
  std::vector<uint8_t> scratch(picture.pixels.size());
  std::vector<uint8_t> edges(picture.pixels.size());
  for (auto _ : state) {
    NuvShenJunEdgeFast(picture.data(), scratch.data(), picture.width, picture.height, 2, 24, edges.data());
    benchmark::DoNotOptimize(edges.data());
  }
}
BENCHMARK(shen_jun_edge_fast)->Name("NuvShenJunEdgeFast/nuv");

#if NUV_WITH_OPENCV
void canny(benchmark::State& state) {
  BenchPicture picture = gray_picture();
  cv::Mat edges;
  for (auto _ : state) {
    cv::Canny(picture.mat(), edges, 50, 100);
    benchmark::DoNotOptimize(edges.data);
  }
}
BENCHMARK(canny)->Name("NuvShenJunEdgeFast/opencv");
#endif

}  // namespace

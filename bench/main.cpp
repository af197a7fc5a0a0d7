#include "pictures.h"

int main(int argc, char** argv) {
#if NUV_WITH_OPENCV
  cv::setNumThreads(1);
#endif
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

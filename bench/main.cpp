#include "pictures.h"

#if NUV_WITH_VIPS
#include <vips/vips.h>
#endif

int main(int argc, char** argv) {
#if NUV_WITH_OPENCV
  cv::setNumThreads(1);
#endif
#if NUV_WITH_VIPS
  if (VIPS_INIT(argv[0]) != 0) vips_error_exit("libvips does not start");
  vips_concurrency_set(1);
  vips_cache_set_max(0);  // or it returns the result of the call before
#endif
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

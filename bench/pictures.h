// What the benchmarks work on, and how a row stands beside its peer.
//
// A row is named after the export; "/nuv" is the library and "/opencv" the peer on the same picture.

#ifndef NUV_BENCH_PICTURES_H
#define NUV_BENCH_PICTURES_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#if NUV_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

struct BenchPicture {
  int32_t width;
  int32_t height;
  int32_t channels;
  std::vector<uint8_t> pixels;

  uint8_t* data() { return pixels.data(); }
#if NUV_WITH_OPENCV
  cv::Mat mat() {
    return cv::Mat(height, width, channels == 1 ? CV_8UC1 : CV_8UC3, data());
  }
#endif
};

// The photograph, mirrored at its edges until the size is filled.
BenchPicture gray_picture(int32_t width = 1280, int32_t height = 960);
BenchPicture colour_picture();
// The photograph thresholded at 128, with a clear border.
BenchPicture binary_picture();

#endif

// Pictures for the benchmarks, and rows that stand beside their peers.
//
// The name of a row is the export, a slash and the side that does the work. "nuv" is the library, "opencv" or
// the name of another library is a peer on the same picture, "copy" is a copy of as many bytes, and "plain"
// is the naive form.

#ifndef NUV_BENCH_PICTURES_H
#define NUV_BENCH_PICTURES_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#if NUV_WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

// One side of a row. make_work() prepares the pictures and returns the function that is called repeatedly and
// measured. For work that a peer does in threads of its own, the processor time of the process is measured.
struct Row {
  template <class MakeWork>
  Row(const char* name, MakeWork make_work, bool has_threads = false) {
    auto* row = benchmark::RegisterBenchmark(name, [make_work](benchmark::State& state) {
      auto work = make_work();
      for (auto _ : state) {
        work();
        benchmark::ClobberMemory();
      }
    });
    if (has_threads) row->MeasureProcessCPUTime();
  }
};

// Memory that is aligned to cache lines, like that of cameras and of the peers. So both sides have the same
// alignment.
template <class T>
struct LineAllocator {
  using value_type = T;
  static constexpr std::align_val_t kLine{64};

  LineAllocator() = default;
  template <class U>
  LineAllocator(const LineAllocator<U>& /*other*/) {}

  T* allocate(std::size_t n) { return static_cast<T*>(::operator new(n * sizeof(T), kLine)); }
  void deallocate(T* p, std::size_t /*n*/) { ::operator delete(p, kLine); }
  friend bool operator==(LineAllocator, LineAllocator) { return true; }
  friend bool operator!=(LineAllocator, LineAllocator) { return false; }
};
template <class T>
using LineVector = std::vector<T, LineAllocator<T>>;

struct BenchPicture {
  int32_t width;
  int32_t height;
  int32_t channels;
  LineVector<uint8_t> pixels;

  uint8_t* data() { return pixels.data(); }
#if NUV_WITH_OPENCV
  cv::Mat mat() {
    return cv::Mat(height, width, channels == 1 ? CV_8UC1 : CV_8UC3, data());
  }
#endif
};

// The photograph, mirrored at its edges until the size is filled.
BenchPicture gray_picture(int32_t width = 1280, int32_t height = 960);
// The photograph of coins, 384x303.
BenchPicture coins_picture();
// Photographs of a brick wall, 512x512, of a clock, 400x300, and of a cup of coffee as gray, 600x400.
BenchPicture brick_picture();
BenchPicture clock_picture();
BenchPicture coffee_picture();
BenchPicture colour_picture();
// Copies count bytes, for comparison with work that moves as many.
inline auto copy_of_bytes(std::size_t count) {
  return [source = LineVector<uint8_t>(count, 1), target = LineVector<uint8_t>(count)]() mutable {
    target = source;
    benchmark::DoNotOptimize(target.data());
  };
}
// The photograph thresholded at 128, with a black border.
BenchPicture binary_picture();

#endif

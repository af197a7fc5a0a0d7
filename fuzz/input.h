// Turns the bytes of a fuzzer into numbers and images; checks that stop the run.

#ifndef NUV_FUZZ_INPUT_H
#define NUV_FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

// Unlike assert(), this check is made in every build.
#define NUV_CHECK(condition)                                                             \
  do {                                                                                   \
    if (!(condition)) {                                                                  \
      std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                      \
    }                                                                                    \
  } while (false)

class Input {
 public:
  Input(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  // A number of type T from its bytes. Bytes after the end of the data are 0.
  template <class T>
  T any() {
    T value{};
    const std::size_t length = size_ < sizeof(T) ? size_ : sizeof(T);
    std::memcpy(&value, data_, length);
    data_ += length;
    size_ -= length;
    return value;
  }

  int32_t between(int32_t low, int32_t high) { return low + any<uint16_t>() % (high - low + 1); }
  bool flag() { return any<uint8_t>() % 2 == 1; }

  // Half of the numbers are small, the others have any value.
  int32_t number() { return flag() ? any<int8_t>() : any<int32_t>(); }
  double real() { return flag() ? any<int16_t>() / 64.0 : any<double>(); }

  // Gray values from the data, which is repeated until it fills them.
  std::vector<uint8_t> bytes(std::size_t count) {
    std::vector<uint8_t> result(count);
    for (std::size_t i = 0; i < count; ++i) result[i] = size_ == 0 ? 0 : data_[i % size_];
    return result;
  }

  // Pixels of 0 and 255, one per bit.
  std::vector<uint8_t> pixels(std::size_t count) {
    std::vector<uint8_t> result = bytes((count + 7) / 8);
    result.resize(count);
    for (std::size_t i = count; i-- > 0;) result[i] = (result[i / 8] >> i % 8 & 1) != 0 ? 255 : 0;
    return result;
  }

 private:
  const uint8_t* data_;
  std::size_t size_;
};

// The end of a chain, and whether all of it lies inside the image.
struct Walk {
  int32_t x;
  int32_t y;
  bool inside;
};

inline Walk walk(int32_t x, int32_t y, const uint8_t* codes, int32_t n, int32_t width, int32_t height) {
  static constexpr int32_t kX[] = {1, 1, 0, -1, -1, -1, 0, 1};
  static constexpr int32_t kY[] = {0, -1, -1, -1, 0, 1, 1, 1};
  Walk walk{x, y, true};
  for (int32_t i = 0; i <= n; ++i) {
    walk.inside = walk.inside && walk.x >= 0 && walk.x < width && walk.y >= 0 && walk.y < height;
    if (i == n) break;
    NUV_CHECK(codes[i] < 8);
    walk.x += kX[codes[i]];
    walk.y += kY[codes[i]];
  }
  return walk;
}

#endif

// The arithmetic that every result is defined in.
//
// Integers wrap (the build asks the compiler for it), shifts of negative values are arithmetic, conversions
// from floating point truncate. What a processor leaves open is closed here: a value that no int32_t holds.

#ifndef NUV_CORE_ARITHMETIC_H
#define NUV_CORE_ARITHMETIC_H

#include <cstdint>
#include <limits>

namespace nuv {

// What a value that is not finite, or beyond the range of int32_t, converts to. It lies outside every
// image, so a test for a coordinate in range refuses it without a test of its own.
constexpr int32_t kNoInteger = std::numeric_limits<int32_t>::min();

// Toward zero. The comparisons are written so that a not-a-number fails them.
inline int32_t truncated(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int32_t>(value) : kNoInteger;
}

// Truncated toward zero; 0 where there is nothing to divide by. In 64 bits no quotient of 32-bit sums is out
// of range.
inline int32_t quotient(int64_t sum, int64_t n) {
  return n == 0 ? 0 : static_cast<int32_t>(sum / n);
}

inline uint8_t low_byte(int32_t value) {
  return static_cast<uint8_t>(value);
}

// The pi of most angles. It is a few parts in 10^8 short, and results are defined with it.
constexpr double kPi = 3.1415926;

inline double radians(double degrees, double pi = kPi) {
  return degrees * pi / 180.0;
}
inline double degrees(double radians, double pi = kPi) {
  return radians * 180.0 / pi;
}

}  // namespace nuv

#endif

// The arithmetic that defines every result.
//
// Integers wrap (by a compiler option of the build), shifts of negative values are arithmetic, and
// conversions from floating point truncate. Processors differ in what they make of a value that no int32_t
// holds, so this header defines it.

#ifndef NUV_CORE_ARITHMETIC_H
#define NUV_CORE_ARITHMETIC_H

#include <cstdint>
#include <limits>

namespace nuv {

// The result of converting a value that is not finite or does not fit in int32_t. It lies outside every
// image, so the range test of a coordinate rejects it, too.
constexpr int32_t kNoInteger = std::numeric_limits<int32_t>::min();

// Truncates toward zero. The comparisons are written so that a not-a-number fails them.
inline int32_t truncated(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int32_t>(value) : kNoInteger;
}

// The quotient truncated toward zero, or 0 if n is 0. In 64 bits the division of 32-bit sums cannot overflow.
inline int32_t quotient(int64_t sum, int64_t n) {
  return n == 0 ? 0 : static_cast<int32_t>(sum / n);
}

inline uint8_t low_byte(int32_t value) {
  return static_cast<uint8_t>(value);
}

// The values of pi. The definition of each result says which of them it uses. Most angles use kPi.
constexpr double kPi = 3.1415926;
constexpr double kPiTo5Decimals = 3.14159;
constexpr double kPiTo4Decimals = 3.1415;
constexpr double kPiTo2Decimals = 3.14;

inline double radians(double degrees, double pi = kPi) {
  return degrees * pi / 180.0;
}
inline double degrees(double radians, double pi = kPi) {
  return radians * 180.0 / pi;
}

}  // namespace nuv

#endif

// Counting bytes into 256 bins.

#ifndef NUV_FRAME_BYTE_COUNTER_H
#define NUV_FRAME_BYTE_COUNTER_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace nuv {

constexpr int32_t kBins = 256;
using Histogram = std::array<int32_t, kBins>;

// Eight tables take turns, as pictures hold runs of one value and a counter that was just written cannot be
// read back at once.
class ByteCounter {
 public:
  void add(uint8_t value) { ++tables_[0][value]; }
  void add(const uint8_t* bytes, std::ptrdiff_t count);
  // Those whose byte of the mask is not 0.
  void add_masked(const uint8_t* bytes, const uint8_t* mask, std::ptrdiff_t count);
  void store_to(int32_t* bins) const;

 private:
  std::array<Histogram, 8> tables_{};
};

}  // namespace nuv

#endif

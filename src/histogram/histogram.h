// Histograms inside the library.

#ifndef NUV_HISTOGRAM_HISTOGRAM_H
#define NUV_HISTOGRAM_HISTOGRAM_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace nuv {

constexpr int32_t kBins = 256;
using Histogram = std::array<int32_t, kBins>;

// Counts bytes. Four tables take turns, as pictures hold runs of one value and a counter that was just
// written cannot be read back at once.
class ByteCounter {
 public:
  void add(uint8_t value) { ++tables_[0][value]; }
  void add(const uint8_t* bytes, std::ptrdiff_t count);
  void store_to(int32_t* bins) const;

 private:
  std::array<Histogram, 4> tables_{};
};

int32_t total(const int32_t* bins);

}  // namespace nuv

#endif

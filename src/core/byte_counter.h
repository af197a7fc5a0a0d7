// Counts of byte values, in 256 bins.

#ifndef NUV_CORE_BYTE_COUNTER_H
#define NUV_CORE_BYTE_COUNTER_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/views.h"

namespace nuv {

constexpr int32_t kBins = 256;
using Histogram = std::array<int32_t, kBins>;

// Eight consecutive bytes are counted in eight tables. Images hold runs of equal values, and in a single
// table each increment would depend on the store of the one before it.
class ByteCounter {
 public:
  void add(uint8_t value) { ++tables_[0][value]; }
  void add(const uint8_t* bytes, std::ptrdiff_t count);
  // Counts the bytes whose mask byte is not 0.
  void add_masked(const uint8_t* bytes, const uint8_t* mask, std::ptrdiff_t count);
  void store_to(int32_t* bins) const;
  Histogram counts() const;

 private:
  std::array<Histogram, 8> tables_{};
};

// The counts of the pixels of an image or of a region, which must lie in the image.
Histogram histogram_of(GrayImage image);
Histogram histogram_of(GrayImage image, Region region);

// Counts the bytes of one small window after another. The values of a small window lie close together, so
// only the bins from the least to the greatest value are read and cleared.
class WindowBins {
 public:
  void add(uint8_t value) {
    ++bins_[value];
    ++count_;
    least_ = value < least_ ? value : least_;
    most_ = value > most_ ? value : most_;
  }
  void clear() {
    for (int32_t v = least_; v <= most_; ++v) bins_[v] = 0;
    count_ = 0;
    least_ = kBins - 1;
    most_ = 0;
  }

  const int32_t* bins() const { return bins_.data(); }
  int32_t count() const { return count_; }
  int32_t least() const { return least_; }
  int32_t most() const { return most_; }

 private:
  Histogram bins_{};
  int32_t count_ = 0;
  int32_t least_ = kBins - 1;
  int32_t most_ = 0;
};

}  // namespace nuv

#endif

// Counting bytes into 256 bins.

#ifndef NUV_CORE_BYTE_COUNTER_H
#define NUV_CORE_BYTE_COUNTER_H

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

// Counts the bytes of a small window, and then of the next one. The values of a small window lie close
// together, so that bins are walked and cleared from its least value to its greatest alone.
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

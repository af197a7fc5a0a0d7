// Counts bytes, eight at a time.

#include "core/byte_counter.h"

#include <cstring>

namespace nuv {

void ByteCounter::add(const uint8_t* bytes, std::ptrdiff_t count) {
  std::ptrdiff_t i = 0;
  for (; i + 8 <= count; i += 8) {
    uint64_t word;
    std::memcpy(&word, bytes + i, 8);
    ++tables_[0][word & 255];
    ++tables_[1][word >> 8 & 255];
    ++tables_[2][word >> 16 & 255];
    ++tables_[3][word >> 24 & 255];
    ++tables_[4][word >> 32 & 255];
    ++tables_[5][word >> 40 & 255];
    ++tables_[6][word >> 48 & 255];
    ++tables_[7][word >> 56];
  }
  for (; i < count; ++i) add(bytes[i]);
}

// There is no branch: each byte adds 0 or 1 to its counter.
void ByteCounter::add_masked(const uint8_t* bytes, const uint8_t* mask, std::ptrdiff_t count) {
  constexpr uint64_t kLowBits = 0x7f7f7f7f7f7f7f7f;
  std::ptrdiff_t i = 0;
  for (; i + 8 <= count; i += 8) {
    uint64_t word;
    uint64_t selected;
    std::memcpy(&word, bytes + i, 8);
    std::memcpy(&selected, mask + i, 8);
    // Each byte becomes 1 if it is not 0.
    selected = ((((selected & kLowBits) + kLowBits) | selected) & ~kLowBits) >> 7;
    tables_[0][word & 255] += static_cast<int32_t>(selected & 1);
    tables_[1][word >> 8 & 255] += static_cast<int32_t>(selected >> 8 & 1);
    tables_[2][word >> 16 & 255] += static_cast<int32_t>(selected >> 16 & 1);
    tables_[3][word >> 24 & 255] += static_cast<int32_t>(selected >> 24 & 1);
    tables_[4][word >> 32 & 255] += static_cast<int32_t>(selected >> 32 & 1);
    tables_[5][word >> 40 & 255] += static_cast<int32_t>(selected >> 40 & 1);
    tables_[6][word >> 48 & 255] += static_cast<int32_t>(selected >> 48 & 1);
    tables_[7][word >> 56] += static_cast<int32_t>(selected >> 56);
  }
  for (; i < count; ++i) {
    if (mask[i] != 0) add(bytes[i]);
  }
}

void ByteCounter::store_to(int32_t* bins) const {
  for (int32_t v = 0; v < kBins; ++v) {
    bins[v] = 0;
    for (const Histogram& table : tables_) bins[v] += table[v];
  }
}

Histogram ByteCounter::counts() const {
  Histogram bins;
  store_to(bins.data());
  return bins;
}

Histogram histogram_of(GrayImage image) {
  ByteCounter counter;
  counter.add(image.pixels, image.size());
  return counter.counts();
}

Histogram histogram_of(GrayImage image, Region region) {
  ByteCounter counter;
  if (!region.empty()) {
    for (int32_t y = region.y1; y <= region.y2; ++y) counter.add(image.at(region.x1, y), region.columns());
  }
  return counter.counts();
}

}  // namespace nuv

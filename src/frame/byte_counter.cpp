// Counting bytes, eight at a time.

#include "frame/byte_counter.h"

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

void ByteCounter::store_to(int32_t* bins) const {
  for (int32_t v = 0; v < kBins; ++v) {
    bins[v] = 0;
    for (const Histogram& table : tables_) bins[v] += table[v];
  }
}

}  // namespace nuv

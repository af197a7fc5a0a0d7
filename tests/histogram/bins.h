// Histograms for tests.

#ifndef NUV_TESTS_HISTOGRAM_BINS_H
#define NUV_TESTS_HISTOGRAM_BINS_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>

using Bins = std::array<int32_t, 256>;

inline Bins bins(const std::map<int, int32_t>& counts) {
  Bins h{};
  for (const auto& [value, count] : counts) h[static_cast<std::size_t>(value)] = count;
  return h;
}

// Bins first to last hold count each.
inline Bins run_of(int32_t first, int32_t last, int32_t count) {
  Bins h{};
  std::fill(h.begin() + first, h.begin() + last + 1, count);
  return h;
}

#endif

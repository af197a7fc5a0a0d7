// Histograms for tests.

#ifndef NUV_TESTS_HISTOGRAM_BINS_H
#define NUV_TESTS_HISTOGRAM_BINS_H

#include <array>
#include <cstdint>
#include <map>

using Bins = std::array<int32_t, 256>;

inline Bins bins(const std::map<int, int32_t>& counts) {
  Bins h{};
  for (const auto& [value, count] : counts) h[static_cast<std::size_t>(value)] = count;
  return h;
}

#endif

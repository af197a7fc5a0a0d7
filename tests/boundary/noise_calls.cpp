#include <algorithm>
#include <vector>

#include "boundary/calls.h"

namespace {

using namespace calls;

// Platforms draw different random numbers and round logarithms differently, so the new bytes are not part of
// the checksum. The checksum covers only whether they stay between the least and the greatest old byte. Type 3
// and arrays of one value are exempt.
template <class Add>
void add_noise(Scene& s, Add add) {
  const std::size_t size = counted(s);
  uint8_t* const data = s.noise(size);
  const double noise = s.real(-40, 60);
  const auto type = s.hostile ? s.one_of<uint32_t>({0, 1, 2, 3, 4, 5, 0x80000000, 0xFFFFFFFF})
                              : static_cast<uint32_t>(s.between(0, 4));
  const std::vector<uint8_t> before(data, data + size);
  run(s, add, data, s.count, noise, type);
  if (size > 0) {
    const auto ends = std::minmax_element(before.begin(), before.end());
    const bool stay =
        std::all_of(data, data + size, [=](uint8_t v) { return *ends.first <= v && v <= *ends.second; });
    s.add_result(stay || type == 3 || *ends.first == *ends.second);
  }
  std::copy(before.begin(), before.end(), data);
}

}  // namespace

Calls noise_calls() {
  return {
      EXPORT(NuvEstimateNoiseDelta, gray, width, height, gray_result),
      EXPORT_BY(Brindlemar2008AddNoise, void, (uint8_t*, int32_t, double, uint32_t),
                [](Scene& s, auto add) { add_noise(s, add); }),
  };
}

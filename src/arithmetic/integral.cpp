// The integral image: each sum is the one above it plus the sum of its row up to the same column.
//
// In a plain running sum along a row, every addition depends on the one before. Here groups of eight pixels
// are first summed separately, many groups side by side, and only the totals of the groups form a chain.
// Within a group, the four 16-bit parts of a word hold the sums of pairs of pixels. Two shifted additions
// turn them into the running sums at the odd pixels; subtracting the odd pixels gives those at the even ones.

#include <cstring>

#include "core/lanes.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/arithmetic.h"

namespace nuv {
namespace {

// The shifts move sums from the first pixel towards the last only if the first byte of a word is its lowest.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
constexpr bool kHasGroups = false;
#else
constexpr bool kHasGroups = true;
#endif

constexpr std::ptrdiff_t kGroup = 8;
// Strips are short, so that a strip is summed while the stores of the previous one complete.
constexpr std::ptrdiff_t kStripGroups = 64;
constexpr uint64_t kLowBytes = 0x00FF00FF00FF00FF;

// The 16-bit entry i of an array of words.
NUV_INLINE uint16_t entry(const uint64_t* words, std::ptrdiff_t i) {
  uint16_t value;
  std::memcpy(&value, reinterpret_cast<const uint8_t*>(words) + 2 * i, 2);
  return value;
}

#if NUV_HAS_LANES && defined(__clang__)
// Writes the sums of a group: those in the group, plus what stands above and the sum of the row so far. clang adds
// the sums of a loop four at a time; GCC adds eight.
NUV_INLINE void finish_group(const uint16_t* in_group, int32_t left, const int32_t* above, int32_t* sums) {
  using Sums = int32_t __attribute__((vector_size(4 * kGroup)));
  struct __attribute__((packed, may_alias)) SumsAnywhere {
    Sums sums;
  };
  using GroupSums = uint16_t __attribute__((vector_size(2 * kGroup)));
  GroupSums group;
  std::memcpy(&group, in_group, sizeof group);
  reinterpret_cast<SumsAnywhere*>(sums)->sums =
      reinterpret_cast<const SumsAnywhere*>(above)->sums + left + __builtin_convertvector(group, Sums);
}
#endif

// Vectors of 64 bytes gain nothing here: the last loop adds eight sums at a time.
NUV_LOAD_BOUND_ROW_KERNEL void integral_row(const uint8_t* row, const int32_t* above,
                                            int32_t* NUV_RESTRICT sums, std::ptrdiff_t n) {
  uint64_t at_even[kStripGroups];
  uint64_t at_odd[kStripGroups];
  uint16_t in_group[kStripGroups * kGroup];
  int32_t left = 0;
  std::ptrdiff_t x = 0;
  while (kHasGroups && n - x >= kGroup) {
    const std::ptrdiff_t whole = (n - x) / kGroup;
    const std::ptrdiff_t groups = whole < kStripGroups ? whole : kStripGroups;
    for (std::ptrdiff_t g = 0; g < groups; ++g) {
      uint64_t pixels;
      std::memcpy(&pixels, row + x + kGroup * g, 8);
      const uint64_t odd = pixels >> 8 & kLowBytes;
      uint64_t pairs = (pixels & kLowBytes) + odd;
      pairs += pairs << 16;
      pairs += pairs << 32;
      at_odd[g] = pairs;
      at_even[g] = pairs - odd;
    }
    for (std::ptrdiff_t i = 0; i < groups * kGroup / 2; ++i) {
      in_group[2 * i] = entry(at_even, i);
      in_group[2 * i + 1] = entry(at_odd, i);
    }
    for (std::ptrdiff_t i = 0; i < groups * kGroup; i += kGroup) {
#if NUV_HAS_LANES && defined(__clang__)
      finish_group(in_group + i, left, above + x + i, sums + x + i);
#else
      for (std::ptrdiff_t k = 0; k < kGroup; ++k) sums[x + i + k] = above[x + i + k] + in_group[i + k] + left;
#endif
      left += in_group[i + kGroup - 1];
    }
    x += groups * kGroup;
  }
  for (; x < n; ++x) sums[x] = above[x] + (left += row[x]);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvDoSumGryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pSum) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  int32_t sum = 0;
  for (int32_t x = 0; x < width; ++x) pSum[x] = sum += pGryImg[x];
  for (int32_t y = 1; y < height; ++y, pSum += width) integral_row(image.row(y), pSum, pSum + width, width);
}

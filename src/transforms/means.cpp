#include "transforms/means.h"

#include "frame/row_kernel.h"

namespace nuv {

NUV_ROW_KERNEL int32_t sum_of_bytes(const uint8_t* bytes, std::ptrdiff_t n) {
  int32_t sum = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) sum += bytes[i];
  return sum;
}

int32_t sum_of_region(GrayImage image, Region region) {
  if (region.empty()) return 0;
  int32_t sum = 0;
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    sum += sum_of_bytes(image.at(region.x1, y), region.columns());
  }
  return sum;
}

}  // namespace nuv

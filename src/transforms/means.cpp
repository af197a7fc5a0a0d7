#include "transforms/means.h"

#include "frame/byte_sums.h"
#include "frame/point_pass.h"

namespace nuv {

int32_t sum_of_region(GrayImage image, Region region) {
  int32_t sum = 0;
  for_rows(image, region,
           [&sum](const uint8_t* pixels, std::ptrdiff_t n) { sum += sum_of_bytes(pixels, n); });
  return sum;
}

}  // namespace nuv

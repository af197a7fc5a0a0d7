// Holes of a mask filled from the nearest pixels.
//
// The search looks one pixel farther at a time, to the right, left, down and up. Along the row, the nearest
// pixels are known without a search: the last non-zero one in memory order, and the next one of the row. Only
// a column that is nearer than they are is walked.

#include <algorithm>

#include "frame/runs.h"
#include "frame/views.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

// The first pixel of the column that is not 0 at a distance from 1 to limit, down before up; row 0 is not
// looked at. 0 if there is none.
uint8_t nearest_in_column(GrayImage image, int32_t x, int32_t y, std::ptrdiff_t limit) {
  limit = std::min<std::ptrdiff_t>(limit, std::max(image.height - 1 - y, y - 1));
  for (int32_t d = 1; d <= limit; ++d) {
    if (y + d < image.height && *image.at(x, y + d) != 0) return *image.at(x, y + d);
    if (y - d > 0 && *image.at(x, y - d) != 0) return *image.at(x, y - d);
  }
  return 0;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvFillHolesByNearNeighbor(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                int32_t maxDistance, uint8_t* pResImg) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  const uint8_t* last = nullptr;  // the last non-zero pixel before the present one, in this row or above it
  for (int32_t y = 0; y < height; ++y) {
    const Line row = rows_of(image)[y];
    int32_t next = next_white(row, 0);
    for (int32_t x = 0; x < width; ++x) {
      const uint8_t* p = image.at(x, y);
      uint8_t& result = pResImg[p - pGryImg];
      if (*p != 0) last = p;
      if (pMskImg[p - pGryImg] == 0) {
        result = 0;
        continue;
      }
      result = *p;
      if (*p != 0 || maxDistance < 1) continue;

      if (next < x) next = next_white(row, x);
      const std::ptrdiff_t none = static_cast<std::ptrdiff_t>(maxDistance) + 1;
      const std::ptrdiff_t to_right = next < width ? next - x : none;
      const std::ptrdiff_t to_left = last != nullptr ? p - last : none;
      const std::ptrdiff_t to_side = std::min({to_right, to_left, none});
      const uint8_t in_column = nearest_in_column(image, x, y, to_side - 1);
      if (in_column != 0) {
        result = in_column;
      } else if (to_side < none) {
        result = to_right == to_side ? p[to_side] : p[-to_side];
      }
    }
  }
}

// The outline of a rectangle.

#ifndef NUV_CORE_OUTLINE_H
#define NUV_CORE_OUTLINE_H

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/views.h"

namespace nuv {

// Clamps the ends of a rectangle to an image, which must have pixels, and puts them in order.
template <int Channels>
Region ordered_within(Image<Channels> image, Region r) {
  const auto column = [&image](int32_t x) { return std::clamp(x, 0, image.width - 1); };
  const auto row = [&image](int32_t y) { return std::clamp(y, 0, image.height - 1); };
  Region ordered{column(r.x1), column(r.x2), row(r.y1), row(r.y2)};
  if (ordered.x1 > ordered.x2) std::swap(ordered.x1, ordered.x2);
  if (ordered.y1 > ordered.y2) std::swap(ordered.y1, ordered.y2);
  return ordered;
}

// Visits rows y1 and y2 from x1 to x2, then columns x1 and x2 from y1 to y2. A pixel is visited once per side
// that it lies on: corners twice, and every pixel of a rectangle of one row or column at least twice. If the
// ends along an axis are out of order, the sides along that axis are left out. Pixels outside the image are
// not visited.
template <int Channels, class Visit>
void walk_outline(Image<Channels> image, Region r, Visit visit) {
  for (int32_t y : {r.y1, r.y2}) {
    for (int32_t x = r.x1; x <= r.x2; ++x) {
      if (image.contains(x, y)) visit(x, y);
    }
  }
  for (int32_t x : {r.x1, r.x2}) {
    for (int32_t y = r.y1; y <= r.y2; ++y) {
      if (image.contains(x, y)) visit(x, y);
    }
  }
}

}  // namespace nuv

#endif

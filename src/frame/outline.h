// The walk round a rectangle.

#ifndef NUV_FRAME_OUTLINE_H
#define NUV_FRAME_OUTLINE_H

#include <cstdint>

#include "frame/views.h"

namespace nuv {

// Visits rows y1 and y2 over x1..x2, then columns x1 and x2 over y1..y2: a pixel once per
// side that it lies on, so corners twice and all of a rectangle of one row or column at least twice. Ends out
// of order leave out the walk along their axis, and what lies outside the image is not visited.
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

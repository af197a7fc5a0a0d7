#include <algorithm>

#include "boundary/calls.h"

namespace {

using namespace calls;

tagRECT inner_rectangle(Scene& s) {
  return {s.inner.x1, s.inner.y1, s.inner.x2, s.inner.y2};
}
// Another rectangle inside the image, of the size of the first or of any size.
tagRECT other_inner_rectangle(Scene& s) {
  const bool alike = s.between(0, 1) == 0;
  const int32_t least = s.hostile ? 0 : 1;
  const int32_t most_columns = std::max(s.width, 0);
  const int32_t most_rows = std::max(s.height, 0);
  const int32_t columns = alike ? s.inner.columns() : s.between(least, most_columns);
  const int32_t rows = alike ? s.inner.rows() : s.between(least, most_rows);
  const int32_t left = s.between(0, most_columns - columns);
  const int32_t top = s.between(0, most_rows - rows);
  return {left, top, left + columns - 1, top + rows - 1};
}

}  // namespace

Calls statistics_calls() {
  return {
      EXPORT(NuvImgDifferenceInRect, image, image, in_color, width, inner_rectangle, other_inner_rectangle),
      EXPORT(NuvCenterBlockMeanDif, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2, M),
      EXPORT(NuvGryRectAvr, gray, width, height, inner_x1, inner_x2, inner_y1, inner_y2),
      EXPORT(NuvGryMinMaxInRect, gray, width, inner_x1, inner_x2, inner_y1, inner_y2, real(0, 0.5),
             integer_result, integer_result),
      EXPORT(NuvPointsRect, integers(counted_or_one, -99, 99), integers(counted_or_one, -99, 99), count,
             integer_result, integer_result, integer_result, integer_result),
      EXPORT(NuvMaxBrightRect, gray, width, height, block_width, block_height, integer_result,
             integer_result),
      EXPORT(NuvEstimateImgStdev, gray, binary, width, height, block_width, block_height),
  };
}

// Alignment by exhaustive search.
//
// Two trials never compare the same pair of bytes, so no work can be shared between them. Time is saved by
// ending trials early. A first pass over every 16th row finds a shift that is likely to be the best. Its mean
// is the first limit, and most other trials pass the limit after a few rows. The result equals that of the
// whole search: a trial ends early only if its mean is certain not to win, and ties go to the first trial.

#include <algorithm>
#include <optional>

#include "core/views.h"
#include "nuv/geometry.h"
#include "statistics/difference.h"

namespace nuv {
namespace {

struct Trial {
  Point shift;
  int32_t mean;
};

template <int Channels>
class Search {
 public:
  Search(Image<Channels> image1, Image<Channels> image2, tagRECT rect)
      : image1_(image1), image2_(image2), corner_{rect.left, rect.top}, area_(rect, Channels) {}

  Trial best(int32_t max_dx, int32_t max_dy) const {
    Trial best = likely(max_dx, max_dy);
    for (int32_t dx = -max_dx; dx <= max_dx; ++dx) {
      for (int32_t dy = -max_dy; dy <= max_dy; ++dy) {
        // Ties go to the first trial. A trial that comes before the best one so far wins with an equal mean.
        const bool before = dx < best.shift.x || (dx == best.shift.x && dy < best.shift.y);
        const int64_t end = int64_t{best.mean} + (before ? 1 : 0);
        const auto sum = sum_below(end * area_.bytes(), {dx, dy});
        if (sum && area_.mean(*sum) < end) best = {{dx, dy}, area_.mean(*sum)};
      }
    }
    return best;
  }

 private:
  static constexpr int32_t kSparse = 16;

  int32_t row_difference(Point shift, int32_t row) const {
    const Point place{corner_.x, corner_.y + row};
    return sum_of_differences(image1_.at(place.x, place.y), image2_.at(place.x + shift.x, place.y + shift.y),
                              area_.row_bytes);
  }

  // The sum of a trial. Returns nothing as soon as the sum has reached the limit and the rows to come cannot
  // make it wrap.
  std::optional<int32_t> sum_below(int64_t limit, Point shift) const {
    int32_t sum = 0;
    for (int32_t row = 0; row < area_.rows; ++row) {
      sum += row_difference(shift, row);
      const int64_t most_to_come = (area_.rows - row - int64_t{1}) * area_.row_bytes * 255;
      if (sum >= limit && sum >= 0 && sum + most_to_come <= INT32_MAX) return std::nullopt;
    }
    return sum;
  }

  Trial likely(int32_t max_dx, int32_t max_dy) const {
    Point likely{-max_dx, -max_dy};
    int64_t least = INT64_MAX;
    for (int32_t dx = -max_dx; dx <= max_dx; ++dx) {
      for (int32_t dy = -max_dy; dy <= max_dy; ++dy) {
        int64_t sum = 0;
        for (int32_t row = 0; row < area_.rows; row += kSparse) sum += row_difference({dx, dy}, row);
        if (sum < least) {
          least = sum;
          likely = {dx, dy};
        }
      }
    }
    int32_t sum = 0;
    for (int32_t row = 0; row < area_.rows; ++row) sum += row_difference(likely, row);
    return {likely, area_.mean(sum)};
  }

  Image<Channels> image1_;
  Image<Channels> image2_;
  Point corner_;
  ComparedArea area_;
};

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvShiftImg2BasedImg1(uint8_t* pImg1, uint8_t* pImg2, uint8_t* pResImg, int32_t width, int32_t height,
                              bool bRGB, int32_t maxDX, int32_t maxDY, tagRECT rect, int32_t* pDX,
                              int32_t* pDY) {
  rect.left = std::max(maxDX, rect.left);
  rect.right = std::min(rect.right, width - maxDX - 1);
  rect.top = std::max(maxDY, rect.top);
  rect.bottom = std::min(rect.bottom, height - maxDY - 1);
  int32_t result = (rect.right - rect.left + 1) * (rect.bottom - rect.top + 1) * 255 * channels_of(bRGB);
  *pDX = *pDY = 0;
  const GrayImage image{pImg1, width, height};
  if (image.empty()) return result;

  if (maxDX >= 0 && maxDY >= 0 && rect.left <= rect.right && rect.top <= rect.bottom) {
    const Trial best =
        bRGB ? Search<3>({pImg1, width, height}, {pImg2, width, height}, rect).best(maxDX, maxDY)
             : Search<1>({pImg1, width, height}, {pImg2, width, height}, rect).best(maxDX, maxDY);
    if (best.mean < result) {
      result = best.mean;
      *pDX = best.shift.x;
      *pDY = best.shift.y;
    }
  }
  copy_bytes(pResImg, pImg1, image.size() * channels_of(bRGB));
  NuvImageShift(pImg2, width, height, bRGB, -*pDX, -*pDY, pResImg);
  return result;
}

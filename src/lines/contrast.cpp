// The contrast between the two sides of a line.

#include <algorithm>
#include <cstdlib>

#include "core/arithmetic.h"
#include "core/byte_counter.h"
#include "core/line_walks.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

// Sums over the pairs of samples at the two sides of a line.
class SidePairs {
 public:
  void add(uint8_t gray1, uint8_t gray2) {
    const int32_t d = std::abs(gray1 - gray2);
    ++count_;
    side1_ += gray1;
    side2_ += gray2;
    differences_ += d;
    ++histogram_[d];
  }

  int32_t contrast() const {
    if (count_ == 0) return 0;
    const int32_t between_means = std::abs(side1_ / count_ - side2_ / count_);
    return std::min({trimmed_mean(), differences_ / count_, between_means});
  }

 private:
  // The mean difference without the lowest and the highest quarter. The bins in which the quarters end stay
  // whole.
  int32_t trimmed_mean() const {
    const int32_t quarter = count_ / 4;
    int32_t low = 0;
    for (int32_t sum = histogram_[low]; sum < quarter;) sum += histogram_[++low];
    int32_t high = kBins - 1;
    for (int32_t sum = histogram_[high]; sum < quarter;) sum += histogram_[--high];
    int32_t weighted = 0;
    int32_t counted = 0;
    for (int32_t d = low; d <= high; ++d) {
      weighted += d * histogram_[d];
      counted += histogram_[d];
    }
    return weighted / counted;
  }

  int32_t count_ = 0;
  int32_t side1_ = 0;
  int32_t side2_ = 0;
  int32_t differences_ = 0;
  Histogram histogram_{};
};

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvABCLineContrast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, double A,
                           double B, double C, int32_t dist, bool bMark) {
  const GrayImage image{pGryImg, width, height};
  const Region columns = Region{x1, x2, 0, height - 1}.clamped_to(width, height);
  const AbcLine line{A, B, C};
  // Steep lines use the same shift. It is large for them, so that few of their pixels have both samples in
  // range.
  const int32_t shift = truncated(-(A / B) * dist);
  const Point offset = line.by_rows() ? Point{dist, -shift} : Point{shift, -dist};

  SidePairs sides;
  walk_abc_line(width, height, columns, line, [&](int32_t x, int32_t y) {
    const Point p1{x + offset.x, y + offset.y};
    const Point p2{x - offset.x, y - offset.y};
    if (!columns.contains(x, y) || !columns.contains(p1.x, p1.y) || !columns.contains(p2.x, p2.y)) return;
    sides.add(*image.at(p1.x, p1.y), *image.at(p2.x, p2.y));
    if (!bMark) return;
    *image.at(x, y) = 255;
    *image.at(p1.x, p1.y) = 0;
    *image.at(p2.x, p2.y) = 0;
  });
  return sides.contrast();
}

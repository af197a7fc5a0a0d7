// Extremes along one axis.
//
// A row kernel combines 3 or 5 rows pixel by pixel. Along columns these are the rows around the pixel; along
// rows they are shifted copies of one row. At the ends of a column the row at the end is repeated: the
// extreme is the same as that of the clipped window.

#include <algorithm>

#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/filters.h"

namespace nuv {
namespace {

struct Greatest {
  NUV_INLINE uint8_t operator()(uint8_t a, uint8_t b) const { return greater(a, b); }
};
struct Least {
  NUV_INLINE uint8_t operator()(uint8_t a, uint8_t b) const { return lesser(a, b); }
};

template <class Extreme>
NUV_LOAD_BOUND_ROW_KERNEL void fold_3(const uint8_t* a, const uint8_t* b, const uint8_t* c,
                                      uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  const Extreme extreme;
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = extreme(extreme(a[x], b[x]), c[x]);
}

template <class Extreme>
NUV_LOAD_BOUND_ROW_KERNEL void fold_5(const uint8_t* a, const uint8_t* b, const uint8_t* c, const uint8_t* d,
                                      const uint8_t* e, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  const Extreme extreme;
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    out[x] = extreme(extreme(extreme(a[x], b[x]), extreme(d[x], e[x])), c[x]);
  }
}

// The extremes of the rows at(0) to at(Places - 1).
template <class Extreme, int Places, class At>
void fold(At at, uint8_t* out, std::ptrdiff_t n) {
  static_assert(Places == 3 || Places == 5);
  if constexpr (Places == 3) {
    fold_3<Extreme>(at(0), at(1), at(2), out, n);
  } else {
    fold_5<Extreme>(at(0), at(1), at(2), at(3), at(4), out, n);
  }
}

template <class Extreme, int Places>
void along_rows(GrayImage source, GrayImage result) {
  constexpr int32_t kReach = Places / 2;
  if (source.empty()) return;
  // The image is processed as one long row. Pixels whose window crossed into another row are then rewritten.
  if (source.size() >= Places) {
    fold<Extreme, Places>([=](int i) { return source.pixels + i; }, result.pixels + kReach,
                          source.size() - 2 * kReach);
  }
  const auto write = [=](int32_t x, int32_t y) {
    uint8_t value = *source.at(x, y);
    for (int32_t i = std::max(x - kReach, 0); i <= std::min(x + kReach, source.width - 1); ++i) {
      value = Extreme{}(value, *source.at(i, y));
    }
    *result.at(x, y) = value;
  };
  for (int32_t y = 0; y < source.height; ++y) {
    for (int32_t x = 0; x < std::min(kReach, source.width); ++x) write(x, y);
    for (int32_t x = std::max(source.width - kReach, 0); x < source.width; ++x) write(x, y);
  }
}

// The window of row y starts at row y + first. Rows after last_row are not read.
template <class Extreme, int Places>
void along_columns(GrayImage source, int32_t first, int32_t last_row, GrayImage result) {
  if (source.empty()) return;
  for (int32_t y = 0; y < source.height; ++y) {
    const auto row = [=](int i) { return source.row(std::clamp(y + first + i, 0, last_row)); };
    fold<Extreme, Places>(row, result.row(y), source.width);
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGryImgMaxFilter3xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  along_rows<Greatest, 3>({pGryImg, width, height}, {pResImg, width, height});
}

void NuvGryImgMaxFilter5xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  along_rows<Greatest, 5>({pGryImg, width, height}, {pResImg, width, height});
}

void NuvGryImgMaxFilter3xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  along_columns<Greatest, 3>({pGryImg, width, height}, -1, height - 1, {pResImg, width, height});
}

void NuvGryImgMaxFilter5xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  along_columns<Greatest, 5>({pGryImg, width, height}, -2, height - 1, {pResImg, width, height});
}

void NuvGryImgMinFilter3xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  along_rows<Least, 3>({pGryImg, width, height}, {pResImg, width, height});
}

void NuvGryImgMinFilter5xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  along_rows<Least, 5>({pGryImg, width, height}, {pResImg, width, height});
}

void NuvGryImgMinFilter3xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  along_columns<Least, 3>({pGryImg, width, height}, -1, height - 1, {pResImg, width, height});
}

void NuvGryImgMinFilter5xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  along_columns<Least, 5>({pGryImg, width, height}, -3, std::max(height - 2, 0), {pResImg, width, height});
}

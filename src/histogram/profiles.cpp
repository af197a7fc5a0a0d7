// Profiles: an image collapsed to one entry per column or per row.
//
// Column profiles are computed row by row, so that the image is read in memory order. A row kernel adds each
// row to the running sums of the columns.

#include <algorithm>
#include <array>
#include <cmath>

#include "core/arithmetic.h"
#include "core/interleaved.h"
#include "core/row_kernel.h"
#include "core/sobel.h"
#include "core/views.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// ---- spreads ----

// The sums of n values and of their squares, in 32 bits.
struct Spread {
  int32_t sum = 0;
  int32_t squares = 0;

  int32_t dev100(int32_t n) const {
    const double mean = static_cast<double>(sum) / n;
    return truncated(std::sqrt(static_cast<double>(squares) / n - mean * mean) * 100);
  }
  int32_t dev_dev(int32_t n) const { return squares * n - sum * sum; }
};

// The product of two bytes fits in 16 unsigned bits.
NUV_INLINE uint16_t square(uint8_t value) {
  return static_cast<uint16_t>(value * value);
}

NUV_ROW_KERNEL void add_squares(const uint8_t* row, std::ptrdiff_t n, int32_t* sum, int32_t* squares) {
  int32_t values = 0;
  int32_t products = 0;
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    values += row[x];
    products += square(row[x]);
  }
  *sum += values;
  *squares += products;
}

// Columns are summed in blocks, four rows at a time, so that the sums are loaded and stored a quarter as
// often. A black row stands in for each row that the last four lack.
constexpr int32_t kColumnBlock = 256;
constexpr int32_t kRowsAtOnce = 4;
using RowsAtOnce = std::array<const uint8_t*, kRowsAtOnce>;
constexpr std::array<uint8_t, kColumnBlock> kBlackRow{};

struct ColumnSpreads {
  std::array<int32_t, kColumnBlock> sums{};
  std::array<int32_t, kColumnBlock> squares{};
};

NUV_ROW_KERNEL void add_rows(const RowsAtOnce& rows, std::ptrdiff_t n, int32_t* NUV_RESTRICT sums,
                             int32_t* NUV_RESTRICT squares) {
  const uint8_t *a = rows[0], *b = rows[1], *c = rows[2], *d = rows[3];
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    sums[x] += static_cast<uint16_t>(a[x] + b[x] + c[x] + d[x]);
    squares[x] += square(a[x]) + square(b[x]) + square(c[x]) + square(d[x]);
  }
}

// Calls result(x, spread) for each column of the region.
template <class Result>
void for_column_spreads(GrayImage image, Region region, Result result) {
  for (int64_t first = region.x1; first <= region.x2; first += kColumnBlock) {
    const auto begin = static_cast<int32_t>(first);
    const int32_t n = std::min(kColumnBlock, region.x2 - begin + 1);
    ColumnSpreads spreads;
    for (int64_t y = region.y1; y <= region.y2; y += kRowsAtOnce) {
      RowsAtOnce rows;
      for (int32_t i = 0; i < kRowsAtOnce; ++i) {
        rows[i] = y + i <= region.y2 ? image.at(begin, static_cast<int32_t>(y + i)) : kBlackRow.data();
      }
      add_rows(rows, n, spreads.sums.data(), spreads.squares.data());
    }
    for (int32_t i = 0; i < n; ++i) result(begin + i, Spread{spreads.sums[i], spreads.squares[i]});
  }
}

// Calls result(y, spread) for each row of the region.
template <class Result>
void for_row_spreads(GrayImage image, Region region, Result result) {
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    Spread spread;
    if (region.x1 <= region.x2) {
      add_squares(image.at(region.x1, y), region.columns(), &spread.sum, &spread.squares);
    }
    result(y, spread);
  }
}

void clear(int32_t* entries, int32_t n) {
  for (int32_t i = 0; i < n; ++i) entries[i] = 0;
}

// ---- edge strengths ----

// |G90| + |G0| of a pixel on an edge that is more vertical than horizontal, otherwise 0. Without with_rows,
// |G90| alone.
NUV_INLINE int16_t vertical_strength(const uint8_t* p, std::ptrdiff_t w, bool with_rows) {
  const int16_t across_columns = magnitude(sobel_90(p, w));
  const int16_t across_rows = magnitude(sobel_0(p, w));
  const auto strength = static_cast<int16_t>(with_rows ? across_columns + across_rows : across_columns);
  return static_cast<int16_t>(across_rows < across_columns ? strength : 0);
}

NUV_ROW_KERNEL void add_vertical_strengths(const uint8_t* p, std::ptrdiff_t w, int32_t* NUV_RESTRICT columns,
                                           std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) columns[x] += vertical_strength(p + x, w, true);
}

// Sums |G90| alone: this profile leaves |G0| out.
NUV_ROW_KERNEL int32_t sum_of_vertical_strengths(const uint8_t* p, std::ptrdiff_t w, std::ptrdiff_t n) {
  int32_t sum = 0;
  for (std::ptrdiff_t x = 0; x < n; ++x) sum += vertical_strength(p + x, w, false);
  return sum;
}

void repeat_neighbours_at_ends(int32_t* entries, int32_t n) {
  if (n < 2) return;
  entries[0] = entries[1];
  entries[n - 1] = entries[n - 2];
}

// ---- sums ----

// Adds a row to the columns and returns the sum of the row.
NUV_ROW_KERNEL int32_t add_row(const uint8_t* NUV_RESTRICT row, int32_t n, int32_t* NUV_RESTRICT columns) {
  int32_t sum = 0;
  for (int32_t x = 0; x < n; ++x) {
    columns[x] += row[x];
    sum += row[x];
  }
  return sum;
}

// Adds the pixels of a row that are not 0 to the counts of the columns, and returns their number.
NUV_ROW_KERNEL int32_t count_row(const uint8_t* NUV_RESTRICT row, int32_t n, int32_t* NUV_RESTRICT columns) {
  int32_t count = 0;
  for (int32_t x = 0; x < n; ++x) {
    const int32_t one = row[x] != 0;
    columns[x] += one;
    count += one;
  }
  return count;
}

using ProjectRow = int32_t(const uint8_t*, int32_t, int32_t*);

void project(GrayImage image, Region region, int32_t* columns, int32_t* rows, ProjectRow project_row) {
  if (region.empty()) return;
  for (int32_t y = region.y1; y <= region.y2; ++y) {
    rows[y] += project_row(image.at(region.x1, y), region.columns(), columns + region.x1);
  }
}

// Calls add(planes, x, n) for blocks of each row of an RGB image.
template <class Add>
void for_plane_blocks(RgbImage image, Add add) {
  PlaneBlock planes;
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x = 0; x < image.width; x += kPlaneBlock) {
      const auto n = static_cast<int32_t>(std::min<std::ptrdiff_t>(kPlaneBlock, image.width - x));
      split_planes(image.at(x, y), planes.b0, planes.b1, planes.b2, n);
      add(planes, x, n);
    }
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGryImgColDev100(uint8_t* pGryImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2,
                        int32_t y1, int32_t y2, int32_t* pRes) {
  const Region region{x1, x2, y1, y2};
  clear(pRes, width);
  for_column_spreads(image_of_any_height<1>(pGryImg, width), region,
                     [=](int32_t x, const Spread& s) { pRes[x] = s.dev100(region.rows()); });
}

void NuvGryImgRowDev100(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                        int32_t y2, int32_t* pRes) {
  const Region region{x1, x2, y1, y2};
  clear(pRes, height);
  for_row_spreads(image_of_any_height<1>(pGryImg, width), region,
                  [=](int32_t y, const Spread& s) { pRes[y] = s.dev100(region.columns()); });
}

void NuvGryImgColDevDev(uint8_t* pGryImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2,
                        int32_t y1, int32_t y2, int32_t* pRes) {
  const Region region{x1, x2, y1, y2};
  for_column_spreads(image_of_any_height<1>(pGryImg, width), region,
                     [=](int32_t x, const Spread& s) { pRes[x] = s.dev_dev(region.rows()); });
}

void NuvGryImgRowDevDev(uint8_t* pGryImg, int32_t width, int32_t /*height*/, int32_t x1, int32_t x2,
                        int32_t y1, int32_t y2, int32_t* pRes) {
  const Region region{x1, x2, y1, y2};
  for_row_spreads(image_of_any_height<1>(pGryImg, width), region,
                  [=](int32_t y, const Spread& s) { pRes[y] = s.dev_dev(region.columns()); });
}

void NuvGryImgColsDev100(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t* pRes) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty() || M < 1 || M > width) return;
  const auto write_strip = [&](int32_t first) {
    Spread strip;
    for_row_spreads(image, {first, first + M - 1, 0, height - 1}, [&strip](int32_t, const Spread& row) {
      strip.sum += row.sum;
      strip.squares += row.squares;
    });
    std::fill_n(pRes + first, M, strip.dev100(M * height));
  };
  for (int32_t i = 0; i < width / M; ++i) write_strip(i * M);
  if (width % M != 0) write_strip(width - M);
}

void NuvGryImgSobel90JustToPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjX) {
  clear(pPrjX, width);
  const GrayImage image{pGryImg, width, height};
  const Region interior = image.interior();
  if (!interior.empty()) {
    for (int32_t y = interior.y1; y <= interior.y2; ++y) {
      add_vertical_strengths(image.at(1, y), width, pPrjX + 1, interior.columns());
    }
  }
  repeat_neighbours_at_ends(pPrjX, width);
}

void NuvGryImgSobel90JustToPrjY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjY) {
  clear(pPrjY, height);
  const GrayImage image{pGryImg, width, height};
  const Region interior = image.interior();
  if (!interior.empty()) {
    for (int32_t y = interior.y1; y <= interior.y2; ++y) {
      pPrjY[y] = sum_of_vertical_strengths(image.at(1, y), width, interior.columns());
    }
  }
  repeat_neighbours_at_ends(pPrjY, height);
}

void NuvRGBImgPrj2X(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t* pRed, int32_t* pGreen,
                    int32_t* pBlue) {
  clear(pRed, width);
  clear(pGreen, width);
  clear(pBlue, width);
  for_plane_blocks({pRGBImg, width, height}, [=](const PlaneBlock& planes, int32_t x, int32_t n) {
    add_row(planes.b0, n, pBlue + x);
    add_row(planes.b1, n, pGreen + x);
    add_row(planes.b2, n, pRed + x);
  });
}

void NuvRGBImgPrj2X(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t* pPrjX) {
  clear(pPrjX, width);
  for_plane_blocks({pRGBImg, width, height}, [=](const PlaneBlock& planes, int32_t x, int32_t n) {
    add_row(planes.b0, n, pPrjX + x);
    add_row(planes.b1, n, pPrjX + x);
    add_row(planes.b2, n, pPrjX + x);
    add_row(planes.b2, n, pPrjX + x);
  });
  for (int32_t x = 0; x < width; ++x) pPrjX[x] >>= 2;
}

void NuvGryImgPrjXY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjX, int32_t* pPrjY) {
  const Region whole = GrayImage{pGryImg, width, height}.whole();
  NuvGryImgPrjXYInRect(pGryImg, width, height, whole.x1, whole.x2, whole.y1, whole.y2, pPrjX, pPrjY);
}

void NuvGryImgPrjXYInRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                          int32_t y2, int32_t* pPrjX, int32_t* pPrjY) {
  clear(pPrjX, width);
  clear(pPrjY, height);
  project({pGryImg, width, height}, {x1, x2, y1, y2}, pPrjX, pPrjY, add_row);
}

void NuvBinImgPrjXYInRect(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                          int32_t y2, int32_t* pPrjX, int32_t* pPrjY) {
  // Only the entries of the region are cleared, unlike in NuvGryImgPrjXYInRect.
  for (int32_t x = x1; x <= x2; ++x) pPrjX[x] = 0;
  for (int32_t y = y1; y <= y2; ++y) pPrjY[y] = 0;
  project({pBinImg, width, height}, {x1, x2, y1, y2}, pPrjX, pPrjY, count_row);
}

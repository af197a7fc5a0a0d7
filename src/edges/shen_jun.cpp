// The Shen-Jun edge detector.
//
// Smoothing is a recursion along rows and then along columns. The column recursion combines a whole row with
// the row above, which compilers vectorise as it is. In the row recursion each pixel depends on the one
// before it, but rows depend on each other only in the downward pass. So a group of rows passes through both
// row recursions side by side:
//
// - in floating-point arithmetic, as independent chains of one loop, or, if the results are bytes, as the 16
//   integers of a column;
// - in integer arithmetic, 16 rows as the 16 bytes of a vector. Blocks of 16 by 16 pixels are transposed on
//   their way in and out.
//
// The edge test is the same for all forms. It works on spans of a row: the first pass reduces three rows to
// one, the second reduces three columns and decides. Both include the pixel itself among its neighbours,
// which changes nothing: where T < G the pixel is not below T, and its step to itself is 0.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "core/arithmetic.h"
#include "core/lanes.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

constexpr int32_t kRowsPerGroup = 16;
constexpr int32_t kBlock = 16;

// The starts of a group of rows. A group that is not full repeats its last row.
template <class T>
using Rows = std::array<T*, kRowsPerGroup>;

template <class T>
Rows<T> rows_from(T* first, std::ptrdiff_t width, int32_t count) {
  Rows<T> rows{};
  for (int32_t r = 0; r < kRowsPerGroup; ++r) rows[r] = first + std::min(r, count - 1) * width;
  return rows;
}

// ---- smoothing, any arithmetic ----

// Smooths 16 rows to the right, from in to out, and back. The work is done in a local block, because rows
// that lie a multiple of 4096 bytes apart would share cache sets.
template <class T, class Step>
NUV_INLINE void smooth_along_rows(const uint8_t* const* in, T* const* out, std::ptrdiff_t width, Step step) {
  constexpr int32_t kPadding = 1;
  T block[kRowsPerGroup][kBlock + kPadding];
  T running[kRowsPerGroup]{};
  const auto move_on = [&](std::ptrdiff_t i) {
    for (int32_t r = 0; r < kRowsPerGroup; ++r) block[r][i] = running[r] = step(block[r][i], running[r]);
  };
  const auto store = [&](std::ptrdiff_t x, std::ptrdiff_t n) {
    for (int32_t r = 0; r < kRowsPerGroup; ++r) std::copy_n(block[r], n, out[r] + x);
  };
  for (std::ptrdiff_t x = 0; x < width; x += kBlock) {
    const std::ptrdiff_t n = std::min<std::ptrdiff_t>(kBlock, width - x);
    for (int32_t r = 0; r < kRowsPerGroup; ++r) std::copy_n(in[r] + x, n, block[r]);
    // The first pixel of a row keeps its value, and so does the last one on the way back.
    if (x == 0) {
      for (int32_t r = 0; r < kRowsPerGroup; ++r) running[r] = block[r][0];
    }
    for (std::ptrdiff_t i = x == 0 ? 1 : 0; i < n; ++i) move_on(i);
    store(x, n);
  }
  for (std::ptrdiff_t x = (width - 1) / kBlock * kBlock; x >= 0; x -= kBlock) {
    const std::ptrdiff_t n = std::min<std::ptrdiff_t>(kBlock, width - x);
    for (int32_t r = 0; r < kRowsPerGroup; ++r) std::copy_n(out[r] + x, n, block[r]);
    for (std::ptrdiff_t i = x + n == width ? n - 2 : n - 1; i >= 0; --i) move_on(i);
    store(x, n);
  }
}

// Smooths a row with the one before it in the pass.
template <class T, class Step>
NUV_INLINE void smooth_across_rows(T* NUV_RESTRICT row, const T* NUV_RESTRICT before, std::ptrdiff_t n,
                                   Step step) {
  for (std::ptrdiff_t x = 0; x < n; ++x) row[x] = step(row[x], before[x]);
}

struct FineStep {
  double a0;

  NUV_INLINE double operator()(double sample, double running) const {
    return (sample - running) * a0 + running;
  }
};

struct TruncatingStep {
  double a0;

  NUV_INLINE uint8_t operator()(int32_t sample, int32_t running) const {
    return low_byte(truncated((sample - running) * a0 + running));
  }
};

// For weights that keep all products in the range of int32_t, so that the conversion needs no test.
struct SmallTruncatingStep {
  static constexpr double kGreatestWeight = 1e6;
  double a0;

  NUV_INLINE uint8_t operator()(int32_t sample, int32_t running) const {
    return low_byte(static_cast<int32_t>((sample - running) * a0 + running));
  }
};

NUV_ROW_KERNEL void smooth_along_rows(const uint8_t* const* in, double* const* out, std::ptrdiff_t width,
                                      FineStep step) {
  smooth_along_rows<double>(in, out, width, step);
}
NUV_ROW_KERNEL void smooth_across_rows(double* row, const double* before, std::ptrdiff_t n, FineStep step) {
  smooth_across_rows<double>(row, before, n, step);
}

#if NUV_HAS_LANES
// Loads up to 16 columns of the 16 rows, as columns.
template <class Pointer>
NUV_INLINE void load_columns(const Pointer* rows, std::ptrdiff_t x, int32_t count,
                             Bytes16 (&columns)[kBlock]) {
  for (int32_t r = 0; r < kBlock; ++r) {
    if (count == kBlock) {
      columns[r] = load16(rows[r] + x);
    } else {
      columns[r] = Bytes16{};
      std::memcpy(&columns[r], rows[r] + x, static_cast<std::size_t>(count));
    }
  }
  transpose16(columns);
}

NUV_INLINE void store_columns(uint8_t* const* rows, std::ptrdiff_t x, int32_t count,
                              Bytes16 (&columns)[kBlock]) {
  transpose16(columns);
  for (int32_t r = 0; r < kBlock; ++r) {
    std::memcpy(rows[r] + x, &columns[r], static_cast<std::size_t>(count));
  }
}

// The columns of a block, one after the other. A column has a pixel of each of the 16 rows, held in 32 bits.
using WideColumns = int32_t[kBlock * kRowsPerGroup];

// Smooths the columns from first on, in steps of direction, up to the one before end.
NUV_INLINE void smooth_wide_columns(WideColumns& columns, int32_t first, int32_t end, int32_t direction,
                                    int32_t (&running)[kRowsPerGroup], SmallTruncatingStep step) {
  for (int32_t i = first; i != end; i += direction) {
    int32_t* column = columns + i * kRowsPerGroup;
// GCC would unroll the loop, and then find no vectors in it.
#pragma GCC unroll 1
    for (int32_t r = 0; r < kRowsPerGroup; ++r) column[r] = running[r] = step(column[r], running[r]);
  }
}

NUV_INLINE void widen(const Bytes16 (&columns)[kBlock], WideColumns& wide) {
  uint8_t bytes[kBlock * kRowsPerGroup];
  std::memcpy(bytes, columns, sizeof bytes);
  for (int32_t i = 0; i < kBlock * kRowsPerGroup; ++i) wide[i] = bytes[i];
}
NUV_INLINE void narrow(const WideColumns& wide, Bytes16 (&columns)[kBlock]) {
  uint8_t bytes[kBlock * kRowsPerGroup];
  for (int32_t i = 0; i < kBlock * kRowsPerGroup; ++i) bytes[i] = static_cast<uint8_t>(wide[i]);
  std::memcpy(columns, bytes, sizeof bytes);
}
#endif

NUV_ROW_KERNEL void smooth_along_rows(const uint8_t* const* in, uint8_t* const* out, std::ptrdiff_t width,
                                      SmallTruncatingStep step) {
#if NUV_HAS_LANES
  Bytes16 columns[kBlock];
  WideColumns wide;
  int32_t running[kRowsPerGroup]{};
  for (std::ptrdiff_t x = 0; x < width; x += kBlock) {
    const auto count = static_cast<int32_t>(std::min<std::ptrdiff_t>(kBlock, width - x));
    load_columns(in, x, count, columns);
    widen(columns, wide);
    // The first pixel of a row is its own predecessor; such a step changes nothing.
    if (x == 0) std::copy_n(wide, kRowsPerGroup, running);
    smooth_wide_columns(wide, 0, count, 1, running, step);
    narrow(wide, columns);
    store_columns(out, x, count, columns);
  }
  for (std::ptrdiff_t x = (width - 1) / kBlock * kBlock; x >= 0; x -= kBlock) {
    const auto count = static_cast<int32_t>(std::min<std::ptrdiff_t>(kBlock, width - x));
    load_columns(out, x, count, columns);
    widen(columns, wide);
    smooth_wide_columns(wide, count - 1, -1, -1, running, step);
    narrow(wide, columns);
    store_columns(out, x, count, columns);
  }
#else
  smooth_along_rows<uint8_t>(in, out, width, step);
#endif
}
NUV_ROW_KERNEL void smooth_across_rows(uint8_t* row, const uint8_t* before, std::ptrdiff_t n,
                                       SmallTruncatingStep step) {
  smooth_across_rows<uint8_t>(row, before, n, step);
}

// Calls finished(y) for each row as soon as it is smoothed, from the last row to the first.
template <class T, class Step, class Finished>
void smooth(GrayImage source, T* smoothed, Step step, Finished finished) {
  const std::ptrdiff_t width = source.width;
  const auto row_of = [=](int32_t y) { return smoothed + y * width; };
  std::copy_n(source.row(0), width, row_of(0));
  for (int32_t top = 1; top < source.height; top += kRowsPerGroup) {
    const int32_t count = std::min(kRowsPerGroup, source.height - top);
    const Rows<const uint8_t> in = rows_from<const uint8_t>(source.row(top), width, count);
    const Rows<T> out = rows_from(row_of(top), width, count);
    smooth_along_rows(in.data(), out.data(), width, step);
    for (int32_t r = 0; r < count; ++r) smooth_across_rows(out[r], out[r] - width, width, step);
  }
  finished(source.height - 1);
  for (int32_t y = source.height - 2; y >= 0; --y) {
    smooth_across_rows(row_of(y), row_of(y + 1), width, step);
    finished(y);
  }
}

// ---- smoothing, integer arithmetic ----

#if NUV_HAS_LANES

// ((new - old) >> shift) + old is new averaged with old shift times, rounded down each time. Processors
// average bytes rounding up, so the smoothed image holds complements until the last pass.
template <int Shift>
NUV_INLINE Bytes16 step_of_complements(Bytes16 sample, Bytes16 running) {
  for (int i = 0; i < Shift; ++i) sample = average_up(sample, running);
  return sample;
}

template <int Shift>
NUV_INLINE uint8_t step_of_complements(uint8_t sample, uint8_t running) {
  for (int i = 0; i < Shift; ++i) sample = static_cast<uint8_t>((sample + running + 1) >> 1);
  return sample;
}

template <int Shift>
NUV_ROW_KERNEL void smooth_along_rows(const uint8_t* const* in, uint8_t* const* out, std::ptrdiff_t width) {
  // Only the last block of a row can be narrower than the others.
  const auto columns_at = [width](std::ptrdiff_t x) {
    return static_cast<int32_t>(std::min<std::ptrdiff_t>(kBlock, width - x));
  };
  Bytes16 columns[kBlock];
  Bytes16 running{};
  for (std::ptrdiff_t x = 0; x < width; x += kBlock) {
    const int32_t count = columns_at(x);
    load_columns(in, x, count, columns);
    // The first pixel of a row is its own predecessor; such a step changes nothing.
    if (x == 0) running = ~columns[0];
    for (int32_t i = 0; i < kBlock; ++i) {
      running = step_of_complements<Shift>(~columns[i], running);
      columns[i] = running;
    }
    store_columns(out, x, count, columns);
  }
  bool at_the_end = true;
  for (std::ptrdiff_t x = (width - 1) / kBlock * kBlock; x >= 0; x -= kBlock) {
    const int32_t count = columns_at(x);
    load_columns(out, x, count, columns);
    if (at_the_end) running = columns[count - 1];
    at_the_end = false;
    for (int32_t i = count - 1; i >= 0; --i) {
      running = step_of_complements<Shift>(columns[i], running);
      columns[i] = running;
    }
    store_columns(out, x, count, columns);
  }
}

template <int Shift>
NUV_ROW_KERNEL void smooth_down(uint8_t* NUV_RESTRICT row, const uint8_t* NUV_RESTRICT above,
                                std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) row[x] = step_of_complements<Shift>(row[x], above[x]);
}

// The row below is finished, so its complements are turned back into values.
template <int Shift>
NUV_ROW_KERNEL void smooth_up(uint8_t* NUV_RESTRICT row, uint8_t* NUV_RESTRICT below, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    row[x] = step_of_complements<Shift>(row[x], below[x]);
    below[x] = static_cast<uint8_t>(~below[x]);
  }
}

NUV_ROW_KERNEL void complement_row(const uint8_t* in, uint8_t* out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = static_cast<uint8_t>(~in[x]);
}

template <int Shift>
void smooth_by_shift(GrayImage source, uint8_t* smoothed) {
  const GrayImage target{smoothed, source.width, source.height};
  const std::ptrdiff_t width = source.width;
  complement_row(source.row(0), target.row(0), width);
  for (int32_t top = 1; top < source.height; top += kRowsPerGroup) {
    const int32_t rows = std::min(kRowsPerGroup, source.height - top);
    const Rows<const uint8_t> in = rows_from<const uint8_t>(source.row(top), width, rows);
    const Rows<uint8_t> out = rows_from(target.row(top), width, rows);
    smooth_along_rows<Shift>(in.data(), out.data(), width);
    for (int32_t r = 0; r < rows; ++r) smooth_down<Shift>(out[r], out[r] - width, width);
  }
  for (int32_t y = source.height - 2; y >= 0; --y) smooth_up<Shift>(target.row(y), target.row(y + 1), width);
  complement_row(target.row(0), target.row(0), width);
}

#else

template <int Shift>
struct ShiftStep {
  NUV_INLINE uint8_t operator()(int32_t sample, int32_t running) const {
    return static_cast<uint8_t>(((sample - running) >> Shift) + running);
  }
};

template <int Shift>
void smooth_by_shift(GrayImage source, uint8_t* smoothed) {
  smooth(source, smoothed, ShiftStep<Shift>{}, [](int32_t) {});
}

#endif

void smooth_by_shift(GrayImage source, uint8_t* smoothed, int32_t shift) {
  if (shift <= 1) return smooth_by_shift<1>(source, smoothed);
  if (shift == 2) return smooth_by_shift<2>(source, smoothed);
  return smooth_by_shift<3>(source, smoothed);
}

// ---- the edge test ----

constexpr int32_t kSpan = 1024;

// Tests n pixels of a row. g and t point to the first one in the source and in the smoothed image.
template <class T>
NUV_INLINE void test_span(const uint8_t* g, const T* t, std::ptrdiff_t width, int32_t n, uint8_t threshold,
                          uint8_t* NUV_RESTRICT edges) {
  // Entry i + 1 belongs to column i, because the span needs one column more on each side.
  uint8_t least[kSpan + 2];
  uint8_t most[kSpan + 2];
  uint8_t below[kSpan + 2];  // 255 where G < T in any of the three rows
  const uint8_t* g0 = g - width - 1;
  const uint8_t* g1 = g - 1;
  const uint8_t* g2 = g + width - 1;
  const T* t0 = t - width - 1;
  const T* t1 = t - 1;
  const T* t2 = t + width - 1;
  for (int32_t i = 0; i < n + 2; ++i) {
    least[i] = lesser(lesser(g0[i], g1[i]), g2[i]);
    most[i] = greater(greater(g0[i], g1[i]), g2[i]);
    below[i] = ((g0[i] < t0[i]) | (g1[i] < t1[i]) | (g2[i] < t2[i])) ? 255 : 0;
  }
  for (int32_t i = 0; i < n; ++i) {
    const uint8_t low = lesser(lesser(least[i], least[i + 1]), least[i + 2]);
    const uint8_t high = greater(greater(most[i], most[i + 1]), most[i + 2]);
    const auto step_up = static_cast<uint8_t>(high - g[i]);
    const auto step_down = static_cast<uint8_t>(g[i] - low);
    const uint8_t above_smoothed = t[i] < g[i] ? 255 : 0;
    const uint8_t strong = greater(step_up, step_down) >= threshold ? 255 : 0;
    edges[i] = above_smoothed & (below[i] | below[i + 1] | below[i + 2]) & strong;
  }
}

NUV_ROW_KERNEL void test_row_span(const uint8_t* g, const uint8_t* t, std::ptrdiff_t width, int32_t n,
                                  uint8_t threshold, uint8_t* edges) {
  test_span(g, t, width, n, threshold, edges);
}

NUV_ROW_KERNEL void test_row_span(const uint8_t* g, const double* t, std::ptrdiff_t width, int32_t n,
                                  uint8_t threshold, uint8_t* edges) {
  test_span(g, t, width, n, threshold, edges);
}

struct Span {
  int32_t x;  // its first column
  int32_t y;
  int32_t n;
  const uint8_t* edges;  // 255 on edge pixels, else 0
};

// Tests the interior of a row and calls visit() for each span while it returns true. Returns whether it
// always did.
template <class T, class Visit>
bool for_edge_spans(GrayImage source, int32_t y, const T* smoothed, int32_t threshold, Visit visit) {
  // Steps lie in 0..255.
  if (threshold > 255 || y < 1 || y > source.height - 2) return true;
  const auto byte_threshold = static_cast<uint8_t>(std::max(threshold, 0));
  uint8_t edges[kSpan];
  for (int32_t x = 1; x < source.width - 1; x += kSpan) {
    const int32_t n = std::min(kSpan, source.width - 1 - x);
    const uint8_t* g = source.at(x, y);
    test_row_span(g, smoothed + (g - source.pixels), source.width, n, byte_threshold, edges);
    if (!visit(Span{x, y, n, edges})) return false;
  }
  return true;
}

// Calls action(x) for the edge pixels of a span while it returns true. Returns whether it always did.
template <class Action>
bool for_edge_pixels(const Span& span, Action action) {
  int32_t i = 0;
  while (i < span.n) {
    uint64_t eight = 0;
    if (i + 8 <= span.n) {
      std::memcpy(&eight, span.edges + i, 8);
      if (eight == 0) {
        i += 8;
        continue;
      }
    }
    for (const int32_t end = std::min(i + 8, span.n); i < end; ++i) {
      if (span.edges[i] != 0 && !action(span.x + i)) return false;
    }
  }
  return true;
}

template <class T>
void draw_edges(GrayImage source, int32_t y, const T* smoothed, int32_t threshold, GrayImage edges) {
  std::memset(edges.row(y), 0, static_cast<std::size_t>(source.width));
  for_edge_spans(source, y, smoothed, threshold, [=](const Span& span) {
    std::memcpy(edges.at(span.x, span.y), span.edges, static_cast<std::size_t>(span.n));
    return true;
  });
}

// Tests each row while the rows around it are still in the caches.
template <class T, class Step>
void draw_edges_of_smoothed(GrayImage source, T* smoothed, Step step, int32_t threshold, GrayImage edges) {
  if (source.empty()) return;
  smooth(source, smoothed, step, [=](int32_t y) {
    if (y + 1 < source.height) draw_edges(source, y + 1, smoothed, threshold, edges);
  });
  draw_edges(source, 0, smoothed, threshold, edges);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvShenJunEdgeStd(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, double a0,
                       int32_t grdThreshold, uint8_t* pResImg) {
  const GrayImage source{pGryImg, width, height};
  const GrayImage edges{pResImg, width, height};
  if (std::fabs(a0) <= SmallTruncatingStep::kGreatestWeight) {
    draw_edges_of_smoothed(source, pTmpImg, SmallTruncatingStep{a0}, grdThreshold, edges);
  } else {
    draw_edges_of_smoothed(source, pTmpImg, TruncatingStep{a0}, grdThreshold, edges);
  }
}

void NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, int32_t shift,
                        int32_t grdThreshold, uint8_t* pResImg) {
  const GrayImage source{pGryImg, width, height};
  if (source.empty()) return;
  smooth_by_shift(source, pTmpImg, shift);
  for (int32_t y = 0; y < height; ++y) draw_edges(source, y, pTmpImg, grdThreshold, {pResImg, width, height});
}

int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, int32_t shift,
                           int32_t grdThreshold, int32_t* pX, int32_t* pY, int32_t maxN) {
  const GrayImage source{pGryImg, width, height};
  if (source.empty()) return 0;
  smooth_by_shift(source, pTmpImg, shift);
  int32_t count = 0;
  const auto store = [&](const Span& span) {
    return for_edge_pixels(span, [&](int32_t x) {
      pX[count] = x;
      pY[count] = span.y;
      return ++count < maxN;  // compared after storing, so the first point is always stored
    });
  };
  for (int32_t y = 1; y < height - 1 && for_edge_spans(source, y, pTmpImg, grdThreshold, store); ++y) {}
  return count;
}

int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, int32_t shift,
                           int32_t grdThreshold, int32_t* pX, int32_t* pY, int32_t maxN, uint8_t* pResImg) {
  NuvShenJunEdgeFast(pGryImg, pTmpImg, width, height, shift, grdThreshold, pResImg);
  const GrayImage edges{pResImg, width, height};
  if (edges.empty()) return 0;
  int32_t count = 0;
  for (int32_t y = 1; y < height - 1 && count < maxN; ++y) {
    for_edge_pixels({0, y, width, edges.row(y)}, [&](int32_t x) {
      if (count >= maxN) return false;  // compared before storing, so a capacity of 0 stores nothing
      pX[count] = x;
      pY[count] = y;
      ++count;
      return true;
    });
  }
  return count;
}

void NuvShenJunEdgeFine(uint8_t* pGryImg, double* pTmpImg, int32_t width, int32_t height, double a0,
                        int32_t grdThreshold, uint8_t* pResImg) {
  draw_edges_of_smoothed({pGryImg, width, height}, pTmpImg, FineStep{a0}, grdThreshold,
                         {pResImg, width, height});
}

// The Shen-Jun edge detector.
//
// Smoothing is a recursion along rows and then along columns. Column recursions are vector code as they
// stand: a row and the one above. Along a row every pixel waits for the one before it, but the rows do not
// wait for each other until the downward pass, so a group of rows goes through both row passes abreast:
//
// - in floating arithmetic, as independent chains of one loop;
// - in integer arithmetic, 16 rows as the 16 bytes of a vector, blocks of 16 by 16 pixels being transposed
//   on their way in and out.
//
// The edge test is the same for all forms. It works on spans of a row: a first pass folds the three rows
// around into one, a second pass folds three columns and decides. Both take the pixel itself for one of its
// neighbours, which changes nothing: where T < G it is not below T, and its step to itself is 0.

#include <algorithm>
#include <array>
#include <cstring>

#include "frame/arithmetic.h"
#include "frame/lanes.h"
#include "frame/row_kernel.h"
#include "frame/views.h"
#include "nuv/edges.h"

namespace nuv {
namespace {

constexpr int32_t kRowsAbreast = 16;

// ---- smoothing, any arithmetic ----

template <class T, class Step>
void smooth(GrayImage source, T* smoothed, Step step) {
  const std::ptrdiff_t width = source.width;
  const auto row_of = [=](int32_t y) { return smoothed + y * width; };
  std::copy_n(source.row(0), width, row_of(0));
  for (int32_t top = 1; top < source.height; top += kRowsAbreast) {
    const int32_t rows = std::min(kRowsAbreast, source.height - top);
    const uint8_t* in = source.row(top);
    T* out = row_of(top);
    for (int32_t r = 0; r < rows; ++r) out[r * width] = in[r * width];
    for (std::ptrdiff_t x = 1; x < width; ++x) {
      for (int32_t r = 0; r < rows; ++r) out[r * width + x] = step(in[r * width + x], out[r * width + x - 1]);
    }
    for (std::ptrdiff_t x = width - 2; x >= 0; --x) {
      for (int32_t r = 0; r < rows; ++r)
        out[r * width + x] = step(out[r * width + x], out[r * width + x + 1]);
    }
    for (int32_t r = 0; r < rows; ++r) {
      T* row = out + r * width;
      const T* above = row - width;
      for (std::ptrdiff_t x = 0; x < width; ++x) row[x] = step(row[x], above[x]);
    }
  }
  for (int32_t y = source.height - 2; y >= 0; --y) {
    T* row = row_of(y);
    const T* below = row + width;
    for (std::ptrdiff_t x = 0; x < width; ++x) row[x] = step(row[x], below[x]);
  }
}

// ---- smoothing, integer arithmetic ----

#if NUV_HAS_LANES

// ((new - old) >> shift) + old is new, averaged shift times with old, rounded down each time. Processors
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

constexpr int32_t kBlock = 16;

// Up to 16 columns of the 16 rows, as columns; the rows are given by their starts.
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

template <int Shift>
NUV_INLINE void smooth_along_rows(const uint8_t* const* in, uint8_t* const* out, std::ptrdiff_t width) {
  // Only the last block of a row can be narrower than the others.
  const auto columns_at = [width](std::ptrdiff_t x) {
    return static_cast<int32_t>(std::min<std::ptrdiff_t>(kBlock, width - x));
  };
  Bytes16 columns[kBlock];
  Bytes16 running{};
  for (std::ptrdiff_t x = 0; x < width; x += kBlock) {
    const int32_t count = columns_at(x);
    load_columns(in, x, count, columns);
    // The first pixel of a row is its own predecessor: a step from it to itself changes nothing.
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
NUV_INLINE void smooth_down(uint8_t* NUV_RESTRICT row, const uint8_t* NUV_RESTRICT above, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) row[x] = step_of_complements<Shift>(row[x], above[x]);
}

// The row below is finished: it becomes what its complements stood for.
template <int Shift>
NUV_INLINE void smooth_up(uint8_t* NUV_RESTRICT row, uint8_t* NUV_RESTRICT below, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    row[x] = step_of_complements<Shift>(row[x], below[x]);
    below[x] = static_cast<uint8_t>(~below[x]);
  }
}

NUV_ROW_KERNEL void complement_row(const uint8_t* in, uint8_t* out, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) out[x] = static_cast<uint8_t>(~in[x]);
}

// The passes with the shift as an argument.
NUV_ROW_KERNEL void smooth_along_rows(const uint8_t* const* in, uint8_t* const* out, std::ptrdiff_t width,
                                      int32_t shift) {
  switch (shift) {
    case 1:
      return smooth_along_rows<1>(in, out, width);
    case 2:
      return smooth_along_rows<2>(in, out, width);
    default:
      return smooth_along_rows<3>(in, out, width);
  }
}

NUV_ROW_KERNEL void smooth_down(uint8_t* row, const uint8_t* above, std::ptrdiff_t n, int32_t shift) {
  switch (shift) {
    case 1:
      return smooth_down<1>(row, above, n);
    case 2:
      return smooth_down<2>(row, above, n);
    default:
      return smooth_down<3>(row, above, n);
  }
}

NUV_ROW_KERNEL void smooth_up(uint8_t* row, uint8_t* below, std::ptrdiff_t n, int32_t shift) {
  switch (shift) {
    case 1:
      return smooth_up<1>(row, below, n);
    case 2:
      return smooth_up<2>(row, below, n);
    default:
      return smooth_up<3>(row, below, n);
  }
}

void smooth_by_shift(GrayImage source, uint8_t* smoothed, int32_t shift) {
  const GrayImage target{smoothed, source.width, source.height};
  const std::ptrdiff_t width = source.width;
  complement_row(source.row(0), target.row(0), width);
  for (int32_t top = 1; top < source.height; top += kRowsAbreast) {
    const int32_t rows = std::min(kRowsAbreast, source.height - top);
    std::array<const uint8_t*, kRowsAbreast> in{};
    std::array<uint8_t*, kRowsAbreast> out{};
    for (int32_t r = 0; r < kRowsAbreast; ++r) {
      // A group that is not full computes its last row several times.
      const int32_t y = top + std::min(r, rows - 1);
      in[r] = source.row(y);
      out[r] = target.row(y);
    }
    smooth_along_rows(in.data(), out.data(), width, shift);
    for (int32_t r = 0; r < rows; ++r) smooth_down(out[r], out[r] - width, width, shift);
  }
  for (int32_t y = source.height - 2; y >= 0; --y) smooth_up(target.row(y), target.row(y + 1), width, shift);
  complement_row(target.row(0), target.row(0), width);
}

#else

void smooth_by_shift(GrayImage source, uint8_t* smoothed, int32_t shift) {
  smooth(source, smoothed, [shift](int32_t sample, int32_t running) {
    return static_cast<uint8_t>(((sample - running) >> shift) + running);
  });
}

#endif

// ---- the edge test ----

constexpr int32_t kSpan = 1024;

// The pixels of a row from g on, and of the smoothed image from t on; rows are width apart.
template <class T>
NUV_INLINE void test_span(const uint8_t* g, const T* t, std::ptrdiff_t width, int32_t n, uint8_t threshold,
                          uint8_t* NUV_RESTRICT edges) {
  // Entry i + 1 belongs to column i: the span needs the column at either side of it.
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

// Tests the interior in raster order, and hands it to visit() span by span while visit() returns true.
template <class T, class Visit>
void for_edge_spans(GrayImage source, const T* smoothed, int32_t threshold, Visit visit) {
  // Every pixel has a step of 0 or more, and none has one above 255.
  if (threshold > 255) return;
  const auto byte_threshold = static_cast<uint8_t>(std::max(threshold, 0));
  uint8_t edges[kSpan];
  for (int32_t y = 1; y < source.height - 1; ++y) {
    for (int32_t x = 1; x < source.width - 1; x += kSpan) {
      const int32_t n = std::min(kSpan, source.width - 1 - x);
      const uint8_t* g = source.at(x, y);
      test_row_span(g, smoothed + (g - source.pixels), source.width, n, byte_threshold, edges);
      if (!visit(Span{x, y, n, edges})) return;
    }
  }
}

// Calls action(x) for the edge pixels of a span while it returns true, and returns whether it always did.
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
void draw_edges(GrayImage source, const T* smoothed, int32_t threshold, uint8_t* result) {
  const GrayImage edges{result, source.width, source.height};
  std::memset(result, 0, static_cast<std::size_t>(edges.size()));
  for_edge_spans(source, smoothed, threshold, [=](const Span& span) {
    std::memcpy(edges.at(span.x, span.y), span.edges, static_cast<std::size_t>(span.n));
    return true;
  });
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvShenJunEdgeStd(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, double a0,
                       int32_t grdThreshold, uint8_t* pResImg) {
  const GrayImage source{pGryImg, width, height};
  if (source.empty()) return;
  smooth(source, pTmpImg, [a0](int32_t sample, int32_t running) {
    return low_byte(truncated((sample - running) * a0 + running));
  });
  draw_edges(source, pTmpImg, grdThreshold, pResImg);
}

void NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, int32_t shift,
                        int32_t grdThreshold, uint8_t* pResImg) {
  const GrayImage source{pGryImg, width, height};
  if (source.empty()) return;
  smooth_by_shift(source, pTmpImg, std::clamp(shift, 1, 3));
  draw_edges(source, pTmpImg, grdThreshold, pResImg);
}

int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, int32_t shift,
                           int32_t grdThreshold, int32_t* pX, int32_t* pY, int32_t maxN) {
  const GrayImage source{pGryImg, width, height};
  if (source.empty()) return 0;
  smooth_by_shift(source, pTmpImg, std::clamp(shift, 1, 3));
  int32_t count = 0;
  for_edge_spans(source, pTmpImg, grdThreshold, [&](const Span& span) {
    return for_edge_pixels(span, [&](int32_t x) {
      pX[count] = x;
      pY[count] = span.y;
      return ++count < maxN;  // compared after storing: one point always fits
    });
  });
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
      if (count >= maxN) return false;  // compared before storing: nothing fits in no room
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
  const GrayImage source{pGryImg, width, height};
  if (source.empty()) return;
  smooth(source, pTmpImg, [a0](double sample, double running) { return (sample - running) * a0 + running; });
  draw_edges(source, pTmpImg, grdThreshold, pResImg);
}

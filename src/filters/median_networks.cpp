// Medians of small windows by networks of comparisons.
//
// The columns are sorted first, once for all windows that share a column. Sorting the rows of a window then
// leaves its columns sorted, so no pixel is less than those above and left of it. A pixel with more than half
// of the window above and left of it cannot be the median, and neither can a pixel with more than half of the
// window below and right of it. Equal numbers of both kinds drop out. The remaining pixels are
//
//     . . d      . . . s d
//     . d .      . . s d g
//     d . .      . s d g .
//                s d g . .
//                d g . . .
//
// and their median is the median of the window. With 3 by 3 it is the median of the three pixels d. With 5 by
// 5, let d(k), s(k) and g(k) be the pixels of each letter in rising order. d(k) is not less than s(k), and
// d(k+1) is not greater than g(k). At least five of the 12 other pixels therefore lie on either side of d(3).
// Only s(4) and g(1) are undecided, and the median is that of s(4), d(3) and g(1).

#include "filters/median_networks.h"

#include <algorithm>

#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {
namespace {

// ---- networks, for single bytes or vectors of bytes ----

template <class Lane>
NUV_INLINE void sort(Lane (&v)[3]) {
  order(v[0], v[1]);
  order(v[1], v[2]);
  order(v[0], v[1]);
}

template <class Lane>
NUV_INLINE void sort(Lane (&v)[5]) {
  order(v[0], v[1]);
  order(v[3], v[4]);
  order(v[2], v[4]);
  order(v[2], v[3]);
  order(v[1], v[4]);
  order(v[0], v[3]);
  order(v[0], v[2]);
  order(v[1], v[3]);
  order(v[1], v[2]);
}

// b becomes the median of the three; a and c lose their values.
template <class Lane>
NUV_INLINE void keep_median(Lane& a, Lane& b, Lane& c) {
  order(a, b);
  keep_lesser(b, c);
  keep_greater(b, a);
}

// ---- the two steps of a row ----

constexpr std::ptrdiff_t kSpan = 1024;

// The sorted columns of a span of windows: row 0 holds their least values, the last row their greatest.
template <int Size>
using SortedColumns = uint8_t[Size][kSpan + Size - 1];

template <class Lane, int Size>
NUV_INLINE void sort_columns(const uint8_t* p, std::ptrdiff_t w, SortedColumns<Size>& rows,
                             std::ptrdiff_t x) {
  Lane v[Size];
  for (int r = 0; r < Size; ++r) load(p + (r - Size / 2) * w + x, v[r]);
  sort(v);
  for (int r = 0; r < Size; ++r) store(rows[r] + x, v[r]);
}

template <class Lane>
NUV_INLINE void write_medians(const SortedColumns<3>& rows, uint8_t* out, std::ptrdiff_t x) {
  Lane v[3][3];
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) load(rows[r] + x + c, v[r][c]);
  }
  keep_greater(v[0][0], v[0][1]);
  keep_greater(v[0][0], v[0][2]);
  keep_median(v[1][0], v[1][1], v[1][2]);
  keep_lesser(v[2][0], v[2][1]);
  keep_lesser(v[2][0], v[2][2]);
  keep_median(v[0][0], v[1][1], v[2][0]);
  store(out + x, v[1][1]);
}

template <class Lane>
NUV_INLINE void write_medians(const SortedColumns<5>& rows, uint8_t* out, std::ptrdiff_t x) {
  Lane v[5][5];
  for (int r = 0; r < 5; ++r) {
    for (int c = 0; c < 5; ++c) load(rows[r] + x + c, v[r][c]);
    sort(v[r]);
  }
  Lane& s = v[0][3];
  keep_greater(s, v[1][2]);
  keep_greater(s, v[2][1]);
  keep_greater(s, v[3][0]);
  Lane d[5] = {v[0][4], v[1][3], v[2][2], v[3][1], v[4][0]};
  sort(d);
  Lane& g = v[1][4];
  keep_lesser(g, v[2][3]);
  keep_lesser(g, v[3][2]);
  keep_lesser(g, v[4][1]);
  keep_median(s, d[2], g);
  store(out + x, d[2]);
}

// Works in steps of as many places as a vector has lanes; the last step starts early enough to end with the
// span. Spans of fewer places are worked place by place.
template <int Size>
NUV_INLINE void medians(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  SortedColumns<Size> rows;
  for (std::ptrdiff_t first = 0; first < n; first += kSpan) {
    const std::ptrdiff_t span = std::min(kSpan, n - first);
    const std::ptrdiff_t columns = span + Size - 1;
    const uint8_t* q = p + first - Size / 2;
    uint8_t* span_out = out + first;
#if NUV_HAS_LANES
    if (span >= kByteLanes) {
      for (std::ptrdiff_t x = 0; x < columns; x += kByteLanes) {
        sort_columns<ByteLanes, Size>(q, w, rows, std::min(x, columns - kByteLanes));
      }
      for (std::ptrdiff_t x = 0; x < span; x += kByteLanes) {
        write_medians<ByteLanes>(rows, span_out, std::min(x, span - kByteLanes));
      }
      continue;
    }
#endif
    for (std::ptrdiff_t x = 0; x < columns; ++x) sort_columns<uint8_t, Size>(q, w, rows, x);
    for (std::ptrdiff_t x = 0; x < span; ++x) write_medians<uint8_t>(rows, span_out, x);
  }
}

}  // namespace

NUV_ROW_KERNEL void medians_3x3(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  medians<3>(p, w, out, n);
}

NUV_ROW_KERNEL void medians_5x5(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  medians<5>(p, w, out, n);
}

}  // namespace nuv

// Medians of small windows by networks of comparisons.
//
// The columns of a window are sorted first, once for all windows that a column stands in. Sorting the rows
// then leaves the columns sorted, and no pixel is less than those above and left of it. A pixel with more
// than half of the window above and left of it, or below and right of it, cannot be the median; as many of
// each kind fall out, and left are the pixels
//
//     . . d      . . . s d
//     . d .      . . s d g
//     d . .      . s d g .
//                s d g . .
//                d g . . .
//
// of which the median is sought. With 3 by 3 that is the median of d. With 5 by 5, each in rising order, d(k)
// is not less than s(k), and d(k+1) not greater than g(k). So d(3) has at least five of the 12 others on
// either side, and only s(4) and g(1) are open: the median is that of s(4), d(3) and g(1).

#include "filters/median_networks.h"

#include <algorithm>

#include "frame/row_kernel.h"

namespace nuv {
namespace {

NUV_INLINE void order(uint8_t& a, uint8_t& b) {
  const uint8_t least = lesser(a, b);
  b = greater(a, b);
  a = least;
}

NUV_INLINE void sort(uint8_t& a, uint8_t& b, uint8_t& c) {
  order(a, b);
  order(b, c);
  order(a, b);
}

NUV_INLINE void sort(uint8_t& a, uint8_t& b, uint8_t& c, uint8_t& d, uint8_t& e) {
  order(a, b);
  order(d, e);
  order(c, e);
  order(c, d);
  order(b, e);
  order(a, d);
  order(a, c);
  order(b, d);
  order(b, c);
}

NUV_INLINE uint8_t median(uint8_t a, uint8_t b, uint8_t c) {
  return greater(lesser(a, b), lesser(greater(a, b), c));
}

NUV_INLINE uint8_t median(uint8_t a, uint8_t b, uint8_t c, uint8_t d, uint8_t e) {
  sort(a, b, c, d, e);
  return c;
}

constexpr std::ptrdiff_t kSpan = 1024;

}  // namespace

NUV_ROW_KERNEL void medians_3x3(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  uint8_t rows[3][kSpan + 2];
  for (std::ptrdiff_t first = 0; first < n; first += kSpan) {
    const std::ptrdiff_t span = std::min(kSpan, n - first);
    const uint8_t* q = p + first - 1;
    for (std::ptrdiff_t x = 0; x < span + 2; ++x, ++q) {
      uint8_t a = q[-w];
      uint8_t b = q[0];
      uint8_t c = q[w];
      sort(a, b, c);
      rows[0][x] = a;
      rows[1][x] = b;
      rows[2][x] = c;
    }
    for (std::ptrdiff_t x = 0; x < span; ++x) {
      const uint8_t top = greater(greater(rows[0][x], rows[0][x + 1]), rows[0][x + 2]);
      const uint8_t middle = median(rows[1][x], rows[1][x + 1], rows[1][x + 2]);
      const uint8_t bottom = lesser(lesser(rows[2][x], rows[2][x + 1]), rows[2][x + 2]);
      out[first + x] = median(top, middle, bottom);
    }
  }
}

NUV_ROW_KERNEL void medians_5x5(const uint8_t* p, std::ptrdiff_t w, uint8_t* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  uint8_t rows[5][kSpan + 4];
  for (std::ptrdiff_t first = 0; first < n; first += kSpan) {
    const std::ptrdiff_t span = std::min(kSpan, n - first);
    const uint8_t* q = p + first - 2;
    for (std::ptrdiff_t x = 0; x < span + 4; ++x, ++q) {
      uint8_t a = q[-2 * w];
      uint8_t b = q[-w];
      uint8_t c = q[0];
      uint8_t d = q[w];
      uint8_t e = q[2 * w];
      sort(a, b, c, d, e);
      rows[0][x] = a;
      rows[1][x] = b;
      rows[2][x] = c;
      rows[3][x] = d;
      rows[4][x] = e;
    }
    for (std::ptrdiff_t x = 0; x < span; ++x) {
      uint8_t v[5][5];
      for (int r = 0; r < 5; ++r) {
        for (int c = 0; c < 5; ++c) v[r][c] = rows[r][x + c];
      }
      for (int r = 0; r < 5; ++r) sort(v[r][0], v[r][1], v[r][2], v[r][3], v[r][4]);
      const uint8_t s = greater(greater(v[0][3], v[1][2]), greater(v[2][1], v[3][0]));
      const uint8_t d = median(v[0][4], v[1][3], v[2][2], v[3][1], v[4][0]);
      const uint8_t g = lesser(lesser(v[1][4], v[2][3]), lesser(v[3][2], v[4][1]));
      out[first + x] = median(s, d, g);
    }
  }
}

}  // namespace nuv

// Points in two arrays, as hosts pass them.

#ifndef NUV_TESTS_LINES_POINTS_H
#define NUV_TESTS_LINES_POINTS_H

#include <cstdint>
#include <vector>

struct Points {
  std::vector<int32_t> x;
  std::vector<int32_t> y;

  int32_t n() const { return static_cast<int32_t>(x.size()); }
};

#endif

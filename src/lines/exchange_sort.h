// Sorting points by y in the order of an exchange sort.

#ifndef NUV_LINES_EXCHANGE_SORT_H
#define NUV_LINES_EXCHANGE_SORT_H

#include <cstdint>

namespace nuv {

// Sorts n points by y. Points of equal y come in the order in which an exchange sort leaves them: for each
// place i, and for each place j after it, the points at i and j are exchanged if y[j] < y[i].
void exchange_sort_by_y(int32_t* x, int32_t* y, int32_t n);

}  // namespace nuv

#endif

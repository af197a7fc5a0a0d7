// Calls with rectangles of Windows. The including file chooses the order of windows.h and the library's header.

#ifndef NUV_TESTS_BOUNDARY_WINDOWS_RECTANGLES_H
#define NUV_TESTS_BOUNDARY_WINDOWS_RECTANGLES_H

#include <windows.h>

#include <algorithm>

#include "NuvImgSDK2014DLL.h"

inline void expect_rectangles_of_windows_to_work() {
  static_assert(std::is_same<RECT, tagRECT>::value, "one record");
  EXPECT_EQ(NuvRectOverlapArea(RECT{0, 0, 9, 9}, tagRECT{5, 6, 20, 20}), 5 * 4);

  // Around a square of four pixels: right, down, left and up.
  uint8_t chain[] = {0, 6, 4, 2};
  RECT box{};
  NuvContourRect(3, 4, chain, 4, &box.left, &box.right, &box.top, &box.bottom);
  EXPECT_EQ(std::max<LONG>(box.right - box.left, box.bottom - box.top), 1);
  RECT turned{};
  NuvContourRotatedRect(3, 4, chain, 4, 0.0, &turned.left, &turned.right, &turned.top, &turned.bottom);
  EXPECT_TRUE(EqualRect(&turned, &box));
  int32_t x[] = {7, -2, 5};
  int32_t y[] = {1, 8, 3};
  NuvPointsRect(x, y, 3, &box.left, &box.right, &box.top, &box.bottom);
  EXPECT_EQ(box.left, -2);
  EXPECT_EQ(box.bottom, 8);
  RECT zoomed{10, 0, 20, 5};
  NuvRectResizeX4(100, 100, 100, 100, &zoomed.left, &zoomed.right, &zoomed.top, &zoomed.bottom);
  EXPECT_EQ(zoomed.right - zoomed.left + 1, 8);
  POINT centre{};
  NuvContourCenter(3, 4, chain, 4, NuvInt32(&centre.x), NuvInt32(&centre.y));
  EXPECT_EQ(centre.x, 4);
}

#endif

// A host may include <windows.h> before the library's header, and pass its rectangles to the library.

#include <windows.h>

// After windows.h.
#include <gtest/gtest.h>

#include "NuvImgSDK2014DLL.h"

TEST(WindowsHeader, DefinesTheRectangleOfTheLibrary) {
  EXPECT_EQ(NuvRectOverlapArea(RECT{0, 0, 9, 9}, RECT{5, 6, 20, 20}), 5 * 4);
}

// A host may include <windows.h> after the library's header.

#if defined(_INC_WINDOWS)
#error "windows.h was included before"
#endif
#include "NuvImgSDK2014DLL.h"

// After the library's header.
#include <gtest/gtest.h>
#include <windows.h>

#include "boundary/windows_rectangles.h"

TEST(WindowsHeaderAfterTheLibrary, HasTheRectangleOfTheLibrary) {
  expect_rectangles_of_windows_to_work();
}

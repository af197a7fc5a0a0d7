#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "NuvImgSDK2014DLL.h"

namespace {

#if !defined(_WIN32) && !defined(__wasi__)
TEST(DebugLogDeathTest, IsEmptiedByTheFirstLineOfAProcess) {
  const std::string log = "/tmp/NuvDebugInfo.txt";
  EXPECT_EXIT(
      {
        char text[] = "100% %d";
        NuvDebugInfo(text, INT_MIN);
        NuvDebugInfo(text, 7);
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
  std::ifstream file(log, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "\n100% %d,-2147483648\n100% %d,7");
  std::remove(log.c_str());
}
#endif

}  // namespace

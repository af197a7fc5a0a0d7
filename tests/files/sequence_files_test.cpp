#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "NuvImgSDK2014DLL.h"
#include "temporary_directory.h"

namespace {

class SequenceFiles : public testing::Test {
 protected:
  bool load(const std::string& text) const {
    std::ofstream(directory_.file("list.txt"), std::ios::binary) << text;
    return NuvSequenceFiles_Initialize(directory_.file("list.txt").data());
  }

  TemporaryDirectory directory_;
};

// The line that a call returns, or kNone if it returns false.
constexpr char kNone[] = "(none)";

template <class Get>
std::string got(Get get, int32_t size) {
  std::string name(static_cast<std::size_t>(size), 'x');
  const bool found = get(name.data(), size);
  const std::size_t end = std::min(name.find('\0'), name.size());
  EXPECT_EQ(name.find_first_not_of('\0', end), std::string::npos) << "the bytes after the name are 0";
  EXPECT_TRUE(found || end == 0);
  return found ? name.substr(0, end) : kNone;
}
std::string next(int32_t size = 32) {
  return got(NuvSequenceFiles_GetNextFileName, size);
}
std::string line(int32_t index, int32_t size = 32) {
  return got([=](char* name, int32_t n) { return NuvSequenceFiles_GetFileName(index, name, n); }, size);
}

TEST_F(SequenceFiles, AreTheTerminatedLines) {
  ASSERT_TRUE(load("a.bmp\r\nb c.bmp  \r\n\r\n x\ry\nz\t\r\nlast"));
  const std::string lines[] = {"a.bmp", "b c.bmp", "", " x\ry\nz\t", kNone, kNone};
  for (const std::string& expected : lines) {
    EXPECT_EQ(next(), expected);
    EXPECT_EQ(line(1), "b c.bmp") << "a lookup by index does not advance the walk";
  }
  for (int32_t i = 0; i < 6; ++i) EXPECT_EQ(line(i), lines[i]);
  EXPECT_EQ(line(-1), kNone);
  ASSERT_TRUE(load("a\r\n\r"));
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(next(), kNone);
}

TEST_F(SequenceFiles, SkipLinesThatDoNotFitWithTheirBlanks) {
  ASSERT_TRUE(load("four\r\nabc \r\nabc\r\n"));
  EXPECT_EQ(next(4), kNone);
  EXPECT_EQ(next(4), kNone);
  EXPECT_EQ(next(4), "abc");
  EXPECT_EQ(line(1, 4), kNone);
  EXPECT_EQ(line(1, 5), "abc");
  char name = 'x';
  EXPECT_FALSE(NuvSequenceFiles_GetFileName(2, &name, 0));
  EXPECT_EQ(name, 'x');
}

TEST_F(SequenceFiles, KeepTheOldListIfTheNewOneCannotBeOpened) {
  ASSERT_TRUE(load("one\r\ntwo\r\n"));
  EXPECT_EQ(next(), "one");
  for (const std::string& name : {directory_.file("missing"), directory_.path(), std::string(2000, 'n')}) {
    EXPECT_EQ(next(), "two");
    EXPECT_FALSE(NuvSequenceFiles_Initialize(std::string(name).data()));
    EXPECT_EQ(next(), "one");
  }
  ASSERT_TRUE(load("x\r\n"));
  EXPECT_EQ(next(), "x");
  EXPECT_EQ(next(), kNone) << "no line of the longer list before is left";
  EXPECT_TRUE(load(""));
  EXPECT_EQ(line(0), kNone);
}

#if !defined(__wasi__)

// Rules that hold only at the start of a process are tested in a process of their own.
using SequenceFilesDeathTest = SequenceFiles;

TEST_F(SequenceFilesDeathTest, TheListIsEmptyAtFirst) {
  EXPECT_EXIT(
      {
        const bool none = next() == kNone && line(0) == kNone;
        std::exit(none && !load("") && load("a\r\n") && load("") ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

#endif  // !defined(__wasi__)

}  // namespace

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using Bytes = std::vector<uint8_t>;
using Reader = uint8_t* (*)(const char*, int32_t*, int32_t*);

class BmpFile : public testing::Test {
 protected:
  BmpFile() {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    path_ = (fs::temp_directory_path() / ("nuv_" + std::string(info->name()) + ".bmp")).string();
  }
  ~BmpFile() override { fs::remove(path_); }

  Bytes content() const {
    std::ifstream file(path_, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
  }
  void set_content(const Bytes& bytes) const {
    std::ofstream file(path_, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }

  struct Read {
    std::unique_ptr<uint8_t[]> pixels;
    int32_t width = -7;
    int32_t height = -7;
  };
  Read read(Reader reader) const {
    Read result;
    result.pixels.reset(reader(path_.c_str(), &result.width, &result.height));
    return result;
  }

  std::string path_;
};

Bytes header(uint32_t offset, int32_t width, int32_t height) {
  Bytes bytes(54);
  std::memcpy(&bytes[10], &offset, 4);
  std::memcpy(&bytes[18], &width, 4);
  std::memcpy(&bytes[22], &height, 4);
  return bytes;
}

uint32_t field(const Bytes& bytes, std::size_t at) {
  uint32_t value = 0;
  std::memcpy(&value, &bytes[at], 4);
  return value;
}

TEST(NakeName, IsBetweenTheLastBackslashAndTheFirstFullStop) {
  const std::pair<std::string, std::string> cases[] = {
      {"d:\\parts\\a.b.bmp", "a"}, {"name", "name"}, {"a/b.bmp", "a/b"}, {"dir\\", ""}, {".x", ""}, {"", ""},
  };
  for (auto [path, expected] : cases) {
    char name[32] = "unchanged";
    NuvGetFileNakeName(path.data(), name);
    EXPECT_EQ(name, expected) << path;
  }
}

TEST_F(BmpFile, GrayLayout) {
  TestImage image(5, 2);
  image.pixels = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  ASSERT_TRUE(NuvWrite8BitImg2BmpFile(image.data(), 5, 2, path_.c_str()));
  const Bytes file = content();
  ASSERT_EQ(file.size(), 1078U + 16);
  EXPECT_EQ(file[0], 'B');
  EXPECT_EQ(file[1], 'M');
  EXPECT_EQ(field(file, 2), 5 * 2 + 1078U) << "padding is left out of the stated size";
  EXPECT_EQ(field(file, 10), 1078U);
  EXPECT_EQ(field(file, 14), 40U);
  EXPECT_EQ(field(file, 18), 5U);
  EXPECT_EQ(field(file, 22), 2U);
  EXPECT_EQ(field(file, 26), 1U | 8U << 16);
  EXPECT_EQ(Bytes(file.begin() + 30, file.begin() + 54), Bytes(24, 0));
  EXPECT_EQ(Bytes(file.begin() + 54 + 4 * 253, file.begin() + 58 + 4 * 253), (Bytes{253, 253, 253, 0}));
  EXPECT_THAT(Bytes(file.begin() + 1078, file.end()),
              ElementsAre(6, 7, 8, 9, 10, 10, 10, 10, 1, 2, 3, 4, 5, 5, 5, 5));

  ASSERT_TRUE(NuvWrite8BitImg2BmpFileMarkColor(image.data(), 5, 2, path_.c_str()));
  const Bytes marked = content();
  EXPECT_EQ(Bytes(marked.begin() + 54 + 4 * 251, marked.begin() + 1078),
            (Bytes{251, 251, 251, 0, 0, 255, 255, 0, 255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 0}));
  EXPECT_EQ(Bytes(marked.begin() + 1078, marked.end()), Bytes(file.begin() + 1078, file.end()));
}

TEST_F(BmpFile, ColourLayout) {
  Bytes pixels = {1, 2, 3, 4, 5, 6};
  ASSERT_TRUE(NuvWrite24BitImg2BmpFile(pixels.data(), 1, 2, path_.c_str()));
  const Bytes file = content();
  EXPECT_EQ(field(file, 2), (1 * 2 + 18) * 3U);
  EXPECT_EQ(field(file, 26), 1U | 24U << 16);
  EXPECT_THAT(Bytes(file.begin() + 54, file.end()), ElementsAre(4, 5, 6, 4, 1, 2, 3, 1));
}

TEST_F(BmpFile, ReadsBackWhatWasWritten) {
  Random random(4);
  for (int32_t width = 1; width <= 9; ++width) {
    TestImage gray = random.gray(width, 3);
    ASSERT_TRUE(NuvWrite8BitImg2BmpFile(gray.data(), width, 3, path_.c_str()));
    Read result = read(NuvRead8BitBmpFile2Img);
    ASSERT_TRUE(result.pixels);
    EXPECT_EQ(result.width, width);
    EXPECT_EQ(result.height, 3);
    EXPECT_EQ(Bytes(result.pixels.get(), result.pixels.get() + width * 3), gray.pixels);

    Bytes colour = random.bytes(static_cast<std::size_t>(width) * 9);
    ASSERT_TRUE(NuvWrite24BitImg2BmpFile(colour.data(), width, 3, path_.c_str()));
    result = read(NuvRead24BitBmpFile2Img);
    ASSERT_TRUE(result.pixels);
    EXPECT_EQ(Bytes(result.pixels.get(), result.pixels.get() + width * 9), colour);
  }
}

TEST_F(BmpFile, CutShortAnywhereIsNullButForTheLastPaddingOfColour) {
  TestImage gray = Random(5).gray(5, 3);
  ASSERT_TRUE(NuvWrite8BitImg2BmpFile(gray.data(), 5, 3, path_.c_str()));
  const Bytes gray_file = content();
  Bytes colour = Random(6).bytes(5 * 3 * 3);
  ASSERT_TRUE(NuvWrite24BitImg2BmpFile(colour.data(), 5, 3, path_.c_str()));
  const Bytes colour_file = content();

  const auto check = [&](Reader reader, const Bytes& whole, std::size_t needed) {
    for (std::size_t length = 0; length <= whole.size(); ++length) {
      set_content(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
      const Read result = read(reader);
      EXPECT_EQ(result.pixels != nullptr, length >= needed) << length;
      EXPECT_EQ(result.width, length < 54 ? 0 : 5) << length;
      EXPECT_EQ(result.height, length < 54 ? 0 : 3) << length;
    }
  };
  check(NuvRead8BitBmpFile2Img, gray_file, gray_file.size());
  check(NuvRead24BitBmpFile2Img, colour_file, colour_file.size() - 1);
}

TEST_F(BmpFile, HostileHeadersAreNullAndKeepTheDimensions) {
  struct Case {
    uint32_t offset;
    int32_t width, height;
    bool refused_with_zeros;
  };
  const Case cases[] = {
      {53, 1, 1, true},          {0, 1, 1, true},           {54, INT32_MAX, INT32_MAX, false},
      {54, INT32_MIN, 1, false}, {54, 4, -4, false},        {54, -3, -3, false},
      {54, 65536, 65536, false},  // a size of 0 in 32 bits
      {54, 1, INT32_MAX, false}, {0xFFFFFFFF, 1, 1, false}, {10000, 1, 1, false},
  };
  for (const Case& c : cases) {
    Bytes file = header(c.offset, c.width, c.height);
    file.resize(200);
    set_content(file);
    for (Reader reader : {NuvRead8BitBmpFile2Img, NuvRead24BitBmpFile2Img}) {
      const Read result = read(reader);
      EXPECT_FALSE(result.pixels);
      EXPECT_EQ(result.width, c.refused_with_zeros ? 0 : c.width);
      EXPECT_EQ(result.height, c.refused_with_zeros ? 0 : c.height);
    }
  }
}

TEST_F(BmpFile, WithoutPixelsIsAnEmptyImage) {
  for (const auto& [width, height] : {std::pair{7, 0}, {0, 7}, {0, 0}}) {
    set_content(header(54, width, height));
    for (Reader reader : {NuvRead8BitBmpFile2Img, NuvRead24BitBmpFile2Img}) {
      EXPECT_TRUE(read(reader).pixels) << width << 'x' << height;
    }
  }
}

TEST_F(BmpFile, MissingFilesAndDirectories) {
  path_ += ".missing";
  Read result = read(NuvRead8BitBmpFile2Img);
  EXPECT_FALSE(result.pixels);
  EXPECT_EQ(result.width, 0);
  const std::string file = path_;
  path_ = fs::temp_directory_path().string();
  EXPECT_FALSE(read(NuvRead24BitBmpFile2Img).pixels);
  uint8_t pixel[3] = {};
  EXPECT_FALSE(NuvWrite8BitImg2BmpFile(pixel, 1, 1, path_.c_str()));
  EXPECT_FALSE(NuvWrite24BitImg2BmpFile(pixel, 1, 1, path_.c_str()));
  path_ = file;
}

}  // namespace

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "NuvImgSDK2014DLL.h"
#include "images.h"
#include "temporary_directory.h"

namespace {

using testing::ElementsAre;
using Bytes = std::vector<uint8_t>;
using Reader = uint8_t* (*)(const char*, int32_t*, int32_t*);

class BmpFile : public testing::Test {
 protected:
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

  TemporaryDirectory directory_;
  std::string path_ = directory_.file("file.bmp");
};

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
  EXPECT_THAT(Bytes(file.begin(), file.begin() + 2), ElementsAre('B', 'M'));
  EXPECT_EQ(field(file, 2), 5 * 2 + 1078U) << "padding is left out of the stated size";
  EXPECT_EQ(field(file, 26), 1U | 8U << 16);
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

TEST_F(BmpFile, ReadsBackWhatWasWrittenUnlessCutShort) {
  Random random(4);
  for (int32_t width = 1; width <= 5; ++width) {
    for (bool gray : {true, false}) {
      TestImage image = random.gray(width * (gray ? 1 : 3), 3);
      ASSERT_TRUE(
          (gray ? NuvWrite8BitImg2BmpFile : NuvWrite24BitImg2BmpFile)(image.data(), width, 3, path_.c_str()));
      const Bytes whole = content();
      // The padding of the last row may be missing from a colour image.
      const std::size_t needed = whole.size() - (gray ? 0 : (4 - image.pixels.size() / 3 % 4) % 4);
      for (std::size_t length :
           {std::size_t{0}, std::size_t{53}, std::size_t{54}, needed - 1, needed, whole.size()}) {
        set_content(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        const Read result = read(gray ? NuvRead8BitBmpFile2Img : NuvRead24BitBmpFile2Img);
        EXPECT_EQ(result.width, length < 54 ? 0 : width);
        EXPECT_EQ(result.height, length < 54 ? 0 : 3);
        ASSERT_EQ(result.pixels != nullptr, length >= needed) << width << ' ' << length;
        if (length < needed) continue;
        EXPECT_TRUE(std::equal(image.pixels.begin(), image.pixels.end(), result.pixels.get()));
      }
    }
  }
}

TEST_F(BmpFile, SizesInHeadersAreComparedWithTheFile) {
  const struct {
    uint32_t offset;
    int32_t width, height;
    bool is_image;
  } cases[] = {
      {53, 1, 1, false},
      {54, 4, -4, false},
      {54, -3, -3, false},
      // The size in bytes is 0 modulo 2^32.
      {54, 65536, 65536, false},
      {54, 1, INT32_MAX, false},
      {0xFFFFFFFF, 1, 1, false},
      // Images without pixels.
      {54, 7, 0, true},
      {54, 0, 7, true},
  };
  for (const auto& [offset, width, height, is_image] : cases) {
    Bytes file(200);
    std::memcpy(&file[10], &offset, 4);
    std::memcpy(&file[18], &width, 4);
    std::memcpy(&file[22], &height, 4);
    set_content(file);
    for (Reader reader : {NuvRead8BitBmpFile2Img, NuvRead24BitBmpFile2Img}) {
      const Read result = read(reader);
      EXPECT_EQ(result.pixels != nullptr, is_image) << width << 'x' << height;
      EXPECT_EQ(result.width, offset < 54 ? 0 : width);
      EXPECT_EQ(result.height, offset < 54 ? 0 : height);
    }
  }
}

TEST_F(BmpFile, FailsIfTheFileCannotBeOpened) {
  const Read missing = read(NuvRead8BitBmpFile2Img);
  EXPECT_FALSE(missing.pixels);
  EXPECT_EQ(missing.width, 0);
  const std::string directory = directory_.path();
  Read no_file;
  EXPECT_FALSE(NuvRead24BitBmpFile2Img(directory.c_str(), &no_file.width, &no_file.height));
  uint8_t pixel[3] = {};
  EXPECT_FALSE(NuvWrite8BitImg2BmpFile(pixel, 1, 1, directory.c_str()));
  EXPECT_FALSE(NuvWrite24BitImg2BmpFile(pixel, 1, 1, directory.c_str()));
}

}  // namespace

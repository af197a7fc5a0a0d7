#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>

#if defined(__linux__)
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#endif

#include "NuvImgSDK2014DLL.h"
#include "images.h"

namespace {

using Bytes = std::vector<uint8_t>;

// A glyph on the image, in blocks of scale by scale pixels.
struct Placed {
  const TestImage* glyph;
  int32_t scale, left, top;
};

// Calls check(index, bit) for all pixels: bit is 255 or 0 from the last glyph there, and -1 outside all
// glyphs.
template <class Check>
void for_bits(int32_t width, int32_t height, const std::vector<Placed>& glyphs, Check check) {
  for (int32_t i = 0; i < width * height; ++i) {
    int32_t bit = -1;
    for (const Placed& g : glyphs) {
      const int32_t x = i % width - g.left;
      const int32_t y = i / width - g.top;
      if (x < 0 || x >= g.glyph->width * g.scale || y < 0 || y >= g.glyph->height * g.scale) continue;
      bit = g.glyph->at(x / g.scale, y / g.scale);
    }
    check(static_cast<std::size_t>(i), bit);
  }
}

const TestImage kOne = draw({"...##...", "..###...", "#####...", "...##...", "...##...", "...##...",
                             "...##...", "...##...", "...##..."});
const TestImage kTwo = draw({"..####..", ".##..##.", ".##..##.", ".....##.", "....##..", "...##...",
                             "..##....", ".##.....", ".######."});

TEST(Digits, AreDrawnAndOtherCharactersSkipped) {
  char text[] = "1a-2";
  Bytes gray(30 * 20, 9);
  Bytes rgb(30 * 20 * 3, 9);
  EXPECT_EQ(NuvSetNumberString2GryImg(gray.data(), 30, 20, 3, -2, 1, 255 + 256, text), 3 + 16 + 2);
  EXPECT_EQ(NuvSetNumberString2RGBImg(rgb.data(), 30, 20, 3, -2, 1, 10, 20, 30, text), 21);
  for_bits(30, 20, {{&kOne, 1, 3, 0}, {&kTwo, 1, 12, 0}}, [&](std::size_t i, int32_t bit) {
    EXPECT_EQ(gray[i], bit == 255 ? 255 : 9) << i;
    for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(rgb[3 * i + c], bit > 0 ? 10 * (c + 1) : bit == 0 ? 0 : 9);
  });
  Bytes large_gray(60 * 30, 9);
  Bytes large(60 * 30 * 3, 9);
  EXPECT_EQ(NuvSetNumberString20x16GryImg(large_gray.data(), 60, 30, 5, 9, -2, 100, 200, text), 5 + 28);
  EXPECT_EQ(NuvSetNumberString20x16RGBImg(large.data(), 60, 30, 5, 9, -2, 1, 2, 3, 201, 202, 203, text), 33);
  for_bits(60, 30, {{&kOne, 2, 5, 9}, {&kTwo, 2, 19, 9}}, [&](std::size_t i, int32_t bit) {
    EXPECT_EQ(large_gray[i], bit > 0 ? 200 : bit == 0 ? 100 : 9) << i;
    for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(large[3 * i + c], bit > 0 ? 203 - c : bit == 0 ? 3 - c : 9);
  });
}

TEST(Digits, AreDrawnOnlyWithinTheirLimits) {
  // x up to width - cell - 1, y up to height - below. The returned x shows how many digits are drawn.
  const auto expect = [](int32_t cell, int32_t below, auto draw) {
    char text[] = "88";
    Bytes image(40 * 30 * 3);
    const int32_t last_x = 40 - cell - 1;
    EXPECT_EQ(draw(image.data(), last_x, 30 - below, text), last_x + cell);
    EXPECT_EQ(draw(image.data(), last_x + 1, 0, text), last_x + 1);
    EXPECT_EQ(draw(image.data(), -5, 30 - below + 1, text), 0);
    EXPECT_EQ(draw(image.data(), -5, -9, text), 2 * cell);
  };
  expect(8, 1, [](uint8_t* p, int32_t x, int32_t y, char* text) {
    return NuvSetNumberString2GryImg(p, 40, 30, x, y, 0, 1, text);
  });
  expect(8, 11, [](uint8_t* p, int32_t x, int32_t y, char* text) {
    return NuvSetNumberString2RGBImg(p, 40, 30, x, y, 0, 1, 1, 1, text);
  });
  expect(16, 21, [](uint8_t* p, int32_t x, int32_t y, char* text) {
    return NuvSetNumberString20x16RGBImg(p, 40, 30, x, y, 0, 0, 0, 0, 1, 1, 1, text);
  });
  expect(16, 21, [](uint8_t* p, int32_t x, int32_t y, char* text) {
    return NuvSetNumberString20x16GryImg(p, 40, 30, x, y, 0, 0, 1, text);
  });
}

TEST(WideCharacters, AreMadeOfNarrowOnes) {
  char text[] = "\xB0\xA1\x7F!A";
  char wide[] = "xxxxxxxxxxx";
  NuvChar2Wide(text, wide);
  EXPECT_EQ(std::string(wide, 10), std::string("\xB0\xA1\xA3\xFF\xA3\xA1\xA3\xC1\0x", 10));
}

#if defined(__linux__)

namespace fs = std::filesystem;

// Each test writes its own font into the folder of this program, so a lock lets one test run at a time.
class Hanzi : public testing::Test {
 protected:
  Hanzi() : lock_(open("/proc/self/exe", O_RDONLY)), path_(fs::read_symlink("/proc/self/exe")) {
    flock(lock_, LOCK_EX);
    path_.replace_filename("hzk16.dat");
  }
  ~Hanzi() override {
    std::error_code ignored;
    fs::remove(path_, ignored);
    close(lock_);
  }
  void SetUp() override {
    ASSERT_TRUE(std::ofstream(path_)) << "no font can be put beside the test program: " << path_;
  }

  // A font of random bytes.
  Bytes write_font(std::size_t length) const {
    Bytes font = Random(11).bytes(length);
    std::ofstream(path_, std::ios::binary)
        .write(reinterpret_cast<char*>(font.data()), std::streamsize(length));
    return font;
  }

  // What a text of up to four codes draws.
  static TestImage drawn(std::string text) {
    TestImage image(16 * static_cast<int32_t>((text.size() + 1) / 2), 16);
    TestImage wide(image.width + 1, 17);  // the smallest image that has room for it
    EXPECT_TRUE(
        NuvDrawChineseString16x16(wide.data(), wide.width, wide.height, 0, 0, 0, 0, 255 + 256, text.data()));
    for (int32_t y = 0; y < 16; ++y) std::copy_n(&wide.at(0, y), image.width, &image.at(0, y));
    return image;
  }

  int lock_;
  fs::path path_;
};

TestImage glyph_at(const Bytes& font, std::size_t offset) {
  TestImage image(16, 16);
  for (std::size_t i = 0; i < 256; ++i) {
    image.pixels[i] = (font[offset + i / 8] >> (7 - i % 8) & 1) != 0 ? 255 : 0;
  }
  return image;
}

TEST_F(Hanzi, AreReadFromTheFontByTheirCode) {
  const Bytes font = write_font(94 * 94 * 32);
  EXPECT_EQ(drawn("\xA1\xA1"), glyph_at(font, 0));
  EXPECT_EQ(drawn("\xB0\xA1"), glyph_at(font, 45120));
  EXPECT_EQ(drawn("\xFE\xFE"), glyph_at(font, 94 * 94 * 32 - 32));
  EXPECT_EQ(drawn("\xB0"), glyph_at(font, (15 * 94 - 161) * 32)) << "a single byte is paired with 0";
}

TEST_F(Hanzi, WithoutAGlyphRepeatTheGlyphBefore) {
  Bytes font = write_font(40);  // ends inside its second glyph
  EXPECT_EQ(drawn("Z"), TestImage(16, 16));
  EXPECT_EQ(drawn("\xF0\xF0"), TestImage(16, 16));
  const TestImage first = glyph_at(font, 0);
  font.insert(font.end(), font.begin() + 8, font.begin() + 32);
  const TestImage second = glyph_at(font, 32);
  const TestImage row = drawn("\xA1\xA1Zz\xA1\xA2\xF0\xF0");
  for_bits(64, 16, {{&first, 1, 0, 0}, {&first, 1, 16, 0}, {&second, 1, 32, 0}, {&second, 1, 48, 0}},
           [&](std::size_t i, int32_t bit) { EXPECT_EQ(row.pixels[i], bit) << i; });
}

TEST_F(Hanzi, NeedAFontAndAValidFirstRow) {
  // y must be below height - margin.
  const auto expect = [&](int32_t margin, auto draw) {
    char text[] = "\xA1\xA1";
    const Bytes untouched(40 * 40 * 3, 9);
    for (bool has_font : {true, false}) {
      has_font ? void(write_font(32)) : void(fs::remove(path_));
      Bytes image = untouched;
      EXPECT_FALSE(draw(image.data(), 40 - margin, text));
      EXPECT_EQ(draw(image.data(), 0, text + 2), has_font) << "an empty text";
      EXPECT_EQ(image, untouched);
      EXPECT_EQ(draw(image.data(), 39 - margin, text), has_font);
      EXPECT_EQ(image != untouched, has_font);
    }
  };
  expect(16, [](uint8_t* p, int32_t y, char* text) {
    return NuvDrawChineseString16x16(p, 40, 40, 0, y, 0, 1, 2, text);
  });
  expect(20, [](uint8_t* p, int32_t y, char* text) {
    return NuvDrawChineseString16x16(p, 40, 40, 0, y, 0, 1, 1, 1, 2, 2, 2, text);
  });
  expect(32, [](uint8_t* p, int32_t y, char* text) {
    return NuvDrawChineseString32x32(p, 40, 40, 0, y, 0, 1, 1, 1, 2, 2, 2, text);
  });
  expect(32, [](uint8_t* p, int32_t y, char* text) {
    return NuvDrawChineseString32x32(p, 40, 40, 0, y, 0, 1, 2, text);
  });
}

TEST_F(Hanzi, AreSetInLinesAndCutByTheImage) {
  const TestImage bits = glyph_at(write_font(32), 0);
  const struct {
    int32_t width, height, x, y, gap, scale;
    std::vector<std::pair<int32_t, int32_t>> places;
  } cases[] = {
      {60, 50, 30, 20, 2, 1, {{30, 20}, {0, 36}, {18, 36}, {36, 36}}},  // cut at the bottom, then ended
      {80, 70, 50, 1, -3, 2, {{50, 1}, {0, 33}, {29, 33}, {0, 65}, {29, 65}}},
      {40, 40, -20, -5, 2, 1, {{-20, -5}, {-2, -5}, {16, -5}, {0, 11}, {18, 11}, {0, 27}}},
      {20, 90, 1000, 0, -3000, 1, {}},
  };
  for (const auto& c : cases) {
    char text[] = "\xA1\xA1\xA1\xA1\xA1\xA1\xA1\xA1\xA1\xA1\xA1\xA1";
    const auto size = static_cast<std::size_t>(c.width * c.height);
    Bytes gray(3 * size, 9);  // the image, with as many guard bytes before and after it
    Bytes rgb(9 * size, 9);
    const auto draw = [&](auto form) {
      EXPECT_TRUE(form(&gray[size], c.width, c.height, c.x, c.y, c.gap, 50, 60, text));
      EXPECT_TRUE(form(&rgb[3 * size], c.width, c.height, c.x, c.y, c.gap, 1, 2, 3, 4, 5, 6, text));
    };
    if (c.scale == 1) draw([](auto... a) { return NuvDrawChineseString16x16(a...); });
    if (c.scale == 2) draw([](auto... a) { return NuvDrawChineseString32x32(a...); });
    std::vector<Placed> glyphs;
    for (const auto& [left, top] : c.places) glyphs.push_back({&bits, c.scale, left, top + c.height});
    for_bits(c.width, 3 * c.height, glyphs, [&](std::size_t i, int32_t bit) {
      if (i < size || i >= 2 * size) bit = -1;
      EXPECT_EQ(gray[i], bit < 0 ? 9 : bit == 0 ? 50 : 60) << i;
      EXPECT_EQ(rgb[3 * i], bit < 0 ? 9 : bit == 0 ? 3 : 6) << i;
      EXPECT_EQ(rgb[3 * i + 2], bit < 0 ? 9 : bit == 0 ? 1 : 4) << i;
    });
  }
}

// First from a font of three characters, one full width, one half width, one without a code; then from the
// real font.
TEST_F(Hanzi, ComeFromTheProgramThatMakesTheFont) {
  const std::string folder = path_.parent_path().string();
  const std::string source = folder + "/three.hex";
  std::ofstream(source) << "4E00:0000000000000004FFFE0000000000000000000000000000000000000000000F\n"
                        << "0410:0000000018242442427E424242420000\n"
                        << "1F600:" << std::string(64, 'F') << '\n';
  const std::string make = "'" NUV_MAKE_HZK16 "' '" + folder + "' >/dev/null";
  ASSERT_EQ(std::system((make + " --font '" + source + "'").c_str()), 0);
  fs::remove(source);
  EXPECT_EQ(fs::file_size(path_), 94U * 94 * 32);
  const TestImage one = drawn("\xD2\xBB");
  const TestImage a = drawn("\xA7\xA1");
  for (int32_t x = 0; x < 16; ++x) {
    EXPECT_EQ(one.at(x, 4), x < 15 ? 255 : 0);
    EXPECT_EQ(one.at(x, 15), x < 12 ? 0 : 255);
    EXPECT_EQ(a.at(x, 9), x > 4 && x < 11 ? 255 : 0) << "in the middle of the cell";
  }
  EXPECT_EQ(drawn("\xFE\xFE"), TestImage(16, 16));

  ASSERT_EQ(std::system(make.c_str()), 0);
  EXPECT_EQ(drawn("\xA1\xA1"), TestImage(16, 16)) << "the blank character";
  EXPECT_FALSE(drawn("\xBF\xDA") == TestImage(16, 16));
}

#endif

}  // namespace

// Pictures of all kinds, decoded from bytes that are written out here.

#include "picture.h"

#include <gmock/gmock.h>

#include <stb/stb_image_write.h>
#include <algorithm>
#include <cstdlib>

#include "temporary_directory.h"

namespace {

using Bytes = std::vector<uint8_t>;
using testing::HasSubstr;

Bytes from_hex(const std::string& hex) {
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes.push_back(static_cast<uint8_t>(std::strtol(hex.substr(i, 2).c_str(), nullptr, 16)));
  }
  return bytes;
}

Bytes text(const std::string& text) {
  return {text.begin(), text.end()};
}

Bytes joined(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

Bytes cut(Bytes bytes, std::size_t count) {
  bytes.resize(bytes.size() - count);
  return bytes;
}

void append(void* to, void* data, int count) {
  const auto* begin = static_cast<const uint8_t*>(data);
  static_cast<Bytes*>(to)->insert(static_cast<Bytes*>(to)->end(), begin, begin + count);
}

Bytes jpeg(const Picture& gray) {
  Bytes bytes;
  stbi_write_jpg_to_func(append, &bytes, gray.width, gray.height, 1, gray.pixels.data(), 100);
  return bytes;
}

Bytes number(uint32_t value, int count) {
  Bytes bytes;
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<uint8_t>(value >> 8 * i));
  return bytes;
}

struct Bmp {
  int32_t width, height;
  uint32_t depth;
  Bytes palette;  // entries of 4 bytes
  Bytes rows;
  uint32_t compression = 0;

  Bytes bytes() const {
    const auto offset = static_cast<uint32_t>(54 + palette.size());
    Bytes all = text("BM");
    for (uint32_t value : {offset + static_cast<uint32_t>(rows.size()), 0U, offset, 40U,
                           static_cast<uint32_t>(width), static_cast<uint32_t>(height)}) {
      all = joined(all, number(value, 4));
    }
    all = joined(joined(all, number(1, 2)), number(depth, 2));
    for (uint32_t value : {compression, 0U, 0U, 0U, static_cast<uint32_t>(palette.size() / 4), 0U}) {
      all = joined(all, number(value, 4));
    }
    return joined(joined(all, palette), rows);
  }
};

const Bytes kGrayPalette = {10, 10, 10, 0, 200, 200, 200, 0};
const Bytes kColourPalette = {10, 10, 10, 0, 1, 2, 3, 0};

TEST(Picture, IsReadFromFilesOfEveryKind) {
  const struct {
    const char* name;
    Bytes bytes;
    Picture picture;
  } cases[] = {
      {"8-bit BMP from bottom to top",
       Bmp{1, 2, 8, kGrayPalette, {1, 0, 0, 0, 0, 0, 0, 0}}.bytes(),
       {1, 2, 1, {10, 200}}},
      {"8-bit BMP from top to bottom",
       Bmp{1, -2, 8, kGrayPalette, {1, 0, 0, 0, 0, 0, 0, 0}}.bytes(),
       {1, 2, 1, {200, 10}}},
      {"palette of colours",
       Bmp{2, 1, 8, kColourPalette, {1, 0, 0, 0}}.bytes(),
       {2, 1, 3, {1, 2, 3, 10, 10, 10}}},
      {"palette with an unused colour", Bmp{1, 1, 8, kColourPalette, {0, 0, 0, 0}}.bytes(), {1, 1, 1, {10}}},
      {"4 bits", Bmp{3, 1, 4, kGrayPalette, {0x01, 0x10, 0, 0}}.bytes(), {3, 1, 1, {10, 200, 200}}},
      {"1 bit",
       Bmp{9, 1, 1, kGrayPalette, {0x81, 0x80, 0, 0}}.bytes(),
       {9, 1, 1, {200, 10, 10, 10, 10, 10, 10, 200, 200}}},
      {"24 bits, without the last padding", Bmp{1, 1, 24, {}, {1, 2, 3}}.bytes(), {1, 1, 3, {1, 2, 3}}},
      {"32 bits", Bmp{1, 1, 32, {}, {1, 2, 3, 0}}.bytes(), {1, 1, 3, {1, 2, 3}}},
      {"PGM with a comment", text("P5 # gray\n2 1\n255\nAz"), {2, 1, 1, {65, 122}}},
      {"PGM with white at 4", joined(text("P5 3 1 4\n"), {0, 1, 4}), {3, 1, 1, {0, 64, 255}}},
      {"PPM", text("P6 1 1 255\nRGB"), {1, 1, 3, {'B', 'G', 'R'}}},
      {"PNG with a gray palette",
       from_hex("89504e470d0a1a0a0000000d4948445200000002000000010803000000c3fc8fb800000006504c54450a0a0ac8c8"
                "c828d1b250"
                "0000000b49444154789c636060040000040002bf7a3f4a0000000049454e44ae426082"),
       {2, 1, 1, {10, 200}}},
      {"PNG with alpha",
       from_hex("89504e470d0a1a0a0000000d49484452000000010000000108060000001f15c4890000000d49444154789c636064"
                "6266000000"
                "1500072caa204e0000000049454e44ae426082"),
       {1, 1, 3, {3, 2, 1}}},
      {"PNG written here", png_of({2, 1, 3, {1, 2, 3, 4, 5, 6}}), {2, 1, 3, {1, 2, 3, 4, 5, 6}}},
      {"JPEG", jpeg({8, 8, 1, Bytes(64, 77)}), {8, 8, 3, Bytes(192, 77)}},
  };
  for (const auto& c : cases) {
    const Picture picture = decoded_picture(c.bytes, "file");
    EXPECT_EQ(picture.width, c.picture.width) << c.name;
    EXPECT_EQ(picture.height, c.picture.height) << c.name;
    EXPECT_EQ(picture.channels, c.picture.channels) << c.name;
    EXPECT_EQ(picture.pixels, c.picture.pixels) << c.name;
  }
}

TEST(Picture, IsRefusedWithTheNameOfTheFileAndTheReason) {
  const Bytes png = png_of({2, 1, 1, {1, 2}});
  Bytes damaged = png;
  ++damaged[damaged.size() - 20];
  // The counts of the first Huffman table follow its marker, its length and its number.
  Bytes full_table = jpeg({8, 8, 1, Bytes(64, 77)});
  const Bytes marker = {0xFF, 0xC4};
  const auto table = std::search(full_table.begin(), full_table.end(), marker.begin(), marker.end());
  ASSERT_NE(table, full_table.end());
  std::fill_n(table + 5, 16, uint8_t{255});
  const struct {
    Bytes bytes;
    const char* reason;
  } cases[] = {
      {{}, "is empty"},
      {text("hello"), "of no known kind: only PNG, JPEG"},
      {joined(text("II*"), {0, 0}), "is a TIFF file; convert it to PNG first"},
      {text("P2 1 1 255 0"), "is a PGM text file"},
      {text("BM123"), "cut short in its headers"},
      {Bmp{1, 1, 16, {}, {0, 0, 0, 0}}.bytes(), "has 16 bits per pixel"},
      {Bmp{1, 1, 8, kGrayPalette, {0, 0, 0, 0}, 1}.bytes(), "compressed"},
      {Bmp{1, 1, 8, {}, {0, 0, 0, 0}}.bytes(), "has no palette"},
      {Bmp{1, 1, 8, kGrayPalette, {2, 0, 0, 0}}.bytes(), "no colour in the palette"},
      {Bmp{3, 2, 24, {}, Bytes(20)}.bytes(), "cut short: its size is 3x2"},
      {Bmp{0, 2, 24, {}, Bytes(20)}.bytes(), "has no pixels"},
      {Bmp{INT32_MIN, INT32_MIN, 24, {}, Bytes(20)}.bytes(), "has no pixels"},
      {Bmp{2000000000, 2000000000, 8, kGrayPalette, {}}.bytes(), "too large: 2000000000x2000000000"},
      {text("P5 40000 40000 255\n"), "too large: 40000x40000 pixels of 1 bytes are more than 1 GiB"},
      {text("P5 2 2 65535\n12345678"), "has 16 bits per channel; convert it"},
      {text("P5 2 2 255\n123"), "cut short"},
      {text("P5 2"), "cut short in its header"},
      {text("P5 x 2 255\n"), "a number of its header is missing"},
      {from_hex("89504e470d0a1a0a0000000d49484452000000010000000110000000006aee47160000000b49444154789c631032"
                "0100005b00"
                "4796fb1b650000000049454e44ae426082"),
       "has 16 bits per channel; convert it"},
      {from_hex("89504e470d0a1a0a0000000d494844520000ea600000ea600800000000a5b92a9e0000000949444154789c630000"
                "000100015e"
                "ff7df90000000049454e44ae426082"),
       "too large: 60000x60000"},
      {cut(png, 1), "cut short"},
      {cut(png, 20), "cut short"},
      {damaged, "damaged"},
      {full_table, "a Huffman table has too many codes"},
      {cut(jpeg({8, 8, 1, Bytes(64, 77)}), 2), "cut short"},
      {cut(jpeg({8, 8, 1, Bytes(64, 77)}), 400), "cut short"},
  };
  for (const auto& c : cases) {
    try {
      decoded_picture(c.bytes, "the_file");
      ADD_FAILURE() << "is read, and not refused: " << c.reason;
    } catch (const PictureError& error) {
      EXPECT_THAT(error.what(), testing::StartsWith("the_file: "));
      EXPECT_THAT(error.what(), HasSubstr(c.reason));
    }
  }
}

TEST(Picture, IsWrittenByTheEndingOfTheName) {
  const TemporaryDirectory directory;
  for (const Picture& picture :
       {Picture{3, 2, 1, {1, 2, 3, 4, 5, 6}}, Picture{1, 2, 3, {1, 2, 3, 4, 5, 6}}}) {
    for (const auto& [name, start] : {std::pair("a.BMP", "BM"), std::pair("a.png", "\x89PNG")}) {
      write_picture(picture, directory.file(name));
      const Bytes bytes = read_file(directory.file(name), 2000);
      EXPECT_TRUE(
          std::equal(start, start + 2, bytes.begin(), [](char a, uint8_t b) { return uint8_t(a) == b; }));
      EXPECT_EQ(read_picture(directory.file(name)).pixels, picture.pixels);
    }
  }
  EXPECT_EQ(decoded_picture(pnm_of({1, 1, 3, {1, 2, 3}}), "").pixels, (Bytes{1, 2, 3}));
  EXPECT_EQ(base64(text("light w")) + base64(text("light wo")), "bGlnaHQgdw==bGlnaHQgd28=");
}

}  // namespace

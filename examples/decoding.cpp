// Pictures decoded from the bytes of files.
//
// PNG and JPEG files are decoded by stb_image. It fills in what is missing at the end of a JPEG file, and it
// does not look at the checksums of a PNG file. So the structure of both is checked first. BMP, PGM and PPM
// files are decoded here: their headers say where each pixel is, and a file that is cut short is found at once.

#include <stb/stb_image.h>
#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "picture.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int64_t kMostBytes = int64_t{1} << 30;

// An error with bytes whose file the caller knows.
struct BadPicture : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Checks the size that a header states, before memory is allocated for it.
void check_size(int64_t width, int64_t height, int64_t channels) {
  if (width <= 0 || height <= 0) throw BadPicture("has no pixels: its size is " + size_text(width, height));
  if (width > kMostBytes || height > kMostBytes || width * height > kMostBytes / channels) {
    throw BadPicture("too large: " + size_text(width, height) + " pixels of " + std::to_string(channels) +
                     " bytes are more than 1 GiB");
  }
}

uint32_t little_endian(const Bytes& bytes, std::size_t at, int count) {
  uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i) value = value << 8 | bytes[at + static_cast<std::size_t>(i)];
  return value;
}

uint32_t big_endian(const Bytes& bytes, std::size_t at, int count) {
  uint32_t value = 0;
  for (int i = 0; i < count; ++i) value = value << 8 | bytes[at + static_cast<std::size_t>(i)];
  return value;
}

bool begins_with(const Bytes& bytes, std::string_view start) {
  return bytes.size() >= start.size() &&
         std::equal(start.begin(), start.end(), bytes.begin(),
                    [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; });
}

// Replaces a colour picture without colours by a gray one.
void drop_equal_channels(Picture& picture) {
  const Bytes& p = picture.pixels;
  for (std::size_t i = 0; i < p.size(); i += 3) {
    if (p[i] != p[i + 1] || p[i] != p[i + 2]) return;
  }
  Picture gray = blank(picture.width, picture.height, 1);
  for (std::size_t i = 0; i < gray.pixels.size(); ++i) gray.pixels[i] = p[3 * i];
  picture = std::move(gray);
}

// ---- PNG and JPEG -----------------------------------------------------------------------------------------

std::array<uint32_t, 256> crc_table() {
  std::array<uint32_t, 256> table{};
  for (uint32_t i = 0; i < 256; ++i) {
    uint32_t crc = i;
    for (int bit = 0; bit < 8; ++bit) crc = crc % 2 != 0 ? crc >> 1 ^ 0xEDB88320U : crc >> 1;
    table[i] = crc;
  }
  return table;
}

uint32_t crc_of(const Bytes& bytes, std::size_t at, std::size_t count) {
  static const std::array<uint32_t, 256> kTable = crc_table();
  uint32_t crc = ~0U;
  for (std::size_t i = at; i < at + count; ++i) crc = crc >> 8 ^ kTable[(crc ^ bytes[i]) & 255];
  return ~crc;
}

void check_png(const Bytes& bytes) {
  for (std::size_t at = 8;;) {
    if (bytes.size() - at < 12) throw BadPicture("cut short");
    const std::size_t length = big_endian(bytes, at, 4);
    if (length > bytes.size() - at - 12) throw BadPicture("cut short");
    if (crc_of(bytes, at + 4, length + 4) != big_endian(bytes, at + 8 + length, 4)) {
      throw BadPicture("damaged: a checksum does not fit");
    }
    if (big_endian(bytes, at + 4, 4) == 0x49454E44) return;  // IEND
    at += length + 12;
  }
}

// Checks the Huffman tables of a segment, because stb_image writes past its own tables if one has too many codes.
void check_huffman_tables(const Bytes& bytes, std::size_t at, std::size_t end) {
  constexpr std::size_t kLengths = 16;
  while (at < end) {
    if (end - at < 1 + kLengths) throw BadPicture("damaged: a Huffman table is cut short");
    std::size_t codes = 0;
    for (std::size_t i = 1; i <= kLengths; ++i) codes += bytes[at + i];
    if (codes > 256) throw BadPicture("damaged: a Huffman table has too many codes");
    at += 1 + kLengths + codes;
  }
}

// Walks from marker to marker until the end of the image.
void check_jpeg(const Bytes& bytes) {
  constexpr uint8_t kEnd = 0xD9;
  constexpr uint8_t kScan = 0xDA;
  constexpr uint8_t kHuffmanTables = 0xC4;
  const auto is_alone = [](uint8_t marker) { return marker == 1 || (marker >= 0xD0 && marker <= 0xD7); };
  for (std::size_t at = 2; at + 1 < bytes.size();) {
    const uint8_t marker = bytes[at + 1];
    if (bytes[at] != 0xFF) throw BadPicture("damaged: a marker is missing");
    if (marker == kEnd) return;
    if (marker == 0xFF) {
      ++at;
    } else if (is_alone(marker)) {
      at += 2;
    } else if (at + 4 > bytes.size()) {
      break;
    } else {
      const std::size_t next = at + 2 + big_endian(bytes, at + 2, 2);
      if (next > bytes.size()) break;
      if (marker == kHuffmanTables) check_huffman_tables(bytes, at + 4, next);
      at = next;
      if (marker != kScan) continue;
      while (at + 1 < bytes.size() && (bytes[at] != 0xFF || bytes[at + 1] == 0 || is_alone(bytes[at + 1])))
        ++at;
    }
  }
  throw BadPicture("cut short");
}

// Decodes a PNG or JPEG file whose structure is sound.
Picture decoded_by_stb(const Bytes& bytes) {
  const auto length = static_cast<int>(bytes.size());
  const auto refuse = [] { throw BadPicture(std::string("damaged: ") + stbi_failure_reason()); };
  int width = 0;
  int height = 0;
  int components = 0;
  if (stbi_info_from_memory(bytes.data(), length, &width, &height, &components) == 0) refuse();
  if (stbi_is_16_bit_from_memory(bytes.data(), length) != 0) {
    throw BadPicture("has 16 bits per channel; convert it to 8 bits first");
  }
  check_size(width, height, components);
  const int channels = components <= 2 ? 1 : 3;
  const std::unique_ptr<uint8_t, decltype(&stbi_image_free)> pixels(
      stbi_load_from_memory(bytes.data(), length, &width, &height, &components, channels), stbi_image_free);
  if (!pixels) refuse();
  Picture picture = blank(width, height, channels);
  std::copy_n(pixels.get(), picture.pixels.size(), picture.pixels.begin());
  for (std::size_t i = 0; channels == 3 && i < picture.pixels.size(); i += 3) {
    std::swap(picture.pixels[i], picture.pixels[i + 2]);
  }
  return picture;
}

// Decodes a PNG file. Its size is checked here, because stb_image does not tell a large picture from a damaged one.
Picture decoded_png(const Bytes& bytes) {
  check_png(bytes);
  constexpr std::array<int64_t, 7> kChannels = {1, 0, 3, 3, 2, 0, 4};  // by the type of colour
  const int64_t channels = bytes.size() >= 33 && bytes[25] < kChannels.size() ? kChannels[bytes[25]] : 0;
  if (channels == 0) throw BadPicture("damaged: its header is wrong");
  check_size(big_endian(bytes, 16, 4), big_endian(bytes, 20, 4), channels);
  Picture picture = decoded_by_stb(bytes);
  constexpr uint8_t kPalette = 3;
  if (bytes[25] == kPalette) drop_equal_channels(picture);
  return picture;
}

Picture decoded_jpeg(const Bytes& bytes) {
  check_jpeg(bytes);
  return decoded_by_stb(bytes);
}

// ---- BMP --------------------------------------------------------------------------------------------------

struct BmpHeader {
  int64_t pixel_offset = 0;
  int64_t width = 0;
  int64_t height = 0;
  bool top_down = false;
  int64_t depth = 0;
  int64_t palette_offset = 0;
  int64_t palette_entries = 0;
  int64_t entry_bytes = 4;

  int64_t row_bytes() const { return (width * depth + 7) / 8; }
  int64_t stride() const { return (width * depth + 31) / 32 * 4; }
};

void check_compression(const Bytes& bytes, uint32_t compression, int64_t depth) {
  constexpr uint32_t kNone = 0;
  constexpr uint32_t kMasks = 3;
  if (compression == kNone) return;
  if (compression != kMasks || depth != 32) throw BadPicture("compressed; save it without compression");
  if (bytes.size() < 66) throw BadPicture("cut short in its headers");
  if (little_endian(bytes, 54, 4) != 0xFF0000 || little_endian(bytes, 58, 4) != 0xFF00 ||
      little_endian(bytes, 62, 4) != 0xFF) {
    throw BadPicture("stores its channels in an unusual order; save it with 24 bits per pixel");
  }
}

BmpHeader bmp_header(const Bytes& bytes) {
  constexpr int64_t kFileHeader = 14;
  constexpr int64_t kOldInfoHeader = 12;  // with sizes of 16 bits, and palette entries of 3 bytes
  if (bytes.size() < 26) throw BadPicture("cut short in its headers");
  BmpHeader header;
  const int64_t info = little_endian(bytes, 14, 4);
  header.pixel_offset = little_endian(bytes, 10, 4);
  uint32_t compression = 0;
  if (info == kOldInfoHeader) {
    header.width = little_endian(bytes, 18, 2);
    header.height = little_endian(bytes, 20, 2);
    header.depth = little_endian(bytes, 24, 2);
    header.entry_bytes = 3;
  } else {
    if (bytes.size() < 54) throw BadPicture("cut short in its headers");
    header.width = static_cast<int32_t>(little_endian(bytes, 18, 4));
    header.height = static_cast<int32_t>(little_endian(bytes, 22, 4));
    header.top_down = header.height < 0;
    if (header.top_down) header.height = -header.height;
    header.depth = little_endian(bytes, 28, 2);
    compression = little_endian(bytes, 30, 4);
    header.palette_entries = little_endian(bytes, 46, 4);
  }
  const int64_t depth = header.depth;
  if (depth != 1 && depth != 4 && depth != 8 && depth != 24 && depth != 32) {
    throw BadPicture("has " + std::to_string(depth) + " bits per pixel; save it with 8 or 24");
  }
  check_compression(bytes, compression, depth);
  check_size(header.width, header.height, std::max<int64_t>(depth / 8, 1));
  if (header.pixel_offset < kFileHeader + info) throw BadPicture("damaged: its pixels begin in its headers");
  if (depth <= 8) {
    header.palette_offset = kFileHeader + info;
    const int64_t most = int64_t{1} << depth;
    const int64_t room = (header.pixel_offset - header.palette_offset) / header.entry_bytes;
    if (header.palette_entries == 0 || header.palette_entries > most) header.palette_entries = most;
    header.palette_entries = std::min(header.palette_entries, room);
    if (header.palette_entries == 0) throw BadPicture("has no palette");
  }
  // The padding of the last row may be missing.
  if (static_cast<int64_t>(bytes.size()) <
      header.pixel_offset + header.stride() * (header.height - 1) + header.row_bytes()) {
    throw BadPicture("cut short: its size is " + size_text(header.width, header.height) +
                     ", and it has only " + std::to_string(bytes.size()) + " bytes");
  }
  return header;
}

Picture decoded_bmp(const Bytes& bytes) {
  const BmpHeader header = bmp_header(bytes);
  Picture picture = blank(static_cast<int32_t>(header.width), static_cast<int32_t>(header.height), 3);
  uint8_t* out = picture.pixels.data();
  for (int64_t y = 0; y < header.height; ++y) {
    const int64_t row = header.top_down ? y : header.height - 1 - y;
    const uint8_t* in = bytes.data() + header.pixel_offset + row * header.stride();
    for (int64_t x = 0; x < header.width; ++x, out += 3) {
      const uint8_t* colour = in + x * header.depth / 8;
      if (header.depth <= 8) {
        const int64_t bit = x * header.depth % 8;
        const int64_t index = *colour >> (8 - header.depth - bit) & ((1 << header.depth) - 1);
        if (index >= header.palette_entries)
          throw BadPicture("damaged: a pixel has no colour in the palette");
        colour = bytes.data() + header.palette_offset + index * header.entry_bytes;
      }
      std::copy_n(colour, 3, out);
    }
  }
  if (header.depth <= 8) drop_equal_channels(picture);
  return picture;
}

// ---- PGM and PPM ------------------------------------------------------------------------------------------

// The next number of the header, after white space and comments.
int64_t header_number(const Bytes& bytes, std::size_t& at) {
  while (at < bytes.size() && (std::isspace(bytes[at]) != 0 || bytes[at] == '#')) {
    if (bytes[at] == '#') {
      const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
      at = static_cast<std::size_t>(std::find(begin, bytes.end(), '\n') - bytes.begin());
    } else {
      ++at;
    }
  }
  int64_t value = 0;
  const std::size_t begin = at;
  while (at < bytes.size() && std::isdigit(bytes[at]) != 0 && at - begin < 10)
    value = value * 10 + bytes[at++] - '0';
  if (at == bytes.size()) throw BadPicture("cut short in its header");
  if (at == begin) throw BadPicture("damaged: a number of its header is missing");
  return value;
}

Picture decoded_pnm(const Bytes& bytes) {
  const int32_t channels = bytes[1] == '5' ? 1 : 3;
  std::size_t at = 2;
  const int64_t width = header_number(bytes, at);
  const int64_t height = header_number(bytes, at);
  const int64_t white = header_number(bytes, at);
  ++at;  // one white space
  if (white > 255) throw BadPicture("has 16 bits per channel; convert it to 8 bits first");
  if (white == 0) throw BadPicture("damaged: its white is 0");
  check_size(width, height, channels);
  if (static_cast<int64_t>(bytes.size() - at) < width * height * channels) throw BadPicture("cut short");
  Picture picture = blank(width, height, channels);
  for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
    picture.pixels[i] =
        static_cast<uint8_t>(std::min<int64_t>((bytes[at + i] * 255 + white / 2) / white, 255));
  }
  for (std::size_t i = 0; channels == 3 && i < picture.pixels.size(); i += 3) {
    std::swap(picture.pixels[i], picture.pixels[i + 2]);
  }
  return picture;
}

// ---- Kinds of files ---------------------------------------------------------------------------------------

struct Kind {
  std::string_view start;
  Picture (*decoded)(const Bytes&);  // null: known, and not read
  const char* name;
};

using namespace std::string_view_literals;

constexpr Kind kKinds[] = {
    {"\x89PNG\r\n\x1a\n"sv, decoded_png, "PNG"},
    {"\xFF\xD8\xFF"sv, decoded_jpeg, "JPEG"},
    {"BM"sv, decoded_bmp, "BMP"},
    {"P5"sv, decoded_pnm, "PGM"},
    {"P6"sv, decoded_pnm, "PPM"},
    {"P1"sv, nullptr, "PBM"},
    {"P2"sv, nullptr, "PGM text"},
    {"P3"sv, nullptr, "PPM text"},
    {"P4"sv, nullptr, "PBM"},
    {"II*\0"sv, nullptr, "TIFF"},
    {"MM\0*"sv, nullptr, "TIFF"},
    {"GIF8"sv, nullptr, "GIF"},
};

Picture decoded(const Bytes& bytes) {
  if (bytes.empty()) throw BadPicture("is empty");
  for (const Kind& kind : kKinds) {
    if (!begins_with(bytes, kind.start)) continue;
    if (kind.decoded != nullptr) return kind.decoded(bytes);
    throw BadPicture(std::string("is a ") + kind.name + " file; convert it to PNG first");
  }
  throw BadPicture("of no known kind: only PNG, JPEG, BMP, PGM and PPM are read");
}

}  // namespace

Picture decoded_picture(const std::vector<uint8_t>& bytes, const std::string& file) {
  try {
    return decoded(bytes);
  } catch (const BadPicture& error) {
    throw PictureError(file, error.what());
  } catch (const std::bad_alloc&) {
    throw PictureError(file, "too large for the memory");
  }
}

// Pictures for the hosts.
//
// PNG and JPEG files are decoded by stb_image. It fills in what is missing at the end of a JPEG file, and it
// does not look at the checksums of a PNG file. So the structure of both is checked first. BMP, PGM and PPM
// files are decoded here: their headers say where each pixel is, and a file that is cut short is found at once.

#include "picture.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <numeric>
#include <string_view>

#include "NuvImgSDK2014DLL.h"
#include "standard_streams.h"

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#endif
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#define STBI_NO_SIMD  // the same pixels on all processors
#include <stb/stb_image.h>
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<uint8_t>;

constexpr int64_t kMostBytes = int64_t{1} << 30;
constexpr int64_t kMostHeaderBytes = int64_t{1} << 24;  // room for text and colour profiles in a file

// An error with bytes whose file the caller knows.
struct BadPicture : std::runtime_error {
  using std::runtime_error::runtime_error;
};

std::string size_text(int64_t width, int64_t height) {
  return std::to_string(width) + "x" + std::to_string(height);
}

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

// Walks from marker to marker until the end of the image.
void check_jpeg(const Bytes& bytes) {
  constexpr uint8_t kEnd = 0xD9;
  constexpr uint8_t kScan = 0xDA;
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
      at += 2 + big_endian(bytes, at + 2, 2);
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

Picture decoded_png(const Bytes& bytes) {
  check_png(bytes);
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
    if (bytes[at] == '#')
      at = static_cast<std::size_t>(
          std::find(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end(), '\n') - bytes.begin());
    else
      ++at;
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

// Reads a stream to its end.
Bytes read_stream(std::istream& stream, const std::string& file, uint64_t most) {
  constexpr std::size_t kStep = 1 << 20;
  Bytes bytes;
  for (std::size_t size = 0;;) {
    bytes.resize(size + kStep);
    errno = 0;
    stream.read(reinterpret_cast<char*>(bytes.data() + size), kStep);
    size += static_cast<std::size_t>(stream.gcount());
    if (stream.bad()) throw PictureError(file, errno != 0 ? std::strerror(errno) : "cannot be read");
    if (size > most) throw PictureError(file, "too large: more than " + std::to_string(most >> 20) + " MiB");
    bytes.resize(size);
    if (!stream) return bytes;
  }
}

Bytes png_of(const Picture& picture) {
  Bytes rgb = picture.pixels;
  for (std::size_t i = 0; picture.channels == 3 && i < rgb.size(); i += 3) std::swap(rgb[i], rgb[i + 2]);
  Bytes png;
  const auto append = [](void* to, void* data, int count) {
    const auto* begin = static_cast<const uint8_t*>(data);
    static_cast<Bytes*>(to)->insert(static_cast<Bytes*>(to)->end(), begin, begin + count);
  };
  const int stride = picture.width * picture.channels;
  if (stbi_write_png_to_func(append, &png, picture.width, picture.height, picture.channels, rgb.data(),
                             stride) == 0) {
    throw std::bad_alloc();
  }
  return png;
}

Bytes bmp_of(const Picture& picture) {
  const int32_t entries = picture.channels == 1 ? 256 : 0;
  const uint32_t offset = 54 + 4 * static_cast<uint32_t>(entries);
  const std::size_t row =
      static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels);
  const std::size_t stride = (row + 3) / 4 * 4;
  const std::size_t pixels = stride * static_cast<std::size_t>(picture.height);
  Bytes bmp;
  bmp.reserve(offset + pixels);
  const auto put = [&bmp](std::size_t value, int count) {
    for (int i = 0; i < count; ++i) bmp.push_back(static_cast<uint8_t>(value >> 8 * i));
  };
  put('B' + 256 * 'M', 2);
  put(offset + pixels, 4);
  put(0, 4);
  put(offset, 4);
  put(40, 4);
  put(static_cast<std::size_t>(picture.width), 4);
  put(static_cast<std::size_t>(picture.height), 4);
  put(1, 2);
  put(static_cast<std::size_t>(picture.channels) * 8, 2);
  put(0, 4);
  put(pixels, 4);
  for (int i = 0; i < 4; ++i) put(0, 4);
  for (std::size_t i = 0; i < static_cast<std::size_t>(entries); ++i) put(i * 0x010101, 4);
  for (int32_t y = picture.height - 1; y >= 0; --y) {
    const auto begin =
        picture.pixels.begin() + static_cast<std::ptrdiff_t>(y) * static_cast<std::ptrdiff_t>(row);
    bmp.insert(bmp.end(), begin, begin + static_cast<std::ptrdiff_t>(row));
    bmp.resize(bmp.size() + stride - row);
  }
  return bmp;
}

}  // namespace

std::vector<uint8_t> read_file(const std::string& file, uint64_t most) {
  if (file == "-") {
    make_binary(stdin);
    return read_stream(std::cin, file, most);
  }
  std::error_code unknown;
  if (fs::is_directory(file, unknown)) throw PictureError(file, "is a folder");
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw PictureError(file, errno != 0 ? std::strerror(errno) : "cannot be read");
  return read_stream(stream, file, most);
}

void write_file(const std::vector<uint8_t>& bytes, const std::string& file) {
  if (file == "-") {
    make_binary(stdout);
    write_output(bytes.data(), bytes.size());
    return;
  }
  errno = 0;
  std::ofstream stream(file, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  if (stream) return;
  const std::string reason = errno != 0 ? std::strerror(errno) : "cannot be written";
  std::error_code unknown;
  if (fs::is_regular_file(file, unknown)) fs::remove(file, unknown);
  throw PictureError(file, reason);
}

Picture decoded_picture(const std::vector<uint8_t>& bytes, const std::string& file) {
  try {
    return decoded(bytes);
  } catch (const BadPicture& error) {
    throw PictureError(file, error.what());
  } catch (const std::bad_alloc&) {
    throw PictureError(file, "too large for the memory");
  }
}

Picture read_picture(const std::string& file) {
  return decoded_picture(read_file(file, kMostBytes + kMostHeaderBytes), file);
}

void write_picture(const Picture& picture, const std::string& file) {
  write_file(ending_of(file) == ".bmp" ? bmp_of(picture) : png_of(picture), file);
}

std::string ending_of(const std::string& file) {
  std::string ending = fs::path(file).extension().string();
  for (char& c : ending) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return ending;
}

bool is_picture_name(const std::string& file) {
  constexpr std::string_view kEndings[] = {".png", ".jpg", ".jpeg", ".bmp", ".pgm", ".ppm"};
  return std::find(std::begin(kEndings), std::end(kEndings), ending_of(file)) != std::end(kEndings);
}

void check_result(const std::string& picture, const std::string& result) {
  std::error_code unknown;
  if (fs::equivalent(picture, result, unknown)) throw PictureError(result, "is the picture itself");
}

Picture blank(int32_t width, int32_t height, int32_t channels, uint8_t value) {
  const int64_t bytes = int64_t{width} * height * channels;
  return {width, height, channels, Bytes(static_cast<std::size_t>(bytes), value)};
}

Picture blank_like(const Picture& picture) {
  return blank(picture.width, picture.height);
}

Picture to_gray(Picture& picture) {
  if (picture.channels == 1) return picture;
  Picture gray = blank_like(picture);
  NuvRGB2Gry(picture.pixels.data(), picture.width, picture.height, gray.pixels.data());
  return gray;
}

Picture to_colour(Picture& picture) {
  if (picture.channels == 3) return picture;
  Picture colour = blank(picture.width, picture.height, 3);
  uint8_t* gray = picture.pixels.data();
  NuvGry2RGBImg(gray, gray, gray, picture.width, picture.height, colour.pixels.data());
  return colour;
}

Histogram histogram_of(Picture& gray) {
  Histogram bins;
  NuvGetHistogram(gray.pixels.data(), gray.width, gray.height, bins.data());
  return bins;
}

Histogram scaled_down(Histogram bins, int32_t most_pixels) {
  const int32_t pixels = std::accumulate(bins.begin(), bins.end(), 0);
  const int32_t divisor = (pixels - 1) / most_pixels + 1;
  for (int32_t& count : bins) count = (count + divisor - 1) / divisor;
  return bins;
}

int32_t otsu_threshold(Picture& gray) {
  constexpr int32_t kMostPixels = 8000000;  // 31 bits hold their sum at gray value 255
  Histogram bins = scaled_down(histogram_of(gray), kMostPixels);
  // The library returns the highest gray value of the dark class.
  return NuvGetOtsuThreshold(bins.data(), 256) + 1;
}

#include "picture.h"

#include <stb/stb_image_write.h>
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <new>
#include <numeric>
#include <string_view>
#include <utility>

#include "NuvImgSDK2014DLL.h"
#include "standard_streams.h"

namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<uint8_t>;

// The pixels of the largest picture, and room for text and colour profiles.
constexpr uint64_t kMostFileBytes = (uint64_t{1} << 30) + (uint64_t{1} << 24);

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
    if (size > most) throw PictureError(file, "too large: more than " + std::to_string(most) + " bytes");
    bytes.resize(size);
    if (!stream) return bytes;
  }
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

Picture read_picture(const std::string& file) {
  return decoded_picture(read_file(file, kMostFileBytes), file);
}

std::vector<uint8_t> png_of(const Picture& picture) {
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

std::vector<uint8_t> pnm_of(const Picture& picture) {
  const std::string header = std::string(picture.channels == 1 ? "P5" : "P6") + "\n" +
                             std::to_string(picture.width) + " " + std::to_string(picture.height) + "\n255\n";
  Bytes bytes(header.begin(), header.end());
  bytes.insert(bytes.end(), picture.pixels.begin(), picture.pixels.end());
  for (std::size_t i = header.size(); picture.channels == 3 && i < bytes.size(); i += 3)
    std::swap(bytes[i], bytes[i + 2]);
  return bytes;
}

std::string base64(const std::vector<uint8_t>& bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) group = group << 8 | (k < count ? bytes[i + k] : 0U);
    for (std::size_t k = 0; k < 4; ++k) text += k <= count ? kDigits[group >> (18 - 6 * k) & 63] : '=';
  }
  return text;
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

std::string size_text(int64_t width, int64_t height) {
  return std::to_string(width) + "x" + std::to_string(height);
}

std::string size_text(const Picture& picture) {
  return size_text(picture.width, picture.height);
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
  constexpr int32_t kMostPixels = 8000000;  // 31 bits hold their sum at level 255
  Histogram bins = scaled_down(histogram_of(gray), kMostPixels);
  // The library has no threshold for two gray values; it is the brighter one.
  if (bins.size() - static_cast<std::size_t>(std::count(bins.begin(), bins.end(), 0)) <= 2) {
    return *std::max_element(gray.pixels.begin(), gray.pixels.end());
  }
  // The library returns the highest level of the dark class.
  return NuvGetOtsuThreshold(bins.data(), 256) + 1;
}

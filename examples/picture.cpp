#include "picture.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>

#include "NuvImgSDK2014DLL.h"

namespace {

namespace fs = std::filesystem;

constexpr int64_t kHeaderBytes = 54;

struct Header {
  int64_t pixel_offset;
  int64_t width;
  int64_t height;
  int32_t depth;
  uint32_t compression;

  int64_t row_bytes() const { return width * (depth / 8); }
  int64_t padded_row_bytes() const { return (row_bytes() + 3) / 4 * 4; }
  // The padding of the last row may be missing from a colour file.
  int64_t least_file_bytes() const {
    return pixel_offset + padded_row_bytes() * (height - 1) + (depth == 8 ? padded_row_bytes() : row_bytes());
  }
};

uint32_t little_endian(const uint8_t* bytes, int count) {
  uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i) value = value << 8 | bytes[i];
  return value;
}

Header read_header(const std::string& file) {
  std::error_code unknown;
  if (fs::is_directory(file, unknown)) throw PictureError(file, "is a directory");
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw PictureError(file, std::strerror(errno));
  std::array<uint8_t, kHeaderBytes> bytes{};
  stream.read(reinterpret_cast<char*>(bytes.data()), kHeaderBytes);
  if (bytes[0] != 'B' || bytes[1] != 'M') throw PictureError(file, "not a BMP file");
  if (stream.gcount() < kHeaderBytes) throw PictureError(file, "truncated in its headers");
  return {little_endian(&bytes[10], 4), static_cast<int32_t>(little_endian(&bytes[18], 4)),
          static_cast<int32_t>(little_endian(&bytes[22], 4)),
          static_cast<int32_t>(little_endian(&bytes[28], 2)), little_endian(&bytes[30], 4)};
}

void check(const Header& header, const std::string& file) {
  if (header.depth != 8 && header.depth != 24) {
    throw PictureError(file, std::to_string(header.depth) + " bits per pixel; only 8 and 24 are supported");
  }
  if (header.compression != 0) throw PictureError(file, "compressed");
  const std::string size = std::to_string(header.width) + "x" + std::to_string(header.height);
  if (header.width <= 0 || header.height <= 0 || header.width * header.height > INT32_MAX / 27) {
    throw PictureError(file, "unsupported size " + size);
  }
  if (header.pixel_offset < kHeaderBytes) throw PictureError(file, "pixels said to begin in the headers");
  std::error_code unknown;
  const auto bytes = static_cast<int64_t>(fs::file_size(file, unknown));
  if (unknown || bytes < header.least_file_bytes()) {
    throw PictureError(file, "truncated: too short for " + size + " pixels");
  }
}

}  // namespace

Picture read_picture(const std::string& file) {
  const Header header = read_header(file);
  check(header, file);

  Picture picture;
  picture.channels = header.depth / 8;
  const auto read = picture.channels == 1 ? NuvRead8BitBmpFile2Img : NuvRead24BitBmpFile2Img;
  const std::unique_ptr<uint8_t[]> pixels(read(file.c_str(), &picture.width, &picture.height));
  if (!pixels) throw PictureError(file, "cannot be read");
  const int64_t bytes = int64_t{picture.width} * picture.height * picture.channels;
  picture.pixels.assign(pixels.get(), pixels.get() + bytes);
  return picture;
}

void check_result(const std::string& picture, const std::string& result) {
  std::error_code unknown;
  if (fs::equivalent(picture, result, unknown)) throw PictureError(result, "is the picture itself");
}

void write_picture(Picture& picture, const std::string& file) {
  const auto write = picture.channels == 1 ? NuvWrite8BitImg2BmpFile : NuvWrite24BitImg2BmpFile;
  std::error_code unknown;
  errno = 0;
  const bool written = write(picture.pixels.data(), picture.width, picture.height, file.c_str());
  const std::string reason = errno != 0 ? std::strerror(errno) : "cannot be written";
  // A full disk can cause an error as late as when the file is closed, so the size is checked, too.
  const bool is_file = fs::is_regular_file(file, unknown);
  if (written && (!is_file || fs::file_size(file, unknown) >= picture.pixels.size())) return;
  if (is_file && fs::file_size(file, unknown) < picture.pixels.size()) fs::remove(file, unknown);
  throw PictureError(file, reason);
}

Picture to_gray(Picture& picture) {
  if (picture.channels == 1) return picture;
  Picture gray{picture.width, picture.height, 1, std::vector<uint8_t>(picture.pixels.size() / 3)};
  NuvRGB2Gry(picture.pixels.data(), picture.width, picture.height, gray.pixels.data());
  return gray;
}

Picture to_colour(Picture& picture) {
  if (picture.channels == 3) return picture;
  Picture colour{picture.width, picture.height, 3, std::vector<uint8_t>(picture.pixels.size() * 3)};
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
  // The library returns the highest level of the dark class.
  return NuvGetOtsuThreshold(bins.data(), 256) + 1;
}

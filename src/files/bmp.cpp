// BMP files.
//
// One reader and one writer serve both depths. A depth consists of the bytes per pixel, the palette and the
// rule for the padding. The reader checks neither the signature nor the depth. Before it allocates, it
// compares the size that the header states with the size of the file: a hostile header costs no memory, and
// the result is null, as after a short read.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "core/buffer.h"
#include "core/views.h"
#include "files/file.h"
#include "nuv/files.h"

namespace nuv {
namespace {

constexpr uint32_t kHeaderBytes = 54;  // 14 for the file, 40 for the image
constexpr int kPaletteEntries = 256;

int64_t padding_of(int64_t row_bytes) {
  return -row_bytes & 3;
}

// Writes little-endian fields one after the other.
class HeaderWriter {
 public:
  void put16(uint32_t value) { put(value, 2); }
  void put32(uint32_t value) { put(value, 4); }
  const uint8_t* bytes() const { return bytes_.data(); }

 private:
  void put(uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes_[at_++] = static_cast<uint8_t>(value >> (8 * i));
  }

  std::array<uint8_t, kHeaderBytes> bytes_{};
  std::size_t at_ = 0;
};

uint32_t field32(const uint8_t* bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

// Rows of a file, padding included, that are read or written at once: as many as fit in a block, at least
// one.
class RowBlock {
 public:
  RowBlock(std::size_t row_bytes, int64_t height)
      : row_bytes_(row_bytes),
        rows_(std::clamp<std::size_t>(kBlockBytes / row_bytes, 1, static_cast<std::size_t>(height))),
        bytes_(allocate<uint8_t>(row_bytes * rows_)) {}

  bool allocated() const { return bytes_ != nullptr; }
  std::size_t rows() const { return rows_; }
  uint8_t* row(std::size_t i) const { return &bytes_[i * row_bytes_]; }

 private:
  static constexpr std::size_t kBlockBytes = 64 * 1024;

  std::size_t row_bytes_;
  std::size_t rows_;
  Buffer<uint8_t> bytes_;
};

// ---- reading ----

// Whether the rows lie completely in the file. Only the 8-bit form requires the padding of the last row.
bool file_holds_rows(std::FILE* file, int64_t offset, int64_t row_bytes, int64_t height,
                     bool needs_last_padding) {
  if (std::fseek(file, 0, SEEK_END) != 0) return false;
  const int64_t available = static_cast<int64_t>(std::ftell(file)) - offset;
  const int64_t padding = padding_of(row_bytes);
  // The test divides, because the product of row size and height can exceed 64 bits.
  const int64_t tail = needs_last_padding ? 0 : padding;
  return available >= 0 && (available + tail) / (row_bytes + padding) >= height;
}

template <int BytesPerPixel>
uint8_t* read_bmp(const char* name, int32_t* width, int32_t* height) {
  *width = 0;
  *height = 0;
  const File file = open_file(name, "rb");
  if (!file) return nullptr;

  std::array<uint8_t, kHeaderBytes> header{};
  const bool complete = std::fread(header.data(), 1, kHeaderBytes, file.get()) == kHeaderBytes;
  const uint32_t offset = field32(&header[10]);
  if (!complete || offset < kHeaderBytes) return nullptr;

  *width = static_cast<int32_t>(field32(&header[18]));
  *height = static_cast<int32_t>(field32(&header[22]));
  if (*width < 0 || *height < 0) return nullptr;

  const int64_t row_bytes = static_cast<int64_t>(*width) * BytesPerPixel;
  if (row_bytes == 0 || *height == 0) return allocate<uint8_t>(0).release();
  if (!file_holds_rows(file.get(), offset, row_bytes, *height, BytesPerPixel == 1)) return nullptr;
  if (std::fseek(file.get(), static_cast<long>(offset), SEEK_SET) != 0) return nullptr;

  Buffer<uint8_t> pixels = allocate<uint8_t>(row_bytes * *height);
  const auto wanted = static_cast<std::size_t>(row_bytes);
  const auto padding = static_cast<std::size_t>(padding_of(row_bytes));
  const RowBlock block(wanted + padding, *height);
  if (!pixels || !block.allocated()) return nullptr;
  const Image<BytesPerPixel> image{pixels.get(), *width, *height};
  for (int32_t y = *height; y > 0;) {
    const auto rows = std::min<std::size_t>(block.rows(), static_cast<std::size_t>(y));
    const std::size_t needed = rows * (wanted + padding);
    const std::size_t given = std::fread(block.row(0), 1, needed, file.get());
    // The padding of the last row may be missing from a colour image.
    if (given + (BytesPerPixel == 1 ? 0 : padding) < needed) return nullptr;
    for (std::size_t i = 0; i < rows; ++i) {
      std::memcpy(image.row(--y), block.row(i), wanted);
    }
  }
  return pixels.release();
}

// ---- writing ----

struct PaletteEntry {
  uint8_t blue, green, red, reserved;
};
using Palette = std::array<PaletteEntry, kPaletteEntries>;

Palette gray_palette() {
  Palette palette{};
  for (int i = 0; i < kPaletteEntries; ++i) {
    const auto level = static_cast<uint8_t>(i);
    palette[i] = {level, level, level, 0};
  }
  return palette;
}

Palette mark_palette() {
  Palette palette = gray_palette();
  palette[252] = {0, 255, 255, 0};  // yellow
  palette[253] = {255, 0, 0, 0};    // blue
  palette[254] = {0, 255, 0, 0};    // green
  palette[255] = {0, 0, 255, 0};    // red
  return palette;
}

// Writes on after a short write, and remembers that there was one: the file is completed as far as possible.
class Writer {
 public:
  explicit Writer(std::FILE* file) : file_(file) {}

  void write(const void* bytes, std::size_t count) {
    good_ = std::fwrite(bytes, 1, count, file_) == count && good_;
  }
  bool good() const { return good_; }

 private:
  std::FILE* file_;
  bool good_ = true;
};

// The file size that the header states. It does not count padding, and it wraps at 32 bits, as the field
// does.
uint32_t stated_file_size(uint32_t width, uint32_t height, bool has_palette) {
  return has_palette ? width * height + 1078 : (width * height + 18) * 3;
}

template <int BytesPerPixel>
bool write_bmp(Image<BytesPerPixel> image, const char* name, const Palette* palette) {
  const File file = open_file(name, "w+b");
  if (!file) return false;
  const bool has_palette = palette != nullptr;

  const auto width = static_cast<uint32_t>(image.width);
  const auto height = static_cast<uint32_t>(image.height);
  HeaderWriter header;
  header.put16(0x4D42);  // "BM"
  header.put32(stated_file_size(width, height, has_palette));
  header.put32(0);
  header.put32(kHeaderBytes + (has_palette ? sizeof(Palette) : 0));
  header.put32(40);
  header.put32(width);
  header.put32(height);
  header.put16(1);
  header.put16(8 * BytesPerPixel);

  Writer writer(file.get());
  writer.write(header.bytes(), 14);
  writer.write(header.bytes() + 14, 40);
  if (has_palette) writer.write(palette->data(), sizeof(Palette));
  if (image.empty()) return writer.good();

  const std::size_t row_bytes = static_cast<std::size_t>(image.width) * BytesPerPixel;
  const auto padding = static_cast<std::size_t>(padding_of(static_cast<int64_t>(row_bytes)));
  const RowBlock block(row_bytes + padding, image.height);
  if (!block.allocated()) return false;
  for (int32_t y = image.height; y > 0;) {
    const auto rows = std::min<std::size_t>(block.rows(), static_cast<std::size_t>(y));
    for (std::size_t i = 0; i < rows; ++i) {
      const uint8_t* row = image.row(--y);
      std::memcpy(block.row(i), row, row_bytes);
      // Padding repeats the first byte of the last pixel.
      std::memset(block.row(i) + row_bytes, row[row_bytes - BytesPerPixel], padding);
    }
    writer.write(block.row(0), rows * (row_bytes + padding));
  }
  return writer.good();
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGetFileNakeName(char* pFileName, char* pNakeName) {
  const char* separator = std::strrchr(pFileName, '\\');
  const char* name = separator != nullptr ? separator + 1 : pFileName;
  std::memmove(pNakeName, name, std::strlen(name) + 1);
  pNakeName[std::strcspn(pNakeName, ".")] = '\0';
}

uint8_t* NuvRead8BitBmpFile2Img(const char* pFileName, int32_t* pWidth, int32_t* pHeight) {
  return read_bmp<1>(pFileName, pWidth, pHeight);
}

bool NuvWrite8BitImg2BmpFile(uint8_t* pGryImg, int32_t width, int32_t height, const char* pFileName) {
  const Palette palette = gray_palette();
  return write_bmp<1>({pGryImg, width, height}, pFileName, &palette);
}

bool NuvWrite8BitImg2BmpFileMarkColor(uint8_t* pGryImg, int32_t width, int32_t height,
                                      const char* pFileName) {
  const Palette palette = mark_palette();
  return write_bmp<1>({pGryImg, width, height}, pFileName, &palette);
}

uint8_t* NuvRead24BitBmpFile2Img(const char* pFileName, int32_t* pWidth, int32_t* pHeight) {
  return read_bmp<3>(pFileName, pWidth, pHeight);
}

bool NuvWrite24BitImg2BmpFile(uint8_t* pRGBImg, int32_t width, int32_t height, const char* pFileName) {
  return write_bmp<3>({pRGBImg, width, height}, pFileName, nullptr);
}

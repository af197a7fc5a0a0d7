// Pixels changed by their values.
//
// A rule without parameters is a row kernel. A rule that depends on the whole image is a table of 256 bytes.
// A gain that changes from column to column has one table per column. A block of columns is processed at a
// time, so that the image is still walked along its rows.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "contours/marks.h"
#include "core/arithmetic.h"
#include "core/borders.h"
#include "core/byte_counter.h"
#include "core/byte_sums.h"
#include "core/point_pass.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "nuv/arithmetic.h"

namespace nuv {
namespace {

// ---- rules ----

NUV_INLINE uint8_t inverted(uint8_t v) {
  return static_cast<uint8_t>(255 - v);
}
NUV_INLINE uint8_t white_if_odd(uint8_t v) {
  return (v & 1) != 0 ? 255 : v;
}
NUV_INLINE uint8_t clear_of_marks(uint8_t v) {
  return greater(lesser(v, kGreatestUnreserved), 1);
}

template <uint8_t (*Rule)(uint8_t)>
NUV_LOAD_BOUND_ROW_KERNEL void change(const uint8_t* in, uint8_t* out, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) out[i] = Rule(in[i]);
}

NUV_LOAD_BOUND_ROW_KERNEL void select_value(uint8_t* pixels, std::ptrdiff_t n, uint8_t value) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = pixels[i] == value ? 255 : 0;
}

// ---- tables from the histogram ----

ByteTable normalising_table(const Histogram& bins, int32_t pixels, int32_t avr, int32_t dev) {
  int32_t sum = 0;
  for (int32_t v = 0; v < kBins; ++v) sum += v * bins[v];
  const int32_t mean = quotient(sum, pixels);
  int32_t squares = 0;
  for (int32_t v = 0; v < kBins; ++v) squares += (v - mean) * (v - mean) * bins[v];
  const int32_t deviation = truncated(std::sqrt(static_cast<double>(squares) / pixels));
  ByteTable table;
  for (int32_t v = 0; v < kBins; ++v) {
    table[v] = low_byte(std::clamp(quotient((v - mean) * dev, deviation) + avr, 0, 255));
  }
  return table;
}

// The first value, counted from one end of the range, at which more than a tenth of the pixels have been
// passed; the end itself if there is none.
int32_t tenth_from(int32_t end, const Histogram& bins, int32_t pixels) {
  const int32_t step = end == 0 ? 1 : -1;
  int32_t count = 0;
  for (int32_t v = end; v >= 0 && v < kBins; v += step) {
    count += bins[v];
    if (count * 10 > pixels) return v;
  }
  return end;
}

ByteTable sixteen_levels_table(const Histogram& bins, int32_t pixels) {
  const int32_t low = tenth_from(0, bins, pixels);
  const int32_t high = tenth_from(kBins - 1, bins, pixels);
  ByteTable table{};
  for (int32_t v = low; v <= high; ++v) table[v] = low_byte(quotient((v - low) * 15, high - low));
  for (int32_t v = high + 1; v < kBins; ++v) table[v] = table[high];
  return table;
}

// ---- gains of rows and columns ----

ByteTable gain_table(double gain) {
  ByteTable table;
  for (int32_t v = 0; v < kBins; ++v) table[v] = v * gain > 255 ? 255 : low_byte(truncated(v * gain));
  return table;
}

// v times a gain in 1024ths. The result stays below the values that are reserved for marks.
NUV_INLINE uint8_t scaled(uint8_t v, int32_t gain) {
  const int32_t value = v * gain >> 10;
  return static_cast<uint8_t>(value > kGreatestUnreserved ? kGreatestUnreserved : value);
}

NUV_ROW_KERNEL void scale(uint8_t* pixels, int32_t gain, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = scaled(pixels[i], gain);
}
NUV_ROW_KERNEL void scale_each(uint8_t* NUV_RESTRICT pixels, const int32_t* NUV_RESTRICT gains,
                               std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] = scaled(pixels[i], gains[i]);
}

constexpr int32_t kMostLines = 4096;

// The sums of the rows or columns of an image. from_sums() turns them into the gains that bring each sum to
// the mean of all sums.
class LineGains {
 public:
  explicit LineGains(int32_t lines) : lines_(lines) { std::fill_n(entries_.begin(), lines, 0); }

  int32_t* entries() { return entries_.data(); }
  // Returns the mean of the sums.
  int32_t from_sums() {
    int32_t total = 0;
    for (int32_t i = 0; i < lines_; ++i) total += entries_[i];
    const int32_t mean = total / lines_;
    for (int32_t i = 0; i < lines_; ++i) entries_[i] = quotient(mean * 1024, entries_[i]);
    return mean;
  }

 private:
  int32_t lines_;
  std::array<int32_t, kMostLines> entries_;
};

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvInvertGryValue(uint8_t* pGryImg, int32_t width, int32_t height) {
  NuvInvertGryValue(pGryImg, width, height, pGryImg);
}

void NuvInvertGryValue(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg) {
  change<inverted>(pGryImg, pResImg, GrayImage{pGryImg, width, height}.size());
}

void NuvSetOddPixelsTo255(uint8_t* pGryImg, int32_t width, int32_t height) {
  change<white_if_odd>(pGryImg, pGryImg, GrayImage{pGryImg, width, height}.size());
}

void NuvChange0and250PlusPixels(uint8_t* pGryImg, int32_t width, int32_t height) {
  change<clear_of_marks>(pGryImg, pGryImg, GrayImage{pGryImg, width, height}.size());
}

void NuvSetPixelsTo255(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                       uint8_t value) {
  for_rows(image_of_any_height<1>(pGryImg, width), {x1, x2, y1, y2},
           [=](uint8_t* pixels, std::ptrdiff_t n) { select_value(pixels, n, value); });
}

void NuvGryImgNormalize(uint8_t* pGryImg, int32_t width, int32_t height, int32_t avr, int32_t dev) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  map_bytes(normalising_table(histogram_of(image), width * height, avr, dev), pGryImg, image.size());
}

void NuvGryImg4Bit(uint8_t* pGryImg, int32_t width, int32_t height) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  map_bytes(sixteen_levels_table(histogram_of(image), width * height), pGryImg, image.size());
}

void NuvCorrectPixelsGryValueByRow(uint8_t* pGryImg, int32_t width, int32_t height, double ratio) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  const int32_t half = height / 2;
  for (int32_t y = 0; y < height; ++y) {
    map_bytes(gain_table((y - half) * ((ratio - 1) / half) + 1), image.row(y), width);
  }
}

void NuvCorrectPixelsGryValueByCol(uint8_t* pGryImg, int32_t width, int32_t height, double ratio) {
  constexpr int32_t kBlock = 32;
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  ByteTable tables[kBlock];
  for (int32_t first = 0; first < width; first += kBlock) {
    const int32_t columns = std::min(kBlock, width - first);
    for (int32_t i = 0; i < columns; ++i) {
      tables[i] = gain_table(std::abs(first + i - width / 2) * ((ratio - 1) * 2 / width) + 1);
    }
    for (int32_t y = 0; y < height; ++y) {
      map_bytes([&tables](std::ptrdiff_t i) -> const ByteTable& { return tables[i]; }, image.at(first, y),
                columns);
    }
  }
}

int32_t NuvLightCorretPerRow(uint8_t* pGryImg, int32_t width, int32_t height) {
  const GrayImage image{pGryImg, width, height};
  if (height > kMostLines || image.empty()) return 0;
  LineGains gains(height);
  for (int32_t y = 0; y < height; ++y) gains.entries()[y] = sum_of_bytes(image.row(y), width);
  const int32_t mean = gains.from_sums();
  for (int32_t y = 0; y < height; ++y) scale(image.row(y), gains.entries()[y], width);
  return mean / width;
}

int32_t NuvLightCorretPerCol(uint8_t* pGryImg, int32_t width, int32_t height) {
  const GrayImage image{pGryImg, width, height};
  if (width > kMostLines || image.empty()) return 0;
  LineGains gains(width);
  for (int32_t y = 0; y < height; ++y) add_row(gains.entries(), image.row(y), width);
  const int32_t mean = gains.from_sums();
  for (int32_t y = 0; y < height; ++y) scale_each(image.row(y), gains.entries(), width);
  return mean / height;
}

void NuvSetImageBoundary(uint8_t* pGryImg, int32_t width, int32_t height, int32_t color) {
  set_side_bytes(GrayImage{pGryImg, width, height}, low_byte(color));
}

void NuvSetRGBImageBoundary(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t color) {
  set_side_bytes(RgbImage{pRGBImg, width, height}, low_byte(color));
}

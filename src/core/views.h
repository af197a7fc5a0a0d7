// Views of the caller's memory: images and their regions.

#ifndef NUV_CORE_VIEWS_H
#define NUV_CORE_VIEWS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace nuv {

struct Point {
  int32_t x;
  int32_t y;
};

// Columns x1..x2 of rows y1..y2, all four ends inclusive, in the order in which hosts pass them.
struct Region {
  int32_t x1;
  int32_t x2;
  int32_t y1;
  int32_t y2;

  static Region of(Point p) { return {p.x, p.x, p.y, p.y}; }
  // Extends the region to hold a point.
  void take_in(Point p) {
    x1 = std::min(x1, p.x);
    x2 = std::max(x2, p.x);
    y1 = std::min(y1, p.y);
    y2 = std::max(y2, p.y);
  }

  int32_t columns() const { return x2 - x1 + 1; }
  int32_t rows() const { return y2 - y1 + 1; }
  bool empty() const { return x1 > x2 || y1 > y2; }
  bool contains(int32_t x, int32_t y) const { return x >= x1 && x <= x2 && y >= y1 && y <= y2; }

  // The part of the region that lies in another one. The lower ends are only raised and the upper ends only
  // lowered, so the part is empty if the regions share no pixel.
  Region intersected(Region other) const {
    return {std::max(x1, other.x1), std::min(x2, other.x2), std::max(y1, other.y1), std::min(y2, other.y2)};
  }
  Region clamped_to(int32_t width, int32_t height) const {
    return intersected({0, std::max(width, 0) - 1, 0, std::max(height, 0) - 1});
  }
};

// Rows of width pixels of Channels bytes, without gaps, the top row first.
template <int Channels>
struct Image {
  uint8_t* pixels;
  int32_t width;
  int32_t height;

  bool empty() const { return width <= 0 || height <= 0; }
  std::ptrdiff_t size() const { return empty() ? 0 : static_cast<std::ptrdiff_t>(width) * height; }
  Region whole() const { return empty() ? Region{0, -1, 0, -1} : Region{0, width - 1, 0, height - 1}; }
  // The image minus a border. With a border of 1, every pixel has eight neighbours.
  Region interior(int32_t band = 1) const {
    return empty() ? whole() : Region{band, width - 1 - band, band, height - 1 - band};
  }

  bool contains(int32_t x, int32_t y) const { return x >= 0 && x < width && y >= 0 && y < height; }
  uint8_t* at(int32_t x, int32_t y) const {
    return pixels + (static_cast<std::ptrdiff_t>(y) * width + x) * Channels;
  }
  uint8_t* row(int32_t y) const { return at(0, y); }
};

using GrayImage = Image<1>;
using RgbImage = Image<3>;

// The bytes per pixel of an image that is RGB or gray.
constexpr int32_t channels_of(bool is_rgb) {
  return is_rgb ? 3 : 1;
}

// Copies and fills of whole images. If n is 0 the pointers may be null, which std::memcpy and std::memset do
// not allow.
inline void copy_bytes(uint8_t* to, const uint8_t* from, std::ptrdiff_t n) {
  if (n > 0) std::memcpy(to, from, static_cast<std::size_t>(n));
}
inline void fill_bytes(uint8_t* bytes, uint8_t value, std::ptrdiff_t n) {
  if (n > 0) std::memset(bytes, value, static_cast<std::size_t>(n));
}

// An image whose height is unknown and not needed.
template <int Channels>
Image<Channels> image_of_any_height(uint8_t* pixels, int32_t width) {
  return {pixels, width, 0};
}

}  // namespace nuv

#endif

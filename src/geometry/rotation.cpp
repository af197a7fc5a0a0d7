// Images read along turned rows.
//
// A row of the result is a straight walk through the source in fixed point. Coordinates are 32-bit and wrap,
// so a walk is split into pieces in which they do not. In each piece, a division finds the steps that lie
// inside the source, so that the loops over them need no tests.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "core/arithmetic.h"
#include "core/buffer.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "geometry/bilinear.h"
#include "nuv/geometry.h"

namespace nuv {
namespace {

// ---- walks ----

struct Walk {
  int32_t x;
  int32_t y;
  int32_t dx;
  int32_t dy;

  NUV_INLINE Walk after(int32_t steps) const { return {x + steps * dx, y + steps * dy, dx, dy}; }
};

// The number of places start, start + step, ... before the coordinate wraps.
int64_t places_before_wrap(int64_t start, int64_t step) {
  if (step == 0) return INT64_MAX;
  return step > 0 ? (INT32_MAX - start) / step + 1 : (start - INT32_MIN) / -step + 1;
}

struct Span {
  int32_t first;
  int32_t end;

  // The common part of two spans. If there is none, it is empty and still lies within the other span.
  Span within(Span other) const {
    const int32_t from = std::min(std::max(first, other.first), other.end);
    return {from, std::max(from, std::min(end, other.end))};
  }
};

// The places i in 0..n-1 with 0 <= start + i*step < limit.
Span places_within(int64_t start, int64_t step, int64_t limit, int32_t n) {
  if (step == 0) return {0, start >= 0 && start < limit ? n : 0};
  // A descending walk is mirrored in the range 0..limit-1, where it ascends.
  if (step < 0) return places_within(limit - 1 - start, -step, limit, n);
  const auto steps_to = [=](int64_t target) {
    return target <= start ? 0 : std::min<int64_t>((target - start + step - 1) / step, n);
  };
  return {static_cast<int32_t>(steps_to(0)), static_cast<int32_t>(steps_to(limit))};
}

// A rectangle with its first pixel at (0, 0), for walks with Bits fractional bits.
template <int Bits>
struct Field {
  int64_t columns;
  int64_t rows;

  Span inside(Walk walk, int32_t n) const {
    return places_within(walk.x, walk.dx, columns << Bits, n)
        .within(places_within(walk.y, walk.dy, rows << Bits, n));
  }
};

// Splits a walk of n places where a coordinate wraps, and calls visit(piece, first, count) for each piece of
// count places, the first of which is place first of the walk.
template <class Visit>
void for_unwrapped_pieces(Walk walk, int32_t n, Visit visit) {
  for (int32_t done = 0; done < n;) {
    const int64_t fitting =
        std::min(places_before_wrap(walk.x, walk.dx), places_before_wrap(walk.y, walk.dy));
    const auto count = static_cast<int32_t>(std::min<int64_t>(fitting, n - done));
    visit(walk, done, count);
    walk = walk.after(count);
    done += count;
  }
}

// ---- sampling without interpolation ----

template <int Bits>
void take_row(const uint8_t* NUV_RESTRICT pixels, std::ptrdiff_t width, Walk walk, uint8_t* NUV_RESTRICT out,
              std::ptrdiff_t n) {
  int32_t x = walk.x;
  int32_t y = walk.y;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    out[i] = pixels[(y >> Bits) * width + (x >> Bits)];
    x += walk.dx;
    y += walk.dy;
  }
}

// Pixels outside the image become 0.
template <int Bits>
void take_along(GrayImage image, Walk walk, uint8_t* out, int32_t n) {
  const Field<Bits> field{image.width, image.height};
  for_unwrapped_pieces(walk, n, [=](Walk piece, int32_t first, int32_t count) {
    const Span inside = field.inside(piece, count);
    uint8_t* result = out + first;
    std::memset(result, 0, static_cast<std::size_t>(inside.first));
    take_row<Bits>(image.pixels, image.width, piece.after(inside.first), result + inside.first,
                   inside.end - inside.first);
    std::memset(result + inside.end, 0, static_cast<std::size_t>(count - inside.end));
  });
}

// ---- bilinear sampling ----

NUV_INLINE uint8_t bilinear(uint8_t p00, uint8_t p10, uint8_t p01, uint8_t p11, uint16_t fx, uint16_t fy) {
  return between(between(p00, p10, fx), between(p01, p11, fx), fy);
}

constexpr std::ptrdiff_t kSpan = 256;

// The four pixels around each place of a span, and the mix of the four.
template <int Channels>
struct Corners;

// The two pixels of a row are copied at once.
template <>
struct Corners<1> {
  uint8_t upper[2 * kSpan];
  uint8_t lower[2 * kSpan];

  NUV_INLINE void set(std::ptrdiff_t i, const uint8_t* p, std::ptrdiff_t row) {
    std::memcpy(upper + 2 * i, p, 2);
    std::memcpy(lower + 2 * i, p + row, 2);
  }
  NUV_INLINE void mix(const uint16_t* fx, const uint16_t* fy, uint8_t* NUV_RESTRICT out,
                      std::ptrdiff_t n) const {
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      out[i] = bilinear(upper[2 * i], upper[2 * i + 1], lower[2 * i], lower[2 * i + 1], fx[i], fy[i]);
    }
  }
};

// A left pixel is copied as four bytes. The copy of the next place overwrites the fourth.
template <>
struct Corners<3> {
  uint8_t upper_left[3 * kSpan + 1];
  uint8_t upper_right[3 * kSpan];
  uint8_t lower_left[3 * kSpan + 1];
  uint8_t lower_right[3 * kSpan];

  NUV_INLINE void set(std::ptrdiff_t i, const uint8_t* p, std::ptrdiff_t row) {
    std::memcpy(upper_left + 3 * i, p, 4);
    std::memcpy(upper_right + 3 * i, p + 3, 3);
    std::memcpy(lower_left + 3 * i, p + row, 4);
    std::memcpy(lower_right + 3 * i, p + row + 3, 3);
  }
  NUV_INLINE void mix(const uint16_t* fx, const uint16_t* fy, uint8_t* NUV_RESTRICT out,
                      std::ptrdiff_t n) const {
    for (std::ptrdiff_t i = 0; i < 3 * n; ++i) {
      out[i] = bilinear(upper_left[i], upper_right[i], lower_left[i], lower_right[i], fx[i], fy[i]);
    }
  }
};

// Each span takes three passes: the places of the pixels, the pixels themselves, and the mixes. Every byte
// has its own pair of weights.
template <int Channels>
NUV_INLINE void sample(const uint8_t* NUV_RESTRICT pixels, uint32_t width, Walk walk,
                       uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  uint32_t places[kSpan];
  uint16_t fx[Channels * kSpan];
  uint16_t fy[Channels * kSpan];
  Corners<Channels> corners;
  const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(width) * Channels;
  for (std::ptrdiff_t done = 0; done < n; done += kSpan) {
    const auto span = static_cast<int32_t>(n - done < kSpan ? n - done : kSpan);
    for (int32_t i = 0; i < span; ++i) {
      const int32_t x = walk.x + i * walk.dx;
      const int32_t y = walk.y + i * walk.dy;
      places[i] = static_cast<uint32_t>(y >> 16) * width + static_cast<uint32_t>(x >> 16);
      for (int c = 0; c < Channels; ++c) {
        fx[Channels * i + c] = static_cast<uint16_t>(x);
        fy[Channels * i + c] = static_cast<uint16_t>(y);
      }
    }
    for (std::ptrdiff_t i = 0; i < span; ++i) {
      corners.set(i, pixels + std::ptrdiff_t{Channels} * places[i], row);
    }
    corners.mix(fx, fy, out, span);
    walk = walk.after(span);
    out += Channels * span;
  }
}

NUV_ROW_KERNEL void sample_row(GrayImage image, Walk walk, uint8_t* out, std::ptrdiff_t n) {
  sample<1>(image.pixels, static_cast<uint32_t>(image.width), walk, out, n);
}
NUV_ROW_KERNEL void sample_row(RgbImage image, Walk walk, uint8_t* out, std::ptrdiff_t n) {
  sample<3>(image.pixels, static_cast<uint32_t>(image.width), walk, out, n);
}

template <int Channels>
class BilinearSource {
 public:
  // A place outside the field gives the background. The field must lie in the image.
  BilinearSource(Image<Channels> image, Field<16> field, uint8_t background)
      : image_(image), field_(field), background_(background) {}

  // Returns whether a place was outside the field.
  bool sample_along(Walk walk, uint8_t* out, int32_t n) const {
    bool outside = false;
    for_unwrapped_pieces(walk, n, [&](Walk piece, int32_t first, int32_t count) {
      const Span inside = field_.inside(piece, count);
      const Span interior =
          Field<16>{image_.width - 1, image_.height - 1}.inside(piece, count).within(inside);
      outside |= inside.end - inside.first < count;
      uint8_t* result = out + static_cast<std::ptrdiff_t>(first) * Channels;
      fill(result, 0, inside.first);
      sample_edge(piece, result, inside.first, interior.first);
      sample_row(image_, piece.after(interior.first), result + std::ptrdiff_t{Channels} * interior.first,
                 interior.end - interior.first);
      sample_edge(piece, result, interior.end, inside.end);
      fill(result, inside.end, count);
    });
    return outside;
  }

 private:
  void fill(uint8_t* result, std::ptrdiff_t first, std::ptrdiff_t end) const {
    std::memset(result + first * Channels, background_, static_cast<std::size_t>((end - first) * Channels));
  }

  // Pixels follow each other as in memory, and the last row is repeated after the image.
  const uint8_t* pixel(std::ptrdiff_t place) const {
    while (place >= image_.size()) place -= image_.width;
    return image_.pixels + place * Channels;
  }

  void sample_edge(Walk walk, uint8_t* result, int32_t first, int32_t end) const {
    for (int32_t i = first; i < end; ++i) {
      const Walk at = walk.after(i);
      const std::ptrdiff_t place = static_cast<std::ptrdiff_t>(at.y >> 16) * image_.width + (at.x >> 16);
      const uint8_t* p00 = pixel(place);
      const uint8_t* p10 = pixel(place + 1);
      const uint8_t* p01 = pixel(place + image_.width);
      const uint8_t* p11 = pixel(place + image_.width + 1);
      uint8_t* out = result + static_cast<std::ptrdiff_t>(i) * Channels;
      for (int c = 0; c < Channels; ++c) {
        out[c] = bilinear(p00[c], p10[c], p01[c], p11[c], static_cast<uint16_t>(at.x),
                          static_cast<uint16_t>(at.y));
      }
    }
  }

  Image<Channels> image_;
  Field<16> field_;
  uint8_t background_;
};

// ---- turned rectangles ----

struct TurnedRectangle {
  int32_t x0;
  int32_t y0;
  int32_t cosine;
  int32_t sine;

  TurnedRectangle(int32_t x, int32_t y, double angle)
      : x0(x * 65536),
        y0(y * 65536),
        cosine(truncated(std::cos(radians(angle, kPiTo4Decimals)) * 65536)),
        sine(truncated(std::sin(radians(angle, kPiTo4Decimals)) * 65536)) {}

  Walk row(int32_t j) const { return {x0 - j * sine, y0 + j * cosine, cosine, sine}; }
};

// Returns whether a pixel was outside the source without its last left_out columns and rows.
template <int Channels>
bool copy_turned(Image<Channels> source, int32_t left_out, TurnedRectangle rectangle, int32_t background,
                 Image<Channels> result) {
  if (source.empty() || result.empty()) return false;
  const BilinearSource<Channels> pixels(source, {source.width - left_out, source.height - left_out},
                                        low_byte(background));
  bool outside = false;
  for (int32_t j = 0; j < result.height; ++j) {
    outside |= pixels.sample_along(rectangle.row(j), result.row(j), result.width);
  }
  return outside;
}

// Does the same, and takes all pixels of the result as outside a source without pixels.
template <int Channels>
bool copy_turned_checked(Image<Channels> source, int32_t left_out, TurnedRectangle rectangle,
                         int32_t background, Image<Channels> result) {
  if (!source.empty()) return copy_turned(source, left_out, rectangle, background, result);
  fill_bytes(result.pixels, low_byte(background), result.size() * Channels);
  return !result.empty();
}

}  // namespace
}  // namespace nuv

using namespace nuv;

uint8_t* NuvRotateImgByCCS(uint8_t* pGryImg, int32_t width, int32_t height, double angle, int32_t* pResWidth,
                           int32_t* pResHeight) {
  constexpr int32_t kUnit = 1024;
  const GrayImage image{pGryImg, width, height};
  *pResWidth = *pResHeight = 0;
  if (image.empty()) return nullptr;

  const double a = radians(angle);
  const int32_t c = truncated(std::cos(a) * kUnit);
  const int32_t s = truncated(std::sin(a) * kUnit);
  const auto turned = [=](int32_t x, int32_t y) {
    return Point{(x * c - y * s) >> 10, (x * s + y * c) >> 10};
  };
  Region box = Region::of(turned(0, 0));
  for (int32_t x : {0, width - 1}) {
    for (int32_t y : {0, height - 1}) box.take_in(turned(x, y));
  }
  *pResWidth = box.columns();
  *pResHeight = box.rows();
  const int64_t size = int64_t{*pResWidth} * *pResHeight;
  if (size > INT32_MAX) return nullptr;
  Buffer<uint8_t> pixels = allocate<uint8_t>(size);
  if (!pixels) return nullptr;
  const GrayImage result{pixels.get(), *pResWidth, *pResHeight};

  const int32_t c2 = truncated(std::cos(-a) * kUnit);
  const int32_t s2 = truncated(std::sin(-a) * kUnit);
  for (int32_t y = box.y1; y <= box.y2; ++y) {
    const Walk row{box.x1 * c2 - y * s2, box.x1 * s2 + y * c2, c2, s2};
    take_along<10>(image, row, result.row(y - box.y1), result.width);
  }
  return pixels.release();
}

void NuvCopyRectFromRotateCCS(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                              double angle, uint8_t* pResImg, int32_t resWidth, int32_t resHeight) {
  copy_turned<1>({pGryImg, width, height}, 0, {x0, y0, angle}, 0, {pResImg, resWidth, resHeight});
}

bool NuvCopyRectFromRotateCCS(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                              double angle, int32_t bkColor, uint8_t* pResImg, int32_t resWidth,
                              int32_t resHeight) {
  return copy_turned_checked<1>({pGryImg, width, height}, 1, {x0, y0, angle}, bkColor,
                                {pResImg, resWidth, resHeight});
}

void NuvRgbCopyRectFromRotateCCS(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                                 double angle, uint8_t* pResImg, int32_t resWidth, int32_t resHeight) {
  copy_turned<3>({pRGBImg, width, height}, 0, {x0, y0, angle}, 0, {pResImg, resWidth, resHeight});
}

bool NuvRgbCopyRectFromRotateCCS(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                                 double angle, int32_t bkColor, uint8_t* pResImg, int32_t resWidth,
                                 int32_t resHeight) {
  return copy_turned_checked<3>({pRGBImg, width, height}, 0, {x0, y0, angle}, bkColor,
                                {pResImg, resWidth, resHeight});
}

void NuvCopyRectFromRotateAndShiftFast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0,
                                       int32_t y0, double angle, double shiftAngle, uint8_t* pResImg,
                                       int32_t resWidth, int32_t resHeight) {
  const GrayImage source{pGryImg, width, height};
  const GrayImage result{pResImg, resWidth, resHeight};
  if (source.empty() || result.empty()) return;
  const double turn = angle > 90 ? -(180 - angle) : angle;
  const TurnedRectangle rectangle(x0, y0, turn);
  const int32_t step = truncated(-std::tan(radians(-turn + shiftAngle - 90, kPiTo5Decimals)) * 4096);
  for (int32_t j = 0; j < resHeight; ++j) {
    const int32_t first = ((j * step) >> 12) + 1;
    take_along<16>(source, rectangle.row(j).after(first), result.row(j), resWidth);
  }
}

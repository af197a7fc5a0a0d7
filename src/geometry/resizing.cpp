// Free resizing by bilinear interpolation.
//
// The value that a result pixel takes from a source row depends on the column of the pixel alone, and is
// rounded before two rows are mixed. Each source row is therefore stretched once, and a result row is the mix
// of two stretched rows. The result is computed in strips of columns, whose tables and stretched rows lie on
// the stack. The fixed-point form and the double form share this plan and differ in their number type.

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/arithmetic.h"
#include "core/lanes.h"
#include "core/row_kernel.h"
#include "core/views.h"
#include "geometry/bilinear.h"
#include "nuv/geometry.h"

namespace nuv {
namespace {

constexpr int32_t kStrip = 1536;  // bytes of a result row, whole pixels of three and whole lanes

// ---- in 1/65536 of a pixel ----

// Each byte of a strip lies between two bytes of a source row. Taps holds the places of the left ones or of
// the right ones. If each group of 16 taps lies within 16 bytes of the source, as in all enlarged images, one
// permutation picks a group at once.
class Taps {
 public:
  void set(int32_t i, int32_t place) { places_[i] = place; }

  void prepare(int32_t n, int32_t row_bytes) {
    n_ = n;
    for (; n % kLanes != 0; ++n) places_[n] = places_[n - 1];
    in_lanes_ = NUV_HAS_LANES && row_bytes >= kLanes;
    for (int32_t i = 0; i < n && in_lanes_; i += kLanes) {
      const auto ends = std::minmax_element(&places_[i], &places_[i] + kLanes);
      const int32_t origin = std::min(*ends.first, row_bytes - kLanes);
      in_lanes_ = *ends.second - origin < kLanes;
      origins_[i / kLanes] = origin;
      for (int32_t k = i; k < i + kLanes; ++k) lanes_[k] = low_byte(places_[k] - origin);
    }
  }

  // Writes whole lanes, so up to kLanes - 1 bytes after the last.
  NUV_INLINE void collect(const uint8_t* NUV_RESTRICT row, uint8_t* NUV_RESTRICT out) const {
#if NUV_HAS_LANES
    for (std::ptrdiff_t i = 0; i < n_ && in_lanes_; i += kLanes) {
      store16(out + i, picked(load16(row + origins_[i / kLanes]), load16(&lanes_[i])));
    }
#endif
    for (std::ptrdiff_t i = 0; i < n_ && !in_lanes_; ++i) out[i] = row[places_[i]];
  }

 private:
  static constexpr int32_t kLanes = 16;

  int32_t n_ = 0;
  bool in_lanes_ = false;
  int32_t places_[kStrip];
  int32_t origins_[kStrip / kLanes];
  uint8_t lanes_[kStrip];
};

NUV_ROW_KERNEL void stretch_row(const uint8_t* NUV_RESTRICT row, const Taps& left_taps,
                                const Taps& right_taps, const uint16_t* NUV_RESTRICT weights,
                                uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  uint8_t left[kStrip];
  uint8_t right[kStrip];
  left_taps.collect(row, left);
  right_taps.collect(row, right);
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES && defined(__clang__)
  for (; i + 16 <= n; i += 16) {
    UnsignedShorts16 lanes;
    std::memcpy(&lanes, weights + i, sizeof lanes);
    between(left + i, right + i, lanes, out + i);
  }
#endif
  for (; i < n; ++i) out[i] = between(left[i], right[i], weights[i]);
}

NUV_ROW_KERNEL void mix_rows(const uint8_t* NUV_RESTRICT above, const uint8_t* NUV_RESTRICT below,
                             uint16_t weight, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  std::ptrdiff_t i = 0;
#if NUV_HAS_LANES && defined(__clang__)
  const UnsignedShorts16 weights = UnsignedShorts16{} + weight;
  for (; i + 16 <= n; i += 16) between(above + i, below + i, weights, out + i);
#endif
  for (; i < n; ++i) out[i] = between(above[i], below[i], weight);
}

struct FixedPoint {
  using Stretched = uint8_t;
  struct Place {
    int32_t whole;
    uint16_t fraction;  // the distance from the whole place
  };

  // The places of the result pixels along one axis: size places, over a source of that length.
  class Axis {
   public:
    Axis(int32_t length, int32_t size) : step_(size > 1 ? (length - int64_t{1}) * 65536 / (size - 1) : 0) {}
    Place operator[](int32_t i) const {
      const int64_t place = i * step_;
      return {static_cast<int32_t>(place >> 16), static_cast<uint16_t>(place & 65535)};
    }

   private:
    int64_t step_;
  };

  // The columns of a strip: each byte lies between two bytes of a row.
  class Columns {
   public:
    void set(int32_t i, int32_t left, int32_t right, Place place) {
      left_.set(i, left);
      right_.set(i, right);
      weights_[i] = place.fraction;
    }
    void prepare(int32_t n, int32_t row_bytes) {
      left_.prepare(n, row_bytes);
      right_.prepare(n, row_bytes);
    }
    void stretch(const uint8_t* row, Stretched* out, int32_t n) const {
      stretch_row(row, left_, right_, weights_, out, n);
    }

   private:
    Taps left_;
    Taps right_;
    uint16_t weights_[kStrip];
  };

  static void mix(const Stretched* above, const Stretched* below, Place place, uint8_t* out, int32_t n) {
    mix_rows(above, below, place.fraction, out, n);
  }
};

// ---- in double precision ----

struct DoublePrecision {
  using Stretched = double;
  struct Place {
    int32_t whole;
    double weight_of_whole;
    double weight_of_next;
  };

  class Axis {
   public:
    Axis(int32_t length, int32_t size) : step_(size > 1 ? (length - 1.0) / (size - 1.0) : 0) {}
    Place operator[](int32_t i) const {
      const double place = i * step_;
      const int32_t whole = truncated(place);
      return {whole, (whole + 1) - place, place - whole};
    }

   private:
    double step_;
  };

  class Columns {
   public:
    void set(int32_t i, int32_t left, int32_t right, Place place) { columns_[i] = {left, right, place}; }
    void prepare(int32_t /*n*/, int32_t /*row_bytes*/) {}
    void stretch(const uint8_t* row, Stretched* out, int32_t n) const {
      for (int32_t i = 0; i < n; ++i) {
        const Column& c = columns_[i];
        out[i] = c.left == c.right
                     ? row[c.left]
                     : row[c.left] * c.place.weight_of_whole + row[c.right] * c.place.weight_of_next;
      }
    }

   private:
    struct Column {
      int32_t left;
      int32_t right;
      Place place;
    };
    Column columns_[kStrip];
  };

  static void mix(const Stretched* above, const Stretched* below, Place place, uint8_t* out, int32_t n) {
    for (int32_t i = 0; i < n; ++i) {
      out[i] = low_byte(truncated(place.weight_of_next * below[i] + place.weight_of_whole * above[i]));
    }
  }
};

// ---- strips of columns ----

// A strip keeps two stretched rows. A source row that two consecutive result rows share is stretched once.
template <class Numbers>
class Strip {
 public:
  template <int Channels>
  Strip(Image<Channels> source, typename Numbers::Axis axis, int32_t first, int32_t pixels)
      : bytes_(pixels * Channels) {
    for (int32_t i = 0; i < pixels; ++i) {
      const auto place = axis[first + i];
      const int32_t next = std::min(place.whole + 1, source.width - 1);
      for (int32_t c = 0; c < Channels; ++c) {
        columns_.set(i * Channels + c, place.whole * Channels + c, next * Channels + c, place);
      }
    }
    columns_.prepare(bytes_, source.width * Channels);
  }

  template <int Channels>
  void write_row(Image<Channels> source, typename Numbers::Place place, uint8_t* out) {
    const int32_t next = std::min(place.whole + 1, source.height - 1);
    if (place.whole == below_row_) swap_rows();
    if (place.whole != above_row_) stretch(source, place.whole, above_, above_row_);
    if (next != below_row_) stretch(source, next, below_, below_row_);
    Numbers::mix(above_, below_, place, out, bytes_);
  }

 private:
  using Stretched = typename Numbers::Stretched;

  void swap_rows() {
    std::swap(above_, below_);
    std::swap(above_row_, below_row_);
  }
  template <int Channels>
  void stretch(Image<Channels> source, int32_t y, Stretched* out, int32_t& out_row) {
    columns_.stretch(source.row(y), out, bytes_);
    out_row = y;
  }

  int32_t bytes_;
  typename Numbers::Columns columns_;
  Stretched rows_[2][kStrip];
  Stretched* above_ = rows_[0];
  Stretched* below_ = rows_[1];
  int32_t above_row_ = -1;
  int32_t below_row_ = -1;
};

template <class Numbers, int Channels>
void resize(Image<Channels> source, Image<Channels> result) {
  if (source.empty() || result.empty()) return;
  const typename Numbers::Axis columns(source.width, result.width);
  const typename Numbers::Axis rows(source.height, result.height);
  constexpr int32_t kPixels = kStrip / Channels;
  for (int32_t x = 0; x < result.width; x += std::min(kPixels, result.width - x)) {
    Strip<Numbers> strip(source, columns, x, std::min(kPixels, result.width - x));
    for (int32_t y = 0; y < result.height; ++y) strip.write_row(source, rows[y], result.at(x, y));
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvGryImgBilinearInterpolattionFast(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                         int32_t resWidth, int32_t resHeight) {
  resize<FixedPoint, 1>({pGryImg, width, height}, {pResImg, resWidth, resHeight});
}

void NuvGryImgBilinearInterpolattionStd(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                        int32_t resWidth, int32_t resHeight) {
  resize<DoublePrecision, 1>({pGryImg, width, height}, {pResImg, resWidth, resHeight});
}

void NuvRgbImgBilinearInterpolattionFast(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg,
                                         int32_t resWidth, int32_t resHeight) {
  resize<FixedPoint, 3>({pRGBImg, width, height}, {pResImg, resWidth, resHeight});
}

void NuvRectResizeX4(int32_t width, int32_t /*height*/, int32_t maxWidth, int32_t maxHeight, int32_t* pX1,
                     int32_t* pX2, int32_t* pY1, int32_t* pY2) {
  int32_t w = *pX2 - *pX1 + 1;
  if (w % 4 != 0) {
    w = std::min(w, maxWidth) & ~3;
    const int32_t half = w / 2;
    const int32_t centre = (*pX1 + *pX2) >> 1;
    const int32_t right = centre * 2 < width ? centre + half : centre - 1 + half;
    *pX2 = right;
    *pX1 = right - w + 1;
  }
  if (*pY2 - *pY1 + 1 >= maxHeight - 2) {
    const int32_t centre = (*pY1 + *pY2) / 2;
    const int32_t half = (maxHeight - 2) / 2;
    *pY2 = centre + half;
    *pY1 = centre - half;
  }
}

// Conversions of camera frames, for all formats.
//
// A format is a view of a frame that knows the places of the Y, Cb and Cr of a pixel:
//
//     luma(x, y), cb(x, y), cr(x, y)   the places
//     kLumaStep                        bytes from one Y to the next in a row
//     kChromaStep                      bytes from one Cb, or one Cr, to the next in a row
//     kChromaRows                      rows of pixels that share a row of chroma
//     width, height
//
// The row kernels of the colour matrix compute the colours on planes. A conversion of every pixel requires a
// region of whole chroma units.

#ifndef NUV_COLOUR_FRAME_CONVERSION_H
#define NUV_COLOUR_FRAME_CONVERSION_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "colour/colour_matrix.h"
#include "core/interleaved.h"
#include "core/views.h"

namespace nuv {

// The number of which each argument of a function must be a multiple.
struct Multiples {
  int32_t width;
  int32_t height;
  int32_t x1;
  int32_t columns;
  int32_t y1;
  int32_t rows;

  template <class Format>
  bool met_by(Format frame, Region region) const {
    return frame.width % width == 0 && frame.height % height == 0 && region.x1 % x1 == 0 &&
           region.columns() % columns == 0 && region.y1 % y1 == 0 && region.rows() % rows == 0;
  }
};

// Performs a conversion and returns true, or returns false if an argument is not such a multiple. For an
// empty region nothing is written.
template <class Format>
bool convert(Multiples multiples, Format frame, Region region, void (*conversion)(Format, Region, uint8_t*),
             uint8_t* image) {
  if (!multiples.met_by(frame, region)) return false;
  if (!region.empty()) conversion(frame, region, image);
  return true;
}

// Performs the conversion for a whole frame.
template <class Format>
bool convert(Multiples multiples, Format frame, void (*conversion)(Format, Region, uint8_t*),
             uint8_t* image) {
  const GrayImage size{nullptr, frame.width, frame.height};
  return convert(multiples, frame, size.empty() ? Region{0, -1, 0, -1} : size.whole(), conversion, image);
}

// ---- blocks ----

// Calls action(x, n, offset) for the blocks of a row of the region. A block is the n pixels from column x on;
// offset is the place of its first pixel in the packed row.
template <class Action>
void for_blocks(Region region, Action action) {
  const std::ptrdiff_t columns = region.columns();
  for (std::ptrdiff_t done = 0; done < columns; done += kPlaneBlock) {
    action(region.x1 + static_cast<int32_t>(done), std::min(kPlaneBlock, columns - done), done);
  }
}

// A block of the rows of pixels that share their chroma. If Y has a plane of its own, the block points into
// the frame. In a packed format, where Y alternates with Cb and Cr, the block has room of its own for the Y
// and for the pairs of Cb and Cr.
template <class Format>
struct FrameBlock {
  static constexpr bool kIsPacked = Format::kLumaStep == 2;
  using Chroma = std::conditional_t<Format::kChromaStep == 1, ChromaPlanes, ChromaPairs>;

  uint8_t* luma[Format::kChromaRows];
  Chroma chroma;

  FrameBlock(Format frame, int32_t x, int32_t y) {
    for (int32_t r = 0; r < Format::kChromaRows; ++r) {
      luma[r] = kIsPacked ? luma_room : frame.luma(x, y + r);
    }
    if constexpr (Format::kChromaStep == 1) {
      chroma = {frame.cb(x, y), frame.cr(x, y)};
    } else {
      chroma = {kIsPacked ? chroma_room : frame.cb(x, y)};
    }
  }

  static constexpr std::size_t kRoomAlignment = kIsPacked ? 64 : 1;
  alignas(kRoomAlignment) uint8_t luma_room[kIsPacked ? kPlaneBlock : 1];
  alignas(kRoomAlignment) uint8_t chroma_room[kIsPacked ? kPlaneBlock : 1];
};

template <class Format>
void take_apart(Format frame, int32_t x, int32_t y, FrameBlock<Format>& block, std::ptrdiff_t n) {
  if constexpr (FrameBlock<Format>::kIsPacked) {
    split_pairs(frame.cb(x, y), block.chroma_room, block.luma_room, n);
  }
}

template <class Format>
void put_together(Format frame, int32_t x, int32_t y, const FrameBlock<Format>& block, std::ptrdiff_t n) {
  if constexpr (FrameBlock<Format>::kIsPacked) {
    join_pairs(block.chroma_room, block.luma_room, frame.cb(x, y), n);
  }
}

// ---- conversions, with packed results ----

template <class Format>
void to_rgb(Format frame, Region region, uint8_t* rgb) {
  const std::ptrdiff_t columns = region.columns();
  for (int32_t y = region.y1; y <= region.y2;
       y += Format::kChromaRows, rgb += 3 * columns * Format::kChromaRows) {
    for_blocks(region, [=](int32_t x, std::ptrdiff_t n, std::ptrdiff_t offset) {
      FrameBlock<Format> block(frame, x, y);
      take_apart(frame, x, y, block, n);
      TermBlock terms;
      chroma_terms(block.chroma, terms, n / 2);
      for (int32_t r = 0; r < Format::kChromaRows; ++r) {
        rgb_from_terms(block.luma[r], terms, rgb + 3 * (r * columns + offset), n);
      }
    });
  }
}

template <class Format>
void to_red(Format frame, Region region, uint8_t* red) {
  const std::ptrdiff_t columns = region.columns();
  for (int32_t y = region.y1; y <= region.y2;
       y += Format::kChromaRows, red += columns * Format::kChromaRows) {
    for_blocks(region, [=](int32_t x, std::ptrdiff_t n, std::ptrdiff_t offset) {
      FrameBlock<Format> block(frame, x, y);
      take_apart(frame, x, y, block, n);
      TermBlock terms;
      red_terms(block.chroma, terms, n / 2);
      for (int32_t r = 0; r < Format::kChromaRows; ++r) {
        red_from_terms(block.luma[r], terms, red + r * columns + offset, n / 2);
      }
    });
  }
}

// Converts RGB to a whole frame.
template <class Format>
void from_rgb(Format frame, Region whole, uint8_t* rgb) {
  for (int32_t y = 0; y <= whole.y2; y += Format::kChromaRows) {
    for_blocks(whole, [=](int32_t x, std::ptrdiff_t n, std::ptrdiff_t /*offset*/) {
      FrameBlock<Format> block(frame, x, y);
      const uint8_t* rows[Format::kChromaRows];
      for (int32_t r = 0; r < Format::kChromaRows; ++r) {
        rows[r] = RgbImage{rgb, frame.width, frame.height}.at(x, y + r);
      }
      luma_and_chroma(rows, block.luma, block.chroma, n);
      put_together(frame, x, y, block, n);
    });
  }
}

// Calls write(place, Y, Cb, Cr) for every Step-th pixel of every Step-th row, with places from 0 on. Step is even.
template <int32_t Step, class Format, class Write>
void for_samples(Format frame, Region region, Write write) {
  const std::ptrdiff_t n = (region.columns() + Step - 1) / Step;
  std::ptrdiff_t place = 0;
  for (int32_t y = region.y1; y <= region.y2; y += Step, place += n) {
    const uint8_t* luma = frame.luma(region.x1, y);
    const uint8_t* cb = frame.cb(region.x1, y);
    const uint8_t* cr = frame.cr(region.x1, y);
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      const std::ptrdiff_t chroma = Step / 2 * Format::kChromaStep * i;
      write(place + i, luma[Step * Format::kLumaStep * i], cb[chroma], cr[chroma]);
    }
  }
}

template <class Format>
void to_rgb_by_fours(Format frame, Region region, uint8_t* rgb) {
  for_samples<4>(frame, region, [rgb](std::ptrdiff_t place, uint8_t luma, uint8_t cb, uint8_t cr) {
    rgb[3 * place] = clamped_sum(luma, blue_term(cb));
    rgb[3 * place + 1] = clamped_sum(luma, green_term(cb, cr));
    rgb[3 * place + 2] = clamped_sum(luma, red_term(cr));
  });
}

template <class Format>
void to_red_by_twos(Format frame, Region region, uint8_t* red) {
  for_samples<2>(frame, region, [red](std::ptrdiff_t place, uint8_t luma, uint8_t /*cb*/, uint8_t cr) {
    red[place] = clamped_sum(luma, red_term(cr));
  });
}

}  // namespace nuv

#endif

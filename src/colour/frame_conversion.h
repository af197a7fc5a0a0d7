// Conversions of camera frames, for all formats.
//
// A format is a view of a frame that says where the Y, Cb and Cr of a pixel stand:
//
//     luma(x, y), cb(x, y), cr(x, y)   their places
//     kLumaStep                        from one Y to the next of its row
//     kChromaStep                      from one Cb to the next of its row, and from one Cr to the next
//     kChromaRows                      rows of pixels that share a row of chroma
//     width, height
//
// The row kernels of the colour matrix do the rest, on planes. A conversion of every pixel is given a region
// of whole chroma units.

#ifndef NUV_COLOUR_FRAME_CONVERSION_H
#define NUV_COLOUR_FRAME_CONVERSION_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "colour/colour_matrix.h"
#include "frame/interleaved.h"
#include "frame/views.h"

namespace nuv {

// What each argument of a function has to be a multiple of.
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

// Does a conversion if its arguments are such multiples; of an empty region there is nothing to do.
template <class Format>
bool convert(Multiples multiples, Format frame, Region region, void (*conversion)(Format, Region, uint8_t*),
             uint8_t* image) {
  if (!multiples.met_by(frame, region)) return false;
  if (!region.empty()) conversion(frame, region, image);
  return true;
}

// The same of a whole frame.
template <class Format>
bool convert(Multiples multiples, Format frame, void (*conversion)(Format, Region, uint8_t*),
             uint8_t* image) {
  const GrayImage size{nullptr, frame.width, frame.height};
  return convert(multiples, frame, size.empty() ? Region{0, -1, 0, -1} : size.whole(), conversion, image);
}

// ---- blocks ----

// Calls action(x, n, offset) for the blocks of a row of the region: n pixels from column x on, which stand at
// that offset in the packed row.
template <class Action>
void for_blocks(Region region, Action action) {
  const std::ptrdiff_t columns = region.columns();
  for (std::ptrdiff_t done = 0; done < columns; done += kPlaneBlock) {
    action(region.x1 + static_cast<int32_t>(done), std::min(kPlaneBlock, columns - done), done);
  }
}

// The planes of a block: of as many rows of pixels as share their chroma. They are the frame's own where
// bytes lie in planes there, and room for them where they do not.
template <class Format>
struct FrameBlock {
  uint8_t* luma[Format::kChromaRows];
  uint8_t* cb;
  uint8_t* cr;

  FrameBlock(Format frame, int32_t x, int32_t y) {
    for (int32_t r = 0; r < Format::kChromaRows; ++r) {
      luma[r] = Format::kLumaStep == 1 ? frame.luma(x, y + r) : luma_room;
    }
    cb = Format::kChromaStep == 1 ? frame.cb(x, y) : cb_room;
    cr = Format::kChromaStep == 1 ? frame.cr(x, y) : cr_room;
  }

  uint8_t luma_room[Format::kLumaStep == 1 ? 1 : kPlaneBlock];
  uint8_t cb_room[Format::kChromaStep == 1 ? 1 : kPlaneBlock / 2];
  uint8_t cr_room[Format::kChromaStep == 1 ? 1 : kPlaneBlock / 2];
};

// Cb and Cr taking turns, and a Y behind each of them where they are not in a plane of their own.
template <class Format>
void split_chroma(Format frame, int32_t x, int32_t y, FrameBlock<Format>& block, std::ptrdiff_t n) {
  if constexpr (Format::kChromaStep == 2) {
    split_pairs(frame.cb(x, y), block.cb, block.cr, n / 2);
  } else if constexpr (Format::kChromaStep == 4) {
    alignas(64) uint8_t chroma[kPlaneBlock];
    split_pairs(frame.cb(x, y), chroma, block.luma[0], n);
    split_pairs(chroma, block.cb, block.cr, n / 2);
  }
}

template <class Format>
void join_chroma(Format frame, int32_t x, int32_t y, const FrameBlock<Format>& block, std::ptrdiff_t n) {
  if constexpr (Format::kChromaStep == 2) {
    join_pairs(block.cb, block.cr, frame.cb(x, y), n / 2);
  } else if constexpr (Format::kChromaStep == 4) {
    alignas(64) uint8_t chroma[kPlaneBlock];
    join_pairs(block.cb, block.cr, chroma, n / 2);
    join_pairs(chroma, block.luma[0], frame.cb(x, y), n);
  }
}

// ---- conversions; results are packed ----

template <class Format>
void to_rgb(Format frame, Region region, uint8_t* rgb) {
  const std::ptrdiff_t columns = region.columns();
  for (int32_t y = region.y1; y <= region.y2;
       y += Format::kChromaRows, rgb += 3 * columns * Format::kChromaRows) {
    for_blocks(region, [=](int32_t x, std::ptrdiff_t n, std::ptrdiff_t offset) {
      FrameBlock<Format> block(frame, x, y);
      split_chroma(frame, x, y, block, n);
      TermBlock terms;
      chroma_terms(block.cb, block.cr, terms, n / 2);
      for (int32_t r = 0; r < Format::kChromaRows; ++r) {
        PlaneBlock pixels;
        rgb_from_terms(block.luma[r], terms, pixels, n / 2);
        join_planes(pixels.b0, pixels.b1, pixels.b2, rgb + 3 * (r * columns + offset), n);
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
      split_chroma(frame, x, y, block, n);
      TermBlock terms;
      red_terms(block.cr, terms, n / 2);
      for (int32_t r = 0; r < Format::kChromaRows; ++r) {
        red_from_terms(block.luma[r], terms, red + r * columns + offset, n / 2);
      }
    });
  }
}

// The other way: the whole frame is written.
template <class Format>
void from_rgb(Format frame, Region whole, uint8_t* rgb) {
  for (int32_t y = 0; y <= whole.y2; y += Format::kChromaRows) {
    for_blocks(whole, [=](int32_t x, std::ptrdiff_t n, std::ptrdiff_t /*offset*/) {
      FrameBlock<Format> block(frame, x, y);
      ChromaSums sums[Format::kChromaRows];
      for (int32_t r = 0; r < Format::kChromaRows; ++r) {
        luma_and_chroma(RgbImage{rgb, frame.width, frame.height}.at(x, y + r), block.luma[r], sums[r], n);
      }
      if constexpr (Format::kChromaRows == 1) {
        mean_of_two(sums[0].c, block.cb, n / 2);
        mean_of_two(sums[0].d, block.cr, n / 2);
      } else {
        mean_of_four(sums[0].c, sums[1].c, block.cb, n / 2);
        mean_of_four(sums[0].d, sums[1].d, block.cr, n / 2);
      }
      join_chroma(frame, x, y, block, n);
    });
  }
}

// Calls write(Y, Cb, Cr) for every step-th pixel of every step-th row.
template <class Format, class Write>
void for_samples(Format frame, Region region, int32_t step, Write write) {
  for (int32_t y = region.y1; y <= region.y2; y += step) {
    for (int32_t x = region.x1; x <= region.x2; x += step) {
      write(*frame.luma(x, y), *frame.cb(x, y), *frame.cr(x, y));
    }
  }
}

template <class Format>
void to_rgb_by_fours(Format frame, Region region, uint8_t* rgb) {
  for_samples(frame, region, 4, [&rgb](uint8_t luma, uint8_t cb, uint8_t cr) {
    *rgb++ = clamped_sum(luma, blue_term(cb));
    *rgb++ = clamped_sum(luma, green_term(cb, cr));
    *rgb++ = clamped_sum(luma, red_term(cr));
  });
}

template <class Format>
void to_red_by_twos(Format frame, Region region, uint8_t* red) {
  for_samples(frame, region, 2,
              [&red](uint8_t luma, uint8_t /*cb*/, uint8_t cr) { *red++ = clamped_sum(luma, red_term(cr)); });
}

}  // namespace nuv

#endif

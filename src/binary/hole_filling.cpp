// Holes of a mask filled from the nearest pixels.
//
// A hole takes the nearest pixel to the right, left, below or above that is not 0. Along the row, the pixels
// beside the black run are the nearest ones; at the left this may be the last white pixel of the rows above.
// Along a column, the row number of the nearest white pixel is carried from row to row: downwards for pixels
// above, and upwards, before the rows are filled, for pixels below. Keeping the row numbers below for every row
// would take four times the memory of the image. Instead they are kept at the end of each block of rows and
// carried again through one block at a time.

#include <algorithm>
#include <cstdint>

#include "core/buffer.h"
#include "core/row_kernel.h"
#include "core/runs.h"
#include "core/views.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

// Where a pixel of row y is not 0, the nearest row of its column becomes y.
NUV_ROW_KERNEL void carry_rows(const uint8_t* row, int32_t y, const int32_t* NUV_RESTRICT from,
                               int32_t* NUV_RESTRICT to, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const int32_t nearest = from[x];
    to[x] = row[x] != 0 ? y : nearest;
  }
}
NUV_ROW_KERNEL void carry_rows_on(const uint8_t* row, int32_t y, int32_t* NUV_RESTRICT nearest,
                                  std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const int32_t before = nearest[x];
    nearest[x] = row[x] != 0 ? y : before;
  }
}

NUV_ROW_KERNEL void keep_masked(const uint8_t* row, const uint8_t* mask, uint8_t* NUV_RESTRICT out,
                                std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const uint8_t pixel = row[x];
    out[x] = mask[x] != 0 ? pixel : 0;
  }
}

constexpr int32_t kBlock = 32;         // rows
constexpr int32_t kNoRow = INT32_MAX;  // no white pixel below
constexpr int32_t kNoRowAbove = -1;

// For each pixel, the row of the nearest pixel below it that is not 0. If allocation fails, allocated() is
// false.
class RowsBelow {
 public:
  explicit RowsBelow(GrayImage image)
      : image_(image),
        width_(image.width),
        block_ends_(allocate<int32_t>(((image.height - 1) / kBlock + 1) * int64_t{image.width})),
        rows_(allocate<int32_t>(kBlock * int64_t{image.width})) {
    if (!allocated()) return;
    const int32_t last = (image.height - 1) / kBlock;
    std::fill_n(below_block(last), width_, kNoRow);
    for (int32_t block = last; block > 0; --block) {
      int32_t* nearest = below_block(block - 1);
      std::copy_n(below_block(block), width_, nearest);
      const int32_t end = std::min((block + 1) * kBlock, image.height);
      for (int32_t y = end - 1; y >= block * kBlock; --y) carry_rows_on(image.row(y), y, nearest, width_);
    }
  }
  bool allocated() const { return block_ends_ && rows_; }

  // Must be called for every row, from the first to the last.
  const int32_t* of(int32_t y) {
    if (y % kBlock == 0) carry_through_block(y);
    return rows_.get() + (y % kBlock) * width_;
  }

 private:
  int32_t* below_block(int32_t block) { return block_ends_.get() + block * width_; }

  void carry_through_block(int32_t first) {
    const int32_t last = std::min(first + kBlock, image_.height) - 1;
    int32_t* row = rows_.get() + (last - first) * width_;
    std::copy_n(below_block(first / kBlock), width_, row);
    for (int32_t y = last; y > first; --y, row -= width_) {
      carry_rows(image_.row(y), y, row, row - width_, width_);
    }
  }

  GrayImage image_;
  std::ptrdiff_t width_;
  Buffer<int32_t> block_ends_;  // nearest rows below the end of each block
  Buffer<int32_t> rows_;        // nearest rows of the present block
};

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvFillHolesByNearNeighbor(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                int32_t maxDistance, uint8_t* pResImg) {
  const GrayImage image{pGryImg, width, height};
  const GrayImage masks{pMskImg, width, height};
  const GrayImage result{pResImg, width, height};
  if (image.empty()) return;
  keep_masked(pGryImg, pMskImg, pResImg, image.size());
  if (maxDistance < 1) return;
  RowsBelow rows_below(image);
  const Buffer<int32_t> rows_above = allocate<int32_t>(width);
  if (!rows_below.allocated() || !rows_above) return;
  std::fill_n(rows_above.get(), width, kNoRowAbove);

  const int64_t none = static_cast<int64_t>(maxDistance) + 1;
  const uint8_t* last = nullptr;  // the last pixel that is not 0 before the present run, in this row or above
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* row = image.row(y);
    const uint8_t* mask = masks.row(y);
    uint8_t* out = result.row(y);
    const int32_t* below = rows_below.of(y);
    const int32_t* above = rows_above.get();
    for_black_runs(rows_of(image)[y], [&](int32_t run_first, int32_t run_last) {
      if (run_first > 0) last = row + run_first - 1;
      for (int32_t x = run_first; x <= run_last; ++x) {
        if (mask[x] == 0) continue;
        const int64_t to_right = run_last + 1 < width ? run_last + 1 - x : none;
        const int64_t to_left = last != nullptr ? row + x - last : none;
        const int64_t down = below[x] != kNoRow ? below[x] - y : none;
        const int64_t up = above[x] != kNoRowAbove ? y - above[x] : none;
        const int64_t to_side = std::min({to_right, to_left, none});
        const int64_t in_column = std::min(down, up);
        if (in_column < to_side) {
          out[x] = *image.at(x, down == in_column ? below[x] : above[x]);
        } else if (to_side < none) {
          out[x] = to_right == to_side ? row[x + to_side] : row[x - to_side];
        }
      }
    });
    if (row[width - 1] != 0) last = row + width - 1;
    // The search upwards does not reach row 0.
    if (y > 0) carry_rows_on(row, y, rows_above.get(), width);
  }
}

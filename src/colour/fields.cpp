// Interlaced fields: whole rows copied from frame to fields and back.

#include <cstring>

#include "core/views.h"
#include "nuv/colour.h"

namespace nuv {
namespace {

std::ptrdiff_t bytes_of(int32_t pixels, bool is_rgb) {
  return std::ptrdiff_t{pixels} * channels_of(is_rgb);
}

// Copies every second row from row first on to consecutive rows, and returns the end of the last one.
uint8_t* copy_field(const uint8_t* frame, int32_t height, int32_t first, std::ptrdiff_t row_bytes,
                    uint8_t* result) {
  if (row_bytes <= 0) return result;
  for (std::ptrdiff_t y = first; y < height; y += 2, result += row_bytes) {
    std::memcpy(result, frame + y * row_bytes, static_cast<std::size_t>(row_bytes));
  }
  return result;
}

// Copies a part of each row of a field to every second row of a frame. A part is the given number of bytes;
// field and frame point to the first part. Rows of both lie row_bytes apart.
void weave_rows(const uint8_t* field, int32_t rows, std::ptrdiff_t row_bytes, std::ptrdiff_t bytes,
                uint8_t* frame) {
  if (bytes <= 0) return;
  for (std::ptrdiff_t i = 0; i < rows; ++i) {
    std::memcpy(frame + 2 * i * row_bytes, field + i * row_bytes, static_cast<std::size_t>(bytes));
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvExtractOneField(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, bool bSecondField,
                        uint8_t* pResImg, int32_t* pResHeight) {
  *pResHeight = height / 2 + (height % 2 > 0 && !bSecondField ? 1 : 0);
  copy_field(pImg, height, bSecondField ? 1 : 0, bytes_of(width, bRGB), pResImg);
}

void NuvSplitOddEvenField(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pResImg) {
  const std::ptrdiff_t row_bytes = bytes_of(width, bRGB);
  uint8_t* second = copy_field(pImg, height, 0, row_bytes, pResImg);
  copy_field(pImg, height, 1, row_bytes, second);
}

void NuvMergeOddEvenField(uint8_t* pSecondField, uint8_t* pFirstField, int32_t secondHeight,
                          int32_t firstHeight, int32_t width, bool bRGB, int32_t shift, uint8_t* pResImg,
                          int32_t* pResHeight) {
  *pResHeight = secondHeight + firstHeight;
  if (width <= 0) return;
  const std::ptrdiff_t row_bytes = bytes_of(width, bRGB);
  weave_rows(pFirstField, firstHeight, row_bytes, row_bytes, pResImg);
  if (shift >= width || shift <= -width) return;
  const std::ptrdiff_t moved = bytes_of(shift, bRGB);
  if (shift > 0) {
    weave_rows(pSecondField, secondHeight, row_bytes, row_bytes - moved, pResImg + row_bytes + moved);
  } else {
    // RGB rows are written width bytes after the start of the row above, not 3*width.
    weave_rows(pSecondField - moved, secondHeight, row_bytes, row_bytes + moved, pResImg + width);
  }
}

// The Hanzi font: 16x16 bitmaps in a file beside the host's executable.
//
// The file has no header. A glyph is 16 rows of two bytes, the top row first, the highest bit leftmost;
// glyphs stand in the order of their two-byte codes, 94 to a section, from code A1 A1 on.

#ifndef NUV_DRAWING_HANZI_FONT_H
#define NUV_DRAWING_HANZI_FONT_H

#include <array>
#include <cstdint>

#include "files/file.h"

namespace nuv {

constexpr int32_t kHanziSize = 16;
using HanziGlyph = std::array<uint8_t, kHanziSize * kHanziSize / 8>;

// Null if the file, or the way to it, is not to be found.
File open_hanzi_font();

// Of a code without a glyph in the file, and behind a file that ends early, the bytes stay as they were.
void read_glyph(std::FILE* font, uint8_t c1, uint8_t c2, HanziGlyph& glyph);

}  // namespace nuv

#endif

// The Hanzi font: 16x16 bitmaps in a file beside the host's executable.
//
// The file has no header. A glyph is 16 rows of two bytes, the top row first, the highest bit leftmost.
// Glyphs are in the order of their two-byte codes, 94 to a section, from code A1 A1 on.

#ifndef NUV_DRAWING_HANZI_FONT_H
#define NUV_DRAWING_HANZI_FONT_H

#include <array>
#include <cstdint>

#include "files/file.h"

namespace nuv {

constexpr int32_t kHanziSize = 16;
using HanziGlyph = std::array<uint8_t, kHanziSize * kHanziSize / 8>;

// Returns null if the path of the executable is unknown or the file cannot be read.
File open_hanzi_font();

// Reads the glyph of code c1 c2. Bytes before the start or past the end of the file leave glyph unchanged.
void read_glyph(std::FILE* font, uint8_t c1, uint8_t c2, HanziGlyph& glyph);

}  // namespace nuv

#endif

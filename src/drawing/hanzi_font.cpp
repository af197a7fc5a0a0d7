// Finds the font in the folder of the executable, which is the executable's path up to its last separator.
// Platforms differ in how they give that path and in its type of character.

#include "drawing/hanzi_font.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#elif defined(__linux__)
#include <unistd.h>
#endif

namespace nuv {
namespace {

// executable_path() returns the length of the path, 0 if there is none, and size or more if it does not fit.
#if defined(_WIN32)
using PathCharacter = wchar_t;
constexpr PathCharacter kSeparator = L'\\';
constexpr PathCharacter kFontName[] = L"hzk16.dat";

std::size_t executable_path(PathCharacter* path, std::size_t size) {
  return GetModuleFileNameW(nullptr, path, static_cast<DWORD>(size));
}
std::FILE* open_to_read(const PathCharacter* path) {
  return _wfopen(path, L"rb");
}
#else
using PathCharacter = char;
constexpr PathCharacter kSeparator = '/';
constexpr PathCharacter kFontName[] = "hzk16.dat";

std::size_t executable_path([[maybe_unused]] PathCharacter* path, [[maybe_unused]] std::size_t size) {
#if defined(__linux__)
  return static_cast<std::size_t>(std::max<std::ptrdiff_t>(readlink("/proc/self/exe", path, size), 0));
#elif defined(__wasi__)
  path[0] = kSeparator;  // a module has no path, so that the font is in the root directory
  return 1;
#else
  return 0;
#endif
}
std::FILE* open_to_read(const PathCharacter* path) {
  return std::fopen(path, "rb");
}
#endif

}  // namespace

File open_hanzi_font() {
  std::array<PathCharacter, 4096> path;
  std::size_t length = executable_path(path.data(), path.size());
  if (length >= path.size()) return nullptr;
  while (length > 0 && path[length - 1] != kSeparator) --length;
  if (length == 0 || length + std::size(kFontName) > path.size()) return nullptr;
  std::copy(std::begin(kFontName), std::end(kFontName), path.begin() + static_cast<std::ptrdiff_t>(length));
  File font(open_to_read(path.data()));
  // A folder of that name opens but cannot be read.
  if (font && std::fgetc(font.get()) == EOF && std::ferror(font.get()) != 0) return nullptr;
  return font;
}

void read_glyph(std::FILE* font, uint8_t c1, uint8_t c2, HanziGlyph& glyph) {
  const int32_t index = c2 + c1 * 94 - 15295;
  if (index < 0) return;
  if (std::fseek(font, index * static_cast<long>(glyph.size()), SEEK_SET) != 0) return;
  // Bytes that a short read does not reach keep their values.
  [[maybe_unused]] const std::size_t read = std::fread(glyph.data(), 1, glyph.size(), font);
}

}  // namespace nuv

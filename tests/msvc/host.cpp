// A host that prints what the library computes, as text that is the same on every platform.
//
// On Windows it is built for the ABI of MSVC, without a runtime library, and linked to the import library for MSVC. It
// first checks that every function was found in the DLL. Arguments of less than 32 bits are passed with anything in
// their upper bits, as MSVC may do. On 32-bit x86 the calls are made at each of the four alignments that a stack may
// have there, and the texts must be equal.

#include <cstdint>
#if !defined(_WIN32)
#include <cstdio>
#include <cstdlib>
#endif

// HOST_WINDOWS_H places windows.h before or after the library's header. If it is not defined, the host does without.
#if HOST_WINDOWS_H == 1
#include <windows.h>
#endif

#include "NuvImgSDK2014DLL.h"

#if HOST_WINDOWS_H == 2
#include <windows.h>
#endif

namespace {

// ---- The text ----

char text[8192];
int32_t length = 0;

void put(char character) {
  if (length < static_cast<int32_t>(sizeof text)) text[length++] = character;
}
void put(const char* words) {
  while (*words != 0) put(*words++);
}
void put(int32_t number) {
  char digits[12];
  int32_t count = 0;
  uint32_t rest = number < 0 ? 0u - static_cast<uint32_t>(number) : static_cast<uint32_t>(number);
  do {
    digits[count++] = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (number < 0) digits[count++] = '-';
  while (count > 0) put(digits[--count]);
}
void put(bool value) {
  put(value ? "true" : "false");
}
// Six decimals, truncated.
void put(double value) {
  if (value < 0) put('-');
  const double size = value < 0 ? -value : value;
  const auto whole = static_cast<int32_t>(size);
  put(whole);
  put('.');
  auto decimals = static_cast<int32_t>((size - whole) * 1000000);
  for (int32_t unit = 100000; unit > 0; unit /= 10) {
    put(static_cast<char>('0' + decimals / unit));
    decimals %= unit;
  }
}

template <class... Values>
void line(const char* name, Values... values) {
  put(name);
  (..., (put(' '), put(values)));
  put('\n');
}

// ---- Calls ----

template <class T>
struct As {
  using Itself = T;
  using Word = T;
};
#if defined(_WIN32)
template <>
struct As<bool> {
  using Itself = bool;
  using Word = uint32_t;
};
template <>
struct As<uint8_t> {
  using Itself = uint8_t;
  using Word = uint32_t;
};
uint32_t word(bool value) {
  return 0xA5A5A500u | static_cast<uint32_t>(value);
}
uint32_t word(uint8_t value) {
  return 0xA5A5A500u | value;
}
#endif
template <class T>
T word(T value) {
  return value;
}

#if defined(_WIN32) && defined(__i386__)
constexpr int32_t kAlignments = 4;
#else
constexpr int32_t kAlignments = 1;
#endif
// By how many bytes the stack is lower in the calls.
int32_t lowered = 0;

template <class Result, class... Arguments>
[[gnu::noinline]] Result call(Result (*function)(Arguments...), typename As<Arguments>::Itself... arguments) {
  if constexpr (kAlignments > 1) {
    [[maybe_unused]] void* volatile room = __builtin_alloca_with_align(static_cast<unsigned>(lowered), 32);
  }
  using WithWords = Result (*)(typename As<Arguments>::Word...);
  // volatile, so that the compiler does not see which function it is.
  WithWords volatile with_words = reinterpret_cast<WithWords>(function);
  return with_words(word(arguments)...);
}

// ---- Images ----

constexpr int32_t kWidth = 83;
constexpr int32_t kHeight = 61;
constexpr int32_t kPixels = kWidth * kHeight;
uint8_t image[3 * kPixels];
uint8_t other[3 * kPixels];
uint8_t result[3 * kPixels];
uint8_t work[3 * kPixels];

// Three bright rectangles on a dark ground with noise, and 0 after the image. The second rectangle lies dx to the right.
void draw(uint8_t* to, int32_t channels, int32_t dx) {
  uint32_t state = 2014;
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x) {
      const bool bright = (x >= 5 && x < 25 && y >= 6 && y < 30) ||
                          (x >= 40 + dx && x < 70 + dx && y >= 10 && y < 50) ||
                          (x >= 8 && x < 20 && y >= 40 && y < 52);
      for (int32_t i = 0; i < channels; ++i) {
        state = state * 1664525u + 1013904223u;
        to[channels * (y * kWidth + x) + i] = static_cast<uint8_t>((bright ? 190 : 40) + (state >> 28));
      }
    }
  }
  for (int32_t i = channels * kPixels; i < 3 * kPixels; ++i) to[i] = 0;
}

int32_t checksum(const uint8_t* bytes, int32_t count) {
  uint32_t sum = 2166136261u;
  for (int32_t i = 0; i < count; ++i) sum = (sum ^ bytes[i]) * 16777619u;
  return static_cast<int32_t>(sum);
}

void images() {
  draw(image, 1, 0);
  call(NuvGryImgSobel, image, kWidth, kHeight, result);
  line("Sobel", checksum(result, kPixels));
  const bool averaged = call(NuvGryAverageFilterFast, image, kWidth, kHeight, 3, 2, result);
  line("average", averaged, checksum(result, kPixels));
  line("average of too large a window",
       call(NuvGryAverageFilterFast, image, kWidth, kHeight, 300, 300, result));
  for (int32_t half = 1; half <= 4; ++half) {
    call(NuvGryFastMedianFilter, image, kWidth, kHeight, half, half, result);
    line("median", half, checksum(result, kPixels));
  }
  call(NuvGryImgBilinearInterpolattionFast, image, kWidth, kHeight, result, 100, 40);
  line("resized", checksum(result, 4000));
  call(NuvSetPixelsTo255, image, kWidth, 3, 60, 4, 50, static_cast<uint8_t>(200));
  line("pixels of one value", checksum(image, kPixels));
  for (int32_t channels = 1; channels <= 3; channels += 2) {
    const bool colour = channels == 3;
    const int32_t bytes = channels * kPixels;
    draw(image, channels, 0);
    draw(other, channels, 2);
    call(NuvImg1SubstractImg2, image, other, kWidth, kHeight, colour, result);
    line("difference", checksum(result, bytes));
    const tagRECT left{5, 6, 30, 40};
    const tagRECT right{45, 12, 70, 46};
    line("difference of rectangles", call(NuvImgDifferenceInRect, image, other, colour, kWidth, left, right));
    int32_t dx = 0;
    int32_t dy = 0;
    const tagRECT around{30, 4, 74, 54};
    const int32_t shift =
        call(NuvShiftImg2BasedImg1, image, other, result, kWidth, kHeight, colour, 4, 3, around, &dx, &dy);
    line("shift", shift, dx, dy, checksum(result, bytes));
  }
  call(NuvRGB2Gry, image, kWidth, kHeight, result);
  line("gray", checksum(result, kPixels));
}

void numbers() {
  line("overlap", call(NuvRectOverlapArea, tagRECT{0, 0, 9, 9}, tagRECT{5, 6, 20, 20}));
  line("distance", call(NuvDistBetweenPoint12, 1.5, -2.0, 4.5, 2.0));
  draw(image, 1, 0);
  int32_t x = 0;
  int32_t y = 0;
  const double brightest = call(NuvMaxBrightRect, image, kWidth, kHeight, 9, 7, &x, &y);
  line("brightest window", brightest, x, y);
  line("noise", call(NuvEstimateNoiseDelta, image, kWidth, kHeight, result));
  int32_t ends_x[2] = {-1, -1};
  int32_t ends_y[2] = {-1, -1};
  const bool crosses =
      call(NuvKBLineRectBoundary, kWidth, kHeight, 10, 50, 10, 40, 0, 0.5, 7.25, ends_x, ends_y);
  line("line in a rectangle", crosses, ends_x[0], ends_y[0], ends_x[1], ends_y[1]);
  int32_t points_x[6] = {0, 2, 4, 6, 8, 10};
  int32_t points_y[6] = {1, 2, 3, 40, 5, 6};
  bool counts[6] = {true, true, true, false, true, true};
  int32_t is_vertical = -1;
  double k = 0;
  double b = 0;
  double angle = 0;
  call(NuvFittingLineMsk, points_x, points_y, counts, 6, &is_vertical, &k, &b, &angle);
  line("line through points", is_vertical, k, b);
}

void lists() {
  draw(image, 1, 0);
  for (int32_t i = 0; i < kPixels; ++i) other[i] = image[i] > 128 ? 255 : 0;
  for (int32_t y = 20; y < 30; ++y) {
    for (int32_t x = 45; x < 55; ++x) other[y * kWidth + x] = 0;
  }
  line("black share", call(NuvGetBlackRatioInBinaryImg, other, kWidth, 5, 60, 5, 50));
  tagRECT largest{};
  int32_t x = 0;
  int32_t y = 0;
  const int32_t area = call(Nuv255RectWithMaxArea, other, work, kWidth, kHeight, 1, kWidth - 2, 1,
                            kHeight - 2, 1, &largest, &x, &y);
  line("largest contour", area, static_cast<int32_t>(largest.left), static_cast<int32_t>(largest.top),
       static_cast<int32_t>(largest.right), static_cast<int32_t>(largest.bottom), x, y);
  NUV_CONTOUR_STRUCT* contours = call(NuvGetContours, other, work, kWidth, kHeight, 8, 9, 0);
  for (const NUV_CONTOUR_STRUCT* c = contours; c != nullptr; c = c->pNext) {
    tagRECT box{};
    NuvContourRect(c->x, c->y, c->pChainCode, c->N, &box.left, &box.right, &box.top, &box.bottom);
    line("contour", c->isOuter, c->area, c->perimeter, c->x, c->y, c->N, checksum(c->pChainCode, c->N),
         static_cast<int32_t>(box.left), static_cast<int32_t>(box.right), static_cast<int32_t>(box.top),
         static_cast<int32_t>(box.bottom));
  }
  call(NuvFreeContours, contours);
  for (int32_t i = 0; i < kPixels; ++i) other[i] = static_cast<uint8_t>(255 - image[i]);
  RegionStruct* regions = call(NuvMergeSplit, other, work, kWidth, kHeight, 60, 20, 0.5);
  for (const RegionStruct* r = regions; r != nullptr; r = r->next) {
    line("region", r->x0, r->y0, r->N, r->area, r->perimeter, r->gry, r->ID, r->parentID, r->curArea);
  }
  call(NuvFreeRegionStruct, regions);
  line("detector", call(NuvImgChainLines_Initialize, kWidth, kHeight, 0.9, 1.0, 10, 20, 100));
  const int32_t found = call(NuvImgChainLines_DoGryImg, image, kWidth, kHeight, true);
  const TAVI_LINE_SEGMENT* segments = call(NuvImgChainLines_GetLines);
  for (int32_t i = 0; i < found; ++i) {
    const TAVI_LINE_SEGMENT& s = segments[i];
    int32_t* points_x = nullptr;
    int32_t* points_y = nullptr;
    int32_t n = 0;
    const bool has_points = call(NuvImgChainLines_GetNxtCodeLine, &points_x, &points_y, &n);
    line("segment", s.x1, s.y1, s.x2, s.y2, s.A, s.B, s.C, has_points, n, points_x[0], points_y[n - 1]);
  }
}

// The alignment of the stack in calls.
uintptr_t alignment = 0;
void note_alignment() {
  alignment = reinterpret_cast<uintptr_t>(__builtin_frame_address(0)) % 16;
}

void all() {
  call(note_alignment);
  images();
  numbers();
  lists();
}

// ---- The platform ----

bool is_in_library(const void* address);
[[noreturn]] void end(bool good);

#if defined(_WIN32)

#if !defined(HOST_WINDOWS_H)
extern "C" {
__declspec(dllimport) void* __stdcall GetModuleHandleA(const char* name);
__declspec(dllimport) void* __stdcall GetStdHandle(unsigned long which);
__declspec(dllimport) int __stdcall WriteFile(void* file, const void* data, unsigned long size,
                                              unsigned long* written, void* overlapped);
__declspec(dllimport) void __stdcall ExitProcess(unsigned int status);
}
#endif

uint32_t number_at(const uint8_t* place) {
  return place[0] | place[1] << 8 | place[2] << 16 | static_cast<uint32_t>(place[3]) << 24;
}

// Wine starts a program even if the DLL lacks a function; its address then lies elsewhere.
bool is_in_library(const void* address) {
  const auto* library = reinterpret_cast<const uint8_t*>(GetModuleHandleA("NuvImgSDK2014DLL.dll"));
  const uint32_t size = number_at(library + number_at(library + 0x3C) + 80);
  return address >= library && address < library + size;
}

void end(bool good) {
  unsigned long written = 0;
  WriteFile(GetStdHandle(static_cast<unsigned long>(-11)), text, static_cast<unsigned long>(length), &written,
            nullptr);
  ExitProcess(good ? 0 : 1);
  for (;;) {}
}

#else

bool is_in_library(const void* address) {
  return address != nullptr;
}

void end(bool good) {
  std::fwrite(text, 1, static_cast<std::size_t>(length), stdout);
  std::exit(good ? 0 : 1);
}

#endif

bool all_at_every_alignment() {
  static char first[sizeof text];
  uint32_t seen = 0;
  const int32_t start = length;
  for (int32_t i = 0; i < kAlignments; ++i) {
    lowered = 4 * i;
    length = start;
    all();
    seen |= 1u << alignment / 4;
    for (int32_t j = 0; j < length; ++j) {
      if (i == 0) first[j] = text[j];
      if (first[j] != text[j]) {
        line("The stack was lower by this number of bytes, and the results differ:", lowered);
        return false;
      }
    }
  }
  if (kAlignments > 1 && seen != 15) {
    line("The stack did not have each alignment:", static_cast<int32_t>(seen));
    return false;
  }
  return true;
}

// Whether all functions of the list are in the library. Names the others.
bool has_all_functions() {
  int32_t present = 0;
  bool good = true;
  const auto check = [&](const void* address, const char* function) {
    if (is_in_library(address)) {
      ++present;
    } else {
      line("missing in the library:", function);
      good = false;
    }
  };
#define EXPORT(name, result, arguments) \
  check(reinterpret_cast<const void*>(static_cast<result(*) arguments>(&name)), #name #arguments);
#include "exports.inc"
#undef EXPORT
  if (good) line("functions", present);
  return good;
}

[[noreturn]] void run() {
  end(has_all_functions() && all_at_every_alignment());
}

}  // namespace

#if defined(_WIN32)
// The linker looks for it in programs with floating-point numbers.
extern "C" int _fltused = 0;

extern "C" void start() {
  run();
}
#else
int main() {
  run();
}
#endif

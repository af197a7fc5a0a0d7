// Vectors of 16 and 32 bytes, for work that consists of reordering bytes: splitting interleaved pixels,
// turning columns into rows. Compilers do not recognise such permutations in loops over arrays. The vector
// types are those of the language extension that GCC and clang share, and they compile for any processor.
//
// Without the extension NUV_HAS_LANES is 0, and the users of this header run their plain loops. A build that
// defines it as 0 tests those loops.

#ifndef NUV_CORE_LANES_H
#define NUV_CORE_LANES_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/row_kernel.h"

#if defined(__has_builtin) && !defined(NUV_HAS_LANES)
#if __has_builtin(__builtin_shufflevector)
#define NUV_HAS_LANES 1
#endif
#endif
#if !defined(NUV_HAS_LANES)
#define NUV_HAS_LANES 0
#endif

#if NUV_HAS_LANES && defined(__SSE2__)
#include <emmintrin.h>
#endif

// How many places of the following loop clang processes at once for WebAssembly. Vectors of 16 bytes that load
// 8 bytes widen them while loading, and 16 results of 32 bits narrow to bytes in one step each. Where clang
// chooses another number, it widens or narrows by general shuffles, which engines execute slowly.
#if defined(__wasm_simd128__)
#define NUV_PRAGMA(text) _Pragma(#text)
#define NUV_WASM_PLACES(n) NUV_PRAGMA(clang loop vectorize_width(n))
#else
#define NUV_WASM_PLACES(n)
#endif

namespace nuv {

// Functions for a single byte and for lanes of bytes share their names, so that one template serves both.

NUV_INLINE void load(const uint8_t* p, uint8_t& byte) {
  byte = *p;
}
NUV_INLINE void store(uint8_t* p, uint8_t byte) {
  *p = byte;
}

// Compilers turn this choice between the lanes of two vectors into one instruction.
template <class Lanes>
NUV_INLINE void keep_lesser(Lanes& a, const Lanes& b) {
  a = a < b ? a : b;
}
template <class Lanes>
NUV_INLINE void keep_greater(Lanes& a, const Lanes& b) {
  a = a > b ? a : b;
}
// In each lane, a becomes the lesser and b the greater.
template <class Lanes>
NUV_INLINE void order(Lanes& a, Lanes& b) {
  const Lanes first = a;
  keep_lesser(a, b);
  keep_greater(b, first);
}

// The first pixel of a step that works on so many pixels of a row. The last step ends with the row and may
// repeat pixels of the step before it.
NUV_INLINE std::ptrdiff_t start_of_step(std::ptrdiff_t done, std::ptrdiff_t step, std::ptrdiff_t count) {
  return done < count - step ? done : count - step;
}

#if NUV_HAS_LANES

using Bytes16 = uint8_t __attribute__((vector_size(16)));

NUV_INLINE Bytes16 load16(const uint8_t* p) {
  Bytes16 v;
  std::memcpy(&v, p, 16);
  return v;
}

NUV_INLINE void store16(uint8_t* p, Bytes16 v) {
  std::memcpy(p, &v, 16);
}

NUV_INLINE void load(const uint8_t* p, Bytes16& lanes) {
  lanes = load16(p);
}
NUV_INLINE void store(uint8_t* p, const Bytes16& lanes) {
  store16(p, lanes);
}

// Two lanes of sixteen bytes side by side. They are passed by reference, because the calling convention for
// values of this size depends on whether the processor has registers for them.
using Bytes32 = uint8_t __attribute__((vector_size(32)));

// A vector at any address. Compilers split a 32-byte std::memcpy in two, through the stack.
struct __attribute__((packed, may_alias)) Bytes32Anywhere {
  Bytes32 bytes;
};

NUV_INLINE void load32(const uint8_t* p, Bytes32& lanes) {
  lanes = reinterpret_cast<const Bytes32Anywhere*>(p)->bytes;
}

NUV_INLINE void store32(uint8_t* p, const Bytes32& lanes) {
  reinterpret_cast<Bytes32Anywhere*>(p)->bytes = lanes;
}

NUV_INLINE void load(const uint8_t* p, Bytes32& lanes) {
  load32(p, lanes);
}
NUV_INLINE void store(uint8_t* p, const Bytes32& lanes) {
  store32(p, lanes);
}

// The lanes for work that keeps many vectors at once. The vectors of WebAssembly have 16 bytes, and its compiler
// spills the halves of larger ones; elsewhere vectors of 32 bytes are as fast even in halves.
#if defined(__wasm__)
using ByteLanes = Bytes16;
#else
using ByteLanes = Bytes32;
#endif
constexpr int kByteLanes = sizeof(ByteLanes);

// Sixteen 16-bit integers.
using Shorts16 = int16_t __attribute__((vector_size(32)));
using UnsignedShorts16 = uint16_t __attribute__((vector_size(32)));

struct __attribute__((packed, may_alias)) Shorts16Anywhere {
  Shorts16 shorts;
};

NUV_INLINE void load(const int16_t* p, Shorts16& lanes) {
  lanes = reinterpret_cast<const Shorts16Anywhere*>(p)->shorts;
}
NUV_INLINE void store(int16_t* p, const Shorts16& lanes) {
  reinterpret_cast<Shorts16Anywhere*>(p)->shorts = lanes;
}

// The average of each pair of bytes, rounded up.
NUV_INLINE Bytes16 average_up(Bytes16 a, Bytes16 b) {
#if defined(__SSE2__)
  return reinterpret_cast<Bytes16>(_mm_avg_epu8(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
#else
  return (a | b) - ((a ^ b) >> 1);
#endif
}

// Alternates the bytes of the lower halves of two vectors, or of their upper halves.
NUV_INLINE Bytes16 zip_low(Bytes16 a, Bytes16 b) {
  return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}
NUV_INLINE Bytes16 zip_high(Bytes16 a, Bytes16 b) {
  return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}

NUV_INLINE Bytes16 reversed(Bytes16 v) {
  return __builtin_shufflevector(v, v, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
}

// Byte i of the result is byte places[i] of v. Each place must be below 16. clang makes one instruction of the
// list, but not of a loop.
NUV_INLINE Bytes16 picked(Bytes16 v, Bytes16 places) {
#if defined(__clang__)
  return Bytes16{v[places[0]],  v[places[1]],  v[places[2]],  v[places[3]], v[places[4]],  v[places[5]],
                 v[places[6]],  v[places[7]],  v[places[8]],  v[places[9]], v[places[10]], v[places[11]],
                 v[places[12]], v[places[13]], v[places[14]], v[places[15]]};
#else
  return __builtin_shuffle(v, places);
#endif
}

// Turns 16 rows of 16 bytes into 16 columns. The address of a byte has eight bits, the row number above the
// place in the row. Zipping every row i with row i + 8 rotates these addresses left by one bit, so four
// rounds exchange row and place.
NUV_INLINE void transpose16(Bytes16 (&rows)[16]) {
  Bytes16 zipped[16];
#pragma GCC unroll 4
  for (int round = 0; round < 4; ++round) {
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i) {
      zipped[2 * i] = zip_low(rows[i], rows[i + 8]);
      zipped[2 * i + 1] = zip_high(rows[i], rows[i + 8]);
    }
#pragma GCC unroll 16
    for (int i = 0; i < 16; ++i) rows[i] = zipped[i];
  }
}

#endif  // NUV_HAS_LANES

}  // namespace nuv

#endif

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
#include <type_traits>
#include <utility>

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

// How many places of the following loop clang processes at once. Where it would choose more, values may not fit
// the registers.
#if defined(__clang__)
#define NUV_PRAGMA(text) _Pragma(#text)
#define NUV_CLANG_PLACES(n) NUV_PRAGMA(clang loop vectorize_width(n))
#else
#define NUV_CLANG_PLACES(n)
#endif

// The same for WebAssembly alone. Vectors of 16 bytes that load 8 bytes widen them while loading, and 16 results of
// 32 bits narrow to bytes in one step each. Where clang chooses another number, it widens or narrows by general
// shuffles, which engines execute slowly.
#if defined(__wasm_simd128__)
#define NUV_WASM_PLACES(n) NUV_CLANG_PLACES(n)
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

// The first pixels of the steps through a row of count pixels, for a loop. A step works on Step pixels. The last one
// ends with the row and may repeat pixels of the one before it. A row of fewer than Step pixels has no steps.
template <std::ptrdiff_t Step>
class Steps {
 public:
  class Iterator {
   public:
    NUV_INLINE Iterator(std::ptrdiff_t done, std::ptrdiff_t last) : done_(done), last_(last) {}
    NUV_INLINE std::ptrdiff_t operator*() const { return done_ < last_ ? done_ : last_; }
    NUV_INLINE Iterator& operator++() {
      done_ += Step;
      return *this;
    }
    NUV_INLINE bool operator!=(const Iterator& end) const { return done_ < end.done_; }

   private:
    std::ptrdiff_t done_;
    std::ptrdiff_t last_;
  };

  NUV_INLINE explicit Steps(std::ptrdiff_t count) : covered_(count < Step ? 0 : count) {}

  NUV_INLINE Iterator begin() const { return {0, covered_ - Step}; }
  NUV_INLINE Iterator end() const { return {covered_, covered_ - Step}; }
  // The number of pixels that the steps process: all or none.
  NUV_INLINE std::ptrdiff_t covered() const { return covered_; }

 private:
  std::ptrdiff_t covered_;
};

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

// True if the processor has registers for vectors of 32 bytes. Without them, GCC compiles shuffles and comparisons
// of such vectors byte by byte. Work with these steps is therefore a template, and a row kernel calls it with
// vectors of 32 or of 16 bytes.
NUV_INLINE bool has_wide_lanes() {
#if defined(__AVX2__)
  return true;
#elif NUV_HAS_COPIES
  return __builtin_cpu_supports("avx2") != 0;
#else
  return false;
#endif
}

template <std::size_t Size>
using Bytes = std::conditional_t<Size == sizeof(Bytes32), Bytes32, Bytes16>;

// Pairs of bytes as words.
template <class Words>
NUV_INLINE void load_words(const uint8_t* p, Words& words) {
  Bytes<sizeof(Words)> bytes;
  load(p, bytes);
  words = reinterpret_cast<Words>(bytes);
}
template <class Words>
NUV_INLINE void store_words(uint8_t* p, const Words& words) {
  store(p, reinterpret_cast<Bytes<sizeof(Words)>>(words));
}

// The lanes for work that keeps many vectors at once. The vectors of WebAssembly have 16 bytes, and its compiler
// spills the halves of larger ones; elsewhere vectors of 32 bytes are as fast even in halves.
#if defined(__wasm__)
using ByteLanes = Bytes16;
#else
using ByteLanes = Bytes32;
#endif
constexpr int kByteLanes = sizeof(ByteLanes);

// Eight or sixteen 16-bit integers.
using Shorts8 = int16_t __attribute__((vector_size(16)));
using UnsignedShorts8 = uint16_t __attribute__((vector_size(16)));
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

// The bytes at even places of two vectors, or those at odd places.
NUV_INLINE Bytes16 even_bytes(Bytes16 a, Bytes16 b) {
  return __builtin_shufflevector(a, b, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
}
NUV_INLINE Bytes16 odd_bytes(Bytes16 a, Bytes16 b) {
  return __builtin_shufflevector(a, b, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31);
}

NUV_INLINE Bytes16 with_halves_exchanged(Bytes16 v) {
  using Halves = uint64_t __attribute__((vector_size(16)));
  const auto halves = reinterpret_cast<Halves>(v);
  return reinterpret_cast<Bytes16>(__builtin_shufflevector(halves, halves, 1, 0));
}

NUV_INLINE Bytes16 reversed(Bytes16 v, bool in_steps) {
  if (!in_steps) return __builtin_shufflevector(v, v, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  const auto words = reinterpret_cast<UnsignedShorts8>(v);
  const UnsignedShorts8 exchanged = words << 8 | words >> 8;
  return with_halves_exchanged(
      reinterpret_cast<Bytes16>(__builtin_shufflevector(exchanged, exchanged, 3, 2, 1, 0, 7, 6, 5, 4)));
}
// True if the processor may lack permutations of bytes. Vectors are then reversed in three steps.
NUV_INLINE bool reverses_in_steps() {
#if defined(__SSE2__) && !defined(__SSSE3__)
  return !has_wide_lanes();
#else
  return false;
#endif
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

// Three vectors of interleaved bytes, v[0] to v[2] of a pixel, become one vector of each plane, and back.
//
// Byte k of pixel i is byte 3i + k of the row. Because 16 is 1 modulo 3, the bytes of one plane occupy disjoint
// places in three consecutive vectors of 16. Masks and bitwise ors gather them in one vector, and a permutation
// puts them in order. Joining reverses these steps. In vectors of 32 bytes the two lanes do the same side by side.

// Place j of a lane comes from v0, v1 or v2 if j modulo 3 is 0, 1 or 2. Masks are used because a blend of
// bytes takes several processor steps.
template <class Lanes, int... J>
NUV_INLINE void mix_by_thirds(const Lanes& v0, const Lanes& v1, const Lanes& v2, Lanes& mixed,
                              std::integer_sequence<int, J...> /*places*/) {
  constexpr Lanes first = {((J & 15) % 3 == 0 ? 255 : 0)...};
  constexpr Lanes second = {((J & 15) % 3 == 1 ? 255 : 0)...};
  constexpr Lanes third = {((J & 15) % 3 == 2 ? 255 : 0)...};
  mixed = (v0 & first) | (v1 & second) | (v2 & third);
}

// Place j of a lane receives the byte at place 3j + K modulo 16, or sends its byte there. 11 is the inverse
// of 3 modulo 16.
template <int K, class Lanes, int... J>
NUV_INLINE void take_from_thirds(Lanes& v, std::integer_sequence<int, J...> /*places*/) {
  v = __builtin_shufflevector(v, v, (J & 16) + ((3 * J + K) & 15)...);
}
template <int K, class Lanes, int... J>
NUV_INLINE void send_to_thirds(Lanes& v, std::integer_sequence<int, J...> /*places*/) {
  v = __builtin_shufflevector(v, v, (J & 16) + (11 * (J - K) & 15)...);
}

// a, b and c are the three vectors of interleaved bytes in each lane.
template <class Lanes>
NUV_INLINE void split_lanes_of_thirds(const Lanes& a, const Lanes& b, const Lanes& c, Lanes (&planes)[3]) {
  using Places = std::make_integer_sequence<int, sizeof(Lanes)>;
  Lanes mixed[3];
  mix_by_thirds(a, c, b, mixed[0], Places{});
  mix_by_thirds(b, a, c, mixed[1], Places{});
  mix_by_thirds(c, b, a, mixed[2], Places{});
  for (int k = 0; k < 3; ++k) planes[k] = mixed[k];
  take_from_thirds<0>(planes[0], Places{});
  take_from_thirds<1>(planes[1], Places{});
  take_from_thirds<2>(planes[2], Places{});
}
template <class Lanes>
NUV_INLINE void join_lanes_of_thirds(Lanes (&planes)[3], Lanes& a, Lanes& b, Lanes& c) {
  using Places = std::make_integer_sequence<int, sizeof(Lanes)>;
  send_to_thirds<0>(planes[0], Places{});
  send_to_thirds<1>(planes[1], Places{});
  send_to_thirds<2>(planes[2], Places{});
  Lanes mixed[3];
  mix_by_thirds(planes[0], planes[1], planes[2], mixed[0], Places{});
  mix_by_thirds(planes[1], planes[2], planes[0], mixed[1], Places{});
  mix_by_thirds(planes[2], planes[0], planes[1], mixed[2], Places{});
  a = mixed[0];
  b = mixed[1];
  c = mixed[2];
}

// True if each processor of the build permutes 16 bytes in one step. Without that, zips do the same: zipping the
// first 24 of 48 bytes with the last 24 moves the byte at place i to place 2i modulo 47. Four rounds move byte
// 3p + k to place 16 * (3p + k) = 16k + p modulo 47, which is place p of plane k. Separating the bytes at even and
// odd places reverses a round.
#if defined(__SSSE3__)
constexpr bool kPermutesBytes = true;
#else
constexpr bool kPermutesBytes = false;
#endif

NUV_INLINE void split_thirds(Bytes16 (&v)[3]) {
  if (kPermutesBytes) {
    split_lanes_of_thirds(v[0], v[1], v[2], v);
    return;
  }
#pragma GCC unroll 4
  for (int round = 0; round < 4; ++round) {
    const Bytes16 last = with_halves_exchanged(v[2]);
    const Bytes16 first_of_all = zip_low(v[0], with_halves_exchanged(v[1]));
    v[2] = zip_low(v[1], last);
    v[1] = zip_high(v[0], last);
    v[0] = first_of_all;
  }
}
NUV_INLINE void join_thirds(Bytes16 (&v)[3]) {
  if (kPermutesBytes) {
    join_lanes_of_thirds(v, v[0], v[1], v[2]);
    return;
  }
#pragma GCC unroll 4
  for (int round = 0; round < 4; ++round) {
    const Bytes16 even = even_bytes(v[0], v[1]);
    const Bytes16 odd = odd_bytes(v[1], v[2]);
    const Bytes16 odd_of_first = reinterpret_cast<Bytes16>(reinterpret_cast<UnsignedShorts8>(v[0]) >> 8);
    v[1] = even_bytes(v[2], odd_of_first);
    v[0] = even;
    v[2] = odd;
  }
}

#endif  // NUV_HAS_LANES

}  // namespace nuv

#endif

// RGB pixels split into words, one for each byte of a pixel, and joined again: 32 pixels at once, or 16 where
// vectors of 32 bytes are slow (core/lanes.h).
//
// Two pixels are three words: bytes 0 and 1 of the left one, byte 2 of the left and byte 0 of the right one,
// and bytes 1 and 2 of the right one. Because 8 is 2 modulo 3, the words of one kind occupy disjoint places
// in three consecutive vectors of 8. Blends gather them in one vector, and a shuffle puts them in order.
// Joining reverses these steps. core/interleaved.cpp does the same for single bytes, with masks: processors
// blend words in one step, but bytes in several. 16 pixels are split into planes of bytes, whose even and odd
// bytes are the words.

#ifndef NUV_CORE_PIXEL_WORDS_H
#define NUV_CORE_PIXEL_WORDS_H

#include "core/lanes.h"

#if NUV_HAS_LANES

#include <utility>

namespace nuv {

template <class Words>
NUV_INLINE void low_bytes(const Words& words, Words& bytes) {
  bytes = words & 255;
}
NUV_INLINE void high_bytes(const Shorts8& words, Shorts8& bytes) {
  bytes = reinterpret_cast<Shorts8>(reinterpret_cast<UnsignedShorts8>(words) >> 8);
}
NUV_INLINE void high_bytes(const Shorts16& words, Shorts16& bytes) {
  bytes = reinterpret_cast<Shorts16>(reinterpret_cast<UnsignedShorts16>(words) >> 8);
}

// Pairs of pixels: the three bytes of each left pixel and those of each right one, as words.
template <class Words>
struct PixelPairs {
  static constexpr int kPixels = sizeof(Words);

  Words left[3];
  Words right[3];
};

using WordPlaces = std::make_integer_sequence<int, 16>;

template <int LaneOfA, int LaneOfB, int... J>
NUV_INLINE void take_word_lanes(const Shorts16& a, const Shorts16& b, Shorts16& lanes,
                                std::integer_sequence<int, J...> /*places*/) {
  lanes = __builtin_shufflevector(a, b, (J < 8 ? 8 * LaneOfA + J : 8 + 8 * LaneOfB + J)...);
}

// Place j of a lane comes from v0, v1 or v2 if j modulo 3 is 0, 1 or 2.
template <int... J>
NUV_INLINE void mix_words(const Shorts16& v0, const Shorts16& v1, const Shorts16& v2, Shorts16& mixed,
                          std::integer_sequence<int, J...> /*places*/) {
  const Shorts16 two = __builtin_shufflevector(v0, v1, ((J & 7) % 3 == 1 ? 16 + J : J)...);
  mixed = __builtin_shufflevector(two, v2, ((J & 7) % 3 == 2 ? 16 + J : J)...);
}

// Place m of a lane receives the word at place 3m + K modulo 8, or sends its word there. 3 is its own inverse
// modulo 8.
template <int K, int... M>
NUV_INLINE void order_words(Shorts16& v, std::integer_sequence<int, M...> /*places*/) {
  v = __builtin_shufflevector(v, v, (M & 8) + ((3 * M + K) & 7)...);
}
template <int K, int... J>
NUV_INLINE void spread_words(const Shorts16& v, Shorts16& spread,
                             std::integer_sequence<int, J...> /*places*/) {
  spread = __builtin_shufflevector(v, v, (J & 8) + (3 * (J - K) & 7)...);
}

NUV_INLINE void split_pixels(const uint8_t* rgb, PixelPairs<Shorts16>& pairs) {
  Shorts16 row[3];
  for (int i = 0; i < 3; ++i) load_words(rgb + 32 * i, row[i]);
  Shorts16 a;
  Shorts16 b;
  Shorts16 c;
  take_word_lanes<0, 1>(row[0], row[1], a, WordPlaces{});
  take_word_lanes<1, 0>(row[0], row[2], b, WordPlaces{});
  take_word_lanes<0, 1>(row[1], row[2], c, WordPlaces{});
  Shorts16 kind[3];
  mix_words(a, b, c, kind[0], WordPlaces{});
  mix_words(c, a, b, kind[1], WordPlaces{});
  mix_words(b, c, a, kind[2], WordPlaces{});
  order_words<0>(kind[0], WordPlaces{});
  order_words<1>(kind[1], WordPlaces{});
  order_words<2>(kind[2], WordPlaces{});
  low_bytes(kind[0], pairs.left[0]);
  high_bytes(kind[0], pairs.left[1]);
  low_bytes(kind[1], pairs.left[2]);
  high_bytes(kind[1], pairs.right[0]);
  low_bytes(kind[2], pairs.right[1]);
  high_bytes(kind[2], pairs.right[2]);
}

NUV_INLINE void join_pixels(const PixelPairs<Shorts16>& pairs, uint8_t* rgb) {
  Shorts16 spread[3];
  spread_words<0>(pairs.left[0] | pairs.left[1] << 8, spread[0], WordPlaces{});
  spread_words<1>(pairs.left[2] | pairs.right[0] << 8, spread[1], WordPlaces{});
  spread_words<2>(pairs.right[1] | pairs.right[2] << 8, spread[2], WordPlaces{});
  Shorts16 a;
  Shorts16 b;
  Shorts16 c;
  mix_words(spread[0], spread[1], spread[2], a, WordPlaces{});
  mix_words(spread[2], spread[0], spread[1], b, WordPlaces{});
  mix_words(spread[1], spread[2], spread[0], c, WordPlaces{});
  Shorts16 row[3];
  take_word_lanes<0, 0>(a, b, row[0], WordPlaces{});
  take_word_lanes<0, 1>(c, a, row[1], WordPlaces{});
  take_word_lanes<1, 1>(b, c, row[2], WordPlaces{});
  for (int i = 0; i < 3; ++i) store_words(rgb + 32 * i, row[i]);
}

NUV_INLINE void split_pixels(const uint8_t* rgb, PixelPairs<Shorts8>& pairs) {
  Bytes16 planes[3];
  for (int i = 0; i < 3; ++i) load(rgb + 16 * i, planes[i]);
  split_thirds(planes);
  for (int i = 0; i < 3; ++i) {
    const auto words = reinterpret_cast<Shorts8>(planes[i]);
    low_bytes(words, pairs.left[i]);
    high_bytes(words, pairs.right[i]);
  }
}

NUV_INLINE void join_pixels(const PixelPairs<Shorts8>& pairs, uint8_t* rgb) {
  Bytes16 planes[3];
  for (int i = 0; i < 3; ++i) planes[i] = reinterpret_cast<Bytes16>(pairs.left[i] | pairs.right[i] << 8);
  join_thirds(planes);
  for (int i = 0; i < 3; ++i) store(rgb + 16 * i, planes[i]);
}

}  // namespace nuv

#endif  // NUV_HAS_LANES

#endif

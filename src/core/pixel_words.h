// RGB pixels as words of two bytes, 32 pixels at once.
//
// Two pixels are three words: bytes 0 and 1 of the left one, byte 2 of the left and byte 0 of the right one,
// and bytes 1 and 2 of the right one. Because 8 is 2 modulo 3, the words of one kind occupy disjoint places
// in three consecutive vectors of 8. Blends gather them in one vector, and a shuffle puts them in order.
// Joining reverses these steps. core/interleaved.cpp does the same for single bytes, with masks: processors
// blend words in one step, but bytes in several.

#ifndef NUV_CORE_PIXEL_WORDS_H
#define NUV_CORE_PIXEL_WORDS_H

#include "core/lanes.h"

#if NUV_HAS_LANES

#include <utility>

namespace nuv {

NUV_INLINE void load_words(const uint8_t* p, Shorts16& words) {
  Bytes32 bytes;
  load32(p, bytes);
  words = reinterpret_cast<Shorts16>(bytes);
}
NUV_INLINE void store_words(uint8_t* p, const Shorts16& words) {
  store32(p, reinterpret_cast<Bytes32>(words));
}

NUV_INLINE void low_bytes(const Shorts16& words, Shorts16& bytes) {
  bytes = words & 255;
}
NUV_INLINE void high_bytes(const Shorts16& words, Shorts16& bytes) {
  bytes = reinterpret_cast<Shorts16>(reinterpret_cast<UnsignedShorts16>(words) >> 8);
}

// The words of 16 pairs of pixels, by kind.
struct PixelWords {
  static constexpr int kPixels = 32;

  Shorts16 kind[3];
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

NUV_INLINE void split_words(const uint8_t* pixels, PixelWords& words) {
  Shorts16 row[3];
  for (int i = 0; i < 3; ++i) load_words(pixels + 32 * i, row[i]);
  Shorts16 a;
  Shorts16 b;
  Shorts16 c;
  take_word_lanes<0, 1>(row[0], row[1], a, WordPlaces{});
  take_word_lanes<1, 0>(row[0], row[2], b, WordPlaces{});
  take_word_lanes<0, 1>(row[1], row[2], c, WordPlaces{});
  mix_words(a, b, c, words.kind[0], WordPlaces{});
  mix_words(c, a, b, words.kind[1], WordPlaces{});
  mix_words(b, c, a, words.kind[2], WordPlaces{});
  order_words<0>(words.kind[0], WordPlaces{});
  order_words<1>(words.kind[1], WordPlaces{});
  order_words<2>(words.kind[2], WordPlaces{});
}

NUV_INLINE void join_words(const PixelWords& words, uint8_t* pixels) {
  Shorts16 spread[3];
  spread_words<0>(words.kind[0], spread[0], WordPlaces{});
  spread_words<1>(words.kind[1], spread[1], WordPlaces{});
  spread_words<2>(words.kind[2], spread[2], WordPlaces{});
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
  for (int i = 0; i < 3; ++i) store_words(pixels + 32 * i, row[i]);
}

}  // namespace nuv

#endif  // NUV_HAS_LANES

#endif

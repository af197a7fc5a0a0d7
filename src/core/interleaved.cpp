// Splits and joins interleaved bytes.
//
// Byte k of pixel i is byte 3i + k of the row. Because 16 is 1 modulo 3, the bytes of one plane occupy
// disjoint places in three consecutive vectors of 16. Masks and bitwise ors gather them in one vector, and a
// permutation puts them in order. Joining reverses these steps. A step processes two such groups of 16 pixels
// side by side, each in its own lane of a vector of 32.

#include "core/interleaved.h"

#include <utility>

#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {

#if NUV_HAS_LANES
namespace {

constexpr std::ptrdiff_t kStep = 32;  // pixels per step
using Places = std::make_integer_sequence<int, kStep>;

// Place j of a lane receives the byte at place 3j + K modulo 16, or sends its byte there. 11 is the inverse
// of 3 modulo 16.
template <int K, int... J>
NUV_INLINE void take_from_thirds(Bytes32& v, std::integer_sequence<int, J...> /*places*/) {
  v = __builtin_shufflevector(v, v, (J & 16) + ((3 * J + K) & 15)...);
}
template <int K, int... J>
NUV_INLINE void send_to_thirds(Bytes32& v, std::integer_sequence<int, J...> /*places*/) {
  v = __builtin_shufflevector(v, v, (J & 16) + (11 * (J - K) & 15)...);
}

// Place j of a lane comes from v0, v1 or v2 if j modulo 3 is 0, 1 or 2. Masks are used because a blend of
// bytes takes several processor steps.
template <int... J>
NUV_INLINE void mix_by_thirds(const Bytes32& v0, const Bytes32& v1, const Bytes32& v2, Bytes32& mixed,
                              std::integer_sequence<int, J...> /*places*/) {
  constexpr Bytes32 first = {((J & 15) % 3 == 0 ? 255 : 0)...};
  constexpr Bytes32 second = {((J & 15) % 3 == 1 ? 255 : 0)...};
  constexpr Bytes32 third = {((J & 15) % 3 == 2 ? 255 : 0)...};
  mixed = (v0 & first) | (v1 & second) | (v2 & third);
}

// Joins one lane of a and one lane of b.
template <int LaneOfA, int LaneOfB, int... J>
NUV_INLINE void take_lanes(const Bytes32& a, const Bytes32& b, Bytes32& lanes,
                           std::integer_sequence<int, J...> /*places*/) {
  lanes = __builtin_shufflevector(a, b, (J < 16 ? 16 * LaneOfA + J : 16 + 16 * LaneOfB + J)...);
}

NUV_INLINE void split_step(const uint8_t* pixels, uint8_t* plane0, uint8_t* plane1, uint8_t* plane2) {
  Bytes32 row[3];
  for (int i = 0; i < 3; ++i) load32(pixels + 32 * i, row[i]);
  Bytes32 a;
  Bytes32 b;
  Bytes32 c;
  take_lanes<0, 1>(row[0], row[1], a, Places{});
  take_lanes<1, 0>(row[0], row[2], b, Places{});
  take_lanes<0, 1>(row[1], row[2], c, Places{});
  Bytes32 planes[3];
  mix_by_thirds(a, c, b, planes[0], Places{});
  mix_by_thirds(b, a, c, planes[1], Places{});
  mix_by_thirds(c, b, a, planes[2], Places{});
  take_from_thirds<0>(planes[0], Places{});
  take_from_thirds<1>(planes[1], Places{});
  take_from_thirds<2>(planes[2], Places{});
  store32(plane0, planes[0]);
  store32(plane1, planes[1]);
  store32(plane2, planes[2]);
}

NUV_INLINE void join_step(const uint8_t* plane0, const uint8_t* plane1, const uint8_t* plane2,
                          uint8_t* pixels) {
  Bytes32 planes[3];
  load32(plane0, planes[0]);
  load32(plane1, planes[1]);
  load32(plane2, planes[2]);
  send_to_thirds<0>(planes[0], Places{});
  send_to_thirds<1>(planes[1], Places{});
  send_to_thirds<2>(planes[2], Places{});
  Bytes32 a;
  Bytes32 b;
  Bytes32 c;
  mix_by_thirds(planes[0], planes[1], planes[2], a, Places{});
  mix_by_thirds(planes[1], planes[2], planes[0], b, Places{});
  mix_by_thirds(planes[2], planes[0], planes[1], c, Places{});
  Bytes32 row[3];
  take_lanes<0, 0>(a, b, row[0], Places{});
  take_lanes<0, 1>(c, a, row[1], Places{});
  take_lanes<1, 1>(b, c, row[2], Places{});
  for (int i = 0; i < 3; ++i) store32(pixels + 32 * i, row[i]);
}

// Selects every third place, counted from place K. If K is negative, the count begins before the vector.
template <int K, int... J>
NUV_INLINE void plane_mask(Bytes32& mask, std::integer_sequence<int, J...> /*places*/) {
  mask = Bytes32{((J - K) % 3 == 0 ? 255 : 0)...};
}

// Writes one plane over its places in the pixels, or combines it with them by a bitwise or. A byte of the
// plane has the same place within its lane in all three mixtures of join_step(), so masks suffice.
template <int K, bool IsOr>
NUV_INLINE void put_step(const uint8_t* plane, uint8_t* pixels) {
  Bytes32 sent[3];
  load32(plane, sent[1]);
  send_to_thirds<K>(sent[1], Places{});
  take_lanes<0, 0>(sent[1], sent[1], sent[0], Places{});
  take_lanes<1, 1>(sent[1], sent[1], sent[2], Places{});
  Bytes32 masks[3];
  plane_mask<K>(masks[0], Places{});
  plane_mask<K - 32>(masks[1], Places{});
  plane_mask<K - 64>(masks[2], Places{});
  for (int i = 0; i < 3; ++i) {
    Bytes32 row;
    load32(pixels + 32 * i, row);
    if (!IsOr) row &= ~masks[i];
    row |= sent[i] & masks[i];
    store32(pixels + 32 * i, row);
  }
}

// Pairs of bytes are split in two steps. First each lane gathers the bytes of one plane in its lower half and
// those of the other plane in its upper half. Then the equal halves of two lanes are joined.
template <int... J>
NUV_INLINE void part_pairs(Bytes32& v, std::integer_sequence<int, J...> /*places*/) {
  v = __builtin_shufflevector(v, v, (J & 16) + (2 * (J & 7) + (J >> 3 & 1))...);
}
template <int Half, int... J>
NUV_INLINE void join_halves(const Bytes32& a, const Bytes32& b, Bytes32& joined,
                            std::integer_sequence<int, J...> /*places*/) {
  joined = __builtin_shufflevector(a, b, (J & 16) + (J & 8) * 4 + 8 * Half + (J & 7)...);
}

NUV_INLINE void split_pairs_step(const uint8_t* pairs, uint8_t* plane0, uint8_t* plane1) {
  Bytes32 row[2];
  for (int i = 0; i < 2; ++i) load32(pairs + 32 * i, row[i]);
  Bytes32 a;
  Bytes32 b;
  take_lanes<0, 0>(row[0], row[1], a, Places{});
  take_lanes<1, 1>(row[0], row[1], b, Places{});
  part_pairs(a, Places{});
  part_pairs(b, Places{});
  Bytes32 planes[2];
  join_halves<0>(a, b, planes[0], Places{});
  join_halves<1>(a, b, planes[1], Places{});
  store32(plane0, planes[0]);
  store32(plane1, planes[1]);
}

// Pairs are joined by alternating the bytes of a and b, from the lower or from the upper half of each lane.
template <int Half, int... J>
NUV_INLINE void zip_halves(const Bytes32& a, const Bytes32& b, Bytes32& zipped,
                           std::integer_sequence<int, J...> /*places*/) {
  zipped = __builtin_shufflevector(a, b, (J & 16) + 8 * Half + (J >> 1 & 7) + (J & 1) * 32 ...);
}

NUV_INLINE void join_pairs_step(const uint8_t* plane0, const uint8_t* plane1, uint8_t* pairs) {
  Bytes32 planes[2];
  load32(plane0, planes[0]);
  load32(plane1, planes[1]);
  Bytes32 lower;
  Bytes32 upper;
  zip_halves<0>(planes[0], planes[1], lower, Places{});
  zip_halves<1>(planes[0], planes[1], upper, Places{});
  Bytes32 row[2];
  take_lanes<0, 0>(lower, upper, row[0], Places{});
  take_lanes<1, 1>(lower, upper, row[1], Places{});
  for (int i = 0; i < 2; ++i) store32(pairs + 32 * i, row[i]);
}

}  // namespace
#endif

NUV_ROW_KERNEL void split_planes(const uint8_t* NUV_RESTRICT pixels, uint8_t* NUV_RESTRICT plane0,
                                 uint8_t* NUV_RESTRICT plane1, uint8_t* NUV_RESTRICT plane2,
                                 std::ptrdiff_t count) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  while (count >= kStep && done < count) {
    const std::ptrdiff_t i = start_of_step(done, kStep, count);
    split_step(pixels + 3 * i, plane0 + i, plane1 + i, plane2 + i);
    done = i + kStep;
  }
#endif
  for (; done < count; ++done) {
    plane0[done] = pixels[3 * done];
    plane1[done] = pixels[3 * done + 1];
    plane2[done] = pixels[3 * done + 2];
  }
}

NUV_ROW_KERNEL void join_planes(const uint8_t* NUV_RESTRICT plane0, const uint8_t* NUV_RESTRICT plane1,
                                const uint8_t* NUV_RESTRICT plane2, uint8_t* NUV_RESTRICT pixels,
                                std::ptrdiff_t count) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  while (count >= kStep && done < count) {
    const std::ptrdiff_t i = start_of_step(done, kStep, count);
    join_step(plane0 + i, plane1 + i, plane2 + i, pixels + 3 * i);
    done = i + kStep;
  }
#endif
  for (; done < count; ++done) {
    pixels[3 * done] = plane0[done];
    pixels[3 * done + 1] = plane1[done];
    pixels[3 * done + 2] = plane2[done];
  }
}

namespace {

template <int K, bool IsOr>
NUV_INLINE void put_bytes(const uint8_t* NUV_RESTRICT plane, uint8_t* NUV_RESTRICT pixels,
                          std::ptrdiff_t count) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  // A pixel that is processed twice gets the same value again.
  while (count >= kStep && done < count) {
    const std::ptrdiff_t i = start_of_step(done, kStep, count);
    put_step<K, IsOr>(plane + i, pixels + 3 * i);
    done = i + kStep;
  }
#endif
  for (; done < count; ++done) {
    uint8_t& byte = pixels[3 * done + K];
    byte = IsOr ? byte | plane[done] : plane[done];
  }
}

}  // namespace

NUV_ROW_KERNEL void replace_plane(const uint8_t* NUV_RESTRICT plane, int place, uint8_t* NUV_RESTRICT pixels,
                                  std::ptrdiff_t count) {
  if (place == 0) put_bytes<0, false>(plane, pixels, count);
  if (place == 1) put_bytes<1, false>(plane, pixels, count);
  if (place == 2) put_bytes<2, false>(plane, pixels, count);
}

NUV_ROW_KERNEL void or_plane(const uint8_t* NUV_RESTRICT plane, int place, uint8_t* NUV_RESTRICT pixels,
                             std::ptrdiff_t count) {
  if (place == 0) put_bytes<0, true>(plane, pixels, count);
  if (place == 1) put_bytes<1, true>(plane, pixels, count);
  if (place == 2) put_bytes<2, true>(plane, pixels, count);
}

NUV_ROW_KERNEL void split_pairs(const uint8_t* NUV_RESTRICT pairs, uint8_t* NUV_RESTRICT plane0,
                                uint8_t* NUV_RESTRICT plane1, std::ptrdiff_t count) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  while (count >= kStep && done < count) {
    const std::ptrdiff_t i = start_of_step(done, kStep, count);
    split_pairs_step(pairs + 2 * i, plane0 + i, plane1 + i);
    done = i + kStep;
  }
#endif
  for (; done < count; ++done) {
    plane0[done] = pairs[2 * done];
    plane1[done] = pairs[2 * done + 1];
  }
}

NUV_ROW_KERNEL void second_of_pairs(const uint8_t* NUV_RESTRICT pairs, uint8_t* NUV_RESTRICT plane1,
                                    std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) plane1[i] = pairs[2 * i + 1];
}

NUV_ROW_KERNEL void join_pairs(const uint8_t* NUV_RESTRICT plane0, const uint8_t* NUV_RESTRICT plane1,
                               uint8_t* NUV_RESTRICT pairs, std::ptrdiff_t count) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  while (count >= kStep && done < count) {
    const std::ptrdiff_t i = start_of_step(done, kStep, count);
    join_pairs_step(plane0 + i, plane1 + i, pairs + 2 * i);
    done = i + kStep;
  }
#endif
  for (; done < count; ++done) {
    pairs[2 * done] = plane0[done];
    pairs[2 * done + 1] = plane1[done];
  }
}

}  // namespace nuv

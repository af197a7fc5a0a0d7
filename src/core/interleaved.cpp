// Splits and joins interleaved bytes.
//
// A step processes as many pixels as a vector has bytes (core/lanes.h). A vector of 32 bytes holds two groups of 16
// pixels side by side, each in its own lane.

#include "core/interleaved.h"

#include <utility>

#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {

#if NUV_HAS_LANES
namespace {

using Places = std::make_integer_sequence<int, 32>;

// The forms for vectors of 16 bytes, which those below would hide.
using nuv::join_thirds;
using nuv::split_thirds;

// Joins one lane of a and one lane of b.
template <int LaneOfA, int LaneOfB, int... J>
NUV_INLINE void take_lanes(const Bytes32& a, const Bytes32& b, Bytes32& lanes,
                           std::integer_sequence<int, J...> /*places*/) {
  lanes = __builtin_shufflevector(a, b, (J < 16 ? 16 * LaneOfA + J : 16 + 16 * LaneOfB + J)...);
}

NUV_INLINE void split_thirds(Bytes32 (&v)[3]) {
  Bytes32 a;
  Bytes32 b;
  Bytes32 c;
  take_lanes<0, 1>(v[0], v[1], a, Places{});
  take_lanes<1, 0>(v[0], v[2], b, Places{});
  take_lanes<0, 1>(v[1], v[2], c, Places{});
  split_lanes_of_thirds(a, b, c, v);
}

NUV_INLINE void join_thirds(Bytes32 (&v)[3]) {
  Bytes32 a;
  Bytes32 b;
  Bytes32 c;
  join_lanes_of_thirds(v, a, b, c);
  take_lanes<0, 0>(a, b, v[0], Places{});
  take_lanes<0, 1>(c, a, v[1], Places{});
  take_lanes<1, 1>(b, c, v[2], Places{});
}

// These functions process as many pixels at once as a vector has bytes, and return the number of pixels done:
// all of them, or none if there are fewer. A pixel that is processed twice gets the same value again.

template <class Lanes>
NUV_INLINE std::ptrdiff_t split_planes_by(const uint8_t* pixels, uint8_t* plane0, uint8_t* plane1,
                                          uint8_t* plane2, std::ptrdiff_t count) {
  constexpr std::ptrdiff_t kStep = sizeof(Lanes);
  const Steps<kStep> steps(count);
  for (const std::ptrdiff_t i : steps) {
    Lanes v[3];
    for (int k = 0; k < 3; ++k) load(pixels + 3 * i + kStep * k, v[k]);
    split_thirds(v);
    store(plane0 + i, v[0]);
    store(plane1 + i, v[1]);
    store(plane2 + i, v[2]);
  }
  return steps.covered();
}

template <class Lanes>
NUV_INLINE std::ptrdiff_t join_planes_by(const uint8_t* plane0, const uint8_t* plane1, const uint8_t* plane2,
                                         uint8_t* pixels, std::ptrdiff_t count) {
  constexpr std::ptrdiff_t kStep = sizeof(Lanes);
  const Steps<kStep> steps(count);
  for (const std::ptrdiff_t i : steps) {
    Lanes v[3];
    load(plane0 + i, v[0]);
    load(plane1 + i, v[1]);
    load(plane2 + i, v[2]);
    join_thirds(v);
    for (int k = 0; k < 3; ++k) store(pixels + 3 * i + kStep * k, v[k]);
  }
  return steps.covered();
}

template <class Lanes, int K>
NUV_INLINE std::ptrdiff_t take_plane_by(const uint8_t* pixels, uint8_t* plane, std::ptrdiff_t count) {
  constexpr std::ptrdiff_t kStep = sizeof(Lanes);
  const Steps<kStep> steps(count);
  for (const std::ptrdiff_t i : steps) {
    Lanes v[3];
    for (int k = 0; k < 3; ++k) load(pixels + 3 * i + kStep * k, v[k]);
    split_thirds(v);
    store(plane + i, v[K]);
  }
  return steps.covered();
}

// Repeats a plane in three vectors, with each byte at its place K of a pixel. The other places are meaningless.
template <int K>
NUV_INLINE void repeat_at(const Bytes32& plane, Bytes32 (&v)[3]) {
  v[1] = plane;
  send_to_thirds<K>(v[1], Places{});
  // A byte of the plane has the same place within its lane in all three mixtures of join_thirds().
  take_lanes<0, 0>(v[1], v[1], v[0], Places{});
  take_lanes<1, 1>(v[1], v[1], v[2], Places{});
}
template <int K>
NUV_INLINE void repeat_at(const Bytes16& plane, Bytes16 (&v)[3]) {
  for (Bytes16& repeated : v) repeated = plane;
  if (!kPermutesBytes) return join_thirds(v);
  for (Bytes16& repeated : v) send_to_thirds<K>(repeated, std::make_integer_sequence<int, 16>{});
}

// Selects every third place, counted from place K. If K is negative, the count begins before the vector.
template <int K, class Lanes, int... J>
NUV_INLINE void plane_mask(Lanes& mask, std::integer_sequence<int, J...> /*places*/) {
  mask = Lanes{((J - K) % 3 == 0 ? 255 : 0)...};
}

// Writes one plane over its places in the pixels, or combines it with them by a bitwise or.
template <class Lanes, int K, bool IsOr>
NUV_INLINE std::ptrdiff_t put_bytes_by(const uint8_t* plane, uint8_t* pixels, std::ptrdiff_t count) {
  constexpr int kStep = sizeof(Lanes);
  using LanePlaces = std::make_integer_sequence<int, kStep>;
  const Steps<kStep> steps(count);
  for (const std::ptrdiff_t i : steps) {
    Lanes bytes;
    Lanes repeated[3];
    load(plane + i, bytes);
    repeat_at<K>(bytes, repeated);
    Lanes masks[3];
    plane_mask<K>(masks[0], LanePlaces{});
    plane_mask<K - kStep>(masks[1], LanePlaces{});
    plane_mask<K - 2 * kStep>(masks[2], LanePlaces{});
    for (int k = 0; k < 3; ++k) {
      Lanes row;
      load(pixels + 3 * i + kStep * k, row);
      if (!IsOr) row &= ~masks[k];
      row |= repeated[k] & masks[k];
      store(pixels + 3 * i + kStep * k, row);
    }
  }
  return steps.covered();
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

NUV_INLINE void split_alternating(Bytes32 (&v)[2]) {
  Bytes32 a;
  Bytes32 b;
  take_lanes<0, 0>(v[0], v[1], a, Places{});
  take_lanes<1, 1>(v[0], v[1], b, Places{});
  part_pairs(a, Places{});
  part_pairs(b, Places{});
  join_halves<0>(a, b, v[0], Places{});
  join_halves<1>(a, b, v[1], Places{});
}
NUV_INLINE void split_alternating(Bytes16 (&v)[2]) {
  const Bytes16 even = even_bytes(v[0], v[1]);
  v[1] = odd_bytes(v[0], v[1]);
  v[0] = even;
}

template <class Lanes>
NUV_INLINE std::ptrdiff_t split_pairs_by(const uint8_t* pairs, uint8_t* plane0, uint8_t* plane1,
                                         std::ptrdiff_t count) {
  constexpr std::ptrdiff_t kStep = sizeof(Lanes);
  const Steps<kStep> steps(count);
  for (const std::ptrdiff_t i : steps) {
    Lanes v[2];
    for (int k = 0; k < 2; ++k) load(pairs + 2 * i + kStep * k, v[k]);
    split_alternating(v);
    store(plane0 + i, v[0]);
    store(plane1 + i, v[1]);
  }
  return steps.covered();
}

// Pairs are joined by alternating the bytes of a and b, from the lower or from the upper half of each lane.
template <int Half, int... J>
NUV_INLINE void zip_halves(const Bytes32& a, const Bytes32& b, Bytes32& zipped,
                           std::integer_sequence<int, J...> /*places*/) {
  zipped = __builtin_shufflevector(a, b, (J & 16) + 8 * Half + (J >> 1 & 7) + (J & 1) * 32 ...);
}

NUV_INLINE void join_alternating(Bytes32 (&v)[2]) {
  Bytes32 lower;
  Bytes32 upper;
  zip_halves<0>(v[0], v[1], lower, Places{});
  zip_halves<1>(v[0], v[1], upper, Places{});
  take_lanes<0, 0>(lower, upper, v[0], Places{});
  take_lanes<1, 1>(lower, upper, v[1], Places{});
}
NUV_INLINE void join_alternating(Bytes16 (&v)[2]) {
  const Bytes16 lower = zip_low(v[0], v[1]);
  v[1] = zip_high(v[0], v[1]);
  v[0] = lower;
}

template <class Lanes>
NUV_INLINE std::ptrdiff_t join_pairs_by(const uint8_t* plane0, const uint8_t* plane1, uint8_t* pairs,
                                        std::ptrdiff_t count) {
  constexpr std::ptrdiff_t kStep = sizeof(Lanes);
  const Steps<kStep> steps(count);
  for (const std::ptrdiff_t i : steps) {
    Lanes v[2];
    load(plane0 + i, v[0]);
    load(plane1 + i, v[1]);
    join_alternating(v);
    for (int k = 0; k < 2; ++k) store(pairs + 2 * i + kStep * k, v[k]);
  }
  return steps.covered();
}

}  // namespace
#endif

NUV_ROW_KERNEL void split_planes(const uint8_t* NUV_RESTRICT pixels, uint8_t* NUV_RESTRICT plane0,
                                 uint8_t* NUV_RESTRICT plane1, uint8_t* NUV_RESTRICT plane2,
                                 std::ptrdiff_t count) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  done = has_wide_lanes() ? split_planes_by<Bytes32>(pixels, plane0, plane1, plane2, count)
                          : split_planes_by<Bytes16>(pixels, plane0, plane1, plane2, count);
#endif
  for (; done < count; ++done) {
    plane0[done] = pixels[3 * done];
    plane1[done] = pixels[3 * done + 1];
    plane2[done] = pixels[3 * done + 2];
  }
}

namespace {

template <int K>
NUV_INLINE void take_bytes(const uint8_t* NUV_RESTRICT pixels, uint8_t* NUV_RESTRICT plane,
                           std::ptrdiff_t count) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  done = has_wide_lanes() ? take_plane_by<Bytes32, K>(pixels, plane, count)
                          : take_plane_by<Bytes16, K>(pixels, plane, count);
#endif
  for (; done < count; ++done) plane[done] = pixels[3 * done + K];
}

}  // namespace

NUV_ROW_KERNEL void take_plane(const uint8_t* NUV_RESTRICT pixels, int place, uint8_t* NUV_RESTRICT plane,
                               std::ptrdiff_t count) {
  if (place == 0) take_bytes<0>(pixels, plane, count);
  if (place == 1) take_bytes<1>(pixels, plane, count);
  if (place == 2) take_bytes<2>(pixels, plane, count);
}

NUV_ROW_KERNEL void join_planes(const uint8_t* NUV_RESTRICT plane0, const uint8_t* NUV_RESTRICT plane1,
                                const uint8_t* NUV_RESTRICT plane2, uint8_t* NUV_RESTRICT pixels,
                                std::ptrdiff_t count) {
  std::ptrdiff_t done = 0;
#if NUV_HAS_LANES
  done = has_wide_lanes() ? join_planes_by<Bytes32>(plane0, plane1, plane2, pixels, count)
                          : join_planes_by<Bytes16>(plane0, plane1, plane2, pixels, count);
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
  done = has_wide_lanes() ? put_bytes_by<Bytes32, K, IsOr>(plane, pixels, count)
                          : put_bytes_by<Bytes16, K, IsOr>(plane, pixels, count);
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
  done = has_wide_lanes() ? split_pairs_by<Bytes32>(pairs, plane0, plane1, count)
                          : split_pairs_by<Bytes16>(pairs, plane0, plane1, count);
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
  done = has_wide_lanes() ? join_pairs_by<Bytes32>(plane0, plane1, pairs, count)
                          : join_pairs_by<Bytes16>(plane0, plane1, pairs, count);
#endif
  for (; done < count; ++done) {
    pairs[2 * done] = plane0[done];
    pairs[2 * done + 1] = plane1[done];
  }
}

}  // namespace nuv

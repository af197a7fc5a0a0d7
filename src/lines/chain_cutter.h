// Cuts a chain into straight pieces.

#ifndef NUV_LINES_CHAIN_CUTTER_H
#define NUV_LINES_CHAIN_CUTTER_H

#include <cstdint>

#include "core/views.h"

namespace nuv {

// A straight stretch of a chain.
struct Piece {
  Point begin;    // the point at its first code
  Point end;      // the point after its last code
  int32_t codes;  // number of its codes
  int32_t start;  // index of its first code in the chain
};

// What counts as straight.
struct Straightness {
  double min_straightness;  // least ratio of chord to path
  double max_deviation;     // greatest ratio of the area between path and chord to the chord
  int32_t min_length;       // least length of a piece, in pixels of path
};

// The number of codes to leave out at each end of a stretch of count codes, at least 2.
int32_t trimmed_share(double min_straightness, int32_t count);

// A chain of n codes, with the point before each code.
struct ChainWithPoints {
  const uint8_t* codes;
  const int32_t* x;
  const int32_t* y;
  int32_t n;
};

// Writes at most max_pieces pieces, in the order of the chain, and returns their number. Pieces beyond that
// are dropped.
int32_t cut_chain(const ChainWithPoints& chain, const Straightness& limits, Piece* pieces,
                  int32_t max_pieces);

}  // namespace nuv

#endif

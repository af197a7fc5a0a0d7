// The measures of a chain that one walk along it gives.

#ifndef NUV_CONTOURS_CHAIN_MEASURES_H
#define NUV_CONTOURS_CHAIN_MEASURES_H

#include <cstdint>

#include "contours/chain.h"
#include "core/views.h"

namespace nuv {

struct ChainMeasures {
  int32_t area;  // area and perimeter as computed by NuvAreaAndPerimeter
  int32_t perimeter;
  Region box;  // of all positions
  bool closes;
};

ChainMeasures measures_of(const Chain& chain);

}  // namespace nuv

#endif

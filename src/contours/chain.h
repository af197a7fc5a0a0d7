// The chain walk: the positions of a chain, in each of the visiting orders.
//
// A closed chain of N codes makes N steps, and the last one comes back to the start. Whether the start is
// visited, and whether that last step is, differs from function to function, and is the contract of each.
// Code that must know where on the chain it is takes the plain walk.

#ifndef NUV_CONTOURS_CHAIN_H
#define NUV_CONTOURS_CHAIN_H

#include <cstdint>

#include "core/neighbours.h"
#include "core/views.h"

namespace nuv {

struct Chain {
  Point start;
  const uint8_t* codes;
  int32_t n;

  // The code before code i; that of the first is the last.
  int previous(int32_t i) const { return direction_of(codes[i == 0 ? n - 1 : i - 1]); }
};

// Visits the ends of the first steps of the chain, in order.
template <class Visit>
void walk_ends(const Chain& chain, int32_t steps, Visit visit) {
  Point p = chain.start;
  for (int32_t i = 0; i < steps; ++i) {
    p = stepped(p, chain.codes[i]);
    visit(p);
  }
}

// The N positions of a closed chain, each once: the start, and the ends of the first N-1 steps.
template <class Visit>
void walk_positions(const Chain& chain, Visit visit) {
  if (chain.n < 1) return;
  visit(chain.start);
  walk_ends(chain, chain.n - 1, visit);
}

// The start and the ends of all N steps: the start is met twice on a closed chain.
template <class Visit>
void walk_start_and_ends(const Chain& chain, Visit visit) {
  visit(chain.start);
  walk_ends(chain, chain.n, visit);
}

// Whether test() holds at the end of any of the N steps.
template <class Test>
bool any_end(const Chain& chain, Test test) {
  Point p = chain.start;
  for (int32_t i = 0; i < chain.n; ++i) {
    p = stepped(p, chain.codes[i]);
    if (test(p)) return true;
  }
  return false;
}

}  // namespace nuv

#endif

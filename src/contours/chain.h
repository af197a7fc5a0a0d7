// Walks along a chain, one for each set of points that functions visit.
//
// A chain of N codes has N steps, and the last step of a closed chain ends at the start. Functions differ in
// whether they visit the start and the end of the last step. Code that also needs the index of a step uses a
// plain loop over the codes.

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

  // The code before code i. The last code comes before the first.
  int previous(int32_t i) const { return direction_of(codes[i == 0 ? n - 1 : i - 1]); }
};

// Visits the ends of the first steps of the chain.
template <class Visit>
void walk_ends(const Chain& chain, int32_t steps, Visit visit) {
  Point p = chain.start;
  for (int32_t i = 0; i < steps; ++i) {
    take_step(p, chain.codes[i]);
    visit(p);
  }
}

// Visits the N positions of a chain: the start and the ends of the first N-1 steps. There is one call of visit,
// because clang does not inline a long function that is called twice.
template <class Visit>
void walk_positions(const Chain& chain, Visit visit) {
  Point p = chain.start;
  for (int32_t i = 0; i < chain.n; ++i) {
    if (i > 0) take_step(p, chain.codes[i - 1]);
    visit(p);
  }
}

// Visits the start and the ends of all N steps. On a closed chain the start is visited twice.
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
    take_step(p, chain.codes[i]);
    if (test(p)) return true;
  }
  return false;
}

}  // namespace nuv

#endif

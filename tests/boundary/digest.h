// All that an export does in the typical scenes, in one number.

#ifndef NUV_TESTS_BOUNDARY_DIGEST_H
#define NUV_TESTS_BOUNDARY_DIGEST_H

#include "boundary/calls.h"

struct Digest {
  uint64_t checksum;
  bool shows_an_effect;  // in at least one scene
};

inline Digest digest_of(const Call& call) {
  Checksum sum;
  bool effect = false;
  for (uint32_t seed = 1; seed <= 32; ++seed) {
    Scene scene(Scene::Kind::kTypical, seed);
    if (!call.contract(scene)) continue;
    call.run(scene);
    const uint64_t checksum = scene.checksum();
    sum.add(&checksum, sizeof checksum);
    effect = effect || scene.shows_an_effect();
  }
  return {sum.value(), effect};
}

#endif

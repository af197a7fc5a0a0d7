// A checksum of everything that an export does in the scenes of one kind, and a byte of checksum for each
// scene.

#ifndef NUV_TESTS_BOUNDARY_DIGEST_H
#define NUV_TESTS_BOUNDARY_DIGEST_H

#include "boundary/calls.h"

struct Digest {
  uint64_t checksum = 0;
  std::string of_scenes;         // two hexadecimal digits for each seed; dots for a scene that is not played
  bool shows_an_effect = false;  // in at least one scene
};

inline Digest digest_of(const Call& call, Scene::Kind kind = Scene::Kind::kTypical) {
  constexpr uint32_t kTypicals = 32;
  Digest digest;
  Checksum sum;
  const uint32_t last = kind == Scene::Kind::kTypical ? kTypicals : Scene::kSpecials;
  for (uint32_t seed = 1; seed <= last; ++seed) {
    Scene scene(kind, seed);
    if (!call.contract(scene)) {
      digest.of_scenes += "..";
      continue;
    }
    call.run(scene);
    const uint64_t checksum = scene.checksum();
    sum.add(&checksum, sizeof checksum);
    digest.of_scenes += "0123456789abcdef"[checksum >> 60];
    digest.of_scenes += "0123456789abcdef"[checksum >> 56 & 15];
    digest.shows_an_effect = digest.shows_an_effect || scene.shows_an_effect();
  }
  digest.checksum = sum.value();
  return digest;
}

#endif

// In every scene within the contract an export neither crashes nor takes long nor writes outside its memory.

#include <gmock/gmock.h>

#include <chrono>

#include "boundary/calls.h"

#if defined(NUV_ASAN)
// Some calls request more memory than there is.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
#endif

namespace {

TEST(HostileScenes, DoNoHarm) {
  using Clock = std::chrono::steady_clock;
  for (const Call& call : all_calls()) {
    for (uint32_t seed = 1; seed <= 1000; ++seed) {
      Scene scene(Scene::Kind::kHostile, seed);
      if (!call.contract(scene)) continue;
      const Clock::time_point start = Clock::now();
      call.run(scene);
      ASSERT_TRUE(scene.guards_hold()) << call.name << " in scene " << seed;
      ASSERT_LT(Clock::now() - start, std::chrono::seconds(10)) << call.name << " in scene " << seed;
    }
  }
}

}  // namespace

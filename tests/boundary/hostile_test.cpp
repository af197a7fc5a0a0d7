// In every scene within the contract an export neither crashes nor takes long nor writes outside its memory.

#include <gmock/gmock.h>

#if defined(_WIN32)
#include <windows.h>
#elif defined(__wasi__)
#include <chrono>
#else
#include <ctime>
#endif

#include "boundary/calls.h"

#if defined(NUV_ASAN)
// Some calls request more memory than there is.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
#endif

namespace {

// The time that processors have spent on this program, so that a busy machine does not make a call slow. It includes
// that of the system, which may take half a second to refuse terabytes. WebAssembly has only the time of day.
double seconds() {
#if defined(_WIN32)
  FILETIME started, ended, system, user;
  GetProcessTimes(GetCurrentProcess(), &started, &ended, &system, &user);
  const auto number = [](FILETIME time) { return time.dwHighDateTime * 4294967296.0 + time.dwLowDateTime; };
  return (number(system) + number(user)) * 1e-7;
#elif defined(__wasi__)
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#else
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#endif
}

TEST(HostileScenes, DoNoHarm) {
  for (const Call& call : all_calls()) {
    for (uint32_t seed = 1; seed <= 1000; ++seed) {
      Scene scene(Scene::Kind::kHostile, seed);
      if (!call.contract(scene)) continue;
      const double start = seconds();
      call.run(scene);
      ASSERT_TRUE(scene.guards_hold()) << call.name << " in scene " << seed;
      ASSERT_LT(seconds() - start, 10) << call.name << " in scene " << seed;
    }
  }
}

}  // namespace

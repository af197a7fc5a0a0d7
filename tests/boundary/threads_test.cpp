// Exports that keep no state give the same results on several threads at once as on one thread.

#include <gmock/gmock.h>

#include <array>
#include <thread>

#include "boundary/digest.h"

namespace {

TEST(Threads, DoNotDisturbEachOther) {
  for (const Call& call : all_calls()) {
    if (call.keeps_state) continue;
    const uint64_t alone = digest_of(call).checksum;
    std::array<uint64_t, 3> together{};
    std::array<std::thread, 3> threads;
    for (std::size_t i = 0; i < threads.size(); ++i) {
      threads[i] = std::thread([&, i] { together[i] = digest_of(call).checksum; });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_THAT(together, testing::Each(alone)) << call.name;
  }
}

}  // namespace

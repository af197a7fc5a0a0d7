// The table of calls as a library. A caller in another language makes the calls of an export, and the scene adds up
// what they do as if the export had been called.

#include "boundary/calls.h"

namespace {

// An argument in plain memory.
struct PlainArgument {
  int32_t is_pointer;
  int32_t numbers_size;
  const double* numbers;
  const void* address;
  uint8_t* memory;
  uint64_t bytes;
};

// Returns 0 if the export shall be called in its place.
using Maker = int32_t (*)(const PlainArgument* arguments, int32_t size, void* result);

class Made : public Observer {
 public:
  explicit Made(Maker maker) : maker_(maker) {}

  bool makes_call(const std::vector<Argument>& arguments, void* result) override {
    std::vector<PlainArgument> plain;
    for (const Argument& a : arguments) {
      plain.push_back({a.is_pointer ? 1 : 0, static_cast<int32_t>(a.numbers.size()), a.numbers.data(),
                       a.address, a.memory, a.bytes});
    }
    return maker_(plain.data(), static_cast<int32_t>(plain.size()), result) != 0;
  }

 private:
  Maker maker_;
};

const Calls& table() {
  static const Calls calls = all_calls();
  return calls;
}

}  // namespace

extern "C" {

#define NUV_PLAYED __attribute__((visibility("default")))

NUV_PLAYED int32_t played_calls() {
  return static_cast<int32_t>(table().size());
}

NUV_PLAYED const char* played_name(int32_t call) {
  return table()[static_cast<std::size_t>(call)].name.c_str();
}

// Kinds are numbered in the order of Scene::Kind. Returns false if the contract forbids the scene.
NUV_PLAYED bool play(int32_t call, int32_t kind, uint32_t seed, Maker maker, uint64_t* checksum,
                     bool* has_guards) {
  const Call& row = table()[static_cast<std::size_t>(call)];
  Scene scene(static_cast<Scene::Kind>(kind), seed);
  if (!row.contract(scene)) return false;
  Made made(maker);
  scene.observer = &made;
  row.run(scene);
  *checksum = scene.checksum();
  *has_guards = scene.guards_hold();
  return true;
}

NUV_PLAYED uint8_t* memory_by_new(uint64_t bytes) {
  return new uint8_t[bytes];
}
}

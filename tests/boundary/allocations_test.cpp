// If an allocation fails, whichever it is, the function gives the result that its header states, and leaks
// nothing.
//
// The library uses the forms of operator new that return null, and the tests use those that throw. Only the
// former fail here.

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <new>
#include <set>

#include "boundary/calls.h"

#if defined(NUV_ASAN)
// Some calls request more memory than there is.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
#endif

namespace {

int64_t n_asked = 0;         // allocations that the library has requested
int64_t first_failing = -1;  // the number of the first one that fails, or -1
bool later_fail_too = false;
int64_t n_held = 0;  // blocks that library and tests hold

void* take(std::size_t size) {
  void* memory = std::malloc(std::max<std::size_t>(size, 1));
  if (memory != nullptr) ++n_held;
  return memory;
}

void* take_or_stop(std::size_t size) {
  void* memory = take(size);
  if (memory == nullptr) std::abort();
  return memory;
}

void* take_unless_failing(std::size_t size) {
  const int64_t n = n_asked++;
  const bool fails = first_failing >= 0 && (n == first_failing || (later_fail_too && n > first_failing));
  return fails ? nullptr : take(size);
}

void give_back(void* memory) {
  if (memory == nullptr) return;
  --n_held;
  std::free(memory);
}

// While an object lives, the n-th allocation fails, counted from 0, and later ones fail on request.
class Failing {
 public:
  explicit Failing(int64_t n, bool later_too = false) {
    n_asked = 0;
    first_failing = n;
    later_fail_too = later_too;
  }
  ~Failing() { first_failing = -1; }
  Failing(const Failing&) = delete;
  Failing& operator=(const Failing&) = delete;
};

}  // namespace

void* operator new(std::size_t size) {
  return take_or_stop(size);
}
void* operator new[](std::size_t size) {
  return take_or_stop(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return take_unless_failing(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return take_unless_failing(size);
}
void operator delete(void* memory) noexcept {
  give_back(memory);
}
void operator delete[](void* memory) noexcept {
  give_back(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  give_back(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  give_back(memory);
}

namespace {

enum class Outcome {
  kNothing,  // 0, false or null is returned, and nothing is written
  kFailure,  // 0, false or null is returned
  kSame,     // the memory only saves time, or the scene does not need it
  kEither,   // kFailure or kSame, because some of the memory only saves time
  kPartial   // the part of the result that the memory suffices for
};

// The outcomes of all exports that allocate in these scenes.
const std::pair<Outcome, std::vector<std::string>> kOutcomes[] = {
    {Outcome::kNothing,
     {"NuvBinImgFilter", "NuvBinImgMedFilter", "NuvMarkMaxAreaHoleContour", "NuvGryAverageFilter",
      "NuvGryAverageFilterFast", "NuvGryAverageFilterFastNonBoundary", "NuvGryAverageFilterByX",
      "NuvGryAverageFilterByY", "NuvRGBAverageFilter", "NuvRGBAverageFilterFast",
      "NuvRGBAverageFilterFastNonBoundary", "NuvShrinkImgByAvr"}},
    {Outcome::kPartial,
     {"NuvGetMaxSizeofMinFilter", "NuvGetContours", "NuvFreeContours", "Nuv255NRegionsWithMaxArea",
      "NuvFillingContour", "NuvGradientByPrewitt0", "NuvGradientByPrewitt90", "NuvGradientByPrewitt",
      "NuvEdgeDeleteNoiseByLength", "NuvFillHolesByNearNeighbor", "NuvGryImgMedianBoundary0",
      "NuvGryFastMedianFilter", "NuvMergeSplit", "NuvFreeRegionStruct", "NuvWrite8BitImg2BmpFile",
      "NuvWrite8BitImg2BmpFileMarkColor", "NuvWrite24BitImg2BmpFile"}},
    {Outcome::kFailure,
     {"NuvBinImgThin", "NuvReplacePixelsColor", "NuvPastePixels2ResImg", "NuvRegionHistogram",
      "NuvRead8BitBmpFile2Img", "NuvRead24BitBmpFile2Img", "NuvRotateImgByCCS",
      "NuvDataMaxDevAndPosInMovingWindow", "NuvDataMaxDifAndPosInMovingWindow", "NuvMaxBrightRect"}},
    {Outcome::kEither, {"NuvLineKeyPoints"}},
    {Outcome::kSame,
     {"NuvBinImgMarkMinOfRLXandRLY", "NuvRLYBlackCount", "NuvRLYDeleteWhiteShort", "NuvRLYReginsGetAndGrow",
      "NuvRLYRegionsGet", "NuvRLYWhiteCount", "NuvRLYWhiteDeleteLong", "NuvRLYWhiteDeleteShort",
      "NuvRLYWhiteShort", "NuvRLYWhiteShortAndRLXWhiteLong", "NuvConnectEdge", "NuvContour2Poly4",
      "NuvGetNSquaresCenter", "Brindlemar2008AddNoise"}}};

std::map<std::string, Outcome> outcomes() {
  std::map<std::string, Outcome> outcomes;
  for (const auto& [outcome, names] : kOutcomes) {
    for (const std::string& name : names) outcomes[name] = outcome;
  }
  return outcomes;
}

void expect_outcome(Outcome outcome, const Scene& scene, uint64_t with_memory) {
  EXPECT_TRUE(scene.guards_hold());
  switch (outcome) {
    case Outcome::kNothing:
      EXPECT_FALSE(scene.shows_an_effect());
      break;
    case Outcome::kFailure:
      EXPECT_FALSE(scene.returned_something());
      break;
    case Outcome::kSame:
      EXPECT_EQ(scene.checksum(), with_memory);
      break;
    case Outcome::kEither:
      EXPECT_TRUE(!scene.returned_something() || scene.checksum() == with_memory);
      break;
    case Outcome::kPartial:
      break;
  }
}

// Makes the first allocations fail one by one, and then fewer and fewer of the later ones, each alone and
// together with all after it. Returns whether any was requested.
bool fail_one_after_the_other(const Call& call, Outcome outcome, Scene::Kind kind, uint32_t seed) {
  int64_t n = 0;
  uint64_t with_memory = 0;
  {
    Scene scene(kind, seed);
    if (!call.contract(scene)) return false;
    const Failing none(-1);
    call.run(scene);
    n = n_asked;
    with_memory = scene.checksum();
  }
  for (int64_t k = 0; k < 2 * n; k += k < 64 ? 1 : k) {
    SCOPED_TRACE(call.name + ", scene " + std::to_string(seed) + ", allocation " + std::to_string(k / 2));
    const int64_t held = n_held;
    {
      Scene scene(kind, seed);
      const Failing failing(k / 2, k % 2 != 0);
      call.run(scene);
      expect_outcome(outcome, scene, with_memory);
    }
    EXPECT_EQ(n_held, held) << "leaks";
  }
  return n > 0;
}

// Detectors and lists hold memory from one scene to the next, so they have tests of their own.
bool holds_memory(const Call& call) {
  for (const char* object : {"NuvImgChainLines_", "NuvHoughLines_", "NuvSequenceFiles_"}) {
    if (call.name.rfind(object, 0) == 0) return true;
  }
  return false;
}

TEST(Allocations, FailuresGiveTheStatedResult) {
  const std::map<std::string, Outcome> listed = outcomes();
  std::set<std::string> asking;
  for (const Call& call : all_calls()) {
    if (holds_memory(call)) continue;
    const std::string name = call.name.substr(0, call.name.find('('));
    const auto stated = listed.find(name);
    const Outcome outcome = stated == listed.end() ? Outcome::kPartial : stated->second;
    bool asks = false;
    for (uint32_t seed = 1; seed <= 40; ++seed) {
      if (seed <= 8) asks |= fail_one_after_the_other(call, outcome, Scene::Kind::kTypical, seed);
      if (seed <= Scene::kSpecials)
        asks |= fail_one_after_the_other(call, outcome, Scene::Kind::kSpecial, seed);
      asks |= fail_one_after_the_other(call, outcome, Scene::Kind::kHostile, seed);
    }
    if (asks) asking.insert(name);
  }
  for (const std::string& name : asking)
    EXPECT_EQ(outcomes().count(name), 1U) << name << " allocates but is not listed";
  for (const auto& [name, outcome] : outcomes())
    EXPECT_EQ(asking.count(name), 1U) << name << " is listed but does not allocate";
}

// The results of play() while its allocations fail, each alone and together with all after it, from the given one on.
template <class Play>
void expect_same_results(int64_t first, int64_t allocations, Play play) {
  const Failing none(-1);
  const auto expected = play();
  ASSERT_EQ(n_asked, allocations);
  for (int64_t k = 2 * first; k < 2 * allocations; ++k) {
    const Failing failing(k / 2, k % 2 != 0);
    ASSERT_EQ(play(), expected) << k;
  }
}

// The scenes are too small for these allocations.
TEST(Allocations, FailuresChangeNothingIfTheyOnlySaveTime) {
  constexpr int32_t kWidth = 61;
  constexpr int32_t kHeight = 60;
  expect_same_results(0, 4, [] {  // a comb, drawn from thousands of places
    std::vector<uint8_t> comb(kWidth * kHeight);
    for (std::size_t i = kWidth; i < comb.size() - kWidth; ++i) {
      const std::size_t x = i % kWidth;
      if (x > 1 && x < kWidth - 1 && (x % 4 == 2 || i < 2 * kWidth)) comb[i] = 255;
    }
    std::vector<uint8_t> codes(comb.size());
    std::vector<uint8_t> result(comb.size());
    NuvSelectContoursByArea(comb.data(), codes.data(), kWidth, kHeight, 1, 1, kWidth * kHeight,
                            result.data());
    return result;
  });
  expect_same_results(1, 3, [] {  // points on two walls, which split unevenly
    constexpr int32_t kPoints = 900;
    constexpr int32_t kKeys = 500;
    std::vector<int32_t> x(kPoints);
    std::vector<int32_t> y(kPoints);
    for (std::size_t i = 0; i < kPoints; ++i) {
      x[i] = i % 2 == 0 ? 0 : 100;
      y[i] = static_cast<int32_t>(i);
    }
    std::vector<int32_t> keys(2 * kKeys);
    NuvLineKeyPoints(x.data(), y.data(), kPoints, kKeys, keys.data(), keys.data() + kKeys);
    return keys;
  });
}

// Each call requests more than the detector holds, in eight allocations.
TEST(Allocations, FailuresLeaveTheLineDetectorWithoutLines) {
  std::vector<uint8_t> image(100);
  for (int n = 0; n < 8; ++n) {
    {
      const Failing failing(n);
      EXPECT_FALSE(NuvImgChainLines_Initialize(3000 + n, 300, 0.9, 1, 10, 10, 5000 + n)) << n;
      EXPECT_EQ(n_asked, 8);
    }
    EXPECT_EQ(NuvImgChainLines_DoGryImg(image.data(), 10, 10, true), 0);
    int32_t* points = nullptr;
    int32_t count = 0;
    EXPECT_FALSE(NuvImgChainLines_GetNxtCodeLine(&points, &points, &count));
  }
  EXPECT_TRUE(NuvImgChainLines_Initialize(3000, 300, 0.9, 1, 10, 10, 5000));
}

TEST(Allocations, FailuresLeaveTheHoughDetectorWithoutMemory) {
  int32_t xs[] = {0, 1, 2, 3};
  int32_t ys[] = {0, 1, 2, 3};
  double abc[3];
  int32_t thro = 0;
  int32_t theta = 0;
  const auto strength = [&] {
    return NuvHoughLines_HT(xs, ys, 4, 0, 180, &abc[0], &abc[1], &abc[2], &thro, &theta);
  };
  EXPECT_TRUE(NuvHoughLines_Initialize(5000, 50));
  EXPECT_EQ(strength(), 4);
  {
    const Failing failing(0);
    EXPECT_FALSE(NuvHoughLines_Initialize(6000, 600));
  }
  EXPECT_EQ(strength(), 0);
  EXPECT_TRUE(NuvHoughLines_Initialize(6000, 600));
}

TEST(Allocations, FailuresLeaveNoListOfFiles) {
  char list[] = "allocations_list.txt";
  std::ofstream(list, std::ios::binary) << "first\r\n" << std::string(300000, 'a') << "\r\n";
  char line[10];
  {
    const Failing failing(0);
    EXPECT_FALSE(NuvSequenceFiles_Initialize(list));
  }
  EXPECT_FALSE(NuvSequenceFiles_GetNextFileName(line, sizeof line));
  EXPECT_TRUE(NuvSequenceFiles_Initialize(list));
  EXPECT_TRUE(NuvSequenceFiles_GetNextFileName(line, sizeof line));
  EXPECT_STREQ(line, "first");
  std::remove(list);
}

}  // namespace

// A table of the exports whose time grows faster than their work.
//
// Every export runs on pictures of 640x480 and of 2560x1920 pixels, and on the smaller ones with windows of
// half sizes 1, 5 and 15. An export is flagged if its time grows more than 1.5 times faster than the number
// of pixels, apart from the cost of cache misses, or more than 1.5 times faster than the side of a window.
//
// The copies and work space of an export may leave a cache that its arguments fit in. Its time then rises once.
// So an export whose time grows too fast also runs on pictures of 1280x960, which leave the same cache, and is
// flagged only if its time still grows 1.3 times faster than the pixels from there on.
// The calls and their arguments come from the tests' table of exports.

#include <malloc.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "boundary/calls.h"
#include "pictures.h"

namespace {

constexpr double kTolerance = 1.5;
constexpr double kToleranceFromMiddle = 1.3;
// Shorter times are not flagged.
constexpr double kNegligible = 100e-6;
// The limit for all runs of one export.
constexpr int kSecondsAtMost = 15;

struct Size {
  int32_t width;
  int32_t height;

  constexpr int32_t pixels() const { return width * height; }
};
constexpr Size kSmall{640, 480};
constexpr Size kMiddle{1280, 960};
constexpr Size kLarge{2560, 1920};
constexpr std::array<int32_t, 3> kHalfSizes = {1, 5, 15};
constexpr int32_t kUsualHalfSize = 5;

// ---- pictures ----

using Picture = std::vector<uint8_t>;

template <class Value>
Picture drawn(Size size, Value value) {
  Picture picture;
  picture.reserve(static_cast<std::size_t>(size.pixels()));
  for (int32_t y = 0; y < size.height; ++y) {
    for (int32_t x = 0; x < size.width; ++x) picture.push_back(static_cast<uint8_t>(value(x, y)));
  }
  return picture;
}

Picture photograph(Size size) {
  const BenchPicture picture = gray_picture(size.width, size.height);
  return {picture.pixels.begin(), picture.pixels.end()};
}

Picture noise(Size size) {
  std::mt19937 random(1);
  return drawn(size, [&](int32_t, int32_t) { return random() & 255; });
}

bool lies_inside(Size size, int32_t x, int32_t y) {
  return x >= 2 && x < size.width - 2 && y >= 2 && y < size.height - 2;
}

// One object with teeth as long as the picture is high.
Picture comb(Size size) {
  return drawn(
      size, [=](int32_t x, int32_t y) { return lies_inside(size, x, y) && (x % 4 < 2 || y < 6) ? 255 : 0; });
}

// One object with one hole as large as the picture.
Picture hole(Size size) {
  return drawn(size, [=](int32_t x, int32_t y) {
    const bool is_rim = x < 6 || x >= size.width - 6 || y < 6 || y >= size.height - 6;
    return lies_inside(size, x, y) && is_rim ? 255 : 0;
  });
}

struct Subject {
  const char* name;
  Picture small;
  Picture middle;
  Picture large;

  template <class Draw>
  Subject(const char* subject, Draw draw)
      : name(subject), small(draw(kSmall)), middle(draw(kMiddle)), large(draw(kLarge)) {}
};

// ---- measuring ----

struct Measure {
  double seconds = 0;
  double bytes = 0;
};

Scene scene_of(uint32_t seed, Size size, const Picture& picture, int32_t half_size) {
  constexpr int32_t kMargin = 4;
  constexpr int32_t kPixelsAnElement = 256;
  Scene scene(Scene::Kind::kTypical, seed);
  scene.width = size.width;
  scene.height = size.height;
  scene.inner = {kMargin, size.width - 1 - kMargin, kMargin, size.height - 1 - kMargin};
  scene.region = scene.inner;
  scene.count = size.pixels() / kPixelsAnElement;
  scene.result_width = size.width / 4 * 3;
  scene.result_height = size.height / 4 * 3;
  scene.M = scene.N = half_size;
  scene.exhibit = picture.data();
  return scene;
}

// The processor time of the thread. The clock of the process has coarse steps once a limit is set.
double seconds_now() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// The least time of a few runs of one call, each with memory of its own.
Measure measure(const Call& call, uint32_t seed, Size size, const Picture& picture, int32_t half_size) {
  constexpr int kMostRuns = 5;
  constexpr double kEnough = 0.03;
  Measure least{1e9, 0};
  double total = 0;
  for (int i = 0; i < kMostRuns && (i < 2 || total < kEnough) && total < 4; ++i) {
    Scene scene = scene_of(seed, size, picture, half_size);
    double start = 0;
    scene.before_call = [&] {
      if (start == 0) start = seconds_now();
    };
    call.run(scene);
    const double seconds = seconds_now() - start;
    total += seconds;
    least = {std::min(least.seconds, seconds), static_cast<double>(scene.memory_size())};
  }
  return least;
}

struct Times {
  Measure small;
  Measure middle;  // measured only if the time grows too fast from small to large
  Measure large;
  std::array<double, kHalfSizes.size()> windows{};
};

constexpr double kPixelRatio =
    static_cast<double>(kLarge.width) * kLarge.height / (kSmall.width * kSmall.height);

// step is the additional time per byte of memory in the large pictures.
bool grows_too_fast(const Times& times, double step) {
  if (times.large.seconds < kNegligible) return false;
  return times.large.seconds > kTolerance * (kPixelRatio * times.small.seconds + step * times.large.bytes);
}

Times times_of(const Call& call, const Subject& subject, bool with_windows, double step) {
  uint32_t seed = 1;
  while (!call.contract(scene_of(seed, kLarge, subject.large, kUsualHalfSize))) ++seed;
  Times times;
  times.small = measure(call, seed, kSmall, subject.small, kUsualHalfSize);
  for (std::size_t i = 0; with_windows && i < kHalfSizes.size(); ++i) {
    times.windows[i] = kHalfSizes[i] == kUsualHalfSize
                           ? times.small.seconds
                           : measure(call, seed, kSmall, subject.small, kHalfSizes[i]).seconds;
  }
  times.large = measure(call, seed, kLarge, subject.large, kUsualHalfSize);
  if (grows_too_fast(times, step))
    times.middle = measure(call, seed, kMiddle, subject.middle, kUsualHalfSize);
  return times;
}

// Runs the work in a process of its own. Returns false if the system ends the process because it takes too
// long.
template <class Work>
bool run_apart(Work work, Times& times) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return false;
  const pid_t child = fork();
  if (child == 0) {
    const rlimit limit{kSecondsAtMost, kSecondsAtMost};
    setrlimit(RLIMIT_CPU, &limit);
    const Times result = work();
    const bool is_written = write(ends[1], &result, sizeof result) == sizeof result;
    _exit(is_written ? 0 : 1);
  }
  close(ends[1]);
  const bool is_there =
      child > 0 && read(ends[0], &times, sizeof times) == static_cast<ssize_t>(sizeof times);
  close(ends[0]);
  if (child > 0) waitpid(child, nullptr, 0);
  return is_there;
}

// ---- judging ----

constexpr double kSideRatio = (2.0 * kHalfSizes[2] + 1) / (2 * kHalfSizes[1] + 1);

// The additional time per byte of memory in the large pictures, measured by a copy.
double cache_step(const Subject& subject) {
  const Call copy{"", "", [](Scene& scene) {
                    uint8_t* source = calls::rgb(scene);
                    uint8_t* target = calls::rgb_result(scene);
                    scene.remember();
                    std::copy_n(source, 3 * scene.pixels(), target);
                  }};
  const Times times = times_of(copy, subject, false, 0);
  return std::max(times.large.seconds / times.large.bytes - times.small.seconds / times.small.bytes, 0.0);
}

bool grows_with_pixels(const Times& times, double step) {
  constexpr double kRatio = static_cast<double>(kLarge.pixels()) / kMiddle.pixels();
  return grows_too_fast(times, step) &&
         times.large.seconds > kToleranceFromMiddle * kRatio * times.middle.seconds;
}

bool grows_with_windows(const Times& times) {
  if (times.windows.back() < kNegligible) return false;
  return times.windows[2] > kTolerance * kSideRatio * times.windows[1];
}

double nanoseconds(double seconds, Size size) {
  return seconds * 1e9 / size.pixels();
}

int report(const std::string& pattern, bool all) {
  const std::vector<Subject> subjects = {
      {"photograph", photograph}, {"noise", noise}, {"comb", comb}, {"hole", hole}};
  const double step = cache_step(subjects[0]);
  std::printf("A byte of memory costs %.3f ns more in the large pictures.\n", step * 1e9);
  int measured = 0;
  int flagged = 0;
  std::printf("%-44s %-11s %10s %10s %8s   half size 1         5        15\n", "export", "picture",
              "ns/px small", "large", "growth");
  for (const Call& call : all_calls()) {
    const std::string name = call.name.substr(0, call.name.find('('));
    if (name.find(pattern) == std::string::npos) continue;
    ++measured;
    bool is_flagged = false;
    for (const Subject& subject : subjects) {
      Times times;
      if (!run_apart([&] { return times_of(call, subject, &subject == &subjects[0], step); }, times)) {
        std::printf("%-44s %-11s not done after %d seconds\n", name.c_str(), subject.name, kSecondsAtMost);
        is_flagged = true;
        continue;
      }
      const bool with_pixels = grows_with_pixels(times, step);
      const bool with_windows = grows_with_windows(times);
      is_flagged = is_flagged || with_pixels || with_windows;
      if (all || with_pixels || with_windows) {
        const double small = nanoseconds(times.small.seconds, kSmall);
        const double large = nanoseconds(times.large.seconds, kLarge);
        std::printf("%-44s %-11s %10.3f %10.3f %7.2f%s %9.3f %9.3f %9.3f%s\n", name.c_str(), subject.name,
                    small, large, large / small, with_pixels ? "!" : " ",
                    nanoseconds(times.windows[0], kSmall), nanoseconds(times.windows[1], kSmall),
                    nanoseconds(times.windows[2], kSmall), with_windows ? "!" : "");
      }
      std::fflush(stdout);
      // An export with so short a time does not read the picture, so the other pictures are skipped.
      if (times.large.seconds < kNegligible) break;
    }
    flagged += is_flagged ? 1 : 0;
  }
  std::printf("%d of %d exports grow faster than their work.\n", flagged, measured);
  return flagged == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const bool all = argc > 1 && std::string(argv[1]) == "--all";
  const int next = all ? 2 : 1;
  // Freed memory stays with the process, so the time that the system takes for new memory is not measured.
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, INT32_MAX);
  // Exports that write files do so in a temporary directory, which is deleted at the end.
  std::string directory = "/tmp/nuv_growth.XXXXXX";
  if (mkdtemp(directory.data()) == nullptr || chdir(directory.c_str()) != 0) {
    std::perror("no directory");
    return 2;
  }
  const int result = report(argc > next ? argv[next] : "", all);
  return std::system(("rm -rf " + directory).c_str()) == 0 ? result : 2;
}

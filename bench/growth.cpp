// A table of the exports whose time grows faster than their work.
//
// Every export runs on pictures of 640x480 and of 2560x1920 pixels, and on the smaller ones with windows of
// half sizes 1, 5 and 15. An export is flagged if its time grows more than 1.5 times faster than the number
// of pixels, apart from the cost of cache misses, or more than 1.5 times faster than the side of a window.
//
// The small pictures may fit into a cache that the large ones do not fit into. The time per pixel then rises
// once, at the size where the cache is full, and not again. So every export also runs on pictures of 1280x960,
// which do not fit into that cache either. It is flagged only if its time grows 1.3 times faster than the pixels
// from there on, too.
//
// Other programs disturb a measurement, for seconds at a time. So whatever would be flagged is measured again
// when all exports have run, together with the cost of cache misses. It is flagged only if the least times of
// both measurements grow too fast, apart from the greater cost.
//
// The calls and their arguments come from the tests' table of exports. Only the time inside the export counts.

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
#include <set>
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

// The width of a rim, and its distance from the border. The distance grows with the picture: series of bytes are
// the first bytes of a picture, and so they are black in every size.
constexpr int32_t kRim = 4;

int32_t margin_of(Size size) {
  return size.width / 320;
}

bool lies_within(Size size, int32_t margin, int32_t x, int32_t y) {
  return x >= margin && x < size.width - margin && y >= margin && y < size.height - margin;
}

// One object with teeth as long as the picture is high.
Picture comb(Size size) {
  const int32_t margin = margin_of(size);
  return drawn(size, [=](int32_t x, int32_t y) {
    const bool is_white = x % 4 < 2 || y < margin + kRim;
    return lies_within(size, margin, x, y) && is_white ? 255 : 0;
  });
}

// One object with one hole as large as the picture.
Picture hole(Size size) {
  const int32_t margin = margin_of(size);
  return drawn(size, [=](int32_t x, int32_t y) {
    const bool is_rim = !lies_within(size, margin + kRim, x, y);
    return lies_within(size, margin, x, y) && is_rim ? 255 : 0;
  });
}

struct Subject {
  const char* name;
  Picture small;
  Picture middle;
  Picture large;
  bool with_windows;  // whether windows of several sizes are measured

  template <class Draw>
  Subject(const char* subject, Draw draw, bool windows = false)
      : name(subject),
        small(draw(kSmall)),
        middle(draw(kMiddle)),
        large(draw(kLarge)),
        with_windows(windows) {}
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

// The time inside the export, however often a row calls it.
class Stopwatch : public Observer {
 public:
  double seconds() const { return seconds_; }

  void before_call(const std::vector<Argument>& /*arguments*/) override { start_ = seconds_now(); }
  void after_call(const std::vector<Argument>& /*arguments*/) override { seconds_ += seconds_now() - start_; }

 private:
  double start_ = 0;
  double seconds_ = 0;
};

// The least time of a few runs of one call, each with memory of its own. There are at least two runs, and more
// if they take less than so many seconds.
struct Effort {
  int most_runs;
  double seconds;
};
constexpr Effort kFirst{5, 0.03};
constexpr Effort kSecond{20, 0.2};

Measure measure(const Call& call, uint32_t seed, Size size, const Picture& picture, int32_t half_size,
                Effort effort) {
  Measure least{1e9, 0};
  double total = 0;
  for (int i = 0; i < effort.most_runs && (i < 2 || total < effort.seconds) && total < 4; ++i) {
    Scene scene = scene_of(seed, size, picture, half_size);
    Stopwatch watch;
    scene.observer = &watch;
    call.run(scene);
    total += watch.seconds();
    least = {std::min(least.seconds, watch.seconds()), static_cast<double>(scene.memory_size())};
  }
  return least;
}

struct Times {
  Measure small;
  Measure middle;
  Measure large;
  std::array<double, kHalfSizes.size()> windows{};  // 0 if they are not measured
};

Times times_of(const Call& call, const Subject& subject, Effort effort) {
  uint32_t seed = 1;
  while (!call.contract(scene_of(seed, kLarge, subject.large, kUsualHalfSize))) ++seed;
  const auto measured = [&](Size size, const Picture& picture, int32_t half_size) {
    return measure(call, seed, size, picture, half_size, effort);
  };
  Times times;
  times.small = measured(kSmall, subject.small, kUsualHalfSize);
  times.middle = measured(kMiddle, subject.middle, kUsualHalfSize);
  times.large = measured(kLarge, subject.large, kUsualHalfSize);
  for (std::size_t i = 0; subject.with_windows && i < kHalfSizes.size(); ++i) {
    times.windows[i] = kHalfSizes[i] == kUsualHalfSize
                           ? times.small.seconds
                           : measured(kSmall, subject.small, kHalfSizes[i]).seconds;
  }
  return times;
}

Times least_of(const Times& first, const Times& second) {
  Times least = first;
  least.small.seconds = std::min(first.small.seconds, second.small.seconds);
  least.middle.seconds = std::min(first.middle.seconds, second.middle.seconds);
  least.large.seconds = std::min(first.large.seconds, second.large.seconds);
  for (std::size_t i = 0; i < least.windows.size(); ++i)
    least.windows[i] = std::min(first.windows[i], second.windows[i]);
  return least;
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

// The additional time per byte of memory in the large pictures, measured by a copy.
double cache_step(const Subject& subject, Effort effort) {
  const Call copy{"", "", [](Scene& scene) {
                    uint8_t* source = calls::rgb(scene);
                    uint8_t* target = calls::rgb_result(scene);
                    const auto copied = [&] { std::copy_n(source, 3 * scene.pixels(), target); };
                    calls::observed(scene, copied)();
                  }};
  const Times times = times_of(copy, subject, effort);
  return std::max(times.large.seconds / times.large.bytes - times.small.seconds / times.small.bytes, 0.0);
}

bool grows_with_pixels(const Times& times, double step) {
  constexpr double kRatio = static_cast<double>(kLarge.pixels()) / kSmall.pixels();
  constexpr double kRatioFromMiddle = static_cast<double>(kLarge.pixels()) / kMiddle.pixels();
  if (times.large.seconds < kNegligible) return false;
  return times.large.seconds > kTolerance * (kRatio * times.small.seconds + step * times.large.bytes) &&
         times.large.seconds > kToleranceFromMiddle * kRatioFromMiddle * times.middle.seconds;
}

bool grows_with_windows(const Times& times) {
  constexpr double kSideRatio = (2.0 * kHalfSizes[2] + 1) / (2 * kHalfSizes[1] + 1);
  if (times.windows[2] < kNegligible) return false;
  return times.windows[2] > kTolerance * kSideRatio * times.windows[1];
}

struct Row {
  std::string name;
  const Call* call;
  const Subject* subject;
  bool is_done;
  Times times;

  bool grows(double step) const {
    return !is_done || grows_with_pixels(times, step) || grows_with_windows(times);
  }
};

std::vector<Row> measured_rows(const Calls& calls, const std::vector<Subject>& subjects,
                               const std::string& pattern) {
  std::vector<Row> rows;
  for (const Call& call : calls) {
    const std::string name = call.name.substr(0, call.name.find('('));
    if (name.find(pattern) == std::string::npos) continue;
    for (const Subject& subject : subjects) {
      Row row{name, &call, &subject, false, {}};
      row.is_done = run_apart([&] { return times_of(call, subject, kFirst); }, row.times);
      rows.push_back(row);
      // An export with so short a time does not read the picture, so the other pictures are skipped.
      if (row.is_done && row.times.large.seconds < kNegligible) break;
    }
  }
  return rows;
}

// ---- reporting ----

double nanoseconds(double seconds, Size size) {
  return seconds * 1e9 / size.pixels();
}

void print_window(double seconds) {
  if (seconds > 0) {
    std::printf(" %9.3f", nanoseconds(seconds, kSmall));
  } else {
    std::printf(" %9s", "-");
  }
}

void print(const Row& row, double step) {
  std::printf("%-44s %-11s ", row.name.c_str(), row.subject->name);
  if (!row.is_done) {
    std::printf("not done after %d seconds\n", kSecondsAtMost);
    return;
  }
  const double small = nanoseconds(row.times.small.seconds, kSmall);
  const double large = nanoseconds(row.times.large.seconds, kLarge);
  std::printf("%10.3f %10.3f %7.2f%s", small, large, large / small,
              grows_with_pixels(row.times, step) ? "!" : " ");
  for (const double seconds : row.times.windows) print_window(seconds);
  std::printf("%s\n", grows_with_windows(row.times) ? "!" : "");
}

int report(const std::string& pattern, bool all) {
  const std::vector<Subject> subjects = {
      {"photograph", photograph, true}, {"noise", noise}, {"comb", comb}, {"hole", hole}};
  const Calls calls = all_calls();
  double step = cache_step(subjects[0], kFirst);
  std::vector<Row> rows = measured_rows(calls, subjects, pattern);
  std::vector<Row*> suspects;
  for (Row& row : rows) {
    if (row.is_done && row.grows(step)) suspects.push_back(&row);
  }
  if (!suspects.empty()) step = std::max(step, cache_step(subjects[0], kSecond));
  for (Row* row : suspects) {
    Times again;
    if (run_apart([&] { return times_of(*row->call, *row->subject, kSecond); }, again))
      row->times = least_of(row->times, again);
  }

  std::printf("A byte of memory costs %.3f ns more in the large pictures.\n", step * 1e9);
  std::printf("%-44s %-11s %10s %10s %8s   half size 1         5        15\n", "export", "picture",
              "ns/px small", "large", "growth");
  std::set<const Call*> measured;
  std::set<const Call*> flagged;
  for (const Row& row : rows) {
    measured.insert(row.call);
    if (row.grows(step)) flagged.insert(row.call);
    if (all || row.grows(step)) print(row, step);
  }
  std::printf("%zu of %zu exports grow faster than their work.\n", flagged.size(), measured.size());
  return flagged.empty() ? 0 : 1;
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

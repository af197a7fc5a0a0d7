// Measures what the exports do with memory, by playing the table of calls. tools/describe_boundary reads the
// output, and draws the conclusions:
//
//     function <name and types> <1 if it keeps state>     begins the lines of a function
//     call <kind> <argument>...        the first call in a scene, where special scenes of hardly any pixels
//                                      have the kind tiny. An argument is a number, the fields of a
//                                      record with commas between them, or the size of a pointer's memory as
//                                      #elements; #? if the memory does not belong to the scene
//     pointer <index> <kind> <plays> <changed> <read> <gaps>
//                                      counts of scenes: all of them; those whose memory the call changed;
//                                      those whose results depend on its first content; and those that wrote
//                                      an element and left an earlier one alone
//     reach <index> <reached>...       for each call line of typical and special scenes, the number of
//                                      elements up to the last one that matters; not for tiny scenes, where
//                                      other values can lead out of the image
//
// Reaches are measured for the arguments that standard input names: <name and types> TAB <index>.

#include <cinttypes>
#include <cstdio>
#include <iostream>
#include <map>
#include <set>

#include "boundary/calls.h"

#if defined(NUV_ASAN)
// Some calls request more memory than there is.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
#endif

namespace {

using Kind = Scene::Kind;
using Bytes = std::vector<uint8_t>;

constexpr uint32_t kTypicals = 32;
constexpr uint32_t kHostiles = 48;

// What is seen of a scene that is played once.
struct Play {
  std::vector<Argument> arguments;  // of the first call
  std::vector<Bytes> before;        // for each argument, the content of its memory
  std::vector<Bytes> after;
  uint64_t results = 0;
};

// Changes the memory of one argument from an element on, before the first call.
struct Change {
  std::size_t argument;
  std::size_t from;
};

// The new content has the same elements in another order, so that they stay values that the contract permits.
// If that is the same content, elements become that of the element before them, or neighbouring values.
void change_content(const Argument& argument, std::size_t from) {
  const std::size_t size = argument.element;
  uint8_t* const first = argument.memory + std::min(from * size, argument.bytes);
  const std::size_t count = static_cast<std::size_t>(argument.memory + argument.bytes - first) / size;
  const Bytes old(first, first + count * size);
  for (std::size_t i = 0; i < count; ++i)
    std::copy_n(old.begin() + static_cast<std::ptrdiff_t>((count - 1 - i) * size), size, first + i * size);
  if (!std::equal(old.begin(), old.end(), first)) return;
  for (std::size_t i = 0; i < count; ++i) {
    uint8_t* const element = first + i * size;
    if (from > 0) {
      std::copy_n(first - size, size, element);
    } else if (size == sizeof(double)) {
      element[size - 1] ^= 0x80;  // the sign
    } else {
      element[0] ^= 1;
    }
  }
}

class Watch : public Observer {
 public:
  Watch(Play& play, const Change* change) : play_(play), change_(change) {}

  void before_call(const std::vector<Argument>& arguments) override {
    if (++calls_ > 1) return;
    play_.arguments = arguments;
    if (change_ != nullptr) change_content(arguments[change_->argument], change_->from);
    play_.before = contents(arguments);
  }
  void after_call(const std::vector<Argument>& arguments) override {
    if (calls_ == 1) play_.after = contents(arguments);
  }

 private:
  static std::vector<Bytes> contents(const std::vector<Argument>& arguments) {
    std::vector<Bytes> contents;
    contents.reserve(arguments.size());
    for (const Argument& a : arguments) contents.emplace_back(a.memory, a.memory + a.bytes);
    return contents;
  }

  Play& play_;
  const Change* change_;
  int calls_ = 0;
};

Play play_once(const Call& call, Kind kind, uint32_t seed, const Change* change = nullptr) {
  Scene scene(kind, seed);
  Play play;
  if (!call.contract(scene)) return play;
  Watch watch(play, change);
  scene.observer = &watch;
  call.run(scene);
  play.results = scene.results();
  return play;
}

// Plays to compare find the same state, if the export keeps one.
Play play(const Call& call, Kind kind, uint32_t seed, const Change* change = nullptr) {
  if (call.keeps_state) play_once(call, kind, seed);
  return play_once(call, kind, seed, change);
}

// Whether two arguments point to the same memory.
bool shares_memory(const Play& play) {
  std::set<const uint8_t*> seen;
  return std::any_of(play.arguments.begin(), play.arguments.end(), [&](const Argument& argument) {
    return argument.memory != nullptr && !seen.insert(argument.memory).second;
  });
}

struct Counts {
  int plays = 0, changed = 0, read = 0, gaps = 0;
};

// Compares two plays that differ in the first content of one argument.
void compare(const Play& a, const Play& b, std::size_t changed, Counts& counts) {
  bool read = a.results != b.results;
  for (std::size_t i = 0; i < a.after.size(); ++i) {
    if (i != changed && a.after[i] != b.after[i]) read = true;
  }
  // A call may leave fields of a record alone, so records are compared by their fields of four bytes.
  const std::size_t element = a.arguments[changed].element;
  const std::size_t unit = element > 8 ? 4 : element;
  std::size_t first_left = a.arguments[changed].bytes;  // the first element without a written field
  bool gaps = false;
  for (std::size_t at = 0; at < a.arguments[changed].bytes; at += element) {
    bool left = false;
    bool written = false;
    for (std::size_t field = at; field < at + element; field += unit) {
      const auto same = [=](const Bytes& x, const Bytes& y) {
        return std::equal(&x[field], &x[field] + unit, &y[field]);
      };
      const bool kept =
          same(a.before[changed], a.after[changed]) && same(b.before[changed], b.after[changed]);
      written = written || !kept;
      if (same(a.after[changed], b.after[changed])) continue;
      (kept ? left : read) = true;
    }
    if (left && !written) first_left = std::min(first_left, at);
    if (written && first_left < at) gaps = true;
  }
  counts.read += read;
  counts.gaps += gaps;
}

// Whether the elements from one on have no effect and are not written.
bool is_past_the_reach(const Call& call, Kind kind, uint32_t seed, const Play& first, std::size_t argument,
                       std::size_t from) {
  const Change change{argument, from};
  const Play other = play(call, kind, seed, &change);
  const std::size_t bytes =
      std::min(from * first.arguments[argument].element, first.arguments[argument].bytes);
  if (other.results != first.results) return false;
  for (std::size_t i = 0; i < first.after.size(); ++i) {
    if (i != argument && first.after[i] != other.after[i]) return false;
  }
  const auto tail = [=](const Bytes& content) {
    return Bytes(content.begin() + static_cast<std::ptrdiff_t>(bytes), content.end());
  };
  const auto head = [=](const Bytes& content) {
    return Bytes(content.begin(), content.begin() + static_cast<std::ptrdiff_t>(bytes));
  };
  return head(first.after[argument]) == head(other.after[argument]) &&
         tail(first.after[argument]) == tail(first.before[argument]) &&
         tail(other.after[argument]) == tail(other.before[argument]);
}

std::size_t reach(const Call& call, Kind kind, uint32_t seed, const Play& first, std::size_t argument) {
  const Argument& memory = first.arguments[argument];
  std::size_t low = 0;
  std::size_t high = memory.bytes / memory.element;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (is_past_the_reach(call, kind, seed, first, argument, middle)) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

constexpr std::pair<Kind, uint32_t> kKinds[] = {
    {Kind::kTypical, kTypicals}, {Kind::kSpecial, Scene::kSpecials}, {Kind::kHostile, kHostiles}};
const char* name_of(Kind kind) {
  return kind == Kind::kTypical ? "typical" : kind == Kind::kSpecial ? "special" : "hostile";
}

bool is_tiny(Kind kind, uint32_t seed) {
  return kind == Kind::kSpecial && Scene(kind, seed).hostile;
}

void print_call(Kind kind, uint32_t seed, const Play& play) {
  std::printf("call\t%s", is_tiny(kind, seed) ? "tiny" : name_of(kind));
  for (const Argument& argument : play.arguments) {
    if (argument.is_pointer && argument.memory == nullptr) {
      std::printf("\t#?");
    } else if (argument.is_pointer) {
      std::printf("\t#%zu", argument.bytes / argument.element);
    } else {
      for (std::size_t i = 0; i < argument.numbers.size(); ++i)
        std::printf("%c%.17g", i == 0 ? '\t' : ',', argument.numbers[i]);
    }
  }
  std::printf("\n");
}

void measure(const Call& call, const std::set<std::size_t>& reaches) {
  std::printf("function\t%s\t%d\n", call.name.c_str(), call.keeps_state ? 1 : 0);
  std::map<std::pair<std::size_t, Kind>, Counts> counts;
  std::map<Kind, std::map<uint32_t, Play>> plays;
  std::set<std::size_t> changed;
  for (const auto& [kind, last] : kKinds) {
    for (uint32_t seed = 1; seed <= last; ++seed) {
      Play first = play(call, kind, seed);
      if (first.arguments.empty() || shares_memory(first)) continue;
      print_call(kind, seed, first);
      for (std::size_t i = 0; i < first.arguments.size(); ++i) {
        if (first.arguments[i].memory == nullptr) continue;
        Counts& of_argument = counts[{i, kind}];
        ++of_argument.plays;
        if (first.before[i] == first.after[i]) continue;
        ++of_argument.changed;
        changed.insert(i);
      }
      plays[kind][seed] = std::move(first);
    }
  }
  for (const auto& [kind, of_kind] : plays) {
    for (const auto& [seed, first] : of_kind) {
      for (std::size_t argument : changed) {
        if (first.arguments[argument].bytes == 0) continue;
        const Change change{argument, 0};
        compare(first, play(call, kind, seed, &change), argument, counts[{argument, kind}]);
      }
    }
  }
  for (const auto& [key, of_argument] : counts) {
    std::printf("pointer\t%zu\t%s\t%d\t%d\t%d\t%d\n", key.first, name_of(key.second), of_argument.plays,
                of_argument.changed, of_argument.read, of_argument.gaps);
  }
  for (std::size_t argument : reaches) {
    std::printf("reach\t%zu", argument);
    for (const auto& [kind, of_kind] : plays) {
      for (const auto& [seed, first] : of_kind) {
        if (kind == Kind::kHostile || is_tiny(kind, seed)) continue;
        std::printf("\t%zu", reach(call, kind, seed, first, argument));
      }
    }
    std::printf("\n");
  }
}

}  // namespace

int main() {
  std::map<std::string, std::set<std::size_t>> reaches;
  for (std::string line; std::getline(std::cin, line);) {
    const std::size_t tab = line.find('\t');
    reaches[line.substr(0, tab)].insert(std::stoul(line.substr(tab + 1)));
  }
  for (const Call& call : all_calls()) {
    if (reaches.empty()) {
      measure(call, {});
    } else if (reaches.count(call.name) > 0) {
      measure(call, reaches[call.name]);
    }
  }
}

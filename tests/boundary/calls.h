// A table of all exports and of the way each is called in a scene. There is one row per export, and it names
// the source of every argument. Rules that hold for all exports are tested over the table.

#ifndef NUV_TESTS_BOUNDARY_CALLS_H
#define NUV_TESTS_BOUNDARY_CALLS_H

#include <functional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "boundary/scene.h"

struct Call {
  std::string name;       // with the argument types, as in the list of exports
  std::string signature;  // the line of the list of exports
  std::function<void(Scene&)> run;
  std::function<bool(const Scene&)> contract = [](const Scene&) { return true; };
  bool keeps_state = false;

  // Only scenes that meet what the header demands of the caller are played.
  Call where(std::function<bool(const Scene&)> demanded) && {
    contract = std::move(demanded);
    return std::move(*this);
  }
  // The export keeps data between calls, so threads cannot share it.
  Call with_state() && {
    keeps_state = true;
    return std::move(*this);
  }
};

using Calls = std::vector<Call>;
Calls arithmetic_calls();
Calls binary_calls();
Calls colour_calls();
Calls contour_calls();
Calls drawing_calls();
Calls edge_calls();
Calls file_calls();
Calls filter_calls();
Calls geometry_calls();
Calls histogram_calls();
Calls line_calls();
Calls noise_calls();
Calls segmentation_calls();
Calls statistics_calls();

inline Calls all_calls() {
  Calls all;
  for (const auto& room : {arithmetic_calls, binary_calls, colour_calls, contour_calls, drawing_calls,
                           edge_calls, file_calls, filter_calls, geometry_calls, histogram_calls, line_calls,
                           noise_calls, segmentation_calls, statistics_calls}) {
    for (Call& call : room()) all.push_back(std::move(call));
  }
  return all;
}

namespace calls {

template <class T>
constexpr const char* kSpelling = nullptr;
#define NUV_SPELLED(type) \
  template <>             \
  inline constexpr const char* kSpelling<type> = #type
NUV_SPELLED(void);
NUV_SPELLED(bool);
NUV_SPELLED(bool*);
NUV_SPELLED(uint8_t);
NUV_SPELLED(uint8_t*);
NUV_SPELLED(const uint8_t*);
NUV_SPELLED(int32_t);
NUV_SPELLED(int32_t*);
NUV_SPELLED(uint32_t);
NUV_SPELLED(uint32_t*);
NUV_SPELLED(double);
NUV_SPELLED(double*);
NUV_SPELLED(char*);
NUV_SPELLED(const char*);
NUV_SPELLED(tagRECT);
NUV_SPELLED(tagRECT*);
NUV_SPELLED(RLX*);
NUV_SPELLED(RLY*);
#undef NUV_SPELLED

template <class... Arguments>
std::string spelled() {
  std::string list;
  ((list += list.empty() ? "" : ", ", list += kSpelling<Arguments>), ...);
  return list;
}

inline Call row(const std::string& name, const std::string& result, const std::string& arguments) {
  Call row;
  row.name = name + "(" + arguments + ")";
  row.signature = name + "\t" + result + "\t" + arguments;
  return row;
}

// The function, with calls that the scene's observer sees.
template <class Function>
auto observed(Scene& scene, Function function) {
  return [&scene, function](auto... arguments) {
    if (scene.observer == nullptr) return function(arguments...);
    const std::vector<Argument> seen{scene.seen(arguments)...};
    scene.observer->before_call(seen);
    if constexpr (std::is_void_v<decltype(function(arguments...))>) {
      if (!scene.observer->makes_call(seen, nullptr)) function(arguments...);
      scene.observer->after_call(seen);
    } else {
      decltype(function(arguments...)) result{};
      if (!scene.observer->makes_call(seen, &result)) result = function(arguments...);
      scene.observer->after_call(seen);
      return result;
    }
  };
}

// Calls the function on the present content of the scene, and adds the result to the scene.
template <class Function, class... Arguments>
auto run(Scene& scene, Function function, Arguments... arguments) {
  scene.remember();
  scene.describe_call(arguments...);
  if constexpr (std::is_void_v<decltype(function(arguments...))>) {
    function(arguments...);
  } else {
    const auto result = function(arguments...);
    scene.add_result(result);
    return result;
  }
}

// A row whose results are adjusted before they are added to the checksum: adjust(function, arguments...) calls
// the function.
template <class Function, class Adjust, class... Roles>
Call from_adjusted_roles(const char* name, Function function, Adjust adjust, Roles... roles) {
  using Result = decltype(function(roles(std::declval<Scene&>())...));
  Call call = row(name, kSpelling<Result>, spelled<decltype(roles(std::declval<Scene&>()))...>());
  call.run = [=](Scene& scene) {
    // Braces evaluate the roles from left to right.
    const std::tuple<decltype(roles(scene))...> arguments{roles(scene)...};
    const auto adjusted = [&](auto... a) { return adjust(observed(scene, function), a...); };
    std::apply([&](auto... a) { run(scene, adjusted, a...); }, arguments);
  };
  return call;
}

template <class Function, class... Roles>
Call from_roles(const char* name, Function function, Roles... roles) {
  return from_adjusted_roles(
      name, function, [](auto f, auto... a) { return f(a...); }, roles...);
}

template <class Function, class Body>
Call from_body(const char* name, const char* result, std::string arguments, Function* function, Body body) {
  Call call = row(name, result, arguments.substr(1, arguments.size() - 2));
  call.run = [=](Scene& scene) { body(scene, observed(scene, function)); };
  return call;
}

// A row that changes the scene before it is played.
template <class Change>
Call after(Change change, Call call) {
  call.run = [change, play = std::move(call.run)](Scene& scene) {
    change(scene);
    play(scene);
  };
  return call;
}

// ---- Roles: where an argument comes from -----------------------------------------------------------------

inline int32_t width(Scene& s) {
  return s.width;
}
inline int32_t height(Scene& s) {
  return s.height;
}
inline int32_t count(Scene& s) {
  return s.count;
}
inline int32_t result_width(Scene& s) {
  return s.result_width;
}
inline int32_t result_height(Scene& s) {
  return s.result_height;
}
inline int32_t M(Scene& s) {
  return s.M;
}
inline int32_t N(Scene& s) {
  return s.N;
}

// A region that may lie anywhere, and one that must not leave the image.
inline int32_t any_x1(Scene& s) {
  return s.region.x1;
}
inline int32_t any_x2(Scene& s) {
  return s.region.x2;
}
inline int32_t any_y1(Scene& s) {
  return s.region.y1;
}
inline int32_t any_y2(Scene& s) {
  return s.region.y2;
}
inline int32_t inner_x1(Scene& s) {
  return s.inner.x1;
}
inline int32_t inner_x2(Scene& s) {
  return s.inner.x2;
}
inline int32_t inner_y1(Scene& s) {
  return s.inner.y1;
}
inline int32_t inner_y2(Scene& s) {
  return s.inner.y2;
}

inline bool flag(Scene& s) {
  return s.between(0, 1) == 1;
}
inline int32_t color(Scene& s) {
  return s.integer(0, 255);
}
inline uint8_t byte(Scene& s) {
  return static_cast<uint8_t>(s.between(0, 255));
}
// The coordinates of a point, typically in the image.
inline int32_t x(Scene& s) {
  return s.integer(0, std::max(s.width, 1) - 1);
}
inline int32_t y(Scene& s) {
  return s.integer(0, std::max(s.height, 1) - 1);
}

inline auto integer(int32_t low, int32_t high) {
  return [=](Scene& s) { return s.integer(low, high); };
}
inline auto real(double low, double high) {
  return [=](Scene& s) { return s.real(low, high); };
}
// Numbers that the contract keeps within a range, in hostile scenes too.
inline auto integer_within(int32_t low, int32_t high) {
  return [=](Scene& s) { return s.between(low, high); };
}

inline uint8_t* gray(Scene& s) {
  return s.picture(1);
}
inline uint8_t* rgb(Scene& s) {
  return s.picture(3);
}
inline uint8_t* binary(Scene& s) {
  return s.binary_picture();
}
inline uint8_t* framed_binary(Scene& s) {
  return s.binary_picture(1);
}

// Memory for results and work, filled with noise.
template <class Size>
auto bytes(Size size) {
  return [=](Scene& s) { return s.noise(size(s)); };
}
inline uint8_t* gray_result(Scene& s) {
  return s.noise(s.pixels());
}
inline uint8_t* rgb_result(Scene& s) {
  return s.noise(s.pixels() * 3);
}
inline uint8_t* inner_gray_result(Scene& s) {
  return s.noise(s.inner_pixels());
}
inline uint8_t* inner_rgb_result(Scene& s) {
  return s.noise(s.inner_pixels() * 3);
}

inline int32_t* integer_result(Scene& s) {
  return s.integers(1, -9, 9);
}
inline double* real_result(Scene& s) {
  return s.reals(1, -9, 9);
}

template <class Size>
auto integers(Size size, int32_t low, int32_t high) {
  return [=](Scene& s) { return s.integers(size(s), low, high); };
}
template <class Size>
auto reals(Size size, double low, double high) {
  return [=](Scene& s) { return s.reals(size(s), low, high); };
}
inline std::size_t counted(const Scene& s) {
  return Scene::length(s.count);
}
// For exports that read the first element even if the count is 0 or less.
inline std::size_t counted_or_one(const Scene& s) {
  return std::max<std::size_t>(counted(s), 1);
}
inline std::size_t columns(const Scene& s) {
  return Scene::length(s.width);
}
inline std::size_t rows(const Scene& s) {
  return Scene::length(s.height);
}
inline std::size_t pixels(const Scene& s) {
  return s.pixels();
}
inline std::size_t result_pixels(const Scene& s) {
  return s.result_pixels();
}
inline std::size_t levels(const Scene&) {
  return 256;
}

inline int32_t* histogram(Scene& s) {
  return s.integers(256, 0, 40);
}
inline int32_t* histogram_result(Scene& s) {
  return s.integers(256, -9, 9);
}

inline int32_t chain_x(Scene& s) {
  return s.chain().x;
}
inline int32_t chain_y(Scene& s) {
  return s.chain().y;
}
inline int32_t chain_length(Scene& s) {
  return static_cast<int32_t>(s.chain().codes.size());
}
inline uint8_t* chain(Scene& s) {
  const std::vector<uint8_t>& codes = s.chain().codes;
  uint8_t* data = s.memory<uint8_t>(codes.size());
  std::copy(codes.begin(), codes.end(), data);
  return data;
}

inline bool has_pixels(const Scene& s) {
  return s.width > 0 && s.height > 0;
}

// The value of bRGB. It depends on the count alone, so that images that come before it in a row use it, too.
inline bool in_color(Scene& s) {
  return s.count % 2 != 0;
}
inline uint8_t* image(Scene& s) {
  return s.picture(in_color(s) ? 3 : 1);
}
inline uint8_t* image_result(Scene& s) {
  return s.noise(s.pixels() * (in_color(s) ? 3 : 1));
}

inline std::size_t result_rgb(const Scene& s) {
  return s.result_pixels() * 3;
}

// Sides of blocks and windows. Typically they are at least 1.
inline int32_t block_width(const Scene& s) {
  return s.hostile ? s.M : s.M + 1;
}
inline int32_t block_height(const Scene& s) {
  return s.hostile ? s.N : s.N + 1;
}

}  // namespace calls

// A row whose arguments are all roles. The types of the roles select the overload.
#define EXPORT(name, ...) \
  calls::from_roles(      \
      #name, [](auto... a) { return ::name(a...); }, __VA_ARGS__)
// A row whose calls are made by body(scene, export).
#define EXPORT_BY(name, result, arguments, ...) \
  calls::from_body(#name, #result, #arguments, static_cast<result(*) arguments>(&::name), __VA_ARGS__)

#endif

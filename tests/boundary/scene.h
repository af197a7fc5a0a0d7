// The arguments of a call: sizes, a region, numbers and memory. Everything is made from a seed by integer
// arithmetic, so that it is the same on every machine.
//
// The order in which a scene draws its numbers is frozen, because the checksums in digests.tsv depend on it:
// a draw that is added, left out or moved changes every later one. Additional draws come from a stream of
// their own, as those of special scenes do.

#ifndef NUV_TESTS_BOUNDARY_SCENE_H
#define NUV_TESTS_BOUNDARY_SCENE_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "images.h"

// The sanitizer guards the ends of blocks itself.
#if defined(__SANITIZE_ADDRESS__)
#define NUV_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NUV_ASAN 1
#endif
#endif

// FNV-1a.
class Checksum {
 public:
  void add(const void* data, std::size_t size) {
    const auto* bytes = static_cast<const uint8_t*>(data);
    for (std::size_t i = 0; i < size; ++i) sum_ = (sum_ ^ bytes[i]) * 0x100000001B3;
  }
  // All not-a-numbers count as one, because processors differ in their sign.
  void add(double value) {
    if (value != value) value = std::numeric_limits<double>::quiet_NaN();
    add(&value, sizeof value);
  }
  uint64_t value() const { return sum_; }

 private:
  uint64_t sum_ = 0xCBF29CE484222325;
};

struct Box {
  int32_t x1, x2, y1, y2;

  int32_t columns() const { return std::max(x2 - x1 + 1, 0); }
  int32_t rows() const { return std::max(y2 - y1 + 1, 0); }
};

// An argument of a call as an observer sees it.
struct Argument {
  bool is_pointer = false;
  std::vector<double> numbers;    // its value, or the values of its fields
  const void* address = nullptr;  // of a pointer
  uint8_t* memory = nullptr;      // the same address if it is that of a block of the scene; null otherwise
  std::size_t bytes = 0;          // of the block
  std::size_t element = 1;        // bytes of an element
};

// Sees the calls of the export that a row is about. It may change the memory before a call.
class Observer {
 public:
  virtual void before_call(const std::vector<Argument>& /*arguments*/) {}
  virtual void after_call(const std::vector<Argument>& /*arguments*/) {}
  // Makes the call in place of the export, and stores its result. If it returns false, the export is called.
  virtual bool makes_call(const std::vector<Argument>& /*arguments*/, void* /*result*/) { return false; }

 protected:
  ~Observer() = default;
};

class Scene {
 public:
  // Typical scenes show the everyday use of a host. Hostile scenes hold sizes of 1, 0 and less, inverted,
  // empty and outlying regions, and numbers from one end of their type to the other. Special scenes hold
  // cases that the typical ones miss and that have checksums, unlike hostile scenes: images that are empty,
  // tiny, black or wider than every block and strip, long rows of results, a large region with many notches,
  // and often the least or the greatest number of a range.
  enum class Kind { kTypical, kHostile, kSpecial };

  Scene(Kind kind, uint32_t seed)
      : hostile(kind == Kind::kHostile || (kind == Kind::kSpecial && seed <= kTinySpecials)),
        kind_(kind),
        random_(seed),
        special_random_(seed) {
    width = size(3, 56);
    height = size(3, 48);
    if (!hostile && between(0, 7) == 0) {  // wide rows are processed in strips and blocks
      width = between(500, 2200);
      height = between(3, 9);
    }
    if (!hostile && between(0, 1) == 0) {  // camera formats need even sizes
      width += width % 2;
      height += height % 2;
    }
    inner = {first(width), 0, first(height), 0};
    inner.x2 = last(inner.x1, width);
    inner.y2 = last(inner.y1, height);
    region = hostile ? Box{end(width), end(width), end(height), end(height)} : inner;
    count = hostile ? one_of({0, 0, 1, 2, 3, 9, 40, -1, kMin}) : between(3, 60);
    result_width = size(1, 64);
    result_height = size(1, 64);
    M = integer(0, 4);
    N = integer(0, 4);
    if (is_special()) make_special(special(seed));
  }

  // The number of special scenes. Their seeds are 1 to this number.
  static constexpr uint32_t kSpecials = 24;

  const bool hostile;  // sizes may be 0 or less
  bool is_special() const { return kind_ == Kind::kSpecial; }
  int32_t width;
  int32_t height;
  Box region;     // typical: inside the image; hostile: anywhere
  Box inner;      // inside the image, or empty
  int32_t count;  // elements of an array
  int32_t result_width;
  int32_t result_height;
  int32_t M;  // half a window's width
  int32_t N;  // half a window's height

  // A gray image of the scene's size. If there is one, all pictures show it, and scenes of all sizes draw the
  // same numbers, so that their calls can be compared.
  const uint8_t* exhibit = nullptr;
  Observer* observer = nullptr;

  std::size_t pixels() const { return area(width, height); }
  std::size_t inner_pixels() const { return area(inner.columns(), inner.rows()); }
  std::size_t result_pixels() const { return area(result_width, result_height); }
  static std::size_t area(int32_t columns, int32_t rows) { return length(columns) * length(rows); }
  static std::size_t length(int32_t elements) { return static_cast<std::size_t>(std::max(elements, 0)); }

  // ---- Numbers ----

  int32_t between(int32_t low, int32_t high) { return random_.between(low, high); }
  template <class T>
  T one_of(std::initializer_list<T> values) {
    return *(values.begin() + between(0, static_cast<int32_t>(values.size()) - 1));
  }

  // From low to high; any number if the scene is hostile.
  int32_t integer(int32_t low, int32_t high) {
    if (is_special()) return often_an_end(low, between(low, high), high);
    if (!hostile || between(0, 1) == 0) return between(low, high);
    return one_of({kMin, kMin + 1, -65536, -256, -2, -1, 0, 1, 2, 3, low - 1, high + 1, 255, 256, 65536,
                   kMax - 1, kMax});
  }

  // One of 65 steps from low to high; any number if the scene is hostile.
  double real(double low, double high) {
    if (is_special()) return often_an_end(low, low + (high - low) * between(0, 64) / 64, high);
    if (!hostile || between(0, 1) == 0) return low + (high - low) * between(0, 64) / 64;
    const double infinity = std::numeric_limits<double>::infinity();
    return one_of({0.0, -0.0, 1.0, -1.0, low - 1, high + 1, 1e-300, 1e300, -1e300, 2147483648.0, -4e9,
                   infinity, -infinity, infinity - infinity});
  }

  // ---- Memory ----
  //
  // The scene owns the memory and keeps a copy of its first content. Hostile scenes pass null for memory of
  // no bytes.

  template <class T>
  T* memory(std::size_t elements) {
    if (hostile && elements == 0) return nullptr;
    blocks_.emplace_back(elements * sizeof(T), std::is_same_v<T, double>);
    return reinterpret_cast<T*>(blocks_.back().data());
  }

  uint8_t* noise(std::size_t bytes) {
    uint8_t* data = memory<uint8_t>(bytes);
    if (exhibit != nullptr) {
      for (std::size_t i = 0; i < bytes; i += pixels())
        std::memcpy(data + i, exhibit, std::min(pixels(), bytes - i));
      return data;
    }
    for (std::size_t i = 0; i < bytes; ++i) data[i] = static_cast<uint8_t>(between(0, 255));
    return data;
  }

  int32_t* integers(std::size_t elements, int32_t low, int32_t high) {
    int32_t* data = memory<int32_t>(elements);
    fill(data, elements, [=] { return integer(low, high); });
    return data;
  }

  double* reals(std::size_t elements, double low, double high) {
    double* data = memory<double>(elements);
    fill(data, elements, [=] { return real(low, high); });
    return data;
  }

  // Noise, blocks of a few levels, or ramps, with this number of bytes per pixel.
  uint8_t* picture(int32_t channels) {
    const int32_t style = between(0, hostile ? 3 : 2);
    const int32_t side = between(2, 7);
    const int32_t spread = between(0, 12);
    const int32_t slope = between(-4, 4);
    if (exhibit != nullptr) return show(channels);
    return paint(channels, [&](int32_t x, int32_t y, int32_t channel) {
      if (look_ == Look::kBlack) return 0;
      if (look_ == Look::kWhite) return 255;
      if (look_ == Look::kTwoLevels) return 90 + (x * 5 + y * 3) / 16 % 2 * 41;
      if (look_ == Look::kNotched) return notched_level(x, y);
      if (look_ == Look::kBlackAreas && (x / 11 + y / 5) % 3 == 0) return 0;
      if (style == 0) return between(0, 255);
      if (style == 3) return side % 2 * 255;
      const int32_t level = style == 1 ? (x / side * 73 + y / side * 151 + (x / side) * (y / side) * 37) % 200
                                       : 120 + (slope * x + (channel + 1) * y) % 100;
      return std::clamp(level + 20 + between(-spread, spread), 0, 255);
    });
  }

  // Objects of 255 on 0, made of pixels or of blocks. A frame of this width stays 0.
  uint8_t* binary_picture(int32_t frame = 0) {
    const int32_t style = between(0, hostile ? 3 : 1);
    const int32_t side = style == 0 ? 1 : between(2, 6);
    const int32_t percent = between(10, 90);
    const uint32_t salt = static_cast<uint32_t>(between(0, 65535));
    return paint(1, [&](int32_t x, int32_t y, int32_t) {
      const bool in_frame = x < frame || y < frame || x >= width - frame || y >= height - frame;
      if (in_frame || look_ == Look::kBlack) return 0;
      if (look_ == Look::kWhite) return 255;
      if (look_ == Look::kNotched) return notched_level(x, y) < 128 ? 255 : 0;
      if (look_ == Look::kNearLimits && special_within({0, 5}) == 0) return near_a_limit();
      if (exhibit != nullptr) return exhibit[y * width + x] >= 128 ? 255 : 0;
      if (style == 2) return percent % 2 * 255;
      if (style == 3) return between(0, 255);
      const auto place = static_cast<uint32_t>(x / side * 4096 + y / side) ^ salt;
      return place * 2654435761U >> 25 < static_cast<uint32_t>(percent) * 128 / 100 ? 255 : 0;
    });
  }

  // ---- A chain ----
  //
  // The chain stays inside the image. Typically it is closed.

  struct Chain {
    int32_t x = 0;
    int32_t y = 0;
    std::vector<uint8_t> codes;
  };

  const Chain& chain() {
    if (!chain_)
      chain_ = std::make_unique<Chain>(hostile && between(0, 2) != 0 ? wandering_chain() : closed_chain());
    return *chain_;
  }

  // ---- The arguments of calls ----

  // From now on the arguments of calls are kept as text.
  void describe_calls() { describes_calls_ = true; }
  const std::string& description() const { return description_; }

  template <class... Arguments>
  void describe_call(Arguments... arguments) {
    if (!describes_calls_) return;
    std::ostringstream text;
    const char* separator = "(";
    ((text << separator << described(arguments), separator = ", "), ...);
    description_ += text.str() + ")";
  }

  template <class T>
  Argument seen(T value) const {
    Argument argument;
    if constexpr (std::is_pointer_v<T>) {
      argument.is_pointer = true;
      argument.element = sizeof(*value);
      argument.address = value;
      const auto* address = reinterpret_cast<const uint8_t*>(value);
      for (const Block& block : blocks_) {
        if (block.data() != address) continue;
        argument.memory = block.data();
        argument.bytes = block.size();
      }
    } else if constexpr (std::is_arithmetic_v<T>) {
      argument.numbers = {static_cast<double>(value)};
    } else {
      for (int32_t field : {value.left, value.top, value.right, value.bottom})
        argument.numbers.push_back(field);
    }
    return argument;
  }

  // ---- Results ----

  template <class T>
  void add_result(T value) {
    returned_something_ = returned_something_ || value != T{};
    if constexpr (std::is_same_v<T, double>) {
      sum_.add(value);
    } else {
      sum_.add(&value, sizeof value);
    }
  }

  // Keeps the present content of the memory as its first content.
  void remember() {
    for (Block& block : blocks_) block.remember();
  }
  std::size_t memory_size() const {
    std::size_t size = 0;
    for (const Block& block : blocks_) size += block.size();
    return size;
  }
  // Whether anything but 0, false and null was returned.
  bool returned_something() const { return returned_something_; }
  bool shows_an_effect() const {
    return returned_something_ ||
           std::any_of(blocks_.begin(), blocks_.end(), [](const Block& b) { return b.changed(); });
  }
  bool guards_hold() const {
    return std::all_of(blocks_.begin(), blocks_.end(), [](const Block& b) { return b.guards_hold(); });
  }
  // The checksum of all results without the memory.
  uint64_t results() const { return sum_.value(); }
  // The checksum of all results and of the whole memory.
  uint64_t checksum() const {
    Checksum sum = sum_;
    for (const Block& block : blocks_) block.add_to(sum);
    return sum.value();
  }

 private:
  static constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
  static constexpr int32_t kMax = std::numeric_limits<int32_t>::max();

  // Memory between guard bytes.
  class Block {
   public:
    Block(std::size_t size, bool of_reals)
        : size_(size), of_reals_(of_reals), memory_(new uint8_t[size + 2 * kGuard]) {
      std::memset(memory_.get(), kGuardByte, size + 2 * kGuard);
    }

    uint8_t* data() const { return memory_.get() + kGuard; }
    std::size_t size() const { return size_; }
    void remember() { held_.assign(data(), data() + size_); }
    bool changed() const { return !std::equal(held_.begin(), held_.end(), data()); }
    bool guards_hold() const {
      const auto is_guard = [](uint8_t byte) { return byte == kGuardByte; };
      return std::all_of(memory_.get(), data(), is_guard) &&
             std::all_of(data() + size_, data() + size_ + kGuard, is_guard);
    }
    void add_to(Checksum& sum) const {
      if (!of_reals_) {
        sum.add(data(), size_);
        return;
      }
      for (std::size_t i = 0; i < size_; i += sizeof(double)) {
        double value;
        std::memcpy(&value, data() + i, sizeof value);
        sum.add(value);
      }
    }

   private:
#if defined(NUV_ASAN)
    static constexpr std::size_t kGuard = 0;
#else
    static constexpr std::size_t kGuard = 64;
#endif
    static constexpr uint8_t kGuardByte = 0xA7;

    std::size_t size_;
    bool of_reals_;
    std::unique_ptr<uint8_t[]> memory_;
    std::vector<uint8_t> held_;
  };

  // ---- Special scenes ----

  enum class Look { kUsual, kBlack, kWhite, kTwoLevels, kBlackAreas, kNearLimits, kNotched };
  struct Range {
    int32_t low, high;
  };
  struct Special {
    Range width, height;
    Look look;
    Range count, half_size, result_width, result_height;
  };

  static constexpr uint32_t kTinySpecials = 8;
  static Special special(uint32_t seed) {
    constexpr Range kCount{3, 60};
    constexpr Range kHalf{0, 4};
    constexpr Range kSide{1, 64};
    static constexpr Special kList[kSpecials] = {
        {{0, 0}, {0, 0}, Look::kUsual, {0, 0}, kHalf, {0, 0}, {0, 0}},
        {{0, 0}, {5, 9}, Look::kUsual, {0, 0}, kHalf, {0, 0}, {1, 9}},
        {{5, 9}, {0, 0}, Look::kUsual, {0, 1}, kHalf, {1, 9}, {0, 0}},
        {{1, 1}, {1, 1}, Look::kUsual, {1, 1}, {0, 0}, {1, 3}, {1, 3}},
        {{1, 1}, {9, 40}, Look::kUsual, {1, 2}, kHalf, {1, 9}, {1, 9}},
        {{9, 40}, {1, 1}, Look::kUsual, {1, 2}, kHalf, {1, 9}, {1, 9}},
        {{2, 3}, {2, 3}, Look::kUsual, {2, 3}, {0, 1}, {1, 9}, {1, 9}},
        {{4, 6}, {4, 6}, Look::kUsual, {2, 3}, {1, 4}, {1, 9}, {1, 9}},
        {{20, 40}, {20, 40}, Look::kBlack, kCount, kHalf, kSide, kSide},
        {{20, 40}, {20, 40}, Look::kWhite, kCount, kHalf, kSide, kSide},
        {{20, 40}, {20, 40}, Look::kTwoLevels, kCount, kHalf, kSide, kSide},
        {{20, 56}, {20, 48}, Look::kBlackAreas, kCount, kHalf, kSide, kSide},
        {{20, 56}, {20, 48}, Look::kNearLimits, kCount, kHalf, kSide, kSide},
        {{20, 56}, {20, 48}, Look::kNearLimits, kCount, kHalf, kSide, kSide},
        {{20, 56}, {20, 48}, Look::kUsual, kCount, {5, 12}, kSide, kSide},
        {{6, 12}, {6, 12}, Look::kUsual, kCount, {3, 12}, kSide, kSide},
        {{30, 50}, {30, 50}, Look::kUsual, {80, 300}, {5, 15}, kSide, kSide},
        {{3, 9}, {280, 400}, Look::kUsual, {200, 600}, {0, 12}, {3, 9}, {300, 400}},
        {{600, 640}, {20, 24}, Look::kUsual, kCount, kHalf, {300, 600}, {6, 12}},
        {{600, 640}, {20, 24}, Look::kBlackAreas, kCount, kHalf, {300, 600}, {6, 12}},
        {{2300, 2500}, {3, 6}, Look::kUsual, {200, 600}, {0, 2}, {1000, 2200}, {2, 4}},
        {{4097, 4400}, {3, 4}, Look::kUsual, {4100, 4200}, {0, 1}, {4100, 4200}, {1, 2}},
        {{4000, 4096}, {3, 5}, Look::kUsual, kCount, {0, 1}, {1, 9}, {1, 9}},
        {{100, 120}, {80, 90}, Look::kNotched, kCount, kHalf, {70, 120}, {70, 90}}};
    return kList[seed - 1];
  }

  int32_t special_within(Range range) {
    return special_random_.between(range.low, range.high);
  }

  void make_special(const Special& special) {
    width = special_within(special.width);
    height = special_within(special.height);
    look_ = special.look;
    count = special_within(special.count);
    M = special_within(special.half_size);
    N = special_within(special.half_size);
    result_width = special_within(special.result_width);
    result_height = special_within(special.result_height);
    inner = special_box(special_within({0, 3}) == 0);
    region = special_box(special_within({0, 3}) == 0);
  }

  // A box over most of the image or all of it, so that rows are long.
  Box special_box(bool whole) {
    if (whole || width < 1 || height < 1) return {0, width - 1, 0, height - 1};
    const auto near_an_end = [&](int32_t length) { return special_within({0, (length - 1) / 4}); };
    return {near_an_end(width), width - 1 - near_an_end(width), near_an_end(height),
            height - 1 - near_an_end(height)};
  }

  template <class T>
  T often_an_end(T low, T value, T high) {
    const int32_t choice = special_random_.between(0, 7);
    return choice == 0 ? low : choice == 1 ? high : value;
  }

  // A value at or next to one that functions of binary images compare with.
  int32_t near_a_limit() {
    constexpr int32_t kLimits[] = {2, 10, 50, 128, 200, 250, 254};
    return kLimits[special_within({0, 6})] + special_within({-1, 1});
  }

  // A dark region with slots from above and from below, an island in each slot, and holes.
  int32_t notched_level(int32_t x, int32_t y) const {
    constexpr int32_t kSlot = 8;
    const bool in_frame = x < 3 || y < 3 || x >= width - 3 || y >= height - 3;
    if (in_frame) return 220;
    const int32_t across = x % kSlot;
    const bool from_above = x / kSlot % 2 == 0;
    const int32_t depth = from_above ? y : height - 1 - y;
    const bool in_slot = across < 5 && depth < height * 2 / 3 + x % 3;
    if (in_slot) return across > 0 && across < 4 && depth % 9 > 4 && depth > 9 ? 60 + x / kSlot * 3 : 200;
    const bool in_hole = across == 6 && depth % 7 == 3;
    return in_hole ? 210 : 20 + x / 40 * 15;
  }

  // ---- Descriptions ----

  template <class T>
  std::string described(T value) const {
    std::ostringstream text;
    if constexpr (std::is_pointer_v<T>) {
      if (value == nullptr) return "null";
      const auto* address = reinterpret_cast<const uint8_t*>(value);
      const auto block =
          std::find_if(blocks_.begin(), blocks_.end(), [=](const Block& b) { return b.data() == address; });
      if (block == blocks_.end()) return "pointer";
      text << block->size() << " bytes";
    } else if constexpr (std::is_arithmetic_v<T>) {
      text << std::setprecision(17) << +value;
    } else {
      text << '{' << value.left << ", " << value.top << ", " << value.right << ", " << value.bottom << '}';
    }
    return text.str();
  }

  int32_t size(int32_t low, int32_t high) {
    return hostile ? one_of({0, 0, 1, 1, 2, 3, 4, 5, 7, 8, 17, 33, -1, kMin}) : between(low, high);
  }

  int32_t first(int32_t length) {
    return between(0, std::max(length, 1) - 1);
  }
  // The end of a range that starts at from. The range may be empty if the scene is hostile.
  int32_t last(int32_t from, int32_t length) {
    if (length < 1) return from - 1;
    if (hostile && between(0, 3) == 0) return from - 1;
    return between(from, length - 1);
  }
  // An end of a region that may lie anywhere.
  int32_t end(int32_t length) {
    return one_of({kMin, -65536, -2, -1, 0, 0, 1, 2, length / 2, length - 2, length - 1, length - 1, length,
                   length + 1, 65536, kMax});
  }

  template <class T, class Draw>
  void fill(T* data, std::size_t elements, Draw draw) {
    if (exhibit == nullptr) {
      std::generate_n(data, elements, draw);
      return;
    }
    Random own(static_cast<uint32_t>(between(0, 65535)));
    std::swap(random_, own);
    std::generate_n(data, elements, draw);
    std::swap(random_, own);
  }

  uint8_t* show(int32_t channels) {
    uint8_t* data = memory<uint8_t>(pixels() * static_cast<std::size_t>(channels));
    for (std::size_t i = 0; i < pixels(); ++i)
      std::fill_n(data + i * static_cast<std::size_t>(channels), channels, exhibit[i]);
    return data;
  }

  template <class Pixel>
  uint8_t* paint(int32_t channels, Pixel pixel) {
    uint8_t* data = memory<uint8_t>(pixels() * static_cast<std::size_t>(channels));
    if (pixels() == 0) return data;
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        for (int32_t c = 0; c < channels; ++c)
          data[(y * width + x) * channels + c] = static_cast<uint8_t>(pixel(x, y, c));
      }
    }
    return data;
  }

  // An octagon whose opposite sides have equal length, walked counter-clockwise or clockwise.
  Chain closed_chain() {
    Chain chain;
    const int32_t columns = std::max(width, 1) - 1;  // that the chain may extend over
    const int32_t rows = std::max(height, 1) - 1;
    int32_t sides[4];  // the lengths of the sides of codes 0 and 4, 1 and 5, 2 and 6, 3 and 7
    sides[1] = between(0, std::min(columns, rows) / 3);
    sides[3] = between(0, std::min(columns, rows) / 3);
    sides[0] = between(0, columns - sides[1] - sides[3]);
    sides[2] = between(0, rows - sides[1] - sides[3]);
    // The chains of the widest scenes are too long to be processed without an allocation.
    if (is_special() && width > 4096) sides[0] = columns - sides[1] - sides[3];
    const bool to_the_left = between(0, 1) == 0;
    for (int32_t code = 0; code < 8; ++code) {
      const auto length = static_cast<std::size_t>(sides[code % 4]);
      chain.codes.insert(chain.codes.end(), length,
                         static_cast<uint8_t>(to_the_left ? code : (8 - code) % 8));
    }
    // The chain starts to the right, along its lowest side or along its highest one.
    const int32_t reach = sides[1] + sides[2] + sides[3];
    chain.x = sides[3] + between(0, columns - sides[0] - sides[1] - sides[3]);
    chain.y = (to_the_left ? reach : 0) + between(0, rows - reach);
    return chain;
  }

  Chain wandering_chain() {
    static constexpr int32_t kX[] = {1, 1, 0, -1, -1, -1, 0, 1};
    static constexpr int32_t kY[] = {0, -1, -1, -1, 0, 1, 1, 1};
    Chain chain;
    chain.x = first(width);
    chain.y = first(height);
    int32_t x = chain.x;
    int32_t y = chain.y;
    for (int32_t tries = between(0, 120); tries > 0; --tries) {
      const int32_t code = between(0, 7);
      const bool stays =
          x + kX[code] >= 0 && x + kX[code] < width && y + kY[code] >= 0 && y + kY[code] < height;
      if (!stays) continue;
      x += kX[code];
      y += kY[code];
      chain.codes.push_back(static_cast<uint8_t>(code));
    }
    return chain;
  }

  Kind kind_;
  Random random_;
  Random special_random_;
  Look look_ = Look::kUsual;
  bool describes_calls_ = false;
  std::string description_;
  std::vector<Block> blocks_;
  std::unique_ptr<Chain> chain_;
  Checksum sum_;
  bool returned_something_ = false;
};

#endif

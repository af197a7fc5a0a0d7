// The connected components of an image above each of its gray values.
//
// A flood climbs to higher pixels as long as it can, and then goes on from the highest pixel that it has
// reached. A component is complete when the flood falls below its value. So a stack of open components, of
// rising values, is enough.

#ifndef NUV_SEGMENTATION_LEVEL_COMPONENTS_H
#define NUV_SEGMENTATION_LEVEL_COMPONENTS_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "core/buffer.h"
#include "core/byte_counter.h"
#include "core/neighbours.h"
#include "core/views.h"
#include "segmentation/neighbour_bytes.h"

namespace nuv {

// An 8-connected component of the pixels above a level, and the range of levels at which it is the same set.
struct LevelComponent {
  int32_t first;   // index of its first pixel in the image, in the order of rows
  int32_t pixels;  // number of its pixels
  int32_t from;    // the first level; 0 stands for every level below up_to
  int32_t up_to;   // the level after the last one
  // The components inside this one have the numbers from first_inside to number - 1.
  int32_t number;
  int32_t first_inside;

  bool contains(const LevelComponent& other) const {
    return other.number >= first_inside && other.number <= number;
  }
};

class LevelFlood {
 public:
  // Takes an image whose sides are 0, and its histogram. The flood sets all pixels to 0.
  LevelFlood(GrayImage image, const Histogram& bins)
      : image_(image), offsets_(neighbour_offsets(image.width)) {
    int32_t begin = 0;
    for (std::size_t value = 1; value < kBins; ++value) {
      begins_[value] = ends_[value] = begin;
      begin += bins[value];
    }
    pending_ = allocate<int32_t>(begin);
  }
  bool allocated() const { return pending_ != nullptr; }

  // Calls action(LevelComponent) for each component, after those inside it.
  template <class Action>
  void run(Action action) {
    for (std::ptrdiff_t i = 0; i < image_.size(); ++i) {
      if (image_.pixels[i] == 0) continue;
      push(static_cast<int32_t>(i), image_.pixels[i]);
      image_.pixels[i] = 0;
      while (highest_ > 0) {
        const int32_t value = highest_;
        const int32_t place = next();
        while (open_count_ > 0 && top().value > value) close(value, action);
        visit(place, value);
      }
      while (open_count_ > 0) close(0, action);
    }
  }

 private:
  struct Open {
    int32_t value;
    int32_t first;
    int32_t pixels;
    int32_t first_inside;
  };

  void push(int32_t place, int32_t value) {
    pending_[static_cast<std::size_t>(ends_[static_cast<std::size_t>(value)]++)] = place;
    highest_ = std::max(highest_, value);
  }
  // Takes a pending pixel of the highest value.
  int32_t next() {
    auto value = static_cast<std::size_t>(highest_);
    const int32_t place = pending_[static_cast<std::size_t>(--ends_[value])];
    while (value > 0 && ends_[value] == begins_[value]) --value;
    highest_ = static_cast<int32_t>(value);
    return place;
  }
  // Climbs from a pixel to one without higher neighbours, and adds that one to its component. The pixels
  // passed on the way become pending. Every pending pixel is connected to the open component of its value.
  void visit(int32_t place, int32_t value) {
    uint64_t neighbours = neighbours_of(image_.pixels + place, image_.width);
    while (neighbours != 0) {
      const unsigned direction = lowest_byte(neighbours);
      const auto reached = static_cast<int32_t>(neighbours >> (8 * direction) & 255);
      const auto neighbour = static_cast<int32_t>(place + offsets_[direction]);
      image_.pixels[neighbour] = 0;
      if (reached <= value) {
        push(neighbour, reached);
        neighbours &= ~(uint64_t{255} << (8 * direction));
      } else {
        push(place, value);
        place = neighbour;
        value = reached;
        neighbours = neighbours_of(image_.pixels + place, image_.width);
      }
    }
    if (open_count_ == 0 || top().value < value) open_[open_count_++] = {value, place, 0, count_};
    top().first = std::min(top().first, place);
    ++top().pixels;
  }
  // Closes the top component. It becomes a part of the one below it on the stack, or of a new one of the
  // given value if that is higher.
  template <class Action>
  void close(int32_t value, Action action) {
    const Open closed = top();
    --open_count_;
    if (open_count_ > 0 && top().value >= value) {
      top().first = std::min(top().first, closed.first);
      top().pixels += closed.pixels;
      value = top().value;
    } else if (value > 0) {
      open_[open_count_++] = {value, closed.first, closed.pixels, closed.first_inside};
    }
    action(LevelComponent{closed.first, closed.pixels, value, closed.value, count_++, closed.first_inside});
  }
  Open& top() { return open_[open_count_ - 1]; }

  GrayImage image_;
  std::array<std::ptrdiff_t, 8> offsets_;
  // Indices of the pixels that have been reached but not visited, grouped by value.
  Buffer<int32_t> pending_;
  Histogram begins_{};
  Histogram ends_{};
  int32_t highest_ = 0;  // the highest value of a pending pixel; 0 if there is none
  std::array<Open, kBins> open_;
  std::size_t open_count_ = 0;
  int32_t count_ = 0;  // number of components closed
};

}  // namespace nuv

#endif

// The connected components of an image above each of its gray values.
//
// A flood climbs to the highest value that it can reach and falls when there is nothing left as high. Components
// are complete when it falls below them, so a stack of open components, of rising values, is all it needs.

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

namespace nuv {

// A set of 8-connected pixels above a level that no other pixel above it touches, and the levels at which it is
// one.
struct LevelComponent {
  int32_t first;   // of its pixels, in the order of rows; a place in the image
  int32_t pixels;  // their number
  int32_t from;    // the first level; 0 stands for all that are low enough
  int32_t up_to;   // the last level is the one before this
  // Components are numbered so that those inside this one come right before it, from first_inside on.
  int32_t number;
  int32_t first_inside;

  bool contains(const LevelComponent& other) const {
    return other.number >= first_inside && other.number <= number;
  }
};

class LevelFlood {
 public:
  // An image whose sides are 0, and how many pixels have each value. The flood turns all pixels to 0.
  LevelFlood(GrayImage image, const Histogram& bins)
      : image_(image), offsets_(neighbour_offsets(image.width)) {
    int32_t begin = 0;
    for (std::size_t value = 1; value < kBins; ++value) {
      begins_[value] = ends_[value] = begin;
      begin += bins[value];
    }
    waiting_ = allocate<int32_t>(static_cast<std::size_t>(begin));
  }
  bool allocated() const { return waiting_ != nullptr; }

  // Calls action(LevelComponent) for each component, after those inside it.
  template <class Action>
  void run(Action action) {
    for (std::ptrdiff_t i = 0; i < image_.size(); ++i) {
      if (image_.pixels[i] == 0) continue;
      wait(static_cast<int32_t>(i), image_.pixels[i]);
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

  void wait(int32_t place, int32_t value) {
    waiting_[static_cast<std::size_t>(ends_[static_cast<std::size_t>(value)]++)] = place;
    highest_ = std::max(highest_, value);
  }
  // Takes one of the pixels of the highest value that wait.
  int32_t next() {
    auto value = static_cast<std::size_t>(highest_);
    const int32_t place = waiting_[static_cast<std::size_t>(--ends_[value])];
    while (value > 0 && ends_[value] == begins_[value]) --value;
    highest_ = static_cast<int32_t>(value);
    return place;
  }
  // Climbs from a pixel to one without higher neighbours, and adds that one to its component. The pixels that it
  // leaves wait, so all that wait are connected to the open component of their value.
  void visit(int32_t place, int32_t value) {
    for (std::size_t i = 0; i < offsets_.size();) {
      const auto neighbour = static_cast<int32_t>(place + offsets_[i++]);
      const int32_t reached = image_.pixels[neighbour];
      if (reached == 0) continue;
      image_.pixels[neighbour] = 0;
      if (reached <= value) {
        wait(neighbour, reached);
      } else {
        wait(place, value);
        place = neighbour;
        value = reached;
        i = 0;
      }
    }
    if (open_count_ == 0 || top().value < value) open_[open_count_++] = {value, place, 0, count_};
    top().first = std::min(top().first, place);
    ++top().pixels;
  }
  // Closes the top component, which becomes a part of the one below it on the stack or of one of that value.
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
  // Pixels that have been reached but not visited, by value.
  Buffer<int32_t> waiting_;
  Histogram begins_{};
  Histogram ends_{};
  int32_t highest_ = 0;  // of their values; 0 if none waits
  std::array<Open, kBins> open_;
  std::size_t open_count_ = 0;
  int32_t count_ = 0;  // of the components closed
};

}  // namespace nuv

#endif

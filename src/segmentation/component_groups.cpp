// Collecting the components of a flood.

#include "segmentation/component_groups.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "core/arithmetic.h"
#include "core/byte_counter.h"
#include "core/point_pass.h"

namespace nuv {

Components::Components(GrayImage image, GrayImage work, int32_t first_level, int32_t last_level,
                       int32_t least_pixels) {
  ByteTable values;
  for (int32_t v = 0; v < kBins; ++v) {
    values[static_cast<std::size_t>(v)] = v <= first_level ? 0 : low_byte(std::min(v, last_level + 1));
  }
  copy_bytes(work.pixels, image.pixels, image.size());
  map_bytes(values, work.pixels, work.size());
  LevelFlood flood(work, histogram_of(work));
  complete_ = flood.allocated();
  if (!complete_) return;
  flood.run([&](LevelComponent c) {
    c.from = std::max(c.from, first_level);
    if (c.pixels >= least_pixels) append(c);
  });
}

void Components::append(const LevelComponent& c) {
  if (count_ == capacity_) {
    const std::size_t capacity = std::max<std::size_t>(2 * capacity_, 1024);
    Buffer<LevelComponent> larger = allocate<LevelComponent>(capacity);
    if (!larger) {
      complete_ = false;
      return;
    }
    std::copy_n(items_.get(), count_, larger.get());
    items_ = std::move(larger);
    capacity_ = capacity;
  }
  items_[count_++] = c;
}

ComponentGroups::ComponentGroups(const Components& all, int32_t LevelComponent::*level,
                                 int32_t least_pixels) {
  for (const LevelComponent& c : all) begins_[static_cast<std::size_t>(c.*level)] += c.pixels >= least_pixels;
  std::partial_sum(begins_.begin(), begins_.end(), begins_.begin());
  items_ = allocate<LevelComponent>(begins_.back());
  if (!items_) return;
  // Each group is filled from its end, which moves to its begin.
  for (const LevelComponent& c : all) {
    if (c.pixels >= least_pixels) items_[--begins_[static_cast<std::size_t>(c.*level)]] = c;
  }
}

}  // namespace nuv

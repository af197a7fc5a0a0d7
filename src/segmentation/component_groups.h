// The connected components of an image above each level of a range, grouped by levels.

#ifndef NUV_SEGMENTATION_COMPONENT_GROUPS_H
#define NUV_SEGMENTATION_COMPONENT_GROUPS_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/buffer.h"
#include "core/views.h"
#include "segmentation/level_components.h"

namespace nuv {

// The components of an image above each level of a range.
class Components {
 public:
  // Values above the last level count as one value. The work image has the size of the image and becomes 0.
  Components(GrayImage image, GrayImage work, int32_t first_level, int32_t last_level, int32_t least_pixels);
  // False if an allocation failed.
  bool complete() const { return complete_; }

  const LevelComponent* begin() const { return items_.get(); }
  const LevelComponent* end() const { return items_.get() + count_; }

 private:
  void append(const LevelComponent& c);

  Buffer<LevelComponent> items_;
  std::size_t count_ = 0;
  std::size_t capacity_ = 0;
  bool complete_ = true;
};

// Components of at least some size, grouped by one of their levels.
class ComponentGroups {
 public:
  ComponentGroups(const Components& all, int32_t LevelComponent::*level, int32_t least_pixels);
  bool allocated() const { return items_ != nullptr; }
  LevelComponent* begin_of(int32_t level) { return items_.get() + begins_[static_cast<std::size_t>(level)]; }
  LevelComponent* end_of(int32_t level) { return begin_of(level + 1); }

 private:
  std::array<std::size_t, kBins + 2> begins_{};
  Buffer<LevelComponent> items_;
};

}  // namespace nuv

#endif

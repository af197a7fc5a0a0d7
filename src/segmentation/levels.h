// The regions of one level: the outer contours of the pixels above a value of the inverted image.
//
// Each level is made from the level before it. Scanning and tracing every level afresh would cost a pass over
// the image per level. Instead, a flood of the inverted image finds the levels at which each connected
// component appears and changes. The outer contour of a component stays the same until one of its own pixels
// drops out. So a region stays until that level, and only new and broken contours are traced.

#ifndef NUV_SEGMENTATION_LEVELS_H
#define NUV_SEGMENTATION_LEVELS_H

#include <cstdint>

#include "core/buffer.h"
#include "core/views.h"
#include "segmentation/level_components.h"
#include "segmentation/region.h"
#include "segmentation/region_index.h"
#include "segmentation/region_list.h"

namespace nuv {

// The limits for regions, and the next numbers to assign.
struct Census {
  int32_t min_codes;  // a chain must have more codes than this
  int32_t min_area;
  int32_t next_id = 0;
  int64_t next_serial = 0;
};

// The regions of one level, in the order of the scan. Their parents are regions of the tree.
struct Level : IndexedList {
  int32_t longest = 0;  // number of codes of the longest chain

  using IndexedList::IndexedList;
};

// Traces outer contours of the pixels above a level, without marks in the image.
class Tracer {
 public:
  Tracer(GrayImage inverted, Census& census)
      : image_(inverted), census_(census), codes_(allocate<uint8_t>(inverted.size())) {}
  bool allocated() const { return codes_ != nullptr; }
  const uint8_t* codes() const { return codes_.get(); }

  // Returns the number of codes, and sets least to the lowest value on the contour.
  int32_t trace(int32_t first, int32_t level, int32_t& least);
  // The region of a component. Null if it is too small or if allocation fails.
  Node* region_of(const LevelComponent& component, int32_t level);

 private:
  GrayImage image_;
  Census& census_;
  Buffer<uint8_t> codes_;
};

// Makes a level from the one before it and from the components that start at it, which come in the order of
// the scan. Regions whose contour breaks move to the front of the list broken, so the last one comes first.
void advance(Level& level, int32_t t, const LevelComponent* starting, const LevelComponent* starting_end,
             Tracer& tracer, Census& census, RegionList& broken);

}  // namespace nuv

#endif

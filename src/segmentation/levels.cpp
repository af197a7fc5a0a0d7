// Tracing the regions of a level, and making each level from the one before it.

#include "segmentation/levels.h"

#include <algorithm>

#include "contours/chain.h"
#include "contours/chain_measures.h"
#include "contours/trace.h"
#include "segmentation/two_way_trace.h"

namespace nuv {
int32_t Tracer::trace(int32_t first, int32_t level, int32_t& least) {
  const uint8_t* start = image_.pixels + first;
  const auto capacity = static_cast<int32_t>(image_.size());
  uint8_t lowest = 255;
  int32_t n = TwoWayTrace(start, image_.width, level).run(codes_.get(), capacity - 1, lowest);
  if (n == TwoWayTrace::kTooLong) {
    ChainSink chain(codes_.get(), capacity);
    lowest = 255;
    follow_contour<const uint8_t>(
        start, image_.width, true, [level](uint8_t pixel) { return pixel > level; },
        [&lowest](uint8_t pixel) { lowest = std::min(lowest, pixel); },
        [&chain](uint8_t code) { chain(code); });
    n = chain.count();
  }
  least = lowest;
  return n;
}

Node* Tracer::region_of(const LevelComponent& component, int32_t level) {
  const int32_t first = component.first;
  int32_t least = 0;
  const int32_t n = trace(first, level, least);
  if (n <= census_.min_codes) return nullptr;
  const Chain chain{{first % image_.width, first / image_.width}, codes_.get(), n};
  const ChainMeasures m = measures_of(chain);
  if (m.area < census_.min_area) return nullptr;
  Node* node = new_node(chain, m.closes ? m.box : image_.whole(), m.area, m.perimeter);
  if (node == nullptr) return nullptr;
  node->surround(component);
  node->serial = first;
  node->unbroken_to = least;
  return node;
}

namespace {

// A region takes over the parent of the region that it is what is left of. Both have the same start, so the
// regions of the tree around it are the same. Only those that were too small for the former region come newly
// into question.
void take_over_parent(Node& node, const Node& former) {
  if (!former.knows_parent() || former.parent == nullptr || node.area > former.area) return;
  node.parent = former.parent;
  node.parent_known_from = former.area;
}

}  // namespace

void advance(Level& level, int32_t t, const LevelComponent* starting, const LevelComponent* starting_end,
             Tracer& tracer, Census& census, RegionList& broken) {
  for (RegionStruct** link = level.list.begin(); starting != starting_end || *link != nullptr;) {
    auto* region = static_cast<Node*>(*link);
    if (region != nullptr && (starting == starting_end || region->serial <= starting->first)) {
      if (region->unbroken_to > t) {
        // What is left of a component may still have the same contour.
        if (starting != starting_end && region->serial == starting->first) region->surround(*starting++);
        link = &region->next;
      } else {
        level.unfile(*region);
        broken.push_front(RegionList::unlink(link));
      }
      continue;
    }
    Node* node = tracer.region_of(*starting, t);
    ++starting;
    if (node == nullptr) continue;
    if (!broken.empty() && broken.head()->serial == node->serial) take_over_parent(*node, *broken.head());
    level.file(*node);
    node->next = *link;
    *link = node;
    link = &node->next;
  }
  level.longest = 0;
  for (Node* r = level.list.head(); r != nullptr; r = r->next_node()) {
    r->ID = census.next_id++;
    r->gry = 255 - t;
    level.longest = std::max(level.longest, r->N);
  }
}

}  // namespace nuv

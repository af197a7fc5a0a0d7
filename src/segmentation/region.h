// A region of the segmentation: its record, and the working data.

#ifndef NUV_SEGMENTATION_REGION_H
#define NUV_SEGMENTATION_REGION_H

#include <array>
#include <cstdint>

#include "contours/chain.h"
#include "core/views.h"
#include "nuv/contours.h"
#include "nuv/records.h"
#include "segmentation/chain_blocks.h"
#include "segmentation/chain_rows.h"
#include "segmentation/level_components.h"

namespace nuv {

// A record, and the working data of the segmentation.
struct Node : RegionStruct {
  // Each level reads these fields of many regions, so they come first and share a line of the cache.
  Node* parent = nullptr;       // in the tree
  int32_t children = 0;         // number of regions of the present level with this parent
  int32_t children_area = 0;    // sum of their areas
  Node* first_child = nullptr;  // list of them
  Node* next_child = nullptr;
  Node* next_parent = nullptr;  // list of the regions of the tree that have children
  bool is_replaced = false;     // by its parts; it is no region of the tree any more
  bool parent_is_current = false;
  int32_t unbroken_to = 0;  // the first level at which a pixel of the contour is missing
  int64_t serial = 0;       // rises with each entry into a list

  Region box;                       // of the chain; the image if the chain does not close
  LevelComponent component{};       // the component that the chain surrounds
  int32_t hole_pixels = INT32_MAX;  // number of pixels in its holes; meaningless if the chain does not close
  const Node* container = nullptr;  // the region that sameLevelParentID names
  std::array<Node*, 4> in_cell{};   // links in the lists of its cells
  Node* in_start_cell = nullptr;
  // If parent is not current: it is right among the regions of the tree of at least this area.
  int32_t parent_known_from = INT32_MAX;
  int32_t tests = 0;   // number of points that holds() has tested
  ChainBlocks blocks;  // for the first tests
  ChainRows rows;      // for many

  Node* next_node() const { return static_cast<Node*>(next); }

  // Whether the point lies inside the region or on its contour.
  bool holds(int32_t x, int32_t y) {
    constexpr int32_t kLongChain = 100;
    constexpr int32_t kManyTests = 500;
    if (!box.contains(x, y)) return false;
    const Chain chain{{x0, y0}, pChainCode, N};
    if (N > kLongChain) {
      ++tests;
      if (tests == 1) blocks.build(chain);
      if (tests == kManyTests) rows.build(chain, box);
      if (rows) return rows.holds(x, y);
      if (blocks) return blocks.holds(chain, x, y);
    }
    return NuvIsPointIncludedByChain(x, y, x0, y0, pChainCode, N);
  }
  // Whether a region of a disjoint component may lie in a hole of this one. The component has no more pixels
  // than the holes, and the box of the region lies between the sides of this one. A chain that does not close
  // says nothing about either. Its box begins at column 0, and those of other chains do not.
  bool may_have_in_hole(const Node& other) const {
    if (hole_pixels <= 0) return false;
    if (box.x1 == 0 || other.box.x1 == 0) return true;
    return other.component.pixels <= hole_pixels && box.x1 < other.box.x1 && other.box.x2 < box.x2 &&
           box.y1 < other.box.y1 && other.box.y2 < box.y2;
  }
  // Whether the start of another region lies inside this one or on its contour. The start is a pixel of the
  // other component, and two components either are disjoint or one contains the other.
  bool holds_start_of(const Node& other) {
    if (component.contains(other.component)) return true;
    if (!other.component.contains(component) && !may_have_in_hole(other)) return false;
    return holds(other.x0, other.y0);
  }
  // Sets the component that the chain surrounds, and the number of pixels in its holes. A chain of n codes
  // around a polygon of the area A encloses A + n/2 + 1 pixels. The area of NuvAreaAndPerimeter is A plus half
  // the perimeter, and is 1/2 more if n is odd.
  void surround(const LevelComponent& inside) {
    component = inside;
    const int32_t halves = 2 * (area - perimeter / 2) - N % 2;
    hole_pixels = (halves + N) / 2 + 1 - inside.pixels;
  }
  bool starts_with(const Node& other) const { return x0 == other.x0 && y0 == other.y0; }
  // The order of lists: the smaller first; ties go to the later one.
  bool precedes(const Node& other) const {
    return area < other.area || (area == other.area && serial > other.serial);
  }
  // Whether parent is right among all regions of the tree.
  bool knows_parent() const { return parent_is_current && (parent == nullptr || !parent->is_replaced); }
  // Releases what tests of points have left.
  void release_index() {
    blocks.reset();
    rows.reset();
  }
  // The parent of a region of the tree. The parents of those that have been replaced take their place.
  Node* parent_in_tree() {
    while (parent != nullptr && parent->is_replaced) parent = parent->parent;
    return parent;
  }
};

constexpr int32_t kNone = -1;

// The ID of a region; kNone for none.
inline int32_t id_of(const Node* node) {
  return node != nullptr ? node->ID : kNone;
}

// Creates a record with its own copy of the chain, not numbered yet. Null if allocation fails.
Node* new_node(const Chain& chain, Region box, int32_t area, int32_t perimeter);

void delete_chain(Node& node);
void destroy(Node* node);

}  // namespace nuv

#endif

// Merge-split segmentation: the tree of dark regions over falling threshold levels.
//
// Each level gives a list of regions: the outer contours of the pixels that are darker. A region of the tree
// that holds one of them has shrunk. A region that holds several has split, and the parts enter the tree,
// below it or in its place.
//
// Each level is made from the level before it. Scanning and tracing every level afresh would cost a pass over
// the image per level. Instead, a flood of the inverted image finds the levels at which each connected
// component appears and changes. The outer contour of a component stays the same until one of its own pixels
// drops out. So a region stays until that level, and only new and broken contours are traced.
//
// An index by place finds the smallest region around a point, and the regions that start inside another one.
// A region of a level keeps its parent in the tree until the parent is replaced or a nearer one enters the
// tree, so most regions search once. The tree and the lists of arrivals rise by area, and among equal areas
// the later region comes first. Serial numbers keep this order for the index. A parent never comes before its
// child.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <new>
#include <numeric>
#include <utility>

#include "contours/chain.h"
#include "contours/trace.h"
#include "core/arithmetic.h"
#include "core/borders.h"
#include "core/buffer.h"
#include "core/byte_counter.h"
#include "core/point_pass.h"
#include "core/views.h"
#include "nuv/arithmetic.h"
#include "nuv/contours.h"
#include "nuv/histogram.h"
#include "nuv/segmentation.h"
#include "segmentation/level_components.h"
#include "segmentation/region_index.h"

namespace nuv {
namespace {

constexpr int32_t kNone = -1;

// ---- regions and their lists ----

void destroy(Node* node) {
  delete[] node->pChainCode;
  delete node;
}

int32_t id_of(const Node* node) {
  return node != nullptr ? node->ID : kNone;
}

// The bounding box of a chain; the whole image if the chain does not close.
Region box_of_chain(GrayImage image, const Chain& chain) {
  Region box = Region::of(chain.start);
  Point end = chain.start;
  walk_ends(chain, chain.n, [&](Point p) {
    box.take_in(p);
    end = p;
  });
  return end.x == chain.start.x && end.y == chain.start.y ? box : image.whole();
}

// Creates a record with its own copy of the chain, not numbered yet. Null if allocation fails.
Node* new_node(const Chain& chain, Region box, int32_t area, int32_t perimeter) {
  Buffer<uint8_t> codes = allocate<uint8_t>(chain.n);
  auto* node = codes ? new (std::nothrow) Node{} : nullptr;
  if (node == nullptr) return nullptr;
  std::copy_n(chain.codes, chain.n, codes.get());
  node->x0 = chain.start.x;
  node->y0 = chain.start.y;
  node->N = chain.n;
  node->pChainCode = codes.release();
  node->area = area;
  node->perimeter = perimeter;
  node->sameLevelParentID = kNone;
  node->parentID = kNone;
  node->curArea = area;
  node->box = box;
  return node;
}

class RegionList {
 public:
  RegionList() = default;
  RegionList(const RegionList&) = delete;
  RegionList& operator=(const RegionList&) = delete;
  ~RegionList() { clear(); }

  bool empty() const { return head_ == nullptr; }
  Node* head() const { return static_cast<Node*>(head_); }
  // The link to the first region.
  RegionStruct** begin() { return &head_; }
  RegionStruct* release() { return std::exchange(head_, nullptr); }
  void swap(RegionList& other) { std::swap(head_, other.head_); }
  void clear() {
    while (head_ != nullptr) destroy(take_first());
  }

  // Takes out the region that a link points to. The link then points to the next one.
  static Node* unlink(RegionStruct** link) {
    auto* node = static_cast<Node*>(*link);
    *link = node->next;
    node->next = nullptr;
    return node;
  }
  Node* take_first() { return unlink(&head_); }
  void push_front(Node* node) {
    node->next = head_;
    head_ = node;
  }

  // Sorts by rising area. Ties keep their order.
  void sort() {
    std::array<RegionStruct*, 64> runs{};  // of 1, 2, 4, ... regions; larger ones come from nearer the head
    while (head_ != nullptr) {
      RegionStruct* run = take_first();
      std::size_t i = 0;
      for (; runs[i] != nullptr; ++i) run = merged(std::exchange(runs[i], nullptr), run);
      runs[i] = run;
    }
    for (RegionStruct* run : runs) head_ = merged(run, head_);
  }

 private:
  // Merges two sorted lists. Ties go to a.
  static RegionStruct* merged(RegionStruct* a, RegionStruct* b) {
    RegionStruct* head = nullptr;
    RegionStruct** link = &head;
    while (a != nullptr && b != nullptr) {
      RegionStruct*& smaller = b->area < a->area ? b : a;
      *link = smaller;
      link = &smaller->next;
      smaller = smaller->next;
    }
    *link = a != nullptr ? a : b;
    return head;
  }

  RegionStruct* head_ = nullptr;
};

// A list whose regions are also found by place.
struct IndexedList {
  RegionList list;
  RegionPyramid by_box;
  RegionStarts by_start;

  IndexedList(int32_t width, int32_t height) : by_box(width, height), by_start(width, height) {}
  void file(Node& node) {
    by_box.insert(node);
    by_start.insert(node);
  }
  void unfile(const Node& node) {
    by_box.remove(node);
    by_start.remove(node);
  }
};

using Tree = IndexedList;

// The regions of one level, in the order of the scan. Their parents are regions of the tree.
struct Level : IndexedList {
  int32_t longest = 0;  // number of codes of the longest chain

  using IndexedList::IndexedList;
};

// The limits for regions, and the next numbers to assign.
struct Census {
  int32_t min_codes;  // a chain must have more codes than this
  int32_t min_area;
  int32_t next_id = 0;
  int64_t next_serial = 0;
};

// ---- a level ----

// The components of an image above each level of a range.
class Components {
 public:
  // Values above the last level count as one value. The work image has the size of the image and becomes 0.
  Components(GrayImage image, uint8_t* work, int32_t first_level, int32_t last_level, int32_t least_pixels) {
    ByteTable values;
    for (int32_t v = 0; v < kBins; ++v) {
      values[static_cast<std::size_t>(v)] = v <= first_level ? 0 : low_byte(std::min(v, last_level + 1));
    }
    std::memcpy(work, image.pixels, static_cast<std::size_t>(image.size()));
    map_bytes(values, work, image.size());
    const GrayImage mapped{work, image.width, image.height};
    LevelFlood flood(mapped, histogram_of(mapped));
    complete_ = flood.allocated();
    if (!complete_) return;
    flood.run([&](LevelComponent c) {
      c.from = std::max(c.from, first_level);
      if (c.pixels >= least_pixels) append(c);
    });
  }
  // False if an allocation failed.
  bool complete() const { return complete_; }

  const LevelComponent* begin() const { return items_.get(); }
  const LevelComponent* end() const { return items_.get() + count_; }

 private:
  void append(const LevelComponent& c) {
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

  Buffer<LevelComponent> items_;
  std::size_t count_ = 0;
  std::size_t capacity_ = 0;
  bool complete_ = true;
};

// Components of at least some size, grouped by one of their levels.
class ComponentGroups {
 public:
  ComponentGroups(const Components& all, int32_t LevelComponent::*level, int32_t least_pixels) {
    for (const LevelComponent& c : all)
      begins_[static_cast<std::size_t>(c.*level)] += c.pixels >= least_pixels;
    std::partial_sum(begins_.begin(), begins_.end(), begins_.begin());
    items_ = allocate<LevelComponent>(begins_.back());
    if (!items_) return;
    // Each group is filled from its end, which moves to its begin.
    for (const LevelComponent& c : all) {
      if (c.pixels >= least_pixels) items_[--begins_[static_cast<std::size_t>(c.*level)]] = c;
    }
  }
  bool allocated() const { return items_ != nullptr; }
  LevelComponent* begin_of(int32_t level) { return items_.get() + begins_[static_cast<std::size_t>(level)]; }
  LevelComponent* end_of(int32_t level) { return begin_of(level + 1); }

 private:
  std::array<std::size_t, kBins + 2> begins_{};
  Buffer<LevelComponent> items_;
};

// Produces the buffer of codes as if the outer contours of all levels had been written to its start, each
// over the one before. Callers see what is left of them there. The contours come in reverse order, and each
// writes only the bytes that no later one has written.
class Overwritten {
 public:
  Overwritten(uint8_t* codes, int32_t from) : codes_(codes), reached_(from) {}
  // Writes the part of a chain that later chains do not cover.
  void write_before(const uint8_t* chain, int32_t n) {
    if (n <= reached_) return;
    std::memcpy(codes_ + reached_, chain + reached_, static_cast<std::size_t>(n - reached_));
    reached_ = n;
  }
  int32_t reached() const { return reached_; }

 private:
  uint8_t* codes_;
  int32_t reached_;
};

// Traces outer contours of the pixels above a level, without marks in the image.
class Tracer {
 public:
  Tracer(GrayImage inverted, Census& census)
      : image_(inverted), census_(census), codes_(allocate<uint8_t>(inverted.size())) {}
  bool allocated() const { return codes_ != nullptr; }
  const uint8_t* codes() const { return codes_.get(); }

  // Returns the number of codes, and sets least to the lowest value on the contour.
  int32_t trace(int32_t first, int32_t level, int32_t& least) {
    ChainSink chain(codes_.get(), static_cast<int32_t>(image_.size()));
    uint8_t lowest = 255;
    follow_contour<const uint8_t>(
        image_.pixels + first, image_.width, true, [level](uint8_t pixel) { return pixel > level; },
        [&lowest](uint8_t pixel) { lowest = std::min(lowest, pixel); },
        [&chain](uint8_t code) { chain(code); });
    least = lowest;
    return chain.count();
  }

  // The region of a component. Null if it is too small or if allocation fails.
  Node* region_of(const LevelComponent& component, int32_t level) {
    const int32_t first = component.first;
    int32_t least = 0;
    const int32_t n = trace(first, level, least);
    if (n <= census_.min_codes) return nullptr;
    int32_t area = 0;
    int32_t perimeter = 0;
    NuvAreaAndPerimeter(codes_.get(), n, &area, &perimeter);
    if (area < census_.min_area) return nullptr;
    const Chain chain{{first % image_.width, first / image_.width}, codes_.get(), n};
    Node* node = new_node(chain, box_of_chain(image_, chain), area, perimeter);
    if (node == nullptr) return nullptr;
    node->surround(component);
    node->serial = first;
    node->unbroken_to = least;
    return node;
  }

 private:
  GrayImage image_;
  Census& census_;
  Buffer<uint8_t> codes_;
};

// Makes a level from the one before it and from its new components, which come in the order of the scan.
// Regions whose contour is broken move to the front of the list gone, so the last one comes first.
void advance(Level& level, int32_t t, const LevelComponent* born, const LevelComponent* born_end,
             Tracer& tracer, Census& census, RegionList& gone) {
  for (RegionStruct** link = level.list.begin(); born != born_end || *link != nullptr;) {
    auto* region = static_cast<Node*>(*link);
    if (region != nullptr && (born == born_end || region->serial <= born->first)) {
      if (region->unbroken_to > t) {
        // What is left of a component may still have the same contour.
        if (born != born_end && region->serial == born->first) region->surround(*born++);
        link = &region->next;
      } else {
        level.unfile(*region);
        gone.push_front(RegionList::unlink(link));
      }
      continue;
    }
    Node* node = tracer.region_of(*born, t);
    ++born;
    if (node == nullptr) continue;
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

// The smallest region of the level around another one.
Node* container_of(Level& level, const Node& node) {
  return level.by_box.first_around(node.x0, node.y0, node.area,
                                   [&](Node& r) { return &r != &node && r.holds_start_of(node); });
}

// Creates a copy of a region of the level for the tree. Null if allocation fails.
Node* copy_for_tree(Level& level, const Node& r) {
  Node* node = new_node({{r.x0, r.y0}, r.pChainCode, r.N}, r.box, r.area, r.perimeter);
  if (node == nullptr) return nullptr;
  node->gry = r.gry;
  node->ID = r.ID;
  node->serial = r.serial;
  node->component = r.component;
  node->has_holes = r.has_holes;
  node->parent = r.parent;
  node->container = container_of(level, r);
  node->sameLevelParentID = id_of(node->container);
  return node;
}

// ---- a level into the tree ----

// Inserts a region into the tree. Regions come by rising area. The link points to the place of the last one,
// or before it, and moves to the place of this one.
void NuvInsertRegionInTree(Tree& tree, RegionStruct**& link, Node* node, Census& census) {
  node->parent = tree.by_box.first_around(node->x0, node->y0, node->area,
                                          [=](Node& r) { return r.holds_start_of(*node); });
  // Smaller regions inside it become its children, unless they have a nearer parent.
  tree.by_start.for_each_in(node->box, [=](Node& r) {
    if (r.area >= node->area || !node->holds_start_of(r)) return;
    const bool parent_is_nearer =
        r.parent != nullptr && node->area > r.parent->area && node->holds_start_of(*r.parent);
    if (!parent_is_nearer) r.parent = node;
  });
  node->serial = census.next_serial++;
  tree.file(*node);
  while (*link != nullptr && (*link)->area < node->area) link = &(*link)->next;
  node->next = *link;
  *link = node;
}

// Finds the parent of each region of a level in the tree, and counts the children of each parent.
void link_to_tree(Tree& tree, const Level& level) {
  for (Node* p = tree.list.head(); p != nullptr; p = p->next_node()) {
    p->children = p->children_area = 0;
    p->rest_rows();
  }
  for (Node* c = level.list.head(); c != nullptr; c = c->next_node()) {
    if (!c->knows_parent) {
      c->parent = tree.by_box.first_around(
          c->x0, c->y0, c->area, [=](Node& p) { return p.starts_with(*c) || p.holds_start_of(*c); });
      c->knows_parent = true;
    }
    if (c->parent == nullptr) continue;
    ++c->parent->children;
    c->parent->children_area += c->area;
  }
}

// Makes a region that has entered the tree the parent of the regions of the level to which it is nearer than
// their parent so far.
void offer_parent(Level& level, Node& parent) {
  level.by_start.for_each_in(parent.box, [&](Node& c) {
    if (!c.knows_parent || parent.area < c.area) return;
    if (c.parent != nullptr && !parent.precedes(*c.parent)) return;
    if (parent.starts_with(c) || parent.holds_start_of(c)) c.parent = &parent;
  });
}

// Copies the regions of a level that may enter the tree, and sorts them: those without a parent, and those
// that are not the only child of their parent.
void copy_candidates(Level& level, RegionList& candidates) {
  for (Node* c = level.list.head(); c != nullptr; c = c->next_node()) {
    if (c->parent != nullptr && c->parent->children < 2) continue;
    Node* node = copy_for_tree(level, *c);
    if (node != nullptr) candidates.push_front(node);
  }
  candidates.sort();
}

// Moves the regions that pass a test to the front of another list, so the last one comes first.
template <class Test>
void move_if(RegionList& from, RegionList& to, Test test) {
  for (RegionStruct** link = from.begin(); *link != nullptr;) {
    if (test(*static_cast<Node*>(*link))) {
      to.push_front(RegionList::unlink(link));
    } else {
      link = &(*link)->next;
    }
  }
}

// A region in a hole of another one does not come from a split if both lie in the same region of the tree. A
// container with the ID 0 does not count.
bool is_island(const Node& c) {
  return c.parent != nullptr && c.sameLevelParentID > 0 && c.container->parent == c.parent;
}

// Moves the regions of a level that come from splits to the parts of their parents, in list order.
void hand_out_parts(RegionList& candidates) {
  RegionList parts;
  move_if(candidates, parts, [](const Node& c) { return c.parent->children >= 2; });
  while (!parts.empty()) {
    Node* c = parts.take_first();
    c->next = c->parent->parts;
    c->parent->parts = c;
  }
}

// Takes the new regions of a level into the tree.
void NuvMergeRegionLevel(Tree& tree, Level& level, double ratio, Census& census) {
  link_to_tree(tree, level);
  RegionList candidates;
  copy_candidates(level, candidates);
  RegionList arrivals;
  move_if(candidates, arrivals, [](const Node& c) { return c.parent == nullptr; });
  move_if(candidates, arrivals, [](const Node& c) {
    if (!is_island(c)) return false;
    --c.parent->children;
    c.parent->children_area -= c.area;
    return true;
  });
  hand_out_parts(candidates);

  RegionList replaced;
  for (RegionStruct** link = tree.list.begin(); *link != nullptr;) {
    auto* p = static_cast<Node*>(*link);
    if (p->children == 1) p->curArea = p->children_area;
    while (p->parts != nullptr) arrivals.push_front(RegionList::unlink(&p->parts));
    p->is_replaced = p->children >= 2 && static_cast<double>(p->children_area) / p->curArea > ratio;
    if (p->is_replaced) {
      tree.unfile(*p);
      replaced.push_front(RegionList::unlink(link));
    } else {
      link = &p->next;
    }
  }
  if (!replaced.empty()) {
    for (Node* r = tree.list.head(); r != nullptr; r = r->next_node()) {
      while (r->parent != nullptr && r->parent->is_replaced) r->parent = r->parent->parent;
    }
    for (Node* c = level.list.head(); c != nullptr; c = c->next_node()) {
      if (c->parent != nullptr && c->parent->is_replaced) c->knows_parent = false;
    }
  }
  arrivals.sort();
  RegionStruct** link = tree.list.begin();
  while (!arrivals.empty()) {
    Node* node = arrivals.take_first();
    NuvInsertRegionInTree(tree, link, node, census);
    offer_parent(level, *node);
  }
}

// Makes the tree from the first level that has regions.
void grow_first(Tree& tree, Level& level) {
  for (Node* r = level.list.head(); r != nullptr; r = r->next_node()) {
    r->parent = copy_for_tree(level, *r);
    r->knows_parent = true;
    if (r->parent != nullptr) tree.list.push_front(r->parent);
  }
  tree.list.sort();
  for (Node* node = tree.list.head(); node != nullptr; node = node->next_node()) {
    node->parent = node->container == nullptr ? nullptr : node->container->parent;
    tree.file(*node);
  }
}

// ---- the descent ----

constexpr int32_t kNoLevel = 256;

// The first value of the inverted image with more than min_pixels pixels of its value or below. Pixels of 0,
// which are white in the source, do not count.
int32_t start_level(const Histogram& bins, int32_t min_pixels) {
  int32_t sum = 0;
  for (int32_t value = 1; value < kBins; ++value) {
    sum += bins[value];
    if (sum > min_pixels) return value;
  }
  return kNoLevel;
}

// Writes what callers find in their work space if no level runs.
void mark_second_lines(GrayImage image, uint8_t value) {
  for (int32_t x = 0; x < image.width; ++x) {
    for (int32_t y : {1, image.height - 2}) {
      if (image.contains(x, y)) *image.at(x, y) = value;
    }
  }
  for (int32_t y = 0; y < image.height; ++y) {
    for (int32_t x : {1, image.width - 2}) {
      if (image.contains(x, y)) *image.at(x, y) = value;
    }
  }
}

// A component of fewer pixels has no region that is large enough. A chain of n codes around f pixels encloses
// a polygon of the area f - n/2 - 1, and n is at most 2 (f - 1). Half the perimeter is at most n / sqrt(2).
// So the measured area is below 1.5 f. A ring of p pixels is at most p/2 + 1 high and wide, so f is at most
// the square of that.
int32_t least_pixels(const Census& census) {
  if (census.min_codes < 0) return 1;
  const double side = std::sqrt(std::max(census.min_area - 2, 0) / 1.5);
  return std::max(truncated(2 * (side - 1)), 2);
}

// The greatest number of codes of a chain that may be too small for a region. An area is at least half the
// number of codes, so a longer chain always belongs to a region.
int32_t most_codes_left_out(const Census& census, GrayImage image) {
  const int64_t most = 2 * static_cast<int64_t>(std::max(census.min_area, 0)) + 2;
  return static_cast<int32_t>(std::min<int64_t>(most, image.size()));
}

// Writes the start of the buffer of codes, which the chains of all components reach. Only the last level of a
// component counts.
void write_begin(ComponentGroups& dying, Tracer& tracer, int32_t first_level, int32_t last_level, int32_t end,
                 uint8_t* codes) {
  Overwritten buffer(codes, 0);
  for (int32_t t = last_level; t >= first_level && buffer.reached() < end; --t) {
    LevelComponent* const begin = dying.begin_of(t + 1);
    // The chain of a component of p pixels has fewer than p (p/2 + 2) codes.
    LevelComponent* const long_end = std::partition(begin, dying.end_of(t + 1), [&](const LevelComponent& c) {
      return static_cast<int64_t>(c.pixels) * (c.pixels / 2 + 4) > buffer.reached();
    });
    std::sort(begin, long_end,
              [](const LevelComponent& a, const LevelComponent& b) { return a.first > b.first; });
    for (const LevelComponent* c = begin; c != long_end && buffer.reached() < end; ++c) {
      int32_t least = 0;
      const int32_t n = tracer.trace(c->first, t, least);
      buffer.write_before(tracer.codes(), std::min(n, end));
    }
  }
}

// Sets the marks that the traces of the last level leave.
void mark_contours(GrayImage binary) {
  for (int32_t y = 1; y < binary.height; ++y) {
    scan_row_for_contours(binary, y, 1, binary.width - 1, [=](ContourStart start) {
      NuvMarkContour(binary.pixels, binary.width, start.x, start.y, start.is_outer);
    });
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

RegionStruct* NuvMergeSplit(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                            int32_t minArea, int32_t minGry, double ratio) {
  const GrayImage inverted{pGryImg, width, height};
  const GrayImage binary{pTmpImg, width, height};
  if (inverted.empty()) return nullptr;
  NuvInvertGryValue(pGryImg, width, height);
  Census census{truncated(std::sqrt(static_cast<double>(minArea))), minArea};
  const int32_t start = start_level(histogram_of(inverted), census.min_codes);
  clear_sides(inverted);
  if (start == kNoLevel) return nullptr;
  mark_second_lines(binary, static_cast<uint8_t>(start));
  // No pixel is above level 255.
  const auto last = static_cast<int32_t>(std::min<int64_t>(255 - static_cast<int64_t>(minGry), 255));
  if (start > last) return nullptr;

  Tracer tracer(inverted, census);
  const Components components(inverted, pTmpImg, start, last, std::min(least_pixels(census), 2));
  ComponentGroups born(components, &LevelComponent::from, least_pixels(census));
  ComponentGroups dying(components, &LevelComponent::up_to, 2);
  if (!tracer.allocated() || !components.complete() || !born.allocated() || !dying.allocated())
    return nullptr;

  uint8_t* const codes = pTmpImg + inverted.size();
  const int32_t left_out = most_codes_left_out(census, inverted);
  census.next_serial = inverted.size();  // the serial numbers in levels are pixel indices
  Tree tree(width, height);
  Level level(width, height);
  for (int32_t t = start; t <= last; ++t) {
    RegionList gone;
    std::sort(born.begin_of(t), born.end_of(t),
              [](const LevelComponent& a, const LevelComponent& b) { return a.first < b.first; });
    advance(level, t, born.begin_of(t), born.end_of(t), tracer, census, gone);
    // Writes the ends of chains that no chain of this level reaches.
    Overwritten buffer(codes, std::max(level.longest, left_out));
    for (const Node* r = gone.head(); r != nullptr; r = r->next_node())
      buffer.write_before(r->pChainCode, r->N);
    if (tree.list.empty()) {
      grow_first(tree, level);
    } else {
      NuvMergeRegionLevel(tree, level, ratio, census);
    }
  }
  Overwritten buffer(codes, left_out);
  RegionList remaining;
  while (!level.list.empty()) remaining.push_front(level.list.take_first());
  for (const Node* r = remaining.head(); r != nullptr; r = r->next_node())
    buffer.write_before(r->pChainCode, r->N);
  write_begin(dying, tracer, start, last, left_out, codes);
  NuvThreshold(pGryImg, width, height, last + 1, pTmpImg);
  mark_contours(binary);

  for (Node* r = tree.list.head(); r != nullptr; r = r->next_node()) {
    r->parentID = id_of(r->parent);
    r->forget_rows();
  }
  return tree.list.release();
}

void NuvFreeRegionStruct(RegionStruct* pRegion) {
  while (pRegion != nullptr) {
    auto* node = static_cast<Node*>(pRegion);
    pRegion = node->next;
    destroy(node);
  }
}

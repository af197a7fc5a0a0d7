// Merge-split segmentation: the tree of dark regions over falling gray levels.
//
// Each level gives a list of regions, the outer contours of what is darker. A region of the tree that has one
// of them inside has shrunk; one that has several has split, and the parts enter the tree, beside it or in
// its place.
//
// Which region is the smallest around a point, and which regions start inside another one, is asked of an
// index by place. Lists are in rising order of area, of equal areas the later one first: they are sorted once
// and merged, and the serial numbers of entries keep the order for the index. A parent never stands before
// its child.
//
// A level whose gray value no pixel has is a copy of the one before and is not traced again.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>

#include "contours/chain.h"
#include "contours/trace.h"
#include "frame/arithmetic.h"
#include "frame/borders.h"
#include "frame/buffer.h"
#include "frame/byte_counter.h"
#include "frame/row_kernel.h"
#include "frame/views.h"
#include "nuv/contours.h"
#include "nuv/histogram.h"
#include "nuv/transforms.h"
#include "transforms/region_index.h"

namespace nuv {
namespace {

constexpr int32_t kNone = -1;

// Whether a contour starts in a stretch of a row that has a pixel before it. Marks never add starts.
NUV_ROW_KERNEL bool has_starts(const uint8_t* row, std::ptrdiff_t n) {
  uint8_t found = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const bool starts = starts_outer(row[i], row[i - 1]) || starts_inner(row[i], row[i - 1]);
    found = static_cast<uint8_t>(found | static_cast<uint8_t>(starts));
  }
  return found != 0;
}

// ---- regions and their lists ----

void destroy(Node* node) {
  delete[] node->pChainCode;
  delete node;
}

int32_t id_of(const Node* node) {
  return node != nullptr ? node->ID : kNone;
}

// The image if the chain does not close.
Region box_of_chain(GrayImage image, const Chain& chain) {
  Region box = Region::of(chain.start);
  Point end = chain.start;
  walk_ends(chain, chain.n, [&](Point p) {
    box.take_in(p);
    end = p;
  });
  return end.x == chain.start.x && end.y == chain.start.y ? box : image.whole();
}

// A record with its own copy of the chain, not numbered yet. Null if there is no memory.
Node* new_node(const Chain& chain, Region box, int32_t area, int32_t perimeter) {
  Buffer<uint8_t> codes = allocate<uint8_t>(static_cast<std::size_t>(chain.n));
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
  // The link that leads to the first region.
  RegionStruct** begin() { return &head_; }
  RegionStruct* release() { return std::exchange(head_, nullptr); }
  void swap(RegionList& other) { std::swap(head_, other.head_); }
  void clear() {
    while (head_ != nullptr) destroy(take_first());
  }

  // Takes out the region that a link leads to; the link then leads to the one behind it.
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

  // By rising area; equal ones keep their order.
  void sort() {
    std::array<RegionStruct*, 64> runs{};  // of 1, 2, 4, ... regions, the larger ones from farther ahead
    while (head_ != nullptr) {
      RegionStruct* run = take_first();
      std::size_t i = 0;
      for (; runs[i] != nullptr; ++i) run = merged(std::exchange(runs[i], nullptr), run);
      runs[i] = run;
    }
    for (RegionStruct* run : runs) head_ = merged(run, head_);
  }

 private:
  // Of equal regions those of a come first.
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

// The regions of one level: those that come later in front, until the list is sorted.
struct Level {
  RegionList list;
  RegionPyramid by_box;

  Level(int32_t width, int32_t height) : by_box(width, height) {}
  void clear() {
    list.clear();
    by_box.clear();
  }
};

struct Tree {
  RegionList list;
  RegionPyramid by_box;
  RegionStarts by_start;

  Tree(int32_t width, int32_t height) : by_box(width, height), by_start(width, height) {}
  void file(Node& node) {
    by_box.insert(node);
    by_start.insert(node);
  }
  void unfile(const Node& node) {
    by_box.remove(node);
    by_start.remove(node);
  }
};

// What is asked of a region, and the numbers given so far.
struct Census {
  int32_t min_codes;  // chains must be longer
  int32_t min_area;
  int32_t next_id = 0;
  int64_t next_serial = 0;
};

// ---- a level ----

void NuvInsertRegionInLevel(Level& level, Node* node, Census& census) {
  node->container = level.by_box.first_around(node->x0, node->y0, node->area, [=](Node& r) {
    return r.starts_with(*node) || r.holds_start_of(*node);
  });
  node->sameLevelParentID = id_of(node->container);
  node->serial = census.next_serial++;
  level.by_box.insert(*node);
  level.list.push_front(node);
}

void admit(Level& level, Node* node, int32_t gray, Census& census) {
  node->gry = gray;
  node->ID = census.next_id++;
  NuvInsertRegionInLevel(level, node, census);
}

// The regions of a binary image, which gets the marks of the traces.
void collect_level(GrayImage binary, uint8_t* codes, int32_t gray, Census& census, Level& level) {
  const auto trace = [&](ContourStart start) {
    if (!start.is_outer) {
      // For its marks.
      NuvMarkContour(binary.pixels, binary.width, start.x, start.y, false);
      return;
    }
    const int32_t n = NuvTraceContour(binary.pixels, binary.width, start.x, start.y, codes,
                                      binary.width * binary.height, true);
    if (n <= census.min_codes) return;
    int32_t area = 0;
    int32_t perimeter = 0;
    NuvAreaAndPerimeter(codes, n, &area, &perimeter);
    if (area < census.min_area) return;
    const Chain chain{{start.x, start.y}, codes, n};
    Node* node = new_node(chain, box_of_chain(binary, chain), area, perimeter);
    if (node != nullptr) admit(level, node, gray, census);
  };
  constexpr int32_t kStretch = 128;
  for (int32_t y = 1; y < binary.height; ++y) {
    for (int32_t x = 1, n = 0; x < binary.width; x += n) {
      n = std::min(kStretch, binary.width - x);
      if (has_starts(binary.at(x, y), n)) scan_row_for_contours(binary, y, x, x + n - 1, trace);
    }
  }
}

// Copies the regions of an unsorted level for the next one, the first in front. Whether there is memory for
// all.
bool copy_level(const Level& level, RegionList& copies) {
  for (const Node* r = level.list.head(); r != nullptr; r = r->next_node()) {
    Node* node = new_node({{r->x0, r->y0}, r->pChainCode, r->N}, r->box, r->area, r->perimeter);
    if (node == nullptr) {
      copies.clear();
      return false;
    }
    copies.push_front(node);
  }
  return true;
}

// ---- levels against the tree ----

// Places a region not smaller than the ones before it; the link leads to where the last one went, or ahead of
// it.
void NuvInsertRegionInTree(Tree& tree, RegionStruct**& link, Node* node, Census& census) {
  node->parent = tree.by_box.first_around(node->x0, node->y0, node->area,
                                          [=](Node& r) { return r.holds_start_of(*node); });
  // Smaller regions inside it become its children, unless their parent is nearer to them.
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

// Gives each region of a level its parent in the tree, and parents their number of children.
void link_to_tree(Tree& tree, const RegionList& level) {
  for (Node* p = tree.list.head(); p != nullptr; p = p->next_node()) {
    p->children = p->children_area = 0;
    p->forget_rows();  // which are large, and wanted where the level has much inside
  }
  for (Node* c = level.head(); c != nullptr; c = c->next_node()) {
    Node* parent = tree.by_box.first_around(
        c->x0, c->y0, c->area, [=](Node& p) { return p.starts_with(*c) || p.holds_start_of(*c); });
    c->parent = parent;
    if (parent == nullptr) continue;
    ++parent->children;
    parent->children_area += c->area;
  }
}

// Sorts out, last in front, what a test takes.
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

// A region in a hole of another, both in one region of the tree, does not come from a split. The container
// numbered 0 does not count as one.
bool is_island(const Node& c) {
  return c.parent != nullptr && c.sameLevelParentID > 0 && c.container->parent == c.parent;
}

// Hands the regions of a level that come from splits to the regions that split, in list order.
void hand_out_parts(RegionList& level) {
  RegionList parts;
  move_if(level, parts, [](const Node& c) { return c.parent->children >= 2; });
  while (!parts.empty()) {
    Node* c = parts.take_first();
    c->next = c->parent->parts;
    c->parent->parts = c;
  }
}

// Takes what is new in a level into the tree; what is left of the level has only shrunk.
void NuvMergeRegionLevel(Tree& tree, RegionList& level, double ratio, Census& census) {
  link_to_tree(tree, level);
  RegionList arrivals;
  move_if(level, arrivals, [](const Node& c) { return c.parent == nullptr; });
  move_if(level, arrivals, [](const Node& c) {
    if (!is_island(c)) return false;
    --c.parent->children;
    c.parent->children_area -= c.area;
    return true;
  });
  hand_out_parts(level);

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
  }
  arrivals.sort();
  RegionStruct** link = tree.list.begin();
  while (!arrivals.empty()) NuvInsertRegionInTree(tree, link, arrivals.take_first(), census);
}

// The first level that has regions is the tree.
void grow_first(Tree& tree, Level& level) {
  tree.list.swap(level.list);
  for (Node* r = tree.list.head(); r != nullptr; r = r->next_node()) {
    r->parent = r->container;
    tree.file(*r);
  }
}

// ---- the descent ----

constexpr int32_t kNoLevel = 256;

// The first level with enough pixels of its value and below it. White pixels, which are 0 here, never count.
int32_t start_level(const int32_t* bins, int32_t min_pixels) {
  int32_t sum = 0;
  for (int32_t value = 1; value < kBins; ++value) {
    sum += bins[value];
    if (sum > min_pixels) return value;
  }
  return kNoLevel;
}

// What hosts see in their work space if no level runs.
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

}  // namespace
}  // namespace nuv

using namespace nuv;

RegionStruct* NuvMergeSplit(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                            int32_t minArea, int32_t minGry, double ratio) {
  const GrayImage inverted{pGryImg, width, height};
  const GrayImage binary{pTmpImg, width, height};
  if (inverted.empty()) return nullptr;
  NuvInvertGryValue(pGryImg, width, height);
  Histogram bins;
  NuvGetHistogram(pGryImg, width, height, bins.data());
  Census census{truncated(std::sqrt(static_cast<double>(minArea))), minArea};
  const int32_t start = start_level(bins.data(), census.min_codes);
  clear_sides(inverted);
  if (start == kNoLevel) return nullptr;
  mark_second_lines(binary, static_cast<uint8_t>(start));

  Histogram inner_bins;
  NuvGetHistogram(pGryImg, width, height, inner_bins.data());
  Tree tree(width, height);
  Level level(width, height);
  RegionList copies;  // of the level before, if the next one equals it
  bool has_copies = false;
  // Nothing is above level 255.
  const auto last = static_cast<int32_t>(std::min<int64_t>(255 - static_cast<int64_t>(minGry), 255));
  for (int32_t t = start; t <= last; ++t) {
    level.clear();
    if (has_copies) {
      while (!copies.empty()) admit(level, copies.take_first(), 255 - t, census);
    } else {
      NuvThreshold(pGryImg, width, height, t + 1, pTmpImg);
      collect_level(binary, pTmpImg + inverted.size(), 255 - t, census, level);
    }
    has_copies = t < last && inner_bins[static_cast<std::size_t>(t) + 1] == 0 && copy_level(level, copies);
    level.list.sort();
    if (tree.list.empty()) {
      grow_first(tree, level);
    } else {
      NuvMergeRegionLevel(tree, level.list, ratio, census);
    }
  }
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

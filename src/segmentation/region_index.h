// Regions of an image, found by place.
//
// A pyramid of grids files each region by the box of its chain. A region is filed on the lowest floor whose
// cells are at least as large as the box, so it lies in four cells at most. A search for a point reads one
// cell per floor. Cells keep the order of the lists of regions, smallest first. A second grid files regions
// by their starts. The links are members of the regions. If the allocation of the cells fails, one cell holds
// all regions.

#ifndef NUV_SEGMENTATION_REGION_INDEX_H
#define NUV_SEGMENTATION_REGION_INDEX_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "contours/chain.h"
#include "contours/crossings.h"
#include "core/buffer.h"
#include "core/views.h"
#include "nuv/contours.h"
#include "nuv/records.h"
#include "segmentation/level_components.h"

namespace nuv {

// The crossings of a chain that NuvIsPointIncludedByChain() adds up, sorted by row and column. They pay off
// if many points are tested.
class ChainRows {
 public:
  explicit operator bool() const { return crossings_ != nullptr; }
  void reset() {
    ends_.reset();
    crossings_.reset();
  }

  // Sorts the crossings of a chain within the rows of a box. The rows stay empty if allocation fails.
  void build(const Chain& chain, Region box) {
    first_ = box.y1;
    rows_ = box.rows();
    const auto rows = static_cast<std::size_t>(rows_);
    ends_ = allocate<std::size_t>(rows + 1);
    if (!ends_) return;
    std::fill_n(ends_.get(), rows + 1, std::size_t{0});
    for_each_crossing(chain, [this](int32_t y, Crossing) { ++ends_[row(y) + 1]; });
    for (std::size_t i = 0; i < rows; ++i) ends_[i + 1] += ends_[i];
    crossings_ = allocate<Crossing>(ends_[rows]);
    if (!crossings_) return;
    // ends_[i] is the begin of row i here. Filling the row moves it to the end of the row.
    for_each_crossing(chain, [this](int32_t y, Crossing c) { crossings_[ends_[row(y)]++] = c; });
    for (std::size_t i = 0; i < rows; ++i) {
      Crossing* begin = crossings_.get() + (i == 0 ? 0 : ends_[i - 1]);
      Crossing* end = crossings_.get() + ends_[i];
      std::sort(begin, end, [](Crossing a, Crossing b) { return a.x > b.x; });
      int32_t sum = 0;
      for (Crossing* c = begin; c != end; ++c) c->sum = sum += c->sum;
    }
  }

  bool holds(int32_t x, int32_t y) const {
    if (y < first_ || y - first_ >= rows_) return false;
    const std::size_t i = row(y);
    const Crossing* begin = crossings_.get() + (i == 0 ? 0 : ends_[i - 1]);
    const Crossing* end = crossings_.get() + ends_[i];
    const Crossing* behind = std::partition_point(begin, end, [=](Crossing c) { return c.x >= x; });
    return behind != begin && behind[-1].sum != 0;
  }

 private:
  // A crossing counts for the points at its left and for the point at its column.
  struct Crossing {
    int32_t x;
    int32_t sum;  // after sorting: together with the crossings at its right
  };

  std::size_t row(int32_t y) const { return static_cast<std::size_t>(y - first_); }

  // A position adds kCrossing for the points of its row up to itself, and kOnPoint for the point itself. The
  // second is a crossing at the point minus one at its left neighbour.
  template <class Visit>
  static void for_each_crossing(const Chain& chain, Visit visit) {
    Point p = chain.start;
    for (int32_t i = 0; i < chain.n; ++i) {
      const int before = chain.previous(i);
      const int code = direction_of(chain.codes[i]);
      const int passing = kCrossing[before / 4][code];
      const int at_point = kOnPoint[before][code];
      if (passing + at_point != 0) visit(p.y, Crossing{p.x, passing + at_point});
      if (at_point != 0) visit(p.y, Crossing{p.x - 1, -at_point});
      p = stepped(p, chain.codes[i]);
    }
  }

  Buffer<std::size_t> ends_;
  Buffer<Crossing> crossings_;
  int32_t first_ = 0;
  int32_t rows_ = 0;
};

// A record, and the working data of the segmentation.
struct Node : RegionStruct {
  Region box;                  // of the chain; the image if the chain does not close
  LevelComponent component{};  // the component that the chain surrounds
  bool has_holes = true;
  int64_t serial = 0;               // rises with each entry into a list
  Node* parent = nullptr;           // the region that parentID will name
  const Node* container = nullptr;  // the region that sameLevelParentID names
  int32_t children = 0;             // number of regions of the present level with this parent
  int32_t children_area = 0;        // sum of their areas
  RegionStruct* parts = nullptr;    // list of the regions that it splits into at the present level
  bool is_replaced = false;
  std::array<Node*, 4> in_cell{};  // links in the lists of its cells
  Node* in_start_cell = nullptr;
  int32_t unbroken_to = 0;  // the first level at which a pixel of the contour is missing
  bool knows_parent = false;
  int32_t questions = 0;
  bool asked = false;
  ChainRows rows;

  Node* next_node() const { return static_cast<Node*>(next); }

  // Whether the point lies inside the region or on its contour.
  bool holds(int32_t x, int32_t y) {
    constexpr int32_t kLongChain = 100;
    constexpr int32_t kManyQuestions = 12;
    if (x < box.x1 || x > box.x2 || y < box.y1 || y > box.y2) return false;
    asked = true;
    if (N > kLongChain && ++questions == kManyQuestions) rows.build({{x0, y0}, pChainCode, N}, box);
    return rows ? rows.holds(x, y) : NuvIsPointIncludedByChain(x, y, x0, y0, pChainCode, N);
  }
  // Whether the start of another region lies inside this one or on its contour. The start is a pixel of the
  // other component, and two components either are disjoint or one contains the other.
  bool holds_start_of(const Node& other) {
    if (component.contains(other.component)) return true;
    if (!has_holes && !other.component.contains(component)) return false;
    return holds(other.x0, other.y0);
  }
  // Sets the component that the chain surrounds, and finds whether it has holes. A chain of n codes around a
  // polygon of the area A encloses A + n/2 + 1 pixels. The area of NuvAreaAndPerimeter is A plus half the
  // perimeter, and is 1/2 more if n is odd.
  void surround(const LevelComponent& inside) {
    component = inside;
    const int32_t halves = 2 * (area - perimeter / 2) - N % 2;
    has_holes = (halves + N) / 2 + 1 > inside.pixels;
  }
  bool starts_with(const Node& other) const { return x0 == other.x0 && y0 == other.y0; }
  // The order of lists: the smaller first; ties go to the later one.
  bool precedes(const Node& other) const {
    return area < other.area || (area == other.area && serial > other.serial);
  }
  // Releases the sorted crossings, which are large, if holds() has not tested a point since the last call.
  void rest_rows() {
    if (!asked) forget_rows();
    asked = false;
  }
  void forget_rows() {
    questions = 0;
    rows.reset();
  }
};

// A grid of lists. It is a single list if it has no size or if allocation fails.
class RegionCells {
 public:
  RegionCells() = default;
  RegionCells(int32_t width, int32_t height, int32_t shift)
      : shift_(shift),
        columns_(((width - 1) >> shift) + 1),
        count_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(((height - 1) >> shift) + 1)),
        heads_(count_ == 1 ? nullptr : allocate<Node*>(count_)) {
    clear();
  }
  void clear() {
    lone_ = nullptr;
    if (heads_) std::fill_n(heads_.get(), count_, nullptr);
  }
  int32_t cell_of(int32_t place) const { return heads_ ? place >> shift_ : 0; }
  Node*& head(int32_t column, int32_t row) {
    return heads_ ? heads_[static_cast<std::ptrdiff_t>(row) * columns_ + column] : lone_;
  }
  // Calls action(head, column, row) for the cells that a box touches.
  template <class Action>
  void for_each_cell(Region box, Action action) {
    for (int32_t row = cell_of(box.y1); row <= cell_of(box.y2); ++row) {
      for (int32_t column = cell_of(box.x1); column <= cell_of(box.x2); ++column)
        action(head(column, row), column, row);
    }
  }

 private:
  int32_t shift_ = 0;
  int32_t columns_ = 1;
  std::size_t count_ = 1;
  Buffer<Node*> heads_;
  Node* lone_ = nullptr;
};

// Regions filed by their boxes.
class RegionPyramid {
 public:
  RegionPyramid(int32_t width, int32_t height) {
    const int32_t size = std::max(width, height);
    do {
      floor(floor_count_) = RegionCells(width, height, kFirstShift + floor_count_);
      ++floor_count_;
    } while (!fits(size, floor_count_ - 1));
  }

  void clear() {
    for (int32_t i = 0; i < floor_count_; ++i) floor(i).clear();
  }
  void insert(Node& node) {
    floor_of(node).for_each_cell(node.box, [&](Node*& head, int32_t column, int32_t row) {
      const std::size_t slot = slot_of(column, row);
      Node** link = &head;
      while (*link != nullptr && (*link)->precedes(node)) link = &(*link)->in_cell[slot];
      node.in_cell[slot] = *link;
      *link = &node;
    });
  }
  void remove(const Node& node) {
    floor_of(node).for_each_cell(node.box, [&](Node*& head, int32_t column, int32_t row) {
      const std::size_t slot = slot_of(column, row);
      Node** link = &head;
      while (*link != &node) link = &(*link)->in_cell[slot];
      *link = node.in_cell[slot];
    });
  }

  // The first region in list order that has at least this area and passes the test. The regions tested are
  // those whose boxes may hold the point.
  template <class Test>
  Node* first_around(int32_t x, int32_t y, int32_t area, Test test) {
    Node* best = nullptr;
    for (int32_t i = 0; i < floor_count_; ++i) {
      const int32_t column = floor(i).cell_of(x);
      const int32_t row = floor(i).cell_of(y);
      const std::size_t slot = slot_of(column, row);
      for (Node* r = floor(i).head(column, row); r != nullptr; r = r->in_cell[slot]) {
        if (best != nullptr && !r->precedes(*best)) break;
        if (r->area < area || !test(*r)) continue;
        best = r;
        break;
      }
    }
    return best;
  }

 private:
  static constexpr int32_t kFirstShift = 3;

  // The four cells of a floor that a box may touch have different slots.
  static std::size_t slot_of(int32_t column, int32_t row) {
    return ((column & 1) != 0 ? 1U : 0U) + ((row & 1) != 0 ? 2U : 0U);
  }
  static bool fits(int32_t size, int32_t floor) { return size <= int64_t{1} << (kFirstShift + floor); }
  RegionCells& floor(int32_t i) { return floors_[static_cast<std::size_t>(i)]; }
  RegionCells& floor_of(const Node& node) {
    const int32_t size = std::max(node.box.columns(), node.box.rows());
    int32_t i = 0;
    while (!fits(size, i)) ++i;
    return floor(i);
  }

  std::array<RegionCells, 32 - kFirstShift> floors_;
  int32_t floor_count_ = 0;
};

// Regions filed by their starts.
class RegionStarts {
 public:
  RegionStarts(int32_t width, int32_t height) : cells_(width, height, kShift) {}

  void insert(Node& node) {
    Node*& head = head_of(node);
    node.in_start_cell = head;
    head = &node;
  }
  void remove(const Node& node) {
    Node** link = &head_of(node);
    while (*link != &node) link = &(*link)->in_start_cell;
    *link = node.in_start_cell;
  }
  // Calls action(region) for all regions that may start in a box.
  template <class Action>
  void for_each_in(Region box, Action action) {
    cells_.for_each_cell(box, [&](Node* head, int32_t /*column*/, int32_t /*row*/) {
      for (Node* r = head; r != nullptr; r = r->in_start_cell) action(*r);
    });
  }

 private:
  static constexpr int32_t kShift = 4;

  Node*& head_of(const Node& node) { return cells_.head(cells_.cell_of(node.x0), cells_.cell_of(node.y0)); }

  RegionCells cells_;
};

}  // namespace nuv

#endif

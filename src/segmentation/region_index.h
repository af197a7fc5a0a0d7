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
#include <cstddef>
#include <cstdint>

#include "core/buffer.h"
#include "core/views.h"
#include "segmentation/region.h"
#include "segmentation/region_list.h"

namespace nuv {

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
  // those whose boxes may hold the point. The result among the regions of at least the area known_from may be
  // known.
  template <class Test>
  Node* first_around(int32_t x, int32_t y, int32_t area, Test test, int32_t known_from = INT32_MAX,
                     Node* known = nullptr) {
    Node* best = known;
    for (int32_t i = 0; i < floor_count_; ++i) {
      const int32_t column = floor(i).cell_of(x);
      const int32_t row = floor(i).cell_of(y);
      const std::size_t slot = slot_of(column, row);
      for (Node* r = floor(i).head(column, row); r != nullptr; r = r->in_cell[slot]) {
        if (r->area >= known_from || (best != nullptr && !r->precedes(*best))) break;
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

}  // namespace nuv

#endif

// Lists of regions. A list owns its regions.

#ifndef NUV_SEGMENTATION_REGION_LIST_H
#define NUV_SEGMENTATION_REGION_LIST_H

#include <array>
#include <cstddef>
#include <utility>

#include "nuv/records.h"
#include "segmentation/region.h"

namespace nuv {

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

  // Sorts by an order of regions. Ties keep their order.
  template <class Precedes>
  void sort(Precedes precedes) {
    std::array<RegionStruct*, 64> runs{};  // of 1, 2, 4, ... regions; larger ones come from nearer the head
    while (head_ != nullptr) {
      RegionStruct* run = take_first();
      std::size_t i = 0;
      for (; runs[i] != nullptr; ++i) run = merged(std::exchange(runs[i], nullptr), run, precedes);
      runs[i] = run;
    }
    for (RegionStruct* run : runs) head_ = merged(run, head_, precedes);
  }
  // Sorts by rising area. Ties keep their order.
  void sort_by_area() {
    sort([](const Node& a, const Node& b) { return a.area < b.area; });
  }

 private:
  // Merges two sorted lists. Ties go to a.
  template <class Precedes>
  static RegionStruct* merged(RegionStruct* a, RegionStruct* b, Precedes precedes) {
    RegionStruct* head = nullptr;
    RegionStruct** link = &head;
    while (a != nullptr && b != nullptr) {
      RegionStruct*& first = precedes(static_cast<Node&>(*b), static_cast<Node&>(*a)) ? b : a;
      *link = first;
      link = &first->next;
      first = first->next;
    }
    *link = a != nullptr ? a : b;
    return head;
  }

  RegionStruct* head_ = nullptr;
};

}  // namespace nuv

#endif

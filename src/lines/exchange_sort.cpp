// The result of an exchange sort, computed in n log n.
//
// Results depend on the order in which the exchanges leave points of equal y, so this order is computed.
//
// Round i of the exchanges carries the point at place i along the places after it. At each smaller point it
// puts the carried point down there and carries the smaller one on. The points of one y form a class. When a
// round carries a member of a class, the member therefore lands where the next smaller point was, after all
// members before that point.
//
// So a queue gives the order of a class. Read the places from the first to the last. A member of the class
// joins the end of the queue. A smaller point moves the head of the queue to its end. After the last place,
// the queue holds the class in the order of the result.
//
// The code runs this backwards. The places of a class in the result are free slots on a ring. Undoing a move
// of the head turns the ring by one slot. Undoing a join, of the last member first, gives the member the free
// slot before the head. A tree of sums finds a free slot by its rank, and counts the smaller points before a
// member.

#include "lines/exchange_sort.h"

#include <algorithm>
#include <utility>

#include "core/buffer.h"

namespace nuv {
namespace {

// Up to this number of points the exchanges themselves are as fast.
constexpr int32_t kFew = 32;

void exchange(int32_t* x, int32_t* y, int32_t n) {
  for (int32_t i = 0; i < n; ++i) {
    for (int32_t j = i + 1; j < n; ++j) {
      if (y[j] < y[i]) {
        std::swap(x[i], x[j]);
        std::swap(y[i], y[j]);
      }
    }
  }
}

// Counts at places 0 to size - 1. Node i holds the sum of the (i & -i) places before i (P. Fenwick, 1994).
class CountTree {
 public:
  explicit CountTree(int32_t* nodes) : nodes_(nodes) {}

  void fill(int32_t size, bool with_ones) {
    size_ = size;
    for (int32_t i = 1; i <= size; ++i) nodes_[i] = with_ones ? i & -i : 0;
  }
  void add(int32_t place, int32_t count) {
    for (int32_t i = place + 1; i <= size_; i += i & -i) nodes_[i] += count;
  }
  int32_t before(int32_t place) const {
    int32_t sum = 0;
    for (int32_t i = place; i > 0; i -= i & -i) sum += nodes_[i];
    return sum;
  }
  // The first place at which the sum of the counts, its own included, exceeds rank.
  int32_t place_of(int32_t rank) const {
    int64_t step = 1;
    while (2 * step <= size_) step *= 2;
    int64_t node = 0;
    for (; step > 0; step /= 2) {
      if (node + step <= size_ && nodes_[node + step] <= rank) {
        node += step;
        rank -= nodes_[node];
      }
    }
    return static_cast<int32_t>(node);
  }

 private:
  int32_t* nodes_;
  int32_t size_ = 0;
};

struct Member {
  int32_t y;
  int32_t place;  // before the sort
  int32_t x;
  int32_t smaller_before;  // smaller points at places before
};

// Writes the x of a class in the order of the result. smaller is the number of all smaller points.
void order_class(const Member* members, int32_t n, int32_t smaller, CountTree& free_slots, int32_t* x) {
  free_slots.fill(n, true);
  int32_t start = 0;  // the rank of the queue's head among the free slots
  for (int32_t i = n - 1; i >= 0; --i) {
    const int32_t queued = i + 1;
    const int32_t turns = smaller - members[i].smaller_before;
    start = (start - turns % queued + queued) % queued;
    smaller = members[i].smaller_before;
    const int32_t rank = (start + queued - 1) % queued;
    const int32_t slot = free_slots.place_of(rank);
    free_slots.add(slot, -1);
    x[slot] = members[i].x;
    if (start > 0) --start;
  }
}

}  // namespace

void exchange_sort_by_y(int32_t* x, int32_t* y, int32_t n) {
  if (n < 2 || std::is_sorted(y, y + n)) return;
  const Buffer<Member> members = n > kFew ? allocate<Member>(n) : nullptr;
  const Buffer<int32_t> class_starts = n > kFew ? allocate<int32_t>(n) : nullptr;
  const Buffer<int32_t> nodes = n > kFew ? allocate<int32_t>(int64_t{n} + 1) : nullptr;
  if (!members || !class_starts || !nodes) {
    exchange(x, y, n);
    return;
  }

  Member* const first = members.get();
  for (int32_t i = 0; i < n; ++i) first[i] = {y[i], i, x[i], 0};
  std::sort(first, first + n,
            [](const Member& a, const Member& b) { return a.y != b.y ? a.y < b.y : a.place < b.place; });
  // class_starts holds, for each place before the sort, where the class of its point starts in the sorted
  // order. The next loop replaces each entry by the number of smaller points at places before it.
  int32_t start = 0;
  for (int32_t i = 0; i < n; ++i) {
    if (first[i].y != first[start].y) start = i;
    class_starts[static_cast<std::size_t>(first[i].place)] = start;
  }
  CountTree tree(nodes.get());
  tree.fill(n, false);
  for (int32_t place = 0; place < n; ++place) {
    int32_t& entry = class_starts[static_cast<std::size_t>(place)];
    const int32_t class_start = entry;
    entry = tree.before(class_start);
    tree.add(class_start, 1);
  }
  for (int32_t i = 0; i < n; ++i) {
    first[i].smaller_before = class_starts[static_cast<std::size_t>(first[i].place)];
  }
  for (int32_t begin = 0; begin < n;) {
    int32_t end = begin + 1;
    while (end < n && first[end].y == first[begin].y) ++end;
    order_class(first + begin, end - begin, begin, tree, x + begin);
    std::fill(y + begin, y + end, first[begin].y);
    begin = end;
  }
}

}  // namespace nuv

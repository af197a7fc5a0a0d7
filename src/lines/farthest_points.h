// The point of a stretch that is farthest from the chord between its ends.

#ifndef NUV_LINES_FARTHEST_POINTS_H
#define NUV_LINES_FARTHEST_POINTS_H

#include <cstdint>

#include "core/buffer.h"

namespace nuv {

// Searches among points that are sorted by y. The points must outlive the searches.
class FarthestPoints {
 public:
  FarthestPoints(const int32_t* x, const int32_t* y, int32_t n);

  struct Found {
    int32_t place;
    double distance;
  };
  // The point between places low and high that is farthest from the chord of these two. Ties go to the first.
  // If no point has a distance, the place is high and the distance is negative.
  Found search(int32_t low, int32_t high);

 private:
  struct Chord;
  struct Best;

  Chord chord_of(int32_t low, int32_t high) const;
  double distance(int32_t low, int32_t high, int32_t place) const;
  Found scan(int32_t low, int32_t high) const;
  Found scan_exactly(int32_t low, int32_t high, const Chord& chord) const;
  bool build();
  void build_chain(int32_t level, int32_t node);
  int64_t greatest_in(int32_t level, int32_t node, const Chord& chord) const;
  void search_node(int32_t level, int32_t node, int32_t first, int32_t end, const Chord& chord,
                   Best& best) const;
  int32_t first_with(int64_t value, int32_t level, int32_t node, const Chord& chord) const;

  int32_t first_of(int32_t level, int32_t node) const;
  int32_t end_of(int32_t level, int32_t node) const;
  int32_t* chain_at(int32_t level, int32_t side, int32_t first) const;
  int32_t& length_at(int32_t level, int32_t side, int32_t node) const;

  const int32_t* x_;
  const int32_t* y_;
  int32_t n_;
  bool is_exact_;  // the coordinates are so small that numerators of distances are exact
  int64_t scanned_ = 0;
  bool is_built_ = false;
  bool cannot_be_built_ = false;
  int32_t levels_ = 0;
  int32_t blocks_ = 0;
  Buffer<int32_t> chains_;
  Buffer<int32_t> lengths_;
};

}  // namespace nuv

#endif

// Merge-split segmentation: the tree of dark regions over falling threshold levels.
//
// Each level gives a list of regions, the outer contours of the pixels that are darker (levels.h). They are
// merged into the tree one level after the other (region_tree.h).
//
// The function also leaves in its buffers what a plain form would, which scans and traces every level of the
// image: the start of the buffer of codes, and the marks of the last level.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "contours/trace.h"
#include "core/arithmetic.h"
#include "core/borders.h"
#include "core/byte_counter.h"
#include "core/views.h"
#include "nuv/arithmetic.h"
#include "nuv/contours.h"
#include "nuv/histogram.h"
#include "nuv/segmentation.h"
#include "segmentation/component_groups.h"
#include "segmentation/levels.h"
#include "segmentation/region_list.h"
#include "segmentation/region_tree.h"

namespace nuv {
namespace {

// Produces the buffer of codes as if the outer contours of all levels had been written to its start, each
// over the one before. Callers see what is left of them there. The contours come in reverse order, and each
// writes only the bytes that no later one has written.
class OverwrittenCodes {
 public:
  OverwrittenCodes(uint8_t* codes, int32_t from) : codes_(codes), reached_(from) {}
  // Writes the part of a chain that later chains do not cover.
  void write_remainder(const uint8_t* chain, int32_t n) {
    if (n <= reached_) return;
    std::memcpy(codes_ + reached_, chain + reached_, static_cast<std::size_t>(n - reached_));
    reached_ = n;
  }
  int32_t reached() const { return reached_; }

 private:
  uint8_t* codes_;
  int32_t reached_;
};

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
void write_first_codes(ComponentGroups& ending, Tracer& tracer, int32_t first_level, int32_t last_level,
                       int32_t end, uint8_t* codes) {
  OverwrittenCodes buffer(codes, 0);
  for (int32_t t = last_level; t >= first_level && buffer.reached() < end; --t) {
    LevelComponent* const begin = ending.begin_of(t + 1);
    // The chain of a component of p pixels has fewer than p (p/2 + 2) codes.
    LevelComponent* const long_end =
        std::partition(begin, ending.end_of(t + 1), [&](const LevelComponent& c) {
          return static_cast<int64_t>(c.pixels) * (c.pixels / 2 + 4) > buffer.reached();
        });
    std::sort(begin, long_end,
              [](const LevelComponent& a, const LevelComponent& b) { return a.first > b.first; });
    for (const LevelComponent* c = begin; c != long_end && buffer.reached() < end; ++c) {
      int32_t least = 0;
      const int32_t n = tracer.trace(c->first, t, least);
      buffer.write_remainder(tracer.codes(), std::min(n, end));
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
  const Components components(inverted, binary, start, last, std::min(least_pixels(census), 2));
  ComponentGroups starting(components, &LevelComponent::from, least_pixels(census));
  ComponentGroups ending(components, &LevelComponent::up_to, 2);
  if (!tracer.allocated() || !components.complete() || !starting.allocated() || !ending.allocated())
    return nullptr;

  uint8_t* const codes = pTmpImg + inverted.size();
  const int32_t left_out = most_codes_left_out(census, inverted);
  census.next_serial = inverted.size();  // the serial numbers in levels are pixel indices
  Tree tree(width, height);
  Level level(width, height);
  for (int32_t t = start; t <= last; ++t) {
    RegionList broken;
    std::sort(starting.begin_of(t), starting.end_of(t),
              [](const LevelComponent& a, const LevelComponent& b) { return a.first < b.first; });
    advance(level, t, starting.begin_of(t), starting.end_of(t), tracer, census, broken);
    // Writes the ends of chains that no chain of this level reaches.
    OverwrittenCodes buffer(codes, std::max(level.longest, left_out));
    for (const Node* r = broken.head(); r != nullptr; r = r->next_node())
      buffer.write_remainder(r->pChainCode, r->N);
    if (tree.list.empty()) {
      start_tree(tree, level);
    } else {
      NuvMergeRegionLevel(tree, level, ratio, census);
    }
  }
  OverwrittenCodes buffer(codes, left_out);
  RegionList remaining;
  while (!level.list.empty()) remaining.push_front(level.list.take_first());
  for (const Node* r = remaining.head(); r != nullptr; r = r->next_node())
    buffer.write_remainder(r->pChainCode, r->N);
  write_first_codes(ending, tracer, start, last, left_out, codes);
  NuvThreshold(pGryImg, width, height, last + 1, pTmpImg);
  mark_contours(binary);

  return release_regions(tree);
}

void NuvFreeRegionStruct(RegionStruct* pRegion) {
  while (pRegion != nullptr) {
    auto* node = static_cast<Node*>(pRegion);
    pRegion = node->next;
    destroy(node);
  }
}

// A chain in blocks of steps, for tests of points. Most blocks lie above or below a point and are skipped.

#ifndef NUV_SEGMENTATION_CHAIN_BLOCKS_H
#define NUV_SEGMENTATION_CHAIN_BLOCKS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "contours/chain.h"
#include "contours/crossings.h"
#include "core/buffer.h"
#include "core/views.h"

namespace nuv {

class ChainBlocks {
 public:
  explicit operator bool() const { return blocks_ != nullptr; }
  void reset() { blocks_.reset(); }

  // There are no blocks if allocation fails.
  void build(const Chain& chain) {
    blocks_ = allocate<Block>(count_of(chain));
    if (!blocks_) return;
    Point p = chain.start;
    for (int32_t i = 0; i < count_of(chain); ++i) {
      Block block{p, p.y, p.y, p.x};
      for (int32_t step = kSteps * i; step < end_of(i, chain); ++step) {
        block.top = std::min(block.top, p.y);
        block.bottom = std::max(block.bottom, p.y);
        block.right = std::max(block.right, p.x);
        take_step(p, chain.codes[step]);
      }
      blocks_[static_cast<std::size_t>(i)] = block;
    }
  }

  // The result of NuvIsPointIncludedByChain.
  bool holds(const Chain& chain, int32_t x, int32_t y) const {
    int32_t sum = 0;
    for (int32_t i = 0; i < count_of(chain); ++i) {
      const Block& block = blocks_[static_cast<std::size_t>(i)];
      if (y < block.top || y > block.bottom || x > block.right) continue;
      sum += crossings(chain, kSteps * i, end_of(i, chain), block.start, {x, y});
    }
    return sum != 0;
  }

 private:
  static constexpr int32_t kSteps = 64;

  struct Block {
    Point start;
    // The rows of its positions, and the greatest column.
    int32_t top;
    int32_t bottom;
    int32_t right;
  };

  static int32_t count_of(const Chain& chain) { return (chain.n - 1) / kSteps + 1; }
  static int32_t end_of(int32_t block, const Chain& chain) {
    return std::min(chain.n - kSteps * block, kSteps) + kSteps * block;
  }

  Buffer<Block> blocks_;
};

}  // namespace nuv

#endif

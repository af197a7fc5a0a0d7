// Thinning.
//
// A pass decides every pixel by the state at its start, and the decision depends on the eight neighbours alone.
// So a pass keeps a pixel that it kept in the iteration before, unless a neighbour was deleted in between. Only
// the neighbours of deleted pixels are tested again, once in each of the next two passes. The work grows with
// the number of deletions, not with the number of passes times that of pixels.

#include <algorithm>
#include <array>

#include "core/borders.h"
#include "core/buffer.h"
#include "core/neighbours.h"
#include "core/row_kernel.h"
#include "core/runs.h"
#include "core/views.h"
#include "nuv/binary.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// ---- decisions by the eight neighbours; bit d is the neighbour in direction d ----

constexpr bool has(int neighbours, int direction) {
  return (neighbours >> (direction & 7) & 1) != 0;
}

// The number of changes from 0 to 1 on the way round the neighbours.
constexpr int rises(int neighbours) {
  int count = 0;
  for (int d = 0; d < 8; ++d) count += !has(neighbours, d) && has(neighbours, d + 1) ? 1 : 0;
  return count;
}

constexpr int kEast = 0;
constexpr int kNorth = 2;
constexpr int kWest = 4;
constexpr int kSouth = 6;

constexpr bool all_three(int neighbours, int a, int b, int c) {
  return has(neighbours, a) && has(neighbours, b) && has(neighbours, c);
}

enum DeletedBy : uint8_t { kDeletedByFirst = 1, kDeletedBySecond = 2, kDeletedByCleanUp = 4 };

constexpr uint8_t deleted_by(int neighbours) {
  int count = 0;
  for (int d = 0; d < 8; ++d) count += has(neighbours, d) ? 1 : 0;
  uint8_t result = 0;
  if (count >= 2 && count <= 6 && rises(neighbours) == 1) {
    if (!all_three(neighbours, kNorth, kSouth, kEast) && !all_three(neighbours, kWest, kSouth, kEast)) {
      result |= kDeletedByFirst;
    }
    if (!all_three(neighbours, kWest, kNorth, kEast) && !all_three(neighbours, kWest, kSouth, kNorth)) {
      result |= kDeletedBySecond;
    }
  }
  const bool vertical = has(neighbours, kNorth) || has(neighbours, kSouth);
  const bool horizontal = has(neighbours, kEast) || has(neighbours, kWest);
  // The corner of a stair: its neighbours are connected without it.
  if (rises(neighbours) == 2 && vertical && horizontal) result |= kDeletedByCleanUp;
  return result;
}

constexpr std::array<uint8_t, 256> make_deleted_by() {
  std::array<uint8_t, 256> table{};
  for (int i = 0; i < 256; ++i) table[static_cast<std::size_t>(i)] = deleted_by(i);
  return table;
}
constexpr std::array<uint8_t, 256> kDeletedBy = make_deleted_by();

// ---- iterations ----

// During the iterations a pixel is 0, or 1 plus twice the number of passes that have yet to test it.
constexpr uint8_t kObject = 1;
constexpr uint8_t kOneTest = 2;
constexpr uint8_t kTwoTests = 4;

NUV_ROW_KERNEL void to_object(const uint8_t* in, uint8_t* NUV_RESTRICT out, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) out[i] = in[i] != 0 ? kObject : 0;
}
NUV_ROW_KERNEL void clear_test_counts(uint8_t* pixels, std::ptrdiff_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) pixels[i] &= kObject;
}

using Offsets = std::array<std::ptrdiff_t, 8>;

// One bit per white neighbour. White pixels are odd: 1 plus an even number, or 255.
uint8_t neighbours_of(const uint8_t* p, const Offsets& offsets) {
  unsigned bits = 0;
  for (std::size_t d = 0; d < 8; ++d) bits |= (p[offsets[d]] & kObject) << d;
  return static_cast<uint8_t>(bits);
}

class Thinning {
 public:
  // Pixels must be 0 or 1, and 0 on the four sides. If allocation fails, allocated() is false.
  explicit Thinning(GrayImage image) : image_(image), offsets_(neighbour_offsets(image.width)) {
    std::ptrdiff_t objects = 1;  // one more than there are, so that no list is empty
    const uint8_t* end = image.pixels + image.size();
    for (const uint8_t* p = image.pixels; p < end; ++p) objects += *p;
    pending_ = allocate<int32_t>(objects);
    deleted_ = allocate<int32_t>(objects);
  }
  bool allocated() const { return pending_ && deleted_; }

  // Both passes keep a pixel whose eight neighbours are all white.
  void start() {
    for (int32_t y = 1; y < image_.height - 1; ++y) {
      for_white_runs({image_.row(y), image_.width, 1}, [&](int32_t first, int32_t last) {
        for (int32_t x = first; x <= last; ++x) {
          uint8_t* p = image_.at(x, y);
          if (neighbours_of(p, offsets_) != 255) test_twice(p);
        }
      });
    }
  }

  // Returns the number of deleted pixels.
  std::ptrdiff_t pass(DeletedBy step) {
    std::ptrdiff_t deletions = 0;
    for (std::ptrdiff_t i = 0; i < pending_count_; ++i) {
      uint8_t* p = image_.pixels + pending_[i];
      if ((kDeletedBy[neighbours_of(p, offsets_)] & step) != 0) deleted_[deletions++] = pending_[i];
    }
    for (std::ptrdiff_t i = 0; i < deletions; ++i) image_.pixels[deleted_[i]] = 0;

    std::ptrdiff_t kept = 0;
    for (std::ptrdiff_t i = 0; i < pending_count_; ++i) {
      uint8_t& pixel = image_.pixels[pending_[i]];
      if (pixel == 0) continue;
      pixel = static_cast<uint8_t>(pixel - kOneTest);
      if (pixel >= kOneTest) pending_[kept++] = pending_[i];
    }
    pending_count_ = kept;
    for (std::ptrdiff_t i = 0; i < deletions; ++i) {
      uint8_t* p = image_.pixels + deleted_[i];
      for (std::ptrdiff_t offset : offsets_) {
        if (p[offset] != 0) test_twice(p + offset);
      }
    }
    return deletions;
  }

 private:
  void test_twice(uint8_t* p) {
    if (*p < kOneTest) pending_[pending_count_++] = static_cast<int32_t>(p - image_.pixels);
    *p = kObject | kTwoTests;
  }

  GrayImage image_;
  Offsets offsets_;
  Buffer<int32_t> pending_;  // places of the pixels to be tested, each once
  std::ptrdiff_t pending_count_ = 0;
  Buffer<int32_t> deleted_;
};

// One scan that sees its own deletions.
void clean_up(GrayImage image) {
  const Offsets offsets = neighbour_offsets(image.width);
  for (int32_t y = 1; y < image.height - 1; ++y) {
    for_white_runs({image.row(y), image.width, 1}, [&](int32_t first, int32_t last) {
      for (int32_t x = first; x <= last; ++x) {
        uint8_t* p = image.at(x, y);
        if ((kDeletedBy[neighbours_of(p, offsets)] & kDeletedByCleanUp) != 0) *p = 0;
      }
    });
  }
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvBinImgThin(uint8_t* pBinImg, uint8_t* pTmpImg, int32_t width, int32_t height, uint8_t* pResImg) {
  const GrayImage image{pResImg, width, height};
  if (image.empty()) return 1;
  to_object(pBinImg, pResImg, image.size());
  clear_sides(image);
  Thinning thinning(image);
  if (!thinning.allocated()) return 0;
  thinning.start();
  int32_t iterations = 0;
  for (bool deleted = true; deleted; ++iterations) {
    const bool by_first = thinning.pass(kDeletedByFirst) != 0;
    const bool by_second = thinning.pass(kDeletedBySecond) != 0;
    deleted = by_first || by_second;
  }
  clear_test_counts(pResImg, image.size());
  copy_bytes(pTmpImg, pResImg, image.size());
  NuvThreshold(pResImg, width, height, kObject);
  clean_up(image);
  return iterations;
}

// The pixels that a contour encloses: filled, replaced, copied, counted.
//
// One core serves all. The contour is rewritten in the image itself: pixels through which it goes down on
// balance become left edges, those through which it goes up right edges, and every row is scanned from each
// left edge to the right edge that ends it. For the contour of a hole the scan runs leftwards, and what is
// left and right changes sides with it. Afterwards the contour gets its pixels back. A member says what
// happens to the pixels.

#include <algorithm>
#include <array>
#include <initializer_list>

#include "contours/chain.h"
#include "core/arithmetic.h"
#include "core/buffer.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

// What contour pixels hold during the scan.
struct EdgeMarks {
  uint8_t base;   // with two values below and two above it: where the contour neither goes down nor up
  uint8_t left;   // a scan starts here
  uint8_t right;  // and ends before this
};

// The lowest values that are free beside the reserved ones; what is no byte is no pixel's value either.
EdgeMarks choose_marks(uint8_t right, std::initializer_list<int32_t> others) {
  std::array<bool, 256> reserved{};
  reserved[right] = true;
  for (int32_t value : others) {
    if (value == low_byte(value)) reserved[low_byte(value)] = true;
  }
  int32_t base = 2;
  for (int32_t run = 0, value = 0; value < 256; ++value) {
    run = reserved[static_cast<std::size_t>(value)] ? 0 : run + 1;
    if (run == 5) {
      base = value - 2;
      break;
    }
  }
  std::fill_n(reserved.begin() + base - 2, 5, true);
  const auto left = std::find(reserved.begin(), reserved.end(), false) - reserved.begin();
  return {low_byte(base), static_cast<uint8_t>(left), right};
}

// By the code before, down, and the code itself, across: the turn between them in steps of 45 degrees.
constexpr int8_t kTurn[8][8] = {
    {0, 1, 2, 3, 4, -1, -1, -1}, {-1, 0, 1, 2, 3, 4, -1, -2}, {-1, -1, 0, 1, 2, 3, 4, -1},
    {-1, -2, -1, 0, 1, 2, 3, 4}, {4, -1, -1, -1, 0, 1, 2, 3}, {3, 4, -1, -2, -1, 0, 1, 2},
    {2, 3, 4, -1, -1, -1, 0, 1}, {1, 2, 3, 4, -1, -2, -1, 0},
};

// The contour's pixels as they were.
class SavedContour {
 public:
  SavedContour(GrayImage image, const Chain& chain) : image_(image), chain_(chain) {
    if (static_cast<std::size_t>(chain.n) > on_stack_.size()) {
      on_heap_ = allocate<uint8_t>(static_cast<std::size_t>(chain.n));
      pixels_ = on_heap_.get();
    }
    if (pixels_ == nullptr) return;
    uint8_t* saved = pixels_;
    walk_positions(chain, [&](Point p) { *saved++ = *image.at(p.x, p.y); });
  }

  // False if there is no memory.
  bool saved() const { return pixels_ != nullptr; }

  // Calls visit(pixel, as it was) at each position.
  template <class Visit>
  void for_each(Visit visit) const {
    const uint8_t* saved = pixels_;
    walk_positions(chain_, [&](Point p) { visit(image_.at(p.x, p.y), *saved++); });
  }
  void restore() const {
    for_each([](uint8_t* pixel, uint8_t saved) { *pixel = saved; });
  }

 private:
  GrayImage image_;
  Chain chain_;
  std::array<uint8_t, 4096> on_stack_;
  Buffer<uint8_t> on_heap_;
  uint8_t* pixels_ = on_stack_.data();
};

struct Winding {
  int32_t step;  // 1 for the contour of an object, -1 for that of a hole
  bool scannable;
};

// Writes the marks over the contour.
Winding mark_edges(GrayImage image, const Chain& chain, EdgeMarks marks) {
  walk_positions(chain, [=](Point p) { *image.at(p.x, p.y) = marks.base; });

  int32_t turns = 0;
  Point p = chain.start;
  for (int32_t i = 0; i < chain.n; ++i) {
    const int before = chain.previous(i);
    const int code = direction_of(chain.codes[i]);
    uint8_t& pixel = *image.at(p.x, p.y);
    pixel = low_byte(pixel + kDy[code] + kDy[before]);
    turns += kTurn[before][code];
    p = stepped(p, chain.codes[i]);
  }
  const bool closed = p.x == chain.start.x && p.y == chain.start.y;

  walk_positions(chain, [=](Point position) {
    uint8_t& pixel = *image.at(position.x, position.y);
    const int32_t balance = pixel - marks.base;
    if (balance == 1 || balance == 2) pixel = marks.left;
    if (balance == -1 || balance == -2) pixel = marks.right;
  });
  const int32_t step = turns / 8;
  return {step, closed && (step == 1 || step == -1)};
}

// Visits the pixels from each left edge to the one before its right edge. A chain that crosses itself may
// leave a left edge without a right one in its row: the scan goes on in memory, up to the chain's last row.
template <class Visit>
void scan_rows(GrayImage image, const Chain& chain, EdgeMarks marks, Winding winding, Visit visit) {
  if (!winding.scannable) return;
  int32_t top = chain.start.y;
  int32_t bottom = chain.start.y;
  walk_positions(chain, [&](Point p) {
    top = std::min(top, p.y);
    bottom = std::max(bottom, p.y);
  });
  const uint8_t* last = winding.step > 0 ? image.at(image.width - 1, bottom) : image.at(0, top);
  walk_positions(chain, [&](Point start) {
    uint8_t* pixel = image.at(start.x, start.y);
    if (*pixel != marks.left) return;
    uint8_t* p = pixel;
    visit(p);
    while (p != last && p[winding.step] != marks.right) visit(p += winding.step);
    *pixel = marks.right;  // once is enough
  });
}

// Whether the contour's pixels are given back after the visit, which may change them so as to know them
// again.
enum class Contour { kChanged, kRestored };

// Visits with inside(pixel) what the scan meets, and then, round an object, with rim(pixel, as it was) the
// positions of the contour. Without memory nothing is visited and nothing changes.
template <class Inside, class Rim>
void visit_enclosed(GrayImage image, const Chain& chain, EdgeMarks marks, Contour contour, Inside inside,
                    Rim rim) {
  const SavedContour saved(image, chain);
  if (!saved.saved()) return;
  const Winding winding = mark_edges(image, chain, marks);
  scan_rows(image, chain, marks, winding, [&](uint8_t* pixel) {
    inside(pixel);
    // Another left edge, or a pixel that looks like one, is not to start a scan of its own.
    if (*pixel == marks.left) *pixel = marks.base;
  });
  saved.restore();
  // The rim of a hole does not belong to it.
  if (winding.step != 1) return;
  saved.for_each(rim);
  if (contour == Contour::kRestored) saved.restore();
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvFillingContour(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                          int32_t N, bool includeContour, int32_t mark, int32_t fill) {
  if (N < 1) return 0;
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  const Chain chain{{x, y}, pChainCode, N};
  const EdgeMarks marks = choose_marks(low_byte(mark), {low_byte(fill)});
  const auto fill_pixel = [=](uint8_t* pixel) { *pixel = low_byte(fill); };
  const auto fill_inside = [&] {
    const Winding winding = mark_edges(image, chain, marks);
    scan_rows(image, chain, marks, winding, fill_pixel);
    return winding.step;
  };
  if (includeContour) {
    const int32_t step = fill_inside();
    walk_positions(chain, [=](Point p) { fill_pixel(image.at(p.x, p.y)); });
    return step;
  }
  const SavedContour saved(image, chain);
  const int32_t step = fill_inside();
  if (saved.saved()) saved.restore();
  return step;
}

int32_t NuvReplacePixelsColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                              int32_t N, int32_t mark, int32_t oldColor, int32_t newColor) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  int32_t count = 0;
  const auto replace = [&](uint8_t* pixel) {
    if (*pixel != oldColor) return;
    *pixel = low_byte(newColor);
    ++count;
  };
  if (N < 1) {
    replace(image.at(x, y));
    return count;
  }
  const EdgeMarks marks = choose_marks(low_byte(mark), {oldColor, low_byte(newColor)});
  visit_enclosed(
      image, {{x, y}, pChainCode, N}, marks, Contour::kChanged, [&](uint8_t* pixel) { replace(pixel); },
      [&](uint8_t* pixel, uint8_t saved) {
        if (saved == oldColor) replace(pixel);
      });
  return count;
}

int32_t NuvPastePixels2ResImg(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                              int32_t N, int32_t mark, int32_t color, uint8_t* pResImg, int32_t newColor) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  int32_t count = 0;
  const auto paste = [&](const uint8_t* pixel) {
    if (*pixel != color) return false;
    pResImg[pixel - pGryImg] = low_byte(newColor);
    ++count;
    return true;
  };
  if (N < 1) {
    paste(image.at(x, y));
    return count;
  }
  const EdgeMarks marks = choose_marks(low_byte(mark), {color});
  visit_enclosed(
      image, {{x, y}, pChainCode, N}, marks, Contour::kRestored, [&](uint8_t* pixel) { paste(pixel); },
      [&](uint8_t* pixel, uint8_t saved) {
        // Where the contour passes twice, the second time finds another value.
        if (saved == color && paste(pixel)) *pixel = low_byte(color + 1);
      });
  return count;
}

int32_t NuvPastePixels2ResImg(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                              const uint8_t* pChainCode, int32_t N, uint8_t mark, uint8_t bgColor,
                              uint8_t* pResImg) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  int32_t count = 0;
  const auto paste = [&](const uint8_t* pixel) {
    if (*pixel == bgColor) return false;
    pResImg[pixel - pGryImg] = *pixel;
    ++count;
    return true;
  };
  if (N < 1) {
    paste(image.at(x, y));
    return count;
  }
  const EdgeMarks marks = choose_marks(mark, {});
  visit_enclosed(
      image, {{x, y}, pChainCode, N}, marks, Contour::kRestored,
      [&](uint8_t* pixel) {
        if (*pixel != marks.left && *pixel != marks.base) paste(pixel);
      },
      [&](uint8_t* pixel, uint8_t saved) {
        if (saved != bgColor && paste(pixel)) *pixel = bgColor;
      });
  return count;
}

int32_t NuvRegionHistogram(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                           int32_t N, uint8_t mark, int32_t* pHistogram) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  std::fill_n(pHistogram, 256, 0);
  if (N < 1) {
    // A lone pixel is told by its value, behind the bins.
    pHistogram[256] = *image.at(x, y);
    return 1;
  }
  int32_t count = 0;
  const auto add = [&](const uint8_t* pixel) {
    ++pHistogram[*pixel];
    ++count;
  };
  const EdgeMarks marks = choose_marks(mark, {});
  visit_enclosed(
      image, {{x, y}, pChainCode, N}, marks, Contour::kRestored,
      [&](uint8_t* pixel) {
        if (*pixel != marks.left && *pixel != marks.base) add(pixel);
      },
      [&](uint8_t* pixel, uint8_t /*saved*/) {
        if (*pixel == mark) return;
        add(pixel);
        *pixel = mark;
      });
  return count;
}

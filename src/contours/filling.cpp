// The pixels that a contour encloses: filled, replaced, copied, counted.
//
// All functions share one core. It writes marks over the contour in the image: a left edge where the contour
// goes down on balance, a right edge where it goes up. Then it scans each row from every left edge to the
// next right edge, and restores the contour's pixels. For the contour of a hole the scan runs leftwards, and
// the edges change sides. A function supplies what happens to a scanned pixel and to a pixel of the contour.

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>

#include "contours/chain.h"
#include "core/arithmetic.h"
#include "core/buffer.h"
#include "core/runs.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

// The values of contour pixels during the scan.
struct EdgeMarks {
  uint8_t base;   // the contour goes neither up nor down; the two values below and above it are used, too
  uint8_t left;   // a scan starts here
  uint8_t right;  // a scan ends before this
};

// Chooses the lowest values that are not reserved. A value that is not a byte cannot occur in the image, so
// it reserves nothing.
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

// The turn between two codes in steps of 45 degrees. Rows: the code before. Columns: the code itself.
constexpr int8_t kTurn[8][8] = {
    {0, 1, 2, 3, 4, -1, -1, -1}, {-1, 0, 1, 2, 3, 4, -1, -2}, {-1, -1, 0, 1, 2, 3, 4, -1},
    {-1, -2, -1, 0, 1, 2, 3, 4}, {4, -1, -1, -1, 0, 1, 2, 3}, {3, 4, -1, -2, -1, 0, 1, 2},
    {2, 3, 4, -1, -1, -1, 0, 1}, {1, 2, 3, 4, -1, -2, -1, 0},
};

// The contour's pixels as they were before the marks.
class SavedContour {
 public:
  SavedContour(GrayImage image, const Chain& chain) : image_(image), chain_(chain) {
    if (static_cast<std::size_t>(chain.n) > on_stack_.size()) {
      on_heap_ = allocate<uint8_t>(chain.n);
      pixels_ = on_heap_.get();
    }
    if (pixels_ == nullptr) return;
    uint8_t* saved = pixels_;
    walk_positions(chain, [&](Point p) { *saved++ = *image.at(p.x, p.y); });
  }

  // False if allocation failed.
  bool saved() const { return pixels_ != nullptr; }

  // Calls visit(pixel, saved value) at each position.
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

// Neighbouring pixels in memory.
struct Pixels {
  uint8_t* first;
  std::ptrdiff_t n;
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
    take_step(p, chain.codes[i]);
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

void replace_all(Pixels pixels, uint8_t old_value, uint8_t value) {
  for (std::ptrdiff_t i = 0; i < pixels.n; ++i) {
    const uint8_t pixel = pixels.first[i];
    pixels.first[i] = pixel == old_value ? value : pixel;
  }
}

// The pixels from p on, up to the one before the next right edge, or up to the last one.
Pixels up_to_edge(uint8_t* p, const uint8_t* last, uint8_t edge) {
  const void* found = std::memchr(p + 1, edge, static_cast<std::size_t>(last - p));
  return {p, (found != nullptr ? static_cast<const uint8_t*>(found) : last + 1) - p};
}
// The same pixels in the other direction.
Pixels back_to_edge(uint8_t* p, const uint8_t* first, uint8_t edge) {
  uint8_t* q = p;
  while (q - first >= 8 && !any_of_eight(q - 8, edge)) q -= 8;
  while (q != first && q[-1] != edge) --q;
  return {q, p - q + 1};
}

// Visits the pixels from each left edge to the one before its right edge, row by row. A chain that
// crosses itself may leave a left edge without a right edge in its row. The scan then goes on in memory, at most
// to the end of the rows that the chain touches.
template <class Visit>
void scan_rows(GrayImage image, const Chain& chain, EdgeMarks marks, Winding winding, Visit visit) {
  if (!winding.scannable) return;
  int32_t top = chain.start.y;
  int32_t bottom = chain.start.y;
  walk_positions(chain, [&](Point p) {
    top = std::min(top, p.y);
    bottom = std::max(bottom, p.y);
  });
  const uint8_t* last = image.at(image.width - 1, bottom);
  const uint8_t* first = image.at(0, top);
  walk_positions(chain, [&](Point start) {
    uint8_t* pixel = image.at(start.x, start.y);
    if (*pixel != marks.left) return;
    visit(winding.step > 0 ? up_to_edge(pixel, last, marks.right) : back_to_edge(pixel, first, marks.right));
    *pixel = marks.right;  // no second scan from here
  });
}

// Whether the contour's pixels are restored after the visits to them. A visit may change a pixel so that a
// second visit recognises it.
enum class Contour { kChanged, kRestored };

// Calls inside(pixel) for each pixel of the scan. Then, for an outer chain, calls rim(pixel, saved value) at
// each position of the contour. If allocation fails, nothing is visited and nothing changes.
template <class Inside, class Rim>
void visit_enclosed(GrayImage image, const Chain& chain, EdgeMarks marks, Contour contour, Inside inside,
                    Rim rim) {
  const SavedContour saved(image, chain);
  if (!saved.saved()) return;
  const Winding winding = mark_edges(image, chain, marks);
  scan_rows(image, chain, marks, winding, [&](Pixels pixels) {
    for (std::ptrdiff_t i = 0; i < pixels.n; ++i) inside(pixels.first + i);
    // Another left edge must not start a scan of its own. Other pixels of that value become the base, too.
    replace_all(pixels, marks.left, marks.base);
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
    scan_rows(image, chain, marks, winding,
              [=](Pixels pixels) { fill_bytes(pixels.first, low_byte(fill), pixels.n); });
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
        // If the contour passes twice, the second visit finds another value.
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
    // The entry after the bins takes the value of a lone pixel.
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

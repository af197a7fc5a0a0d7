// Run lengths: counts of runs, and runs removed or kept for their length.
//
// Rows and columns share one piece of code over lines. Each export names the lines, the runs and the action.

#include <algorithm>

#include "core/arithmetic.h"
#include "core/borders.h"
#include "core/buffer.h"
#include "core/column_strips.h"
#include "core/lanes.h"
#include "core/row_kernel.h"
#include "core/runs.h"
#include "core/transposition.h"
#include "core/views.h"
#include "core/window_sums.h"
#include "nuv/binary.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

struct WhiteRuns {
  template <class Action>
  void operator()(Line line, Action action) const {
    for_white_runs(line, action);
  }
};
struct BlackRuns {
  template <class Action>
  void operator()(Line line, Action action) const {
    for_black_runs(line, action);
  }
};

// ---- counted ----

bool clear_counts(int32_t* counts, int32_t max_length) {
  if (max_length < 0) return false;
  std::fill_n(counts, static_cast<std::ptrdiff_t>(max_length) + 1, 0);
  return true;
}

template <class ForRuns>
void count_lengths(Lines lines, int32_t* counts, int32_t max_length, ForRuns for_runs) {
  for (int32_t i = 0; i < lines.count; ++i) {
    for_runs(lines[i],
             [=](int32_t first, int32_t last) { ++counts[std::min(last - first + 1, max_length)]; });
  }
}

// A run starts with a pixel of 201 or more and continues with pixels of 200 or more. The lower threshold keeps
// noise from cutting a run in two.
constexpr int32_t kRunStart = 201;
constexpr int32_t kRunThreshold = 200;

// Measures of the runs of some lines.
struct RunMeasures {
  int32_t sum;
  int32_t min;
  int32_t max;
  int32_t max_runs;
  int32_t runs;

  void add(Line line) {
    int32_t of_line = 0;
    for_bright_runs(line, kRunStart, kRunThreshold, [&](int32_t first, int32_t last) {
      const int32_t length = last - first + 1;
      sum += length;
      min = std::min(min, length);
      max = std::max(max, length);
      ++of_line;
    });
    max_runs = std::max(max_runs, of_line);
    runs += of_line;
  }
  void add(Lines lines) {
    for (int32_t i = 0; i < lines.count; ++i) add(lines[i]);
  }
  int32_t store(int32_t* to_sum, int32_t* to_min, int32_t* to_max, int32_t* to_max_runs) const {
    *to_sum = sum;
    *to_min = min;
    *to_max = max;
    *to_max_runs = max_runs;
    return runs;
  }
};

RunMeasures no_runs(int32_t least) {
  return {0, least, 0, 0, 0};
}

// ---- removed ----

template <class ForRuns, class Test>
void recolour_runs(Lines lines, int32_t colour, ForRuns for_runs, Test is_recoloured) {
  for (int32_t i = 0; i < lines.count; ++i) {
    const Line line = lines[i];
    for_runs(line, [=](int32_t first, int32_t last) {
      if (is_recoloured(last - first + 1)) line.fill(first, last, low_byte(colour));
    });
  }
}

auto longer_than(int32_t length) {
  return [=](int32_t run) { return run > length; };
}
auto shorter_than(int32_t length) {
  return [=](int32_t run) { return run < length; };
}

NUV_ROW_KERNEL void recolour_isolated(const uint8_t* NUV_RESTRICT above, const uint8_t* NUV_RESTRICT below,
                                      uint8_t* NUV_RESTRICT row, std::ptrdiff_t n, uint8_t colour) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const uint8_t alone = (above[x] | below[x]) == 0 ? colour : row[x];
    row[x] = row[x] != 0 ? alone : 0;
  }
}

// ---- marked ----

// One step down: the places of white pixels in the run of their column, counted from 1.
NUV_ROW_KERNEL void count_down(const uint8_t* row, const uint8_t* above, uint8_t* NUV_RESTRICT places,
                               std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    const auto next = static_cast<uint8_t>(above[x] + 1);
    places[x] = row[x] != 0 ? next : 0;
  }
}

// One step up: the place of the last pixel of a run is the length of the run, and the pixels above it take over
// that length. white_below is 255 where the pixel of the row below is white; lengths holds the lengths of the
// runs there. Both are updated to the present row.
NUV_ROW_KERNEL void take_lesser_length(const uint8_t* NUV_RESTRICT places, uint8_t* NUV_RESTRICT row,
                                       uint8_t* NUV_RESTRICT white_below, uint8_t* NUV_RESTRICT lengths,
                                       std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    // Both are loaded before the choice, because a load under a condition prevents vector code.
    const uint8_t from_below = lengths[x];
    const uint8_t own = places[x];
    const uint8_t length = white_below[x] != 0 ? from_below : own;
    const uint8_t white = row[x] != 0 ? 255 : 0;
    lengths[x] = length;
    white_below[x] = white;
    row[x] = lesser(row[x], length) & white;
  }
}

// Lowers each white pixel to the low byte of the length of its column's run, by one pass down and one pass up
// the rows. If allocation fails, walks along the columns do the same in place.
void take_lesser_column_lengths(GrayImage image) {
  if (image.empty()) return;
  const std::ptrdiff_t w = image.width;
  const Buffer<uint8_t> places = allocate<uint8_t>(image.size());
  const Buffer<uint8_t> below = allocate<uint8_t>(2 * int64_t{w});
  if (!places || !below) {
    const Lines columns = columns_of(image);
    for (int32_t x = 0; x < columns.count; ++x) {
      const Line column = columns[x];
      for_white_runs(column, [=](int32_t first, int32_t last) {
        const uint8_t length = low_byte(last - first + 1);
        for (int32_t y = first; y <= last; ++y) column[y] = lesser(column[y], length);
      });
    }
    return;
  }
  uint8_t* white_below = below.get();
  uint8_t* lengths = white_below + w;
  std::memset(white_below, 0, 2 * static_cast<std::size_t>(w));
  count_down(image.row(0), white_below, places.get(), w);
  for (int32_t y = 1; y < image.height; ++y) {
    count_down(image.row(y), places.get() + (y - 1) * w, places.get() + y * w, w);
  }
  for (int32_t y = image.height - 1; y >= 0; --y) {
    take_lesser_length(places.get() + y * w, image.row(y), white_below, lengths, w);
  }
}

// ---- counted near each pixel ----

#if NUV_HAS_LANES
template <class Lanes>
NUV_INLINE std::ptrdiff_t find_starts_by(const uint8_t* row, uint8_t* starts, std::ptrdiff_t n) {
  constexpr std::ptrdiff_t kStep = sizeof(Lanes);
  const Steps<kStep> steps(n);
  for (const std::ptrdiff_t x : steps) {
    Lanes pixels;
    Lanes before;
    load(row + x, pixels);
    load(row + x - 1, before);
    const Lanes none = {};
    const Lanes found = reinterpret_cast<Lanes>(pixels != none) & reinterpret_cast<Lanes>(before == none) & 1;
    store(starts + x, found);
  }
  return steps.covered();
}
#endif

// Writes 1 where a white run begins, otherwise 0. row[-1] is read.
NUV_ROW_KERNEL void find_starts(const uint8_t* row, uint8_t* NUV_RESTRICT starts, std::ptrdiff_t n) {
  std::ptrdiff_t x = 0;
#if NUV_HAS_LANES
  x = has_wide_lanes() ? find_starts_by<Bytes32>(row, starts, n) : find_starts_by<Bytes16>(row, starts, n);
#endif
  for (; x < n; ++x) {
    const uint8_t white = row[x] != 0 ? 1 : 0;
    const uint8_t after_black = row[x - 1] == 0 ? 1 : 0;
    starts[x] = white & after_black;
  }
}

// ---- kept ----

void mark_short_columns(GrayImage image, GrayImage result, Region region, int32_t threshold,
                        int32_t max_length) {
  const Lines columns = columns_of(image, region);
  const Lines result_columns = columns_of(result, region);
  ColumnStrip pixels(columns);
  ColumnStrip marks(result_columns);
  for (int32_t x = 0; x < columns.count; x += kStripColumns) {
    const Lines from = pixels.load(x);
    const Lines to = marks.load(x);
    for (int32_t i = 0; i < from.count; ++i) {
      for_bright_runs(from[i], threshold, threshold, [=](int32_t first, int32_t last) {
        if (last - first + 1 <= max_length) to[i].fill(first, last, 255);
      });
    }
    marks.store();
  }
}

// ---- kept if connected ----

constexpr int32_t kMaxLevel = 250;

uint8_t first_level(Line levels, int32_t first, int32_t last) {
  for (int32_t i = first; i <= last; ++i) {
    if (levels[i] != 0) return levels[i];
  }
  return 0;
}

// Writes the levels of the runs of lines that cover an image. levels are the lines of the result.
//
// A long run has level 1. A short run has the level of the first run that it touches in the line before it,
// plus 1, if that is not above max_level. A first pass goes through the lines in rising order. A second pass
// goes back and overwrites the levels of the first.
void keep_connected_runs(Lines lines, int32_t min_length, int32_t max_level, GrayImage result, Lines levels) {
  max_level = std::min(max_level, kMaxLevel);
  const auto set_levels = [=](int32_t i, int32_t before) {
    for_white_runs(lines[i], [=](int32_t first, int32_t last) {
      if (last - first + 1 >= min_length) {
        levels[i].fill(first, last, 1);
        return;
      }
      const uint8_t level = first_level(levels[before], first, last);
      if (level != 0 && level < max_level) levels[i].fill(first, last, static_cast<uint8_t>(level + 1));
    });
  };
  fill_bytes(result.pixels, 0, result.size());
  for (int32_t i = 1; i < lines.count; ++i) set_levels(i, i - 1);
  for (int32_t i = lines.count - 2; i >= 0; --i) set_levels(i, i + 1);
  NuvThreshold(result.pixels, result.width, result.height, 1);
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvRLXBlackCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount, int32_t maxLength) {
  if (!clear_counts(pCount, maxLength)) return;
  count_lengths(rows_of({pBinImg, width, height}), pCount, maxLength, BlackRuns());
}

void NuvRLXWhiteCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount, int32_t maxLength) {
  if (!clear_counts(pCount, maxLength)) return;
  count_lengths(rows_of({pBinImg, width, height}), pCount, maxLength, WhiteRuns());
}

void NuvRLYBlackCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount, int32_t maxLength) {
  if (!clear_counts(pCount, maxLength)) return;
  for_column_strips(columns_of({pBinImg, width, height}),
                    [=](Lines strip) { count_lengths(strip, pCount, maxLength, BlackRuns()); });
}

void NuvRLYWhiteCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount, int32_t maxLength) {
  if (!clear_counts(pCount, maxLength)) return;
  for_column_strips(columns_of({pBinImg, width, height}),
                    [=](Lines strip) { count_lengths(strip, pCount, maxLength, WhiteRuns()); });
}

int32_t NuvRLXWhiteCount(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                         int32_t y2, int32_t* pSum, int32_t* pMin, int32_t* pMax, int32_t* pMaxRuns) {
  const Region region = Region{x1, x2, y1, y2}.clamped_to(width, height);
  RunMeasures measures = no_runs(width);
  measures.add(rows_of({pGryImg, width, height}, region));
  return measures.store(pSum, pMin, pMax, pMaxRuns);
}

int32_t NuvRLYWhiteCount(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                         int32_t y2, int32_t* pSum, int32_t* pMin, int32_t* pMax, int32_t* pMaxRuns) {
  const Region region = Region{x1, x2, y1, y2}.clamped_to(width, height);
  // The least length starts at the width for columns, too.
  RunMeasures measures = no_runs(width);
  for_column_strips(columns_of({pGryImg, width, height}, region), [&](Lines strip) { measures.add(strip); });
  return measures.store(pSum, pMin, pMax, pMaxRuns);
}

void NuvRLXWhiteDeleteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t maxLength,
                           uint8_t color) {
  recolour_runs(rows_of({pBinImg, width, height}), color, WhiteRuns(), longer_than(maxLength));
}

void NuvRLXWhiteDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                            int32_t color) {
  recolour_runs(rows_of({pBinImg, width, height}), color, WhiteRuns(), shorter_than(minLength));
}

void NuvRLXBlackDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                            int32_t color) {
  // Runs begin after the first column and end before the last one.
  const Lines inner_rows = rows_of({pBinImg, width, height}, {1, width - 2, 0, height - 1});
  recolour_runs(inner_rows, color, BlackRuns(), shorter_than(minLength));
}

void NuvRLYWhiteDeleteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t maxLength,
                           int32_t color) {
  change_column_strips(columns_of({pBinImg, width, height}), [=](Lines strip) {
    recolour_runs(strip, color, WhiteRuns(), longer_than(maxLength));
  });
}

void NuvRLYWhiteDeleteIsolated(uint8_t* pBinImg, int32_t width, int32_t height, int32_t color) {
  const GrayImage image{pBinImg, width, height};
  if (image.empty()) return;
  for (int32_t y = 1; y < height - 1; ++y) {
    recolour_isolated(image.row(y - 1), image.row(y + 1), image.row(y), width, low_byte(color));
  }
}

void NuvRLYWhiteDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                            int32_t color) {
  if (minLength < 2) {
    NuvRLYWhiteDeleteIsolated(pBinImg, width, height, color);
    return;
  }
  change_column_strips(columns_of({pBinImg, width, height}), [=](Lines strip) {
    recolour_runs(strip, color, WhiteRuns(), shorter_than(minLength));
  });
}

void NuvBinImgMarkMinOfRLXandRLY(uint8_t* pBinImg, int32_t width, int32_t height) {
  const GrayImage image{pBinImg, width, height};
  const Lines rows = rows_of(image);
  for (int32_t y = 0; y < rows.count; ++y) {
    for_white_runs(rows[y], [=](int32_t first, int32_t last) {
      rows[y].fill(first, last, static_cast<uint8_t>(std::min(last - first + 1, 255)));
    });
  }
  take_lesser_column_lengths(image);
}

void NuvBinImg01TimesByX(uint8_t* pBinImg, int32_t* pBuf, int32_t width, int32_t height, int32_t X,
                         uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const GrayImage result{pResImg, width, height};
  if (image.empty()) return;
  const int32_t half = std::clamp((((X + 1) / 2) * 2 + 1) / 2, 0, (width - 1) / 2);
  // Results are low bytes of counts, so bytes suffice for the sums. The work space has room for four rows of
  // bytes.
  uint8_t* starts = reinterpret_cast<uint8_t*>(pBuf);
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* row = image.row(y);
    uint8_t* out = result.row(y);
    starts[0] = 0;
    find_starts(row + 1, starts + 1, width - 1);

    // The window reaches equally far to both sides, so near the ends of the row its width changes by two
    // columns from pixel to pixel.
    const int32_t whole = width - 2 * half;
    const uint8_t* sums =
        neighbour_sums(starts, whole, 2 * half + 1, 1, starts + width, starts + 2 * std::ptrdiff_t{width});
    std::memcpy(out + half, sums, static_cast<std::size_t>(whole));
    uint8_t at_left = starts[0];
    uint8_t at_right = starts[width - 1];
    for (int32_t x = 0; x < half; ++x) {
      out[x] = at_left;
      out[width - 1 - x] = at_right;
      at_left = low_byte(at_left + starts[2 * x + 1] + starts[2 * x + 2]);
      at_right = low_byte(at_right + starts[width - 2 - 2 * x] + starts[width - 3 - 2 * x]);
    }
  }
  const uint8_t* last = image.row(height - 1);
  pBuf[0] = 0;
  for (int32_t x = 1; x < width; ++x) pBuf[x] = last[x] != 0 && last[x - 1] == 0 ? 1 : 0;
}

void NuvRLXWhiteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minTop, int32_t minBottom,
                     uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const Region interior{1, width - 2, 1, height - 2};
  const Lines inner = rows_of(image, interior);
  const Lines marks = rows_of({pResImg, width, height}, interior);
  for (int32_t i = 0; i < inner.count; ++i) {
    const int32_t min_length = limit_at(i + 1, height - 1, minTop, minBottom);
    for_white_runs(inner[i], [=](int32_t first, int32_t last) {
      if (last - first + 1 >= min_length) marks[i].fill(first, last, 255);
    });
  }
}

void NuvRLYWhiteShort(uint8_t* pGryImg, int32_t width, int32_t height, int32_t threshold, int32_t maxLength,
                      uint8_t* pResImg) {
  const GrayImage image{pGryImg, width, height};
  mark_short_columns(image, {pResImg, width, height}, image.whole(), threshold, maxLength);
}

bool NuvRLYWhiteShortAndRLXWhiteLong(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                     int32_t threshold, int32_t maxLength, int32_t minTop, int32_t minBottom,
                                     uint8_t* pResImg) {
  const GrayImage image{pGryImg, width, height};
  const GrayImage thin{pTmpImg, width, height};
  fill_bytes(pTmpImg, 0, image.size());
  // The last column and the first row have no strokes.
  mark_short_columns(image, thin, {0, width - 2, 0, height - 1}, threshold, maxLength);
  const Region below_first{0, width - 1, 1, height - 1};
  const Lines rows = rows_of(thin, below_first);
  const Lines marks = rows_of({pResImg, width, height}, below_first);
  for (int32_t i = 0; i < rows.count; ++i) {
    const int32_t min_length = limit_at(i + 1, height, minTop, minBottom);
    for_white_runs(rows[i], [=](int32_t first, int32_t last) {
      if (last - first + 1 >= min_length) marks[i].fill(first, last, 255);
    });
  }
  return true;
}

void NuvRLXDeleteWhiteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                            int32_t maxLevel, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const GrayImage result{pResImg, width, height};
  clear_sides(image);
  keep_connected_runs(rows_of(image), minLength, maxLevel, result, rows_of(result));
}

void NuvRLYDeleteWhiteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                            int32_t maxLevel, uint8_t* pResImg) {
  const GrayImage image{pBinImg, width, height};
  const GrayImage result{pResImg, width, height};
  clear_sides(image);
  const int64_t pixels = image.size();
  const Buffer<uint8_t> turned = allocate<uint8_t>(2 * pixels);
  if (image.empty() || !turned) {
    keep_connected_runs(columns_of(image), minLength, maxLevel, result, columns_of(result));
    return;
  }
  const GrayImage columns{turned.get(), height, width};
  const GrayImage kept{turned.get() + pixels, height, width};
  Transposition{{pBinImg, width}, {columns.pixels, height}}.move_all<1>(width, height);
  keep_connected_runs(rows_of(columns), minLength, maxLevel, kept, rows_of(kept));
  Transposition{{kept.pixels, height}, {pResImg, width}}.move_all<1>(height, width);
}

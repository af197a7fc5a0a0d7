// Regions held as runs.
//
// A run lies in a line: a row for RLX, a column for RLY. Rows and columns share one piece of code that
// collects, follows and draws runs. The exports state where rows and columns differ.
//
// Numbering keeps the records as a forest, so that joining two regions changes one record only.

#include <algorithm>
#include <array>
#include <cstdlib>

#include "core/arithmetic.h"
#include "core/column_strips.h"
#include "core/runs.h"
#include "core/views.h"
#include "nuv/binary.h"

namespace nuv {
namespace {

struct Run {
  int32_t line;
  int32_t first;
  int32_t last;
};

// Records of rows and of columns, read and written.
Run run_of(const RLX& record) {
  return {record.y, record.x1, record.x2};
}
Run run_of(const RLY& record) {
  return {record.x, record.y1, record.y2};
}
void store(RLX& record, Run run) {
  record.y = run.line;
  record.x1 = run.first;
  record.x2 = run.last;
}
void store(RLY& record, Run run) {
  record.x = run.line;
  record.y1 = run.first;
  record.y2 = run.last;
}

// The black place before or after the run of place i, or the end of the line if there is none. If place i is
// black, it is the result.
int32_t before_run(Line line, int32_t i) {
  while (line.stride == 1 && i >= 8 && !any_of_eight(line.start + i - 7, 0)) i -= 8;
  while (i > 0 && line[i] != 0) --i;
  return i;
}
int32_t after_run(Line line, int32_t i) {
  return next_black({line.start, line.count - 1, line.stride}, i);
}

// ---- collecting ----

// A search for the runs of a line that touch places first to last. A run that begins before place first or ends
// after place last is found whole. A run that reaches the end of the line is cut by short_by places.
struct Search {
  int32_t first;
  int32_t last;
  int32_t short_by;

  bool lies_on(Lines lines) const {
    return first >= 0 && first < lines.length && last >= 0 && last < lines.length;
  }
};

// The lines from line1 to line2 that exist.
Lines stretch_of(Lines lines, int32_t line1, int32_t line2) {
  line1 = std::max(line1, 0);
  line2 = std::min(line2, lines.count - 1);
  if (line2 < line1) return {};
  lines.start += line1 * lines.to_next_line;
  lines.count = line2 - line1 + 1;
  return lines;
}

// Stores at most n runs of the lines, the first of which has the given number.
template <class Record>
int32_t get_runs(Lines lines, int32_t number, Search search, Record* records, int32_t n) {
  int32_t count = 0;
  for (int32_t i = 0; i < lines.count; ++i) {
    const Line line = lines[i];
    const int32_t end = after_run(line, search.last);
    const Line searched{line.start, end + 1, line.stride};
    const Line kept{line.start, end + 1 - search.short_by, line.stride};
    for (int32_t place = before_run(line, search.first); place <= end; ++place) {
      const int32_t start = next_white(searched, place);
      if (start > end) break;
      place = next_black(kept, start);
      if (count >= n) return count;
      store(records[count++], {number + i, start, place - 1});
    }
  }
  return count;
}

// ---- following ----

// Follows a run from its line to last_line while its length stays steady. The first place stored is the black
// place before the run, or place 0 if the run starts there. The last place stored is the last of the run, or
// the place before it if the run reaches the end of the line.
template <class Record>
int32_t grow_run(Lines lines, Run run, int32_t step, int32_t last_line, Record* records, int32_t n) {
  int32_t count = 0;
  int32_t length_before = run.last - run.first + 1;
  for (int32_t i = run.line; i * step <= last_line * step && count < n; i += step) {
    const Line line = lines[i];
    const int32_t middle = (run.first + run.last) >> 1;
    if (middle < 0 || middle >= line.count || line[middle] == 0) break;
    const int32_t left = before_run(line, middle);
    const int32_t right = after_run(line, middle);
    const int32_t length = right - left;
    if (length == 0) break;
    const int64_t change = std::abs(static_cast<int64_t>(length) - length_before);
    if (length >= 3 && 2 * change >= length_before) break;
    store(records[count++], {i, left, right - 1});
    run = {i, left, right};
    length_before = length;
  }
  return count;
}

// Follows the runs on the last line of a search forwards, then the runs on its first line backwards. Both walks
// append records, and the second also visits the records that it appends.
template <class Record, class Forwards, class Backwards>
int32_t grow_all(Record* records, int32_t count, int32_t n, int32_t first_line, int32_t last_line,
                 Forwards forwards, Backwards backwards) {
  // The first record is only followed backwards.
  for (int32_t i = count - 1; i >= 1; --i) {
    const Run run = run_of(records[i]);
    if (run.line != last_line) break;
    count += forwards(run, records + count, n - count);
  }
  for (int32_t i = 0; i < count; ++i) {
    const Run run = run_of(records[i]);
    if (run.line != first_line) break;
    count += backwards(run, records + count, n - count);
  }
  return count;
}

// ---- drawing ----

template <class Record>
void draw_runs(Lines lines, const Record* records, int32_t n, int32_t colour) {
  for (int32_t i = 0; i < n; ++i) {
    const Run run = run_of(records[i]);
    if (run.line < 0 || run.line >= lines.count) continue;
    lines[run.line].fill(std::max(run.first, 0), std::min(run.last, lines.length - 1), low_byte(colour));
  }
}

// ---- numbering ----

constexpr int32_t kMaxIds = 1024;

// The numbers in use; a new region gets the lowest free one.
class Ids {
 public:
  // Returns kMaxIds if all are in use.
  int32_t take() {
    while (lowest_ < kMaxIds && used_[static_cast<std::size_t>(lowest_)]) ++lowest_;
    if (lowest_ < kMaxIds) used_[static_cast<std::size_t>(lowest_)] = true;
    return lowest_;
  }
  void release(int32_t id) {
    used_[static_cast<std::size_t>(id)] = false;
    lowest_ = std::min(lowest_, id);
  }
  // Stores the rank of each number in use; returns how many are in use.
  int32_t rank(std::array<int32_t, kMaxIds>& ranks) const {
    int32_t count = 0;
    for (std::size_t id = 0; id < kMaxIds; ++id) ranks[id] = used_[id] ? count++ : 0;
    return count;
  }

 private:
  std::array<bool, kMaxIds> used_{};
  int32_t lowest_ = 0;  // no number below it is free
};

// The records as a forest. Until the end the ID of a root is ~(number of its region), and the ID of any other
// record is the index of a record nearer to its root. So joining two regions changes one record.
class Regions {
 public:
  explicit Regions(RLX* records) : records_(records) {}

  int32_t count() const { return count_; }

  // Returns the root of the region of record i.
  int32_t root(int32_t i) {
    while (records_[i].ID >= 0) {
      const int32_t parent = records_[i].ID;
      if (records_[parent].ID >= 0) records_[i].ID = records_[parent].ID;
      i = parent;
    }
    return i;
  }
  // Makes the region of root b part of that of root a.
  void merge(int32_t a, int32_t b) {
    ids_.release(~records_[b].ID);
    records_[b].ID = a;
  }
  void append(Run run, int32_t root) {
    store(records_[count_], run);
    records_[count_++].ID = root;
  }
  // Returns false if no number is left.
  bool append_new(Run run) {
    const int32_t id = ids_.take();
    if (id == kMaxIds) return false;
    append(run, ~id);
    return true;
  }

  // Replaces the forest by the numbers of the regions.
  void number() {
    for (int32_t i = 0; i < count_; ++i) {
      if (records_[i].ID >= 0) records_[i].ID = root(i);
    }
    for (int32_t i = 0; i < count_; ++i) {
      if (records_[i].ID >= 0) records_[i].ID = records_[records_[i].ID].ID;
    }
    for (int32_t i = 0; i < count_; ++i) records_[i].ID = ~records_[i].ID;
  }
  // Closes the gaps between the numbers; returns how many numbers there are.
  int32_t compact() {
    std::array<int32_t, kMaxIds> ranks;
    const int32_t regions = ids_.rank(ranks);
    for (int32_t i = 0; i < count_; ++i) records_[i].ID = ranks[static_cast<std::size_t>(records_[i].ID)];
    return regions;
  }

 private:
  RLX* records_;
  int32_t count_ = 0;
  Ids ids_;
};

enum class End { kImage, kRecords, kIds };

// Stores the runs that are long enough for their row and joins each to the regions above it. Stops when the
// records are full, or when there is no number for a new region.
End collect_regions(GrayImage image, int32_t at_top, int32_t at_bottom, Regions& regions, const RLX* records,
                    int32_t n) {
  End end = End::kImage;
  // The records of the row above are above to above_end - 1.
  int32_t above = 0;
  int32_t above_end = 0;
  const Lines rows = rows_of(image);
  for (int32_t y = 0; y < rows.count && end == End::kImage; ++y) {
    const int32_t min_length = limit_at(y, rows.count - 1, at_top, at_bottom);
    const int32_t row_begin = regions.count();
    for_white_runs(rows[y], [&](int32_t first, int32_t last) {
      if (end != End::kImage || last - first + 1 < min_length) return;
      while (above < above_end && records[above].x2 < first) ++above;
      int32_t root = -1;
      for (int32_t i = above; i < above_end && records[i].x1 <= last; ++i) {
        const int32_t other = regions.root(i);
        if (root < 0) {
          root = other;
        } else if (other != root) {
          regions.merge(root, other);
        }
      }
      const Run run{y, first, last};
      if (root >= 0) {
        regions.append(run, root);
      } else if (!regions.append_new(run)) {
        end = End::kIds;
        return;
      }
      if (regions.count() == n) end = End::kRecords;
    });
    above = row_begin;
    above_end = regions.count();
  }
  return end;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvRLXRegionsGet(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                         int32_t y2, RLX* pRLX, int32_t N) {
  const Search search{x1, x2, 0};
  const Lines rows = rows_of({pBinImg, width, height});
  if (!search.lies_on(rows)) return 0;
  return get_runs(stretch_of(rows, y1, y2), std::max(y1, 0), search, pRLX, N);
}

int32_t NuvRLYRegionsGet(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                         int32_t y2, RLY* pRLY, int32_t N) {
  // A run that reaches the last row loses its last pixel; one that reaches the last column does not.
  const Search search{y1, y2, 1};
  const Lines columns = columns_of({pBinImg, width, height});
  if (!search.lies_on(columns)) return 0;
  const Lines searched = stretch_of(columns, x1, x2);
  int32_t number = std::max(x1, 0);
  // Strips transpose whole columns, which does not pay for a search of few rows.
  if (y2 - y1 < height / 4) return get_runs(searched, number, search, pRLY, N);
  int32_t count = 0;
  for_column_strips(searched, [&](Lines strip) {
    if (count < N) count += get_runs(strip, number, search, pRLY + count, N - count);
    number += strip.count;
  });
  return count;
}

int32_t NuvRLXRegionsGrowByYInc(uint8_t* pBinImg, int32_t width, int32_t height, int32_t y, int32_t x1,
                                int32_t x2, RLX* pRLX, int32_t N) {
  if (y < 0 || y >= height) return 0;
  return grow_run(rows_of({pBinImg, width, height}), {y, x1, x2}, 1, height - 1, pRLX, N);
}

int32_t NuvRLXRegionsGrowByYDec(uint8_t* pBinImg, int32_t width, int32_t height, int32_t y, int32_t x1,
                                int32_t x2, RLX* pRLX, int32_t N) {
  if (y < 1 || y >= height) return 0;
  return grow_run(rows_of({pBinImg, width, height}), {y, x1, x2}, -1, 1, pRLX, N);
}

int32_t NuvRLYRegionsGrowByXInc(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x, int32_t y1,
                                int32_t y2, RLY* pRLY, int32_t N) {
  if (x < 0 || x >= width) return 0;
  return grow_run(columns_of({pBinImg, width, height}), {x, y1, y2}, 1, width - 1, pRLY, N);
}

int32_t NuvRLYRegionsGrowByXDec(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x, int32_t y1,
                                int32_t y2, RLY* pRLY, int32_t N) {
  // Unlike the three others, this walk starts next to the given line, not on it.
  if (x < 2 || x > width) return 0;
  return grow_run(columns_of({pBinImg, width, height}), {x - 1, y1, y2}, -1, 1, pRLY, N);
}

int32_t NuvRLXReginsGetAndGrow(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, RLX* pRLX, int32_t N) {
  const int32_t count = NuvRLXRegionsGet(pBinImg, width, height, x1, x2, y1, y2, pRLX, N);
  return grow_all(
      pRLX, count, N, y1, y2,
      [=](Run run, RLX* records, int32_t capacity) {
        return NuvRLXRegionsGrowByYInc(pBinImg, width, height, run.line, run.first, run.last, records,
                                       capacity);
      },
      [=](Run run, RLX* records, int32_t capacity) {
        return NuvRLXRegionsGrowByYDec(pBinImg, width, height, run.line, run.first, run.last, records,
                                       capacity);
      });
}

int32_t NuvRLYReginsGetAndGrow(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, RLY* pRLY, int32_t N) {
  const int32_t count = NuvRLYRegionsGet(pBinImg, width, height, x1, x2, y1, y2, pRLY, N);
  return grow_all(
      pRLY, count, N, x1, x2,
      [=](Run run, RLY* records, int32_t capacity) {
        return NuvRLYRegionsGrowByXInc(pBinImg, width, height, run.line, run.first, run.last, records,
                                       capacity);
      },
      [=](Run run, RLY* records, int32_t capacity) {
        return NuvRLYRegionsGrowByXDec(pBinImg, width, height, run.line, run.first, run.last, records,
                                       capacity);
      });
}

void NuvDrawRLXRegions(uint8_t* pBinImg, int32_t width, int32_t height, RLX* pRLX, int32_t N, int32_t color) {
  draw_runs(rows_of({pBinImg, width, height}), pRLX, N, color);
}

void NuvDrawRLYRegions(uint8_t* pBinImg, int32_t width, int32_t height, RLY* pRLY, int32_t N, int32_t color) {
  draw_runs(columns_of({pBinImg, width, height}), pRLY, N, color);
}

int32_t NuvRLXRegionsWithID(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minTop,
                            int32_t minBottom, RLX* pRLX, int32_t N) {
  if (N < 1) return 0;
  Regions regions(pRLX);
  const End end = collect_regions({pBinImg, width, height}, minTop, minBottom, regions, pRLX, N);
  regions.number();
  return end == End::kIds ? regions.count() : regions.compact();
}

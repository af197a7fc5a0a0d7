// Columns worked on as rows.
//
// A walk down a column touches another cache line at each pixel, and cannot look at several pixels at once.
// So the columns are taken in strips: a strip is transposed into a buffer, where each column is a row, and
// transposed back if it has changed.

#ifndef NUV_CORE_COLUMN_STRIPS_H
#define NUV_CORE_COLUMN_STRIPS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "core/buffer.h"
#include "core/runs.h"
#include "core/transposition.h"

namespace nuv {

constexpr int32_t kStripColumns = 64;

class ColumnStrip {
 public:
  explicit ColumnStrip(Lines columns)
      : columns_(columns),
        // An odd number of cache lines keeps the rows of the buffer apart in a cache.
        step_(((columns.length / kLine + 1) | 1) * kLine),
        buffer_(allocate<uint8_t>(static_cast<std::size_t>(step_) * kStripColumns)) {}

  // The strip from one column on. If allocation has failed, its columns as they stand in the image.
  Lines load(int32_t first) {
    first_ = first;
    count_ = std::min(kStripColumns, columns_.count - first);
    uint8_t* start = columns_.start + first * columns_.to_next_line;
    if (!buffer_) return {start, count_, columns_.length, columns_.to_next_line, columns_.stride};
    Transposition{{start, columns_.stride}, {buffer_.get(), step_}}.move_all<1>(count_, columns_.length);
    return {buffer_.get(), count_, columns_.length, step_, 1};
  }

  // Brings the strip that was loaded last back into the image.
  void store() const {
    if (!buffer_) return;
    uint8_t* start = columns_.start + first_ * columns_.to_next_line;
    Transposition{{buffer_.get(), step_}, {start, columns_.stride}}.move_all<1>(columns_.length, count_);
  }

 private:
  static constexpr std::ptrdiff_t kLine = 64;

  Lines columns_;
  std::ptrdiff_t step_;
  Buffer<uint8_t> buffer_;
  int32_t first_ = 0;
  int32_t count_ = 0;
};

// Each calls action(strip) for strips of the columns, from the left to the right. The action may change what
// it gets from the second one.
template <class Action>
void for_column_strips(Lines columns, Action action) {
  ColumnStrip strip(columns);
  for (int32_t x = 0; x < columns.count; x += kStripColumns) action(strip.load(x));
}
template <class Action>
void change_column_strips(Lines columns, Action action) {
  ColumnStrip strip(columns);
  for (int32_t x = 0; x < columns.count; x += kStripColumns) {
    action(strip.load(x));
    strip.store();
  }
}

}  // namespace nuv

#endif

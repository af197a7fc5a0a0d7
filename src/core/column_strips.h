// Columns processed as rows.
//
// A walk down a column touches another cache line at each pixel and cannot compare several pixels at once.
// Therefore the columns are processed in strips. A strip is transposed into a buffer, in which each column is
// a row, and is transposed back if it has changed.

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
        // An odd number of cache lines per row keeps the rows of the buffer from sharing cache sets.
        step_(((columns.length / kLine + 1) | 1) * kLine),
        buffer_(allocate<uint8_t>(int64_t{step_} * kStripColumns)) {}

  // Loads the strip that starts with column first. If allocation failed, the result is the columns in the
  // image itself.
  Lines load(int32_t first) {
    first_ = first;
    count_ = std::min(kStripColumns, columns_.count - first);
    uint8_t* start = columns_.start + first * columns_.to_next_line;
    if (!buffer_) return {start, count_, columns_.length, columns_.to_next_line, columns_.stride};
    Transposition{{start, columns_.stride}, {buffer_.get(), step_}}.move_all<1>(count_, columns_.length);
    return {buffer_.get(), count_, columns_.length, step_, 1};
  }

  // Copies the strip that was loaded last back to the image.
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

// Both functions call action(strip) for the strips of the columns from left to right. In
// change_column_strips() the action may change the pixels.
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

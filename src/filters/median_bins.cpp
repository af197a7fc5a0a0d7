// Medians of windows of any size.
//
// Histograms of the columns over the rows of the window slide down with the rows. They lie bin by bin: bin v
// of all columns is one row of counts. So the counts of windows are sums of neighbours in it, and one
// comparison takes the search for a rank past a bin in all windows of a row.
//
// The search has two steps. Groups of 16 values are counted too, and their running total tells for each
// window the group that holds the rank, and how many pixels lie below it. Only the groups that some window
// asks for are then searched value by value.
//
// The picture is worked in strips of columns, so that the bins stay in the nearest caches and the windows of
// a strip ask for few groups.

#include "filters/median_bins.h"

#include <algorithm>

#include "frame/buffer.h"
#include "frame/row_kernel.h"
#include "frame/window_sums.h"

namespace nuv {
namespace {

constexpr std::ptrdiff_t kGroups = 16;
constexpr std::ptrdiff_t kGroupSize = 16;

// ---- row kernels ----

// Counts the pixels of one group in, or out again.
template <class Count>
NUV_ROW_KERNEL void count_group(const uint8_t* pixels, uint8_t group, Count step, Count* NUV_RESTRICT counts,
                                std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    counts[x] = static_cast<Count>(counts[x] + (pixels[x] >> 4 == group ? step : 0));
  }
}

// How many of the rows of counts are passed before the pixel of that rank, and how many pixels they hold.
// The last row cannot be passed.
template <class Count>
NUV_ROW_KERNEL void find_group(const Count* counts, std::ptrdiff_t stride, Count rank,
                               uint8_t* NUV_RESTRICT groups, Count* NUV_RESTRICT below, std::ptrdiff_t n) {
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    Count total = 0;
    Count passed = 0;
    uint8_t group = 0;
    for (std::ptrdiff_t g = 0; g < kGroups - 1; ++g) {
      total = static_cast<Count>(total + counts[g * stride + x]);
      passed = total < rank ? total : passed;
      group = static_cast<uint8_t>(group + (total < rank ? 1 : 0));
    }
    groups[x] = group;
    below[x] = passed;
  }
}

// The same inside a group, for the places that ask for it.
template <class Count>
NUV_ROW_KERNEL void find_value(const Count* counts, std::ptrdiff_t stride, Count rank, const uint8_t* groups,
                               const Count* below, uint8_t group, uint8_t* NUV_RESTRICT values,
                               std::ptrdiff_t n) {
  const auto first = static_cast<uint8_t>(group * kGroupSize);
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    Count total = below[x];
    uint8_t value = first;
    for (std::ptrdiff_t v = 0; v < kGroupSize - 1; ++v) {
      total = static_cast<Count>(total + counts[v * stride + x]);
      value = static_cast<uint8_t>(value + (total < rank ? 1 : 0));
    }
    values[x] = groups[x] == group ? value : values[x];
  }
}

// A bit for each group that is there.
NUV_ROW_KERNEL uint32_t groups_present(const uint8_t* groups, std::ptrdiff_t n) {
  uint32_t present = 0;
  for (std::ptrdiff_t x = 0; x < n; ++x) present |= 1U << groups[x];
  return present;
}

// ---- the bins of a strip ----

template <class Count>
class ColumnBins {
 public:
  // For windows of 2m + 1 of the image's columns. A strip shares no more than half of its columns with the
  // next.
  ColumnBins(std::ptrdiff_t m, std::ptrdiff_t image_columns)
      : m_(m),
        stride_(whole_vectors(std::min(std::max<std::ptrdiff_t>(6 * m, 128), image_columns))),
        counts_(allocate<Count>(static_cast<std::size_t>(size()))),
        below_(allocate<Count>(static_cast<std::size_t>(stride_))),
        groups_(allocate<uint8_t>(static_cast<std::size_t>(stride_))),
        values_(allocate<uint8_t>(static_cast<std::size_t>(stride_))) {
    for (Buffer<Count>& sums : sums_) sums = allocate<Count>(static_cast<std::size_t>(searched() + 2 * m_));
  }

  bool allocated() const { return counts_ && below_ && groups_ && values_ && sums_[0] && sums_[1]; }
  // How many windows a strip has.
  std::ptrdiff_t places() const { return stride_ - 2 * m_; }

  void clear() { std::fill_n(counts_.get(), size(), Count{0}); }

  void add(const uint8_t* pixels, std::ptrdiff_t columns) { count(pixels, columns, 1); }
  void remove(const uint8_t* pixels, std::ptrdiff_t columns) {
    count(pixels, columns, static_cast<Count>(-1));
  }

  // The value of that rank, from 1, in the windows of the first n places.
  const uint8_t* ranked(Count rank, std::ptrdiff_t n) {
    find_group(window_sums(counts_.get()), stride_, rank, groups_.get(), below_.get(), stride_);
    const uint32_t present = groups_present(groups_.get(), n);
    for (std::ptrdiff_t g = 0; g < kGroups; ++g) {
      if ((present >> g & 1) == 0) continue;
      find_value(window_sums(bins() + g * kGroupSize * stride_), stride_, rank, groups_.get(), below_.get(),
                 static_cast<uint8_t>(g), values_.get(), stride_);
    }
    return values_.get();
  }

 private:
  // The groups, the bins, and what the sums of the last windows read behind them.
  std::ptrdiff_t size() const { return (kGroups + kGroups * kGroupSize) * stride_ + 2 * m_; }
  std::ptrdiff_t searched() const { return (kGroupSize - 1) * stride_; }
  Count* bins() { return counts_.get() + kGroups * stride_; }

  static std::ptrdiff_t whole_vectors(std::ptrdiff_t n) { return (n + 63) / 64 * 64; }

  void count(const uint8_t* pixels, std::ptrdiff_t columns, Count step) {
    for (std::ptrdiff_t g = 0; g < kGroups; ++g) {
      count_group(pixels, static_cast<uint8_t>(g), step, counts_.get() + g * stride_, columns);
    }
    Count* column = bins();
    for (std::ptrdiff_t x = 0; x < columns; ++x, ++column) {
      Count& bin = column[pixels[x] * stride_];
      bin = static_cast<Count>(bin + step);
    }
  }

  // The rows that a search reads are summed as one. What runs over into the next row lies behind the places.
  const Count* window_sums(const Count* rows) {
    return neighbour_sums(rows, searched(), 2 * m_ + 1, 1, sums_[0].get(), sums_[1].get());
  }

  std::ptrdiff_t m_;
  std::ptrdiff_t stride_;
  Buffer<Count> counts_;
  Buffer<Count> below_;
  Buffer<uint8_t> groups_;
  Buffer<uint8_t> values_;
  Buffer<Count> sums_[2];
};

// Rows y1..y2 of a strip of windows, the first of which starts at column x.
template <class Count>
void write_strip(ColumnBins<Count>& bins, GrayImage source, uint8_t* result, int32_t m, int32_t n, int32_t y1,
                 int32_t y2, int32_t x, std::ptrdiff_t places) {
  const std::ptrdiff_t columns = places + 2 * static_cast<std::ptrdiff_t>(m);
  bins.clear();
  int32_t first_in = std::max(y1 - n, 0);
  int32_t last_in = first_in - 1;
  for (int32_t y = y1; y <= y2; ++y) {
    const int32_t bottom = y + std::min(n, source.height - 1 - y);
    while (last_in < bottom) bins.add(source.at(x, ++last_in), columns);
    while (first_in < y - n) bins.remove(source.at(x, first_in++), columns);
    const int64_t area = static_cast<int64_t>(last_in - first_in + 1) * (2 * static_cast<int64_t>(m) + 1);
    const auto lower = static_cast<Count>((area + 1) / 2);
    const auto upper = static_cast<Count>(area / 2 + 1);
    uint8_t* out = result + (source.at(x + m, y) - source.pixels);
    std::copy_n(bins.ranked(upper, places), places, out);
    if (lower == upper) continue;
    uint8_t value = x == 0 ? out[0] : out[-1];
    const uint8_t* least = bins.ranked(lower, places);
    for (std::ptrdiff_t i = 0; i < places; ++i) out[i] = value = std::clamp(value, least[i], out[i]);
  }
}

template <class Count>
bool write_medians_counting_in(GrayImage source, uint8_t* result, int32_t m, int32_t n, int32_t y1,
                               int32_t y2) {
  ColumnBins<Count> bins(m, source.width);
  if (!bins.allocated()) return false;
  const std::ptrdiff_t places = source.width - 2 * static_cast<std::ptrdiff_t>(m);
  for (std::ptrdiff_t x = 0; x < places; x += bins.places()) {
    write_strip(bins, source, result, m, n, y1, y2, static_cast<int32_t>(x),
                std::min(bins.places(), places - x));
  }
  return true;
}

}  // namespace

bool write_medians(GrayImage source, uint8_t* result, int32_t m, int32_t n, int32_t y1, int32_t y2) {
  const int64_t rows = std::min<int64_t>(2 * static_cast<int64_t>(n) + 1, source.height);
  const int64_t area = rows * (2 * static_cast<int64_t>(m) + 1);
  if (area <= UINT8_MAX) return write_medians_counting_in<uint8_t>(source, result, m, n, y1, y2);
  if (area <= UINT16_MAX) return write_medians_counting_in<uint16_t>(source, result, m, n, y1, y2);
  return write_medians_counting_in<uint32_t>(source, result, m, n, y1, y2);
}

}  // namespace nuv

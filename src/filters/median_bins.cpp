// Medians of windows of any size, at a cost per pixel that does not depend on the size.
//
// Each column has a histogram over the rows of the window; it slides down with the rows. The histogram of a
// window slides along the row: at each step the histogram of one column is added and that of another one is
// subtracted (S. Perreault and P. Hebert, Median filtering in constant time, 2007). A single running
// histogram (T. S. Huang, G. J. Yang and G. Y. Tang, 1979) is simpler, but its step costs two updates per row
// of the window.
//
// Histograms have two levels, 16 groups of 16 values each. Both levels are cumulative: entry i counts the
// pixels up to group i, or the pixels of one group up to its value i. A pixel adds 1 to its own entry and to
// all later ones. The search for a rank is then one comparison of all 16 entries: the number of entries below
// the rank is the index of the entry sought.
//
// A window needs the counts of all groups, but the values of one group only, the one that holds the median.
// The values of a group are therefore updated only when they are needed.
//
// The image is processed in strips of columns, so that the histograms stay in the nearer caches.

#include "filters/median_bins.h"

#include <algorithm>
#include <cstring>

#include "core/buffer.h"
#include "core/lanes.h"
#include "core/row_kernel.h"

namespace nuv {
namespace {

constexpr int32_t kGroups = 16;

// ---- sixteen counts ----

// A level of a histogram: 16 entries, held in one or more vectors.
template <class Count>
class Counts {
 public:
  Counts() = default;
  // 1 in the entries from first on, 0 before.
  explicit Counts(int32_t first) {
    Count entries[16];
    for (int32_t i = 0; i < 16; ++i) entries[i] = i >= first ? 1 : 0;
    std::memcpy(this, entries, sizeof(entries));
  }

#if NUV_HAS_LANES
  NUV_INLINE void add(const Counts& other) {
    for (int i = 0; i < kParts; ++i) parts_[i] += other.parts_[i];
  }
  NUV_INLINE void subtract(const Counts& other) {
    for (int i = 0; i < kParts; ++i) parts_[i] -= other.parts_[i];
  }
  // The number of entries below the rank. The baseline has no unsigned comparison of wide counts, so the top
  // bit of the difference decides: no wide entry differs from the rank by half the range of its type or more.
  NUV_INLINE int32_t below(Count rank) const {
    constexpr uint64_t kOnes = ~uint64_t{0} / static_cast<Count>(-1);  // 1 in each count of a word
    Part ones{};
    for (int i = 0; i < kParts; ++i) {
      if constexpr (sizeof(Count) == 1) {
        ones -= reinterpret_cast<Part>(parts_[i] < rank);
      } else {
        ones += (parts_[i] - rank) >> (8 * sizeof(Count) - 1);
      }
    }
    uint64_t words[sizeof(Part) / 8];
    std::memcpy(words, &ones, sizeof(Part));
    uint64_t sums = 0;
    for (uint64_t word : words) sums += word;
    return static_cast<int32_t>(sums * kOnes >> (64 - 8 * sizeof(Count)));
  }
  NUV_INLINE void store_to(Count* entries) const {
    std::memcpy(entries, parts_, sizeof(parts_));
  }
#else
  void add(const Counts& other) {
    for (int i = 0; i < 16; ++i) entries_[i] = static_cast<Count>(entries_[i] + other.entries_[i]);
  }
  void subtract(const Counts& other) {
    for (int i = 0; i < 16; ++i) entries_[i] = static_cast<Count>(entries_[i] - other.entries_[i]);
  }
  int32_t below(Count rank) const {
    int32_t count = 0;
    for (int i = 0; i < 16; ++i) count += entries_[i] < rank ? 1 : 0;
    return count;
  }
  void store_to(Count* entries) const {
    std::copy_n(entries_, 16, entries);
  }
#endif

 private:
#if NUV_HAS_LANES
  static constexpr int kPartSize = sizeof(Count) == 1 ? 16 : 32;
  static constexpr int kParts = 16 * sizeof(Count) / kPartSize;
  typedef Count Part __attribute__((vector_size(kPartSize)));

  Part parts_[kParts];
#else
  Count entries_[16];
#endif
};

// What a pixel adds to a level: from[i] is 1 in the entries from i on.
template <class Count>
struct Steps {
  Counts<Count> from[16];

  Steps() {
    for (int32_t i = 0; i < 16; ++i) from[i] = Counts<Count>(i);
  }
};

// ---- the histograms of a strip ----

template <class Count>
struct Histograms {
  Counts<Count>* groups;  // one per column
  Counts<Count>* values;  // kGroups per column, one after the other
};

// Adds a row of pixels if In, and removes another one if Out.
template <class Count, bool In, bool Out>
NUV_ROW_KERNEL void exchange_rows(const Histograms<Count>& histograms, const Steps<Count>& steps,
                                  const uint8_t* in, const uint8_t* out, std::ptrdiff_t columns) {
  Counts<Count>* groups = histograms.groups;
  Counts<Count>* values = histograms.values;
  for (std::ptrdiff_t x = 0; x < columns; ++x, ++groups, values += kGroups) {
    if (In) {
      groups->add(steps.from[in[x] >> 4]);
      values[in[x] >> 4].add(steps.from[in[x] & 15]);
    }
    if (Out) {
      groups->subtract(steps.from[out[x] >> 4]);
      values[out[x] >> 4].subtract(steps.from[out[x] & 15]);
    }
  }
}

// The values of one group in a window. at() moves the window to a place; places only rise. If the new window
// shares no column with the old one, it is summed anew.
template <class Count>
class WindowValues {
 public:
  NUV_INLINE const Counts<Count>& at(std::ptrdiff_t place, const Counts<Count>* values,
                                     std::ptrdiff_t window) {
    if (place - place_ >= window) {
      counts_ = Counts<Count>(16);
      for (std::ptrdiff_t x = place; x < place + window; ++x) counts_.add(values[x * kGroups]);
      place_ = place;
    }
    for (; place_ < place; ++place_) {
      counts_.add(values[(place_ + window) * kGroups]);
      counts_.subtract(values[place_ * kGroups]);
    }
    return counts_;
  }

  void start(std::ptrdiff_t window) { place_ = -window; }

 private:
  Counts<Count> counts_;
  std::ptrdiff_t place_;
};

// Writes the values of a rank, counted from 1, in n windows of a given number of columns.
template <class Count>
NUV_ROW_KERNEL void find_ranked(const Histograms<Count>& histograms, std::ptrdiff_t window, Count rank,
                                uint8_t* NUV_RESTRICT result, std::ptrdiff_t n) {
  Counts<Count> groups(16);
  for (std::ptrdiff_t x = 0; x < window - 1; ++x) groups.add(histograms.groups[x]);
  Count passed[kGroups + 1] = {};  // the pixels before each group
  WindowValues<Count> values[kGroups];
  for (WindowValues<Count>& group : values) group.start(window);
  for (std::ptrdiff_t x = 0; x < n; ++x) {
    groups.add(histograms.groups[x + window - 1]);
    const int32_t group = groups.below(rank);
    groups.store_to(passed + 1);
    const Counts<Count>& counts = values[group].at(x, histograms.values + group, window);
    result[x] = static_cast<uint8_t>(group * 16 + counts.below(static_cast<Count>(rank - passed[group])));
    groups.subtract(histograms.groups[x]);
  }
}

template <class Count>
class Strip {
 public:
  // Windows have 2m + 1 columns. A strip shares at most a third of its columns with the next one.
  Strip(std::ptrdiff_t m, std::ptrdiff_t image_columns)
      : window_(2 * m + 1),
        columns_(std::min(std::max<std::ptrdiff_t>(6 * m, kLeastColumns), image_columns)),
        memory_(allocate<Counts<Count>>(size())) {}

  bool allocated() const { return memory_ != nullptr; }
  // The number of windows in a row of the strip.
  std::ptrdiff_t places() const { return columns_ - window_ + 1; }

  void clear() { std::fill_n(memory_.get(), size(), Counts<Count>(16)); }

  void add(const uint8_t* in, std::ptrdiff_t columns) {
    exchange_rows<Count, true, false>(histograms(), steps_, in, nullptr, columns);
  }
  void remove(const uint8_t* out, std::ptrdiff_t columns) {
    exchange_rows<Count, false, true>(histograms(), steps_, nullptr, out, columns);
  }
  void exchange(const uint8_t* in, const uint8_t* out, std::ptrdiff_t columns) {
    exchange_rows<Count, true, true>(histograms(), steps_, in, out, columns);
  }

  // Writes the values of a rank, counted from 1, in the windows at the first n places.
  void write_ranked(Count rank, uint8_t* result, std::ptrdiff_t n) const {
    find_ranked(histograms(), window_, rank, result, n);
  }

 private:
  static constexpr std::ptrdiff_t kLeastColumns = 384;

  std::ptrdiff_t size() const { return columns_ * (1 + kGroups); }
  Histograms<Count> histograms() const { return {memory_.get(), memory_.get() + columns_}; }

  Steps<Count> steps_;
  std::ptrdiff_t window_;
  std::ptrdiff_t columns_;
  Buffer<Counts<Count>> memory_;
};

// Writes the medians of rows y1..y2 of a strip, whose first window starts at column x.
template <class Count>
void write_strip(Strip<Count>& strip, GrayImage source, GrayImage result, int32_t m, int32_t n, int32_t y1,
                 int32_t y2, int32_t x, std::ptrdiff_t places, uint8_t* spare) {
  const std::ptrdiff_t columns = places + 2 * static_cast<std::ptrdiff_t>(m);
  strip.clear();
  int32_t first_in = std::max(y1 - n, 0);
  int32_t last_in = first_in - 1;
  for (int32_t y = y1; y <= y2; ++y) {
    const int32_t bottom = y + std::min(n, source.height - 1 - y);
    if (last_in == bottom - 1 && first_in == y - n - 1) {
      strip.exchange(source.at(x, ++last_in), source.at(x, first_in++), columns);
    }
    while (last_in < bottom) strip.add(source.at(x, ++last_in), columns);
    while (first_in < y - n) strip.remove(source.at(x, first_in++), columns);
    const int64_t area = static_cast<int64_t>(last_in - first_in + 1) * (2 * static_cast<int64_t>(m) + 1);
    const auto lower = static_cast<Count>((area + 1) / 2);
    const auto upper = static_cast<Count>(area / 2 + 1);
    uint8_t* out = result.at(x + m, y);
    strip.write_ranked(upper, out, places);
    if (lower == upper) continue;
    uint8_t value = x == 0 ? out[0] : out[-1];
    strip.write_ranked(lower, spare, places);
    for (std::ptrdiff_t i = 0; i < places; ++i) out[i] = value = std::clamp(value, spare[i], out[i]);
  }
}

template <class Count>
bool write_medians_counting_in(GrayImage source, GrayImage result, int32_t m, int32_t n, int32_t y1,
                               int32_t y2) {
  Strip<Count> strip(m, source.width);
  const Buffer<uint8_t> spare = allocate<uint8_t>(strip.places());
  if (!strip.allocated() || !spare) return false;
  const std::ptrdiff_t places = source.width - 2 * static_cast<std::ptrdiff_t>(m);
  for (std::ptrdiff_t x = 0; x < places; x += strip.places()) {
    write_strip(strip, source, result, m, n, y1, y2, static_cast<int32_t>(x),
                std::min(strip.places(), places - x), spare.get());
  }
  return true;
}

}  // namespace

bool write_medians(GrayImage source, GrayImage result, int32_t m, int32_t n, int32_t y1, int32_t y2) {
  const int64_t rows = std::min<int64_t>(2 * static_cast<int64_t>(n) + 1, source.height);
  const int64_t area = rows * (2 * static_cast<int64_t>(m) + 1);
  if (area <= UINT8_MAX) return write_medians_counting_in<uint8_t>(source, result, m, n, y1, y2);
  if (area <= INT16_MAX) return write_medians_counting_in<uint16_t>(source, result, m, n, y1, y2);
  return write_medians_counting_in<uint32_t>(source, result, m, n, y1, y2);
}

}  // namespace nuv

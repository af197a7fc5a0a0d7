// Shapes images by their histograms, and draws a histogram into an image.

#include <algorithm>

#include "core/arithmetic.h"
#include "core/byte_counter.h"
#include "core/point_pass.h"
#include "core/views.h"
#include "histogram/histogram.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// An end of a span that the walk over the histograms does not reach. Results are defined with this value.
constexpr int32_t kUnreached = -10;

// The first and the last target bin over which the pixels of each source bin are spread.
struct Spans {
  Histogram low;
  Histogram high;
};

// Walks both histograms together: the pixels of the source bins fill the target bins in order. The target has
// size bins. Returns false and no spans if a histogram is empty.
bool match_spans(const int32_t* source, const int32_t* target, int32_t size, Spans& spans) {
  const auto is_occupied = [](int32_t count) { return count != 0; };
  const auto first_of = [=](const int32_t* bins, int32_t n) {
    return static_cast<int32_t>(std::find_if(bins, bins + n, is_occupied) - bins);
  };
  const auto last_of = [=](const int32_t* bins, int32_t n) {
    while (n > 0 && bins[n - 1] == 0) --n;
    return n - 1;
  };
  int32_t i = first_of(source, kBins);
  int32_t k = first_of(target, size);
  if (i == kBins || k == size) return false;

  spans.low.fill(kUnreached);
  spans.high.fill(kUnreached);
  int32_t rest = source[i];
  spans.low[i] = k;
  while (k < size) {
    if (rest >= target[k]) {
      // The source bin fills this target bin, and perhaps further ones.
      do {
        rest -= target[k];
        ++k;
      } while (k < size && rest >= target[k]);
      --k;
      spans.high[i] = k;
    } else {
      // The target bin takes the rest of the source bin, and further source bins.
      do {
        if (spans.high[i] == kUnreached) spans.high[i] = k;
        if (i + 1 == kBins) break;
        rest += source[++i];
        spans.low[i] = k;
      } while (rest < target[k]);
      if (rest < target[k]) break;  // the target holds more pixels than the source
      rest -= target[k];
    }
    ++k;
  }
  spans.high[last_of(source, kBins)] = last_of(target, size);
  return true;
}

// Maps each pixel to the low byte of place(low, high), with the span of its value.
template <class Place>
void map_by_spans(GrayImage image, const Histogram& bins, const Spans& spans, Place place) {
  ByteTable table{};
  for (int32_t v = 0; v < kBins; ++v) {
    if (bins[v] != 0) table[v] = low_byte(place(spans.low[v], spans.high[v]));
  }
  map_bytes(table, image.pixels, image.size());
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvHistogramEqualizeFast(uint8_t* pGryImg, int32_t width, int32_t height) {
  const GrayImage image{pGryImg, width, height};
  const int32_t area = width * height;
  if (image.empty() || area == 0) return;
  const Histogram bins = histogram_of(image);
  ByteTable table;
  int32_t count = 0;
  for (int32_t v = 0; v < kBins; ++v) {
    count += bins[v];
    table[v] = low_byte(count * 255 / area);
  }
  map_bytes(table, image.pixels, image.size());
}

void NuvHistogramEqualizeStandard(uint8_t* pGryImg, int32_t width, int32_t height) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  const Histogram bins = histogram_of(image);
  const auto occupied =
      static_cast<int32_t>(std::count_if(bins.begin(), bins.end(), [](int32_t count) { return count != 0; }));
  if (occupied == 0) return;
  Histogram target{};
  std::fill_n(target.begin(), occupied, width * height / occupied);
  Spans spans;
  if (!match_spans(bins.data(), target.data(), occupied, spans)) return;
  map_by_spans(image, bins, spans,
               [=](int32_t low, int32_t high) { return truncated((high + low) * 0.5 * (255.0 / occupied)); });
}

void NuvHistogramNormalization(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pTargetHistogram) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  const Histogram bins = histogram_of(image);
  Spans spans;
  if (!match_spans(bins.data(), pTargetHistogram, kBins, spans)) return;
  map_by_spans(image, bins, spans, [](int32_t low, int32_t high) { return (high + low) / 2; });
}

void NuvDrawHistogram2Img(int32_t* pHistogram, int32_t N, uint8_t* pGryImg, int32_t width, int32_t height) {
  const GrayImage image{pGryImg, width, height};
  if (image.empty()) return;
  fill_bytes(pGryImg, 0, image.size());
  if (N < 1) return;
  const int32_t peak = std::max(*std::max_element(pHistogram, pHistogram + N), 0);
  const double per_row = (peak + 1.0) / height;
  const double per_column = static_cast<double>(N) / width;
  for (int32_t i = 0; i < N; ++i) {
    const int32_t bar = std::min(truncated(pHistogram[i] / per_row + 0.5), height);
    const int32_t begin = truncated(i / per_column + 0.5);
    const int32_t end = std::min(truncated((i + 1) / per_column + 0.5), width);
    for (int32_t y = 0; y < bar; ++y) {
      for (int32_t x = begin; x < end; ++x) *image.at(x, y) = 255;
    }
  }
}

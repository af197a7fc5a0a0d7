// Moments of a histogram.
//
// The functions differ in which sums are integer and which are floating, and in what they write for an empty
// histogram. These differences are required.

#include <cmath>
#include <cstdlib>

#include "core/arithmetic.h"
#include "core/byte_counter.h"
#include "core/views.h"
#include "histogram/histogram.h"
#include "nuv/histogram.h"

namespace nuv {

int32_t total(const int32_t* bins) {
  int32_t n = 0;
  for (int32_t v = 0; v < kBins; ++v) n += bins[v];
  return n;
}

namespace {

// The mean. Each product has 32 bits and wraps; the sum is floating.
double mean(const int32_t* bins, int32_t n) {
  double sum = 0.0;
  for (int32_t v = 0; v < kBins; ++v) sum += bins[v] * v;
  return sum / n;
}

struct Spread {
  double squared;
  double absolute;
};

// The sums of squared and of absolute distances from the mean.
Spread spread(const int32_t* bins, double avr) {
  Spread sums{0.0, 0.0};
  for (int32_t v = 0; v < kBins; ++v) {
    const double d = v - avr;
    sums.squared += d * d * bins[v];
    sums.absolute += std::fabs(d) * bins[v];
  }
  return sums;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

int32_t NuvGetImageAvrAndDev(int32_t* pHistogram, double* pAvr, double* pDev) {
  const int32_t n = total(pHistogram);
  if (n == 0) {
    *pAvr = 0.0;
    *pDev = 0.0;
    return 0;
  }
  *pAvr = mean(pHistogram, n);
  *pDev = std::sqrt(spread(pHistogram, *pAvr).squared / n);
  return n;
}

int32_t NuvGetImageAvrAndDev(uint8_t* pGryImg, int32_t width, int32_t height, double* pAvr, double* pDev) {
  Histogram bins = histogram_of({pGryImg, width, height});
  return NuvGetImageAvrAndDev(bins.data(), pAvr, pDev);
}

int32_t NuvGetImageAvrAndDevFast(int32_t* pHistogram, double* pAvr, double* pDev) {
  int32_t n = 0;
  int32_t sum = 0;
  double sum_of_squares = 0.0;
  for (int32_t v = 0; v < kBins; ++v) {
    n += pHistogram[v];
    sum += pHistogram[v] * v;
    sum_of_squares += pHistogram[v] * v * v;
  }
  if (n == 0) {
    *pDev = 0.0;
    return 0;
  }
  *pAvr = static_cast<double>(sum) / n;
  *pDev = std::sqrt(sum_of_squares / n - *pAvr * *pAvr);
  return n;
}

void NuvGetImageAvrAndDif(int32_t* pHistogram, int32_t* pAvr, int32_t* pDif) {
  *pAvr = 0;
  *pDif = 0;
  const int32_t n = total(pHistogram);
  if (n == 0) return;
  int32_t sum = 0;
  for (int32_t v = 0; v < kBins; ++v) sum += v * pHistogram[v];
  const int32_t avr = quotient(sum, n);
  int32_t absolute = 0;
  for (int32_t v = 0; v < kBins; ++v) absolute += std::abs(v - avr) * pHistogram[v];
  *pAvr = avr;
  *pDif = quotient(absolute, n);
}

int32_t NuvGetImageAvrAndDevAndDif(int32_t* pHistogram, double* pAvr, double* pDev, double* pDif) {
  const int32_t n = total(pHistogram);
  if (n == 0) {
    // For an empty histogram, the mean is the value that *pDev held on entry.
    *pAvr = *pDev;
    return 0;
  }
  *pAvr = mean(pHistogram, n);
  const Spread sums = spread(pHistogram, *pAvr);
  *pDev = std::sqrt(sums.squared / n);
  *pDif = sums.absolute / n;
  return n;
}

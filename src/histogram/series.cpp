// Data series: moving filters, resampling, statistics, windows, peaks.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "frame/arithmetic.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// Writes value(sum, window) of each full window of 2|M| + 1 elements at its centre, and that of the first and
// of the last window at the ends.
template <class Value>
void filter_windows(const int32_t* data, int32_t n, int32_t m, int32_t* result, Value value) {
  const int64_t half = std::abs(int64_t{m});
  if (2 * half + 1 > n) return;
  const auto reach = static_cast<int32_t>(half);
  const int32_t window = 2 * reach + 1;
  int32_t sum = 0;
  for (int32_t i = 0; i < window; ++i) sum += data[i];
  std::fill_n(result, reach + 1, value(sum, window));
  for (int32_t i = reach + 1; i < n - reach; ++i) {
    sum += data[i + reach];
    sum -= data[i - reach - 1];
    result[i] = value(sum, window);
  }
  std::fill_n(result + n - reach, reach, result[n - reach - 1]);
}

double root_mean_square_from(const int32_t* data, int32_t n, double mean) {
  double sum = 0.0;
  for (int32_t i = 0; i < n; ++i) sum += (data[i] - mean) * (data[i] - mean);
  return std::sqrt(sum / n);
}

double mean_of(const int32_t* data, int32_t n) {
  double sum = 0.0;
  for (int32_t i = 0; i < n; ++i) sum += data[i];
  return sum / n;
}

// Clears the outputs of a window search, and tells whether there is a window at all.
bool start_window_search(int32_t n, int32_t window, double* best, int32_t* position) {
  *best = 0.0;
  *position = 0;
  return window >= 1 && n >= window;
}

// The first window with the greatest measure above 0, or the first one of all.
struct BestWindow {
  int32_t first = 0;
  double measure = 0.0;

  void offer(int32_t i, double value) {
    if (value > measure) {
      measure = value;
      first = i;
    }
  }
};

constexpr int32_t kMaxPeakData = 4096;

}  // namespace
}  // namespace nuv

using namespace nuv;

void Nuv1DAverageFilter(int32_t* pData, int32_t N, int32_t M, int32_t* pRes) {
  filter_windows(pData, N, M, pRes, [](int32_t sum, int32_t window) { return sum / window; });
}

void NuvBin1DMedianFilter(int32_t* pData, int32_t N, int32_t M, int32_t* pRes) {
  filter_windows(pData, N, M, pRes, [](int32_t sum, int32_t window) { return 2 * sum > window ? 1 : 0; });
}

bool NuvDataLinearInterpolattion(int32_t* pData, int32_t N, int32_t* pRes, int32_t resN) {
  if (N < 2 || resN < 2) return false;
  const double step = static_cast<double>(N - 1) / (resN - 1);
  for (int32_t i = 0; i < resN; ++i) {
    const double position = i * step;
    const int32_t k = truncated(position);
    const double f = position - k;
    // Behind the last element there is nothing to read, and its weight is 0 but for rounding.
    pRes[i] = truncated((1 - f) * pData[k] + f * pData[std::min(k + 1, N - 1)]);
  }
  return true;
}

int32_t NuvDataMaxDataPos(int32_t* pData, int32_t N) {
  int32_t best = 0;
  for (int32_t i = 1; i < N; ++i) {
    if (pData[i] > pData[best]) best = i;
  }
  return best;
}

int32_t NuvDataMaxDataValue(int32_t* pData, int32_t N) {
  return pData[NuvDataMaxDataPos(pData, N)];
}

void NuvDataAvrAndDif(int32_t* pData, int32_t N, double* pAvr, double* pDif) {
  *pAvr = mean_of(pData, N);
  double sum = 0.0;
  for (int32_t i = 0; i < N; ++i) sum += std::fabs(pData[i] - *pAvr);
  *pDif = sum / N;
}

int32_t NuvDataAvrAndDevAndReturnMax(int32_t* pData, int32_t N, double* pAvr, double* pDev) {
  *pAvr = mean_of(pData, N);
  *pDev = root_mean_square_from(pData, N, *pAvr);
  return NuvDataMaxDataValue(pData, N);
}

int32_t NuvDataAvrAndDevAndReturnSum(int32_t* pData, int32_t N, double* pAvr, double* pDev) {
  int32_t sum = 0;
  for (int32_t i = 0; i < N; ++i) sum += pData[i];
  *pAvr = static_cast<double>(sum) / N;
  *pDev = root_mean_square_from(pData, N, *pAvr);
  return sum;
}

bool NuvDataMaxAvrAndPosInMovingWindow(int32_t* pData, int32_t N, int32_t W, double* pMaxAvr, int32_t* pPos) {
  if (!start_window_search(N, W, pMaxAvr, pPos)) return false;
  int32_t sum = 0;
  for (int32_t i = 0; i < W; ++i) sum += pData[i];
  int32_t best = sum;
  int32_t first = 0;
  int32_t ties = 0;
  for (int32_t i = 1; i <= N - W; ++i) {
    sum += pData[i + W - 1] - pData[i - 1];
    if (sum > best) {
      best = sum;
      first = i;
      ties = 0;
    } else if (sum == best) {
      ++ties;
    }
  }
  *pMaxAvr = static_cast<double>(best) / W;
  *pPos = first + ties / 2 + W / 2;
  return true;
}

bool NuvDataMaxDevAndPosInMovingWindow(double* pData, int32_t N, int32_t W, double* pMaxDev, int32_t* pPos) {
  if (!start_window_search(N, W, pMaxDev, pPos)) return false;
  BestWindow best;
  double sum = 0.0;
  for (int32_t i = 0; i < W; ++i) sum += pData[i];
  for (int32_t i = 0; i <= N - W; ++i) {
    if (i > 0) {
      sum += pData[i + W - 1];
      sum -= pData[i - 1];
    }
    const double mean = sum / W;
    double squares = 0.0;
    for (int32_t j = i; j < i + W; ++j) squares += (pData[j] - mean) * (pData[j] - mean);
    best.offer(i, squares);
  }
  *pMaxDev = std::sqrt(best.measure / W);
  *pPos = best.first + W / 2;
  return true;
}

bool NuvDataMaxDifAndPosInMovingWindow(double* pData, int32_t N, int32_t W, double* pMaxDif, int32_t* pPos) {
  if (!start_window_search(N, W, pMaxDif, pPos)) return false;
  BestWindow best;
  for (int32_t i = 0; i <= N - W; ++i) {
    double least = pData[i];
    double most = pData[i];
    for (int32_t j = i + 1; j < i + W; ++j) {
      if (pData[j] < least) least = pData[j];
      if (pData[j] > most) most = pData[j];
    }
    best.offer(i, most - least);
  }
  *pMaxDif = best.measure;
  *pPos = best.first + W / 2;
  return true;
}

int32_t NuvpDataDeleteByWeightReturnNum(int32_t* pData, int32_t* pWeight, int32_t N, int32_t minWeight,
                                        int32_t maxWeight) {
  int32_t kept = 0;
  for (int32_t i = 0; i < N; ++i) {
    if (pWeight[i] < minWeight || pWeight[i] > maxWeight) continue;
    pData[kept] = pData[i];
    pWeight[kept] = pWeight[i];
    ++kept;
  }
  for (int32_t i = kept; i < N; ++i) pData[i] = pWeight[i] = 0;
  return kept;
}

bool NuvDataFindPeaks(double* pData, int32_t N, int32_t minDist, double* pPeakValue, int32_t* pPeakPos,
                      int32_t K) {
  for (int32_t k = 0; k < K; ++k) {
    pPeakValue[k] = 0.0;
    pPeakPos[k] = 0;
  }
  if (N > kMaxPeakData || N < 1) return false;
  std::array<bool, kMaxPeakData> blocked{};
  int32_t position = 0;
  for (int32_t k = 0; k < K; ++k) {
    double value = pData[0];
    for (int32_t i = 0; i < N; ++i) {
      if (!blocked[i] && pData[i] > value) {
        value = pData[i];
        position = i;
      }
    }
    // The plateau is followed upward only: the position told is one behind it.
    int32_t told = position;
    while (told < N && !blocked[told] && pData[told] == value) ++told;
    pPeakValue[k] = value;
    pPeakPos[k] = told;
    const int64_t begin = std::max<int64_t>(int64_t{told} - minDist, 0);
    const int64_t end = std::min<int64_t>(int64_t{told} + minDist, N);
    for (int64_t i = begin; i < end; ++i) blocked[static_cast<std::size_t>(i)] = true;
  }
  return true;
}

// Data series: moving filters, resampling, statistics, windows, peaks.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "core/arithmetic.h"
#include "core/buffer.h"
#include "nuv/histogram.h"

namespace nuv {
namespace {

// Writes value(sum, window) for each full window of 2|M| + 1 elements to the place of its centre. The
// elements at the ends get the value of the first or of the last window.
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

// Clears the outputs of a window search. Returns whether there is a window.
bool start_window_search(int32_t n, int32_t window, double* best, int32_t* position) {
  *best = 0.0;
  *position = 0;
  return window >= 1 && n >= window;
}

// The window with the greatest measure above 0; ties go to the first. If no measure is above 0, it is the
// first window of all.
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

// ---- the window with the greatest difference ----

// The least and the greatest of some elements. A not-a-number is ignored.
struct Extremes {
  double least = std::numeric_limits<double>::infinity();
  double most = -std::numeric_limits<double>::infinity();

  void take_in(double v) { take_in({v, v}); }
  void take_in(Extremes other) {
    least = other.least < least ? other.least : least;
    most = other.most > most ? other.most : most;
  }
};

// Offers the differences of all windows of W elements. The data are cut into blocks as long as a window, so a
// window is the end of a block and the start of the next one. The extremes of the ends are stored, and those of
// the starts grow with them (M. van Herk, 1992; J. Gil and M. Werman, 1993). No step branches on a comparison of
// elements, because such branches are mispredicted. ends has room for W entries.
void offer_differences(const double* data, int32_t n, int32_t W, Extremes* ends, BestWindow& best) {
  for (int64_t block = 0; block <= n - W; block += W) {
    Extremes end;
    for (int32_t i = W - 1; i >= 0; --i) {
      end.take_in(data[block + i]);
      ends[i] = end;
    }
    const double* next = data + block + W;
    Extremes start;
    for (int32_t i = 0; i < W && block + i <= n - W; ++i) {
      if (i > 0) start.take_in(next[i - 1]);
      Extremes window = ends[i];
      window.take_in(start);
      // A window that begins with a not-a-number is passed over.
      if (!std::isnan(data[block + i]))
        best.offer(static_cast<int32_t>(block + i), window.most - window.least);
    }
  }
}

// ---- the window with the greatest deviation ----
//
// The sum of the squares of a window is taken in order, about a mean that carries rounding errors from window
// to window. It cannot be derived from the sum of another window. A first pass bounds the sum of every
// window. A second pass computes the sum only for windows that can be the greatest, and skips those whose sum
// is known to equal an earlier one.

// Sums of the distances of elements from a centre, and of their squares.
struct CentredSums {
  double values = 0.0;
  double squares = 0.0;

  void add(double v) {
    values += v;
    squares += v * v;
  }
};

// Bounds for the sums of squares of the windows, in order. The data are cut into blocks as long as a window.
// A window consists of the end of one block and the start of the next. No element is ever subtracted from a
// sum, so that the rounding error has a bound.
class SquareBounds {
 public:
  // room has one entry per element of a window.
  SquareBounds(const double* data, int32_t n, int32_t window, CentredSums* room)
      : data_(data), n_(n), window_(window), to_block_end_(room) {}

  struct Bounds {
    double least;
    double greatest;
  };
  // The bounds are infinite or not a number if the sums overflow.
  Bounds of_window_at(int32_t first, double mean) {
    if (first % window_ == 0) start_block(first);
    if (first > block_) after_block_.add(data_[first + window_ - 1] - centre_);
    const double values = to_block_end_[first - block_].values + after_block_.values;
    const double squares = to_block_end_[first - block_].squares + after_block_.squares;
    const double d = mean - centre_;
    const double middle = squares - 2 * d * values + window_ * d * d;
    // A sum is rounded fewer times than the window has elements, and its terms are rounded a few times more.
    // The magnitude of 2*d*values is at most squares + window*d*d. The last summand is for terms too small
    // for full precision.
    const double error = 16 * (window_ + 16.0) * kRounding * (squares + window_ * d * d) +
                         (window_ + 16.0) * std::numeric_limits<double>::min();
    return {middle - error, middle + error};
  }

 private:
  static constexpr double kRounding = std::numeric_limits<double>::epsilon() / 2;

  void start_block(int32_t first) {
    block_ = first;
    const int64_t reach = std::min(2 * int64_t{window_} - 1, int64_t{n_} - first);
    double sum = 0.0;
    for (int64_t i = 0; i < reach; ++i) sum += data_[first + i];
    centre_ = sum / static_cast<double>(reach);
    after_block_ = {};
    CentredSums sums;
    for (int32_t i = window_ - 1; i >= 0; --i) {
      sums.add(data_[first + i] - centre_);
      to_block_end_[i] = sums;
    }
  }

  const double* const data_;
  const int32_t n_;
  const int32_t window_;
  CentredSums* const to_block_end_;  // from each place of the block to its end
  CentredSums after_block_;
  int32_t block_ = 0;
  double centre_ = 0.0;
};

// The sum after so many additions of term, each rounded.
double with_repeated_term(double sum, double term, int32_t times) {
  while (times > 3) {
    const double second = sum + term;
    const double third = second + term;
    const double fourth = third + term;
    times -= 3;
    if (third == fourth || std::isinf(fourth)) return fourth;
    sum = fourth;
    // Between two powers of 2, all sums are multiples of one unit, and each addition is rounded by the same
    // amount. A term halfway between two multiples is rounded to the even sum. From the second addition on,
    // that is the same amount each time, too.
    const int exponent = std::ilogb(second);
    if (std::ilogb(fourth) != exponent) continue;
    const double step = fourth - third;
    const double steps = std::floor((std::ldexp(1.0, exponent + 1) - fourth) / step) - 1;
    if (steps < 1) continue;
    const auto taken = static_cast<int32_t>(std::min<double>(steps, times));
    sum += taken * step;
    times -= taken;
  }
  for (; times > 0; --times) sum += term;
  return sum;
}

// The sum of the squared distances from the mean, of the elements first to end - 1, in order. run_ends gives
// for each element the place after its run of equal elements.
double squares_about(double mean, const double* data, const int32_t* run_ends, int32_t first, int32_t end) {
  double squares = 0.0;
  while (first < end) {
    const int32_t run_end = std::min(run_ends[first], end);
    const double square = (data[first] - mean) * (data[first] - mean);
    squares = with_repeated_term(squares, square, run_end - first);
    first = run_end;
  }
  return squares;
}

// The difference of two elements if it is exact; otherwise not a number.
double exact_difference(double a, double b) {
  const double difference = a - b;
  const double b_seen = a - difference;
  const double rounding = (a - (difference + b_seen)) + (b_seen - b);
  return rounding == 0 ? difference : std::numeric_limits<double>::quiet_NaN();
}

// A stretch of the data that repeats itself after a period, with each element higher by the same rise. Two
// windows of it that are a period apart have the same squares if their means differ by the rise.
class Repetition {
 public:
  Repetition(const double* data, int32_t n, int32_t window)
      : data_(data), n_(n), window_(window), comparisons_left_(8 * int64_t{n}) {}

  struct Equal {
    int32_t distance = 0;  // 0 where no equal window is known
    double rise = 0.0;
  };
  // The earlier window that equals the window at first up to the rise. Calls come in the order of the
  // windows.
  Equal equal_before(int32_t first) {
    if (int64_t{first} + window_ > end_) find(first);
    return first - equal_.distance >= begin_ && int64_t{first} + window_ <= end_ ? equal_ : Equal{};
  }

 private:
  // Finds the shortest period with which the data repeat themselves, from first on, for a window or more.
  // Finds none once the limit of comparisons is reached.
  void find(int32_t first) {
    const int32_t longest = n_ - first - window_;
    for (int32_t period = 1; period <= longest && comparisons_left_ > 0; ++period) {
      const double rise = exact_difference(data_[first + period], data_[first]);
      int32_t end = first + period;
      while (end < n_ && exact_difference(data_[end], data_[end - period]) == rise) ++end;
      comparisons_left_ -= end - first - period + 1;
      if (end - first - period < window_) continue;
      begin_ = first;
      end_ = end;
      equal_ = {period, rise};
      return;
    }
  }

  const double* const data_;
  const int32_t n_;
  const int32_t window_;
  int64_t comparisons_left_;
  int32_t begin_ = 0;
  int32_t end_ = 0;
  Equal equal_;
};

struct WindowOfSquares {
  double mean;
  double greatest;  // upper bound of its squares
};

// Computes the mean of each window and an upper bound of its squares. Returns a lower bound of the greatest
// squares of all windows.
double bound_squares(const double* data, int32_t n, int32_t window, CentredSums* room,
                     WindowOfSquares* windows) {
  SquareBounds bounds(data, n, window, room);
  double reached = 0.0;
  double sum = 0.0;
  for (int32_t i = 0; i < window; ++i) sum += data[i];
  for (int32_t i = 0; i <= n - window; ++i) {
    if (i > 0) {
      sum += data[i + window - 1];
      sum -= data[i - 1];
    }
    const double mean = sum / window;
    const auto [least, greatest] = bounds.of_window_at(i, mean);
    windows[i] = {mean, greatest};
    if (std::isfinite(greatest) && least > reached) reached = least;
  }
  return reached;
}

// For each element, the place after its run of equal elements.
void find_run_ends(const double* data, int32_t n, int32_t* ends) {
  int32_t end = n;
  for (int32_t i = n - 1; i >= 0; --i) {
    if (i + 1 < n && data[i] != data[i + 1]) end = i + 1;
    ends[i] = end;
  }
}

// ---- peaks ----

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
    // The last element stands in for the one after it, whose weight is 0 up to rounding.
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
  int32_t greatest = pData[0];
  for (int32_t i = 1; i < N; ++i) greatest = pData[i] > greatest ? pData[i] : greatest;
  return greatest;
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
  // The squares of a window with an element that is not finite, and of all windows after it, are not a
  // number.
  const double* stop = std::find_if(pData, pData + N, [](double v) { return !std::isfinite(v); });
  const auto n = static_cast<int32_t>(stop - pData);
  BestWindow best;
  if (n >= W) {
    const int32_t count = n - W + 1;
    const auto windows = allocate<WindowOfSquares>(count);
    const auto room = allocate<CentredSums>(W);
    const auto run_ends = allocate<int32_t>(n);
    if (!windows || !room || !run_ends) return false;
    const double reached = bound_squares(pData, n, W, room.get(), windows.get());
    find_run_ends(pData, n, run_ends.get());
    Repetition repetition(pData, n, W);
    for (int32_t i = 0; i < count && !std::isinf(best.measure); ++i) {
      const auto [mean, greatest] = windows[i];
      if (greatest < reached) continue;
      const auto [distance, rise] = repetition.equal_before(i);
      if (distance > 0 && exact_difference(mean, windows[i - distance].mean) == rise) continue;
      best.offer(i, squares_about(mean, pData, run_ends.get(), i, i + W));
    }
  }
  *pMaxDev = std::sqrt(best.measure / W);
  *pPos = best.first + W / 2;
  return true;
}

bool NuvDataMaxDifAndPosInMovingWindow(double* pData, int32_t N, int32_t W, double* pMaxDif, int32_t* pPos) {
  if (!start_window_search(N, W, pMaxDif, pPos)) return false;
  const Buffer<Extremes> ends = allocate<Extremes>(W);
  if (!ends) return false;
  BestWindow best;
  offer_differences(pData, N, W, ends.get(), best);
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
    // The plateau is followed upward only. The position returned is the one after it.
    int32_t after_plateau = position;
    while (after_plateau < N && !blocked[after_plateau] && pData[after_plateau] == value) ++after_plateau;
    pPeakValue[k] = value;
    pPeakPos[k] = after_plateau;
    const int64_t begin = std::max<int64_t>(int64_t{after_plateau} - minDist, 0);
    const int64_t end = std::min<int64_t>(int64_t{after_plateau} + minDist, N);
    bool blocks_more = false;
    for (int64_t i = begin; i < end; ++i) {
      bool& element = blocked[static_cast<std::size_t>(i)];
      blocks_more = blocks_more || !element;
      element = true;
    }
    if (!blocks_more) {
      // No flag has changed, so all further rounds have the same result.
      std::fill(pPeakValue + k + 1, pPeakValue + K, value);
      std::fill(pPeakPos + k + 1, pPeakPos + K, after_plateau);
      break;
    }
  }
  return true;
}

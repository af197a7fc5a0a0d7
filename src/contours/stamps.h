// One chain drawn from many places.
//
// The pixels drawn are all sums of a place and a point of the chain. They are the terms of a product of two
// polynomials: one has a term per place, the other a term per point of the chain. If there are many places
// and codes, a number-theoretic transform computes the product. Its time is n log n for n pixels, not places
// times codes.

#ifndef NUV_CONTOURS_STAMPS_H
#define NUV_CONTOURS_STAMPS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "contours/chain.h"
#include "core/buffer.h"
#include "core/views.h"

namespace nuv {

// Products of polynomials modulo a prime and x^n - 1, where n is a power of two. See J. M. Pollard, The fast
// Fourier transform in a finite field, 1971.
class CyclicProduct {
 public:
  static constexpr std::size_t kMostTerms = std::size_t{1} << 23;

  explicit CyclicProduct(std::size_t n) : n_(n), roots_(allocate<uint32_t>(n)) {
    if (!roots_) return;
    // The roots of order 2 * half begin at index half.
    const uint32_t root = power(kGenerator, (kPrime - 1) / static_cast<uint32_t>(n));
    uint32_t r = 1;
    for (std::size_t i = n / 2; i < n; ++i, r = product(r, root)) roots_[i] = r;
    for (std::size_t i = n / 2; i-- > 1;) roots_[i] = roots_[2 * i];
  }
  bool allocated() const { return roots_ != nullptr; }

  // Multiplies a by b and overwrites b. Both have n coefficients. That of x^k in the product, times n, comes
  // to index -k modulo n of a.
  void multiply(uint32_t* a, uint32_t* b) const {
    transform(a);
    transform(b);
    for (std::size_t i = 0; i < n_; ++i) a[i] = product(a[i], b[i]);
    for (std::size_t half = 1; half < n_; half *= 2) {
      for (uint32_t* low = a; low < a + n_; low += 2 * half) {
        uint32_t* const high = low + half;
        for (std::size_t i = 0; i < half; ++i) {
          const uint32_t turned = product(high[i], roots_[half + i]);
          high[i] = difference(low[i], turned);
          low[i] = sum(low[i], turned);
        }
      }
    }
  }

 private:
  static constexpr uint32_t kPrime = 998244353;  // 119 * 2^23 + 1
  static constexpr uint32_t kGenerator = 3;

  static uint32_t product(uint32_t a, uint32_t b) {
    return static_cast<uint32_t>(static_cast<uint64_t>(a) * b % kPrime);
  }
  static uint32_t sum(uint32_t a, uint32_t b) { return a + b < kPrime ? a + b : a + b - kPrime; }
  static uint32_t difference(uint32_t a, uint32_t b) { return a < b ? a + kPrime - b : a - b; }
  static uint32_t power(uint32_t base, uint32_t exponent) {
    uint32_t result = 1;
    for (; exponent != 0; exponent >>= 1, base = product(base, base)) {
      if ((exponent & 1) != 0) result = product(result, base);
    }
    return result;
  }

  // Transforms a. The values come out in bit-reversed order.
  void transform(uint32_t* a) const {
    for (std::size_t half = n_ / 2; half > 0; half /= 2) {
      for (uint32_t* low = a; low < a + n_; low += 2 * half) {
        uint32_t* const high = low + half;
        for (std::size_t i = 0; i < half; ++i) {
          const uint32_t l = low[i];
          low[i] = sum(l, high[i]);
          high[i] = product(difference(l, high[i]), roots_[half + i]);
        }
      }
    }
  }

  std::size_t n_;
  Buffer<uint32_t> roots_;
};

// Collects places in the order of rows, and draws a chain with 255 from each of them. Pixels outside the
// image are left out.
class StampedChain {
 public:
  // If may_wait is false, every place is drawn at once.
  StampedChain(GrayImage result, bool may_wait) : result_(result), may_wait_(may_wait) {}

  void add(Point place, const uint8_t* codes, int32_t n) {
    constexpr int32_t kShortChain = 256;
    if (may_wait_ && n > kShortChain && !places_) {
      places_ = allocate<Point>(result_.size());
      may_wait_ = places_ != nullptr;
    }
    if (may_wait_ && n > kShortChain) {
      places_[static_cast<std::size_t>(count_++)] = place;
    } else {
      stamp({place, codes, n});
    }
  }

  // Draws the chain from the places collected. Call this before the codes change.
  void draw(const uint8_t* codes, int32_t n) {
    if (count_ == 0) return;
    if (!multiply({{0, 0}, codes, n})) {
      for (int32_t i = 0; i < count_; ++i) stamp({places_[static_cast<std::size_t>(i)], codes, n});
    }
    count_ = 0;
  }

 private:
  void stamp(const Chain& chain) const {
    walk_start_and_ends(chain, [this](Point p) {
      if (result_.contains(p.x, p.y)) *result_.at(p.x, p.y) = 255;
    });
  }

  template <class Visit>
  void for_each_place(Visit visit) const {
    for (int32_t i = 0; i < count_; ++i) visit(places_[static_cast<std::size_t>(i)]);
  }

  // Visits the points of a chain from (0, 0) that lie in the image if the chain starts somewhere in the box
  // of the places.
  template <class Visit>
  void for_each_step(const Chain& chain, Region places, Visit visit) const {
    const Region reach{-places.x2, result_.width - 1 - places.x1, -places.y2, result_.height - 1 - places.y1};
    walk_start_and_ends(chain, [&](Point p) {
      if (reach.contains(p.x, p.y)) visit(p);
    });
  }

  // Draws all places by products. Draws nothing and returns false if single stamps are faster or if an
  // allocation fails.
  bool multiply(const Chain& chain) const {
    Region places = Region::of(places_[0]);
    for_each_place([&](Point p) { places.take_in(p); });
    Region steps = Region::of({0, 0});
    for_each_step(chain, places, [&](Point p) { steps.take_in(p); });
    // A row holds all sums of columns, so no sum runs into the next row.
    const auto row =
        static_cast<std::size_t>(places.columns()) + static_cast<std::size_t>(steps.columns()) - 1;
    const auto most_rows = static_cast<int32_t>(CyclicProduct::kMostTerms / row);
    if (most_rows < 2) return false;
    const bool in_one = places.rows() + steps.rows() <= most_rows;
    const int32_t place_rows = in_one ? places.rows() : most_rows / 2;
    const int32_t step_rows = in_one ? steps.rows() : most_rows / 2;
    std::size_t n = 2;
    int64_t rounds = 1;
    for (; n < row * static_cast<std::size_t>(place_rows + step_rows); n *= 2) ++rounds;
    const int64_t blocks =
        ((places.rows() - 1) / place_rows + 1) * static_cast<int64_t>((steps.rows() - 1) / step_rows + 1);
    constexpr int64_t kStampsPerRound = 6;
    if (static_cast<int64_t>(chain.n) * count_ < blocks * kStampsPerRound * rounds * static_cast<int64_t>(n))
      return false;

    const CyclicProduct product(n);
    const Buffer<uint32_t> a = allocate<uint32_t>(n);
    const Buffer<uint32_t> b = allocate<uint32_t>(n);
    if (!product.allocated() || !a || !b) return false;
    // Sets the terms of the points in a block of rows.
    const auto take = [row](uint32_t* terms, Region box, int32_t first_row, int32_t rows) {
      return [=](Point p) {
        if (p.y < first_row || p.y - first_row >= rows) return;
        terms[static_cast<std::size_t>(p.y - first_row) * row + static_cast<std::size_t>(p.x - box.x1)] = 1;
      };
    };
    for (int32_t y1 = places.y1; y1 <= places.y2; y1 += place_rows) {
      for (int32_t y2 = steps.y1; y2 <= steps.y2; y2 += step_rows) {
        const int32_t top = y1 + y2;
        const int32_t bottom = top + place_rows + step_rows - 2;
        if (top >= result_.height || bottom < 0) continue;
        std::fill_n(a.get(), n, 0U);
        std::fill_n(b.get(), n, 0U);
        for_each_place(take(a.get(), places, y1, place_rows));
        for_each_step(chain, places, take(b.get(), steps, y2, step_rows));
        product.multiply(a.get(), b.get());
        draw_terms(a.get(), n, row, {places.x1 + steps.x1, 0, top, bottom});
      }
    }
    return true;
  }

  // Draws the terms. They lie in rows, and the first is the upper left corner of the box.
  void draw_terms(const uint32_t* terms, std::size_t n, std::size_t row, Region box) const {
    for (int32_t y = std::max(box.y1, 0); y <= std::min(box.y2, result_.height - 1); ++y) {
      const std::size_t k = static_cast<std::size_t>(y - box.y1) * row;
      for (std::size_t i = 0; i < row; ++i) {
        const int32_t x = box.x1 + static_cast<int32_t>(i);
        if (terms[(n - k - i) & (n - 1)] != 0 && x >= 0 && x < result_.width) *result_.at(x, y) = 255;
      }
    }
  }

  GrayImage result_;
  bool may_wait_;
  Buffer<Point> places_;
  int32_t count_ = 0;
};

}  // namespace nuv

#endif

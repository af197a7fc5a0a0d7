// The Hough line detector.

#ifndef NUV_LINES_HOUGH_LINES_H
#define NUV_LINES_HOUGH_LINES_H

#include <array>
#include <cstdint>

#include "core/buffer.h"
#include "core/views.h"

namespace nuv {

constexpr int32_t kThetas = 181;  // entries of the tables: 0 to 180 degrees

// A line in ABC and in Hough form.
struct HoughLine {
  double a = 0.0;
  double b = 0.0;
  double c = 0.0;
  int32_t thro = 0;
  int32_t theta = 0;
};

// The points of a transform, in the host's arrays. During the transform they are relative to their centre.
struct HoughPoints {
  int32_t* x;
  int32_t* y;
  int32_t n;
};

class NuvHoughLines {
 public:
  NuvHoughLines();
  virtual ~NuvHoughLines() = default;

  bool initialize(int32_t width, int32_t height);

  // Each returns the strength of the strongest line, 0 for none.
  int32_t transform(HoughPoints points, int32_t theta1, int32_t theta2);
  int32_t transform(HoughPoints points, const bool* theta_mask);
  int32_t transform(HoughPoints points, const int32_t* thetas, const bool* excluded, int32_t d_theta);
  // The strongest line apart from those already taken.
  int32_t next(int32_t d_thro, int32_t d_theta);

  bool is_searching() const { return peak_count_ > 0 && peak_count_ < kMaxPeaks; }
  const HoughLine& line() const { return line_; }

 private:
  static constexpr int32_t kMaxPeaks = 1024;

  // A cell of the accumulator, and its count.
  struct Peak {
    int32_t row;
    int32_t column;
    int32_t count;
  };

  // One row per Theta, one cell per Thro.
  struct Space {
    int32_t theta_base;
    int32_t n_theta;
    int32_t n_thro;
    Point centre;
  };

  template <class Vote>
  int32_t transform(HoughPoints points, Region box, int32_t theta_base, int64_t n_theta, Vote vote);
  void vote_row(HoughPoints points, const Space& space, int32_t theta);
  int32_t* row_of(const Space& space, int32_t theta);
  template <class Refuse>
  Peak strongest(const Space& space, Refuse refuse) const;
  int32_t take(const Peak& peak);

  std::array<int32_t, kThetas> cos_table_;
  std::array<int32_t, kThetas> sin_table_;

  int64_t capacity_area_ = 0;
  int64_t accumulator_size_ = 0;
  Buffer<int32_t> accumulator_;

  // The state of the last transform that found a line.
  Space space_{};
  std::array<Peak, kMaxPeaks> peaks_;
  int32_t peak_count_ = 0;
  HoughLine line_;
};

}  // namespace nuv

#endif

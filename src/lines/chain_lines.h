// The chain-line detector.

#ifndef NUV_LINES_CHAIN_LINES_H
#define NUV_LINES_CHAIN_LINES_H

#include <cstdint>

#include "core/buffer.h"
#include "core/views.h"
#include "lines/chain_cutter.h"
#include "nuv/records.h"

namespace nuv {

class NuvImgChainLines {
 public:
  virtual ~NuvImgChainLines() = default;

  struct Settings {
    Straightness straightness;
    int32_t gradient_threshold;
    int32_t max_lines;
  };

  bool initialize(int32_t width, int32_t height, const Settings& settings);
  int32_t detect(GrayImage image, bool fit_lines);
  bool next_run(int32_t** x, int32_t** y, int32_t* n);
  TAVI_LINE_SEGMENT* segments() { return fit_lines_ ? segments_.get() : nullptr; }
  int32_t show(uint8_t* panels);

 private:
  // A run of points in the point store.
  struct Run {
    int32_t n;
    int32_t offset;
  };

  void allocate_for_pixels(int32_t pixels);
  void allocate_for_lines(int32_t lines);
  bool has_memory() const { return capacity_pixels_ > 0 && capacity_lines_ > 0; }
  bool source_fits(int32_t pixels) const;
  void drop_results();
  void find_edges(GrayImage edges);
  void process_chain(Point start, int32_t n);
  bool is_spent(const Piece& piece) const;
  void record_fitted(const Piece& piece);
  void mark(Point start, uint8_t* codes, int32_t n);
  int32_t* x_at(int32_t i) const { return point_x_.get() + point_cursor_ + i; }
  int32_t* y_at(int32_t i) const { return point_y_.get() + point_cursor_ + i; }

  Settings settings_{};
  bool fit_lines_ = false;

  GrayImage source_{nullptr, 0, 0};
  int32_t init_pixels_ = 0;

  // Memory by the number of pixels. There is room for two codes and two points per pixel, because the walk
  // around a thin edge passes each of its pixels twice.
  int32_t capacity_pixels_ = 0;
  Buffer<uint8_t> edges_;
  Buffer<uint8_t> scratch_;  // eight bytes per pixel
  Buffer<uint8_t> codes_;
  Buffer<int32_t> point_x_;
  Buffer<int32_t> point_y_;

  // Memory by the number of lines.
  int32_t capacity_lines_ = 0;
  Buffer<Piece> pieces_;
  Buffer<Run> runs_;
  Buffer<TAVI_LINE_SEGMENT> segments_;

  int32_t next_run_ = 0;
  int32_t point_cursor_ = 0;  // the next free entry of the point store
  int32_t n_lines_ = 0;
};

}  // namespace nuv

#endif

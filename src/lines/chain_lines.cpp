// The chain-line detector: edges, chains, straight pieces, fitted segments.
//
// All memory is allocated when the detector is sized. The points of all chains lie in one store, and a result
// is a run of that store. The edge image also records which pixels are used: a piece that was taken is marked
// as background, and a later piece of the same chain that mostly repeats marked pixels is dropped. The tracer
// follows a thin edge there and back, and this rule keeps the way back from giving the same line again.

#include "lines/chain_lines.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "contours/marks.h"
#include "contours/trace.h"
#include "nuv/contours.h"
#include "nuv/drawing.h"
#include "nuv/edges.h"
#include "nuv/lines.h"

namespace nuv {
namespace {

constexpr int32_t kShortestPiece = 6;
constexpr uint8_t kSpent = kExaminedBackground;

// With these settings both edge detectors apply the same filter. The integer detector is faster, and the
// exact one serves low thresholds.
constexpr int32_t kEdgeShift = 2;
constexpr double kEdgeWeight = 0.25;
constexpr int32_t kLeastFastThreshold = 8;

// Tests whether a point is nearer to a line than two thirds of a pixel.
class Nearness {
 public:
  explicit Nearness(const TAVI_LINE_SEGMENT& line) : line_(line) {
    limit_ = 2 * std::sqrt(line.A * line.A + line.B * line.B);
  }
  bool operator()(int32_t x, int32_t y) const {
    return 3 * std::fabs(line_.A * x + line_.B * y + line_.C) < limit_;
  }

 private:
  const TAVI_LINE_SEGMENT& line_;
  double limit_;
};

void copy_clipped(const uint8_t* source, std::size_t n, uint8_t* panel) {
  std::transform(source, source + n, panel, [](uint8_t v) { return std::min(v, kGreatestUnreserved); });
}

}  // namespace

bool NuvImgChainLines::initialize(int32_t width, int32_t height, const Settings& settings) {
  settings_ = settings;
  settings_.straightness.min_length = std::max(settings.straightness.min_length, kShortestPiece);
  settings_.gradient_threshold = std::max(settings.gradient_threshold, 1);
  const int64_t pixels = width < 1 || height < 1 ? 0 : int64_t{width} * height;
  const bool is_countable = pixels <= std::numeric_limits<int32_t>::max();
  init_pixels_ = is_countable ? static_cast<int32_t>(pixels) : 0;
  if (init_pixels_ > capacity_pixels_) allocate_for_pixels(init_pixels_);
  if (settings.max_lines > capacity_lines_) allocate_for_lines(settings.max_lines);
  return is_countable && has_memory();
}

// The memory held is freed before more is allocated, and the results are dropped with it. A capacity stays 0
// unless all of its buffers are allocated, so that a later call tries again.

void NuvImgChainLines::allocate_for_pixels(int32_t pixels) {
  drop_results();
  capacity_pixels_ = 0;
  edges_.reset();
  scratch_.reset();
  codes_.reset();
  point_x_.reset();
  point_y_.reset();
  const int64_t n = pixels;
  edges_ = allocate<uint8_t>(n);
  scratch_ = allocate<uint8_t>(n * int64_t{sizeof(double)});
  codes_ = allocate<uint8_t>(2 * n);
  point_x_ = allocate<int32_t>(2 * n);
  point_y_ = allocate<int32_t>(2 * n);
  if (edges_ && scratch_ && codes_ && point_x_ && point_y_) capacity_pixels_ = pixels;
}

void NuvImgChainLines::allocate_for_lines(int32_t lines) {
  drop_results();
  capacity_lines_ = 0;
  pieces_.reset();
  runs_.reset();
  segments_.reset();
  pieces_ = allocate<Piece>(lines);
  runs_ = allocate<Run>(lines);
  segments_ = allocate<TAVI_LINE_SEGMENT>(lines);
  if (pieces_ && runs_ && segments_) capacity_lines_ = lines;
}

void NuvImgChainLines::drop_results() {
  n_lines_ = 0;
  next_run_ = 0;
}

// Whether the detector has memory, and the source has at most the given number of pixels.
bool NuvImgChainLines::source_fits(int32_t pixels) const {
  if (!has_memory() || source_.width < 0 || source_.height < 0) return false;
  return static_cast<int64_t>(source_.width) * source_.height <= pixels;
}

void NuvImgChainLines::find_edges(GrayImage edges) {
  const int32_t threshold = settings_.gradient_threshold;
  if (threshold >= kLeastFastThreshold) {
    NuvShenJunEdgeFast(source_.pixels, scratch_.get(), source_.width, source_.height, kEdgeShift, threshold,
                       edges.pixels);
  } else {
    NuvShenJunEdgeFine(source_.pixels, reinterpret_cast<double*>(scratch_.get()), source_.width,
                       source_.height, kEdgeWeight, threshold, edges.pixels);
  }
}

int32_t NuvImgChainLines::detect(GrayImage image, bool fit_lines) {
  source_ = image;
  fit_lines_ = fit_lines;
  n_lines_ = 0;
  if (!source_fits(init_pixels_)) return 0;

  const GrayImage edges{edges_.get(), image.width, image.height};
  find_edges(edges);
  next_run_ = 0;
  point_cursor_ = 0;
  const auto follow = [&](ContourStart start) {
    const int32_t n = NuvTraceContour(edges.pixels, edges.width, start.x, start.y, codes_.get(),
                                      2 * image.width * image.height, start.is_outer);
    if (n >= settings_.straightness.min_length) process_chain({start.x, start.y}, n);
  };
  for (int32_t y = 1; y < image.height - 1; ++y) {
    scan_row_for_contours(edges, y, 1, image.width - 1, follow);
  }
  return n_lines_;
}

// Cuts the chain in codes_ and records its pieces.
void NuvImgChainLines::process_chain(Point start, int32_t n) {
  if (static_cast<int64_t>(point_cursor_) + n > 2 * static_cast<int64_t>(capacity_pixels_)) return;
  uint8_t* codes = codes_.get();
  NuvChain2Points(start.x, start.y, codes, n, x_at(0), y_at(0));
  const int32_t n_pieces =
      cut_chain({codes, x_at(0), y_at(0), n}, settings_.straightness, pieces_.get(), settings_.max_lines);
  for (int32_t i = 0; i < n_pieces; ++i) {
    const Piece& piece = pieces_[static_cast<std::size_t>(i)];
    if (i > 0 && is_spent(piece)) continue;
    if (fit_lines_) {
      record_fitted(piece);
    } else if (n_lines_ < settings_.max_lines) {
      runs_[static_cast<std::size_t>(n_lines_++)] = {piece.codes + 1, point_cursor_ + piece.start};
    }
    // The last piece is marked below, with the whole chain.
    if (i < n_pieces - 1) mark(piece.begin, codes + piece.start, piece.codes);
  }
  mark(start, codes, n);
  point_cursor_ += n + 1;
}

void NuvImgChainLines::mark(Point start, uint8_t* codes, int32_t n) {
  NuvMarkChainByColor(edges_.get(), source_.width, start.x, start.y, codes, n, kSpent);
}

// Whether over 80 percent of a piece is marked.
bool NuvImgChainLines::is_spent(const Piece& piece) const {
  const GrayImage edges{edges_.get(), source_.width, source_.height};
  int32_t spent = 0;
  for (int32_t i = piece.start; i <= piece.start + piece.codes; ++i) {
    spent += *edges.at(*x_at(i), *y_at(i)) == kSpent;
  }
  return spent * 10 > piece.codes * 8;
}

// Fits a line to a piece, clips the piece to the points near the line, and records both. The run can reach
// beyond the start of the piece, and can lose points at its end.
void NuvImgChainLines::record_fitted(const Piece& piece) {
  const int32_t n = piece.codes + 1;
  int32_t trim = trimmed_share(settings_.straightness.min_straightness, n);
  if (n - 2 * trim < 3) --trim;
  int32_t is_vertical = 0;
  double k = 0.0;
  double b = 0.0;
  double angle = 0.0;
  const bool fitted = NuvFittingLineTwiceByMean(x_at(piece.start + trim), y_at(piece.start + trim),
                                                reinterpret_cast<int32_t*>(scratch_.get()), n - 2 * trim,
                                                &is_vertical, &k, &b, &angle);
  if (!fitted || n_lines_ >= settings_.max_lines) return;

  TAVI_LINE_SEGMENT& segment = segments_[static_cast<std::size_t>(n_lines_)];
  NuvKBLine2ABCLine(is_vertical, k, b, &segment.A, &segment.B, &segment.C);
  const Nearness near(segment);
  const auto is_near = [&](int32_t i) { return near(*x_at(i), *y_at(i)); };
  int32_t low = piece.start + 2;
  for (int32_t i = low; i >= 0 && is_near(i); --i) low = i;
  int32_t high = piece.start + piece.codes;
  for (int32_t drops = 0; drops <= trim && high > low && !is_near(high); ++drops) --high;
  runs_[static_cast<std::size_t>(n_lines_)] = {high - low + 1, point_cursor_ + low};

  Region box = Region::of({*x_at(low), *y_at(low)});
  for (int32_t i = low; i <= high; ++i) {
    if (i == low + trim && i != high) continue;  // this one point is left out of the box
    box.take_in({*x_at(i), *y_at(i)});
  }
  NuvABCLine2KBLine(segment.A, segment.B, segment.C, &is_vertical, &k, &b);
  NuvKBLineBeginEndPoint(source_.width, source_.height, box.x1, box.x2, box.y1, box.y2, is_vertical, k, b,
                         &segment.x1, &segment.y1, &segment.x2, &segment.y2);
  ++n_lines_;
}

bool NuvImgChainLines::next_run(int32_t** x, int32_t** y, int32_t* n) {
  if (next_run_ >= n_lines_) return false;
  const Run& run = runs_[static_cast<std::size_t>(next_run_++)];
  *x = point_x_.get() + run.offset;
  *y = point_y_.get() + run.offset;
  *n = run.n;
  return true;
}

int32_t NuvImgChainLines::show(uint8_t* panels) {
  if (source_.empty()) return n_lines_;
  const auto n = static_cast<std::size_t>(source_.size());
  const auto panel = [=](int32_t i) {
    return GrayImage{panels + static_cast<std::size_t>(i) * n, source_.width, source_.height};
  };

  copy_clipped(source_.pixels, n, panel(0).pixels);
  std::memset(panel(1).pixels, 0, n);
  if (source_fits(capacity_pixels_)) find_edges(panel(1));
  std::memset(panel(2).pixels, 0, n);
  int32_t* x = nullptr;
  int32_t* y = nullptr;
  int32_t count = 0;
  while (next_run(&x, &y, &count)) {
    for (int32_t i = 0; i < count; ++i) *panel(2).at(x[i], y[i]) = kTracedContour;
  }
  next_run_ = 0;

  std::memset(panel(4).pixels, 0, n);
  copy_clipped(source_.pixels, n, panel(5).pixels);
  for (std::size_t i = 0; i < n; ++i) {
    const bool on_run = panel(2).pixels[i] != 0;
    panel(3).pixels[i] = on_run ? 0 : panel(1).pixels[i];
    if (on_run && !fit_lines_) panel(5).pixels[i] = 255;
  }
  if (fit_lines_) {
    for (int32_t i = 0; i < n_lines_; ++i) {
      const TAVI_LINE_SEGMENT& s = segments_[static_cast<std::size_t>(i)];
      for (int32_t p : {4, 5}) {
        NuvGryLine(panel(p).pixels, source_.width, source_.height, s.x1, s.y1, s.x2, s.y2, 255);
      }
    }
  }
  return n_lines_;
}

namespace {

NuvImgChainLines chain_lines;

}  // namespace
}  // namespace nuv

using namespace nuv;

bool NuvImgChainLines_Initialize(int32_t width, int32_t height, double minStraightness, double maxDeviation,
                                 int32_t minLength, int32_t grdThreshold, int32_t maxLines) {
  return chain_lines.initialize(width, height,
                                {{minStraightness, maxDeviation, minLength}, grdThreshold, maxLines});
}

int32_t NuvImgChainLines_DoBinImg(uint8_t* pGryImg, int32_t width, int32_t height, bool bFitLines) {
  return NuvImgChainLines_DoGryImg(pGryImg, width, height, bFitLines);
}

int32_t NuvImgChainLines_DoGryImg(uint8_t* pGryImg, int32_t width, int32_t height, bool bFitLines) {
  return chain_lines.detect({pGryImg, width, height}, bFitLines);
}

bool NuvImgChainLines_GetNxtCodeLine(int32_t** ppX, int32_t** ppY, int32_t* pN) {
  return chain_lines.next_run(ppX, ppY, pN);
}

TAVI_LINE_SEGMENT* NuvImgChainLines_GetLines() {
  return chain_lines.segments();
}

int32_t NuvImgChainLines_Debug(uint8_t* pResImg) {
  return chain_lines.show(pResImg);
}

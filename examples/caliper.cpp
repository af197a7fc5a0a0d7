#include "caliper.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>

#include "NuvImgSDK2014DLL.h"
#include "plan.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int32_t kFraction = 1024;  // parts of a gray value in profiles, and of a pixel in fits

Place turned(double along, double across, double degrees) {
  const double angle = degrees * kPi / 180;
  return {along * std::cos(angle) - across * std::sin(angle),
          along * std::sin(angle) + across * std::cos(angle)};
}

// A rectangle read out of the picture. Its rows lie along the search. Between pixels, the library rounds gray
// levels down, which would move the edges of a clean picture towards the bright side by some hundredths of a
// pixel. In the inverted picture, edges move to the other side, so the mean of both stays in place.
struct Strip {
  Picture pixels;
  Picture inverted;
  int32_t x0 = 0;
  int32_t y0 = 0;
  double angle = 0;

  // The place in the picture, by the formula of NuvCopyRectFromRotateCCS. The difference between its angle in
  // radians and the true one matters at the far end of a long rectangle.
  Place place_of(double column, double row) const {
    const double radians = angle * 3.1415 / 180;
    const double c = std::trunc(std::cos(radians) * 65536) / 65536;
    const double s = std::trunc(std::sin(radians) * 65536) / 65536;
    return {x0 + column * c - row * s, y0 + column * s + row * c};
  }
};

// The first pixel of a strip has whole coordinates, so the strip may lie up to half a pixel beside the
// rectangle. Edges are not moved by that, because place_of() starts from the same pixel.
Strip strip_of(Subject& subject, const Feature& rectangle) {
  Strip strip;
  const auto columns = static_cast<int32_t>(std::lround(rectangle.length));
  const auto rows = static_cast<int32_t>(std::lround(rectangle.width));
  strip.angle = rectangle.angle;
  const Place corner = turned((columns - 1) / 2.0, (rows - 1) / 2.0, rectangle.angle);
  strip.x0 = static_cast<int32_t>(std::lround(rectangle.x - corner.x));
  strip.y0 = static_cast<int32_t>(std::lround(rectangle.y - corner.y));
  const auto read = [&](Picture& source) {
    Picture result = blank(columns, rows);
    if (NuvCopyRectFromRotateCCS(source.pixels.data(), source.width, source.height, strip.x0, strip.y0,
                                 strip.angle, 0, result.pixels.data(), columns, rows)) {
      throw std::runtime_error(rectangle.name + " leaves the picture, which is " + size_text(source) +
                               " pixels large; the last row and column do not count");
    }
    return result;
  };
  strip.pixels = read(subject.gray);
  strip.inverted = read(subject.inverted);
  return strip;
}

// The sum of each column over rows first to last.
std::vector<int32_t> column_sums(Picture& pixels, int32_t first, int32_t last) {
  std::vector<int32_t> sums(static_cast<std::size_t>(pixels.width));
  std::vector<int32_t> row_sums(static_cast<std::size_t>(pixels.height));
  NuvGryImgPrjXYInRect(pixels.pixels.data(), pixels.width, pixels.height, 0, pixels.width - 1, first, last,
                       sums.data(), row_sums.data());
  return sums;
}

// The slope of the smoothed mean of rows first to last: element i lies between columns i and i + 1. Three box
// filters come near to a Gaussian.
std::vector<double> slope_of(Strip& strip, int32_t first, int32_t last, int32_t smooth) {
  std::vector<int32_t> profile = column_sums(strip.pixels, first, last);
  const std::vector<int32_t> inverted = column_sums(strip.inverted, first, last);
  const int64_t rows = last - first + 1;
  for (std::size_t i = 0; i < profile.size(); ++i) {
    const int64_t doubled = profile[i] + 255 * rows - inverted[i];
    profile[i] = static_cast<int32_t>(doubled * kFraction / (2 * rows));
  }
  std::vector<int32_t> filtered(profile.size());
  for (int32_t pass = 0; pass < 3; ++pass) {
    Nuv1DAverageFilter(profile.data(), strip.pixels.width, smooth, filtered.data());
    profile.swap(filtered);
  }
  std::vector<double> slope;
  for (std::size_t i = 0; i + 1 < profile.size(); ++i) {
    slope.push_back(static_cast<double>(profile[i + 1] - profile[i]) / kFraction);
  }
  return slope;
}

struct Edge {
  double column = 0;  // in the strip
  double step = 0;    // in gray values
};

// The edge at the peak of the slope. Between elements, the slope near a peak is taken for a Gaussian, whose
// logarithm is a parabola. The step is the whole rise or fall around the peak.
Edge edge_at(const std::vector<double>& slope, std::size_t peak) {
  std::size_t begin = peak;
  std::size_t end = peak;
  while (begin > 0 && slope[begin - 1] > 0) --begin;
  while (end < slope.size() && slope[end] > 0) ++end;
  Edge edge;
  for (std::size_t i = begin; i < end; ++i) edge.step += slope[i];
  edge.column = static_cast<double>(peak) + 0.5;
  if (peak == begin || peak + 1 == end) return edge;
  const double before = std::log(slope[peak - 1]);
  const double after = std::log(slope[peak + 1]);
  const double curvature = before + after - 2 * std::log(slope[peak]);
  if (curvature < 0) edge.column += std::clamp((before - after) / (2 * curvature), -0.5, 0.5);
  return edge;
}

// The strongest edges between two columns, by falling slope. direction: 1 for rising edges, -1 for falling ones.
std::vector<Edge> edges_of(std::vector<double> slope, int32_t direction, double from, double to,
                           const Search& search) {
  constexpr int32_t kMost = 8;
  for (double& value : slope) value *= direction;
  // NuvDataFindPeaks compares with the first element, which is 0 here, and reports the position after a peak.
  std::vector<double> series = {0};
  for (std::size_t i = 0; i < slope.size(); ++i) {
    const double column = static_cast<double>(i) + 0.5;
    series.push_back(column < from || column > to ? 0 : std::max(slope[i], 0.0));
  }
  std::array<double, kMost> values{};
  std::array<int32_t, kMost> positions{};
  NuvDataFindPeaks(series.data(), static_cast<int32_t>(series.size()), 2 * search.smooth + 1, values.data(),
                   positions.data(), kMost);
  std::vector<Edge> edges;
  for (std::size_t i = 0; i < kMost && values[i] > 0; ++i) {
    const Edge edge = edge_at(slope, static_cast<std::size_t>(positions[i] - 2));
    if (edge.step >= search.threshold) edges.push_back(edge);
  }
  return edges;
}

std::string no_edge(const Search& search) {
  return "no edge of " + text_of(search.threshold, 0) + " gray values or more";
}

std::string too_few(std::size_t points, std::size_t places) {
  return "an edge at only " + std::to_string(points) + " of " + std::to_string(places) + " places";
}

// The value below which half of the others lie.
double median_of(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Removes points that lie much farther off than most. Returns whether there were any.
template <class Point>
bool remove_outliers(std::vector<Point>& points, const std::vector<double>& distances) {
  constexpr double kLeast = 0.1;  // in pixels; closer points are never outliers
  const double limit = kLeast + 4 * median_of(distances);
  std::vector<Point> kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (distances[i] <= limit) kept.push_back(points[i]);
  }
  const bool has_changed = kept.size() < points.size();
  points = std::move(kept);
  return has_changed;
}

constexpr int32_t kRounds = 5;  // of fits without outliers

// An edge across a strip: column = slope*row + base, in pixels.
struct Line {
  double slope = 0;
  double base = 0;
  double deviation = 0;
  std::vector<Place> points;  // in the strip
};

// A line through points whose x lies along the search. Fits of the library take whole numbers, so coordinates
// are in fractions of a pixel. If there is no line across the strip, nothing is returned.
std::optional<Line> line_through(std::vector<Place> points) {
  for (int32_t round = 0;; ++round) {
    std::vector<int32_t> xs;
    std::vector<int32_t> ys;
    for (const Place& p : points) {
      xs.push_back(static_cast<int32_t>(std::lround(p.x * kFraction)));
      ys.push_back(static_cast<int32_t>(std::lround(p.y * kFraction)));
    }
    int32_t is_steep = 0;
    Line line;
    double angle = 0;
    double farthest = 0;
    NuvFittingLine(xs.data(), ys.data(), static_cast<int32_t>(points.size()), &is_steep, &line.slope,
                   &line.base, &angle, &line.deviation, &farthest);
    if (is_steep == 0) return std::nullopt;
    std::vector<double> distances;
    for (std::size_t i = 0; i < points.size(); ++i) {
      distances.push_back(NuvDistFromPoint2KBLine(xs[i], ys[i], is_steep, line.slope, line.base) / kFraction);
    }
    line.points = points;
    line.base /= kFraction;
    line.deviation /= kFraction;
    if (round == kRounds || points.size() < 4 || !remove_outliers(points, distances)) return line;
  }
}

// The coarse places of the edges of a rectangle: one, or two opposite ones.
struct CoarseEdge {
  double column;
  int32_t direction;
};

std::vector<CoarseEdge> coarse_edges(const std::vector<double>& slope, const Feature& feature,
                                     const Search& search, std::string& reason) {
  const double end = static_cast<double>(slope.size());
  const std::vector<Edge> rising = edges_of(slope, 1, 0, end, search);
  const std::vector<Edge> falling = edges_of(slope, -1, 0, end, search);
  if (rising.empty() && falling.empty()) {
    reason = no_edge(search);
    return {};
  }
  const bool may_rise = feature.light != Light::kDark;
  const bool may_fall = feature.light != Light::kBright;
  if (feature.kind == FeatureKind::kEdge) {
    const bool has_rise = may_rise && !rising.empty();
    const bool has_fall = may_fall && !falling.empty();
    if (has_rise && (!has_fall || rising[0].step >= falling[0].step)) return {{rising[0].column, 1}};
    if (has_fall) return {{falling[0].column, -1}};
    reason = feature.light == Light::kBright ? "the only edges fall" : "the only edges rise";
    return {};
  }
  double best = 0;
  std::vector<CoarseEdge> pair;
  for (const Edge& up : rising) {
    for (const Edge& down : falling) {
      if (up.column < down.column ? !may_rise : !may_fall) continue;
      if (up.step + down.step <= best) continue;
      best = up.step + down.step;
      pair = {{up.column, 1}, {down.column, -1}};
    }
  }
  if (pair.empty()) reason = "no pair of opposite edges";
  if (!pair.empty() && pair[0].column > pair[1].column) std::swap(pair[0], pair[1]);
  return pair;
}

// The line along one edge, from the bands of the strip.
std::optional<Line> line_at(Strip& strip, const CoarseEdge& coarse, const Search& search,
                            std::string& reason) {
  constexpr double kSteepest = 0.3;  // of an edge, in columns a row
  constexpr int32_t kBands = 8;      // at least, where there are as many rows
  constexpr int32_t kMostRows = 8;   // of a band
  const int32_t rows = strip.pixels.height;
  const int32_t band = std::clamp(rows / kBands, 1, kMostRows);
  std::vector<Place> points;
  std::size_t bands = 0;
  for (int32_t first = 0; first + band <= rows; first += band, ++bands) {
    const double row = first + (band - 1) / 2.0;
    const double slack = 3 + 2 * search.smooth + kSteepest * std::fabs(row - (rows - 1) / 2.0);
    const std::vector<double> slope = slope_of(strip, first, first + band - 1, search.smooth);
    const std::vector<Edge> edges =
        edges_of(slope, coarse.direction, coarse.column - slack, coarse.column + slack, search);
    if (!edges.empty()) points.push_back({edges[0].column, row});
  }
  std::optional<Line> line;
  const std::size_t found = points.size();
  if (found >= 3) line = line_through(std::move(points));
  if (line && line->points.size() >= 3 && 2 * line->points.size() >= bands) return line;
  reason = found >= 3 && !line ? "the edge lies along the search"
                               : too_few(line ? line->points.size() : found, bands);
  return std::nullopt;
}

void add_line(Measurement& result, const Strip& strip, const Line& line) {
  for (const Place& p : line.points) result.points.push_back(strip.place_of(p.x, p.y));
  const double last = strip.pixels.height - 1;
  result.lines.push_back({strip.place_of(line.base, 0), strip.place_of(line.base + line.slope * last, last)});
}

Measurement measured_in_rectangle(Subject& subject, const Feature& feature, const Search& search) {
  Measurement result;
  Strip strip = strip_of(subject, feature);
  const std::vector<CoarseEdge> coarse = coarse_edges(
      slope_of(strip, 0, strip.pixels.height - 1, search.smooth), feature, search, result.reason);
  std::vector<Line> lines;
  for (const CoarseEdge& edge : coarse) {
    const std::optional<Line> line = line_at(strip, edge, search, result.reason);
    if (!line) return result;
    lines.push_back(*line);
    add_line(result, strip, *line);
  }
  if (lines.empty()) return result;

  // Everything is stated in the middle of the rectangle. There, two edges that are not quite parallel have the
  // mean of their distances from each other.
  const double row = (strip.pixels.height - 1) / 2.0;
  double column = 0;
  double slope = 0;
  double squares = 0;
  for (const Line& line : lines) {
    column += (line.slope * row + line.base) / static_cast<double>(lines.size());
    slope += line.slope / static_cast<double>(lines.size());
    squares += line.deviation * line.deviation / static_cast<double>(lines.size());
  }
  if (lines.size() == 2) {
    for (std::size_t i = 0; i < 2; ++i) {
      const auto fraction = [](double value) { return static_cast<int32_t>(std::lround(value * kFraction)); };
      const Line& other = lines[1 - i];
      result.size += NuvDistFromPoint2KBLine(fraction(lines[i].slope * row + lines[i].base), fraction(row), 1,
                                             other.slope, other.base * kFraction) /
                     kFraction / 2;
    }
  }
  result.centre = strip.place_of(column, row);
  result.angle = std::remainder(feature.angle - std::atan(slope) * 180 / kPi, 360.0);
  result.deviation = std::sqrt(squares);
  return result;
}

struct Circle {
  Place centre{};
  double radius = 0;
};

double distance_of(const Circle& circle, const Place& p) {
  return std::hypot(p.x - circle.centre.x, p.y - circle.centre.y) - circle.radius;
}

// One step of Gauss and Newton towards the circle with the least sum of squared distances. The normal
// equations for the changes of x, y and the radius are solved by Cramer's rule.
bool improve(Circle& circle, const std::vector<Place>& points) {
  double xx = 0, xy = 0, yy = 0, x1 = 0, y1 = 0, xd = 0, yd = 0, d1 = 0;
  const auto n = static_cast<double>(points.size());
  for (const Place& p : points) {
    const double length = NuvDistBetweenPoint12(p.x, p.y, circle.centre.x, circle.centre.y);
    if (length == 0) return false;
    const double x = (p.x - circle.centre.x) / length;
    const double y = (p.y - circle.centre.y) / length;
    const double d = length - circle.radius;
    xx += x * x;
    xy += x * y;
    yy += y * y;
    x1 += x;
    y1 += y;
    xd += x * d;
    yd += y * d;
    d1 += d;
  }
  const auto determinant = [](double a, double b, double c, double d, double e, double f, double g, double h,
                              double i) {
    return a * (e * i - f * h) - b * (d * i - f * g) + c * (d * h - e * g);
  };
  const double whole = determinant(xx, xy, x1, xy, yy, y1, x1, y1, n);
  if (!(std::fabs(whole) > 1e-9 * n * n * n)) return false;
  circle.centre.x += determinant(xd, xy, x1, yd, yy, y1, d1, y1, n) / whole;
  circle.centre.y += determinant(xx, xd, x1, xy, yd, y1, x1, d1, n) / whole;
  circle.radius += determinant(xx, xy, xd, xy, yy, yd, x1, y1, d1) / whole;
  return circle.radius > 0;
}

// The circle through the points, without outliers, which are removed.
std::optional<Circle> circle_through(std::vector<Place>& points, const Circle& start) {
  constexpr int32_t kSteps = 10;
  Circle circle = start;
  for (int32_t round = 0;; ++round) {
    for (int32_t step = 0; step < kSteps; ++step) {
      if (points.size() < 3 || !improve(circle, points)) return std::nullopt;
    }
    std::vector<double> distances(points.size());
    std::transform(points.begin(), points.end(), distances.begin(),
                   [&circle](const Place& p) { return std::fabs(distance_of(circle, p)); });
    if (round == kRounds || !remove_outliers(points, distances)) return circle;
  }
}

constexpr int32_t kRayRows = 3;
constexpr double kGreatestDeviation = 0.2;  // of points from a circle, as a share of the reach

// The search rectangles of a circle: rays that meet its radius all around.
std::vector<Feature> rays_of(const Feature& circle) {
  const auto n = static_cast<int32_t>(std::clamp(2 * kPi * circle.radius / kRayRows, 8.0, 720.0));
  std::vector<Feature> rays;
  for (int32_t i = 0; i < n; ++i) {
    Feature ray;
    ray.name = circle.name;
    ray.angle = 360.0 * i / n;
    const Place middle = turned(circle.radius, 0, ray.angle);
    ray.x = circle.x + middle.x;
    ray.y = circle.y + middle.y;
    ray.length = 2 * circle.reach + 1;
    ray.width = kRayRows;
    rays.push_back(ray);
  }
  return rays;
}

Measurement measured_in_ring(Subject& subject, const Feature& feature, const Search& search) {
  Measurement result;
  const std::vector<Feature> rays = rays_of(feature);
  // The strongest edge of each ray, apart for falling edges, which surround a bright inside, and rising ones.
  std::array<std::vector<Place>, 2> points;
  std::array<double, 2> steps{};
  for (const Feature& ray : rays) {
    Strip strip = strip_of(subject, ray);
    const std::vector<double> slope = slope_of(strip, 0, kRayRows - 1, search.smooth);
    for (std::size_t i = 0; i < 2; ++i) {
      if (feature.light == (i == 0 ? Light::kDark : Light::kBright)) continue;
      const std::vector<Edge> edges =
          edges_of(slope, i == 0 ? -1 : 1, 0, static_cast<double>(slope.size()), search);
      if (edges.empty()) continue;
      // Rows beside the middle one meet the circle nearer its centre. This is the mean of it over the rows.
      const double bend = 1 / (kRayRows * feature.radius);
      points[i].push_back(strip.place_of(edges[0].column + bend, (kRayRows - 1) / 2.0));
      steps[i] += edges[0].step;
    }
  }
  result.points = std::move(points[steps[1] > steps[0] ? 1 : 0]);
  const std::size_t found = result.points.size();
  if (found == 0) {
    result.reason = no_edge(search);
    return result;
  }
  const auto circle = circle_through(result.points, {{feature.x, feature.y}, feature.radius});
  const std::size_t used = circle ? result.points.size() : found;
  double deviation = 0;
  for (const Place& p : result.points) {
    if (circle) deviation += std::pow(distance_of(*circle, p), 2) / static_cast<double>(used);
  }
  deviation = std::sqrt(deviation);
  const bool is_round = circle && deviation <= kGreatestDeviation * feature.reach;
  if (!is_round || 2 * used < rays.size()) {
    result.reason = 2 * used < rays.size() ? too_few(used, rays.size()) : "the edge points form no circle";
    result.points.clear();
    return result;
  }
  result.size = 2 * circle->radius;
  result.centre = circle->centre;
  result.deviation = deviation;
  return result;
}

}  // namespace

Subject::Subject(const Picture& picture) : gray(picture), inverted(picture) {
  NuvInvertGryValue(inverted.pixels.data(), inverted.width, inverted.height);
}

int32_t least_length(const Search& search) {
  return 3 * (2 * search.smooth + 1) + 2;
}

std::array<Place, 4> corners_of(const Feature& rectangle) {
  std::array<Place, 4> corners{};
  constexpr int32_t kSigns[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
  for (std::size_t i = 0; i < 4; ++i) {
    const Place p = turned(kSigns[i][0] * (rectangle.length - 1) / 2,
                           kSigns[i][1] * (rectangle.width - 1) / 2, rectangle.angle);
    corners[i] = {rectangle.x + p.x, rectangle.y + p.y};
  }
  return corners;
}

Measurement measured(Subject& subject, const Feature& feature, const Search& search) {
  return feature.kind == FeatureKind::kCircle ? measured_in_ring(subject, feature, search)
                                              : measured_in_rectangle(subject, feature, search);
}

// Measures parts in photographs: widths, edges and circles, to a fraction of a pixel.
//
// Most gauging takes these steps: a search rectangle around each edge, edge points, and a line or a circle
// through them. caliper.cpp measures; this file reads what to measure, states it and draws it.

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "caliper.h"
#include "gauge_features.h"
#include "host.h"
#include "marks.h"
#include "picture.h"

namespace {

constexpr Colour kOrange = {40, 170, 255};
constexpr Colour kYellow = {60, 230, 255};
constexpr Colour kRed = {70, 70, 255};

struct Options {
  std::string file;
  std::vector<std::string> widths;
  std::vector<std::string> edges;
  std::vector<std::string> circles;
  Search search;
  double mm_per_pixel = 0;  // 0: results are in pixels

  std::vector<Feature> features;  // of the file and of the options
};

struct Found {
  const Feature* feature;
  Measurement measurement;
};

// Reads what to measure. Features of options have a letter and a number as their names.
void complete(Options& options) {
  if (!options.file.empty()) options.features = features_of_file(options.file);
  const auto add = [&](FeatureKind kind, char letter, const std::vector<std::string>& all) {
    int32_t number = 0;
    for (const std::string& values : all) {
      options.features.push_back(feature_of_option(kind, letter + std::to_string(++number), values));
    }
  };
  add(FeatureKind::kWidth, 'W', options.widths);
  add(FeatureKind::kEdge, 'E', options.edges);
  add(FeatureKind::kCircle, 'C', options.circles);
  if (options.features.empty()) {
    throw UsageError("there is nothing to measure: give --features, --width, --edge or --circle");
  }
  const int32_t least = least_length(options.search);
  for (const Feature& f : options.features) {
    const bool is_circle = f.kind == FeatureKind::kCircle;
    if ((is_circle ? 2 * f.reach + 1 : f.length) >= least) continue;
    throw UsageError(
        f.name + ": --smooth " + std::to_string(options.search.smooth) + " needs a " +
        (is_circle ? "REACH of " + std::to_string(least / 2) : "LENGTH of " + std::to_string(least)) +
        " or more");
  }
}

std::string unit_of(const Options& options) {
  return options.mm_per_pixel > 0 ? "mm" : "px";
}

double in_unit(double pixels, const Options& options) {
  return options.mm_per_pixel > 0 ? pixels * options.mm_per_pixel : pixels;
}

Place moved(Place from, double distance, double degrees) {
  const double angle = degrees * std::acos(-1.0) / 180;
  return {from.x + distance * std::cos(angle), from.y + distance * std::sin(angle)};
}

void draw_search(Marks& marks, const Feature& feature, Colour colour) {
  if (feature.kind == FeatureKind::kCircle) {
    for (const double side : {-1.0, 1.0}) {
      marks.circle({feature.x, feature.y}, feature.radius + side * feature.reach, colour, 0.7);
    }
    return;
  }
  const std::array<Place, 4> corners = corners_of(feature);
  for (std::size_t i = 0; i < 4; ++i) marks.line(corners[i], corners[(i + 1) % 4], colour, 0.7);
}

void draw_found(Marks& marks, const Feature& feature, const Measurement& m, const Options& options) {
  if (feature.kind == FeatureKind::kCircle) marks.circle(m.centre, m.size / 2, kGreen);
  for (const auto& line : m.lines) marks.line(line[0], line[1], kGreen);
  constexpr double kCross = 4;  // in units; crosses that would touch the one before are left out
  const Place* before = nullptr;
  for (const Place& point : m.points) {
    const double gap = 1.5 * kCross * marks.unit();
    if (before != nullptr && std::hypot(point.x - before->x, point.y - before->y) < gap) continue;
    marks.cross(point, kOrange, kCross);
    before = &point;
  }
  std::string text = feature.name;
  if (feature.kind != FeatureKind::kEdge) {
    // The diameter is shown across the direction in which most parts have their edges.
    const double angle = feature.kind == FeatureKind::kCircle ? -30 : m.angle;
    marks.arrow(moved(m.centre, -m.size / 2, angle), moved(m.centre, m.size / 2, angle), kWhite);
    text +=
        " " + text_of(in_unit(m.size, options), options.mm_per_pixel > 0 ? 3 : 2) + " " + unit_of(options);
  }
  marks.label({m.centre.x, m.centre.y, m.centre.x, m.centre.y}, text, kWhite);
}

// The search in yellow, or in red if nothing was found; points in orange, lines and circles in green.
Marks drawn(const Picture& picture, const std::vector<Found>& all, const Options& options) {
  Marks marks(picture, 0.6);
  for (const Found& f : all) draw_search(marks, *f.feature, f.measurement.reason.empty() ? kYellow : kRed);
  for (const Found& f : all) {
    if (f.measurement.reason.empty()) {
      draw_found(marks, *f.feature, f.measurement, options);
    } else {
      marks.label({f.feature->x, f.feature->y, f.feature->x, f.feature->y}, f.feature->name + " not found",
                  kRed);
    }
  }
  marks.place_labels();
  return marks;
}

std::vector<Value> row_of(const Found& found, const Options& options) {
  const Feature& feature = *found.feature;
  const Measurement& m = found.measurement;
  std::vector<Value> row = {feature.name, name_of(feature.kind)};
  if (!m.reason.empty()) {
    row.resize(8);
    row.insert(row.end(), {"no", m.reason});
    return row;
  }
  const bool has_size = feature.kind != FeatureKind::kEdge;
  const bool has_angle = feature.kind != FeatureKind::kCircle;
  row.insert(row.end(),
             {has_size ? Value(in_unit(m.size, options)) : Value(), unit_of(options), m.centre.x, m.centre.y,
              has_angle ? Value(m.angle) : Value(), in_unit(m.deviation, options), "yes", Value()});
  return row;
}

Report work(const Job& job, const Options& options) {
  Picture picture = read_picture(job.input);
  Subject subject(to_gray(picture));
  job.says("measuring");
  std::vector<Found> all;
  std::size_t found = 0;
  for (const Feature& feature : options.features) {
    all.push_back({&feature, measured(subject, feature, options.search)});
    if (all.back().measurement.reason.empty()) ++found;
  }
  job.says("drawing");
  Marks marks = drawn(picture, all, options);
  write_picture(marks.drawing(), job.results[0]);

  Report report;
  report.numbers = {picture.width, picture.height,
                    options.mm_per_pixel > 0 ? Value(options.mm_per_pixel) : Value(),
                    static_cast<int64_t>(found)};
  for (const Found& f : all) report.rows.push_back(row_of(f, options));
  report.is_complete = found == all.size();
  report.conclusion = std::to_string(found) + " of " + counted(all.size(), "feature") +
                      " found, drawn into " + job.results[0] + marks.remark();
  return report;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan;
  plan.name = "gauge";
  plan.purpose =
      "Measures parts in photographs, to a fraction of a pixel: distances between opposite edges, places of "
      "edges, and circles.";
  plan.results = {{"-o,--output", "_gauged", kPictureEndings,
                   "picture to write, with search rectangles, edge points, lines, circles and sizes"}};
  plan.numbers = {{"width", "of the picture, in pixels"},
                  {"height", "of the picture, in pixels"},
                  {"mm_per_pixel", "as given", 9},
                  {"found", "number of features that were found"}};
  plan.items = "features";
  plan.columns = {{"name", "as in the file; W1, E1, C1 and so on for features of options"},
                  {"kind", "width, edge or circle"},
                  {"size", "distance of the two edges, or diameter of the circle, in the unit", 4},
                  {"unit", "mm if --mm-per-pixel is given, or else px"},
                  {"x", "centre of the circle, or middle of the edges, in pixels", 3},
                  {"y", "centre of the circle, or middle of the edges, in pixels", 3},
                  {"angle", "of the normal of the edges to the x axis, in degrees; grows clockwise", 3},
                  {"deviation",
                   "root mean square distance of the edge points from the lines or the circle, "
                   "in the unit",
                   4},
                  {"found", "yes or no"},
                  {"reason", "why the feature was not found"}};
  plan.notes =
      "A rectangle has its centre at X, Y. The search crosses it along its LENGTH, which points to the right "
      "at an ANGLE of 0 and downwards at 90. Edges lie across it, along its WIDTH. A width is the distance "
      "of "
      "the strongest opposite edges. A circle has about the given RADIUS; its edge is searched for up to "
      "REACH "
      "pixels inside and outside of it. A last word bright or dark says what is brighter or darker than its "
      "surroundings: the part between the edges, the part past an edge, or the inside of the circle.\n"
      "A line of a file of features, whose values are separated by spaces:\n"
      "width NAME X Y LENGTH WIDTH [ANGLE] [bright or dark]\n"
      "edge NAME X Y LENGTH WIDTH [ANGLE] [bright or dark]\n"
      "circle NAME X Y RADIUS REACH [bright or dark]\n"
      "A # begins a comment.";
  Host host(plan);
  Options options;
  host.input_file("-f,--features", options.file, "text file with the features to measure, one in each line");
  const auto repeated = [&host](const std::string& name, std::vector<std::string>& values,
                                const std::string& meaning) {
    host.app().add_option(name, values, meaning)->type_name("VALUES")->allow_extra_args(false);
  };
  repeated("--width", options.widths,
           "measures a width in the rectangle X,Y,LENGTH,WIDTH[,ANGLE][,bright or ,dark]; may be repeated");
  repeated("--edge", options.edges, "measures an edge in such a rectangle; may be repeated");
  repeated("--circle", options.circles,
           "measures the circle X,Y,RADIUS,REACH[,bright or ,dark]; may be repeated");
  host.number("-t,--threshold", options.search.threshold, "least step of an edge, in gray values", 1.0,
              255.0);
  host.number("-s,--smooth", options.search.smooth,
              "smooths profiles over this many pixels to each side, for blurred or noisy edges; 0: off", 0,
              50);
  host.number("--mm-per-pixel", options.mm_per_pixel, "states sizes in millimetres", 1e-9, 1e6, "pixels");
  host.check([&options] { complete(options); });
  return host.run(argc, argv, [&options](const Job& job) { return work(job, options); });
}

// The features that gauge measures, as texts describe them.

#ifndef NUV_EXAMPLES_GAUGE_FEATURES_H
#define NUV_EXAMPLES_GAUGE_FEATURES_H

#include <cstdint>
#include <string>
#include <vector>

enum class FeatureKind {
  kWidth,   // the distance between two opposite edges
  kEdge,    // a straight edge
  kCircle,  // a circle
};

// What is brighter or darker than its surroundings: the part between two edges, the part past an edge, the
// inside of a circle.
enum class Light { kAny, kBright, kDark };

// A search rectangle or, for a circle, a search ring. Lengths are in pixels.
struct Feature {
  FeatureKind kind = FeatureKind::kWidth;
  std::string name;
  double x = 0;  // the centre
  double y = 0;
  double length = 0;  // of a rectangle, along the search
  double width = 0;   // of a rectangle, across the search
  double angle = 0;   // of the search, in degrees to the x axis; grows clockwise, as y grows downwards
  double radius = 0;  // of a circle
  double reach = 0;   // how far the search for a circle goes to both sides of the radius
  Light light = Light::kAny;
};

// "width", "edge" or "circle".
std::string name_of(FeatureKind kind);

// The feature that an option describes: its values between commas. Throws UsageError, which names the option.
Feature feature_of_option(FeatureKind kind, const std::string& name, const std::string& values);

// The features of a text file, one for each line: kind, name and values between spaces. A # begins a comment.
// Throws UsageError, which names the file and the line.
std::vector<Feature> features_of_file(const std::string& file);

#endif

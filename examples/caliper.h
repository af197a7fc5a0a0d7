// Edges to a fraction of a pixel, and the lines and circles through them.
//
// A search rectangle is read out of the picture in turned coordinates and cut into bands. The mean of a band
// is its profile: gray values along the search. An edge is a peak of the profile's slope. A line is fitted to
// the edge points of the bands, and a circle to those of many narrow rectangles that point away from its
// centre.

#ifndef NUV_EXAMPLES_CALIPER_H
#define NUV_EXAMPLES_CALIPER_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "gauge_features.h"
#include "marks.h"
#include "picture.h"

struct Search {
  double threshold = 20;  // least step of an edge, in gray values
  int32_t smooth = 2;     // profiles are smoothed over this many pixels to each side
};

// What is measured of a feature. Places and lengths are in pixels of the picture, and angles in degrees.
struct Measurement {
  std::string reason;    // why the feature is not found; empty if it is
  double size = 0;       // of a width: the distance of the edges; of a circle: its diameter
  Place centre{};        // of a circle, or the middle of the edges
  double angle = 0;      // of the normal of the edges
  double deviation = 0;  // root mean square distance of the points from the lines or the circle
  std::vector<Place> points;
  std::vector<std::array<Place, 2>> lines;  // of the edges, from one side of the rectangle to the other
};

// A gray picture to measure in, and its inverted copy.
struct Subject {
  explicit Subject(const Picture& picture);

  Picture gray;
  Picture inverted;
};

// Throws std::runtime_error if the search leaves the picture.
Measurement measured(Subject& subject, const Feature& feature, const Search& search);

// The corners of a search rectangle.
std::array<Place, 4> corners_of(const Feature& rectangle);

// The least length of a profile.
int32_t least_length(const Search& search);

#endif

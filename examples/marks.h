// Lines, numbers and crosses on a picture, readable at any size of it.
//
// Widths and heights are multiples of one unit that grows with the picture. A small picture is enlarged by a
// whole factor first, so that marks and numbers do not cover it. All places are in pixels of the picture as it
// was read: (0, 0) is the centre of the first pixel.

#ifndef NUV_EXAMPLES_MARKS_H
#define NUV_EXAMPLES_MARKS_H

#include <cstdint>
#include <string>
#include <vector>

#include "picture.h"

struct Colour {
  uint8_t b, g, r;
};

inline constexpr Colour kWhite = {255, 255, 255};
inline constexpr Colour kBlack = {0, 0, 0};
inline constexpr Colour kGreen = {60, 220, 60};

// A colour of the wheel in degrees: 0 is red, 120 green, 240 blue.
Colour hue(double degrees);

// The colour of a level in a tree. Consecutive depths differ clearly.
Colour colour_of_depth(int32_t depth);

struct Place {
  double x, y;
};

struct Box {
  double left, top, right, bottom;
};

class Marks {
 public:
  // brightness: the share of the picture's brightness that is kept. On a darker picture, marks stand out.
  // rim: the colour around texts.
  explicit Marks(Picture picture, double brightness = 1.0, Colour rim = kBlack);

  int32_t factor() const { return factor_; }  // by which the picture is enlarged
  double unit() const { return unit_; }       // about the width of a thin line, in pixels of the picture

  void line(Place from, Place to, Colour colour, double width = 1.0);  // width in units
  void cross(Place centre, Colour colour, double size = 6.0);          // size in units
  void circle(Place centre, double radius, Colour colour, double width = 1.0);
  void arrow(Place from, Place to, Colour colour, double width = 1.0);  // with a head at both ends
  void box(const Box& box, Colour colour, double width = 1.0);
  // A contour of the library: n codes from the start (x, y) on.
  void outline(int32_t x, int32_t y, const uint8_t* chain, int32_t n, Colour colour, double width = 1.0);

  // A text of digits, letters of units and simple signs, with a rim. The place is its centre.
  void text(Place centre, const std::string& text, Colour colour);
  // The size of a text in pixels of the picture.
  Place size_of(const std::string& text) const;

  // Keeps labels out of a part of the picture.
  void keep_free(const Box& box);
  // Puts a text into a large box or near a small one, and joins both by a line if they lie apart. Labels do not
  // cover each other, and cover as little else as possible. A label without room is left out.
  void label(const Box& item, const std::string& text, Colour colour);

  // Draws the labels. All parts that are kept free must be known by then.
  void place_labels();
  // A line about labels that had no room, or nothing; for the end of a table.
  std::string remark() const;

  const Picture& drawing() const { return canvas_; }

 private:
  struct Label {
    Box item;
    std::string text;
    Colour colour;
  };

  void put_label(const Label& label);
  void stroke(Place from, Place to, Colour colour, double radius);  // in pixels of the drawing
  void glyphs(Place centre, const std::string& text, Colour colour, double radius);
  void cover(const Box& box, uint8_t kind);
  double cost_of(const Box& box, bool is_inside_its_item);
  template <class Visit>
  void for_cells(const Box& box, const Visit& visit);
  Place to_drawing(Place p) const { return {(p.x + 0.5) * factor_ - 0.5, (p.y + 0.5) * factor_ - 0.5}; }

  Picture canvas_;
  int32_t factor_;
  Colour rim_;
  double unit_;    // in pixels of the picture
  double height_;  // of a digit, in pixels of the picture
  std::vector<Label> labels_;
  int32_t left_out_ = 0;
  // Which parts of the picture are taken: a grid of cells.
  double cell_;
  int32_t columns_;
  int32_t rows_;
  std::vector<uint8_t> taken_;
};

#endif

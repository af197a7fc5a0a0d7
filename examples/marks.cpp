#include "marks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string_view>

#include "NuvImgSDK2014DLL.h"

namespace {

// What a cell of the grid holds, in the order of how bad it is to put a label there.
constexpr uint8_t kFree = 0;
constexpr uint8_t kPart = 1;
constexpr uint8_t kStroke = 2;
constexpr uint8_t kLabel = 3;

constexpr double kPi = 3.14159265358979323846;

struct Glyph {
  char character;
  std::string_view strokes;
};

// Glyphs as strokes through points, each given by its column and its row. Columns go from 0 to 4. Digits and
// capital letters have rows from 0 to 6; small letters begin at row 2.
constexpr Glyph kGlyphs[] = {
    {'0', "10 30 41 45 36 16 05 01 10"},
    {'1', "11 20 26|16 36"},
    {'2', "01 10 30 41 42 06 46"},
    {'3', "01 10 30 41 42 33 44 45 36 16 05|23 33"},
    {'4', "36 30 04 44"},
    {'5', "40 00 02 32 43 45 36 16 05"},
    {'6', "41 30 10 01 05 16 36 45 44 33 13 04"},
    {'7', "00 40 16"},
    {'8', "13 02 01 10 30 41 42 33 13 04 05 16 36 45 44 33"},
    {'9', "05 16 36 45 41 30 10 01 02 13 33 42"},
    {'A', "06 02 20 42 46|04 44"},
    {'B', "03 00 30 41 42 33 03 06 36 45 44 33"},
    {'C', "41 30 10 01 05 16 36 45"},
    {'D', "00 06 26 44 42 20 00"},
    {'E', "40 00 06 46|03 33"},
    {'F', "40 00 06|03 33"},
    {'G', "41 30 10 01 05 16 36 45 43 23"},
    {'H', "00 06|40 46|03 43"},
    {'I', "10 30|20 26|16 36"},
    {'J', "40 45 36 16 05"},
    {'K', "00 06|40 03 46"},
    {'L', "00 06 46"},
    {'M', "06 00 23 40 46"},
    {'N', "06 00 46 40"},
    {'O', "10 30 41 45 36 16 05 01 10"},
    {'P', "06 00 30 41 42 33 03"},
    {'Q', "10 30 41 45 36 16 05 01 10|24 46"},
    {'R', "06 00 30 41 42 33 03|23 46"},
    {'S', "41 30 10 01 02 13 33 44 45 36 16 05"},
    {'T', "00 40|20 26"},
    {'U', "00 05 16 36 45 40"},
    {'V', "00 26 40"},
    {'W', "00 16 23 36 40"},
    {'X', "00 46|40 06"},
    {'Y', "00 23 40|23 26"},
    {'Z', "00 40 06 46"},
    {'m', "06 02|03 12 23 26|23 32 43 46"},
    {'p', "08 02|03 12 32 43 45 36 16 05"},
    {'x', "02 46|42 06"},
    {'.', "26 26"},
    {',', "25 17"},
    {':', "22 22|25 25"},
    {'-', "13 33"},
    {'+', "04 44|22 26"},
    {'=', "03 43|05 45"},
    {'/', "40 06"},
    {'(', "30 22 24 36"},
    {')', "10 22 24 16"},
    {'%', "40 06|10 10|36 36"},
};

constexpr double kGlyphHeight = 6;
constexpr double kAdvance = 6;

std::string_view strokes_of(char character) {
  const auto find = [](char c) {
    return std::find_if(std::begin(kGlyphs), std::end(kGlyphs),
                        [c](const Glyph& g) { return g.character == c; });
  };
  const Glyph* glyph = find(character);
  if (glyph == std::end(kGlyphs)) {
    glyph = find(static_cast<char>(std::toupper(static_cast<unsigned char>(character))));
  }
  return glyph == std::end(kGlyphs) ? std::string_view() : glyph->strokes;
}

double distance_to(const Place& p, const Place& from, const Place& to) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double squared = dx * dx + dy * dy;
  const double t =
      squared > 0 ? std::clamp(((p.x - from.x) * dx + (p.y - from.y) * dy) / squared, 0.0, 1.0) : 0.0;
  return std::hypot(p.x - from.x - t * dx, p.y - from.y - t * dy);
}

Picture enlarged(const Picture& picture, int32_t factor) {
  Picture result = blank(picture.width * factor, picture.height * factor, 3);
  uint8_t* out = result.pixels.data();
  for (int32_t y = 0; y < result.height; ++y) {
    const uint8_t* row = picture.pixels.data() + int64_t{y / factor} * picture.width * 3;
    for (int32_t x = 0; x < result.width; ++x, out += 3) std::copy_n(row + int64_t{x / factor} * 3, 3, out);
  }
  return result;
}

int32_t factor_for(const Picture& picture) {
  constexpr int32_t kLeastSide = 480;
  return (kLeastSide - 1) / std::max({picture.width, picture.height, 1}) + 1;
}

// The unit of marks in a drawing, in its pixels. A long and narrow drawing has no room for large marks.
double unit_for(const Picture& drawing) {
  const double longer = std::max(drawing.width, drawing.height);
  const double shorter = std::min(drawing.width, drawing.height);
  return std::max(1.0, std::min(longer / 700, shorter / 250));
}

Place middle_of(const Box& box) {
  return {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
}

Box around(Place centre, Place size) {
  return {centre.x - size.x / 2, centre.y - size.y / 2, centre.x + size.x / 2, centre.y + size.y / 2};
}

Place nearest_in(const Box& box, Place to) {
  return {std::clamp(to.x, box.left, box.right), std::clamp(to.y, box.top, box.bottom)};
}

}  // namespace

Colour hue(double degrees) {
  const auto channel = [degrees](double peak) {
    const double distance = std::fabs(std::remainder(degrees - peak, 360.0)) / 60.0;
    return static_cast<uint8_t>(255 * std::clamp(2.0 - distance, 0.0, 1.0));
  };
  return {channel(240), channel(120), channel(0)};
}

Colour colour_of_depth(int32_t depth) {
  constexpr std::array<Colour, 5> kColours = {
      {{60, 220, 60}, {40, 170, 255}, {255, 150, 70}, {90, 90, 255}, {240, 240, 80}}};
  return kColours[static_cast<std::size_t>(depth) % kColours.size()];
}

Marks::Marks(Picture picture, double brightness, Colour rim)
    : canvas_(to_colour(picture)), factor_(factor_for(picture)), rim_(rim) {
  for (uint8_t& byte : canvas_.pixels) byte = static_cast<uint8_t>(byte * brightness);
  if (factor_ > 1) canvas_ = enlarged(canvas_, factor_);
  constexpr double kDigitHeight = 9;
  unit_ = unit_for(canvas_) / factor_;
  height_ = kDigitHeight * unit_;
  cell_ = height_ / 4;
  columns_ = static_cast<int32_t>(picture.width / cell_) + 1;
  rows_ = static_cast<int32_t>(picture.height / cell_) + 1;
  taken_.resize(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_), kFree);
}

// Blends each pixel by the part of it that the stroke covers, for smooth rims.
void Marks::stroke(Place from, Place to, Colour colour, double radius) {
  const bool is_flat = std::fabs(to.x - from.x) >= std::fabs(to.y - from.y);
  const auto along = [is_flat](const Place& p) { return is_flat ? p.x : p.y; };
  const auto across = [is_flat](const Place& p) { return is_flat ? p.y : p.x; };
  if (along(from) > along(to)) std::swap(from, to);
  const double reach = radius + 1;
  const double length = along(to) - along(from);
  const int32_t size_along = is_flat ? canvas_.width : canvas_.height;
  const int32_t size_across = is_flat ? canvas_.height : canvas_.width;
  const auto inside = [](double value, int32_t size) {
    return static_cast<int32_t>(std::clamp(value, -1.0, double(size)));
  };
  const int32_t last = std::min(inside(std::ceil(along(to) + reach), size_along), size_along - 1);
  for (int32_t a = std::max(inside(std::floor(along(from) - reach), size_along), 0); a <= last; ++a) {
    const double t = length > 0 ? std::clamp((a - along(from)) / length, 0.0, 1.0) : 0.0;
    const double middle = across(from) + t * (across(to) - across(from));
    const double extent = reach * 1.5;  // a stroke is at most 45 degrees steep
    const int32_t end = std::min(inside(std::ceil(middle + extent), size_across), size_across - 1);
    for (int32_t b = std::max(inside(std::floor(middle - extent), size_across), 0); b <= end; ++b) {
      const int32_t x = is_flat ? a : b;
      const int32_t y = is_flat ? b : a;
      const double share = std::clamp(
          radius + 0.5 - distance_to({static_cast<double>(x), static_cast<double>(y)}, from, to), 0.0, 1.0);
      if (share <= 0) continue;
      uint8_t* pixel = canvas_.pixels.data() + (int64_t{y} * canvas_.width + x) * 3;
      const std::array<uint8_t, 3> bytes = {colour.b, colour.g, colour.r};
      for (std::size_t c = 0; c < 3; ++c) {
        pixel[c] = static_cast<uint8_t>(std::lround(pixel[c] + share * (bytes[c] - pixel[c])));
      }
    }
  }
}

void Marks::line(Place from, Place to, Colour colour, double width) {
  stroke(to_drawing(from), to_drawing(to), colour, width * unit_ * factor_ / 2);
  const double length = std::hypot(to.x - from.x, to.y - from.y);
  const auto steps = static_cast<int32_t>(std::min(length / cell_, 1e6)) + 1;
  for (int32_t i = 0; i <= steps; ++i) {
    const double t = static_cast<double>(i) / steps;
    const Place p = {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)};
    cover(around(p, {0, 0}), kStroke);
  }
}

void Marks::cross(Place centre, Colour colour, double size) {
  const double half = size * unit_ / 2;
  line({centre.x - half, centre.y}, {centre.x + half, centre.y}, colour);
  line({centre.x, centre.y - half}, {centre.x, centre.y + half}, colour);
}

void Marks::circle(Place centre, double radius, Colour colour, double width) {
  const int32_t corners = std::clamp(static_cast<int32_t>(radius * factor_), 24, 3600);
  Place from = {centre.x + radius, centre.y};
  for (int32_t i = 1; i <= corners; ++i) {
    const double angle = 2 * kPi * i / corners;
    const Place to = {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
    line(from, to, colour, width);
    from = to;
  }
}

void Marks::arrow(Place from, Place to, Colour colour, double width) {
  line(from, to, colour, width);
  const double length = std::hypot(to.x - from.x, to.y - from.y);
  if (length == 0) return;
  const double head = std::min(7 * unit_, length / 3);
  const double dx = (to.x - from.x) / length * head;
  const double dy = (to.y - from.y) / length * head;
  for (const double side : {-0.4, 0.4}) {
    line(to, {to.x - dx + side * dy, to.y - dy - side * dx}, colour, width);
    line(from, {from.x + dx + side * dy, from.y + dy - side * dx}, colour, width);
  }
}

void Marks::box(const Box& box, Colour colour, double width) {
  const std::array<Place, 4> corners = {
      {{box.left, box.top}, {box.right, box.top}, {box.right, box.bottom}, {box.left, box.bottom}}};
  for (std::size_t i = 0; i < 4; ++i) line(corners[i], corners[(i + 1) % 4], colour, width);
}

void Marks::outline(int32_t x, int32_t y, const uint8_t* chain, int32_t n, Colour colour, double width) {
  std::vector<uint8_t> codes(chain, chain + n);
  std::vector<int32_t> xs(codes.size());
  std::vector<int32_t> ys(codes.size());
  NuvChain2Points(x, y, codes.data(), n, xs.data(), ys.data());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const std::size_t next = (i + 1) % codes.size();
    line({double(xs[i]), double(ys[i])}, {double(xs[next]), double(ys[next])}, colour, width);
  }
}

void Marks::glyphs(Place centre, const std::string& text, Colour colour, double radius) {
  const double scale = height_ / kGlyphHeight;
  const Place size = size_of(text);
  Place origin = {centre.x - size.x / 2, centre.y - size.y / 2};
  for (char character : text) {
    Place from{};
    bool is_begun = false;
    const std::string_view strokes = strokes_of(character);
    for (std::size_t i = 0; i + 1 < strokes.size(); i += 3) {
      const Place to = {origin.x + (strokes[i] - '0') * scale, origin.y + (strokes[i + 1] - '0') * scale};
      if (is_begun) stroke(to_drawing(from), to_drawing(to), colour, radius);
      from = to;
      is_begun = i + 2 < strokes.size() && strokes[i + 2] == ' ';
    }
    origin.x += kAdvance * scale;
  }
}

Place Marks::size_of(const std::string& text) const {
  const double scale = height_ / kGlyphHeight;
  return {(static_cast<double>(text.size()) * kAdvance - 2) * scale, height_};
}

void Marks::text(Place centre, const std::string& text, Colour colour) {
  const double radius = height_ * factor_ / 14;
  glyphs(centre, text, rim_, radius + std::max(1.0, unit_ * factor_));
  glyphs(centre, text, colour, radius);
  Place size = size_of(text);
  cover(around(centre, size), kLabel);
}

void Marks::cover(const Box& box, uint8_t kind) {
  for_cells(box, [kind](uint8_t& cell) { cell = std::max(cell, kind); });
}

template <class Visit>
void Marks::for_cells(const Box& box, const Visit& visit) {
  const auto index = [this](double value, int32_t size) {
    return static_cast<int32_t>(std::clamp(std::floor(value / cell_), 0.0, size - 1.0));
  };
  for (int32_t y = index(box.top, rows_); y <= index(box.bottom, rows_); ++y) {
    for (int32_t x = index(box.left, columns_); x <= index(box.right, columns_); ++x) {
      visit(taken_[static_cast<std::size_t>(y) * static_cast<std::size_t>(columns_) +
                   static_cast<std::size_t>(x)]);
    }
  }
}

void Marks::keep_free(const Box& box) {
  cover(box, kPart);
}

void Marks::label(const Box& item, const std::string& text, Colour colour) {
  labels_.push_back({item, text, colour});
}

// How bad it is to put a label into the box; negative: impossible, because of another label or the border.
double Marks::cost_of(const Box& box, bool is_inside_its_item) {
  const double picture_width = static_cast<double>(canvas_.width) / factor_;
  const double picture_height = static_cast<double>(canvas_.height) / factor_;
  if (box.left < 0 || box.top < 0 || box.right > picture_width - 1 || box.bottom > picture_height - 1)
    return -1;
  double cost = 0;
  bool is_possible = true;
  for_cells(box, [&](uint8_t cell) {
    if (cell == kLabel) is_possible = false;
    cost += cell == kStroke ? 4 : cell == kPart && !is_inside_its_item ? 1 : 0;
  });
  return is_possible ? cost : -1;
}

void Marks::put_label(const Label& label) {
  const Place size = size_of(label.text);
  const double margin = 2 * unit_;
  const Place room = {size.x + 2 * margin, size.y + 2 * margin};
  const Place middle = middle_of(label.item);
  double best_cost = -1;
  Place best{};
  bool is_inside = false;
  const auto consider = [&](Place centre, double penalty, bool inside) {
    const double cost = cost_of(around(centre, room), inside);
    if (cost < 0 || (best_cost >= 0 && cost + penalty >= best_cost)) return;
    best_cost = cost + penalty;
    best = centre;
    is_inside = inside;
  };
  const double width = label.item.right - label.item.left;
  const double height = label.item.bottom - label.item.top;
  if (width > 2 * room.x && height > 2 * room.y) consider(middle, 0, true);
  constexpr int32_t kRings = 9;
  for (int32_t ring = 0; ring < kRings && (best_cost < 0 || best_cost > ring); ++ring) {
    constexpr int32_t kDirections = 16;
    const double gap = ring * ring * height_ / 4;
    for (int32_t i = 0; i < kDirections; ++i) {
      const double angle = 2 * kPi * i / kDirections - kPi / 2;  // from the top on
      const Place centre = {middle.x + std::cos(angle) * (width / 2 + room.x / 2 + gap),
                            middle.y + std::sin(angle) * (height / 2 + room.y / 2 + gap)};
      consider(centre, ring, false);
    }
  }
  if (best_cost < 0) {
    ++left_out_;
    return;
  }
  const Box place = around(best, {size.x + margin, size.y + margin});
  if (!is_inside) {
    const Place from = nearest_in(label.item, best);
    const Place to = nearest_in(place, from);
    if (std::hypot(to.x - from.x, to.y - from.y) > height_ / 2) line(from, to, label.colour, 0.7);
  }
  text(best, label.text, label.colour);
  cover(around(best, room), kLabel);
}

void Marks::place_labels() {
  for (const Label& label : labels_) put_label(label);
  labels_.clear();
}

std::string Marks::remark() const {
  if (left_out_ == 0) return "";
  return "\n" + std::to_string(left_out_) + (left_out_ == 1 ? " number has" : " numbers have") +
         " no room in the picture";
}

// Crosses.

#include <algorithm>

#include "drawing/pen.h"
#include "drawing/strokes.h"
#include "nuv/drawing.h"

namespace nuv {
namespace {

// Moves the centre of a gray cross off the border. Returns whether the image has an interior.
bool move_inside(GrayImage image, Point* centre) {
  if (image.width < 3 || image.height < 3) return false;
  *centre = {std::clamp(centre->x, 1, image.width - 2), std::clamp(centre->y, 1, image.height - 2)};
  return true;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvDrawRGBCross(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t size,
                     int32_t r, int32_t g, int32_t b) {
  const int32_t half = size / 2;
  const Region arms = Region{x - half, x + half, y - half, y + half}.clamped_to(width, height);
  // The horizontal arm lies on row x, so the arms meet in the centre only if x = y.
  draw_cross(RgbPen(pRGBImg, width, height, r, g, b), x, x, arms);
}

void NuvDrawGryCross(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y, int32_t size,
                     uint8_t color) {
  const GrayPen pen(pGryImg, width, height, color);
  Point centre{x, y};
  if (!move_inside(pen.image, &centre)) return;
  draw_cross(pen, centre.x, centre.y, arms_off_border(pen.image, centre.x, centre.y, size));
}

void NuvDrawGryCrossShadow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                           int32_t size, uint8_t color) {
  const GrayPen shadow(pGryImg, width, height, 0);
  Point centre{x, y};
  if (!move_inside(shadow.image, &centre)) return;
  const Region arms = arms_off_border(shadow.image, centre.x, centre.y, size);
  draw_cross(shadow, centre.x - 1, centre.y - 1, arms);
  draw_cross(shadow, centre.x + 1, centre.y + 1, arms);
  draw_cross(GrayPen(pGryImg, width, height, color), centre.x, centre.y, arms);
}

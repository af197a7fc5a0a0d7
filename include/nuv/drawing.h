/// @file
/// Line and shape primitives, drawn into the caller's image in place.
///
/// A gray colour is the low byte of its argument. An RGB colour is given as r, g, b and goes to the pixel as
/// byte 0 = b, byte 1 = g, byte 2 = r, the low byte of each. Nothing is drawn outside an image.
///
/// The forms of a line are told in nuv/lines.h. A line by an equation gets one pixel per column, or one per
/// row where it is steep. Coordinates truncate toward zero, so that those between -1 and 0 are drawn at 0.
#ifndef NUV_DRAWING_H
#define NUV_DRAWING_H

#include <cstdint>

#include "nuv/api.h"

// ---- Lines between two points ----------------------------------------------------------------------------

/// A line between two points of a gray image.
///
/// Each coordinate is clamped to the image by itself, which changes the slope of a line that leaves it. A
/// vertical or horizontal line, or a point, is drawn with both its ends. Any other line is drawn by columns,
/// each filled from the row where the column before ended, in single precision: connected, but without the
/// column of its left end point.
NUV_API void NuvGryLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t y1, int32_t x2,
                        int32_t y2, int32_t color);

/// NuvGryLine in an RGB image.
NUV_API void NuvRGBLine(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t y1, int32_t x2,
                        int32_t y2, int32_t r, int32_t g, int32_t b);

// ---- Lines by an equation --------------------------------------------------------------------------------

/// The whole line through (x0, y0) at an angle, without the pixel (x0, y0) itself.
///
/// Below 45 and above 135 degrees the line is walked by columns, outwards from x0 in both directions: y is
/// x*tan(degree) + c truncated; column 0 is not reached. Otherwise it is walked by rows, and row 0 is not
/// reached. Angles grow clockwise on the screen.
NUV_API void NuvDrawDegreeLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                               double degree, int32_t color);

/// The line in KB form: by columns, y = truncate(k*x + b + 0.5), if isVertical is 0; by rows, x likewise from
/// k*y + b, if it is not.
NUV_API void NuvDrawKBLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t isVertical, double k,
                           double b, int32_t color);

/// The same in an RGB image.
NUV_API void NuvDrawKBLine(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t isVertical, double k,
                           double b, int32_t colorR, int32_t colorG, int32_t colorB);

/// The line A*x + B*y + C = 0: by rows if |B| <= |A|, x = truncate(0.5 - (y*B + C)/A), else by columns
/// likewise. A = B = 0 draws nothing.
NUV_API void NuvDrawABCLineByColor(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B,
                                   double C, int32_t color);

/// The part of the line whose walked coordinate lies in a range: rows y1..y2 if |B| <= |A|, else columns
/// x1..x2. The other coordinate is limited by the image alone. Ends may come in either order and are clamped
/// to the image.
NUV_API void NuvDrawABCLineByColor(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, double A, double B, double C, int32_t color);

/// Adds 1 to each pixel of the line, stopping at 255: lines drawn over each other vote.
NUV_API void NuvDrawABCLineByInc(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B,
                                 double C);

/// The line x*cos(theta) + y*sin(theta) = thro: by columns for theta from 45 to 125 degrees, else by rows;
/// the other coordinate is truncated.
NUV_API void NuvDrawHoughLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t thro, int32_t theta,
                              uint8_t color);

// ---- Shapes ----------------------------------------------------------------------------------------------

/// The closed polygon through N vertices, each moved by (dx, dy), of lines as NuvGryLine draws them.
///
/// N below 2 draws nothing. N = 2 draws one line, and its second end is moved by (dx, dx).
NUV_API void NuvDrawPolygon(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pX, int32_t* pY,
                            int32_t N, int32_t dx, int32_t dy, int32_t color);

/// The ellipse with centre (cx, cy) and half axes rx, ry, of four mirrored polylines with one vertex per
/// column, drawn and clamped as NuvGryLine does. A negative rx draws nothing; rx = 0, which leaves the shape
/// without a flattening, draws column cx from the centre up to row 0, whatever ry is.
NUV_API void NuvDrawCircle(uint8_t* pGryImg, int32_t width, int32_t height, int32_t cx, int32_t cy,
                           int32_t rx, int32_t ry, int32_t color);

/// The outline of a rectangle. Each coordinate is clamped to the image, then each pair is put in order.
NUV_API void NuvDrawGryRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t color);

/// NuvDrawGryRect in an RGB image.
NUV_API void NuvDrawRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t r, int32_t g, int32_t b);

/// NuvDrawGryRect with gry if bRGB is false, NuvDrawRGBRect with r, g, b if it is true.
NUV_API void NuvDrawRect(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t x1, int32_t x2,
                         int32_t y1, int32_t y2, int32_t r, int32_t g, int32_t b, int32_t gry);

/// Changes the pixels of value oldColor on the outline of a rectangle into newColor.
///
/// x1 and y1 are raised to 0, x2 and y2 lowered to the last column and row; nothing is put in order. x1 > x2
/// leaves the two rows alone, y1 > y2 the two columns. An oldColor outside 0..255 matches nothing.
NUV_API void NuvChangeColorOnRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t oldColor, int32_t newColor);

/// Fills a region, clamped to the image as a region is: an empty one fills nothing.
NUV_API void NuvFillGryRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t color);

/// NuvFillGryRect in an RGB image.
NUV_API void NuvFillRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t r, int32_t g, int32_t b);

#endif

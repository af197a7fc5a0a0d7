/// @file
/// Drawing: lines, shapes, marks, plots and text, drawn into an image in place.
#ifndef NUV_DRAWING_H
#define NUV_DRAWING_H

#include <cstdint>

#include "nuv/api.h"

/// @defgroup drawing Drawing
///
/// Lines, shapes, marks, plots and text, drawn into an image in place.
///
/// A gray image has width*height bytes, an RGB image width*height*3. Nothing is drawn outside an image.
///
/// A gray colour is the low byte of its argument. An RGB colour is given as r, g and b, and the low byte of
/// each is written: byte 0 = b, byte 1 = g, byte 2 = r.
///
/// The forms of a line are those of nuv/lines.h. Angles are in degrees, with pi = 3.1415926. Coordinates that
/// are computed truncate toward zero, so those between -1 and 0 are drawn at 0.
/// @{

/// @defgroup drawing_lines Lines
///
/// Straight lines between two points or by an equation.
/// @{

/// @defgroup drawing_lines_between_points Lines between two points
///
/// Connected lines that are clamped to the image.
/// @{

/// Draws a line between two points of a gray image.
///
/// Each coordinate is clamped to the image by itself, which changes the slope of a line that leaves the
/// image. A vertical or horizontal line, or a point, is drawn with both its ends. Any other line is drawn by
/// columns, in single precision. Each column is filled from the row where the column before ended, so the
/// line is connected. The column of the left end point is not drawn.
NUV_API void NuvGryLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t y1, int32_t x2,
                        int32_t y2, int32_t color);

/// Draws a line between two points of an RGB image, as NuvGryLine does in a gray one.
NUV_API void NuvRGBLine(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t y1, int32_t x2,
                        int32_t y2, int32_t r, int32_t g, int32_t b);

/// @}

/// @defgroup drawing_lines_by_equation Lines by an equation
///
/// Lines across the whole image, with one pixel per column, or one per row if the line is steep.
/// @{

/// Draws the whole line through a point at an angle, without the point itself.
///
/// Angles grow clockwise on the screen. If degree < 45 or degree > 135, the line has one pixel per column,
/// otherwise one per row:
///
///     by columns    y = truncate(x*m + y0 - x0*m)    with m = tan(degree)
///     by rows       x = truncate(y*m + x0 - y0*m)    with m = tan(90 - degree)
///
/// By columns, column 0 is drawn only if x0 is negative; by rows, row 0 only if y0 is negative.
///
/// @param x0, y0  point on the line, in the image or outside
/// @param degree  angle to the x axis, in degrees
NUV_API void NuvDrawDegreeLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                               double degree, int32_t color);

/// Draws the line in KB form in a gray image.
///
///     by columns    y = truncate(x*k + b + 0.5)    if isVertical is 0
///     by rows       x = truncate(y*k + b + 0.5)    otherwise
NUV_API void NuvDrawKBLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t isVertical, double k,
                           double b, int32_t color);

/// @overload
/// Draws the line in KB form in an RGB image.
NUV_API void NuvDrawKBLine(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t isVertical, double k,
                           double b, int32_t colorR, int32_t colorG, int32_t colorB);

/// Draws the line A*x + B*y + C = 0.
///
///     by rows       x = truncate(0.5 - (y*B + C)/A)    if |B| <= |A|
///     by columns    y = truncate(0.5 - (x*A + C)/B)    otherwise
///
/// A = B = 0 draws nothing.
NUV_API void NuvDrawABCLineByColor(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B,
                                   double C, int32_t color);

/// @overload
/// Draws the part of the line A*x + B*y + C = 0 in a range of rows or columns.
///
/// The range is rows y1..y2 if |B| <= |A|, and columns x1..x2 otherwise. The other coordinate is limited by
/// the image alone.
///
/// @param x1, x2  first and last column, in either order; clamped to the image
/// @param y1, y2  first and last row, in either order; clamped to the image
NUV_API void NuvDrawABCLineByColor(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, double A, double B, double C, int32_t color);

/// Adds 1 to each pixel of the line A*x + B*y + C = 0, so that many lines vote in an image.
///
/// The pixels are those of NuvDrawABCLineByColor. A pixel of 255 stays as it is.
NUV_API void NuvDrawABCLineByInc(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B,
                                 double C);

/// Draws the line x*cos(theta) + y*sin(theta) = thro.
///
///     by columns    y = truncate((thro - x*cos(theta))/sin(theta))    if 45 <= theta <= 125
///     by rows       x = truncate((thro - y*sin(theta))/cos(theta))    otherwise
///
/// @param thro   distance from the origin, in pixels; may be negative
/// @param theta  angle of the normal, in degrees
NUV_API void NuvDrawHoughLine(uint8_t* pGryImg, int32_t width, int32_t height, int32_t thro, int32_t theta,
                              uint8_t color);

/// @}

/// @}

/// @defgroup drawing_shapes Shapes
///
/// Polygons, ellipses and rectangles.
/// @{

/// Draws the closed polygon through N vertices, each moved by (dx, dy).
///
/// The sides are lines as NuvGryLine draws them. Sums of coordinates are 32-bit and wrap.
///
/// @param pX, pY  vertices, N entries each; read only
/// @param N       number of vertices. Below 2 draws nothing. 2 draws one line, and its second end is moved by
///                (dx, dx)
/// @param dx, dy  offset of the vertices, in pixels
NUV_API void NuvDrawPolygon(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pX, int32_t* pY,
                            int32_t N, int32_t dx, int32_t dy, int32_t color);

/// Draws the outline of an ellipse.
///
/// The outline is made of four mirrored polylines with one vertex per column, from column cx - rx to cx. Each
/// piece is drawn and clamped as NuvGryLine does. Coordinates of the ellipse are 32-bit and wrap. The upper
/// left polyline has the vertices
///
///     y = truncate(cy - sqrt(rx*rx - (x - cx)^2) * (ry/rx))
///
/// @param cx, cy  centre
/// @param rx      horizontal half axis. A negative one draws nothing. With 0 the quotient has no value:
///                column cx is drawn from the centre up to row 0, or whole if cy is negative, whatever ry is
/// @param ry      vertical half axis
NUV_API void NuvDrawCircle(uint8_t* pGryImg, int32_t width, int32_t height, int32_t cx, int32_t cy,
                           int32_t rx, int32_t ry, int32_t color);

/// Draws the outline of a rectangle in a gray image.
///
/// @param x1, x2  first and last column, in either order; clamped to the image
/// @param y1, y2  first and last row, in either order; clamped to the image
NUV_API void NuvDrawGryRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t color);

/// Draws the outline of a rectangle in an RGB image, as NuvDrawGryRect does in a gray one.
NUV_API void NuvDrawRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t r, int32_t g, int32_t b);

/// Draws the outline of a rectangle in a gray or an RGB image.
///
/// @param pImg     RGB image if bRGB is true, otherwise a gray one
/// @param x1, x2   first and last column, in either order; clamped to the image
/// @param y1, y2   first and last row, in either order; clamped to the image
/// @param r, g, b  colour in an RGB image; ignored for a gray one
/// @param gry      colour in a gray image; ignored for an RGB one
NUV_API void NuvDrawRect(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t x1, int32_t x2,
                         int32_t y1, int32_t y2, int32_t r, int32_t g, int32_t b, int32_t gry);

/// Changes one colour into another on the outline of a rectangle.
///
/// @param x1, x2    first and last column, cut to the image. x1 > x2 leaves the two rows alone
/// @param y1, y2    first and last row, cut to the image. y1 > y2 leaves the two columns alone
/// @param oldColor  value of the pixels to change; outside 0..255 it matches none
/// @param newColor  value that they receive
NUV_API void NuvChangeColorOnRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t oldColor, int32_t newColor);

/// Fills a rectangle in a gray image.
///
/// @param x1, x2  first and last column, cut to the image. x1 > x2 fills nothing
/// @param y1, y2  first and last row, cut to the image. y1 > y2 fills nothing
NUV_API void NuvFillGryRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t color);

/// Fills a rectangle in an RGB image, as NuvFillGryRect does in a gray one.
NUV_API void NuvFillRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t r, int32_t g, int32_t b);

/// @}

/// @defgroup drawing_crosses Crosses
///
/// Marks made of a vertical and a horizontal arm.
///
/// An arm is a stretch of one column or of one row, one pixel wide. Sums of coordinates and sizes are 32-bit
/// and wrap.
/// @{

/// Draws a cross in a gray image, clear of the border of the image.
///
/// The centre is moved to columns 1..width-2 and rows 1..height-2. The arms are
///
///     column x    rows max(2, y-size) to min(height-3, y+size)
///     row y       columns max(2, x-size) to min(width-3, x+size)
///
/// An image less than 3 pixels wide or high is left alone.
///
/// @param x, y  centre
/// @param size  length of the cross from its centre to each side, in pixels
NUV_API void NuvDrawGryCross(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                             int32_t size, uint8_t color);

/// Draws a cross between black lines in a gray image, so that it shows on a bright ground.
///
/// Columns x-1 and x+1 and rows y-1 and y+1 are set to 0 over the extents of the arms. Then the cross of
/// NuvDrawGryCross is drawn over them.
///
/// @param x, y  centre
/// @param size  length of the cross from its centre to each side, in pixels
NUV_API void NuvDrawGryCrossShadow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                   int32_t size, uint8_t color);

/// Draws the two arms of a cross in an RGB image, which meet in the centre only if x = y.
///
/// The horizontal arm lies on row x, not on row y. With half = size/2 the arms are, as far as the image has
/// them,
///
///     column x    rows y-half to y+half
///     row x       columns x-half to x+half
///
/// @param x, y  centre
/// @param size  length of a whole arm, in pixels
NUV_API void NuvDrawRGBCross(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                             int32_t size, int32_t r, int32_t g, int32_t b);

/// @}

/// @defgroup drawing_arrows Arrows
///
/// Arrows made of the lines of NuvGryLine and NuvRGBLine.
///
/// Each line is clamped to the image by itself, and a slanted one lacks the column of its left end point.
/// Sums of coordinates are 32-bit and wrap.
/// @{

/// Draws a line with a cross at its end, which grows with the line, in a gray image.
///
/// With d the length of the line and half = truncate(d + 1)/5 + 2, the arms of the cross are
///
///     column x2    rows max(2, y2-half) to min(height-3, y2+half)
///     row y2       columns max(2, x2-half) to min(width-3, x2+half)
///
/// An arm whose column or row lies outside the image is left out. The squares in d are 32-bit and wrap from a
/// length of 46,341 pixels on.
///
/// @param x1, y1  start of the line
/// @param x2, y2  end of the line and centre of the cross
NUV_API void NuvGryImgDrawArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t y1,
                                int32_t x2, int32_t y2, int32_t color);

/// Draws a line with a cross three pixels wide at its end in an RGB image.
///
/// Red and blue change places between the two: the line has the colour (b, g, r), the cross (r, g, b). The
/// arms of the cross are, as far as their columns and rows lie in the image,
///
///     columns x2-1 to x2+1    rows max(2, y2-size) to min(height-3, y2+size)
///     rows y2-1 to y2+1       columns max(2, x2-size) to min(width-3, x2+size)
///
/// @param x1, y1  start of the line
/// @param x2, y2  end of the line and centre of the cross
/// @param size    length of the cross from its centre to each side, in pixels
NUV_API void NuvRGBImgDrawArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t y1,
                                int32_t x2, int32_t y2, int32_t size, int32_t r, int32_t g, int32_t b);

/// @defgroup drawing_block_arrows Block arrows
///
/// Outlines of arrows that fill a rectangle from end to end.
///
/// The shaft is as wide as the rectangle and closed at its far end. The head is 10 pixels long, but no longer
/// than the rectangle. Its base sticks out 10 pixels on each side, as far as the image goes. The six lines
/// join these places:
///
///     up       tip ((x1+x2)/2, y1)    base row min(y1+10, y2)       far end row y2
///     down     tip ((x1+x2)/2, y2)    base row max(y2-10, y1)       far end row y1
///              base from column max(x1-10, 0) to min(x2+10, width-1), shaft on columns x1 and x2
///
///     left     tip (x1, (y1+y2)/2)    base column min(x1+10, x2)    far end column x2
///     right    tip (x2, (y1+y2)/2)    base column max(x2-10, x1)    far end column x1
///              base from row max(y1-10, 0) to min(y2+10, height-1), shaft on rows y1 and y2
///
/// The ends of the rectangle are not put in order: the formulas hold for ends out of order, too.
/// @{

/// Draws the outline of a block arrow that points up, to row y1.
///
/// @param x1, x2  first and last column of the rectangle
/// @param y1, y2  first and last row of the rectangle
NUV_API void NuvDrawUpArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t color);

/// Draws the outline of a block arrow that points down, to row y2.
///
/// @param x1, x2  first and last column of the rectangle
/// @param y1, y2  first and last row of the rectangle
NUV_API void NuvDrawDownArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, int32_t color);

/// Draws the outline of a block arrow that points left, to column x1.
///
/// @param x1, x2  first and last column of the rectangle
/// @param y1, y2  first and last row of the rectangle
NUV_API void NuvDrawLeftArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, int32_t color);

/// Draws the outline of a block arrow that points right, to column x2.
///
/// @param x1, x2  first and last column of the rectangle
/// @param y1, y2  first and last row of the rectangle
NUV_API void NuvDrawRightArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, int32_t color);

/// @}

/// @defgroup drawing_simple_arrows Simple arrows
///
/// Arrows of lines that start at a point (x, y), doubled to a width of two pixels.
///
/// The lines are drawn in this order: the shaft from (x, y) to the tip, the tip to each wing, the second
/// shaft, the tip to one pixel past the first wing, and the tip to one pixel before the second. The last two
/// places are nearer the axis unless the wings lie on it. Divisions truncate.
///
///     up       tip (x, max(y-len, 0))          wings on row max(y-len/2, 0)
///     down     tip (x, max(y+len, 0))          wings on row max(y+len/2, 0)
///              wings on columns max(x-len/4, 0) and min(x+len/4, width-1)
///              second shaft on column min(x+1, width-1)
///
///     right    tip (min(x+len, width-1), y)    wings on column min(x+len/2, width-1)
///     left     tip (max(x-len, 0), y)          wings on column max(x-len/2, 0)
///              wings on rows max(y-len/4, 0) and min(y+len/4, height-1)
///              second shaft on row y+1
///
/// Past the bottom of the image a down arrow is clamped line by line: its wings can lie on the last row, as
/// its tip does.
/// @{

/// Draws a simple arrow that points up in a gray image.
///
/// @param x, y  start of the shaft
/// @param len   length of the shaft, in pixels
NUV_API void NuvDrawUpArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                            int32_t len, int32_t color);

/// Draws a simple arrow that points down in a gray image.
///
/// @param x, y  start of the shaft
/// @param len   length of the shaft, in pixels
NUV_API void NuvDrawDownArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                              int32_t len, int32_t color);

/// Draws a simple arrow that points right in a gray image.
///
/// @param x, y  start of the shaft
/// @param len   length of the shaft, in pixels
NUV_API void NuvDrawRightArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                               int32_t len, int32_t color);

/// Draws a simple arrow that points left in a gray image.
///
/// @param x, y  start of the shaft
/// @param len   length of the shaft, in pixels
NUV_API void NuvDrawLeftArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                              int32_t len, int32_t color);

/// @overload
/// Draws a simple arrow that points up in an RGB image.
///
/// @param x, y  start of the shaft
/// @param len   length of the shaft, in pixels
NUV_API void NuvDrawUpArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                            int32_t len, int32_t r, int32_t g, int32_t b);

/// @overload
/// Draws a simple arrow that points down in an RGB image.
///
/// @param x, y  start of the shaft
/// @param len   length of the shaft, in pixels
NUV_API void NuvDrawDownArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                              int32_t len, int32_t r, int32_t g, int32_t b);

/// @overload
/// Draws a simple arrow that points left in an RGB image.
///
/// @param x, y  start of the shaft
/// @param len   length of the shaft, in pixels
NUV_API void NuvDrawLeftArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                              int32_t len, int32_t r, int32_t g, int32_t b);

/// @overload
/// Draws a simple arrow that points right in an RGB image.
///
/// @param x, y  start of the shaft
/// @param len   length of the shaft, in pixels
NUV_API void NuvDrawRightArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                               int32_t len, int32_t r, int32_t g, int32_t b);

/// @}

/// @}

/// @defgroup drawing_plots Plots of profiles
///
/// Profiles, one entry per column or row, drawn as bars over what a gray image shows.
///
/// The bar of a value v has this length in pixels, in double precision:
///
///     L = truncate((v - lo) / (((hi - lo) + 2.0) / extent) + 0.5)
///
/// A length of 0 or below draws nothing. extent is the height for bars in columns and the width for bars in
/// rows. hi is the greatest entry of the scale, at least 0. lo is the least entry of the scale, at most
/// width*height*255. Integer products and differences are 32-bit and wrap. The bound of lo wraps from
/// 8,421,505 pixels on and can then be less than every entry.
///
/// pPrj holds the entries and is read only.
/// @{

/// Plots a range of columns as bars upwards from the last row, never into row 0.
///
/// @param pPrj    entries by column: pPrj[x] is that of column x
/// @param x1, x2  first and last column. All their entries from 0 on set the scale, also those past the image
NUV_API void NuvDrawPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t x1,
                         int32_t x2, int32_t color);

/// @overload
/// Plots the first N columns as bars upwards from the last row, never into row 0.
///
/// @param pPrj  N entries; entry x is that of column x
/// @param N     number of entries. All of them set the scale, also those past the image
NUV_API void NuvDrawPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                         int32_t color);

/// Plots the first N columns as bars upwards from the last row, on a scale that begins at 0.
///
/// The bars are those of NuvDrawPrjX with lo = 0.
///
/// @param pPrj  N entries; entry x is that of column x
/// @param N     number of entries. All of them set the scale, also those past the image
NUV_API void NuvDrawPrjXMinV0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                              int32_t color);

/// Plots the first N rows as bars from column 0 to the right, never into the last column.
///
/// A bar covers columns 0 to min(L, width-1)-1.
///
/// @param pPrj  entries by row, N or height of them, whichever is less. Only these are read and set the scale
/// @param N     number of rows to plot; those past the image are left out
NUV_API void NuvDrawPrjY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                         int32_t color);

/// Plots the first N rows as bars from column 0 to the right, on a scale that begins at 0.
///
/// The bars are those of NuvDrawPrjY with lo = 0.
///
/// @param pPrj  entries by row, N or height of them, whichever is less. Only these are read and set the scale
/// @param N     number of rows to plot; those past the image are left out
NUV_API void NuvDrawPrjYMinV0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                              int32_t color);

/// @}

/// @defgroup drawing_digits Digits
///
/// Numbers in a font of the library.
///
/// The font has the digits 0 to 9 in cells of 8 by 9 pixels. In the larger size each of its pixels is a block
/// of 2 by 2, so cells have 16 by 18. Any other character is skipped and takes no space.
///
/// A negative x or y is raised to 0. Drawing ends before the first digit whose x lies above the stated limit,
/// which keeps one column free at the right. A y above its limit draws nothing. Digits are cut at the image,
/// which can happen if a negative gap moves the pen out of it.
///
/// pStr is the text, zero-terminated. gap is added to the width of a cell from one digit to the next, in
/// pixels. The result is the x where the pen ends. If nothing is drawn, that is the given x, or 0 if it is
/// negative.
/// @{

/// Writes digits of 8 by 9 pixels in a gray image and leaves their ground as it is.
///
/// @param x  left end of the text; up to width-9
/// @param y  top of the text; up to height-1. Rows past the image are left out
/// @return the x where the pen ends
NUV_API int32_t NuvSetNumberString2GryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x,
                                          int32_t y, int32_t gap, int32_t color, char* pStr);

/// Writes digits of 8 by 9 pixels on black in an RGB image.
///
/// @param x        left end of the text; up to width-9
/// @param y        top of the text; up to height-11
/// @param b, g, r  colour of the digits; blue comes first
/// @return the x where the pen ends
NUV_API int32_t NuvSetNumberString2RGBImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x,
                                          int32_t y, int32_t gap, int32_t b, int32_t g, int32_t r,
                                          char* pStr);

/// Writes digits of 16 by 18 pixels on a ground of one colour in an RGB image.
///
/// @param x              left end of the text; up to width-17
/// @param y              top of the text; up to height-21
/// @param bkR, bkG, bkB  colour of the ground
/// @param fgR, fgG, fgB  colour of the digits
/// @return the x where the pen ends
NUV_API int32_t NuvSetNumberString20x16RGBImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x,
                                              int32_t y, int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB,
                                              int32_t fgR, int32_t fgG, int32_t fgB, char* pStr);

/// Writes digits of 16 by 18 pixels on a ground of one colour in a gray image.
///
/// @param x        left end of the text; up to width-17
/// @param y        top of the text; up to height-21
/// @param bkColor  colour of the ground
/// @param fgColor  colour of the digits
/// @return the x where the pen ends
NUV_API int32_t NuvSetNumberString20x16GryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x,
                                              int32_t y, int32_t gap, int32_t bkColor, int32_t fgColor,
                                              char* pStr);

/// @}

/// @defgroup drawing_hanzi Hanzi
///
/// Chinese characters (Hanzi): text of two-byte GB2312 codes in the 16x16 glyphs of the font file hzk16.dat.
///
/// The file lies in the folder of the host's executable. The system gives that path: /proc/self/exe on Linux,
/// GetModuleFileNameW on Windows. On other systems the font is not found. The file is opened and closed in
/// each call. It has no header. Both bytes of a code are A1 or above, and the 32 bytes of the glyph of the
/// code c1 c2 begin at
///
///     ((c1 - 161)*94 + (c2 - 161))*32
///
/// A glyph is 16 rows of two bytes, the top row first, the highest bit leftmost.
///
/// The library does not include the file. tools/make_hzk16 FOLDER writes one from the glyphs of GNU Unifont.
/// These are licensed under the SIL Open Font License 1.1, or the GNU General Public License, version 2 or
/// later, with the font embedding exception, and so is a file made of them.
///
/// Every pixel of a glyph's cell is written, except those outside the image. The pen starts at (x, y) and
/// moves by the width of the cell and gap. When it passes column width-cell-1, it moves to column 0 of the
/// next line, one cell below. If that line would begin below the image, the text ends.
///
/// A code whose place lies before the start or past the end of the file repeats the previous glyph; at the
/// start of the text only ground is drawn. If the file ends inside a glyph, the missing bytes are those of
/// the previous glyph. The last byte of a text of odd length is paired with 0. ASCII text must be converted
/// with NuvChar2Wide first.
///
/// All functions that draw share these arguments:
///
/// - gap is added to the width of a cell from one glyph to the next, in pixels.
/// - bkColor or bkR, bkG, bkB is the colour of clear bits.
/// - fgColor or fgR, fgG, fgB is the colour of set bits.
/// - pStr is the text, zero-terminated.
///
/// They return true if y is in range and the font could be opened, also for an empty text. Otherwise they
/// return false and leave the image alone.
/// @{

/// Writes Hanzi of 16 by 16 pixels in a gray image.
///
/// @param x, y  top left corner of the text; y must be below height-16
/// @return false, with nothing drawn, if y is out of range or the font could not be opened
NUV_API bool NuvDrawChineseString16x16(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                       int32_t gap, int32_t bkColor, int32_t fgColor, char* pStr);

/// @overload
/// Writes Hanzi of 16 by 16 pixels in an RGB image.
///
/// @param x, y  top left corner of the text; y must be below height-20
/// @return false, with nothing drawn, if y is out of range or the font could not be opened
NUV_API bool NuvDrawChineseString16x16(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                       int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB, int32_t fgR,
                                       int32_t fgG, int32_t fgB, char* pStr);

/// Writes Hanzi of 32 by 32 pixels in an RGB image: the 16x16 glyphs in blocks of 2 by 2 pixels.
///
/// @param x, y  top left corner of the text; y must be below height-32
/// @return false, with nothing drawn, if y is out of range or the font could not be opened
NUV_API bool NuvDrawChineseString32x32(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                       int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB, int32_t fgR,
                                       int32_t fgG, int32_t fgB, char* pStr);

/// @overload
/// Writes Hanzi of 32 by 32 pixels in a gray image.
///
/// @param x, y  top left corner of the text; y must be below height-32
/// @return false, with nothing drawn, if y is out of range or the font could not be opened
NUV_API bool NuvDrawChineseString32x32(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                       int32_t gap, int32_t bkColor, int32_t fgColor, char* pStr);

/// Converts a mixed text to two-byte codes.
///
/// A byte with its top bit set is copied. Any other byte becomes A3 and itself + 128, the full-width form of
/// the character.
///
/// @param pSrc  text, zero-terminated; read only
/// @param pDst  receives the codes, zero-terminated: up to 2*strlen(pSrc) + 1 bytes, in another buffer
NUV_API void NuvChar2Wide(char* pSrc, char* pDst);

/// @}

/// @defgroup drawing_mark The mark of the project
///
/// A plate with the letters of the project.
/// @{

/// Stamps the project's mark, white letters on a black plate of 29 by 13 pixels.
///
/// @param pImg  RGB image if bRGB is true, otherwise a gray one
/// @param x, y  top left corner of the plate; what lies outside the image is left out
NUV_API void NuvSetPrivateLogo(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t x, int32_t y);

/// @}

/// @}

#endif

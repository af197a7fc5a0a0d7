/// @file
/// Lines, shapes, marks, plots and text, drawn into the caller's image in place.
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
/// N below 2 draws nothing. Sums of coordinates are 32-bit and wrap. N = 2 draws one line, and its second end
/// is moved by (dx, dx).
NUV_API void NuvDrawPolygon(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pX, int32_t* pY,
                            int32_t N, int32_t dx, int32_t dy, int32_t color);

/// The ellipse with centre (cx, cy) and half axes rx, ry, of four mirrored polylines with one vertex per
/// column, drawn and clamped as NuvGryLine does. A negative rx draws nothing; rx = 0, which leaves the shape
/// without a flattening, draws column cx from the centre up to row 0, whatever ry is. Coordinates of the
/// ellipse are 32-bit and wrap.
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

// ---- Crosses ---------------------------------------------------------------------------------------------
//
// A cross is a stretch of one column and a stretch of one row, one pixel wide. Sums of coordinates and sizes
// are 32-bit and wrap.

/// A cross in a gray image, off the two outer lines on each side.
///
/// The centre is moved to columns 1..width-2 and rows 1..height-2. The vertical arm is column x over rows
/// max(2, y-size) to min(height-3, y+size), the horizontal arm is row y likewise. An image less than 3 pixels
/// wide or high is left alone.
///
/// @param size  length of each arm
NUV_API void NuvDrawGryCross(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                             int32_t size, uint8_t color);

/// NuvDrawGryCross between black lines, so that it shows on a bright image: columns x-1 and x+1 and rows y-1
/// and y+1 are set to 0 over the extents of the arms, then the cross is drawn over them.
NUV_API void NuvDrawGryCrossShadow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                   int32_t size, uint8_t color);

/// The two arms of a cross in an RGB image. Whole only where x = y, as the horizontal arm lies on row x.
///
/// With half = size/2: column x over rows y-half to y+half, and row x (not y) over columns x-half to x+half.
/// Only what lies outside the image is left out.
///
/// @param size  span of both arms together
NUV_API void NuvDrawRGBCross(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                             int32_t size, int32_t r, int32_t g, int32_t b);

// ---- Arrows ----------------------------------------------------------------------------------------------
//
// All are made of lines as NuvGryLine and NuvRGBLine draw them: slanted ones without the column of their left
// end point, and each clamped to the image by itself. Sums of coordinates are 32-bit and wrap.

/// A line from (x1, y1) to (x2, y2) with a cross at (x2, y2) that grows with it.
///
/// With d the length of the line, in products that are 32-bit and wrap from a length of 46,341 pixels on, and half = truncate(d + 1)/5 + 2, the
/// cross is column x2 over rows max(2, y2-half) to min(height-3, y2+half), and row y2 likewise. An arm whose
/// column or row lies outside the image is left out.
NUV_API void NuvGryImgDrawArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t y1,
                                int32_t x2, int32_t y2, int32_t color);

/// A line from (x1, y1) to (x2, y2) with a cross at (x2, y2), three pixels wide. Red and blue change place
/// between the two: the line has the colour (b, g, r), the cross (r, g, b).
///
/// The cross is columns x2-1 to x2+1 over rows max(2, y2-size) to min(height-3, y2+size), and rows y2-1 to
/// y2+1 likewise; what lies outside the image is left out.
///
/// @param size  length of each arm of the cross
NUV_API void NuvRGBImgDrawArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t y1,
                                int32_t x2, int32_t y2, int32_t size, int32_t r, int32_t g, int32_t b);

/// The outline of an arrow that fills a rectangle from end to end and points up, to row y1.
///
/// The shaft is as wide as the rectangle. The head is 10 pixels long, but no longer than the rectangle, and
/// its base sticks out 10 pixels on each side, as far as the image goes:
///
///     base  row min(y1+10, y2)       wings  columns max(x1-10, 0) and min(x2+10, width-1) of the base
///     tip   ((x1+x2)/2, y1)          shaft  columns x1 and x2 from the base to row y2, closed there
///
/// @param x1, x2, y1, y2  rectangle; with ends out of order the places above hold all the same
NUV_API void NuvDrawUpArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, int32_t color);

/// The same pointing down, to row y2: base max(y2-10, y1), the shaft closed at y1.
NUV_API void NuvDrawDownArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, int32_t color);

/// The same pointing left, to column x1: base min(x1+10, x2), the shaft on rows y1 and y2 and closed at x2,
/// wings on rows max(y1-10, 0) and min(y2+10, height-1).
NUV_API void NuvDrawLeftArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2, int32_t color);

/// The same pointing right, to column x2: base max(x2-10, x1), the shaft closed at x1, wings as to the left.
NUV_API void NuvDrawRightArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, int32_t color);

/// An arrow of lines that starts at (x, y) and points up, doubled to a width of two pixels.
///
///     tip    (x, max(y-len, 0))                   second shaft  column min(x+1, width-1)
///     wings  row max(y-len/2, 0), columns max(x-len/4, 0) and min(x+len/4, width-1)
///
/// The lines are the shaft, the tip to each wing, the second shaft, and the tip to the pixels right of the
/// first wing and left of the second: one pixel nearer the axis, where the wings are not on it.
///
/// @param len  length of the shaft
NUV_API void NuvDrawUpArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                            int32_t len, int32_t color);

/// The same pointing down: tip at row max(y+len, 0), wings on row max(y+len/2, 0). Beyond the bottom they are
/// clamped line by line, so a wing there lies on the last row, as the tip does.
NUV_API void NuvDrawDownArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                              int32_t len, int32_t color);

/// The same pointing right: tip at column min(x+len, width-1), wings on column min(x+len/2, width-1) and rows
/// max(y-len/4, 0) and min(y+len/4, height-1), the second shaft on row y+1; the doubled sides of the head end
/// below the first wing and above the second.
NUV_API void NuvDrawRightArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                               int32_t len, int32_t color);

/// The same pointing left: tip at column max(x-len, 0), wings on column max(x-len/2, 0), the rest as to the
/// right.
NUV_API void NuvDrawLeftArrow(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                              int32_t len, int32_t color);

/// NuvDrawUpArrow from a point, in an RGB image.
NUV_API void NuvDrawUpArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                            int32_t len, int32_t r, int32_t g, int32_t b);

/// NuvDrawDownArrow from a point, in an RGB image.
NUV_API void NuvDrawDownArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                              int32_t len, int32_t r, int32_t g, int32_t b);

/// NuvDrawLeftArrow from a point, in an RGB image.
NUV_API void NuvDrawLeftArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                              int32_t len, int32_t r, int32_t g, int32_t b);

/// NuvDrawRightArrow from a point, in an RGB image.
NUV_API void NuvDrawRightArrow(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                               int32_t len, int32_t r, int32_t g, int32_t b);

// ---- Plots of projections --------------------------------------------------------------------------------
//
// Series of sums, one entry per column or row, as bars over what the image shows. A bar of value v has the
// length, in double precision, with extent the height for columns and the width for rows:
//
//     L = truncate((v - lo) / (((hi - lo) + 2.0) / extent) + 0.5)
//
// hi is the greatest entry, or 0 if that is more; lo is the least entry, or width*height*255 if that is less.
// Integer products and differences are 32-bit and wrap: from 8,421,505 pixels on that bound of lo does, and
// may then be less than every entry. A length of 0 or below draws nothing.

/// Bars from the last row upwards in columns x1..x2, never into row 0.
///
/// @param pPrj    entries by column: pPrj[x] is that of column x
/// @param x1, x2  columns; all their entries from 0 on set the scale, those without a column in the image too
NUV_API void NuvDrawPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t x1,
                         int32_t x2, int32_t color);

/// Bars in the columns 0 to min(N, width)-1. All N entries set the scale, those beyond the image too.
NUV_API void NuvDrawPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                         int32_t color);

/// NuvDrawPrjX of N entries with lo = 0.
NUV_API void NuvDrawPrjXMinV0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                              int32_t color);

/// Bars from column 0 to the right in the rows 0 to min(N, height)-1, over columns 0 to min(L, width-1)-1.
/// Only the entries of these rows set the scale, and are read.
NUV_API void NuvDrawPrjY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                         int32_t color);

/// NuvDrawPrjY with lo = 0.
NUV_API void NuvDrawPrjYMinV0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrj, int32_t N,
                              int32_t color);

// ---- Digits ----------------------------------------------------------------------------------------------
//
// A text in a font of the library: the digits 0 to 9, in cells of 8 by 9 pixels, or of 16 by 18, where each
// pixel of the font is a block of 2 by 2. Any other character is passed over and takes no space. A negative x
// or y is raised to 0. Drawing ends before a digit whose x lies above a limit, which keeps one column free at
// the right, so that none is cut there; a y above its limit draws nothing. A negative gap may move the pen
// out of the image, where digits are cut. The result is the x where the pen ends: of a text that draws
// nothing, the x given, or 0 if that is negative.

/// Digits of 8 by 9 pixels in a gray image, on what is there: x up to width-9, y up to height-1. Rows below
/// the image are left out.
///
/// @param gap   added to the 8 pixels from one digit to the next
/// @param pStr  text, zero-terminated
NUV_API int32_t NuvSetNumberString2GryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x,
                                          int32_t y, int32_t gap, int32_t color, char* pStr);

/// Digits of 8 by 9 pixels on black in an RGB image: x up to width-9, y up to height-11. The colour is given
/// as b, g, r, blue first.
NUV_API int32_t NuvSetNumberString2RGBImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x,
                                          int32_t y, int32_t gap, int32_t b, int32_t g, int32_t r,
                                          char* pStr);

/// Digits of 16 by 18 pixels on a ground in an RGB image: x up to width-17, y up to height-21.
///
/// @param gap            added to the 16 pixels from one digit to the next
/// @param bkR, bkG, bkB  colour of the ground
/// @param fgR, fgG, fgB  colour of the digits
NUV_API int32_t NuvSetNumberString20x16RGBImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x,
                                              int32_t y, int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB,
                                              int32_t fgR, int32_t fgG, int32_t fgB, char* pStr);

/// NuvSetNumberString20x16RGBImg in a gray image.
NUV_API int32_t NuvSetNumberString20x16GryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x,
                                              int32_t y, int32_t gap, int32_t bkColor, int32_t fgColor,
                                              char* pStr);

// ---- Hanzi -----------------------------------------------------------------------------------------------
//
// A text of two-byte GB2312 codes, each byte from A1 up, in the 16x16 glyphs of the file hzk16.dat. Its
// folder is that of the host's executable, which the system is asked for: /proc/self/exe on Linux,
// GetModuleFileNameW on Windows; on other systems the font is not found. The file has no header; the glyph of
// the code c1 c2 is the 32 bytes from ((c1-161)*94 + (c2-161))*32 on, 16 rows of two bytes, the top row
// first, the highest bit leftmost.
//
// The library does not bring the file. tools/make_hzk16 FOLDER writes one from the glyphs of GNU Unifont,
// which are licensed under the SIL Open Font License 1.1, or the GNU General Public License, version 2 or
// later, with the font embedding exception; so is what is made of them.
//
// Every pixel of a glyph's cell is written, those outside the image left out. The pen starts at (x, y) and
// moves by the cell and the gap. Where it passes column width-cell-1 it moves to column 0 of the next line,
// one cell below; where that would begin below the image, the text ends.
//
// A code whose place lies before or behind the file draws the glyph before it again, or at the start of the
// text only ground. Where the file ends inside a glyph, the rest of the glyph before stands in. The last byte
// of a text of odd length is paired with 0. ASCII has to go through NuvChar2Wide first.
//
// All return true if y is in range and the font could be opened, also for an empty text; false otherwise, and
// the image is left alone. The file is opened and closed in each call.

/// Hanzi of 16 by 16 pixels in a gray image, for y below height-16.
///
/// @param gap               added to the width of a cell from one glyph to the next
/// @param bkColor, fgColor  gray values of clear and of set bits
/// @param pStr              text, zero-terminated
NUV_API bool NuvDrawChineseString16x16(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                       int32_t gap, int32_t bkColor, int32_t fgColor, char* pStr);

/// The same in an RGB image, for y below height-20.
NUV_API bool NuvDrawChineseString16x16(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                       int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB, int32_t fgR,
                                       int32_t fgG, int32_t fgB, char* pStr);

/// Hanzi of 32 by 32 pixels in an RGB image, for y below height-32: the same glyphs, in blocks of 2 by 2.
NUV_API bool NuvDrawChineseString32x32(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                       int32_t gap, int32_t bkR, int32_t bkG, int32_t bkB, int32_t fgR,
                                       int32_t fgG, int32_t fgB, char* pStr);

/// The same in a gray image, for y below height-32.
NUV_API bool NuvDrawChineseString32x32(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x, int32_t y,
                                       int32_t gap, int32_t bkColor, int32_t fgColor, char* pStr);

/// Makes the two-byte codes of a mixed text: a byte with its top bit set is copied, any other becomes A3 and
/// itself + 128, the full-width form of the character.
///
/// @param pSrc  text, zero-terminated
/// @param pDst  receives the codes, zero-terminated: up to 2*strlen(pSrc) + 1 bytes, in another buffer
NUV_API void NuvChar2Wide(char* pSrc, char* pDst);

// ---- The mark of the project -----------------------------------------------------------------------------

/// Stamps the project's mark, white letters on a black plate of 29 by 13 pixels, with its top left corner at
/// (x, y). What lies outside the image is left out.
///
/// @param pImg  an RGB image if bRGB is true, else a gray one
NUV_API void NuvSetPrivateLogo(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t x, int32_t y);

#endif

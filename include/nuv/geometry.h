/// @file
/// Flips, turns, shifts, and changes of size.
///
/// With bRGB a pixel is three bytes, without it one. An image without pixels changes nothing, and its results
/// are 0 where nothing else is said.
#ifndef NUV_GEOMETRY_H
#define NUV_GEOMETRY_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

// ---- Flips, turns, shifts --------------------------------------------------------------------------------
//
// bRGB tells pixels of three bytes from those of one. Results are other buffers than sources. An image
// without pixels writes nothing.

/// Mirrors top and bottom: row y goes to row height-1-y.
NUV_API void NuvFlipVertical(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pResImg);

/// The same in place.
NUV_API void NuvFlipVertical(uint8_t* pImg, int32_t width, int32_t height, bool bRGB);

/// Mirrors left and right, in place: column x goes to column width-1-x.
NUV_API void NuvFlipHorizontal(uint8_t* pGryImg, int32_t width, int32_t height);

/// Turns by 180 degrees: byte i goes to byte width*height-1-i.
NUV_API void NuvReverseImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// A quarter turn of pixels of four bytes: clockwise like NuvImgRotate90DegreeCS if bCS, else anticlockwise.
NUV_API void NuvRGB32Rotate90Degree(uint8_t* pImg, int32_t width, int32_t height, bool bCS, uint8_t* pResImg);

/// A quarter turn clockwise on the screen: pixel (x, y) goes to column height-1-y of row x.
///
/// @param pResImg  receives an image height wide and width high
NUV_API void NuvImgRotate90DegreeCS(uint8_t* pImg, int32_t width, int32_t height, bool bRGB,
                                    uint8_t* pResImg);

/// A quarter turn anticlockwise: pixel (x, y) goes to column y of row width-1-x.
///
/// @param pResImg  receives an image height wide and width high
NUV_API void NuvImgRotate90DegreeCCS(uint8_t* pImg, int32_t width, int32_t height, bool bRGB,
                                     uint8_t* pResImg);

/// Turns an image about pixel (0, 0) into a new one just large enough, taking the pixel left above.
///
/// With a = angle*3.1415926/180, C and S the cosine and sine of a times 1024, truncated, and C2, S2 those of
/// -a, the corners of the image go to (x*C - y*S) >> 10, (x*S + y*C) >> 10 and give the ranges of X and Y.
/// Pixel (X, Y) of the result is the source at (X*C2 - Y*S2) >> 10, (X*S2 + Y*C2) >> 10, and 0 where there is
/// none. Rows growing downwards, a positive angle turns clockwise on the screen. As the sine of 90 degrees is
/// truncated to 1023, that turn gives a row less than the source has columns, and one more per 1024 of them.
///
/// @param angle                  degrees
/// @param pResWidth, pResHeight  receive the size of the result, also when there is no memory for it
/// @return *pResWidth * *pResHeight bytes from new[], to be released with delete[]; null without memory, or
///         where the result would have more than 2^31-1 bytes. An image without pixels gives null and sizes
///         of 0
NUV_API uint8_t* NuvRotateImgByCCS(uint8_t* pGryImg, int32_t width, int32_t height, double angle,
                                   int32_t* pResWidth, int32_t* pResHeight);

// The next five read a rectangle out of a source in turned coordinates. Pixel (i, j) of the result lies at
//
//     X = x0*65536 + i*C - j*S     Y = y0*65536 + i*S + j*C     in 1/65536 of a pixel,
//
// C and S being the cosine and sine of angle*3.1415/180 times 65536, truncated: (x0, y0) is the position of
// the result's first pixel, about which the rectangle turns. Positions are 32 bits wide and wrap, so that
// columns and rows behind 32767 are out of reach.
//
// Bilinear sampling weighs the pixel at xi = X >> 16, yi = Y >> 16 and its neighbours with fx = X & 65535 and
// fy = Y & 65535, per byte of a pixel:
//
//     top     (p(xi,yi)*(65536-fx) + p(xi+1,yi)*fx) >> 16
//     bottom  (p(xi,yi+1)*(65536-fx) + p(xi+1,yi+1)*fx) >> 16
//     result  (top*(65536-fy) + bottom*fy) >> 16
//
// Where not said otherwise, a position is inside the source if 0 <= xi < width and 0 <= yi < height. The
// right neighbour of a row's last pixel is the first pixel of the next row, and the row behind the last one
// counts as equal to it, so nothing outside the image is read.

/// A turned rectangle of a gray image. The rectangle should lie inside; pixels outside become 0.
NUV_API void NuvCopyRectFromRotateCCS(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                                      double angle, uint8_t* pResImg, int32_t resWidth, int32_t resHeight);

/// A turned rectangle of a gray image, with a test that leaves out the last column and row: inside is
/// 0 <= xi <= width-2 and 0 <= yi <= height-2.
///
/// @param bkColor  its low byte goes to the pixels outside
/// @return whether a pixel was outside; all are of a source without pixels
NUV_API bool NuvCopyRectFromRotateCCS(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                                      double angle, int32_t bkColor, uint8_t* pResImg, int32_t resWidth,
                                      int32_t resHeight);

/// A turned rectangle of an RGB image. The rectangle should lie inside; pixels outside become 0.
NUV_API void NuvRgbCopyRectFromRotateCCS(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x0,
                                         int32_t y0, double angle, uint8_t* pResImg, int32_t resWidth,
                                         int32_t resHeight);

/// A turned rectangle of an RGB image; unlike the gray form it takes the last column and row as inside.
///
/// @param bkColor  its low byte goes to all three bytes of the pixels outside
/// @return whether a pixel was outside; all are of a source without pixels
NUV_API bool NuvRgbCopyRectFromRotateCCS(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x0,
                                         int32_t y0, double angle, int32_t bkColor, uint8_t* pResImg,
                                         int32_t resWidth, int32_t resHeight);

/// A turned and sheared rectangle of a gray image, without interpolation.
///
/// With d = angle, or angle - 180 where angle is above 90, the rows are turned by d as above. Row j takes the
/// places i0 to i0+resWidth-1 of its line, i0 = (j*step >> 12) + 1 and
/// step = truncate(-tan((-d + shiftAngle - 90)*3.14159/180)*4096), and each pixel is the source at (xi, yi).
///
/// The rectangle should lie inside; pixels outside become 0.
NUV_API void NuvCopyRectFromRotateAndShiftFast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0,
                                               int32_t y0, double angle, double shiftAngle, uint8_t* pResImg,
                                               int32_t resWidth, int32_t resHeight);

/// Shifts each row to the left by k times its number, with linear interpolation.
///
/// With K = truncate(k*4096), a = y*K, s = a >> 12 and f = a & 4095, pixel x of row y becomes
/// (p[x+s]*(4096-f) + p[x+s+1]*f) >> 12, for x from 0 to width-s-2 where a > 0, else from s+2 to width-1.
/// Other pixels are left alone: in row 0 these are columns 0 and 1.
///
/// For a negative k, x and x+s run below 0, to the ends of the rows above, as pixels follow each other in
/// memory; rows are written from the top. What would be read or written outside the images is left out, as
/// happens with 2*|k| above width. a and x*4096 + a are 32 bits wide and wrap.
NUV_API void NuvShiftXPerRowFine(uint8_t* pGryImg, int32_t width, int32_t height, double k, uint8_t* pResImg);

/// The same without interpolation: pixel x becomes p[x+s].
NUV_API void NuvShiftXPerRowFast(uint8_t* pGryImg, int32_t width, int32_t height, double k, uint8_t* pResImg);

/// Shifts an image by whole pixels: (x, y) goes to (x+dx, y+dy).
///
/// Columns that fall free become 0. Rows that fall free keep what pResImg held, but it is shifted by dx as
/// well, with its free columns becoming 0.
NUV_API void NuvImageShift(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t dx, int32_t dy,
                           uint8_t* pResImg);

/// Aligns an image to another one by trying all shifts up to a limit.
///
/// The rectangle is cut to columns maxDX..width-maxDX-1 and rows maxDY..height-maxDY-1. A trial compares it
/// in pImg1 with itself moved by (dx, dy) in pImg2: the sum of the absolute differences of all bytes over
/// their number, truncated, the rectangle's last column and row being left out. The least mean wins, the
/// first of equals in the order of dx, then dy, both from negative to positive.
///
/// @param pResImg   receives pImg2 shifted by -*pDX, -*pDY with NuvImageShift: free rows show pImg1, as far
///                  as that was shifted along, and free columns are 0
/// @param maxDX, maxDY  limits in pixels; below 0 nothing is tried
/// @param rect      the part of pImg1 to look at
/// @param pDX, pDY  receive the shift at which pImg2 shows what pImg1 shows at the rectangle
/// @return the mean difference of that shift. If nothing can be tried, or the cut rectangle is empty, the
///         shift is (0, 0) and the result columns*rows*255 of the cut rectangle, or *765 with bRGB, below 0
///         where one of the two is
/// @note A rectangle of one column or row has nothing to compare: each mean is 0, and the first shift wins.
///       Sums are 32-bit and wrap, and so does columns*rows*255 or *765, above which no mean wins: both can
///       wrap from 8,421,505 pixels of the cut rectangle on, with bRGB from 2,807,169 on. A middle of the
///       image that is smaller than that finds the shift of a larger one.
NUV_API int32_t NuvShiftImg2BasedImg1(uint8_t* pImg1, uint8_t* pImg2, uint8_t* pResImg, int32_t width,
                                      int32_t height, bool bRGB, int32_t maxDX, int32_t maxDY, tagRECT rect,
                                      int32_t* pDX, int32_t* pDY);

// ---- Sizes -----------------------------------------------------------------------------------------------
//
// The result is a buffer of the size told. Means truncate. Blocks that do not fit the source wholly at its
// right and lower end are left out. Sizes or steps below 1 write no pixel.

/// Doubles an image to 2*width by 2*height: the pixels stand at even places, the places between two of them
/// get (a + b) >> 1, first along the rows, then between the rows, and the last column and row repeat the one
/// before.
NUV_API void NuvZoomGryImg2x2(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// The same for each byte of an RGB image.
NUV_API void NuvZoomRGBImg2x2(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Every M-th pixel of every N-th row: width/M by height/N.
NUV_API void NuvShrinkGryImgByExtract(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                      uint8_t* pResImg);

/// The means of blocks of M by N pixels, per byte: width/M by height/N. Sums are 32-bit and wrap,
/// from blocks of 8,421,505 white pixels on. If allocation fails, nothing is written.
///
/// @param bRGB  comes second here
NUV_API void NuvShrinkImgByAvr(uint8_t* pImg, bool bRGB, int32_t width, int32_t height, int32_t M, int32_t N,
                               uint8_t* pResImg);

/// Shrinks to a size by the median of each cell, as NuvGetMedianInHistogram gives it (its low byte).
///
/// Cells are width/resWidth by height/resHeight pixels; where that leaves a rest, width/(resWidth-1) or
/// height/(resHeight-1). The last cells are cut off at the end of the image, and give 0 if nothing is left.
NUV_API void NuvShrinkGryImgByMedian(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                     int32_t resWidth, int32_t resHeight);

/// Every second pixel of every second row: width/2 by height/2.
///
/// @param pResWidth, pResHeight  receive the size of the result
NUV_API void NuvShrinkGryImg2x2ByExtract(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                         int32_t* pResWidth, int32_t* pResHeight);

/// The means of blocks of 2 by 2 pixels: width/2 by height/2.
NUV_API void NuvShrinkGryImg2x2ByAvr(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// The means of blocks of 4 by 4 pixels: width/4 by height/4.
///
/// @param pResWidth, pResHeight  receive the size of the result
NUV_API void NuvShrinkGryImg4x4ByAvr(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                     int32_t* pResWidth, int32_t* pResHeight);

/// Every fourth pixel of every fourth row: width/4 by height/4.
///
/// @param pResWidth, pResHeight  receive the size of the result
NUV_API void NuvShrinkGryImg4x4ByExtract(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                         int32_t* pResWidth, int32_t* pResHeight);

/// Resizes by bilinear interpolation in 1/65536 of a pixel, corners upon corners.
///
/// Result (i, j) lies at X = i*sx, Y = j*sy, sx = (width-1)*65536/(resWidth-1) truncated and sy likewise, and
/// is sampled as told at NuvCopyRectFromRotateCCS; the neighbours behind the last column and row are left
/// out. The truncated step, which does not wrap, can end up short of the last column and row. A result size
/// of 1 takes the first column or row.
NUV_API void NuvGryImgBilinearInterpolattionFast(uint8_t* pGryImg, int32_t width, int32_t height,
                                                 uint8_t* pResImg, int32_t resWidth, int32_t resHeight);

/// The same in double precision: X = i*((width-1.0)/(resWidth-1.0)), Y likewise, xi and yi truncated,
///
///     top     p(xi,yi)*((xi+1)-X) + p(xi+1,yi)*(X-xi), or p(xi,yi) in the last column; bottom in row yi+1
///     result  truncate((Y-yi)*bottom + ((yi+1)-Y)*top)
///
/// with the row behind the last one counting as equal to it. A result size of 1 takes the first column or
/// row.
NUV_API void NuvGryImgBilinearInterpolattionStd(uint8_t* pGryImg, int32_t width, int32_t height,
                                                uint8_t* pResImg, int32_t resWidth, int32_t resHeight);

/// NuvGryImgBilinearInterpolattionFast for each byte of an RGB image.
NUV_API void NuvRgbImgBilinearInterpolattionFast(uint8_t* pRGBImg, int32_t width, int32_t height,
                                                 uint8_t* pResImg, int32_t resWidth, int32_t resHeight);

/// Fits a rectangle x1..x2, y1..y2 to what a zoom wants: a width that is a multiple of 4, and a limited
/// height.
///
/// A width w = x2-x1+1 that is a multiple of 4 stays, whatever maxWidth is. Another one becomes min(w,
/// maxWidth) with its two low bits cleared, placed about c = (x1+x2) >> 1: c-w/2+1..c+w/2 left of the middle
/// of the image (2*c < width), else c-w/2..c-1+w/2. A height of maxHeight-2 or more becomes c-h..c+h with c =
/// (y1+y2)/2 and h = (maxHeight-2)/2, so 2*h+1; a smaller one stays.
///
/// @param height  not used
NUV_API void NuvRectResizeX4(int32_t width, int32_t height, int32_t maxWidth, int32_t maxHeight, int32_t* pX1,
                             int32_t* pX2, int32_t* pY1, int32_t* pY2);

#endif

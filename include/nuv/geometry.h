/// @file
/// Geometry: flips, turns, turned rectangles, shifts, and changes of size.
#ifndef NUV_GEOMETRY_H
#define NUV_GEOMETRY_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

/// @defgroup geometry Geometry
///
/// Flips, turns, shifts, and changes of size.
///
/// If bRGB is true, a pixel has three bytes, else one. A function without bRGB that does not say RGB takes
/// gray images. The result buffer must not be the source buffer, unless the function works in place. For an
/// image without pixels nothing is written to the result, and numbers returned are 0, unless a function says
/// otherwise.
/// @{

/// @defgroup geometry_turning Flips and turns
///
/// Mirror images, quarter turns, and turns by any angle.
/// @{

/// Mirrors top and bottom: row y becomes row height-1-y.
NUV_API void NuvFlipVertical(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pResImg);

/// @overload
/// Mirrors top and bottom in place.
NUV_API void NuvFlipVertical(uint8_t* pImg, int32_t width, int32_t height, bool bRGB);

/// Mirrors left and right in place: column x becomes column width-1-x.
NUV_API void NuvFlipHorizontal(uint8_t* pGryImg, int32_t width, int32_t height);

/// Turns a gray image by 180 degrees: byte i becomes byte width*height-1-i.
NUV_API void NuvReverseImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Turns an image of four bytes per pixel by a quarter.
///
/// @param bCS      true: clockwise, as NuvImgRotate90DegreeCS does; false: anticlockwise, as
///                 NuvImgRotate90DegreeCCS does
/// @param pResImg  receives an image height wide and width high
NUV_API void NuvRGB32Rotate90Degree(uint8_t* pImg, int32_t width, int32_t height, bool bCS, uint8_t* pResImg);

/// Turns an image by a quarter clockwise on the screen: pixel (x, y) moves to column height-1-y of row x.
///
/// @param pResImg  receives an image height wide and width high
NUV_API void NuvImgRotate90DegreeCS(uint8_t* pImg, int32_t width, int32_t height, bool bRGB,
                                    uint8_t* pResImg);

/// Turns an image by a quarter anticlockwise on the screen: pixel (x, y) moves to column y of row width-1-x.
///
/// @param pResImg  receives an image height wide and width high
NUV_API void NuvImgRotate90DegreeCCS(uint8_t* pImg, int32_t width, int32_t height, bool bRGB,
                                     uint8_t* pResImg);

/// Turns an image about pixel (0, 0) into a new one just large enough, without interpolation.
///
/// With a = angle*3.1415926/180, C and S are the cosine and sine of a, and C2 and S2 those of -a, each times
/// 1024 and truncated. The four corners of the image move to
///
///     X = (x*C - y*S) >> 10    Y = (x*S + y*C) >> 10
///
/// The least and the greatest X and Y are the sides of the result. Pixel (X, Y) of the result is pixel (x, y)
/// of the source, with
///
///     x = (X*C2 - Y*S2) >> 10    y = (X*S2 + Y*C2) >> 10
///
/// It is 0 if the source has no such pixel. A positive angle turns clockwise on the screen, because y grows
/// downwards.
///
/// @param angle                  degrees
/// @param pResWidth, pResHeight  receive the size of the result, also if allocation fails; 0 for an image
///                               without pixels
/// @return *pResWidth * *pResHeight bytes from new[], to be released with delete[]; null if allocation fails,
///         if the result would have more than 2^31-1 bytes, or for an image without pixels
/// @note The sine of 90 degrees is truncated to 1023. That turn gives one row fewer than the source has
///       columns, and loses one more row for every further 1024 columns.
/// @note A host with another C runtime than the library, such as one built by MSVC, releases the result with
///       nuv_free of the C library nuvimgsdk_c, because delete[] fails there.
NUV_API uint8_t* NuvRotateImgByCCS(uint8_t* pGryImg, int32_t width, int32_t height, double angle,
                                   int32_t* pResWidth, int32_t* pResHeight);

/// @}

/// @defgroup geometry_rectangles Turned rectangles
///
/// Rectangles read out of a source in turned coordinates.
///
/// Pixel (i, j) of the result lies at
///
///     X = x0*65536 + i*C - j*S    Y = y0*65536 + i*S + j*C    in 1/65536 of a pixel
///
/// where C and S are the cosine and sine of angle*3.1415/180 times 65536, truncated, and angle is in degrees.
/// (x0, y0) is the position of the first pixel of the result, about which the rectangle turns. Positions are
/// 32-bit and wrap, so that columns and rows after 32767 cannot be reached.
///
/// Bilinear sampling weighs the pixel at xi = X >> 16, yi = Y >> 16 and its neighbours with fx = X & 65535
/// and fy = Y & 65535, for each byte of a pixel:
///
///     top     (p(xi,yi)*(65536-fx) + p(xi+1,yi)*fx) >> 16
///     bottom  (p(xi,yi+1)*(65536-fx) + p(xi+1,yi+1)*fx) >> 16
///     result  (top*(65536-fy) + bottom*fy) >> 16
///
/// A position is inside the source if 0 <= xi < width and 0 <= yi < height, unless a function says otherwise.
/// The right neighbour of the last pixel of a row is the first pixel of the next row. The row after the last
/// one counts as a copy of it. Nothing outside the image is read.
/// @{

/// Reads a turned rectangle of a gray image, with 0 outside the source.
///
/// The rectangle should lie inside the source. Sampling is bilinear.
NUV_API void NuvCopyRectFromRotateCCS(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                                      double angle, uint8_t* pResImg, int32_t resWidth, int32_t resHeight);

/// Reads a turned rectangle of a gray image, with a background colour outside the source.
///
/// Here the last column and row count as outside: a position is inside if 0 <= xi <= width-2 and
/// 0 <= yi <= height-2. Sampling is bilinear.
///
/// @param bkColor  its low byte is written to the pixels outside
/// @return whether a pixel was outside. If the source has no pixels, all are outside
NUV_API bool NuvCopyRectFromRotateCCS(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0, int32_t y0,
                                      double angle, int32_t bkColor, uint8_t* pResImg, int32_t resWidth,
                                      int32_t resHeight);

/// Reads a turned rectangle of an RGB image, with 0 outside the source.
///
/// The rectangle should lie inside the source. Sampling is bilinear.
NUV_API void NuvRgbCopyRectFromRotateCCS(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x0,
                                         int32_t y0, double angle, uint8_t* pResImg, int32_t resWidth,
                                         int32_t resHeight);

/// Reads a turned rectangle of an RGB image, with a background colour outside the source.
///
/// Here the last column and row count as inside, unlike in the gray form. Sampling is bilinear.
///
/// @param bkColor  its low byte is written to all three bytes of the pixels outside
/// @return whether a pixel was outside. If the source has no pixels, all are outside
NUV_API bool NuvRgbCopyRectFromRotateCCS(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x0,
                                         int32_t y0, double angle, int32_t bkColor, uint8_t* pResImg,
                                         int32_t resWidth, int32_t resHeight);

/// Reads a turned and sheared rectangle of a gray image, without interpolation.
///
/// With d = angle, or angle - 180 for an angle above 90, the rows are turned by d in the same way as those of
/// NuvCopyRectFromRotateCCS. Row j takes places i0 to i0+resWidth-1 of its line:
///
///     i0 = (j*step >> 12) + 1    step = truncate(-tan((-d + shiftAngle - 90)*3.14159/180)*4096)
///
/// Each pixel is the source at (xi, yi), and 0 outside the source. The rectangle should lie inside.
NUV_API void NuvCopyRectFromRotateAndShiftFast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x0,
                                               int32_t y0, double angle, double shiftAngle, uint8_t* pResImg,
                                               int32_t resWidth, int32_t resHeight);

/// @}

/// @defgroup geometry_shifts Shifts
///
/// Rows shifted one by one, whole images shifted, and one image aligned to another.
/// @{

/// Shifts each row to the left by k times its number, with linear interpolation.
///
/// With K = truncate(k*4096), row y has a = y*K, s = a >> 12 and f = a & 4095. p[x] is pixel x of the row.
/// Pixel x of the result becomes
///
///     (p[x+s]*(4096-f) + p[x+s+1]*f) >> 12
///
/// for x from 0 to width-s-2 if a > 0, else from s+2 to width-1. Other pixels of the result are unchanged. In
/// row 0 these are columns 0 and 1.
///
/// For a negative k, x and x+s run below 0. Pixels follow each other as in memory, so that these places are
/// the ends of the rows above. Rows are written from the top. Pixels that would be read or written outside
/// the images are left out, which can happen if 2*|k| exceeds width. a and x*4096 + a are 32-bit and wrap.
NUV_API void NuvShiftXPerRowFine(uint8_t* pGryImg, int32_t width, int32_t height, double k, uint8_t* pResImg);

/// Shifts each row to the left by k times its number, without interpolation.
///
/// Pixel x becomes p[x+s]. The shift s, the range of x and the limits are those of NuvShiftXPerRowFine.
NUV_API void NuvShiftXPerRowFast(uint8_t* pGryImg, int32_t width, int32_t height, double k, uint8_t* pResImg);

/// Shifts an image by whole pixels: (x, y) moves to (x+dx, y+dy).
///
/// Columns that nothing is moved to become 0. Rows that nothing is moved to keep what pResImg held, but
/// shifted by dx as well, with 0 in the columns left free.
///
/// @param pResImg  receives the shifted image; what it held is read in the rows left free
NUV_API void NuvImageShift(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, int32_t dx, int32_t dy,
                           uint8_t* pResImg);

/// Aligns an image to another one by a trial of all shifts up to a limit.
///
/// The rectangle is cut to columns maxDX..width-maxDX-1 and rows maxDY..height-maxDY-1. A trial compares it
/// in pImg1 with the rectangle moved by (dx, dy) in pImg2. The comparison leaves out the last column and row
/// of the rectangle. Its result is the sum of the absolute differences of all bytes divided by their number,
/// truncated. The least mean wins. Ties go to the first trial in the order of dx, then of dy, both from
/// negative to positive.
///
/// @param pResImg       receives pImg1, and then pImg2 shifted by NuvImageShift so that it lies on pImg1.
///                      Free rows therefore show pImg1, shifted sideways with them, and free columns are 0
/// @param maxDX, maxDY  limits in pixels; if one is below 0, nothing is tried
/// @param rect          the part of pImg1 to compare
/// @param pDX, pDY      receive the shift at which pImg2 shows what pImg1 shows in the rectangle
/// @return the mean difference of that shift. If nothing can be tried, if the cut rectangle is empty, or if
///         the images have no pixels, the shift is (0, 0), and the result is columns*rows*255 of the cut
///         rectangle, or columns*rows*765 with bRGB. It is negative if one of the two is
/// @note A rectangle of one column or row has nothing to compare: each mean is 0, and the first shift wins.
/// @note Sums are 32-bit and wrap. So does columns*rows*255 or *765, below which a mean must lie to win. Both
///       can wrap from 8,421,505 pixels of the cut rectangle on, with bRGB from 2,807,169 on. In images of
///       that size, a smaller rectangle in the middle finds the shift.
NUV_API int32_t NuvShiftImg2BasedImg1(uint8_t* pImg1, uint8_t* pImg2, uint8_t* pResImg, int32_t width,
                                      int32_t height, bool bRGB, int32_t maxDX, int32_t maxDY, tagRECT rect,
                                      int32_t* pDX, int32_t* pDY);

/// @}

/// @defgroup geometry_sizes Changes of size
///
/// Images doubled, shrunk by whole factors, and resized freely.
///
/// Means truncate. Blocks that the right or lower end of the source would cut are left out. If a size or a
/// step is below 1, no pixel is written.
/// @{

/// Doubles a gray image to 2*width by 2*height.
///
/// The source pixels stand at even places. A place between two pixels a and b gets (a + b) >> 1, first along
/// the rows, then between the rows. The last column and row repeat the one before.
NUV_API void NuvZoomGryImg2x2(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Doubles an RGB image to 2*width by 2*height.
///
/// Each byte of a pixel becomes what NuvZoomGryImg2x2 makes of it.
NUV_API void NuvZoomRGBImg2x2(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Shrinks a gray image to every M-th pixel of every N-th row: width/M by height/N pixels.
NUV_API void NuvShrinkGryImgByExtract(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                      uint8_t* pResImg);

/// Shrinks an image to the means of blocks of M by N pixels, per byte: width/M by height/N pixels.
///
/// If allocation fails, nothing is written.
///
/// @param bRGB  the second argument here, not the fourth
/// @note Sums are 32-bit and wrap, from blocks of 8,421,505 white pixels on.
NUV_API void NuvShrinkImgByAvr(uint8_t* pImg, bool bRGB, int32_t width, int32_t height, int32_t M, int32_t N,
                               uint8_t* pResImg);

/// Shrinks a gray image to a given size by the median of each cell.
///
/// A cell has width/resWidth by height/resHeight pixels. Where this division leaves a remainder, it is
/// width/(resWidth-1) or height/(resHeight-1) instead. The last cells are cut off at the end of the image.
/// The median is the low byte of what NuvGetMedianInHistogram gives, and 0 for a cell without pixels.
NUV_API void NuvShrinkGryImgByMedian(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                     int32_t resWidth, int32_t resHeight);

/// Shrinks a gray image to every second pixel of every second row: width/2 by height/2 pixels.
///
/// @param pResWidth, pResHeight  receive the size of the result
NUV_API void NuvShrinkGryImg2x2ByExtract(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                         int32_t* pResWidth, int32_t* pResHeight);

/// Shrinks a gray image to the means of blocks of 2 by 2 pixels: width/2 by height/2 pixels.
NUV_API void NuvShrinkGryImg2x2ByAvr(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Shrinks a gray image to the means of blocks of 4 by 4 pixels: width/4 by height/4 pixels.
///
/// @param pResWidth, pResHeight  receive the size of the result
NUV_API void NuvShrinkGryImg4x4ByAvr(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                     int32_t* pResWidth, int32_t* pResHeight);

/// Shrinks a gray image to every fourth pixel of every fourth row: width/4 by height/4 pixels.
///
/// @param pResWidth, pResHeight  receive the size of the result
NUV_API void NuvShrinkGryImg4x4ByExtract(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                         int32_t* pResWidth, int32_t* pResHeight);

/// Resizes a gray image by bilinear interpolation in 1/65536 of a pixel, with corners on corners.
///
/// Result (i, j) lies at X = i*sx, Y = j*sy, where sx = (width-1)*65536/(resWidth-1) and
/// sy = (height-1)*65536/(resHeight-1), truncated. It is sampled as described for @ref geometry_rectangles,
/// but the last column and row are their own neighbours. The truncated steps can end up short of the last
/// column and row. They do not wrap. A result width or height of 1 takes the first column or row.
NUV_API void NuvGryImgBilinearInterpolattionFast(uint8_t* pGryImg, int32_t width, int32_t height,
                                                 uint8_t* pResImg, int32_t resWidth, int32_t resHeight);

/// Resizes a gray image by bilinear interpolation in double precision, with corners on corners.
///
/// Result (i, j) lies at X = i*((width-1.0)/(resWidth-1.0)), Y = j*((height-1.0)/(resHeight-1.0)). With xi
/// and yi these truncated:
///
///     top     p(xi,yi)*((xi+1)-X) + p(xi+1,yi)*(X-xi), or p(xi,yi) in the last column
///     bottom  the same in row yi+1, or in row yi if it is the last
///     result  truncate((Y-yi)*bottom + ((yi+1)-Y)*top)
///
/// A result width or height of 1 takes the first column or row.
NUV_API void NuvGryImgBilinearInterpolattionStd(uint8_t* pGryImg, int32_t width, int32_t height,
                                                uint8_t* pResImg, int32_t resWidth, int32_t resHeight);

/// Resizes an RGB image by bilinear interpolation in 1/65536 of a pixel, with corners on corners.
///
/// Each byte of a pixel becomes what NuvGryImgBilinearInterpolattionFast makes of it.
NUV_API void NuvRgbImgBilinearInterpolattionFast(uint8_t* pRGBImg, int32_t width, int32_t height,
                                                 uint8_t* pResImg, int32_t resWidth, int32_t resHeight);

/// Changes a rectangle for a zoom: to a width that is a multiple of 4, and to a limited height.
///
/// A width w = x2-x1+1 that is a multiple of 4 stays, whatever maxWidth is. Any other width becomes
/// min(w, maxWidth) with its two low bits cleared. Its columns are, with c = (x1+x2) >> 1:
///
///     c-w/2+1 .. c+w/2     if c lies left of the middle of the image: 2*c < width
///     c-w/2 .. c-1+w/2     otherwise
///
/// A height of maxHeight-2 or more becomes 2*h+1 rows c-h..c+h, with c = (y1+y2)/2 and h = (maxHeight-2)/2. A
/// smaller height stays.
///
/// @param height              not used
/// @param pX1, pX2, pY1, pY2  the rectangle; read, and changed
NUV_API void NuvRectResizeX4(int32_t width, int32_t height, int32_t maxWidth, int32_t maxHeight, int32_t* pX1,
                             int32_t* pX2, int32_t* pY1, int32_t* pY2);

/// @}

/// @}

#endif

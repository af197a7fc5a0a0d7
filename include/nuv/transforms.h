/// @file
/// Segmentation and image transforms: regions, flips, turns and shifts, resizing, images combined, pixel
/// values, statistics, noise.
///
/// Images that are passed together have the same size and layout. With bRGB a pixel is three bytes, without
/// it one. An image without pixels changes nothing, and its results are 0 where nothing else is said.
#ifndef NUV_TRANSFORMS_H
#define NUV_TRANSFORMS_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

// ---- Segmentation ----------------------------------------------------------------------------------------

/// The tree of dark regions of an image, without a threshold given.
///
/// Gray levels fall one by one, from the first at or above which enough pixels lie (more than sqrt(minArea),
/// those of 255 left out) down to minGry. At each level the regions are the outer contours of the pixels that
/// are darker, with more than sqrt(minArea) codes and an area, as of NuvAreaAndPerimeter, of minArea or more.
/// Those of the first level that has some are the tree. Of each later one, regions that lie in none of the
/// tree enter it, and so do regions in a hole of another region of the level, unless that is number 0, if
/// both lie in the same region of the tree. A region of the tree that holds one region of the level has
/// shrunk: its curArea becomes the area of that one. One that holds several has split: they enter the tree,
/// and take its place if the sum of their areas is more than ratio times its curArea; otherwise they come
/// below it.
///
/// @param pGryImg  changed, also without regions: becomes its inverse, with its four sides 0
/// @param pTmpImg  work space of 2*width*height bytes
/// @param minArea  least area of a region, in pixels; below 0 there is none, and lone pixels count too
/// @param minGry   the lowest level; from 255 on there is none
/// @param ratio    0: a region that splits always goes; 1 or more: it stays. Not a number counts as more than
///                 1
/// @return the regions, sorted by rising area, to be released with NuvFreeRegionStruct; null without regions, or
///         if there is no memory for about 30 bytes a pixel. A region for which there is no memory is left out
NUV_API RegionStruct* NuvMergeSplit(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                    int32_t minArea, int32_t minGry, double ratio);

/// Releases a list of NuvMergeSplit, or the end of one; null is accepted. Its records are the library's: no
/// other list may be given.
NUV_API void NuvFreeRegionStruct(RegionStruct* pRegion);

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

// ---- Images combined byte by byte ------------------------------------------------------------------------
//
// a is a byte of image 1 and b the byte of image 2 in its place; N counts bytes, and 0 or less does nothing.
// A result may stand in the place of a source.

/// a becomes max(a - b, 0), in place in image 1; gray.
NUV_API void NuvImg1Substract2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// b becomes max(a - b, 0), in place in image 2; gray.
NUV_API void NuvImg1Substract2To2(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// max(a - b, 0) for every byte, also of RGB images.
NUV_API void NuvImg1SubstractImg2(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                  uint8_t* pResImg);

/// a becomes |a - b|, in place in image 1; gray.
NUV_API void NuvImg1Difference2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// How much two images differ, as a gray image: |a - b|, and with bRGB the largest of a pixel's three.
///
/// @param pResImg  receives width*height bytes, also with bRGB
NUV_API void NuvDifferenceImg12(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                uint8_t* pResImg);

/// The same with the histogram of the result.
///
/// @param pHistogram  receives 256 counts, width*height in all
NUV_API void NuvDifferenceImg12(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                uint8_t* pResImg, int32_t* pHistogram);

/// a becomes a & b.
NUV_API void NuvImg1AndImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// a & b.
NUV_API void NuvImg1AndImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// a becomes a ^ b.
NUV_API void NuvImg1XorImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// a ^ b.
NUV_API void NuvImg1XorImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// a becomes a | b.
NUV_API void NuvImg1OrImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// a | b.
NUV_API void NuvImg1OrImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// Keeps the largest value that each byte has had: call it once per frame.
///
/// With bRGB the bytes go their own ways, so that the channels of a pixel may come from different frames.
///
/// @param pMaxImg  read and written; starts as the first frame, or as 0
NUV_API void NuvRemainMaxGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMaxImg);

/// Keeps the smallest value that each byte has had.
///
/// @param pMinImg  read and written; starts as the first frame, or as 255
NUV_API void NuvRemainMinGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMinImg);

/// Both at once, into two buffers that do not overlap.
NUV_API void NuvRemainMaxMinGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMaxImg,
                                uint8_t* pMinImg);

// ---- Sums and differences --------------------------------------------------------------------------------

/// The integral image: S(x, y) is the sum of all pixels from (0, 0) to (x, y), both included.
///
/// The sum of any rectangle is then S(x2, y2) - S(x1-1, y2) - S(x2, y1-1) + S(x1-1, y1-1), correct also where
/// S itself has wrapped.
///
/// @param pSum  receives width*height sums. They are 32-bit and wrap, from 8,421,505 white pixels on
/// @see F. Crow, Summed-area tables for texture mapping, 1984
NUV_API void NuvDoSumGryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pSum);

/// Mean absolute difference of two rectangles, truncated; of RGB images, per byte.
///
/// Rectangles of the same size are compared without their last row and last column: one pixel of width or
/// height gives 0. Of two sizes, the one of fewer rows (rect1 if equal) is walked whole, and its pixel in row
/// r and column c meets the pixel of the other in
///
///     row truncate(r*fy), fy = rows of the other / rows of the walked; column truncate(c*fx), likewise
///
/// with r*fy and c*fx added up step by step. Only the rows decide which is walked: fx may be below 1. Without
/// a pixel to walk the result is 0. Sums are 32-bit and wrap, from 8,421,505 bytes that differ by 255 on, which
/// are 2,807,169 RGB pixels.
///
/// @param width         of both images
/// @param rect1, rect2  in image 1 and image 2, in pixels, all ends inclusive; they must lie in their images
NUV_API int32_t NuvImgDifferenceInRect(uint8_t* pImg1, uint8_t* pImg2, bool bRGB, int32_t width,
                                       tagRECT rect1, tagRECT rect2);

/// Contrast of a block with the ring around it: the mean of the block less the mean of the ring, each
/// truncated.
///
/// The ring is what the block widened by M pixels on each side has more than the block; the widened block is
/// cut to the image. Sums are 32-bit and wrap, from a block or a ring of 8,421,505 white pixels on.
///
/// @param x1, x2, y1, y2  the block, ends inclusive; it must lie in the image
/// @return 0 also if the block or the ring has no pixel
NUV_API int32_t NuvCenterBlockMeanDif(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                      int32_t y1, int32_t y2, int32_t M);

/// Mean of a rectangle, truncated; 0 for an empty one. The sum is 32-bit and wraps, from 8,421,505
/// white pixels on.
///
/// @param height          not used
/// @param x1, x2, y1, y2  ends inclusive; the rectangle must lie in the image
NUV_API int32_t NuvGryRectAvr(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2);

/// The range of the values in a rectangle, without a share of its pixels at either end.
///
///     K = truncate((x2-x1+1)*ratio*(y2-y1+1))
///
/// @param x1, x2, y1, y2  ends inclusive; the rectangle must lie in the image
/// @param ratio           share to ignore at each end; 0 gives the smallest and the largest value
/// @param pMin            receives the first value from 0 up by which more than K pixels are passed, or 256
/// @param pMax            receives the first value from 255 down to 1, likewise, or 0
NUV_API void NuvGryMinMaxInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                int32_t y2, double ratio, int32_t* pMin, int32_t* pMax);

/// The bounding box of N points. The first point is read in any case: with N of 0 or less it is the result.
NUV_API void NuvPointsRect(int32_t* pX, int32_t* pY, int32_t N, int32_t* pMinX, int32_t* pMaxX,
                           int32_t* pMinY, int32_t* pMaxY);

/// The brightest window of M columns by N rows.
///
/// Corners are tried in columns 0 to width-M-1, and in column 0 in any case, and in rows 0 to height-N-1:
/// never the last place of an axis, so that N = height tries none. Of equal windows the first in reading
/// order is taken. The time does not depend on N, and grows with the logarithm of M.
///
/// @param M, N    size of the window
/// @param pX, pY  receive the corner plus (M/2, N/2); (width/2, height/2) if the result is 0
/// @return the mean of the window; 0 if no window tried is brighter than black, if it is empty or larger than
///         the image, or if there is no memory
NUV_API double NuvMaxBrightRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                int32_t* pX, int32_t* pY);

/// Noise level of an image: the median of the deviations within windows, under a mask.
///
/// Windows begin at every M/2-th column and N/2-th row (every one if that is 0) and reach M columns and N
/// rows further, both included, or to the image's end: a whole one is M+1 by N+1 pixels. One that has n
/// pixels under the mask counts if 3n > M*N, as often as 4n/(M*N) says, truncated, with its standard
/// deviation rounded. The median is that of NuvGetMedianInHistogram: a single value v seen k times gives v+1
/// for k = 1, else v.
///
/// @param pMskImg  mask of the size of the image; not 0 counts
/// @param M, N     at least 1, else the result is 0; M*N, 3n and 4n are 32-bit and wrap: from windows of
///                 536,870,912 pixels on
NUV_API int32_t NuvEstimateImgStdev(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                    int32_t M, int32_t N);

// ---- Pixel values ----------------------------------------------------------------------------------------
//
// Gray images, changed in place unless there is a result.

/// 255 - v.
NUV_API void NuvInvertGryValue(uint8_t* pGryImg, int32_t width, int32_t height);

/// The same into a result, which may be the source.
NUV_API void NuvInvertGryValue(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Brings an image to a mean and a deviation:
///
///     v becomes clamp(((v - A)*dev)/S + avr, 0, 255)
///
/// with the mean A and the standard deviation S of the image, all of it in truncating integers. Where S is 0,
/// as in a flat image, every pixel becomes avr, clamped. Sums are 32-bit and wrap: that of
/// the squares behind S at 2^31/S^2 pixels, which is 132,100 for a half black and half white image and 860
/// thousand for an S of 50, and that of the values from 8,421,505 white pixels on.
///
/// @param avr  mean to reach
/// @param dev  deviation to reach
NUV_API void NuvGryImgNormalize(uint8_t* pGryImg, int32_t width, int32_t height, int32_t avr, int32_t dev);

/// Reduces an image to 16 levels: v becomes ((v - lo)*15)/(hi - lo), truncated, and stays 0 to 15.
///
/// lo and hi are the first values from below and from above by which more than a tenth of the pixels is
/// passed. What is below lo becomes 0 and what is above hi becomes 15; if lo is hi, all becomes 0.
NUV_API void NuvGryImg4Bit(uint8_t* pGryImg, int32_t width, int32_t height);

/// Selects a value in a rectangle: v becomes 255 if it is value, else 0. Nothing else is changed.
///
/// @param x1, x2, y1, y2  ends inclusive; the rectangle must lie in the image
NUV_API void NuvSetPixelsTo255(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                               int32_t y2, uint8_t value);

/// Odd values become 255.
NUV_API void NuvSetOddPixelsTo255(uint8_t* pGryImg, int32_t width, int32_t height);

/// Frees 0 and 251..255 for use as marks: 0 becomes 1, and what is above 250 becomes 250.
NUV_API void NuvChange0and250PlusPixels(uint8_t* pGryImg, int32_t width, int32_t height);

/// A gain that grows down the image, from about 2 - ratio in the first row over 1 in row height/2 to about
/// ratio:
///
///     gain(y) = (y - height/2)*((ratio - 1)/(height/2)) + 1
///
/// v becomes 255 where v*gain is above 255, else the low byte of v*gain, truncated: gains below 0, as they
/// come with a ratio above 2 or below 0, wrap. In an image of one row, whose half is 0, the gain does not
/// exist and all becomes 0.
NUV_API void NuvCorrectPixelsGryValueByRow(uint8_t* pGryImg, int32_t width, int32_t height, double ratio);

/// A gain that grows from 1 in column width/2 to about ratio at both sides; otherwise the same:
///
///     gain(x) = |x - width/2|*(((ratio - 1)*2)/width) + 1
///
/// An even width reaches the ratio in column 0 alone, an odd one on neither side.
NUV_API void NuvCorrectPixelsGryValueByCol(uint8_t* pGryImg, int32_t width, int32_t height, double ratio);

/// Evens out the brightness of the rows: each is brought to the mean of all.
///
///     v becomes min((v*gain) >> 10, 250), gain = ((mean of the row sums) << 10)/(sum of the row)
///
/// A black row stays black. Sums are 32-bit and wrap, from 8,421,505 white pixels on. So does the mean <<
/// 10, from a mean of 2^21 on: a row of 8225 white pixels.
///
/// @return the mean of the image before, truncated; 0, with nothing changed, if height is above 4096
NUV_API int32_t NuvLightCorretPerRow(uint8_t* pGryImg, int32_t width, int32_t height);

/// The same with columns.
///
/// @return the mean of the image before, truncated; 0, with nothing changed, if width is above 4096
NUV_API int32_t NuvLightCorretPerCol(uint8_t* pGryImg, int32_t width, int32_t height);

/// Writes the low byte of color to the first and last row and column.
NUV_API void NuvSetImageBoundary(uint8_t* pGryImg, int32_t width, int32_t height, int32_t color);

/// Writes the low byte of color to the first width bytes of the first and of the last row, and to bytes 0 and
/// width-1 of each row, as if the image were gray: of a row of 3*width bytes the first third is framed.
NUV_API void NuvSetRGBImageBoundary(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t color);

// ---- Pasting ---------------------------------------------------------------------------------------------
//
// A whole image is written into another one, its first pixel at (x, y). What falls outside, on any side, is
// left out. The result keeps its other pixels.

/// Pastes a gray image into a gray one.
NUV_API void NuvPasteGryImg2ResImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

/// Pastes a gray image into an RGB one, to all three bytes of its pixels.
NUV_API void NuvPasteGryImg2RGBImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

/// Pastes an RGB image into an RGB one.
NUV_API void NuvPasteRGBImg2ResImg(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

// ---- Noise -----------------------------------------------------------------------------------------------

/// Adds noise to N bytes in place, whatever image they are.
///
/// r is a uniform integer from 0 to 32767, fresh wherever it stands, and g a normal sample, made from r's by
/// the polar method. lo and hi are the smallest and the largest of the bytes before the call; held(value) is
/// the value clamped to them, and truncated.
///
///     type 0  Gaussian         held(v + g*noise)
///     type 1  uniform          held(v + (1 - r*2/32767)*noise)
///     type 2  salt and pepper  where (r/32767)*100 < noise: hi if r/32767 < 0.5, else lo. 0 and 255 stand
///                              for lo and hi if they are equal. A noise of 100 spares one byte in 32768
///     type 3  Poisson          of mean v, whatever the strength. Up to v = 100, k - 1 where k is the number
///                              of factors r/32767 whose product is first below exp(-v), so that an r of 0
///                              ends the count; above it truncate(sqrt(v)*g + v), of which the low byte is
///                              stored: what exceeds 255 wraps
///     type 4  Rician           held(sqrt(x*x + y*y)), x = g*noise + v/sqrt(2), y likewise with another g
///
/// Other types change nothing, and neither does a noise of 0.
///
/// Randomness: the first call in a process, even with N = 0, seeds the runtime's generator (srand) from the
/// clock and an address, and later calls do not, so that noise differs from run to run. Each call that draws
/// takes five numbers from rand() and goes on with a generator of its own: a host that calls srand() after a
/// first call gets the same noise for the same seed, as long as nobody else draws from rand() in between, and
/// other threads are neither held up nor disturbed by more than these five. Calls may run at once on separate
/// buffers wherever rand() may.
///
/// @param noise  strength: in gray levels, for type 2 in percent. A negative one is first replaced by
///               ((hi - lo)*noise)/-100, percent of the range, which may be 0: type 3 runs then, too
/// @see G. E. P. Box and M. E. Muller, A note on the generation of random normal deviates, 1958;
///      G. Marsaglia and T. A. Bray, A convenient method for generating normal variables, 1964; D. E. Knuth,
///      Seminumerical algorithms, 1969; S. O. Rice, Mathematical analysis of random noise, 1944
NUV_API void Brindlemar2008AddNoise(uint8_t* pImg, int32_t N, double noise, uint32_t type);

#endif

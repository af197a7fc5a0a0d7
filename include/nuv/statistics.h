/// @file
/// Statistics of image regions: means, ranges, contrasts, the brightest window, deviations.
#ifndef NUV_STATISTICS_H
#define NUV_STATISTICS_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

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

/// The bounding box of N points. The first point is read in any case: with N of 0 or less it is the result.
NUV_API void NuvPointsRect(int32_t* pX, int32_t* pY, int32_t N, int32_t* pMinX, int32_t* pMaxX,
                           int32_t* pMinY, int32_t* pMaxY);

#endif

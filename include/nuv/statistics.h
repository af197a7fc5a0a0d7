/// @file
/// Statistics of image regions: means, ranges, contrasts, the brightest window, differences, noise levels.
#ifndef NUV_STATISTICS_H
#define NUV_STATISTICS_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

/// @defgroup statistics Statistics
///
/// Means, ranges and contrasts of image regions, the brightest window, differences and noise levels.
///
/// Images are gray and have width*height pixels unless an entry says otherwise; none is changed. A region x1,
/// x2, y1, y2 covers columns x1..x2 and rows y1..y2, all ends inclusive, and must lie in the image.
/// @{

/// Computes the mean of a region, truncated.
///
/// The sum is 32-bit; it wraps from 8,421,505 white pixels on.
///
/// @param height  not used
/// @return the mean; 0 for an empty region
NUV_API int32_t NuvGryRectAvr(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                              int32_t y1, int32_t y2);

/// Finds the range of the values in a region, without a given share of its pixels at either end.
///
/// The number of pixels ignored at each end is
///
///     K = truncate((x2-x1+1)*ratio*(y2-y1+1))
///
/// @param ratio  share to ignore at each end; 0 gives the smallest and the largest value
/// @param pMin   receives the first value, from 0 upward, at which the cumulative count exceeds K; 256 if
///               there is none
/// @param pMax   receives the first value, from 255 downward, at which the cumulative count exceeds K; 0 if
///               there is none
NUV_API void NuvGryMinMaxInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                int32_t y2, double ratio, int32_t* pMin, int32_t* pMax);

/// Computes the contrast of a block with the ring around it: the mean of the block minus the mean of the
/// ring.
///
/// Each mean is truncated. The ring is the block widened by M pixels on each side, without the block itself;
/// the widened block is clipped to the image. Sums are 32-bit; they wrap from a block or a ring of 8,421,505
/// white pixels on.
///
/// @param x1, x2, y1, y2  the block, ends inclusive; it must lie in the image
/// @param M               width of the ring in pixels
/// @return the contrast; 0 if the block or the ring has no pixels
NUV_API int32_t NuvCenterBlockMeanDif(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                      int32_t y1, int32_t y2, int32_t M);

/// Finds the brightest window of M columns by N rows.
///
/// The top left corner is tried in columns 0..width-M-1, or in column 0 alone if M = width, and in rows
/// 0..height-N-1. The last place of an axis is therefore never tried, and N = height tries none. Ties go to
/// the first window in raster order. The time per pixel does not depend on N, and it grows with the logarithm
/// of M.
///
/// @param M, N    size of the window
/// @param pX, pY  receive the corner plus (M/2, N/2); (width/2, height/2) if the result is 0
/// @return the mean of the window; 0 if every window tried is black, if the window is empty or larger than
///         the image, or if allocation fails
NUV_API double NuvMaxBrightRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                int32_t* pX, int32_t* pY);

/// Computes the mean absolute difference of two rectangles, truncated.
///
/// The mean is per byte, also for RGB images. Rectangles of the same size are compared without their last row
/// and last column, so a width or height of one pixel gives 0.
///
/// If the sizes differ, the rectangle with fewer rows (rect1 if they have the same number) is scanned
/// completely. Its pixel in row r and column c is compared with the pixel of the other rectangle in
///
///     row truncate(r*fy)        fy = rows of the other / rows of the scanned one
///     column truncate(c*fx)     fx = columns of the other / columns of the scanned one
///
/// where r*fy and c*fx are formed by repeated addition. The number of columns plays no part in the choice, so
/// fx may be below 1. If the scanned rectangle has no pixels, the result is 0.
///
/// Sums are 32-bit. They wrap from 8,421,505 bytes that differ by 255 on, which are 2,807,169 RGB pixels.
///
/// @param pImg1, pImg2  images with three bytes per pixel if bRGB, else one
/// @param width         width of both images in pixels
/// @param rect1, rect2  rectangles in image 1 and image 2, in pixels, all ends inclusive; they must lie in
///                      their images
NUV_API int32_t NuvImgDifferenceInRect(uint8_t* pImg1, uint8_t* pImg2, bool bRGB, int32_t width,
                                       tagRECT rect1, tagRECT rect2);

/// Estimates the noise level of an image: the median of the standard deviations within windows, under a mask.
///
/// Windows begin at every M/2-th column and every N/2-th row (at every one if that is 0). They reach M
/// columns and N rows further, both included, or to the end of the image: a whole window has M+1 by N+1
/// pixels. A window with n pixels under the mask counts if 3n > M*N. Its rounded standard deviation then
/// enters a histogram 4n/(M*N) times, truncated. The result is NuvGetMedianInHistogram of that histogram: a
/// single value v that entered k times gives v+1 for k = 1, else v.
///
/// M*N, 3n and 4n are 32-bit; they wrap from windows of 536,870,912 pixels on.
///
/// @param pMskImg  mask of the size of the image; pixels that are not 0 count
/// @param M, N     size of the windows in columns and rows
/// @return the noise level in gray values; 0 if M or N is below 1
NUV_API int32_t NuvEstimateImgStdev(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                    int32_t M, int32_t N);

/// Finds the bounding box of N points.
///
/// The first point is always read: with N of 0 or less it is the result.
///
/// @param pX, pY        coordinates of the points
/// @param N             number of points
/// @param pMinX, pMaxX  receive the least and the greatest x
/// @param pMinY, pMaxY  receive the least and the greatest y
NUV_API void NuvPointsRect(int32_t* pX, int32_t* pY, int32_t N, int32_t* pMinX, int32_t* pMaxX,
                           int32_t* pMinY, int32_t* pMaxY);

/// @}

#endif

/// @file
/// Filters of gray and RGB images: box means, extremes, medians and edge-preserving smoothing.
#ifndef NUV_FILTERS_H
#define NUV_FILTERS_H

#include <cstdint>

#include "nuv/api.h"

/// @defgroup filters Filters
///
/// Box means, extremes, medians and edge-preserving smoothing of gray and RGB images.
///
/// The source has width*height pixels and is not changed. The result has the same size and must be another
/// buffer. If the image has no pixels, nothing is written.
/// @{

/// @defgroup filters_box_means Box means
///
/// Each pixel becomes the mean of a window of 2M + 1 columns by 2N + 1 rows around it. The three bytes of an
/// RGB pixel are averaged separately. With a the number of the pixels in the window and s their sum, the mean
/// is
///
///     (s * (2^24 / a)) >> 24        with 2^24 / a rounded down
///
/// Both steps round down, so the result lies below the exact mean. A constant image of value v > 0 becomes
/// v - 1 wherever the window has more than one pixel; beyond 65,793 pixels it can lose more. A window of one
/// pixel copies its pixel.
///
/// M and N are the half sizes of the window. Negative half sizes count as 0; NuvGryAverageFilterByX and
/// NuvGryAverageFilterByY take the absolute value instead. The time per pixel does not depend on the height
/// of the window, and it grows with the logarithm of its width. If the memory for the sums (a few values per
/// column) cannot be allocated, nothing is written.
///
/// @see M. J. McDonnell, Box-filtering techniques, 1981
/// @{

/// Computes box means of a gray image, with windows that shrink at the border.
///
/// The window at pixel (x, y) has the half sizes min(M, x, width-1-x) and min(N, y, height-1-y), so it stays
/// centred. A corner pixel keeps its value.
NUV_API void NuvGryAverageFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                 uint8_t* pResImg);

/// Computes the box means of NuvGryAverageFilter within limits of image width and window area.
///
/// A window of exactly 16129 pixels (M = N = 63, for example) is accepted, but it gives 0 wherever it lies
/// wholly in the image. The smaller windows at the border give their means.
///
/// @return true on success; false, with nothing written, if width > 4096, if (2M + 1)*(2N + 1) > 16129, or if
///         allocation fails
NUV_API bool NuvGryAverageFilterFast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                     uint8_t* pResImg);

/// Computes box means of a gray image, and repeats the nearest full window at the border.
///
/// The window may have any size, but windows of more than 2^24 pixels give 0. In the rows N..height-N-1, the
/// columns 0..M-1 repeat column M, and the last M columns repeat column width-M-1. The N rows at the top then
/// repeat row N, and the N rows at the bottom repeat row height-N-1.
///
/// If width <= 2M or height <= 2N, no full window exists and no mean is computed. The border rows are still
/// copied, from whatever the result holds at that moment: first those at the top, then those at the bottom. A
/// copy from or to a row outside the image is left out.
///
/// @return true on success; false, with nothing written, if width > 4096 or if allocation fails
NUV_API bool NuvGryAverageFilterFastNonBoundary(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M,
                                                int32_t N, uint8_t* pResImg);

/// Computes means along the rows of a gray image.
///
/// The result is that of NuvGryAverageFilterFastNonBoundary with the half sizes |M| and 0, at any width.
NUV_API void NuvGryAverageFilterByX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M,
                                    uint8_t* pResImg);

/// Computes means along the columns of a gray image.
///
/// The result is that of NuvGryAverageFilterFastNonBoundary with the half sizes 0 and |N|, at any width.
NUV_API void NuvGryAverageFilterByY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t N,
                                    uint8_t* pResImg);

/// Computes box means of an RGB image, with windows that shrink at the border.
///
/// The rule is that of NuvGryAverageFilter, applied to each of the three bytes of a pixel.
NUV_API void NuvRGBAverageFilter(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                 uint8_t* pResImg);

/// Computes the box means of NuvRGBAverageFilter within limits of image width and window area.
///
/// The limits and the special case of 16129 pixels are those of NuvGryAverageFilterFast.
///
/// @return as NuvGryAverageFilterFast
NUV_API bool NuvRGBAverageFilterFast(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                     uint8_t* pResImg);

/// Computes box means of an RGB image, and repeats the nearest full window at the border.
///
/// The rule is that of NuvGryAverageFilterFastNonBoundary, applied to each of the three bytes of a pixel.
///
/// @return as NuvGryAverageFilterFastNonBoundary
NUV_API bool NuvRGBAverageFilterFastNonBoundary(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M,
                                                int32_t N, uint8_t* pResImg);

/// @}

/// @defgroup filters_extremes Extremes along one axis
///
/// Each pixel becomes the greatest (Max) or least (Min) of 3 or 5 neighbouring pixels in its row or column.
/// The window is centred on the pixel, except in NuvGryImgMinFilter5xInCol, and is clipped at the ends of the
/// row or column.
/// @{

/// Replaces each pixel by the greatest of columns x-1..x+1 in its row.
NUV_API void NuvGryImgMaxFilter3xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Replaces each pixel by the greatest of columns x-2..x+2 in its row.
NUV_API void NuvGryImgMaxFilter5xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Replaces each pixel by the greatest of rows y-1..y+1 in its column.
NUV_API void NuvGryImgMaxFilter3xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Replaces each pixel by the greatest of rows y-2..y+2 in its column.
NUV_API void NuvGryImgMaxFilter5xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Replaces each pixel by the least of columns x-1..x+1 in its row.
NUV_API void NuvGryImgMinFilter3xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Replaces each pixel by the least of columns x-2..x+2 in its row.
NUV_API void NuvGryImgMinFilter5xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Replaces each pixel by the least of rows y-1..y+1 in its column.
NUV_API void NuvGryImgMinFilter3xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Replaces each pixel by the least of rows y-3..y+1 in its column.
///
/// The window is clipped to rows 0..height-2, so the last row is never read. Unlike the other windows of this
/// group, it is centred one row above the pixel that it is written to. An image of one row is copied.
NUV_API void NuvGryImgMinFilter5xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// @}

/// @defgroup filters_medians Medians
///
/// Medians of windows of 2M + 1 columns by 2N + 1 rows. M and N are the half sizes. The time per pixel does
/// not depend on the size of the window, apart from steps: windows of 3 by 3 and 5 by 5 are the fastest by
/// far, then those of at most 255 pixels, then those of at most 32767 pixels.
///
/// @see S. Perreault and P. Hebert, Median filtering in constant time, 2007
/// @{

/// Computes the medians of all windows that lie in the image, and writes 0 elsewhere.
///
/// M columns at each side and N rows at top and bottom become 0. The whole result becomes 0 if no window fits
/// or if allocation fails.
///
/// @param M, N  half sizes of the window; values below 1 count as 1
NUV_API void NuvGryImgMedianBoundary0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                      uint8_t* pResImg);

/// Computes medians with windows clipped at top and bottom, and means at the left and right sides.
///
/// The window covers the rows max(y-N, 0)..min(y+N, height-1) everywhere. The pixels of a row become
///
///     x < M                     the mean of columns 0..x+M, rounded down
///     M <= x < width-M-1        the median of columns x-M..x+M
///     width-M-1 <= x            the mean of columns x-M..x+M, rounded down
///
/// The columns of the last case are not clipped: columns from width on are the first ones of the next row in
/// memory.
///
/// A clipped window can have an even number of pixels (row 0 with N = 1, for example). Let lower and upper be
/// the two middle values of such a window in sorted order. At x = M the median is upper. At each further x it
/// is the value of the pixel to the left, clamped to lower..upper. It therefore depends on the pixels to the
/// left in its row, and it need not be a value of its window.
///
/// Sums are 32-bit; they wrap from windows of 8,421,505 white pixels on. If width <= 2M, nothing is written.
/// If allocation fails, the result is incomplete.
///
/// @param pGryImg  gray image of width*height bytes, followed by M more readable bytes: the means at the end
///                 of the last rows depend on them
/// @param M, N     half sizes of the window; negative values count as 0
NUV_API void NuvGryFastMedianFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                    uint8_t* pResImg);

/// @}

/// @defgroup filters_smoothing Edge-preserving smoothing
///
/// Weighted means that smooth noise and spare edges.
/// @{

/// Smooths noise below a given strength and spares edges.
///
/// An interior pixel c becomes c + (sum >> 3), where sum adds up the contributions of its eight neighbours n.
/// With a = |n - c|, a neighbour contributes
///
///     a <= T         n - c
///     T < a <= 3T    3T - a, with the sign of n - c
///     3T < a         0
///
/// The low 8 bits are stored. Results near 0 and 255 can wrap around, because a neighbour just beyond T
/// contributes nearly 2T. The border is not written.
///
/// @param T  strength of the noise, in gray values. At 0 or less the interior pixels are copied; at 255 or
///           more all neighbours count in full
NUV_API void NuvGryZedFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, uint8_t* pResImg);

/// @}

/// @}

#endif

/// @file
/// Filters of gray and RGB images: box means, extremes, medians, smoothing.
#ifndef NUV_FILTERS_H
#define NUV_FILTERS_H

#include <cstdint>

#include "nuv/api.h"

// Sources are read only and have width*height pixels; results are of the same size in another buffer. An
// image without pixels writes nothing. Everything here may run on several threads at once.

// ---- Box means -------------------------------------------------------------------------------------------
//
// Each pixel becomes the mean of a window of 2M + 1 columns by 2N + 1 rows, each byte of an RGB pixel by
// itself. The mean of a pixels with sum s is
//
//     (s * (2^24 / a)) >> 24        with 2^24 / a rounded down
//
// so that it is rounded down, and below an exact mean: a constant image of value v > 0 becomes v - 1 wherever
// the window has more than one pixel. A window of one pixel gives it back.
//
// Half sizes below 0 count as 0; in ByX and ByY their absolute value counts. The time does not grow with the
// height of the window, and little with its width. A form that has no memory for its sums (a few values per
// column) writes nothing.
//
// @see M. J. McDonnell, Box-filtering techniques, 1981

/// Box means; at the border the window shrinks on both sides alike and stays centred.
///
/// At pixel (x, y) it has the half sizes min(M, x, width-1-x) and min(N, y, height-1-y). So a corner keeps
/// its value.
NUV_API void NuvGryAverageFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                 uint8_t* pResImg);

/// NuvGryAverageFilter with limits.
///
/// A window of exactly 16129 pixels, as M = N = 63 gives it, is taken, but its mean is 0 wherever it lies
/// wholly in the image. Windows that shrink at the border give their means there.
///
/// @return false, with nothing written, if width > 4096 or (2M + 1)*(2N + 1) > 16129 (or without memory)
NUV_API bool NuvGryAverageFilterFast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                     uint8_t* pResImg);

/// Box means; at the border the nearest full window stands in.
///
/// The window may have any size. In the rows N..height-N-1, columns 0..M-1 repeat column M, and the last M
/// columns repeat column width-M-1. The N rows at top and bottom then repeat rows N and height-N-1.
///
/// With width <= 2M or height <= 2N there is no full window, and no mean is computed. The border rows are
/// copied all the same, from what the result holds, first those at the top and then those at the bottom, as
/// far as both rows of a copy lie in the image.
///
/// @return false, with nothing written, if width > 4096 (or without memory)
NUV_API bool NuvGryAverageFilterFastNonBoundary(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M,
                                                int32_t N, uint8_t* pResImg);

/// Means along rows: NuvGryAverageFilterFastNonBoundary of half sizes |M| and 0, at any width.
NUV_API void NuvGryAverageFilterByX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M,
                                    uint8_t* pResImg);

/// Means along columns: NuvGryAverageFilterFastNonBoundary of half sizes 0 and |N|, at any width.
NUV_API void NuvGryAverageFilterByY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t N,
                                    uint8_t* pResImg);

/// NuvGryAverageFilter of the three bytes of each pixel.
NUV_API void NuvRGBAverageFilter(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                 uint8_t* pResImg);

/// NuvGryAverageFilterFast of the three bytes of each pixel; same limits.
NUV_API bool NuvRGBAverageFilterFast(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                     uint8_t* pResImg);

/// NuvGryAverageFilterFastNonBoundary of the three bytes of each pixel; same limit.
NUV_API bool NuvRGBAverageFilterFastNonBoundary(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t M,
                                                int32_t N, uint8_t* pResImg);

// ---- Extremes along one axis -----------------------------------------------------------------------------
//
// Each pixel becomes the greatest (Max) or least (Min) of 3 or 5 pixels in its row or column, itself in the
// middle. At the ends of the row or column the window is clipped.

/// Greatest of columns x-1..x+1.
NUV_API void NuvGryImgMaxFilter3xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Greatest of columns x-2..x+2.
NUV_API void NuvGryImgMaxFilter5xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Greatest of rows y-1..y+1.
NUV_API void NuvGryImgMaxFilter3xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Greatest of rows y-2..y+2.
NUV_API void NuvGryImgMaxFilter5xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Least of columns x-1..x+1.
NUV_API void NuvGryImgMinFilter3xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Least of columns x-2..x+2.
NUV_API void NuvGryImgMinFilter5xInRow(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Least of rows y-1..y+1.
NUV_API void NuvGryImgMinFilter3xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Least of rows y-3..y+1, clipped to rows 0..height-2: unlike its siblings the window stands one row higher
/// than the row it is written to, and the last row is not read. An image of one row is copied.
NUV_API void NuvGryImgMinFilter5xInCol(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

// ---- Medians ---------------------------------------------------------------------------------------------
//
// Windows have 2M + 1 columns by 2N + 1 rows. The time does not grow with the height of the window, and
// slowly with its width. Windows of 3 by 3 and 5 by 5 are the fastest by far, then those of at most 255
// pixels.
//
// @see T. S. Huang, G. J. Yang and G. Y. Tang, A fast two-dimensional median filtering algorithm, 1979;
// S. Perreault and P. Hebert, Median filtering in constant time, 2007

/// Medians of the windows that lie in the image; 0 at all other pixels: M columns at each side, N rows at top
/// and bottom, and everything where no window fits (or without memory).
///
/// @param M, N  half sizes; below 1 counts as 1
NUV_API void NuvGryImgMedianBoundary0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                      uint8_t* pResImg);

/// Medians with windows clipped at top and bottom, and means at the sides.
///
/// With the rows max(y-N, 0)..min(y+N, height-1) in all cases, the pixels of a row are
///
///     x < M                     the mean of columns 0..x+M, rounded down
///     M <= x < width-M-1        the median of columns x-M..x+M
///     width-M-1 <= x            the mean of columns x-M..x+M, rounded down. They are not clipped: columns
///                               from width on are the first ones of the next row of memory
///
/// Where the clipped window has an even number of pixels (row 0 with N = 1), let lower and upper be the two
/// in the middle of their order. The median at x = M is the upper one. From there on it is the value of the
/// pixel before where that lies between the two, inclusive, else the nearer of them. So it depends on the
/// pixels before in its row, and need not be a value in its window.
///
/// Sums are 32-bit and wrap, from windows of 8,421,505 white pixels on. Half sizes below 0 count as 0. With width <= 2M nothing is written; without
/// memory the result is incomplete.
///
/// @param pGryImg  gray image of width*height bytes, with M more bytes behind them that can be read: the
///                 means at the end of the last rows depend on them
NUV_API void NuvGryFastMedianFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                    uint8_t* pResImg);

// ---- Smoothing that spares edges --------------------------------------------------------------------------

/// Smoothes noise and spares edges: c + (sum >> 3), c being the pixel and the sum that of what its eight
/// neighbours n add, with a = |n - c|:
///
///     a <= T         n - c
///     T < a <= 3T    3T - a, with the sign of n - c
///     3T < a         0
///
/// The low 8 bits are stored: near 0 and 255 results can wrap around, as neighbours just beyond T add nearly
/// 2T. The outermost rows and columns are not written.
///
/// @param T  the level of the noise; at 0 and below the inner pixels are copied, from 255 on all neighbours
///           count in full
NUV_API void NuvGryZedFilter(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, uint8_t* pResImg);

#endif

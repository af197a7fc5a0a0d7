/// @file
/// Edges: gradient images, the Shen-Jun detector, and work on edge images.
#ifndef NUV_EDGES_H
#define NUV_EDGES_H

#include <cstdint>

#include "nuv/api.h"

// ---- Gradient images -------------------------------------------------------------------------------------
//
// One byte per pixel that says how strong the local change is. The number in a name is the direction of the
// edge that it answers to: 0 a horizontal edge (rows differ), 90 a vertical one. T, B, L, R, TL ... are the
// neighbours of a pixel:
//
//     G0  = TL + 2 T + TR - BL - 2 B - BR
//     G90 = TL + 2 L + BL - TR - 2 R - BR
//
// Sources have width*height pixels, results width*height bytes in another buffer. Unless a function says
// otherwise, all of the result is written: the interior as told, and a band of 0 around it, one pixel wide
// for windows of 3 by 3 and two for those of 5. An image without an interior gets its band alone.
//
// @see L. Roberts, Machine perception of three-dimensional solids, 1963; I. Sobel and G. Feldman, A 3x3
// isotropic gradient operator for image processing, 1968; J. Prewitt, Object enhancement and extraction, 1970

/// max(|R - L|, |B - T|).
NUV_API void NuvRobert(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// min(|B - T| + |R - L|, 255) where a mask is not 0, else 0.
///
/// @param pMskImg  mask of the size of the image, or null: everywhere
NUV_API void NuvRobertByMask(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height,
                             uint8_t* pResImg);

/// The largest of the three channels' min(|B - T| + |R - L|, 255).
NUV_API void NuvRobertRGBImage2GryRobert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg);

/// min(|B - T| + |R - L|, 255) of each channel, as an RGB image of width*height*3 bytes.
///
/// Instead of a band, 0 is written to the first width bytes of the first and of the last row, and to bytes 0
/// and width-1 of each row, over what the interior has there. The other bytes of the border pixels are left
/// alone.
NUV_API void NuvRobertRGBImage2RGBRobert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Sobel gradient strength, city-block form: min(|G0| + |G90|, 255).
NUV_API void NuvGryImgSobel(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// min(|G90|, 255) where |G0| < |G90|, else 0: vertical edges alone.
NUV_API void NuvGryImgSobel90Just(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// min(|G0|, 255) where |G90| < |G0|, else 0: horizontal edges alone.
NUV_API void NuvGryImgSobel0Just(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// min(|G0|, 255).
NUV_API void NuvGryImgSobel0(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// min(|G90|, 255).
NUV_API void NuvGryImgSobel90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// The N rows above less the N rows below, over 2M + 1 columns: min(|difference|, 255), not divided by the
/// area.
///
/// Written are the pixels x from M to width-M-2, y from N to height-N-2; 0 goes to rows 0..N-1 and
/// height-N-1..height-2 and, in the rows between, to columns 0..M-1 and width-M..width-1, as far as the image
/// goes. What is in none of these, such as the last row and column width-M-1, is left alone. Sums are 32-bit
/// and wrap, from N*(2M + 1) = 8,421,505 white pixels on.
///
/// @param M, N  half sizes; below 1 counts as 1
NUV_API void NuvGradientByPrewitt0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                   uint8_t* pResImg);

/// The M columns at the left less the M columns at the right, over 2N + 1 rows: min(|difference|, 255).
///
/// Written are the pixels x from M to width-M-2, y from N to height-N-2; 0 goes to rows 0..N-1 and
/// height-N-1..height-2 and, in columns M..width-M-2, to rows height-N..height-1. All else is left alone.
///
/// @param M, N  half sizes; below 1 counts as 1
NUV_API void NuvGradientByPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                    uint8_t* pResImg);

/// The larger of two differences, two pixels against two along the row and along the column, at most 250
/// each.
NUV_API void NuvGradient5x5ByPrewitt0_90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// min(|p[x-2] + p[x-1] - p[x+1] - p[x+2]|, 255) along the row; the band is two pixels wide.
NUV_API void NuvPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// The same in a region, cut to the interior; nothing else is written.
NUV_API void NuvPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                          int32_t y2, uint8_t* pResImg);

/// Two rows above less two rows below, over five columns: min(|difference|, 250).
NUV_API void NuvGradient0ByPrewitt5x5(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// The mean of four directions, min((d1 + d2 + d3 + d4)/4, 255), in windows of 2M + 1 by 2N + 1:
///
///     d1  |the N rows above less the N rows below|
///     d2  |the M columns at the left less the M columns at the right|
///     d3  |the pixels left of the rising diagonal less those right of it|
///     d4  the pixels left of the falling diagonal less those right of it, where that is positive; else what
///     d4
///         was at the pixel before that had one, in raster order, and 0 before the first
///
/// A d4 of 255 or more makes the pixel 255. The diagonals are taken for M = N: row r of the window is divided
/// at column 2N - r and r. With M below N the dividing column can pass the end of its row; the left side then
/// goes on in the next rows of the window, and behind its last row counts 0.
///
/// Written are the windows that fit, x from M to width-M-1, y from N to height-N-1; 0 goes to the N rows at
/// top and bottom and, in the rows between, to columns 0 to M-1, and column M where no window fits the width.
/// The other columns that no window reaches are left alone. Windows of more than 16129 pixels, or negative
/// sizes, write nothing.
NUV_API void NuvGradientByPrewitt(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                  uint8_t* pResImg);

// ---- The Shen-Jun detector -------------------------------------------------------------------------------
//
// The image is smoothed by a first-order recursive filter in four directions; the difference between the
// source and the smoothed image is a band-limited Laplacian, and an edge is where it changes sign and the
// source has a strong step. The edge is one pixel wide, on the bright side of the step.
//
// Smoothing builds the scratch image T from the source G by step(new, old) = old + (new - old)*a0:
//
//     row 0     T(x,0) = G(x,0)
//     row y     T(0,y) = G(0,y); left to right  T(x) = step(G(x), T(x-1));
//               right to left  T(x) = step(T(x), T(x+1)); down  T(x,y) = step(T(x,y), T(x,y-1))
//     at last   up, from row height-2 to row 0  T(x,y) = step(T(x,y), T(x,y+1))
//
// An interior pixel p is an edge pixel if
//
//     T(p) < G(p),  and  G(n) < T(n) for one of its eight neighbours n,  and
//     |G(p) - G(n)| >= grdThreshold for one of its eight neighbours n.
//
// Common to all forms:
//
// - pGryImg is the source, width*height bytes, read only. pTmpImg is scratch of the caller's, of the same
//   size; it is wholly overwritten and holds T on return.
// - pResImg receives 255 on edge pixels and 0 elsewhere, the outermost rows and columns included. It must be
//   another buffer than the other two.
// - grdThreshold is in gray levels. At 0 or below the step condition always holds, above 255 never.
// - An image less than 3 pixels wide or high has no interior, so no edges. One without pixels writes nothing.
//
// @see J. Shen and S. Castan, An optimal linear operator for step edge detection, 1992

/// Edges with a floating coefficient on a byte scratch image: step truncates (new - old)*a0 + old toward
/// zero.
///
/// @param a0  weight of the new sample, meaningful above 0 up to 1: 1 smoothes nothing, and finds nothing.
///            Steps beyond a byte, as other values give them, are stored as their low byte
NUV_API void NuvShenJunEdgeStd(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, double a0,
                               int32_t grdThreshold, uint8_t* pResImg);

/// Edges in integer arithmetic, the fast form: step is ((new - old) >> shift) + old, rounding down.
///
/// @param shift  gives the coefficient 1/2^shift; clamped to 1..3
NUV_API void NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                int32_t shift, int32_t grdThreshold, uint8_t* pResImg);

/// The same edges as a list of points in raster order, which ends when it is full.
///
/// @param pX, pY  receive the points, maxN entries each, and one entry if maxN is 0 or below
/// @param maxN    capacity: the search returns as soon as maxN points are stored. It is compared after a
///                point is stored, so 0 or below still stores the first point
/// @return the number of points stored
NUV_API int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                   int32_t shift, int32_t grdThreshold, int32_t* pX, int32_t* pY,
                                   int32_t maxN);

/// The same edges as an image and as a list of its first points.
///
/// @param pX, pY  receive the points, maxN entries each
/// @param maxN    capacity: points beyond it are marked in pResImg only; 0 or below stores none
/// @return the number of points stored
NUV_API int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                   int32_t shift, int32_t grdThreshold, int32_t* pX, int32_t* pY,
                                   int32_t maxN, uint8_t* pResImg);

/// Edges with a floating coefficient on a floating scratch image, the exact form: nothing is rounded.
///
/// @param pTmpImg  scratch of width*height double
/// @param a0       weight of the new sample, meaningful above 0 up to 1
NUV_API void NuvShenJunEdgeFine(uint8_t* pGryImg, double* pTmpImg, int32_t width, int32_t height, double a0,
                                int32_t grdThreshold, uint8_t* pResImg);

// ---- Edge images cleaned ---------------------------------------------------------------------------------
//
// In an edge image 0 is no edge and any other value an edge pixel. Images are changed in place.

/// Deletes the pixels where edges cross or clump: interior pixels with more than maxNeighbours of their eight
/// neighbours set, all judged on the image as it came, with its outermost rows and columns cleared first.
/// Pixels of value 128 are deleted too. Pixels without a neighbour stay, whatever the limit.
NUV_API void NuvEdgeDeleteNoiseAndCrossPoints(uint8_t* pBinImg, int32_t width, int32_t height,
                                              int32_t maxNeighbours);

/// Keeps the outer contours that have at least minLength codes and that perimeter, as their pixels alone. A
/// lone pixel has no codes and always goes.
///
/// @param pBinImg  edge image of 0 and 255; changed as NuvGetContours tells
/// @param pResImg  receives 255 on the contours kept and 0 elsewhere, width*height bytes in another buffer
NUV_API void NuvEdgeDeleteNoiseByLength(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                        uint8_t* pResImg);

/// Deletes the interior edge pixels whose gradient |B - T| + |R - L| in a gray image is below minGrd.
///
/// @param pGryImg  gray image of the same size in another buffer; read only
NUV_API void NuvRemoveEdgePointsByGrd(uint8_t* pEdgeImg, uint8_t* pGryImg, int32_t width, int32_t height,
                                      int32_t minGrd);

/// Marks where gaps between the ends of edges can be bridged.
///
/// Interior edge pixels with fewer than two neighbours become 200. With R = gapLength/2 + 1, pixels at least
/// R from the border that are no edge and allowed by the mask become 100 if their window, R pixels to the
/// left and up and R-1 to the right and down, holds two pixels of value 200 (among its first thousand) with
/// the pixel between their rows and between their columns, inclusive.
///
/// @param pMskImg    mask of the size of the image: not 0 where a gap may be bridged
/// @param gapLength  about the longest gap; below -1 only the ends are marked
NUV_API void NuvConnectEdge(uint8_t* pEdgeImg, uint8_t* pMskImg, int32_t width, int32_t height,
                            int32_t gapLength);

// ---- Points and numbers from edges -----------------------------------------------------------------------
//
// Rectangles must lie inside the image. Results are indexed by the absolute row or column.

/// The two strong rows of each column of a gradient image.
///
/// Over the rows between y1 and y2, both excluded, the first row with the greatest value is found (row 0 if
/// all are 0), and then the first with the greatest value among those at least minGap rows from it (itself if
/// all of those are 0).
///
/// @param pFirst, pSecond  receive width entries each: the smaller and the larger row, 0 outside x1..x2
NUV_API void NuvExtractTwoEdgePointPerCol(uint8_t* pGrdImg, int32_t width, int32_t minGap, int32_t x1,
                                          int32_t x2, int32_t y1, int32_t y2, int32_t* pFirst,
                                          int32_t* pSecond);

/// The two strongest pixels in each row and in each column of a rectangle.
///
/// The first is the strongest of the line, the first of equals; the second the strongest of those more than
/// 10 pixels from it, the last of equals, or the first again where those are all 0. A row of zeros gives -1
/// to pRight and the value that pBottom[y] holds on entry to pLeft; a column of zeros gives -1 twice.
///
/// @param pLeft, pRight  receive the columns in order, entries y1..y2
/// @param pTop, pBottom  receive the rows in order, entries x1..x2; pBottom is also read at y1..y2 as told
NUV_API void NuvExtractEdgePointInRect(uint8_t* pGrdImg, int32_t width, int32_t x1, int32_t y1, int32_t x2,
                                       int32_t y2, int32_t* pLeft, int32_t* pRight, int32_t* pTop,
                                       int32_t* pBottom);

/// NuvExtractEdgePointInRect on the rows and columns of an ellipse with centre (cx, cy) and half axes rx, ry,
/// which must lie inside the image. With rx = 0 the columns are lines without pixels, with ry = 0 the rows,
/// which count as zeros.
NUV_API void NuvExtractEdgePointInCircle(uint8_t* pGrdImg, int32_t width, int32_t cx, int32_t cy, int32_t rx,
                                         int32_t ry, int32_t* pLeft, int32_t* pRight, int32_t* pTop,
                                         int32_t* pBottom);

/// A gray threshold voted for by edge pixels.
///
/// Each edge pixel strictly inside the rectangle votes for a range of gray levels, from its own value c and
/// the values lo..hi among c and seven samples around: (1,0), (2,-1), (2,-2), (1,-3), (0,-3), (-1,-2),
/// (-1,-1).
///
/// @param x1, x2, y1, y2  rectangle; the samples of its inner pixels must lie in the image
/// @param mode            1: lo to c; 2: c to hi; any other: lo to hi
/// @return the level with most votes, the lowest of equals; 0 without an edge pixel
NUV_API int32_t NuvGetThresholdByEdge(uint8_t* pGryImg, uint8_t* pEdgeImg, int32_t width, int32_t x1,
                                      int32_t x2, int32_t y1, int32_t y2, int32_t mode);

/// The range of gray levels (largest less smallest) around each pixel, and the histogram of the ranges.
///
/// The window is 2M + 1 by 2N + 1. Near the top it moves inwards and keeps its height, near the bottom it is
/// cut short. Its columns are x..x+2M for x below M, x-2M..x from x = width-M-1 on, and x-M..x+M between;
/// where the row is too narrow for that they end with it, and the first of the forms that fit counts.
/// Negative half sizes count as 0.
///
/// @param pResImg     receives the ranges, width*height bytes
/// @param pHistogram  receives 256 bins
/// @return false, and nothing written, for a width above 4096
NUV_API bool NuvEdgeTripeDetection(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                   uint8_t* pResImg, int32_t* pHistogram);

// ---- The histogram at edges -------------------------------------------------------------------------------

/// The histogram of the gray levels at the two sides of edges, so that object and ground show without the
/// ramp between them.
///
/// Edges are the pixels whose local range (NuvEdgeTripeDetection with M and N = 1) is T or more. Per row,
/// with W = 2M + 1, each run of edge pixels is sampled: where its first pixel is brighter than its last by T
/// or more, outwards in pairs from W apart on, while a pair differs by T or more; else its middle, and at
/// each side the first pixel W or more away (column 0 excepted) that differs from it by more than T. A
/// negative M counts as 0.
///
/// @param pHistogram  receives 256 bins
/// @param pResImg     receives 0 and 200 (edges), each increased by 1 per sample taken, width*height bytes.
///                    For a width above 4096 it is not filled first: what it holds counts as the local ranges
NUV_API void NuvEdgeModelHistogram(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t T,
                                   int32_t* pHistogram, uint8_t* pResImg);

#endif

/// @file
/// Edges: gradient images, the Shen-Jun detector, clean-up of edge images, edge points and histograms.
#ifndef NUV_EDGES_H
#define NUV_EDGES_H

#include <cstdint>

#include "nuv/api.h"

/// @defgroup edges Edges
///
/// Gradient images, the Shen-Jun detector, clean-up of edge images, edge points and histograms.
///
/// A gray image or a mask has width*height bytes, an RGB image width*height*3. Sources are read only. If
/// width or height is 0 or below, no pixel is read or written.
/// @{

/// @defgroup edges_gradients Gradient images
///
/// One byte per pixel states how strong the local change is.
///
/// The number in a name is the direction of the edges that the function finds: 0 for horizontal edges, where
/// rows differ, and 90 for vertical ones, where columns differ. T, B, L, R, TL, TR, BL and BR are the
/// neighbours of a pixel at the top, bottom, left and right, and at its corners. G0 and G90 are the Sobel
/// responses:
///
///     G0  = TL + 2*T + TR - BL - 2*B - BR
///     G90 = TL + 2*L + BL - TR - 2*R - BR
///
/// pGryImg and pRGBImg are sources. pResImg receives the result, width*height bytes in another buffer. Unless
/// a function says otherwise, it writes the whole result: the stated value in the interior, and 0 in a border
/// one pixel wide, or two where the window has five rows or columns. An image without an interior receives
/// its border alone.
///
/// @see L. Roberts, Machine perception of three-dimensional solids, 1963
/// @see I. Sobel and G. Feldman, A 3x3 isotropic gradient operator for image processing, 1968
/// @see J. Prewitt, Object enhancement and extraction, 1970
/// @{

/// Computes the larger of the two central differences: max(|R - L|, |B - T|).
NUV_API void NuvRobert(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the sum of the two central differences where a mask is set.
///
/// The value is min(|B - T| + |R - L|, 255) there, and 0 elsewhere.
///
/// @param pMskImg  mask of width*height bytes, not 0 where the gradient is taken. Null selects every pixel
NUV_API void NuvRobertByMask(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height,
                             uint8_t* pResImg);

/// Computes the largest of the three channels' sums of central differences as a gray image.
///
/// The sum of a channel is min(|B - T| + |R - L|, 255).
NUV_API void NuvRobertRGBImage2GryRobert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the sum of the two central differences of each channel as an RGB image.
///
/// The value of a channel is min(|B - T| + |R - L|, 255).
///
/// The border is cleared as if the image had one byte per pixel; only the row stride is that of an RGB image.
/// After the interior, 0 is written to the first width bytes of the first and of the last row, and to
/// bytes 0 and width-1 of each row. All other bytes of the border pixels are unchanged.
///
/// @param pResImg  receives an RGB image of width*height*3 bytes in another buffer
NUV_API void NuvRobertRGBImage2RGBRobert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the Sobel gradient in city-block form: min(|G0| + |G90|, 255).
NUV_API void NuvGryImgSobel(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the Sobel gradient of vertical edges alone: min(|G90|, 255) where |G0| < |G90|, and 0 elsewhere.
NUV_API void NuvGryImgSobel90Just(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the Sobel gradient of horizontal edges alone: min(|G0|, 255) where |G90| < |G0|, and 0 elsewhere.
NUV_API void NuvGryImgSobel0Just(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the Sobel response to horizontal edges: min(|G0|, 255).
NUV_API void NuvGryImgSobel0(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the Sobel response to vertical edges: min(|G90|, 255).
NUV_API void NuvGryImgSobel90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the difference of the N rows above and the N rows below each pixel, over 2M + 1 columns.
///
///     min(|sum of rows y-N..y-1 - sum of rows y+1..y+N|, 255)        over columns x-M..x+M
///
/// The difference is not divided by the area of the window. Sums are 32-bit and wrap: N*(2M + 1) = 8,421,505
/// white pixels are the first that do.
///
/// The value is written to columns M..width-M-2 of rows N..height-N-2. 0 is written to rows 0..N-1 and
/// height-N-1..height-2 and, in the rows between, to columns 0..M-1 and width-M..width-1, as far as the image
/// has them. All other pixels, such as the last row and column width-M-1, are left alone. If allocation
/// fails, only the rows of 0 are written.
///
/// @param M  half width of the window; below 1 counts as 1
/// @param N  half height of the window; below 1 counts as 1
NUV_API void NuvGradientByPrewitt0(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                   uint8_t* pResImg);

/// Computes the difference of the M columns left and the M columns right of each pixel, over 2N + 1 rows.
///
///     min(|sum of columns x-M..x-1 - sum of columns x+1..x+M|, 255)        over rows y-N..y+N
///
/// The difference is not divided by the area of the window. Sums are 32-bit and wrap: M*(2N + 1) = 8,421,505
/// white pixels are the first that do.
///
/// The value is written to columns M..width-M-2 of rows N..height-N-2. 0 is written to rows 0..N-1 and
/// height-N-1..height-2 and, in columns M..width-M-2, to rows height-N..height-1, as far as the image has
/// them. All other pixels are left alone. If allocation fails, only the zeros are written.
///
/// @param M  half width of the window; below 1 counts as 1
/// @param N  half height of the window; below 1 counts as 1
NUV_API void NuvGradientByPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                    uint8_t* pResImg);

/// Computes the larger of two differences, two pixels against two, along the row and along the column.
///
///     max(min(|p(x-2,y) + p(x-1,y) - p(x+1,y) - p(x+2,y)|, 250),
///         min(|p(x,y-2) + p(x,y-1) - p(x,y+1) - p(x,y+2)|, 250))
NUV_API void NuvGradient5x5ByPrewitt0_90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the difference of the two pixels left and the two pixels right of each pixel.
///
///     min(|p(x-2,y) + p(x-1,y) - p(x+1,y) - p(x+2,y)|, 255)
///
/// The border is two pixels wide on all four sides.
NUV_API void NuvPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// @overload
/// Computes the difference of the two pixels left and right in a region alone, without a border.
///
/// @param x1, x2  first and last column; cut to 2..width-3
/// @param y1, y2  first and last row; cut to 2..height-3
NUV_API void NuvPrewitt90(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                          int32_t y2, uint8_t* pResImg);

/// Computes the difference of the two rows above and the two rows below each pixel, over five columns.
///
///     min(|sum of rows y-2..y-1 - sum of rows y+1..y+2|, 250)        over columns x-2..x+2
NUV_API void NuvGradient0ByPrewitt5x5(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Computes the mean of four directional differences in windows of 2M + 1 columns by 2N + 1 rows.
///
///     value = min((d1 + d2 + d3 + d4)/4, 255), or 255 if d4 >= 255
///
///     d1 = |sum of the N rows above - sum of the N rows below|
///     d2 = |sum of the M columns at the left - sum of the M columns at the right|
///     d3 = |sum left of the rising diagonal - sum right of it|
///     d4 = sum left of the falling diagonal - sum right of it
///
/// d4 is taken only where it is positive. Elsewhere the last positive d4 counts, in raster order over the
/// whole image; before the first one d4 is 0.
///
/// In row r of the window the rising diagonal lies at column 2N - r and the falling one at column r, so they
/// meet the corners of the window only if M = N. The pixels on a diagonal belong to neither side. If M < N,
/// the diagonal can lie past the end of a row: the left side of that row then continues in the following rows
/// of the window, and places past the last row count 0.
///
/// The value is written to columns M..width-M-1 of rows N..height-N-1. 0 is written to the N rows at the top
/// and at the bottom and, in the rows between, to columns 0..M-1, and to column M where no window fits the
/// width. The other columns that no window reaches are left alone. If allocation fails, only the zeros are
/// written.
///
/// @param M  half width of the window
/// @param N  half height of the window
/// @note If M or N is negative, or (2M + 1)*(2N + 1) > 16129, nothing is written.
NUV_API void NuvGradientByPrewitt(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                  uint8_t* pResImg);

/// @}

/// @defgroup edges_shen_jun The Shen-Jun detector
///
/// Finds edges one pixel wide where the difference between an image and its smoothed form changes sign.
///
/// A first-order recursive filter smooths the image in four directions. The difference between the source and
/// the smoothed image is a band-limited Laplacian. An edge lies where it changes sign and the source has a
/// strong step. Edge pixels lie on the bright side of the step.
///
/// Smoothing builds the image T from the source G with step(new, old) = old + (new - old)*a0:
///
///     row 0           T(x,0) = G(x,0)
///     rows y > 0      T(0,y) = G(0,y)
///                     left to right   T(x,y) = step(G(x,y), T(x-1,y))
///                     right to left   T(x,y) = step(T(x,y), T(x+1,y))
///                     then down       T(x,y) = step(T(x,y), T(x,y-1))
///     at last         up, from row height-2 to row 0   T(x,y) = step(T(x,y), T(x,y+1))
///
/// An interior pixel p is an edge pixel if all three conditions hold:
///
///     T(p) < G(p)
///     G(n) < T(n)                         for one of its eight neighbours n
///     |G(p) - G(n)| >= grdThreshold       for one of its eight neighbours n
///
/// All functions share these arguments:
///
/// - pGryImg is the source.
/// - pTmpImg is work space with one entry per pixel. It is overwritten and holds T on return.
/// - pResImg receives 255 on edge pixels and 0 elsewhere, also in the border. It has width*height bytes, in
///   another buffer than the other two.
/// - grdThreshold is in gray values. At 0 or below the step condition always holds, above 255 it never does.
///
/// An image less than 3 pixels wide or high has no interior and so no edges.
///
/// @see J. Shen and S. Castan, An optimal linear operator for step edge detection, 1992
/// @{

/// Finds Shen-Jun edges with a floating-point coefficient on a work image of bytes.
///
/// step is (new - old)*a0 + old, truncated toward zero. A coefficient outside the stated range can take it
/// out of the range of a byte; its low byte is then stored.
///
/// @param pTmpImg  work space of width*height bytes
/// @param a0       weight of the new sample, above 0 and at most 1. 1 smooths nothing and finds nothing
NUV_API void NuvShenJunEdgeStd(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, double a0,
                               int32_t grdThreshold, uint8_t* pResImg);

/// Finds Shen-Jun edges in integer arithmetic, the fastest of the three forms.
///
/// step is ((new - old) >> shift) + old, which rounds down.
///
/// @param pTmpImg  work space of width*height bytes
/// @param shift    gives the coefficient a0 = 1/2^shift; clamped to 1..3
NUV_API void NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                int32_t shift, int32_t grdThreshold, uint8_t* pResImg);

/// @overload
/// Lists the edge pixels in raster order and stops when the list is full.
///
/// @param pX, pY  receive the points. Each has maxN entries, and at least one
/// @param maxN    capacity of the list. It is compared after a point is stored, so 0 or below still stores
///                the first point
/// @return the number of points stored
NUV_API int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                   int32_t shift, int32_t grdThreshold, int32_t* pX, int32_t* pY,
                                   int32_t maxN);

/// @overload
/// Draws the edge image and lists its first pixels in raster order.
///
/// @param pX, pY  receive the points, maxN entries each
/// @param maxN    capacity of the list. Points beyond it are marked in pResImg only; 0 or below stores none
/// @return the number of points stored
NUV_API int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                   int32_t shift, int32_t grdThreshold, int32_t* pX, int32_t* pY,
                                   int32_t maxN, uint8_t* pResImg);

/// Finds Shen-Jun edges with a floating-point coefficient on a work image of double.
///
/// step is (new - old)*a0 + old in double precision, without rounding to gray values.
///
/// @param pTmpImg  work space of width*height double
/// @param a0       weight of the new sample, above 0 and at most 1
NUV_API void NuvShenJunEdgeFine(uint8_t* pGryImg, double* pTmpImg, int32_t width, int32_t height, double a0,
                                int32_t grdThreshold, uint8_t* pResImg);

/// @}

/// @defgroup edges_clean_up Clean-up of edge images
///
/// Removes weak, short and crossing edges, and marks gaps.
///
/// In an edge image 0 is no edge and any other value is an edge pixel. Edge images are changed in place.
/// @{

/// Deletes the pixels where edges cross or clump.
///
/// The border of the image is cleared first. Then all edge pixels with more than maxNeighbours of their eight
/// neighbours set are deleted at once: none of these deletions changes the count of another pixel. Pixels of
/// value 128 are deleted in any case.
///
/// @param pBinImg        edge image, changed in place
/// @param maxNeighbours  most neighbours that an edge pixel may have and stay; below 0 counts as 0
NUV_API void NuvEdgeDeleteNoiseAndCrossPoints(uint8_t* pBinImg, int32_t width, int32_t height,
                                              int32_t maxNeighbours);

/// Keeps the pixels of long outer contours.
///
/// A contour is kept if its chain has at least minLength codes and its perimeter is at least minLength. A
/// lone pixel has no codes and is never kept. If the allocation for a contour fails, that contour is left
/// out.
///
/// @param pBinImg    edge image of 0 and 255; changed as by NuvGetContours
/// @param minLength  least number of codes and least perimeter
/// @param pResImg    receives 255 on the contours kept and 0 elsewhere, width*height bytes in another buffer
NUV_API void NuvEdgeDeleteNoiseByLength(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                        uint8_t* pResImg);

/// Deletes the interior edge pixels whose gradient in a gray image is weak.
///
/// The gradient is |B - T| + |R - L| of the four direct neighbours. Edge pixels in the border stay.
///
/// @param pEdgeImg  edge image, changed in place
/// @param pGryImg   gray image of the same size in another buffer; read only
/// @param minGrd    least gradient of the pixels that stay, in gray values
NUV_API void NuvRemoveEdgePointsByGrd(uint8_t* pEdgeImg, uint8_t* pGryImg, int32_t width, int32_t height,
                                      int32_t minGrd);

/// Marks the ends of edges and the pixels where gaps between them can be bridged.
///
/// Interior edge pixels with fewer than two of their eight neighbours set become 200. They are the ends,
/// together with the pixels that hold 200 on entry. With R = gapLength/2 + 1, the window of a pixel (x, y)
/// has columns x-R..x+R-1 and rows y-R..y+R-1. A pixel becomes 100 if all of this holds:
///
/// - It lies in columns R..width-R-1 and rows R..height-R-1.
/// - It is no edge pixel, and the mask is not 0 there.
/// - Two ends in its window have row y between their rows and column x between their columns, inclusive. Only
///   the first thousand ends of a window count, in raster order.
///
/// @param pEdgeImg   edge image, changed in place
/// @param pMskImg    mask of width*height bytes, not 0 where a gap may be bridged; read only
/// @param gapLength  about the longest gap, in pixels. Below -1 only the ends are marked
NUV_API void NuvConnectEdge(uint8_t* pEdgeImg, uint8_t* pMskImg, int32_t width, int32_t height,
                            int32_t gapLength);

/// @}

/// @defgroup edges_points Edge points and local ranges
///
/// Reduces gradient and edge images to points, a threshold or local ranges.
///
/// pGrdImg is a gradient image. Regions must lie inside the image. Results by row or column are indexed by
/// its absolute number.
/// @{

/// Finds the two strongest rows in each column of a gradient image.
///
/// The search covers rows y1+1..y2-1. The first point is the strongest pixel, or row 0 if all are 0. The
/// second is the strongest pixel at least minGap rows from the first, or the first again if all of those are
/// 0. Ties go to the uppermost pixel.
///
/// @param minGap           least distance of the second point from the first, in rows
/// @param x1, x2           first and last column
/// @param y1, y2           rows that bound the search; neither is searched
/// @param pFirst, pSecond  receive the upper and the lower of the two rows, width entries each; 0 outside
///                         x1..x2
NUV_API void NuvExtractTwoEdgePointPerCol(uint8_t* pGrdImg, int32_t width, int32_t minGap, int32_t x1,
                                          int32_t x2, int32_t y1, int32_t y2, int32_t* pFirst,
                                          int32_t* pSecond);

/// Finds the two strongest pixels in each row and in each column of a region.
///
/// The first point of a row or column is its strongest pixel; ties go to the first. The second is the
/// strongest pixel more than 10 pixels from it; ties go to the last. If all of those are 0, it is the first
/// again.
///
/// A column of zeros gives -1 twice. A row y of zeros gives pRight[y] = -1, and pLeft[y] receives the value
/// that pBottom[y] holds on entry.
///
/// @param pLeft, pRight  receive the columns of the two points of each row in rising order, entries y1..y2
/// @param pTop, pBottom  receive the rows of the two points of each column in rising order, entries x1..x2.
///                       Entries y1..y2 of pBottom are also read, for rows of zeros
NUV_API void NuvExtractEdgePointInRect(uint8_t* pGrdImg, int32_t width, int32_t x1, int32_t y1, int32_t x2,
                                       int32_t y2, int32_t* pLeft, int32_t* pRight, int32_t* pTop,
                                       int32_t* pBottom);

/// Finds the two strongest pixels in each row and in each column of an ellipse.
///
/// The points of a row or column are chosen as in NuvExtractEdgePointInRect. The ellipse must lie inside the
/// image. It covers, truncated,
///
///     row y       columns cx - d + 0.5 to cx + d + 0.5,  d = sqrt(ry*ry - (y - cy)^2) * (rx/ry)
///     column x    rows cy - d + 0.5 to cy + d + 0.5,     d = sqrt(rx*rx - (x - cx)^2) * (ry/rx)
///
/// If ry is 0, its row has no pixels and counts as a row of zeros; if rx is 0, the same holds for its column.
///
/// @param cx, cy         centre
/// @param rx, ry         half axes
/// @param pLeft, pRight  receive the columns of the two points of each row, entries cy-ry..cy+ry
/// @param pTop, pBottom  receive the rows of the two points of each column, entries cx-rx..cx+rx. Entries
///                       cy-ry..cy+ry of pBottom are also read, for rows of zeros
NUV_API void NuvExtractEdgePointInCircle(uint8_t* pGrdImg, int32_t width, int32_t cx, int32_t cy, int32_t rx,
                                         int32_t ry, int32_t* pLeft, int32_t* pRight, int32_t* pTop,
                                         int32_t* pBottom);

/// Returns the gray value that most edge pixels vote for as a threshold.
///
/// Each edge pixel strictly inside the region votes for every gray value of a range. The range is made of its
/// own gray value c and the extremes lo and hi of c and seven samples, at these offsets (dx, dy):
///
///     (1,0)  (2,-1)  (2,-2)  (1,-3)  (0,-3)  (-1,-2)  (-1,-1)
///
/// @param pGryImg         gray image; the samples of all voting pixels must lie in it
/// @param pEdgeImg        edge image of the same size; not 0 on edge pixels
/// @param x1, x2, y1, y2  region
/// @param mode            1 votes for lo..c, 2 for c..hi, any other value for lo..hi
/// @return the gray value with most votes; ties go to the lowest. 0 without an edge pixel
NUV_API int32_t NuvGetThresholdByEdge(uint8_t* pGryImg, uint8_t* pEdgeImg, int32_t width, int32_t x1,
                                      int32_t x2, int32_t y1, int32_t y2, int32_t mode);

/// Computes the range of gray values around each pixel, and the histogram of the ranges.
///
/// The range is the largest minus the smallest gray value in a window of 2M + 1 columns by 2N + 1 rows. With
/// top = max(y - N, 0), the window of row y has rows top..top+2N, cut short at the bottom of the image. Its
/// columns are the first of these that applies, without those outside the image:
///
///     x..x+2M      if x < M
///     x-2M..x      if x >= width - M - 1
///     x-M..x+M     otherwise
///
/// @param M           half width of the window; below 0 counts as 0
/// @param N           half height of the window; below 0 counts as 0
/// @param pResImg     receives the ranges, width*height bytes in another buffer
/// @param pHistogram  receives 256 bins; all are 0 for an image without pixels
/// @return false, with nothing written, if width > 4096
NUV_API bool NuvEdgeTripeDetection(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                   uint8_t* pResImg, int32_t* pHistogram);

/// @}

/// @defgroup edges_histogram The histogram at edges
///
/// Counts the gray values at both sides of edges.
/// @{

/// Computes the histogram of the gray values at the two sides of edges.
///
/// It shows object and ground without the ramp between them. Edge pixels are those whose local range, as
/// computed by NuvEdgeTripeDetection with half sizes M and 1, is at least T. Each run start..end of edge
/// pixels in a row is sampled. G(x) is the gray value in column x of that row, W = 2M + 1, and divisions
/// truncate:
///
/// - If G(start) - G(end) >= T, pixels are sampled in pairs, left - k and right + k for k = 0, 1, 2, ... They
///   end before the first pair that differs by less than T, and before k = min(left, width - right - 1).
///
///       left  = start - (start - end + W - 1)/2
///       right = end + (start - end + W - 1)/2
///
/// - Otherwise the middle (start + end)/2 is compared with the pixels at W or more to its left, and again to
///   its right, nearest first and without column 0. On each side the first pixel that differs from it by more
///   than T is sampled together with the middle.
///
/// @param M           half width of the window; below 0 counts as 0
/// @param T           threshold of ranges and differences, in gray values
/// @param pHistogram  receives 256 bins
/// @param pResImg     receives 200 on edge pixels and 0 elsewhere, each increased by 1 per sample taken,
///                    width*height bytes in another buffer. Later runs of a row are found in it as the
///                    samples of earlier ones leave it. If width > 4096, its values on entry count as the
///                    local ranges
NUV_API void NuvEdgeModelHistogram(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t T,
                                   int32_t* pHistogram, uint8_t* pResImg);

/// @}

/// @}

#endif

/// @file
/// Contours: tracing objects and holes into chain codes, and what a chain code can be asked.
///
/// A chain is N bytes, one direction 0..7 per step, beside its start point x, y. On the screen (y grows
/// downwards):
///
///     3 2 1
///     4 . 0      even codes are unit steps, odd codes diagonal ones
///     5 6 7
///
/// A closed chain's last step arrives at the start again, so N codes pass N different steps. The outer
/// contour of an object is walked counter-clockwise on the screen and the contour of a hole clockwise, so
/// that the object is at the left of the walk; both run over object pixels.
///
/// Tracing marks the image: 254 on contour pixels, 1 on the background pixels that it looked at; every value
/// of 2 or more is object to the tracer. The border of an image is not checked while tracing: rows 0 and
/// height-1 and columns 0 and width-1 must be below 2. Functions that clear the border themselves say so.
///
/// Chains are trusted to stay inside the images they are used with, which have a pixel at least.
#ifndef NUV_CONTOURS_H
#define NUV_CONTOURS_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

// ---- Tracing ---------------------------------------------------------------------------------------------

/// Traces one contour from its start pixel and marks it in the image. The pixel at the left of the start (of
/// a hole: at its right) becomes 1 whatever it holds, and the start 254.
///
/// Neighbours are 8-connected. The walk ends when it stands on the start pixel with no way left that it has
/// not gone, so a figure of eight is one chain.
///
/// @param pBinImg     binary image with a clear border; changed: 254 and 1 as told above
/// @param x, y        start pixel. For an outer contour a pixel with background at its left, for a hole the
///                    object pixel at the left of a pixel of the hole
/// @param pChainCode  receives at most N-1 codes; codes past that are dropped, and the marks stay complete. N
///                    of 1 or less gets none
/// @param isOuter     true for the contour of an object, false for that of a hole
/// @return the number of codes written; 0 for a lone pixel
/// @see H. Freeman, On the encoding of arbitrary geometric configurations, 1961
NUV_API int32_t NuvTraceContour(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                int32_t N, bool isOuter);

/// Traces one contour like NuvTraceContour, for its marks alone.
NUV_API void NuvMarkContour(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y, bool isOuter);

/// All contours of a binary image, in the order in which a scan by rows meets them.
///
/// An object pixel must be exactly 255 to start an outer contour, after a pixel below 10; a pixel of exactly
/// 0 after one above 250 starts the contour of a hole. Tracing takes all from 2 up for object.
///
/// @param pBinImg       binary image. Changed: the four sides become 0, and at the end every pixel below 50
///                      becomes 0 and every other 255
/// @param pChainCode    work space of width*height bytes
/// @param minPerimeter  contours with fewer codes or a smaller perimeter are left out
/// @param minArea       contours with a smaller area are left out
/// @param mode          1: outer contours only; 2: holes only; any other value: both
/// @return the list, to be released with NuvFreeContours, or null if no contour was kept. Lone pixels have no
///         chain and are never kept. A contour for which there is no memory is left out
NUV_API NUV_CONTOUR_STRUCT* NuvGetContours(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                           int32_t height, int32_t minPerimeter, int32_t minArea,
                                           int32_t mode);

/// Releases a list of NuvGetContours. Null is accepted.
NUV_API void NuvFreeContours(NUV_CONTOUR_STRUCT* pContours);

/// The outer contour of greatest area in a region.
///
/// The region widened by one pixel on each side, as far as the image goes, gets an outline of 0. It stays,
/// but that tracing leaves 1 where it touched it. Inside it the first row and every yStep-th one from there
/// are scanned for contours.
///
/// @param pBinImg         binary image. Changed: the outline, and in the region as given (its part in the
///                        image) every pixel below 50 becomes 0 and every other 255
/// @param pChainCode      work space of width*height bytes
/// @param x1, x2, y1, y2  region
/// @param yStep           rows from one scanned row to the next; below 1 counts as 1
/// @param pRect           receives the inclusive bounding box; all 0 if nothing was found
/// @param pX, pY          receive the centre as of NuvContourCenter; left alone if nothing was found
/// @return the area as of NuvRealAreaAndPerimeter, the first contour of equals; 0 if nothing was found
NUV_API int32_t Nuv255RectWithMaxArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                      int32_t x1, int32_t x2, int32_t y1, int32_t y2, int32_t yStep,
                                      tagRECT* pRect, int32_t* pX, int32_t* pY);

/// The outer contour of greatest perimeter in a region; otherwise like Nuv255RectWithMaxArea.
NUV_API int32_t Nuv255RectWithMaxPerimeter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                           int32_t height, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                                           int32_t yStep, tagRECT* pRect, int32_t* pX, int32_t* pY);

// ---- Measures --------------------------------------------------------------------------------------------

/// The exact number of pixels that a closed chain encloses, from the chain alone.
///
/// @param pArea       receives the area: the pixels inside and on an outer chain, the pixels of the hole
///                    without its rim for the chain of a hole
/// @param pPerimeter  receives truncate(even codes + sqrt(2)*odd codes + 0.5)
NUV_API void NuvRealAreaAndPerimeter(uint8_t* pChainCode, int32_t N, int32_t* pArea, int32_t* pPerimeter);

/// The fast, approximate area: the polygon through the pixel centres plus half the perimeter.
///
///     area = truncate(|sum((y + dy/2) * dx)| + 0.5 + perimeter/2)     perimeter/2 in integers
///
/// A square of 3 by 3 pixels has area 8 here and 9 by NuvRealAreaAndPerimeter.
NUV_API void NuvAreaAndPerimeter(uint8_t* pChainCode, int32_t N, int32_t* pArea, int32_t* pPerimeter);

/// The mean of the chain's N positions (the start and the ends of the first N-1 steps), plus 0.5, truncated.
/// An empty chain gives its start point.
NUV_API void NuvContourCenter(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY);

/// The inclusive bounding box of a closed chain.
NUV_API void NuvContourRect(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX1, int32_t* pX2,
                            int32_t* pY1, int32_t* pY2);

/// The bounding box of the chain's N positions in a frame turned by an angle.
///
/// With c and s the cosine and sine times 1024, truncated, a position becomes xr = (c*x - s*y) >> 10,
/// yr = (s*x + c*y) >> 10.
///
/// @param angle               degrees, times 3.1415926/180
/// @param pX1, pX2, pY1, pY2  receive the least and greatest xr, the least and greatest yr; an empty chain
///                            gives those of its start point
NUV_API void NuvContourRotatedRect(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, double angle,
                                   int32_t* pX1, int32_t* pX2, int32_t* pY1, int32_t* pY2);

/// How well a contour's area and perimeter fit a bar, over the widths minWidth..maxWidth.
///
/// A bar of width W has the length L = perimeter/2 - W and the area W*L. The misfit is
/// |area - W*L| / min(area, W*L); widths that leave a length below 1 are not tried.
/// Widths are meant to be positive. The time hardly grows with their number.
///
/// @param pWidth   receives the best width, the narrowest of equals; 10000 if there is none
/// @param pLength  receives that bar's length, rounded; left alone if there is none
/// @return the least misfit, 0 for a perfect bar; 10000.0 if no width gives a smaller one
NUV_API double NuvLineSimilarity(int32_t area, int32_t perimeter, int32_t minWidth, int32_t maxWidth,
                                 int32_t* pWidth, int32_t* pLength);

/// The same for a chain, with the area and perimeter of NuvAreaAndPerimeter. x and y are not read.
NUV_API double NuvLineSimilarity(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t minWidth,
                                 int32_t maxWidth, int32_t* pWidth, int32_t* pLength);

// ---- Points ----------------------------------------------------------------------------------------------

/// The chain's N positions: the start and the ends of the first N-1 steps.
///
/// @param pX, pY  receive N entries each
NUV_API void NuvChain2Points(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY);

/// The same, with the greatest x and the greatest y among them; an empty chain gives those of its start.
NUV_API void NuvChain2Points(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY,
                             int32_t* pMaxX, int32_t* pMaxY);

// ---- Queries ---------------------------------------------------------------------------------------------
//
// They differ in the positions that they visit: a closed chain meets its start pixel once at the start and
// once more at the end of its last step.

/// The number of positions with the pixel value gry: the start, and the ends of all N steps. On a closed
/// chain the start pixel counts twice.
NUV_API int32_t NuvPixelsPassedByChain(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                                       uint8_t* pChainCode, int32_t N, int32_t gry);

/// The number of positions on pixels other than 0: the ends of all N steps.
NUV_API int32_t NuvWhitePixlePassedByChain(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y,
                                           uint8_t* pChainCode, int32_t N);

/// Whether the start or the end of any step has the pixel value gry.
NUV_API bool NuvHasPixelsOnChain(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                 int32_t N, int32_t gry);

/// The number of positions in image row yLine: the ends of the first N-1 steps, the start excepted. x is not
/// read.
NUV_API int32_t NuvContourPosPoints(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t yLine);

/// Whether a step of the chain ends on (px, py).
NUV_API bool NuvIsPointOnContour(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t px,
                                 int32_t py);

/// Whether (px, py) lies inside or on a closed chain, by the crossings at its right in its row. Inside the
/// chain of a hole are the pixels of the hole, without the rim that the chain runs over.
///
/// @return false for N below 1
NUV_API bool NuvIsPointIncludedByChain(int32_t px, int32_t py, int32_t x, int32_t y, uint8_t* pChainCode,
                                       int32_t N);

/// Whether a step of the chain ends in row yLine.
NUV_API bool NuvIsHorizontalLineIntersectContour(int32_t y, uint8_t* pChainCode, int32_t N, int32_t yLine);

/// Whether a step of the chain ends in column xLine.
NUV_API bool NuvIsVerticalLineIntersectContour(int32_t x, uint8_t* pChainCode, int32_t N, int32_t xLine);

/// Whether a step of the chain ends on a curve that is given as one x per image row.
///
/// @param pXOfRow  the curve, indexed by the image row; must cover all rows of the chain
NUV_API bool NuvIsVerticalLineIntersectContour(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N,
                                               int32_t* pXOfRow);

// ---- Drawing a chain -------------------------------------------------------------------------------------

/// Writes color (its low byte) at the start and at the end of each of the N steps.
NUV_API void NuvMarkChainByColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                 int32_t N, int32_t color);

/// Writes color dashed: at the start, and at the ends of five steps of every ten.
///
/// @param ignored  not read
NUV_API void NuvMarkChainByColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                 int32_t N, int32_t color, int32_t ignored);

/// Adds 1 at the start (255 becomes 0) and at the end of each of the N steps (255 stays).
NUV_API void NuvMarkChainByInc(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                               int32_t N);

// ---- The pixels that a contour encloses ------------------------------------------------------------------
//
// These functions know a region by its chain alone: the contour is rewritten in the image as marks, rows are
// scanned from mark to mark, and the contour gets its pixels back. They write to the image while they run,
// also where they leave it as it was, so that two calls must not share one.
//
// Three values must not occur among the pixels between the edges of the contour: `mark`, at which a row's
// scan ends, and two scratch values, the lowest that keep clear of the reserved ones (mark, and the colours
// named by the call): B, the middle of the first five values in a row that are free, and F, the next one
// free. That is B = 2 and F = 5 where no low value is reserved. Pixels inside that hold F become B. The
// contour itself may hold any value, mark included.
//
// The region of an outer chain is everything inside and on it, holes included. The region of a hole's chain
// is the hole, without the rim that the chain runs over. Chains of 4096 codes or less need no memory. A chain
// that does not close, or does not wind once round its region, encloses nothing; its own pixels still count
// where its turns add up to an outer one. One that crosses itself, as the tracer's never do, encloses some of
// the pixels in the rows that it touches.

/// Fills what a chain encloses.
///
/// @param includeContour  true: the contour's pixels become fill too, for outer chains and holes alike;
///                        false: they stay
/// @param mark            a value (its low byte) that is not among the pixels inside
/// @param fill            the colour (its low byte)
/// @return 1 for an outer chain, -1 for that of a hole, 0 for an empty one, with which nothing is written
/// @note Without memory for a long chain the region is filled all the same, and its contour keeps marks.
NUV_API int32_t NuvFillingContour(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                  int32_t N, bool includeContour, int32_t mark, int32_t fill);

/// Replaces the pixels of one value that a chain encloses; an empty chain encloses its start pixel.
///
/// @param mark      a value (its low byte) that is not among the pixels inside
/// @param oldColor  the value replaced; one that is no byte is found nowhere
/// @param newColor  its low byte is written
/// @return the number of pixels replaced; 0 without memory for a long chain
NUV_API int32_t NuvReplacePixelsColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                                      uint8_t* pChainCode, int32_t N, int32_t mark, int32_t oldColor,
                                      int32_t newColor);

/// Marks the pixels of one value that a chain encloses in another image of the same size; an empty chain
/// encloses its start pixel.
///
/// @param mark      a value (its low byte) that is not among the pixels inside
/// @param color     the value looked for
/// @param pResImg   receives newColor (its low byte) at those places; the rest is left alone
/// @return the number of pixels found, each counted once; 0 without memory for a long chain
NUV_API int32_t NuvPastePixels2ResImg(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                                      uint8_t* pChainCode, int32_t N, int32_t mark, int32_t color,
                                      uint8_t* pResImg, int32_t newColor);

/// Copies the pixels that a chain encloses to the same places of another image of the same size, those of a
/// background colour excepted; an empty chain encloses its start pixel. Pixels inside that hold B or F are
/// neither copied nor counted.
///
/// @return the number of pixels copied, each counted once; 0 without memory for a long chain
NUV_API int32_t NuvPastePixels2ResImg(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                                      const uint8_t* pChainCode, int32_t N, uint8_t mark, uint8_t bgColor,
                                      uint8_t* pResImg);

/// The histogram of the pixels that a chain encloses. Pixels inside that hold B or F, and contour pixels that
/// hold mark, are not counted.
///
/// @param pHistogram  256 bins, cleared first. With an empty chain they stay 0, and the value of its start
///                    pixel is written to a 257th entry, which must be there
/// @return the number of pixels counted; 1 for an empty chain; 0 without memory for a long chain
NUV_API int32_t NuvRegionHistogram(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                   int32_t N, uint8_t mark, int32_t* pHistogram);

/// The number of pixels that a closed chain encloses, as of NuvRealAreaAndPerimeter.
NUV_API int32_t NuvRealPixelsEnclosed(uint8_t* pChainCode, int32_t N);

// ---- Contours selected -----------------------------------------------------------------------------------
//
// The functions of this group that take pChainCode trace into it: a work space of width*height bytes. Unless
// told otherwise they change pBinImg: its four sides become 0, and at the end every pixel below 50 becomes 0
// and every other 255. Contours start as in NuvGetContours; where a narrow background is told, the pixel
// before an outer contour must be below 2.

/// The contours of a binary image as a picture: 255 on the pixels of outer contours and of holes, 0
/// elsewhere.
///
/// @param pBinImg  read only
/// @param pResImg  every byte is written; its sides are 0
NUV_API void NuvMarkContours(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Draws the contours whose perimeter, as of NuvAreaAndPerimeter, lies in a range. Chains of fewer codes than
/// max(minPerimeter/2, 2) are left out. Narrow background.
///
/// @param yStep    scanned are row 1 and every yStep-th one from there; below 1 counts as 1
/// @param pResImg  receives 255 on the contours; not cleared
/// @return the number of contours drawn
NUV_API int32_t NuvSelectContoursByPerimeter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                             int32_t height, int32_t yStep, int32_t minPerimeter,
                                             int32_t maxPerimeter, uint8_t* pResImg);

/// Draws the contours whose area, as of NuvAreaAndPerimeter, lies in a range, once for every pair of
/// different neighbours in a scanned row.
///
/// The scan asks at every pair of pixels that differ, also where no contour starts: if the area of the last
/// chain traced lies in the range, that chain is counted and drawn, from the present pixel (the right one of
/// the pair if it is 255, otherwise the left one). A lone pixel is a chain of area 0. So a selected contour
/// is drawn again, at shifted places, and counted again, until the next trace. Before the first trace the
/// chain is the first width*yStep bytes of pChainCode as the host left them, at most all of it, the low three
/// bits of each being a direction. Places outside the image are not drawn. Narrow background.
///
/// @param yStep    scanned are row 1 and every yStep-th one from there; below 1 counts as 1
/// @param pResImg  receives 255; not cleared
/// @return how often a chain was drawn
NUV_API int32_t NuvSelectContoursByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                        int32_t yStep, int32_t minArea, int32_t maxArea, uint8_t* pResImg);

/// Draws the rim of the largest hole, by the area of NuvRealAreaAndPerimeter, the first of equals.
///
/// @param pBinImg     binary image. The marks of the traces stay in it; its sides are not cleared, and around
///                    it all counts as background
/// @param pChainCode  receives the chains of all contours, one behind the other; where they do not fit, later
///                    ones take the place of the first
/// @param color       low byte, written to the rim; without a hole to pixel (0, 0)
/// @return the area; 0 without a hole, or, with nothing done, without memory
NUV_API int32_t NuvMarkMaxAreaHoleContour(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                          int32_t height, int32_t color);

/// The sum over the start pixel and the ends of all N steps, divided by N: a closed chain's start counts
/// twice. An empty chain gives its start pixel.
NUV_API double NuvContourGryAvr(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                int32_t N);

/// Paints the regions that are larger than the Nth largest one.
///
/// Regions are the outer contours of NuvGetContours with this minPerimeter; their size is the area of
/// NuvAreaAndPerimeter. With N regions or more those strictly larger than the Nth largest are painted, so N-1
/// at most; with fewer than N all are.
///
/// @param pResImg  gray image of the same size: 255 on the white pixels inside and on the contours painted, 0
///                 elsewhere
/// @return the number of regions painted; 0 for N below 1, or if there was no memory
NUV_API int32_t Nuv255NRegionsWithMaxArea(uint8_t* pBinImg, int32_t width, int32_t height, int32_t N,
                                          int32_t minPerimeter, uint8_t* pResImg);

/// Closes the holes that have minArea to maxArea pixels. One without a chain, beside a lone pixel of 251 to
/// 254, has area 0: where that is in range it is counted, and stays.
///
/// @param pResImg  every byte is written: the image with cleared sides, those holes filled with 255
/// @return the number of holes closed
NUV_API int32_t NuvRemoveBlackRegionsByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                            int32_t height, int32_t minArea, int32_t maxArea,
                                            uint8_t* pResImg);

/// Removes the objects whose outline encloses minArea to maxArea pixels, with everything inside. A lone pixel
/// has area 0: where that is in range it is counted, and stays.
///
/// @param pResImg  every byte is written: the image with cleared sides, without those objects
/// @return the number of objects
NUV_API int32_t NuvRemoveWhiteRegionsByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                            int32_t height, int32_t minArea, int32_t maxArea,
                                            uint8_t* pResImg);

/// Erases the outer contours of at most minLength codes: the pixels of the contour, not what they enclose.
///
/// With a minLength of 0 or more, start pixels of other contours go too: at a pair of different neighbours
/// that starts no contour, and whose right pixel is not 0, the start pixel of the last contour traced, outer
/// or hole, becomes 0.
///
/// @param pResImg  every byte is written: the image with cleared sides, those pixels 0
NUV_API void NuvDeleteShortContour(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                   int32_t minLength, uint8_t* pResImg);

/// The centres of blobs, or of holes, that are nearly square.
///
/// With A and P the area and perimeter of NuvAreaAndPerimeter and w, h the sides of the bounding box:
///
///     q = (A - P/2) * 16 / P^2     1 for a square
///     r = w / h
///     error = 1 - (q + r) / 2
///
/// A contour counts if it has at least 4*step codes, q >= 1 - tolerance and r >= 1 - tolerance. Narrow
/// background.
///
/// @param pBinImg   changed: its four sides become 0, and the marks of the traces (254 and 1) stay
/// @param step      scanned is every step-th row from row 0; below 1 counts as 1
/// @param useOuter  true: blobs; false: holes
/// @param pX, pY    N entries: the middles of the bounding boxes, in the order of the scan until all are
///                  taken
/// @param pError    N entries: the errors. Once all are taken, a new square takes the place of the first one
///                  with the greatest error, even if its own is greater
/// @return the number of entries written; 0 for N below 1
NUV_API int32_t NuvGetNSquaresCenter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                     int32_t step, bool useOuter, double tolerance, int32_t* pX, int32_t* pY,
                                     double* pError, int32_t N);

#endif

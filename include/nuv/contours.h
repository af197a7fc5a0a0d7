/// @file
/// Contours: tracing objects and holes into chain codes, and measuring, querying, drawing and filling chains.
#ifndef NUV_CONTOURS_H
#define NUV_CONTOURS_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

/// @defgroup contours Contours
///
/// Objects and holes traced into chain codes, and what a chain measures, passes and encloses.
///
/// A chain is a start point x, y and N bytes, one direction code per step. On the screen (y grows downwards)
/// the codes point as follows:
///
///     3 2 1
///     4 . 0      even codes are unit steps, odd codes diagonal ones
///     5 6 7
///
/// Only the low three bits of a byte count. A chain with N below 1 is empty.
///
/// Unless an entry says otherwise, x, y is the start point of a chain, pChainCode its codes and N their
/// number. width and height are the numbers of columns and rows of the images.
///
/// The last step of a closed chain ends at the start. The positions of a chain are its start and the ends of
/// its first N-1 steps, so a closed chain of N codes has N positions. A pixel that the chain passes twice is
/// two positions.
///
/// The outer contour of an object runs anticlockwise on the screen, and the contour of a hole clockwise. The
/// object is always at the left of the walk, and both contours run over object pixels.
///
/// Tracing marks the image: 254 on contour pixels, 1 on background pixels that the tracer examined. The
/// tracer takes every value of 2 or more for an object. It does not check the border of the image: rows 0 and
/// height-1 and columns 0 and width-1 must be below 2. Functions that clear the border say so.
///
/// Chains must stay inside the images they are used with. No function checks this. An image that a chain is
/// used with has at least one pixel.
///
/// @see H. Freeman, On the encoding of arbitrary geometric configurations, 1961
/// @{

/// @defgroup contours_tracing Tracing
///
/// Contours found in a binary image and turned into chains.
///
/// The contour scan reads a binary image row by row. A contour starts at two kinds of pairs of neighbours in
/// a row:
///
///     left below 10, pixel exactly 255      the outer contour of an object starts at the pixel
///     left above 250, pixel exactly 0       the contour of a hole starts at the left pixel
///
/// The marks of a trace keep a contour from being found twice.
/// @{

/// Traces one contour from its start pixel and marks it in the image.
///
/// Neighbours are 8-connected. The walk ends on the start pixel, once every way out of it has been taken, so
/// a figure of eight is one chain. The background pixel beside the start becomes 1 whatever it holds: the
/// left neighbour for an outer contour, the right one for a hole. The start becomes 254.
///
/// @param pBinImg     binary image with a clear border; receives the marks 254 and 1
/// @param width       columns of the image
/// @param x, y        start pixel: for an outer contour a pixel with background at its left, for a hole the
///                    object pixel at the left of a pixel of the hole
/// @param pChainCode  receives at most N-1 codes; the walk drops further codes and still sets all marks
/// @param N           size of pChainCode in bytes; with 1 or less no code is written
/// @param isOuter     true for the contour of an object, false for that of a hole
/// @return the number of codes written; 0 for a lone pixel
NUV_API int32_t NuvTraceContour(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                int32_t N, bool isOuter);

/// Traces one contour for its marks alone.
///
/// Start pixel and marks are those of NuvTraceContour.
NUV_API void NuvMarkContour(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y, bool isOuter);

/// Traces all contours of a binary image into a list, in the order of the contour scan.
///
/// Lone pixels have no chain and are never kept.
///
/// @param pBinImg        binary image. Changed: the border becomes 0; at the end every pixel below 50 becomes
///                       0 and every other 255
/// @param pChainCode     work space of width*height bytes
/// @param width, height  size of the image
/// @param minPerimeter   contours with fewer codes or a smaller perimeter are left out
/// @param minArea        contours with a smaller area, by NuvRealAreaAndPerimeter, are left out
/// @param mode           1: outer contours only; 2: holes only; any other value: both
/// @return the list, to be released with NuvFreeContours; null if no contour was kept. A contour is left out
///         if its allocation fails
NUV_API NUV_CONTOUR_STRUCT* NuvGetContours(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                           int32_t height, int32_t minPerimeter, int32_t minArea,
                                           int32_t mode);

/// Releases a list returned by NuvGetContours.
///
/// @param pContours  the list; null is accepted
NUV_API void NuvFreeContours(NUV_CONTOUR_STRUCT* pContours);

/// Finds the outer contour of greatest area in a region.
///
/// The region is widened by one pixel on each side and clamped to the image. The outline of this rectangle is
/// set to 0, and the rows inside it are scanned for contours: the first one and every yStep-th one from
/// there. After the call an outline pixel outside the region holds 0, or 1 where the tracer examined it.
///
/// @param pBinImg         binary image. Changed: the outline; in the region as given, clamped to the image,
///                        every pixel below 50 becomes 0 and every other 255
/// @param pChainCode      work space of width*height bytes
/// @param width, height   size of the image
/// @param x1, x2, y1, y2  the region, ends inclusive
/// @param yStep           distance of the scanned rows; below 1 counts as 1
/// @param pRect           receives the inclusive bounding box; all 0 if nothing was found
/// @param pX, pY          receive the centre as computed by NuvContourCenter; unchanged if nothing was found
/// @return the area as computed by NuvRealAreaAndPerimeter; 0 if nothing was found. Ties go to the first
///         contour of the scan
NUV_API int32_t Nuv255RectWithMaxArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                      int32_t x1, int32_t x2, int32_t y1, int32_t y2, int32_t yStep,
                                      tagRECT* pRect, int32_t* pX, int32_t* pY);

/// Finds the outer contour of greatest perimeter in a region.
///
/// Parameters and changes to the image are those of Nuv255RectWithMaxArea.
///
/// @return the perimeter as computed by NuvRealAreaAndPerimeter; 0 if nothing was found. Ties go to the first
///         contour of the scan
NUV_API int32_t Nuv255RectWithMaxPerimeter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                           int32_t height, int32_t x1, int32_t x2, int32_t y1, int32_t y2,
                                           int32_t yStep, tagRECT* pRect, int32_t* pX, int32_t* pY);

/// @}

/// @defgroup contours_measures Measures
///
/// Area, perimeter, centre, boxes and points of a chain.
/// @{

/// Computes the exact number of pixels that a closed chain encloses, and its perimeter.
///
///     perimeter = truncate(even codes + sqrt(2) * odd codes + 0.5)
///
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param pArea       receives the area. For an outer chain: the pixels inside and on it. For the chain of a
///                    hole: the pixels of the hole without its rim
/// @param pPerimeter  receives the perimeter
NUV_API void NuvRealAreaAndPerimeter(uint8_t* pChainCode, int32_t N, int32_t* pArea, int32_t* pPerimeter);

/// Computes an approximate area of a closed chain, and its perimeter.
///
/// The area is that of the polygon through the pixel centres, plus half the perimeter. The sum runs over all
/// steps dx, dy from y = 0; perimeter/2 is an integer division:
///
///     area = truncate(|sum((y + dy/2) * dx)| + 0.5 + perimeter/2)
///
/// The perimeter is that of NuvRealAreaAndPerimeter. A square of 3 by 3 pixels has area 8 here and 9 by
/// NuvRealAreaAndPerimeter.
///
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param pArea       receives the area
/// @param pPerimeter  receives the perimeter
NUV_API void NuvAreaAndPerimeter(uint8_t* pChainCode, int32_t N, int32_t* pArea, int32_t* pPerimeter);

/// Computes the centre of a chain: the mean of its N positions plus 0.5, truncated.
///
/// An empty chain gives its start point.
///
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param pX, pY      receive the centre
NUV_API void NuvContourCenter(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY);

/// Computes the inclusive bounding box of a closed chain.
///
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param pX1, pX2    receive the first and the last column
/// @param pY1, pY2    receive the first and the last row
NUV_API void NuvContourRect(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX1, int32_t* pX2,
                            int32_t* pY1, int32_t* pY2);

/// Computes the bounding box of a chain's N positions in a frame turned by an angle.
///
/// With c and s the cosine and the sine of the angle times 1024, truncated, the position x, y becomes
///
///     xr = (c*x - s*y) >> 10
///     yr = (s*x + c*y) >> 10
///
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param angle       degrees; converted to radians with the factor 3.1415926/180
/// @param pX1, pX2    receive the least and the greatest xr
/// @param pY1, pY2    receive the least and the greatest yr; an empty chain gives those of its start
NUV_API void NuvContourRotatedRect(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, double angle,
                                   int32_t* pX1, int32_t* pX2, int32_t* pY1, int32_t* pY2);

/// Finds the bar that best fits the area and the perimeter of a contour, over a range of widths.
///
/// A bar of width W has the length L and the area W*L:
///
///     L = perimeter/2 - W                        not rounded
///     misfit = |area - W*L| / min(area, W*L)
///
/// Widths that leave a length below 1 are not tried.
///
/// @param area, perimeter     measures of the contour
/// @param minWidth, maxWidth  the widths to try, ends inclusive; meant to be positive
/// @param pWidth              receives the best width; ties go to the narrowest; 10000 if there is none
/// @param pLength             receives the length of that bar, rounded; unchanged if there is none
/// @return the least misfit, 0 for a perfect bar; 10000.0 if no width gives a smaller one
/// @note The time hardly depends on the number of positive widths. A range that reaches millions below 0 can
///       take seconds.
NUV_API double NuvLineSimilarity(int32_t area, int32_t perimeter, int32_t minWidth, int32_t maxWidth,
                                 int32_t* pWidth, int32_t* pLength);

/// @overload
/// Finds the bar that best fits a chain, with the area and the perimeter of NuvAreaAndPerimeter.
///
/// x and y are not read.
NUV_API double NuvLineSimilarity(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t minWidth,
                                 int32_t maxWidth, int32_t* pWidth, int32_t* pLength);

/// Lists the N positions of a chain.
///
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param pX, pY      receive N entries each
NUV_API void NuvChain2Points(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY);

/// @overload
/// Lists the N positions of a chain, with the greatest x and the greatest y among them.
///
/// @param x, y          start point
/// @param pChainCode    the chain
/// @param N             number of codes
/// @param pX, pY        receive N entries each
/// @param pMaxX, pMaxY  receive the greatest x and y; those of the start for an empty chain
NUV_API void NuvChain2Points(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pX, int32_t* pY,
                             int32_t* pMaxX, int32_t* pMaxY);

/// @}

/// @defgroup contours_queries Queries
///
/// What a chain passes over, crosses and holds.
///
/// The functions differ in the points of the chain that they visit. Each entry names them. On a closed chain
/// the end of the last step is the start, so a function that visits the start and the ends of all N steps
/// visits the start pixel twice.
/// @{

/// Counts the pixels of one value under a chain.
///
/// It visits the start and the ends of all N steps, so the start of a closed chain counts twice.
///
/// @param pGryImg     gray image
/// @param width       columns of the image
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param gry         the value counted
/// @return the number of visits to a pixel of that value
NUV_API int32_t NuvPixelsPassedByChain(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                                       uint8_t* pChainCode, int32_t N, int32_t gry);

/// Counts the object pixels under a chain.
///
/// It visits the ends of all N steps.
///
/// @return the number of visits to an object pixel
NUV_API int32_t NuvWhitePixlePassedByChain(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y,
                                           uint8_t* pChainCode, int32_t N);

/// Tests whether a chain passes over a pixel of the value gry.
///
/// It visits the start and the ends of all N steps.
NUV_API bool NuvHasPixelsOnChain(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                 int32_t N, int32_t gry);

/// Computes the mean gray value along a chain, with the start counted twice.
///
/// The sum runs over the start pixel and the ends of all N steps, and is divided by N. An empty chain gives
/// its start pixel.
///
/// @param pGryImg     gray image, read only
/// @param width       columns of the image
/// @param x, y        start point
/// @param pChainCode  the chain, read only
/// @param N           number of codes
/// @return the sum divided by N
NUV_API double NuvContourGryAvr(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                int32_t N);

/// Counts the points of a chain in image row yLine.
///
/// It visits the ends of the first N-1 steps, so the start does not count. x is not read.
///
/// @return the number of points in the row
NUV_API int32_t NuvContourPosPoints(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t yLine);

/// Tests whether a step of the chain ends on the point px, py.
NUV_API bool NuvIsPointOnContour(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t px,
                                 int32_t py);

/// Tests whether the point px, py lies inside or on a closed chain.
///
/// The test counts the crossings of the chain in the row of the point, at its right. Inside the chain of a
/// hole are the pixels of the hole, without the rim that the chain runs over.
///
/// @return true if the point lies inside or on the chain; false for an empty chain
NUV_API bool NuvIsPointIncludedByChain(int32_t px, int32_t py, int32_t x, int32_t y, uint8_t* pChainCode,
                                       int32_t N);

/// Tests whether a step of the chain ends in row yLine.
NUV_API bool NuvIsHorizontalLineIntersectContour(int32_t y, uint8_t* pChainCode, int32_t N, int32_t yLine);

/// Tests whether a step of the chain ends in column xLine.
NUV_API bool NuvIsVerticalLineIntersectContour(int32_t x, uint8_t* pChainCode, int32_t N, int32_t xLine);

/// Tests whether a step of the chain ends on a curve that has one x per image row.
///
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param pXOfRow     the curve: x by image row; must cover all rows of the chain
NUV_API bool NuvIsVerticalLineIntersectContour(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N,
                                               int32_t* pXOfRow);

/// @}

/// @defgroup contours_drawing Drawing a chain
///
/// Chains drawn pixel by pixel into a gray image.
/// @{

/// Draws a chain: the start and the end of each of the N steps become color (its low byte).
NUV_API void NuvMarkChainByColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                 int32_t N, int32_t color);

/// Draws a chain dashed: the start and the ends of steps 0 to 4 of every ten become color (its low byte).
///
/// @param pGryImg     gray image
/// @param width       columns of the image
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param color       low byte, written
/// @param ignored     not read
NUV_API void NuvMarkChainByColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                 int32_t N, int32_t color, int32_t ignored);

/// Adds 1 to the pixels under a chain: to the start, and to the end of each of the N steps.
///
/// At the start 255 becomes 0. At the end of a step 255 stays.
NUV_API void NuvMarkChainByInc(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                               int32_t N);

/// @}

/// @defgroup contours_filling Enclosed pixels
///
/// The pixels that a chain encloses: filled, replaced, copied and counted.
///
/// An outer chain encloses everything inside and on it, holes included. The chain of a hole encloses the
/// hole, without the rim that the chain runs over.
///
/// The chain alone defines these pixels. A call writes edge marks over the contour in the image, scans the
/// rows from mark to mark, and puts the contour's pixels back. Concurrent calls must not share an image, even
/// where a function leaves the image as it was.
///
/// A call uses these values, which must not occur among the pixels between the edges of the contour:
///
///     mark      the edge before which the scan of a row ends
///     F         the edge at which the scan of a row starts
///     B         the rest of the contour
///
/// B and F avoid the reserved values, which are mark and the colours that the call names. B is the middle of
/// the first five consecutive values that are free, and F is the first other free value. B is 2 and F is 5 if
/// no low value is reserved. Pixels inside that hold F become B. The contour itself may hold any value.
///
/// If a chain does not close, or does not wind once round what it encloses, the scan visits no pixels. The
/// chain's own pixels still count if its turns add up to those of an outer chain. A chain that crosses
/// itself, which the tracer never makes, encloses an unspecified part of the rows that it touches.
///
/// Chains of at most 4096 codes need no allocation. If the allocation for a longer chain fails, the functions
/// other than NuvFillingContour change nothing in the images and return 0.
/// @{

/// Fills what a chain encloses.
///
/// @param pGryImg         gray image, changed
/// @param width           columns of the image
/// @param x, y            start point
/// @param pChainCode      the chain
/// @param N               number of codes
/// @param includeContour  true: the contour's pixels become fill too, for outer chains and for holes; false:
///                        they stay
/// @param mark            a value (its low byte) that is not among the pixels inside
/// @param fill            the colour (its low byte)
/// @return 1 for an outer chain, -1 for that of a hole; 0 for an empty one, which writes nothing
/// @note If the allocation for a long chain fails, the pixels inside are filled but the contour keeps the
///       edge marks. With includeContour the function allocates nothing.
NUV_API int32_t NuvFillingContour(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                  int32_t N, bool includeContour, int32_t mark, int32_t fill);

/// Replaces the pixels of one value that a chain encloses.
///
/// An empty chain encloses its start pixel.
///
/// @param pGryImg     gray image, changed
/// @param width       columns of the image
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param mark        a value (its low byte) that is not among the pixels inside
/// @param oldColor    the value to replace; none is found if it is not a byte
/// @param newColor    its low byte is written
/// @return the number of pixels replaced; 0 if the allocation for a long chain fails
NUV_API int32_t NuvReplacePixelsColor(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                                      uint8_t* pChainCode, int32_t N, int32_t mark, int32_t oldColor,
                                      int32_t newColor);

/// Marks the enclosed pixels of one value in another image of the same size.
///
/// An empty chain encloses its start pixel.
///
/// @param pGryImg     gray image
/// @param width       columns of both images
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param mark        a value (its low byte) that is not among the pixels inside
/// @param color       the value to find; none is found if it is not a byte
/// @param pResImg     receives newColor (its low byte) at the places found; the rest is left alone
/// @param newColor    the value written
/// @return the number of pixels found, each counted once; 0 if the allocation for a long chain fails
NUV_API int32_t NuvPastePixels2ResImg(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                                      uint8_t* pChainCode, int32_t N, int32_t mark, int32_t color,
                                      uint8_t* pResImg, int32_t newColor);

/// Copies the enclosed pixels other than a background colour to the same places of another image.
///
/// Pixels inside that hold B or F are neither copied nor counted. An empty chain encloses its start pixel.
///
/// @param pGryImg     gray image
/// @param width       columns of both images
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param mark        a value that is not among the pixels inside
/// @param bgColor     pixels of this value are not copied
/// @param pResImg     image of the same size; receives the pixels, and the rest is left alone
/// @return the number of pixels copied, each counted once; 0 if the allocation for a long chain fails
NUV_API int32_t NuvPastePixels2ResImg(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y,
                                      const uint8_t* pChainCode, int32_t N, uint8_t mark, uint8_t bgColor,
                                      uint8_t* pResImg);

/// Computes the histogram of the pixels that a chain encloses.
///
/// Pixels inside that hold B or F, and contour pixels that hold mark, are not counted.
///
/// @param pGryImg     gray image
/// @param width       columns of the image
/// @param x, y        start point
/// @param pChainCode  the chain
/// @param N           number of codes
/// @param mark        a value that is not among the pixels inside
/// @param pHistogram  256 bins, cleared first. An empty chain leaves them 0 and writes the value of its start
///                    pixel to a 257th entry, which must exist
/// @return the number of pixels counted; 1 for an empty chain; 0 if the allocation for a long chain fails
NUV_API int32_t NuvRegionHistogram(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                   int32_t N, uint8_t mark, int32_t* pHistogram);

/// Computes the number of pixels that a closed chain encloses, which is the area of NuvRealAreaAndPerimeter.
NUV_API int32_t NuvRealPixelsEnclosed(uint8_t* pChainCode, int32_t N);

/// @}

/// @defgroup contours_selection Selected contours
///
/// The contours of a binary image, selected by what they measure: drawn, removed and painted.
///
/// Unless an entry says otherwise:
///
/// - pBinImg is a binary image of width*height pixels. It changes: its border becomes 0, and at the end every
///   pixel below 50 becomes 0 and every other 255.
/// - pChainCode is a work space of width*height bytes.
/// - pResImg is a gray image of the same size.
/// - Contours start as in NuvGetContours. Where an entry says that the background is narrow, the pixel before
///   an outer contour must be below 2, not below 10.
/// - Ranges include both ends.
/// @{

/// Draws all contours of a binary image: 255 on the pixels of outer contours and of holes, 0 elsewhere.
///
/// @param pBinImg        read only
/// @param width, height  size of both images
/// @param pResImg        every byte is written; its border becomes 0
NUV_API void NuvMarkContours(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Draws the contours whose perimeter, as computed by NuvAreaAndPerimeter, lies in a range.
///
/// Chains of fewer than max(minPerimeter/2, 2) codes are left out. The background is narrow.
///
/// @param pBinImg                     binary image
/// @param pChainCode                  work space
/// @param width, height               size of both images
/// @param yStep                       distance of the scanned rows, from row 1 on; below 1 counts as 1
/// @param minPerimeter, maxPerimeter  the range
/// @param pResImg                     receives 255 on the contours; it is not cleared first
/// @return the number of contours drawn
NUV_API int32_t NuvSelectContoursByPerimeter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                             int32_t height, int32_t yStep, int32_t minPerimeter,
                                             int32_t maxPerimeter, uint8_t* pResImg);

/// Draws the contours whose area, as computed by NuvAreaAndPerimeter, lies in a range, once per pair of
/// different neighbours in a scanned row.
///
/// The scan stops at every pair of different neighbours in a row. If a contour starts there, it is traced and
/// becomes the current chain. Then, whether or not a contour starts there, the current chain is counted and
/// drawn if its area lies in the range. It is drawn from the present pixel: the right one of the pair if that
/// is 255, otherwise the left one. So a selected contour is drawn and counted again, at shifted places, until
/// the next trace.
///
/// A lone pixel is a chain of area 0. Before the first trace the current chain is the first width*yStep bytes
/// of pChainCode as the caller left them, width*height at most. Places outside the image are not drawn. The
/// background is narrow.
///
/// @param pBinImg           binary image
/// @param pChainCode        work space
/// @param width, height     size of both images
/// @param yStep             distance of the scanned rows, from row 1 on; below 1 counts as 1
/// @param minArea, maxArea  the range
/// @param pResImg           receives 255; it is not cleared first
/// @return how often a chain was drawn
NUV_API int32_t NuvSelectContoursByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                        int32_t yStep, int32_t minArea, int32_t maxArea, uint8_t* pResImg);

/// Draws the rim of the largest hole into the binary image.
///
/// Holes are compared by the area of NuvRealAreaAndPerimeter; ties go to the first hole of the scan.
///
/// @param pBinImg        binary image. The marks of the traces stay in it. Its border is not cleared, and
///                       everything outside it counts as background
/// @param pChainCode     receives the chains of all contours, one after the other. If they do not fit, later
///                       ones overwrite the first
/// @param width, height  size of the image
/// @param color          its low byte is written to the rim; without a hole to pixel (0, 0)
/// @return the area; 0 without a hole. If allocation fails, nothing is done and the result is 0
NUV_API int32_t NuvMarkMaxAreaHoleContour(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                          int32_t height, int32_t color);

/// Paints the regions that are larger than the Nth largest one.
///
/// Regions are the outer contours that NuvGetContours finds with this minPerimeter. Their size is the area of
/// NuvAreaAndPerimeter. If there are N regions or more, those strictly larger than the Nth largest are
/// painted, which is at most N-1. If there are fewer, all are painted.
///
/// @param pBinImg        binary image
/// @param width, height  size of both images
/// @param N              rank of the region that sets the limit
/// @param minPerimeter   contours with fewer codes or a smaller perimeter are left out
/// @param pResImg        every byte is written: 255 on the white pixels inside and on the contours painted, 0
///                       elsewhere
/// @return the number of regions painted; 0 for N below 1, or if allocation fails
NUV_API int32_t Nuv255NRegionsWithMaxArea(uint8_t* pBinImg, int32_t width, int32_t height, int32_t N,
                                          int32_t minPerimeter, uint8_t* pResImg);

/// Closes the holes that have minArea to maxArea pixels.
///
/// A lone pixel of 251 to 254 starts the contour of a hole that has no codes, and its area is 0. If 0 is in
/// the range, it is counted and nothing is filled.
///
/// @param pBinImg           binary image
/// @param pChainCode        work space
/// @param width, height     size of both images
/// @param minArea, maxArea  the range
/// @param pResImg           every byte is written: the image with its border cleared and with those holes at
///                          255
/// @return the number of holes counted
NUV_API int32_t NuvRemoveBlackRegionsByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                            int32_t height, int32_t minArea, int32_t maxArea,
                                            uint8_t* pResImg);

/// Removes the objects whose outline encloses minArea to maxArea pixels, with everything inside them.
///
/// A lone pixel has area 0. If 0 is in the range, it is counted but not removed.
///
/// @param pBinImg           binary image
/// @param pChainCode        work space
/// @param width, height     size of both images
/// @param minArea, maxArea  the range
/// @param pResImg           every byte is written: the image with its border cleared and without those
///                          objects
/// @return the number of objects counted
NUV_API int32_t NuvRemoveWhiteRegionsByArea(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width,
                                            int32_t height, int32_t minArea, int32_t maxArea,
                                            uint8_t* pResImg);

/// Erases the outer contours of at most minLength codes.
///
/// Only the pixels of the contour are erased, not those that it encloses. With a minLength of 0 or more,
/// start pixels of other contours become 0, too: each pair of different neighbours in a row that starts no
/// contour and whose right pixel is not 0 erases the start pixel of the last contour traced, outer or hole.
///
/// @param pBinImg        binary image
/// @param pChainCode     work space
/// @param width, height  size of both images
/// @param minLength      the greatest number of codes of a contour to erase
/// @param pResImg        every byte is written: the image with its border cleared and those pixels 0
NUV_API void NuvDeleteShortContour(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                   int32_t minLength, uint8_t* pResImg);

/// Finds the centres of objects, or of holes, that are nearly square.
///
/// With A and P the area and perimeter of NuvAreaAndPerimeter, and w and h the sides of the bounding box:
///
///     q = (A - P/2) * 16 / P^2      1 for a square; P/2 is not rounded
///     r = w / h
///     error = 1 - (q + r) / 2
///
/// A contour counts if it has at least 4*step codes, q >= 1 - tolerance and r >= 1 - tolerance. The
/// background is narrow.
///
/// @param pBinImg        binary image. Changed: its border becomes 0, and the marks of the traces (254 and 1)
///                       stay
/// @param pChainCode     work space
/// @param width, height  size of the image
/// @param step           every step-th row from row 0 is scanned; below 1 counts as 1
/// @param useOuter       true: objects; false: holes
/// @param tolerance      how far q and r may lie below 1
/// @param pX, pY         N entries: the middles of the bounding boxes, in the order of the scan until all
///                       entries are taken
/// @param pError         N entries: the errors. Once all are taken, a new square replaces the first one with
///                       the greatest error, even if its own is greater
/// @param N              size of pX, pY and pError
/// @return the number of entries written; 0 for N below 1
NUV_API int32_t NuvGetNSquaresCenter(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                     int32_t step, bool useOuter, double tolerance, int32_t* pX, int32_t* pY,
                                     double* pError, int32_t N);

/// @}

/// @}

#endif

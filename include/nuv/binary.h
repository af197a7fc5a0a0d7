/// @file
/// Binary images: box filters, 3x3 morphology, majority filters, thinning, run lengths and regions of runs.
#ifndef NUV_BINARY_H
#define NUV_BINARY_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

/// @defgroup binary Binary images
///
/// Box filters with a threshold, 3x3 morphology, majority filters, point removal, thinning, run lengths, and
/// regions held as runs.
///
/// An image has one byte per pixel and width*height pixels. A pixel is black, or background, if it is 0, and
/// white, or object, if it is anything else, unless a function states otherwise. Results are 0 and 255. They
/// are separate images of the same size as the source; a function without a result image changes its image in
/// place. The border of an image is its first and last row and column, and the interior is all other pixels.
/// The neighbours of a pixel are the eight around it.
///
/// Regions x1..x2, y1..y2 include both ends. An image without pixels is neither read nor written.
/// @{

/// @defgroup binary_measures Binary measures
///
/// Counts, centres and shares of pixels.
/// @{

/// Finds the column that most long horizontal white runs pass through.
///
/// A run counts if it is at least 12 pixels long. Each counted run adds 1 to every column right of its first
/// pixel and 1 to every column left of its last pixel: 2 to a column strictly inside the run, 1 to any other.
/// The result lies midway between the first and the last column that reach the highest sum.
///
/// @param pBinImg  binary image; read only
/// @param x1, x2   columns to search, inclusive; they may lie outside the image
/// @return the column, (first + last) / 2 truncated. If no run counts, (width + x2) / 2, which lies right of
///         x2; if x1 > x2, width; if width is above 4096, 0
NUV_API int32_t NuvBinImgSearchCenterX(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2);

/// Computes the centre of gravity of the object pixels, each coordinate truncated.
///
/// @param pBinImg  binary image; read only
/// @param pX, pY   receive the centre; left alone if there is no object pixel
/// @return the number of object pixels
/// @note The sums of the coordinates are 32-bit integers that wrap. An image that is all object wraps from
///       1626 x 1626 pixels on.
NUV_API int32_t NuvBinImgCentroid(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pX, int32_t* pY);

/// Counts the pixels that have a given value.
///
/// @param pGryImg  gray image; read only
/// @param gry      the value; outside 0..255 the count is 0
/// @return the number of pixels
NUV_API int32_t NuvPixelsInGryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t gry);

/// Computes the share of background pixels in a region.
///
/// The share is the number of background pixels over (x2-x1+1)*(y2-y1+1).
///
/// @param pBinImg         binary image; read only
/// @param x1, x2, y1, y2  region; must lie inside the image, because it is not clamped
/// @return 0 to 1. An empty region gives 0, or not a number if one of the two factors is 0
NUV_API double NuvGetBlackRatioInBinaryImg(uint8_t* pBinImg, int32_t width, int32_t x1, int32_t x2,
                                           int32_t y1, int32_t y2);

/// Counts the object pixels in a region.
///
/// @param pBinImg         binary image; read only
/// @param x1, x2, y1, y2  region; clamped to the image first
/// @return the number of object pixels; 0 for an empty region
NUV_API int32_t NuvGetWhitePixelsNum(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                     int32_t y1, int32_t y2);

/// @}

/// @defgroup binary_box_filters Box filters
///
/// Thresholds on the sum of a window of 2M + 1 columns by 2N + 1 rows.
///
/// The sum adds pixel values, so a white pixel of 255 adds 255. The time does not grow with the height of the
/// window, and little with its width.
/// @{

/// Thresholds the sum of a window around each pixel, with work space of the caller.
///
/// A pixel becomes 255 if the sum of its window is above the threshold, otherwise 0. Useful thresholds for a
/// window of a = (2M + 1)*(2N + 1) pixels:
///
///     a * 127          smooths
///     0                dilates
///     (a - 1) * 255    erodes
///
/// Where the window does not fit, in the M columns and N rows at each side, the nearest computed pixel is
/// repeated.
///
/// @param pBinImg    binary image; read only
/// @param M, N       half sizes; if one is negative or the window is larger than the image, nothing is
///                   written
/// @param pSum       work space of width entries; receives the column sums of the last 2N rows
/// @param threshold  compared without a sign
/// @param pResImg    every byte is written; nothing is written if allocation fails
NUV_API void NuvBinImgFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N,
                             uint32_t* pSum, uint32_t threshold, uint8_t* pResImg);

/// @overload
/// Thresholds the sum of a window around each pixel, with work space of its own.
///
/// @return true; false, with nothing written, only if allocation fails
NUV_API bool NuvBinImgFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N,
                             uint32_t threshold, uint8_t* pResImg);

/// Removes masked pixels and thresholds the sum of a window that shrinks at the border.
///
/// The window of pixel (x, y) has the half sizes min(M, x, width-1-x) and min(N, y, height-1-y), so it stays
/// centred. The pixel becomes 255 if the sum of the window is above the threshold times the number of pixels
/// in the window, otherwise 0. In the last column, where the window is one pixel wide, the threshold is
/// always 126.
///
/// @param pBinImg    binary image; read only
/// @param pMskImg    mask of the same size. The sums add (not mask) and pixel, bit by bit: 255 removes the
///                   pixel and 0 keeps it
/// @param M, N       half sizes; negative ones count as 0
/// @param threshold  per pixel of the window, 0..255
/// @param pResImg    every byte is written
/// @return true; false, with nothing written, if width is above 4095
NUV_API bool NuvBinImgRemoveMskAndFilter(uint8_t* pBinImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                         int32_t M, int32_t N, int32_t threshold, uint8_t* pResImg);

/// Removes pixels whose mask is 129 or more and thresholds the sum of a window that shrinks at the border.
///
/// Pixels with a mask of 128 or less are kept whole. Everything else is as in NuvBinImgRemoveMskAndFilter.
///
/// @return true; false, with nothing written, if width is above 4095
NUV_API bool NuvBinImgRemoveMskAndFilterUseLUT(uint8_t* pBinImg, uint8_t* pMskImg, int32_t width,
                                               int32_t height, int32_t M, int32_t N, int32_t threshold,
                                               uint8_t* pResImg);

/// @}

/// @defgroup binary_morphology 3x3 morphology
///
/// Growth of black and of white by one pixel.
///
/// Which pixels grow depends only on the image before the call, also in place.
///
/// @see J. Serra, Image analysis and mathematical morphology, 1982
/// @{

/// Grows black: a black interior pixel that has a black neighbour sets all its neighbours to 0.
///
/// A lone black pixel does not grow. All other pixels are copied.
///
/// @param pBinImg  binary image; read only
/// @param pResImg  every byte is written
NUV_API void NuvBinImgMinFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg);

/// @overload
/// Grows black in a region.
///
/// Only the region is copied. Black then grows as in the whole image, but only from the pixels of columns
/// max(x1, 1) to min(x2+1, width-2) in rows max(y1, 1) to min(y2+1, width-2, height-1). These include the
/// column right of the region and the row below it, and one limit of the rows comes from the width. Pixels
/// outside the image are not black. Pixels next to the region can become 0, too.
///
/// @param x1, x2, y1, y2  region; clamped to the image first
/// @param pResImg         written in the region and where black grows
NUV_API void NuvBinImgMinFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pResImg);

/// Grows black in place: every pixel of 255 next to a black interior pixel becomes color.
///
/// A lone black pixel grows, too. Every pixel that held 200 becomes color as well.
///
/// @param pBinImg  binary image; read and written
/// @param color    the new value
NUV_API void NuvBinImgMinFilter3x3ToColor(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t color);

/// Grows white: a white interior pixel that has a black neighbour sets all its neighbours to 255.
///
/// A lone white pixel grows, too. All other pixels are copied.
///
/// @param pBinImg  binary image; read only
/// @param pResImg  every byte is written
NUV_API void NuvBinImgMaxFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg);

/// @overload
/// Grows white in a region.
///
/// The region, the pixels that can grow and the pixels that are written are those of NuvBinImgMinFilter3x3 in
/// a region.
///
/// @param x1, x2, y1, y2  region; clamped to the image first
/// @param pResImg         written in the region and where white grows
NUV_API void NuvBinImgMaxFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pResImg);

/// Grows white in place: every black pixel next to an interior pixel of exactly 255 becomes color.
///
/// Every pixel that held 200 becomes color as well.
///
/// @param pBinImg  binary image; read and written
/// @param color    the new value
NUV_API void NuvBinImgMaxFilter3x3ToColor(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t color);

/// @}

/// @defgroup binary_majority Majority filters
///
/// Pixels become what most of their surroundings are.
/// @{

/// Sets each pixel to 255 if five or more of its eight neighbours are white, otherwise to 0.
///
/// The pixel itself does not count. The border becomes 0.
///
/// @param pBinImg  binary image; read only
/// @param pResImg  every byte is written
NUV_API void NuvBinImgMedFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg);

/// @overload
/// Applies the 3x3 majority to the pixels of a region that lie in the interior of the image.
///
/// @param x1, x2, y1, y2  region
/// @param pResImg         written at those pixels only; the border is not cleared
NUV_API void NuvBinImgMedFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pResImg);

/// Applies a majority filter whose window grows down the image, for pictures with perspective.
///
/// Row y has a window of 2M' + 1 columns by 2N' + 1 rows with
///
///     M' = truncate((y*(ratioX-1)/height + 1)*M + 0.5)
///     N' = truncate((y*(ratioY-1)/height + 1)*N + 0.5)
///
/// A pixel becomes 255 if the sum of the pixel values in the window is above 127 times the number of pixels
/// in it, otherwise 0. A window that would reach above the image begins with the pixel's own row instead. One
/// that would reach below the image ends with the pixel's own row. It is cut if the image has too few rows.
///
/// The first M' and the last M' + 1 columns use a stretch of 2M' + 1 pixels of row y alone. It begins with
/// the pixel itself in the first columns, and ends with it in the last ones. It is cut at the ends of the
/// row. Its sum must be above 254*M' + 127.
///
/// A row is not written if both half sizes are below 1 or the window is wider than the image. If only one
/// half size is below 0, it counts as 0.
///
/// @param pBinImg         binary image; read only
/// @param M, N            half sizes at the top of the image
/// @param ratioX, ratioY  sizes at the bottom, as multiples of those at the top
/// @param pResImg         written except in the rows left out above; nothing is written if allocation fails
NUV_API void NuvBinImgMedFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                double ratioX, double ratioY, uint8_t* pResImg);

/// Applies a 3x3 majority near white pixels only, for images with few of them.
///
/// A pixel becomes 255 if the values of its neighbours add up to more than 1019 (four white ones). Only the
/// white pixels in columns 2..width-3 and rows 2..height-3 and the black neighbours of such pixels are
/// considered. All other pixels become 0.
///
/// @param pBinImg  binary image; read only
/// @param pResImg  every byte is written
NUV_API void NuvBinImgLittleWhitePixelsMed3x3Filter(uint8_t* pBinImg, int32_t width, int32_t height,
                                                    uint8_t* pResImg);

/// Thresholds a gray image and keeps the pixels that have at least four bright neighbours.
///
/// A pixel becomes 255 if it and four or more of its neighbours are at least threshold, otherwise 0. The
/// border becomes 0.
///
/// @param pGryImg    gray image; read only
/// @param threshold  least bright value; any number
/// @param pResImg    every byte is written
/// @return the number of pixels that became 255
NUV_API int32_t NuvThresholdAndMedFilter3x3(uint8_t* pGryImg, int32_t width, int32_t height,
                                            int32_t threshold, uint8_t* pResImg);

/// @}

/// @defgroup binary_points Point removal
///
/// Removal of pixels by the number of their neighbours, in place.
/// @{

/// Deletes the white pixels of rows 1 to height-2 whose eight neighbours are black, in place.
///
/// The rows count as one stretch of memory: left of the first column lies the end of the row above, and right
/// of the last column the start of the row below. Everything before and after the image is black.
///
/// @param pBinImg  binary image; read and written
NUV_API void NuvBinImgDeleteIsolatedPoints(uint8_t* pBinImg, int32_t width, int32_t height);

/// Inverts interior pixels of one value that have more than N neighbours of that value, in place.
///
/// Such a pixel becomes 255-gry. The scan goes row by row, and an inverted pixel no longer counts as a
/// neighbour for the pixels that follow.
///
/// @param pBinImg  gray image; read and written
/// @param gry      the value; outside 0..255 nothing changes
/// @param N        number of neighbours
NUV_API void NuvBinImgDeletePointsMoreThanN(uint8_t* pBinImg, int32_t width, int32_t height, int32_t gry,
                                            int32_t N);

/// Inverts interior pixels of one value that have fewer than N neighbours of that value, in place.
///
/// The scan and the parameters are those of NuvBinImgDeletePointsMoreThanN.
NUV_API void NuvBinImgDeletePointsLessThanN(uint8_t* pBinImg, int32_t width, int32_t height, int32_t gry,
                                            int32_t N);

/// @}

/// @defgroup binary_shapes Erosion size, hole filling, thinning
///
/// Operations on whole shapes.
/// @{

/// Measures how large a square the image can be eroded by before nothing is left.
///
/// Each round takes these steps, with a size of 0 at the start:
///
/// 1. Each white pixel is replaced by the least of its distances to the two ends of its run in the row and of
///    its run in the column. A distance is 1 at an end and 254 at most.
/// 2. If there is no white pixel, 1 is subtracted from the size and the search ends. If all distances are 1,
///    1 is added and the search ends.
/// 3. m is the median of the distances, as computed by NuvGetMedianInHistogram, or 1 if that is 0. 2m is
///    added to the size.
/// 4. The image of the round is eroded: by NuvBinImgMinFilter3x3 if m is 1, otherwise by NuvBinImgFilter with
///    half sizes m. If the window is larger than the image, if the erosion changes nothing, or if allocation
///    fails, the search ends.
///
/// @param pBinImg   binary image of 0 and 255; read only
/// @param pTmpImg   work space of width*height bytes; receives the image before the last round
/// @param pWorkImg  work space of width*height bytes; receives the distances of the last round, or the image
///                  that an erosion did not change
/// @param pSize     receives the size; -1 for a black image
/// @return the size
NUV_API int32_t NuvGetMaxSizeofMinFilter(uint8_t* pBinImg, uint8_t* pTmpImg, uint8_t* pWorkImg, int32_t width,
                                         int32_t height, int32_t* pSize);

/// Fills the black pixels under a mask from their nearest neighbours in row and column.
///
/// Where the mask is 0 the result is 0. Elsewhere a pixel that is not 0 is copied. A pixel of 0 becomes the
/// first pixel that is not 0 at distance 1, 2, ... maxDistance; at each distance the order is right, left,
/// down, up. If there is none it stays 0.
///
/// The search to the left goes on in the rows above, as they lie in memory; before the image everything is 0.
/// The search upwards does not reach row 0.
///
/// @param pGryImg      gray image; read only
/// @param pMskImg      mask of the same size; read only
/// @param maxDistance  in pixels; with 0 or less nothing is filled
/// @param pResImg      every byte is written; if allocation fails, as with a maxDistance of 0
NUV_API void NuvFillHolesByNearNeighbor(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                        int32_t maxDistance, uint8_t* pResImg);

/// Thins objects to lines of one pixel.
///
/// Let B be the number of white neighbours of a pixel, and A the number of changes from black to white on the
/// way round them. Two passes alternate until neither deletes a pixel. A pass decides all pixels by the image
/// at its start. It deletes the pixels with 2 <= B <= 6 and A = 1 unless all three of one of these sets are
/// white. N, E, S and W are the neighbours above, right, below and left:
///
///     first pass     N, S, E    or    W, S, E
///     second pass    W, N, E    or    W, N, S
///
/// A last scan removes the corners of stairs: pixels with A = 2 and white direct neighbours at a right angle.
/// It sees its own deletions.
///
/// @param pBinImg  binary image; read only; its border counts as black
/// @param pTmpImg  work space of width*height bytes; receives the lines before the last scan, as 0 and 1
/// @param pResImg  every byte is written
/// @return the number of iterations of both passes, including the last one, which deletes nothing. If
///         allocation fails, 0; the contents of both images are then undefined
/// @see T. Y. Zhang and C. Y. Suen, A fast parallel algorithm for thinning digital patterns, 1984
NUV_API int32_t NuvBinImgThin(uint8_t* pBinImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                              uint8_t* pResImg);

/// @}

/// @defgroup binary_run_lengths Run lengths
///
/// Counts and filters of runs by their length.
///
/// A run is a maximal stretch of white (not 0) or black pixels along a row (RLX) or a column (RLY). Where
/// color is an int32_t its low byte is written.
/// @{

/// Counts the black runs of rows by length.
///
/// @param pBinImg    binary image; read only
/// @param pCount     maxLength+1 entries, cleared first; entry i receives the number of runs of length i, the
///                   last entry also that of all longer runs
/// @param maxLength  0 or more; with less nothing is written
NUV_API void NuvRLXBlackCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount,
                              int32_t maxLength);

/// Counts the white runs of rows by length.
///
/// The parameters are those of NuvRLXBlackCount.
NUV_API void NuvRLXWhiteCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount,
                              int32_t maxLength);

/// Measures the bright runs of rows in a region of a gray image.
///
/// A run starts with a value above 200 and goes on while values are 200 or more.
///
/// @param pGryImg         gray image; read in the region only
/// @param x1, x2, y1, y2  region; clamped to the image first
/// @param pSum            receives the length of all runs together
/// @param pMin            receives the length of the shortest run; width without runs
/// @param pMax            receives the length of the longest run; 0 without runs
/// @param pMaxRuns        receives the greatest number of runs in one row
/// @return the number of runs
NUV_API int32_t NuvRLXWhiteCount(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, int32_t* pSum, int32_t* pMin, int32_t* pMax,
                                 int32_t* pMaxRuns);

/// Writes color over the white runs of rows that are longer than maxLength, in place.
NUV_API void NuvRLXWhiteDeleteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t maxLength,
                                   uint8_t color);

/// Writes color over the white runs of rows that are shorter than minLength, in place.
NUV_API void NuvRLXWhiteDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t color);

/// Writes color over the black runs of rows that are shorter than minLength, in place.
///
/// Only columns 1 to width-2 are considered. A run that goes beyond them counts with its part inside.
NUV_API void NuvRLXBlackDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t color);

/// Counts the black runs of columns by length.
///
/// The parameters are those of NuvRLXBlackCount.
NUV_API void NuvRLYBlackCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount,
                              int32_t maxLength);

/// Counts the white runs of columns by length.
///
/// The parameters are those of NuvRLXBlackCount.
NUV_API void NuvRLYWhiteCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount,
                              int32_t maxLength);

/// Measures the bright runs of columns in a region of a gray image.
///
/// A run starts with a value above 200 and goes on while values are 200 or more.
///
/// @param pGryImg         gray image; read in the region only
/// @param x1, x2, y1, y2  region; clamped to the image first
/// @param pSum            receives the length of all runs together
/// @param pMin            receives the length of the shortest run, or the width if that is less
/// @param pMax            receives the length of the longest run; 0 without runs
/// @param pMaxRuns        receives the greatest number of runs in one column
/// @return the number of runs
NUV_API int32_t NuvRLYWhiteCount(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, int32_t* pSum, int32_t* pMin, int32_t* pMax,
                                 int32_t* pMaxRuns);

/// Writes color over the white runs of columns that are longer than maxLength, in place.
NUV_API void NuvRLYWhiteDeleteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t maxLength,
                                   int32_t color);

/// Writes color to the white pixels of rows 1 to height-2 that are black above and below, in place.
NUV_API void NuvRLYWhiteDeleteIsolated(uint8_t* pBinImg, int32_t width, int32_t height, int32_t color);

/// Writes color over the white runs of columns that are shorter than minLength, in place.
///
/// With a minLength below 2 it does what NuvRLYWhiteDeleteIsolated does.
NUV_API void NuvRLYWhiteDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t color);

/// Replaces each white pixel by the lesser of the lengths of its runs in row and column, in place.
///
/// The length in the row is 255 at most. The length in the column is cut to its low byte, so a run of 256
/// pixels becomes 0.
NUV_API void NuvBinImgMarkMinOfRLXandRLY(uint8_t* pBinImg, int32_t width, int32_t height);

/// Counts the starts of white runs along the row near each pixel.
///
/// A start is a white pixel whose left neighbour is black; column 0 has none. The starts are counted in the
/// 2h + 1 columns around the pixel with
///
///     h = ((X+1)/2*2 + 1)/2        each division truncated; a negative h counts as 0
///
/// Near the sides h is reduced until the window fits, so it stays centred.
///
/// @param pBinImg  binary image; read only
/// @param pBuf     work space of width entries; receives 1 at the starts of the last row and 0 elsewhere
/// @param X        sets the width of the window
/// @param pResImg  every byte is written; receives the low byte of the count
NUV_API void NuvBinImg01TimesByX(uint8_t* pBinImg, int32_t* pBuf, int32_t width, int32_t height, int32_t X,
                                 uint8_t* pResImg);

/// Marks the long white runs of rows, with a least length that changes down the image.
///
/// In row y a run is long if it has at least (minBottom-minTop)*y/(height-1) + minTop pixels, with a
/// truncated quotient. Only columns 1 to width-2 of rows 1 to height-2 are considered. A run that goes beyond
/// those columns counts with its part inside.
///
/// @param pBinImg            binary image; read only
/// @param minTop, minBottom  least lengths in the first and the last row
/// @param pResImg            receives 255 on the long runs; all other pixels are left alone
NUV_API void NuvRLXWhiteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minTop,
                             int32_t minBottom, uint8_t* pResImg);

/// Marks the short bright runs of columns: at most maxLength pixels of at least threshold.
///
/// @param pGryImg    gray image; read only
/// @param threshold  least bright value
/// @param maxLength  greatest length of a short run
/// @param pResImg    receives 255 on the short runs; all other pixels are left alone
NUV_API void NuvRLYWhiteShort(uint8_t* pGryImg, int32_t width, int32_t height, int32_t threshold,
                              int32_t maxLength, uint8_t* pResImg);

/// Finds horizontal strokes, which are thin in y and long in x.
///
/// The first step marks short bright runs of columns, like NuvRLYWhiteShort, in all columns but the last. The
/// second step finds the runs of those marks along rows. In row y a run is a stroke if it has at least
/// (minBottom-minTop)*y/height + minTop pixels, with a truncated quotient. Row 0 has no strokes.
///
/// @param pGryImg            gray image; read only
/// @param pTmpImg            work space of width*height bytes; receives the marks of the first step
/// @param threshold          least bright value
/// @param maxLength          greatest height of a stroke
/// @param minTop, minBottom  least lengths at the top and at the bottom of the image
/// @param pResImg            receives 255 on the strokes; all other pixels are left alone
/// @return true
NUV_API bool NuvRLYWhiteShortAndRLXWhiteLong(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width,
                                             int32_t height, int32_t threshold, int32_t maxLength,
                                             int32_t minTop, int32_t minBottom, uint8_t* pResImg);

/// Keeps the long white runs of rows, and the short ones that touching runs connect with a long one.
///
/// A run of minLength pixels or more has level 1. A first pass goes down from row 1. It gives a shorter run
/// the first level found in the row above over its columns, plus 1, if that level is below maxLevel. A second
/// pass goes up from row height-2 and does the same with the row below; it replaces a level of the first
/// pass. Runs without a level are dropped, all others are 255 in the result.
///
/// @param pBinImg    binary image; changed: its border becomes 0
/// @param minLength  least length of a long run
/// @param maxLevel   highest level; values above 250 count as 250, and 1 or less keeps long runs only
/// @param pResImg    every byte is written
NUV_API void NuvRLXDeleteWhiteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t maxLevel, uint8_t* pResImg);

/// Keeps the long white runs of columns, and the short ones that touching runs connect with a long one.
///
/// It does what NuvRLXDeleteWhiteShort does, with columns instead of rows: the first pass goes right from
/// column 1, the second left from column width-2.
NUV_API void NuvRLYDeleteWhiteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t maxLevel, uint8_t* pResImg);

/// @}

/// @defgroup binary_run_regions Regions held as runs
///
/// Runs collected into records, followed from line to line, drawn and numbered.
///
/// Records are written to an array of N entries of the caller; nothing is written beyond them. Only
/// NuvRLXRegionsWithID writes the member ID.
/// @{

/// Collects the white runs of rows that touch a rectangle.
///
/// A run is stored whole, also where it lies beyond columns x1 to x2. If x1 > x2, only runs that contain both
/// columns are found.
///
/// @param pBinImg  binary image; read only
/// @param x1, x2   columns of the rectangle
/// @param y1, y2   rows of the rectangle; those outside the image are skipped
/// @param pRLX     receives the runs, row by row from left to right
/// @param N        number of entries
/// @return the number of records written, N at most; 0 if x1 or x2 lies outside the image
NUV_API int32_t NuvRLXRegionsGet(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, RLX* pRLX, int32_t N);

/// Follows a run of row y downwards while its length stays steady.
///
/// The walk begins with row y itself. In each row:
///
/// 1. Let m = (x1+x2)>>1. The walk ends if pixel m is black or outside the image.
/// 2. The left end is the first black pixel left of m, or column 0 if there is none. The right end is the
///    first black pixel right of m, or column width-1 if there is none. The length is right - left.
/// 3. The walk ends if the length is 0, which happens only in images of one column. It also ends if the
///    length is 3 or more and differs from the length before by half of that or more.
/// 4. The record receives y, left and right-1. In the next row left and right are x1 and x2.
///
/// So the stored x1 is one column left of the run unless the run starts in column 0, and a run that reaches
/// the last column is stored one pixel short.
///
/// @param pBinImg  binary image; read only
/// @param y        first row
/// @param x1, x2   the run; the first length is compared with x2-x1+1
/// @param pRLX     receives one record per row
/// @param N        number of entries
/// @return the number of records written, N at most; 0 if row y is not in the image
NUV_API int32_t NuvRLXRegionsGrowByYInc(uint8_t* pBinImg, int32_t width, int32_t height, int32_t y,
                                        int32_t x1, int32_t x2, RLX* pRLX, int32_t N);

/// Follows a run of row y upwards while its length stays steady, as far as row 1.
///
/// The rule is that of NuvRLXRegionsGrowByYInc.
///
/// @return the number of records written, N at most; 0 if y is below 1 or not below height
NUV_API int32_t NuvRLXRegionsGrowByYDec(uint8_t* pBinImg, int32_t width, int32_t height, int32_t y,
                                        int32_t x1, int32_t x2, RLX* pRLX, int32_t N);

/// Collects the white runs of rows that touch a rectangle and follows them up and down.
///
/// 1. NuvRLXRegionsGet collects the runs.
/// 2. The records are visited from the last one back to the second one, up to the first record that is not of
///    row y2. Each is followed downwards by NuvRLXRegionsGrowByYInc, which appends its records.
/// 3. The records are visited from the first one on, appended ones included, up to the first record that is
///    not of row y1. Each is followed upwards by NuvRLXRegionsGrowByYDec, which appends its records.
///
/// So the first record is never followed downwards. A walk upwards appends the run that it starts from
/// once more, and step 3 can visit that record, too. If y1 = y2, a single run with nothing above it can be
/// appended until all N entries are full.
///
/// @return the number of records written, N at most
NUV_API int32_t NuvRLXReginsGetAndGrow(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, RLX* pRLX, int32_t N);

/// Draws N runs of rows: writes the low byte of color to their pixels inside the image.
NUV_API void NuvDrawRLXRegions(uint8_t* pBinImg, int32_t width, int32_t height, RLX* pRLX, int32_t N,
                               int32_t color);

/// Collects the white runs of columns that touch a rectangle.
///
/// It does what NuvRLXRegionsGet does, with columns instead of rows, except that a run that reaches the last
/// row of the image is stored one pixel short. A single pixel there is stored with y2 = y1-1.
///
/// @param pBinImg  binary image; read only
/// @param x1, x2   columns of the rectangle; those outside the image are skipped
/// @param y1, y2   rows of the rectangle
/// @param pRLY     receives the runs, column by column from top to bottom
/// @param N        number of entries
/// @return the number of records written, N at most; 0 if y1 or y2 lies outside the image
NUV_API int32_t NuvRLYRegionsGet(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, RLY* pRLY, int32_t N);

/// Follows a run of column x to the right while its length stays steady.
///
/// The rule is that of NuvRLXRegionsGrowByYInc, with columns instead of rows.
///
/// @return the number of records written, N at most; 0 if column x is not in the image
NUV_API int32_t NuvRLYRegionsGrowByXInc(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x,
                                        int32_t y1, int32_t y2, RLY* pRLY, int32_t N);

/// Follows a run of column x to the left while its length stays steady, from column x-1 as far as column 1.
///
/// The rule is that of NuvRLXRegionsGrowByYInc, with columns instead of rows; column x itself is not
/// repeated.
///
/// @return the number of records written, N at most; 0 if column x-1 is below 1 or not in the image
NUV_API int32_t NuvRLYRegionsGrowByXDec(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x,
                                        int32_t y1, int32_t y2, RLY* pRLY, int32_t N);

/// Collects the white runs of columns that touch a rectangle and follows them to both sides.
///
/// It does what NuvRLXReginsGetAndGrow does, with the columns x2 and x1 for the rows y2 and y1: runs are
/// collected by NuvRLYRegionsGet and followed by NuvRLYRegionsGrowByXInc and then by NuvRLYRegionsGrowByXDec,
/// which does not repeat the run that it starts from.
///
/// @return the number of records written, N at most
NUV_API int32_t NuvRLYReginsGetAndGrow(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, RLY* pRLY, int32_t N);

/// Draws N runs of columns: writes the low byte of color to their pixels inside the image.
NUV_API void NuvDrawRLYRegions(uint8_t* pBinImg, int32_t width, int32_t height, RLY* pRLY, int32_t N,
                               int32_t color);

/// Stores the white runs of rows that are long enough, each with the number of its 4-connected region.
///
/// In row y runs of (minBottom-minTop)*y/(height-1) + minTop pixels or more are kept, with a truncated
/// quotient; in an image of one row, runs of minTop pixels or more. Kept runs of adjacent rows that have a
/// column in common belong to one region.
///
/// @param pBinImg            binary image; read only
/// @param minTop, minBottom  least lengths in the first and the last row
/// @param pRLX               receives the runs row by row; the numbers of the regions begin at 0, without
///                           gaps and in no particular order
/// @param N                  number of entries; the scan stops when they are full
/// @return the number of regions, 1024 at most. If a run needs a number while 1024 are in use, the scan stops
///         there and the number of records written is returned instead. The number of records is not returned
///         otherwise; a caller that needs it presets the entries
NUV_API int32_t NuvRLXRegionsWithID(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minTop,
                                    int32_t minBottom, RLX* pRLX, int32_t N);

/// @}

/// @}

#endif

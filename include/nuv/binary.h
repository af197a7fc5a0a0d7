/// @file
/// Binary images: box filters with a threshold, 3x3 morphology, majority filters, point removal, thinning,
/// run lengths, and regions held as runs.
///
/// Object pixels are not 0 and background is 0, unless a function says otherwise; results are 0 and 255.
/// Results are separate images of the full size. Functions without a result change the image in place.
#ifndef NUV_BINARY_H
#define NUV_BINARY_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

// ---- Binary measures -------------------------------------------------------------------------------------

/// The column that most long horizontal runs of white pass through, searched between x1 and x2.
///
/// A run counts if it is at least 12 pixels long. Each counted run adds 1 to a column right of its first
/// pixel and 1 to a column left of its last pixel: 2 to a column strictly inside, 1 to any other column. The
/// result is the middle of the first and the last column that reach the highest sum.
///
/// @param pBinImg  binary image
/// @param x1, x2   columns to search, inclusive
/// @return the column, (first + last) / 2 truncated. If no run counted, (width + x2) / 2, which lies right
///         of x2; if x1 > x2, width; if width is above 4096, 0
NUV_API int32_t NuvBinImgSearchCenterX(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2);

/// The centre of gravity of the object pixels, each coordinate truncated.
///
/// @param pX, pY  receive the centre; left alone if there is no object pixel
/// @return the number of object pixels
/// @note The coordinate sums are 32-bit and wrap: from 1626 x 1626 on in an image that is all object.
NUV_API int32_t NuvBinImgCentroid(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pX, int32_t* pY);

/// The number of pixels with the value gry; 0 for a gry outside 0..255.
NUV_API int32_t NuvPixelsInGryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t gry);

/// The share of background pixels in a region: their number over (x2-x1+1)*(y2-y1+1).
///
/// @param x1, x2, y1, y2  region; must lie inside the image, it is not clamped
/// @return 0 to 1; of an empty region 0, or not a number where one of its two factors is 0
NUV_API double NuvGetBlackRatioInBinaryImg(uint8_t* pBinImg, int32_t width, int32_t x1, int32_t x2,
                                           int32_t y1, int32_t y2);

/// The number of object pixels in a region, which is clamped to the image first; 0 for an empty region.
NUV_API int32_t NuvGetWhitePixelsNum(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                     int32_t y1, int32_t y2);

// ---- Box filters -----------------------------------------------------------------------------------------
//
// A window of 2*M+1 columns by 2*N+1 rows. Its sum adds pixel values, so a white pixel counts 255. The time
// does not depend on the size of the window.

/// Thresholds the sum of the window: 255 where it is above threshold, otherwise 0.
///
/// (2*M+1)*(2*N+1)*127 smooths, 0 dilates, ((2*M+1)*(2*N+1)-1)*255 erodes. Columns and rows nearer to a side
/// than the window's half get the nearest computed pixel.
///
/// @param M, N       half sizes; a window that is larger than the image, or a negative half size, writes
///                   nothing
/// @param pSum       work space of width entries; receives the column sums of the last 2*N rows
/// @param threshold  compared without a sign
/// @note Without memory for a row of sums nothing is written.
NUV_API void NuvBinImgFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N,
                             uint32_t* pSum, uint32_t threshold, uint8_t* pResImg);

/// The same with work space of its own.
///
/// @return true; false only if there is no memory
NUV_API bool NuvBinImgFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N,
                             uint32_t threshold, uint8_t* pResImg);

/// Removes masked pixels and thresholds the sum of a window that stays centred by shrinking at the sides: 255
/// where the sum is above threshold times the number of pixels in the window. In the last column, where the
/// window is one pixel wide, the threshold is 126 whatever is given.
///
/// @param pMskImg    mask: what enters the sums is (not mask) and pixel, bit by bit, so that 255 removes the
///                   pixel and 0 keeps it
/// @param M, N       half sizes; those beyond the image count as far as it reaches, negative ones as 0
/// @param threshold  per pixel of the window, 0..255
/// @return false, with nothing written, if width is above 4095
NUV_API bool NuvBinImgRemoveMskAndFilter(uint8_t* pBinImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                         int32_t M, int32_t N, int32_t threshold, uint8_t* pResImg);

/// The same with a mask that removes the whole pixel from 129 on, and keeps it whole below.
NUV_API bool NuvBinImgRemoveMskAndFilterUseLUT(uint8_t* pBinImg, uint8_t* pMskImg, int32_t width,
                                               int32_t height, int32_t M, int32_t N, int32_t threshold,
                                               uint8_t* pResImg);

// ---- 3x3 morphology --------------------------------------------------------------------------------------

/// Grows black: the eight neighbours of every black interior pixel that has a black neighbour become 0. A
/// lone black pixel does not grow. Everything else, the sides included, is copied.
/// @see J. Serra, Image analysis and mathematical morphology, 1982
NUV_API void NuvBinImgMinFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Grows black in a region. The region alone is copied; black grows from the pixels of columns max(x1, 1) to
/// min(x2+1, width-2) in rows max(y1, 1) to min(y2+1, width-2), so of the column at its right and the row
/// below it too; the limit of the rows comes from the width. Pixels beside the region can become 0. Outside
/// the image nothing is black.
NUV_API void NuvBinImgMinFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pResImg);

/// Grows black in place: every pixel of 255 with a black interior pixel among its neighbours, a lone one too,
/// becomes color, and so does every pixel that held 200.
NUV_API void NuvBinImgMinFilter3x3ToColor(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t color);

/// Grows white: the eight neighbours of every white interior pixel that has a black neighbour become 255.
/// Everything else, the sides included, is copied.
NUV_API void NuvBinImgMaxFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Grows white in a region; otherwise like NuvBinImgMinFilter3x3 of a region.
NUV_API void NuvBinImgMaxFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pResImg);

/// Grows white in place: every black pixel with an interior pixel of exactly 255 among its neighbours becomes
/// color, and so does every pixel that held 200.
NUV_API void NuvBinImgMaxFilter3x3ToColor(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t color);

// ---- Majority filters ------------------------------------------------------------------------------------

/// 255 where five or more of the eight neighbours are white; the pixel itself does not count. The four sides
/// become 0.
NUV_API void NuvBinImgMedFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, uint8_t* pResImg);

/// The same rule for the pixels of a region, as far as it lies in the interior. Nothing else is written.
NUV_API void NuvBinImgMedFilter3x3(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pResImg);

/// A majority filter whose window grows down the image, for pictures with perspective.
///
///     M'(y) = truncate((y*(ratioX-1)/height + 1)*M + 0.5)     N'(y) likewise with ratioY and N
///
/// A pixel becomes 255 if the sum of 2*M'+1 columns by 2*N'+1 rows around it is above 127 per pixel. Near the
/// top the rows begin with the pixel's own and near the bottom they end with it. In the first M' and the last
/// M'+1 columns the sum is that of 2*M'+1 pixels of the row alone, beginning or ending with the pixel, and
/// cut at the end of the row; it must be above 254*M'+127.
///
/// Rows where both half sizes are below 1, or the window is wider than the image, are not written; a single
/// half size below 0 counts as 0. Without memory nothing is written.
NUV_API void NuvBinImgMedFilter(uint8_t* pBinImg, int32_t width, int32_t height, int32_t M, int32_t N,
                                double ratioX, double ratioY, uint8_t* pResImg);

/// A 3x3 majority for images with few white pixels, looking at those alone: 255 where the neighbours' values
/// add up to more than 1019 (four white ones), at the white pixels of columns 2..width-3 and rows 2..height-3
/// and at the black neighbours of those of them that are not surrounded (sum below 2040). 0 elsewhere.
NUV_API void NuvBinImgLittleWhitePixelsMed3x3Filter(uint8_t* pBinImg, int32_t width, int32_t height,
                                                    uint8_t* pResImg);

/// Threshold and majority in one: 255 where the pixel and at least four of its neighbours are threshold or
/// more. The four sides become 0.
///
/// @return the number of pixels that became 255
NUV_API int32_t NuvThresholdAndMedFilter3x3(uint8_t* pGryImg, int32_t width, int32_t height,
                                            int32_t threshold, uint8_t* pResImg);

// ---- Points removed --------------------------------------------------------------------------------------

/// Deletes in place the white pixels whose eight neighbours are black, in rows 1 to height-2. The neighbours
/// at the side of the first and the last column are those in memory: the end of the row before, the start of
/// the next. Before and behind the image all is black.
NUV_API void NuvBinImgDeleteIsolatedPoints(uint8_t* pBinImg, int32_t width, int32_t height);

/// Turns interior pixels of value gry into 255-gry (its low byte) where more than N of their neighbours have
/// that value. In place, row by row: a pixel turned no longer counts for those behind it.
NUV_API void NuvBinImgDeletePointsMoreThanN(uint8_t* pBinImg, int32_t width, int32_t height, int32_t gry,
                                            int32_t N);

/// The same where fewer than N of the neighbours have that value.
NUV_API void NuvBinImgDeletePointsLessThanN(uint8_t* pBinImg, int32_t width, int32_t height, int32_t gry,
                                            int32_t N);

// ---- Erosion size, hole filling, thinning ----------------------------------------------------------------

/// How large a square the image can be eroded by before nothing is left.
///
/// Each round replaces the white pixels by the lesser of their distances to the ends of their runs in row and
/// column (1 at the ends, 254 at most), takes the median m of those (as of NuvGetMedianInHistogram, 1 at
/// least), adds 2*m to the size, and erodes the image: by NuvBinImgMinFilter3x3 for m = 1, otherwise by
/// NuvBinImgFilter of half size m. It ends when nothing is left, taking 1 off; when all distances are 1,
/// adding 1; or when an erosion would need a window larger than the image, or changes nothing, with the size
/// as it stands.
///
/// @param pBinImg   binary image of 0 and 255; read only
/// @param pTmpImg   work space of width*height bytes: receives the image before the last round
/// @param pWorkImg  work space of width*height bytes: receives the distances of the last round, or the image
///                  that an erosion did not change
/// @param pSize     receives the size; -1 for a black image
/// @return the size
NUV_API int32_t NuvGetMaxSizeofMinFilter(uint8_t* pBinImg, uint8_t* pTmpImg, uint8_t* pWorkImg, int32_t width,
                                         int32_t height, int32_t* pSize);

/// Fills the black pixels of a mask from their nearest neighbours.
///
/// Where the mask is 0 the result is 0; elsewhere it is the pixel, or for a pixel of 0 the first one that is
/// not among those at distance 1, 2, ... maxDistance to the right, left, down and up, in that order at each
/// distance. Looking left goes on in the rows above, as they lie in memory, and before the image all is 0;
/// looking up stops before row 0.
///
/// @param maxDistance  0 or less: pixels are copied
/// @param pResImg      every byte is written; if there is no memory for the search, as with a maxDistance of 0
NUV_API void NuvFillHolesByNearNeighbor(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t height,
                                        int32_t maxDistance, uint8_t* pResImg);

/// Thins objects to lines of one pixel.
///
/// Two passes take turns until neither deletes. With B the number of white neighbours and A the number of
/// changes from black to white going round them, a pass deletes the pixels with 2 <= B <= 6, A = 1 and not
/// all of N, S, E nor all of W, S, E white (first pass), not all of W, N, E nor all of W, N, S (second pass),
/// deciding all pixels by the image at its start. At last a scan deletes, seeing its own deletions, the
/// corners of stairs: pixels with A = 2 and two white direct neighbours at a right angle.
///
/// @param pBinImg  read only; its four sides count as black
/// @param pTmpImg  work space of width*height bytes; receives the lines before the last scan, as 0 and 1
/// @param pResImg  every byte is written
/// @return the number of iterations of both passes, with the last one, which deleted nothing; 0 if there is
///         no memory, with undefined results
/// @see T. Y. Zhang and C. Y. Suen, A fast parallel algorithm for thinning digital patterns, 1984
NUV_API int32_t NuvBinImgThin(uint8_t* pBinImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                              uint8_t* pResImg);

// ---- Run lengths -----------------------------------------------------------------------------------------
//
// A run is a maximal stretch of white (not 0) or black pixels along a row (RLX) or a column (RLY).

/// Counts black runs of rows by length.
///
/// @param pCount     maxLength+1 entries, cleared first: entry i receives the number of runs of length i, the
///                   last one that of all longer runs too
/// @param maxLength  0 or more; with less nothing is written
NUV_API void NuvRLXBlackCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount,
                              int32_t maxLength);

/// Counts white runs of rows by length, like NuvRLXBlackCount.
NUV_API void NuvRLXWhiteCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount,
                              int32_t maxLength);

/// What the bright runs of rows measure in a region. A run starts with a value above 200 and goes on while
/// values are 200 or more; pixels outside the region (its part in the image) are not read.
///
/// @param pSum      receives the length of all runs together
/// @param pMin      receives that of the shortest one, but width at most
/// @param pMax      receives that of the longest one; 0 without runs
/// @param pMaxRuns  receives the greatest number of runs in one row
/// @return the number of runs
NUV_API int32_t NuvRLXWhiteCount(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, int32_t* pSum, int32_t* pMin, int32_t* pMax,
                                 int32_t* pMaxRuns);

/// Writes color over the white runs of rows that are longer than maxLength.
NUV_API void NuvRLXWhiteDeleteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t maxLength,
                                   uint8_t color);

/// Writes color (its low byte) over the white runs of rows that are shorter than minLength.
NUV_API void NuvRLXWhiteDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t color);

/// Writes color (its low byte) over the black runs of rows that are shorter than minLength, in columns 1 to
/// width-2: runs are cut there, and count with what is left.
NUV_API void NuvRLXBlackDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t color);

/// Counts black runs of columns by length, like NuvRLXBlackCount.
NUV_API void NuvRLYBlackCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount,
                              int32_t maxLength);

/// Counts white runs of columns by length, like NuvRLXBlackCount.
NUV_API void NuvRLYWhiteCount(uint8_t* pBinImg, int32_t width, int32_t height, int32_t* pCount,
                              int32_t maxLength);

/// What the bright runs of columns measure in a region, like NuvRLXWhiteCount; pMin is the width at most here
/// too, and pMaxRuns tells the greatest number of runs in one column.
NUV_API int32_t NuvRLYWhiteCount(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, int32_t* pSum, int32_t* pMin, int32_t* pMax,
                                 int32_t* pMaxRuns);

/// Writes color (its low byte) over the white runs of columns that are longer than maxLength.
NUV_API void NuvRLYWhiteDeleteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t maxLength,
                                   int32_t color);

/// Writes color (its low byte) to the white pixels of rows 1 to height-2 whose upper and lower neighbours are
/// black.
NUV_API void NuvRLYWhiteDeleteIsolated(uint8_t* pBinImg, int32_t width, int32_t height, int32_t color);

/// Writes color (its low byte) over the white runs of columns that are shorter than minLength. With a
/// minLength below 2 it is NuvRLYWhiteDeleteIsolated.
NUV_API void NuvRLYWhiteDeleteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t color);

/// Replaces each white pixel by the lesser of the lengths of its runs in row and column. In a row the length
/// is 255 at most; in a column its low byte counts, so that a run of 256 pixels becomes 0.
NUV_API void NuvBinImgMarkMinOfRLXandRLY(uint8_t* pBinImg, int32_t width, int32_t height);

/// Counts the starts of white runs (a white pixel behind a black one) along the row near each pixel: in the
/// 2*h+1 columns around it, h = ((X+1)/2*2+1)/2, fewer near the sides, as many at its left as at its right. A
/// negative h counts as 0.
///
/// @param pBuf     work space of width entries; receives 1 at the starts of the last row and 0 elsewhere
/// @param pResImg  every byte is written: the low byte of the count
NUV_API void NuvBinImg01TimesByX(uint8_t* pBinImg, int32_t* pBuf, int32_t width, int32_t height, int32_t X,
                                 uint8_t* pResImg);

/// Marks long white runs of rows, in rows 1..height-2 and columns 1..width-2, where runs are cut. In row y a
/// run is long from (minBottom-minTop)*y/(height-1)+minTop pixels on.
///
/// @param pResImg  receives 255 on those runs; not cleared
NUV_API void NuvRLXWhiteLong(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minTop,
                             int32_t minBottom, uint8_t* pResImg);

/// Marks short bright runs of columns: at most maxLength pixels of at least threshold.
///
/// @param pResImg  receives 255 on those runs; not cleared
NUV_API void NuvRLYWhiteShort(uint8_t* pGryImg, int32_t width, int32_t height, int32_t threshold,
                              int32_t maxLength, uint8_t* pResImg);

/// Finds horizontal strokes, thin in y and long in x: of the pixels that NuvRLYWhiteShort marks in all
/// columns but the last, those of runs of rows, row 0 excepted, of at least
/// (minBottom-minTop)*y/height+minTop pixels.
///
/// @param pTmpImg  work space of width*height bytes; receives the marks of the first step
/// @param pResImg  receives 255 on the strokes; not cleared
/// @return true
NUV_API bool NuvRLYWhiteShortAndRLXWhiteLong(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width,
                                             int32_t height, int32_t threshold, int32_t maxLength,
                                             int32_t minTop, int32_t minBottom, uint8_t* pResImg);

/// Keeps the white runs of rows that are long, and the short ones that a chain of touching runs connects with
/// a long one.
///
/// A run of minLength or more has level 1. Going down from row 1 a shorter run takes the first level found in
/// the row above over its columns, plus 1, if that level is below maxLevel; going up from row height-2,
/// likewise, from the row below, replacing what it had. Runs without a level are dropped.
///
/// @param pBinImg   changed: its four sides become 0
/// @param maxLevel  up to 250, more count as that; 1 or less keeps long runs only
/// @param pResImg   every byte is written
NUV_API void NuvRLXDeleteWhiteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t maxLevel, uint8_t* pResImg);

/// The same for the runs of columns.
NUV_API void NuvRLYDeleteWhiteShort(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minLength,
                                    int32_t maxLevel, uint8_t* pResImg);

// ---- Regions held as runs --------------------------------------------------------------------------------
//
// Records go into an array of the host, which holds N; nothing is written past them. Only the numbering
// writes their ID.

/// Collects the white runs of rows y1 to y2 (those in the image) that touch columns x1 to x2, whole, also
/// beyond those columns. If x1 is greater than x2, only runs that hold both are found.
///
/// @return the number of records written, N at most; 0 if a column lies outside the image
NUV_API int32_t NuvRLXRegionsGet(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, RLX* pRLX, int32_t N);

/// Follows a run of row y downwards while its length stays steady.
///
/// From row y on: let m = (x1+x2)>>1. From m the left end goes left to the first black pixel or to column 0,
/// the right end right to the first black pixel or to column width-1. The walk ends if pixel m is black, if
/// the length, right - left, is 0, as it is in lines of one pixel, or if it is 3 or more and differs from the
/// one before by half of that one or more.
/// Otherwise y, left and right-1 are stored, and left and right are x1 and x2 of the next row. So x1 is one
/// left of the run unless the run starts in column 0, and a run that reaches the last column is stored one
/// short.
///
/// @param y, x1, x2  the run; the first length compared with is x2-x1+1
/// @return the number of records written, N at most; 0 if row y is not in the image
NUV_API int32_t NuvRLXRegionsGrowByYInc(uint8_t* pBinImg, int32_t width, int32_t height, int32_t y,
                                        int32_t x1, int32_t x2, RLX* pRLX, int32_t N);

/// Follows a run of row y upwards, to row 1 at most; otherwise like NuvRLXRegionsGrowByYInc.
///
/// @return the number of records written, N at most; 0 if y is below 1, or below the image
NUV_API int32_t NuvRLXRegionsGrowByYDec(uint8_t* pBinImg, int32_t width, int32_t height, int32_t y,
                                        int32_t x1, int32_t x2, RLX* pRLX, int32_t N);

/// Collects runs like NuvRLXRegionsGet and follows those of row y2 downwards, the first record excepted, and
/// those of row y1 upwards, the runs that this appends included. Each walk ends at the first record of
/// another row. A single run on the one row of a search, with nothing above it, is appended again and again
/// until N are full.
///
/// @return the number of records written, N at most
NUV_API int32_t NuvRLXReginsGetAndGrow(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, RLX* pRLX, int32_t N);

/// Writes color (its low byte) to the pixels of N runs, as far as they lie in the image.
NUV_API void NuvDrawRLXRegions(uint8_t* pBinImg, int32_t width, int32_t height, RLX* pRLX, int32_t N,
                               int32_t color);

/// Collects the white runs of columns x1 to x2 that touch rows y1 to y2, like NuvRLXRegionsGet but for one
/// thing: a run that reaches the last row of the image is stored one pixel short, a single pixel there with
/// y2 = y1-1.
///
/// @return the number of records written, N at most; 0 if a row lies outside the image
NUV_API int32_t NuvRLYRegionsGet(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, RLY* pRLY, int32_t N);

/// Follows a run of column x to the right, like NuvRLXRegionsGrowByYInc.
///
/// @return the number of records written, N at most; 0 if column x is not in the image
NUV_API int32_t NuvRLYRegionsGrowByXInc(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x,
                                        int32_t y1, int32_t y2, RLY* pRLY, int32_t N);

/// Follows a run of column x to the left, from column x-1 on, to column 1 at most; otherwise like
/// NuvRLXRegionsGrowByYInc.
///
/// @return the number of records written, N at most; 0 if x-1 is below 1, or not in the image
NUV_API int32_t NuvRLYRegionsGrowByXDec(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x,
                                        int32_t y1, int32_t y2, RLY* pRLY, int32_t N);

/// Collects runs like NuvRLYRegionsGet and follows those of column x2 to the right, the first record
/// excepted, and those of column x1 to the left, like NuvRLXReginsGetAndGrow.
///
/// @return the number of records written, N at most
NUV_API int32_t NuvRLYReginsGetAndGrow(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, RLY* pRLY, int32_t N);

/// Writes color (its low byte) to the pixels of N runs, as far as they lie in the image.
NUV_API void NuvDrawRLYRegions(uint8_t* pBinImg, int32_t width, int32_t height, RLY* pRLY, int32_t N,
                               int32_t color);

/// Numbers 4-connected regions: stores the white runs of rows that are long enough, each with the number of
/// its region.
///
/// In row y runs of (minBottom-minTop)*y/(height-1)+minTop pixels or more are kept (minTop if there is one
/// row alone). Runs of neighbouring rows that have a column in common belong to one region.
///
/// @param pRLX  receives the runs row by row, with numbers from 0 on without a gap, in no order
/// @param N     number of records; the scan stops when they are full
/// @return the number of regions, 1024 at most. If a 1025th is met the scan stops there, and the number of
///         records written is returned instead, whose numbers have gaps. Otherwise the host does not learn
///         the number of records: one that wants it fills them beforehand
NUV_API int32_t NuvRLXRegionsWithID(uint8_t* pBinImg, int32_t width, int32_t height, int32_t minTop,
                                    int32_t minBottom, RLX* pRLX, int32_t N);

#endif

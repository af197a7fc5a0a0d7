/// @file
/// Lines: their forms and plane geometry, fitting, the chain-line and Hough detectors, key points.
///
/// Coordinates are image coordinates: x grows to the right, y grows down. A line travels in one of four
/// forms:
///
///     ABC     A*x + B*y + C = 0, never normalised
///     KB      isVertical = 0: y = k*x + b;  else x = k*y + b. Producers set isVertical for every
///             line steeper than the diagonal, so that |k| <= 1
///     2P      the line through two points
///     Hough   x*cos(Theta) + y*sin(Theta) = Thro, Theta in whole degrees 0..180, Thro in whole pixels, which
///             may be negative
///
/// Angles are in degrees, with pi = 3.1415926 unless a function says otherwise; results are defined with that
/// constant. Conversions to int32_t truncate; a value that is not finite or does not fit gives the most
/// negative int32_t, which no range test lets pass. Divisions by zero run on to infinities and not-a-numbers.
#ifndef NUV_LINES_H
#define NUV_LINES_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

// ---- Conversions between forms ---------------------------------------------------------------------------

/// 2P to KB: isVertical = 0 if |dy| < |dx|, else 1 (at exactly 45 degrees too). dx and dy are 32-bit
/// differences.
///
/// Two equal points give isVertical = 1 and k, b not a number.
NUV_API void NuvLineKBEquation(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t* pIsVertical,
                               double* pK, double* pB);

/// The same, with the angle to the x axis: 90 - atan(k) if isVertical, else atan(k), plus 180 if below 0.
NUV_API void NuvLineKBEquation(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t* pIsVertical,
                               double* pK, double* pB, double* pAngle);

/// The b that puts (x, y) on a KB line of slope k: y - x*k, or x - y*k if isVertical is not 0.
NUV_API double NuvGetLineB(int32_t isVertical, double k, int32_t x, int32_t y);

/// KB to ABC: 1, -k, -b if isVertical is not 0, else k, -1, b.
NUV_API void NuvKBLine2ABCLine(int32_t isVertical, double k, double b, double* pA, double* pB, double* pC);

/// ABC to KB: isVertical = 1 if |B| < |A|, else 0 (at exactly 45 degrees too, unlike NuvLineKBEquation).
NUV_API void NuvABCLine2KBLine(double A, double B, double C, int32_t* pIsVertical, double* pK, double* pB);

/// 2P to Hough form, with pi = 3.14, both results truncated.
///
/// With D = y1*x2 - x1*y2, Thro is |D| over the distance, negative where D*dx <= 0. A vertical line so gets
/// Thro = -|x| with Theta 0, which for x > 0 is the negative of what the form's equation asks for. Two equal
/// points return 0.0 and write the most negative int32_t twice.
///
/// @return the distance between the points
NUV_API double NuvTwoPoints2ThroTheta(double x1, double y1, double x2, double y2, int32_t* pThro,
                                      int32_t* pTheta);

/// ABC to Hough form, by NuvTwoPoints2ThroTheta on the line's points at y = -10 and 10 if |B| <= |A|, else at
/// x = -10 and 10.
NUV_API void NuvABC2ThroTheta(double A, double B, double C, int32_t* pThro, int32_t* pTheta);

/// Hough form in a frame with its origin at image point (x0, y0), to ABC form in the image.
///
/// The result has the scale of the chord between two points placed on the line at coordinates 10 and 20 of
/// the frame; for a line through the frame's point (10, 10) at a general Theta that chord is 0 or nearly so.
NUV_API void NuvThroTheta2ABC(int32_t x0, int32_t y0, int32_t Thro, int32_t Theta, double* pA, double* pB,
                              double* pC);

/// The Theta of a chain-coded stretch: that of the line through the centroids of its two halves, with the pi
/// of NuvTwoPoints2ThroTheta.
///
/// The chain's N positions before each code count, the first N/2 of them in the first half. N below 2 gives
/// the most negative int32_t.
NUV_API int32_t NuvCodeLineEstimateTheta(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N);

// ---- Intersections ---------------------------------------------------------------------------------------

/// The intersection of two KB lines. Parallelism is tested exactly.
///
/// @param pX, pY  receive the point; left alone if the lines are parallel
/// @return false if they are parallel
NUV_API bool NuvPointOfIntersection(int32_t isVertical1, double k1, double b1, int32_t isVertical2, double k2,
                                    double b2, double* pX, double* pY);

/// The intersection of two ABC lines. Lines with |A1*B2 - B1*A2| < 1e-05 are parallel.
///
/// @param pX, pY  receive the point; left alone if the lines are parallel
NUV_API bool NuvPointOfIntersection(double A1, double B1, double C1, double A2, double B2, double C2,
                                    double* pX, double* pY);

/// The intersection of two Hough lines. Lines of equal Theta are parallel; Theta 0 and 180 are not taken for
/// parallel and give a far point.
///
/// @param pX, pY  receive the point; 0.0 if the lines are parallel
NUV_API bool NuvPointOfIntersection(int32_t Thro1, int32_t Theta1, int32_t Thro2, int32_t Theta2, double* pX,
                                    double* pY);

/// The x of a Hough line in row y.
///
/// @param pX  receives it; 0.0 if there is none
/// @return false if |cos(Theta)| <= 1e-05
NUV_API bool NuvGetHoughLinePointX(int32_t Thro, int32_t Theta, int32_t y, double* pX);

// ---- Distances, sides, angles ----------------------------------------------------------------------------

/// The distance between two points.
NUV_API double NuvDistBetweenPoint12(double x1, double y1, double x2, double y2);

/// The distance of a point from a KB line.
NUV_API double NuvDistFromPoint2KBLine(int32_t x, int32_t y, int32_t isVertical, double k, double b);

/// The distance of point 3 from the line through points 1 and 2; not a number if those are equal. The
/// products y1*x2 and x1*y2, and the differences of coordinates, are 32-bit and wrap, the products from
/// coordinates of 46,341 on.
NUV_API double NuvDistFromPoint3To2PLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t x3,
                                         int32_t y3);

/// The side of the line through points 1 and 2 on which point 3 lies.
///
/// @return 1: below on the screen (or at the right of a line with x1 == x2); -1: the other side; 0: on the
///         line. Computed in double from differences of coordinates and products y1*x2 and x1*y2 in 32 bits,
///         which wrap from coordinates of 46,341 on: a point on a slanted line can fall to either side by rounding
NUV_API int32_t NuvWhichSideIsPoint3ToLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t x3,
                                           int32_t y3);

/// The angle of a 2P line to the x axis, 0 up to 180; exactly 90.0 for two equal points.
NUV_API double Nuv2PLineAngleDegree2AxisX(double x1, double y1, double x2, double y2);

/// The angle of an ABC line to the x axis, 0 up to 180. C is not read.
NUV_API double NuvABCLineAngleDegree2AxisX(double A, double B, double C);

/// The angle between two ABC lines, 0 to 90; 0.0 if |A1*B2 - B1*A2| < 1e-05. C1 and C2 are not read.
NUV_API double NuvABCLineIntersectAngleDegree(double A1, double B1, double C1, double A2, double B2,
                                              double C2);

// ---- Overlaps --------------------------------------------------------------------------------------------

/// The length of the common part of two ranges of integers, each inclusive, its ends in either order.
///
/// @param pBegin, pEnd  receive the common range; 0 if there is none
/// @return end - begin + 1, which wraps, so 1 for ranges that touch in one value; 0 for disjoint ranges
NUV_API int32_t NuvLineOverlapLen(int32_t begin1, int32_t end1, int32_t begin2, int32_t end2, int32_t* pBegin,
                                  int32_t* pEnd);

/// The same length alone, for ranges that span less than 2^31.
NUV_API int32_t NuvLineOverlapLen(int32_t begin1, int32_t end1, int32_t begin2, int32_t end2);

/// The number of pixels common to two rectangles, in 32 bits that wrap from 46,341 x 46,341 pixels on; their
/// opposite sides may come in either order.
NUV_API int32_t NuvRectOverlapArea(tagRECT rect1, tagRECT rect2);

// ---- Clipping --------------------------------------------------------------------------------------------

/// The part of a KB line in the image, by its crossings with the four border lines.
///
/// The crossings in the image are listed for the top, bottom, left and right border, sorted by x (equal ones
/// stay in that order), and the first two are returned, truncated. A line through a corner is listed twice
/// there, so both points can be the same.
///
/// @return false, and nothing written, with fewer than two crossings
NUV_API bool NuvKBLineImgBoundary(int32_t width, int32_t height, int32_t isVertical, double k, double b,
                                  int32_t* pX1, int32_t* pY1, int32_t* pX2, int32_t* pY2);

/// The part of an ABC line in the image, by walking its major axis from both ends.
///
/// If |B| > |A| the columns are walked, y = truncate(0.5 - (x*A + C)/B), and y must lie in 0..height-1. Else
/// the rows are walked, x = truncate(-((y*B + C)/A)), and x must lie in 0..width-2: a vertical line in the
/// last column is not found. The time grows with the side that is walked.
///
/// @param pX1, pY1  receive the first point found from 0 up; left alone if there is none
/// @param pX2, pY2  receive the first point found from the other end; left alone if there is none
/// @return whether both were found
NUV_API bool NuvABCLineImgBoundary(int32_t width, int32_t height, double A, double B, double C, int32_t* pX1,
                                   int32_t* pY1, int32_t* pX2, int32_t* pY2);

/// The part of a Hough line in the image, coordinates truncated.
///
/// Theta 90 gives row Thro and Theta 0 column Thro from end to end, whether or not it lies in the image. Any
/// other line, Theta 180 too, is tried against the left, right, top and bottom border. With one point found
/// at the left or right border, a crossing of the top border is not taken, and one of the bottom border is
/// (in an image of two rows or more): a line across only the left and the top border returns false with entry
/// 0 filled.
///
/// @param pX, pY  receive two entries each; entries not found are 0
/// @return whether two points were found
NUV_API bool NuvHoughLineImgBoundary(int32_t width, int32_t height, int32_t Thro, int32_t Theta, int32_t* pX,
                                     int32_t* pY);

/// The points of a KB line at the two ends of a range along its major axis: at rows y1 and y2 if isVertical
/// is 1, at columns x1 and x2 if it is 0.
///
/// Coordinates are truncate(value + 0.5), and each is clamped to the image by itself, so that a clamped point
/// can leave the line. Any other isVertical counts as 1.
///
/// @param pX, pY  receive two entries each
/// @return true
NUV_API bool NuvKBLineRectBoundary(int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                                   int32_t y2, int32_t isVertical, double k, double b, int32_t* pX,
                                   int32_t* pY);

/// The points of NuvKBLineRectBoundary in four outputs.
NUV_API void NuvKBLineBeginEndPoint(int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                                    int32_t y2, int32_t isVertical, double k, double b, int32_t* pX1,
                                    int32_t* pY1, int32_t* pX2, int32_t* pY2);

// ---- Pixels along lines ----------------------------------------------------------------------------------
//
// An ABC line passes one pixel per row if |B| <= |A|, at x = truncate(0.5 - (y*B + C)/A), else one per
// column, at y = truncate(0.5 - (x*A + C)/B). Pixels outside the image are skipped.

/// The numbers of non-zero and of zero pixels along an ABC line.
NUV_API void NuvPixlesOnABCLine(uint8_t* pBinImg, int32_t width, int32_t height, double A, double B, double C,
                                int32_t* pWhite, int32_t* pBlack);

/// The histogram of the pixels along an ABC line.
///
/// @param pHistogram  receives 256 bins
NUV_API void NuvABCLineHistogram(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B,
                                 double C, int32_t* pHistogram);

/// The numbers of pixels along the line between two points that equal gray and that do not.
///
/// A vertical or horizontal line counts both its ends. Any other line is followed by columns as NuvGryLine
/// draws it: the column of its left end is not counted, and a pixel of a steep line where two columns' runs
/// meet counts in both. The walk is in single precision, whose rounding can take it one row above the upper
/// point: that pixel counts. Pixels farther outside the rows of the two points do not, nor does row -1.
///
/// @param x1, y1, x2, y2  two points in the image
NUV_API void NuvPixelsOn2PLine(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t y1, int32_t x2,
                               int32_t y2, int32_t gray, int32_t* pEqual, int32_t* pOther);

/// The number of pixels equal to gray on the outline of a rectangle: rows y1 and y2 over x1..x2, columns x1
/// and x2 over y1..y2. Corners count once per side that they lie on, so does all of a rectangle of one row or
/// column.
///
/// x1 and y1 are raised to 0, x2 and y2 lowered to the last column and row. With x1 > x2 then only the
/// columns are walked, with y1 > y2 only the rows; a side outside the image counts nothing.
NUV_API int32_t NuvPixelsOnRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t gray);

/// How strongly an ABC line separates the pixels at its two sides, within columns x1 to x2.
///
/// For each pixel (x, y) of the line two samples are compared, with shift = truncate(-(A/B)*dist):
///
///     |B| > |A|   (x + shift, y - dist) and (x - shift, y + dist), for each column
///     else        (x + dist, y - shift) and (x - dist, y + shift), for each row
///
/// A pixel counts if it and both samples lie in the columns x1..x2 and the rows of the image. Of the absolute
/// differences, the lowest and the highest quarter are trimmed bin by bin. A steep line has a large shift,
/// and one with B = 0 counts nothing.
///
/// @param x1, x2  columns of the image, inclusive; what lies outside the image is cut off
/// @param dist    distance of the samples from the line along its minor axis
/// @param bMark   true: the image is changed, counted line pixels to 255 and then their samples to 0, at
///                once, so that later samples read the marks
/// @return the least of the trimmed mean difference, the plain mean difference, and the difference between
///         the mean of one side and that of the other, each in truncating integers; 0 if nothing counted
NUV_API int32_t NuvABCLineContrast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   double A, double B, double C, int32_t dist, bool bMark);

// ---- Fitting ---------------------------------------------------------------------------------------------
//
// Ordinary least squares of the minor coordinate on the major one: the axis with the larger spread is free, a
// tie going to y. With means mx, my and the sums Sxx, Syy, Sxy of squared and mixed deviations:
//
//     Syy < Sxx   isVertical = 0, k = Sxy/Sxx, b = my - k*mx, angle = atan(k), plus 180 if below 0
//     else        isVertical = 1, k = Sxy/Syy, b = mx - k*my, angle = 90 - atan(k)
//
// No points, or points that all coincide, give isVertical = 1 and not-a-numbers. A residual r is measured
// along the minor axis: |x*k - y + b| or |x - y*k - b|.

/// A line through N points.
///
/// @param pDev      receives sqrt(sum(r^2) / (sqrt(k^2 + 1)*N)), about the root mean square distance
/// @param pMaxDist  receives the greatest distance of a point from the line: max(r) / sqrt(k^2 + 1)
NUV_API void NuvFittingLine(int32_t* pX, int32_t* pY, int32_t N, int32_t* pIsVertical, double* pK, double* pB,
                            double* pAngle, double* pDev, double* pMaxDist);

/// A line through the N points of a chain before each of its codes: the start is the first, and where the
/// last code leads is left out.
NUV_API void NuvFittingLine(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pIsVertical,
                            double* pK, double* pB, double* pAngle, double* pDev, double* pMaxDist);

/// A line through the points whose mask entry is true.
NUV_API void NuvFittingLineMsk(int32_t* pX, int32_t* pY, bool* pMask, int32_t N, int32_t* pIsVertical,
                               double* pK, double* pB, double* pAngle);

/// A line through N points, checked by a gate that every finite fit passes: the first fit stands.
///
/// @param pWork  receives N entries, 1 for a point that passes, else 100
/// @return false if N < 3 (nothing is written) or if all points coincide (the outputs are not-a-numbers).
///         Coordinate sums are 32-bit and wrap: from a million points of mean x or y 2148 on
NUV_API bool NuvFittingLineTwice(int32_t* pX, int32_t* pY, int32_t* pWork, int32_t N, int32_t* pIsVertical,
                                 double* pK, double* pB, double* pAngle);

/// A line through N points, fitted again through those whose residual is at most the mean residual.
/// Coordinate sums are 32-bit and wrap: from a million points of mean x or y 2148 on.
///
/// @param pWork  receives N residuals, truncate(r*100)
/// @return false if N < 3 (nothing is written) or if fewer than 2 points are left (the outputs hold the first
///         fit). Points that all coincide return true with not-a-numbers
NUV_API bool NuvFittingLineTwiceByMean(int32_t* pX, int32_t* pY, int32_t* pWork, int32_t N,
                                       int32_t* pIsVertical, double* pK, double* pB, double* pAngle);

// ---- The chain-line detector -----------------------------------------------------------------------------
//
// Straight segments by following edges: the edges of NuvShenJunEdgeFast (shift 2) or, for a grdThreshold
// below 8, NuvShenJunEdgeFine (a0 = 0.25) are traced, each chain is cut into stretches that are straight
// enough, stretches that repeat edge pixels already used are dropped, and a line is fitted to each stretch
// kept.
//
// This is one global object: one thread at a time. All memory is allocated in NuvImgChainLines_Initialize.

/// Sizes the detector and sets it up. May be called again at any time; memory never shrinks. The results of
/// the last detection stay unless the call needs more memory than the detector has: then there are no lines.
///
/// @param width, height    the largest image to come, by its number of pixels
/// @param minStraightness  least ratio of chord to path of a straight stretch, below 1; 0.9 allows slight
///                         bends. It also sets how much of each end a fit leaves out: a share of (1 - it)/2
/// @param maxDeviation     greatest mean distance of the path from its chord, in pixels; 1 is typical
/// @param minLength        least length of a chain, in codes, and of a stretch while it is followed, in
///                         pixels of path; at least 6. A stretch at the end of its chain gives up one code
/// @param grdThreshold     least gray-level step of an edge, at least 1
/// @param maxLines         capacity, of lines and of stretches per chain; what is beyond it is dropped
/// @return false if memory is missing, none was ever asked for, or no int32_t counts the pixels
NUV_API bool NuvImgChainLines_Initialize(int32_t width, int32_t height, double minStraightness,
                                         double maxDeviation, int32_t minLength, int32_t grdThreshold,
                                         int32_t maxLines);

/// Another name of NuvImgChainLines_DoGryImg: the edge detector runs on whatever image is given.
NUV_API int32_t NuvImgChainLines_DoBinImg(uint8_t* pGryImg, int32_t width, int32_t height, bool bFitLines);

/// Detects the lines of an image. It replaces the results of the detection before, and allocates nothing.
///
/// @param pGryImg    gray image; must stay alive for NuvImgChainLines_Debug
/// @param bFitLines  true: fit a line to each stretch and clip it to its points, which also trims the
///                   stretch; false: give the stretches as they were cut
/// @return the number of lines; 0 for an image larger than NuvImgChainLines_Initialize was told, and without
///         memory
NUV_API int32_t NuvImgChainLines_DoGryImg(uint8_t* pGryImg, int32_t width, int32_t height, bool bFitLines);

/// Hands out the points of the next line found, in order.
///
/// @param ppX, ppY  receive pointers to the points, inside the detector and good until the next detection, or
///                  until NuvImgChainLines_Initialize needs more memory
/// @param pN        receives their number
/// @return false, and nothing written, when there is no further line
NUV_API bool NuvImgChainLines_GetNxtCodeLine(int32_t** ppX, int32_t** ppY, int32_t* pN);

/// The fitted segments, as many as the detection returned, inside the detector and good for as long as the
/// points of NuvImgChainLines_GetNxtCodeLine; null if the last call for a detection, refused or not, asked
/// for no fit.
NUV_API TAVI_LINE_SEGMENT* NuvImgChainLines_GetLines();

/// Shows the last detection in six panels of width*height bytes, one behind the other.
///
///     0  the source, at most 250          3  the edges that made no line
///     1  the edge image                   4  the fitted segments in 255
///     2  the points of the lines in 254   5  panel 0, with the segments (without a fit, the points) in 255
///
/// The points of lines already fetched by NuvImgChainLines_GetNxtCodeLine are missing from panel 2 and what
/// comes from it; fetching starts over afterwards. width and height are those of the last call for a
/// detection. Panel 1 is computed anew, with the settings of now; it is 0 for an image that the detector has
/// no memory for. Before any detection nothing is written.
///
/// @param pResImg  receives 6*width*height bytes
/// @return the number of lines
NUV_API int32_t NuvImgChainLines_Debug(uint8_t* pResImg);

// ---- The Hough detector ----------------------------------------------------------------------------------
//
// Straight lines in a set of points, by votes in an accumulator with one row per Theta, in steps of a degree,
// and one cell per Thro, in steps of a pixel, measured from the centre of the points' bounding box. A point
// votes 2 for its cell and 1 for each of the two beside it in the row; cosines and sines are scaled by 1024
// and truncated, and the Thro of a point is rounded down. The strongest cell is the line, the lowest Theta
// and then the lowest Thro of equals, if its count is 3 or more; its strength is half of the count, for a
// clean line the number of its points.
//
// Lines come in ABC form, as of NuvThroTheta2ABC, and in Hough form, as NuvABC2ThroTheta has it of that: its
// Theta can differ by a degree from that of the votes.
//
// This is one global object: one thread at a time. All memory is allocated in NuvHoughLines_Initialize.
//
// @see R. O. Duda and P. E. Hart, Use of the Hough transformation to detect lines and curves in pictures,
//      1972

/// Sizes the detector for points in an image of width by height; memory never shrinks, and grows with the
/// area: after 100 by 100, 1 by 1500 changes nothing, and points 1500 apart are refused. The lines found so
/// far are forgotten.
///
/// @return false without memory; what was held before is gone then
NUV_API bool NuvHoughLines_Initialize(int32_t width, int32_t height);

/// The strongest line of points with a Theta from Theta1 up to, but not including, Theta2.
///
/// @param pX, pY          N points, also outside the image. They are moved while the call runs and moved
///                        back; if the detector is too small for them they stay moved by the centre of their
///                        bounding box
/// @param Theta1, Theta2  degrees; those outside 0..180 get no votes
/// @param pA .. pTheta    receive the line; left alone if there is none
/// @return the strength; 0 for no line, for N below 2, or if the detector is too small. In all of these the
///         lines found before are forgotten
NUV_API int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t N, int32_t Theta1, int32_t Theta2,
                                 double* pA, double* pB, double* pC, int32_t* pThro, int32_t* pTheta);

/// The same for the Thetas that a mask enables, but for the highest of them.
///
/// @param pThetaMask  181 entries, true where the Theta is enabled; with none there is no line
/// @note With N below 2 the lines found before stay, for NuvHoughLines_GetNextLine.
NUV_API int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t N, bool* pThetaMask, double* pA,
                                 double* pB, double* pC, int32_t* pThro, int32_t* pTheta);

/// The same for points that know their Theta: each votes from pPointTheta - dTheta to pPointTheta + dTheta,
/// both included, within 0 to 179.
///
/// @param pPointMask  N entries, true where the point is left out. Point 0 counts for the bounding box and
///                    the range of Thetas all the same
NUV_API int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t* pPointTheta, bool* pPointMask, int32_t N,
                                 int32_t dTheta, double* pA, double* pB, double* pC, int32_t* pThro,
                                 int32_t* pTheta);

/// The strongest line beside those found since the last transform: cells nearer than dThro in Thro and nearer
/// than dTheta in Theta to one of theirs are left out. Votes stay, and Theta 0 and 179 are not neighbours.
///
/// @param pA .. pTheta  receive the line, or zeros if there is none
/// @return the strength, 0 for no line. After a transform without a line, or 1024 lines, it is 0 and the
///         outputs are left alone
NUV_API int32_t NuvHoughLines_GetNextLine(int32_t dThro, int32_t dTheta, double* pA, double* pB, double* pC,
                                          int32_t* pThro, int32_t* pTheta);

/// Draws the line found last, by NuvDrawABCLineByColor; nothing before any line.
NUV_API void NuvHoughLines_Debug(uint8_t* pGryImg, int32_t width, int32_t height, int32_t color);

// ---- Key points ------------------------------------------------------------------------------------------

/// The M points that keep the shape of a curve best, by splitting it again and again at the point farthest
/// from a chord. Meant for curves that run from top to bottom. The time grows as N log N; with coordinates
/// beyond -2^20 to 2^20, and uneven splits, as N*M.
///
/// First and last point by y are the first two. Then the stretch whose farthest inner point lies farthest
/// from the chord of its ends is split there, the first of equals; a stretch without inner points stands at
/// distance 0 with its end for a point, so that straight runs can give a point twice.
///
/// @param pX, pY          N points; changed: sorted by y, by exchanges
/// @param pKeyX, pKeyY    receive M points, sorted by y likewise; N if there are not more
/// @return the number of points written: M, or N if M is greater; 0 for M below 1, and without memory
/// @see U. Ramer, An iterative procedure for the polygonal approximation of plane curves, 1972;
///      D. H. Douglas and T. K. Peucker, Algorithms for the reduction of the number of points, 1973
NUV_API int32_t NuvLineKeyPoints(int32_t* pX, int32_t* pY, int32_t N, int32_t M, int32_t* pKeyX,
                                 int32_t* pKeyY);

/// The corners of a quadrilateral: the two points of a contour that lie farthest apart, and between them the
/// point farthest from their line on each side, in the order of the contour. Of equals the first. A side
/// without points gives the point halfway along the contour. Squared distances are 32-bit and wrap: points
/// should lie less than 32768 apart. The time grows as N log N; with the square of N where they wrap.
///
/// @param pX, pY          N points of a contour, in order
/// @param pPolyX, pPolyY  receive 4 corners
/// @return false, with nothing written, if all points are one
NUV_API bool NuvContour2Poly4(int32_t* pX, int32_t* pY, int32_t N, int32_t* pPolyX, int32_t* pPolyY);

#endif

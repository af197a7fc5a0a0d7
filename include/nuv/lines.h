/// @file
/// Lines: forms and plane geometry, fitting, the chain-line and Hough detectors, key points.
#ifndef NUV_LINES_H
#define NUV_LINES_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

/// @defgroup lines Lines
///
/// Forms of lines and their plane geometry, fitting, two line detectors, and key points of curves.
///
/// Coordinates are image coordinates: x grows to the right, y grows down. A line has one of four forms:
///
///     ABC     A*x + B*y + C = 0, never normalised
///     KB      isVertical = 0: y = k*x + b;  otherwise x = k*y + b. Functions that return this form set
///             isVertical for every line steeper than the diagonal, so that |k| <= 1
///     2P      the line through two points
///     Hough   x*cos(Theta) + y*sin(Theta) = Thro, Theta in whole degrees 0..180, Thro in whole pixels, which
///             may be negative
///
/// A line that is written as one y per column has x as its major and y as its minor axis. For one x per row
/// it is the other way round. Theta is the angle of the normal of a line to the x axis, and Thro is the
/// distance of the line from the origin along that normal. See @ref contours for chains and their codes.
///
/// Angles are in degrees, with pi = 3.1415926 unless a function says otherwise. Results are defined with that
/// constant. Conversions to int32_t truncate. A value that is not finite or does not fit gives the most
/// negative int32_t, which lies outside every image. A division by zero gives an infinity or a not-a-number.
/// @{

/// @defgroup lines_forms Conversions between forms
///
/// The same line in another form.
/// @{

/// Converts 2P to KB form.
///
/// isVertical = 0 if |dy| < |dx|, else 1, also at exactly 45 degrees. dx and dy are 32-bit differences. Two
/// equal points give isVertical = 1, and k and b that are not a number.
NUV_API void NuvLineKBEquation(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t* pIsVertical,
                               double* pK, double* pB);

/// @overload
/// Converts 2P to KB form and computes the angle of the line to the x axis.
///
/// The form is that of the function without an angle.
///
/// @param pAngle  receives 90 - atan(k) if isVertical is 1, else atan(k), plus 180 if that is negative
NUV_API void NuvLineKBEquation(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t* pIsVertical,
                               double* pK, double* pB, double* pAngle);

/// Computes the b of the KB line of slope k through the point (x, y).
///
/// @return y - x*k if isVertical is 0, else x - y*k
NUV_API double NuvGetLineB(int32_t isVertical, double k, int32_t x, int32_t y);

/// Converts KB to ABC form: k, -1, b if isVertical is 0, else 1, -k, -b.
NUV_API void NuvKBLine2ABCLine(int32_t isVertical, double k, double b, double* pA, double* pB, double* pC);

/// Converts ABC to KB form.
///
/// isVertical = 1 if |B| < |A|, else 0. At exactly 45 degrees it is 0, unlike that of NuvLineKBEquation.
NUV_API void NuvABCLine2KBLine(double A, double B, double C, int32_t* pIsVertical, double* pK, double* pB);

/// Converts 2P to Hough form, with pi = 3.14 and both results truncated.
///
/// With dx = x2 - x1 and D = y1*x2 - x1*y2, Thro is |D| divided by the distance of the points, negative where
/// D*dx <= 0. A vertical line therefore gets Thro = -|x| with Theta = 0. For x > 0 this is the negative of
/// what the equation of the form gives. Two equal points return 0.0 and write the most negative int32_t
/// twice.
///
/// @return the distance between the points
NUV_API double NuvTwoPoints2ThroTheta(double x1, double y1, double x2, double y2, int32_t* pThro,
                                      int32_t* pTheta);

/// Converts ABC to Hough form.
///
/// The result is that of NuvTwoPoints2ThroTheta for two points of the line: those at y = -10 and 10 if
/// |B| <= |A|, else those at x = -10 and 10.
NUV_API void NuvABC2ThroTheta(double A, double B, double C, int32_t* pThro, int32_t* pTheta);

/// Converts Hough form, in a frame of its own, to ABC form in the image.
///
/// The result has the scale of the chord between two points of the line at coordinates 10 and 20 of the
/// frame. If the line passes through point (10, 10) of the frame at a general Theta, the chord is 0 or nearly
/// so.
///
/// @param x0, y0  point of the image where the frame's origin lies
NUV_API void NuvThroTheta2ABC(int32_t x0, int32_t y0, int32_t Thro, int32_t Theta, double* pA, double* pB,
                              double* pC);

/// Estimates the Theta of a stretch that is given as a chain.
///
/// It is the Theta of the line through the centroids of the two halves, as computed by
/// NuvTwoPoints2ThroTheta. The N positions of the chain count, the first N/2 of them in the first half.
///
/// @param x, y        start of the chain
/// @param pChainCode  N direction codes
/// @return Theta; the most negative int32_t for N below 2
NUV_API int32_t NuvCodeLineEstimateTheta(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N);

/// @}

/// @defgroup lines_intersections Intersections
///
/// Points in which two lines meet, or a line and a row.
/// @{

/// Finds the intersection of two KB lines.
///
/// Parallelism is tested exactly, without a tolerance.
///
/// @param pX, pY  receive the point; unchanged if the lines are parallel
/// @return false if the lines are parallel
NUV_API bool NuvPointOfIntersection(int32_t isVertical1, double k1, double b1, int32_t isVertical2, double k2,
                                    double b2, double* pX, double* pY);

/// Finds the intersection of two ABC lines.
///
/// Lines with |A1*B2 - B1*A2| < 1e-05 are parallel.
///
/// @param pX, pY  receive the point; unchanged if the lines are parallel
/// @return false if the lines are parallel
NUV_API bool NuvPointOfIntersection(double A1, double B1, double C1, double A2, double B2, double C2,
                                    double* pX, double* pY);

/// Finds the intersection of two Hough lines.
///
/// Lines of equal Theta are parallel. Theta 0 and Theta 180 do not count as equal: such lines give a far
/// point.
///
/// @param pX, pY  receive the point; 0.0 if the lines are parallel
/// @return false if the lines are parallel
NUV_API bool NuvPointOfIntersection(int32_t Thro1, int32_t Theta1, int32_t Thro2, int32_t Theta2, double* pX,
                                    double* pY);

/// Computes the x of a Hough line in row y.
///
/// @param pX  receives x; 0.0 if there is none
/// @return false if |cos(Theta)| <= 1e-05
NUV_API bool NuvGetHoughLinePointX(int32_t Thro, int32_t Theta, int32_t y, double* pX);

/// @}

/// @defgroup lines_distances Distances, sides and angles
///
/// Measures of points and lines in the plane.
/// @{

/// Computes the distance between two points.
NUV_API double NuvDistBetweenPoint12(double x1, double y1, double x2, double y2);

/// Computes the distance of a point from a KB line.
NUV_API double NuvDistFromPoint2KBLine(int32_t x, int32_t y, int32_t isVertical, double k, double b);

/// Computes the distance of point 3 from the line through points 1 and 2.
///
/// @return the distance; not a number if points 1 and 2 are equal
/// @note The differences of coordinates and the products y1*x2 and x1*y2 are 32-bit and wrap. Products can
///       wrap from coordinates of 46,341 on.
NUV_API double NuvDistFromPoint3To2PLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t x3,
                                         int32_t y3);

/// Finds the side of the line through points 1 and 2 on which point 3 lies.
///
/// @return 1 below the line on the screen, or at the right of a line with x1 == x2; -1 on the other side; 0
///         on the line
/// @note The differences of coordinates and the products y1*x2 and x1*y2 are 32-bit and wrap. Products can
///       wrap from coordinates of 46,341 on. The rest is computed in double, so a point on a slanted line can
///       fall to either side by rounding.
NUV_API int32_t NuvWhichSideIsPoint3ToLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t x3,
                                           int32_t y3);

/// Computes the angle of a 2P line to the x axis.
///
/// @return 0 up to 180; exactly 90.0 for two equal points
NUV_API double Nuv2PLineAngleDegree2AxisX(double x1, double y1, double x2, double y2);

/// Computes the angle of an ABC line to the x axis.
///
/// @param C  not read
/// @return 0 up to 180
NUV_API double NuvABCLineAngleDegree2AxisX(double A, double B, double C);

/// Computes the angle between two ABC lines.
///
/// @param C1, C2  not read
/// @return 0 to 90; 0.0 if |A1*B2 - B1*A2| < 1e-05
NUV_API double NuvABCLineIntersectAngleDegree(double A1, double B1, double C1, double A2, double B2,
                                              double C2);

/// @}

/// @defgroup lines_overlaps Overlaps
///
/// Common parts of ranges and of rectangles.
/// @{

/// Computes the common part of two ranges of integers, and its length.
///
/// Both ends of a range are inclusive and may come in either order.
///
/// @param pBegin, pEnd  receive the common range; 0 if there is none
/// @return end - begin + 1, which wraps: 1 for ranges that share one value; 0 for disjoint ranges
NUV_API int32_t NuvLineOverlapLen(int32_t begin1, int32_t end1, int32_t begin2, int32_t end2, int32_t* pBegin,
                                  int32_t* pEnd);

/// @overload
/// Computes the length of the common part of two ranges of integers that together span less than 2^31.
NUV_API int32_t NuvLineOverlapLen(int32_t begin1, int32_t end1, int32_t begin2, int32_t end2);

/// Counts the pixels common to two rectangles.
///
/// Opposite sides of a rectangle may come in either order. The number is 32-bit and wraps, from 46,341 by
/// 46,341 pixels on.
NUV_API int32_t NuvRectOverlapArea(tagRECT rect1, tagRECT rect2);

/// @}

/// @defgroup lines_clipping Clipping
///
/// Lines cut to an image or to a rectangle.
///
/// Each function is defined by its method, and the methods differ at corners and at the last column.
/// @{

/// Finds the part of a KB line in the image from its crossings with the four border lines.
///
/// Crossings that lie in the image are listed for the top, bottom, left and right border in this order, and
/// then sorted by x. Crossings of equal x keep their order. The first two are returned, truncated. A line
/// through a corner is listed twice there, so that both points can be the same.
///
/// @param pX1, pY1, pX2, pY2  receive the two points; unchanged with fewer than two crossings
/// @return false with fewer than two crossings
NUV_API bool NuvKBLineImgBoundary(int32_t width, int32_t height, int32_t isVertical, double k, double b,
                                  int32_t* pX1, int32_t* pY1, int32_t* pX2, int32_t* pY2);

/// Finds the part of an ABC line in the image by a walk along its major axis from both ends.
///
///     |B| > |A|   each column x has y = truncate(0.5 - (x*A + C)/B), which must lie in 0..height-1
///     otherwise   each row y has x = truncate(-((y*B + C)/A)), which must lie in 0..width-2
///
/// A vertical line in the last column is therefore not found. The time grows with the side that is walked.
///
/// @param pX1, pY1  receive the first point found from 0 up; unchanged if there is none
/// @param pX2, pY2  receive the first point found from the other end down; unchanged if there is none
/// @return whether both were found
NUV_API bool NuvABCLineImgBoundary(int32_t width, int32_t height, double A, double B, double C, int32_t* pX1,
                                   int32_t* pY1, int32_t* pX2, int32_t* pY2);

/// Finds the part of a Hough line in the image, with truncated coordinates.
///
/// Theta 90 gives row Thro, and Theta 0 gives column Thro, from end to end, whether or not it lies in the
/// image. Any other line, Theta 180 too, is tried against the left, right, top and bottom border in this
/// order. After one point at the left or right border, a crossing of the top border is not taken, while one
/// of the bottom border is, in an image of two rows or more. A line across only the left and the top border
/// therefore returns false with entry 0 filled.
///
/// @param pX, pY  receive two entries each; entries not found are 0
/// @return whether two points were found
NUV_API bool NuvHoughLineImgBoundary(int32_t width, int32_t height, int32_t Thro, int32_t Theta, int32_t* pX,
                                     int32_t* pY);

/// Finds the points of a KB line at the two ends of a range along its major axis, in two arrays.
///
/// The ends are columns x1 and x2 if isVertical is 0, else rows y1 and y2. Coordinates are
/// truncate(value + 0.5). Each is clamped to the image on its own, so that a clamped point can leave the
/// line.
///
/// @param pX, pY  receive two entries each
/// @return true
NUV_API bool NuvKBLineRectBoundary(int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                                   int32_t y2, int32_t isVertical, double k, double b, int32_t* pX,
                                   int32_t* pY);

/// Finds the points of a KB line at the two ends of a range along its major axis, in four outputs.
///
/// They are those of NuvKBLineRectBoundary.
NUV_API void NuvKBLineBeginEndPoint(int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                                    int32_t y2, int32_t isVertical, double k, double b, int32_t* pX1,
                                    int32_t* pY1, int32_t* pX2, int32_t* pY2);

/// @}

/// @defgroup lines_pixels Pixels along lines
///
/// Counts, histograms and contrasts of the pixels on a line or on an outline.
///
/// An ABC line has one pixel per row if |B| <= |A|, at x = truncate(0.5 - (y*B + C)/A). Otherwise it has one
/// pixel per column, at y = truncate(0.5 - (x*A + C)/B). Pixels outside the image are skipped.
/// @{

/// Counts the object and the background pixels along an ABC line.
///
/// @param pWhite  receives the number of object pixels
/// @param pBlack  receives the number of background pixels
NUV_API void NuvPixlesOnABCLine(uint8_t* pBinImg, int32_t width, int32_t height, double A, double B, double C,
                                int32_t* pWhite, int32_t* pBlack);

/// Computes the histogram of the pixels along an ABC line.
///
/// @param pHistogram  receives 256 bins
NUV_API void NuvABCLineHistogram(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B,
                                 double C, int32_t* pHistogram);

/// Counts the pixels on the line between two points that equal a gray value, and those that do not.
///
/// A vertical or horizontal line counts both its ends. Any other line is followed by columns as NuvGryLine
/// draws it. The column of its left end is not counted. In every other column a run of pixels counts, which
/// starts in the row where the run of the column before ends: that row counts in both columns. The walk is in
/// single precision. Rounding can take it one row above the upper point, and that pixel counts. Pixels
/// farther outside the rows of the two points do not count, nor do those of row -1.
///
/// @param x1, y1, x2, y2  two points in the image
/// @param pEqual          receives the number of pixels that equal gray
/// @param pOther          receives the number of other pixels
NUV_API void NuvPixelsOn2PLine(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t y1, int32_t x2,
                               int32_t y2, int32_t gray, int32_t* pEqual, int32_t* pOther);

/// Counts the pixels equal to a gray value on the outline of a rectangle.
///
/// The outline is rows y1 and y2 over x1..x2, and columns x1 and x2 over y1..y2. A corner counts once per
/// side on which it lies, and so does every pixel of a rectangle of one row or column.
///
/// First x1 and y1 are raised to 0, x2 and y2 lowered to the last column and row. If x1 > x2 after that, only
/// the columns are walked. If y1 > y2, only the rows are walked. A side outside the image counts nothing.
NUV_API int32_t NuvPixelsOnRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t gray);

/// Computes the contrast between the two sides of an ABC line, within columns x1 to x2.
///
/// Two samples are compared for each pixel (x, y) of the line, with shift = truncate(-(A/B)*dist):
///
///     |B| > |A|   (x + shift, y - dist) and (x - shift, y + dist), for each column
///     otherwise   (x + dist, y - shift) and (x - dist, y + shift), for each row
///
/// A pixel counts if it and both samples lie in columns x1..x2 and in the rows of the image. A steep line has
/// a large shift, and a line with B = 0 counts nothing.
///
/// The trimmed mean difference leaves out the lowest and the highest quarter of the absolute differences. The
/// bins in which the quarters end stay whole.
///
/// @param x1, x2  columns of the image, inclusive; clamped to the image
/// @param dist    distance of the samples from the line along its minor axis
/// @param bMark   true: counted line pixels become 255, and then their samples 0, in pGryImg. Marks are set
///                at once, so that later samples read them
/// @return the least of three: the trimmed mean difference, the plain mean difference, and the difference
///         between the means of the two sides, each in truncating integers; 0 if nothing counted
NUV_API int32_t NuvABCLineContrast(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   double A, double B, double C, int32_t dist, bool bMark);

/// @}

/// @defgroup lines_fitting Fitting
///
/// Lines through sets of points, by ordinary least squares of the minor coordinate on the major one.
///
/// The major axis is the one with the larger spread, y if both are equal. With means mx, my and the sums Sxx,
/// Syy, Sxy of squared and mixed deviations:
///
///     Syy < Sxx   isVertical = 0, k = Sxy/Sxx, b = my - k*mx, angle = atan(k), plus 180 if negative
///     otherwise   isVertical = 1, k = Sxy/Syy, b = mx - k*my, angle = 90 - atan(k)
///
/// No points, or points that all coincide, give isVertical = 1, and a k, b and angle that are not a number.
/// The residual r of a point is measured along the minor axis: |x*k - y + b| or |x - y*k - b|.
/// @{

/// Fits a line to N points and measures the fit.
///
/// @param pDev      receives sqrt(sum(r^2) / (sqrt(k^2 + 1)*N)), about the root mean square distance
/// @param pMaxDist  receives the greatest distance of a point from the line: max(r) / sqrt(k^2 + 1)
NUV_API void NuvFittingLine(int32_t* pX, int32_t* pY, int32_t N, int32_t* pIsVertical, double* pK, double* pB,
                            double* pAngle, double* pDev, double* pMaxDist);

/// @overload
/// Fits a line to the N positions of a chain.
///
/// The start is the first position. The end of the last step is left out.
///
/// @param x, y        start of the chain
/// @param pChainCode  N direction codes
NUV_API void NuvFittingLine(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t* pIsVertical,
                            double* pK, double* pB, double* pAngle, double* pDev, double* pMaxDist);

/// Fits a line to the points that a mask selects.
///
/// @param pMask  N entries, true where the point counts
NUV_API void NuvFittingLineMsk(int32_t* pX, int32_t* pY, bool* pMask, int32_t N, int32_t* pIsVertical,
                               double* pK, double* pB, double* pAngle);

/// Fits a line to N points and tests each point against the line.
///
/// The test passes every finite residual, so that the first fit stands.
///
/// @param pWork  receives N entries, 1 for a point that passes the test, else 100
/// @return false if N < 3, with nothing written, or if all points coincide, with outputs that are not a
///         number
/// @note Sums of coordinates are 32-bit and wrap, for example those of a million points of mean x or y 2148.
NUV_API bool NuvFittingLineTwice(int32_t* pX, int32_t* pY, int32_t* pWork, int32_t N, int32_t* pIsVertical,
                                 double* pK, double* pB, double* pAngle);

/// Fits a line to N points, and again to those whose residual is at most the mean residual.
///
/// @param pWork  receives N residuals, truncate(r*100)
/// @return false if N < 3, with nothing written, or if fewer than 2 points are left, with the first fit in
///         the outputs. Points that all coincide return true, with outputs that are not a number
/// @note Sums of coordinates are 32-bit and wrap, for example those of a million points of mean x or y 2148.
NUV_API bool NuvFittingLineTwiceByMean(int32_t* pX, int32_t* pY, int32_t* pWork, int32_t N,
                                       int32_t* pIsVertical, double* pK, double* pB, double* pAngle);

/// @}

/// @defgroup lines_chain_lines The chain-line detector
///
/// Straight segments of an image, found along its edges.
///
/// The edges are those of NuvShenJunEdgeFast (shift 2) or, for a grdThreshold below 8, of NuvShenJunEdgeFine
/// (a0 = 0.25). The detector traces them and cuts each chain into stretches that are straight enough. It
/// drops stretches that repeat edge pixels already used, and fits a line to each stretch kept.
///
/// The detector is one global object: only one thread at a time may use it. All memory is allocated in
/// NuvImgChainLines_Initialize.
/// @{

/// Sizes the chain-line detector and sets its parameters.
///
/// It may be called again at any time. Memory never shrinks. The results of the last detection stay, unless
/// the call needs more memory than the detector has: then there are no lines.
///
/// @param width, height    the largest image to come, by its number of pixels
/// @param minStraightness  least ratio of chord to path of a straight stretch, below 1; 0.9 allows slight
///                         bends. At each end of a stretch, a fit leaves out about (1 - minStraightness)/2 of
///                         the points
/// @param maxDeviation     greatest mean distance of the path from its chord, in pixels; 1 is typical
/// @param minLength        least length of a chain, in codes, and of a stretch, in pixels of path; raised to
///                         6 if smaller. A stretch at the end of its chain gives up one code after that test
/// @param grdThreshold     least step in gray value of an edge; raised to 1 if smaller
/// @param maxLines         capacity, of lines and of stretches per chain; more are dropped
/// @return false if allocation failed, nothing was ever allocated, or width*height exceeds INT32_MAX
NUV_API bool NuvImgChainLines_Initialize(int32_t width, int32_t height, double minStraightness,
                                         double maxDeviation, int32_t minLength, int32_t grdThreshold,
                                         int32_t maxLines);

/// Detects the lines of an image: another name of NuvImgChainLines_DoGryImg.
///
/// The edge detector runs on whatever image is given, binary or gray.
NUV_API int32_t NuvImgChainLines_DoBinImg(uint8_t* pGryImg, int32_t width, int32_t height, bool bFitLines);

/// Detects the lines of an image. Allocates nothing.
///
/// The results replace those of the detection before.
///
/// @param pGryImg    gray image; must stay valid for NuvImgChainLines_Debug
/// @param bFitLines  true: fit a line to each stretch and clip it to the points of the stretch, which also
///                   trims the stretch; false: give the stretches as they were cut
/// @return the number of lines; 0 if the detector has no memory, or if the image has more pixels than the
///         size last passed to NuvImgChainLines_Initialize
NUV_API int32_t NuvImgChainLines_DoGryImg(uint8_t* pGryImg, int32_t width, int32_t height, bool bFitLines);

/// Returns the points of the next line found, in order.
///
/// @param ppX, ppY  receive pointers to the points, which belong to the detector. They are valid until the
///                  next detection, or until NuvImgChainLines_Initialize needs more memory
/// @param pN        receives the number of points
/// @return false, with nothing written, if there is no further line
NUV_API bool NuvImgChainLines_GetNxtCodeLine(int32_t** ppX, int32_t** ppY, int32_t* pN);

/// Returns the fitted segments, as many as the detection returned.
///
/// @return the segments, which belong to the detector and are valid as long as the points of
///         NuvImgChainLines_GetNxtCodeLine; null if the last detection, refused or not, had bFitLines = false
NUV_API TAVI_LINE_SEGMENT* NuvImgChainLines_GetLines();

/// Shows the last detection in six panels of width*height bytes, one after the other.
///
///     0  the source, at most 250          3  the edges that belong to no line
///     1  the edge image                   4  the fitted segments in 255
///     2  the points of the lines in 254   5  panel 0, with the segments (without a fit, the points) in 255
///
/// The points of lines that NuvImgChainLines_GetNxtCodeLine has already given are missing from panel 2, and
/// so from the panels that use it. After this call NuvImgChainLines_GetNxtCodeLine starts over. width and
/// height are those of the last detection, refused or not. Panel 1 is computed anew with the present
/// settings. It is 0 for an image larger than the memory of the detector. Before any detection nothing is
/// written.
///
/// @param pResImg  receives 6*width*height bytes
/// @return the number of lines
NUV_API int32_t NuvImgChainLines_Debug(uint8_t* pResImg);

/// @}

/// @defgroup lines_hough The Hough detector
///
/// Straight lines in a set of points, found by votes in an accumulator.
///
/// The accumulator has one row per Theta, in steps of a degree, and one cell per Thro, in steps of a pixel.
/// Thro is measured from the centre of the bounding box of the points. A point votes 2 for its cell and 1 for
/// each of the two cells beside it in the row. Cosines and sines are scaled by 1024 and truncated, and the
/// Thro of a point is rounded down.
///
/// The strongest cell is the line if its count is 3 or more. Ties go to the lowest Theta, then to the lowest
/// Thro. The strength is half of the count: for a clean line, the number of its points.
///
/// A line is returned in ABC form, as computed by NuvThroTheta2ABC, and in Hough form, as computed from the
/// ABC form by NuvABC2ThroTheta. That Theta can differ by a degree from the Theta of the cell.
///
/// The detector is one global object: only one thread at a time may use it. All memory is allocated in
/// NuvHoughLines_Initialize.
///
/// @see R. O. Duda and P. E. Hart, Use of the Hough transformation to detect lines and curves in pictures,
///      1972
/// @{

/// Sizes the Hough detector for points in an image, and forgets the lines found so far.
///
/// Memory never shrinks. It grows only if (width + 5)*(height + 5) exceeds the greatest such product so far.
/// After 100 by 100, a call with 1 by 1500 changes nothing, and points 1500 apart are refused.
///
/// @return false if allocation failed, which also releases the memory held before, or if nothing was ever
///         allocated
NUV_API bool NuvHoughLines_Initialize(int32_t width, int32_t height);

/// Finds the strongest line of a set of points, with a Theta in a range.
///
/// @param pX, pY          N points, also outside the image. They are moved during the call and moved back. If
///                        the detector is too small for them, they stay relative to the centre of their
///                        bounding box
/// @param Theta1, Theta2  degrees, Theta1 up to but not including Theta2; Thetas outside 0..180 get no votes
/// @param pA, pB, pC, pThro, pTheta  receive the line; unchanged if there is none
/// @return the strength; 0 for no line, for N below 2, or if the detector is too small. In each of these
///         cases the lines found before are forgotten
NUV_API int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t N, int32_t Theta1, int32_t Theta2,
                                 double* pA, double* pB, double* pC, int32_t* pThro, int32_t* pTheta);

/// @overload
/// Finds the strongest line of a set of points, with a Theta that a mask enables, except the highest one
/// enabled.
///
/// @param pThetaMask  181 entries, true where the Theta is enabled; with none enabled there is no line
/// @note With N below 2 the lines found before stay, for NuvHoughLines_GetNextLine.
NUV_API int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t N, bool* pThetaMask, double* pA,
                                 double* pB, double* pC, int32_t* pThro, int32_t* pTheta);

/// @overload
/// Finds the strongest line of a set of points that each have a Theta of their own.
///
/// A point votes for pPointTheta - dTheta to pPointTheta + dTheta, both included, within 0..179.
///
/// @param pPointTheta  N entries, in degrees
/// @param pPointMask   N entries, true where the point is left out. Point 0 counts for the bounding box and
///                     for the range of Thetas in any case
NUV_API int32_t NuvHoughLines_HT(int32_t* pX, int32_t* pY, int32_t* pPointTheta, bool* pPointMask, int32_t N,
                                 int32_t dTheta, double* pA, double* pB, double* pC, int32_t* pThro,
                                 int32_t* pTheta);

/// Finds the next strongest line, apart from those found since the last transform.
///
/// Cells nearer than dThro in Thro and nearer than dTheta in Theta to the cell of such a line are left out.
/// The votes stay as they are. Theta 0 and Theta 179 are not neighbours.
///
/// @param pA, pB, pC, pThro, pTheta  receive the line, or zeros if there is none
/// @return the strength; 0 for no line. After a transform without a line, or after 1024 lines, it is 0 and
///         the outputs are unchanged
NUV_API int32_t NuvHoughLines_GetNextLine(int32_t dThro, int32_t dTheta, double* pA, double* pB, double* pC,
                                          int32_t* pThro, int32_t* pTheta);

/// Draws the line found last, as NuvDrawABCLineByColor does. Draws nothing before any line.
NUV_API void NuvHoughLines_Debug(uint8_t* pGryImg, int32_t width, int32_t height, int32_t color);

/// @}

/// @defgroup lines_key_points Key points
///
/// Few points that stand for a curve or a contour.
/// @{

/// Finds the M points that keep the shape of a curve best.
///
/// The curve should run from top to bottom. The first and the last point by y are the first two key points.
/// Key points cut the curve into stretches. The inner point of a stretch that lies farthest from the chord of
/// its ends is the candidate of the stretch, and the candidate with the greatest distance is the next key
/// point, which splits the stretch in two. In a stretch, ties go to the first point. Among stretches, ties go to the
/// one that was formed first; of the two parts of a split, the first counts as old as the whole, and the second as new.
/// If a stretch has no inner point, its candidate is its end, at distance 0. A straight run can therefore give a
/// point twice. With M = 1 only the last point is written.
///
/// The time grows as N log N. If coordinates leave -2^20..2^20 and splits are uneven, it grows as N*M.
///
/// @param pX, pY        N points; changed: sorted by y with an exchange sort. For each i, and for each j > i,
///                      it exchanges points i and j if pY[j] < pY[i]
/// @param pKeyX, pKeyY  receive min(M, N) points, sorted in the same way
/// @return the number of points written: min(M, N); 0 for M below 1, or if allocation fails
/// @see U. Ramer, An iterative procedure for the polygonal approximation of plane curves, 1972
/// @see D. H. Douglas and T. K. Peucker, Algorithms for the reduction of the number of points, 1973
NUV_API int32_t NuvLineKeyPoints(int32_t* pX, int32_t* pY, int32_t N, int32_t M, int32_t* pKeyX,
                                 int32_t* pKeyY);

/// Finds the corners of the quadrilateral that a contour resembles.
///
/// Corners 0 and 2 are the two points that lie farthest apart. Corners 1 and 3 are the points farthest from
/// the line through those two, on sides 1 and -1 of NuvWhichSideIsPoint3ToLine. Ties go to the first pair and
/// to the first point. If a side has no points, its corner is the point halfway along the contour.
///
/// The time grows as N log N, or as N^2 where squared distances can wrap.
///
/// @param pX, pY          N points of a contour, in order
/// @param pPolyX, pPolyY  receive 4 corners
/// @return false, with nothing written, if there are no two different points
/// @note Squared distances are 32-bit and wrap. Points should lie less than 32,768 apart in x and in y.
NUV_API bool NuvContour2Poly4(int32_t* pX, int32_t* pY, int32_t N, int32_t* pPolyX, int32_t* pPolyY);

/// @}

/// @}

#endif

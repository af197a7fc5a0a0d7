/// @file
/// Histograms, thresholds, data series and profiles.
///
/// A histogram is a caller's array of 256 int32_t, bin v counting the pixels of value v. Counts and the sums
/// named integer are 32-bit and wrap: counts from 2^31 pixels on, sums of values from 8,421,505 white pixels or
/// 16.8 million of mean 127.5 on. Sums named floating are double.
#ifndef NUV_HISTOGRAM_H
#define NUV_HISTOGRAM_H

#include <cstdint>

#include "nuv/api.h"

// ---- Capture ---------------------------------------------------------------------------------------------
//
// Every capture overwrites all 256 bins.

/// Counts all pixels of an image.
NUV_API void NuvGetHistogram(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pHistogram);

/// Counts the pixels of a region.
///
/// @param x1, x2, y1, y2  region; must lie inside the image. An empty one gives 256 zeros
NUV_API void NuvGetHistogramInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                   int32_t y2, int32_t* pHistogram);

/// Counts the pixels of a region where a mask is not 0.
///
/// @param pMskImg         mask; rows of width bytes like the image, addressed at the same (x, y)
/// @param x1, x2, y1, y2  region; must lie inside both images. An empty one gives 256 zeros
NUV_API void NuvGetHistogramByMasked(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t x1,
                                     int32_t x2, int32_t y1, int32_t y2, int32_t* pHistogram);

/// Counts the pixels between limits given row by row.
///
/// @param y1, y2         rows, inclusive; must lie inside the image
/// @param pLeft, pRight  limits, indexed by the image row y (not by y - y1), so y2 + 1 of them: row y counts
///                       the columns pLeft[y] up to but not including pRight[y], which must lie inside the
///                       image, and nothing if pLeft[y] >= pRight[y]
NUV_API void NuvGetHistogramByLimited(uint8_t* pGryImg, int32_t width, int32_t y1, int32_t y2, int32_t* pLeft,
                                      int32_t* pRight, int32_t* pHistogram);

// ---- Moments ---------------------------------------------------------------------------------------------

/// Mean and standard deviation (population form, divisor N), in two passes.
///
///     avr = sum(i*h[i]) / N        dev = sqrt(sum((i - avr)^2 * h[i]) / N)
///
/// The sums are floating; each product i*h[i] is formed in 32 bits.
///
/// @param pAvr, pDev  receive the moments; both 0 for an empty histogram
/// @return N, the number of pixels counted
NUV_API int32_t NuvGetImageAvrAndDev(int32_t* pHistogram, double* pAvr, double* pDev);

/// The same for all pixels of an image.
///
/// @return width*height
NUV_API int32_t NuvGetImageAvrAndDev(uint8_t* pGryImg, int32_t width, int32_t height, double* pAvr,
                                     double* pDev);

/// Mean and standard deviation in one pass: dev = sqrt(S2/N - avr^2).
///
/// For small histograms: S1 = sum(h[i]*i) is an integer sum and each h[i]*i*i is formed in 32 bits, which one
/// bin at 255 overflows from 33,026 pixels on; S1 wraps from 8,421,505 white pixels on.
///
/// @param pAvr  receives the mean; left alone for an empty histogram
/// @param pDev  receives the deviation; 0 for an empty histogram; not a number where rounding or overflow
///              makes the variance negative
/// @return N, the number of pixels counted
NUV_API int32_t NuvGetImageAvrAndDevFast(int32_t* pHistogram, double* pAvr, double* pDev);

/// Mean and mean absolute deviation in integers, both truncated; the deviation is from the truncated mean. Sums
/// are 32-bit and wrap, from 8,421,505 white pixels on.
///
/// @param pAvr, pDif  receive the moments; both 0 for an empty histogram
NUV_API void NuvGetImageAvrAndDif(int32_t* pHistogram, int32_t* pAvr, int32_t* pDif);

/// Mean, standard deviation and mean absolute deviation (from the untruncated mean).
///
/// @param pAvr, pDev, pDif  receive the moments. For an empty histogram *pAvr takes the value that *pDev
///                          holds, and *pDev and *pDif are left alone
/// @return N, the number of pixels counted
NUV_API int32_t NuvGetImageAvrAndDevAndDif(int32_t* pHistogram, double* pAvr, double* pDev, double* pDif);

// ---- Order statistics ------------------------------------------------------------------------------------

/// The median, decided between two neighbouring bins by how far the running count overshot the half.
///
/// With T = truncate(N*0.5 + 0.5), bins are summed from 0 up to the first bin m at which the sum reaches T;
/// e is the sum less T. The result is m if h[m+1] - e < e, else m + 1. One pixel at v gives v + 1; five
/// pixels at v give v.
///
/// @return 0 to 256 (bin 256 counts as empty; it is not read); 0 for an empty histogram
NUV_API int32_t NuvGetMedianInHistogram(int32_t* pHistogram);

/// The most frequent value, the lowest one of equals.
///
/// @param pMaxCount  receives the count of that value; 0 if no bin is positive, and the result is then 0
NUV_API int32_t NuvGetMostInHistogram(int32_t* pHistogram, int32_t* pMaxCount);

/// The lower tail: the lowest value whose cumulative count from 0 upward exceeds truncate(N*ratio).
///
/// @param ratio  share of the pixels to leave below; 0 gives the lowest value present. A negative ratio gives
///               0, and so does one whose product with N is not finite or beyond int32_t
/// @return 0 to 255; 256 if no value exceeds it (a ratio of 1 or more, or an empty histogram)
NUV_API int32_t NuvGetMinValueInHistogram(int32_t* pHistogram, double ratio);

/// The upper tail: the highest value whose cumulative count from 255 downward exceeds truncate(N*ratio).
///
/// @return 0 to 255; -1 if no value exceeds it; 255 where NuvGetMinValueInHistogram tells of 0
NUV_API int32_t NuvGetMaxValueInHistogram(int32_t* pHistogram, double ratio);

/// The centre of the plateau that begins at the most frequent value.
///
/// With p the lowest of the most frequent values and j the first bin behind p of another count, the result is
/// truncate((p + j)*0.5 + 0.5): p + 1 for a peak one bin wide, floor((p + q)/2) + 1 for a plateau p..q.
///
/// @return 1 to 256; 128 for an empty histogram
NUV_API int32_t NuvGetPeakInHistogram(int32_t* pHistogram);

// ---- Threshold selection ----------------------------------------------------------------------------------

/// Otsu's threshold, with the highest occupied bin left out of all sums.
///
/// With lo and hi the lowest and highest occupied bin, the t from lo to hi - 1 is chosen that maximises
/// (Wb/W) * (mb - mf)^2 * (Wf/W): weights and means of the pixels up to t and from t + 1 to hi - 1. The first
/// maximum wins. Sums of t*h(t) below hi are 32-bit and wrap: from 8,454,661 pixels of 254, or 16.8 million of
/// mean 127.5 on. Of a larger image, divide the counts first.
///
/// @param nSize  number of bins; below 1 there are none
/// @return the highest value of the dark class, so that the bright one begins above it; 0 for fewer than
///         three occupied bins
/// @see N. Otsu, A threshold selection method from gray-level histograms, 1979
NUV_API int32_t NuvGetOtsuThreshold(int32_t* pHistogram, int32_t nSize);

/// The level at and above which a share of the pixels lies: the first i from 255 down at which the count
/// reaches c = truncate(N*ratio).
///
/// @return 255 at once for a ratio of 0; -1 if the count never reaches c
NUV_API int32_t NuvGetThresholdByRatio(int32_t* pHistogram, double ratio);

/// The levels k standard deviations below and above the mean, truncated, the lower one raised to 0 and the
/// upper one lowered to 255.
NUV_API void NuvGetThresholdLimit(int32_t* pHistogram, double k, int32_t* pMinT, int32_t* pMaxT);

/// A noise threshold from a histogram of absolute differences: three sigma, where sigma is the median,
/// interpolated inside its bin, over 0.67.
///
/// @return truncate(median/0.67*3 + 0.5)
NUV_API int32_t NuvGetDifImgThreshold(int32_t* pHistogram);

/// The first valley of a histogram: the first occupied bin i from 1 to maxT that is no higher than its
/// occupied left neighbour (the next occupied bin below, bin 0 excepted) and than bin i + 1, which must be
/// occupied.
///
/// @param nIgnored    not read
/// @param maxT        highest bin looked at, at most 250
/// @param pThreshold  receives the valley; 0 if there is none
/// @return whether there is one
NUV_API bool NuvGetDifImgThreshold(int32_t* pHistogram, int32_t nIgnored, int32_t maxT, int32_t* pThreshold);

/// Clusters of the gray levels by one-dimensional k-means, weighted by the counts, with sequential updates: a
/// centre moves as soon as a bin joins it, and its sums are never cleared between passes.
///
/// The first centre starts at the most frequent level, the others at occupied levels evenly spaced behind it.
/// A level joins the nearest centre, the first of equals. Passes end when no centre has moved by more than
/// eps relative to itself; should they not, after 100/sqrt(eps) passes, but 100,000 at least, and 100,000 with
/// an eps below 1e-12.
///
/// The sums of v*h(v) are 32-bit and wrap, which spoils the centres: with 100 passes, common for an eps of 1e-3,
/// from 84,216 white pixels or 168,000 of mean 127.5 on. Of a larger image, divide the counts first.
///
/// @param nClusters  2 to 256; more count as 256
/// @param eps        1e-4 or more keeps the passes to some thousand, or milliseconds; 1e-12 can take millions,
///                   or seconds. With a not-a-number there is one pass
/// @param pCentres   receives the centres in the order of their start, not sorted: as many as nClusters, or
///                   as the histogram has occupied bins if that is fewer
/// @return false, and nothing written, for nClusters below 2
/// @see J. MacQueen, Some methods for classification and analysis of multivariate observations, 1967
NUV_API bool NuvClusterHistogram(int32_t* pHistogram, int32_t nClusters, double eps, double* pCentres);

// ---- Binarising ------------------------------------------------------------------------------------------
//
// A pixel below T becomes 0, a pixel equal to T or above 255. T <= 0 makes all 255, T > 255 all 0. Rectangles
// must lie inside the image, and pixels outside of them are left alone, in a result image too. Result images
// have the size of the source, in another buffer.
//
// The ratio forms find T in the histogram: the first i from 255 down at which the count exceeds (strictly)
// the share of the pixels that is to become 255; -1 if none does.

/// Binarises an image in place.
NUV_API void NuvThreshold(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T);

/// Binarises an image into another.
NUV_API void NuvThreshold(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, uint8_t* pResImg);

/// Binarises an image in place to the values v1 below T and v2 from T upward, the low byte of each.
NUV_API void NuvThreshold2V1V2(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, int32_t v1,
                               int32_t v2);

/// Binarises a rectangle in place.
NUV_API void NuvThresholdInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                int32_t y2, int32_t T);

/// Binarises a rectangle into the same place of another image.
NUV_API void NuvThresholdInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                int32_t y2, int32_t T, uint8_t* pResImg);

/// Binarises every step-th pixel of every step-th row, beginning with (0, 0), packed one behind the other.
///
/// @param step     below 2: the whole image
/// @param pResImg  receives rows of ceil(width/step) pixels, ceil(height/step) of them
/// @param pNewWidth, pNewHeight  receive width/step and height/step, truncated, which is one less than the
///                 packed size where step does not divide
NUV_API void NuvThresholdAndShrink(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, int32_t step,
                                   uint8_t* pResImg, int32_t* pNewWidth, int32_t* pNewHeight);

/// Binarises an image in place by a share in percent: (width*height*percent)/100 pixels, the product in 32
/// bits. A T of 0 is raised to 1 if percent is below 50.
NUV_API void NuvThresholdByPercent(uint8_t* pGryImg, int32_t width, int32_t height, int32_t percent);

/// Binarises an image in place by a ratio, which is clamped to 0..1.
///
/// @return T; a T of 0 is raised to 1 if the ratio is below 0.5
NUV_API int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t height, double ratio);

/// The same into another image.
NUV_API int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t height, double ratio,
                                    uint8_t* pResImg);

/// The same for a rectangle, in place.
NUV_API int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                    int32_t y2, double ratio);

/// The same for a rectangle into the same place of another image, with T raised to minT instead of to 1.
///
/// @return T as it was found, before it is raised
NUV_API int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                    int32_t y2, double ratio, int32_t minT, uint8_t* pResImg);

/// Binarises an image in place by a ratio, which is clamped to 0..1, with T raised to minT.
///
/// @return T as it was applied
NUV_API int32_t NuvThresholdByRatioAndMiniT(uint8_t* pGryImg, int32_t width, int32_t height, double ratio,
                                            int32_t minT);

// ---- Analysis and shaping --------------------------------------------------------------------------------

/// Smooths a histogram by a Gaussian of a scale of 1024, cut off where its value falls below cutoff.
///
/// With n weights K[0..n-1] (the centre and one side) and S their sum, the bins from n below the lowest
/// occupied to n above the highest one are replaced: n bins at each end by means of the weights that reach
/// into that stretch, the bins between by (K[0]*h[t] + sum(K[k]*(h[t-k] + h[t+k]))) / S. As S holds one side
/// only, those come out amplified by about (2*S - 1024)/S. All in 32-bit integers with truncating division:
/// sums of weights times counts wrap, from bins of 2,097,152 pixels on.
///
/// @param nIgnored       not read
/// @param pResHistogram  receives 256 bins, in another array
/// @return the highest less the lowest occupied bin; 0 for an empty histogram, which is copied
NUV_API int32_t NuvHistogramGaussianSmooth(int32_t* pHistogram, int32_t nIgnored, double sigma, double cutoff,
                                           int32_t* pResHistogram);

/// The mean of the bins at most M away, as far as there are bins, truncated.
///
/// @param pResHistogram  receives 256 bins, in another array; all 0 for a negative M
NUV_API void NuvHistogramAverageSmooth(int32_t* pHistogram, int32_t M, int32_t* pResHistogram);

/// Marks the peaks of a series with 100 and its valleys with -100, and leaves the signs of the slopes
/// elsewhere.
///
/// The slope of an element is the sign of its difference from the one before (element 0 is compared with
/// element 1). A rise and a fall after it make a peak, at the last rise, or half way from there to the last
/// flat behind it. While no flat has come yet, the flat counts as at N, so that a first peak without one is
/// marked half way to the end of the series. Valleys are found likewise in the marks that the peaks have
/// left.
///
/// @param pMarks  receives N values out of 1, 0, -1, 100, -100; for N = 1 a single 0
NUV_API void NuvSetPeakTo100ValleyTo_100(int32_t* pData, int32_t N, int32_t* pMarks);

/// The greatest peak of a histogram, as NuvSetPeakTo100ValleyTo_100 marks peaks, and the greatest at least
/// minDist from it; the first of equals.
///
/// @param pPeak1  receives the first peak; left alone without one, and then read as if it were one
/// @param pPeak2  receives the second peak; *pPeak1 without one
NUV_API void NuvFindTwoPeaks(int32_t* pHistogram, int32_t minDist, int32_t* pPeak1, int32_t* pPeak2);

/// The bins by falling count.
///
/// @param pOrder  receives 256 bin numbers; equal counts stand as an exchange sort leaves them
/// @return the number of occupied bins
NUV_API int32_t NuvHistogramOrder(int32_t* pHistogram, int32_t* pOrder);

/// Equalises an image in place: v becomes (pixels up to v)*255/(width*height), the product in 32 bits. An
/// image of one value becomes 255.
NUV_API void NuvHistogramEqualizeFast(uint8_t* pGryImg, int32_t width, int32_t height);

/// Equalises an image in place by spans: the m occupied values are spread over m targets of equal counts, and
/// a value goes to the centre of the targets that it spreads over, times 255/m. An image of one value becomes
/// 0.
///
/// The counts are width*height/m, truncated. The pixels that this leaves over can keep the highest values
/// from being reached: those that are not count as spread from -10 on, and the low byte of what follows is
/// stored.
NUV_API void NuvHistogramEqualizeStandard(uint8_t* pGryImg, int32_t width, int32_t height);

/// Matches an image in place to a histogram, by spans: each value goes to the centre of the target bins that
/// its pixels spread over, truncated.
///
/// @param pTargetHistogram  256 bins that should sum up to width*height. Where they ask for less, the values
///                          that the walk does not reach count as spread from and to -10 (the highest one: to
///                          the last target), and the low byte is stored; an empty one changes nothing
NUV_API void NuvHistogramNormalization(uint8_t* pGryImg, int32_t width, int32_t height,
                                       int32_t* pTargetHistogram);

/// Draws N values as bars that hang from row 0, in 255 on 0. The bar of the greatest value p spans p/(p + 1)
/// of the rows.
NUV_API void NuvDrawHistogram2Img(int32_t* pHistogram, int32_t N, uint8_t* pGryImg, int32_t width,
                                  int32_t height);

/// Whether a histogram has two modes with a deep valley between them.
///
/// The histogram is smoothed by means of W = 2*(M/2) + 1 bins. The left peak is its greatest bin from T down
/// to 1, the right one from T up to 255; ties go to the bin nearest to T. The contrast is (B - A)/A, with A
/// the area between the peaks under the curve and B that of the trapezoid over them.
///
/// M/2 bins at each end stay as they are, and bin 255 - M/2 counts as 0. From M = 256 on all bins stay as
/// they are. Where both peaks are missing, or minDist is 0 or below, the contrast can be not a number, which
/// reaches no ratio.
///
/// @param T                      as far as it lies in 0 to 255
/// @param M                      0 or more; less counts as 0
/// @param minDist                least distance of the peaks
/// @param ratio                  least contrast
/// @param pLeftPeak, pRightPeak  receive the peaks; 256 - W where there is none. That is below 0 for an M of
///                               256 or more, and bins below 0 count as 0
/// @param pContrast              receives the contrast; 0 if the peaks are nearer than minDist
/// @return whether the contrast reaches the ratio
NUV_API bool NuvIsHighContrastImg(int32_t* pHistogram, int32_t T, int32_t M, int32_t minDist, double ratio,
                                  int32_t* pLeftPeak, int32_t* pRightPeak, double* pContrast);

/// A reduced gray scale of about 256/maxStep classes, spent where the histogram is occupied.
///
/// Cells of s gray levels are formed, with the least s from minStep to maxStep that leaves at most two thirds
/// of 256/maxStep cells occupied. If there is none below maxStep, the result is i/maxStep. Otherwise each
/// occupied cell becomes a class, and the gaps between share the rest of the classes by their length; where
/// there are more gaps than that, each becomes one class. Gaps without a share go to their neighbours.
///
/// @param minStep, maxStep  positive; otherwise all entries become 0 and the result is 0
/// @param pLUT              receives 256 class numbers, 0 and rising. Where s does not divide 256 and the
///                          last cell is occupied, up to s - 1 entries behind them are written too: room for
///                          255 + maxStep entries is always enough
/// @return the number of levels handed out; classes can be fewer
NUV_API int32_t NuvGenerateMainGryLUT(int32_t* pHistogram, int32_t minStep, int32_t maxStep, int32_t* pLUT);

// ---- Data series -----------------------------------------------------------------------------------------

/// The mean in a moving window of 2|M| + 1 elements, truncated. Near the ends the nearest full window counts.
///
/// @param pRes  receives N values in another array; left alone if N is less than the window
NUV_API void Nuv1DAverageFilter(int32_t* pData, int32_t N, int32_t M, int32_t* pRes);

/// The median of 0 and 1 in the windows of Nuv1DAverageFilter: 1 where more than half of the window is 1.
/// pRes as there.
NUV_API void NuvBin1DMedianFilter(int32_t* pData, int32_t N, int32_t M, int32_t* pRes);

/// Resamples N values to resN by linear interpolation at i*(N-1)/(resN-1), truncated. The place of the last
/// one can round to just below the last element, and its value then truncate to one less.
///
/// @return false, and nothing written, if N or resN is below 2
NUV_API bool NuvDataLinearInterpolattion(int32_t* pData, int32_t N, int32_t* pRes, int32_t resN);

/// The position of the greatest element, the first of equals; 0 if N is below 2.
NUV_API int32_t NuvDataMaxDataPos(int32_t* pData, int32_t N);

/// The greatest element; pData[0], which must be there, if N is below 2.
NUV_API int32_t NuvDataMaxDataValue(int32_t* pData, int32_t N);

/// Mean and mean absolute deviation, in floating point; not a number if N is 0, and zero if it is below.
NUV_API void NuvDataAvrAndDif(int32_t* pData, int32_t N, double* pAvr, double* pDif);

/// Mean and standard deviation (divisor N), in floating point; not a number if N is 0, and zero if it is
/// below.
///
/// @return the greatest element; pData[0], which must be there, if N is below 2
NUV_API int32_t NuvDataAvrAndDevAndReturnMax(int32_t* pData, int32_t N, double* pAvr, double* pDev);

/// Mean and standard deviation (divisor N), the mean from a 32-bit sum, which wraps from 2^31 on; not a
/// number if N is 0, and zero if it is below.
///
/// @return that sum
NUV_API int32_t NuvDataAvrAndDevAndReturnSum(int32_t* pData, int32_t N, double* pAvr, double* pDev);

/// The window of W elements with the greatest mean. Of equal windows about the middle one: half of those that
/// equal the first are stepped over, wherever they lie.
///
/// @param pMaxAvr  receives the mean; 0 on failure
/// @param pPos     receives the centre of the window, its first element plus W/2; 0 on failure
/// @return false if N is 0 or below W, or W below 1
NUV_API bool NuvDataMaxAvrAndPosInMovingWindow(int32_t* pData, int32_t N, int32_t W, double* pMaxAvr,
                                               int32_t* pPos);

/// The window of W elements with the greatest standard deviation; ties go to the first. The sum of its mean is
/// slid along: the element that comes in is added before the one that goes out is taken off. Windows whose mean
/// or squares are not a number are passed over.
///
/// The time grows with N, unless many windows equal the best one but for rounding: each of those takes W steps,
/// fewer where the data stay level, and none where they repeat themselves exactly.
///
/// @param pMaxDev, pPos  as NuvDataMaxAvrAndPosInMovingWindow
/// @return false also if allocation fails
NUV_API bool NuvDataMaxDevAndPosInMovingWindow(double* pData, int32_t N, int32_t W, double* pMaxDev,
                                               int32_t* pPos);

/// The window of W elements with the greatest difference between its largest and smallest element; ties go to
/// the first. A window that begins with a not-a-number is passed over; other ones in it do not count. The time
/// grows with N.
///
/// @param pMaxDif, pPos  as NuvDataMaxAvrAndPosInMovingWindow
/// @return false also if allocation fails
NUV_API bool NuvDataMaxDifAndPosInMovingWindow(double* pData, int32_t N, int32_t W, double* pMaxDif,
                                               int32_t* pPos);

/// Keeps the elements whose weight lies in minWeight..maxWeight, moved to the front of both arrays in their
/// order; the rest of both arrays becomes 0.
///
/// @return the number kept
NUV_API int32_t NuvpDataDeleteByWeightReturnNum(int32_t* pData, int32_t* pWeight, int32_t N,
                                                int32_t minWeight, int32_t maxWeight);

/// Picks K peaks in falling order, blocking the elements around each.
///
/// In each round the greatest element that is not blocked is found, provided that it exceeds pData[0]. The
/// position told is one behind the stretch of equal unblocked elements that begins there: p + 1 for a peak of
/// one element at p. The elements from the position told less minDist up to, but not including, it plus
/// minDist are blocked. A round without such an element starts from the place that the round before has
/// found, at first from place 0, and tells pData[0].
///
/// @param pPeakValue, pPeakPos  receive K entries each; all 0 on failure
/// @return false if N is above 4096 or below 1
NUV_API bool NuvDataFindPeaks(double* pData, int32_t N, int32_t minDist, double* pPeakValue,
                              int32_t* pPeakPos, int32_t K);

// ---- Profiles --------------------------------------------------------------------------------------------
//
// Column profiles have width entries, row profiles height entries, indexed by the absolute column or row.
// Rectangles must lie inside the image.

/// The spread of each column x1..x2 over the rows y1..y2: 100 times the standard deviation, truncated.
///
///     truncate(sqrt(Q/n - (S/n)^2) * 100)     S, Q: 32-bit sums of the values and of their squares
///
/// A sum of squares that wraps (from 33,026 pixels of 255 on), or no rows at all, can give the most negative
/// int32_t.
///
/// @param pRes  receives width entries, 0 outside x1..x2
NUV_API void NuvGryImgColDev100(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t* pRes);

/// The same of each row y1..y2 over the columns x1..x2.
///
/// @param pRes  receives height entries, 0 outside y1..y2
NUV_API void NuvGryImgRowDev100(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t* pRes);

/// The spread of each column x1..x2 over the rows y1..y2 as Q*n - S*S, n^2 times the variance, in 32 bits.
///
/// @param pRes  receives the entries x1..x2; the others are left alone. height is not read
NUV_API void NuvGryImgColDevDev(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t* pRes);

/// The same of each row y1..y2 over the columns x1..x2.
///
/// @param pRes  receives the entries y1..y2; the others are left alone. height is not read
NUV_API void NuvGryImgRowDevDev(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t* pRes);

/// The spread, as of NuvGryImgColDev100, of strips of M columns over the whole height, written to all M
/// entries of the strip. Where M does not divide the width, a last strip of the last M columns overlaps its
/// neighbour.
///
/// @param M  1 to width; any other M writes nothing
NUV_API void NuvGryImgColsDev100(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t* pRes);

/// The strength of vertical edges per column: the sum of |G90| + |G0| (Sobel) over the interior pixels with
/// |G0| < |G90|. The outermost entries repeat their neighbours; images without an interior give 0.
///
/// @param pPrjX  receives width entries
NUV_API void NuvGryImgSobel90JustToPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjX);

/// The strength of vertical edges per row: the sum of |G90| alone over the same pixels.
///
/// @param pPrjY  receives height entries
NUV_API void NuvGryImgSobel90JustToPrjY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjY);

/// Column sums of the three bytes of an RGB image: byte 2 to red, byte 1 to green, byte 0 to blue.
NUV_API void NuvRGBImgPrj2X(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t* pRed, int32_t* pGreen,
                            int32_t* pBlue);

/// Column sums of byte 0 + byte 1 + 2*byte 2, each sum shifted right by 2.
NUV_API void NuvRGBImgPrj2X(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t* pPrjX);

/// Column and row sums of a gray image.
NUV_API void NuvGryImgPrjXY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjX, int32_t* pPrjY);

/// Column and row sums over a rectangle; all entries outside of it become 0.
NUV_API void NuvGryImgPrjXYInRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t* pPrjX, int32_t* pPrjY);

/// Column and row counts of the non-zero pixels of a rectangle; entries outside of it are left alone.
NUV_API void NuvBinImgPrjXYInRect(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t* pPrjX, int32_t* pPrjY);

#endif

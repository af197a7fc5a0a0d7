/// @file
/// Histograms, thresholds, data series and profiles.
#ifndef NUV_HISTOGRAM_H
#define NUV_HISTOGRAM_H

#include <cstdint>

#include "nuv/api.h"

/// @defgroup histogram Histograms
///
/// Histograms, thresholds, data series and profiles.
///
/// A histogram is an array of 256 int32_t that belongs to the caller. Bin v holds the number of pixels of
/// value v. A function that takes a histogram reads 256 bins and leaves them unchanged, unless its entry says
/// otherwise. A bin is occupied if its count is not 0. N is the sum of all bins, and h[v] is the count of v.
///
/// Counts and the sums that are called integer have 32 bits and wrap: counts from 2^31 pixels on, sums of
/// values from 8,421,505 white pixels or 16.8 million pixels of mean 127.5 on. Sums that are called floating
/// are double. truncate() drops the fraction of a number.
///
/// Gray images have width*height bytes. A region is the columns x1 to x2 of the rows y1 to y2, all four ends
/// inclusive. It must lie inside the image, because nothing clips it.
/// @{

/// @defgroup histogram_capture Capture
///
/// Histograms of an image or of a part of it.
///
/// Every function overwrites all 256 bins of pHistogram. A region without pixels gives 256 zeros.
/// @{

/// Counts all pixels of an image.
///
/// @param pGryImg        gray image, read only
/// @param width, height  its size; a size of 0 or below gives 256 zeros
/// @param pHistogram     receives 256 bins
NUV_API void NuvGetHistogram(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pHistogram);

/// Counts the pixels of a region.
///
/// @param pGryImg         gray image, read only
/// @param width           columns of the image
/// @param x1, x2, y1, y2  region inside the image
/// @param pHistogram      receives 256 bins
NUV_API void NuvGetHistogramInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                   int32_t y2, int32_t* pHistogram);

/// Counts the pixels of a region at which a mask is not 0.
///
/// @param pGryImg         gray image, read only
/// @param pMskImg         mask, read only; its rows have width bytes, and its pixel (x, y) belongs to pixel
///                        (x, y) of the image
/// @param width           columns of the image and of the mask
/// @param x1, x2, y1, y2  region inside both images
/// @param pHistogram      receives 256 bins
NUV_API void NuvGetHistogramByMasked(uint8_t* pGryImg, uint8_t* pMskImg, int32_t width, int32_t x1,
                                     int32_t x2, int32_t y1, int32_t y2, int32_t* pHistogram);

/// Counts the pixels between a left and a right limit that each row has of its own.
///
/// Row y counts the columns from pLeft[y] up to but not including pRight[y]. It counts nothing if pLeft[y] is
/// not less than pRight[y].
///
/// @param pGryImg        gray image, read only
/// @param width          columns of the image
/// @param y1, y2         rows, inclusive, inside the image
/// @param pLeft, pRight  limits, read only; y2 + 1 entries each, because the index is the row y of the image,
///                       not y - y1. The columns that they select must lie inside the image
/// @param pHistogram     receives 256 bins
NUV_API void NuvGetHistogramByLimited(uint8_t* pGryImg, int32_t width, int32_t y1, int32_t y2, int32_t* pLeft,
                                      int32_t* pRight, int32_t* pHistogram);

/// @}

/// @defgroup histogram_moments Moments
///
/// Means and deviations of the pixels that a histogram counts.
///
/// The functions differ in which sums are integer and which are floating, and in their results for a
/// histogram without pixels.
/// @{

/// Computes the mean and the standard deviation in two passes.
///
///     avr = sum(v*h[v]) / N
///     dev = sqrt(sum((v - avr)^2 * h[v]) / N)
///
/// The sums are floating. Each product v*h[v] is formed in 32 bits.
///
/// @param pHistogram  256 bins
/// @param pAvr, pDev  receive the mean and the deviation, both 0 for an empty histogram
/// @return N, the number of pixels
NUV_API int32_t NuvGetImageAvrAndDev(int32_t* pHistogram, double* pAvr, double* pDev);

/// @overload
/// Computes the mean and the standard deviation of all pixels of an image.
///
/// @param pGryImg        gray image, read only
/// @param width, height  its size
/// @param pAvr, pDev     receive the mean and the deviation, both 0 for an image without pixels
/// @return the number of pixels, width*height
NUV_API int32_t NuvGetImageAvrAndDev(uint8_t* pGryImg, int32_t width, int32_t height, double* pAvr,
                                     double* pDev);

/// Computes the mean and the standard deviation of a small histogram in one pass.
///
///     avr = S1 / N                     with S1 = sum(v*h[v]), integer
///     dev = sqrt(S2 / N - avr^2)       with S2 = sum(v*v*h[v]), floating
///
/// S1 wraps from 8,421,505 white pixels on. Each product v*v*h[v] is formed in 32 bits and wraps, for
/// v = 255, from 33,026 pixels on.
///
/// @param pHistogram  256 bins
/// @param pAvr        receives the mean; left alone for an empty histogram
/// @param pDev        receives the deviation. It is 0 for an empty histogram, and not a number where rounding
///                    or wrapping makes the variance negative
/// @return N, the number of pixels
NUV_API int32_t NuvGetImageAvrAndDevFast(int32_t* pHistogram, double* pAvr, double* pDev);

/// Computes the mean and the mean absolute deviation in integers.
///
///     avr = sum(v*h[v]) / N
///     dif = sum(|v - avr| * h[v]) / N
///
/// Both divisions truncate, and the deviation is taken from the truncated mean. The sums are integer: they
/// wrap from 8,421,505 white pixels on.
///
/// @param pHistogram  256 bins
/// @param pAvr, pDif  receive the mean and the deviation, both 0 for an empty histogram
NUV_API void NuvGetImageAvrAndDif(int32_t* pHistogram, int32_t* pAvr, int32_t* pDif);

/// Computes the mean, the standard deviation and the mean absolute deviation.
///
///     avr = sum(v*h[v]) / N
///     dev = sqrt(sum((v - avr)^2 * h[v]) / N)
///     dif = sum(|v - avr| * h[v]) / N
///
/// The sums are floating. Each product v*h[v] is formed in 32 bits.
///
/// @param pHistogram  256 bins
/// @param pAvr        receives the mean; for an empty histogram, the value that *pDev holds
/// @param pDev, pDif  receive the deviations; left alone for an empty histogram
/// @return N, the number of pixels
NUV_API int32_t NuvGetImageAvrAndDevAndDif(int32_t* pHistogram, double* pAvr, double* pDev, double* pDif);

/// @}

/// @defgroup histogram_order_statistics Order statistics
///
/// The median, the mode and the tails of the values that a histogram counts.
/// @{

/// Returns the median, chosen between two neighbouring values by the excess of the cumulative count over the
/// half.
///
/// With T = truncate(N*0.5 + 0.5), the bins are summed from 0 up to the first bin m at which the sum reaches
/// T. The excess e is that sum minus T. The result is m if h[m + 1] - e < e, otherwise m + 1. Bin 256 counts
/// as empty and is not read. One pixel of value v gives v + 1, and five pixels give v.
///
/// @param pHistogram  256 bins
/// @return 0 to 256; 0 for an empty histogram
NUV_API int32_t NuvGetMedianInHistogram(int32_t* pHistogram);

/// Returns the most frequent value; ties go to the lowest.
///
/// @param pHistogram  256 bins
/// @param pMaxCount   receives the count of that value; 0 if no bin is positive
/// @return 0 to 255; 0 if no bin is positive
NUV_API int32_t NuvGetMostInHistogram(int32_t* pHistogram, int32_t* pMaxCount);

/// Returns the lower tail: the lowest value whose cumulative count from 0 upward exceeds truncate(N*ratio).
///
/// @param pHistogram  256 bins
/// @param ratio       share of the pixels to leave below, 0 to 1; with 0 the result is the lowest value
///                    present
/// @return 0 to 255. 256 if no count exceeds the share, as for a ratio of 1 or more or an empty histogram. 0
///         if N*ratio is -1 or less, is not finite or lies outside int32_t
NUV_API int32_t NuvGetMinValueInHistogram(int32_t* pHistogram, double ratio);

/// Returns the upper tail: the highest value whose cumulative count from 255 downward exceeds
/// truncate(N*ratio).
///
/// @param pHistogram  256 bins
/// @param ratio       share of the pixels to leave above, 0 to 1; with 0 the result is the highest value
///                    present
/// @return 0 to 255. -1 if no count exceeds the share, as for a ratio of 1 or more or an empty histogram. 255
///         if N*ratio is -1 or less, is not finite or lies outside int32_t
NUV_API int32_t NuvGetMaxValueInHistogram(int32_t* pHistogram, double ratio);

/// Returns 1 plus the centre, rounded down, of the plateau that begins at the most frequent value.
///
/// Let p be the most frequent value (ties go to the lowest) and j the first bin after p with another count,
/// which is 256 if there is none. The result is truncate((p + j)*0.5 + 0.5). A peak one bin wide gives p + 1.
/// A plateau from p to q gives (p + q)/2 + 1, with the quotient rounded down.
///
/// @param pHistogram  256 bins
/// @return 1 to 256; 128 for an empty histogram
NUV_API int32_t NuvGetPeakInHistogram(int32_t* pHistogram);

/// @}

/// @defgroup histogram_threshold_selection Threshold selection
///
/// Gray values that divide the pixels of a histogram into classes.
/// @{

/// Returns Otsu's threshold, computed without the highest occupied bin.
///
/// Let lo and hi be the lowest and the highest occupied bin. The result is the t from lo to hi - 1 that
/// maximises the variance between two classes: the pixels up to t, and those from t + 1 to hi - 1.
///
///     (Wb/W) * (mb - mf)^2 * (Wf/W)
///
/// Wb and mb are the number and the mean of the pixels of the dark class, Wf and mf those of the bright
/// class, and W = Wb + Wf. Ties go to the lowest t. A t with an empty bright class is passed over.
///
/// The sums of t*h[t] below hi are integer: they wrap from 8,454,661 pixels of value 254 or 16.8 million
/// pixels of mean 127.5 on. For a larger image, divide the counts first.
///
/// @param pHistogram  nSize bins
/// @param nSize       number of bins; with 0 or below the result is 0
/// @return the highest value of the dark class; 0 for fewer than three occupied bins. The threshold that
///         NuvThreshold takes is one higher
/// @see N. Otsu, A threshold selection method from gray-level histograms, 1979
NUV_API int32_t NuvGetOtsuThreshold(int32_t* pHistogram, int32_t nSize);

/// Returns the gray value at and above which a share of the pixels lies.
///
/// The result is the first value, from 255 downward, at which the cumulative count reaches
/// c = truncate(N*ratio).
///
/// @param pHistogram  256 bins
/// @param ratio       share of the pixels, 0 to 1
/// @return 0 to 255. 255 if c is 0 or below, or if N*ratio is not finite or lies outside int32_t. -1 if the
///         count never reaches c
NUV_API int32_t NuvGetThresholdByRatio(int32_t* pHistogram, double ratio);

/// Computes the gray values k standard deviations below and above the mean.
///
///     minT = truncate(avr - k*dev)    or 0 where the difference is negative
///     maxT = truncate(avr + k*dev)    or 255 where the sum is greater
///
/// The moments are those of NuvGetImageAvrAndDev. An empty histogram gives 0 and 0.
///
/// @param pHistogram    256 bins
/// @param k             number of standard deviations
/// @param pMinT, pMaxT  receive the gray values
NUV_API void NuvGetThresholdLimit(int32_t* pHistogram, double k, int32_t* pMinT, int32_t* pMaxT);

/// Returns a noise threshold of three sigma, from a histogram of absolute differences.
///
/// With c = truncate(N*0.5 + 0.5), let i be the first bin at which the cumulative count s from 0 upward
/// reaches c. The median is interpolated inside that bin, and sigma is the median divided by 0.67. Quotients
/// are floating.
///
///     m = i - (s - c)/h[i]            i itself for i = 0
///     T = truncate(m/0.67*3 + 0.5)
///
/// @param pHistogram  256 bins; bin v holds the number of pixels whose absolute difference is v
/// @return T; 0 for an empty histogram
NUV_API int32_t NuvGetDifImgThreshold(int32_t* pHistogram);

/// Finds the first valley of a histogram.
///
/// The valley is the lowest bin i from 1 to maxT that meets all of these conditions:
/// - Bin i is occupied.
/// - The next occupied bin below i is not bin 0, and its count is not less than h[i].
/// - Bin i + 1 is occupied, and its count is not less than h[i].
///
/// @param pHistogram  256 bins
/// @param nIgnored    not read
/// @param maxT        highest bin that can be the valley; more than 250 counts as 250
/// @param pThreshold  receives the valley; 0 if there is none
/// @return whether there is a valley
NUV_API bool NuvGetDifImgThreshold(int32_t* pHistogram, int32_t nIgnored, int32_t maxT, int32_t* pThreshold);

/// Clusters the gray values by one-dimensional k-means, weighted by the counts.
///
/// The updates are sequential. In each pass, every occupied gray value from 0 upward joins the nearest
/// centre; ties go to the centre of the lowest index. That centre moves at once to the mean of all pixels
/// that have joined it. Its sums are never cleared between passes.
///
/// There are K = min(nClusters, n) centres, where n is the number of occupied gray values. The first centre
/// starts at the most frequent one. Each further one starts n/K places (truncated) after the one before it in
/// the list of occupied gray values, which continues at the lowest after the highest.
///
/// Passes end when no centre has moved by more than eps relative to its new place. For a new place of 0, the
/// old place is compared with eps instead. If no pass meets this condition, the last one is number
/// max(100000, 100/sqrt(eps)), or number 100,000 for an eps below 1e-12.
///
/// The sums of v*h[v] are integer. If they wrap, they spoil the centres. After 100 passes, which are common
/// for an eps of 1e-3, they wrap from 84,216 white pixels or 168,000 pixels of mean 127.5 on. For a larger
/// image, divide the counts first.
///
/// @param pHistogram  256 bins
/// @param nClusters   2 to 256; more counts as 256
/// @param eps         1e-4 or more keeps the number of passes to some thousands, which take milliseconds;
///                    1e-12 can need millions, which take seconds. With a not-a-number there is one pass
/// @param pCentres    receives K centres in the order of their start, not sorted; nothing for an empty
///                    histogram
/// @return false for nClusters below 2; nothing is written then
/// @see J. MacQueen, Some methods for classification and analysis of multivariate observations, 1967
NUV_API bool NuvClusterHistogram(int32_t* pHistogram, int32_t nClusters, double eps, double* pCentres);

/// @}

/// @defgroup histogram_binarising Binarising
///
/// Images with two values, divided at a threshold T.
///
/// A pixel below T becomes 0; a pixel equal to T or above becomes 255. A T of 0 or below makes all pixels
/// 255, and a T above 255 makes all pixels 0. Pixels outside a region are left alone, in a result image too.
/// A result image has the size of the source and a buffer of its own, unless the entry says otherwise.
///
/// The functions that take a ratio or a percentage derive T from the histogram of the image or region. T is
/// the first value, from 255 downward, at which the cumulative count exceeds the requested number of pixels.
/// It is -1 if no count does. The pixels that become 255 are therefore more than requested, unless all are
/// requested. For a ratio that is not a number, T is 255.
/// @{

/// Binarises an image in place.
///
/// @param pGryImg        gray image, read and written
/// @param width, height  its size
/// @param T              threshold
NUV_API void NuvThreshold(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T);

/// @overload
/// Binarises an image into another image.
///
/// @param pGryImg        gray image, read only
/// @param width, height  size of both images
/// @param T              threshold
/// @param pResImg        receives width*height pixels
NUV_API void NuvThreshold(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, uint8_t* pResImg);

/// Replaces the pixels of an image by v1 below T and by v2 from T upward, in place.
///
/// @param pGryImg        gray image, read and written
/// @param width, height  its size
/// @param T              threshold
/// @param v1, v2         new values; the low byte of each is stored
NUV_API void NuvThreshold2V1V2(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, int32_t v1,
                               int32_t v2);

/// Binarises a region in place.
///
/// @param pGryImg         gray image, read and written
/// @param width           columns of the image
/// @param x1, x2, y1, y2  region inside the image
/// @param T               threshold
NUV_API void NuvThresholdInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                int32_t y2, int32_t T);

/// @overload
/// Binarises a region into the same place of another image.
///
/// @param pGryImg         gray image, read only
/// @param width           columns of both images
/// @param x1, x2, y1, y2  region inside both images
/// @param T               threshold
/// @param pResImg         receives the pixels of the region
NUV_API void NuvThresholdInRect(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                int32_t y2, int32_t T, uint8_t* pResImg);

/// Binarises every step-th pixel of every step-th row, beginning with pixel (0, 0).
///
/// The packed result has ceil(height/step) rows of ceil(width/step) pixels, one after the other without
/// padding. The reported size is smaller by 1 in each direction in which step does not divide the size.
///
/// @param pGryImg                gray image, read only
/// @param width, height          its size
/// @param T                      threshold
/// @param step                   distance of the pixels; 1 or below takes the whole image
/// @param pResImg                receives the packed pixels
/// @param pNewWidth, pNewHeight  receive width/step and height/step, truncated
NUV_API void NuvThresholdAndShrink(uint8_t* pGryImg, int32_t width, int32_t height, int32_t T, int32_t step,
                                   uint8_t* pResImg, int32_t* pNewWidth, int32_t* pNewHeight);

/// Binarises an image in place, with T chosen for a share of the pixels in percent.
///
/// The requested number of pixels is width*height*percent/100, with the product in 32 bits and the quotient
/// truncated. A T of 0 is raised to 1 if percent is below 50, so that black pixels stay black.
///
/// @param pGryImg        gray image, read and written
/// @param width, height  its size
/// @param percent        share of the pixels that become 255, 0 to 100; not clamped
NUV_API void NuvThresholdByPercent(uint8_t* pGryImg, int32_t width, int32_t height, int32_t percent);

/// Binarises an image in place, with T chosen for a share of the pixels.
///
/// The requested number of pixels is truncate(width*height*ratio). A T of 0 is raised to 1 if the ratio is
/// below 0.5, so that black pixels stay black.
///
/// @param pGryImg        gray image, read and written
/// @param width, height  its size
/// @param ratio          share of the pixels that become 255, clamped to 0..1
/// @return T as applied
NUV_API int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t height, double ratio);

/// @overload
/// Binarises an image into another image, with T chosen for a share of the pixels.
///
/// @param pGryImg        gray image, read only
/// @param width, height  size of both images
/// @param ratio          share of the pixels that become 255, clamped to 0..1
/// @param pResImg        receives width*height pixels
/// @return T as applied; a T of 0 is raised to 1 if the ratio is below 0.5
NUV_API int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t height, double ratio,
                                    uint8_t* pResImg);

/// @overload
/// Binarises a region in place, with T chosen for a share of its pixels.
///
/// @param pGryImg         gray image, read and written
/// @param width           columns of the image
/// @param x1, x2, y1, y2  region inside the image
/// @param ratio           share of the pixels of the region that become 255, clamped to 0..1
/// @return T as applied; a T of 0 is raised to 1 if the ratio is below 0.5
NUV_API int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                    int32_t y2, double ratio);

/// @overload
/// Binarises a region into the same place of another image, with T chosen for a share of its pixels but not
/// below minT.
///
/// @param pGryImg         gray image, read only
/// @param width           columns of both images
/// @param x1, x2, y1, y2  region inside both images
/// @param ratio           share of the pixels of the region that become 255, clamped to 0..1
/// @param minT            least threshold; a lower T is raised to it, and there is no other raise
/// @param pResImg         receives the pixels of the region
/// @return T as found in the histogram, before it is raised
NUV_API int32_t NuvThresholdByRatio(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                                    int32_t y2, double ratio, int32_t minT, uint8_t* pResImg);

/// Binarises an image in place, with T chosen for a share of the pixels but not below minT.
///
/// The requested number of pixels is truncate(width*height*ratio).
///
/// @param pGryImg        gray image, read and written
/// @param width, height  its size
/// @param ratio          share of the pixels that become 255, clamped to 0..1
/// @param minT           least threshold; a lower T is raised to it, and there is no other raise
/// @return T as applied
NUV_API int32_t NuvThresholdByRatioAndMiniT(uint8_t* pGryImg, int32_t width, int32_t height, double ratio,
                                            int32_t minT);

/// @}

/// @defgroup histogram_analysis Analysis and shaping
///
/// Smoothed histograms, their peaks and their contrast, and images shaped by a histogram.
/// @{

/// Smooths a histogram with a Gaussian that is cut off at a given value.
///
/// The weights are integers with a scale of 1024. There are n of them, the centre and one side: K[k] belongs
/// to the two bins at distance k.
///
///     K[k] = truncate(1024*exp(-k*k / (2*sigma*sigma)) + 0.5)     k = 0..n-1
///
/// n is the least k of 1 or more at which the exponential falls below cutoff, at most 256. S is the sum of
/// K[0] to K[n-1].
///
/// The stretch from n bins below the lowest occupied bin to n bins above the highest one, cut to 0..255, is
/// replaced. All other bins are 0. In the middle of the stretch, a bin becomes
///
///     (K[0]*h[t] + sum(K[k] * (h[t-k] + h[t+k]))) / S             k = 1..n-1
///
/// S holds one side only, so these bins are amplified by about (2*S - 1024)/S. The n bins at each end of the
/// stretch become weighted means over those of the 2n - 1 bins that lie in the stretch, with the sum of their
/// weights as the divisor. Sums have 32 bits and wrap from bins of 2,097,152 pixels on. Quotients are
/// truncated.
///
/// @param pHistogram     256 bins
/// @param nIgnored       not read
/// @param sigma          standard deviation of the Gaussian, in bins
/// @param cutoff         least value of the Gaussian that still counts, relative to 1 at its centre; 0 or
///                       below gives 256 weights
/// @param pResHistogram  receives 256 bins; must be another array
/// @return the highest minus the lowest occupied bin; 0 for an empty histogram, which is copied
NUV_API int32_t NuvHistogramGaussianSmooth(int32_t* pHistogram, int32_t nIgnored, double sigma, double cutoff,
                                           int32_t* pResHistogram);

/// Smooths a histogram by the mean of the bins at most M away.
///
/// Near the ends, the mean is taken over the bins that exist. Sums are integer, and quotients are truncated.
///
/// @param pHistogram     256 bins
/// @param M              half the window in bins, without its centre bin; a negative M gives 256 zeros
/// @param pResHistogram  receives 256 bins; must be another array
NUV_API void NuvHistogramAverageSmooth(int32_t* pHistogram, int32_t M, int32_t* pResHistogram);

/// Marks the peaks of a series with 100 and its valleys with -100, and all other elements with their slope.
///
/// The slope of an element is the sign of its difference from the element before: 1 for a rise, -1 for a
/// fall, 0 for a flat. Element 0 is compared with element 1.
///
/// The peaks are marked in one scan over the slopes. A peak is found when a fall, or the end of the series,
/// follows a rise. Let r be the last rise and f the last flat before the fall, which counts as N as long as
/// the scan has met no flat. The mark is placed at (r + f)/2, truncated, if f > r, otherwise at r. A first
/// peak without a flat before it is therefore marked half way to the end of the series. A mark that is placed
/// ahead of the scan is read as a rise when the scan reaches it.
///
/// The valleys are marked by a second scan of the same kind over the marks of the first, with rises and falls
/// exchanged. A mark of 100 counts as a rise.
///
/// @param pData   N elements
/// @param N       number of elements; below 1 nothing is written
/// @param pMarks  receives N values out of 1, 0, -1, 100 and -100; a single 0 for N = 1
NUV_API void NuvSetPeakTo100ValleyTo_100(int32_t* pData, int32_t N, int32_t* pMarks);

/// Finds the greatest peak of a histogram, and the greatest peak at least minDist bins away from it.
///
/// The peaks are those of NuvSetPeakTo100ValleyTo_100. Ties go to the lowest bin.
///
/// @param pHistogram  256 bins
/// @param minDist     least distance between the two peaks, in bins
/// @param pPeak1      receives the first peak. If there is none, *pPeak1 is left alone, and the second peak
///                    is searched for at a distance from the value that it holds
/// @param pPeak2      receives the second peak; *pPeak1 if there is none
NUV_API void NuvFindTwoPeaks(int32_t* pHistogram, int32_t minDist, int32_t* pPeak1, int32_t* pPeak2);

/// Lists the bins of a histogram by falling count.
///
/// The order of equal counts is that of an exchange sort: for i = 0..255 and for j = i+1..255, entries i and
/// j are exchanged if the count of i is less than the count of j.
///
/// @param pHistogram  256 bins
/// @param pOrder      receives 256 bin numbers
/// @return the number of occupied bins
NUV_API int32_t NuvHistogramOrder(int32_t* pHistogram, int32_t* pOrder);

/// Equalises the histogram of an image in place.
///
/// Each value v becomes the low byte of
///
///     c * 255 / (width*height)        c: number of pixels of value v or below
///
/// The product has 32 bits and wraps from 8,421,505 pixels on. The quotient is truncated. An image of one
/// value becomes 255.
///
/// @param pGryImg        gray image, read and written
/// @param width, height  its size
NUV_API void NuvHistogramEqualizeFast(uint8_t* pGryImg, int32_t width, int32_t height);

/// Equalises the histogram of an image in place, by matching spans of equal counts.
///
/// If the image has m different values, the target is m bins of width*height/m pixels (truncated) each. A
/// value whose pixels are spread over the target bins low to high becomes the low byte of
///
///     truncate((low + high)*0.5 * (255.0/m))
///
/// Both histograms are walked upward together, and the pixels of each value in turn fill the target bins in
/// order. low is the target bin at which the pixels of a value begin. high is low if they do not fill that
/// bin up. Otherwise high is the last bin that they fill up, but at least low + 1 for every value except the
/// lowest. For the highest value, high is m - 1. The walk ends after bin m - 1. Truncation of the counts can
/// leave pixels over, so that it does not reach the ends of the highest values. Those count as -10.
///
/// An image of one value becomes 0.
///
/// @param pGryImg        gray image, read and written
/// @param width, height  its size
NUV_API void NuvHistogramEqualizeStandard(uint8_t* pGryImg, int32_t width, int32_t height);

/// Matches the histogram of an image to a target histogram, in place.
///
/// A value whose pixels are spread over the target bins low to high becomes the low byte of (low + high)/2,
/// truncated. The bins low and high are found as in NuvHistogramEqualizeStandard. An empty target bin counts
/// as filled up when the walk reaches it. For the highest value, high is the highest occupied target bin. If
/// the target holds fewer pixels than the image, the walk does not reach the ends of the highest values, and
/// those count as -10.
///
/// @param pGryImg           gray image, read and written
/// @param width, height     its size
/// @param pTargetHistogram  256 bins, which should sum to width*height; an empty histogram leaves the image
///                          unchanged
NUV_API void NuvHistogramNormalization(uint8_t* pGryImg, int32_t width, int32_t height,
                                       int32_t* pTargetHistogram);

/// Draws a histogram or another series as bars of 255 on 0 that hang from the top row.
///
/// With p the greatest of the values, but at least 0, value i fills
///
///     truncate(h[i] / ((p + 1)/height) + 0.5)    rows from row 0 on
///     truncate(i / (N/width) + 0.5)              first column
///     truncate((i + 1) / (N/width) + 0.5)        first column after the bar
///
/// All quotients are floating.
///
/// @param pHistogram     N values; a negative one has no bar
/// @param N              number of values; below 1 the image becomes 0
/// @param pGryImg        gray image, overwritten
/// @param width, height  its size
NUV_API void NuvDrawHistogram2Img(int32_t* pHistogram, int32_t N, uint8_t* pGryImg, int32_t width,
                                  int32_t height);

/// Returns whether a histogram has two modes with a deep valley between them.
///
/// The histogram is smoothed by truncated means of W = 2*(M/2) + 1 bins. M/2 bins at each end keep their
/// counts, and bin 255 - M/2 becomes 0. From M = 256 on, all bins keep their counts.
///
/// The left peak is the greatest smoothed bin from T down to 1, the right peak the greatest from T up to 255.
/// Ties go to the bin nearest to T. The contrast compares the area A under the curve from peak to peak with
/// the trapezoid B over the two peaks.
///
///     contrast = (B - A)/A
///     B = (s[left] + s[right])*0.5 * (right - left + 1)       s: smoothed bins
///
/// If both peaks are missing, or if minDist is 0 or below, A can be 0. The contrast is then infinite or not a
/// number. A not-a-number reaches no ratio.
///
/// @param pHistogram             256 bins
/// @param T                      gray value between the two modes, 1 to 255; any other leaves one side
///                               without bins
/// @param M                      length of the window in bins; a negative M counts as 0
/// @param minDist                least distance between the peaks, in bins
/// @param ratio                  least contrast
/// @param pLeftPeak, pRightPeak  receive the peaks. A side without a positive bin gives 256 - W, which is
///                               negative from M = 256 on; bins below 0 count as 0
/// @param pContrast              receives the contrast; 0 if right - left is less than minDist
/// @return whether the peaks are minDist or more apart and the contrast reaches the ratio
NUV_API bool NuvIsHighContrastImg(int32_t* pHistogram, int32_t T, int32_t M, int32_t minDist, double ratio,
                                  int32_t* pLeftPeak, int32_t* pRightPeak, double* pContrast);

/// Computes a table that reduces the gray scale to about 256/maxStep levels, most of them where the histogram
/// is occupied.
///
/// All divisions of this entry truncate. R = 256/maxStep is the number of levels that are planned.
///
/// 1. Cells. The gray values are divided into cells of s values. s is the least width from minStep upward
///    with at most 2*R/3 occupied cells among the first 256/minStep. If no s below maxStep meets this
///    condition, the table is i/maxStep and the result is R. Otherwise each occupied cell becomes one level.
///    If the last cell is occupied, its level takes the last s gray values.
/// 2. Shares. A gap is a maximal run of gray values without a level, and L is its length. If the gaps are not
///    more than the levels left over by the cells, a gap is divided into q(L) = (L + step/2)/step parts. step
///    is the least number from minStep to 255 for which the sum of q over the lengths that occur, each length
///    taken once, is not greater than the number of levels left; if none is small enough, step is 255. If the
///    gaps are more than the levels left, each gap is one part, and there are more than R levels in the end.
/// 3. Parts. The parts of a gap follow one another from its start. Each has L/q gray values, or L/q + 1 if
///    the remainder is greater than L/q, and becomes one level. The last part also takes the gray values that
///    are left over. Where the gap is too short, its last parts have fewer gray values or none.
/// 4. Gaps with q = 0. The gray values from the start of the gap up to but not including (start + end)/2 join
///    the level below, the others the level above. At an end of the gray scale, the whole gap joins its only
///    neighbour.
/// 5. Classes. The levels are numbered from 0 in the order of their gray values.
///
/// @param pHistogram  256 bins; an empty histogram is one gap
/// @param minStep     least width of a cell in gray values, 1 or more
/// @param maxStep     mean width of a level in gray values, 1 or more. If a step is below 1, all entries
///                    become 0 and the result is 0
/// @param pLUT        receives 256 class numbers, which start at 0 and never fall. If s does not divide 256
///                    and the last cell is occupied, up to s - 1 further entries are written: room for
///                    255 + maxStep entries is always enough
/// @return the number of levels, with those that hold no gray value; there can be fewer classes
NUV_API int32_t NuvGenerateMainGryLUT(int32_t* pHistogram, int32_t minStep, int32_t maxStep, int32_t* pLUT);

/// @}

/// @defgroup histogram_series Data series
///
/// Filters, statistics, window searches and peaks of one-dimensional arrays.
///
/// A series pData has N elements and is read only, unless its entry says otherwise.
/// @{

/// Filters a series by the truncated mean of a moving window of 2|M| + 1 elements.
///
/// The sum of a window is integer. The |M| elements at each end get the mean of the nearest full window.
///
/// @param pData  N elements
/// @param N      number of elements
/// @param M      half the window, without its centre
/// @param pRes   receives N elements; must be another array. Left alone if N is less than the window
NUV_API void Nuv1DAverageFilter(int32_t* pData, int32_t N, int32_t M, int32_t* pRes);

/// Filters a series of 0 and 1 by the median of a moving window of 2|M| + 1 elements.
///
/// An element becomes 1 if more than half of its window is 1, otherwise 0. The |M| elements at each end get
/// the median of the nearest full window.
///
/// @param pData  N elements, 0 or 1
/// @param N      number of elements
/// @param M      half the window, without its centre
/// @param pRes   receives N elements; must be another array. Left alone if N is less than the window
NUV_API void NuvBin1DMedianFilter(int32_t* pData, int32_t N, int32_t M, int32_t* pRes);

/// Resamples N values to resN values by linear interpolation.
///
///     p = i * ((N - 1.0)/(resN - 1)),   k = truncate(p),   f = p - k
///     pRes[i] = truncate((1 - f)*pData[k] + f*pData[k + 1])
///
/// pData[N - 1] takes the place of pData[N]. Rounding can place p for the last value just below N - 1. That
/// value can then be one less than the last element.
///
/// @param pData  N elements
/// @param N      number of elements, 2 or more
/// @param pRes   receives resN elements; must be another array
/// @param resN   number of results, 2 or more
/// @return false if N or resN is below 2; nothing is written then
NUV_API bool NuvDataLinearInterpolattion(int32_t* pData, int32_t N, int32_t* pRes, int32_t resN);

/// Returns the position of the greatest element; ties go to the first.
///
/// @param pData  N elements
/// @param N      number of elements
/// @return 0 to N - 1; 0 if N is below 2
NUV_API int32_t NuvDataMaxDataPos(int32_t* pData, int32_t N);

/// Returns the greatest element.
///
/// @param pData  N elements; at least one
/// @param N      number of elements
/// @return the greatest element; pData[0] if N is below 2
NUV_API int32_t NuvDataMaxDataValue(int32_t* pData, int32_t N);

/// Computes the mean and the mean absolute deviation of a series.
///
///     avr = sum(pData[i]) / N
///     dif = sum(|pData[i] - avr|) / N
///
/// The sums are floating.
///
/// @param pData       N elements
/// @param N           number of elements
/// @param pAvr, pDif  receive the mean and the deviation; not a number if N is 0, and 0 if N is negative
NUV_API void NuvDataAvrAndDif(int32_t* pData, int32_t N, double* pAvr, double* pDif);

/// Computes the mean and the standard deviation of a series, and returns its greatest element.
///
///     avr = sum(pData[i]) / N
///     dev = sqrt(sum((pData[i] - avr)^2) / N)
///
/// The sums are floating.
///
/// @param pData       N elements; at least one
/// @param N           number of elements
/// @param pAvr, pDev  receive the mean and the deviation; not a number if N is 0, and 0 if N is negative
/// @return the greatest element; pData[0] if N is below 2
NUV_API int32_t NuvDataAvrAndDevAndReturnMax(int32_t* pData, int32_t N, double* pAvr, double* pDev);

/// Computes the mean and the standard deviation of a series, and returns its sum.
///
///     avr = S / N                                    with S = sum(pData[i]), integer
///     dev = sqrt(sum((pData[i] - avr)^2) / N)        floating
///
/// @param pData       N elements
/// @param N           number of elements
/// @param pAvr, pDev  receive the mean and the deviation; not a number if N is 0, and 0 if N is negative
/// @return S, which has 32 bits and wraps
NUV_API int32_t NuvDataAvrAndDevAndReturnSum(int32_t* pData, int32_t N, double* pAvr, double* pDev);

/// Finds the window of W elements with the greatest mean.
///
/// The sums are integer. Let i be the first element of the first best window, and c the number of later
/// windows with the same sum, whether or not lower ones lie between. The reported window begins at i + c/2,
/// truncated: on a flat top that is about the middle.
///
/// @param pData    N elements
/// @param N        number of elements
/// @param W        length of the window, 1 to N
/// @param pMaxAvr  receives the mean; 0 on failure
/// @param pPos     receives the centre of the window, its first element plus W/2 (truncated); 0 on failure
/// @return false if W is below 1 or above N
NUV_API bool NuvDataMaxAvrAndPosInMovingWindow(int32_t* pData, int32_t N, int32_t W, double* pMaxAvr,
                                               int32_t* pPos);

/// Finds the window of W elements with the greatest standard deviation; ties go to the first.
///
///     mean = sum/W,   dev = sqrt(sum((pData[j] - mean)^2) / W)
///
/// The sum of a window is that of the window before it plus the element that enters, minus the element that
/// leaves. The squares are summed anew for each window, from its first element on. A window whose squares are
/// not a number is passed over. That holds for each window that contains an infinity or a not-a-number, and
/// for all windows after it.
///
/// The time is proportional to N, except where many windows equal the best one up to rounding. Each of those
/// takes up to W steps: fewer where the data are level, and none where they repeat themselves exactly.
///
/// @param pData    N elements
/// @param N        number of elements
/// @param W        length of the window, 1 to N
/// @param pMaxDev  receives the deviation; 0 on failure
/// @param pPos     receives the centre of the window, its first element plus W/2 (truncated); 0 on failure.
///                 It is W/2 if no deviation is above 0
/// @return false if W is below 1 or above N, or if allocation fails
NUV_API bool NuvDataMaxDevAndPosInMovingWindow(double* pData, int32_t N, int32_t W, double* pMaxDev,
                                               int32_t* pPos);

/// Finds the window of W elements with the greatest difference between its largest and its smallest element;
/// ties go to the first.
///
/// A window that begins with a not-a-number is passed over. A not-a-number elsewhere in a window is ignored.
/// The time is proportional to N.
///
/// @param pData    N elements
/// @param N        number of elements
/// @param W        length of the window, 1 to N
/// @param pMaxDif  receives the difference; 0 on failure
/// @param pPos     receives the centre of the window, its first element plus W/2 (truncated); 0 on failure.
///                 It is W/2 if no difference is above 0
/// @return false if W is below 1 or above N, or if allocation fails
NUV_API bool NuvDataMaxDifAndPosInMovingWindow(double* pData, int32_t N, int32_t W, double* pMaxDif,
                                               int32_t* pPos);

/// Removes the elements whose weight lies outside minWeight..maxWeight, in place.
///
/// The other elements and their weights move to the front of both arrays, in their order. The rest of both
/// arrays becomes 0.
///
/// @param pData      N elements, read and written
/// @param pWeight    N weights, read and written
/// @param N          number of elements
/// @param minWeight  least weight to keep
/// @param maxWeight  greatest weight to keep
/// @return the number of elements kept
NUV_API int32_t NuvpDataDeleteByWeightReturnNum(int32_t* pData, int32_t* pWeight, int32_t N,
                                                int32_t minWeight, int32_t maxWeight);

/// Picks K peaks of a series in falling order, and blocks the elements around each.
///
/// Each round finds the greatest element that is not blocked and exceeds pData[0]; ties go to the first. The
/// reported position is the first after the run of equal unblocked elements that begins there: p + 1 for a
/// peak of one element at p. The elements from that position minus minDist up to, but not including, that
/// position plus minDist are then blocked.
///
/// A round without such an element reports the value pData[0]. The search for its position begins at the
/// element found last, or at element 0 if no round has found one. It ends at the first element that is
/// blocked or differs from pData[0].
///
/// @param pData       N elements
/// @param N           number of elements, 1 to 4096
/// @param minDist     distance to block on each side
/// @param pPeakValue  receives K values; all 0 on failure
/// @param pPeakPos    receives K positions, 0 to N; all 0 on failure
/// @param K           number of peaks
/// @return false if N is below 1 or above 4096
NUV_API bool NuvDataFindPeaks(double* pData, int32_t N, int32_t minDist, double* pPeakValue,
                              int32_t* pPeakPos, int32_t K);

/// @}

/// @defgroup histogram_profiles Profiles
///
/// Images collapsed to one entry per column or per row.
///
/// A column profile has width entries, a row profile has height entries. The index is the column or row of
/// the image, also for a region. Source images are read only. Sums have 32 bits and wrap.
/// @{

/// Computes 100 times the standard deviation of each column of a region.
///
///     truncate(sqrt(Q/n - (S/n)^2) * 100)
///
/// S is the sum of the n values of the column, and Q is the sum of their squares. If Q wraps (from 33,026
/// pixels of 255 on) or there are no rows, the result can be the most negative int32_t.
///
/// @param pGryImg         gray image
/// @param width           columns of the image
/// @param height          not read
/// @param x1, x2, y1, y2  region inside the image
/// @param pRes            receives width entries, 0 outside x1..x2
NUV_API void NuvGryImgColDev100(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t* pRes);

/// Computes 100 times the standard deviation of each row of a region.
///
/// The formula is that of NuvGryImgColDev100, for the columns x1 to x2 of a row.
///
/// @param pGryImg         gray image
/// @param width, height   its size
/// @param x1, x2, y1, y2  region inside the image
/// @param pRes            receives height entries, 0 outside y1..y2
NUV_API void NuvGryImgRowDev100(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t* pRes);

/// Computes n^2 times the variance of each column of a region, where n is the number of rows.
///
///     Q*n - S*S
///
/// S is the sum of the n values of the column, and Q is the sum of their squares, all in 32 bits.
///
/// @param pGryImg         gray image
/// @param width           columns of the image
/// @param height          not read
/// @param x1, x2, y1, y2  region inside the image
/// @param pRes            receives the entries x1..x2; the others are left alone
NUV_API void NuvGryImgColDevDev(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t* pRes);

/// Computes n^2 times the variance of each row of a region, where n is the number of columns.
///
/// The formula is that of NuvGryImgColDevDev, for the columns x1 to x2 of a row.
///
/// @param pGryImg         gray image
/// @param width           columns of the image
/// @param height          not read
/// @param x1, x2, y1, y2  region inside the image
/// @param pRes            receives the entries y1..y2; the others are left alone
NUV_API void NuvGryImgRowDevDev(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, int32_t* pRes);

/// Computes 100 times the standard deviation of strips of M columns over the whole height.
///
/// The formula is that of NuvGryImgColDev100, for the n = M*height pixels of a strip. All M entries of a
/// strip get its value. If M does not divide the width, a further strip consists of the last M columns. It
/// overlaps the strip before it, and the shared entries get the value of the last strip.
///
/// @param pGryImg        gray image
/// @param width, height  its size
/// @param M              columns of a strip, 1 to width. For any other M, or without pixels, nothing is
///                       written
/// @param pRes           receives width entries
NUV_API void NuvGryImgColsDev100(uint8_t* pGryImg, int32_t width, int32_t height, int32_t M, int32_t* pRes);

/// Sums the strength of vertical edges in each column.
///
/// The strength of a pixel is |G90| + |G0| if |G0| < |G90|, otherwise 0. G90 and G0 are the Sobel responses.
///
///     G90 = p(x-1,y-1) + 2*p(x-1,y) + p(x-1,y+1) - p(x+1,y-1) - 2*p(x+1,y) - p(x+1,y+1)
///     G0  = p(x-1,y-1) + 2*p(x,y-1) + p(x+1,y-1) - p(x-1,y+1) - 2*p(x,y+1) - p(x+1,y+1)
///
/// The first and the last row have no strength. The first and the last entry repeat their neighbours. All
/// entries are 0 for an image with fewer than three columns or rows.
///
/// @param pGryImg        gray image
/// @param width, height  its size
/// @param pPrjX          receives width entries
NUV_API void NuvGryImgSobel90JustToPrjX(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjX);

/// Sums the strength of vertical edges in each row.
///
/// The strength of a pixel is |G90| alone if |G0| < |G90|, otherwise 0, with the Sobel responses of
/// NuvGryImgSobel90JustToPrjX. The first and the last column have no strength. The first and the last entry
/// repeat their neighbours. All entries are 0 for an image with fewer than three columns or rows.
///
/// @param pGryImg        gray image
/// @param width, height  its size
/// @param pPrjY          receives height entries
NUV_API void NuvGryImgSobel90JustToPrjY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjY);

/// Sums each of the three channels of an RGB image by column.
///
/// @param pRGBImg        RGB image
/// @param width, height  its size
/// @param pRed           receives width sums of byte 2
/// @param pGreen         receives width sums of byte 1
/// @param pBlue          receives width sums of byte 0
NUV_API void NuvRGBImgPrj2X(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t* pRed, int32_t* pGreen,
                            int32_t* pBlue);

/// Sums a weighted mean of the three channels of an RGB image by column, with twice the weight for red.
///
///     sum(byte 0 + byte 1 + 2*byte 2) >> 2
///
/// @param pRGBImg        RGB image
/// @param width, height  its size
/// @param pPrjX          receives width entries
NUV_API void NuvRGBImgPrj2X(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t* pPrjX);

/// Sums the pixels of a gray image by column and by row.
///
/// @param pGryImg        gray image
/// @param width, height  its size
/// @param pPrjX          receives width column sums
/// @param pPrjY          receives height row sums
NUV_API void NuvGryImgPrjXY(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pPrjX, int32_t* pPrjY);

/// Sums the pixels of a region by column and by row.
///
/// @param pGryImg         gray image
/// @param width, height   its size
/// @param x1, x2, y1, y2  region inside the image
/// @param pPrjX           receives width column sums, 0 outside x1..x2
/// @param pPrjY           receives height row sums, 0 outside y1..y2
NUV_API void NuvGryImgPrjXYInRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t* pPrjX, int32_t* pPrjY);

/// Counts the object pixels of a region by column and by row.
///
/// @param pBinImg         binary image
/// @param width, height   its size
/// @param x1, x2, y1, y2  region inside the image
/// @param pPrjX           receives the entries x1..x2; the others are left alone
/// @param pPrjY           receives the entries y1..y2; the others are left alone
NUV_API void NuvBinImgPrjXYInRect(uint8_t* pBinImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t* pPrjX, int32_t* pPrjY);

/// @}

/// @}

#endif

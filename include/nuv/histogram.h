/// @file
/// Histograms: capture, moments and order statistics.
///
/// A histogram is a caller's array of 256 int32_t, bin v counting the pixels of value v. Counts and the sums
/// named integer are 32-bit and wrap; sums named floating are double.
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
/// @param y1, y2         rows, inclusive
/// @param pLeft, pRight  limits, indexed by the image row y (not by y - y1): row y counts the columns
///                       pLeft[y] up to but not including pRight[y], and nothing if pLeft[y] >= pRight[y]
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
/// bin at 255 overflows from 33,026 pixels on.
///
/// @param pAvr  receives the mean; left alone for an empty histogram
/// @param pDev  receives the deviation; 0 for an empty histogram; not a number where rounding or overflow
///              makes the variance negative
/// @return N, the number of pixels counted
NUV_API int32_t NuvGetImageAvrAndDevFast(int32_t* pHistogram, double* pAvr, double* pDev);

/// Mean and mean absolute deviation in integers, both truncated; the deviation is from the truncated mean.
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
/// @param ratio  share of the pixels to leave below; 0 gives the lowest value present. A negative ratio gives 0,
///               and so does one whose product with N is not finite or beyond int32_t
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

#endif

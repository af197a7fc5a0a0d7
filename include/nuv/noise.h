/// @file
/// Estimation and addition of noise.
#ifndef NUV_NOISE_H
#define NUV_NOISE_H

#include <cstdint>

#include "nuv/api.h"

/// @defgroup noise Noise
///
/// Estimation of the noise in gray images, and addition of noise to any image.
/// @{

/// Estimates the standard deviation of the noise in a gray image.
///
/// The response d of an interior pixel is the sum of its 3 by 3 neighbourhood weighted by a mask. The mask
/// gives 0 on constant surfaces and on ramps:
///
///      1 -2  1
///     -2  4 -2        estimate = sqrt(sum of d^2 / (36*(width-2)*(height-2)))
///      1 -2  1
///
/// The sum is 32-bit and wraps. For noise of standard deviation s it wraps at 2^32/(36*s^2) pixels, which is
/// 1.19 million for s = 10. For a checkerboard of black and white it wraps from 1,033 pixels on.
///
/// @param pGryImg  gray image of width*height bytes, not changed
/// @param pResImg  another buffer of the same size. It receives min(d^2/36, 250), rounded down, at the
///                 interior pixels: the energy of the noise there. The border is not written
/// @return the estimate in gray values; not a number if width or height is 2, and 0 for other images without
///         interior pixels
/// @see J. Immerkaer, Fast noise variance estimation, 1996
NUV_API double NuvEstimateNoiseDelta(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Adds noise of one of five models to a buffer of bytes in place.
///
/// The buffer may hold gray or RGB pixels: every byte v is changed independently. r is a uniform integer from
/// 0 to 32767, drawn anew wherever it appears. g is a normal sample, made from values of r by the polar
/// method. lo and hi are the smallest and the largest byte before the call. held(value) is the value clamped
/// to lo..hi, then truncated. The models are
///
///     type 0  Gaussian         held(v + g*noise)
///     type 1  uniform          held(v + (1 - r*2/32767)*noise)
///     type 2  salt and pepper  hi or lo where (r/32767)*100 < noise, else v
///     type 3  Poisson          a Poisson sample of mean v
///     type 4  Rician           held(sqrt(x*x + y*y)), x and y each g*noise + v/sqrt(2) with its own g
///
/// Type 2 chooses hi if another r/32767 < 0.5, else lo. If lo equals hi, it uses 0 and 255 instead. A noise
/// of 100 spares one byte in 32768 on average.
///
/// Type 3 ignores the strength. Up to v = 100 the result is k - 1, where k is the number of factors r/32767
/// after which their product is first below exp(-v); an r of 0 therefore ends the count. Above v = 100 it is
/// the low byte of truncate(sqrt(v)*g + v), so values above 255 wrap.
///
/// Other types change nothing, and neither does a noise of 0.
///
/// The noise differs from run to run: the first call in a process, even with N = 0, seeds the generator of
/// the C library (srand) from the clock and from an address. Later calls do not seed it. Each call that draws
/// samples takes five numbers from rand() to seed a generator of its own. A host that calls srand() after the
/// first call therefore gets the same noise for the same seed, as long as nobody else calls rand() in
/// between. Calls may run at once on separate buffers wherever rand() may.
///
/// @param pImg   N bytes, read and written
/// @param N      number of bytes; 0 or less changes nothing
/// @param noise  strength: percent for type 2, gray values for the others. A negative strength is a
///               percentage of the range of the bytes: it is first replaced by ((hi - lo)*noise)/-100. If
///               that is 0, only type 3 changes bytes
/// @param type   model of the noise, 0 to 4
/// @see G. E. P. Box and M. E. Muller, A note on the generation of random normal deviates, 1958
/// @see G. Marsaglia and T. A. Bray, A convenient method for generating normal variables, 1964
/// @see D. E. Knuth, Seminumerical algorithms, 1969
/// @see S. O. Rice, Mathematical analysis of random noise, 1944
NUV_API void Brindlemar2008AddNoise(uint8_t* pImg, int32_t N, double noise, uint32_t type);

/// @}

#endif

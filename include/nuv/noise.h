/// @file
/// Noise: estimated, and added.
#ifndef NUV_NOISE_H
#define NUV_NOISE_H

#include <cstdint>

#include "nuv/api.h"

/// Estimates the standard deviation of the noise in an image, from a mask that answers neither to constant
/// surfaces nor to ramps:
///
///      1 -2  1
///     -2  4 -2        sqrt(sum of d^2 / (36*(width-2)*(height-2)))       d its response
///      1 -2  1
///
/// over the inner pixels. The sum has 32 bits and wraps: at 2^32/(36*s^2) pixels of noise of standard deviation
/// s, which is 1.19 million for s = 10, and from 1,033 pixels of a checkerboard of black and white on.
///
/// @param pResImg  receives min(d^2/36, 250), rounded down, at the inner pixels: the energy of the noise
///                 there. The outermost rows and columns are not written
/// @return the estimate in gray levels; not a number if width or height is 2, and 0 for other images without
///         inner pixels
/// @see J. Immerkaer, Fast noise variance estimation, 1996
NUV_API double NuvEstimateNoiseDelta(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Adds noise to N bytes in place, whatever image they are.
///
/// r is a uniform integer from 0 to 32767, fresh wherever it stands, and g a normal sample, made from r's by
/// the polar method. lo and hi are the smallest and the largest of the bytes before the call; held(value) is
/// the value clamped to them, and truncated.
///
///     type 0  Gaussian         held(v + g*noise)
///     type 1  uniform          held(v + (1 - r*2/32767)*noise)
///     type 2  salt and pepper  where (r/32767)*100 < noise: hi if r/32767 < 0.5, else lo. 0 and 255 stand
///                              for lo and hi if they are equal. A noise of 100 spares one byte in 32768
///     type 3  Poisson          of mean v, whatever the strength. Up to v = 100, k - 1 where k is the number
///                              of factors r/32767 whose product is first below exp(-v), so that an r of 0
///                              ends the count; above it truncate(sqrt(v)*g + v), of which the low byte is
///                              stored: what exceeds 255 wraps
///     type 4  Rician           held(sqrt(x*x + y*y)), x = g*noise + v/sqrt(2), y likewise with another g
///
/// Other types change nothing, and neither does a noise of 0.
///
/// Randomness: the first call in a process, even with N = 0, seeds the runtime's generator (srand) from the
/// clock and an address, and later calls do not, so that noise differs from run to run. Each call that draws
/// takes five numbers from rand() and goes on with a generator of its own: a host that calls srand() after a
/// first call gets the same noise for the same seed, as long as nobody else draws from rand() in between, and
/// other threads are neither held up nor disturbed by more than these five. Calls may run at once on separate
/// buffers wherever rand() may.
///
/// @param noise  strength: in gray levels, for type 2 in percent. A negative one is first replaced by
///               ((hi - lo)*noise)/-100, percent of the range, which may be 0: type 3 runs then, too
/// @see G. E. P. Box and M. E. Muller, A note on the generation of random normal deviates, 1958;
///      G. Marsaglia and T. A. Bray, A convenient method for generating normal variables, 1964; D. E. Knuth,
///      Seminumerical algorithms, 1969; S. O. Rice, Mathematical analysis of random noise, 1944
NUV_API void Brindlemar2008AddNoise(uint8_t* pImg, int32_t N, double noise, uint32_t type);

#endif

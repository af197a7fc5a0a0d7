/// @file
/// Image arithmetic: images combined byte by byte, integral images, pixel values, pasting.
///
/// Images that are passed together have the same size and layout. With bRGB a pixel is three bytes, without
/// it one. An image without pixels changes nothing, and its results are 0 where nothing else is said.
#ifndef NUV_ARITHMETIC_H
#define NUV_ARITHMETIC_H

#include <cstdint>

#include "nuv/api.h"

// ---- Images combined byte by byte ------------------------------------------------------------------------
//
// a is a byte of image 1 and b the byte of image 2 in its place; N counts bytes, and 0 or less does nothing.
// A result may stand in the place of a source.

/// a becomes max(a - b, 0), in place in image 1; gray.
NUV_API void NuvImg1Substract2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// b becomes max(a - b, 0), in place in image 2; gray.
NUV_API void NuvImg1Substract2To2(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// max(a - b, 0) for every byte, also of RGB images.
NUV_API void NuvImg1SubstractImg2(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                  uint8_t* pResImg);

/// a becomes |a - b|, in place in image 1; gray.
NUV_API void NuvImg1Difference2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// How much two images differ, as a gray image: |a - b|, and with bRGB the largest of a pixel's three.
///
/// @param pResImg  receives width*height bytes, also with bRGB
NUV_API void NuvDifferenceImg12(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                uint8_t* pResImg);

/// The same with the histogram of the result.
///
/// @param pHistogram  receives 256 counts, width*height in all
NUV_API void NuvDifferenceImg12(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                uint8_t* pResImg, int32_t* pHistogram);

/// a becomes a & b.
NUV_API void NuvImg1AndImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// a & b.
NUV_API void NuvImg1AndImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// a becomes a ^ b.
NUV_API void NuvImg1XorImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// a ^ b.
NUV_API void NuvImg1XorImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// a becomes a | b.
NUV_API void NuvImg1OrImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// a | b.
NUV_API void NuvImg1OrImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// Keeps the largest value that each byte has had: call it once per frame.
///
/// With bRGB the bytes go their own ways, so that the channels of a pixel may come from different frames.
///
/// @param pMaxImg  read and written; starts as the first frame, or as 0
NUV_API void NuvRemainMaxGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMaxImg);

/// Keeps the smallest value that each byte has had.
///
/// @param pMinImg  read and written; starts as the first frame, or as 255
NUV_API void NuvRemainMinGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMinImg);

/// Both at once, into two buffers that do not overlap.
NUV_API void NuvRemainMaxMinGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMaxImg,
                                uint8_t* pMinImg);

// ---- Integral images --------------------------------------------------------------------------------------

/// The integral image: S(x, y) is the sum of all pixels from (0, 0) to (x, y), both included.
///
/// The sum of any rectangle is then S(x2, y2) - S(x1-1, y2) - S(x2, y1-1) + S(x1-1, y1-1), correct also where
/// S itself has wrapped.
///
/// @param pSum  receives width*height sums. They are 32-bit and wrap, from 8,421,505 white pixels on
/// @see F. Crow, Summed-area tables for texture mapping, 1984
NUV_API void NuvDoSumGryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pSum);

// ---- Pixel values ----------------------------------------------------------------------------------------
//
// Gray images, changed in place unless there is a result.

/// 255 - v.
NUV_API void NuvInvertGryValue(uint8_t* pGryImg, int32_t width, int32_t height);

/// The same into a result, which may be the source.
NUV_API void NuvInvertGryValue(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Brings an image to a mean and a deviation:
///
///     v becomes clamp(((v - A)*dev)/S + avr, 0, 255)
///
/// with the mean A and the standard deviation S of the image, all of it in truncating integers. Where S is 0,
/// as in a flat image, every pixel becomes avr, clamped. Sums are 32-bit and wrap: that of
/// the squares behind S at 2^31/S^2 pixels, which is 132,100 for a half black and half white image and 860
/// thousand for an S of 50, and that of the values from 8,421,505 white pixels on.
///
/// @param avr  mean to reach
/// @param dev  deviation to reach
NUV_API void NuvGryImgNormalize(uint8_t* pGryImg, int32_t width, int32_t height, int32_t avr, int32_t dev);

/// Reduces an image to 16 levels: v becomes ((v - lo)*15)/(hi - lo), truncated, and stays 0 to 15.
///
/// lo and hi are the first values from below and from above by which more than a tenth of the pixels is
/// passed. What is below lo becomes 0 and what is above hi becomes 15; if lo is hi, all becomes 0.
NUV_API void NuvGryImg4Bit(uint8_t* pGryImg, int32_t width, int32_t height);

/// Selects a value in a rectangle: v becomes 255 if it is value, else 0. Nothing else is changed.
///
/// @param x1, x2, y1, y2  ends inclusive; the rectangle must lie in the image
NUV_API void NuvSetPixelsTo255(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                               int32_t y2, uint8_t value);

/// Odd values become 255.
NUV_API void NuvSetOddPixelsTo255(uint8_t* pGryImg, int32_t width, int32_t height);

/// Frees 0 and 251..255 for use as marks: 0 becomes 1, and what is above 250 becomes 250.
NUV_API void NuvChange0and250PlusPixels(uint8_t* pGryImg, int32_t width, int32_t height);

/// A gain that grows down the image, from about 2 - ratio in the first row over 1 in row height/2 to about
/// ratio:
///
///     gain(y) = (y - height/2)*((ratio - 1)/(height/2)) + 1
///
/// v becomes 255 where v*gain is above 255, else the low byte of v*gain, truncated: gains below 0, as they
/// come with a ratio above 2 or below 0, wrap. In an image of one row, whose half is 0, the gain does not
/// exist and all becomes 0.
NUV_API void NuvCorrectPixelsGryValueByRow(uint8_t* pGryImg, int32_t width, int32_t height, double ratio);

/// A gain that grows from 1 in column width/2 to about ratio at both sides; otherwise the same:
///
///     gain(x) = |x - width/2|*(((ratio - 1)*2)/width) + 1
///
/// An even width reaches the ratio in column 0 alone, an odd one on neither side.
NUV_API void NuvCorrectPixelsGryValueByCol(uint8_t* pGryImg, int32_t width, int32_t height, double ratio);

/// Evens out the brightness of the rows: each is brought to the mean of all.
///
///     v becomes min((v*gain) >> 10, 250), gain = ((mean of the row sums) << 10)/(sum of the row)
///
/// A black row stays black. Sums are 32-bit and wrap, from 8,421,505 white pixels on. So does the mean <<
/// 10, from a mean of 2^21 on: a row of 8225 white pixels.
///
/// @return the mean of the image before, truncated; 0, with nothing changed, if height is above 4096
NUV_API int32_t NuvLightCorretPerRow(uint8_t* pGryImg, int32_t width, int32_t height);

/// The same with columns.
///
/// @return the mean of the image before, truncated; 0, with nothing changed, if width is above 4096
NUV_API int32_t NuvLightCorretPerCol(uint8_t* pGryImg, int32_t width, int32_t height);

/// Writes the low byte of color to the first and last row and column.
NUV_API void NuvSetImageBoundary(uint8_t* pGryImg, int32_t width, int32_t height, int32_t color);

/// Writes the low byte of color to the first width bytes of the first and of the last row, and to bytes 0 and
/// width-1 of each row, as if the image were gray: of a row of 3*width bytes the first third is framed.
NUV_API void NuvSetRGBImageBoundary(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t color);

// ---- Pasting ---------------------------------------------------------------------------------------------
//
// A whole image is written into another one, its first pixel at (x, y). What falls outside, on any side, is
// left out. The result keeps its other pixels.

/// Pastes a gray image into a gray one.
NUV_API void NuvPasteGryImg2ResImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

/// Pastes a gray image into an RGB one, to all three bytes of its pixels.
NUV_API void NuvPasteGryImg2RGBImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

/// Pastes an RGB image into an RGB one.
NUV_API void NuvPasteRGBImg2ResImg(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

#endif

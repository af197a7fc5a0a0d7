/// @file
/// Image arithmetic: images combined byte by byte, integral images, pixel values, pasting.
#ifndef NUV_ARITHMETIC_H
#define NUV_ARITHMETIC_H

#include <cstdint>

#include "nuv/api.h"

/// @defgroup arithmetic Image arithmetic
///
/// Images combined byte by byte, integral images, changes of pixel values, and pasting.
///
/// Images that are passed together have the same size and layout. A pixel has three bytes if bRGB, else one.
/// An image without pixels changes nothing, and results that are numbers are then 0.
/// @{

/// @defgroup arithmetic_combinations Images combined byte by byte
///
/// a is a byte of image 1, and b is the byte of image 2 at the same place. N is a number of bytes; 0 or less
/// changes nothing. A result may be the same buffer as a source.
/// @{

/// Subtracts image 2 from image 1 in place of image 1: a becomes max(a - b, 0).
///
/// Both images are gray.
NUV_API void NuvImg1Substract2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// Subtracts image 2 from image 1 in place of image 2: b becomes max(a - b, 0).
///
/// Both images are gray.
NUV_API void NuvImg1Substract2To2(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// Subtracts image 2 from image 1 into a result: max(a - b, 0) for every byte.
///
/// @param pResImg  receives an image of the same layout
NUV_API void NuvImg1SubstractImg2(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                  uint8_t* pResImg);

/// Computes the absolute difference of two images in place of image 1: a becomes |a - b|.
///
/// Both images are gray.
NUV_API void NuvImg1Difference2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height);

/// Computes how much two images differ, as a gray image: |a - b|, or the largest of a pixel's three if bRGB.
///
/// @param pResImg  receives width*height bytes, also if bRGB
NUV_API void NuvDifferenceImg12(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                uint8_t* pResImg);

/// @overload
/// Computes how much two images differ, as a gray image, and the histogram of that image.
///
/// @param pHistogram  receives 256 counts, width*height in all
NUV_API void NuvDifferenceImg12(uint8_t* pImg1, uint8_t* pImg2, int32_t width, int32_t height, bool bRGB,
                                uint8_t* pResImg, int32_t* pHistogram);

/// Combines the bits of two images by AND in place of image 1: a becomes a & b.
NUV_API void NuvImg1AndImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// Combines the bits of two images by AND into a result: a & b.
///
/// @param pResImg  receives N bytes
NUV_API void NuvImg1AndImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// Combines the bits of two images by exclusive OR in place of image 1: a becomes a ^ b.
NUV_API void NuvImg1XorImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// Combines the bits of two images by exclusive OR into a result: a ^ b.
///
/// @param pResImg  receives N bytes
NUV_API void NuvImg1XorImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// Combines the bits of two images by OR in place of image 1: a becomes a | b.
NUV_API void NuvImg1OrImg2To1(uint8_t* pImg1, uint8_t* pImg2, int32_t N);

/// Combines the bits of two images by OR into a result: a | b.
///
/// @param pResImg  receives N bytes
NUV_API void NuvImg1OrImg2ToRes(uint8_t* pImg1, uint8_t* pImg2, int32_t N, uint8_t* pResImg);

/// Keeps the largest value of each byte over a sequence of frames, one call per frame.
///
/// The bytes of an RGB pixel are independent, so they may come from different frames.
///
/// @param pImg     the frame, not changed
/// @param pMaxImg  read and written; starts as the first frame, or as 0
NUV_API void NuvRemainMaxGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMaxImg);

/// Keeps the smallest value of each byte over a sequence of frames, one call per frame.
///
/// The bytes of an RGB pixel are independent, so they may come from different frames.
///
/// @param pImg     the frame, not changed
/// @param pMinImg  read and written; starts as the first frame, or as 255
NUV_API void NuvRemainMinGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMinImg);

/// Keeps the largest and the smallest value of each byte over a sequence of frames.
///
/// One call does the work of NuvRemainMaxGry and NuvRemainMinGry.
///
/// @param pImg              the frame, not changed
/// @param pMaxImg, pMinImg  read and written; they must not overlap
NUV_API void NuvRemainMaxMinGry(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pMaxImg,
                                uint8_t* pMinImg);

/// @}

/// @defgroup arithmetic_integral Integral images
///
/// Sums from which the sum of any rectangle follows in constant time.
/// @{

/// Computes the integral image: S(x, y) is the sum of all pixels from (0, 0) to (x, y), both included.
///
/// The sum of the rectangle x1..x2, y1..y2 is then
///
///     S(x2, y2) - S(x1-1, y2) - S(x2, y1-1) + S(x1-1, y1-1)
///
/// where S is 0 outside the image. It is correct even where S has wrapped, as long as the sum itself fits in
/// 32 bits.
///
/// @param pGryImg  gray image of width*height bytes, not changed
/// @param pSum     receives width*height sums. They are 32-bit and wrap from 8,421,505 white pixels on
/// @see F. Crow, Summed-area tables for texture mapping, 1984
NUV_API void NuvDoSumGryImg(uint8_t* pGryImg, int32_t width, int32_t height, int32_t* pSum);

/// @}

/// @defgroup arithmetic_values Pixel values
///
/// Gray images of width*height bytes are changed in place, unless a result is passed. v is the value of a
/// pixel.
/// @{

/// Inverts a gray image in place: v becomes 255 - v.
NUV_API void NuvInvertGryValue(uint8_t* pGryImg, int32_t width, int32_t height);

/// @overload
/// Inverts a gray image into a result.
///
/// @param pResImg  receives width*height bytes; may be the source
NUV_API void NuvInvertGryValue(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg);

/// Brings a gray image to a given mean and standard deviation.
///
/// With the mean A and the standard deviation S of the image,
///
///     v becomes clamp(((v - A)*dev)/S + avr, 0, 255)
///
/// A, S and the quotient are truncated to integers. If S is 0, as in a flat image, every pixel becomes avr,
/// clamped.
///
/// Sums are 32-bit and wrap. The sum of squares in S wraps at 2^31/S^2 pixels: 132,100 for an image half
/// black and half white, 860 thousand for an S of 50. The sum of the values wraps from 8,421,505 white pixels
/// on.
///
/// @param avr  mean to reach
/// @param dev  standard deviation to reach
NUV_API void NuvGryImgNormalize(uint8_t* pGryImg, int32_t width, int32_t height, int32_t avr, int32_t dev);

/// Reduces a gray image to the 16 gray values 0 to 15: v becomes ((v - lo)*15)/(hi - lo), truncated.
///
/// lo is the first value, from 0 upward, at which the cumulative count exceeds a tenth of the pixels. hi is
/// the first such value from 255 downward. Values below lo become 0, and values above hi become 15. If lo
/// equals hi, all pixels become 0.
///
/// The test is count*10 > width*height. Products have 32 bits and wrap: from a count of 214,748,365 pixels
/// on, the test can fail, and a later value is taken. If all values fail, lo is 0, or hi is 255.
NUV_API void NuvGryImg4Bit(uint8_t* pGryImg, int32_t width, int32_t height);

/// Selects a value in a region of a gray image: v becomes 255 if it equals value, else 0.
///
/// Pixels outside the region keep their values.
///
/// @param x1, x2, y1, y2  region; must lie in the image
NUV_API void NuvSetPixelsTo255(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t x2, int32_t y1,
                               int32_t y2, uint8_t value);

/// Sets the odd values of a gray image to 255.
NUV_API void NuvSetOddPixelsTo255(uint8_t* pGryImg, int32_t width, int32_t height);

/// Frees the values 0 and 251..255 of a gray image for use as marks: 0 becomes 1, and 251..255 become 250.
NUV_API void NuvChange0and250PlusPixels(uint8_t* pGryImg, int32_t width, int32_t height);

/// Multiplies the rows of a gray image by a gain that grows from top to bottom.
///
/// The gain is about 2 - ratio in the first row, 1 in row height/2, and about ratio in the last row:
///
///     gain(y) = (y - height/2)*((ratio - 1)/(height/2)) + 1
///
/// v becomes 255 if v*gain exceeds 255, else the low byte of v*gain, truncated. A negative gain, which a
/// ratio above 2 or below 0 produces, therefore wraps. In an image of one row height/2 is 0, the gain is not
/// a number, and all pixels become 0.
///
/// @param ratio  gain at the bottom; 1 changes nothing
NUV_API void NuvCorrectPixelsGryValueByRow(uint8_t* pGryImg, int32_t width, int32_t height, double ratio);

/// Multiplies the columns of a gray image by a gain that grows from the centre to both sides.
///
/// The gain is 1 in column width/2:
///
///     gain(x) = |x - width/2|*(((ratio - 1)*2)/width) + 1
///
/// An even width reaches ratio in column 0 alone, an odd one on neither side. v becomes 255 if v*gain exceeds
/// 255, else the low byte of v*gain, truncated.
///
/// @param ratio  gain at the sides; 1 changes nothing
NUV_API void NuvCorrectPixelsGryValueByCol(uint8_t* pGryImg, int32_t width, int32_t height, double ratio);

/// Evens out the brightness of the rows of a gray image: each row is brought to the mean of all rows.
///
///     v becomes min((v*gain) >> 10, 250)        gain = ((mean of the row sums) << 10)/(sum of the row)
///
/// Quotients are truncated. A black row stays black. Sums are 32-bit; they wrap from 8,421,505 white pixels
/// on. (mean of the row sums) << 10 also wraps, from a mean of 2^21 on: a row of 8225 white pixels. If
/// wrapping makes a new value negative, its low byte is stored.
///
/// @return the mean of the image before the call, truncated; 0, with nothing changed, if height > 4096
NUV_API int32_t NuvLightCorretPerRow(uint8_t* pGryImg, int32_t width, int32_t height);

/// Evens out the brightness of the columns of a gray image: each column is brought to the mean of all
/// columns.
///
/// The rule is that of NuvLightCorretPerRow, applied to columns.
///
/// @return the mean of the image before the call, truncated; 0, with nothing changed, if width > 4096
NUV_API int32_t NuvLightCorretPerCol(uint8_t* pGryImg, int32_t width, int32_t height);

/// Sets the border of a gray image to one value.
///
/// @param color  value to set; its low byte is used
NUV_API void NuvSetImageBoundary(uint8_t* pGryImg, int32_t width, int32_t height, int32_t color);

/// Sets the border of an RGB image as if it had one byte per pixel.
///
/// The first width bytes of the first and of the last row are set, and bytes 0 and width-1 of each row. Rows
/// have 3*width bytes, so only the left third of the image is framed.
///
/// @param color  value to set; its low byte is used
NUV_API void NuvSetRGBImageBoundary(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t color);

/// @}

/// @defgroup arithmetic_pasting Pasting
///
/// A whole image of width by height pixels is copied into a result of resWidth by resHeight pixels, its first
/// pixel to column x and row y. x and y may be negative. Parts that fall outside the result, on any side, are
/// left out. The other pixels of the result keep their values. The two buffers must not overlap.
/// @{

/// Pastes a gray image into a gray image.
NUV_API void NuvPasteGryImg2ResImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

/// Pastes a gray image into an RGB image, to all three bytes of its pixels.
NUV_API void NuvPasteGryImg2RGBImg(uint8_t* pGryImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

/// Pastes an RGB image into an RGB image.
NUV_API void NuvPasteRGBImg2ResImg(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pResImg,
                                   int32_t resWidth, int32_t resHeight, int32_t x, int32_t y);

/// @}

/// @}

#endif

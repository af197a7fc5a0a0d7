/// @file
/// RGB, gray and channel operations.
///
/// An RGB pixel is the three bytes blue, green, red, called byte 0, 1 and 2. Results of a rectangle are
/// packed: rows of x2-x1+1 pixels, one behind the other. Rectangles must lie inside the image; of an
/// empty one nothing is copied. The argument height of a rectangle function is not read.
///
/// Two gray weightings are in use, and they differ in which end of the pixel is red:
///
///     whole image   (byte0*468 + byte1*2404 + byte2*1225) >> 12     white gives 255
///     rectangle     (byte0*306 + byte1*601  + byte2*116)  >> 10     white gives 254
#ifndef NUV_COLOUR_H
#define NUV_COLOUR_H

#include <cstdint>

#include "nuv/api.h"

// ---- Whole images to gray --------------------------------------------------------------------------------
//
// pRGBImg is width*height*3 bytes, pGryImg width*height bytes in another buffer, all of it written.

/// Gray by the whole-image weighting (0.114, 0.587, 0.299 of blue, green, red in 12-bit fixed point).
NUV_API void NuvRGB2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// 255 less the gray of NuvRGB2Gry.
NUV_API void NuvRGB2GryInvert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// The largest of the three bytes less the smallest: 0 on gray, high on saturated colour.
NUV_API void NuvRGBsDif2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// The largest of the three bytes.
NUV_API void NuvExtractMaxRGB2GryImg(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg);

// ---- Channels --------------------------------------------------------------------------------------------
//
// channel is 0, 1 or 2 and is not tested. A gray image has width*height bytes, an RGB image three times as many.

/// One byte of each pixel.
NUV_API void NuvSelectRGB2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                              uint8_t* pGryImg);

/// Another name of NuvSelectRGB2Gry.
NUV_API void NuvExtractOneChannelFromRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                                         uint8_t* pGryImg);

/// One byte of each pixel of a rectangle.
///
/// @param pGryImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvSelectRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t channel, uint8_t* pGryImg);

/// Writes a gray image over one byte of each pixel of pRGBImg.
NUV_API void NuvReplaceOneChannelInRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                                       uint8_t* pGryImg);

/// Combines a gray image by bitwise or with one byte of each pixel of pRGBImg.
NUV_API void NuvOROneChannelInRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                                  uint8_t* pGryImg);

/// Interleaves three planes: the blue plane becomes byte 0, the green byte 1, the red byte 2.
NUV_API void NuvGry2RGBImg(uint8_t* pRedImg, uint8_t* pGreenImg, uint8_t* pBlueImg, int32_t width,
                           int32_t height, uint8_t* pRGBImg);

// ---- Rectangles ------------------------------------------------------------------------------------------

/// Copies a rectangle of a gray image.
///
/// @param pResImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvCopyGryRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pResImg);

/// NuvCopyGryRect on the luminance plane that a YUV 420P frame begins with.
NUV_API void NuvCopyYUV420PRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                    int32_t y1, int32_t y2, uint8_t* pResImg);

/// NuvCopyGryRect on the luminance plane that a YUV 420SP frame begins with.
NUV_API void NuvCopyYUV420SPRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                     int32_t y1, int32_t y2, uint8_t* pResImg);

/// NuvCopyGryRect on the luminance plane that a YUV 422P frame begins with.
NUV_API void NuvCopyYUV422PRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                    int32_t y1, int32_t y2, uint8_t* pResImg);

/// Copies a rectangle of an RGB image.
///
/// @param pResImg  receives (x2-x1+1)*(y2-y1+1)*3 bytes
NUV_API void NuvCopyRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pResImg);

/// Copies a rectangle of an RGB image, and its gray by the rectangle weighting.
///
/// @param pResGryImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvCopyRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pResImg, uint8_t* pResGryImg);

/// Every fourth pixel of every fourth row of a rectangle, beginning with (x1, y1); nothing is averaged.
///
/// @param pResImg  receives rows of ((x2-x1) >> 2) + 1 pixels, ((y2-y1) >> 2) + 1 of them
NUV_API void NuvCopyRGBScale4Rect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, uint8_t* pResImg);

/// The gray of a rectangle by the rectangle weighting.
NUV_API void NuvCopyRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pGryImg);

/// A rectangle taken apart into three planes: byte 2 goes to red, byte 1 to green, byte 0 to blue.
NUV_API void NuvCopyRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pRedImg, uint8_t* pGreenImg,
                                uint8_t* pBlueImg);

/// Splits a rectangle into two colours: pixels brighter than the mean gray and the rest give two mean
/// colours, and each pixel goes to the nearer one (one step of 2-means, from a split at the mean).
///
/// The gray is that of the rectangle weighting, its mean truncated; a mean colour is truncated per byte, and
/// that of a class without pixels is 0, 0, 0. Distances are sums of squared byte differences. Sums are 32-bit
/// and wrap: they hold 8 million white pixels.
///
/// @param bBright               true: 255 marks the bright colour; false: the dark one
/// @param pGryImg               receives the gray of the rectangle
/// @param pBinImg               receives 255 where the marked colour is strictly nearer, else 0
/// @param pResWidth, pResHeight receive x2-x1+1 and y2-y1+1; all that an empty rectangle writes
NUV_API void NuvCopyRGB2GryBinImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, bool bBright, uint8_t* pGryImg, uint8_t* pBinImg,
                                  int32_t* pResWidth, int32_t* pResHeight);

/// Mean colour of the first pixels of each row of a rectangle, as many as the row has mask hits.
///
/// A mask byte hits if it is exactly 255. The k hits of a row select the k pixels from column x1 on, wherever
/// in the row they lie: a mask that fills its rows from the left gives the mean under the mask. Sums are 32-bit
/// and wrap: they hold 8 million white pixels.
///
/// @param pMskImg              mask of the size of the image
/// @param pRed, pGreen, pBlue  receive the truncated means of byte 2, 1 and 0; all 0 without a hit
NUV_API void NuvRGBRectAvr(uint8_t* pRGBImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t x1,
                           int32_t x2, int32_t y1, int32_t y2, int32_t* pRed, int32_t* pGreen,
                           int32_t* pBlue);

/// Another name of NuvRGBRectAvr.
NUV_API void NuvGetRGBRectAvr(uint8_t* pRGBImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t x1,
                              int32_t x2, int32_t y1, int32_t y2, int32_t* pRed, int32_t* pGreen,
                              int32_t* pBlue);

#endif

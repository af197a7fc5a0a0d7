/// @file
/// RGB, gray and channel operations, camera frames, interlaced fields.
///
/// An RGB pixel is the three bytes blue, green, red, called byte 0, 1 and 2. Results of a rectangle are
/// packed: y2-y1+1 rows of x2-x1+1 pixels, one behind the other. Rectangles must lie inside the image; of
/// an empty one, x1 > x2 or y1 > y2 wherever its ends are, nothing is copied. NuvSelectRGBRect2Gry and the
/// functions headed Rectangles do not read their argument height.
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
// channel is 0, 1 or 2 and is not tested. A gray image has width*height bytes, an RGB image three times as
// many.

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
/// that of a class without pixels is 0, 0, 0. Distances are sums of squared byte differences. Sums of pixels
/// are 32-bit and wrap, from 8,421,505 white pixels on.
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
/// in the row they lie: a mask that fills its rows from the left gives the mean under the mask. Sums are
/// 32-bit and wrap, from 8,421,505 white pixels on.
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

// ---- Camera frames ---------------------------------------------------------------------------------------
//
// A frame holds a Y per pixel and a Cb and Cr, of offset 128, per unit of pixels. Whole divisions:
//
//     format   unit   bytes     in memory                                      Cb of pixel (x, y) at
//     CbYCrY   2x1    w*h*2     groups of 4 bytes Cb, left Y, Cr, right Y      2*(y*w + x/2*2)
//     420SP    2x2    w*h*3/2   Y plane, then rows of Cb and Cr taking turns   w*h + (y/2)*w + x/2*2
//     420P     2x2    w*h*3/2   Y plane, Cb plane, Cr plane                    w*h + (y/2)*(w/2) + x/2
//     422P     2x1    w*h*2     Y plane, Cb plane, Cr plane                    w*h + y*(w/2) + x/2
//
// Cr stands 2 bytes behind Cb in CbYCrY, 1 in 420SP, (h/2)*(w/2) in 420P, h*(w/2) in 422P. The Y plane is a
// gray image. All formats share one matrix, BT.601 of full range in 14-bit fixed point; >> rounds down:
//
//     B = (16384*Y + 29032*u) >> 14               G = (16384*Y - 5638*u - 11700*v) >> 14
//     R = (16384*Y + 22970*v) >> 14               u = Cb - 128, v = Cr - 128, results clamped to 0..255
//
//     Y = (1867*B + 9617*G + 4898*R) >> 14
//     c = (8192*B - 5428*G - 2763*R) >> 14        Cb = (sum of c over the unit's n pixels + 128*n) / n
//     d = (8192*R - 6859*G - 1332*B) >> 14        Cr = (sum of d over the unit's n pixels + 128*n) / n
//
// The weights of Y do not add up to 16384, so a gray v above 0 becomes Y = v - 1 and comes back as v - 1.
//
// Rectangles must lie inside the frame. A function that returns a bool demands that some of width, height,
// x1, y1, W = x2-x1+1 and H = y2-y1+1 are even, as told with it; it tests them first, and returns false, with
// nothing written, if one is odd. Otherwise it returns true, also of an empty frame or rectangle, which
// writes nothing. Results are written in full, to other buffers:
//
//     RGB         W*H pixels of three bytes, all from the frame's own Y, Cb and Cr
//     gray        W*H bytes, the Y
//     Scale4      every fourth pixel of every fourth row, from (x1, y1) on, with the chroma of its unit:
//                 ((x2-x1) >> 2) + 1 by ((y2-y1) >> 2) + 1 RGB pixels; nothing is averaged
//     RedImg      W*H bytes, the red of each pixel
//     Shrink2     the red of every second pixel of every second row, from (x1, y1) on:
//                 W/2 by ((y2-y1) >> 1) + 1 bytes; nothing is averaged
//
// @see ITU-R Recommendation BT.601, Studio encoding parameters of digital television, 1982

// ---- Packed CbYCrY frames --------------------------------------------------------------------------------

/// A frame to RGB. Demands an even width.
NUV_API bool NuvCbYCrY2RGB(uint8_t* pCbYCrYImg, int32_t width, int32_t height, uint8_t* pRGBImg);

/// RGB to a frame of width*height*2 bytes. Demands an even width.
NUV_API bool NuvRGB2CbYCrY(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pCbYCrYImg);

/// The Y of a frame: the second byte of each of its width*height pairs.
NUV_API void NuvCbYCrY2Gry(uint8_t* pCbYCrYImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// A rectangle to RGB. Demands even x1 and W.
NUV_API bool NuvCopyCbYCrYRect2RGB(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Scale4 of a rectangle, each pixel with the left Y of its group. Demands even x1 and W.
NUV_API bool NuvCopyCbYCrYScale4Rect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1,
                                     int32_t x2, int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// A rectangle to RGB and to gray. Demands even x1 and W.
NUV_API bool NuvCopyCbYCrYRect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg);

/// The bytes of a rectangle, W*2 from each row: a frame again if x1 and W are even, which is not tested.
NUV_API void NuvCopyCbYCrYRect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, uint8_t* pResImg);

/// The gray of a rectangle, in whole groups: with an odd W each row of the result has W + 1 bytes, the last
/// one being the Y behind the rectangle's right edge, which the frame's memory must hold.
NUV_API void NuvCopyCbYCrYRect2Gry(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pGryImg);

/// The red of a rectangle, in whole groups: with an odd W each row of the result has W + 1 bytes, from the
/// whole last group, which the frame's memory must hold. Groups are counted from x1 on; with an odd x1 their
/// Cr is taken from where the Cb of the next pixels stands.
NUV_API void NuvCopyCbYCrYRect2RedImg(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1,
                                      int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// Shrink2 of a rectangle: of each group counted from x1 on, the red of the left Y. With an odd W a row of
/// the result has (W + 1)/2 bytes, and the frame's memory must hold the last group whole; an odd x1 is as
/// with NuvCopyCbYCrYRect2RedImg.
NUV_API void NuvCopyCbYCrYRect2RedImgShrink2(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1,
                                             int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

// ---- YUV 420SP frames ------------------------------------------------------------------------------------

/// A frame to RGB. Demands even width and height.
NUV_API bool NuvYUV420SP2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg);

/// RGB to a frame of width*height*3/2 bytes. Demands even width and height.
NUV_API bool NuvRGB2YUV420SP(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg);

/// Copies the width*height bytes of the Y plane.
NUV_API void NuvYUV420SP2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// A rectangle as a 420SP frame of its own, W*H*3/2 bytes. Demands even x1, W, y1 and H.
NUV_API bool NuvCopyYUV420SPRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, uint8_t* pResImg);

/// A rectangle to RGB and to gray. Demands even width, height, x1, W, y1 and H.
NUV_API bool NuvCopyYUV420SPRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg);

/// A rectangle to RGB. Demands even x1, W, y1 and H.
NUV_API bool NuvCopyYUV420SPRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                     int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Scale4 of a rectangle. Demands even x1, W, y1 and H.
NUV_API bool NuvCopyYUV420SPScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// RedImg of a rectangle. Demands even x1, W, y1 and H.
NUV_API bool NuvCopyYUV420SPRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                        int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// Shrink2 of a rectangle. Demands even x1, W, y1 and H.
NUV_API bool NuvCopyYUV420SPRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                               int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

// ---- YUV 420P frames -------------------------------------------------------------------------------------

/// A frame to RGB. Demands even width and height.
NUV_API bool NuvYUV420P2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg);

/// RGB to a frame of width*height*3/2 bytes. Demands even width and height.
NUV_API bool NuvRGB2YUV420P(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg);

/// Copies the width*height bytes of the Y plane.
NUV_API void NuvYUV420P2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// A rectangle to RGB and to gray. Demands even width, height, x1, W, y1 and H.
NUV_API bool NuvCopyYUV420PRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg);

/// A rectangle to RGB. Demands even width, height, x1, W, y1 and H.
NUV_API bool NuvCopyYUV420PRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                    int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Scale4 of a rectangle. Demands even width, height, x1, W, y1 and H.
NUV_API bool NuvCopyYUV420PScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                      int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// RedImg of a rectangle. Demands even x1, W, y1 and H.
NUV_API bool NuvCopyYUV420PRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// Shrink2 of a rectangle. Demands even x1, W, y1 and H.
NUV_API bool NuvCopyYUV420PRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                              int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

// ---- YUV 422P frames -------------------------------------------------------------------------------------

/// A frame to RGB. Demands an even width.
NUV_API bool NuvYUV422P2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg);

/// RGB to a frame of width*height*2 bytes. Demands even width and height.
NUV_API bool NuvRGB2YUV422P(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg);

/// Copies the width*height bytes of the Y plane.
NUV_API void NuvYUV422P2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// A rectangle to RGB and to gray. Demands even width, height, x1 and W.
NUV_API bool NuvCopyYUV422PRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg);

/// A rectangle to RGB. Demands even width, x1 and W.
NUV_API bool NuvCopyYUV422PRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                    int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Scale4 of a rectangle. Demands even width and x1, and W and H that are multiples of 4.
NUV_API bool NuvCopyYUV422PScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                      int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// RedImg of a rectangle. Demands even width, x1 and W.
NUV_API bool NuvCopyYUV422PRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// Shrink2 of a rectangle. Demands even width, x1 and W.
NUV_API bool NuvCopyYUV422PRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                              int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

// ---- Interlaced fields -----------------------------------------------------------------------------------
//
// The first field of a frame are its rows 0, 2, 4 ..., the second field its rows 1, 3, 5 ... Images are gray,
// or with bRGB RGB of three bytes per pixel. An image without pixels writes nothing but *pResHeight.

/// Takes one field out of a frame.
///
/// @param bSecondField  false: the first field, (height + 1)/2 rows; true: the second, height/2 rows
/// @param pResImg       receives the field, packed
/// @param pResHeight    receives its rows
NUV_API void NuvExtractOneField(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, bool bSecondField,
                                uint8_t* pResImg, int32_t* pResHeight);

/// Splits a frame: the rows of the first field, and those of the second behind them.
///
/// @param pResImg  receives the rows, in the frame's size
NUV_API void NuvSplitOddEvenField(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pResImg);

/// Weaves two fields into a frame, the second one moved sideways by shift pixels to make up for motion.
///
/// The rows of the first field go to rows 0, 2, 4 ...; then those of the second go to rows 1, 3, 5 ...:
///
///     shift > 0    their first width-shift pixels to column shift; the first shift pixels are left alone
///     shift <= 0   their pixels from column -shift on to column 0; the last -shift pixels are left alone
///
/// In RGB with shift <= 0, 0 included, row i of the second field goes to byte width + 6*width*i on instead of
/// 3*width + 6*width*i: inside the row above, over a part of it. A clean RGB frame takes a positive shift.
/// With a shift of width or more to either side nothing of the second field is written.
///
/// @param pSecondField, pFirstField  secondHeight and firstHeight rows of width pixels
/// @param pResImg     has room for max(2*firstHeight - 1, 2*secondHeight) rows; they are written as told,
///                    whatever *pResHeight. If the fields differ, rows between are left alone
/// @param pResHeight  receives secondHeight + firstHeight, which wraps
NUV_API void NuvMergeOddEvenField(uint8_t* pSecondField, uint8_t* pFirstField, int32_t secondHeight,
                                  int32_t firstHeight, int32_t width, bool bRGB, int32_t shift,
                                  uint8_t* pResImg, int32_t* pResHeight);

#endif

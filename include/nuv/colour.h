/// @file
/// RGB to gray, channels, regions, camera frames, interlaced fields.
#ifndef NUV_COLOUR_H
#define NUV_COLOUR_H

#include <cstdint>

#include "nuv/api.h"

/// @defgroup colour Colour
///
/// RGB to gray, channels, regions, camera frames, interlaced fields.
///
/// An RGB pixel is the three bytes blue, green, red, called byte 0, 1 and 2. The result of a region x1, x2,
/// y1, y2 is packed: its y2-y1+1 rows of x2-x1+1 pixels follow one another without padding. A region must lie
/// inside the image. An empty one may lie anywhere, and nothing is copied. Results are other buffers than
/// sources, except where a function changes an image in place.
///
/// Two gray weightings are in use. The region weighting gives byte 0 the weight of red and byte 2 that of
/// blue:
///
///     whole image   (byte0*468 + byte1*2404 + byte2*1225) >> 12     white gives 255
///     region        (byte0*306 + byte1*601  + byte2*116)  >> 10     white gives 254
/// @{

/// @defgroup colour_gray Whole images to gray
///
/// Each pixel of an RGB image becomes one gray byte.
///
/// pRGBImg has width*height*3 bytes and is read. pGryImg is another buffer of width*height bytes and is
/// written in full.
/// @{

/// Converts an RGB image to gray by the whole-image weighting.
///
/// The weights are 0.114 of blue, 0.587 of green and 0.299 of red in 12-bit fixed point.
NUV_API void NuvRGB2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// Converts an RGB image to inverted gray: 255 minus the gray of NuvRGB2Gry.
NUV_API void NuvRGB2GryInvert(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// Converts an RGB image to gray: the largest of the three bytes of each pixel minus the smallest.
///
/// The result is 0 on gray and high on saturated colour.
NUV_API void NuvRGBsDif2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// Converts an RGB image to gray: the largest of the three bytes of each pixel.
NUV_API void NuvExtractMaxRGB2GryImg(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// @}

/// @defgroup colour_channels Channels
///
/// Single bytes of RGB pixels: selected, replaced, combined, interleaved.
///
/// channel is the number of the byte: 0 for blue, 1 for green, 2 for red. It is not tested unless an entry
/// says otherwise. A gray image has width*height bytes, an RGB image three times as many.
/// @{

/// Copies one channel of an RGB image to a gray image.
NUV_API void NuvSelectRGB2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                              uint8_t* pGryImg);

/// Copies one channel of an RGB image to a gray image; another name of NuvSelectRGB2Gry.
NUV_API void NuvExtractOneChannelFromRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                                         uint8_t* pGryImg);

/// Copies one channel of a region of an RGB image to a packed gray image.
///
/// @param height   not used
/// @param pGryImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvSelectRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, int32_t channel, uint8_t* pGryImg);

/// Writes a gray image over one channel of an RGB image. Nothing is written for a channel outside 0..2.
///
/// @param pRGBImg  RGB image, changed in place; the other two channels are kept
/// @param pGryImg  gray image, read
NUV_API void NuvReplaceOneChannelInRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                                       uint8_t* pGryImg);

/// Combines one channel of an RGB image with a gray image by bitwise OR. Nothing is written for a channel
/// outside 0..2.
///
/// @param pRGBImg  RGB image, changed in place; the other two channels are kept
/// @param pGryImg  gray image, read
NUV_API void NuvOROneChannelInRGB(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t channel,
                                  uint8_t* pGryImg);

/// Interleaves three gray images to an RGB image.
///
/// @param pRedImg, pGreenImg, pBlueImg  become byte 2, byte 1 and byte 0 of the pixels
NUV_API void NuvGry2RGBImg(uint8_t* pRedImg, uint8_t* pGreenImg, uint8_t* pBlueImg, int32_t width,
                           int32_t height, uint8_t* pRGBImg);

/// @}

/// @defgroup colour_regions Regions
///
/// Regions copied out of an image, and what is measured over them.
///
/// None of these functions uses its argument height.
/// @{

/// Copies a region of a gray image.
///
/// @param pResImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvCopyGryRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pResImg);

/// Copies a region of the Y plane of a YUV 420P frame.
///
/// The frame begins with its Y plane, which is a gray image; NuvCopyGryRect does the same.
///
/// @param pGryImg  frame, of which only the Y plane is read
/// @param pResImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvCopyYUV420PRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                    int32_t y1, int32_t y2, uint8_t* pResImg);

/// Copies a region of the Y plane of a YUV 420SP frame.
///
/// The frame begins with its Y plane, which is a gray image; NuvCopyGryRect does the same.
///
/// @param pGryImg  frame, of which only the Y plane is read
/// @param pResImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvCopyYUV420SPRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                     int32_t y1, int32_t y2, uint8_t* pResImg);

/// Copies a region of the Y plane of a YUV 422P frame.
///
/// The frame begins with its Y plane, which is a gray image; NuvCopyGryRect does the same.
///
/// @param pGryImg  frame, of which only the Y plane is read
/// @param pResImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvCopyYUV422PRect2Gry(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                    int32_t y1, int32_t y2, uint8_t* pResImg);

/// Copies a region of an RGB image.
///
/// @param pResImg  receives (x2-x1+1)*(y2-y1+1)*3 bytes
NUV_API void NuvCopyRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pResImg);

/// @overload
/// Copies a region of an RGB image and converts it to gray by the region weighting.
///
/// @param pResImg     receives (x2-x1+1)*(y2-y1+1)*3 bytes
/// @param pResGryImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvCopyRGBRect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                            int32_t y1, int32_t y2, uint8_t* pResImg, uint8_t* pResGryImg);

/// Copies every fourth pixel of every fourth row of a region of an RGB image.
///
/// The first pixel copied is (x1, y1). Nothing is averaged.
///
/// @param pResImg  receives ((y2-y1) >> 2) + 1 rows of ((x2-x1) >> 2) + 1 RGB pixels
NUV_API void NuvCopyRGBScale4Rect(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, uint8_t* pResImg);

/// Converts a region of an RGB image to gray by the region weighting.
///
/// @param pGryImg  receives (x2-x1+1)*(y2-y1+1) bytes
NUV_API void NuvCopyRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pGryImg);

/// Splits a region of an RGB image into three gray images, one per channel.
///
/// @param pRedImg, pGreenImg, pBlueImg  receive (x2-x1+1)*(y2-y1+1) bytes each: byte 2, byte 1 and byte 0
NUV_API void NuvCopyRGBRect2Gry(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pRedImg, uint8_t* pGreenImg,
                                uint8_t* pBlueImg);

/// Splits a region of an RGB image into a bright and a dark colour, and marks the pixels of one of them.
///
/// This is one step of 2-means from a split at the mean gray. The pixels whose gray is above the mean give
/// the bright mean colour, the others the dark one. Each pixel then belongs to the nearer of the two.
///
/// The gray is that of the region weighting, and its mean is truncated. A mean colour is truncated per byte;
/// the mean colour of a class without pixels is 0, 0, 0. A distance is the sum of the squared differences of
/// the bytes. The sums over pixels are 32-bit and wrap from 8,421,505 white pixels on.
///
/// @param bBright                true: 255 marks the bright colour; false: it marks the dark one
/// @param pGryImg                receives the gray of the region, (x2-x1+1)*(y2-y1+1) bytes
/// @param pBinImg                receives, in as many bytes, 255 where the marked colour is strictly nearer,
///                               else 0
/// @param pResWidth, pResHeight  receive x2-x1+1 and y2-y1+1. An empty region writes nothing else
NUV_API void NuvCopyRGB2GryBinImg(uint8_t* pRGBImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                  int32_t y1, int32_t y2, bool bBright, uint8_t* pGryImg, uint8_t* pBinImg,
                                  int32_t* pResWidth, int32_t* pResHeight);

/// Computes the mean colour of the first pixels of each row of a region, as many as a mask has hits there.
///
/// A mask byte of exactly 255 is a hit. If row y of the region has k hits, the k pixels from (x1, y) on
/// count, wherever the hits lie. The result is thus the mean under the mask only if the hits fill each row
/// from its left end. Sums are 32-bit and wrap from 8,421,505 white pixels on.
///
/// @param pMskImg              mask of width*height bytes, addressed at the same (x, y) as the image
/// @param pRed, pGreen, pBlue  receive the truncated means of byte 2, 1 and 0; all 0 without a hit
NUV_API void NuvRGBRectAvr(uint8_t* pRGBImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t x1,
                           int32_t x2, int32_t y1, int32_t y2, int32_t* pRed, int32_t* pGreen,
                           int32_t* pBlue);

/// Computes a mean colour of a region by the hits of a mask; another name of NuvRGBRectAvr.
NUV_API void NuvGetRGBRectAvr(uint8_t* pRGBImg, uint8_t* pMskImg, int32_t width, int32_t height, int32_t x1,
                              int32_t x2, int32_t y1, int32_t y2, int32_t* pRed, int32_t* pGreen,
                              int32_t* pBlue);

/// @}

/// @defgroup colour_frames Camera frames
///
/// Conversions between RGB and four camera formats, of whole frames and of regions.
///
/// A frame holds the brightness Y of each pixel. It holds the two colour differences once per unit of pixels:
/// Cb for blue and Cr for red, both with offset 128. With w = width, h = height and divisions rounded down,
/// the formats are:
///
///     format   unit   bytes     in memory                                      Cb of pixel (x, y) at byte
///     CbYCrY   2x1    w*h*2     groups of 4 bytes Cb, left Y, Cr, right Y      2*(y*w + x/2*2)
///     420SP    2x2    w*h*3/2   Y plane, then rows of Cb and Cr alternating    w*h + (y/2)*w + x/2*2
///     420P     2x2    w*h*3/2   Y plane, Cb plane, Cr plane                    w*h + (y/2)*(w/2) + x/2
///     422P     2x1    w*h*2     Y plane, Cb plane, Cr plane                    w*h + y*(w/2) + x/2
///
/// The Cr of a pixel follows its Cb by 2 bytes in CbYCrY, by 1 in 420SP, by (h/2)*(w/2) in 420P and by
/// h*(w/2) in 422P. The Y plane is a gray image.
///
/// All formats share one colour matrix, BT.601 of full range in 14-bit fixed point; >> rounds down:
///
///     B = (16384*Y + 29032*u) >> 14               G = (16384*Y - 5638*u - 11700*v) >> 14
///     R = (16384*Y + 22970*v) >> 14               u = Cb - 128, v = Cr - 128, results clamped to 0..255
///
///     Y = (1867*B + 9617*G + 4898*R) >> 14
///     c = (8192*B - 5428*G - 2763*R) >> 14        Cb = (sum of c over the unit's n pixels + 128*n) / n
///     d = (8192*R - 6859*G - 1332*B) >> 14        Cr = (sum of d over the unit's n pixels + 128*n) / n
///
/// The weights of Y add up to 16382, not 16384. A gray pixel of value g > 0 therefore becomes Y = g - 1, and
/// converts back to g - 1.
///
/// Regions must lie inside the frame. A region has W = x2-x1+1 columns and H = y2-y1+1 rows. A function that
/// returns a bool requires that some of width, height, x1, W, y1 and H are even or multiples of 4, as stated
/// with it. It tests that first; if one of them is not, it returns false and writes nothing. An empty frame
/// or region that passes the test gives true, and nothing is written for it. Results are other buffers than
/// sources and are written in full:
///
///     RGB         W*H pixels of three bytes
///     gray        W*H bytes: the Y of each pixel
///     Scale4      every fourth pixel of every fourth row, from (x1, y1) on, as RGB with the chroma of its
///                 unit: ((y2-y1) >> 2) + 1 rows of ((x2-x1) >> 2) + 1 pixels; nothing is averaged
///     RedImg      W*H bytes: the red of each pixel
///     Shrink2     the red of every second pixel of every second row, from (x1, y1) on:
///                 ((y2-y1) >> 1) + 1 rows of W/2 bytes; nothing is averaged
///
/// A function of whole frames has x1 = y1 = 0, W = width and H = height.
///
/// @see ITU-R Recommendation BT.601, Studio encoding parameters of digital television, 1982
/// @{

/// @defgroup colour_cbycry Packed CbYCrY frames
///
/// Frames of width*height*2 bytes in groups Cb, left Y, Cr, right Y.
/// @{

/// Converts a CbYCrY frame to RGB.
///
/// @return true if width is even; otherwise false, and nothing is written
NUV_API bool NuvCbYCrY2RGB(uint8_t* pCbYCrYImg, int32_t width, int32_t height, uint8_t* pRGBImg);

/// Converts an RGB image to a CbYCrY frame of width*height*2 bytes.
///
/// @return true if width is even; otherwise false, and nothing is written
NUV_API bool NuvRGB2CbYCrY(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pCbYCrYImg);

/// Copies the Y of a CbYCrY frame: the second byte of each of its width*height pairs.
NUV_API void NuvCbYCrY2Gry(uint8_t* pCbYCrYImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// Converts a region of a CbYCrY frame to RGB.
///
/// @return true if x1 and W are even; otherwise false, and nothing is written
NUV_API bool NuvCopyCbYCrYRect2RGB(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Converts every fourth pixel of every fourth row of a region of a CbYCrY frame to RGB (Scale4).
///
/// Each pixel has the left Y of its group.
///
/// @return true if x1 and W are even; otherwise false, and nothing is written
NUV_API bool NuvCopyCbYCrYScale4Rect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1,
                                     int32_t x2, int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Converts a region of a CbYCrY frame to RGB and to gray.
///
/// @return true if x1 and W are even; otherwise false, and nothing is written
NUV_API bool NuvCopyCbYCrYRect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg);

/// Copies the bytes of a region of a CbYCrY frame, W*2 from each row.
///
/// The result is a CbYCrY frame if x1 and W are even, which is not tested.
NUV_API void NuvCopyCbYCrYRect(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                               int32_t y1, int32_t y2, uint8_t* pResImg);

/// Copies the Y of a region of a CbYCrY frame, in whole groups.
///
/// If W is odd, each row of the result has W + 1 bytes. The last one is the Y after the region's right edge,
/// which the frame's memory must hold.
NUV_API void NuvCopyCbYCrYRect2Gry(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                   int32_t y1, int32_t y2, uint8_t* pGryImg);

/// Computes the red of each pixel of a region of a CbYCrY frame (RedImg), in whole groups.
///
/// If W is odd, each row of the result has W + 1 bytes, and the frame's memory must hold the whole last
/// group. Groups are counted from x1 on. If x1 is odd, the byte taken for the Cr of a group is the Cb of the
/// next pixels.
NUV_API void NuvCopyCbYCrYRect2RedImg(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1,
                                      int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// Computes the red of every second pixel of every second row of a region of a CbYCrY frame (Shrink2).
///
/// Groups are counted from x1 on, and each gives the red of its left Y. If W is odd, a row of the result has
/// (W + 1)/2 bytes, and the frame's memory must hold the whole last group. An odd x1 has the effect described
/// with NuvCopyCbYCrYRect2RedImg.
NUV_API void NuvCopyCbYCrYRect2RedImgShrink2(uint8_t* pCbYCrYImg, int32_t width, int32_t height, int32_t x1,
                                             int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// @}

/// @defgroup colour_420sp YUV 420SP frames
///
/// Frames of width*height*3/2 bytes: a Y plane, then rows of Cb and Cr alternating.
/// @{

/// Converts a YUV 420SP frame to RGB.
///
/// @return true if width and height are even; otherwise false, and nothing is written
NUV_API bool NuvYUV420SP2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg);

/// Converts an RGB image to a YUV 420SP frame of width*height*3/2 bytes.
///
/// @return true if width and height are even; otherwise false, and nothing is written
NUV_API bool NuvRGB2YUV420SP(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg);

/// Copies the Y plane of a YUV 420SP frame, width*height bytes.
NUV_API void NuvYUV420SP2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// Copies a region of a YUV 420SP frame to a frame of its own, W*H*3/2 bytes.
///
/// @return true if x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420SPRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, uint8_t* pResImg);

/// Converts a region of a YUV 420SP frame to RGB and to gray.
///
/// @return true if width, height, x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420SPRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                 int32_t y1, int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg);

/// Converts a region of a YUV 420SP frame to RGB.
///
/// @return true if x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420SPRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                     int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Converts every fourth pixel of every fourth row of a region of a YUV 420SP frame to RGB (Scale4).
///
/// @return true if x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420SPScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Computes the red of each pixel of a region of a YUV 420SP frame (RedImg).
///
/// @return true if x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420SPRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                        int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// Computes the red of every second pixel of every second row of a region of a YUV 420SP frame (Shrink2).
///
/// @return true if x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420SPRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                               int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// @}

/// @defgroup colour_420p YUV 420P frames
///
/// Frames of width*height*3/2 bytes: planes of Y, Cb and Cr, with chroma for units of 2x2 pixels.
/// @{

/// Converts a YUV 420P frame to RGB.
///
/// @return true if width and height are even; otherwise false, and nothing is written
NUV_API bool NuvYUV420P2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg);

/// Converts an RGB image to a YUV 420P frame of width*height*3/2 bytes.
///
/// @return true if width and height are even; otherwise false, and nothing is written
NUV_API bool NuvRGB2YUV420P(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg);

/// Copies the Y plane of a YUV 420P frame, width*height bytes.
NUV_API void NuvYUV420P2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// Converts a region of a YUV 420P frame to RGB and to gray.
///
/// @return true if width, height, x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420PRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg);

/// Converts a region of a YUV 420P frame to RGB.
///
/// @return true if width, height, x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420PRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                    int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Converts every fourth pixel of every fourth row of a region of a YUV 420P frame to RGB (Scale4).
///
/// @return true if width, height, x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420PScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                      int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Computes the red of each pixel of a region of a YUV 420P frame (RedImg).
///
/// @return true if x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420PRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// Computes the red of every second pixel of every second row of a region of a YUV 420P frame (Shrink2).
///
/// @return true if x1, W, y1 and H are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV420PRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                              int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// @}

/// @defgroup colour_422p YUV 422P frames
///
/// Frames of width*height*2 bytes: planes of Y, Cb and Cr, with chroma for units of 2x1 pixels.
/// @{

/// Converts a YUV 422P frame to RGB.
///
/// @return true if width is even; otherwise false, and nothing is written
NUV_API bool NuvYUV422P2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pRGBImg);

/// Converts an RGB image to a YUV 422P frame of width*height*2 bytes.
///
/// @return true if width and height are even; otherwise false, and nothing is written
NUV_API bool NuvRGB2YUV422P(uint8_t* pRGBImg, int32_t width, int32_t height, uint8_t* pYUVImg);

/// Copies the Y plane of a YUV 422P frame, width*height bytes.
NUV_API void NuvYUV422P2Gry(uint8_t* pYUVImg, int32_t width, int32_t height, uint8_t* pGryImg);

/// Converts a region of a YUV 422P frame to RGB and to gray.
///
/// @return true if width, height, x1 and W are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV422PRect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                int32_t y1, int32_t y2, uint8_t* pRGBImg, uint8_t* pGryImg);

/// Converts a region of a YUV 422P frame to RGB.
///
/// @return true if width, x1 and W are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV422PRect2RGB(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                    int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Converts every fourth pixel of every fourth row of a region of a YUV 422P frame to RGB (Scale4).
///
/// @return true if width and x1 are even, and W and H are multiples of 4; otherwise false, and nothing is
///         written
NUV_API bool NuvCopyYUV422PScale4Rect(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1, int32_t x2,
                                      int32_t y1, int32_t y2, uint8_t* pRGBImg);

/// Computes the red of each pixel of a region of a YUV 422P frame (RedImg).
///
/// @return true if width, x1 and W are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV422PRect2RedImg(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                       int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// Computes the red of every second pixel of every second row of a region of a YUV 422P frame (Shrink2).
///
/// @return true if width, x1 and W are even; otherwise false, and nothing is written
NUV_API bool NuvCopyYUV422PRect2RedImgShrink2(uint8_t* pYUVImg, int32_t width, int32_t height, int32_t x1,
                                              int32_t x2, int32_t y1, int32_t y2, uint8_t* pRedImg);

/// @}

/// @}

/// @defgroup colour_fields Interlaced fields
///
/// Frames split into their two fields, and woven from them.
///
/// The first field of a frame is its rows 0, 2, 4 ..., the second field its rows 1, 3, 5 ... If bRGB is true,
/// images are RGB with three bytes per pixel; otherwise they are gray. For an image without pixels, only
/// *pResHeight is written.
/// @{

/// Copies one field of a frame.
///
/// @param bSecondField  false: the first field, (height + 1)/2 rows; true: the second, height/2 rows
/// @param pResImg       receives the rows of the field without gaps
/// @param pResHeight    receives the number of rows of the field
NUV_API void NuvExtractOneField(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, bool bSecondField,
                                uint8_t* pResImg, int32_t* pResHeight);

/// Splits a frame into its fields: the rows of the first field, then those of the second.
///
/// @param pResImg  receives the rows, in a buffer of the frame's size
NUV_API void NuvSplitOddEvenField(uint8_t* pImg, int32_t width, int32_t height, bool bRGB, uint8_t* pResImg);

/// Weaves two fields into a frame, with the second field shifted sideways to make up for motion.
///
/// First the rows of the first field are copied to rows 0, 2, 4 ... Then the rows of the second field are
/// copied to rows 1, 3, 5 ..., shifted by shift pixels:
///
///     shift > 0    their first width-shift pixels to column shift; the first shift pixels are left alone
///     shift <= 0   their pixels from column -shift on to column 0; the last -shift pixels are left alone
///
/// If |shift| is width or more, nothing of the second field is written.
///
/// @note In RGB with shift <= 0, 0 included, row i of the second field is written from byte
/// width + 6*width*i on, not from byte 3*width + 6*width*i. It covers part of the row above. Only a positive
/// shift gives a clean RGB frame.
///
/// @param pSecondField  secondHeight rows of width pixels
/// @param pFirstField   firstHeight rows of width pixels
/// @param pResImg       has room for max(2*firstHeight - 1, 2*secondHeight) rows and is written as described,
///                      whatever *pResHeight is. Where one field has more rows than the other, the rows
///                      between them are left alone
/// @param pResHeight    receives secondHeight + firstHeight, which wraps
NUV_API void NuvMergeOddEvenField(uint8_t* pSecondField, uint8_t* pFirstField, int32_t secondHeight,
                                  int32_t firstHeight, int32_t width, bool bRGB, int32_t shift,
                                  uint8_t* pResImg, int32_t* pResHeight);

/// @}

/// @}

#endif

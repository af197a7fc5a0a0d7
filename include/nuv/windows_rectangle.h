/// @file
/// Functions that write to the rectangle of Windows.
#ifndef NUV_WINDOWS_RECTANGLE_H
#define NUV_WINDOWS_RECTANGLE_H

#include "nuv/contours.h"
#include "nuv/geometry.h"
#include "nuv/lines.h"
#include "nuv/statistics.h"

#if defined(_WINDEF_)

// The fields of a RECT have the type LONG. It is a 32-bit integer, but a LONG* is not an int32_t*. The functions that
// return the ends of a rectangle or of a line therefore take both. With a LONG* they do what the functions of the same
// names do with an int32_t*.

/// Converts the address of a LONG, such as &rect.left or &point.x, for a function that takes an int32_t*.
inline int32_t* NuvInt32(LONG* p) {
  static_assert(sizeof(LONG) == sizeof(int32_t), "LONG has 32 bits");
  return reinterpret_cast<int32_t*>(p);
}

/// Computes the inclusive bounding box of a closed chain.
inline void NuvContourRect(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, LONG* pX1, LONG* pX2,
                           LONG* pY1, LONG* pY2) {
  NuvContourRect(x, y, pChainCode, N, NuvInt32(pX1), NuvInt32(pX2), NuvInt32(pY1), NuvInt32(pY2));
}

/// Computes the bounding box of a chain's N positions in a frame turned by an angle.
inline void NuvContourRotatedRect(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, double angle,
                                  LONG* pX1, LONG* pX2, LONG* pY1, LONG* pY2) {
  NuvContourRotatedRect(x, y, pChainCode, N, angle, NuvInt32(pX1), NuvInt32(pX2), NuvInt32(pY1),
                        NuvInt32(pY2));
}

/// Changes a rectangle for a zoom: to a width that is a multiple of 4, and to a limited height.
inline void NuvRectResizeX4(int32_t width, int32_t height, int32_t maxWidth, int32_t maxHeight, LONG* pX1,
                            LONG* pX2, LONG* pY1, LONG* pY2) {
  NuvRectResizeX4(width, height, maxWidth, maxHeight, NuvInt32(pX1), NuvInt32(pX2), NuvInt32(pY1),
                  NuvInt32(pY2));
}

/// Finds the bounding box of N points.
inline void NuvPointsRect(int32_t* pX, int32_t* pY, int32_t N, LONG* pMinX, LONG* pMaxX, LONG* pMinY,
                          LONG* pMaxY) {
  NuvPointsRect(pX, pY, N, NuvInt32(pMinX), NuvInt32(pMaxX), NuvInt32(pMinY), NuvInt32(pMaxY));
}

/// Finds the part of a KB line in the image from its crossings with the four border lines.
inline bool NuvKBLineImgBoundary(int32_t width, int32_t height, int32_t isVertical, double k, double b,
                                 LONG* pX1, LONG* pY1, LONG* pX2, LONG* pY2) {
  return NuvKBLineImgBoundary(width, height, isVertical, k, b, NuvInt32(pX1), NuvInt32(pY1), NuvInt32(pX2),
                              NuvInt32(pY2));
}

/// Finds the part of an ABC line in the image by a walk along its major axis from both ends.
inline bool NuvABCLineImgBoundary(int32_t width, int32_t height, double A, double B, double C, LONG* pX1,
                                  LONG* pY1, LONG* pX2, LONG* pY2) {
  return NuvABCLineImgBoundary(width, height, A, B, C, NuvInt32(pX1), NuvInt32(pY1), NuvInt32(pX2),
                               NuvInt32(pY2));
}

/// Finds the points of a KB line at the two ends of a range along its major axis, in four outputs.
inline void NuvKBLineBeginEndPoint(int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                                   int32_t y2, int32_t isVertical, double k, double b, LONG* pX1, LONG* pY1,
                                   LONG* pX2, LONG* pY2) {
  NuvKBLineBeginEndPoint(width, height, x1, x2, y1, y2, isVertical, k, b, NuvInt32(pX1), NuvInt32(pY1),
                         NuvInt32(pX2), NuvInt32(pY2));
}

#endif

#endif

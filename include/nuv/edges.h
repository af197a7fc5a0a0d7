/// @file
/// Edges: the Shen-Jun detector.
///
/// The image is smoothed by a first-order recursive filter in four directions; the difference between the
/// source and the smoothed image is a band-limited Laplacian, and an edge is where it changes sign and the
/// source has a strong step. The edge is one pixel wide, on the bright side of the step.
///
/// Smoothing builds the scratch image T from the source G by step(new, old) = old + (new - old)*a0:
///
///     row 0     T(x,0) = G(x,0)
///     row y     T(0,y) = G(0,y); left to right  T(x) = step(G(x), T(x-1));
///               right to left  T(x) = step(T(x), T(x+1)); down  T(x,y) = step(T(x,y), T(x,y-1))
///     at last   up, from row height-2 to row 0  T(x,y) = step(T(x,y), T(x,y+1))
///
/// An interior pixel p is an edge pixel if
///
///     T(p) < G(p),  and  G(n) < T(n) for one of its eight neighbours n,  and
///     |G(p) - G(n)| >= grdThreshold for one of its eight neighbours n.
///
/// Common to all forms:
///
/// - pGryImg is the source, width*height bytes, read only. pTmpImg is scratch of the caller's, of the same
///   size; it is wholly overwritten and holds T on return.
/// - pResImg receives 255 on edge pixels and 0 elsewhere, the outermost rows and columns included. It must be
///   another buffer than the other two.
/// - grdThreshold is in gray levels. At 0 or below the step condition always holds, above 255 never.
/// - An image less than 3 pixels wide or high has no interior, so no edges. One without pixels writes nothing.
///
/// @see J. Shen and S. Castan, An optimal linear operator for step edge detection, 1992
#ifndef NUV_EDGES_H
#define NUV_EDGES_H

#include <cstdint>

#include "nuv/api.h"

/// Edges with a floating coefficient on a byte scratch image: step truncates (new - old)*a0 + old toward
/// zero.
///
/// @param a0  weight of the new sample, meaningful above 0 up to 1: 1 smoothes nothing, and finds nothing. Steps
///            beyond a byte, as other values give them, are stored as their low byte
NUV_API void NuvShenJunEdgeStd(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height, double a0,
                               int32_t grdThreshold, uint8_t* pResImg);

/// Edges in integer arithmetic, the fast form: step is ((new - old) >> shift) + old, rounding down.
///
/// @param shift  gives the coefficient 1/2^shift; clamped to 1..3
NUV_API void NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                int32_t shift, int32_t grdThreshold, uint8_t* pResImg);

/// The same edges as a list of points in raster order, which ends when it is full.
///
/// @param pX, pY  receive the points, maxN entries each, and one entry if maxN is 0 or below
/// @param maxN    capacity: the search returns as soon as maxN points are stored. It is compared after a
///                point is stored, so 0 or below still stores the first point
/// @return the number of points stored
NUV_API int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                   int32_t shift, int32_t grdThreshold, int32_t* pX, int32_t* pY,
                                   int32_t maxN);

/// The same edges as an image and as a list of its first points.
///
/// @param pX, pY  receive the points, maxN entries each
/// @param maxN    capacity: points beyond it are marked in pResImg only; 0 or below stores none
/// @return the number of points stored
NUV_API int32_t NuvShenJunEdgeFast(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                   int32_t shift, int32_t grdThreshold, int32_t* pX, int32_t* pY,
                                   int32_t maxN, uint8_t* pResImg);

/// Edges with a floating coefficient on a floating scratch image, the exact form: nothing is rounded.
///
/// @param pTmpImg  scratch of width*height double
/// @param a0       weight of the new sample, meaningful above 0 up to 1
NUV_API void NuvShenJunEdgeFine(uint8_t* pGryImg, double* pTmpImg, int32_t width, int32_t height, double a0,
                                int32_t grdThreshold, uint8_t* pResImg);

#endif

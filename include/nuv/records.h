/// @file
/// The records that hosts and the library exchange.
#ifndef NUV_RECORDS_H
#define NUV_RECORDS_H

#include <cstdint>

// On Windows, tagRECT is the record of windows.h, which a host may include before this header or after it. A
// program must not define the record twice, so this header includes windef.h, the part of windows.h that defines
// it. If the host defines NUV_NO_WINDEF, the record is defined below instead, and windows.h must not come after
// this header.
#if defined(_WIN32) && !defined(_WINDEF_) && !defined(NUV_NO_WINDEF)
#include "nuv/system_rectangle.h"
#endif

/// @defgroup records Records
///
/// The records that hosts and the library exchange. The order and the types of their fields are part of the
/// interface. Chains and their codes are described in @ref contours.
/// @{

#if !defined(_WINDEF_)
/// A rectangle of pixels, all four ends inclusive.
///
/// A rectangle with left == right and top == bottom is one pixel. On Windows the record is that of the system,
/// RECT, whose layout is the same; see docs/windows.md.
struct tagRECT {
  int32_t left;    ///< first column
  int32_t top;     ///< first row
  int32_t right;   ///< last column
  int32_t bottom;  ///< last row
};
#endif

/// One contour in the list that NuvGetContours returns.
///
/// The list owns its nodes and their chains; NuvFreeContours releases them all.
struct NUV_CONTOUR_STRUCT {
  bool isOuter;               ///< true for the outer contour of an object, false for the contour of a hole
  int32_t area;               ///< pixels enclosed, as computed by NuvRealAreaAndPerimeter
  int32_t perimeter;          ///< path length: 1 per even code, sqrt(2) per odd code, rounded
  int32_t x;                  ///< column of the chain's start pixel
  int32_t y;                  ///< row of the chain's start pixel
  int32_t N;                  ///< number of chain codes
  uint8_t* pChainCode;        ///< N direction codes 0..7, owned by the node
  int32_t reserved1;          ///< 0
  int32_t reserved2;          ///< 0
  int32_t reserved3;          ///< 0
  int32_t reserved4;          ///< 0
  int32_t reserved5;          ///< 0
  int32_t reserved6;          ///< without meaning
  NUV_CONTOUR_STRUCT* pNext;  ///< next contour in the order of the scan, or null
};

/// A run of pixels in a row.
struct RLX {
  int32_t y;   ///< row
  int32_t x1;  ///< first column
  int32_t x2;  ///< last column, inclusive
  int32_t ID;  ///< number of the region that holds the run, written by NuvRLXRegionsWithID alone
};

/// A run of pixels in a column.
struct RLY {
  int32_t x;   ///< column
  int32_t y1;  ///< first row
  int32_t y2;  ///< last row, inclusive
};

/// One straight segment found by the chain-line detector.
///
/// The end points are points of the fitted line, clamped to the image. The line is A*x + B*y + C = 0 in one
/// of two forms:
///
///     y = k*x + b     A = k, B = -1, C = b
///     x = k*y + b     A = 1, B = -k, C = -b
struct TAVI_LINE_SEGMENT {
  int32_t x1;  ///< column of the begin point
  int32_t y1;  ///< row of the begin point
  int32_t x2;  ///< column of the end point
  int32_t y2;  ///< row of the end point
  double A;    ///< factor of x
  double B;    ///< factor of y
  double C;    ///< constant term
};

/// One region in the list that NuvMergeSplit returns.
///
/// The list owns its records and their chains; NuvFreeRegionStruct releases them all.
struct RegionStruct {
  int32_t x0;                 ///< column of the chain's start pixel
  int32_t y0;                 ///< row of the chain's start pixel
  int32_t N;                  ///< number of chain codes
  uint8_t* pChainCode;        ///< N direction codes 0..7, owned by the record
  int32_t area;               ///< by NuvAreaAndPerimeter at the level that made the record; never changes
  int32_t perimeter;          ///< by NuvAreaAndPerimeter at the same level
  int32_t gry;                ///< level that made the record; the region's pixels are darker
  int32_t sameLevelParentID;  ///< without meaning in a result
  int32_t ID;                 ///< number of the record, unique in the result, in the order of creation
  int32_t parentID;           ///< ID of the region around it, which comes later in the list; -1 if none
  int32_t curArea;            ///< area at the last level at which the region was found whole
  RegionStruct* next;         ///< next region, which is at least as large, or null
};

/// @}

#endif

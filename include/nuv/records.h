/// @file
/// The records that hosts and the library exchange. Their field order is part of the interface.
#ifndef NUV_RECORDS_H
#define NUV_RECORDS_H

#include <cstdint>

/// A rectangle of pixels. All four ends are inclusive: a rectangle with left == right and top == bottom is
/// one pixel.
///
/// A host that includes <windows.h> before this header has the record of the same name and layout already.
#if !defined(_WINDEF_)
struct tagRECT {
  int32_t left;
  int32_t top;
  int32_t right;
  int32_t bottom;
};
#endif

/// One contour in the list that NuvGetContours returns. The list owns its nodes and their chains;
/// NuvFreeContours releases them all.
struct NUV_CONTOUR_STRUCT {
  bool isOuter;               ///< true for the rim of an object, false for the rim of a hole
  int32_t area;               ///< pixels enclosed: with the rim for an object, without it for a hole
  int32_t perimeter;          ///< path length: 1 per even code, sqrt(2) per odd code, rounded
  int32_t x;                  ///< start pixel of the chain
  int32_t y;                  ///< start pixel of the chain
  int32_t N;                  ///< number of chain codes
  uint8_t* pChainCode;        ///< N direction codes 0..7, owned by the node
  int32_t reserved1;          ///< 0
  int32_t reserved2;          ///< 0
  int32_t reserved3;          ///< 0
  int32_t reserved4;          ///< 0
  int32_t reserved5;          ///< 0
  int32_t reserved6;          ///< of no meaning
  NUV_CONTOUR_STRUCT* pNext;  ///< next contour of the scan, or null
};

/// A run of a row, in a region that is held as runs.
struct RLX {
  int32_t y;   ///< row
  int32_t x1;  ///< first column
  int32_t x2;  ///< last column, inclusive
  int32_t ID;  ///< number of the region, where the function numbers regions
};

/// A run of a column, in a region that is held as runs.
struct RLY {
  int32_t x;   ///< column
  int32_t y1;  ///< first row
  int32_t y2;  ///< last row, inclusive
};

/// One straight segment found by the chain-line detector.
struct TAVI_LINE_SEGMENT {
  int32_t x1;  ///< begin point, on the fitted line, clamped to the image
  int32_t y1;
  int32_t x2;  ///< end point, likewise
  int32_t y2;
  double A;  ///< the fitted line A*x + B*y + C = 0: either A = k, B = -1, C = b or A = 1, B = -k, C = -b
  double B;
  double C;
};

/// One region of NuvMergeSplit. The list owns its records and their chains; NuvFreeRegionStruct releases
/// them.
struct RegionStruct {
  int32_t x0;                 ///< start point of the chain
  int32_t y0;                 ///< start point of the chain
  int32_t N;                  ///< number of chain codes
  uint8_t* pChainCode;        ///< N direction codes 0..7, owned by the record
  int32_t area;               ///< as of NuvAreaAndPerimeter at the level that made the record; never changes
  int32_t perimeter;          ///< likewise
  int32_t gry;                ///< gray level: the region's pixels are darker
  int32_t sameLevelParentID;  ///< of no meaning in a result
  int32_t ID;                 ///< unique in the result, in the order of creation
  int32_t parentID;           ///< ID of the region around it, farther on in the list; -1 for none
  int32_t curArea;            ///< area at the last level at which the region was found whole
  RegionStruct* next;         ///< next region, not smaller, or null
};

#endif

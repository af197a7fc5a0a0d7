/// @file
/// Segmentation: the tree of the dark regions of a gray image.
#ifndef NUV_SEGMENTATION_H
#define NUV_SEGMENTATION_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

/// @defgroup segmentation Segmentation
///
/// The dark regions of a gray image, as a tree, without a threshold to choose.
/// @{

/// Builds the tree of the dark regions of an image.
///
/// A threshold level falls one by one, down to minGry. The first level is the highest gray value g such that
/// more than sqrt(minArea) pixels have a value from g to 254. The regions of a level are the outer contours
/// of the pixels that are darker. A region has more than sqrt(minArea) codes, and its area, as computed by
/// NuvAreaAndPerimeter, is at least minArea. Codes are those of its chain, as described in @ref contours.
///
/// The regions of the first level that has any form the tree. Each later level changes it:
///
/// - A region of the level that lies in no region of the tree enters the tree.
/// - A region of the level that lies in a hole of another one enters the tree, too, if both lie in the same
///   region of the tree and the region around the hole does not have the ID 0.
/// - A region of the tree that holds one region of the level has shrunk: its curArea becomes the area of that
///   region.
/// - A region of the tree that holds several has split, and they enter the tree. They replace it if the sum
///   of their areas is more than ratio times its curArea. Otherwise they come below it.
///
/// @param pGryImg        gray image. Changed even if there are no regions: it becomes its inverse, with its
///                       border 0
/// @param pTmpImg        work space of 2*width*height bytes
/// @param width, height  size of the image
/// @param minArea        least area of a region, in pixels; below 0 there is no limit, and lone pixels are
///                       regions, too
/// @param minGry         the lowest level; from 255 on there are no levels
/// @param ratio          0: a region that splits is always replaced; 1 or more: it stays. A ratio that is not
///                       a number counts as more than 1
/// @return the regions, sorted by rising area, to be released with NuvFreeRegionStruct; null if there are
///         none, or if the allocation of about 30 bytes per pixel fails. A region whose own allocation fails
///         is left out
NUV_API RegionStruct* NuvMergeSplit(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                    int32_t minArea, int32_t minGry, double ratio);

/// Releases a list returned by NuvMergeSplit, or the rest of one from a record on.
///
/// Other lists must not be passed: the library's records are larger than RegionStruct.
///
/// @param pRegion  the first record to release; null is accepted
NUV_API void NuvFreeRegionStruct(RegionStruct* pRegion);

/// @}

#endif

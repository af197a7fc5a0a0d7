/// @file
/// Segmentation: a tree of dark regions.
#ifndef NUV_SEGMENTATION_H
#define NUV_SEGMENTATION_H

#include <cstdint>

#include "nuv/api.h"
#include "nuv/records.h"

/// The tree of dark regions of an image, without a threshold given.
///
/// Gray levels fall one by one, from the first at or above which enough pixels lie (more than sqrt(minArea),
/// those of 255 left out) down to minGry. At each level the regions are the outer contours of the pixels that
/// are darker, with more than sqrt(minArea) codes and an area, as of NuvAreaAndPerimeter, of minArea or more.
/// Those of the first level that has some are the tree. Of each later one, regions that lie in none of the
/// tree enter it, and so do regions in a hole of another region of the level, unless that is number 0, if
/// both lie in the same region of the tree. A region of the tree that holds one region of the level has
/// shrunk: its curArea becomes the area of that one. One that holds several has split: they enter the tree,
/// and take its place if the sum of their areas is more than ratio times its curArea; otherwise they come
/// below it.
///
/// @param pGryImg  changed, also without regions: becomes its inverse, with its four sides 0
/// @param pTmpImg  work space of 2*width*height bytes
/// @param minArea  least area of a region, in pixels; below 0 there is none, and lone pixels count too
/// @param minGry   the lowest level; from 255 on there is none
/// @param ratio    0: a region that splits always goes; 1 or more: it stays. Not a number counts as more than
///                 1
/// @return the regions, sorted by rising area, to be released with NuvFreeRegionStruct; null without regions, or
///         if there is no memory for about 30 bytes a pixel. A region for which there is no memory is left out
NUV_API RegionStruct* NuvMergeSplit(uint8_t* pGryImg, uint8_t* pTmpImg, int32_t width, int32_t height,
                                    int32_t minArea, int32_t minGry, double ratio);

/// Releases a list of NuvMergeSplit, or the end of one; null is accepted. Its records are the library's: no
/// other list may be given.
NUV_API void NuvFreeRegionStruct(RegionStruct* pRegion);

#endif

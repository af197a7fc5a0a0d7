// The tree of regions, over all levels so far.
//
// A region of the tree that holds one region of the next level has shrunk. A region that holds several has
// split, and the parts enter the tree, below it or in its place.
//
// An index by place finds the smallest region around a point, and the regions that start inside another one.
// A region of a level keeps its parent in the tree until the parent is replaced or a nearer one enters the
// tree, so most regions search once. A level visits only the regions of the tree that have regions of the level
// as children. The order of the tree is by rising area, and among equal areas the later region comes first. Serial
// numbers keep this order for the index; the list is sorted at the end.

#ifndef NUV_SEGMENTATION_REGION_TREE_H
#define NUV_SEGMENTATION_REGION_TREE_H

#include "segmentation/levels.h"
#include "segmentation/region_index.h"

namespace nuv {

// The list also holds the regions that have been replaced.
using Tree = IndexedList;

// Makes the tree from the first level that has regions.
void start_tree(Tree& tree, Level& level);

// Takes the new regions of a level into the tree.
void NuvMergeRegionLevel(Tree& tree, Level& level, double ratio, Census& census);

// Removes the list of regions from the tree, in order and with the IDs of their parents.
RegionStruct* release_regions(Tree& tree);

}  // namespace nuv

#endif

// What a chain crosses: whether a point lies in it is a sum over the positions of the chain in the point's
// row.

#ifndef NUV_CONTOURS_CROSSINGS_H
#define NUV_CONTOURS_CROSSINGS_H

namespace nuv {

// What the walk through a position adds to the crossings of the row at the right of a point, by whether the
// code before leads up (0 to 3) or down (4 to 7).
constexpr int kCrossing[2][8] = {
    {0, 1, 1, 1, 1, 0, 0, 0},
    {-1, 0, 0, 0, 0, -1, -1, -1},
};

// What it adds besides where the position is the point itself, so that the pixels of a contour are inside.
constexpr int kOnPoint[8][8] = {
    {0, 0, 0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 1, 0, 0}, {0, 0, 0, 0, 0, 1, 1, 0}, {0, 0, 0, 0, 0, 1, 1, 1},
    {1, 0, 0, 0, 0, 1, 1, 1}, {1, 1, 0, 0, 0, 1, 1, 1}, {1, 1, 1, 0, 0, 1, 1, 1}, {1, 1, 1, 1, 0, 1, 1, 1},
};

}  // namespace nuv

#endif

// The crossing rule: a point lies inside or on a chain if a sum over the chain's positions in the row of the
// point is not 0.

#ifndef NUV_CONTOURS_CROSSINGS_H
#define NUV_CONTOURS_CROSSINGS_H

namespace nuv {

// What a position adds if it is the point itself or lies at its right. Rows: the code before is 0 to 3, or 4
// to 7. Columns: the code itself.
constexpr int kCrossing[2][8] = {
    {0, 1, 1, 1, 1, 0, 0, 0},
    {-1, 0, 0, 0, 0, -1, -1, -1},
};

// What a position adds besides if it is the point itself, so that the pixels of an outer contour are inside.
// Rows: the code before. Columns: the code itself.
constexpr int kOnPoint[8][8] = {
    {0, 0, 0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 1, 0, 0}, {0, 0, 0, 0, 0, 1, 1, 0}, {0, 0, 0, 0, 0, 1, 1, 1},
    {1, 0, 0, 0, 0, 1, 1, 1}, {1, 1, 0, 0, 0, 1, 1, 1}, {1, 1, 1, 0, 0, 1, 1, 1}, {1, 1, 1, 1, 0, 1, 1, 1},
};

}  // namespace nuv

#endif

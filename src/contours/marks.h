// The values of pixels in images whose contours are traced or filled.
//
// A binary image holds 0 and 255, and a trace adds two marks to them:
//
//     0      background
//     1      background that a trace has examined
//     254    object, on a traced contour
//     255    object, elsewhere
//
// The images of hosts may hold other values, too. Limits decide which of them are objects.

#ifndef NUV_CONTOURS_MARKS_H
#define NUV_CONTOURS_MARKS_H

#include <cstdint>

namespace nuv {

// ---- marks ----

constexpr uint8_t kExaminedBackground = 1;
constexpr uint8_t kTracedContour = 254;
// The scan of a row inside a contour ends before this value. It occurs neither in traced images nor in
// results.
constexpr uint8_t kRightEdge = 128;

// ---- limits ----

// The tracer takes values from this one on for objects.
constexpr uint8_t kLeastObject = 2;
// A pixel of 255 starts an outer contour if the pixel at its left is below the limit. The narrow limit admits
// only the background, examined or not.
constexpr uint8_t kBackgroundLimit = 10;
constexpr uint8_t kNarrowBackgroundLimit = 2;
// The greatest value that is not reserved for objects and marks. A pixel of 0 starts the contour of a hole if
// the pixel at its left is above it.
constexpr uint8_t kGreatestUnreserved = 250;
// When an image is made binary again, values from this one on become 255.
constexpr uint8_t kLeastRestored = 50;

}  // namespace nuv

#endif

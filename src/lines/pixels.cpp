// Pixels along lines and on outlines.

#include <algorithm>

#include "core/byte_counter.h"
#include "core/line_walks.h"
#include "core/outline.h"
#include "nuv/lines.h"

using namespace nuv;

void NuvPixlesOnABCLine(uint8_t* pBinImg, int32_t width, int32_t height, double A, double B, double C,
                        int32_t* pWhite, int32_t* pBlack) {
  const GrayImage image{pBinImg, width, height};
  int32_t white = 0;
  int32_t visited = 0;
  walk_abc_line(width, height, image.whole(), {A, B, C}, [&](int32_t x, int32_t y) {
    white += *image.at(x, y) != 0;
    ++visited;
  });
  *pWhite = white;
  *pBlack = visited - white;
}

void NuvABCLineHistogram(uint8_t* pGryImg, int32_t width, int32_t height, double A, double B, double C,
                         int32_t* pHistogram) {
  const GrayImage image{pGryImg, width, height};
  ByteCounter counter;
  walk_abc_line(width, height, image.whole(), {A, B, C},
                [&](int32_t x, int32_t y) { counter.add(*image.at(x, y)); });
  counter.store_to(pHistogram);
}

void NuvPixelsOn2PLine(uint8_t* pGryImg, int32_t width, int32_t x1, int32_t y1, int32_t x2, int32_t y2,
                       int32_t gray, int32_t* pEqual, int32_t* pOther) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  int32_t equal = 0;
  int32_t visited = 0;
  // In single precision the walk can pass an end of the line: by one row upwards in images of ordinary size,
  // and by more in larger ones. The height of the image is not known, so rows farther out are skipped.
  const int32_t first = std::max(std::min(y1, y2) - 1, 0);
  const int32_t last = std::max(y1, y2);
  walk_connected({x1, y1}, {x2, y2}, [&](int32_t x, int32_t y) {
    if (y < first || y > last) return;
    equal += *image.at(x, y) == gray;
    ++visited;
  });
  *pEqual = equal;
  *pOther = visited - equal;
}

int32_t NuvPixelsOnRect(uint8_t* pGryImg, int32_t width, int32_t height, int32_t x1, int32_t x2, int32_t y1,
                        int32_t y2, int32_t gray) {
  const GrayImage image{pGryImg, width, height};
  int32_t count = 0;
  walk_outline(image, Region{x1, x2, y1, y2}.clamped_to(width, height),
               [&](int32_t x, int32_t y) { count += *image.at(x, y) == gray; });
  return count;
}

// The list of all contours of an image.

#include <cstring>
#include <new>

#include "contours/trace.h"
#include "core/borders.h"
#include "core/buffer.h"
#include "nuv/contours.h"

namespace nuv {
namespace {

// Creates a node that owns a copy of the chain. Null if allocation fails.
NUV_CONTOUR_STRUCT* new_contour(const uint8_t* codes, int32_t n) {
  Buffer<uint8_t> chain = allocate<uint8_t>(n);
  if (!chain) return nullptr;
  auto* contour = new (std::nothrow) NUV_CONTOUR_STRUCT{};
  if (contour == nullptr) return nullptr;
  std::memcpy(chain.get(), codes, static_cast<std::size_t>(n));
  contour->N = n;
  contour->pChainCode = chain.release();
  return contour;
}

}  // namespace
}  // namespace nuv

using namespace nuv;

NUV_CONTOUR_STRUCT* NuvGetContours(uint8_t* pBinImg, uint8_t* pChainCode, int32_t width, int32_t height,
                                   int32_t minPerimeter, int32_t minArea, int32_t mode) {
  const GrayImage image{pBinImg, width, height};
  NUV_CONTOUR_STRUCT* head = nullptr;
  NUV_CONTOUR_STRUCT** tail = &head;

  const auto collect = [&](ContourStart start) {
    const int32_t n =
        NuvTraceContour(pBinImg, width, start.x, start.y, pChainCode, width * height, start.is_outer);
    if (n == 0 || n < minPerimeter) return;
    if (mode == (start.is_outer ? kInnerOnly : kOuterOnly)) return;
    int32_t area = 0;
    int32_t perimeter = 0;
    NuvRealAreaAndPerimeter(pChainCode, n, &area, &perimeter);
    if (area < minArea || perimeter < minPerimeter) return;
    NUV_CONTOUR_STRUCT* contour = new_contour(pChainCode, n);
    if (contour == nullptr) return;
    contour->isOuter = start.is_outer;
    contour->area = area;
    contour->perimeter = perimeter;
    contour->x = start.x;
    contour->y = start.y;
    *tail = contour;
    tail = &contour->pNext;
  };

  if (image.empty()) return nullptr;
  clear_sides(image);
  for (int32_t y = 1; y < height - 1; ++y) scan_row_for_contours(image, y, 1, width - 1, collect);
  restore_binary(image, image.whole());
  return head;
}

void NuvFreeContours(NUV_CONTOUR_STRUCT* pContours) {
  while (pContours != nullptr) {
    NUV_CONTOUR_STRUCT* next = pContours->pNext;
    delete[] pContours->pChainCode;
    delete pContours;
    pContours = next;
  }
}

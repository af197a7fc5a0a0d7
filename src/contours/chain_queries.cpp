// Queries of a chain: the pixels on it, points on it and in it, lines across it.

#include "contours/chain.h"
#include "contours/crossings.h"
#include "core/views.h"
#include "nuv/contours.h"

using namespace nuv;

int32_t NuvPixelsPassedByChain(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                               int32_t N, int32_t gry) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  int32_t count = 0;
  walk_start_and_ends({{x, y}, pChainCode, N}, [&](Point p) { count += *image.at(p.x, p.y) == gry; });
  return count;
}

int32_t NuvWhitePixlePassedByChain(uint8_t* pBinImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                                   int32_t N) {
  const GrayImage image = image_of_any_height<1>(pBinImg, width);
  int32_t count = 0;
  walk_ends({{x, y}, pChainCode, N}, N, [&](Point p) { count += *image.at(p.x, p.y) != 0; });
  return count;
}

bool NuvHasPixelsOnChain(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                         int32_t N, int32_t gry) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  const auto matches = [&](Point p) { return *image.at(p.x, p.y) == gry; };
  return matches({x, y}) || any_end({{x, y}, pChainCode, N}, matches);
}

double NuvContourGryAvr(uint8_t* pGryImg, int32_t width, int32_t x, int32_t y, uint8_t* pChainCode,
                        int32_t N) {
  const GrayImage image = image_of_any_height<1>(pGryImg, width);
  double sum = 0.0;
  walk_start_and_ends({{x, y}, pChainCode, N}, [&](Point p) { sum += *image.at(p.x, p.y); });
  return N < 1 ? sum : sum / N;
}

int32_t NuvContourPosPoints(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t yLine) {
  int32_t count = 0;
  walk_ends({{x, y}, pChainCode, N}, N > 0 ? N - 1 : 0, [&](Point p) { count += p.y == yLine; });
  return count;
}

bool NuvIsPointOnContour(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N, int32_t px, int32_t py) {
  return any_end({{x, y}, pChainCode, N}, [=](Point p) { return p.x == px && p.y == py; });
}

bool NuvIsPointIncludedByChain(int32_t px, int32_t py, int32_t x, int32_t y, uint8_t* pChainCode, int32_t N) {
  return crossings({{x, y}, pChainCode, N}, 0, N, {x, y}, {px, py}) != 0;
}

bool NuvIsHorizontalLineIntersectContour(int32_t y, uint8_t* pChainCode, int32_t N, int32_t yLine) {
  return any_end({{0, y}, pChainCode, N}, [=](Point p) { return p.y == yLine; });
}

bool NuvIsVerticalLineIntersectContour(int32_t x, uint8_t* pChainCode, int32_t N, int32_t xLine) {
  return any_end({{x, 0}, pChainCode, N}, [=](Point p) { return p.x == xLine; });
}

bool NuvIsVerticalLineIntersectContour(int32_t x, int32_t y, uint8_t* pChainCode, int32_t N,
                                       int32_t* pXOfRow) {
  return any_end({{x, y}, pChainCode, N}, [=](Point p) { return p.x == pXOfRow[p.y]; });
}

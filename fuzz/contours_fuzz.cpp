// Traces any binary image and calls the functions of chains with the results.

#include "input.h"
#include "nuv/contours.h"

namespace {

void check_chain(const NUV_CONTOUR_STRUCT& contour, std::vector<uint8_t> image, int32_t width,
                 int32_t height) {
  const int32_t x = contour.x;
  const int32_t y = contour.y;
  const int32_t n = contour.N;
  uint8_t* codes = contour.pChainCode;
  const Walk end = walk(x, y, codes, n, width, height);
  NUV_CHECK(n > 0 && end.inside && end.x == x && end.y == y);
  NUV_CHECK(contour.area >= 0 && contour.area <= width * height);

  int32_t x1 = 0;
  int32_t x2 = 0;
  int32_t y1 = 0;
  int32_t y2 = 0;
  NuvContourRect(x, y, codes, n, &x1, &x2, &y1, &y2);
  NUV_CHECK(x1 >= 0 && x1 <= x2 && x2 < width && y1 >= 0 && y1 <= y2 && y2 < height);
  NUV_CHECK(NuvIsPointOnContour(x, y, codes, n, x, y));
  int32_t area = 0;
  int32_t perimeter = 0;
  NuvRealAreaAndPerimeter(codes, n, &area, &perimeter);
  NUV_CHECK(area <= (x2 - x1 + 1) * (y2 - y1 + 1));
  for (int32_t row = y1 - 1; row <= y2 + 1; ++row) NuvContourPosPoints(x, y, codes, n, row);
  std::vector<int32_t> points_x(static_cast<std::size_t>(n));
  std::vector<int32_t> points_y(points_x);
  NuvChain2Points(x, y, codes, n, points_x.data(), points_y.data());

  std::vector<uint8_t> result(image);
  int32_t histogram[257] = {};
  NuvPastePixels2ResImg(image.data(), width, x, y, codes, n, 100, 0, result.data(), 7);
  NuvReplacePixelsColor(image.data(), width, x, y, codes, n, 100, 255, 9);
  NuvRegionHistogram(image.data(), width, x, y, codes, n, 100, histogram);
  NuvContourGryAvr(image.data(), width, x, y, codes, n);
  const int32_t side = NuvFillingContour(image.data(), width, x, y, codes, n, true, 100, 200);
  NUV_CHECK(side == 1 || side == -1);
  NUV_CHECK(NuvRealPixelsEnclosed(codes, n) <= width * height);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  Input input(data, size);
  const int32_t width = input.between(1, 48);
  const int32_t height = input.between(1, 48);
  const int32_t numbers[] = {input.number(), input.number(), input.number(), input.number(), input.number()};
  const int32_t mode = input.between(0, 3);
  const auto count = static_cast<std::size_t>(width * height);
  const std::vector<uint8_t> image = input.flag() ? input.bytes(count) : input.pixels(count);
  std::vector<uint8_t> work(count);
  std::vector<uint8_t> result(count);

  std::vector<uint8_t> copy(image);
  NUV_CONTOUR_STRUCT* contours =
      NuvGetContours(copy.data(), work.data(), width, height, numbers[0], numbers[1], mode);
  for (const NUV_CONTOUR_STRUCT* contour = contours; contour != nullptr; contour = contour->pNext) {
    check_chain(*contour, copy, width, height);
  }
  NuvFreeContours(contours);

  tagRECT rect{};
  int32_t x = 0;
  int32_t y = 0;
  copy = image;
  Nuv255RectWithMaxArea(copy.data(), work.data(), width, height, numbers[0], numbers[1], numbers[2],
                        numbers[3], numbers[4], &rect, &x, &y);
  NUV_CHECK(rect.left >= 0 && rect.right < width && rect.top >= 0 && rect.bottom < height);
  copy = image;
  NuvMarkContours(copy.data(), width, height, result.data());
  copy = image;
  NuvSelectContoursByArea(copy.data(), work.data(), width, height, numbers[0], numbers[1], numbers[2],
                          result.data());
  copy = image;
  NuvMarkMaxAreaHoleContour(copy.data(), work.data(), width, height, numbers[0]);
  copy = image;
  NuvRemoveBlackRegionsByArea(copy.data(), work.data(), width, height, numbers[0], numbers[1], result.data());
  copy = image;
  Nuv255NRegionsWithMaxArea(copy.data(), width, height, numbers[0] % 1000, numbers[1], result.data());
  copy = image;
  NuvDeleteShortContour(copy.data(), work.data(), width, height, numbers[0], result.data());
  int32_t xs[8];
  int32_t ys[8];
  double errors[8];
  copy = image;
  NUV_CHECK(NuvGetNSquaresCenter(copy.data(), work.data(), width, height, numbers[0], input.flag(),
                                 input.real(), xs, ys, errors, 8) <= 8);
  return 0;
}

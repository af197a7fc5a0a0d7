#include "boundary/calls.h"

namespace {

// The pixels and the M bytes after them that are read. Nothing is read if the image is narrower than a
// window, so a row's width of bytes suffices.
std::size_t with_M_more(const Scene& s) {
  return s.pixels() + Scene::length(std::min(s.M, s.width));
}

}  // namespace

Calls filter_calls() {
  using namespace calls;
  return {
      EXPORT(NuvGryAverageFilter, gray, width, height, M, N, gray_result),
      EXPORT(NuvGryAverageFilterFast, gray, width, height, M, N, gray_result),
      EXPORT(NuvGryAverageFilterFastNonBoundary, gray, width, height, M, N, gray_result),
      EXPORT(NuvGryAverageFilterByX, gray, width, height, M, gray_result),
      EXPORT(NuvGryAverageFilterByY, gray, width, height, N, gray_result),
      EXPORT(NuvRGBAverageFilter, rgb, width, height, M, N, rgb_result),
      EXPORT(NuvRGBAverageFilterFast, rgb, width, height, M, N, rgb_result),
      EXPORT(NuvRGBAverageFilterFastNonBoundary, rgb, width, height, M, N, rgb_result),
      EXPORT(NuvGryImgMaxFilter3xInRow, gray, width, height, gray_result),
      EXPORT(NuvGryImgMaxFilter5xInRow, gray, width, height, gray_result),
      EXPORT(NuvGryImgMaxFilter3xInCol, gray, width, height, gray_result),
      EXPORT(NuvGryImgMaxFilter5xInCol, gray, width, height, gray_result),
      EXPORT(NuvGryImgMinFilter3xInRow, gray, width, height, gray_result),
      EXPORT(NuvGryImgMinFilter5xInRow, gray, width, height, gray_result),
      EXPORT(NuvGryImgMinFilter3xInCol, gray, width, height, gray_result),
      EXPORT(NuvGryImgMinFilter5xInCol, gray, width, height, gray_result),
      EXPORT(NuvGryImgMedianBoundary0, gray, width, height, M, N, gray_result),
      EXPORT(NuvGryFastMedianFilter, bytes(with_M_more), width, height, M, N, gray_result),
      EXPORT(NuvGryZedFilter, gray, width, height, integer(0, 60), gray_result),
  };
}

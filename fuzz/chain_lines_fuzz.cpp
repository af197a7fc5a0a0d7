// Runs the chain-line detector with any settings for a few detections and fetches all results.

#include <algorithm>

#include "input.h"
#include "nuv/lines.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  Input input(data, size);
  for (int32_t round = input.between(1, 3); round > 0; --round) {
    const int32_t width = input.between(0, 64);
    const int32_t height = input.between(0, 64);
    const int32_t max_lines = input.flag() ? input.between(-1, 40) : 40;
    const double straightness = input.real();
    const double deviation = input.real();
    const int32_t min_length = input.flag() ? input.number() : 8;
    const int32_t threshold = input.flag() ? input.number() : 20;
    const bool ready =
        NuvImgChainLines_Initialize(width, height, straightness, deviation, min_length, threshold, max_lines);
    const bool fits = input.flag();
    // Sometimes the image does not have the announced size.
    const int32_t seen_width = input.flag() ? input.between(0, 70) : width;
    std::vector<uint8_t> image = input.bytes(static_cast<std::size_t>(seen_width * height));
    const int32_t n = NuvImgChainLines_DoGryImg(image.data(), seen_width, height, fits);
    NUV_CHECK(n >= 0 && (n == 0 || (ready && n <= max_lines)));

    const TAVI_LINE_SEGMENT* lines = NuvImgChainLines_GetLines();
    NUV_CHECK((lines != nullptr) == fits || n == 0);
    for (int32_t i = 0; fits && i < n; ++i) {
      NUV_CHECK(std::min(lines[i].x1, lines[i].x2) >= 0 && std::max(lines[i].x1, lines[i].x2) < seen_width);
      NUV_CHECK(std::min(lines[i].y1, lines[i].y2) >= 0 && std::max(lines[i].y1, lines[i].y2) < height);
    }
    int32_t* x = nullptr;
    int32_t* y = nullptr;
    int32_t points = 0;
    int32_t fetched = 0;
    for (const int32_t some = input.between(0, 40); fetched < some; ++fetched) {
      if (!NuvImgChainLines_GetNxtCodeLine(&x, &y, &points)) break;
      for (int32_t i = 0; i < points; ++i) {
        NUV_CHECK(x[i] >= 0 && x[i] < seen_width && y[i] >= 0 && y[i] < height);
      }
    }
    NUV_CHECK(fetched <= n);
    std::vector<uint8_t> panels(6 * image.size());
    NuvImgChainLines_Debug(panels.data());
  }
  return 0;
}

// Segments any image and checks that the tree is as documented.

#include <set>

#include "input.h"
#include "nuv/segmentation.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  Input input(data, size);
  const int32_t width = input.between(0, 40);
  const int32_t height = input.between(0, 40);
  const int32_t min_area = input.flag() ? input.number() : input.between(1, 60);
  const int32_t min_gray = input.flag() ? input.number() : 0;
  const double ratio = input.real();
  const auto count = static_cast<std::size_t>(width * height);
  std::vector<uint8_t> image = input.bytes(count);
  if (input.flag()) {  // few levels give larger regions
    for (uint8_t& pixel : image) pixel &= 0xE0;
  }
  std::vector<uint8_t> work(2 * count);
  RegionStruct* regions = NuvMergeSplit(image.data(), work.data(), width, height, min_area, min_gray, ratio);
  std::set<int32_t> seen;
  std::set<int32_t> parents;
  for (const RegionStruct* region = regions; region != nullptr; region = region->next) {
    const Walk end = walk(region->x0, region->y0, region->pChainCode, region->N, width, height);
    NUV_CHECK(end.inside && end.x == region->x0 && end.y == region->y0);
    NUV_CHECK(region->area >= min_area);
    NUV_CHECK(region->next == nullptr || region->next->area >= region->area);
    NUV_CHECK(seen.insert(region->ID).second);
    NUV_CHECK(seen.count(region->parentID) == 0);  // parents come later in the list
    if (region->parentID != -1) parents.insert(region->parentID);
  }
  for (const int32_t parent : parents) NUV_CHECK(seen.count(parent) == 1);
  NuvFreeRegionStruct(regions);
  return 0;
}

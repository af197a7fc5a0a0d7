#include <cstdlib>

#include "boundary/calls.h"

namespace {

using namespace calls;

// Squares within squares. They give regions with islands in their holes, which split and shrink.
uint8_t* squares(Scene& s) {
  constexpr int32_t kSide = 17;
  uint8_t* const data = s.memory<uint8_t>(s.pixels());
  uint8_t levels[kSide / 2 + 1];
  for (uint8_t& level : levels) level = byte(s);
  for (int32_t i = 0; i < static_cast<int32_t>(s.pixels()); ++i) {
    const int32_t across = std::abs(i % s.width % kSide - kSide / 2);
    const int32_t down = std::abs(i / s.width % kSide - kSide / 2);
    data[i] = levels[std::max(across, down)];
  }
  return data;
}

template <class Build>
RegionStruct* regions(Scene& s, Build build) {
  const bool has_squares = !flag(s) && !s.is_special();
  uint8_t* const picture = has_squares ? squares(s) : gray(s);
  uint8_t* const work = s.noise(s.pixels() * 2);
  const int32_t min_area = s.integer(1, 30);
  const int32_t min_gray = s.integer(0, 150);
  const double ratio = s.real(0, 1.25);
  s.remember();
  return build(picture, work, s.width, s.height, min_area, min_gray, ratio);
}

void add_and_release(Scene& s, RegionStruct* list) {
  for (const RegionStruct* r = list; r != nullptr; r = r->next) {
    for (int32_t field : {r->x0, r->y0, r->N, r->area, r->perimeter, r->gry, r->ID, r->parentID, r->curArea})
      s.add_result(field);
    for (int32_t i = 0; i < r->N; ++i) s.add_result(r->pChainCode[i]);
  }
  NuvFreeRegionStruct(list);
}

template <class Release>
void release_an_end(Scene& s, Release release) {
  RegionStruct* const list = regions(s, NuvMergeSplit);
  RegionStruct* last = list;
  for (int32_t more = s.between(0, 2); more > 0 && last != nullptr && last->next != nullptr; --more)
    last = last->next;
  release(last == nullptr ? nullptr : last->next);
  if (last != nullptr) last->next = nullptr;
  add_and_release(s, list);
}

}  // namespace

Calls segmentation_calls() {
  return {
      EXPORT_BY(NuvMergeSplit, RegionStruct*,
                (uint8_t*, uint8_t*, int32_t, int32_t, int32_t, int32_t, double),
                [](Scene& s, auto build) { add_and_release(s, regions(s, build)); }),
      EXPORT_BY(NuvFreeRegionStruct, void, (RegionStruct*),
                [](Scene& s, auto release) { release_an_end(s, release); }),
  };
}

#include "boundary/calls.h"

namespace {

// ---- Rectangles ----

// Moves the region in some hostile scenes. The new one is empty, so none of its pixels lies outside the
// image.
void move_if_empty(Scene& s) {
  constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
  if (!s.hostile || s.between(0, 3) != 0) return;
  s.inner = s.one_of<Box>({{4, kMost, 2, -3},
                           {2, -3, 4, kMost},
                           {65536, -65537, -8, 65535},
                           {kMost - 1, 1, 1 - kMost, -3},
                           {-2, -kMost, 1, 1}});
}

// A height for functions that do not read it.
int32_t any_height(Scene& s) {
  return s.hostile ? s.integer(0, 60) : s.height;
}

// The number of pixels if every step-th pixel of every step-th row is taken; the step is a power of two.
template <int32_t Shift>
std::size_t thinned_pixels(const Scene& s) {
  return Scene::area(((s.inner.x2 - s.inner.x1) >> Shift) + 1, ((s.inner.y2 - s.inner.y1) >> Shift) + 1);
}
uint8_t* scale4_result(Scene& s) {
  return s.noise(thinned_pixels<2>(s) * 3);
}
uint8_t* shrink2_result(Scene& s) {
  return s.noise(thinned_pixels<1>(s));
}

// ---- Camera frames, to read and to write ----

uint8_t* yuv420(Scene& s) {
  return s.noise(s.pixels() * 3 / 2);
}
uint8_t* yuv422(Scene& s) {
  return s.noise(s.pixels() * 2);
}
uint8_t* packed(Scene& s) {
  return s.noise(s.pixels() * 2);
}
uint8_t* inner_yuv420(Scene& s) {
  return s.noise(s.inner_pixels() * 3 / 2);
}
uint8_t* inner_packed(Scene& s) {
  return s.noise(s.inner_pixels() * 2);
}

// With an odd number of columns the last group of a row extends past the right end of the region. In the
// bottom right corner of the image it extends past the frame.
uint8_t* packed_with_last_group(Scene& s) {
  const bool reaches_out = s.inner_pixels() > 0 && s.inner.columns() % 2 != 0 && s.inner.x2 == s.width - 1 &&
                           s.inner.y2 == s.height - 1;
  return s.noise((s.pixels() + (reaches_out ? 1 : 0)) * 2);
}
uint8_t* whole_groups_result(Scene& s) {
  return s.noise(Scene::area(((s.inner.x2 - s.inner.x1) | 1) + 1, s.inner.rows()));
}

// The numbers that sizes and ends of regions must be multiples of.
struct Demands {
  int32_t width, height, x1, columns, y1, rows;
};

void fit(int32_t& first, int32_t& last, int32_t size, int32_t first_unit, int32_t unit) {
  const int32_t room = std::max(size, 0);
  const int32_t wanted = std::clamp(last - first + 1, 0, room);
  const int32_t length = std::min((wanted + unit - 1) / unit * unit, room / unit * unit);
  first = std::clamp(first, 0, room - length) / first_unit * first_unit;
  last = first + length - 1;
}

// Makes the scene meet the demands. Some scenes stay as they are, for the result false.
Call demanding(Demands d, Call call) {
  const auto meet = [=](Scene& s) {
    if (s.between(0, s.hostile ? 1 : 7) == 0) return;
    s.width += s.width % d.width;
    s.height += s.height % d.height;
    fit(s.inner.x1, s.inner.x2, s.width, d.x1, d.columns);
    fit(s.inner.y1, s.inner.y2, s.height, d.y1, d.rows);
  };
  return calls::after(meet, std::move(call));
}

// ---- Interlaced fields: gray or RGB ----

uint8_t* rows_result(Scene& s, int32_t rows, int32_t channels) {
  return s.noise(Scene::area(s.width, rows) * static_cast<std::size_t>(channels));
}

const auto extract_field = [](Scene& s, auto extract) {
  const bool is_rgb = calls::flag(s);
  const bool second = calls::flag(s);
  const int32_t channels = is_rgb ? 3 : 1;
  uint8_t* frame = s.picture(channels);
  uint8_t* field = rows_result(s, (s.height + (second ? 0 : 1)) / 2, channels);
  calls::run(s, extract, frame, s.width, s.height, is_rgb, second, field, calls::integer_result(s));
};

const auto split_fields = [](Scene& s, auto split) {
  const bool is_rgb = calls::flag(s);
  uint8_t* frame = s.picture(is_rgb ? 3 : 1);
  calls::run(s, split, frame, s.width, s.height, is_rgb, rows_result(s, s.height, is_rgb ? 3 : 1));
};

const auto merge_fields = [](Scene& s, auto merge) {
  const bool is_rgb = calls::flag(s);
  const int32_t channels = is_rgb ? 3 : 1;
  const int32_t first_rows = s.hostile ? s.height : (s.height + 1) / 2;
  const int32_t second_rows = s.hostile ? s.result_height : s.height / 2;
  uint8_t* second = rows_result(s, second_rows, channels);
  uint8_t* first = rows_result(s, first_rows, channels);
  const int32_t rows = std::max(2 * std::max(first_rows, 0) - 1, 2 * std::max(second_rows, 0));
  uint8_t* frame = rows_result(s, rows, channels);
  const int32_t shift = s.integer(-4, 4);
  calls::run(s, merge, second, first, second_rows, first_rows, s.width, is_rgb, shift, frame,
             calls::integer_result(s));
};

}  // namespace

Calls colour_calls() {
  using namespace calls;
  const auto channel = integer_within(0, 2);
  Calls table = {
      // Whole images to gray
      EXPORT(NuvRGB2Gry, rgb, width, height, gray_result),
      EXPORT(NuvRGB2GryInvert, rgb, width, height, gray_result),
      EXPORT(NuvRGBsDif2Gry, rgb, width, height, gray_result),
      EXPORT(NuvExtractMaxRGB2GryImg, rgb, width, height, gray_result),

      // Channels
      EXPORT(NuvSelectRGB2Gry, rgb, width, height, channel, gray_result),
      EXPORT(NuvExtractOneChannelFromRGB, rgb, width, height, channel, gray_result),
      EXPORT(NuvSelectRGBRect2Gry, rgb, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2, channel,
             inner_gray_result),
      EXPORT(NuvReplaceOneChannelInRGB, rgb, width, height, channel, gray),
      EXPORT(NuvOROneChannelInRGB, rgb, width, height, channel, gray),
      EXPORT(NuvGry2RGBImg, gray, gray, gray, width, height, rgb_result),

      // Rectangles
      EXPORT(NuvCopyGryRect, gray, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             inner_gray_result),
      EXPORT(NuvCopyYUV420PRect2Gry, gray, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             inner_gray_result),
      EXPORT(NuvCopyYUV420SPRect2Gry, gray, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             inner_gray_result),
      EXPORT(NuvCopyYUV422PRect2Gry, gray, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             inner_gray_result),
      EXPORT(NuvCopyRGBRect, rgb, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             inner_rgb_result),
      EXPORT(NuvCopyRGBRect, rgb, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2, inner_rgb_result,
             inner_gray_result),
      EXPORT(NuvCopyRGBScale4Rect, rgb, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             scale4_result),
      EXPORT(NuvCopyRGBRect2Gry, rgb, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             inner_gray_result),
      EXPORT(NuvCopyRGBRect2Gry, rgb, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             inner_gray_result, inner_gray_result, inner_gray_result),
      EXPORT(NuvCopyRGB2GryBinImg, rgb, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2, flag,
             inner_gray_result, inner_gray_result, integer_result, integer_result),
      EXPORT(NuvRGBRectAvr, rgb, binary, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             integer_result, integer_result, integer_result),
      EXPORT(NuvGetRGBRectAvr, rgb, binary, width, any_height, inner_x1, inner_x2, inner_y1, inner_y2,
             integer_result, integer_result, integer_result),

      // Packed CbYCrY frames
      demanding({2, 1, 1, 1, 1, 1}, EXPORT(NuvCbYCrY2RGB, packed, width, height, rgb_result)),
      demanding({2, 1, 1, 1, 1, 1}, EXPORT(NuvRGB2CbYCrY, rgb, width, height, packed)),
      EXPORT(NuvCbYCrY2Gry, packed, width, height, gray_result),
      demanding({1, 1, 2, 2, 1, 1}, EXPORT(NuvCopyCbYCrYRect2RGB, packed, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_rgb_result)),
      demanding({1, 1, 2, 2, 1, 1}, EXPORT(NuvCopyCbYCrYScale4Rect, packed, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, scale4_result)),
      demanding({1, 1, 2, 2, 1, 1}, EXPORT(NuvCopyCbYCrYRect, packed, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_rgb_result, inner_gray_result)),
      EXPORT(NuvCopyCbYCrYRect, packed, width, height, inner_x1, inner_x2, inner_y1, inner_y2, inner_packed),
      EXPORT(NuvCopyCbYCrYRect2Gry, packed_with_last_group, width, height, inner_x1, inner_x2, inner_y1,
             inner_y2, whole_groups_result),
      EXPORT(NuvCopyCbYCrYRect2RedImg, packed_with_last_group, width, height, inner_x1, inner_x2, inner_y1,
             inner_y2, whole_groups_result),
      EXPORT(NuvCopyCbYCrYRect2RedImgShrink2, packed_with_last_group, width, height, inner_x1, inner_x2,
             inner_y1, inner_y2, shrink2_result),

      // YUV 420SP frames
      demanding({2, 2, 1, 1, 1, 1}, EXPORT(NuvYUV420SP2RGB, yuv420, width, height, rgb_result)),
      demanding({2, 2, 1, 1, 1, 1}, EXPORT(NuvRGB2YUV420SP, rgb, width, height, yuv420)),
      EXPORT(NuvYUV420SP2Gry, yuv420, width, height, gray_result),
      demanding({1, 1, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420SPRect, yuv420, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_yuv420)),
      demanding({2, 2, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420SPRect, yuv420, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_rgb_result, inner_gray_result)),
      demanding({1, 1, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420SPRect2RGB, yuv420, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_rgb_result)),
      demanding({1, 1, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420SPScale4Rect, yuv420, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, scale4_result)),
      demanding({1, 1, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420SPRect2RedImg, yuv420, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, inner_gray_result)),
      demanding({1, 1, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420SPRect2RedImgShrink2, yuv420, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, shrink2_result)),

      // YUV 420P frames
      demanding({2, 2, 1, 1, 1, 1}, EXPORT(NuvYUV420P2RGB, yuv420, width, height, rgb_result)),
      demanding({2, 2, 1, 1, 1, 1}, EXPORT(NuvRGB2YUV420P, rgb, width, height, yuv420)),
      EXPORT(NuvYUV420P2Gry, yuv420, width, height, gray_result),
      demanding({2, 2, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420PRect, yuv420, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_rgb_result, inner_gray_result)),
      demanding({2, 2, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420PRect2RGB, yuv420, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_rgb_result)),
      demanding({2, 2, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420PScale4Rect, yuv420, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, scale4_result)),
      demanding({1, 1, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420PRect2RedImg, yuv420, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, inner_gray_result)),
      demanding({1, 1, 2, 2, 2, 2}, EXPORT(NuvCopyYUV420PRect2RedImgShrink2, yuv420, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, shrink2_result)),

      // YUV 422P frames
      demanding({2, 1, 1, 1, 1, 1}, EXPORT(NuvYUV422P2RGB, yuv422, width, height, rgb_result)),
      demanding({2, 2, 1, 1, 1, 1}, EXPORT(NuvRGB2YUV422P, rgb, width, height, yuv422)),
      EXPORT(NuvYUV422P2Gry, yuv422, width, height, gray_result),
      demanding({2, 2, 2, 2, 1, 1}, EXPORT(NuvCopyYUV422PRect, yuv422, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_rgb_result, inner_gray_result)),
      demanding({2, 1, 2, 2, 1, 1}, EXPORT(NuvCopyYUV422PRect2RGB, yuv422, width, height, inner_x1, inner_x2,
                                           inner_y1, inner_y2, inner_rgb_result)),
      demanding({2, 1, 2, 4, 1, 4}, EXPORT(NuvCopyYUV422PScale4Rect, yuv422, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, scale4_result)),
      demanding({2, 1, 2, 2, 1, 1}, EXPORT(NuvCopyYUV422PRect2RedImg, yuv422, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, inner_gray_result)),
      demanding({2, 1, 2, 2, 1, 1}, EXPORT(NuvCopyYUV422PRect2RedImgShrink2, yuv422, width, height, inner_x1,
                                           inner_x2, inner_y1, inner_y2, shrink2_result)),

      // Interlaced fields
      EXPORT_BY(NuvExtractOneField, void, (uint8_t*, int32_t, int32_t, bool, bool, uint8_t*, int32_t*),
                extract_field),
      EXPORT_BY(NuvSplitOddEvenField, void, (uint8_t*, int32_t, int32_t, bool, uint8_t*), split_fields),
      EXPORT_BY(NuvMergeOddEvenField, void,
                (uint8_t*, uint8_t*, int32_t, int32_t, int32_t, bool, int32_t, uint8_t*, int32_t*),
                merge_fields),
  };
  for (Call& call : table) call = after(move_if_empty, std::move(call));
  return table;
}

// Rows of libvips, which computes in a thread of its own even if it is limited to one.

#ifndef NUV_BENCH_VIPS_WORK_H
#define NUV_BENCH_VIPS_WORK_H

#if NUV_WITH_VIPS
#include <vips/vips.h>

#include <cstddef>
#include <utility>

#include "pictures.h"

struct VipsRow : Row {
  template <class MakeWork>
  VipsRow(const char* name, MakeWork make_work) : Row(name, make_work, true) {}
};

// Computes all pixels of an operation's result. operation(image, &result) makes the result.
template <class Operation>
auto vips_work(BenchPicture picture, Operation operation) {
  return [picture = std::move(picture), operation]() mutable {
    VipsImage* image = vips_image_new_from_memory(picture.data(), picture.pixels.size(), picture.width,
                                                  picture.height, picture.channels, VIPS_FORMAT_UCHAR);
    VipsImage* result = nullptr;
    if (operation(image, &result) != 0) vips_error_exit("an operation of libvips failed");
    std::size_t size = 0;
    void* pixels = vips_image_write_to_memory(result, &size);
    benchmark::DoNotOptimize(pixels);
    g_free(pixels);
    g_object_unref(result);
    g_object_unref(image);
  };
}
#endif

#endif

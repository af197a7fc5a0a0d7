// Feeds any bytes to both BMP readers as a file.
//
// fuzz.sh limits the allocations: a reader must not allocate more memory than the file can fill, whatever its
// header states.

#include <memory>

#include "input.h"
#include "memory_file.h"
#include "nuv/files.h"

namespace {

void read_with(uint8_t* (*reader)(const char*, int32_t*, int32_t*), const char* name, std::size_t file_size,
               int32_t bytes_per_pixel) {
  int32_t width = 0;
  int32_t height = 0;
  const std::unique_ptr<uint8_t[]> pixels(reader(name, &width, &height));
  if (!pixels) return;
  NUV_CHECK(width >= 0 && height >= 0);
  const uint64_t bytes =
      static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * static_cast<uint64_t>(bytes_per_pixel);
  NUV_CHECK(bytes <= file_size);
  // Every byte of the image can be read.
  unsigned sum = 0;
  for (uint64_t i = 0; i < bytes; ++i) sum += pixels[i];
  NUV_CHECK(sum != UINT32_MAX);  // always true; the check keeps the reads
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const MemoryFile file;
  file.set(data, size);
  read_with(NuvRead8BitBmpFile2Img, file.name.c_str(), size, 1);
  read_with(NuvRead24BitBmpFile2Img, file.name.c_str(), size, 3);
  return 0;
}

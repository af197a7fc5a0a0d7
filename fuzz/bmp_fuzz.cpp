// Feeds any bytes to both BMP readers as a file.
//
//     cmake --preset fuzz && cmake --build --preset fuzz
//     mkdir -p build/corpus
//     build/fuzz/fuzz/bmp_fuzz -malloc_limit_mb=32 -max_len=4096 -max_total_time=600 build/corpus fuzz/seeds
//
// The limit on allocations is part of the check: a header must not get more memory than its file can fill.
// What it finds goes into fuzz/seeds, which the tests read as well.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "nuv/frame.h"

namespace {

// A file in memory, reached by a name.
struct MemoryFile {
  int descriptor = memfd_create("bmp_fuzz", 0);
  std::string name = "/proc/self/fd/" + std::to_string(descriptor);

  void set(const uint8_t* data, std::size_t size) const {
    if (ftruncate(descriptor, 0) != 0 || pwrite(descriptor, data, size, 0) != static_cast<ssize_t>(size)) {
      std::abort();
    }
  }
};

void read_with(uint8_t* (*reader)(const char*, int32_t*, int32_t*), const char* name, std::size_t file_size,
               int32_t bytes_per_pixel) {
  int32_t width = 0;
  int32_t height = 0;
  const std::unique_ptr<uint8_t[]> pixels(reader(name, &width, &height));
  if (!pixels) return;
  if (width < 0 || height < 0) std::abort();
  const uint64_t bytes =
      static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * static_cast<uint64_t>(bytes_per_pixel);
  if (bytes > file_size) std::abort();
  // Every byte of the image is there.
  unsigned sum = 0;
  for (uint64_t i = 0; i < bytes; ++i) sum += pixels[i];
  if (sum == UINT32_MAX) std::abort();  // never, but only after looking
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const MemoryFile file;
  file.set(data, size);
  read_with(NuvRead8BitBmpFile2Img, file.name.c_str(), size, 1);
  read_with(NuvRead24BitBmpFile2Img, file.name.c_str(), size, 3);
  return 0;
}

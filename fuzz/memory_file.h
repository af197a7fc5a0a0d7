// A file in memory that has a name.

#ifndef NUV_FUZZ_MEMORY_FILE_H
#define NUV_FUZZ_MEMORY_FILE_H

#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "input.h"

struct MemoryFile {
  int descriptor = memfd_create("fuzz", 0);
  std::string name = "/proc/self/fd/" + std::to_string(descriptor);

  void set(const uint8_t* data, std::size_t size) const {
    NUV_CHECK(ftruncate(descriptor, 0) == 0);
    NUV_CHECK(pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
  }
};

#endif

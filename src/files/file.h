// Files of the C library that are closed when they go out of scope.

#ifndef NUV_FILES_FILE_H
#define NUV_FILES_FILE_H

#include <cstdio>
#include <memory>

namespace nuv {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

inline File open_file(const char* name, const char* mode) {
  return File(std::fopen(name, mode));
}

}  // namespace nuv

#endif

#include "standard_streams.h"

#include <cerrno>
#include <cstring>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

void make_binary(std::FILE* stream) {
#if defined(_WIN32)
  std::fflush(stream);
  _setmode(_fileno(stream), _O_BINARY);
#else
  static_cast<void>(stream);
#endif
}

bool is_terminal(std::FILE* stream) {
#if defined(_WIN32)
  return _isatty(_fileno(stream)) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

void write_output(const void* bytes, std::size_t count) {
  errno = 0;
  const bool written = std::fwrite(bytes, 1, count, stdout) == count && std::fflush(stdout) == 0;
  if (!written) {
    throw OutputError(std::string("standard output: ") +
                      (errno != 0 ? std::strerror(errno) : "cannot be written"));
  }
}

void write_output(const std::string& text) {
  write_output(text.data(), text.size());
}

// Standard input, output and error of the hosts.

#ifndef NUV_EXAMPLES_STANDARD_STREAMS_H
#define NUV_EXAMPLES_STANDARD_STREAMS_H

#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <string>

// Standard output cannot take more, because the disk is full, for example.
struct OutputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Passes bytes through unchanged. Windows otherwise changes the ends of lines.
void make_binary(std::FILE* stream);

bool is_terminal(std::FILE* stream);

// Writes to standard output, and throws OutputError if not all could be written.
void write_output(const void* bytes, std::size_t count);
void write_output(const std::string& text);

#endif

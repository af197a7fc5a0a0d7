// Lists of files: a text with one name per line, held as a whole, and a walk through its lines.
//
// The buffer only grows. The text can be shorter than the buffer, so that nothing of a longer earlier list
// counts.

#include <cstring>
#include <limits>
#include <string_view>

#include "core/buffer.h"
#include "files/file.h"
#include "nuv/files.h"

namespace nuv {
namespace {

constexpr std::size_t kNameBytes = 1024;  // for the name of a list, with the terminating zero
constexpr std::string_view kLineEnd = "\r\n";

// Stores a line in a cleared name without its trailing blanks. The line must leave room for a terminating
// zero with its blanks included.
bool store_line(std::string_view line, char* name, int32_t size) {
  if (size <= 0 || line.size() >= static_cast<std::size_t>(size)) return false;
  const std::size_t kept = line.find_last_not_of(' ') + 1;
  std::memcpy(name, line.data(), kept);
  return true;
}

void clear(char* name, int32_t size) {
  if (size > 0) std::memset(name, 0, static_cast<std::size_t>(size));
}

class NuvSequenceFiles {
 public:
  virtual ~NuvSequenceFiles() = default;

  bool load(const char* list);
  bool next(char* name, int32_t size);
  bool at(int32_t index, char* name, int32_t size) const;

 private:
  bool hold(int32_t length);
  bool find_line(std::size_t position, std::string_view* line) const;

  Buffer<char> buffer_;
  int32_t capacity_ = 0;
  std::string_view text_;
  std::size_t read_position_ = 0;
};

// If a list cannot be opened, the previous list stays, and its walk restarts.
bool NuvSequenceFiles::load(const char* list) {
  read_position_ = 0;
  if (std::strlen(list) >= kNameBytes) return false;
  const File file = open_file(list, "rb");
  if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) return false;
  const int64_t length = std::ftell(file.get());
  // A directory, for example, can report the greatest length that exists.
  if (length < 0 || length >= std::numeric_limits<int32_t>::max()) return false;
  if (!hold(static_cast<int32_t>(length))) return false;
  std::rewind(file.get());
  const auto bytes = static_cast<std::size_t>(length);
  const std::size_t read = std::fread(buffer_.get(), 1, bytes, file.get());
  std::memset(buffer_.get() + read, 0, bytes - read);
  text_ = {buffer_.get(), bytes};
  return true;
}

// Makes room for a text. The old memory is freed before larger memory is requested. Nothing is allocated for
// an empty text, so the result is false for it unless memory is held from an earlier text.
bool NuvSequenceFiles::hold(int32_t length) {
  text_ = {};
  if (length > capacity_) {
    capacity_ = 0;
    buffer_.reset();
    buffer_ = allocate<char>(length);
    if (buffer_) capacity_ = length;
  }
  return buffer_ != nullptr;
}

// Finds the line from a position up to the next line end; false if no line end follows.
bool NuvSequenceFiles::find_line(std::size_t position, std::string_view* line) const {
  const std::size_t end = text_.find(kLineEnd, position);
  if (end == std::string_view::npos) return false;
  *line = text_.substr(position, end - position);
  return true;
}

bool NuvSequenceFiles::next(char* name, int32_t size) {
  clear(name, size);
  std::string_view line;
  if (!find_line(read_position_, &line)) return false;
  read_position_ += line.size() + kLineEnd.size();
  return store_line(line, name, size);
}

bool NuvSequenceFiles::at(int32_t index, char* name, int32_t size) const {
  clear(name, size);
  if (index < 0) return false;
  std::string_view line;
  for (std::size_t position = 0; find_line(position, &line); position += line.size() + kLineEnd.size()) {
    if (index-- == 0) return store_line(line, name, size);
  }
  return false;
}

NuvSequenceFiles sequence_files;

}  // namespace
}  // namespace nuv

using namespace nuv;

bool NuvSequenceFiles_Initialize(char* pFileName) {
  return sequence_files.load(pFileName);
}

bool NuvSequenceFiles_GetNextFileName(char* pFileName, int32_t size) {
  return sequence_files.next(pFileName, size);
}

bool NuvSequenceFiles_GetFileName(int32_t index, char* pFileName, int32_t size) {
  return sequence_files.at(index, pFileName, size);
}

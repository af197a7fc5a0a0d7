// Reads any bytes as a list of files and requests its names with room for few or many characters.

#include "input.h"
#include "memory_file.h"
#include "nuv/files.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  Input input(data, size);
  const int32_t room = input.between(0, 40);
  const int32_t index = input.number();
  static const MemoryFile file;
  file.set(data, size);
  std::string name = file.name;
  NuvSequenceFiles_Initialize(name.data());

  std::vector<char> line(static_cast<std::size_t>(room));
  for (int32_t i = 0; i < 20; ++i) {
    const bool found = NuvSequenceFiles_GetNextFileName(line.data(), room);
    NUV_CHECK(!found || std::memchr(line.data(), 0, line.size()) != nullptr);
    NuvSequenceFiles_GetFileName(i, line.data(), room);
  }
  NuvSequenceFiles_GetFileName(index, line.data(), room);
  return 0;
}

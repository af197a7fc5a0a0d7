// The debug log. The file is opened and closed for every line, so that it is complete even if the host
// crashes.

#include "files/file.h"
#include "nuv/files.h"

namespace nuv {
namespace {

#if defined(_WIN32)
constexpr char kLogName[] = "d:\\tmp\\NuvDebugInfo.txt";
#else
constexpr char kLogName[] = "/tmp/NuvDebugInfo.txt";
#endif

bool is_first_line = true;

}  // namespace
}  // namespace nuv

using namespace nuv;

void NuvDebugInfo(char* pText, int32_t value) {
  const File log = open_file(kLogName, is_first_line ? "w+" : "a+");
  if (!log) return;
  std::fprintf(log.get(), "\n%s,%d", pText, value);
  is_first_line = false;
}

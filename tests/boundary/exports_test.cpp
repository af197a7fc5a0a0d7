// The built library exports the functions of the list, and nothing else.

#include <cxxabi.h>
#include <gmock/gmock.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "NuvImgSDK2014DLL.h"
#include "boundary/lists.h"
#if defined(_WIN32)
#include "boundary/dll_exports.h"
#endif

namespace {

// A listed function as a demangler writes it. Where EXPORT takes the address of the function, the compiler
// checks that the header declares it with these argument types and this result.
template <class Function>
std::string listed(const char* name, std::string arguments, Function* /*address*/) {
  // The unsigned types come first, because their names contain those of the signed ones.
  const std::pair<std::string, std::string> spellings[] = {{"uint8_t", "unsigned char"},
                                                           {"uint32_t", "unsigned int"},
                                                           {"int32_t", "int"},
                                                           {"const char", "char const"},
                                                           {"const unsigned char", "unsigned char const"}};
  for (const auto& [from, to] : spellings) {
    for (std::size_t at = 0; (at = arguments.find(from, at)) != std::string::npos; at += to.size()) {
      arguments.replace(at, from.size(), to);
    }
  }
  return name + arguments;
}

Names listed_exports() {
  return {
#define EXPORT(name, result, arguments) listed<result arguments>(#name, #arguments, &name),
#include "exports.inc"
#undef EXPORT
  };
}

std::string demangled(const std::string& symbol) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), std::free);
  return status == 0 ? name.get() : symbol;
}

// All symbols that the library exports, of any kind. Second names for hosts built by MSVC are tested with Windows.
#if defined(_WIN32)
Names visible_symbols() {
  Names names;
  for (const auto& [name, place] : dll_exports()) {
    if (!is_msvc_name(name)) names.insert(demangled(name));
  }
  return names;
}
#else
Names visible_symbols() {
  Names names;
  const std::unique_ptr<FILE, decltype(&pclose)> nm(
      popen(NUV_NM " -D --defined-only --format=posix " NUV_LIBRARY_FILE, "r"), pclose);
  char symbol[4096];
  char rest[4096];
  while (nm && std::fscanf(nm.get(), "%4095s%4095[^\n]", symbol, rest) == 2) names.insert(demangled(symbol));
  return names;
}
#endif

TEST(Exports, AreExactlyTheListedFunctions) {
  expect_same_names(visible_symbols(), listed_exports());
}

}  // namespace

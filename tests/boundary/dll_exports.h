// The export table of the library's DLL, as the system has loaded it.

#ifndef NUV_TESTS_BOUNDARY_DLL_EXPORTS_H
#define NUV_TESTS_BOUNDARY_DLL_EXPORTS_H

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <string>

// Each exported name, and the place of its function in the DLL.
inline std::map<std::string, uint32_t> dll_exports() {
  const auto* image = reinterpret_cast<const unsigned char*>(GetModuleHandleA("NuvImgSDK2014DLL.dll"));
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
  const auto* table = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(
      image + headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);
  const auto* names = reinterpret_cast<const DWORD*>(image + table->AddressOfNames);
  const auto* numbers = reinterpret_cast<const WORD*>(image + table->AddressOfNameOrdinals);
  const auto* places = reinterpret_cast<const DWORD*>(image + table->AddressOfFunctions);
  std::map<std::string, uint32_t> exports;
  for (DWORD i = 0; i < table->NumberOfNames; ++i) {
    exports[reinterpret_cast<const char*>(image + names[i])] = places[numbers[i]];
  }
  return exports;
}

// The names that MSVC gives to functions begin with a question mark.
inline bool is_msvc_name(const std::string& name) {
  return name[0] == '?';
}

#endif

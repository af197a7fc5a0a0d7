// What holds for the DLL alone: functions have a second name for hosts built by MSVC, and a host may include
// <windows.h> before the library's header.

#include <windows.h>

// After windows.h.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "boundary/dll_exports.h"
#include "boundary/lists.h"
#include "boundary/windows_rectangles.h"

namespace {

TEST(WindowsHeader, HasTheRectangleOfTheLibrary) {
  expect_rectangles_of_windows_to_work();
}

// The symbols of all functions on one platform, in the order of the description of the boundary.
std::vector<std::string> described_symbols(const std::string& platform) {
  std::ifstream file(NUV_BOUNDARY_DESCRIPTION);
  std::stringstream description;
  description << file.rdbuf();
  const std::string text = description.str();
  const std::string key = '"' + platform + "\": \"";
  std::vector<std::string> symbols;
  for (std::size_t at = 0; (at = text.find(key, at)) != std::string::npos;) {
    at += key.size();
    symbols.push_back(text.substr(at, text.find('"', at) - at));
  }
  return symbols;
}

TEST(MsvcNames, AreSecondNamesOfTheSameFunctions) {
  constexpr bool kHas32Bits = sizeof(void*) == 4;
  std::vector<std::string> mingw = described_symbols(kHas32Bits ? "mingw32" : "mingw64");
  const std::vector<std::string> msvc = described_symbols(kHas32Bits ? "msvc32" : "msvc64");
  ASSERT_EQ(mingw.size(), msvc.size());
  ASSERT_FALSE(msvc.empty());
  const std::map<std::string, uint32_t> exports = dll_exports();
  Names present;
  for (const auto& [name, place] : exports) {
    if (is_msvc_name(name)) present.insert(name);
  }
  expect_same_names(present, Names(msvc.begin(), msvc.end()));
  for (std::size_t i = 0; i < msvc.size(); ++i) {
    // The export table leaves out the underscore that 32-bit symbols begin with.
    const auto first = exports.find(mingw[i].substr(kHas32Bits ? 1 : 0));
    const auto second = exports.find(msvc[i]);
    if (second == exports.end()) continue;  // named above
    ASSERT_NE(first, exports.end()) << "is missing: " << mingw[i];
    EXPECT_EQ(first->second, second->second) << mingw[i] << " and " << msvc[i] << " are different functions";
  }
}

}  // namespace

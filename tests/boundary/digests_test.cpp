// Every export gives, on every machine and by every compiler, what digests.tsv says of it.

#include <gmock/gmock.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>

#include "boundary/digest.h"

namespace {

using testing::ElementsAreArray;

std::multiset<std::string> lines_of(const char* file_name) {
  std::multiset<std::string> lines;
  std::ifstream file(file_name);
  for (std::string line; std::getline(file, line);) lines.insert(line);
  return lines;
}

TEST(Calls, AreOfEveryExportOnce) {
  std::multiset<std::string> signatures;
  for (const Call& call : all_calls()) signatures.insert(call.signature);
  EXPECT_EQ(signatures, lines_of(NUV_EXPORTS));
}

TEST(Calls, ShowAnEffect) {
  for (const Call& call : all_calls()) EXPECT_TRUE(digest_of(call).shows_an_effect) << call.name;
}

// A change that is meant is taken over from the file that NUV_DIGESTS_TO names.
TEST(Digests, AreThoseOfEveryOtherMachine) {
  std::multiset<std::string> digests;
  for (const Call& call : all_calls()) {
    char sum[17];
    std::snprintf(sum, sizeof sum, "%016" PRIx64, digest_of(call).checksum);
    digests.insert(call.name + "\t" + sum);
  }
  if (const char* file_name = std::getenv("NUV_DIGESTS_TO")) {
    std::ofstream file(file_name);
    for (const std::string& line : digests) file << line << '\n';
  }
  EXPECT_EQ(digests, lines_of(NUV_DIGESTS));
}

}  // namespace

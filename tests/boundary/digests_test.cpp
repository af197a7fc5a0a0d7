// Every export gives the results that the files of digests state, on every machine and with every compiler.
//
// digests.tsv holds the checksum of each export's typical scenes. special_digests.tsv holds that of its
// special scenes, and a byte for each scene of both kinds, which shows the first scene that differs.

#include <gmock/gmock.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>

#include "boundary/digest.h"
#include "boundary/lists.h"

namespace {

using Kind = Scene::Kind;
using Rows = std::map<std::string, std::string>;  // by the export's name

constexpr char kTypicalDigests[] = "digests.tsv";
constexpr char kSpecialDigests[] = "special_digests.tsv";

template <class Action>
void for_each_line(const std::string& file_name, Action action) {
  std::ifstream file(file_name);
  for (std::string line; std::getline(file, line);) action(line);
}

Rows listed_rows(const char* file_name) {
  Rows rows;
  for_each_line(std::string(NUV_BOUNDARY "/") + file_name, [&](const std::string& line) {
    const std::size_t tab = line.find('\t');
    EXPECT_TRUE(rows.emplace(line.substr(0, tab), line.substr(tab + 1)).second) << "duplicate row: " << line;
  });
  return rows;
}

void write_rows(const Rows& rows, const std::string& file_name) {
  std::ofstream file(file_name);
  for (const auto& [name, digest] : rows) file << name << '\t' << digest << '\n';
}

std::string hexadecimal(uint64_t checksum) {
  char digits[17];
  std::snprintf(digits, sizeof digits, "%016" PRIx64, checksum);
  return digits;
}

Names names_of(const Rows& rows) {
  Names names;
  for (const auto& row : rows) names.insert(row.first);
  return names;
}

// The first scene of this kind whose byte differs from the listed one, with the arguments of its calls.
std::string first_difference(const Call& call, Kind kind, const std::string& present,
                             const std::string& listed) {
  const auto ends = std::mismatch(present.begin(), present.end(), listed.begin(), listed.end());
  if (ends.first == present.end()) return "no single scene";
  const auto seed = static_cast<uint32_t>(ends.first - present.begin()) / 2 + 1;
  Scene scene(kind, seed);
  scene.describe_calls();
  call.run(scene);
  return (kind == Kind::kTypical ? "typical scene " : "special scene ") + std::to_string(seed) +
         scene.description();
}

TEST(Calls, CoverEveryExportOnce) {
  Names signatures;
  for (const Call& call : all_calls()) signatures.insert(call.signature);
  Names listed;
  for_each_line(NUV_BOUNDARY "/exports.tsv", [&](const std::string& line) { listed.insert(line); });
  expect_same_names(signatures, listed);
}

// Intended changes are taken over from the files that this test writes to the directory that NUV_DIGESTS_TO
// names.
TEST(Digests, EqualTheListedOnes) {
  const Rows typical = listed_rows(kTypicalDigests);
  const Rows special = listed_rows(kSpecialDigests);
  const auto row_of = [](const Rows& rows, const std::string& name) {
    const auto row = rows.find(name);
    return row == rows.end() ? std::string() : row->second;
  };
  Rows present_typical;
  Rows present_special;
  for (const Call& call : all_calls()) {
    const Digest now = digest_of(call);
    const Digest specially = digest_of(call, Kind::kSpecial);
    EXPECT_TRUE(now.shows_an_effect) << call.name << " shows no effect";
    const std::string sum = hexadecimal(now.checksum);
    const std::string special_sum = hexadecimal(specially.checksum);
    present_typical[call.name] = sum;
    present_special[call.name] = special_sum + '\t' + now.of_scenes + '\t' + specially.of_scenes;

    const std::string listed_sum = row_of(typical, call.name);
    std::istringstream columns(row_of(special, call.name));
    std::string listed_special_sum;
    std::string listed_scenes;
    std::string listed_specials;
    columns >> listed_special_sum >> listed_scenes >> listed_specials;
    if (sum != listed_sum && !listed_sum.empty()) {
      ADD_FAILURE() << call.name << "\n  " << sum << ", not " << listed_sum << ", first in "
                    << first_difference(call, Kind::kTypical, now.of_scenes, listed_scenes);
    }
    if (special_sum != listed_special_sum && !listed_special_sum.empty()) {
      ADD_FAILURE() << call.name << "\n  " << special_sum << ", not " << listed_special_sum << ", first in "
                    << first_difference(call, Kind::kSpecial, specially.of_scenes, listed_specials);
    }
  }
  expect_same_names(names_of(present_typical), names_of(typical));
  expect_same_names(names_of(present_special), names_of(special));
  if (const char* directory = std::getenv("NUV_DIGESTS_TO")) {
    write_rows(present_typical, std::string(directory) + '/' + kTypicalDigests);
    write_rows(present_special, std::string(directory) + '/' + kSpecialDigests);
  }
}

}  // namespace

// What all hosts have in common, tried with find_lines and count_parts.

#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "NuvImgSDK2014DLL.h"
#include "examples/hosts.h"
#include "picture.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

// A folder of three pictures: two good ones, with one and two parts, and a damaged one between them.
class Hosts : public HostTest {
 protected:
  void SetUp() override {
    fs::create_directories(dir_ / "in");
    Picture picture = blank(60, 40);
    NuvFillGryRect(picture.pixels.data(), 60, 40, 5, 24, 5, 24, 200);
    write_picture(picture, (dir_ / "in/a.png").string());
    NuvFillGryRect(picture.pixels.data(), 60, 40, 35, 54, 5, 24, 200);
    write_picture(picture, (dir_ / "in/c.bmp").string());
    write("in/b.png", {'b', 'a', 'd'});
    write("in/notes.txt", {'x'});
  }

  Outcome run(const std::string& arguments) const {
    return HostTest::run(NUV_COUNT_PARTS, "--smooth 0 " + arguments);
  }

  std::set<std::string> files() const {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(dir_)) {
      names.insert(fs::relative(entry.path(), dir_).generic_string());
    }
    return names;
  }
};

TEST_F(Hosts, WorkOnFoldersAndGoOnAfterAFailure) {
  for (const std::string jobs : {" -j 1", " --jobs=3"}) {
    const Outcome table = run("in -o out/" + jobs);
    EXPECT_EQ(table.status, 1);
    EXPECT_THAT(table.err, HasSubstr("b.png: of no known kind"));
    EXPECT_EQ(std::count(table.err.begin(), table.err.end(), '\n'), 1) << table.err;
    EXPECT_LT(table.out.find("1 part at"), table.out.find("2 parts at")) << table.out;
    EXPECT_EQ(read_picture((dir_ / "out/c_parts.png").string()).channels, 3);

    const Outcome csv = run("in/a.png in/c.bmp -o out/ --csv" + jobs);
    EXPECT_EQ(csv.status, 0) << csv.err;
    EXPECT_EQ(csv.err, "");
    EXPECT_EQ(csv.out,
              "file,number,left,top,right,bottom,x,y,area,perimeter,holes\n"
              "in/a.png,1,5,5,24,24,15,15,400,76,0\n"
              "in/c.bmp,1,5,5,24,24,15,15,400,76,0\n"
              "in/c.bmp,2,35,5,54,24,45,15,400,76,0\n");

    const Outcome json = run("in -o out/ --json" + jobs);
    EXPECT_EQ(json.status, 1);
    const auto document = nlohmann::ordered_json::parse(json.out);
    ASSERT_EQ(document.size(), 3U);
    EXPECT_EQ(document[0].begin().key(), "file");
    EXPECT_EQ(document[0]["parts"].size(), 1U);
    EXPECT_THAT(document[1]["error"], HasSubstr("of no known kind"));
    EXPECT_EQ(document[2]["parts"][1]["left"], 35);
  }
}

TEST_F(Hosts, RefuseBeforeAnyWorkIsDone) {
  write("a_parts.png", {1});
  const struct {
    std::string arguments, reason;
  } cases[] = {
      {"", "picture is required"},
      {"in/a.png --threshold 300", "--threshold: \"300\" is not a whole number from 0 to 255"},
      {"in/a.png --threshold 2.5", "--threshold: \"2.5\" is not a whole number from 0 to 255"},
      {"in/a.png --threshold 99999999999999999999", "is not a whole number from 0 to 255"},
      {"in/a.png --jobs 0", "is not a whole number from 1 to 256"},
      {"in/a.png --nonsense", "--nonsense"},
      {"in/a.png --csv --json", "--csv excludes --json"},
      {"in/a.png a_parts.png -o a_parts.png", "is not a folder, as the results of several pictures need"},
      {"in/a.png a_parts.png", "a_parts.png: the result would overwrite an input"},
      {"in/a.png -o in/../in/a.png", "the result would overwrite an input"},
      {"in/a.png in/a.png", "a_parts.png: would be the result of in/a.png and of in/a.png"},
      {"in/a.png -o lines.jpg", "lines.jpg: the name of the result must end in .png or .bmp"},
      {"in/a.png -o - --csv", "standard output cannot take a result besides --csv or --json"},
      {"- -", "standard input can be read only once"},
      {"in/a.png empty -o folder/", "empty: the folder has no files that can be read"},
  };
  fs::create_directories(dir_ / "empty");
  const auto before = files();
  for (const auto& c : cases) {
    const Outcome outcome = run(c.arguments);
    EXPECT_EQ(outcome.status, 2) << c.arguments;
    EXPECT_THAT(outcome.err, StartsWith("count_parts: "));
    EXPECT_THAT(outcome.err, HasSubstr(c.reason));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(files(), before) << c.arguments;
  }
  const Outcome infinite = HostTest::run(NUV_FIND_LINES, "in/a.png --straightness nan");
  EXPECT_EQ(infinite.status, 2);
  EXPECT_EQ(infinite.err, "find_lines: --straightness: \"nan\" is not a number from 0 to 1\n");
}

TEST_F(Hosts, ReportFailuresInOneLineAndWriteNothing) {
  const struct {
    std::string arguments, reason;
  } cases[] = {
      {"none.png", "none.png: No such file"},
      {"in/b.png", "b.png: of no known kind"},
      {"in/a.png -o no/such/place.png", "no/such/place.png: No such file"},
  };
  const auto before = files();
  for (const auto& c : cases) {
    const Outcome outcome = run(c.arguments);
    EXPECT_EQ(outcome.status, 1) << c.arguments;
    EXPECT_THAT(outcome.err, StartsWith("count_parts: "));
    EXPECT_THAT(outcome.err, HasSubstr(c.reason));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(files(), before) << c.arguments;
  }
}

TEST_F(Hosts, ReadStandardInputAndWriteStandardOutput) {
  const Outcome piped = run("- -o - < in/c.bmp > piped.png");
  EXPECT_EQ(piped.status, 0) << piped.err;
  EXPECT_THAT(piped.err, HasSubstr("2 parts at")) << "the table goes to standard error";
  EXPECT_EQ(read_picture((dir_ / "piped.png").string()).channels, 3);
  EXPECT_THAT(run("- --csv < in/a.png").out, HasSubstr("\n-,1,5,5,24,24"));
  EXPECT_THAT(run("- < in/b.png").err, StartsWith("count_parts: standard input: of no known kind"));
  EXPECT_TRUE(fs::exists(dir_ / "stdin_parts.png"));
#if defined(__linux__)
  for (const std::string form : {"", " --csv", " --json", " -o -", " --help"}) {
    const Outcome full = run("in/a.png" + form + " > /dev/full");
    EXPECT_EQ(full.status, 1) << form;
    EXPECT_EQ(full.err, "count_parts: standard output: No space left on device\n") << form;
  }
#endif
}

// The form that help2man reads.
TEST_F(Hosts, StateTheirOptionsAndTheirVersion) {
  for (const std::string host : {NUV_ALIGN, NUV_CONVERT_FRAME, NUV_COUNT_PARTS, NUV_FIND_LINES, NUV_GAUGE,
                                 NUV_SEGMENT, NUV_THRESHOLD}) {
    const std::string name = fs::path(host).stem().string();
    const Outcome help = HostTest::run(host, "--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, StartsWith("Usage: " + name + " [OPTION]... "));
    for (const char* text : {"--csv ", "--json ", "-j, --jobs=N", "-o, --output=NAME", "-h, --help",
                             "--version", "Exit status:"}) {
      EXPECT_THAT(help.out, HasSubstr(text)) << name;
    }
    std::istringstream lines(help.out);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80U) << line;
    EXPECT_THAT(HostTest::run(host, "--version").out, StartsWith(name + " (NuvImgSDK2014DLL) "));
  }
}

}  // namespace

// Runs hosts from tests.

#ifndef NUV_TESTS_EXAMPLES_HOSTS_H
#define NUV_TESTS_EXAMPLES_HOSTS_H

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "temporary_directory.h"

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

// Gives each test a directory of its own, and runs hosts there as a user does.
class HostTest : public testing::Test {
 protected:
  // Read as text, so that lines end in the same way on all systems.
  static std::string text_of(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }

  // The arguments may redirect standard input and output.
  Outcome run(const std::string& program, const std::string& arguments) const {
#if defined(_WIN32)
    const std::string start = "cd /d " + quoted(dir_) + " && " + quoted(program);
    constexpr int kStatusUnit = 1;
#else
    const std::string start = "cd " + quoted(dir_) + " && " + program;  // program may begin with an emulator
    constexpr int kStatusUnit = 256;
#endif
    const std::filesystem::path err = dir_ / "err.txt";
    const std::filesystem::path out = dir_ / "out.txt";
    const bool has_output = arguments.find('>') != std::string::npos;
    const std::string command =
        start + " " + arguments + (has_output ? "" : " >" + quoted(out)) + " 2>" + quoted(err);
    Outcome outcome;
    const int status = std::system(command.c_str());
    outcome.status = status < 0 ? status : status / kStatusUnit;
    outcome.out = text_of(out);
    outcome.err = text_of(err);
    std::filesystem::remove(out);
    std::filesystem::remove(err);
    return outcome;
  }

  void write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    std::ofstream file(dir_ / name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }

  TemporaryDirectory directory_;
  const std::filesystem::path dir_ = directory_.path();

 private:
  // Uses the separators of the system, because Windows finds the libraries of a program by its path.
  static std::string quoted(std::filesystem::path path) {
    return '"' + path.make_preferred().string() + '"';
  }
};

#endif

// The common frame of the hosts.
//
// A host describes itself: its name, the files that it makes of each picture, and the numbers that it finds. It
// adds its own options, and passes a function that works on one picture. The frame does the rest in the same
// way for all hosts: files and folders, threads, names of results, tables, CSV and JSON, messages, --help,
// --version and the exit status.

#ifndef NUV_EXAMPLES_HOST_H
#define NUV_EXAMPLES_HOST_H

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "plan.h"

class Host {
 public:
  explicit Host(Plan plan);

  Plan& plan() { return plan_; }
  CLI::App& app() { return app_; }

  // Adds an option that takes a number from least to most. The help states the range and the default: the value
  // that the variable has now, or the given text.
  CLI::Option* number(const std::string& names, int32_t& value, const std::string& meaning, int32_t least,
                      int32_t most, const std::string& default_text = "");
  CLI::Option* number(const std::string& names, double& value, const std::string& meaning, double least,
                      double most, const std::string& default_text = "");
  CLI::Option* choice(const std::string& names, std::string& value, const std::string& meaning,
                      const std::vector<std::string>& choices);
  CLI::Option* flag(const std::string& names, bool& value, const std::string& meaning);
  // A file that is read besides the pictures. No result may overwrite it.
  CLI::Option* input_file(const std::string& names, std::string& value, const std::string& meaning);

  // Called after the command line is read and before work begins. It throws UsageError for options that do not
  // fit together.
  void check(std::function<void()> check) { check_ = std::move(check); }

  // Reads the command line, works on all pictures, and returns the exit status of the program.
  int run(int argc, char** argv, const std::function<Report(const Job&)>& work);

 private:
  void add_common_options();
  std::vector<std::string> inputs() const;

  Plan plan_;
  CLI::App app_;
  std::function<void()> check_;
  std::vector<std::string> arguments_;
  std::vector<std::string> result_names_;
  std::vector<const std::string*> input_files_;
  int32_t threads_;
  bool csv_ = false;
  bool json_ = false;
};

// What --version prints.
std::string version_text(const std::string& name);

#endif

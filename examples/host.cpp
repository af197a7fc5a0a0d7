#include "host.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <sstream>
#include <thread>

#include "help_text.h"
#include "picture.h"
#include "result_names.h"
#include "standard_streams.h"
#include "workshop.h"

namespace {

namespace fs = std::filesystem;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kNotUnderstood = 2;

// Accepts numbers from least to most. CLI11's own range accepts NaN, and its message does not fit all types.
template <class Number>
CLI::Validator in_range(Number least, Number most) {
  constexpr bool kIsWhole = std::is_integral_v<Number>;
  const auto text = [](Number value) {
    std::ostringstream stream;
    stream << value;
    return stream.str();
  };
  const std::string rule =
      std::string(kIsWhole ? "a whole number" : "a number") + " from " + text(least) + " to " + text(most);
  return CLI::Validator(
      [least, most, rule](const std::string& input) -> std::string {
        char* end = nullptr;
        errno = 0;
        const double value = kIsWhole ? static_cast<double>(std::strtoll(input.c_str(), &end, 10))
                                      : std::strtod(input.c_str(), &end);
        const bool is_number = !input.empty() && *end == '\0' && errno == 0 && std::isfinite(value);
        if (is_number && least <= value && value <= most) return {};
        return '"' + input + "\" is not " + rule;
      },
      "");
}

std::string range_text(const std::string& meaning, const std::string& least, const std::string& most,
                       const std::string& standard) {
  return meaning + " (" + least + " to " + most + "; default: " + standard + ")";
}

std::string plain_text(double value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

}  // namespace

std::string version_text(const std::string& name) {
  return name + " (NuvImgSDK2014DLL) " NUV_VERSION;
}

Host::Host(Plan plan)
    : plan_(std::move(plan)),
      app_(plan_.purpose, plan_.name),
      threads_(std::clamp(static_cast<int32_t>(std::thread::hardware_concurrency()), 1, 256)) {
  if (!plan_.takes) plan_.takes = is_picture_name;
  app_.allow_windows_style_options(false);  // a name that begins with a slash is a file
}

CLI::Option* Host::number(const std::string& names, int32_t& value, const std::string& meaning, int32_t least,
                          int32_t most, const std::string& default_text) {
  const std::string standard = default_text.empty() ? std::to_string(value) : default_text;
  return app_
      .add_option(names, value, range_text(meaning, std::to_string(least), std::to_string(most), standard))
      ->check(in_range<int32_t>(least, most))
      ->type_name("N");
}

CLI::Option* Host::number(const std::string& names, double& value, const std::string& meaning, double least,
                          double most, const std::string& default_text) {
  const std::string standard = default_text.empty() ? plain_text(value) : default_text;
  return app_.add_option(names, value, range_text(meaning, plain_text(least), plain_text(most), standard))
      ->check(in_range<double>(least, most))
      ->type_name("X");
}

CLI::Option* Host::choice(const std::string& names, std::string& value, const std::string& meaning,
                          const std::vector<std::string>& choices) {
  const auto check = [choices](const std::string& input) -> std::string {
    if (std::find(choices.begin(), choices.end(), input) != choices.end()) return {};
    return '"' + input + "\" is not one of " + joined(choices, ", ");
  };
  const std::string standard = value.empty() ? "" : " (default: " + value + ")";
  return app_.add_option(names, value, meaning + standard)
      ->check(CLI::Validator(check, ""))
      ->type_name("WORD");
}

CLI::Option* Host::flag(const std::string& names, bool& value, const std::string& meaning) {
  return app_.add_flag(names, value, meaning);
}

CLI::Option* Host::input_file(const std::string& names, std::string& value, const std::string& meaning) {
  input_files_.push_back(&value);
  return app_.add_option(names, value, meaning)->type_name("FILE");
}

void Host::add_common_options() {
  app_.add_option("picture", arguments_, plan_.input_meaning)->required()->type_name("");
  result_names_.resize(plan_.results.size());
  for (std::size_t i = 0; i < plan_.results.size(); ++i) {
    app_.add_option(plan_.results[i].option, result_names_[i], plan_.results[i].meaning)->type_name("NAME");
  }
  CLI::Option* csv =
      app_.add_flag("--csv", csv_, "print the results as comma-separated values and nothing else");
  app_.add_flag("--json", json_, "print the results as one JSON document and nothing else")->excludes(csv);
  app_.add_option("-j,--jobs", threads_,
                  "pictures to work on at once (1 to 256; default: the number of processors)")
      ->check(in_range<int32_t>(1, 256))
      ->type_name("N");
  app_.set_help_flag("-h,--help", "print this help and exit");
  app_.set_version_flag("--version", version_text(plan_.name), "print the version and exit");
}

std::vector<std::string> Host::inputs() const {
  std::vector<std::string> files;
  for (const std::string& argument : arguments_) {
    std::error_code error;
    if (argument == "-" || !fs::is_directory(argument, error)) {
      files.push_back(argument);
      continue;
    }
    std::vector<std::string> found;
    for (fs::directory_iterator it(argument, error), end; !error && it != end; it.increment(error)) {
      std::error_code unknown;
      const std::string file = it->path().string();
      if (!fs::is_directory(file, unknown) && plan_.takes(file)) found.push_back(file);
    }
    if (error) throw UsageError(argument + ": " + error.message());
    if (found.empty()) throw UsageError(argument + ": the folder has no files that can be read");
    std::sort(found.begin(), found.end());
    files.insert(files.end(), found.begin(), found.end());
  }
  if (std::count(files.begin(), files.end(), "-") > 1) {
    throw UsageError("standard input can be read only once");
  }
  return files;
}

int Host::run(int argc, char** argv, const std::function<Report(const Job&)>& work) try {
  // A package may install the host under another name.
  const std::string called = argc > 0 ? fs::path(argv[0]).stem().string() : "";
  if (!called.empty()) plan_.name = called;
  add_common_options();
  try {
    app_.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    write_output(help_text(plan_, app_));
    return kDone;
  } catch (const CLI::CallForVersion& version) {
    write_output(std::string(version.what()) + '\n');
    return kDone;
  } catch (const CLI::ArgumentMismatch& error) {
    const std::string text = error.what();
    throw UsageError(text.substr(0, text.find(':')) + " has too few or too many values");
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  if (check_) check_();
  const std::vector<Job> jobs = jobs_of(plan_, inputs(), result_names_);
  std::vector<std::string> other_inputs;
  for (const std::string* file : input_files_) {
    if (!file->empty()) other_inputs.push_back(*file);  // the option may be left out
  }
  check_results(plan_, jobs, result_names_, other_inputs, csv_ || json_);
  for (const std::string& name : result_names_) {
    std::error_code error;
    if (names_folder(name)) fs::create_directories(name, error);
    if (error) throw UsageError(name + ": " + error.message());
  }
  const auto form = csv_ ? Printer::Form::kCsv : json_ ? Printer::Form::kJson : Printer::Form::kTable;
  const bool output_is_taken = jobs.size() == 1 && !jobs[0].results.empty() && jobs[0].results[0] == "-";
  Printer printer(plan_, form, output_is_taken ? stderr : stdout, jobs.size() > 1);
  return Workshop(plan_.name, jobs, printer).run(threads_, work);
} catch (const UsageError& error) {
  std::fprintf(stderr, "%s: %s\n", plan_.name.c_str(), error.what());
  return kNotUnderstood;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s: %s\n", plan_.name.c_str(), error.what());
  return kFailed;
}

#include "host.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <map>
#include <mutex>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <thread>

#include "picture.h"
#include "progress.h"
#include "standard_streams.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kNotUnderstood = 2;

// ---- Numbers ----------------------------------------------------------------------------------------------

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

// ---- Values as table, CSV and JSON ------------------------------------------------------------------------

std::string cell_text(const Value& value, const Column& column) {
  if (const auto* whole = std::get_if<int64_t>(&value)) return std::to_string(*whole);
  if (const auto* number = std::get_if<double>(&value)) return text_of(*number, column.decimals);
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return "";
}

Json json_of(const Value& value, const Column& column) {
  if (const auto* whole = std::get_if<int64_t>(&value)) return *whole;
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  const auto* number = std::get_if<double>(&value);
  if (number == nullptr || !std::isfinite(*number)) return nullptr;
  return std::strtod(text_of(*number, column.decimals).c_str(), nullptr);
}

std::string quoted_for_csv(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

std::string with_spaces(std::string name) {
  std::replace(name.begin(), name.end(), '_', ' ');
  return name;
}

// Characters, not bytes, of a text in UTF-8.
std::size_t width_of(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string padded(const std::string& text, std::size_t width, bool to_the_left) {
  const std::string space(width - std::min(width, width_of(text)), ' ');
  return to_the_left ? text + space : space + text;
}

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
  std::string all;
  for (const std::string& part : parts) all += (all.empty() ? "" : separator) + part;
  return all;
}

std::string names_of(const std::vector<Column>& columns) {
  std::vector<std::string> names;
  for (const Column& column : columns) names.push_back(column.name);
  return joined(names, ",");
}

// The rows below their names. Numbers are on the right, and texts on the left.
std::string table_of(const std::vector<Column>& columns, const std::vector<std::vector<Value>>& rows) {
  std::vector<std::vector<std::string>> cells(rows.size() + 1);
  for (const Column& column : columns) cells[0].push_back(with_spaces(column.name));
  std::vector<bool> is_text(columns.size(), false);
  for (std::size_t r = 0; r < rows.size(); ++r) {
    for (std::size_t c = 0; c < columns.size(); ++c) {
      const Value& value = rows[r][c];
      cells[r + 1].push_back(std::holds_alternative<std::monostate>(value) ? "-"
                                                                           : cell_text(value, columns[c]));
      if (std::holds_alternative<std::string>(value)) is_text[c] = true;
    }
  }
  std::string table;
  for (const auto& row : cells) {
    std::string line;
    for (std::size_t c = 0; c < columns.size(); ++c) {
      std::size_t width = 0;
      for (const auto& other : cells) width = std::max(width, width_of(other[c]));
      line += (c == 0 ? "" : "  ") + padded(row[c], width, is_text[c]);
    }
    table += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  }
  return table;
}

// ---- Help -------------------------------------------------------------------------------------------------

constexpr std::size_t kLineWidth = 79;
constexpr std::size_t kTextColumn = 27;

// Breaks a text into lines. The first one begins at column at.
std::string wrapped(const std::string& text, std::size_t at, std::size_t indentation) {
  std::istringstream paragraphs(text);
  std::string all;
  for (std::string paragraph; std::getline(paragraphs, paragraph);) {
    std::istringstream words(paragraph);
    bool is_first = true;
    if (!all.empty()) {
      all += '\n' + std::string(indentation, ' ');
      at = indentation;
    }
    for (std::string word; words >> word; is_first = false) {
      if (!is_first && at + 1 + word.size() > kLineWidth) {
        all += '\n' + std::string(indentation, ' ');
        at = indentation;
      } else if (!is_first) {
        all += ' ';
        ++at;
      }
      all += word;
      at += word.size();
    }
  }
  return all;
}

// A term with its explanation in the second column.
std::string entry(const std::string& term, const std::string& text) {
  std::string line = "  " + term;
  if (line.size() + 2 > kTextColumn) {
    line += '\n' + std::string(kTextColumn, ' ');
  } else {
    line.resize(kTextColumn, ' ');
  }
  return line + wrapped(text, kTextColumn, kTextColumn) + '\n';
}

std::string option_names(const CLI::Option& option) {
  std::string names;
  for (const std::string& name : option.get_snames()) names += "-" + name + ", ";
  if (names.empty()) names = "    ";
  for (const std::string& name : option.get_lnames()) names += "--" + name;
  if (option.get_type_size() != 0) names += "=" + option.get_type_name();
  return names;
}

std::string columns_text(const std::vector<Column>& columns) {
  std::string text;
  for (const Column& column : columns) text += entry(column.name, column.meaning);
  return text;
}

// ---- Names of results -------------------------------------------------------------------------------------

// A name that is equal for all ways to write the path of one file.
std::string key_of(const std::string& file) {
  std::error_code unknown;
  std::string key = fs::weakly_canonical(fs::absolute(file), unknown).string();
#if defined(_WIN32)
  for (char& c : key) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
#endif
  return key;
}

// A device such as /dev/null takes any number of results.
bool is_device(const std::string& file) {
  std::error_code unknown;
  const fs::file_status status = fs::status(file, unknown);
  return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

bool names_folder(const std::string& name) {
  std::error_code unknown;
  return fs::is_directory(name, unknown) ||
         (!name.empty() && (name.back() == '/' || name.back() == fs::path::preferred_separator));
}

std::string result_name(const ResultKind& kind, const std::string& given, const std::string& input) {
  if (!given.empty() && !names_folder(given)) return given;
  const std::string stem = input == "-" ? "stdin" : fs::path(input).stem().string();
  return (fs::path(given) / (stem + kind.suffix + kind.endings.front())).string();
}

std::string shown(const std::string& input) {
  return input == "-" ? "standard input" : input;
}

// ---- Work -------------------------------------------------------------------------------------------------

// What has become of one picture.
struct Outcome {
  std::optional<Report> report;
  std::string error;
};

Outcome outcome_of(const Job& job, const std::function<Report(const Job&)>& work) {
  Outcome outcome;
  try {
    outcome.report = work(job);
  } catch (const PictureError& error) {
    outcome.error = error.what();
  } catch (const std::bad_alloc&) {
    outcome.error = shown(job.input) + ": not enough memory";
  } catch (const OutputError&) {
    throw;
  } catch (const std::exception& error) {
    outcome.error = shown(job.input) + ": " + error.what();
  }
  return outcome;
}

// Prints outcomes in the chosen form.
class Printer {
 public:
  enum class Form { kTable, kCsv, kJson };

  Printer(const Plan& plan, Form form, std::FILE* stream, bool has_many)
      : plan_(plan), form_(form), stream_(stream), has_many_(has_many) {}

  void begin() {
    if (form_ == Form::kCsv)
      put("file," + names_of(plan_.items.empty() ? plan_.numbers : plan_.columns) + "\n");
    if (form_ == Form::kJson) put("[");
  }

  void print(const Job& job, const Outcome& outcome) {
    switch (form_) {
      case Form::kTable:
        if (outcome.report) put(table(job, *outcome.report));
        break;
      case Form::kCsv:
        if (outcome.report) put(csv(job, *outcome.report));
        break;
      case Form::kJson:
        put((is_first_ ? "\n" : ",\n") +
            json(job, outcome).dump(1, ' ', false, Json::error_handler_t::replace));
        break;
    }
    is_first_ = false;
  }

  void end() {
    if (form_ == Form::kJson) put("\n]\n");
  }

 private:
  void put(const std::string& text) const {
    if (stream_ == stdout) {
      write_output(text);
    } else {
      std::fputs(text.c_str(), stream_);
    }
  }

  std::string table(const Job& job, const Report& report) const {
    std::string text;
    if (has_many_) text += (is_first_ ? "" : "\n") + shown(job.input) + ":\n";
    std::size_t width = 0;
    for (const Column& column : plan_.numbers) width = std::max(width, column.name.size());
    if (plan_.items.empty()) {
      for (std::size_t i = 0; i < plan_.numbers.size(); ++i) {
        const Column& column = plan_.numbers[i];
        const std::string value = cell_text(report.numbers[i], column);
        text += padded(with_spaces(column.name), width + 2, true) + (value.empty() ? "-" : value) + '\n';
      }
    } else {
      text += table_of(plan_.columns, report.rows);
    }
    if (!report.conclusion.empty()) text += report.conclusion + '\n';
    return text;
  }

  std::string csv(const Job& job, const Report& report) const {
    const bool has_list = !plan_.items.empty();
    const auto& columns = has_list ? plan_.columns : plan_.numbers;
    const std::vector<std::vector<Value>> single = {report.numbers};
    std::string text;
    for (const auto& row : has_list ? report.rows : single) {
      text += quoted_for_csv(job.input);
      for (std::size_t i = 0; i < columns.size(); ++i)
        text += ',' + quoted_for_csv(cell_text(row[i], columns[i]));
      text += '\n';
    }
    return text;
  }

  Json json(const Job& job, const Outcome& outcome) const {
    Json object;
    object["file"] = job.input;
    if (!outcome.report) {
      object["error"] = outcome.error;
      return object;
    }
    const Report& report = *outcome.report;
    for (std::size_t i = 0; i < plan_.results.size(); ++i) {
      const std::string& name = job.results[i];
      object[plan_.results[i].option.substr(plan_.results[i].option.rfind('-') + 1)] =
          name.empty() ? Json() : Json(name);
    }
    for (std::size_t i = 0; i < plan_.numbers.size(); ++i) {
      object[plan_.numbers[i].name] = json_of(report.numbers[i], plan_.numbers[i]);
    }
    if (plan_.items.empty()) return object;
    Json items = Json::array();
    for (const auto& row : report.rows) {
      Json item;
      for (std::size_t i = 0; i < plan_.columns.size(); ++i) {
        item[plan_.columns[i].name] = json_of(row[i], plan_.columns[i]);
      }
      items.push_back(item);
    }
    object[plan_.items] = items;
    return object;
  }

  const Plan& plan_;
  Form form_;
  std::FILE* stream_;
  bool has_many_;
  bool is_first_ = true;
};

// Works on all pictures with several threads, and prints the outcomes in the order of the pictures.
class Workshop {
 public:
  Workshop(const std::string& name, std::vector<Job> jobs, Printer printer)
      : name_(name),
        jobs_(std::move(jobs)),
        printer_(printer),
        outcomes_(jobs_.size()),
        progress_(name, jobs_.size()) {}

  int run(int32_t threads, const std::function<Report(const Job&)>& work) {
    printer_.begin();
    const auto count = std::min<std::size_t>(static_cast<std::size_t>(threads), jobs_.size());
    std::vector<std::thread> others;
    for (std::size_t i = 1; i < count; ++i) others.emplace_back([this, &work] { work_on(work); });
    work_on(work);
    for (std::thread& other : others) other.join();
    progress_.clear();
    if (!failure_.empty()) throw OutputError(failure_);
    printer_.end();
    return status_;
  }

 private:
  void work_on(const std::function<Report(const Job&)>& work) {
    for (std::size_t i = next_++; i < jobs_.size(); i = next_++) {
      Job& job = jobs_[i];
      progress_.begin(shown(job.input));
      job.says = [this, &job](const std::string& step) { progress_.says(shown(job.input), step); };
      try {
        finish(i, outcome_of(job, work));
      } catch (const OutputError& error) {
        const std::lock_guard lock(mutex_);
        failure_ = error.what();
        next_ = jobs_.size();
      }
    }
  }

  void finish(std::size_t index, Outcome outcome) {
    const std::lock_guard lock(mutex_);
    outcomes_[index] = std::move(outcome);
    progress_.clear();
    for (; printed_ < jobs_.size() && outcomes_[printed_] && failure_.empty(); ++printed_) {
      const Outcome& ready = *outcomes_[printed_];
      if (!ready.report) std::fprintf(stderr, "%s: %s\n", name_.c_str(), ready.error.c_str());
      if (!ready.report || !ready.report->is_complete) status_ = kFailed;
      printer_.print(jobs_[printed_], ready);
      outcomes_[printed_] = Outcome();  // frees the rows
    }
    progress_.finish();
  }

  std::string name_;
  std::vector<Job> jobs_;
  Printer printer_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex mutex_;
  std::vector<std::optional<Outcome>> outcomes_;
  std::size_t printed_ = 0;
  std::string failure_;
  int status_ = kDone;
  Progress progress_;
};

}  // namespace

std::string text_of(double value, int decimals) {
  if (!std::isfinite(value)) return "";
  std::ostringstream stream;
  stream.setf(std::ios::fixed);
  stream.precision(decimals);
  stream << value;
  const std::string text = stream.str();
  // A small negative number becomes 0, not -0.
  return text.find_first_of("123456789") == std::string::npos && text[0] == '-' ? text.substr(1) : text;
}

Host::Host(Plan plan)
    : plan_(std::move(plan)),
      app_(plan_.purpose, plan_.name),
      threads_(std::clamp(static_cast<int32_t>(std::thread::hardware_concurrency()), 1, 256)) {
  if (!plan_.takes) plan_.takes = is_picture_name;
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
  app_.set_version_flag("--version", plan_.name + " (NuvImgSDK2014DLL) " NUV_VERSION,
                        "print the version and exit");
}

std::string Host::help_text() const {
  std::string text = "Usage: " + plan_.name + " [OPTION]...";
  std::string arguments;
  std::string options;
  for (const CLI::Option* option : app_.get_options()) {
    if (option->get_positional()) {
      std::string name = option->get_name(true);
      std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
      text += " " + name + (option->get_expected_max() > 1 ? "..." : "");
      arguments += entry(name, option->get_description());
    } else {
      options += entry(option_names(*option), option->get_description());
    }
  }
  text += '\n' + wrapped(plan_.purpose, 0, 0) + "\n\nArguments:\n" + arguments + "\nOptions:\n" + options;
  text += "\nResults:\n";
  if (!plan_.results.empty()) {
    text +=
        "  " +
        wrapped(
            "A NAME is a file, or a folder for names by default. A folder is made if its NAME ends in a "
            "slash and it is "
            "missing. The results of several pictures need a folder. The default is the current directory.",
            2, 2) +
        '\n';
    for (const ResultKind& kind : plan_.results) {
      text += entry("PICTURE" + kind.suffix + kind.endings.front(),
                    kind.option.substr(kind.option.find("--")) +
                        ": the form follows the ending: " + joined(kind.endings, ", "));
    }
  }
  const bool has_list = !plan_.items.empty();
  if (!plan_.numbers.empty() || has_list) {
    text +=
        "\nCSV and JSON:\n  " +
        wrapped("--csv prints the line file," + names_of(has_list ? plan_.columns : plan_.numbers) +
                    (has_list ? " and then a line for each of the " + plan_.items
                              : " and then a line for each picture") +
                    ". --json prints an array with an object for each picture. Its members are file, the "
                    "names of the results" +
                    (plan_.numbers.empty() ? "" : ", " + names_of(plan_.numbers)) +
                    (has_list ? " and " + plan_.items + ", an array of objects with the names of the columns"
                              : "") +
                    "; if the picture failed, file and error.",
                2, 2) +
        '\n' + columns_text(plan_.numbers) + columns_text(plan_.columns);
  }
  text += "\nExit status:\n" + entry("0", "all pictures are done") +
          entry("1", "a picture failed, or something was not found; the other pictures are done") +
          entry("2", "the command line is wrong; nothing is done");
  if (!plan_.notes.empty()) text += "\nNotes:\n  " + wrapped(plan_.notes, 2, 2) + '\n';
  return text;
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
  if (std::count(files.begin(), files.end(), "-") > 1)
    throw UsageError("standard input can be read only once");
  return files;
}

std::vector<Job> Host::jobs_of(const std::vector<std::string>& inputs) const {
  std::vector<Job> jobs;
  for (const std::string& input : inputs) {
    Job job;
    job.input = input;
    for (std::size_t i = 0; i < plan_.results.size(); ++i) {
      const ResultKind& kind = plan_.results[i];
      const std::string& given = result_names_[i];
      if (given.empty() && kind.is_optional) {
        job.results.emplace_back();
      } else if (given.empty() && i == 0 && input == "-" && !plan_.result_of_input.empty()) {
        job.results.push_back(plan_.result_of_input);
      } else {
        job.results.push_back(given == "-" ? given : result_name(kind, given, input));
      }
    }
    jobs.push_back(job);
  }
  return jobs;
}

// Refuses what would lose a file: results with one name, results that are inputs, unknown endings.
void Host::check_results(const std::vector<Job>& jobs) const {
  std::map<std::string, std::string> inputs;  // by key
  std::map<std::string, std::string> origins;
  std::vector<std::string> names;
  for (const std::string* file : input_files_) names.push_back(*file);
  for (const Job& job : jobs) names.push_back(job.input);
  for (const std::string& name : names) {
    if (name != "-") inputs[key_of(name)] = name;
  }
  for (std::size_t i = 0; i < plan_.results.size(); ++i) {
    const std::string& given = result_names_[i];
    if (jobs.size() > 1 && !given.empty() && !names_folder(given) && !is_device(given)) {
      throw UsageError(shown(given == "-" ? "standard output" : given) +
                       ": is not a folder, as the results of several pictures need");
    }
  }
  for (const Job& job : jobs) {
    for (std::size_t i = 0; i < job.results.size(); ++i) {
      const std::string& name = job.results[i];
      const std::vector<std::string>& endings = plan_.results[i].endings;
      if (name.empty()) continue;
      if (name == "-") {
        if (i > 0) throw UsageError("standard output takes only the result of " + plan_.results[0].option);
        if (csv_ || json_) throw UsageError("standard output cannot take a result besides --csv or --json");
        if (is_terminal(stdout))
          throw UsageError("standard output is a terminal, and the result is not a text");
        continue;
      }
      if (is_device(name)) continue;
      if (std::find(endings.begin(), endings.end(), ending_of(name)) == endings.end()) {
        throw UsageError(name + ": the name of the result must end in " + joined(endings, " or "));
      }
      const std::string key = key_of(name);
      const auto input = inputs.find(key);
      if (input != inputs.end())
        throw UsageError(name + ": the result would overwrite an input; name another by --output");
      std::error_code unknown;
      if (fs::hard_link_count(name, unknown) > 1 && !unknown) {
        for (const std::string& other : names) {
          if (fs::equivalent(name, other, unknown))
            throw UsageError(name + ": the result would overwrite the input " + other);
        }
      }
      const auto [other, is_new] = origins.emplace(key, job.input);
      if (!is_new) {
        throw UsageError(name + ": would be the result of " + shown(other->second) + " and of " +
                         shown(job.input));
      }
    }
  }
}

int Host::run(int argc, char** argv, const std::function<Report(const Job&)>& work) try {
  add_common_options();
  try {
    app_.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    write_output(help_text());
    return kDone;
  } catch (const CLI::CallForVersion& version) {
    write_output(std::string(version.what()) + '\n');
    return kDone;
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  if (check_) check_();
  const std::vector<Job> jobs = jobs_of(inputs());
  check_results(jobs);
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

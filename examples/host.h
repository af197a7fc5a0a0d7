// The common frame of the hosts.
//
// A host describes itself: its name, the files that it makes of each picture, and the numbers that it finds. It
// adds its own options, and passes a function that works on one picture. The frame does the rest in the same
// way for all hosts: files and folders, threads, names of results, tables, CSV and JSON, messages, --help,
// --version and the exit status.
//
//     Host host({"mean_gray", "Computes the mean gray of pictures."});
//     host.plan().numbers = {{"mean", "mean gray level", 2}};
//     return host.run(argc, argv, [](const Job& job) {
//       Picture picture = read_picture(job.input);
//       ...
//       return Report{{mean}};
//     });

#ifndef NUV_EXAMPLES_HOST_H
#define NUV_EXAMPLES_HOST_H

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

// A number or a text. An empty one is empty in CSV, null in JSON and "-" in a table.
using Value = std::variant<std::monostate, int64_t, double, std::string>;

// A value that the host states for each picture, or for each item that it finds in a picture.
struct Column {
  std::string name;     // as in CSV and JSON; tables show spaces for underscores
  std::string meaning;  // with the unit, for --help
  int decimals = 0;     // of numbers that are not whole
};

// A kind of file that the host makes of each picture.
struct ResultKind {
  std::string option;                // "-o,--output"
  std::string suffix;                // "_lines": camera.jpg becomes camera_lines and the first ending
  std::vector<std::string> endings;  // those that a user may choose
  std::string meaning;               // for --help
  bool is_optional = false;          // made only if the option is given
};

// The endings of pictures, the default first.
inline const std::vector<std::string> kPictureEndings = {".png", ".bmp"};

struct Plan {
  std::string name;
  std::string purpose;
  std::vector<ResultKind> results;
  std::vector<Column> numbers;  // one value for each picture
  std::string items;            // name of the list of items in JSON; empty: there is no list
  std::vector<Column> columns;  // one value for each item
  std::string notes;            // last paragraphs of --help
  std::string input_meaning =
      "PNG, JPEG, BMP, PGM or PPM file, folder of such files, or - for standard input";
  std::function<bool(const std::string&)> takes;  // whether a file of a folder is an input; default: pictures
  std::string result_of_input;  // default name of the first result if standard input is read
};

// One picture to work on.
struct Job {
  std::string input;                             // a file name, or "-"
  std::vector<std::string> results;              // a name for each result kind; empty: not to be made
  std::function<void(const std::string&)> says;  // shows on a terminal what is being done
};

// What a host states about one picture.
struct Report {
  std::vector<Value> numbers;            // in the order of Plan::numbers
  std::vector<std::vector<Value>> rows;  // an item each, in the order of Plan::columns
  std::string conclusion;                // the last line of the table
  bool is_complete = true;               // false: something was not found, which the exit status says
};

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
  std::string help_text() const;
  std::vector<std::string> inputs() const;
  std::vector<Job> jobs_of(const std::vector<std::string>& inputs) const;
  void check_results(const std::vector<Job>& jobs) const;

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

// The command line cannot be carried out. Nothing has been done; the exit status is 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A number as the tables show it.
std::string text_of(double value, int decimals);

#endif

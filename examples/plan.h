// What a host says about itself, and what it finds in a picture.

#ifndef NUV_EXAMPLES_PLAN_H
#define NUV_EXAMPLES_PLAN_H

#include <cstdint>
#include <functional>
#include <stdexcept>
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
  std::vector<int32_t> depths;           // of the rows, if they form a tree, which the table shows
  std::string conclusion;                // the last line of the table
  bool is_complete = true;               // false: something was not found, which the exit status says
};

// The command line cannot be carried out. Nothing has been done; the exit status is 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A number as the tables show it.
std::string text_of(double value, int decimals);

// A number with a noun: "1 part", "2 parts".
std::string counted(std::size_t count, const std::string& noun);

// Texts with a separator between them.
std::string joined(const std::vector<std::string>& parts, const std::string& separator);
std::string names_of(const std::vector<Column>& columns, const std::string& separator);

// The name of an input in messages.
std::string shown(const std::string& input);

#endif

#include "help_text.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace {

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
  if (option.get_expected_max() > 0) names += "=" + option.get_type_name();
  return names;
}

std::string columns_text(const std::vector<Column>& columns) {
  std::string text;
  for (const Column& column : columns) text += entry(column.name, column.meaning);
  return text;
}

std::string prose(const std::string& text) {
  return wrapped(text, 0, 0) + '\n';
}

std::string results_text(const Plan& plan) {
  if (plan.results.empty()) return "";
  std::string text =
      "\nResults:\n" +
      prose(
          "A NAME is a file, or a folder for names by default. A folder is made if its NAME ends in a "
          "slash and it is missing. The results of several pictures need a folder. The default is the "
          "current directory. The names by default, and the endings that a name may have:") +
      '\n';
  for (const ResultKind& kind : plan.results) {
    text += entry(kind.option.substr(kind.option.find("--")),
                  "PICTURE" + kind.suffix + kind.endings.front() + "; " + joined(kind.endings, ", "));
  }
  return text;
}

// The columns of CSV and the members of JSON, one for one with the printer.
std::string schema_text(const Plan& plan) {
  const bool has_list = !plan.items.empty();
  std::string json =
      "--json prints an array with an object for each picture: file, the names of the results under the "
      "names of their options";
  if (!plan.numbers.empty()) json += ", " + names_of(plan.numbers, ", ");
  if (has_list) json += ", and " + plan.items + ", an array of objects with the columns below";
  json += ". If the picture failed, the object has file and error.";
  std::string text = "\nCSV and JSON:\n" +
                     prose("--csv prints a line of names, and then a line for each " +
                           std::string(has_list ? "of the " + plan.items : "picture") + ": file, " +
                           names_of(has_list ? plan.columns : plan.numbers, ", ") + ".") +
                     '\n' + prose(json);
  if (!plan.numbers.empty()) text += "\nFor each picture:\n" + columns_text(plan.numbers);
  if (has_list) text += "\nFor each of the " + plan.items + ":\n" + columns_text(plan.columns);
  return text;
}

}  // namespace

std::string help_text(const Plan& plan, const CLI::App& app) {
  std::string text = "Usage: " + plan.name + " [OPTION]...";
  std::string arguments;
  std::string options;
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_positional()) {
      std::string name = option->get_name(true);
      std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
      text += " " + name + (option->get_expected_max() > 1 ? "..." : "");
      arguments += entry(name, option->get_description());
    } else {
      options += entry(option_names(*option), option->get_description());
    }
  }
  text += '\n' + wrapped(plan.purpose, 0, 0) + "\n\nArguments:\n" + arguments + "\nOptions:\n" + options;
  text += results_text(plan);
  if (!plan.numbers.empty() || !plan.items.empty()) text += schema_text(plan);
  text += "\nExit status:\n" + entry("0", "all pictures are done") +
          entry("1", "a picture failed, or something was not found; the other pictures are done") +
          entry("2", "the command line is wrong; nothing is done");
  if (!plan.notes.empty()) text += "\nNotes:\n" + prose(plan.notes);
  return text;
}

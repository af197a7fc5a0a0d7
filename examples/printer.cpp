#include "printer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <vector>

#include "standard_streams.h"

namespace {

using Json = nlohmann::ordered_json;

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

// The rows below their names. Numbers are on the right, and texts on the left. In a tree, the first column is
// indented by the depth.
std::string table_of(const std::vector<Column>& columns, const Report& report) {
  const auto& rows = report.rows;
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
    if (!report.depths.empty()) {
      cells[r + 1][0].insert(0, 2 * static_cast<std::size_t>(report.depths[r]), ' ');
      is_text[0] = true;
    }
  }
  std::vector<std::size_t> widths(columns.size(), 0);
  for (const auto& row : cells) {
    for (std::size_t c = 0; c < columns.size(); ++c) widths[c] = std::max(widths[c], width_of(row[c]));
  }
  std::string table;
  for (const auto& row : cells) {
    std::string line;
    for (std::size_t c = 0; c < columns.size(); ++c) {
      line += (c == 0 ? "" : "  ") + padded(row[c], widths[c], is_text[c]);
    }
    table += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  }
  return table;
}

Json object_of(const Plan& plan, const Job& job, const Outcome& outcome) {
  Json object;
  object["file"] = job.input;
  if (!outcome.report) {
    object["error"] = outcome.error;
    return object;
  }
  const Report& report = *outcome.report;
  for (std::size_t i = 0; i < plan.results.size(); ++i) {
    const std::string& name = job.results[i];
    object[plan.results[i].option.substr(plan.results[i].option.rfind('-') + 1)] =
        name.empty() ? Json() : Json(name);
  }
  for (std::size_t i = 0; i < plan.numbers.size(); ++i) {
    object[plan.numbers[i].name] = json_of(report.numbers[i], plan.numbers[i]);
  }
  if (plan.items.empty()) return object;
  Json items = Json::array();
  for (const auto& row : report.rows) {
    Json item;
    for (std::size_t i = 0; i < plan.columns.size(); ++i) {
      item[plan.columns[i].name] = json_of(row[i], plan.columns[i]);
    }
    items.push_back(item);
  }
  object[plan.items] = items;
  return object;
}

}  // namespace

void Printer::begin() {
  if (form_ == Form::kCsv)
    put("file," + names_of(plan_.items.empty() ? plan_.numbers : plan_.columns, ",") + "\n");
  if (form_ == Form::kJson) put("[");
}

void Printer::print(const Job& job, const Outcome& outcome) {
  switch (form_) {
    case Form::kTable:
      if (outcome.report) put(table(job, *outcome.report));
      break;
    case Form::kCsv:
      if (outcome.report) put(csv(job, *outcome.report));
      break;
    case Form::kJson:
      put((is_first_ ? "\n" : ",\n") + json(job, outcome));
      break;
  }
  is_first_ = false;
}

void Printer::end() {
  if (form_ == Form::kJson) put("\n]\n");
}

void Printer::put(const std::string& text) const {
  if (stream_ == stdout) {
    write_output(text);
  } else {
    std::fputs(text.c_str(), stream_);
  }
}

std::string Printer::table(const Job& job, const Report& report) const {
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
    text += table_of(plan_.columns, report);
  }
  if (!report.conclusion.empty()) text += report.conclusion + '\n';
  return text;
}

std::string Printer::csv(const Job& job, const Report& report) const {
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

std::string Printer::json(const Job& job, const Outcome& outcome) const {
  // Names of files may have bytes that are not UTF-8.
  return object_of(plan_, job, outcome).dump(1, ' ', false, Json::error_handler_t::replace);
}

#include "plan.h"

#include <cmath>
#include <sstream>

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

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
  std::string all;
  for (const std::string& part : parts) all += (all.empty() ? "" : separator) + part;
  return all;
}

std::string names_of(const std::vector<Column>& columns, const std::string& separator) {
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const Column& column : columns) names.push_back(column.name);
  return joined(names, separator);
}

std::string shown(const std::string& input) {
  return input == "-" ? "standard input" : input;
}

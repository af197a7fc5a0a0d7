#include "gauge_features.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include "picture.h"
#include "plan.h"

namespace {

constexpr FeatureKind kKinds[] = {FeatureKind::kWidth, FeatureKind::kEdge, FeatureKind::kCircle};

struct Range {
  const char* name;
  double least;
  double most;
};

// The library finds the peaks of series of up to 4096 values.
constexpr double kMostLength = 4000;
constexpr double kFarthest = 1e6;
constexpr Range kOfRectangle[] = {{"X", -kFarthest, kFarthest},
                                  {"Y", -kFarthest, kFarthest},
                                  {"LENGTH", 8, kMostLength},
                                  {"WIDTH", 3, kMostLength},
                                  {"ANGLE", -360, 360}};
constexpr Range kOfCircle[] = {{"X", -kFarthest, kFarthest},
                               {"Y", -kFarthest, kFarthest},
                               {"RADIUS", 5, 100000},
                               {"REACH", 4, kMostLength / 2 - 1}};
constexpr std::size_t kNeeded = 4;  // values of both kinds without the ANGLE

double number_of(const std::string& text, const Range& range) {
  char* end = nullptr;
  errno = 0;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || errno != 0 || !(range.least <= value && value <= range.most)) {
    throw UsageError(range.name + (" \"" + text) + "\" is not a number from " + text_of(range.least, 0) +
                     " to " + text_of(range.most, 0));
  }
  return value;
}

Feature feature_of(FeatureKind kind, const std::string& name, std::vector<std::string> values) {
  Feature feature;
  feature.kind = kind;
  feature.name = name;
  if (!values.empty() && (values.back() == "bright" || values.back() == "dark")) {
    feature.light = values.back() == "bright" ? Light::kBright : Light::kDark;
    values.pop_back();
  }
  const bool is_circle = kind == FeatureKind::kCircle;
  const std::size_t most = is_circle ? std::size(kOfCircle) : std::size(kOfRectangle);
  if (values.size() < kNeeded || values.size() > most) {
    throw UsageError(is_circle ? "a circle has the values X Y RADIUS REACH and may have bright or dark"
                               : "a " + name_of(kind) +
                                     " has the values X Y LENGTH WIDTH and may have ANGLE, bright or dark");
  }
  std::vector<double> numbers;
  for (std::size_t i = 0; i < values.size(); ++i) {
    numbers.push_back(number_of(values[i], is_circle ? kOfCircle[i] : kOfRectangle[i]));
  }
  feature.x = numbers[0];
  feature.y = numbers[1];
  if (is_circle) {
    feature.radius = numbers[2];
    feature.reach = numbers[3];
    if (feature.reach > feature.radius - 1) throw UsageError("REACH must be less than RADIUS by 1 or more");
  } else {
    feature.length = numbers[2];
    feature.width = numbers[3];
    feature.angle = numbers.size() > kNeeded ? numbers[kNeeded] : 0;
  }
  return feature;
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) {
    if (separator != ' ' || !part.empty()) parts.push_back(part);
  }
  return parts;
}

Feature feature_of_line(const std::vector<std::string>& words) {
  const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                  [&](FeatureKind k) { return name_of(k) == words[0]; });
  if (kind == std::end(kKinds)) throw UsageError('"' + words[0] + "\" is not one of width, edge, circle");
  if (words.size() < 2) throw UsageError("the name is missing");
  return feature_of(*kind, words[1], {words.begin() + 2, words.end()});
}

}  // namespace

std::string name_of(FeatureKind kind) {
  return kind == FeatureKind::kWidth ? "width" : kind == FeatureKind::kEdge ? "edge" : "circle";
}

Feature feature_of_option(FeatureKind kind, const std::string& name, const std::string& values) try {
  return feature_of(kind, name, split(values, ','));
} catch (const UsageError& error) {
  throw UsageError("--" + name_of(kind) + " " + values + ": " + error.what());
}

std::vector<Feature> features_of_file(const std::string& file) {
  constexpr uint64_t kMostBytes = 1 << 20;
  std::vector<uint8_t> bytes;
  try {
    bytes = read_file(file, kMostBytes);
  } catch (const PictureError& error) {
    throw UsageError(error.what());
  }
  std::vector<Feature> features;
  std::istringstream lines(std::string(bytes.begin(), bytes.end()));
  int32_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    line.erase(std::min(line.find('#'), line.size()));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\t' || c == '\r'; }, ' ');
    const std::vector<std::string> words = split(line, ' ');
    if (words.empty()) continue;
    try {
      features.push_back(feature_of_line(words));
    } catch (const UsageError& error) {
      throw UsageError(file + ": line " + std::to_string(number) + ": " + error.what());
    }
  }
  if (features.empty()) throw UsageError(file + ": has no features");
  return features;
}

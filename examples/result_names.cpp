#include "result_names.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>

#include "picture.h"
#include "standard_streams.h"

namespace {

namespace fs = std::filesystem;

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

std::string result_name(const ResultKind& kind, const std::string& given, const std::string& input) {
  if (!given.empty() && !names_folder(given)) return given;
  const std::string stem = input == "-" ? "stdin" : fs::path(input).stem().string();
  return (fs::path(given) / (stem + kind.suffix + kind.endings.front())).string();
}

}  // namespace

bool names_folder(const std::string& name) {
  std::error_code unknown;
  return fs::is_directory(name, unknown) ||
         (!name.empty() && (name.back() == '/' || name.back() == fs::path::preferred_separator));
}

std::vector<Job> jobs_of(const Plan& plan, const std::vector<std::string>& inputs,
                         const std::vector<std::string>& given_names) {
  std::vector<Job> jobs;
  for (const std::string& input : inputs) {
    Job job;
    job.input = input;
    for (std::size_t i = 0; i < plan.results.size(); ++i) {
      const ResultKind& kind = plan.results[i];
      const std::string& given = given_names[i];
      if (given.empty() && kind.is_optional) {
        job.results.emplace_back();
      } else if (given.empty() && i == 0 && input == "-" && !plan.result_of_input.empty()) {
        job.results.push_back(plan.result_of_input);
      } else {
        job.results.push_back(given == "-" ? given : result_name(kind, given, input));
      }
    }
    jobs.push_back(job);
  }
  return jobs;
}

void check_results(const Plan& plan, const std::vector<Job>& jobs,
                   const std::vector<std::string>& given_names, const std::vector<std::string>& other_inputs,
                   bool output_is_taken) {
  std::map<std::string, std::string> inputs;  // by key
  std::map<std::string, std::string> origins;
  std::vector<std::string> names = other_inputs;
  for (const Job& job : jobs) names.push_back(job.input);
  for (const std::string& name : names) {
    if (name != "-") inputs[key_of(name)] = name;
  }
  for (std::size_t i = 0; i < plan.results.size(); ++i) {
    const std::string& given = given_names[i];
    if (jobs.size() > 1 && !given.empty() && !names_folder(given) && !is_device(given)) {
      throw UsageError(shown(given == "-" ? "standard output" : given) +
                       ": is not a folder, as the results of several pictures need");
    }
  }
  for (const Job& job : jobs) {
    for (std::size_t i = 0; i < job.results.size(); ++i) {
      const std::string& name = job.results[i];
      const std::vector<std::string>& endings = plan.results[i].endings;
      if (name.empty()) continue;
      if (name == "-") {
        if (i > 0) throw UsageError("standard output takes only the result of --output");
        if (output_is_taken) throw UsageError("standard output cannot take a result besides --csv or --json");
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
            throw UsageError(name + ": the result would overwrite an input, another name of the same file");
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

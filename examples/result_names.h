// The names of the files that a host makes.

#ifndef NUV_EXAMPLES_RESULT_NAMES_H
#define NUV_EXAMPLES_RESULT_NAMES_H

#include <string>
#include <vector>

#include "plan.h"

// Whether a name that a user gave for a result is that of a folder.
bool names_folder(const std::string& name);

// The pictures to work on, with the names of their results. given_names: one for each kind of result, or empty.
std::vector<Job> jobs_of(const Plan& plan, const std::vector<std::string>& inputs,
                         const std::vector<std::string>& given_names);

// Refuses what would lose a file: results of one name, results that are inputs, unknown endings. other_inputs:
// files that are read besides the pictures. output_is_taken: standard output receives CSV or JSON.
void check_results(const Plan& plan, const std::vector<Job>& jobs,
                   const std::vector<std::string>& given_names, const std::vector<std::string>& other_inputs,
                   bool output_is_taken);

#endif

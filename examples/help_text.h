// The text of --help, in the form that help2man reads.

#ifndef NUV_EXAMPLES_HELP_TEXT_H
#define NUV_EXAMPLES_HELP_TEXT_H

#include <CLI/CLI.hpp>
#include <string>

#include "plan.h"

std::string help_text(const Plan& plan, const CLI::App& app);

#endif

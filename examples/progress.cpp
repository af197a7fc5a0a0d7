#include "progress.h"

#include <algorithm>
#include <cstdio>

#include "standard_streams.h"

Progress::Progress(const std::string& name, std::size_t total)
    : name_(name), total_(total), is_shown_(is_terminal(stderr)) {}

void Progress::begin(const std::string& file) {
  if (total_ > 1) says(file, "");
}

void Progress::says(const std::string& file, const std::string& step) {
  const std::lock_guard lock(mutex_);
  step_ = file + (step.empty() ? "" : ": " + step);
  draw();
}

void Progress::finish() {
  const std::lock_guard lock(mutex_);
  ++done_;
  if (total_ > 1 && done_ < total_) draw();
}

void Progress::clear() {
  const std::lock_guard lock(mutex_);
  erase();
}

void Progress::draw() {
  constexpr std::size_t kBar = 20;
  constexpr std::size_t kMostWidth = 78;
  if (!is_shown_) return;
  erase();
  std::string line = name_ + ": ";
  if (total_ > 1) {
    const std::size_t filled = done_ * kBar / total_;
    line += "[" + std::string(filled, '#') + std::string(kBar - filled, '.') + "] " + std::to_string(done_) +
            " of " + std::to_string(total_) + "  ";
  }
  line += step_;
  line.resize(std::min(line.size(), kMostWidth));
  std::fputs(line.c_str(), stderr);
  std::fflush(stderr);
  width_ = line.size();
}

// Spaces serve terminals that know no escape sequences, too.
void Progress::erase() {
  if (width_ > 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(width_), "");
  width_ = 0;
}

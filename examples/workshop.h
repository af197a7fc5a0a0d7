// Pictures worked on by several threads.

#ifndef NUV_EXAMPLES_WORKSHOP_H
#define NUV_EXAMPLES_WORKSHOP_H

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "printer.h"
#include "progress.h"

// Works on all pictures with several threads, and prints the outcomes in the order of the pictures.
class Workshop {
 public:
  Workshop(const std::string& name, std::vector<Job> jobs, Printer printer)
      : name_(name),
        jobs_(std::move(jobs)),
        printer_(printer),
        outcomes_(jobs_.size()),
        progress_(name, jobs_.size()) {}

  // Returns the exit status. Throws OutputError if standard output cannot take the reports.
  int run(int32_t threads, const std::function<Report(const Job&)>& work);

 private:
  void work_on(const std::function<Report(const Job&)>& work);
  void finish(std::size_t index, Outcome outcome);

  std::string name_;
  std::vector<Job> jobs_;
  Printer printer_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex mutex_;
  std::vector<std::optional<Outcome>> outcomes_;
  std::size_t printed_ = 0;
  std::string failure_;
  int status_ = 0;
  Progress progress_;
};

#endif

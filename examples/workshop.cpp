#include "workshop.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <thread>

#include "picture.h"
#include "standard_streams.h"

namespace {

Outcome outcome_of(const Job& job, const std::function<Report(const Job&)>& work) {
  Outcome outcome;
  try {
    outcome.report = work(job);
  } catch (const PictureError& error) {
    outcome.error = error.what();
  } catch (const std::bad_alloc&) {
    outcome.error = shown(job.input) + ": not enough memory";
  } catch (const OutputError&) {
    throw;
  } catch (const std::exception& error) {
    outcome.error = shown(job.input) + ": " + error.what();
  }
  return outcome;
}

}  // namespace

int Workshop::run(int32_t threads, const std::function<Report(const Job&)>& work) {
  printer_.begin();
  const auto count = std::min<std::size_t>(static_cast<std::size_t>(threads), jobs_.size());
  std::vector<std::thread> others;
  for (std::size_t i = 1; i < count; ++i) others.emplace_back([this, &work] { work_on(work); });
  work_on(work);
  for (std::thread& other : others) other.join();
  progress_.clear();
  if (!failure_.empty()) throw OutputError(failure_);
  printer_.end();
  return status_;
}

void Workshop::work_on(const std::function<Report(const Job&)>& work) {
  for (std::size_t i = next_++; i < jobs_.size(); i = next_++) {
    Job& job = jobs_[i];
    progress_.begin(shown(job.input));
    job.says = [this, &job](const std::string& step) { progress_.says(shown(job.input), step); };
    try {
      finish(i, outcome_of(job, work));
    } catch (const OutputError& error) {
      const std::lock_guard lock(mutex_);
      failure_ = error.what();
      next_ = jobs_.size();
    }
  }
}

void Workshop::finish(std::size_t index, Outcome outcome) {
  const std::lock_guard lock(mutex_);
  outcomes_[index] = std::move(outcome);
  progress_.clear();
  for (; printed_ < jobs_.size() && outcomes_[printed_] && failure_.empty(); ++printed_) {
    const Outcome& ready = *outcomes_[printed_];
    if (!ready.report) std::fprintf(stderr, "%s: %s\n", name_.c_str(), ready.error.c_str());
    if (!ready.report || !ready.report->is_complete) status_ = 1;
    printer_.print(jobs_[printed_], ready);
    outcomes_[printed_] = Outcome();  // frees the rows
  }
  progress_.finish();
}

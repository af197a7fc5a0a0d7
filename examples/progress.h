// One line on a terminal that shows how far a host is.

#ifndef NUV_EXAMPLES_PROGRESS_H
#define NUV_EXAMPLES_PROGRESS_H

#include <cstddef>
#include <mutex>
#include <string>

// Shows nothing if standard error is not a terminal. May be used by several threads.
class Progress {
 public:
  Progress(const std::string& name, std::size_t total);

  void begin(const std::string& file);                          // work on a file begins
  void says(const std::string& file, const std::string& step);  // what is being done with it
  void finish();                                                // work on one more file has ended
  void clear();  // removes the line, so that text can be printed

 private:
  void draw();
  void erase();

  std::string name_;
  std::size_t total_;
  bool is_shown_;
  std::mutex mutex_;
  std::size_t done_ = 0;
  std::string step_;
  std::size_t width_ = 0;  // of the line that stands on the terminal
};

#endif

// Reports as tables, CSV and JSON.

#ifndef NUV_EXAMPLES_PRINTER_H
#define NUV_EXAMPLES_PRINTER_H

#include <cstdio>
#include <optional>
#include <string>

#include "plan.h"

// What has become of one picture.
struct Outcome {
  std::optional<Report> report;
  std::string error;
};

class Printer {
 public:
  enum class Form { kTable, kCsv, kJson };

  // has_many: there are several pictures, so tables get a heading.
  Printer(const Plan& plan, Form form, std::FILE* stream, bool has_many)
      : plan_(plan), form_(form), stream_(stream), has_many_(has_many) {}

  void begin();
  void print(const Job& job, const Outcome& outcome);
  void end();

 private:
  void put(const std::string& text) const;
  std::string table(const Job& job, const Report& report) const;
  std::string csv(const Job& job, const Report& report) const;
  std::string json(const Job& job, const Outcome& outcome) const;

  const Plan& plan_;
  Form form_;
  std::FILE* stream_;
  bool has_many_;
  bool is_first_ = true;
};

#endif

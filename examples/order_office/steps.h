// What every step of the office needs: results that stop the program when they are failures, a line
// on the terminal for what was done, and short texts in columns.
#pragma once

#include <veltgeneral/err_info.h>

#include <chrono>
#include <cstdint>
#include <string>

namespace office {

using veltgeneral::ErrInfo;
using veltgeneral::fromUtf8;
using veltgeneral::Text;
using veltgeneral::TextView;
using veltgeneral::toUtf8;
using veltgeneral::Variant;

using Cents = std::int64_t;

// Throws std::runtime_error with the result's message where it is no success.
void check(const ErrInfo& result);

// One line for every step: what is being done, then how much of it and how fast.
class Step {
 public:
  explicit Step(const char* what);
  // Draws how far the step is, on a terminal.
  void progress(double share);
  // `count` of `unit`, which the line also gives per second; then what else there is to say.
  void done(std::size_t count, const char* unit, const std::string& note = {});

 private:
  using Clock = std::chrono::steady_clock;
  const char* what_;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point drawn_{};
};

Text digits(std::int64_t number);
// 123456 as "1.234,56".
Text money(Cents cents);
// "20261118093000" as "18/11/2026".
Text day(TextView date);
// Cut or filled with blanks to exactly `width`.
Text left(TextView text, std::size_t width);
Text right(TextView text, std::size_t width);
// What a codec answers with: a text, or an integer to be written as one.
Text written(const Variant& answer);

}  // namespace office

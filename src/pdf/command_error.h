// CommandError: what is wrong with a command, and in which line of the command file.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace veltgeneral::pdf {

class CommandError : public std::exception {
 public:
  // `message` is UTF-8: "expected a font size from 1 to 500, found \"big\"".
  explicit CommandError(std::string message) : message_(std::move(message)) {}
  CommandError(std::string message, int line) : message_(std::move(message)) { setLine(line); }

  // Names the line; the first to know it wins.
  void setLine(int line) {
    if (line_ != 0) return;
    line_ = line;
    message_ = "line " + std::to_string(line) + ": " + message_;
  }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string message_;
  int line_ = 0;
};

}  // namespace veltgeneral::pdf

// The one error type of the drawing library and of the engines built on it.
//
// It ends at the rim of the loadable module: nothing is thrown across it.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace veltgeneral::drawing {

class Error : public std::exception {
 public:
  // `message` is UTF-8 and reads on after a name: "no such font", "No space left on device".
  explicit Error(std::string message) : message_(std::move(message)) {}
  // An error of the system: its number and the system's own words for it.
  static Error ofSystem(int number);

  const char* what() const noexcept override { return message_.c_str(); }
  // errno of the refusing call; 0 where no call refused.
  int systemError() const noexcept { return systemError_; }

 private:
  std::string message_;
  int systemError_ = 0;
};

}  // namespace veltgeneral::drawing

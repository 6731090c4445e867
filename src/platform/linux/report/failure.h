// Errors inside the module: thrown as Failure or the drawing library's Error, and turned into a
// run-time error number at the module's border, where `answer` stands.
#pragma once

#include <exception>
#include <utility>

#include "platform/report_surfaces.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {

class Failure : public std::exception {
 public:
  explicit Failure(RunTime error) : error_(error) {}
  RunTime error() const noexcept { return error_; }
  const char* what() const noexcept override { return "report surface"; }

 private:
  RunTime error_;
};

// The number of the exception being handled; `device` stands for what the system gave no reason
// for. Call it inside a catch block.
ErrorNumber currentNumber(RunTime device) noexcept;

template <class Body>
ErrorNumber answer(RunTime device, Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
    return 0;
  } catch (...) {
    return currentNumber(device);
  }
}

}  // namespace veltgeneral::platform

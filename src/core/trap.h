// The one place that turns an error into a result: members that return an ErrInfo run their body
// inside `trapped`.
#pragma once

#include <utility>

#include "core/module_name.h"
#include "veltgeneral/err_info.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

// The run-time error of the exception being handled: a RuntimeError as it is, exhausted memory 7,
// anything else 51. Call it inside a catch block.
RuntimeError currentError();

// A result with the module name as process information and no step.
ErrInfo resultOf(std::int32_t number, TextView description, typeInfoCostant severity,
                 TextView location, TextView className);

inline ErrInfo failureOf(const RuntimeError& error, TextView location, TextView className) {
  return resultOf(error.number(), error.description(), eiERRORTYPE, location, className);
}

// What `body` returns, or its error as a result of severity 1 from `location` of `className`.
template <class Body>
ErrInfo trapped(TextView location, TextView className, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return failureOf(currentError(), location, className);
  }
}

// A result that `clear` has been called on: what several members return as success.
ErrInfo clearedResult();

}  // namespace veltgeneral

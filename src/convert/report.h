// How the members that rewrite texts and make documents say how it went.
//
// Their results name the module where others name the class, and carry no process information.
#pragma once

#include <utility>

#include "core/trap.h"
#include "veltgeneral/err_info.h"

namespace veltgeneral {

// A success of severity 3 without a description.
ErrInfo doneAt(TextView location);

// A failure of severity 1, which is logged.
ErrInfo failedAt(TextView location, std::int32_t number, TextView description);

// What `body` returns; its error is reported as a failure at `location`.
template <class Body>
ErrInfo reportedAt(TextView location, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    const RuntimeError error = currentError();
    return failedAt(location, error.number(), error.description());
  }
}

}  // namespace veltgeneral

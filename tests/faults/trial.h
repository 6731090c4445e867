// Runs an operation with each of its calls failing in turn, each time in a process and a folder of
// its own.
#pragma once

#include <string>
#include <vector>

#include "faults/operation.h"

namespace veltgeneral::faults {

struct Findings {
  int calls = 0;        // of the C library, each of which failed once or more
  int allocations = 0;  // likewise
  int trials = 0;
  std::vector<std::string> complaints;
};

Findings tryOut(const Operation& operation);

}  // namespace veltgeneral::faults

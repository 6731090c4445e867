// Every call of every operation that touches the machine fails once in turn: the result is a
// documented one, files are whole, nothing stays open and the next call succeeds.
#include <gtest/gtest.h>

#include <iostream>

#include "faults/operation.h"

namespace veltgeneral::faults {
namespace {

void tryAll(bool warm) {
  Findings total;
  for (const Operation& operation : operations()) {
    if ((operation.process == Process::warm) != warm) continue;
    SCOPED_TRACE(operation.name);
    const Findings found = tryOut(operation);
    EXPECT_GT(found.trials, 10 * found.missing);
    for (const std::string& complaint : found.complaints) ADD_FAILURE() << complaint;
    total.calls += found.calls;
    total.allocations += found.allocations;
    total.trials += found.trials;
  }
  std::cout << total.calls << " calls and " << total.allocations << " allocations failed, "
            << total.trials << " trials\n";
}

TEST(Faults, LeaveADocumentedResultAndWholeFiles) { tryAll(false); }

TEST(Faults, LeaveThemInAProcessThatHasDoneItBefore) { tryAll(true); }

}  // namespace
}  // namespace veltgeneral::faults

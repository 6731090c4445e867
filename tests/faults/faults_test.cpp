// Every call of every operation that touches the machine fails once in turn: the result is a
// documented one, files are whole, nothing stays open and the next call succeeds.
#include <gtest/gtest.h>

#include <iostream>

#include "faults/operation.h"

namespace veltgeneral::faults {
namespace {

void tryAll(bool warm) {
  Totals totals;
  for (const Operation& operation : operations()) {
    SCOPED_TRACE(operation.name);
    if ((operation.process == Process::warm) == warm) tryOut(operation, totals);
  }
  std::cout << totals.calls << " calls and " << totals.allocations << " allocations failed, "
            << totals.trials << " trials\n";
}

TEST(Faults, LeaveADocumentedResultAndWholeFiles) { tryAll(false); }

TEST(Faults, LeaveThemInAProcessThatHasDoneItBefore) { tryAll(true); }

}  // namespace
}  // namespace veltgeneral::faults

// Every call of every operation that touches the machine fails once in turn: the result is a
// documented one, files are whole, nothing stays open and the next call succeeds.
#include <gtest/gtest.h>

#include <cctype>
#include <iostream>

#include "faults/trial.h"

namespace veltgeneral::faults {
namespace {

class Faults : public ::testing::TestWithParam<Operation> {
 protected:
  static void TearDownTestSuite() {
    std::cout << operationCount << " operations, " << total.calls << " calls and "
              << total.allocations << " allocations failed, " << total.trials << " trials\n";
  }
  static inline Findings total;
  static inline int operationCount = 0;
};

TEST_P(Faults, LeaveADocumentedResultAndWholeFiles) {
  const Findings found = tryOut(GetParam());
  EXPECT_GT(found.trials, 0);
  for (const std::string& complaint : found.complaints) ADD_FAILURE() << complaint;
  ++operationCount;
  total.calls += found.calls;
  total.allocations += found.allocations;
  total.trials += found.trials;
}

std::string nameOf(const ::testing::TestParamInfo<Operation>& row) {
  std::string name;
  for (const char c : std::string_view(row.param.name)) name += std::isalnum(c) != 0 ? c : '_';
  return name;
}

// The cold ones first: what a warm one does in its parent's process, others would find done.
std::vector<Operation> operations() {
  std::vector<Operation> all;
  for (const auto rows : {settingsOperations(), fileOperations()})
    all.insert(all.end(), rows.begin(), rows.end());
  return all;
}

INSTANTIATE_TEST_SUITE_P(Every, Faults, ::testing::ValuesIn(operations()), nameOf);

}  // namespace
}  // namespace veltgeneral::faults

// What a process needs from its start to its first object and its end, beside one that links the
// C++ library and ends at once. "beyond_ms" is the median of what it takes longer, "ratio" that of
// the quotient.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

#include "floor.h"

namespace veltgeneral::bench {
namespace {

bool succeeds(std::string program) {
  std::array<char*, 2> arguments{program.data(), nullptr};
  pid_t child = 0;
  int status = 0;
  return posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ) == 0 &&
         waitpid(child, &status, 0) == child && status == 0;
}

void firstObject(benchmark::State& state) {
  std::vector<double> beyond;
  std::vector<double> ratios;
  bool good = true;
  const auto run = [&](const char* program) { good = succeeds(program) && good; };
  for (auto _ : state) {
    const double bare = secondsOf([&] { run(BARE_PROGRAM); });
    const double own = secondsOf([&] { run(FIRST_OBJECT_PROGRAM); });
    state.SetIterationTime(own);
    beyond.push_back((own - bare) * 1e3);
    ratios.push_back(own / bare);
  }
  if (!good) state.SkipWithError("a program could not be run");
  state.counters["beyond_ms"] = median(std::move(beyond));
  state.counters["ratio"] = median(std::move(ratios));
}
BENCHMARK(firstObject)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(500);

}  // namespace
}  // namespace veltgeneral::bench

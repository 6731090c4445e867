// Ratios: a benchmark beside its physical floor (or a peer), in one run.
//
// Both are timed in turn, again and again, so that a machine whose speed drifts does so for both;
// the median of the pairs is what counts.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace veltgeneral::bench {

template <class Action>
double secondsOf(Action&& action) {
  const auto begin = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

inline double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values.empty() ? 0 : values[values.size() / 2];
}

// Times `ours`; reports as counters how long `other` takes and "ratio", ours over other.
template <class Ours, class Other>
void against(benchmark::State& state, Ours&& ours, Other&& other) {
  std::vector<double> ratios;
  std::vector<double> others;
  for (auto _ : state) {
    const double theirs = secondsOf(other);
    const double own = secondsOf(ours);
    state.SetIterationTime(own);
    ratios.push_back(own / theirs);
    others.push_back(theirs);
  }
  state.counters["ratio"] = median(std::move(ratios));
  state.counters["other_s"] = median(std::move(others));
}

}  // namespace veltgeneral::bench

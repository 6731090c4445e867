// What a late-bound call costs beyond the direct one: by name, with the member resolved once, and
// the same two through the C interface.
//
// The member has two arguments and does next to nothing with them. "beyond_ns" is the time of a
// call less that of a direct one, "ratio" their quotient, both measured here and now.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <ctime>

#include "veltgeneral/component.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/veltgeneral_c.h"

namespace veltgeneral {
namespace {

constexpr TextView kMember = u"getBoolForDBx";

// Of the processor: other programs on the machine do not count.
double nanoseconds() { return static_cast<double>(std::clock()) * (1e9 / CLOCKS_PER_SEC); }

// The direct call in nanoseconds, the best of several runs.
double directNanoseconds() {
  static const double best = [] {
    constexpr int kCalls = 1'000'000;
    const Funzioni funzioni;
    Variant truth = true;
    double least = 1e9;
    for (int run = 0; run < 10; ++run) {
      const double begin = nanoseconds();
      for (int i = 0; i < kCalls; ++i) {
        benchmark::DoNotOptimize(truth);
        benchmark::DoNotOptimize(funzioni.getBoolForDBx(dbengineORACLE, truth));
      }
      least = std::min(least, (nanoseconds() - begin) / kCalls);
    }
    return least;
  }();
  return best;
}

template <class Call>
void measure(benchmark::State& state, Call call) {
  const double direct = directNanoseconds();
  const double begin = nanoseconds();
  for (auto _ : state) call();
  const double each = (nanoseconds() - begin) / static_cast<double>(state.iterations());
  state.counters["direct_ns"] = direct;
  state.counters["beyond_ns"] = each - direct;
  state.counters["ratio"] = each / direct;
}

void byName(benchmark::State& state) {
  const ObjectRef object = createObject(u"Funzioni");
  std::array<Variant, 2> arguments{1, true};
  measure(state,
          [&] { benchmark::DoNotOptimize(object->call(kMember, CallKind::method, arguments)); });
}
BENCHMARK(byName);

void resolvedOnce(benchmark::State& state) {
  const ObjectRef object = createObject(u"Funzioni");
  const Member& member = resolve(*object, kMember, CallKind::method);
  std::array<Variant, 2> arguments{1, true};
  measure(state, [&] { benchmark::DoNotOptimize(invoke(*object, member, arguments)); });
}
BENCHMARK(resolvedOnce);

// The C interface, with values that live on between the calls.
struct CCall {
  CCall() {
    vg_create("Funzioni", &object, nullptr);
    vg_value_set_int32(values[0], 1);
    vg_value_set_boolean(values[1], 1);
    vg_resolve(object, "getBoolForDBx", VG_METHOD, &member, nullptr);
  }
  ~CCall() {
    for (vg_value* value : values) vg_value_free(value);
    vg_value_free(result);
    vg_object_release(object);
  }
  CCall(const CCall&) = delete;
  CCall& operator=(const CCall&) = delete;

  vg_object* object = nullptr;
  const vg_member* member = nullptr;
  std::array<vg_value*, 2> values{vg_value_new(), vg_value_new()};
  vg_value* result = vg_value_new();
};

void byNameFromC(benchmark::State& state) {
  const CCall c;
  measure(state, [&] {
    vg_call(c.object, "getBoolForDBx", VG_METHOD, c.values.data(), 2, c.result, nullptr);
  });
}
BENCHMARK(byNameFromC);

void resolvedOnceFromC(benchmark::State& state) {
  const CCall c;
  measure(state, [&] { vg_invoke(c.object, c.member, c.values.data(), 2, c.result, nullptr); });
}
BENCHMARK(resolvedOnceFromC);

}  // namespace
}  // namespace veltgeneral

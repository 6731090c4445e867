// The sort beside std::sort of the same texts by the same keys, and by the order its input has.
#include <algorithm>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "automation/case_fold.h"
#include "floor.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

constexpr std::int32_t kTexts = 1'000'000;
constexpr std::int16_t kKey = 20;

// Distinct texts: the words of Debian's lists, again with suffixes until there are enough.
std::vector<Text> words() {
  std::vector<Text> once;
  for (const char* list : {"/usr/share/dict/american-english", "/usr/share/dict/italian"}) {
    std::ifstream in(list);
    for (std::string word; std::getline(in, word);) once.push_back(fromUtf8(word));
  }
  std::vector<Text> all;
  for (int suffix = 0; all.size() < kTexts; ++suffix) {
    for (const Text& word : once) {
      if (all.size() == kTexts) break;
      all.push_back(word);
      if (suffix > 0) all.back().append(1, u'-').append(fromUtf8(std::to_string(suffix)));
    }
  }
  std::shuffle(all.begin(), all.end(), std::mt19937(1));
  return all;
}

const std::vector<Text>& shuffledWords() {
  static const std::vector<Text> all = words();
  return all;
}

int compareFolded(TextView one, TextView other) {
  one = one.substr(0, kKey);
  other = other.substr(0, kKey);
  for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i) {
    const char16_t a = toUpper(one[i]);
    const char16_t b = toUpper(other[i]);
    if (a != b) return a < b ? -1 : 1;
  }
  return one.size() < other.size() ? -1 : one.size() > other.size();
}

void sortAgainstStdSort(benchmark::State& state) {
  const TextArray source = TextArray::of(shuffledWords());
  TextArray array;
  std::vector<Text> list;
  std::vector<double> ratios;
  for (auto _ : state) {
    list = shuffledWords();
    array = source;
    const double theirs = bench::secondsOf([&] {
      std::ranges::sort(list, [](const Text& a, const Text& b) { return compareFolded(a, b) < 0; });
    });
    const double ours =
        bench::secondsOf([&] { Funzioni().quickSortArray(array, 1, kTexts, 1, kKey, false); });
    state.SetIterationTime(ours);
    ratios.push_back(ours / theirs);
  }
  state.counters["ratio"] = bench::median(ratios);
}
BENCHMARK(sortAgainstStdSort)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

enum Order { kSorted, kReversed, kTenKeys, kAllEqual };

std::vector<Text> inOrder(Order order) {
  std::vector<Text> list = shuffledWords();
  const auto less = [](const Text& a, const Text& b) { return compareFolded(a, b) < 0; };
  if (order == kSorted || order == kReversed) std::ranges::sort(list, less);
  if (order == kReversed) std::ranges::reverse(list);
  if (order == kTenKeys || order == kAllEqual) {
    const std::size_t distinct = order == kTenKeys ? 10 : 1;
    for (std::size_t i = 0; i < list.size(); ++i) {
      list[i] = u"the same leading text ";
      list[i].append(fromUtf8(std::to_string(i)));
      list[i][0] = static_cast<char16_t>(u'a' + i * 7 % distinct);
    }
  }
  return list;
}

void sortAgainstRandomOrder(benchmark::State& state) {
  const TextArray random = TextArray::of(shuffledWords());
  const TextArray ordered = TextArray::of(inOrder(static_cast<Order>(state.range(0))));
  std::vector<double> ratios;
  for (auto _ : state) {
    const auto timed = [](TextArray array) {
      return bench::secondsOf([&] { Funzioni().quickSortArray(array, 1, kTexts, 1, kKey, false); });
    };
    const double plain = timed(random);
    const double ours = timed(ordered);
    state.SetIterationTime(ours);
    ratios.push_back(ours / plain);
  }
  state.counters["ratio"] = bench::median(ratios);
}
BENCHMARK(sortAgainstRandomOrder)
    ->ArgName("sorted0_reversed1_tenKeys2_equal3")
    ->DenseRange(kSorted, kAllEqual)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veltgeneral

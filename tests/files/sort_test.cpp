#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "automation/case_fold.h"
#include "automation/random.h"
#include "support/results.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/host_events.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

using test::failure;
using test::fields;

struct Slice {
  std::int16_t start;
  std::int16_t length;
  bool ignoreUcase;
};

std::uint32_t next(std::uint32_t state) { return (state * 16598013 + 12820163) & 0xFFFFFF; }

std::uint32_t stateOfGenerator() { return static_cast<std::uint32_t>(nextRandom() * 16777216); }

// The published scheme, step by step and comparison by comparison, with numbers of its own drawn
// from the same sequence.
struct Plain {
  void sort(std::int32_t low, std::int32_t high) {
    if (low >= high) return;
    if (high - low == 1) {
      if (key(low) > key(high)) std::swap(at(low), at(high));
      return;
    }
    state = next(state);
    const double pivot = static_cast<double>(state) / 16777216 * (high - low) + low;
    std::swap(at(static_cast<std::int32_t>(std::nearbyint(pivot))), at(high));
    std::int32_t i = 0;
    std::int32_t j = 0;
    do {
      ++events;
      i = low;
      j = high;
      while (i < j && key(i) <= key(high)) ++i;
      while (j > i && key(j) >= key(high)) --j;
      if (i < j) std::swap(at(i), at(j));
    } while (i < j);
    std::swap(at(i), at(high));
    const bool lowerFirst = i - low < high - i;
    if (lowerFirst) sort(low, i - 1);
    sort(i + 1, high);
    if (!lowerFirst) sort(low, i - 1);
  }
  Text& at(std::int32_t index) { return list[static_cast<std::size_t>(index - 1)]; }
  Text key(std::int32_t index) {
    Text text = at(index);
    if (!slice.ignoreUcase) std::ranges::transform(text, text.begin(), toUpper);
    const auto first = std::min(static_cast<std::size_t>(slice.start - 1), text.size());
    return text.substr(first, static_cast<std::size_t>(slice.length));
  }

  std::vector<Text> list;
  Slice slice;
  std::uint32_t state = stateOfGenerator();
  int events = 0;
};

class Sort : public ::testing::Test {
 protected:
  ErrInfo sorted(TextArray& array, std::int32_t low, std::int32_t high, const Slice& slice) {
    events_ = 0;
    const ScopedHostEvents counting([this] {
      if (++events_ == last_) throw RuntimeError(1000, u"enough");
    });
    const auto& [start, length, ignoreUcase] = slice;
    return Funzioni().quickSortArray(array, low, high, start, length, ignoreUcase);
  }

  int events_ = 0;
  int last_ = 0;  // the one whose hook throws
};

TEST_F(Sort, IsThePublishedScheme) {
  std::mt19937 random(3);
  const TextView alphabets[] = {u"a",
                                u"ab",
                                u"abcABC\u00E8\u00C8 ",
                                u"a\u4E2D\u0101\uFF41b",
                                TextView(u"a\0b", 3),
                                u"abcdefghijklmnopqrstuvwxyz"};
  for (int round = 0; round < 4000; ++round) {
    const TextView alphabet = alphabets[random() % std::size(alphabets)];
    const std::size_t longest = round % 3 == 0 ? 2 : 24;
    std::vector<Text> list(random() % (round % 100 == 0 ? 600 : 40));
    for (Text& text : list)
      for (std::size_t n = random() % (longest + 1); n > 0; --n)
        text += alphabet[random() % alphabet.size()];
    if (round % 5 == 0) std::ranges::sort(list);
    if (round % 7 == 0) std::ranges::reverse(list);
    const Slice slice{static_cast<std::int16_t>(1 + random() % 3),
                      static_cast<std::int16_t>(random() % 22), random() % 2 == 0};
    // All of it, or a part that leaves an element at either end alone.
    const std::int32_t apart = list.size() > 3 && round % 4 == 0 ? 1 : 0;
    const auto high = static_cast<std::int32_t>(list.size()) - apart;
    TextArray array = TextArray::of(list);
    Plain plain{list, slice};
    plain.sort(1 + apart, high);
    EXPECT_EQ(fields(sorted(array, 1 + apart, high, slice)), test::fresh());
    ASSERT_EQ(array, TextArray::of(plain.list)) << round;
    EXPECT_EQ(events_, plain.events);
    EXPECT_EQ(stateOfGenerator(), next(plain.state));  // as many numbers drawn
  }
}

TEST_F(Sort, RefusalsDrawAndExchangeAsFarAsTheSchemeGets) {
  struct Case {
    std::int32_t low, high;
    std::int16_t start, length;
    int number, draws, events;
  };
  const Case cases[] = {
      {3, 3, 0, -1, 0, 0, 0},  // nothing to do, so nothing is looked at
      {1, 2, 0, 1, 5, 0, 0},  {1, 2, 1, -1, 5, 0, 0}, {1, 4, 0, 1, 5, 1, 1},
      {1, 9, 1, 1, 9, 1, 0},  {4, 5, 1, 1, 9, 0, 0},  {0, 1, 1, 1, 9, 0, 0},
  };
  for (const Case& c : cases) {
    TextArray array = TextArray::of({u"c", u"b", u"a", u"d"});
    std::uint32_t state = stateOfGenerator();
    EXPECT_EQ(fields(sorted(array, c.low, c.high, {c.start, c.length, true})),
              c.number == 0 ? test::fresh() : failure(c.number, "quickSortArray", "Funzioni"));
    EXPECT_EQ(events_, c.events);
    for (int i = 0; i <= c.draws; ++i) state = next(state);
    EXPECT_EQ(stateOfGenerator(), state);
  }
  TextArray array = TextArray::of({u"c", u"b", u"a", u"d"});
  last_ = 1;
  EXPECT_EQ(fields(sorted(array, 1, 4, {1, 1, true})),
            failure(1000, "enough", "quickSortArray", "Funzioni"));
}

}  // namespace
}  // namespace veltgeneral

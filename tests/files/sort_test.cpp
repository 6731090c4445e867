#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "automation/case_fold.h"
#include "automation/random.h"
#include "core/host_events.h"
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

// The published scheme, step by step and comparison by comparison, with numbers of its own drawn
// from the same sequence.
class Plain {
 public:
  Plain(std::vector<Text>& list, Slice slice, std::uint32_t seed)
      : list_(list), slice_(slice), state_(seed) {}

  void sort(std::int32_t low, std::int32_t high) {
    if (low >= high) return;
    if (high - low == 1) {
      if (key(low) > key(high)) std::swap(at(low), at(high));
      return;
    }
    state_ = (state_ * 16598013 + 12820163) & 0xFFFFFF;
    const auto p = static_cast<std::int32_t>(
        std::nearbyint(static_cast<double>(state_) / 16777216 * (high - low) + low));
    std::swap(at(p), at(high));
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
    if (i - low < high - i) {
      sort(low, i - 1);
      sort(i + 1, high);
    } else {
      sort(i + 1, high);
      sort(low, i - 1);
    }
  }

  int events = 0;
  std::uint32_t state() const { return state_; }

 private:
  Text& at(std::int32_t index) { return list_[static_cast<std::size_t>(index - 1)]; }
  Text key(std::int32_t index) {
    Text text = at(index);
    if (!slice_.ignoreUcase) std::ranges::transform(text, text.begin(), toUpper);
    const auto first = std::min(static_cast<std::size_t>(slice_.start - 1), text.size());
    return text.substr(first, static_cast<std::size_t>(slice_.length));
  }

  std::vector<Text>& list_;
  Slice slice_;
  std::uint32_t state_;
};

std::uint32_t stateOfGenerator() { return static_cast<std::uint32_t>(nextRandom() * 16777216); }

Text randomText(std::mt19937& random, std::u16string_view alphabet, std::size_t longest) {
  Text text;
  for (std::size_t n = random() % (longest + 1); n > 0; --n) {
    text += alphabet[random() % alphabet.size()];
  }
  return text;
}

class Sort : public ::testing::Test {
 protected:
  void TearDown() override { setHostEvents(nullptr, nullptr); }
};

TEST_F(Sort, IsThePublishedScheme) {
  std::mt19937 random(3);
  const TextView alphabets[] = {u"ab", u"abcABC\u00E8\u00C8 ", u"a\u4E2D\u0101\uFF41b",
                                TextView(u"a\0b", 3), u"abcdefghijklmnopqrstuvwxyz"};
  for (int round = 0; round < 4000; ++round) {
    const auto count = static_cast<std::int32_t>(random() % (round % 100 == 0 ? 600 : 40));
    std::vector<Text> list;
    const TextView alphabet = alphabets[random() % std::size(alphabets)];
    const std::size_t longest = round % 3 == 0 ? 2 : 24;
    for (std::int32_t i = 0; i < count; ++i) {
      list.push_back(randomText(random, alphabet, longest));
    }
    if (round % 5 == 0) std::ranges::sort(list);
    if (round % 7 == 0) std::ranges::reverse(list);
    const Slice slice{static_cast<std::int16_t>(1 + random() % 3),
                      static_cast<std::int16_t>(random() % 22), random() % 2 == 0};
    TextArray array = TextArray::of(list);
    int events = 0;
    setHostEvents([](void* context) { ++*static_cast<int*>(context); }, &events);
    // All of it, or a part that leaves an element at either end alone.
    const std::int32_t apart = count > 3 && round % 4 == 0 ? 1 : 0;
    Plain plain(list, slice, stateOfGenerator());
    plain.sort(1 + apart, count - apart);
    EXPECT_EQ(fields(Funzioni().quickSortArray(array, 1 + apart, count - apart, slice.start,
                                               slice.length, slice.ignoreUcase)),
              test::fresh());
    ASSERT_EQ(array, TextArray::of(list)) << round;
    EXPECT_EQ(events, plain.events);
    // As many numbers drawn: the next one is the plain scheme's next.
    EXPECT_EQ(stateOfGenerator(), (plain.state() * 16598013 + 12820163) & 0xFFFFFF);
  }
}

// Quadratic work would take minutes here.
TEST_F(Sort, EqualAndFewKeysCostNoMoreThanOthers) {
  std::mt19937 random(5);
  for (const TextView letters : {u"a", u"ab", u"abcde"}) {
    std::vector<Text> list(300000);
    for (Text& each : list) each = letters[random() % letters.size()];
    TextArray array = TextArray::of(list);
    Funzioni().quickSortArray(array, 1, 300000, 1, 5, true);
    std::ranges::sort(list);
    EXPECT_EQ(array, TextArray::of(list));
  }
}

TEST_F(Sort, KeysAreSlicesFoldedOrNot) {
  struct Case {
    bool ignoreUcase;
    std::int16_t start;
    std::vector<Text> list, sorted;
  };
  const Case cases[] = {{false, 1, {u"b", u"A"}, {u"A", u"b"}},
                        {true, 1, {u"b", u"A"}, {u"A", u"b"}},
                        {true, 1, {u"a", u"B"}, {u"B", u"a"}},
                        {false, 1, {u"èx", u"Èa", u"e"}, {u"e", u"Èa", u"èx"}},
                        {true, 2, {u"9c", u"8b", u"7a"}, {u"7a", u"8b", u"9c"}},
                        // Shorter than the start: an empty key, before all others.
                        {true, 2, {u"bb", u"a"}, {u"a", u"bb"}}};
  for (const Case& c : cases) {
    TextArray array = TextArray::of(c.list);
    Funzioni().quickSortArray(array, 1, static_cast<std::int32_t>(c.list.size()), c.start, 9,
                              c.ignoreUcase);
    EXPECT_EQ(array, TextArray::of(c.sorted));
  }
}

TEST_F(Sort, RefusalsDrawAndExchangeAsFarAsTheSchemeGets) {
  const TextArray list = TextArray::of({u"c", u"b", u"a", u"d"});
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
    TextArray array = list;
    int events = 0;
    setHostEvents([](void* context) { ++*static_cast<int*>(context); }, &events);
    std::uint32_t state = stateOfGenerator();
    const ErrInfo result = Funzioni().quickSortArray(array, c.low, c.high, c.start, c.length, true);
    EXPECT_EQ(result.numberInfo(), c.number);
    if (c.number != 0) {
      EXPECT_EQ(fields(result), failure(c.number, toUtf8(standardMessage(c.number)).c_str(),
                                        "quickSortArray", "Funzioni"));
    }
    EXPECT_EQ(events, c.events);
    for (int i = 0; i <= c.draws; ++i) state = (state * 16598013 + 12820163) & 0xFFFFFF;
    EXPECT_EQ(stateOfGenerator(), state);
  }
  TextArray array;
  EXPECT_EQ(Funzioni().quickSortArray(array, 1, 3, 1, 1, true).numberInfo(), 9);
}

TEST_F(Sort, AHookThatThrowsEndsItWithItsError) {
  TextArray array = TextArray::of({u"c", u"b", u"a", u"d"});
  {
    const ScopedHostEvents events([] { throw RuntimeError(1000, u"enough"); });
    EXPECT_EQ(fields(Funzioni().quickSortArray(array, 1, 4, 1, 1, true)),
              failure(1000, "enough", "quickSortArray", "Funzioni"));
  }
  EXPECT_TRUE(Funzioni().quickSortArray(array, 1, 4, 1, 1, true).isSuccess());
}

}  // namespace
}  // namespace veltgeneral

#include "veltgeneral/text_array.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <vector>

#include "support/error_of.h"

namespace veltgeneral {
namespace {

TEST(TextArray, EveryAccessOutsideIsError9) {
  const TextArray none;
  const TextArray list({2, 4});
  TextArray table({1, 2}, {1, 3});
  const std::function<void()> refused[] = {
      [&] { (void)none.at(1); },          [&] { (void)list.at(1); },
      [&] { (void)list.at(5); },          [&] { (void)list.at(2, 1); },
      [&] { (void)list.bounds(2); },      [&] { (void)table.at(1); },
      [&] { (void)table.at(3, 1); },      [&] { (void)table.at(1, 0); },
      [&] { (void)table.at(1, 4); },      [&] { table.set(0, 1, u"x"); },
      [&] { table.resizePreserved({}); }, [&] { (void)TextArray({1, 2}, {1, 0}); }};
  for (std::size_t i = 0; i < std::size(refused); ++i) EXPECT_EQ(errorOf(refused[i]), 9) << i;
  EXPECT_EQ(errorOf([] { TextArray a({1, 2147483647}, {-2147483647, 2147483647}); }), 7);
}

TEST(TextArray, TextsOfEveryLengthSurviveOverwritingCopyingAndMoving) {
  TextArray array({-5, 2}, {0, 6});
  std::map<std::pair<std::int32_t, std::int32_t>, Text> expected;
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    const auto field = static_cast<std::int32_t>(random() % 8) - 5;
    const auto row = static_cast<std::int32_t>(random() % 7);
    const std::size_t length = random() % 2 ? random() % 12 : random() % 3000;
    const Text text(length, static_cast<char16_t>(u'a' + random() % 26));
    array.set(field, row, text);
    expected[{field, row}] = text;
  }
  const TextArray copy = array;
  const TextArray moved = std::move(array);
  EXPECT_EQ(copy, moved);
  for (const auto& [at, text] : expected) EXPECT_EQ(moved.at(at.first, at.second), text);
}

TEST(TextArray, ATextMayBeLongerThanASharedSlabOrAPieceOfItsCell) {
  const Text great((1u << 24) + 5, u'g');
  TextArray array = TextArray::of({u"before", great, u"after"});
  EXPECT_EQ(array.at(2), great);
  array.set(2, u"small");
  array.set(1, array.at(1).substr(1));
  array.set(3, array.at(1));
  EXPECT_EQ(array, TextArray::of({u"efore", u"small", u"efore"}));
}

TEST(TextArray, ResizingKeepsWhatBothBoundsHave) {
  TextArray array = TextArray::of({u"a", u"b", u"c"});
  array.resizePreserved({2, 4});
  array.swap(2, 4);
  EXPECT_EQ(array.bounds(), (Bounds{2, 4}));
  EXPECT_EQ((std::vector<TextView>{array.at(2), array.at(3), array.at(4)}),
            (std::vector<TextView>{u"", u"c", u"b"}));
  array.clear();
  EXPECT_EQ(array, TextArray());
}

}  // namespace
}  // namespace veltgeneral

#include "automation/coerce.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <tuple>

#include "automation/locale.h"
#include "support/answer.h"

namespace veltgeneral {
namespace {

struct Row {
  Variant value;
  // int16 int32 double currency decimal boolean, "!6" for error 6; n a number, d a date.
  std::string_view answers;
  std::string_view text = {};
};

const Row kRows[] = {
    {Empty{}, "0 0 0 0 0 False n-", ""},
    {Null{}, "!94 !94 !94 !94 !94 !94 --", "!94"},
    {Missing{}, "!13 !13 !13 !13 !13 !13 --", "!13"},
    {Bytes{1}, "!13 !13 !13 !13 !13 !13 --", "!13"},
    {TextArray{}, "!13 !13 !13 !13 !13 !13 --", "!13"},
    {true, "-1 -1 -1 -1 -1 True n-", "True"},
    {std::int16_t{-7}, "-7 -7 -7 -7 -7 True n-", "-7"},
    {std::numeric_limits<std::int32_t>::min(),
     "!6 -2147483648 -2147483648 -2147483648 -2147483648 True n-", "-2147483648"},
    {-0.0, "0 0 0 0 0 False n-", "0"},
    // Halves to even, at the edges of 16 and 32 bits too.
    {.5, "0 0 0.5 0.5 0.5 True n-", "0.5"},
    {-2.5, "-2 -2 -2.5 -2.5 -2.5 True n-", "-2.5"},
    {.49999999999999994, "0 0 0.5 0.5 0.5 True n-", "0.5"},
    {32767.5, "!6 32768 32767.5 32767.5 32767.5 True n-", "32767.5"},
    {-32768.5, "-32768 -32768 -32768.5 -32768.5 -32768.5 True n-", "-32768.5"},
    {-32768.6, "!6 -32769 -32768.6 -32768.6 -32768.6 True n-", "-32768.6"},
    {2147483647.5, "!6 !6 2147483647.5 2147483647.5 2147483647.5 True n-", "2147483647.5"},
    {-2147483648.5, "!6 -2147483648 -2147483648.5 -2147483648.5 -2147483648.5 True n-",
     "-2147483648.5"},
    // Four decimals, halves to even.
    {.03125, "0 0 0.03125 0.0312 0.03125 True n-", "0.03125"},
    {.09375, "0 0 0.09375 0.0938 0.09375 True n-", "0.09375"},
    {1e15, "!6 !6 1E+15 !6 1000000000000000 True n-", "1E+15"},
    {1e29, "!6 !6 1E+29 !6 !6 True n-", "1E+29"},
    {std::nan(""), "!6 !6 1.#QNAN !6 !6 True n-", "1.#QNAN"},
    {-HUGE_VAL, "!6 !6 -1.#INF !6 !6 True n-", "-1.#INF"},
    {.1F, "0 0 0.100000001490116 0.1 0.1 True n-", "0.1"},
    {Currency{25000}, "2 2 2.5 2.5 2.5 True n-", "2.5"},
    {Currency{-5}, "0 0 -0.0005 -0.0005 -0.0005 True n-", "-0.0005"},
    {Currency{std::numeric_limits<std::int64_t>::min()},
     "!6 !6 -922337203685478 -922337203685477.5808 -922337203685477.5808 True n-",
     "-922337203685477.5808"},
    {Decimal{35, 0, 0, 1, true}, "-4 -4 -3.5 -3.5 -3.5 True n-", "-3.5"},
    // Just above a half, which no double can tell from it.
    {Decimal{0xB1880001, 0xB5E3AF16, 0x2, 20, false}, "1 1 0.5 0.5 0.50000000000000000001 True n-",
     "0.50000000000000000001"},
    {Decimal{~0u, ~0u, ~0u, 0, false},
     "!6 !6 7.92281625142643E+28 !6 79228162514264337593543950335 True n-",
     "79228162514264337593543950335"},
    {Date{1.5}, "2 2 1.5 1.5 1.5 True -d", "12/31/1899 12:00:00 PM"},
    {Date{0}, "0 0 0 0 0 False -d", "12:00:00 AM"},
    // Texts, which stay as they are: numbers exactly as written, booleans only as booleans.
    {Text(u" 2.5 "), "2 2 2.5 2.5 2.5 True nd"},
    {Text(u"1.00005"), "1 1 1.00005 1 1.00005 True n-"},
    {Text(u"1.00015"), "1 1 1.00015 1.0002 1.00015 True n-"},
    {Text(u"922337203685477.5807"),
     "!6 !6 922337203685478 922337203685477.5807 922337203685477.5807 True n-"},
    {Text(u"922337203685477.58075"), "!6 !6 922337203685478 !6 922337203685477.58075 True n-"},
    {Text(u"79228162514264337593543950335.5"), "!6 !6 7.92281625142643E+28 !6 !6 True n-"},
    {Text(u"1.5e-28"), "0 0 1.5E-28 0 0.0000000000000000000000000002 True n-"},
    {Text(u"&HFFFF"), "-1 -1 -1 -1 -1 True n-"},
    {Text(u"TRUE"), "!13 !13 !13 !13 !13 True --"},
    {Text(u"false"), "!13 !13 !13 !13 !13 False --"},
    {Text(), "!13 !13 !13 !13 !13 !13 --"},
    {Text(u"1/2/2020"), "!13 !13 !13 !13 !13 !13 -d"},
};

template <class Convert>
std::string answer(Convert convert) {
  std::string text = answerOf(convert);
  return text.starts_with("error ") ? text.replace(0, 6, "!") : text;
}

TEST(Coerce, EveryKindAsEveryOther) {
  const ScopedLocale us("en_US");
  for (const Row& row : kRows) {
    const Variant& v = row.value;
    std::string answers;
    for (const std::string& each :
         {answer([&] { return toInt16(v); }), answer([&] { return toInt32(v); }),
          answer([&] { return toDouble(v); }), answer([&] { return toCurrency(v); }),
          answer([&] { return toDecimal(v); }), answer([&] { return toBoolean(v); })}) {
      answers.append(each).append(" ");
    }
    answers.append(isNumeric(v) ? "n" : "-").append(isDate(v) ? "d" : "-");
    EXPECT_EQ(answers, row.answers) << "kind " << v.index() << ' ' << row.text;
    const Text* own = std::get_if<Text>(&v);
    EXPECT_EQ(answer([&] { return toText(v); }), own ? toUtf8(*own) : row.text);
  }
}

TEST(Coerce, SinglesAndDatesHaveRanges) {
  const ScopedLocale us("en_US");
  const std::tuple<Variant, const char*, const char*> cases[] = {
      {3.4028235677973366e38, "!6", "!6"}, {3.4028235e38, "3.402823E+38", "!6"},
      {1e-50, "0", "12:00:00 AM"},         {-657433.0, "-657433", "1/2/0100"},
      {-657435.0, "-657435", "!6"},        {2958466.0, "2958466", "!6"},
      {true, "-1", "12/29/1899"},          {Null{}, "!94", "!94"},
      {Text(u"36526"), "36526", "!13"},    {Text(u"1/1/2000"), "!13", "1/1/2000"}};
  for (const auto& [value, single, date] : cases) {
    EXPECT_EQ(answer([&] { return toSingle(value); }), single);
    EXPECT_EQ(answer([&] { return toDate(value); }), date) << single;
  }
}

TEST(NumberFormat, DigitsAreTheCLibrarysInTheLocalesMarks) {
  const ScopedLocale italian("it_IT");
  const auto expect = [](const Text& text, const char* format, double value) {
    char room[64];
    std::snprintf(room, sizeof room, format, value);
    std::replace(room, room + sizeof room, '.', ',');
    ASSERT_EQ(toUtf8(text), room);
  };
  std::mt19937_64 random(2);
  for (int i = 0; i < 20000; ++i) {
    const double scale = std::pow(10, static_cast<int>(random() % 50) - 25);
    const double value = static_cast<double>(static_cast<std::int64_t>(random())) / 1e18 * scale;
    const auto single = static_cast<float>(value);
    expect(toText(value), "%.15G", value);
    expect(toText(single), "%.7G", single);
  }
}

}  // namespace
}  // namespace veltgeneral

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <tuple>

#include "automation/locale.h"
#include "support/answer.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

TEST(Xml, DatesBothWays) {
  const std::pair<TextView, TextView> cases[] = {
      {u"2024-01-31T23:59:59", u"20240131235959"},
      {u"2024-02-30T10:00:00", u""},
      // What is missing, or no number, counts as zeros; separators are anything.
      {u"2024-01-31", u"20240131000000"},
      {u"2024x01x31xhhxnnx05", u"20240131000005"},
      {u"2024-01-31 23.59.59+01:00", u"20240131235959"},
      {u"2024-01-31T1", u"20240131100000"},
      // A number that is not all digits is written among the digits and spoils them.
      {u"2024-01-31T 1:00:00", u""},
  };
  const Funzioni f;
  for (const auto& [xml, digits] : cases) {
    const Variant expected = digits.empty() ? Variant(Empty{}) : Variant(Text(digits));
    EXPECT_EQ(f.getDateFromXml(xml), expected) << toUtf8(xml);
  }
  EXPECT_EQ(f.getDate2Xml(u"20240131235959"), u"2024-01-31T23:59:59");
  EXPECT_EQ(f.getDate2Xml(u"20240230000000"), u"");
}

TEST(Xml, DurationsAreWrittenInTenthsAndThousandthsOfAMinute) {
  const std::tuple<Variant, const char*, const char*> cases[] = {
      {15.0, "PT0H1M30S", "PT0H0M.9S"},
      {-5.0, "PT0H0M-30S", "PT0H0M-.3S"},
      {0.25, "PT0H0M1.5S", "PT0H0M.015S"},
      {166666666666810.0, "PT277777777778H1M0S", "PT2777777777H46M48.599609375S"},
      {1e20, "PT1.66666666666667E+17H0M0S", "PT1.66666666666667E+15H34M8S"},
      // More seconds than a double counts.
      {1e308, "error 6", "error 6"},
      {std::nan(""), "error 6", "error 6"}};
  const Funzioni f;
  for (const auto& [value, tenths, thousandths] : cases) {
    EXPECT_EQ(answerOf([&] { return f.getDur2Xml(value); }), tenths);
    EXPECT_EQ(answerOf([&] { return f.getWork2Xml(value); }), thousandths);
  }
  // Whole seconds come back as they are, to the last that a double counts.
  std::mt19937_64 random(9);
  for (int i = 0; i < 100'000; ++i) {
    const double value = static_cast<double>(random() % (1ULL << (random() % 49))) / 2;
    ASSERT_EQ(f.getDurFromXml(f.getDur2Xml(value)), value);
  }
}

TEST(Xml, DurationsAreReadFromTheirDigits) {
  const Text great(400, u'9');
  const std::pair<Text, const char*> cases[] = {
      {u"xx1H", "600"},     // the first two are not looked at
      {u"PT1H2H", "1200"},  // the last one counts
      {u"PT1M1S1H", "610.166666666667"},
      {u"PT7.5S", "12.5"},               // 75 seconds: what is no digit is skipped
      {u"PT1h30S", "21.6666666666667"},  // 130 seconds
      {u"PT１H1M", "error 13"},
      {u"PT1HM", "error 13"},
      {great, "0"},  // no letter asks for them
      {great + u"H", "error 6"},
      {great.substr(0, 310) + u"H", "error 6"},
  };
  const ScopedLocale us("en_US");
  const Funzioni f;
  for (const auto& [xml, units] : cases) {
    EXPECT_EQ(answerOf([&] { return f.getDurFromXml(xml); }), units) << toUtf8(xml);
  }
  EXPECT_EQ(f.getWorkFromXml(Text(u"PT0H1M0S")), 1000);
}

TEST(Xml, NumbersHaveEitherSeparator) {
  const std::tuple<const char*, TextView, const char*> cases[] = {
      {"it_IT", u"1,5", "1,5"},   {"it_IT", u"1.5", "1,5"},  // although the locale alone reads 15
      {"it_IT", u" -,5", "-0,5"}, {"it_IT", u"1.234,5", "error 13"},
      {"en_US", u"1,5", "1.5"},   {"en_US", u"&HFF", "255"},
      {"en_US", u"", "0"}};
  for (const auto& [name, text, number] : cases) {
    const ScopedLocale locale(name);
    EXPECT_EQ(answerOf([&] { return Funzioni().getNumberFromXml(Text(text)); }), number) << name;
  }
}

TEST(Xml, NumbersUseTheSeparatorRecordedLast) {
  const ScopedLocale italian("it_IT");
  const Funzioni f;
  const ScopedLocale us("en_US");
  // Still the comma, which the present locale skips.
  EXPECT_EQ(f.getNumberFromXml(Text(u"1.5")), 15);
  TextArray table;
  std::int32_t lines = 0;
  FileUtility().getArrayFromCsvFile(u"", table, 0, lines);  // makes an object first of all
  EXPECT_EQ(f.getNumberFromXml(Text(u"1.5")), 1.5);
}

}  // namespace
}  // namespace veltgeneral

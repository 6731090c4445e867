#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <functional>
#include <random>

#include "automation/coerce.h"
#include "automation/locale.h"
#include "support/compiled_locales.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

std::int32_t errorOf(const auto& action) {
  try {
    (void)action();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

struct DateCase {
  TextView xml;
  TextView digits;  // empty: no date
};

constexpr DateCase kDates[] = {
    {u"2024-01-31T23:59:59", u"20240131235959"},
    {u"2024-02-29T10:00:00", u"20240229100000"},
    {u"2024-02-30T10:00:00", u""},
    {u"2024-01-31T24:00:00", u""},
    // What is missing, or no number, counts as zeros; separators are anything.
    {u"2024-01-31", u"20240131000000"},
    {u"2024x01x31xhhxnnx05", u"20240131000005"},
    {u"2024-01-31 23.59.59+01:00", u"20240131235959"},
    {u"2024-01-3", u"20240130000000"},
    {u"2024-01-31T1", u"20240131100000"},
    {u"2024-01", u""},
    {u"xxxx-01-31", u""},
    {u"", u""},
    // A number that is not all digits is written among the digits and spoils them.
    {u"2024-01-31T 1:00:00", u""},
    {u"2024-01-31T+1:00:00", u""},
    {u"2024-01-31T1 :00:00", u""},
    {u"2024-01-31T00:00:(1)", u"20240131000000"},
    {TextView(u"2024-01-31T\0", 12), u"20240131000000"},
};

TEST(Xml, DatesBothWays) {
  const Funzioni f;
  for (const DateCase& c : kDates) {
    SCOPED_TRACE(toUtf8(c.xml));
    const Variant expected = c.digits.empty() ? Variant(Empty{}) : Variant(Text(c.digits));
    EXPECT_EQ(f.getDateFromXml(c.xml), expected);
  }
  EXPECT_EQ(f.getDate2Xml(u"20240131235959"), u"2024-01-31T23:59:59");
  EXPECT_EQ(f.getDate2Xml(u"20240230000000"), u"");
  EXPECT_EQ(f.getDate2Xml(u"20240131"), u"");
}

struct DurationCase {
  Variant value;
  TextView tenths;
  TextView thousandths;
};

const DurationCase kDurations[] = {
    {600.0, u"PT1H0M0S", u"PT0H0M36S"},
    {15.0, u"PT0H1M30S", u"PT0H0M.9S"},
    {1.0, u"PT0H0M6S", u"PT0H0M.06S"},
    {0.0, u"PT0H0M0S", u"PT0H0M0S"},
    {-5.0, u"PT0H0M-30S", u"PT0H0M-.3S"},
    {1000.0, u"PT1H40M0S", u"PT0H1M0S"},
    {60000.0, u"PT100H0M0S", u"PT1H0M0S"},
    {0.25, u"PT0H0M1.5S", u"PT0H0M.015S"},
    {1e20, u"PT1.66666666666667E+17H0M0S", u"PT1.66666666666667E+15H34M8S"},
    {1e-6, u"PT0H0M6E-06S", u"PT0H0M6E-08S"},
    {Text(u"15"), u"PT0H1M30S", u"PT0H0M.9S"},
    {Text(u"x"), u"PT0H0M0S", u"PT0H0M0S"},
};

TEST(Xml, DurationsAreWrittenInTenthsAndThousandthsOfAMinute) {
  const Funzioni f;
  for (const DurationCase& c : kDurations) {
    EXPECT_EQ(f.getDur2Xml(c.value), c.tenths);
    EXPECT_EQ(f.getWork2Xml(c.value), c.thousandths);
  }
  // More seconds than a double counts.
  for (const double value : {1e308, -1e308, HUGE_VAL, std::nan("")}) {
    EXPECT_EQ(errorOf([&] { return f.getDur2Xml(value); }), 6);
    EXPECT_EQ(errorOf([&] { return f.getWork2Xml(value); }), 6);
  }
  // Each number by the general writer, as the direct one must have it.
  std::mt19937_64 random(9);
  for (int i = 0; i < 500'000; ++i) {
    const double scale = std::pow(10.0, static_cast<double>(random() % 20));
    const double value = static_cast<double>(static_cast<std::int64_t>(random() % 2'000'003) - 7) *
                         scale / (random() % 2 ? 1 : 64);
    const double total = value * 60 / 10;
    const double hours = total >= 3600 ? std::trunc(total / 3600) : 0;
    const double rest = total - hours * 3600;
    const double minutes = rest >= 60 ? std::trunc(rest / 60) : 0;
    Text expected = u"PT";
    expected += shortNumber(hours) + u'H';
    expected += shortNumber(minutes) + u'M';
    expected += shortNumber(rest - minutes * 60) + u'S';
    ASSERT_EQ(f.getDur2Xml(value), expected) << value;
  }
}

struct DurationText {
  TextView xml;
  double units;
  std::int32_t error;
};

constexpr DurationText kDurationTexts[] = {
    {u"PT1H0M0S", 600, 0},
    {u"PT0H1M30S", 15, 0},
    {u"PT", 0, 0},
    {u"P", 0, 0},
    {u"", 0, 0},
    {u"xx1H", 600, 0},     // the first two are not looked at
    {u"PT1H2H", 1200, 0},  // the last one counts
    {u"PT1M1S1H", 600 + 10 + 1 / 6.0, 0},
    {u"PT7.5S", 12.5, 0},  // 75 seconds: what is no digit is skipped
    {u"PT-30S", 5, 0},
    {u"PT1h30S", 130 / 6.0, 0},  // 130 seconds
    {u"PT5", 0, 0},
    {u"PT000000000000000000060S", 10, 0},
    {u"PT１H1M", 0, 13},
    {u"PTH", 0, 13},
    {u"PT1HM", 0, 13},
};

TEST(Xml, DurationsAreReadFromTheirDigits) {
  const Funzioni f;
  for (const DurationText& c : kDurationTexts) {
    SCOPED_TRACE(toUtf8(c.xml));
    const auto read = [&] { return f.getDurFromXml(Text(c.xml)); };
    if (c.error != 0) {
      EXPECT_EQ(errorOf(read), c.error);
    } else {
      EXPECT_DOUBLE_EQ(read(), c.units);
    }
  }
  EXPECT_EQ(f.getWorkFromXml(Text(u"PT0H1M0S")), 1000);
  for (const std::size_t digits : {308, 400}) {
    EXPECT_EQ(errorOf([&] { return f.getDurFromXml(u"PT" + Text(digits, u'9') + u"H"); }), 6);
  }
  EXPECT_EQ(f.getDurFromXml(u"PT" + Text(400, u'9')), 0);  // no letter asks for them
}

struct NumberText {
  const char* locale;
  Variant value;
  double number;
  std::int32_t error;
};

const NumberText kNumbers[] = {
    {"it_IT", Text(u"1,5"), 1.5, 0},
    {"it_IT", Text(u"1.5"), 1.5, 0},  // although the locale alone reads 15
    {"it_IT", 1.5, 1.5, 0},
    {"it_IT", Text(u"1.234,5"), 0, 13},
    {"it_IT", Text(u" -,5"), -0.5, 0},
    {"en_US", Text(u"1,5"), 1.5, 0},
    {"en_US", Text(u"1.5"), 1.5, 0},
    {"en_US", Text(u"1,234.5"), 0, 13},
    {"en_US", Text(u"&HFF"), 255, 0},
    {"en_US", Text(u"x"), 0, 0},
    {"en_US", Text(u""), 0, 0},
    {"fr_FR", Text(u"1,5"), 1.5, 0},
    {"fr_FR", Text(u"1.5"), 0, 0},  // no number there
    {"fr_FR", 1.5, 1.5, 0},
};

TEST(Xml, NumbersHaveEitherSeparator) {
  const CompiledLocales compiled({"fr_FR"});
  for (const NumberText& c : kNumbers) {
    const ScopedLocale locale(c.locale);
    const Funzioni f;
    SCOPED_TRACE(toUtf8(toText(c.value)));
    const auto read = [&] { return f.getNumberFromXml(c.value); };
    EXPECT_EQ(errorOf(read), c.error);
    if (c.error == 0) {
      EXPECT_EQ(read(), c.number);
    }
  }
}

TEST(Xml, NumbersUseTheSeparatorRecordedLast) {
  const std::function<void()> makings[] = {[] { const Funzioni another; },
                                           [] {  // makes one first of all
                                             TextArray table;
                                             std::int32_t lines = 0;
                                             FileUtility().getArrayFromCsvFile(u"", table, 0,
                                                                               lines);
                                           }};
  for (const auto& make : makings) {
    const ScopedLocale italian("it_IT");
    const Funzioni f;
    const ScopedLocale us("en_US");
    // A thread's objects share it: this one still has the comma, which the present locale skips.
    EXPECT_EQ(f.getNumberFromXml(Text(u"1.5")), 15);
    make();
    EXPECT_EQ(f.getNumberFromXml(Text(u"1.5")), 1.5);
  }
}

}  // namespace
}  // namespace veltgeneral

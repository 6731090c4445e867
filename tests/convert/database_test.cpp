#include <gtest/gtest.h>

#include "automation/locale.h"
#include "support/compiled_locales.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr auto kUnknown = static_cast<typeDataBaseEngine>(7);
constexpr typeDataBaseEngine kEngines[] = {dbengineORACLE, dbengineMSACCESS, dbengineSQLSERVER,
                                           kUnknown};

struct DateCase {
  const char* locale;
  TextView stamp;
  TextView literals[3];
};

constexpr DateCase kDates[] = {
    {"it_IT",
     u"20240131235959",
     {u"to_date('20240131235959','YYYYMMDDHH24MISS')", u"#01/31/2024 23:59:59#",
      u"'31/01/2024 23:59:59'"}},
    {"en_US",
     u"20240109000000",
     {u"to_date('20240109000000','YYYYMMDDHH24MISS')", u"#01/09/2024 00:00:00#",
      u"'1/9/2024 00:00:00'"}},
    {"fr_FR",
     u"10000101000000",
     {u"to_date('10000101000000','YYYYMMDDHH24MISS')", u"#01/01/1000 00:00:00#",
      u"'01/01/1000 00:00:00'"}},
    {"it_IT", u"", {u"''", u"Null", u"Null"}},
    {"it_IT", u"2024013", {u"''", u"Null", u"Null"}},
    {"it_IT", u"20240230000000", {u"''", u"Null", u"Null"}},
};

// French names its days with a point, so the table of abbreviations has none of them.
TEST(Database, DatesInEachLocale) {
  const CompiledLocales compiled({"fr_FR"});
  for (const DateCase& c : kDates) {
    const ScopedLocale locale(c.locale);
    SCOPED_TRACE(c.locale + toUtf8(c.stamp));
    const Funzioni f;
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(f.getDataForDB(kEngines[i], Text(c.stamp)), Variant(Text(c.literals[i])));
    }
    EXPECT_EQ(f.getDataForDB(kUnknown, Text(c.stamp)), Variant(Empty{}));
    EXPECT_EQ(f.getDayNumberFromYYYYMMDD(u"20240107"),
              TextView(u"fr_FR") == fromUtf8(c.locale) ? 0 : 1);
  }
}

TEST(Database, BooleansByEngine) {
  const Funzioni f;
  static constexpr std::int16_t kFactors[] = {-1, 1, -1, 0};
  for (std::size_t i = 0; i < std::size(kEngines); ++i) {
    EXPECT_EQ(f.getBoolForDB(kEngines[i]), kFactors[i]);
    Variant yes = true;
    const Variant expected = i < 3 ? Variant(static_cast<std::int16_t>(-kFactors[i])) : Empty{};
    EXPECT_EQ(f.getBoolForDBx(kEngines[i], yes), expected);
    EXPECT_EQ(yes, Variant(true));
    // An engine that is unknown converts nothing, so nothing can overflow.
    Variant great = std::int32_t{-32768};
    if (kEngines[i] == dbengineORACLE || kEngines[i] == dbengineSQLSERVER) {
      EXPECT_THROW(f.getBoolForDBx(kEngines[i], great), RuntimeError);
    } else {
      EXPECT_NO_THROW(f.getBoolForDBx(kEngines[i], great));
    }
  }
}

TEST(Database, FloatingPointNumbersBecomeTextsInTheCallersHands) {
  const ScopedLocale italian("it_IT");
  const Funzioni f;
  for (const typeDataBaseEngine engine : kEngines) {
    Variant value = 1.25;
    const bool known = engine != kUnknown;
    const Variant text = Text(u"1.25");
    EXPECT_EQ(f.getNumberForDB(engine, value), known ? text : Variant(Empty{}));
    EXPECT_EQ(value, known ? text : Variant(1.25));
    Variant seven = std::int16_t{7};
    EXPECT_EQ(f.getNumberForDB(engine, seven), known ? Variant(std::int32_t{7}) : Variant(Empty{}));
    EXPECT_EQ(seven, Variant(std::int16_t{7}));
    Variant null = Null{};
    const Variant missing = Text(engine == dbengineORACLE ? u"''" : u"Null");
    EXPECT_EQ(f.getNumberForDB(engine, null), known ? missing : Variant(Empty{}));
  }
}

}  // namespace
}  // namespace veltgeneral

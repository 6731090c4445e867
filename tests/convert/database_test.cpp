#include <gtest/gtest.h>

#include "automation/locale.h"
#include "support/compiled_locales.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

struct DateCase {
  const char* locale;
  TextView stamp;
  TextView literals[3];  // by engine
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
    for (int engine = 1; engine <= 3; ++engine) {
      EXPECT_EQ(f.getDataForDB(static_cast<typeDataBaseEngine>(engine), Text(c.stamp)),
                Variant(Text(c.literals[engine - 1])));
    }
    EXPECT_EQ(f.getDayNumberFromYYYYMMDD(u"20240107"),
              TextView(u"fr_FR") == fromUtf8(c.locale) ? 0 : 1);
  }
}

struct Engine {
  std::int32_t number;
  std::int16_t factor;
  Variant missing, yes, lowest;  // of null, true and -32768; missing where that is error 6
};

const Engine kEngines[] = {
    {dbengineORACLE, -1, Text(u"''"), std::int16_t{1}, Missing{}},
    {dbengineMSACCESS, 1, Text(u"Null"), std::int16_t{-1}, std::int16_t{-32768}},
    {dbengineSQLSERVER, -1, Text(u"Null"), std::int16_t{1}, Missing{}},
    {7, 0, Empty{}, Empty{}, Empty{}},
};

TEST(Database, EveryEngineHasItsOwnLiterals) {
  const ScopedLocale italian("it_IT");
  const Funzioni f;
  for (const Engine& e : kEngines) {
    SCOPED_TRACE(e.number);
    const auto engine = static_cast<typeDataBaseEngine>(e.number);
    EXPECT_EQ(f.getBoolForDB(engine), e.factor);
    Variant yes = true;
    Variant lowest = std::int32_t{-32768};
    Variant null = Null{};
    Variant text = Text(u"x");
    EXPECT_EQ(f.getBoolForDBx(engine, yes), e.yes);
    if (kindOf(e.lowest) == Kind::missing) {
      EXPECT_THROW(f.getBoolForDBx(engine, lowest), RuntimeError);
    } else {
      EXPECT_EQ(f.getBoolForDBx(engine, lowest), e.lowest);
    }
    EXPECT_EQ(f.getBoolForDBx(engine, text), e.missing);
    EXPECT_EQ(f.getNumberForDB(engine, null), e.missing);
    EXPECT_EQ(f.getDataForDB(engine, null), e.missing);
    // A floating-point number becomes its text in the caller's hands too.
    const bool known = kindOf(e.missing) == Kind::text;
    Variant real = 1.25;
    const Variant written = Text(u"1.25");
    EXPECT_EQ(f.getNumberForDB(engine, real), known ? written : Variant(Empty{}));
    EXPECT_EQ(real, known ? written : Variant(1.25));
  }
}

}  // namespace
}  // namespace veltgeneral

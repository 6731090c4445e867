#include <gtest/gtest.h>

#include "automation/locale.h"
#include "support/answer.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

TEST(Database, EveryEngineHasItsOwnLiterals) {
  const struct {
    std::int32_t engine;
    std::int16_t factor;
    const char* yes;      // of true
    const char* lowest;   // of -32768
    const char* none;     // of null, and of no date
    const char* italian;  // of 31 January 2024
    const char* us;
  } cases[] = {
      {dbengineORACLE, -1, "1", "error 6", "''", "to_date('20240131235959','YYYYMMDDHH24MISS')",
       "to_date('20240131235959','YYYYMMDDHH24MISS')"},
      {dbengineMSACCESS, 1, "-1", "-32768", "Null", "#01/31/2024 23:59:59#",
       "#01/31/2024 23:59:59#"},
      {dbengineSQLSERVER, -1, "1", "error 6", "Null", "'31/01/2024 23:59:59'",
       "'1/31/2024 23:59:59'"},
      {7, 0, "", "", "", "", ""},
  };
  const Funzioni f;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.engine);
    const auto engine = static_cast<typeDataBaseEngine>(c.engine);
    Variant yes = true;
    Variant lowest = std::int32_t{-32768};
    Variant null = Null{};
    Variant real = 1.25;
    EXPECT_EQ(f.getBoolForDB(engine), c.factor);
    EXPECT_EQ(answerOf([&] { return f.getBoolForDBx(engine, yes); }), c.yes);
    EXPECT_EQ(answerOf([&] { return f.getBoolForDBx(engine, lowest); }), c.lowest);
    EXPECT_EQ(answerOf([&] { return f.getNumberForDB(engine, null); }), c.none);
    const auto literal = [&](const char* locale, const char16_t* stamp) {
      const ScopedLocale scope(locale);
      return toUtf8(toText(f.getDataForDB(engine, Text(stamp))));
    };
    EXPECT_EQ(literal("it_IT", u"20240131235959"), c.italian);
    EXPECT_EQ(literal("en_US", u"20240131235959"), c.us);
    EXPECT_EQ(literal("en_US", u"20240230000000"), c.none);
    // A floating-point number becomes its text in the caller's hands too.
    const ScopedLocale italian("it_IT");
    const Variant number = f.getNumberForDB(engine, real);
    EXPECT_EQ(number, c.factor == 0 ? Variant(Empty{}) : Variant(Text(u"1.25")));
    EXPECT_EQ(real, c.factor == 0 ? Variant(1.25) : number);
  }
}

}  // namespace
}  // namespace veltgeneral

#include "automation/locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <thread>

#include "automation/calendar.h"
#include "automation/coerce.h"
#include "support/compiled_locales.h"

namespace veltgeneral {
namespace {

TEST(Locale, WritesAndReadsItsOwn) {
  const struct {
    const char* name;
    TextView number;  // of 1234.5
    TextView general;
    TextView names;  // weekday and month
  } cases[] = {
      {"it", u"1234,5", u"31/01/2024 13:30:00", u"mer mercoledì gen gennaio"},
      {"it-IT.UTF-8@euro", u"1234,5", u"31/01/2024 13:30:00", u"mer mercoledì gen gennaio"},
      {"xx_YY", u"1234.5", u"1/31/2024 1:30:00 PM", u"Wed Wednesday Jan January"},
      {"fr_FR", u"1234,5", u"31/01/2024 13:30:00", u"mer. mercredi janv. janvier"},
      {"de_DE", u"1234,5", u"31.01.2024 13:30:00", u"Mi Mittwoch Jan Januar"},
      {"sv_SE", u"1234,5", u"2024-01-31 13:30:00", u"ons onsdag jan januari"},
  };
  const Date afternoon{45322 + 13.5 / 24};  // 31 January 2024, 13:30
  const char* process = std::setlocale(LC_ALL, nullptr);
  const CompiledLocales compiled({"fr_FR", "de_DE", "sv_SE"});
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const ScopedLocale locale(c.name);
    EXPECT_EQ(toText(1234.5), c.number);
    EXPECT_EQ(toDouble(c.number), 1234.5);
    EXPECT_EQ(toText(afternoon), c.general);
    EXPECT_EQ(toDate(Text(c.general)), afternoon);
    EXPECT_EQ(formatDate(afternoon, u"ddd dddd mmm mmmm"), c.names);
    EXPECT_TRUE(isDate(formatDate(afternoon, u"d mmm yyyy")));
  }
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), process);

  const ScopedLocale french("fr_FR");
  EXPECT_EQ(toDouble(u"1\u202F234,5\u00A0€"), 1234.5);
  // A blank groups digits where the mark is a no-break blank, and only between them.
  EXPECT_EQ(toDouble(u"1 234"), 1234);
  EXPECT_FALSE(isNumeric(u"1 e2"));
  EXPECT_FALSE(isNumeric(u"1,5 2"));
  EXPECT_TRUE(isDate(u"3 FÉVRIER 2024"));
  EXPECT_FALSE(isDate(u"3 February 2024"));
}

TEST(Locale, AScopeEndsAndStaysOnItsThread) {
  const ScopedLocale outer("it_IT");
  {
    const ScopedLocale inner("en_US");
    EXPECT_EQ(userLocale().name, u"en_US");
    // Not the scope's, but the user's, whatever that is here.
    const Locale* user = &userLocale();
    std::thread([&] { user = &userLocale(); }).join();
    EXPECT_NE(user, &userLocale());
  }
  EXPECT_EQ(userLocale().name, u"it_IT");
}

}  // namespace
}  // namespace veltgeneral

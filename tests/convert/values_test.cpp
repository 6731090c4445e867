// What members make of each kind of value, asked by name as every late-bound caller asks, and of
// each database.
#include <gtest/gtest.h>

#include <span>

#include "automation/locale.h"
#include "support/answer.h"
#include "veltgeneral/component.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// The kind and text of a value in one: "int16:1", "text:1.5", "empty:".
std::string shown(const Variant& value) {
  static constexpr const char* kKinds[] = {
      "empty:",    "missing:", "null:", "int16:",   "int32:", "single:", "real:",
      "currency:", "decimal:", "date:", "boolean:", "text:",  "bytes:"};
  std::string text = kKinds[value.index()];
  if (value.index() > 2 && kindOf(value) != Kind::bytes) text.append(toUtf8(toText(value)));
  return text;
}

// What the member answers to the value behind an engine, which not all of them ask for.
std::string answer(TextView member, Variant (&arguments)[2]) try {
  const bool asksForEngine = member.find(u"ForDB") != Text::npos;
  const std::span<Variant> given(&arguments[asksForEngine ? 0 : 1], &arguments[2]);
  return shown(createObject(u"Funzioni")->call(member, CallKind::method, given));
} catch (const RuntimeError& error) {
  return "error:" + std::to_string(error.number());
}

constexpr TextView kMembers[] = {u"getBool2Xml",   u"getBoolFromXml", u"getDur2Xml",
                                 u"getDurFromXml", u"getNumber2Xml",  u"getNumberFromXml",
                                 u"getDataForDB",  u"getBoolForDBx",  u"getNumberForDB"};

struct Row {
  Variant value;
  const char* answers;  // of the members, in their order
};

const Row kRows[] = {
    {std::int32_t{40000},
     "int16:0 boolean:False text:PT66H40M0S real:0 int32:40000 real:40000 text:'' error:6 "
     "int32:40000"},
    {1.5F,
     "int16:0 boolean:False text:PT0H0M9S real:0 text:1.5 real:1,5 text:'' int16:-2 text:1.5"},
    {20240131235959.0,
     "int16:0 boolean:False text:PT33733552059H55M54S real:0 text:20240131235959 "
     "real:20240131235959 text:to_date('20240131235959','YYYYMMDDHH24MISS') error:6 "
     "text:20240131235959"},
    {Decimal{35, 0, 0, 1, false},
     "int16:0 boolean:False text:PT0H0M21S real:0 int16:4 real:3,5 text:'' int16:-4 int16:4"},
    // 1 and the least that a decimal can add, which no double has; 1.0.
    {Decimal{0x10000001, 0x3E250261, 0x204FCE5E, 28, false},
     "int16:0 boolean:False text:PT0H0M6S real:0 int16:1 real:1 text:'' int16:-1 int16:1"},
    {Decimal{10, 0, 0, 1, false},
     "int16:0 boolean:True text:PT0H0M6S real:0 int16:1 real:1 text:'' int16:-1 int16:1"},
    {true,
     "int16:1 boolean:False text:PT0H0M-6S real:0 int32:-1 error:13 text:'' int16:1 int32:-1"},
    {Date{45322},
     "int16:0 boolean:False text:PT0H0M0S real:0 text: real:0 text:'' text:'' text:''"},
    {Text(u"-1"),
     "int16:1 boolean:False text:PT0H0M-6S real:0 int32:-1 real:-1 text:'' int16:1 int32:-1"},
    {Text(u"20240131235959"),
     "int16:0 boolean:False text:PT33733552059H55M54S real:0 error:6 real:20240131235959 "
     "text:to_date('20240131235959','YYYYMMDDHH24MISS') error:6 error:6"},
    {Text(u"PT1H30M6S"),
     "int16:0 boolean:False text:PT0H0M0S real:901 text: real:0 text:'' text:'' text:''"},
    {Null{}, "int16:0 boolean:False text:PT0H0M0S error:94 text: real:0 text:'' text:'' text:''"},
    {Empty{},
     "int16:0 boolean:False text:PT0H0M0S real:0 int32:0 error:13 text:'' int16:0 int32:0"},
    {Bytes{1, 2},
     "int16:0 boolean:False text:PT0H0M0S error:13 text: real:0 text:'' text:'' text:''"},
};

// Texts of numbers have a point in any locale; a real is shown in the locale's own way.
TEST(Kinds, DecideWhatMembersAnswer) {
  const ScopedLocale italian("it_IT");
  for (const Row& row : kRows) {
    std::string answers;
    for (const TextView member : kMembers) {
      Variant arguments[] = {std::int32_t{dbengineORACLE}, row.value};
      const std::string given = answer(member, arguments);
      answers.append(answers.empty() ? "" : " ").append(given);
      // Only a floating-point number given to the database becomes its text.
      const bool changed =
          member == u"getNumberForDB" && given.starts_with("text:") && given != "text:''";
      EXPECT_EQ(shown(arguments[1]), changed ? given : shown(row.value)) << toUtf8(member);
    }
    EXPECT_EQ(answers, row.answers) << shown(row.value);
  }
}

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
      {7, 0, "", "", "", "", ""}};
  const Funzioni f;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.engine);
    const auto engine = static_cast<typeDataBaseEngine>(c.engine);
    Variant yes = true;
    Variant lowest = std::int32_t{-32768};
    Variant null = Null{};
    EXPECT_EQ(f.getBoolForDB(engine), c.factor);
    EXPECT_EQ(answerOf([&] { return f.getBoolForDBx(engine, yes); }), c.yes);
    EXPECT_EQ(answerOf([&] { return f.getBoolForDBx(engine, lowest); }), c.lowest);
    EXPECT_EQ(answerOf([&] { return f.getNumberForDB(engine, null); }), c.none);
    for (const auto& [locale, literal] : {std::pair("it_IT", c.italian), {"en_US", c.us}}) {
      const ScopedLocale scope(locale);
      EXPECT_EQ(answerOf([&] { return f.getDataForDB(engine, Text(u"20240131235959")); }), literal);
      EXPECT_EQ(answerOf([&] { return f.getDataForDB(engine, Text(u"20240230000000")); }), c.none);
    }
    // A floating-point number becomes its text in the caller's hands too, of an engine that is one.
    Variant real = 1.25;
    const Variant number = f.getNumberForDB(engine, real);
    EXPECT_EQ(number, c.factor == 0 ? Variant(Empty{}) : Variant(Text(u"1.25")));
    EXPECT_EQ(real, c.factor == 0 ? Variant(1.25) : number);
  }
}

}  // namespace
}  // namespace veltgeneral

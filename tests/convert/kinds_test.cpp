// What each member makes of each kind of value, asked by name as every late-bound caller asks.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "automation/coerce.h"
#include "automation/locale.h"
#include "veltgeneral/component.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

// The kind and text of a value in one: "int16 1", "text 1.5", "empty".
std::string shown(const Variant& value) {
  static constexpr const char* kKinds[] = {"empty",   "missing", "null",    "int16",
                                           "int32",   "single",  "real",    "currency",
                                           "decimal", "date",    "boolean", "text"};
  const std::string kind = kKinds[value.index()];
  if (value.index() < 3) return kind;
  return kind + " " + toUtf8(toText(value));
}

struct Answer {
  std::string result;
  std::string argument;  // afterwards
};

Answer ask(TextView member, const Variant& value, bool hasEngine) {
  const ObjectRef funzioni = createObject(u"Funzioni");
  Variant arguments[] = {std::int32_t{dbengineORACLE}, value};
  const std::span<Variant> all(arguments);
  Answer answer;
  try {
    answer.result =
        shown(funzioni->call(member, CallKind::method, hasEngine ? all : all.subspan(1)));
  } catch (const RuntimeError& error) {
    answer.result = "error " + std::to_string(error.number());
  }
  if (value.index() <= static_cast<std::size_t>(Kind::text)) answer.argument = shown(arguments[1]);
  return answer;
}

struct Column {
  TextView member;
  bool hasEngine;
};

constexpr Column kColumns[] = {
    {u"getBool2Xml", false},   {u"getBoolFromXml", false}, {u"getDur2Xml", false},
    {u"getDurFromXml", false}, {u"getNumber2Xml", false},  {u"getNumberFromXml", false},
    {u"getDataForDB", true},   {u"getBoolForDBx", true},   {u"getNumberForDB", true},
};

struct Row {
  const char* name;
  Variant value;
  const char* answers[std::size(kColumns)];
};

const Row kRows[] = {
    {"int16",
     std::int16_t{1},
     {"int16 0", "boolean True", "text PT0H0M6S", "real 0", "int32 1", "real 1", "text ''",
      "int16 -1", "int32 1"}},
    {"int32",
     std::int32_t{40000},
     {"int16 0", "boolean False", "text PT66H40M0S", "real 0", "int32 40000", "real 40000",
      "text ''", "error 6", "int32 40000"}},
    {"single",
     1.5F,
     {"int16 0", "boolean False", "text PT0H0M9S", "real 0", "text 1.5", "real 1.5", "text ''",
      "int16 -2", "text 1.5"}},
    {"double",
     2.5,
     {"int16 0", "boolean False", "text PT0H0M15S", "real 0", "text 2.5", "real 2.5", "text ''",
      "int16 -2", "text 2.5"}},
    {"double of 14 digits",
     20240131235959.0,
     {"int16 0", "boolean False", "text PT33733552059H55M54S", "real 0", "text 20240131235959",
      "real 20240131235959", "text to_date('20240131235959','YYYYMMDDHH24MISS')", "error 6",
      "text 20240131235959"}},
    {"currency",
     Currency{25000},
     {"int16 0", "boolean False", "text PT0H0M15S", "real 0", "int32 2", "real 2.5", "text ''",
      "int16 -2", "int32 2"}},
    {"decimal",
     Decimal{35, 0, 0, 1, false},
     {"int16 0", "boolean False", "text PT0H0M21S", "real 0", "int16 4", "real 3.5", "text ''",
      "int16 -4", "int16 4"}},
    {"large decimal",
     Decimal{40000, 0, 0, 0, false},
     {"int16 0", "boolean False", "text PT66H40M0S", "real 0", "error 6", "real 40000", "text ''",
      "error 6", "error 6"}},
    {"boolean",
     true,
     {"int16 1", "boolean False", "text PT0H0M-6S", "real 0", "int32 -1", "error 13", "text ''",
      "int16 1", "int32 -1"}},
    {"date",
     Date{45322},
     {"int16 0", "boolean False", "text PT0H0M0S", "real 0", "text ", "real 0", "text ''",
      "text ''", "text ''"}},
    {"numeric text",
     Text(u"-1"),
     {"int16 1", "boolean False", "text PT0H0M-6S", "real 0", "int32 -1", "real -1", "text ''",
      "int16 1", "int32 -1"}},
    {"text of digits",
     Text(u"20240131235959"),
     {"int16 0", "boolean False", "text PT33733552059H55M54S", "real 0", "error 6",
      "real 20240131235959", "text to_date('20240131235959','YYYYMMDDHH24MISS')", "error 6",
      "error 6"}},
    {"other text",
     Text(u"True"),
     {"int16 0", "boolean False", "text PT0H0M0S", "real 0", "text ", "real 0", "text ''",
      "text ''", "text ''"}},
    {"duration",
     Text(u"PT1H30M6S"),
     {"int16 0", "boolean False", "text PT0H0M0S", "real 901", "text ", "real 0", "text ''",
      "text ''", "text ''"}},
    {"null",
     Null{},
     {"int16 0", "boolean False", "text PT0H0M0S", "error 94", "text ", "real 0", "text ''",
      "text ''", "text ''"}},
    {"empty",
     Empty{},
     {"int16 0", "boolean False", "text PT0H0M0S", "real 0", "int32 0", "error 13", "text ''",
      "int16 0", "int32 0"}},
    {"missing",
     Missing{},
     {"error 449", "error 449", "error 449", "error 449", "error 449", "error 449", "error 449",
      "error 449", "error 449"}},
    {"bytes",
     Bytes{1, 2},
     {"int16 0", "boolean False", "text PT0H0M0S", "error 13", "text ", "real 0", "text ''",
      "text ''", "text ''"}},
};

TEST(Kinds, DecideWhatMembersAnswer) {
  for (const char* name : {"en_US", "it_IT"}) {
    const ScopedLocale locale(name);
    for (const Row& row : kRows) {
      for (std::size_t i = 0; i < std::size(kColumns); ++i) {
        const Column& column = kColumns[i];
        SCOPED_TRACE(std::string(name) + ' ' + toUtf8(column.member) + ' ' + row.name);
        const Answer answer = ask(column.member, row.value, column.hasEngine);
        std::string expected = row.answers[i];
        // Texts of numbers have a point in any locale; a text shown of a real has the locale's.
        if (expected.starts_with("real"))
          std::ranges::replace(expected, '.', *name == 'i' ? ',' : '.');
        EXPECT_EQ(answer.result, expected);
        // Only a floating-point number given to the database becomes its text.
        const bool changed = column.member == u"getNumberForDB" && expected.starts_with("text") &&
                             expected != "text ''";
        if (!answer.argument.empty()) {
          EXPECT_EQ(answer.argument, changed ? expected : shown(row.value));
        }
      }
    }
  }
}

}  // namespace
}  // namespace veltgeneral

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "component/names.h"
#include "component/record.h"
#include "support/error_of.h"
#include "veltgeneral/component.h"

namespace veltgeneral {
namespace {

using Variants = std::vector<Variant>;
constexpr CallKind kMethod = CallKind::method;
constexpr CallKind kGet = CallKind::propertyGet;
constexpr CallKind kPut = CallKind::propertyPut;

Variants filled() { return {5, Text(u"description"), Text(u"1"), Text(u"place")}; }

Text describeItself(Object& object) {
  return std::get<Text>(object.call(u"getAttrEqualValue", kMethod, {}));
}

TEST(Creation, ByNameInAnyCaseWithOrWithoutPrefix) {
  for (const TextView name : {u"ErrInfo", u"errinfo", u"VELTGENERAL.errINFO"})
    EXPECT_EQ(classOf(*createObject(name))->name, "ErrInfo");
  for (const TextView name : {u"", u"ErrInf", u"ErrInfo ", u"VeltGeneral.", u"Other.ErrInfo"})
    EXPECT_EQ(errorOf([&] { createObject(name); }), 429) << toUtf8(name);
}

TEST(Call, NamesMatchInAnyCaseAndArgumentsAreCoerced) {
  const ObjectRef object = createObject(u"ErrInfo");
  Variants arguments = {5, Text(u"description")};
  Variant values[] = {Text(u"1"), Text(u"place"), Text(u"s")};
  const NamedArgument named[] = {
      {u"VNTSTEPINFO", &values[2]}, {u"iTypeInfo", &values[0]}, {u"sLocationInfo", &values[1]}};
  EXPECT_EQ(invoke(*object, resolve(*object, u"errINFO", kMethod), arguments, named),
            Variant(std::int16_t{0}));
  EXPECT_EQ(values[0], Variant(Text(u"1")));  // in only
  EXPECT_EQ(describeItself(*object),
            u"vntNumberInfo=\"5\" vntDescriptionInfo=\"description\" vntTypeInfo=\"1\" "
            u"vntLocationInfo=\"place\" vntStepInfo=\"s\" ");
  // In/out ones take the member's kind; a missing one stays away.
  Variants out = {Empty{}, Text(u"old"), 1.0, Empty{}, Null{}, Missing{}};
  object->call(u"getInfo", kMethod, out);
  EXPECT_EQ(
      out, (Variants{5, Text(u"description"), std::int16_t{1}, Text(u"place"), Text(), Missing{}}));
  // Late-bound callers rarely tell a get from a call without arguments.
  EXPECT_EQ(object->call(u"LocationInfo", kMethod, {}), Variant(Text(u"place")));
  EXPECT_EQ(object->call(u"isSuccess", kGet, {}), Variant(false));
  EXPECT_EQ(object->call(u"clear", kMethod, {}), Variant(Empty{}));
}

TEST(Call, WrongCallsRaiseTheirNumberAndChangeNothing) {
  const ObjectRef object = createObject(u"ErrInfo");
  const ObjectRef files = createObject(u"FileUtility");
  const auto foreign = std::make_shared<Record>();
  Variants any = filled();
  object->call(u"ErrInfo", kMethod, any);
  const Text before = describeItself(*object);
  const Member& fill = resolve(*object, u"ErrInfo", kMethod);
  const NamedArgument unknown[] = {{u"lNumber", any.data()}};
  const NamedArgument twice[] = {{u"lNumberInfo", any.data()}};
  const NamedArgument twiceByName[] = {{u"vntStepInfo", &any[1]}, {u"VntStepInfo", &any[2]}};

  const auto call = [&](TextView name, CallKind kind = kMethod) {
    return [&object, name, kind](Variants& a) { object->call(name, kind, a); };
  };
  const auto named = [&](std::span<const NamedArgument> names) {
    return [&object, &fill, names](Variants& a) { invoke(*object, fill, a, names); };
  };
  const Text d = u"d";
  const Text l = u"l";
  const struct {
    const char* what;
    std::int32_t number;
    Variants arguments;
    std::function<void(Variants&)> run;
  } cases[] = {
      {"no member of that name", 438, {}, call(u"nope")},
      {"the empty name", 438, {}, call(u"")},
      {"assigning what is read-only", 438, {1}, call(u"numberInfo", kPut)},
      {"assigning a method", 438, {1}, call(u"clear", kPut)},
      {"a missing argument", 449, {1, d, 1}, call(u"ErrInfo")},
      {"a hole", 449, {1, Missing{}, 1, l}, call(u"ErrInfo")},
      {"too many", 450, {1}, call(u"clear")},
      {"a text that is no number, last", 13, {1, d, Text(u"x"), l}, call(u"ErrInfo")},
      {"null for a number", 94, {Null{}, d, 1, l}, call(u"ErrInfo")},
      {"a number too great", 6, {3e9, d, 1, l}, call(u"ErrInfo")},
      {"in/out, one of a wrong kind", 13, {Empty{}, 5, TextArray({1, 2}), 6}, call(u"getInfo")},
      {"no record", 13, {5}, call(u"ErrInfoNew")},
      {"an object that is not set", 13, {ObjectRef()}, call(u"ErrInfoNew")},
      {"a text for an array",
       13,
       {d, d, 0, 0},
       [&](auto& a) { files->call(u"getArrayFromCsvFile", kMethod, a); }},
      {"an unknown argument name", 448, filled(), named(unknown)},
      {"an argument by position and name", 450, filled(), named(twice)},
      {"a name given twice", 450, filled(), named(twiceByName)},
      {"an object of somebody else", 430, {}, [&](auto& a) { invoke(*foreign, fill, a); }},
      {"a member of somebody else", 430, {}, [&](auto&) { resolve(*foreign, u"ErrInfo", {}); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Variants arguments = c.arguments;
    EXPECT_EQ(errorOf([&] { c.run(arguments); }), c.number);
    EXPECT_EQ(arguments, c.arguments);
    EXPECT_EQ(describeItself(*object), before);
  }
}

TEST(Members, AreFoundByTheirNamesAlone) {
  for (const Class& type : classes()) {
    const ObjectRef object = createObject(fromUtf8(type.name));
    EXPECT_EQ(classOf(*object), &type) << type.name;
    for (const Member& member : type.members) {
      SCOPED_TRACE(std::string(type.name).append(".").append(member.name));
      const Text name = fromUtf8(member.name);
      EXPECT_EQ(&resolve(*object, name, member.kind), &member);
      // A get and a call without arguments stand for each other.
      const CallKind alike = member.kind == kPut ? kPut : member.kind == kGet ? kMethod : kGet;
      EXPECT_EQ(&resolve(*object, name, alike), &member);
      const auto all = member.parameters;
      EXPECT_TRUE(member.kind == kMethod || all.size() == (member.kind == kPut ? 1 : 0));
      EXPECT_TRUE(std::ranges::is_partitioned(all, std::logical_not(), &Parameter::optional));
      for (const Parameter& each : all) {
        const auto same = [&](const Parameter& other) { return sameName(other.name, each.name); };
        EXPECT_EQ(std::ranges::count_if(all, same), 1) << each.name;
      }
    }
  }
}

}  // namespace
}  // namespace veltgeneral

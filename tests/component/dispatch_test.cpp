#include <gtest/gtest.h>

#include <functional>

#include "component/component_object.h"
#include "component/record.h"
#include "veltgeneral/component.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

using Variants = std::vector<Variant>;

Variants filled() { return {5, Text(u"description"), Text(u"1"), Text(u"place")}; }

Text describeItself(Object& object) {
  return std::get<Text>(object.call(u"getAttrEqualValue", CallKind::method, {}));
}

// The number of the error that `action` raises; 0 for none.
std::int32_t errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(Creation, ByNameInAnyCaseWithOrWithoutPrefix) {
  for (const TextView name :
       {u"ErrInfo", u"errinfo", u"VeltGeneral.ErrInfo", u"VELTGENERAL.ERRINFO"}) {
    EXPECT_EQ(classOf(*createObject(name))->name, "ErrInfo");
  }
  for (const TextView name : {u"", u"ErrInf", u"ErrInfo ", u"VeltGeneral.", u"Other.ErrInfo"}) {
    EXPECT_EQ(errorOf([&] { createObject(name); }), 429) << toUtf8(name);
  }
}

TEST(Creation, LiveObjectsAreCounted) {
  const std::size_t before = ComponentObject::count();
  ObjectRef one = createObject(u"ErrInfo");
  const ObjectRef two = one;
  EXPECT_EQ(ComponentObject::count(), before + 1);
  // A result is an object of its own.
  Variant copy;
  const Variant status = one->call(u"clone", CallKind::method, {&copy, 1});
  EXPECT_EQ(ComponentObject::count(), before + 3);
}

TEST(Call, NamesMatchInAnyCaseAndKindsAreCoerced) {
  const ObjectRef object = createObject(u"ErrInfo");
  Variants arguments = filled();
  EXPECT_EQ(object->call(u"ERRINFO", CallKind::method, arguments), Variant(std::int16_t{0}));
  EXPECT_EQ(arguments, filled());  // in only
  EXPECT_EQ(object->call(u"numberinfo", CallKind::propertyGet, {}), Variant(5));
  EXPECT_EQ(object->call(u"typeInfo", CallKind::propertyGet, {}), Variant(std::int16_t{1}));
  // Late-bound callers rarely tell a get from a call without arguments.
  EXPECT_EQ(object->call(u"LocationInfo", CallKind::method, {}), Variant(Text(u"place")));
  EXPECT_EQ(object->call(u"isSuccess", CallKind::propertyGet, {}), Variant(false));
  EXPECT_EQ(object->call(u"clear", CallKind::method, {}), Variant(Empty{}));
}

TEST(Call, NamedArgumentsComeInAnyOrderAndOptionalOnesMayBeMissing) {
  const ObjectRef object = createObject(u"ErrInfo");
  const Member& fill = resolve(*object, u"errinfo", CallKind::method);
  Variants positional = {7, Text(u"d")};
  Variant type = 3;
  Variant location = Text(u"l");
  Variant step = Text(u"s");
  const NamedArgument named[] = {
      {u"VNTSTEPINFO", &step}, {u"iTypeInfo", &type}, {u"sLocationInfo", &location}};
  invoke(*object, fill, positional, named);
  EXPECT_EQ(describeItself(*object),
            u"vntNumberInfo=\"7\" vntDescriptionInfo=\"d\" vntTypeInfo=\"3\" "
            u"vntLocationInfo=\"l\" vntStepInfo=\"s\" ");
}

TEST(Call, InOutArgumentsTakeTheMembersKind) {
  const ObjectRef object = createObject(u"ErrInfo");
  Variants values = filled();
  values.emplace_back(Text(u"class"));
  object->call(u"ErrInfo", CallKind::method, values);
  // Of the caller's kinds some fit, some are converted, and a missing one stays away.
  Variants out = {Empty{}, Text(u"old"), 1.0, Empty{}, Null{}, Missing{}};
  object->call(u"getInfo", CallKind::method, out);
  EXPECT_EQ(out, (Variants{5, Text(u"description"), std::int16_t{1}, Text(u"place"), Text(u"class"),
                           Missing{}}));
}

TEST(Call, WrongCallsRaiseTheirNumberAndChangeNothing) {
  const ObjectRef object = createObject(u"ErrInfo");
  const ObjectRef other = createObject(u"FileUtility");
  const auto foreign = std::make_shared<Record>();
  Variants values = filled();
  object->call(u"ErrInfo", CallKind::method, values);
  const Text before = describeItself(*object);
  const Member& fill = resolve(*object, u"ErrInfo", CallKind::method);
  Variant any = 1;
  const NamedArgument unknown[] = {{u"lNumber", &any}};
  const NamedArgument twice[] = {{u"lNumberInfo", &any}};
  const NamedArgument twiceByName[] = {{u"vntStepInfo", &any}, {u"VntStepInfo", &any}};

  const auto call = [&](TextView name, CallKind kind = CallKind::method) {
    return [&object, name, kind](Variants& a) { object->call(name, kind, a); };
  };
  const auto named = [&](std::span<const NamedArgument> names) {
    return [&object, &fill, names](Variants& a) { invoke(*object, fill, a, names); };
  };
  const Text d = u"d";
  const Text l = u"l";
  struct {
    const char* what;
    std::int32_t number;
    Variants arguments;
    std::function<void(Variants&)> run;
  } cases[] = {
      {"no member of that name", 438, {}, call(u"nope")},
      {"the empty name", 438, {}, call(u"")},
      {"assigning what is read-only", 438, {1}, call(u"numberInfo", CallKind::propertyPut)},
      {"assigning a method", 438, {1}, call(u"clear", CallKind::propertyPut)},
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
       [&](auto& a) { other->call(u"getArrayFromCsvFile", {}, a); }},
      {"an unknown argument name", 448, filled(), named(unknown)},
      {"an argument by position and name", 450, filled(), named(twice)},
      {"a name given twice", 450, filled(), named(twiceByName)},
      {"an object of somebody else", 430, {}, [&](auto& a) { invoke(*foreign, fill, a); }},
      {"a member of somebody else", 430, {}, [&](auto&) { resolve(*foreign, u"ErrInfo", {}); }},
  };
  for (auto& each : cases) {
    SCOPED_TRACE(each.what);
    const Variants given = each.arguments;
    EXPECT_EQ(errorOf([&] { each.run(each.arguments); }), each.number);
    EXPECT_EQ(each.arguments, given);
    EXPECT_EQ(describeItself(*object), before);
  }
}

TEST(Call, ARecordIsAnyObjectWithItsFields) {
  const ObjectRef object = createObject(u"ErrInfo");
  const auto record = std::make_shared<Record>();
  Variant number = Text(u"12");
  record->call(u"VNTNUMBERINFO", CallKind::propertyPut, {&number, 1});
  Variant argument = record;
  object->call(u"ErrInfoNew", CallKind::method, {&argument, 1});
  EXPECT_EQ(describeItself(*object), u"vntNumberInfo=\"12\" ");

  // An error of the record's own reaches the caller as it is.
  class Broken final : public Object {
    Variant call(TextView, CallKind, std::span<Variant>) override {
      throw RuntimeError(1234, u"out of order");
    }
  };
  argument = std::make_shared<Broken>();
  EXPECT_EQ(errorOf([&] { object->call(u"ErrInfoNew", CallKind::method, {&argument, 1}); }), 1234);
}

}  // namespace
}  // namespace veltgeneral

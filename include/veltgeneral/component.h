// The component's door for C++: creation by name, late-bound calls, and what the classes look like.
//
//   ObjectRef files = createObject(u"VeltGeneral.FileUtility");
//   Variant arguments[] = {Text(u"orders.csv"), Text()};
//   Variant result = files->call(u"readFile", CallKind::method, arguments);
//   // arguments[1] now holds the text, result an object with the members of ErrInfo
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "veltgeneral/export.h"
#include "veltgeneral/object.h"
#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

enum class Direction : std::uint8_t { in, inOut };

// What a parameter or result is. `name` is that of the class, record or enumeration, or empty;
// an enumeration's kind is int32, that of a record or class is object. `isVariant` values take any
// kind, and `isVoid` is the result of a member that has none.
struct ValueType {
  std::string_view name{};
  Kind kind = Kind::empty;
  bool isVariant = false;
  bool isVoid = false;
};

struct Parameter {
  std::string_view name{};
  ValueType type{};
  Direction direction = Direction::in;
  bool optional = false;
  std::int32_t defaultNumber = 0;  // of an optional parameter that is no variant
};

// One published member. Its names are ASCII and matched without regard to case.
struct Member {
  static constexpr std::size_t kMaxParameters = 8;
  using Invoke = Variant (*)(void* instance, Variant* const* arguments);

  std::string_view name;
  ValueType result{};
  std::span<const Parameter> parameters{};
  Invoke invoke = nullptr;  // the component's own business
  CallKind kind = CallKind::method;
};

struct Enumerator {
  std::string_view name;
  std::int32_t value = 0;
};

struct Enumeration {
  std::string_view name;
  std::span<const Enumerator> values;
};

// One creatable class; `members` in the published order. `enumerations` are those that the class
// publishes.
struct Class {
  std::string_view name;
  std::string_view summary;
  std::span<const Member> members;
  ObjectRef (*create)();
  std::span<const Enumeration> enumerations{};
};

// All creatable classes, in the order of their introduction.
VELTGENERAL_API std::span<const Class> classes() noexcept;

// All published enumerations; parameters and results name them as their types.
VELTGENERAL_API std::span<const Enumeration> enumerations() noexcept;

// `name` with or without the prefix "VeltGeneral.", in any case. Throws RuntimeError 429 for a name
// that is no class.
VELTGENERAL_API ObjectRef createObject(TextView name);
// Null for a name that is no class.
VELTGENERAL_API const Class* findClass(TextView name) noexcept;

// A record: an object whose properties are whatever is put into it, empty before that. It serves
// where a member takes a record, and as a window.
VELTGENERAL_API ObjectRef makeRecord();
// The names put into a record, in that order; none for any other object.
VELTGENERAL_API std::vector<Text> fieldNames(const Object& record);

// The class of an object that this component created; null for anybody else's.
VELTGENERAL_API const Class* classOf(const Object& object) noexcept;

// The member, for callers that call it often; a method also answers to propertyGet and a property's
// get to method, as late-bound callers rarely tell them apart. Throws RuntimeError 438 for a name
// that is no member or has no such kind, 430 for an object that is not of this component.
VELTGENERAL_API const Member& resolve(const Object& object, TextView name, CallKind kind);

// Calls `member`, which `resolve` gave for this object's class, as Object::call does.
VELTGENERAL_API Variant invoke(Object& object, const Member& member, std::span<Variant> arguments);

struct NamedArgument {
  TextView name;
  Variant* value;  // changed in place where the member changes it
};

// Positional arguments first, then named ones in any order. Throws RuntimeError 448 for a name that
// the member does not have, 450 for too many arguments or one given twice, 449 for a missing one.
VELTGENERAL_API Variant invoke(Object& object, const Member& member, std::span<Variant> positional,
                               std::span<const NamedArgument> named);

}  // namespace veltgeneral

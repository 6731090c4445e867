// How a late-bound argument becomes a parameter of a C++ member, and back.
//
// One `Argument<T>` for each parameter type T. Its constructor coerces, and is the only step that
// may fail, so a call that cannot be made changes nothing; `get` is what the member receives; where
// the caller's value had another kind than an in/out parameter, `writeBack` gives it the
// parameter's.
#pragma once

#include <optional>
#include <type_traits>

#include "automation/coerce.h"
#include "component/component_object.h"
#include "component/record.h"
#include "component/type_names.h"
#include "veltgeneral/err_info.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

// The kinds are in the order of the variant's alternatives.
template <class T, class... All>
constexpr Kind kindAmong(const std::variant<All...>* /*order*/) {
  std::uint8_t at = 0;
  (void)((std::is_same_v<T, All> || (++at, false)) || ...);
  return static_cast<Kind>(at);
}

template <class T>
constexpr Kind kindFor() {
  if constexpr (std::is_same_v<T, TextView>)
    return Kind::text;
  else if constexpr (std::is_enum_v<T>)
    return Kind::int32;
  else if constexpr (std::is_same_v<T, Object> || !kTypeName<T>.empty())
    return Kind::object;
  else
    return kindAmong<T>(static_cast<const Variant*>(nullptr));
}

template <class T>
constexpr ValueType valueTypeOf() {
  using Bare = std::remove_cvref_t<std::remove_pointer_t<T>>;
  if constexpr (std::is_void_v<T>)
    return {.isVoid = true};
  else if constexpr (std::is_same_v<Bare, Variant>)
    return {.isVariant = true};
  else
    return {.name = kTypeName<Bare>, .kind = kindFor<Bare>()};
}

// What changes in the caller's hands: references and pointers to what is not const.
template <class T>
constexpr Direction directionOf() {
  constexpr bool reference =
      std::is_lvalue_reference_v<T> && !std::is_const_v<std::remove_reference_t<T>>;
  return (reference && !std::is_same_v<T, Object&>) || std::is_pointer_v<T> ? Direction::inOut
                                                                            : Direction::in;
}

template <class T>
T coerceTo(const Variant& value) {
  if constexpr (std::is_constructible_v<Variant, T> && !std::is_enum_v<T>) {
    if (const T* held = std::get_if<T>(&value)) return *held;
  }
  if constexpr (std::is_enum_v<T>) {
    if (const auto* held = std::get_if<std::int32_t>(&value)) return static_cast<T>(*held);
  }
  if constexpr (std::is_same_v<T, std::int16_t>)
    return toInt16(value);
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return toInt32(value);
  else if constexpr (std::is_enum_v<T>)
    return static_cast<T>(toInt32(value));
  else if constexpr (std::is_same_v<T, float>)
    return toSingle(value);
  else if constexpr (std::is_same_v<T, double>)
    return toDouble(value);
  else if constexpr (std::is_same_v<T, bool>)
    return toBoolean(value);
  else if constexpr (std::is_same_v<T, Date>)
    return toDate(value);
  else
    return toText(value);
}

// By value: numbers, booleans, dates, enumerations.
template <class T>
class Argument {
 public:
  explicit Argument(Variant& value) : value_(coerceTo<T>(value)) {}
  T get() { return value_; }
  void writeBack() {}

 private:
  T value_;
};

// A text that is only read: borrowed where it is one already.
template <>
class Argument<TextView> {
 public:
  explicit Argument(Variant& value) {
    if (const Text* text = std::get_if<Text>(&value)) {
      view_ = *text;
    } else {
      view_ = local_.emplace(toText(value));
    }
  }
  TextView get() { return view_; }
  void writeBack() {}

 private:
  std::optional<Text> local_;
  TextView view_;
};

// In/out values that a variant can hold: in place where the kind fits, else through a local.
template <class T>
requires std::is_constructible_v<Variant, T>
class Argument<T&> {
 public:
  explicit Argument(Variant& value) : caller_(&value), place_(std::get_if<T>(&value)) {
    if (place_ == nullptr) place_ = &local_.emplace(coerceTo<T>(value));
  }
  T& get() { return *place_; }
  void writeBack() {
    if (local_) *caller_ = std::move(*local_);
  }

 private:
  Variant* caller_;
  std::optional<T> local_;
  T* place_;
};

// An array is never made from another kind; a value not yet given is an unallocated one.
template <>
class Argument<TextArray&> {
 public:
  explicit Argument(Variant& value) : caller_(&value), place_(std::get_if<TextArray>(&value)) {
    if (place_ != nullptr) return;
    if (kindOf(value) != Kind::empty) throw RuntimeError(RunTime::typeMismatch);
    place_ = &local_.emplace();
  }
  TextArray& get() { return *place_; }
  void writeBack() {
    if (local_) *caller_ = std::move(*local_);
  }

 private:
  Variant* caller_;
  std::optional<TextArray> local_;
  TextArray* place_;
};

template <>
class Argument<const Variant&> {
 public:
  explicit Argument(Variant& value) : value_(&value) {}
  const Variant& get() { return *value_; }
  void writeBack() {}

 private:
  Variant* value_;
};

template <>
class Argument<Variant&> {
 public:
  explicit Argument(Variant& value) : value_(&value) {}
  Variant& get() { return *value_; }
  void writeBack() {}

 private:
  Variant* value_;
};

// An optional variant that the member may fill: null when it was left out.
template <>
class Argument<Variant*> {
 public:
  explicit Argument(Variant& value) : value_(kindOf(value) == Kind::missing ? nullptr : &value) {}
  Variant* get() { return value_; }
  void writeBack() {}

 private:
  Variant* value_;
};

// A caller's object that the member calls back by name.
template <>
class Argument<Object&> {
 public:
  explicit Argument(Variant& value) {
    if (const ObjectRef* object = std::get_if<ObjectRef>(&value)) object_ = *object;
    if (!object_) throw RuntimeError(RunTime::objectNotSet);
  }
  Object& get() { return *object_; }
  void writeBack() {}

 private:
  ObjectRef object_;
};

// An in/out result object: the member's is a new one, whatever the caller's variable held.
template <>
class Argument<ErrInfo&> {
 public:
  explicit Argument(Variant& value) : caller_(&value) {}
  ErrInfo& get() { return fresh_; }
  void writeBack() { *caller_ = makeObject<ErrInfo>(std::move(fresh_)); }

 private:
  Variant* caller_;
  ErrInfo fresh_;
};

template <>
class Argument<structError&> {
 public:
  explicit Argument(Variant& value) : record_(readStructError(value)) {}
  structError& get() { return record_; }
  void writeBack() {}

 private:
  structError record_;
};

}  // namespace veltgeneral

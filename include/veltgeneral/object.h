// Object: what can be called by name while the program runs.
//
// The component's own classes are reached through it, and so are a caller's objects (a window,
// say), whatever language they are written in.
#pragma once

#include <span>

#include "veltgeneral/export.h"
#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

struct Class;           // component.h
class ComponentObject;  // the component's own objects

enum class CallKind : std::uint8_t { method, propertyGet, propertyPut };

class VELTGENERAL_API Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object();

  // Calls the member `name`, matched without regard to case, with positional arguments; a put's
  // value is its last argument. Arguments that the member changes are changed in place; a raised
  // error that comes from the call itself (no such member 438, wrong number of arguments 450, a
  // value of the wrong kind 13) leaves them all as they were.
  //
  // Returns Empty where the member has no result. Throws RuntimeError.
  virtual Variant call(TextView name, CallKind kind, std::span<Variant> arguments) = 0;

 private:
  friend class ComponentObject;
  const Class* type_ = nullptr;  // null for anybody else's
};

}  // namespace veltgeneral

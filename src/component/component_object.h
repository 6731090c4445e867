// A class's instance behind the late-bound interface.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "component/tables/tables.h"
#include "veltgeneral/component.h"

namespace veltgeneral {

class ComponentObject : public Object {
 public:
  ComponentObject(const Class& type, void* instance);
  ~ComponentObject() override;

  Variant call(TextView name, CallKind kind, std::span<Variant> arguments) override;

  // The object itself where it is of this component, else null.
  static ComponentObject* from(Object* object) noexcept {
    const bool own = object != nullptr && object->type_ != nullptr;
    return own ? static_cast<ComponentObject*>(object) : nullptr;
  }
  static const Class* typeOf(const Object& object) noexcept { return object.type_; }

  const Class& type() const noexcept { return *typeOf(*this); }
  void* instance() const noexcept { return instance_; }

  // Objects of all classes that are alive in the process.
  static std::size_t count() noexcept;

 private:
  void* instance_;
};

template <class C, class... All>
constexpr std::size_t positionIn(ClassList<All...>) {
  std::size_t at = 0;
  (void)((std::is_same_v<C, All> || (++at, false)) || ...);
  return at;
}

// The entry of `classes()` for C.
template <class C>
const Class& classTable() noexcept {
  return classes()[positionIn<C>(Classes())];
}

template <class C>
class InstanceOf final : public ComponentObject {
 public:
  template <class... Arguments>
  explicit InstanceOf(Arguments&&... arguments)
      : ComponentObject(classTable<C>(), &value_), value_(std::forward<Arguments>(arguments)...) {}

 private:
  C value_;
};

template <class C, class... Arguments>
ObjectRef makeObject(Arguments&&... arguments) {
  return std::make_shared<InstanceOf<C>>(std::forward<Arguments>(arguments)...);
}

// The instance inside an object of class C; null for any other object.
template <class C>
C* instanceOf(Object* object) noexcept {
  auto* component = ComponentObject::from(object);
  if (component == nullptr || &component->type() != &classTable<C>()) return nullptr;
  return static_cast<C*>(component->instance());
}

}  // namespace veltgeneral

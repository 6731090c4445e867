// The C interface: objects, calls by name, and a caller's own objects.
#include <algorithm>
#include <array>
#include <functional>
#include <new>
#include <vector>

#include "component/c_handles.h"
#include "component/component_object.h"
#include "component/dispatch.h"
#include "component/record.h"

using namespace veltgeneral;

namespace {

// An object whose members are a C function.
class CallbackObject final : public Object {
 public:
  using Call = decltype(vg_object_callbacks::call);
  using Released = decltype(vg_object_callbacks::released);

  CallbackObject(Call function, void* context) noexcept : call_(function), context_(context) {}
  ~CallbackObject() override {
    if (released_ != nullptr) released_(context_);
  }
  void adopt(Released function) noexcept { released_ = function; }

  Variant call(TextView name, CallKind kind, std::span<Variant> arguments) override {
    std::vector<vg_value> values(arguments.size());
    std::vector<vg_value*> pointers(arguments.size());
    std::ranges::transform(values, pointers.begin(), [](vg_value& value) { return &value; });
    const auto exchange = [&] {
      for (std::size_t i = 0; i < values.size(); ++i) std::swap(values[i].variant, arguments[i]);
    };
    vg_value result;
    vg_error raised;
    const std::string utf8 = toUtf8(name);
    exchange();
    const vg_status status = call_(context_, utf8.c_str(), static_cast<vg_call_kind>(kind),
                                   pointers.data(), pointers.size(), &result, &raised);
    exchange();
    if (status == 0) return std::move(result.variant);
    throwRaised(status, raised);
  }

  bool isMadeOf(const vg_object_callbacks& callbacks) const { return call_ == callbacks.call; }
  void* context() const { return context_; }

 private:
  Call call_;
  void* context_;
  Released released_ = nullptr;
};

// What a call brings along, its pointers looked at.
struct Arguments {
  std::span<vg_value* const> positional;
  std::span<vg_value* const> named;
  std::span<const char* const> names;
};

Arguments argumentsOf(vg_value* const* values, std::size_t count,
                      const char* const* names = nullptr, std::size_t named = 0) {
  if (named > count || (count != 0 && values == nullptr) || (named != 0 && names == nullptr)) {
    raise(RunTime::invalidCall);
  }
  const std::span all(values, count);
  return {all.first(count - named), all.last(named), std::span(names, named)};
}

CallKind callKind(vg_call_kind kind) {
  if (kind < VG_METHOD || kind > VG_PROPERTY_PUT) raise(RunTime::invalidCall);
  return static_cast<CallKind>(kind);
}

Object& objectIn(const vg_object* object) {
  if (object == nullptr || !object->reference) raise(RunTime::objectNotSet);
  return *object->reference;
}

Variant* variantIn(vg_value* value) { return value == nullptr ? nullptr : &value->variant; }

Variant callRow(Object& object, const Member& member, const Arguments& arguments) {
  ArgumentSlots slots;
  const std::size_t count = arguments.positional.size();
  if (count + arguments.named.size() > slots.size()) raise(RunTime::wrongArgumentCount);
  std::ranges::transform(arguments.positional, slots.begin(), variantIn);
  if (arguments.named.empty()) return invokeAt(object, member, slots, count, {});

  std::array<Text, Member::kMaxParameters> names;
  std::array<NamedArgument, Member::kMaxParameters> named;
  std::size_t given = 0;
  for (std::size_t i = 0; i < arguments.named.size(); ++i) {
    const char* name = arguments.names[i];
    if (name == nullptr) raise(RunTime::namedArgumentNotFound);
    names[i] = fromUtf8(name);
    named[given++] = {names[i], variantIn(arguments.named[i])};
  }
  return invokeAt(object, member, slots, count, std::span(named).first(given));
}

// An object of somebody else: its arguments must lie in a row, and it knows no names for them.
Variant callForeign(Object& object, std::string_view name, CallKind kind,
                    const Arguments& arguments) {
  if (!arguments.named.empty()) raise(RunTime::namedArgumentNotFound);
  std::vector<Variant> values(arguments.positional.size(), Missing{});
  const auto exchange = [&] {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (arguments.positional[i]) std::swap(values[i], arguments.positional[i]->variant);
    }
  };
  exchange();
  try {
    Variant result = object.call(fromUtf8(name), kind, values);
    exchange();
    return result;
  } catch (...) {
    exchange();
    throw;
  }
}

void give(vg_value* result, Variant&& value) {
  if (result != nullptr) result->variant = std::move(value);
}

const Member& memberIn(const Object& object, const vg_member* member) {
  const auto& row = reinterpret_cast<const Member&>(needed(member));
  const Class* type = classOf(object);
  if (type == nullptr) raise(RunTime::noAutomation);
  const bool its = std::greater_equal<>()(&row, type->members.data()) &&
                   std::less<>()(&row, type->members.data() + type->members.size());
  if (!its) raise(RunTime::memberNotSupported);
  return row;
}

void invokeRow(const vg_object* object, const vg_member* member, const Arguments& arguments,
               vg_value* result) {
  Object& target = objectIn(object);
  give(result, callRow(target, memberIn(target, member), arguments));
}

}  // namespace

vg_status vg_create(const char* name, vg_object** object, vg_error** error) {
  return guarded(error, [&] {
    vg_object*& place = needed(object);
    place = new vg_object(createObject(fromUtf8(&needed(name))));
  });
}

vg_object* vg_object_retain(vg_object* object) {
  if (object != nullptr) object->count.fetch_add(1, std::memory_order_relaxed);
  return object;
}

void vg_object_release(vg_object* object) {
  if (object == nullptr) return;
  if (object->count.fetch_sub(1, std::memory_order_acq_rel) == 1) delete object;
}

vg_status vg_call(vg_object* object, const char* name, vg_call_kind kind,
                  vg_value* const* arguments, size_t count, vg_value* result, vg_error** error) {
  return vg_call_named(object, name, kind, arguments, count, nullptr, 0, result, error);
}

vg_status vg_call_named(vg_object* object, const char* name, vg_call_kind kind,
                        vg_value* const* arguments, size_t count, const char* const* names,
                        size_t named, vg_value* result, vg_error** error) {
  return guarded(error, [&] {
    Object& target = objectIn(object);
    const std::string_view member = &needed(name);
    const Arguments given = argumentsOf(arguments, count, names, named);
    const Class* type = classOf(target);
    give(result, type == nullptr
                     ? callForeign(target, member, callKind(kind), given)
                     : callRow(target, findMember(*type, member, callKind(kind)), given));
  });
}

vg_status vg_resolve(vg_object* object, const char* name, vg_call_kind kind,
                     const vg_member** member, vg_error** error) {
  return guarded(error, [&] {
    const Class* type = classOf(objectIn(object));
    if (type == nullptr) raise(RunTime::noAutomation);
    const Member& row = findMember(*type, &needed(name), callKind(kind));
    needed(member) = reinterpret_cast<const vg_member*>(&row);
  });
}

vg_status vg_invoke(vg_object* object, const vg_member* member, vg_value* const* arguments,
                    size_t count, vg_value* result, vg_error** error) {
  return guarded(error, [&] { invokeRow(object, member, argumentsOf(arguments, count), result); });
}

vg_status vg_invoke_named(vg_object* object, const vg_member* member, vg_value* const* arguments,
                          size_t count, const char* const* names, size_t named, vg_value* result,
                          vg_error** error) {
  return guarded(error, [&] {
    invokeRow(object, member, argumentsOf(arguments, count, names, named), result);
  });
}

vg_object* vg_object_new(const vg_object_callbacks* callbacks, void* context) {
  vg_object* made = nullptr;
  const vg_status failed = guarded([&] {
    if (needed(callbacks).call == nullptr || callbacks->size < sizeof *callbacks) {
      raise(RunTime::invalidCall);
    }
    auto object = std::make_shared<CallbackObject>(callbacks->call, context);
    made = new vg_object(object);
    object->adopt(callbacks->released);  // the context is the caller's until the object is whole
  });
  return failed == 0 ? made : nullptr;
}

void* vg_object_context(const vg_object* object, const vg_object_callbacks* callbacks) {
  if (object == nullptr || callbacks == nullptr) return nullptr;
  const auto* own = dynamic_cast<const CallbackObject*>(object->reference.get());
  return own != nullptr && own->isMadeOf(*callbacks) ? own->context() : nullptr;
}

vg_object* vg_record_new(void) {
  vg_object* made = nullptr;
  const vg_status failed = guarded([&] { made = new vg_object(std::make_shared<Record>()); });
  return failed == 0 ? made : nullptr;
}

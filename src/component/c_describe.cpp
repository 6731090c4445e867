// The C interface: what the classes look like.
#include "component/c_handles.h"

using namespace veltgeneral;

namespace {

const Class* rowsOf(const vg_class* type) { return reinterpret_cast<const Class*>(type); }
const Member* rowOf(const vg_member* member) { return reinterpret_cast<const Member*>(member); }
const vg_class* handleOf(const Class* type) { return reinterpret_cast<const vg_class*>(type); }

const Enumeration* tableOf(const vg_enumeration* enumeration) {
  return reinterpret_cast<const Enumeration*>(enumeration);
}

// Names in the tables are literals, so a NUL follows each.
const char* nameOf(std::string_view literal) { return literal.empty() ? "" : literal.data(); }

vg_type typeOf(const ValueType& type) {
  return {static_cast<vg_kind>(type.kind), nameOf(type.name), type.isVariant ? 1 : 0,
          type.isVoid ? 1 : 0};
}

}  // namespace

size_t vg_class_count(void) { return classes().size(); }

const vg_class* vg_class_at(size_t position) {
  return position < classes().size() ? handleOf(&classes()[position]) : nullptr;
}

const vg_class* vg_class_find(const char* name) {
  const vg_class* found = nullptr;
  // A name that memory does not suffice for is no class's.
  (void)guarded([&] { found = handleOf(findClass(fromUtf8(&needed(name)))); });
  return found;
}

const vg_class* vg_class_of(const vg_object* object) {
  return object == nullptr || !object->reference ? nullptr : handleOf(classOf(*object->reference));
}

const char* vg_class_name(const vg_class* type) {
  return type == nullptr ? "" : nameOf(rowsOf(type)->name);
}

const char* vg_class_summary(const vg_class* type) {
  return type == nullptr ? "" : nameOf(rowsOf(type)->summary);
}

size_t vg_class_member_count(const vg_class* type) {
  return type == nullptr ? 0 : rowsOf(type)->members.size();
}

const vg_member* vg_class_member(const vg_class* type, size_t position) {
  if (position >= vg_class_member_count(type)) return nullptr;
  return reinterpret_cast<const vg_member*>(&rowsOf(type)->members[position]);
}

const char* vg_member_name(const vg_member* member) {
  return member == nullptr ? "" : nameOf(rowOf(member)->name);
}

vg_call_kind vg_member_kind(const vg_member* member) {
  return member == nullptr ? VG_METHOD : static_cast<vg_call_kind>(rowOf(member)->kind);
}

vg_status vg_member_result(const vg_member* member, vg_type* type) {
  return guarded([&] { needed(type) = typeOf(rowOf(&needed(member))->result); });
}

size_t vg_member_parameter_count(const vg_member* member) {
  return member == nullptr ? 0 : rowOf(member)->parameters.size();
}

vg_status vg_member_parameter(const vg_member* member, size_t position, vg_parameter* parameter) {
  return guarded([&] {
    const auto parameters = rowOf(&needed(member))->parameters;
    if (position >= parameters.size()) raise(RunTime::subscriptOutOfRange);
    const Parameter& from = parameters[position];
    needed(parameter) = {nameOf(from.name), typeOf(from.type),
                         from.direction == Direction::inOut ? 1 : 0, from.optional ? 1 : 0,
                         from.defaultNumber};
  });
}

size_t vg_class_enumeration_count(const vg_class* type) {
  return type == nullptr ? 0 : rowsOf(type)->enumerations.size();
}

const vg_enumeration* vg_class_enumeration(const vg_class* type, size_t position) {
  if (position >= vg_class_enumeration_count(type)) return nullptr;
  return reinterpret_cast<const vg_enumeration*>(&rowsOf(type)->enumerations[position]);
}

const char* vg_enumeration_name(const vg_enumeration* enumeration) {
  return enumeration == nullptr ? "" : nameOf(tableOf(enumeration)->name);
}

size_t vg_enumeration_count(const vg_enumeration* enumeration) {
  return enumeration == nullptr ? 0 : tableOf(enumeration)->values.size();
}

vg_status vg_enumeration_value(const vg_enumeration* enumeration, size_t position,
                               const char** name, int32_t* value) {
  return guarded([&] {
    const auto values = tableOf(&needed(enumeration))->values;
    if (position >= values.size()) raise(RunTime::subscriptOutOfRange);
    const char*& nameOut = needed(name);
    needed(value) = values[position].value;
    nameOut = nameOf(values[position].name);
  });
}

#include "component/record.h"

#include <algorithm>

#include "component/names.h"
#include "veltgeneral/component.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

bool sameField(TextView one, TextView other) {
  return std::ranges::equal(one, other, {}, foldAscii, foldAscii);
}

Variant readField(Object& record, TextView name) {
  try {
    return record.call(name, CallKind::propertyGet, {});
  } catch (const RuntimeError& error) {
    if (error.number() != static_cast<std::int32_t>(RunTime::memberNotSupported)) throw;
    return Empty{};
  }
}

}  // namespace

Variant Record::call(TextView name, CallKind kind, std::span<Variant> arguments) {
  if (arguments.size() != (kind == CallKind::propertyPut ? 1U : 0U)) {
    throw RuntimeError(RunTime::wrongArgumentCount);
  }
  const auto field =
      std::ranges::find_if(fields_, [&](const auto& each) { return sameField(each.first, name); });
  if (kind != CallKind::propertyPut) return field == fields_.end() ? Variant() : field->second;
  if (field == fields_.end()) {
    fields_.emplace_back(name, arguments[0]);
  } else {
    field->second = arguments[0];
  }
  return Empty{};
}

ObjectRef makeRecord() { return std::make_shared<Record>(); }

std::vector<Text> fieldNames(const Object& record) {
  std::vector<Text> names;
  if (const auto* ours = dynamic_cast<const Record*>(&record)) {
    for (const auto& field : ours->fields()) names.push_back(field.first);
  }
  return names;
}

structError readStructError(const Variant& value) {
  const ObjectRef* record = std::get_if<ObjectRef>(&value);
  if (record == nullptr || !*record) throw RuntimeError(RunTime::typeMismatch);
  Object& fields = **record;
  return {.vntNumberInfo = readField(fields, u"vntNumberInfo"),
          .vntDescriptionInfo = readField(fields, u"vntDescriptionInfo"),
          .vntTypeInfo = readField(fields, u"vntTypeInfo"),
          .vntLocationInfo = readField(fields, u"vntLocationInfo"),
          .vntProcessInfo = readField(fields, u"vntProcessInfo"),
          .vntClassInfo = readField(fields, u"vntClassInfo"),
          .vntStepInfo = readField(fields, u"vntStepInfo")};
}

}  // namespace veltgeneral

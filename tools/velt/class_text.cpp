#include "class_text.h"

#include <array>

namespace veltgeneral::tool {
namespace {

constexpr std::array kKindNames{"empty",   "missing", "null",     "int16",      "int32",
                                "single",  "double",  "currency", "decimal",    "date",
                                "boolean", "text",    "bytes",    "text array", "object"};
static_assert(kKindNames.size() == static_cast<std::size_t>(Kind::object) + 1);

constexpr std::array kMemberKinds{"method", "get", "put"};

std::string parameterText(const Parameter& parameter) {
  std::string text;
  if (parameter.direction == Direction::inOut) text += "in/out ";
  text.append(parameter.name).append(": ").append(typeText(parameter.type));
  if (!parameter.optional) return text;
  if (!parameter.type.isVariant) text += " = " + std::to_string(parameter.defaultNumber);
  return "[" + text + "]";
}

Json parameterJson(const Parameter& parameter) {
  Json out = {{"name", parameter.name},
              {"type", typeText(parameter.type)},
              {"inOut", parameter.direction == Direction::inOut},
              {"optional", parameter.optional}};
  if (parameter.optional && !parameter.type.isVariant) out["default"] = parameter.defaultNumber;
  return out;
}

}  // namespace

std::string typeText(const ValueType& type) {
  if (type.isVoid) return {};
  if (type.isVariant) return "variant";
  if (!type.name.empty()) return std::string(type.name);
  return kKindNames[static_cast<std::size_t>(type.kind)];
}

std::string signatureText(const Member& member) {
  std::string text(member.name);
  text += '(';
  for (const Parameter& parameter : member.parameters) {
    if (!text.ends_with('(')) text += ", ";
    text += parameterText(parameter);
  }
  text += ')';
  if (!member.result.isVoid) text += " -> " + typeText(member.result);
  return text;
}

Json memberJson(const Member& member) {
  Json parameters = Json::array();
  for (const Parameter& each : member.parameters) parameters.push_back(parameterJson(each));
  Json result = member.result.isVoid ? Json() : Json(typeText(member.result));
  return {{"name", member.name},
          {"kind", kMemberKinds[static_cast<std::size_t>(member.kind)]},
          {"parameters", std::move(parameters)},
          {"result", std::move(result)}};
}

}  // namespace veltgeneral::tool

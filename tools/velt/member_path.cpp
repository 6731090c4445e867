#include "member_path.h"

#include <algorithm>

#include "veltgeneral/runtime_error.h"

namespace veltgeneral::tool {

MemberPath splitMemberPath(std::string_view text) {
  if (findClass(fromUtf8(text)) != nullptr) return {text, {}};
  const std::size_t dot = text.rfind('.');
  if (dot == std::string_view::npos) return {text, {}};
  return {text.substr(0, dot), text.substr(dot + 1)};
}

const Class& neededClass(std::string_view name) {
  const Class* type = findClass(fromUtf8(name));
  if (type == nullptr) throw RuntimeError(RunTime::cannotCreateObject);
  return *type;
}

bool sameName(std::string_view one, std::string_view other) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; };
  return std::ranges::equal(one, other, {}, lower, lower);
}

}  // namespace veltgeneral::tool

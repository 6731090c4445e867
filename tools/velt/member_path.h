// "CLASS.MEMBER" as people write it: any case, the prefix "VeltGeneral." or none.
#pragma once

#include <string_view>

#include "veltgeneral/component.h"

namespace veltgeneral::tool {

struct MemberPath {
  std::string_view className;
  std::string_view member;  // empty where only a class is named
};

// Views into `text`.
MemberPath splitMemberPath(std::string_view text);

// Throws RuntimeError 429 for a name that is no class.
const Class& neededClass(std::string_view name);

// Equal but for the case of ASCII letters.
bool sameName(std::string_view one, std::string_view other);

}  // namespace veltgeneral::tool

// Classes and members as text to read and as JSON.
#pragma once

#include <string>

#include "values.h"

namespace veltgeneral::tool {

// "text", "int32", "typeInfoCostant", "variant"; empty for a member without result.
std::string typeText(const ValueType& type);
// "readFile(sFileName: text, in/out sTextFile: text) -> ErrInfo".
std::string signatureText(const Member& member);
Json memberJson(const Member& member);

}  // namespace veltgeneral::tool

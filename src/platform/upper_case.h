// The host's knowledge of upper case.
#pragma once

#include <array>

namespace veltgeneral::platform {

// Replaces each UTF-16 unit by its simple upper-case mapping where that is one unit too, whatever
// the locale of the process.
void mapToUpper(std::array<char16_t, 65536>& units);

}  // namespace veltgeneral::platform

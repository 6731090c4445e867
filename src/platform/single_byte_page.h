// The characters of a single-byte code page, as the host's converter knows them.
#pragma once

#include <array>
#include <optional>
#include <string>

namespace veltgeneral::platform {

// A byte that the page leaves out is the control code of the same number. Nothing for a page that
// the host does not know or whose characters take more than one byte.
std::optional<std::array<char16_t, 256>> singleBytePage(const std::string& name);

}  // namespace veltgeneral::platform

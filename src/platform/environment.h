// What the user's environment says: one variable at a time, never kept.
#pragma once

#include <optional>
#include <string>

#include "veltgeneral/export.h"

namespace veltgeneral::platform {

// The value of a variable, empty values included; nothing where it is not set or where the process
// runs with more rights than its user (the environment is then not to be trusted).
VELTGENERAL_API std::optional<std::string> environment(const char* name);

// Whether `environment` would answer with `value`.
bool environmentIs(const char* name, const std::optional<std::string>& value) noexcept;

}  // namespace veltgeneral::platform

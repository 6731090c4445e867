// The terminal that the user watches.
#pragma once

#include <optional>

#include "veltgeneral/export.h"

namespace veltgeneral::platform {

// The columns of the terminal behind standard error; nothing where it is no terminal.
VELTGENERAL_API std::optional<int> terminalColumns();

}  // namespace veltgeneral::platform

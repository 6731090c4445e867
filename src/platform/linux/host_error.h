// From errno to a run-time error.
#pragma once

#include <string>

#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {

// Throws the run-time error that `host`, a value of errno, means for `path`.
[[noreturn]] void failWith(int host, const std::string& path);

}  // namespace veltgeneral::platform

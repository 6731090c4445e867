// The name the component was built under: process information of results, choice of the log file.
#pragma once

#include "veltgeneral/text.h"

namespace veltgeneral {

inline constexpr TextView kModuleName = VELTGENERAL_MODULE_NAME;

}  // namespace veltgeneral

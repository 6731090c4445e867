// Path texts of applications, and what they are on this host.
#pragma once

#include <string>

#include "veltgeneral/text.h"

namespace veltgeneral::platform {

// The host's path for a text with "\" or "/", with a drive letter or none; relative paths stay
// relative. A drive "X:" is the folder that VELTGENERAL_DRIVE_X names.
// Throws RuntimeError: 76 a drive that is not mapped, 52 a text that holds a NUL.
std::string hostPath(TextView path);

}  // namespace veltgeneral::platform

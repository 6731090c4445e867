// Text: a counted string of UTF-16 code units, any of which may be NUL.
//
// UTF-8 exists only at the rims of the library (shell, C, Python); these two functions are the rim.
#pragma once

#include <string>
#include <string_view>

#include "veltgeneral/export.h"

namespace veltgeneral {

using Text = std::u16string;
using TextView = std::u16string_view;

// Total: a surrogate without its partner becomes U+FFFD, so the answer is always well formed.
VELTGENERAL_API std::string toUtf8(TextView text);

// Total: each maximal malformed piece becomes one U+FFFD (Unicode 15, section 3.9, "best
// practice").
VELTGENERAL_API Text fromUtf8(std::string_view utf8);

}  // namespace veltgeneral

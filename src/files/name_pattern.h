// File name patterns with "*" and "?".
#pragma once

#include "veltgeneral/text.h"

namespace veltgeneral {

// Whether `name` matches `pattern`, without regard to case. "*" is any run of characters, "?" one
// character or, before a point or at the end of the name, none; a point before a wildcard or at the
// end of the pattern also matches the end of a name without extension, so "*.*" is every name and
// "*." those without extension. Time is at most the product of the lengths.
bool matchesPattern(TextView name, TextView pattern);

}  // namespace veltgeneral

// Numbers as XML and databases take them.
#pragma once

#include "veltgeneral/variant.h"

namespace veltgeneral {

// A value that is numeric: a single or double as its text with "." for the comma, a decimal as a
// 16-bit integer, any other as a 32-bit integer, halves to even. Throws RuntimeError 6 for an
// integer that does not fit.
Variant plainNumber(const Variant& value);

}  // namespace veltgeneral

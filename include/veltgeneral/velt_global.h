// VeltGlobal: a class without members. Callers that come to the library by name find on it every
// enumeration that the other classes use; the C++ enumerations are in the headers of those classes.
#pragma once

#include <cstdint>

#include "veltgeneral/export.h"

namespace veltgeneral {

// How many objects of a name there are. For callers; no member uses it.
enum typedbExistUniqueObject : std::int32_t { dbeuoUNIQUE = 0, dbeuoMORE = 1, dbeuoNOTFOUND = 2 };

class VELTGENERAL_API VeltGlobal {};

}  // namespace veltgeneral

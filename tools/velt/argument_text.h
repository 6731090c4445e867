// How values of every kind are said on the command line.
#pragma once

#include <string>
#include <string_view>

#include "veltgeneral/variant.h"

namespace veltgeneral::tool {

// For --help: the prefixes and what they mean.
extern const char* const kArgumentHelp;

// A text, unless it begins with "@" (the content of a file) or with one of the prefixes. Throws
// UsageError for a prefix whose value is none of its kind and for a file that cannot be read.
Variant parseArgument(std::string_view argument);

struct NamedText {
  std::string name;
  Variant value;
};

// "name=argument". Throws UsageError, also for one without a name.
NamedText parseNamed(std::string_view argument);

}  // namespace veltgeneral::tool

// What Funzioni's normStringOnlyAscii puts in the place of characters, for callers that clean many
// texts at once.
#pragma once

#include <span>

#include "veltgeneral/text.h"

namespace veltgeneral {

// Replaces them in place; blanks at the end stay.
void keepOnlyAscii(std::span<char16_t> text);

}  // namespace veltgeneral

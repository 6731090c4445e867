// What Funzioni's normStringOnlyAscii makes of a text, for callers that clean many.
#pragma once

#include "veltgeneral/text.h"

namespace veltgeneral {

// A view of `text` where only blanks at its end go, else of `room`, which is overwritten. Throws as
// the member fails.
TextView onlyAscii(TextView text, Text& room);

}  // namespace veltgeneral

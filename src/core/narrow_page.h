// The code page in force, as the platform's settings files take it.
#pragma once

#include "platform/narrow_page.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// Lives for good.
VELTGENERAL_API const platform::NarrowPage& narrowPage();

// What is left of a text that passes through the code page: "?" for what that does not have.
VELTGENERAL_API Text narrowed(Text text);

}  // namespace veltgeneral

// The code page in force, as the platform's settings files take it.
#pragma once

#include "platform/narrow_page.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// Lives for good.
const platform::NarrowPage& narrowPage();

// What is left of a text that passes through the code page: "?" for what that does not have.
Text narrowed(Text text);

}  // namespace veltgeneral

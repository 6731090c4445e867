// The host's pending events: what a long operation lets happen while it works.
#pragma once

#include "veltgeneral/export.h"

namespace veltgeneral {

// Called on the working thread, often: it should be quick. It may throw, which ends the operation
// with that error. `context` is the host's own.
using HostEvents = void (*)(void* context);

// Sets what long operations of the whole process call; null goes back to servicing the report
// form's window where there is one, and nothing otherwise.
VELTGENERAL_API void setHostEvents(HostEvents hook, void* context);

}  // namespace veltgeneral

// How long operations let the host process its pending events.
#pragma once

namespace veltgeneral {

// Calls the host's hook, or services the report form's window where there is one. What the hook
// throws comes through.
void processHostEvents();

}  // namespace veltgeneral

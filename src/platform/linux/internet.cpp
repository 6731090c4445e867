// Opens the HTTP module at first use. It stays open: its threads and handles outlive any caller.
#include "platform/internet.h"

#include <utility>

#include "platform/library.h"
#include "platform/linux/http/module.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {

Internet* internet() noexcept {
  try {
    static const Library kModule(modulePath("veltgeneral-http"));
    static Internet* const kInternet = kModule.entry<HttpModuleEntry>(kHttpModuleEntry)();
    return kInternet;
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace veltgeneral::platform

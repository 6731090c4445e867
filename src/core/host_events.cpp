#include "core/host_events.h"

#include <atomic>
#include <mutex>

#include "platform/report_surfaces.h"
#include "veltgeneral/host_events.h"

namespace veltgeneral {
namespace {

struct Hook {
  HostEvents call = nullptr;
  void* context = nullptr;
};

std::mutex guard;
Hook installed;
// Looked at first: most processes have no hook, and a sort asks once for every pass.
std::atomic<bool> anyInstalled{false};

}  // namespace

void setHostEvents(HostEvents hook, void* context) {
  const std::scoped_lock lock(guard);
  installed = {hook, context};
  anyInstalled.store(hook != nullptr, std::memory_order_release);
}

void processHostEvents() {
  if (!anyInstalled.load(std::memory_order_acquire)) {
    platform::serviceReportForm();
    return;
  }
  Hook hook;
  {
    const std::scoped_lock lock(guard);
    hook = installed;
  }
  if (hook.call != nullptr) hook.call(hook.context);
}

}  // namespace veltgeneral

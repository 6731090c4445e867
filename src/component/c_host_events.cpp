// The C interface: the host's pending events.
#include <mutex>

#include "component/c_handles.h"
#include "veltgeneral/host_events.h"

using namespace veltgeneral;

namespace {

struct Callback {
  vg_host_events call = nullptr;
  void* context = nullptr;
};

std::mutex guard;
Callback installed;

void callInstalled(void* /*context*/) {
  Callback callback;
  {
    const std::scoped_lock lock(guard);
    callback = installed;
  }
  if (callback.call == nullptr) return;  // taken away meanwhile
  vg_error raised;
  if (const vg_status status = callback.call(callback.context, &raised); status != 0) {
    throwRaised(status, raised);
  }
}

}  // namespace

vg_status vg_set_host_events(vg_host_events callback, void* context) {
  return guarded([&] {
    const std::scoped_lock lock(guard);
    installed = {callback, context};
    setHostEvents(callback == nullptr ? nullptr : &callInstalled, nullptr);
  });
}

// The host's pending events: what a long operation lets happen while it works.
#pragma once

#include <functional>
#include <utility>

#include "veltgeneral/export.h"

namespace veltgeneral {

// Called on the working thread, often: it should be quick. It may throw, which ends the operation
// with that error. `context` is the host's own.
using HostEvents = void (*)(void* context);

// Sets what long operations of the whole process call; null goes back to servicing the report
// form's window where there is one, and nothing otherwise.
VELTGENERAL_API void setHostEvents(HostEvents hook, void* context);

// Has long operations call `hook` while this lives, one such object at a time:
//
//   const ScopedHostEvents progress([&] { showProgress(++passes); });
//   Funzioni().quickSortArray(array, 1, count, 1, 8, true);
class ScopedHostEvents {
 public:
  explicit ScopedHostEvents(std::function<void()> hook) : hook_(std::move(hook)) {
    setHostEvents([](void* self) { static_cast<ScopedHostEvents*>(self)->hook_(); }, this);
  }
  ScopedHostEvents(const ScopedHostEvents&) = delete;
  ScopedHostEvents& operator=(const ScopedHostEvents&) = delete;
  ~ScopedHostEvents() { setHostEvents(nullptr, nullptr); }

 private:
  std::function<void()> hook_;
};

}  // namespace veltgeneral

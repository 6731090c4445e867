// What is behind the opaque handles of veltgeneral_c.h, and how errors leave through it.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <utility>

#include "veltgeneral/component.h"
#include "veltgeneral/runtime_error.h"
#include "veltgeneral/veltgeneral_c.h"

struct vg_object {
  explicit vg_object(veltgeneral::ObjectRef object) : reference(std::move(object)) {}
  std::atomic<std::size_t> count = 1;
  const veltgeneral::ObjectRef reference;
};

struct vg_value {
  veltgeneral::Variant variant;
  // What a getter made last, so that it can be lent out.
  mutable std::string utf8{};
  mutable veltgeneral::Text utf16{};
};

struct vg_error {
  std::int32_t number = 0;
  std::string description;
};

namespace veltgeneral {

// The number of the exception being handled, as it leaves through the interface: never 0.
vg_status currentStatus() noexcept;
// The same with its description, stored in `*error` where that is not null.
vg_status reportCurrent(vg_error** error) noexcept;

// The error that a caller's function answered with.
[[noreturn]] void throwRaised(vg_status status, const vg_error& raised);

[[noreturn]] inline void raise(RunTime error) { throw RuntimeError(error); }

// Runs `body` for a function without an error argument.
template <class Body>
vg_status guarded(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
    return 0;
  } catch (...) {
    return currentStatus();
  }
}

// And for one with it.
template <class Body>
vg_status guarded(vg_error** error, Body&& body) noexcept {
  if (error != nullptr) *error = nullptr;
  try {
    std::forward<Body>(body)();
    return 0;
  } catch (...) {
    return reportCurrent(error);
  }
}

// What a pointer argument points to. Throws RuntimeError 5 for null.
template <class T>
T& needed(T* pointer) {
  if (pointer == nullptr) raise(RunTime::invalidCall);
  return *pointer;
}

// Throws RuntimeError 5 for a null text that is to have characters.
template <class Character>
std::basic_string_view<Character> viewOf(const Character* text, std::size_t length) {
  if (text == nullptr && length != 0) raise(RunTime::invalidCall);
  if (length == VG_TO_NUL) return {text};
  return {text, length};
}

}  // namespace veltgeneral

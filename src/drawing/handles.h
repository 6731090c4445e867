// Owners for the handles of the C libraries below.
#pragma once

#include <memory>

namespace veltgeneral::drawing {

template <auto release>
struct Release {
  template <class T>
  void operator()(T* handle) const noexcept {
    release(handle);
  }
};

template <class T, auto release>
using Handle = std::unique_ptr<T, Release<release>>;

}  // namespace veltgeneral::drawing

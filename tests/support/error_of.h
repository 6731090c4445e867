// The number of the error that an action raises, 0 where it raises none.
#pragma once

#include <cstdint>

#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

template <class Action>
std::int32_t errorOf(Action&& action) {
  try {
    action();
    return 0;
  } catch (const RuntimeError& error) {
    return error.number();
  }
}

}  // namespace veltgeneral

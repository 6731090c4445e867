// What the surfaces answer, as an exception.
#pragma once

#include "platform/report_surfaces.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

inline void require(platform::ErrorNumber answer) {
  if (answer != 0) throw RuntimeError(static_cast<RunTime>(answer));
}

}  // namespace veltgeneral

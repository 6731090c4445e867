// What the library and its HTTP module agree on.
#pragma once

namespace veltgeneral::platform {

class Internet;

// The module's one entry: the process's Internet, which lives for good.
using HttpModuleEntry = Internet*() noexcept;
inline constexpr const char* kHttpModuleEntry = "veltgeneralInternet";

}  // namespace veltgeneral::platform

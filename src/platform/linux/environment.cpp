#include "platform/environment.h"

#include <cstdlib>

namespace veltgeneral::platform {

std::optional<std::string> environment(const char* name) {
  const char* value = ::secure_getenv(name);
  if (value == nullptr) return std::nullopt;
  return value;
}

}  // namespace veltgeneral::platform

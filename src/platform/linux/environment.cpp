#include "platform/environment.h"

#include <cstdlib>

namespace veltgeneral::platform {

std::optional<std::string> environment(const char* name) {
  const char* value = ::secure_getenv(name);
  if (value == nullptr) return std::nullopt;
  return value;
}

bool environmentIs(const char* name, const std::optional<std::string>& value) noexcept {
  const char* now = ::secure_getenv(name);
  return now == nullptr ? !value : value == now;
}

}  // namespace veltgeneral::platform

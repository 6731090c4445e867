#include "platform/clock.h"

#include <ctime>

namespace veltgeneral::platform {

LocalTime localTime() {
  const std::time_t now = std::time(nullptr);
  std::tm fields{};
  ::localtime_r(&now, &fields);
  return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday,
          fields.tm_hour,        fields.tm_min,     fields.tm_sec};
}

}  // namespace veltgeneral::platform

// The host's clock in the user's time zone.
#pragma once

namespace veltgeneral::platform {

// Calendar fields as people write them: months 1 to 12, seconds 0 to 60.
struct LocalTime {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
};

LocalTime localTime();

}  // namespace veltgeneral::platform

// Dates as ISO 8601 writes them: "2024-01-31", "2024-01-31T12:30:00"; a time alone, "12:30:00", is
// of day zero.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "veltgeneral/variant.h"

namespace veltgeneral::tool {

// To the nearest second; the bare number of days outside the years 100 to 9999.
std::string isoText(Date date);
// A blank may stand for the "T", the seconds may be missing. Nothing for any other text, a day that
// the calendar does not have, or a year outside 100 to 9999.
std::optional<Date> readIso(std::string_view text);

}  // namespace veltgeneral::tool

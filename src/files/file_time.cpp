// FileUtility's stamp: arithmetic in 16 bits, then a calendar that refuses in silence.
#include <chrono>
#include <optional>

#include "automation/coerce.h"
#include "files/file_result.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

constexpr TextView kLocation = u"UpdateFileTime";
constexpr std::int32_t kHoursADay = 24;
constexpr std::int32_t kMinutesAnHour = 60;

std::int16_t fitted(std::int32_t number) {
  const auto narrow = static_cast<std::int16_t>(number);
  if (narrow != number) throw RuntimeError(RunTime::overflow);
  return narrow;
}

bool within(std::int16_t number, std::int16_t first, std::int16_t last) {
  return number >= first && number <= last;
}

// Nothing for a time that the calendar does not have. The day of the week is not looked at.
std::optional<std::int64_t> secondsFrom1970(const SYSTEMTIME& time) {
  using namespace std::chrono;
  if (!within(time.wYear, 1601, 30827) || !within(time.wMonth, 1, 12) || !within(time.wDay, 1, 31))
    return std::nullopt;
  if (!within(time.wHour, 0, 23) || !within(time.wMinute, 0, 59) || !within(time.wSecond, 0, 59))
    return std::nullopt;
  const year_month_day date(year(time.wYear), month(static_cast<unsigned>(time.wMonth)),
                            day(static_cast<unsigned>(time.wDay)));
  if (!date.ok()) return std::nullopt;
  const auto since = sys_days(date) + hours(time.wHour) + minutes(time.wMinute);
  return (since + seconds(time.wSecond)).time_since_epoch().count();
}

// Nothing when the file cannot be opened, whatever the reason.
std::optional<platform::FileHandle> openedForChange(TextView name) {
  try {
    return platform::FileHandle::openForChange(platform::hostPath(name));
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

}  // namespace

ErrInfo FileUtility::UpdateFileTime(Variant& fname, Variant& fyear, Variant& fmonth,
                                    Variant& fdayofweek, Variant& fday, Variant& fhour,
                                    Variant& fmin, Variant& fsec) {
  return trapped(kLocation, kFileUtility, [&] {
    const Text name = toText(fname);
    auto file = openedForChange(name);
    if (!file) return fileAborted(kLocation, u"Could not open file " + name);
    SYSTEMTIME time{.wYear = toInt16(fyear),
                    .wMonth = toInt16(fmonth),
                    .wDayOfWeek = toInt16(fdayofweek),
                    .wDay = toInt16(fday),
                    .wHour = toInt16(fhour),
                    .wMinute = toInt16(fmin),
                    .wSecond = toInt16(fsec),
                    .wMilliseconds = 0};
    time.wHour = fitted(time.wHour + utcoffset / kMinutesAnHour);
    time.wHour = fitted(time.wHour - daylightoffset);
    if (time.wHour >= kHoursADay) {
      time.wHour = fitted(time.wHour - kHoursADay);
      time.wDay = fitted(time.wDay + 1);
    }
    if (const auto second = secondsFrom1970(time)) file->setTimes(*second);
    return clearedResult();
  });
}

}  // namespace veltgeneral

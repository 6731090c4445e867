// The test of a date's text agrees with the reading, and what the library writes it reads back.
#include "automation/calendar.h"
#include "automation/coerce.h"
#include "fuzz/fuzz_input.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

void check(TextView text) {
  Date date;
  bool reads = true;
  try {
    date = toDate(Variant(Text(text)));
  } catch (const RuntimeError& error) {
    require(error.number() == 13, "error 13", text);
    reads = false;
  }
  require(isDate(text) == reads, "the test agrees with the reading", text);
  if (!reads) return;
  const Text written = toText(Variant(date));
  require(isDate(written), "a written date is a date", text);
  require(toDate(Variant(written)) == date, "reads back", text);
  const CivilTime time = civilTime(date);
  const auto day = dayNumber(time.year, time.month, time.day);
  require(day && dateOf(*day, time.hour * 3600 + time.minute * 60 + time.second) == date,
          "its fields make it again", text);
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) { inALocale(bytes, check); }

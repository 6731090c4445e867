// The test of a date's text agrees with the reading, and what the library writes it reads back.
#include "automation/calendar.h"
#include "automation/coerce.h"
#include "fuzz/fuzz_input.h"

void veltgeneral::fuzz(std::string_view bytes) {
  inALocale(bytes, [](const Text& text) {
    Date date;
    const std::int32_t error = errorOf([&] { date = toDate(Variant(text)); });
    require(error == 0 || error == 13, "error 13");
    require(isDate(text) == (error == 0), "the test agrees with the reading");
    if (error != 0) return;
    const Text written = toText(Variant(date));
    require(isDate(written), "a written date is a date");
    require(toDate(Variant(written)) == date, "reads back");
    const CivilTime time = civilTime(date);
    const auto day = dayNumber(time.year, time.month, time.day);
    require(day && dateOf(*day, time.hour * 3600 + time.minute * 60 + time.second) == date,
            "its fields make it again");
  });
}

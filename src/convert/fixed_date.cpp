#include "convert/fixed_date.h"

#include <array>

namespace veltgeneral {
namespace {

constexpr int kFirstYear = 1000;  // of four digits
constexpr std::array<int, 13> kMonthDays{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

bool dayInRange(const char16_t* text) noexcept {
  const int year = fourDigits(text);
  const auto month = static_cast<unsigned>(twoDigits(text + 4));
  const int day = twoDigits(text + 6);
  if (year < kFirstYear || month - 1 > 11 || day < 1) return false;
  return day <= kMonthDays[month] || (month == 2 && day == 29 && isLeapYear(year));
}

bool timeInRange(const char16_t* text) noexcept {
  return twoDigits(text) < 24 && text[2] < u'6' && text[4] < u'6';
}

}  // namespace

bool isFixedDay(TextView text) noexcept {
  return text.size() == 8 && allDigits<8>(text.data()) && dayInRange(text.data());
}

bool isFixedTime(TextView text) noexcept {
  return text.size() == 6 && allDigits<6>(text.data()) && timeInRange(text.data());
}

bool isFixedStamp(TextView text) noexcept {
  if (text.size() != 14 || !allDigits<14>(text.data())) return false;
  if (!dayInRange(text.data()) || !timeInRange(text.data() + 8)) return false;
  // Before day zero the time would have to count backwards.
  return text.compare(0, 8, u"18991230") >= 0 || text.substr(8) == u"000000";
}

}  // namespace veltgeneral

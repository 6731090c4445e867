#include "automation/date_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "automation/calendar.h"
#include "automation/case_fold.h"
#include "automation/date_tokens.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

using Tokens = std::span<const DateToken>;

bool isNumber(const DateToken& token) { return token.kind == TokenKind::number; }
bool isMonth(const DateToken& token) { return token.kind == TokenKind::month; }
bool isHalfDay(const DateToken& token) { return !isNumber(token) && !isMonth(token); }

// Three digits are a year's, whatever their value.
bool isLong(const DateToken& token) { return isNumber(token) && token.digits > 2; }

std::int32_t currentYear() { return civilTime(now()).year; }

// A two-digit year widened; a long one as it is written, so that "0050" stays out of range.
std::int32_t yearOf(const DateToken& token) {
  return isLong(token) ? token.value : widenedYear(token.value);
}

std::optional<std::int32_t> dayFrom(const DateToken& year, const DateToken& month,
                                    const DateToken& day) {
  if (isMonth(year) || isLong(month) || isMonth(day) || isLong(day)) return std::nullopt;
  return dayNumber(yearOf(year), month.value, day.value);
}

std::optional<std::int32_t> dayWithoutYear(const DateToken& month, const DateToken& day) {
  if (isLong(month) || isMonth(day) || isLong(day)) return std::nullopt;
  return dayNumber(currentYear(), month.value, day.value);
}

std::optional<std::int32_t> twoTokens(const DateToken& a, const DateToken& b, DateOrder order) {
  if (isLong(a) != isLong(b)) {
    return dayNumber(isLong(a) ? a.value : b.value, isLong(a) ? b.value : a.value, 1);
  }
  const bool dayFirst = order == DateOrder::dayMonthYear;
  if (const auto day = dayFirst ? dayWithoutYear(b, a) : dayWithoutYear(a, b)) return day;
  return dayFirst ? dayWithoutYear(a, b) : dayWithoutYear(b, a);
}

// Where year, month and day stand among three tokens.
struct Places {
  std::size_t year, month, day;
};
constexpr Places kYearMonthDay{0, 1, 2};
constexpr Places kYearDayMonth{0, 2, 1};
constexpr Places kDayMonthYear{2, 1, 0};
constexpr Places kMonthDayYear{2, 0, 1};

std::optional<std::int32_t> firstFit(Tokens date, std::initializer_list<Places> orders) {
  for (const Places& at : orders) {
    if (const auto day = dayFrom(date[at.year], date[at.month], date[at.day])) return day;
  }
  return std::nullopt;
}

std::optional<std::int32_t> threeTokens(Tokens date, DateOrder order) {
  if (isMonth(date[0])) return firstFit(date, {kMonthDayYear, kYearDayMonth, {1, 0, 2}});
  if (isMonth(date[2])) return firstFit(date, {{1, 2, 0}, {0, 2, 1}});
  if (isLong(date[0])) return firstFit(date, {kYearMonthDay, kYearDayMonth});
  const bool yearFirst = isNumber(date[0]) && date[0].value > 31;
  if (order == DateOrder::yearMonthDay || yearFirst) {
    if (const auto day = firstFit(date, {kYearMonthDay})) return day;
  }
  if (order == DateOrder::dayMonthYear || isMonth(date[1])) {
    return firstFit(date, {kDayMonthYear, kMonthDayYear});
  }
  return firstFit(date, {kMonthDayYear, kDayMonthYear});
}

std::optional<std::int32_t> dayOf(Tokens date, DateOrder order) {
  if (date.size() < 2 || date.size() > 3) return std::nullopt;
  const auto months = std::ranges::count_if(date, isMonth);
  if (months > 1 || std::ranges::any_of(date, isHalfDay)) return std::nullopt;
  for (std::size_t i = 0; i + 1 < date.size(); ++i) {
    const DateToken& token = date[i];
    const DateToken& next = date[i + 1];
    // A comma needs a month's name somewhere, and numbers need a mark or blank between them.
    if (token.gap == Gap::timeMark || (token.gap == Gap::comma && months == 0)) return std::nullopt;
    if (token.gap == Gap::none && isNumber(token) == isNumber(next)) return std::nullopt;
  }
  return date.size() == 2 ? twoTokens(date[0], date[1], order) : threeTokens(date, order);
}

// How many tokens from `start` are a time: 0 for none.
std::size_t timeLength(Tokens tokens, std::size_t start) {
  std::size_t end = start;
  while (end < tokens.size() && isNumber(tokens[end])) {
    if (tokens[end++].gap != Gap::timeMark) break;
  }
  if (end == start) return 0;
  const bool joined = tokens[end - 1].gap == Gap::none || tokens[end - 1].gap == Gap::blank;
  if (end < tokens.size() && isHalfDay(tokens[end]) && joined) return end + 1 - start;
  return end - start > 1 ? end - start : 0;
}

// Seconds since midnight.
std::optional<std::int32_t> secondsOf(Tokens time) {
  std::array<std::int32_t, 3> fields{};
  std::size_t count = 0;
  for (const DateToken& token : time) {
    if (!isNumber(token)) break;
    const bool otherMark = count > 0 && token.gap == Gap::timeMark && token.mark != time[0].mark;
    if (count == fields.size() || isLong(token) || otherMark) return std::nullopt;
    fields[count++] = token.value;
  }
  auto [hour, minute, second] = fields;
  if (hour > 23 || minute > 59 || second > 59) return std::nullopt;
  if (time.back().kind == TokenKind::am) {
    if (hour > 12) return std::nullopt;
    hour %= 12;
  } else if (time.back().kind == TokenKind::pm && hour < 12) {
    hour += 12;
  }
  return hour * 3600 + minute * 60 + second;
}

std::optional<Date> dateAndTime(Tokens tokens, std::size_t start, std::size_t length,
                                DateOrder order) {
  const Tokens time = tokens.subspan(start, length);
  const Tokens before = tokens.first(start);
  const Tokens after = tokens.subspan(start + length);
  const auto seconds = secondsOf(time);
  if (!seconds || (!before.empty() && !after.empty())) return std::nullopt;
  if (before.empty() && after.empty()) return dateOf(0, *seconds);
  const DateToken& last = before.empty() ? time.back() : before.back();
  if (last.gap != Gap::blank) return std::nullopt;
  const auto day = dayOf(before.empty() ? after : before, order);
  if (!day) return std::nullopt;
  return dateOf(*day, *seconds);
}

std::optional<Date> parse(TextView text, const Locale& locale) {
  DateTokens scanned;
  if (!scanned.scan(text, locale)) return std::nullopt;
  const Tokens tokens = scanned.all();
  // A number alone, the commonest of all cells that get this far, is none.
  if (tokens.size() < 2) return std::nullopt;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const std::size_t length = timeLength(tokens, i);
    if (length > 0) return dateAndTime(tokens, i, length, locale.order);
  }
  const auto day = dayOf(tokens, locale.order);
  if (!day) return std::nullopt;
  return dateOf(*day, 0);
}

}  // namespace

bool isDateToItsEnd(TextView text, const Locale& locale) { return parse(text, locale).has_value(); }

Date readDate(TextView text, const Locale& locale) {
  const auto date = parse(text, locale);
  if (!date) throw RuntimeError(RunTime::typeMismatch);
  return *date;
}

}  // namespace veltgeneral

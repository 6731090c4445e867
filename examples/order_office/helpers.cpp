// Results, lines on the terminal, and short texts.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "office.h"

void check(const ErrInfo& result) {
  if (result.isSuccess()) return;
  throw std::runtime_error(toUtf8(result.locationInfo() + u": " + result.descriptionInfo()));
}

void Step::progress(double share) {
  const Clock::time_point now = Clock::now();
  if (now - drawn_ < std::chrono::milliseconds(20) || isatty(STDOUT_FILENO) == 0) return;
  drawn_ = now;
  const std::string bar(static_cast<std::size_t>(std::min(share, 1.0) * 30), '#');
  std::printf("  .. %-27s [%-30s]\r", what_, bar.c_str());
  std::fflush(stdout);
}

void Step::done(std::size_t count, const char* unit, const std::string& note) {
  const double seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
  std::printf("  ok %-27s%8zu %-8s%8.1f ms%10.0f /s  %s\n", what_, count, unit, seconds * 1000,
              static_cast<double>(count) / seconds, note.c_str());
}

Cents cents(double amount) { return static_cast<Cents>(std::floor(amount * 100 + 0.5)); }

Text digits(std::int64_t number) { return fromUtf8(std::to_string(number)); }

Text money(Cents amount) {
  Text text = digits(amount / 100);
  for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, 1, u'.');
  return text + u',' + digits(amount % 100 + 100).substr(1);
}

Text day(const Text& date) {
  return date.substr(6, 2) + u'/' + date.substr(4, 2) + u'/' + date.substr(0, 4);
}

Text left(TextView text, std::size_t width) {
  Text column(text.substr(0, width));
  column.resize(width, u' ');
  return column;
}

Text right(TextView text, std::size_t width) {
  return Text(width - std::min(width, text.size()), u' ').append(text.substr(0, width));
}

Text written(const Variant& answer) {
  if (const auto* number = std::get_if<std::int32_t>(&answer)) return digits(*number);
  if (const auto* number = std::get_if<std::int16_t>(&answer)) return digits(*number);
  return std::get<Text>(answer);
}

#include "steps.h"

#include <unistd.h>

#include <cstdio>
#include <stdexcept>

namespace office {

void check(const ErrInfo& result) {
  if (result.isSuccess()) return;
  throw std::runtime_error(toUtf8(result.locationInfo() + u": " + result.descriptionInfo()));
}

Step::Step(const char* what) : what_(what) { progress(0); }

void Step::progress(double share) {
  const Clock::time_point now = Clock::now();
  if (now - drawn_ < std::chrono::milliseconds(20) || isatty(STDOUT_FILENO) == 0) return;
  drawn_ = now;
  const int filled = share < 1 ? static_cast<int>(share * 30) : 30;
  std::printf("  .. %-30s [%s%s]\r", what_, std::string(filled, '#').c_str(),
              std::string(30 - filled, ' ').c_str());
  std::fflush(stdout);
}

void Step::done(std::size_t count, const char* unit, const std::string& note) {
  const double seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
  std::printf("  ok %-30s %7zu %-9s%9.1f ms %11.0f /s  %s\n", what_, count, unit, seconds * 1000,
              static_cast<double>(count) / seconds, note.c_str());
}

Text digits(std::int64_t number) { return fromUtf8(std::to_string(number)); }

Text money(Cents cents) {
  Text text = digits(cents / 100);
  for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, 1, u'.');
  return text + u',' + digits(cents % 100 + 100).substr(1);
}

Text day(TextView date) {
  return Text(date.substr(6, 2)).append(u"/").append(date.substr(4, 2)) + u'/' +
         Text(date.substr(0, 4));
}

Text left(TextView text, std::size_t width) {
  Text column(text.substr(0, width));
  column.resize(width, u' ');
  return column;
}

Text right(TextView text, std::size_t width) {
  if (text.size() > width) return Text(text.substr(0, width));
  return Text(width - text.size(), u' ').append(text);
}

Text written(const Variant& answer) {
  if (const auto* number = std::get_if<std::int32_t>(&answer)) return digits(*number);
  if (const auto* number = std::get_if<std::int16_t>(&answer)) return digits(*number);
  return std::get<Text>(answer);
}

}  // namespace office

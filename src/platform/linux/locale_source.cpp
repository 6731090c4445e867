#include "platform/locale_source.h"

#include <langinfo.h>

#include <clocale>
#include <memory>
#include <type_traits>

namespace veltgeneral::platform {
namespace {

struct FreeLocale {
  void operator()(locale_t locale) const noexcept { ::freelocale(locale); }
};
using OwnedLocale = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

// The items of a series have consecutive numbers.
template <std::size_t N>
void readSeries(std::array<std::string, N>& out, nl_item first, locale_t locale) {
  for (std::size_t i = 0; i < N; ++i) {
    out[i] = ::nl_langinfo_l(first + static_cast<nl_item>(i), locale);
  }
}

}  // namespace

std::optional<LocaleSource> readLocale(const std::string& name) {
  const OwnedLocale locale(::newlocale(LC_ALL_MASK, name.c_str(), nullptr));
  if (locale == nullptr) return std::nullopt;
  const auto item = [&](nl_item which) {
    return std::string(::nl_langinfo_l(which, locale.get()));
  };
  LocaleSource source;
  source.codeset = item(CODESET);
  source.decimal = item(RADIXCHAR);
  source.thousands = item(THOUSEP);
  source.currency = item(CRNCYSTR);
  // Its first character says where the sign stands.
  if (!source.currency.empty()) source.currency.erase(0, 1);
  source.dateFormat = item(D_FMT);
  source.timeFormat = item(T_FMT);
  source.am = item(AM_STR);
  source.pm = item(PM_STR);
  readSeries(source.months, MON_1, locale.get());
  readSeries(source.shortMonths, ABMON_1, locale.get());
  readSeries(source.days, DAY_1, locale.get());
  readSeries(source.shortDays, ABDAY_1, locale.get());
  return source;
}

}  // namespace veltgeneral::platform

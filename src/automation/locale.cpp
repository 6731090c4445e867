#include "automation/locale.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "automation/builtin_locales.h"
#include "automation/case_fold.h"
#include "automation/code_page.h"
#include "platform/environment.h"
#include "platform/locale_source.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

// A host's name in its pieces: "it_IT.UTF-8@euro" is "it_IT" and "@euro".
struct LocaleName {
  std::string base;
  std::string modifier;
};

LocaleName split(std::string_view name) {
  LocaleName pieces;
  const std::size_t at = name.find('@');
  if (at != std::string_view::npos) pieces.modifier = name.substr(at);
  pieces.base = name.substr(0, std::min(name.find('.'), at));
  std::ranges::replace(pieces.base, '-', '_');
  return pieces;
}

void deriveMonthLetters(Locale& locale) {
  const auto add = [&](const Text& name) {
    for (std::size_t i = 0; i < 2 && i + 1 < name.size(); ++i) {
      locale.monthLetters[i][letterSlot(name[i])] |= 1u << letterSlot(name[i + 1]);
    }
    // Anything may follow a name of two letters.
    if (name.size() == 2) locale.monthLetters[1][letterSlot(name[1])] = ~0u;
  };
  std::ranges::for_each(locale.months, add);
  std::ranges::for_each(locale.shortMonths, add);
}

Text decode(const std::string& bytes, const std::string& codeset) {
  if (codeset == "UTF-8") return fromUtf8(bytes);
  return fromBytes(bytes, CodePage(codeset));
}

bool has(std::string_view set, char c) { return set.find(c) != std::string_view::npos; }

// The first literal character between two conversions; `standard` where there is none fit.
char16_t separatorIn(std::string_view format, std::string_view allowed, char16_t standard) {
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%')
      return has(allowed, format[i]) ? static_cast<char16_t>(format[i]) : standard;
    while (i + 1 < format.size() && has("%-_0EO", format[i])) ++i;
  }
  return standard;
}

// Whether a conversion of `letters` stands in `format` with a leading zero.
bool paddedIn(std::string_view format, std::string_view letters) {
  const std::size_t at = format.find_first_of(letters);
  return at != std::string_view::npos && at > 0 && format[at - 1] == '%';
}

void readDateFormat(Locale& locale, std::string format) {
  if (format.find("%D") != std::string::npos) format = "%m/%d/%y";
  if (format.find("%F") != std::string::npos) format = "%Y-%m-%d";
  const std::size_t day = format.find_first_of("de");
  const std::size_t month = format.find_first_of("mbBh");
  const std::size_t year = format.find_first_of("yYG");
  if (year < day && year < month) {
    locale.order = DateOrder::yearMonthDay;
  } else {
    locale.order = month < day ? DateOrder::monthDayYear : DateOrder::dayMonthYear;
  }
  locale.dateSeparator = separatorIn(format, "/-. ", u'/');
  locale.twoDigitDay = paddedIn(format, "d");
  locale.twoDigitMonth = paddedIn(format, "m");
}

void readTimeFormat(Locale& locale, std::string_view format) {
  locale.twelveHours = format.find_first_of("rIlp") != std::string_view::npos;
  locale.twoDigitHour = paddedIn(format, "HIrTR");
  locale.timeSeparator = separatorIn(format, ":.", u':');
  // One mark cannot serve dates and times: what is written must read back.
  if (locale.timeSeparator == locale.dateSeparator) locale.timeSeparator = u':';
}

Locale build(const platform::LocaleSource& source, const std::string& name) {
  const auto text = [&](const std::string& bytes) { return decode(bytes, source.codeset); };
  const auto mark = [&](const std::string& bytes) {
    const Text decoded = text(bytes);
    return decoded.empty() ? char16_t{0} : decoded[0];
  };
  Locale locale;
  locale.name = fromUtf8(name);
  locale.decimal = mark(source.decimal);
  locale.thousands = mark(source.thousands);
  locale.currency = text(source.currency);
  readDateFormat(locale, source.dateFormat);
  readTimeFormat(locale, source.timeFormat);
  std::ranges::transform(source.months, locale.months.begin(), text);
  std::ranges::transform(source.shortMonths, locale.shortMonths.begin(), text);
  std::ranges::transform(source.days, locale.days.begin(), text);
  std::ranges::transform(source.shortDays, locale.shortDays.begin(), text);
  locale.am = text(source.am);
  locale.pm = text(source.pm);
  if (locale.pm.empty()) locale.twelveHours = false;
  return locale;
}

std::optional<Locale> builtIn(const LocaleName& name) {
  if (name.base == "it_IT" || name.base == "it") return italianLocale();
  const auto us = {"en_US", "en", "C", "POSIX", ""};
  if (std::ranges::find(us, name.base) != us.end()) return usEnglishLocale();
  return std::nullopt;
}

std::optional<Locale> fromHost(const LocaleName& name, const std::string& asGiven) {
  auto source = platform::readLocale(name.base + ".UTF-8" + name.modifier);
  if (!source) source = platform::readLocale(asGiven);
  if (!source) return std::nullopt;
  try {
    return build(*source, name.base);
  } catch (const RuntimeError&) {
    return std::nullopt;  // written in a codeset that has no page
  }
}

// Every locale that was ever asked for and found, by the name it was asked by.
class Cache {
 public:
  const Locale& named(std::string_view name) {
    const std::string key(name);
    const std::lock_guard lock(mutex_);
    if (const auto found = known_.find(key); found != known_.end()) return *found->second;
    const LocaleName pieces = split(name);
    auto locale = builtIn(pieces);
    if (!locale) locale = fromHost(pieces, key);
    // Not remembered: the host may learn the name.
    if (!locale) return keep("en_US", usEnglishLocale());
    return keep(key, *std::move(locale));
  }

  // Numbers from one locale, dates from another.
  const Locale& mixed(std::string_view numbers, std::string_view dates) {
    const Locale& source = named(numbers);
    Locale locale = named(dates);
    locale.name = source.name + u"/" + locale.name;
    locale.decimal = source.decimal;
    locale.thousands = source.thousands;
    locale.currency = source.currency;
    const std::lock_guard lock(mutex_);
    const std::string key = toUtf8(locale.name);
    return keep(key, std::move(locale));
  }

 private:
  const Locale& keep(const std::string& key, Locale locale) {
    deriveMonthLetters(locale);
    auto made = std::make_unique<const Locale>(std::move(locale));
    return *known_.try_emplace(key, std::move(made)).first->second;
  }

  std::mutex mutex_;
  std::map<std::string, std::unique_ptr<const Locale>> known_;
};

// Never destroyed: threads may still format while the process ends.
Cache& cache() {
  static auto* const instance = std::make_unique<Cache>().release();
  return *instance;
}

std::string firstSet(std::initializer_list<const char*> variables) {
  for (const char* variable : variables) {
    auto value = platform::environment(variable);
    if (value && !value->empty()) return *std::move(value);
  }
  return "C";
}

const Locale& chosenByEnvironment() {
  const std::string numbers = firstSet({"VELTGENERAL_LOCALE", "LC_ALL", "LC_NUMERIC", "LANG"});
  const std::string dates = firstSet({"VELTGENERAL_LOCALE", "LC_ALL", "LC_TIME", "LANG"});
  return numbers == dates ? cache().named(numbers) : cache().mixed(numbers, dates);
}

constinit thread_local const Locale* current = nullptr;

}  // namespace

const Locale& userLocale() {
  if (current == nullptr) {
    static const Locale& user = chosenByEnvironment();
    current = &user;
  }
  return *current;
}

ScopedLocale::ScopedLocale(std::string_view name) : before_(current) {
  current = &cache().named(name);
}

ScopedLocale::~ScopedLocale() { current = before_; }

}  // namespace veltgeneral

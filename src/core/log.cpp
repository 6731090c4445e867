// ErrInfo's members that write the log.
//
// No step's failure stops the steps after it, and none is reported: a result that cannot be logged
// is not.
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "automation/calendar.h"
#include "automation/code_page.h"
#include "automation/coerce.h"
#include "automation/locale.h"
#include "core/module_name.h"
#include "core/registry_text.h"
#include "platform/folders.h"
#include "platform/log_append.h"
#include "platform/paths.h"
#include "veltgeneral/err_info.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr std::int32_t kDefaultSize = 1024000;
constexpr TextView kSettings = u"SOFTWARE\\Zoltra\\LogSystem";

struct LogName {
  TextView module;
  TextView file;
};

constexpr std::array kLogNames{
    LogName{u"VELTGENERAL", u"tarnview.log"},
    LogName{u"MERLCOMMON", u"merlbox.log"},
    LogName{u"PLOVGENERAL", u"tarnviewweb.log"},
};

constexpr bool isModule(TextView upperName) {
  if (upperName.size() != kModuleName.size()) return false;
  for (std::size_t i = 0; i < upperName.size(); ++i) {
    const char16_t c = kModuleName[i];
    if (upperName[i] != (c >= u'a' && c <= u'z' ? c - 0x20 : c)) return false;
  }
  return true;
}

constexpr TextView commonLogName() {
  TextView name = u"zoltra_lof_file.log";
  for (const LogName& entry : kLogNames)
    if (isModule(entry.module)) name = entry.file;
  return name;
}

// Runs a step whose failure means only that it was not taken.
template <class Step>
void attempt(Step&& step) noexcept {
  try {
    std::forward<Step>(step)();
  } catch (...) {
    return;
  }
}

bool isThere(TextView path) {
  try {
    return platform::hasListing(platform::hostPath(path));
  } catch (const RuntimeError&) {
    return false;  // a path that this host cannot have names nothing
  }
}

struct Settings {
  Text path;
  std::int16_t trace = 1;
  std::int32_t size = kDefaultSize;
};

Settings understood(const RegistryTexts& source) {
  const auto read = [&](TextView name) { return source.read(name).value_or(Text()); };
  Settings settings{.path = Text(trim(read(u"Path")))};
  const Text trace = read(u"Trace");
  const Text size = read(u"SwitchDimension");
  attempt([&] {
    if (isNumeric(trace)) settings.trace = toInt16(TextView(trace));
  });
  attempt([&] {
    if (isNumeric(size)) settings.size = toInt32(TextView(size));
  });
  return settings;
}

thread_local Settings lastSettings;

// As the registry has them now; understood again only where it has changed.
const Settings& currentSettings() {
  thread_local std::optional<RegistryTexts> source;
  // Read in silence, unlike getKeyValue's failures: the log must not log about itself.
  RegistryTexts now(kLocalMachine, kSettings);
  if (source == now) return lastSettings;
  lastSettings = understood(now);
  source = std::move(now);
  return lastSettings;
}

// The common log's, with a separator at its end.
Text logFolder(const Settings& settings) {
  const bool there = !settings.path.empty() && isThere(settings.path);
  Text folder = there ? settings.path : fromUtf8(platform::libraryHome());
  if (!folder.ends_with(u'\\')) folder += u'\\';
  return folder;
}

// Now, as bytes; made again only where the second or the thread's locale is another.
const std::string& dateField() {
  thread_local std::string field;
  thread_local Date made{};
  thread_local const Locale* locale = nullptr;
  const Date date = now();
  if (locale == &userLocale() && made.days == date.days) return field;
  field = toBytes(formatDate(date, u"d/m/yy h:mm"));
  made = date;
  locale = &userLocale();
  return field;
}

}  // namespace

bool ErrInfo::getInfoForLogSystem(Text& sLogPath, std::int16_t& iTrace, std::int32_t& lByteSwitch) {
  iTrace = 1;
  lByteSwitch = kDefaultSize;
  attempt([&] {
    const Settings& settings = currentSettings();
    iTrace = settings.trace;
    lByteSwitch = settings.size;
    sLogPath = logFolder(settings);
  });
  return true;
}

void ErrInfo::runInitialize() {
  traceLevel_ = 1;
  switchSize_ = kDefaultSize;
  attempt([&] {
    const Settings& settings = currentSettings();
    traceLevel_ = settings.trace;
    if (settings.size >= 1) switchSize_ = settings.size;
  });
}

std::string ErrInfo::logRecord() const {
  std::string record;
  const Origin& from = origin();
  record.reserve(96 + from.process.size() + from.className.size() + from.location.size() +
                 from.step.size() + descriptionInfo_.size());
  constexpr std::string_view kNext = "] [";
  const auto field = [&](TextView text) {
    record.append(kNext);
    const std::size_t at = record.size();
    record.resize(at + text.size());
    systemCodePage().narrow(text, reinterpret_cast<std::uint8_t*>(record.data() + at));
  };
  record.append("\"[").append(dateField());
  field(from.process);
  field(from.className);
  field(from.location);
  field(from.step);
  record.append(kNext).append(std::to_string(typeInfo_));
  record.append(kNext).append(std::to_string(numberInfo_));
  field(descriptionInfo_);
  return record.append("]\"\r\n");
}

ErrInfo ErrInfo::writeLog(const Variant& sErrLogName) {
  runInitialize();
  const bool listed = typeInfo_ >= eiERRORTYPE && typeInfo_ <= eiDEBUGTYPE;
  const bool admitted = traceLevel_ >= (listed ? typeInfo_ : 0);
  attempt([&] {
    const std::string record = admitted ? logRecord() : std::string();
    // A caller's file that could not be written is a failure still pending when the common log is
    // rotated, and what is to be deleted after a failure stays.
    auto rotation = platform::Rotation::moves;
    if (kindOf(sErrLogName) != Kind::missing) {
      bool written = false;
      attempt([&] {
        const Text* path = std::get_if<Text>(&sErrLogName);
        const std::string file =
            platform::hostPath(path ? TextView(*path) : TextView(toText(sErrLogName)));
        written = platform::appendToLog(file, switchSize_, record);
      });
      if (!written) rotation = platform::Rotation::copies;
    }
    const bool common = typeInfo_ == eiERRORTYPE || typeInfo_ == eiWARNINGTYPE;
    if (common && admitted)
      platform::appendToLog(platform::hostPath(logFolder(lastSettings).append(commonLogName())),
                            switchSize_, record, rotation);
  });
  return ErrInfo(eiSUCCESFULL, {}, eiINFORMATIONTYPE, u"writeLog");
}

}  // namespace veltgeneral

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

// As the registry has them now; understood again only where it has changed.
const Settings& currentSettings() {
  thread_local std::optional<RegistryTexts> source;
  thread_local Settings settings;
  // Read in silence, unlike getKeyValue's failures: the log must not log about itself.
  RegistryTexts now(kLocalMachine, kSettings);
  if (source == now) return settings;
  const auto read = [&](TextView name) { return now.read(name).value_or(Text()); };
  settings = {.path = Text(trim(read(u"Path")))};
  const Text trace = read(u"Trace");
  const Text size = read(u"SwitchDimension");
  attempt([&] {
    if (isNumeric(trace)) settings.trace = toInt16(TextView(trace));
  });
  attempt([&] {
    if (isNumeric(size)) settings.size = toInt32(TextView(size));
  });
  source = std::move(now);
  return settings;
}

}  // namespace

bool ErrInfo::getInfoForLogSystem(Text& sLogPath, std::int16_t& iTrace, std::int32_t& lByteSwitch) {
  iTrace = 1;
  lByteSwitch = kDefaultSize;
  attempt([&] {
    const Settings& settings = currentSettings();
    iTrace = settings.trace;
    lByteSwitch = settings.size;
    sLogPath = settings.path;
    logFolder_ =
        !sLogPath.empty() && isThere(sLogPath) ? sLogPath : fromUtf8(platform::libraryHome());
    if (!logFolder_.ends_with(u'\\')) logFolder_ += u'\\';
    sLogPath = logFolder_;
  });
  return true;
}

void ErrInfo::runInitialize() {
  attempt([&] {
    Text path;
    getInfoForLogSystem(path, traceLevel_, switchSize_);
    if (switchSize_ < 1) switchSize_ = kDefaultSize;
  });
}

std::string ErrInfo::logRecord() const {
  std::string record;
  record.reserve(96 + processInfo_.size() + classInfo_.size() + locationInfo_.size() +
                 stepInfo_.size() + descriptionInfo_.size());
  const auto field = [&record](std::string_view before, TextView text) {
    record.append(before);
    const std::size_t at = record.size();
    record.resize(at + text.size());
    systemCodePage().narrow(text, reinterpret_cast<std::uint8_t*>(record.data() + at));
  };
  constexpr std::string_view kNext = "] [";
  field("\"[", formatDate(now(), u"d/m/yy h:mm"));
  field(kNext, processInfo_);
  field(kNext, classInfo_);
  field(kNext, locationInfo_);
  field(kNext, stepInfo_);
  field(kNext, toText(std::int32_t{typeInfo_}));
  field(kNext, toText(numberInfo_));
  field(kNext, descriptionInfo_);
  return record.append("]\"\r\n");
}

ErrInfo ErrInfo::writeLog(const Variant& sErrLogName) {
  runInitialize();
  const bool listed = typeInfo_ >= eiERRORTYPE && typeInfo_ <= eiDEBUGTYPE;
  const std::int16_t level = listed ? typeInfo_ : std::int16_t{0};
  attempt([&] {
    std::string record;
    if (traceLevel_ >= level) record = logRecord();
    const auto append = [&](TextView path) {
      platform::appendToLog(platform::hostPath(path), switchSize_, record);
    };
    if (const Text* path = std::get_if<Text>(&sErrLogName)) {
      attempt([&] { append(*path); });
    } else if (kindOf(sErrLogName) != Kind::missing) {
      attempt([&] { append(toText(sErrLogName)); });
    }
    const bool common = typeInfo_ == eiERRORTYPE || typeInfo_ == eiWARNINGTYPE;
    if (common && traceLevel_ >= level) append(logFolder_ + Text(commonLogName()));
  });
  return ErrInfo(eiSUCCESFULL, {}, eiINFORMATIONTYPE, u"writeLog");
}

}  // namespace veltgeneral

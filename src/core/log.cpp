// ErrInfo's members that write the log.
//
// No step's failure stops the steps after it, and none is reported: a result that cannot be logged
// is not.
#include <array>
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

}  // namespace

bool ErrInfo::getInfoForLogSystem(Text& sLogPath, std::int16_t& iTrace, std::int32_t& lByteSwitch) {
  iTrace = 1;
  lByteSwitch = kDefaultSize;
  attempt([&] {
    // Read in silence, unlike getKeyValue's failures: the log must not log about itself.
    const RegistryTexts settings(kLocalMachine, kSettings);
    const auto read = [&](TextView name) { return settings.read(name).value_or(Text()); };
    const Text trace = read(u"Trace");
    const Text size = read(u"SwitchDimension");
    attempt([&] {
      Text folder = read(u"Path");
      sLogPath = trim(folder);
      logFolder_ =
          !sLogPath.empty() && isThere(sLogPath) ? sLogPath : fromUtf8(platform::libraryHome());
    });
    attempt([&] {
      if (!logFolder_.ends_with(u'\\')) logFolder_ += u'\\';
      sLogPath = logFolder_;
    });
    attempt([&] {
      if (isNumeric(trace)) iTrace = toInt16(TextView(trace));
    });
    attempt([&] {
      if (isNumeric(size)) lByteSwitch = toInt32(TextView(size));
    });
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

Text ErrInfo::logLine() const {
  Text line = u"[" + formatDate(now(), u"d/m/yy h:mm");
  for (const TextView field :
       {TextView(processInfo_), TextView(classInfo_), TextView(locationInfo_), TextView(stepInfo_)})
    line.append(u"] [").append(field);
  line.append(u"] [").append(toText(std::int32_t{typeInfo_}));
  line.append(u"] [").append(toText(numberInfo_));
  return line.append(u"] [").append(descriptionInfo_).append(u"]");
}

ErrInfo ErrInfo::writeLog(const Variant& sErrLogName) {
  runInitialize();
  const bool listed = typeInfo_ >= eiERRORTYPE && typeInfo_ <= eiDEBUGTYPE;
  const std::int16_t level = listed ? typeInfo_ : std::int16_t{0};
  attempt([&] {
    std::string record;
    if (traceLevel_ >= level) record = toBytes(u"\"" + logLine() + u"\"\r\n");
    const auto append = [&](TextView path) {
      platform::appendToLog(platform::hostPath(path), switchSize_, record);
    };
    if (kindOf(sErrLogName) != Kind::missing) attempt([&] { append(toText(sErrLogName)); });
    const bool common = typeInfo_ == eiERRORTYPE || typeInfo_ == eiWARNINGTYPE;
    if (common && traceLevel_ >= level) append(logFolder_ + Text(commonLogName()));
  });
  return ErrInfo(eiSUCCESFULL, {}, eiINFORMATIONTYPE, u"writeLog");
}

}  // namespace veltgeneral

// RegistryUtility's members for registry values and connection settings.
#include "veltgeneral/registry_utility.h"

#include <array>
#include <utility>

#include "automation/calendar.h"
#include "automation/coerce.h"
#include "core/narrow_page.h"
#include "core/registry_text.h"
#include "core/trap.h"

namespace veltgeneral {
namespace {

constexpr TextView kClass = u"RegistryUtility";

Text connectionKey(TextView application) {
  return Text(u"SOFTWARE\\").append(application).append(u"\\DbAccess");
}

bool write(TextView key, TextView name, TextView value) {
  return platform::writeRegistryText(platform::RegistryRoot::localMachine, narrowed(Text(key)),
                                     narrowed(Text(name)), narrowed(Text(value)), narrowPage());
}

}  // namespace

Text RegistryUtility::getKeyValue(std::int32_t& KeyRoot, Text& KeyName, Text& SubKeyRef) {
  constexpr TextView kLocation = u"getKeyValue";
  try {
    if (auto text = RegistryTexts(KeyRoot, KeyName).read(SubKeyRef)) return *std::move(text);
    resultOf(eiSUCCESFULL, {}, eiERRORTYPE, kLocation, kClass).writeLog();
  } catch (...) {
    failureOf(currentError(), kLocation, kClass).writeLog();
  }
  return {};
}

ErrInfo RegistryUtility::getInfoForConnection(TextView sApplicationName, Text& sConnectionDbName,
                                              Text& sConnectionUser, Text& sConnectionPassword) {
  constexpr TextView kLocation = u"getInfoForConnection";
  return trapped(kLocation, kClass, [&] {
    std::int32_t root = kLocalMachine;
    Text key = connectionKey(sApplicationName);
    const std::array<std::pair<TextView, Text*>, 3> settings{{
        {u"connectionDbName", &sConnectionDbName},
        {u"connectionUser", &sConnectionUser},
        {u"connectionPassword", &sConnectionPassword},
    }};
    for (const auto& [name, out] : settings) {
      Text value(name);
      *out = getKeyValue(root, key, value);
    }
    return resultOf(eiSUCCESFULL, {}, eiINFORMATIONTYPE, kLocation, kClass);
  });
}

ErrInfo RegistryUtility::saveInfoForConnection(TextView sApplicationName,
                                               TextView sConnectionDbName, TextView sConnectionUser,
                                               TextView sConnectionPassword) {
  constexpr TextView kLocation = u"saveInfoForConnection";
  return trapped(kLocation, kClass, [&] {
    const Text key = connectionKey(sApplicationName);
    if (write(key, u"connectionDbName", trimRight(sConnectionDbName)) &&
        write(key, u"connectionUser", trimRight(sConnectionUser)) &&
        write(key, u"connectionPassword", trimRight(sConnectionPassword)))
      return resultOf(eiSUCCESFULL, {}, eiINFORMATIONTYPE, kLocation, kClass);
    ErrInfo failure = resultOf(eiREGISTRYERROR, u"Error in writing registry:HKEY_LOCAL_MACHINE",
                               eiERRORTYPE, kLocation, kClass);
    failure.writeLog();
    return failure;
  });
}

bool RegistryUtility::isRegistryInWritePermission() {
  try {
    return write(u"SOFTWARE\\Zoltra", u"Check", formatDate(now(), u"yyyymmddhhnnss"));
  } catch (...) {
    return false;
  }
}

}  // namespace veltgeneral

// RegistryUtility's members for the application settings file.
//
// Two rules make its path, and differ on purpose: single entries put a separator between folder and
// name, the whole file's replacement puts none.
#include "core/registry_text.h"
#include "core/trap.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/registry_utility.h"

namespace veltgeneral {
namespace {

constexpr TextView kClass = u"RegistryUtility";
constexpr TextView kFileName = u"Tarnview.dat";

Text configuredFolder(RegistryUtility& registry) {
  std::int32_t root = kLocalMachine;
  Text key = u"SOFTWARE\\Zoltra\\LogSystem";
  Text name = u"Path";
  return registry.getKeyValue(root, key, name);
}

Text separatedFolder(RegistryUtility& registry) {
  Text folder = configuredFolder(registry);
  if (!folder.ends_with(u'\\')) folder += u'\\';
  return folder;
}

cInifile entryOf(TextView folder, TextView section, TextView key) {
  cInifile file;
  file.setPath(Text(folder).append(kFileName));
  file.setSection(section);
  file.setKey(key);
  return file;
}

}  // namespace

ErrInfo RegistryUtility::getTarnviewConfValue(Text& sSection, Text& sKeyName, Text& sValue) {
  constexpr TextView kLocation = u"getTarnviewConfValue";
  return trapped(kLocation, kClass, [&] {
    const Text folder = separatedFolder(*this);
    resultOf(eiSUCCESFULL, Text(u"Path:").append(folder), eiWARNINGTYPE, kLocation, kClass)
        .writeLog();
    cInifile file = entryOf(folder, sSection, sKeyName);
    file.setDefault({});
    sValue = file.Value();
    return ErrInfo();
  });
}

ErrInfo RegistryUtility::setTarnviewConfValue(Text& sSection, Text& sKeyName, Text& sValue) {
  return trapped(u"setTarnviewConfValue", kClass, [&] {
    entryOf(separatedFolder(*this), sSection, sKeyName).setValue(sValue);
    return ErrInfo();
  });
}

ErrInfo RegistryUtility::setTarnviewDatFileValue(TextView sCustomValue) {
  return trapped(u"setTarnviewDatFileValue", kClass, [&] {
    return FileUtility().writeFile(configuredFolder(*this).append(kFileName), 0, sCustomValue);
  });
}

bool RegistryUtility::isTarnviewDatInWritePermission() {
  try {
    Text section = u"License";
    Text key = u"WriteTest";
    Text value = u"OK";
    const auto succeeded = [](ErrInfo result) {
      if (!result.isSuccess()) result.writeLog();
      return result.isSuccess();
    };
    if (!succeeded(setTarnviewConfValue(section, key, value))) return false;
    value.clear();
    if (!succeeded(getTarnviewConfValue(section, key, value)) || value != u"OK") return false;
    value.clear();
    setTarnviewConfValue(section, key, value);
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace veltgeneral

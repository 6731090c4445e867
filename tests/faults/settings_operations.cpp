// The operations on settings: RegistryUtility, the registry behind it, and cInifile.
#include <unistd.h>

#include <sstream>

#include "core/narrow_page.h"
#include "faults/documented.h"
#include "platform/registry.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/component.h"
#include "veltgeneral/registry_utility.h"
#include "veltgeneral/veltgeneral_c.h"

namespace veltgeneral::faults {
namespace {

namespace fs = std::filesystem;
using platform::RegistryRoot;

constexpr TextView kSettings = u"SOFTWARE\\App\\DbAccess";
constexpr const char* kIni = "; kept\n[Main]\nkey=old\nother=1\n\n[Last]\na=b\n";
constexpr uid_t kNobody = 65534;

// RegistryUtility, and the registry

void noHive(const Site& site) { fs::remove(site.file("registry/machine.reg")); }

void twoHives(const Site& site) { site.put("registry/user.reg", "REGEDIT4\n"); }

void settings(const Site& site) {
  addToHive(site,
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\App\\DbAccess]\n\"connectionDbName\"=\"orders\"\n"
            "\"connectionUser\"=\"ada\"\n\"connectionPassword\"=\"secret\"\n");
}

void settingsFile(const Site& site) { site.put("log/Tarnview.dat", kIni); }

void settingsFileBeside(const Site& site) { site.put("logTarnview.dat", kIni); }

Outcome getKeyValue(const Site& site) {
  auto root = static_cast<std::int32_t>(RegistryRoot::localMachine);
  Text key(kSettings);
  Text name = u"connectionUser";
  Text value;
  Outcome outcome = site.tried([&] { value = RegistryUtility().getKeyValue(root, key, name); });
  outcome.seen = toUtf8(value);
  return outcome;
}

Outcome getConnection(const Site& site) {
  Text name;
  Text user;
  Text password;
  Outcome outcome = site.result(
      [&] { return RegistryUtility().getInfoForConnection(u"App", name, user, password); });
  outcome.seen += toUtf8(name.append(u"|").append(user).append(u"|").append(password));
  return outcome;
}

// A setting that cannot be read is empty, and reading goes on.
bool lacksOne(const Outcome& got, const Outcome&, int error) {
  return error != EINTR && got.number == 0 &&
         (got.seen == "|ada|secret" || got.seen == "orders||secret" || got.seen == "orders|ada|");
}

Outcome saveConnection(const Site& site) {
  return site.result(
      [&] { return RegistryUtility().saveInfoForConnection(u"App", u"new", u"bob", u"hidden"); });
}

Outcome answerOf(const Site& site, const std::function<bool()>& question) {
  bool yes = false;
  Outcome outcome = site.tried([&] { yes = question(); });
  outcome.seen = yes ? "yes" : "";
  return outcome;
}

Outcome mayWriteRegistry(const Site& site) {
  return answerOf(site, [] { return RegistryUtility().isRegistryInWritePermission(); });
}

Outcome mayWriteSettings(const Site& site) {
  return answerOf(site, [] { return RegistryUtility().isTarnviewDatInWritePermission(); });
}

// What is told does not hang on every step.
bool anything(const Outcome&, const Outcome&, int error) { return error != EINTR; }

Outcome getSetting(const Site& site) {
  Text section = u"Main";
  Text key = u"key";
  return filledText(site, [&](Text& value) {
    return RegistryUtility().getTarnviewConfValue(section, key, value);
  });
}

Outcome setSetting(const Site& site) {
  Text section = u"Main";
  Text key = u"key";
  Text value = u"new";
  return site.result([&] { return RegistryUtility().setTarnviewConfValue(section, key, value); });
}

Outcome setSettings(const Site& site) {
  return site.result([&] { return RegistryUtility().setTarnviewDatFileValue(u"[New]"); });
}

// Without the configured folder the file lies in the current one.
bool liesElsewhere(const Site& site) { return site.get("home/Tarnview.dat") == "[New]\r\n"; }

Outcome setValue(const Site& site) {
  return site.tried([&] {
    platform::setRegistryValue(RegistryRoot::currentUser, u"Software\\App", u"a", {.text = u"b"},
                               narrowPage());
  });
}

Outcome removeValue(const Site& site) {
  return answerOf(site, [] {
    return platform::removeRegistryValue(RegistryRoot::localMachine, kSettings, u"connectionUser",
                                         narrowPage());
  });
}

Outcome removeKey(const Site& site) {
  return answerOf(site, [] {
    return platform::removeRegistryKey(RegistryRoot::localMachine, kSettings, narrowPage());
  });
}

Outcome importBoth(const Site& site) {
  return site.tried([&] {
    platform::importRegistry(
        "REGEDIT4\n[HKEY_LOCAL_MACHINE\\A]\n\"a\"=\"b\"\n[HKEY_CURRENT_USER\\A]\n\"a\"=\"b\"\n",
        narrowPage());
  });
}

Outcome exportKey(const Site& site) {
  std::optional<std::string> out;
  Outcome outcome = site.tried([&] {
    out = platform::exportRegistry(RegistryRoot::localMachine, kSettings, true, narrowPage());
  });
  outcome.seen = out.value_or("");
  return outcome;
}

Outcome registerServer(const Site& site) {
  vg_status status = 0;
  Outcome outcome = site.tried([&] { status = ::DllRegisterServer(); });
  if (status != 0) outcome.number = status;
  return outcome;
}

// cInifile

void ini(const Site& site) {
  site.put("a.ini", kIni);
  setAttribute(site, "a.ini", "user.note", "kept");
  // Another's, where this process may give files away.
  if (::geteuid() == 0 && ::chown(site.file("a.ini").c_str(), kNobody, kNobody) != 0) ::abort();
}

void linkedIni(const Site& site) {
  site.put("real.ini", kIni);
  fs::create_symlink("real.ini", site.file("a.ini"));
}

void closedIni(const Site& site) {
  fs::create_directory(site.file("closed"));
  site.put("closed/a.ini", kIni);
  fs::permissions(site.file("closed/a.ini"), fs::perms(0666));
  fs::create_symlink("closed/a.ini", site.file("a.ini"));
}

cInifile entryOf(const Site& site) {
  cInifile file;
  file.setPath(site.text("a.ini"));
  file.setSection(u"Main");
  file.setKey(u"key");
  return file;
}

// Success is what LastReturnCode says.
Outcome change(const Site& site, const std::function<void(cInifile&)>& act) {
  cInifile file = entryOf(site);
  Outcome outcome = site.tried([&] { act(file); });
  if (outcome.number == 0 && !file.Success()) outcome.number = -1;
  return outcome;
}

Outcome getValue(const Site& site) {
  Text value;
  cInifile file = entryOf(site);
  Outcome outcome = site.tried([&] { value = file.Value(); });
  outcome.seen = toUtf8(value);
  return outcome;
}

Outcome putValue(const Site& site) {
  Text value = u"a much longer value than before";
  return change(site, [&](cInifile& file) { file.setValue(value); });
}

// In a folder that lets this process neither create nor rename: another's, or its own and closed.
Outcome putInClosedFolder(const Site& site) {
  std::error_code notOurs;
  fs::permissions(site.file("closed"), fs::perms(0577), notOurs);
  const Outcome outcome = putValue(site);
  fs::permissions(site.file("closed"), fs::perms(0755), notOurs);
  return outcome;
}

Outcome deleteKey(const Site& site) {
  return change(site, [](cInifile& file) { file.DeleteKey(); });
}

Outcome deleteSection(const Site& site) {
  return change(site, [](cInifile& file) { file.DeleteSection(); });
}

Outcome listSections(const Site& site) {
  TextArray sections;
  std::int32_t count = 0;
  cInifile file = entryOf(site);
  Outcome outcome = site.tried([&] { file.EnumerateAllSections(sections, count); });
  for (std::int32_t i = 1; i <= count; ++i) outcome.seen += toUtf8(sections.at(i)) + "|";
  return outcome;
}

Outcome savePosition(const Site& site) {
  const ObjectRef form = makeRecord();
  std::int32_t number = 0;
  for (const TextView name : {u"WindowState", u"Left", u"Top", u"Width", u"Height"}) {
    std::array<Variant, 1> value{number++};
    form->call(name, CallKind::propertyPut, value);
  }
  return change(site, [&](cInifile& file) { file.SaveFormPosition(*form); });
}

// Each entry of a placement is put for itself.
bool hasWholeEntries(const Site& site) {
  const std::string all =
      "|; kept|[Main]|key=old|other=1||[Last]|a=b|Maximised=0|Left=1|Top=2|Width=3|Height=4|";
  std::istringstream lines(site.get("a.ini"));
  for (std::string line; std::getline(lines, line);)
    if (all.find("|" + line + "|") == std::string::npos) return false;
  return true;
}

// clang-format off
const Operation kRows[] = {
    {"getKeyValue", settings, getKeyValue, empty},
    {"getInfoForConnection", settings, getConnection, lacksOne},
    {"saveInfoForConnection", settings, saveConnection, failsWith<eiREGISTRYERROR>, 3},
    {"isRegistryInWritePermission, new hive", noHive, mayWriteRegistry, empty},
    {"getTarnviewConfValue", settingsFile, getSetting, empty, 1, Way::user},
    {"setTarnviewConfValue", settingsFile, setSetting, silent, 1, Way::user},
    {"setTarnviewDatFileValue", settingsFileBeside, setSettings, runTime, Operation::kInPlace, Way::user, false, liesElsewhere},
    {"isTarnviewDatInWritePermission", settingsFile, mayWriteSettings, anything, 2, Way::user},
    {"set a registry value, new hive", noHive, setValue, fails},
    {"remove a registry value", settings, removeValue, fails, 1, Way::cold, false},
    {"remove a registry key", settings, removeKey, fails, 1, Way::cold, false},
    {"import into two hives", twoHives, importBoth, fails},
    {"export a registry key", settings, exportKey, empty},
    {"DllRegisterServer", nothing, registerServer, fails},
    {"Value", ini, getValue, empty},
    {"put Value", ini, putValue, fails},
    {"put Value, new file", nothing, putValue, fails},
    {"put Value, through a link", linkedIni, putValue, fails},
    {"put Value, in a closed folder", closedIni, putInClosedFolder, fails, Operation::kUndone, Way::guest},
    {"DeleteKey", ini, deleteKey, fails},
    {"DeleteSection", ini, deleteSection, fails},
    {"EnumerateAllSections", ini, listSections, empty},
    {"SaveFormPosition", ini, savePosition, anything, 5, Way::cold, false, hasWholeEntries},
};
// clang-format on

}  // namespace

std::span<const Operation> settingsOperations() { return kRows; }

}  // namespace veltgeneral::faults

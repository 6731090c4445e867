// Where the office keeps what it must remember: the registry, an INI file and the settings file.
#include <veltgeneral/c_ini_file.h>
#include <veltgeneral/file_utility.h>
#include <veltgeneral/registry_utility.h>

#include <cstdlib>
#include <stdexcept>

#include "office.h"

namespace office {

namespace {

namespace fs = std::filesystem;
using veltgeneral::CallKind;
using veltgeneral::Empty;

// A window, as far as its placement goes. Members are called by name, as on any other window.
class OrderWindow : public veltgeneral::Object {
 public:
  Variant call(TextView name, CallKind kind, std::span<Variant> arguments) override {
    if (name == u"Move") {
      const TextView places[] = {u"Left", u"Top", u"Width", u"Height"};
      for (std::size_t i = 0; i < 4; ++i) values_[Text(places[i])] = arguments[i];
      return Empty();
    }
    Variant& value = values_[Text(name)];
    if (kind == CallKind::propertyPut) value = arguments[0];
    return value;
  }

 private:
  std::map<Text, Variant> values_ = {{u"WindowState", std::int16_t{0}},
                                     {u"Left", 1200.0F},
                                     {u"Top", 900.0F},
                                     {u"Width", 9000.0F},
                                     {u"Height", 6000.0F}};
};

// A setting; a file that does not have it yet is given the default, for the user to find.
Text setting(veltgeneral::cInifile& ini, TextView key, TextView otherwise) {
  ini.setKey(key);
  ini.setDefault(otherwise);
  Text value = ini.Value();
  ini.setValue(value);
  if (!ini.Success()) throw std::runtime_error("cannot write " + toUtf8(ini.Path()));
  return value;
}

void choose(const char* variable, const std::string& value, bool always = true) {
  setenv(variable, value.c_str(), always ? 1 : 0);
}

}  // namespace

// Everything that the library keeps goes below one folder, until the program ends. An installed
// system needs none of this: it has its registry, its printer and its language.
void settleBelow(const fs::path& output) {
  for (const char* folder : {"registry", "settings", "log"})
    fs::create_directories(output / folder);
  choose("VELTGENERAL_REGISTRY_DIR", output / "registry");
  choose("VELTGENERAL_WINDOWS_DIR", output / "settings");
  choose("VELTGENERAL_HOME", output / "log");
  choose("VELTGENERAL_CODEPAGE", "CP1252");
  choose("VELTGENERAL_LOCALE", "it_IT");
  choose("VELTGENERAL_PRINTER", "pdf:" + (output / "report.pdf").native(), false);
  if (std::getenv("DISPLAY") == nullptr)
    choose("VELTGENERAL_FORM", "image:" + (output / "form.png").native(), false);

  // What an administrator sets once: where logs and the settings file lie, and that warnings are
  // logged too. The registry will hold a password, so nobody else may read it.
  const fs::path hive = output / "registry" / "machine.reg";
  if (!fs::exists(hive)) {
    check(veltgeneral::FileUtility().writeFile(
        fromUtf8(hive.native()), 0,
        u"REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Zoltra\\LogSystem]\r\n\"Path\"=\"" +
            fromUtf8((output / "log").native()) + u"\"\r\n\"Trace\"=\"2\""));
  }
  fs::permissions(output / "registry", fs::perms::owner_all);
}

void loadSettings(Office& office) {
  Step step("settings");
  veltgeneral::RegistryUtility registry;
  if (!registry.isRegistryInWritePermission()) throw std::runtime_error("the registry is closed");
  check(registry.saveInfoForConnection(u"OrderOffice", u"orders", u"clerk", u"Però, 1887"));
  Text user, password;
  check(registry.getInfoForConnection(u"OrderOffice", office.settings.database, user, password));

  veltgeneral::cInifile ini;
  ini.setPath(u"office.ini");  // without a folder: in the Windows folder
  ini.setSection(u"Report");
  office.settings.title = setting(ini, u"Title", u"Ordini di novembre 2026");
  office.settings.firm = setting(ini, u"Firm", u"Cartiera Montelume S.r.l.");
  office.settings.linesOnPage = ini.CLngDefault(setting(ini, u"LinesOnPage", u"45"), 45);

  OrderWindow window;
  ini.setSection(u"Window");
  ini.LoadFormPosition(window);  // where it was left last time; stays where it is without a screen
  ini.SaveFormPosition(window);
  if (!ini.Success()) throw std::runtime_error("the window's place cannot be kept");
  step.done(3, "stores", toUtf8(user + u" at " + office.settings.database));
}

// The settings file is the one that other programs of the house read.
void rememberLastOrder(const Office& office) {
  Step step("settings file");
  veltgeneral::RegistryUtility registry;
  if (!registry.isTarnviewDatInWritePermission()) throw std::runtime_error("no settings file");
  Text last;
  for (const Order& order : office.orders) last = std::max(last, order.number);
  Text section = u"OrderOffice", key = u"LastOrder", kept;
  check(registry.setTarnviewConfValue(section, key, last));
  check(registry.getTarnviewConfValue(section, key, kept));
  if (kept != last) throw std::runtime_error("the settings file did not keep the last order");
  step.done(1, "entry", "LastOrder=" + toUtf8(kept));
}

}  // namespace office

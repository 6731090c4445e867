// Where the office keeps what it must remember: the registry, an INI file and the settings file.
#include <veltgeneral/c_ini_file.h>
#include <veltgeneral/file_utility.h>
#include <veltgeneral/registry_utility.h>

#include <cstdlib>
#include <stdexcept>

#include "office.h"

namespace fs = std::filesystem;
using namespace veltgeneral;

namespace {

// A window as far as its placement goes. The library calls it by name, like any other window.
class OrderWindow : public Object {
 public:
  Variant call(TextView name, CallKind kind, std::span<Variant> arguments) override {
    if (name == u"Move") {
      for (std::size_t i = 0; i < 4; ++i) values_[kPlaces[i]] = arguments[i];
      return Empty();
    }
    Variant& value = values_[Text(name)];
    if (kind == CallKind::propertyPut) value = arguments[0];
    return value;
  }

 private:
  static constexpr const char16_t* kPlaces[] = {u"Left", u"Top", u"Width", u"Height"};
  std::map<Text, Variant> values_ = {
      {u"WindowState", 0}, {u"Left", 1200}, {u"Top", 900}, {u"Width", 9000}, {u"Height", 6000}};
};

// A setting. A file without it is given the default, for the user to find there.
Text setting(cInifile& ini, TextView key, TextView otherwise) {
  ini.setKey(key);
  ini.setDefault(otherwise);
  Text value = ini.Value();
  ini.setValue(value);
  if (!ini.Success()) throw std::runtime_error("cannot write " + toUtf8(ini.Path()));
  return value;
}

}  // namespace

// Has the library keep everything below one folder while this program runs. On an installed system
// these choices are made once, by the administrator.
void settleBelow(const fs::path& output) {
  const auto choose = [](const char* variable, const std::string& value) {
    setenv(variable, value.c_str(), 1);
  };
  choose("VELTGENERAL_REGISTRY_DIR", output / "registry");
  choose("VELTGENERAL_WINDOWS_DIR", output / "settings");
  choose("VELTGENERAL_HOME", output / "log");
  choose("VELTGENERAL_CODEPAGE", "CP1252");
  choose("VELTGENERAL_LOCALE", "it_IT");
  choose("VELTGENERAL_PRINTER", "pdf:" + (output / "report.pdf").native());
  if (getenv("DISPLAY") == nullptr)
    choose("VELTGENERAL_FORM", "image:" + (output / "form.png").native());

  for (const char* folder : {"registry", "settings", "log"})
    fs::create_directories(output / folder);
  fs::permissions(output / "registry", fs::perms::owner_all);  // it will hold a password
  const fs::path hive = output / "registry" / "machine.reg";
  if (fs::exists(hive)) return;
  // Logs and the settings file lie in this folder; warnings are logged too.
  const Text log = fromUtf8((output / "log").native());
  check(FileUtility().writeFile(
      fromUtf8(hive.native()), 0,
      u"REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Zoltra\\LogSystem]\r\n"
      u"\"Path\"=\"" +
          log + u"\"\r\n\"Trace\"=\"2\""));
}

void loadSettings(Office& office) {
  Step step("load settings");
  RegistryUtility registry;
  if (!registry.isRegistryInWritePermission()) throw std::runtime_error("the registry is closed");
  check(registry.saveInfoForConnection(u"OrderOffice", u"orders", u"clerk", u"Però, 1887"));
  Text database, user, password;
  check(registry.getInfoForConnection(u"OrderOffice", database, user, password));

  cInifile ini;
  ini.setPath(u"office.ini");  // a bare name: in the Windows folder
  ini.setSection(u"Report");
  office.title = setting(ini, u"Title", u"Ordini di novembre 2026");
  office.firm = setting(ini, u"Firm", u"Cartiera Montelume S.r.l.");
  office.linesOnPage = static_cast<std::size_t>(ini.CLngDefault(setting(ini, u"Lines", u"45"), 45));

  OrderWindow window;
  ini.setSection(u"Window");
  ini.LoadFormPosition(window);  // where it was left; without a screen it stays where it is
  ini.SaveFormPosition(window);
  if (!ini.Success()) throw std::runtime_error("the window's place cannot be kept");
  step.done(3, "stores", toUtf8(user + u" at " + database));
}

// The settings file is the one that other programs read as well.
void rememberLastOrder(const Office& office) {
  Step step("keep the last order");
  RegistryUtility registry;
  if (!registry.isTarnviewDatInWritePermission()) throw std::runtime_error("no settings file");
  Text section = u"OrderOffice", key = u"LastOrder", last, kept;
  for (const Order& order : office.orders) last = std::max(last, order.number);
  check(registry.setTarnviewConfValue(section, key, last));
  check(registry.getTarnviewConfValue(section, key, kept));
  if (kept != last) throw std::runtime_error("the settings file did not keep the last order");
  step.done(1, "entry", toUtf8(kept));
}

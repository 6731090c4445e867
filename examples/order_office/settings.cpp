// What the office must remember: in the registry, an INI file, and the settings file.
#include <veltgeneral/c_ini_file.h>
#include <veltgeneral/registry_utility.h>

#include <algorithm>

#include "office.h"

Done loadSettings(Office& office) {
  RegistryUtility registry;
  if (!registry.isRegistryInWritePermission()) throw std::runtime_error("the registry is closed");
  check(registry.saveInfoForConnection(u"OrderOffice", u"orders", u"clerk", u"Però, 1887"));
  Text database, user, password;
  check(registry.getInfoForConnection(u"OrderOffice", database, user, password));

  cInifile ini;
  ini.setPath(u"office.ini");  // a bare name: in the Windows folder
  ini.setSection(u"Report");
  // A file without the key is given the default, for the user to find there.
  const auto setting = [&](TextView key, TextView otherwise) {
    ini.setKey(key);
    ini.setDefault(otherwise);
    Text value = ini.Value();
    ini.setValue(value);
    if (!ini.Success()) throw std::runtime_error("cannot write " + toUtf8(ini.Path()));
    return value;
  };
  office.title = setting(u"Title", u"Ordini di novembre 2026");
  office.firm = setting(u"Firm", u"Cartiera Montelume S.r.l.");
  office.linesOnPage = std::size_t(std::max(2, ini.CLngDefault(setting(u"Lines", u"45"), 45)));
  office.timeOnForm = std::chrono::seconds(ini.CLngDefault(setting(u"SecondsOnForm", u"0")));
  return {7, "settings", toUtf8(user + u" at " + database)};
}

// The settings file is the one that other programs read as well.
Done rememberLastOrder(Office& office) {
  RegistryUtility registry;
  if (!registry.isTarnviewDatInWritePermission()) throw std::runtime_error("no settings file");
  Text section = u"OrderOffice", key = u"LastOrder", last, kept;
  for (const Order& order : office.orders) last = std::max(last, order.number);
  check(registry.setTarnviewConfValue(section, key, last));
  check(registry.getTarnviewConfValue(section, key, kept));
  return {1, "setting", toUtf8(kept)};
}

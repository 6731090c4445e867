#include "platform/registry.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/linux/settings/settings_text.h"
#include "settings/support.h"
#include "veltgeneral/registry_utility.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;
using namespace veltgeneral::testing;
using platform::RegistryError;
using platform::RegistryKey;
using platform::RegistryRoot;

std::int32_t machine = static_cast<std::int32_t>(0x80000002);

Text keyValue(Text key, Text name, std::int32_t root = machine) {
  return RegistryUtility().getKeyValue(root, key, name);
}

TEST(RegistryUtility, GetKeyValueReadsEachTypeItsWay) {
  const TestHost host;
  const std::string fits(1023, 'x');
  host.setMachineKey(
      "SOFTWARE\\A",
      "@=\"d\"\n\"s\"=\" a\"\n\"e\"=hex(2):25,41,25,00\n\"five\"=dword:5\n"
      "\"ten\"=dword:a\n\"w\"=dword:102\n\"low\"=dword:100\n\"neg\"=dword:ffff\n"
      "\"all\"=dword:ffffffff\n\"big\"=dword:12345678\n\"bin\"=hex:41,42\n\"m\"=hex(7):61,00,00\n"
      "\"nul\"=hex(1):61,00,62\n\"fits\"=\"" +
          fits + "\"\n\"long\"=\"" + fits + "x\"\n\"longbin\"=hex:" + [] {
            std::string bytes = "00";
            for (int i = 0; i < 1024; ++i) bytes += ",00";
            return bytes;
          }());
  struct Case {
    TextView name;
    Text text;
    bool logged = false;
  };
  const Case cases[] = {
      {u"", u"d"},          {u"S", u" a"},
      {u"e", u"%A%"},       {u"five", u"5"},
      {u"ten", u"10"},      {u"w", u"18"},
      {u"low", u"&h"},      {u"neg", u"-1"},
      {u"all", u"-1"},      {u"big", u"305419896"},
      {u"bin", u""},        {u"m", u""},
      {u"nul", u"a"},       {u"fits", fromUtf8(fits)},
      {u"long", u"", true}, {u"longbin", u"", true},
      {u"none", u"", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.name));
    fs::remove(host / "home/tarnview.log");
    EXPECT_EQ(keyValue(u"software\\a", Text(c.name)), c.text);
    EXPECT_EQ(fs::exists(host / "home/tarnview.log"), c.logged);
  }
  EXPECT_EQ(keyValue(u"SOFTWARE\\A", u"s", 7), u"");
  EXPECT_NE(contentOf(host / "home/tarnview.log")
                .find("[VELTGENERAL] [RegistryUtility] [getKeyValue] [] [1] [0] []"),
            std::string::npos);
}

TEST(RegistryUtility, ConnectionSettingsRoundTripRightTrimmed) {
  const TestHost host;
  fs::remove(host / "registry");  // made with the file, for the owner alone
  RegistryUtility registry;
  const ErrInfo saved = registry.saveInfoForConnection(u"App", u" db ", u"us\\er", u"p\"w\"  ");
  EXPECT_EQ(saved.getAttrEqualValue(),
            u"vntTypeInfo=\"3\" vntLocationInfo=\"saveInfoForConnection\" "
            u"vntProcessInfo=\"VELTGENERAL\" vntClassInfo=\"RegistryUtility\" ");
  EXPECT_EQ(fs::status(host / "registry").permissions(), fs::perms(0700));
  EXPECT_EQ(fs::status(host / "registry/machine.reg").permissions(), fs::perms(0600));
  Text db = u"old", user, password;
  EXPECT_EQ(registry.getInfoForConnection(u"APP", db, user, password).typeInfo(), 3);
  EXPECT_EQ(db, u" db");
  EXPECT_EQ(user, u"us\\er");
  EXPECT_EQ(password, u"p\"w\"");
  EXPECT_FALSE(fs::exists(host / "home/tarnview.log"));
  EXPECT_TRUE(registry.getInfoForConnection(u"Nobody", db, user, password).isSuccess());
  EXPECT_EQ(db + user + password, u"");
  EXPECT_TRUE(registry.isRegistryInWritePermission());
  EXPECT_EQ(keyValue(u"SOFTWARE\\Zoltra", u"Check").size(), 14u);

  fs::permissions(host / "registry/machine.reg", fs::perms(0400));
  const ErrInfo refused = registry.saveInfoForConnection(u"App", u"1", u"2", u"3");
  EXPECT_EQ(refused.numberInfo(), eiREGISTRYERROR);
  EXPECT_EQ(refused.descriptionInfo(), u"Error in writing registry:HKEY_LOCAL_MACHINE");
  EXPECT_NE(contentOf(host / "home/tarnview.log").find("-2147220901"), std::string::npos);
  EXPECT_FALSE(registry.isRegistryInWritePermission());
}

TEST(Registry, ImportIsWholeOrNothingAndExportComesBack) {
  const TestHost host;
  const auto page = latin1();
  const auto query = [&](RegistryRoot root, TextView key, TextView name) -> Text {
    const auto open = RegistryKey::open(root, key, page);
    const auto value = open ? open->query(name) : std::nullopt;
    return value ? value->text : u"(none)";
  };
  platform::importRegistry("\xFF\xFE" + platform::utf16OfInner("REGEDIT4\n"), page);
  EXPECT_FALSE(fs::exists(host / "registry/machine.reg"));
  const std::string text =
      "Windows Registry Editor Version 5.00\n\n[HKEY_CLASSES_ROOT\\Acme]\n@=\"class\"\n"
      "[HKEY_CURRENT_USER\\Acme]\n\"u\"=\"mine\"\n[HKEY_LOCAL_MACHINE\\Acme\\Sub]\n\"a\"=\"1\"\n"
      "\"b\"=hex(1):32,00,\\\n  00,00\n";
  platform::importRegistry(text, page);
  EXPECT_EQ(query(RegistryRoot::localMachine, u"software\\classes\\acme", u""), u"class");
  EXPECT_EQ(query(RegistryRoot::classes, u"Acme", u""), u"class");
  EXPECT_EQ(query(RegistryRoot::currentUser, u"Acme", u"U"), u"mine");
  EXPECT_TRUE(fs::exists(host / "registry/user.reg"));
  // A root stays, also the one that lies below another.
  platform::importRegistry("REGEDIT4\n[-HKEY_CLASSES_ROOT]\n[-HKEY_LOCAL_MACHINE]\n", page);
  EXPECT_FALSE(platform::removeRegistryKey(RegistryRoot::classes, u"\\", page));
  EXPECT_EQ(query(RegistryRoot::classes, u"Acme", u""), u"class");
  platform::importRegistry(
      "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Acme\\Sub]\n\"a\"=-\n\"c\"=\"3\"\n[-HKEY_CURRENT_USER\\Acme]"
      "\n",
      page);
  EXPECT_EQ(query(RegistryRoot::localMachine, u"Acme\\Sub", u"a"), u"(none)");
  EXPECT_EQ(query(RegistryRoot::currentUser, u"Acme", u"U"), u"(none)");
  const auto exported = platform::exportRegistry(RegistryRoot::localMachine, u"ACME", true, page);
  ASSERT_TRUE(exported);
  EXPECT_TRUE(platform::removeRegistryKey(RegistryRoot::localMachine, u"Acme", page));
  EXPECT_FALSE(platform::removeRegistryKey(RegistryRoot::localMachine, u"Acme", page));
  EXPECT_FALSE(platform::removeRegistryKey(RegistryRoot::localMachine, u"", page));
  EXPECT_EQ(query(RegistryRoot::localMachine, u"Acme\\Sub", u"b"), u"(none)");
  platform::importRegistry(*exported, page);
  EXPECT_EQ(query(RegistryRoot::localMachine, u"Acme\\Sub", u"b"), u"2");
  EXPECT_TRUE(platform::removeRegistryValue(RegistryRoot::localMachine, u"Acme\\Sub", u"B", page));
  EXPECT_FALSE(platform::removeRegistryValue(RegistryRoot::localMachine, u"Acme\\Sub", u"B", page));

  const std::string before = contentOf(host / "registry/machine.reg");
  const std::string deep = [] {
    std::string path = "HKEY_USERS";
    for (int i = 0; i < 512; ++i) path += "\\a";
    return path;
  }();
  EXPECT_FALSE(platform::writeRegistryText(RegistryRoot::users, fromUtf8(deep), u"v", u"1", page));
  struct Malformed {
    std::string text;
    std::size_t line;
  };
  const Malformed malformed[] = {
      {"", 1},
      {"[HKEY_USERS\\a]\n", 1},
      {"REGEDIT4\n\n[HKEY_USERS\\a]\n\"v\"=\"1\n", 4},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v\"=hex:01,\\\n\n; c\n[HKEY_USERS\\b]\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v\"=hex:01,,2\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v\"=dword:123456789\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v\"=qword:1\n", 3},
      {"REGEDIT4\n[HKLM\\a]\n", 2},
      {"REGEDIT4\n\"v\"=\"1\"\n", 2},
      {"REGEDIT4\n[-HKEY_USERS\\a]\n\"v\"=\"1\"\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a\n", 2},
      {"REGEDIT4\nREGEDIT4\n", 2},
      {"REGEDIT4\n[" + deep + "]\n", 2},
      {"REGEDIT4\n[HKEY_CLASSES_ROOT" + deep.substr(12) + "]\n", 2},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v\"=\"1\" 2\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v\"=hex:1 z\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v\"=hex(7:01\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v\"=hex(7)01\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a]\n\"v=1\n", 3},
      {"REGEDIT4\n[HKEY_USERS\\a]\n@:1\n", 3},
  };
  for (const Malformed& m : malformed) {
    SCOPED_TRACE(m.text);
    try {
      platform::importRegistry(m.text, page);
      ADD_FAILURE();
    } catch (const RegistryError& error) {
      EXPECT_EQ(error.line(), m.line);
    }
  }
  EXPECT_EQ(contentOf(host / "registry/machine.reg"), before);
}

// Other programs' edits: in place, of the same length, at any moment.
TEST(Registry, NoEditIsMissed) {
  const TestHost host;
  for (int i = 0; i < 300; ++i) {
    const std::string value = std::to_string(1000 + i);
    host.setMachineKey("K", "\"v\"=\"" + value + "\"");
    ASSERT_EQ(keyValue(u"K", u"v"), fromUtf8(value));
  }
}

TEST(RegistryUtility, TarnviewDatHasTwoPathRules) {
  const TestHost host;
  fs::create_directory(host / "drive/data");
  host.setMachineKey("SOFTWARE\\Zoltra\\LogSystem", "\"Path\"=\"C:\\\\data\"\n\"Trace\"=\"2\"");
  RegistryUtility registry;
  Text section = u"S";
  Text key = u"k";
  Text value = u"a";
  value.push_back(u'\u4E00');
  EXPECT_EQ(registry.setTarnviewConfValue(section, key, value).typeInfo(), 0);
  EXPECT_EQ(value, u"a?");
  EXPECT_EQ(contentOf(host / "drive/data/Tarnview.dat"), "[S]\r\nk=a?\r\n");
  EXPECT_FALSE(fs::exists(host / "drive/data/tarnview.log"));
  value.clear();
  EXPECT_TRUE(registry.getTarnviewConfValue(section, key, value).isSuccess());
  EXPECT_EQ(value, u"a?");
  EXPECT_NE(contentOf(host / "drive/data/tarnview.log").find("[2] [0] [Path:C:\\data\\]"),
            std::string::npos);
  EXPECT_EQ(registry.setTarnviewDatFileValue(u"whole").locationInfo(), u"writeFile");
  EXPECT_EQ(contentOf(host / "drive/dataTarnview.dat"), "whole\r\n");
  EXPECT_TRUE(registry.isTarnviewDatInWritePermission());
  EXPECT_EQ(contentOf(host / "drive/data/Tarnview.dat"),
            "[S]\r\nk=a?\r\n[License]\r\nWriteTest=\r\n");
  fs::permissions(host / "drive/data/Tarnview.dat", fs::perms(0444));
  EXPECT_FALSE(registry.isTarnviewDatInWritePermission());
}

}  // namespace
}  // namespace veltgeneral

#include "platform/registry.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "settings/support.h"
#include "veltgeneral/registry_utility.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;
using platform::RegistryError;
using platform::RegistryKey;
using platform::RegistryRoot;

// The registry of a host of its own, asked through the class and through its seam.
class Registry : public testing::Test {
 protected:
  static constexpr auto kMachine = static_cast<std::int32_t>(RegistryRoot::localMachine);

  Text keyValue(Text key, Text name, std::int32_t root = kMachine) {
    return registry_.getKeyValue(root, key, name);
  }
  Text query(RegistryRoot root, TextView key, TextView name) const {
    const auto open = RegistryKey::open(root, key, page_);
    const auto value = open ? open->query(name) : std::nullopt;
    return value ? value->text : u"(none)";
  }
  void import(std::string_view text) const {
    platform::importRegistry(std::string("REGEDIT4\n").append(text), page_);
  }
  bool logHas(const std::string& text) const {
    return host_.get("home/tarnview.log").find(text) != std::string::npos;
  }

  const test::TestHost host_;
  const platform::NarrowPage& page_ = test::latin1();
  RegistryUtility registry_;
};

TEST_F(Registry, GetKeyValueReadsEachTypeItsWay) {
  const std::string fits(1023, 'x');
  std::string bytes = "00";
  for (int i = 0; i < 1024; ++i) bytes += ",00";
  host_.setMachineKey(
      "SOFTWARE\\A",
      "@=\"d\"\n\"s\"=\" a\"\n\"e\"=hex(2):25,41,25,00\n\"five\"=dword:5\n"
      "\"ten\"=dword:a\n\"w\"=dword:102\n\"low\"=dword:100\n\"neg\"=dword:ffff\n"
      "\"all\"=dword:ffffffff\n\"big\"=dword:12345678\n\"bin\"=hex:41,42\n\"m\"=hex(7):61,00,00\n"
      "\"nul\"=hex(1):61,00,62\n\"fits\"=\"" +
          fits + "\"\n\"long\"=\"" + fits + "x\"\n\"longbin\"=hex:" + bytes);
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
    fs::remove(host_ / "home/tarnview.log");
    EXPECT_EQ(keyValue(u"software\\a", Text(c.name)), c.text);
    EXPECT_EQ(fs::exists(host_ / "home/tarnview.log"), c.logged);
  }
  EXPECT_EQ(keyValue(u"SOFTWARE\\A", u"s", 7), u"");
  EXPECT_TRUE(logHas("[VELTGENERAL] [RegistryUtility] [getKeyValue] [] [1] [0] []"));
}

TEST_F(Registry, ConnectionSettingsRoundTripRightTrimmed) {
  fs::remove(host_ / "registry");  // made with the file, for the owner alone
  const ErrInfo saved = registry_.saveInfoForConnection(u"App", u" db ", u"us\\er", u"p\"w\"  ");
  EXPECT_EQ(saved.getAttrEqualValue(),
            u"vntTypeInfo=\"3\" vntLocationInfo=\"saveInfoForConnection\" "
            u"vntProcessInfo=\"VELTGENERAL\" vntClassInfo=\"RegistryUtility\" ");
  EXPECT_EQ(fs::status(host_ / "registry").permissions(), fs::perms(0700));
  EXPECT_EQ(fs::status(host_ / "registry/machine.reg").permissions(), fs::perms(0600));
  Text db = u"old", user, password;
  EXPECT_EQ(registry_.getInfoForConnection(u"APP", db, user, password).typeInfo(), 3);
  EXPECT_EQ(db + u"|" + user + u"|" + password, u" db|us\\er|p\"w\"");
  EXPECT_FALSE(fs::exists(host_ / "home/tarnview.log"));
  EXPECT_TRUE(registry_.getInfoForConnection(u"Nobody", db, user, password).isSuccess());
  EXPECT_EQ(db + user + password, u"");
  EXPECT_TRUE(registry_.isRegistryInWritePermission());
  EXPECT_EQ(keyValue(u"SOFTWARE\\Zoltra", u"Check").size(), 14u);

  fs::permissions(host_ / "registry/machine.reg", fs::perms(0400));
  const ErrInfo refused = registry_.saveInfoForConnection(u"App", u"1", u"2", u"3");
  EXPECT_EQ(refused.numberInfo(), eiREGISTRYERROR);
  EXPECT_EQ(refused.descriptionInfo(), u"Error in writing registry:HKEY_LOCAL_MACHINE");
  EXPECT_TRUE(logHas("-2147220901"));
  EXPECT_FALSE(registry_.isRegistryInWritePermission());
}

TEST_F(Registry, ExportComesBack) {
  import("");
  EXPECT_FALSE(fs::exists(host_ / "registry/machine.reg"));
  platform::importRegistry(
      "Windows Registry Editor Version 5.00\n\n[HKEY_CLASSES_ROOT\\Acme]\n@=\"class\"\n"
      "[HKEY_CURRENT_USER\\Acme]\n\"u\"=\"mine\"\n[HKEY_LOCAL_MACHINE\\Acme\\Sub]\n\"a\"=\"1\"\n"
      "\"b\"=hex(1):32,00,\\\n  00,00\n",
      page_);
  EXPECT_EQ(query(RegistryRoot::localMachine, u"software\\classes\\acme", u""), u"class");
  EXPECT_EQ(query(RegistryRoot::currentUser, u"Acme", u"U"), u"mine");
  EXPECT_TRUE(fs::exists(host_ / "registry/user.reg"));
  // A root stays, also the one that lies below another.
  import("[-HKEY_CLASSES_ROOT]\n[-HKEY_LOCAL_MACHINE]\n");
  EXPECT_FALSE(platform::removeRegistryKey(RegistryRoot::classes, u"\\", page_));
  EXPECT_FALSE(platform::removeRegistryKey(RegistryRoot::localMachine, u"", page_));
  EXPECT_EQ(query(RegistryRoot::classes, u"Acme", u""), u"class");
  import("[HKEY_LOCAL_MACHINE\\Acme\\Sub]\n\"a\"=-\n\"c\"=\"3\"\n[-HKEY_CURRENT_USER\\Acme]\n");
  EXPECT_EQ(query(RegistryRoot::localMachine, u"Acme\\Sub", u"a"), u"(none)");
  EXPECT_EQ(query(RegistryRoot::currentUser, u"Acme", u"U"), u"(none)");

  const auto exported = platform::exportRegistry(RegistryRoot::localMachine, u"ACME", true, page_);
  ASSERT_TRUE(exported);
  for (const bool there : {true, false})
    EXPECT_EQ(platform::removeRegistryKey(RegistryRoot::localMachine, u"Acme", page_), there);
  EXPECT_EQ(query(RegistryRoot::localMachine, u"Acme\\Sub", u"b"), u"(none)");
  platform::importRegistry(*exported, page_);
  EXPECT_EQ(query(RegistryRoot::localMachine, u"Acme\\Sub", u"b"), u"2");
  for (const bool there : {true, false})
    EXPECT_EQ(platform::removeRegistryValue(RegistryRoot::localMachine, u"Acme\\Sub", u"B", page_),
              there);
}

TEST_F(Registry, AMalformedImportChangesNothing) {
  host_.setMachineKey("Acme", "\"v\"=\"1\"");
  const std::string before = host_.get("registry/machine.reg");
  std::string deep = "HKEY_USERS";
  for (int i = 0; i < 512; ++i) deep += "\\a";
  EXPECT_FALSE(platform::writeRegistryText(RegistryRoot::users, fromUtf8(deep), u"v", u"1", page_));
  // The line at fault, counted from 1.
  const std::pair<std::string, std::size_t> malformed[] = {
      {"", 1},
      {"[HKEY_USERS\\a]\n", 1},
      {"REGEDIT4\nREGEDIT4\n", 2},
      {"REGEDIT4\n[HKLM\\a]\n", 2},
      {"REGEDIT4\n\"v\"=\"1\"\n", 2},
      {"REGEDIT4\n[HKEY_USERS\\a\n", 2},
      {"REGEDIT4\n[" + deep + "]\n", 2},
      {"REGEDIT4\n[HKEY_CLASSES_ROOT" + deep.substr(12) + "]\n", 2},
      {"REGEDIT4\n[-HKEY_USERS\\a]\n\"v\"=\"1\"\n", 3},
      {"REGEDIT4\n\n[HKEY_USERS\\a]\n\"v\"=hex:01,\\\n\n; c\n[HKEY_USERS\\b]\n", 4},
  };
  const auto expectRefused = [&](const std::string& text, std::size_t line) {
    SCOPED_TRACE(text);
    try {
      platform::importRegistry(text, page_);
      ADD_FAILURE();
    } catch (const RegistryError& error) {
      EXPECT_EQ(error.line(), line);
    }
  };
  for (const auto& [text, line] : malformed) expectRefused(text, line);
  for (const char* value :
       {"\"v\"=\"1", "\"v\"=hex:01,,2", "\"v\"=dword:123456789", "\"v\"=qword:1", "\"v\"=\"1\" 2",
        "\"v\"=hex:1 z", "\"v\"=hex(7:01", "\"v\"=hex(7)01", "\"v=1", "@:1"})
    expectRefused(std::string("REGEDIT4\n[HKEY_USERS\\a]\n").append(value), 3);
  EXPECT_EQ(host_.get("registry/machine.reg"), before);
}

// Other programs' edits: in place, of the same length, at any moment.
TEST_F(Registry, NoEditIsMissed) {
  for (int i = 0; i < 300; ++i) {
    const std::string value = std::to_string(1000 + i);
    host_.setMachineKey("K", "\"v\"=\"" + value + "\"");
    ASSERT_EQ(keyValue(u"K", u"v"), fromUtf8(value));
  }
}

TEST_F(Registry, TarnviewDatHasTwoPathRules) {
  fs::create_directory(host_ / "drive/data");
  host_.setMachineKey("SOFTWARE\\Zoltra\\LogSystem", "\"Path\"=\"C:\\\\data\"\n\"Trace\"=\"2\"");
  Text section = u"S", key = u"k", value = u"a\u4E00";
  EXPECT_EQ(registry_.setTarnviewConfValue(section, key, value).typeInfo(), 0);
  EXPECT_EQ(value, u"a?");
  EXPECT_EQ(host_.get("drive/data/Tarnview.dat"), "[S]\r\nk=a?\r\n");
  EXPECT_FALSE(fs::exists(host_ / "drive/data/tarnview.log"));
  value.clear();
  EXPECT_TRUE(registry_.getTarnviewConfValue(section, key, value).isSuccess());
  EXPECT_EQ(value, u"a?");
  EXPECT_NE(host_.get("drive/data/tarnview.log").find("[2] [0] [Path:C:\\data\\]"),
            std::string::npos);
  EXPECT_EQ(registry_.setTarnviewDatFileValue(u"whole").locationInfo(), u"writeFile");
  EXPECT_EQ(host_.get("drive/dataTarnview.dat"), "whole\r\n");
  EXPECT_TRUE(registry_.isTarnviewDatInWritePermission());
  EXPECT_EQ(host_.get("drive/data/Tarnview.dat"), "[S]\r\nk=a?\r\n[License]\r\nWriteTest=\r\n");
  fs::permissions(host_ / "drive/data/Tarnview.dat", fs::perms(0444));
  EXPECT_FALSE(registry_.isTarnviewDatInWritePermission());
}

}  // namespace
}  // namespace veltgeneral

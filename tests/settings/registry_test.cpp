#include "platform/registry.h"

#include <gtest/gtest.h>

#include <array>

#include "support/test_host.h"
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
  static constexpr RegistryRoot kRoot = RegistryRoot::localMachine;

  Text keyValue(Text key, Text name, std::int32_t root = static_cast<std::int32_t>(kRoot)) {
    return registry_.getKeyValue(root, key, name);
  }
  Text query(RegistryRoot root, TextView key, TextView name) const {
    const auto open = RegistryKey::open(root, key, page_);
    const auto value = open ? open->query(name) : std::nullopt;
    return value ? value->text : u"(none)";
  }
  // "|" ends a line.
  void import(const std::string& text) const {
    platform::importRegistry(test::withLineEnds("REGEDIT4|" + text), page_);
  }
  bool logHas(const std::string& text) const {
    return host_.get("home/tarnview.log").find(text) != std::string::npos;
  }

  const test::TestHost host_;
  const platform::NarrowPage& page_ = test::latin1();
  RegistryUtility registry_;
};

TEST_F(Registry, GetKeyValueReadsEachTypeItsWay) {
  const auto expectRead = [&](const std::string& data, TextView text, bool logged = false) {
    fs::remove(host_ / "home/tarnview.log");
    host_.setMachineKey("SOFTWARE\\A", "\"v\"=" + data + "\n@=\"d\"");
    EXPECT_EQ(keyValue(u"software\\a", u"V"), text) << data;
    EXPECT_EQ(fs::exists(host_ / "home/tarnview.log"), logged) << data;
  };
  constexpr std::pair<const char*, TextView> kCases[] = {
      {"\" a\"", u" a"},         {"hex(2):25,41,25,00", u"%A%"},
      {"hex(1):61,00,62", u"a"}, {"dword:5", u"5"},
      {"dword:a", u"10"},        {"dword:102", u"18"},
      {"dword:100", u"&h"},      {"dword:ffff", u"-1"},
      {"dword:ffffffff", u"-1"}, {"dword:12345678", u"305419896"},
      {"hex:41,42", u""},        {"hex(7):61,00,00", u""}};
  for (const auto& [data, text] : kCases) expectRead(data, text);
  const std::string fits(1023, 'x');
  expectRead("\"" + fits + "\"", fromUtf8(fits));
  expectRead("\"" + fits + "x\"", u"", true);
  std::string bytes = "hex:00";
  for (int i = 0; i < 1024; ++i) bytes += ",00";
  expectRead(bytes, u"", true);
  expectRead("-", u"", true);
  EXPECT_TRUE(logHas("[VELTGENERAL] [RegistryUtility] [getKeyValue] [] [1] [0] []"));
  EXPECT_EQ(keyValue(u"SOFTWARE\\A", u""), u"d");
  EXPECT_EQ(keyValue(u"SOFTWARE\\A", u"", 7), u"");
}

TEST_F(Registry, ConnectionSettingsRoundTripRightTrimmed) {
  fs::remove(host_ / "registry");  // made with the file, for the owner alone
  const ErrInfo saved = registry_.saveInfoForConnection(u"App", u" db ", u"us\\er ", u"p\"w\"  ");
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

TEST_F(Registry, EachRootHasItsHiveAndStays) {
  import("");
  EXPECT_FALSE(fs::exists(host_ / "registry/machine.reg"));
  import(R"([HKEY_CLASSES_ROOT\Acme]|@="class"|[HKEY_CURRENT_USER\Acme]|"u"=hex(1):32,\|  00)");
  EXPECT_EQ(query(kRoot, u"software\\classes\\acme", u""), u"class");
  EXPECT_EQ(query(RegistryRoot::currentUser, u"Acme", u"U"), u"2");
  EXPECT_TRUE(fs::exists(host_ / "registry/user.reg"));
  // Also the root that lies below another.
  import("[-HKEY_CLASSES_ROOT]|[-HKEY_LOCAL_MACHINE]");
  EXPECT_FALSE(platform::removeRegistryKey(RegistryRoot::classes, u"\\", page_));
  EXPECT_FALSE(platform::removeRegistryKey(kRoot, u"", page_));
  EXPECT_EQ(query(RegistryRoot::classes, u"Acme", u""), u"class");
  for (const bool there : {true, false})
    EXPECT_EQ(platform::removeRegistryValue(RegistryRoot::classes, u"ACME", u"", page_), there);
  for (const bool there : {true, false})
    EXPECT_EQ(platform::removeRegistryKey(RegistryRoot::currentUser, u"Acme", page_), there);
  EXPECT_EQ(query(RegistryRoot::currentUser, u"Acme", u"U"), u"(none)");
}

TEST_F(Registry, ChangesTouchTheLinesTheyMust) {
  // The hive, what is imported, the hive: "~" stands for a root, "|" ends a line.
  const std::array<std::string, 3> cases[] = {
      {R"(REGEDIT4||[~\K]|"a"="1" ; note|; c||[~\z]|)", R"([~\k]|"b"="2")",
       R"(REGEDIT4||[~\K]|"a"="1" ; note|"b"="2"|; c||[~\z]|)"},
      // The comment behind a value stays.
      {R"([~\k]|"a"="\"1;" ; it's "a"|"b"=hex:01,\|  ;c|  02  ;d|"c"=dword:1;e)",
       R"([~\k]|"a"="2"|"b"="3"|"c"=hex:04)",
       R"([~\k]|"a"="2" ; it's "a"|"b"="3"  ;d|"c"=hex:04;e|)"},
      // The last of equal values is the one in force; the earlier ones go.
      {R"([~\k]|"a"="1"|"A"="2"||[~\K]|"a"="3")", R"([~\k]|"a"="2")", R"([~\k]||[~\K]|"a"="2"|)"},
      {R"([~\k]|"a"=hex:01,\|  02|"b"="2"|)", R"([~\k]|"A"=-)", R"([~\k]|"b"="2"|)"},
      // With sub-keys, without the comment that leads the next key.
      {R"([~\k]|"a"="1"||; z|[~\z]|[~\k\x]|[~\kk]|)", R"([-~\K])", R"(; z|[~\z]|[~\kk]|)"},
      {R"([~\k]|"a"="1"|[~\k\x]|)", R"([~\k\x]|"q"="lost"|[-~\k]|[~\k]|"b"="2"|[~\m])",
       R"(Windows Registry Editor Version 5.00||[~\k]|"b"="2"||[~\m]||)"},
      // What stands above a deletion is dead: the value is set behind it.
      {R"([~\k]|"a"="1"|[-~]|[-~\K])", R"([~\k]|"a"="2")",
       R"([~\k]|"a"="1"|[-~]|[-~\K]||[~\k]|"a"="2"||)"},
      {R"([~\k\x]|"a"="1"|[-~\k]|)", R"([~\k\x]|"a"="2")",
       R"([~\k\x]|"a"="1"|[-~\k]||[~\k\x]|"a"="2"||)"},
      // Next to a key that goes.
      {R"([~\k]|"b"="1"|[~\z]|)", R"([-~\z]|[~\k]|"a"="2")", R"([~\k]|"b"="1"|"a"="2"|)"},
      // What is cut off: a line without its end, a key without its bracket.
      {R"(|[~\k])", R"([~\k]|"a"="\\\"\n")", R"(|[~\k]|"a"="\\\"\n"|)"},
      {R"(|[~\k)", R"([~\k]|"a"="2")", R"(|[~\k||[~\k]|"a"="2"||)"},
  };
  const auto whole = [](const std::string& text) {
    std::string out;
    for (const char c : text) c == '~' ? out.append("HKEY_USERS") : out.append(1, c);
    return test::withLineEnds(out);
  };
  for (const auto& [before, change, after] : cases) {
    host_.put("registry/machine.reg", whole(before));
    import(whole(change));
    EXPECT_EQ(host_.get("registry/machine.reg"), whole(after)) << change;
  }
  std::filesystem::remove(host_ / "registry/machine.reg");
  import(whole(R"([~\k]|"a"="2")"));
  EXPECT_EQ(host_.get("registry/machine.reg"),
            "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_USERS\\k]\r\n\"a\"=\"2\"\r\n\r\n");
}

TEST_F(Registry, AMalformedImportChangesNothing) {
  host_.setMachineKey("Acme", "\"v\"=\"1\"");
  const std::string before = host_.get("registry/machine.reg");
  std::string deep;
  for (int i = 0; i < 512; ++i) deep += "\\a";
  EXPECT_FALSE(platform::writeRegistryText(RegistryRoot::users, fromUtf8(deep), u"v", u"1", page_));
  // The line at fault, counted from 1; "|" ends a line.
  const auto expectRefused = [&](std::size_t line, const std::string& head,
                                 std::initializer_list<std::string> tails) {
    for (const std::string& tail : tails) {
      try {
        platform::importRegistry(test::withLineEnds(head + tail), page_);
        ADD_FAILURE() << head << tail;
      } catch (const RegistryError& error) {
        EXPECT_EQ(error.line(), line) << head << tail;
      }
    }
  };
  expectRefused(1, "", {"", "[HKEY_USERS\\a]|"});
  expectRefused(2, "REGEDIT4|",
                {"REGEDIT4|", "[HKLM\\a]|", R"("v"="1"|)", "[HKEY_USERS\\a|",
                 "[HKEY_USERS" + deep + "]|", "[HKEY_CLASSES_ROOT" + deep.substr(2) + "]|"});
  expectRefused(3, "REGEDIT4|[-HKEY_USERS\\a]|", {R"("v"="1"|)"});
  expectRefused(3, "REGEDIT4|[HKEY_USERS\\a]|",
                {R"("v"="1)", R"("v"=hex:01,,2)", R"("v"=dword:123456789)", R"("v"=qword:1)",
                 R"("v"="1" 2)", R"("v"=hex:1 z)", R"("v"=hex(7:01)", R"("v"=hex(7)01)", R"("v=1)",
                 "@:1", R"("v"=hex:01,\||; c|[HKEY_USERS\b]|)"});
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

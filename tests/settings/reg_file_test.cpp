#include "platform/linux/settings/reg_file.h"

#include <gtest/gtest.h>

#include "support.h"

namespace veltgeneral::platform {
namespace {

using test::latin1;

constexpr std::string_view kSample =
    "Windows Registry Editor Version 5.00\r\n"
    "\r\n"
    "; whose this is\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Acme]\r\n"
    "\"Text\"=\"C:\\\\logs \\\"x\\\"\"\r\n"
    "  \"Number\" = dword:fa0\n"
    "@=\"default\"\r\n"
    "\"Expand\"=hex(2):25,00,41,00,\\\r\n"
    "  ; between the pieces\r\n"
    "\r\n"
    "  25,00,00,00\r\n"
    "\"List\"=hex(7):61,00,00,00,62,00,00,00,00,00\r\n"
    "\"Raw\"=hex:01,2,ff\r\n"
    "\"Odd\"=hex(1A): 7 ; note\r\n"
    "\"Half\"=hex(7):61,00\r\n"
    "\"Not\"=\"x\" y\r\n"
    "\"text\"=\"the last wins\"\r\n"
    "what is this\r\n"
    "\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Acme\\[x] y]\r\n"
    "\"\xC3\xA9t\xC3\xA9\"=\"\xE2\x82\xAC\"\r\n";

std::optional<RegistryValue> ask(const RegistryFile& file, TextView key, TextView name) {
  const std::uint32_t node = file.find(key);
  return node == RegistryFile::kNone ? std::nullopt : file.query(node, name);
}

TEST(RegFile, ReadsEveryKindOfValueWithoutRegardToCase) {
  const RegistryFile file(kSample, latin1());
  constexpr TextView kKey = u"hkey_local_machine\\Software\\ACME";
  using Bytes = std::vector<std::uint8_t>;
  struct Case {
    TextView name;
    RegistryValue value;
  };
  const Case cases[] = {
      {u"TEXT", {RegistryType::text, u"the last wins"}},
      {u"number", {RegistryType::number, {}, Bytes{0xA0, 0x0F, 0, 0}}},
      {u"", {RegistryType::text, u"default"}},
      {u"expand", {RegistryType::expandableText, u"%A%"}},
      {u"list", {RegistryType::texts, Text(u"a\0b\0", 4)}},
      {u"raw", {RegistryType::binary, {}, Bytes{1, 2, 0xFF}}},
      {u"odd", {static_cast<RegistryType>(0x1A), {}, Bytes{7}}},
      {u"half", {RegistryType::texts, Text(u"a\0", 2)}},  // the NULs at the end are supplied
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(toUtf8(c.name));
    EXPECT_EQ(ask(file, kKey, c.name), c.value);
  }
  EXPECT_EQ(ask(file, u"HKEY_LOCAL_MACHINE\\\\SOFTWARE\\Acme\\[X] y\\", u"ÉTÉ"),
            RegistryValue{.text = u"€"});
  EXPECT_EQ(file.subKeyNames(file.find(kKey)), std::vector<Text>{u"[x] y"});
  EXPECT_EQ(ask(file, kKey, u"not"), std::nullopt);
  EXPECT_EQ(file.valueNames(file.find(kKey)).size(), std::size(cases));
  EXPECT_EQ(file.find(u"HKEY_LOCAL_MACHINE\\SOFT"), RegistryFile::kNone);
}

TEST(RegFile, DeletionsUndoWhatStandsAboveThem) {
  const RegistryFile file(
      "REGEDIT4\n[HKEY_USERS\\a\\b]\n\"v\"=\"1\"\n\"w\"=\"1\"\n[-HKEY_USERS\\A]\n"
      "[HKEY_USERS\\a]\n\"v\"=hex(2):e8,00\n\"x\"=\"1\"\n\"X\"=-\n[-HKEY_USERS]\n[broken\n\"y\"="
      "\"1\"",
      latin1());
  EXPECT_EQ(file.find(u"HKEY_USERS\\a\\b"), RegistryFile::kNone);
  EXPECT_EQ(ask(file, u"HKEY_USERS\\a", u"v"),
            (RegistryValue{RegistryType::expandableText, u"è"}));  // version 4 texts
  EXPECT_EQ(file.valueNames(file.find(u"HKEY_USERS\\a")), std::vector<Text>{u"v"});
}

using Changes = std::vector<RegChange>;

RegChange change(RegChange::Kind kind, std::string key, std::string name = {},
                 RegistryValue value = {}) {
  return {kind, std::move(key), std::move(name), std::move(value)};
}

// A text, where nothing else is said.
RegChange set(std::string key, std::string name, Text text) {
  return change(RegChange::Kind::setValue, key, name, {.text = std::move(text)});
}

TEST(RegEdit, TouchesTheLinesItMust) {
  constexpr auto kRemoveKey = RegChange::Kind::removeKey;
  const Changes setA{set("R\\k", "a", u"2")};
  struct Case {
    std::string before;
    Changes changes;
    std::string after;
  };
  const Case cases[] = {
      {"",
       {set("R\\k", "v", u"a\\b\"\n")},
       "Windows Registry Editor Version 5.00\r\n\r\n[R\\k]\r\n\"v\"=\"a\\\\b\\\"\\n\"\r\n\r\n"},
      {"REGEDIT4\n\n[R\\K]\n\"a\"=\"1\" ; note\n; c\n\n[R\\z]\n",
       {set("R\\k", "b", u"2")},
       "REGEDIT4\n\n[R\\K]\n\"a\"=\"1\" ; note\n\"b\"=\"2\"\n; c\n\n[R\\z]\n"},
      // The comment behind a value stays.
      {"[R\\k]\n\"a\"=\"\\\"1;\" ; it's \"a\"\n\"b\"=hex:01,\\\n  ;c\n  02\t;d\n\"c\"=dword:1;e",
       {set("R\\k", "a", u"2"), set("R\\k", "b", u"3"),
        change(RegChange::Kind::setValue, "R\\k", "c", {RegistryType::binary, {}, {4}})},
       "[R\\k]\n\"a\"=\"2\" ; it's \"a\"\n\"b\"=\"3\"\t;d\n\"c\"=hex:04;e\n"},
      // The last of equal values is the one in force; the earlier ones go.
      {"[R\\k]\n\"a\"=\"1\"\n\"A\"=\"2\"\n\n[r\\K]\n\"a\"=\"3\"", setA,
       "[R\\k]\n\n[r\\K]\n\"a\"=\"2\"\n"},
      {"[R\\k]\n\"a\"=hex:01,\\\n  02\n\"b\"=\"2\"\n",
       {change(RegChange::Kind::removeValue, "R\\k", "A")},
       "[R\\k]\n\"b\"=\"2\"\n"},
      // With sub-keys, without the comment that leads the next key.
      {"[R\\k]\n\"a\"=\"1\"\n\n; z\n[R\\z]\n[R\\k\\x]\n[R\\kk]\n",
       {change(kRemoveKey, "R\\K")},
       "; z\n[R\\z]\n[R\\kk]\n"},
      {"[R\\k]\n\"a\"=\"1\"\n[R\\k\\x]\n",
       {set("R\\k\\x", "q", u"lost"), change(kRemoveKey, "R\\k"), set("R\\k", "b", u"2"),
        change(RegChange::Kind::createKey, "R\\m")},
       "Windows Registry Editor Version 5.00\n\n[R\\k]\n\"b\"=\"2\"\n\n[R\\m]\n\n"},
      // What stands above a deletion is dead: the value is set behind it.
      {"[R\\k]\n\"a\"=\"1\"\n[-R]\n[-R\\K]", setA,
       "[R\\k]\n\"a\"=\"1\"\n[-R]\n[-R\\K]\n\n[R\\k]\n\"a\"=\"2\"\n\n"},
      {"[R\\k\\x]\n\"a\"=\"1\"\n[-R\\k]\n",
       {set("R\\k\\x", "a", u"2")},
       "[R\\k\\x]\n\"a\"=\"1\"\n[-R\\k]\n\n[R\\k\\x]\n\"a\"=\"2\"\n\n"},
      // What is cut off: a line without its end, a key without its bracket.
      {"[R\\k", setA, "[R\\k\r\n\r\n[R\\k]\r\n\"a\"=\"2\"\r\n\r\n"},
      {"[R\\k]", setA, "[R\\k]\r\n\"a\"=\"2\"\r\n"},
      // Next to a key that goes.
      {"[R\\k]\n\"b\"=\"1\"\n[R\\z]\n",
       {change(kRemoveKey, "R\\z"), set("R\\k", "a", u"2")},
       "[R\\k]\n\"b\"=\"1\"\n\"a\"=\"2\"\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.before);
    EXPECT_EQ(editReg(c.before, c.changes, latin1()), c.after);
  }
}

TEST(RegEdit, WritesWhatReadsBackTheSame) {
  const RegistryValue values[] = {
      {RegistryType::text, Text(u"a\0b", 3)},
      {RegistryType::text, u"\xD800 lone"},
      {RegistryType::text, u"a\r\nb"},
      {RegistryType::expandableText, u"%TEMP%"},
      {RegistryType::texts, Text(u"x\0\0y\0", 5)},
      {RegistryType::number, {}, {1, 2, 3, 0xFE}},
      {RegistryType::number, {}, {1, 2}},
      {RegistryType::number64, {}, {1, 2, 3, 4, 5, 6, 7, 8}},
      {RegistryType::binary, {}, std::vector<std::uint8_t>(200, 0xAB)},
      {RegistryType::none, {}, {}},
  };
  for (const std::string_view version : {"Windows Registry Editor Version 5.00\n", "REGEDIT4\n"}) {
    for (const RegistryValue& value : values) {
      if (version[0] == 'R' && value.text.find(0xD800) != Text::npos) continue;  // no such byte
      const std::string after =
          editReg(version, {change(RegChange::Kind::setValue, "HKEY_USERS\\k", "\"n\\\n", value)},
                  latin1());
      const RegistryFile file(after, latin1());
      EXPECT_EQ(ask(file, u"HKEY_USERS\\k", u"\"N\\\n"), value) << after;
      for (std::size_t at = 0, end = 0; at < after.size(); at = end + 1) {
        end = std::min(after.find('\n', at), after.size());
        EXPECT_LE(end - at, 80u) << after;
      }
    }
  }
}

TEST(RegFile, KeepsEachEncoding) {
  constexpr std::string_view kInner = "REGEDIT4\n[HKEY_USERS\\\xC3\xA8]\n";
  const std::string wide = std::string(kUtf16Mark) + utf16OfInner(kInner);
  for (const std::string& bytes :
       {std::string(kInner), std::string(kUtf8Mark) + std::string(kInner), wide,
        std::string("REGEDIT4\n[HKEY_USERS\\\xE8]\n")}) {
    const RegText text = decodeReg(bytes, latin1());
    EXPECT_EQ(text.inner, kInner);
    EXPECT_EQ(encodeReg(text, latin1()), bytes);
  }
  // What the page cannot hold makes the file UTF-8 rather than lose it.
  EXPECT_EQ(encodeReg({Encoding::codePage, "\xE2\x82\xAC\xC3\xA8"}, latin1()),
            "\xE2\x82\xAC\xC3\xA8");
}

}  // namespace
}  // namespace veltgeneral::platform

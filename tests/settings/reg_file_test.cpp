#include "platform/linux/settings/reg_file.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/test_host.h"

namespace veltgeneral::platform {
namespace {

using test::latin1;

constexpr std::string_view kSample = R"(Windows Registry Editor Version 5.00
; whose this is
[HKEY_LOCAL_MACHINE\SOFTWARE\Acme]
"Text"="C:\\logs \"x\""
  "Number" = dword:fa0
@="default"
"Expand"=hex(2):25,00,41,00,\
  ; between the pieces

  25,00,00,00
"List"=hex(7):61,00,00,00,62,00,00,00,00,00
"Raw"=hex:01,2,ff
"Odd"=hex(1A): 7 ; note
"Half"=hex(7):61,00
"Not"="x" y
"text"="the last \"wins\""
what is this
[HKEY_LOCAL_MACHINE\SOFTWARE\Acme\[x] y]
"été"="€"
)";

std::optional<RegistryValue> ask(const RegistryFile& file, TextView key, TextView name) {
  const std::uint32_t node = file.find(key);
  return node == RegistryFile::kNone ? std::nullopt : file.query(node, name);
}

TEST(RegFile, ReadsEveryKindOfValueWithoutRegardToCase) {
  constexpr TextView kKey = u"hkey_local_machine\\Software\\ACME";
  using Bytes = std::vector<std::uint8_t>;
  const std::pair<TextView, RegistryValue> cases[] = {
      {u"TEXT", {RegistryType::text, u"the last \"wins\""}},
      {u"number", {RegistryType::number, {}, Bytes{0xA0, 0x0F, 0, 0}}},
      {u"", {RegistryType::text, u"default"}},
      {u"expand", {RegistryType::expandableText, u"%A%"}},
      {u"list", {RegistryType::texts, Text(u"a\0b\0", 4)}},
      {u"raw", {RegistryType::binary, {}, Bytes{1, 2, 0xFF}}},
      {u"odd", {static_cast<RegistryType>(0x1A), {}, Bytes{7}}},
      {u"half", {RegistryType::texts, Text(u"a\0", 2)}},  // the NULs at the end are supplied
  };
  for (const char* lineEnd : {"\n", "\r\n"}) {
    const RegistryFile file(test::withLineEnds(kSample, lineEnd), latin1());
    for (const auto& [name, value] : cases) EXPECT_EQ(ask(file, kKey, name), value) << toUtf8(name);
    EXPECT_EQ(ask(file, u"HKEY_LOCAL_MACHINE\\\\SOFTWARE\\Acme\\[X] y\\", u"ÉTÉ"),
              RegistryValue{.text = u"€"});
    EXPECT_EQ(file.subKeyNames(file.find(kKey)), std::vector<Text>{u"[x] y"});
    EXPECT_EQ(ask(file, kKey, u"not"), std::nullopt);
    EXPECT_EQ(file.valueNames(file.find(kKey)).size(), std::size(cases));
    EXPECT_EQ(file.find(u"HKEY_LOCAL_MACHINE\\SOFT"), RegistryFile::kNone);
  }
}

TEST(RegFile, DeletionsUndoWhatStandsAboveThem) {
  const RegistryFile file(
      test::withLineEnds(R"(REGEDIT4|[HKEY_USERS\a\b]|"v"="1"|"w"="1"|[-HKEY_USERS\A]|)"
                         R"([HKEY_USERS\a]|"v"=hex(2):e8,00|"x"="1"|"X"=-|[broken|"y"="1"|)"
                         R"([-HKEY_USERS])"),
      latin1());
  EXPECT_EQ(file.find(u"HKEY_USERS\\a\\b"), RegistryFile::kNone);
  EXPECT_EQ(ask(file, u"HKEY_USERS\\a", u"v"),
            (RegistryValue{RegistryType::expandableText, u"è"}));  // version 4 texts
  EXPECT_EQ(file.valueNames(file.find(u"HKEY_USERS\\a")), std::vector<Text>{u"v"});
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
      const RegChange set{RegChange::Kind::setValue, "HKEY_USERS\\k", "\"n\\\n", value};
      const std::string after = editReg(version, {set}, latin1());
      EXPECT_EQ(ask(RegistryFile(after, latin1()), u"HKEY_USERS\\k", u"\"N\\\n"), value) << after;
      std::istringstream lines(after);
      for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << after;
    }
  }
}

TEST(RegFile, KeepsEachEncoding) {
  const std::string inner = "REGEDIT4\n[HKEY_USERS\\\xC3\xA8]\n";
  for (const std::string& bytes :
       {inner, std::string(kUtf8Mark) + inner, std::string(kUtf16Mark) + utf16OfInner(inner),
        std::string("REGEDIT4\n[HKEY_USERS\\\xE8]\n")}) {
    const RegText text = decodeReg(bytes, latin1());
    EXPECT_EQ(text.inner, inner);
    EXPECT_EQ(encodeReg(text, latin1()), bytes);
  }
  // What the page cannot hold makes the file UTF-8 rather than lose it.
  EXPECT_EQ(encodeReg({Encoding::codePage, "€è"}, latin1()), "€è");
}

}  // namespace
}  // namespace veltgeneral::platform

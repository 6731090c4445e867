#include <gtest/gtest.h>

#include "settings/support.h"
#include "veltgeneral/c_ini_file.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;
using namespace veltgeneral::testing;

cInifile iniFile(TextView path, TextView section = u"main", TextView key = u"k") {
  cInifile file;
  file.setPath(path);
  file.setSection(section);
  file.setKey(key);
  return file;
}

bool put(cInifile& file, Text value) {
  file.setValue(value);
  return file.Success();
}

TEST(IniFile, ValueGoesThroughTheCodePageUnlessWide) {
  const TestHost host;
  cInifile file = iniFile(u"C:\\a.ini", u"s\u00E8", u"k\u4E00");
  file.setDefault(u"none\u4E00");
  EXPECT_EQ(file.LastReturnCode(), 0);
  EXPECT_EQ(file.Value(), u"none?");
  EXPECT_EQ(file.Default(), u"none?");
  EXPECT_EQ(file.key(), u"k?");
  EXPECT_EQ(file.section(), u"s\u00E8");
  EXPECT_FALSE(file.Success());
  Text value = Text(u"a\0b\u20AC\u4E00", 5);
  file.setValue(value);
  EXPECT_TRUE(file.Success());
  EXPECT_EQ(value, u"ab\u20AC?");
  EXPECT_EQ(contentOf(host / "drive/a.ini"), "[s\xE8]\r\nk?=ab\x80?\r\n");
  EXPECT_EQ(iniFile(u"C:/A.INI").Value(), u"");  // another name on this host

  cInifile wide = iniFile(u"C:\\w.ini", u"s", u"k\u4E00");
  wide.setIsNt(true);
  Text kept = u"\u4E01";
  wide.setValue(kept);
  EXPECT_EQ(kept, u"\u4E01");
  EXPECT_EQ(wide.key(), u"k\u4E00");
  EXPECT_TRUE(contentOf(host / "drive/w.ini").starts_with("\xFF\xFE[\0"));
  EXPECT_EQ(wide.Value(), u"\u4E01");
  wide.setIsNt(false);
  EXPECT_EQ(wide.Value(), u"");  // asks for "k?"
  wide.CheckForUnicodeFile();
  EXPECT_FALSE(wide.isNt());
}

TEST(IniFile, BuffersCut) {
  const TestHost host;
  cInifile file = iniFile(u"C:\\a.ini");
  EXPECT_TRUE(put(file, Text(381, u'x')));
  EXPECT_EQ(file.Value(), Text(381, u'x'));
  EXPECT_TRUE(put(file, Text(400, u'y')));
  EXPECT_EQ(file.Value(), Text(381, u'y'));
  file.setDefault(Text(500, u'd'));
  file.setKey(u"none");
  EXPECT_EQ(file.Value(), Text(381, u'd'));

  // Names of 10 and a NUL: the 745th is cut at 8190 characters.
  std::string names = "[list]\n";
  for (int i = 0; i < 800; ++i) names += "name" + std::to_string(100000 + i) + "=1\n";
  setContent(host / "drive/b.ini", names);
  cInifile list = iniFile(u"C:\\b.ini", u"LIST");
  EXPECT_EQ(list.INISection().size(), 8190u);
  TextArray keys;
  std::int32_t count = 7;
  list.EnumerateCurrentSection(keys, count);
  EXPECT_EQ(count, 744);
  EXPECT_EQ(keys.at(744), u"name100743");
  // Just fitting: 8191 characters with their NULs.
  setContent(host / "drive/c.ini", "[" + std::string(8190, 'n') + "]");
  EXPECT_EQ(iniFile(u"C:\\c.ini").Sections().size(), 8191u);
  setContent(host / "drive/c.ini", "[" + std::string(8191, 'n') + "]");
  EXPECT_EQ(iniFile(u"C:\\c.ini").Sections(), Text(8190, u'n'));
}

TEST(IniFile, UnsetDiffersFromEmpty) {
  const TestHost host;
  setContent(host / "drive/a.ini", "[A]\nk=1\n=n\n\n[]\nk=empty\n[B]\n");
  cInifile file;
  EXPECT_EQ(file.Value(), u"");
  file.setDefault(u"d");
  EXPECT_EQ(file.Value(), u"");  // no section: a list, of nothing
  EXPECT_FALSE(put(file, u"x"));
  file.setPath(u"C:\\a.ini");
  EXPECT_FALSE(put(file, u"x"));
  EXPECT_EQ(file.Value(), Text(u"A\0\0B\0", 5));
  file.setSection(u"a");
  EXPECT_EQ(file.Value(), Text(u"k\0\0", 3));
  EXPECT_TRUE(file.Success() == false);
  file.setSection(u"");
  file.setKey(u"k");
  EXPECT_EQ(file.Value(), u"empty");
  file.setPath(u"");
  EXPECT_FALSE(put(file, u"x"));
  EXPECT_EQ(file.Value(), u"d");

  TextArray names;
  std::int32_t count = 0;
  file.setPath(u"C:\\a.ini");
  file.EnumerateAllSections(names, count);
  EXPECT_EQ(names, TextArray::of({u"A", u"B"}));
  EXPECT_EQ(count, 2);
  file.setSection(u"A");
  file.EnumerateCurrentSection(names, count);
  EXPECT_EQ(names, TextArray::of({u"k", u""}));
  EXPECT_TRUE(file.SectionExists(u"A"));
  EXPECT_FALSE(file.SectionExists(u"a"));
  file.setPath(u"C:\\none.ini");
  file.EnumerateCurrentSection(names, count);
  EXPECT_EQ(names.dimensions(), 0);
  EXPECT_EQ(count, 0);
}

TEST(IniFile, DeletesAndFails) {
  const TestHost host;
  setContent(host / "drive/a.ini", "[main]\nk=1\nl=2\n[other]\n");
  cInifile file = iniFile(u"C:\\a.ini");
  file.DeleteKey();
  EXPECT_TRUE(file.Success());
  EXPECT_EQ(contentOf(host / "drive/a.ini"), "[main]\nl=2\n[other]\n");
  file.DeleteKey();
  EXPECT_TRUE(file.Success());
  file.setINISection(u"k=9");
  EXPECT_TRUE(file.Success());
  EXPECT_EQ(contentOf(host / "drive/a.ini"), "[other]\n");
  fs::permissions(host / "drive/a.ini", fs::perms(0444));
  file.DeleteSection();
  EXPECT_FALSE(file.Success());
  fs::permissions(host / "drive/a.ini", fs::perms(0644));
  fs::permissions(host / "drive", fs::perms(0555));
  EXPECT_FALSE(put(file, u"x"));
  fs::permissions(host / "drive", fs::perms(0755));
  for (const TextView path : {u"C:\\no\\a.ini", u"Q:\\a.ini", u"C:\\"}) {
    cInifile none = iniFile(path);
    EXPECT_FALSE(put(none, u"x")) << toUtf8(path);
    EXPECT_EQ(none.Value(), u"");
  }
  cInifile bare = iniFile(u"bare.ini");
  EXPECT_TRUE(put(bare, u"1"));
  EXPECT_EQ(contentOf(host / "windows/bare.ini"), "[main]\r\nk=1\r\n");
  EXPECT_EQ(bare.Value(), u"1");
  // No Windows folder, no file: least of all one in the root folder.
  ::unsetenv("VELTGENERAL_WINDOWS_DIR");
  ::setenv("XDG_STATE_HOME", "/dev/null", 1);
  cInifile homeless = iniFile(u"veltgeneral-bare.ini");
  EXPECT_FALSE(put(homeless, u"1"));
  ::unsetenv("XDG_STATE_HOME");
}

TEST(IniFile, CLngDefaultFallsBack) {
  cInifile file;
  EXPECT_EQ(file.CLngDefault(u"12"), 12);
  EXPECT_EQ(file.CLngDefault(u"2.5", 7), 2);
  EXPECT_EQ(file.CLngDefault(u"x", 7), 7);
  EXPECT_EQ(file.CLngDefault(u""), 0);
  EXPECT_EQ(file.CLngDefault(u"3000000000", -1), -1);
}

}  // namespace
}  // namespace veltgeneral

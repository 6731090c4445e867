#include <gtest/gtest.h>

#include "support/test_host.h"
#include "veltgeneral/c_ini_file.h"

namespace veltgeneral {
namespace {

class IniFile : public testing::Test {
 protected:
  static cInifile at(TextView path, TextView section = u"main", TextView key = u"k") {
    cInifile file;
    file.setPath(path);
    file.setSection(section);
    file.setKey(key);
    return file;
  }
  static bool put(cInifile& file, Text value) {
    file.setValue(value);
    return file.Success();
  }
  // What an enumeration gives, and that its count is theirs.
  static TextArray names(cInifile& file, void (cInifile::*enumerate)(TextArray&, std::int32_t&)) {
    TextArray out;
    std::int32_t count = 7;
    (file.*enumerate)(out, count);
    EXPECT_EQ(count, out.dimensions() == 0 ? 0 : out.bounds(1).upper);
    return out;
  }

  const test::TestHost host_;
};

TEST_F(IniFile, ValueGoesThroughTheCodePageUnlessWide) {
  cInifile file = at(u"C:\\a.ini", u"s\u00E8", u"k\u4E00");
  file.setDefault(u"none\u4E00");
  EXPECT_EQ(file.LastReturnCode(), 0);
  EXPECT_EQ(file.Value(), u"none?");
  EXPECT_EQ(file.Default() + file.key() + file.section(), u"none?k?s\u00E8");
  EXPECT_FALSE(file.Success());
  Text value = Text(u"a\0b\u20AC\u4E00", 5);
  file.setValue(value);
  EXPECT_TRUE(file.Success());
  EXPECT_EQ(value, u"ab\u20AC?");
  EXPECT_EQ(host_.get("drive/a.ini"), "[s\xE8]\r\nk?=ab\x80?\r\n");
  EXPECT_EQ(at(u"C:/A.INI").Value(), u"");  // another name on this host

  cInifile wide = at(u"C:\\w.ini", u"s", u"k\u4E00");
  wide.setIsNt(true);
  Text kept = u"\u4E01";
  wide.setValue(kept);
  EXPECT_TRUE(host_.get("drive/w.ini").starts_with("\xFF\xFE[\0"));
  EXPECT_EQ(kept + wide.key() + wide.Value(), u"\u4E01k\u4E00\u4E01");
  wide.setIsNt(false);
  EXPECT_EQ(wide.Value(), u"");  // asks for "k?"
}

TEST_F(IniFile, BuffersCut) {
  cInifile file = at(u"C:\\a.ini");
  for (const std::size_t size : {381, 400}) {
    EXPECT_TRUE(put(file, Text(size, u'x')));
    EXPECT_EQ(file.Value(), Text(381, u'x'));
  }
  file.setDefault(Text(500, u'd'));
  file.setKey(u"none");
  EXPECT_EQ(file.Value(), Text(381, u'd'));

  // Names of 10 and a NUL: the 745th is cut at 8190 characters.
  std::string lines = "[list]\n";
  for (int i = 0; i < 800; ++i) lines += "name" + std::to_string(100000 + i) + "=1\n";
  host_.put("drive/b.ini", lines);
  cInifile list = at(u"C:\\b.ini", u"LIST");
  EXPECT_EQ(list.INISection().size(), 8190u);
  const TextArray names = IniFile::names(list, &cInifile::EnumerateCurrentSection);
  EXPECT_EQ(names.bounds(1).upper, 744);
  EXPECT_EQ(names.at(744), u"name100743");
  // Just fitting: 8191 characters with their NULs.
  for (const std::size_t size : {8190, 8191}) {
    host_.put("drive/c.ini", std::string("[").append(size, 'n').append("]"));
    EXPECT_EQ(at(u"C:\\c.ini").Sections(), Text(8190, u'n') + Text(8191 - size, u'\0'));
  }
}

TEST_F(IniFile, UnsetDiffersFromEmpty) {
  host_.put("drive/a.ini", "[A]\nk=1\n=n\n\n[]\nk=empty\n[B]\n");
  cInifile file;
  file.setDefault(u"d");
  EXPECT_EQ(file.Value(), u"");  // no section: a list, of nothing
  EXPECT_FALSE(put(file, u"x"));
  file.setPath(u"C:\\a.ini");
  EXPECT_FALSE(put(file, u"x"));
  EXPECT_EQ(file.Value(), Text(u"A\0\0B\0", 5));
  file.setSection(u"a");
  EXPECT_EQ(file.Value(), Text(u"k\0\0", 3));
  file.setSection(u"");
  file.setKey(u"k");
  EXPECT_EQ(file.Value(), u"empty");
  file.setPath(u"");
  EXPECT_FALSE(put(file, u"x"));
  EXPECT_EQ(file.Value(), u"d");

  file = at(u"C:\\a.ini", u"A");
  EXPECT_EQ(names(file, &cInifile::EnumerateAllSections), TextArray::of({u"A", u"B"}));
  EXPECT_EQ(names(file, &cInifile::EnumerateCurrentSection), TextArray::of({u"k", u""}));
  EXPECT_TRUE(file.SectionExists(u"A"));
  EXPECT_FALSE(file.SectionExists(u"a"));
  file.setPath(u"C:\\none.ini");
  EXPECT_EQ(names(file, &cInifile::EnumerateCurrentSection), TextArray());
}

TEST_F(IniFile, DeletesAndFails) {
  host_.put("drive/a.ini", "[main]\nk=1\nl=2\n[other]\n");
  cInifile file = at(u"C:\\a.ini");
  for (int again = 0; again < 2; ++again) {
    file.DeleteKey();
    EXPECT_TRUE(file.Success());
    EXPECT_EQ(host_.get("drive/a.ini"), "[main]\nl=2\n[other]\n");
  }
  file.setINISection(u"k=9");
  EXPECT_TRUE(file.Success());
  EXPECT_EQ(host_.get("drive/a.ini"), "[other]\n");
  std::filesystem::permissions(host_ / "drive/a.ini", std::filesystem::perms(0444));
  file.DeleteSection();
  EXPECT_FALSE(file.Success());
  cInifile bare = at(u"bare.ini");
  EXPECT_TRUE(put(bare, u"1"));
  EXPECT_EQ(host_.get("windows/bare.ini"), "[main]\r\nk=1\r\n");
  EXPECT_EQ(bare.Value(), u"1");
  // No Windows folder, no file: least of all one in the root folder.
  ::unsetenv("VELTGENERAL_WINDOWS_DIR");
  ::setenv("XDG_STATE_HOME", "/dev/null", 1);
  for (const TextView path : {u"C:\\no\\a.ini", u"Q:\\a.ini", u"C:\\", u"bare.ini"}) {
    cInifile none = at(path);
    EXPECT_FALSE(put(none, u"x")) << toUtf8(path);
    EXPECT_EQ(none.Value(), u"");
  }
  ::unsetenv("XDG_STATE_HOME");
}

TEST_F(IniFile, CLngDefaultFallsBack) {
  cInifile file;
  EXPECT_EQ(file.CLngDefault(u"2.5", 7), 2);
  EXPECT_EQ(file.CLngDefault(u"x", 7), 7);
  EXPECT_EQ(file.CLngDefault(u""), 0);
  EXPECT_EQ(file.CLngDefault(u"3000000000", -1), -1);
}

}  // namespace
}  // namespace veltgeneral

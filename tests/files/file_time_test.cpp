// Stamps, read back as the host and other software see them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <ctime>

#include "support/results.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

using namespace std::string_literals;

constexpr timespec kBefore{86400, 0};

class FileTime : public ::testing::Test {
 protected:
  ErrInfo stamp(std::array<Variant, 7> given, const std::string& name = "file") {
    Variant path = folder_.text(name);
    auto& [year, month, weekday, day, hour, minute, second] = given;
    return files_.UpdateFileTime(path, year, month, weekday, day, hour, minute, second);
  }
  // The file's one time, as a text; "untouched" where it still has the one from before.
  std::string stamped() const {
    struct stat info {};
    stat(path_.c_str(), &info);
    EXPECT_EQ(info.st_mtim.tv_sec, info.st_atim.tv_sec);
    EXPECT_EQ(info.st_mtim.tv_nsec + info.st_atim.tv_nsec, 0);
    if (info.st_mtim.tv_sec == kBefore.tv_sec) return "untouched";
    char text[40];
    std::tm fields{};
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", gmtime_r(&info.st_mtim.tv_sec, &fields));
    return text;
  }
  void reset() const {
    const timespec times[] = {kBefore, kBefore};
    utimensat(AT_FDCWD, path_.c_str(), times, 0);
  }

  test::TemporaryFolder folder_;
  const std::string path_ = folder_.put("file", "x");
  FileUtility files_;
};

TEST_F(FileTime, IsThatOfTheFields) {
  struct Case {
    std::array<Variant, 7> fields;
    const char* stamped;
    std::int16_t utc = 0;  // minutes
    std::int16_t daylight = 0;
    std::int32_t number = 0;
  };
  constexpr const char* kNot = "untouched";
  const Case cases[] = {
      {{2024, 2, 99, 29, 23, 59, 58}, "2024-02-29 23:59:58"},  // any day of the week
      {{1960, 6, 0, 1, 12, 0, 0}, "1960-06-01 12:00:00"},
      {{Text(u"2024"), 1.5, Empty{}, 2.5F, std::int16_t{3}, Text(u" 4 "), Date{5}},
       "2024-02-02 03:04:05"},
      {{2000, 5, 0, 10, 1, 0, 0}, "2000-05-10 02:00:00", 90},
      {{2000, 5, 0, 10, 1, 0, 0}, "2000-05-10 00:00:00", -90},
      {{2000, 5, 0, 10, 12, 0, 0}, "2000-05-10 09:00:00", -60, 2},
      {{2000, 5, 0, 10, 23, 0, 0}, "2000-05-11 01:00:00", 120},
      {{2000, 5, 0, 10, 23, 0, 0}, "2000-05-11 23:00:00", 0, -24},
      // The calendar does not have these, and nobody says so.
      {{2000, 5, 0, 31, 23, 0, 0}, kNot, 60},
      {{2000, 5, 0, 10, 1, 0, 0}, kNot, -60, 1},
      {{2000, 5, 0, 10, 24, 0, 0}, kNot, 0, -24},
      {{2023, 2, 0, 29, 0, 0, 0}, kNot},
      {{2023, 13, 0, 1, 0, 0, 0}, kNot},
      {{2023, 257, 0, 1, 0, 0, 0}, kNot},
      {{2023, 0, 0, 1, 0, 0, 0}, kNot},
      {{2023, 1, 0, 0, 0, 0, 0}, kNot},
      {{2023, 1, 0, 1, 0, 60, 0}, kNot},
      {{2023, 1, 0, 1, 0, 0, 60}, kNot},
      {{2023, 1, 0, 1, 0, -1, 0}, kNot},
      {{1600, 12, 0, 31, 0, 0, 0}, kNot},
      {{30828, 1, 0, 1, 0, 0, 0}, kNot},
      // The first that fails counts.
      {{32768, Null{}, 0, 1, 0, 0, 0}, kNot, 0, 0, 6},
      {{2024, Null{}, 0, 1, 0, 0, 0}, kNot, 0, 0, 94},
      {{2024, 1, Text(u"Monday"), 1, 0, 0, 0}, kNot, 0, 0, 13},
      {{2024, 1, 0, 1, 32767, 0, 0}, kNot, 60, 1, 6},
      {{2024, 1, 0, 1, -32768, 0, 0}, kNot, 0, 1, 6},
      {{2024, 1, 0, 1, 0, 0, 0}, kNot, 0, -32768, 6},
      {{2024, 1, 0, 32767, 24, 0, 0}, kNot, 0, 0, 6},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    reset();
    files_.utcoffset = c.utc;
    files_.daylightoffset = c.daylight;
    EXPECT_EQ(
        test::fields(stamp(c.fields)),
        c.number == 0 ? test::cleared() : test::failure(c.number, "UpdateFileTime", "FileUtility"));
    EXPECT_EQ(stamped(), c.stamped);
  }
}

TEST_F(FileTime, WhatCannotBeOpenedForWritingIsNamed) {
  reset();
  std::filesystem::create_directory(folder_.path() / "folder");
  mkfifo(folder_.file("fifo").c_str(), 0600);
  chmod(path_.c_str(), 0444);
  // The numbers after the path are not looked at.
  for (const std::string name : {"none", "none/file", "folder", "folder/", "fifo", "file"}) {
    const std::string message = "Could not open file " + folder_.file(name);
    EXPECT_EQ(test::fields(stamp({Null{}, 1, 0, 1, 0, 0, 0}, name)),
              test::failure(eiABORTED, message.c_str(), "UpdateFileTime", "FileUtility"));
  }
  EXPECT_EQ(stamped(), "untouched");
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "none"));
}

TEST_F(FileTime, AKeptCreationTimeGoesAlong) {
  const std::string head("\0\0\3\0\3\0\0\0\x11\0\0\0\x20\0\0\0", 16);
  const std::string zero(8, '\0');
  // 00:00:01 of 1 January 1970 in units of 100 nanoseconds since 1601.
  const std::string time("\x80\x16\xD7\xD5\xDE\xB1\x9D\x01", 8);
  const std::string second("\x80\x96\x98\x00\x00\x00\x00\x00", 8);
  const std::string named = "0x20" + head;  // with a text, and its NUL, before the record
  const std::string version4 = "\0\0\4\0\4\0\0\0\x51"s + head.substr(9) + zero;
  const std::string noTime = head.substr(0, 8) + '\1' + head.substr(9) + second;
  const std::pair<std::string, std::string> cases[] = {
      {head + zero, head + time},
      {head + zero + zero, head + time + zero},
      {named + zero, named + time},
      {version4 + zero, version4 + time},
      {noTime, noTime},
      {head.substr(0, 12) + zero, head.substr(0, 12) + zero},
      {"0x20", "0x20"}};
  for (const auto& [before, after] : cases) {
    if (setxattr(path_.c_str(), "user.DOSATTRIB", before.data(), before.size(), 0) != 0) {
      GTEST_SKIP() << "the file system keeps no extended attributes";
    }
    EXPECT_TRUE(stamp({1970, 1, 0, 1, 0, 0, 1}).isSuccess());
    char value[256];
    const auto got = getxattr(path_.c_str(), "user.DOSATTRIB", value, sizeof value);
    EXPECT_EQ(std::string(value, static_cast<std::size_t>(got)), after);
    EXPECT_EQ(stamped(), "1970-01-01 00:00:01");
  }
}

}  // namespace
}  // namespace veltgeneral

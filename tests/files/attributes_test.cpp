// Attributes and times of files as the host and other software keep them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <ctime>

#include "platform/files.h"
#include "support/results.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

using namespace std::string_literals;
using platform::fileAttributes;
using platform::setFileAttributes;
using test::failure;

constexpr timespec kBefore{86400, 0};

class Attributes : public ::testing::Test {
 protected:
  // False where the file system keeps no such records.
  bool store(const std::string& record) {
    return setxattr(path_.c_str(), "user.DOSATTRIB", record.data(), record.size(), 0) == 0;
  }
  std::string stored() const {
    char value[256];
    const auto got = getxattr(path_.c_str(), "user.DOSATTRIB", value, sizeof value);
    return got < 0 ? "none" : std::string(value, static_cast<std::size_t>(got));
  }
  struct stat status() const {
    struct stat info {};
    stat(path_.c_str(), &info);
    return info;
  }
  ErrInfo stamp(const std::array<Variant, 7>& given, const std::string& name = "file") {
    Variant path = folder_.text(name);
    auto [year, month, weekday, day, hour, minute, second] = given;
    return files_.UpdateFileTime(path, year, month, weekday, day, hour, minute, second);
  }
  void resetTime() const {
    const timespec times[] = {kBefore, kBefore};
    utimensat(AT_FDCWD, path_.c_str(), times, 0);
  }
  // The file's one time, as a text; "untouched" where it still has the one from before.
  std::string stamped() const {
    const auto [access, change] = std::pair(status().st_atim, status().st_mtim);
    EXPECT_EQ(change.tv_sec, access.tv_sec);
    EXPECT_EQ(change.tv_nsec + access.tv_nsec, 0);
    if (change.tv_sec == kBefore.tv_sec) return "untouched";
    char text[40];
    std::tm fields{};
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", gmtime_r(&change.tv_sec, &fields));
    return text;
  }

  test::TemporaryFolder folder_;
  const std::string path_ = folder_.put("file", "x");
  FileUtility files_;
};

TEST_F(Attributes, AreSetExactlyAndKeptAsTextAndMode) {
  if (!store("0x27")) GTEST_SKIP() << "the file system keeps no extended attributes";
  struct Case {
    std::int32_t set;
    const char* stored;
    mode_t mode;
    std::int32_t attributes;
    std::int32_t number = 0;
  };
  for (const Case& c : {Case{0x22, "0x22", 0644, 0x22}, Case{1, "none", 0444, 1},
                        Case{0x27, "0x26", 0444, 0x27}, Case{0, "none", 0644, 0},
                        // Attributes that do not exist: only the content is there.
                        Case{16, "0x20", 0644, 32, 5}}) {
    SCOPED_TRACE(c.set);
    EXPECT_EQ(files_.writeFile(folder_.text("file"), c.set, u"new").numberInfo(), c.number);
    EXPECT_EQ(folder_.get("file"), "new\r\n");
    EXPECT_EQ(fileAttributes(path_), c.attributes);
    EXPECT_EQ(stored(), c.stored);
    EXPECT_EQ(status().st_mode & 07777, c.mode);
  }
}

TEST_F(Attributes, OtherWritersRecordsAreReadAndTheirCreationTimeStamped) {
  // Empty text, version 3 twice, mask 0x11, attributes; a creation time follows, and more may.
  std::string head("\0\0\3\0\3\0\0\0\x11\0\0\0\x26\0\0\0", 16);
  const std::string zero(8, '\0');
  // 00:00:01 of 1 January 1970 in units of 100 nanoseconds since 1601.
  const std::string time("\x80\x16\xD7\xD5\xDE\xB1\x9D\x01", 8);
  const std::string version4 = "\0\0\4\0\4\0\0\0\x51"s + head.substr(9) + zero;
  const std::string noTime = head.substr(0, 8) + '\1' + head.substr(9) + zero;
  const std::string withSize = head.substr(0, 8) + '\x15' + head.substr(9) + zero;
  struct Case {
    std::string record;
    std::int32_t attributes;
    std::string stamped;
  };
  const Case cases[] = {{"0x26\0"s, 0x26, "0x26\0"s},
                        {"junk", 0, "junk"},
                        {"0x", 0, "0x"},
                        {"\0\0\3"s, 0, "\0\0\3"s},
                        {head.substr(0, 12) + zero, 0, head.substr(0, 12) + zero},
                        {head + zero + zero, 0x26, head + time + zero},
                        {"0x20" + head + zero, 0x26, "0x20" + head + time},
                        {version4 + zero, 0x26, version4 + time},
                        {noTime, 0x26, noTime},
                        {withSize, 0x26, withSize},
                        {std::string(300, 0), 0, "none"}};
  for (const Case& c : cases) {
    if (!store(c.record)) GTEST_SKIP() << "the file system keeps no extended attributes";
    EXPECT_EQ(fileAttributes(path_), c.attributes) << c.record;
    EXPECT_TRUE(stamp({1970, 1, 0, 1, 0, 0, 1}).isSuccess());
    EXPECT_EQ(stored(), c.stamped);
  }
  store(head + time);
  setFileAttributes(path_, 32);
  head[12] = '\x20';
  EXPECT_EQ(stored(), head + time);
}

TEST_F(Attributes, TheTimeIsThatOfTheFields) {
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
      {{2000, 5, 0, 10, 1, 0, 0}, "2000-05-10 00:00:00", -90},
      {{2000, 5, 0, 10, 12, 0, 0}, "2000-05-10 09:00:00", -60, 2},
      {{2000, 5, 0, 10, 23, 0, 0}, "2000-05-11 01:00:00", 120},
      {{2000, 5, 0, 10, 23, 0, 0}, "2000-05-11 23:00:00", 0, -24},
      // The calendar does not have these, and nobody says so.
      {{2000, 5, 0, 31, 23, 0, 0}, kNot, 60},
      {{2000, 5, 0, 10, 1, 0, 0}, kNot, -60, 1},
      {{2000, 5, 0, 10, 24, 0, 0}, kNot, 0, -24},
      {{2023, 2, 0, 29, 0, 0, 0}, kNot},
      {{2023, 257, 0, 1, 0, 0, 0}, kNot},
      {{2023, 0, 0, 1, 0, 0, 0}, kNot},
      {{2023, 1, 0, 0, 0, 0, 0}, kNot},
      {{2023, 1, 0, 1, 0, 60, 0}, kNot},
      {{2023, 1, 0, 1, 0, 0, 60}, kNot},
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
    resetTime();
    files_.utcoffset = c.utc;
    files_.daylightoffset = c.daylight;
    EXPECT_EQ(test::fields(stamp(c.fields)),
              c.number == 0 ? test::cleared() : failure(c.number, "UpdateFileTime", "FileUtility"));
    EXPECT_EQ(stamped(), c.stamped);
  }
}

TEST_F(Attributes, WhatCannotBeOpenedForStampingIsNamed) {
  resetTime();
  std::filesystem::create_directory(folder_.path() / "folder");
  mkfifo(folder_.file("fifo").c_str(), 0600);
  chmod(path_.c_str(), 0444);
  // The numbers after the path are not looked at.
  for (const std::string name : {"none", "none/file", "folder", "fifo", "file"}) {
    const std::string message = "Could not open file " + folder_.file(name);
    EXPECT_EQ(test::fields(stamp({Null{}, 1, 0, 1, 0, 0, 0}, name)),
              failure(eiABORTED, message.c_str(), "UpdateFileTime", "FileUtility"));
  }
  EXPECT_EQ(stamped(), "untouched");
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "none"));
}

}  // namespace
}  // namespace veltgeneral

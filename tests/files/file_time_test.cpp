// Stamps, read back as the host and other software see them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <ctime>
#include <limits>

#include "support/results.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr std::time_t kBefore = 86400;

class FileTime : public ::testing::Test {
 protected:
  void SetUp() override { folder_.put("file", "x"); }

  ErrInfo stamp(std::array<Variant, 7> fields, const std::string& name = "file") {
    path_ = folder_.text(name);
    auto& [year, month, weekday, day, hour, minute, second] = fields;
    return files_.UpdateFileTime(path_, year, month, weekday, day, hour, minute, second);
  }
  // The file's one time, as a text; "untouched" where it still has the one from before.
  std::string stamped() const {
    struct stat info {};
    stat(folder_.file("file").c_str(), &info);
    if (info.st_mtim.tv_sec == kBefore && info.st_atim.tv_sec == kBefore) return "untouched";
    EXPECT_EQ(info.st_mtim.tv_sec, info.st_atim.tv_sec);
    EXPECT_EQ(info.st_mtim.tv_nsec + info.st_atim.tv_nsec, 0);
    char text[40];
    std::tm fields{};
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", gmtime_r(&info.st_mtim.tv_sec, &fields));
    return text;
  }
  void reset() const {
    const timespec times[] = {{kBefore, 0}, {kBefore, 0}};
    utimensat(AT_FDCWD, folder_.file("file").c_str(), times, 0);
  }

  test::TemporaryFolder folder_;
  FileUtility files_;
  Variant path_;
};

TEST_F(FileTime, IsThatOfTheFields) {
  struct Case {
    std::array<Variant, 7> fields;
    std::int16_t utc;
    std::int16_t daylight;
    const char* stamped = "untouched";
    std::int32_t number = 0;
  };
  constexpr const char* kNo = "untouched";
  constexpr std::int16_t kLeast = std::numeric_limits<std::int16_t>::min();
  const Case cases[] = {
      {{2024, 2, 4, 29, 23, 59, 58}, 0, 0, "2024-02-29 23:59:58"},
      {{2024, 2, 99, 29, 0, 0, 0}, 0, 0, "2024-02-29 00:00:00"},  // any day of the week
      {{1970, 1, 0, 1, 0, 0, 0}, 0, 0, "1970-01-01 00:00:00"},
      {{1960, 6, 0, 1, 12, 0, 0}, 0, 0, "1960-06-01 12:00:00"},
      {{2000, 5, 0, 10, 1, 0, 0}, 90, 0, "2000-05-10 02:00:00"},
      {{2000, 5, 0, 10, 1, 0, 0}, -90, 0, "2000-05-10 00:00:00"},
      {{2000, 5, 0, 10, 1, 0, 0}, 59, 0, "2000-05-10 01:00:00"},
      {{2000, 5, 0, 10, 12, 0, 0}, -60, 2, "2000-05-10 09:00:00"},
      {{2000, 5, 0, 10, 23, 0, 0}, 120, 0, "2000-05-11 01:00:00"},
      {{2000, 5, 0, 10, 23, 0, 0}, 0, -24, "2000-05-11 23:00:00"},
      {{Text(u"2024"), 1.5, Empty{}, 2.5F, std::int16_t{3}, Text(u" 4 "), Date{5}},
       0,
       0,
       "2024-02-02 03:04:05"},
      // The calendar does not have these, and nobody says so.
      {{2000, 5, 0, 31, 23, 0, 0}, 60, 0},
      {{2000, 5, 0, 10, 1, 0, 0}, -60, 1},
      {{2000, 5, 0, 10, 24, 0, 0}, 0, -24},
      {{2023, 2, 0, 29, 0, 0, 0}, 0, 0},
      {{2023, 13, 0, 1, 0, 0, 0}, 0, 0},
      {{2023, 257, 0, 1, 0, 0, 0}, 0, 0},
      {{2023, 0, 0, 1, 0, 0, 0}, 0, 0},
      {{2023, 1, 0, 0, 0, 0, 0}, 0, 0},
      {{2023, 1, 0, 257, 0, 0, 0}, 0, 0},
      {{2023, 1, 0, 1, 0, 60, 0}, 0, 0},
      {{2023, 1, 0, 1, 0, 0, 60}, 0, 0},
      {{2023, 1, 0, 1, 0, -1, 0}, 0, 0},
      {{1600, 12, 0, 31, 0, 0, 0}, 0, 0},
      {{30828, 1, 0, 1, 0, 0, 0}, 0, 0},
      {{-2023, 1, 0, 1, 0, 0, 0}, 0, 0},
      // The first that fails counts.
      {{32768, Null{}, 0, 1, 0, 0, 0}, 0, 0, kNo, 6},
      {{2024, Null{}, 0, 1, 0, 0, 0}, 0, 0, kNo, 94},
      {{2024, 1, Text(u"Monday"), 1, 0, 0, 0}, 0, 0, kNo, 13},
      {{2024, 1, 0, 1, 32767, 0, 0}, 60, 1, kNo, 6},
      {{2024, 1, 0, 1, -32768, 0, 0}, 0, 1, kNo, 6},
      {{2024, 1, 0, 1, 0, 0, 0}, 0, kLeast, kNo, 6},
      {{2024, 1, 0, 32767, 24, 0, 0}, 0, 0, kNo, 6}};
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    reset();
    files_.utcoffset = c.utc;
    files_.daylightoffset = c.daylight;
    EXPECT_EQ(test::fields(stamp(c.fields)),
              c.number == 0 ? test::cleared()
                            : test::failure(c.number, toUtf8(standardMessage(c.number)).c_str(),
                                            "UpdateFileTime", "FileUtility"));
    EXPECT_EQ(stamped(), c.stamped);
  }
}

TEST_F(FileTime, WhatCannotBeOpenedForWritingIsNamed) {
  reset();
  std::filesystem::create_directory(folder_.path() / "folder");
  mkfifo(folder_.file("fifo").c_str(), 0600);
  chmod(folder_.file("file").c_str(), 0444);
  // The numbers after the path are not looked at.
  for (const std::string name : {"none", "none/file", "folder", "folder/", "fifo", "file"}) {
    const std::string message = "Could not open file " + folder_.file(name);
    EXPECT_EQ(test::fields(stamp({Null{}, 1, 0, 1, 0, 0, 0}, name)),
              test::failure(eiABORTED, message.c_str(), "UpdateFileTime", "FileUtility"));
  }
  EXPECT_EQ(stamped(), "untouched");
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "none"));
  EXPECT_EQ(folder_.get("file"), "x");
}

TEST_F(FileTime, AKeptCreationTimeGoesAlong) {
  const std::string path = folder_.file("file");
  const std::string head("\0\0\3\0\3\0\0\0\x11\0\0\0\x20\0\0\0", 16);
  const std::string zero(8, '\0');
  // 00:00:01 of 1 January 1970 in units of 100 nanoseconds since 1601.
  const std::string time("\x80\x16\xD7\xD5\xDE\xB1\x9D\x01", 8);
  const std::string second("\x80\x96\x98\x00\x00\x00\x00\x00", 8);
  std::string version4 = head + zero;
  version4[2] = version4[4] = '\4';
  version4[8] = '\x51';
  std::string noTime = head + second;
  noTime[8] = '\1';
  std::string named = "0x20" + head;  // with a text, and its NUL, before the record
  const std::pair<std::string, std::string> cases[] = {
      {head + zero, head + time},
      {head + zero + zero, head + time + zero},
      {named + zero, named + time},
      {version4 + zero, version4 + time},
      {noTime, noTime},
      {head.substr(0, 12) + zero, head.substr(0, 12) + zero},
      {"0x20", "0x20"}};
  for (const auto& [before, after] : cases) {
    if (setxattr(path.c_str(), "user.DOSATTRIB", before.data(), before.size(), 0) != 0) {
      GTEST_SKIP() << "the file system keeps no extended attributes";
    }
    EXPECT_TRUE(stamp({1970, 1, 0, 1, 0, 0, 1}).isSuccess());
    char value[256];
    const auto got = getxattr(path.c_str(), "user.DOSATTRIB", value, sizeof value);
    EXPECT_EQ(std::string(value, static_cast<std::size_t>(got)), after);
    EXPECT_EQ(stamped(), "1970-01-01 00:00:01");
  }
}

}  // namespace
}  // namespace veltgeneral

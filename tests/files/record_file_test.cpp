#include <gtest/gtest.h>

#include <filesystem>

#include "support/results.h"
#include "support/temporary_folder.h"
#include "veltgeneral/file_utility.h"

namespace veltgeneral {
namespace {

using test::failure;
using test::fields;

const auto kRead = test::done("ooReadFile", "FileUtility");

// "record N" filled with blanks, for N from 1 on.
std::string records(int count, std::size_t length = 20) {
  std::string all;
  for (int i = 1; i <= count; ++i) {
    std::string record = "record " + std::to_string(i);
    record.resize(length, ' ');
    all += record + "\r\n";
  }
  return all;
}

Text record(int number) { return fromUtf8("record " + std::to_string(number)); }

class RecordFile : public ::testing::Test {
 protected:
  ErrInfo read(std::int16_t length, std::int32_t first, std::int16_t& count,
               const std::string& name = "file") {
    return FileUtility().ooReadFile(folder_.text(name), length, first, count, list_);
  }

  test::TemporaryFolder folder_;
  TextArray list_{Bounds{0, 10}};
};

TEST_F(RecordFile, TheRecordsThereAreAreRead) {
  struct Case {
    std::int32_t first;
    std::int16_t wanted;
    std::int16_t count;
    bool refused = false;  // records to read begin below the first
  };
  constexpr std::int32_t kMost = INT32_MAX;
  const Case cases[] = {
      {1, 4, 4}, {1, 3, 3},        {3, 10, 2},       {4, 1, 1},         {5, 1, 0},
      {6, 1, 0}, {1, 0, 0},        {kMost, 9, 0},    {1, -5, -5},       {9, -2, 0},
      {0, 0, 0}, {0, 10, 5, true}, {-2, 3, 3, true}, {-2, 20, 7, true}, {INT32_MIN, 1, 1, true}};
  for (const bool lastBreak : {true, false}) {
    folder_.put("file", records(4).substr(0, lastBreak ? 88 : 86));
    for (const Case& c : cases) {
      SCOPED_TRACE(::testing::Message() << c.first << ", " << c.wanted);
      TextArray expected = list_ = TextArray(Bounds{0, 10});
      for (int i = 1; i <= c.count && !c.refused; ++i) expected.set(i, record(c.first + i - 1));
      std::int16_t count = c.wanted;
      EXPECT_EQ(fields(read(20, c.first, count)),
                c.refused ? failure(63, "ooReadFile", "FileUtility") : kRead);
      EXPECT_EQ(count, c.count);
      EXPECT_EQ(list_, expected);
    }
  }
}

// The same list again and again: what it showed before goes.
TEST_F(RecordFile, EveryAcceptedLengthIsReadAndCleaned) {
  list_ = TextArray(Bounds{1, 4999});
  TextArray expected = list_;
  for (int i = 1; i <= 4999; ++i) expected.set(i, record(i + 1));
  for (const int length : {20, 25, 125, 150, 160, 207, 247, 400, 450, 962, 970}) {
    folder_.put("file", records(5000, static_cast<std::size_t>(length)));
    std::int16_t count = 32767;
    EXPECT_EQ(fields(read(std::int16_t(length), 2, count)), kRead);
    EXPECT_EQ(count, 4999);
    EXPECT_TRUE(list_ == expected) << length;
  }
  folder_.put("file", "a\x80z\x01\x92\xE8\t\r\n           \r\n" + std::string(20, ' '));
  std::int16_t count = 2;
  EXPECT_EQ(fields(read(20, 1, count)), kRead);
  EXPECT_EQ(list_.at(1), u"a z \u2019\u00E8\t\r\n");
  EXPECT_EQ(list_.at(2), u" ");
}

TEST_F(RecordFile, RefusalsInTheirOrder) {
  folder_.put("65", std::string(65, ' '));
  folder_.put("64", std::string(64, ' '));
  std::filesystem::create_directory(folder_.path() / "folder");
  struct Case {
    const char* name;
    std::int16_t length;
    int number;
    const char* message;
  };
  const Case cases[] = {
      {"65", 20, eiABORTED, "File length [65] not compatible with string length[20]"},
      {"64", 30, eiABORTED, "Lenght string not supported[30] supported type are: 20, 25"},
      {"64", -1, eiABORTED, "Lenght string not supported[-1] supported type are: 20, 25"},
      {"64", -2, 11, "Division by zero"},
      {"64", 32765, eiABORTED, "File length [64] not compatible with string length[32765]"},
      {"64", 32766, 6, "Overflow"},
      {"none", 32767, 53, "File not found"},
      {"none/file", 20, 76, "Path not found"},
      {"folder", 20, 75, "Path/File access error"},
  };
  list_.set(1, u"mine");
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.name << ", " << c.length);
    std::int16_t count = 7;
    EXPECT_EQ(fields(read(c.length, 1, count, c.name)),
              failure(c.number, c.message, "ooReadFile", "FileUtility"));
    EXPECT_EQ(count, 7);
    EXPECT_EQ(list_.at(1), u"mine");
  }
}

TEST_F(RecordFile, AListTooShortKeepsWhatItGot) {
  folder_.put("file", records(4));
  for (const std::int32_t upper : {2, 3}) {  // short by more records, and by the last alone
    list_ = TextArray(Bounds{1, upper});
    std::int16_t count = 10;
    EXPECT_EQ(fields(read(20, 1, count)), failure(9, "ooReadFile", "FileUtility"));
    EXPECT_EQ(count, 4);
    EXPECT_EQ(list_.at(upper), record(upper));
  }
  std::int16_t count = 1;
  for (const TextArray& list : {TextArray(), TextArray(Bounds{2, 9}), TextArray({1, 9}, {1, 9})}) {
    list_ = list;
    EXPECT_EQ(read(20, 1, count).numberInfo(), 9);
  }
}

// The file is sparse, and its last records lie just beyond what 32 bits count.
TEST_F(RecordFile, TenRecordsOfAHugeFile) {
  constexpr std::int32_t kRecords = 4'418'695;
  std::error_code refused;
  std::filesystem::resize_file(folder_.put("file", records(10, 970)), std::uint64_t{972} * kRecords,
                               refused);
  if (refused) GTEST_SKIP() << "the file system has no room for sparse files";
  std::int16_t count = 10;
  EXPECT_EQ(fields(read(970, 1, count)), kRead);
  EXPECT_EQ(list_.at(10), record(10));
  EXPECT_EQ(fields(read(970, kRecords - 3, count)), kRead);
  EXPECT_EQ(count, 4);
  EXPECT_EQ(list_.at(4), u" ");
}

}  // namespace
}  // namespace veltgeneral

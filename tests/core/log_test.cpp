#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <map>

#include "automation/locale.h"
#include "platform/log_append.h"
#include "support/process.h"
#include "support/test_host.h"
#include "veltgeneral/err_info.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;

struct Log : testing::Test {
  void set(const std::string& values) const {
    host.setMachineKey("SOFTWARE\\Zoltra\\LogSystem", values);
  }
  void set(int trace, int size) const {
    set("\"Trace\"=\"" + std::to_string(trace) + "\"\n\"SwitchDimension\"=\"" +
        std::to_string(size) + "\"");
  }
  ErrInfo write(int severity, TextView path = u"C:\\app.log", std::string_view text = "x") const {
    return ErrInfo(eiABORTED, fromUtf8(text), static_cast<typeInfoCostant>(severity), u"op",
                   Text(u"FileUtil"), Text(u"PROC"), Text(u" step "))
        .writeLog(Text(path));
  }
  // What a file holds; "-" where there is none.
  std::string at(const std::string& path) const {
    return fs::exists(path) ? test::contentOf(path) : "-";
  }

  const test::TestHost host;
  const std::string own = host / "drive/app.log";
  const std::string common = host / "home/tarnview.log";
};

TEST_F(Log, SettingsHaveDefaultsAndOddForms) {
  fs::create_directory(host / "drive/logs");
  const Text home = host.text("home") + u'\\';
  struct Case {
    std::string values;
    Text folder;
    std::int16_t trace;
    std::int32_t size;
  };
  const Case cases[] = {
      {"", home, 1, 1024000},
      {"\"Path\"=\" C:\\\\logs \"\n\"SwitchDimension\"=\"9.4\"", u"C:\\logs\\", 1, 9},
      {"\"Path\"=\"C:\\\\logs\\\\\"\n\"Trace\"=dword:2\n\"SwitchDimension\"=dword:0102",
       u"C:\\logs\\", 2, 18},
      {"\"Path\"=\"C:\\\\none\"\n\"Trace\"=\"x\"\n\"SwitchDimension\"=\"x\"", home, 1, 1024000},
      {"\"Path\"=\"Q:\\\\logs\"\n\"Trace\"=\"70000\"\n\"SwitchDimension\"=\"-5\"", home, 1, -5},
      {"\"Path\"=\"C:\\\\l*\"\n\"Trace\"=\"-1\"", u"C:\\l*\\", -1, 1024000},
  };
  const ScopedLocale english("en_US");
  for (const Case& c : cases) {
    set(c.values);
    Text path = u"not used";
    std::int16_t trace = 9;
    std::int32_t size = 9;
    EXPECT_TRUE(ErrInfo().getInfoForLogSystem(path, trace, size));
    EXPECT_EQ(std::tuple(path, trace, size), std::tuple(c.folder, c.trace, c.size)) << c.values;
  }
}

TEST_F(Log, EachSeverityNeedsItsTraceLevel) {
  for (int trace = -1; trace <= 5; ++trace) {
    for (const int severity : {0, 1, 2, 3, 4, 7}) {
      SCOPED_TRACE(std::to_string(trace) + "/" + std::to_string(severity));
      set(trace, 1000);
      fs::remove(common);
      fs::remove(own);
      const ErrInfo done = write(severity);
      EXPECT_EQ(std::tuple(done.isSuccess(), done.typeInfo(), done.locationInfo()),
                std::tuple(true, eiINFORMATIONTYPE, u"writeLog"));
      const bool admitted = trace >= (severity <= 4 ? severity : 0);
      EXPECT_EQ(fs::exists(own), admitted);
      EXPECT_EQ(fs::exists(common), admitted && (severity == 1 || severity == 2));
    }
  }
}

TEST_F(Log, ALineIsAQuotedRecordInTheCodePage) {
  const ScopedLocale italian("it_IT");
  write(eiERRORTYPE, u"", "say \"è\u4E00\"");
  const testing::Matcher<std::string> record = testing::MatchesRegex(
      "\"\\[[0-9]+/[0-9]+/[0-9]{2} [0-9]+:[0-9]{2}] \\[PROC] \\[FileUtil] \\[op] \\[ step ] "
      "\\[1] \\[-2147220904] \\[say \"\xE8\\?\"]\"\r\n");
  EXPECT_TRUE(record.Matches(at(common))) << at(common);
}

TEST_F(Log, RotatesStrictlyAboveTheLimit) {
  set(4, 100);
  test::setContent(own, std::string(100, 'x'));
  write(3);
  EXPECT_EQ(at(own + ".old"), "-");
  const std::string grown = at(own);
  EXPECT_TRUE(grown.starts_with(std::string(100, 'x')));
  test::setContent(own + ".old", "older");
  write(3);
  EXPECT_EQ(at(own + ".old"), grown);
  EXPECT_EQ(at(own), grown.substr(100));
  // Rotation does not wait for a severity that is admitted.
  set(-1, 100);
  write(3);
  EXPECT_EQ(at(own + ".old"), grown);
  test::setContent(own, std::string(101, 'y'));
  write(3);
  EXPECT_EQ(at(own), "-");
  EXPECT_EQ(at(own + ".old"), std::string(101, 'y'));
  // What is no limit leaves the one that nobody set.
  set(3, 0);
  test::setContent(own, "z");
  write(3);
  EXPECT_TRUE(at(own).starts_with("z\"["));
}

TEST_F(Log, FailuresAreSwallowedStepByStep) {
  const std::string big(200, 'x'), old = own + ".old";
  const struct {
    unsigned folder, log;
    const char* old;  // read-only, where there is one
    std::string after, rotated;
  } kCases[] = {
      {0755, 0644, "keep", big + "new", "keep"},  // nothing takes its place: the log grows on
      {0755, 0444, nullptr, big, big},            // copied, cannot be deleted, takes no line
      {0555, 0644, nullptr, big + "new", "-"},
  };
  for (const auto& c : kCases) {
    host.put("drive/app.log", big);
    fs::permissions(own, fs::perms(c.log));
    if (c.old) fs::permissions(host.put("drive/app.log.old", c.old), fs::perms(0444));
    fs::permissions(host / "drive", fs::perms(c.folder));
    platform::appendToLog(own, 100, "new");
    platform::appendToLog(host / "drive/other.log", 100, "new");
    EXPECT_EQ(std::tuple(at(own), at(old)), std::tuple(c.after, c.rotated));
    EXPECT_EQ(fs::exists(host / "drive/other.log"), c.folder == 0755);
    fs::permissions(host / "drive", fs::perms(0755));
    for (const char* name : {"drive/app.log", "drive/app.log.old", "drive/other.log"})
      fs::remove(host / name);
  }
  fs::create_directory(old);
  host.put("drive/app.log", big);
  platform::appendToLog(own, 100, "new");
  EXPECT_EQ(at(own), big + "new");
  // No folder, no name, a full device.
  for (const TextView path : {u"C:\\no\\app.log", u"", u"Q:\\x", u"C:\\"})
    EXPECT_TRUE(write(1, path).isSuccess());
  EXPECT_FALSE(platform::appendToLog("/dev/full", 100, "new"));
}

// What may not be deleted after a failure is copied: the common log then goes on growing.
TEST_F(Log, AFailedFileOfTheCallersKeepsTheCommonLog) {
  const std::string big(200, 'x');
  set(1, 100);
  for (const TextView path : {u"C:\\no\\app.log", u"Q:\\x", u"C:\\app.log"}) {
    test::setContent(common, big);
    write(1, path);
    EXPECT_EQ(at(common + ".old"), big);
    EXPECT_EQ(at(common).starts_with(big + "\"["), path != u"C:\\app.log");
  }
}

// A disk with room for half a record.
TEST_F(Log, ARecordIsNeverLeftTorn) {
  const auto writeAll = [&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100, 100};
    for (int i = 0; ::setrlimit(RLIMIT_FSIZE, &limit) == 0 && i < 5; ++i)
      platform::appendToLog(own, 1000, std::string(30, 'x') + "\r\n");
    return true;
  };
  ASSERT_TRUE(test::succeeded(test::inProcess(writeAll)));
  EXPECT_EQ(fs::file_size(own), 96u);
}

// Over one rotation no record is lost; over many the earliest are, none is torn or doubled.
TEST_F(Log, ManyProcessesTearAndDoubleNothing) {
  constexpr int kLines = 200;
  for (int round = 0; round < 60; ++round) {
    const int size = round == 0 ? 2000 : 80000;
    set(3, size);
    fs::remove(own);
    EXPECT_TRUE(test::inProcesses([&](int process) {
      for (int i = 0; i < kLines; ++i)
        write(3, u"C:\\app.log", std::to_string(process) + "-" + std::to_string(i));
      return true;
    }));
    std::map<std::string, int> records;
    for (const std::string& file : {own + ".old", own}) {
      std::ifstream in(file, std::ios::binary);
      for (std::string line; std::getline(in, line);) {
        EXPECT_TRUE(line.starts_with("\"[") && line.ends_with("]\"\r") && line.rfind("\"[") == 0);
        EXPECT_EQ(++records[line.substr(line.rfind('['))], 1) << line;
      }
    }
    // The small limit is passed again and again, and one old file is kept.
    EXPECT_EQ(records.size() == std::size_t{test::kProcesses} * kLines, size > 2000) << round;
    EXPECT_GT(fs::file_size(own + ".old"), static_cast<std::uintmax_t>(size));
  }
}

}  // namespace
}  // namespace veltgeneral

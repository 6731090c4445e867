#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <map>

#include "automation/locale.h"
#include "platform/log_append.h"
#include "settings/support.h"
#include "veltgeneral/err_info.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;
using namespace test;

const std::string kKey = "SOFTWARE\\Zoltra\\LogSystem";

void setLog(const TestHost& host, const std::string& trace, const std::string& size) {
  host.setMachineKey(kKey, "\"Trace\"=\"" + trace + "\"\n\"SwitchDimension\"=\"" + size + "\"");
}

ErrInfo resultOfSeverity(int severity) {
  return {eiABORTED,      u"say \"x\"",      static_cast<typeInfoCostant>(severity),
          u"op",          Text(u"FileUtil"), Text(u"PROC"),
          Text(u" step ")};
}

TEST(Log, SettingsHaveDefaultsAndOddForms) {
  const TestHost host;
  fs::create_directory(host / "drive/logs");
  const Text home = fromUtf8(host / "home") + u'\\';
  struct Case {
    std::string values;
    Text folder;
    std::int16_t trace;
    std::int32_t size;
  };
  const Case cases[] = {
      {"", home, 1, 1024000},
      {"\"Path\"=\" C:\\\\logs \"\n\"Trace\"=\"4\"\n\"SwitchDimension\"=\"9.4\"", u"C:\\logs\\", 4,
       9},
      {"\"Path\"=\"C:\\\\logs\\\\\"\n\"Trace\"=dword:2\n\"SwitchDimension\"=dword:0102",
       u"C:\\logs\\", 2, 18},
      {"\"Path\"=\"C:\\\\none\"\n\"Trace\"=\"x\"\n\"SwitchDimension\"=dword:fa000", home, 1,
       1024000},
      {"\"Path\"=\"Q:\\\\logs\"\n\"Trace\"=\"70000\"\n\"SwitchDimension\"=\"-5\"", home, 1, -5},
      {"\"Path\"=\"C:\\\\l*\"\n\"Trace\"=\"-1\"", u"C:\\l*\\", -1, 1024000},
  };
  const ScopedLocale english("en_US");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.values);
    host.setMachineKey(kKey, c.values);
    Text path = u"not used";
    std::int16_t trace = 9;
    std::int32_t size = 9;
    EXPECT_TRUE(ErrInfo().getInfoForLogSystem(path, trace, size));
    EXPECT_EQ(path, c.folder);
    EXPECT_EQ(trace, c.trace);
    EXPECT_EQ(size, c.size);
  }
}

TEST(Log, EachSeverityNeedsItsTraceLevel) {
  const TestHost host;
  for (int trace = -1; trace <= 5; ++trace) {
    for (const int severity : {0, 1, 2, 3, 4, 7}) {
      SCOPED_TRACE(std::to_string(trace) + "/" + std::to_string(severity));
      setLog(host, std::to_string(trace), "1000");
      fs::remove(host / "home/tarnview.log");
      fs::remove(host / "drive/app.log");
      const ErrInfo done = resultOfSeverity(severity).writeLog(Text(u"C:\\app.log"));
      EXPECT_TRUE(done.isSuccess());
      EXPECT_EQ(done.typeInfo(), eiINFORMATIONTYPE);
      EXPECT_EQ(done.locationInfo(), u"writeLog");
      const bool admitted = trace >= (severity <= 4 ? severity : 0);
      EXPECT_EQ(fs::exists(host / "drive/app.log"), admitted);
      EXPECT_EQ(fs::exists(host / "home/tarnview.log"),
                admitted && (severity == 1 || severity == 2));
    }
  }
}

TEST(Log, ALineIsAQuotedRecordInTheCodePage) {
  const TestHost host;
  const ScopedLocale italian("it_IT");
  ErrInfo(eiABORTED, u"say \"è\u4E00\"", eiERRORTYPE, u"op", Text(u"FileUtil"), Text(u"PROC"),
          Text(u" step "))
      .writeLog();
  const std::string line = contentOf(host / "home/tarnview.log");
  EXPECT_TRUE(::testing::Matcher<std::string>(
                  ::testing::MatchesRegex("\"\\[[0-9]+/[0-9]+/[0-9]{2} [0-9]+:[0-9]{2}] \\[PROC] "
                                          "\\[FileUtil] \\[op] \\[ step ] \\[1] \\[-2147220904] "
                                          "\\[say \"\xE8\\?\"]\"\r\n"))
                  .Matches(line))
      << line;
}

TEST(Log, RotatesStrictlyAboveTheLimit) {
  const TestHost host;
  const std::string log = host / "drive/app.log";
  setLog(host, "4", "100");
  const auto write = [] { resultOfSeverity(3).writeLog(Text(u"C:\\app.log")); };
  setContent(log, std::string(100, 'x'));
  write();
  EXPECT_FALSE(fs::exists(log + ".old"));
  const std::string grown = contentOf(log);
  EXPECT_TRUE(grown.starts_with(std::string(100, 'x')));
  setContent(log + ".old", "older");
  write();
  EXPECT_EQ(contentOf(log + ".old"), grown);
  EXPECT_EQ(contentOf(log), grown.substr(100));
  // Rotation does not wait for a severity that is admitted.
  setLog(host, "-1", "100");
  write();
  EXPECT_EQ(contentOf(log + ".old"), grown);
  setContent(log, std::string(101, 'y'));
  write();
  EXPECT_FALSE(fs::exists(log));
  EXPECT_EQ(contentOf(log + ".old"), std::string(101, 'y'));
}

TEST(Log, FailuresAreSwallowedStepByStep) {
  const TestHost host;
  const std::string log = host / "drive/app.log";
  const std::string big(200, 'x');
  const auto write = [&] { platform::appendToLog(log, 100, "new\r\n"); };
  // ".old" cannot be replaced: the file goes on growing.
  fs::create_directory(log + ".old");
  setContent(log, big);
  write();
  EXPECT_EQ(contentOf(log), big + "new\r\n");
  fs::remove(log + ".old");
  setContent(log + ".old", "keep");
  fs::permissions(log + ".old", fs::perms(0444));
  write();
  EXPECT_EQ(contentOf(log + ".old"), "keep");
  EXPECT_EQ(contentOf(log), big + "new\r\nnew\r\n");
  // A read-only file is copied, cannot be deleted, and takes no line.
  fs::remove(log + ".old");
  setContent(log, big);
  fs::permissions(log, fs::perms(0444));
  write();
  EXPECT_EQ(contentOf(log + ".old"), big);
  EXPECT_EQ(contentOf(log), big);
  // A read-only folder.
  fs::permissions(log, fs::perms(0644));
  fs::remove(log + ".old");
  fs::permissions(host / "drive", fs::perms(0555));
  write();
  platform::appendToLog(host / "drive/other.log", 100, "new");
  EXPECT_FALSE(fs::exists(log + ".old"));
  EXPECT_FALSE(fs::exists(host / "drive/other.log"));
  EXPECT_EQ(contentOf(log), big + "new\r\n");
  fs::permissions(host / "drive", fs::perms(0755));
  // No folder, no name, a full device.
  for (const TextView path : {u"C:\\no\\app.log", u"", u"Q:\\x", u"C:\\"})
    EXPECT_TRUE(resultOfSeverity(1).writeLog(Text(path)).isSuccess());
  EXPECT_FALSE(platform::appendToLog("/dev/full", 100, "new"));
}

// What may not be deleted after a failure is copied: the common log then goes on growing.
TEST(Log, AFailedFileOfTheCallersKeepsTheCommonLog) {
  const TestHost host;
  const std::string log = host / "home/tarnview.log";
  const std::string big(200, 'x');
  setLog(host, "1", "100");
  for (const TextView path : {u"C:\\no\\app.log", u"Q:\\x", u"C:\\app.log"}) {
    setContent(log, big);
    resultOfSeverity(1).writeLog(Text(path));
    EXPECT_EQ(contentOf(log + ".old"), big);
    EXPECT_EQ(contentOf(log).starts_with(big + "\"["), path != u"C:\\app.log");
  }
}

// A disk with room for half a record.
TEST(Log, ARecordIsNeverLeftTorn) {
  const TestHost host;
  const std::string log = host / "drive/app.log";
  ASSERT_TRUE(succeeded(inProcess([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100, 100};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    for (int i = 0; i < 5; ++i) platform::appendToLog(log, 1000, std::string(30, 'x') + "\r\n");
    return true;
  })));
  EXPECT_EQ(fs::file_size(log), 96u);
}

// Every record that was written, by its text, from the file and its ".old".
std::map<std::string, int> recordsOf(const std::string& log, std::size_t& torn) {
  std::map<std::string, int> records;
  for (const std::string& file : {log + ".old", log}) {
    std::ifstream in(file, std::ios::binary);
    for (std::string line; std::getline(in, line);) {
      const auto at = line.rfind('[');
      const bool whole = line.starts_with("\"[") && line.ends_with("]\"\r") &&
                         line.find('[') == line.find("\"[") + 1 && at != std::string::npos;
      if (whole) {
        ++records[line.substr(at)];
      } else {
        ++torn;
      }
    }
  }
  return records;
}

void writeFromProcesses(int processes, int lines) {
  std::vector<pid_t> children;
  for (int process = 0; process < processes; ++process)
    children.push_back(inProcess([&] {
      for (int i = 0; i < lines; ++i) {
        const std::string text = std::to_string(process) + "-" + std::to_string(i);
        ErrInfo(1, fromUtf8(text), eiERRORTYPE, u"op").writeLog(Text(u"C:\\app.log"));
      }
      return true;
    }));
  for (const pid_t child : children) EXPECT_TRUE(succeeded(child));
}

TEST(Log, ManyProcessesTearAndDoubleNothingAndLoseNothingOverOneRotation) {
  constexpr int kProcesses = 8;
  for (const auto& [limit, lines] : {std::pair(5'000'000u, 20'000), std::pair(2000u, 500)}) {
    const TestHost host;
    setLog(host, "1", std::to_string(limit));
    writeFromProcesses(kProcesses, lines);
    std::size_t torn = 0;
    const auto records = recordsOf(host / "drive/app.log", torn);
    EXPECT_EQ(torn, 0u);
    for (const auto& [text, count] : records) ASSERT_EQ(count, 1) << text;
    EXPECT_GT(fs::file_size(host / "drive/app.log.old"), limit);
    // The small limit is passed again and again, and one old file is kept.
    const auto written = static_cast<std::size_t>(kProcesses * lines);
    EXPECT_EQ(records.size() == written, limit == 5'000'000u) << records.size();
  }
}

}  // namespace
}  // namespace veltgeneral

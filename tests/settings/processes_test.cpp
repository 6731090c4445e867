// The stores among many processes, and under kills at any moment.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "platform/log_append.h"
#include "platform/profile.h"
#include "platform/registry.h"
#include "settings/support.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;
using namespace test;
using platform::ProfileCall;
using platform::RegistryKey;
using platform::RegistryRoot;

Text number(int value) { return fromUtf8(std::to_string(value)); }

// Sections and keys that two processes share.
Text place(int process) { return Text(u"s").append(number(process / 2)); }

Text name(int process, int setting) { return number(process).append(u".").append(number(setting)); }

bool putProfile(const std::string& path, const Text& section, const Text& key, const Text& value) {
  return platform::writeProfile(ProfileCall::narrow, &section, &key, &value, path, latin1());
}

Text getProfile(const std::string& path, const Text& section, const Text& key) {
  return platform::readProfile(ProfileCall::narrow, &section, &key, nullptr, 1000, path, latin1());
}

bool putRegistry(const Text& key, const Text& name, const Text& value) {
  return platform::writeRegistryText(RegistryRoot::localMachine, key, name, value, latin1());
}

constexpr int kSettings = 1000;

// Both stores begin without a file: the first creation is contended too.
TEST(Processes, LoseNoSettingOfOneFile) {
  const TestHost host(memoryFolder());
  const std::string path = host / "drive/a.ini";
  const auto put = [&](int process, int i) {
    const Text section = place(process), key = name(process, i);
    return putProfile(path, section, key, number(i)) && putRegistry(section, key, number(i));
  };
  EXPECT_TRUE(inProcesses([&](int process) {
    int i = 0;
    while (i < kSettings && put(process, i)) ++i;
    return i == kSettings;
  }));
  for (int process = 0; process < kProcesses; ++process) {
    const auto key = RegistryKey::open(RegistryRoot::localMachine, place(process), latin1());
    ASSERT_TRUE(key);
    for (int i = 0; i < kSettings; ++i) {
      ASSERT_EQ(getProfile(path, place(process), name(process, i)), number(i));
      ASSERT_EQ(key->query(name(process, i))->text, number(i));
    }
  }
}

// One process changes without pause what another kills it over; `check` then looks at what is left.
void killAgainAndAgain(const std::function<void(int)>& change, const std::function<void()>& check) {
  constexpr int kRounds = 170;
  for (int round = 0; round < kRounds && !::testing::Test::HasFailure(); ++round) {
    const pid_t child = inProcess([&] {
      for (int i = 0;; ++i) change(i);
      return true;
    });
    // Spread over many writes, at no multiple of anything.
    std::this_thread::sleep_for(std::chrono::microseconds(1500 + round * 37 % 2000));
    ::kill(child, SIGKILL);
    EXPECT_FALSE(succeeded(child));
    check();
  }
}

// Large enough that a write takes a while.
std::string padding() {
  std::string lines;
  for (int i = 0; i < 3000; ++i) lines += "pad" + std::to_string(i) + "=0123456789\r\n";
  return lines;
}

TEST(Processes, KilledOverAProfileLeaveItWholeAndUnlocked) {
  const TestHost host;
  const std::string path = host / "drive/a.ini";
  const std::string rest = "[s]\r\nend=1\r\n";
  setContent(path, "[pad]\r\n" + padding() + rest);
  const auto whole = fs::file_size(path);
  killAgainAndAgain([&](int i) { putProfile(path, u"s", u"v", number(i % 10)); },
                    [&] {
                      const std::string content = contentOf(path);
                      ASSERT_TRUE(content.size() == whole || content.size() == whole + 5);
                      ASSERT_TRUE(content.find(rest) != std::string::npos);
                      // Two, so that one is a change: that clears what the killed one left.
                      for (const Text value : {u"a", u"b"}) {
                        ASSERT_TRUE(putProfile(path, u"s", u"v", value));
                        ASSERT_EQ(getProfile(path, u"s", u"v"), value);
                      }
                    });
  const fs::directory_iterator files(host / "drive");
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST(Processes, KilledOverTheRegistryLeaveItWholeAndUnlocked) {
  const TestHost host;
  killAgainAndAgain(
      [](int i) { putRegistry(u"K", number(i % 50), Text(200, u'x')); },
      [&] {
        ASSERT_TRUE(putRegistry(u"K", u"after", u"1"));
        const auto key = RegistryKey::open(RegistryRoot::localMachine, u"K", latin1());
        ASSERT_TRUE(key && key->query(u"after"));
        for (const Text& value : key->valueNames())
          ASSERT_TRUE(value == u"after" || key->query(value)->text == Text(200, u'x'));
      });
}

TEST(Processes, KilledOverTheLogNeverJoinTwoLines) {
  const TestHost host;
  const std::string path = host / "drive/app.log";
  const std::string line = std::string(150, 'x') + "\r";
  killAgainAndAgain(
      [&](int) { platform::appendToLog(path, 20000, line + "\n"); },
      [&] {
        platform::appendToLog(path, 20000, line + "\n");
        for (const std::string& file : {path, path + ".old"}) {
          std::ifstream in(file, std::ios::binary);
          for (std::string read; std::getline(in, read);)
            ASSERT_TRUE(read == line || (line + "\r").starts_with(read.substr(0, read.size() - 1)))
                << read;
        }
      });
}

// As a killed process leaves it: the pages that it had filled.
TEST(Processes, RecordAfterATornOneStartsALine) {
  const TestHost host;
  const std::string path = host / "drive/app.log";
  for (const auto& [before, between] : {std::pair{std::string(4096, 'x'), "\r\n"},
                                        {std::string(8190, 'x') + "\r\n", ""},
                                        {std::string(4095, 'x'), ""}}) {
    setContent(path, before);
    ASSERT_TRUE(platform::appendToLog(path, 20000, "next\r\n"));
    EXPECT_EQ(contentOf(path), before + between + "next\r\n");
  }
}

}  // namespace
}  // namespace veltgeneral

// The stores among many processes, and under kills at any moment.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "platform/log_append.h"
#include "platform/profile.h"
#include "platform/registry.h"
#include "support/process.h"
#include "support/test_host.h"

namespace veltgeneral {
namespace {

using namespace test;
using platform::ProfileCall;
using platform::RegistryKey;

constexpr platform::RegistryRoot kRoot = platform::RegistryRoot::localMachine;

Text number(int value) { return fromUtf8(std::to_string(value)); }

bool putProfile(const std::string& path, const Text& section, const Text& key, const Text& value) {
  return platform::writeProfile(ProfileCall::narrow, &section, &key, &value, path, latin1());
}

Text getProfile(const std::string& path, const Text& section, const Text& key) {
  return platform::readProfile(ProfileCall::narrow, &section, &key, nullptr, 1000, path, latin1());
}

bool putRegistry(const Text& key, const Text& name, const Text& value) {
  return platform::writeRegistryText(kRoot, key, name, value, latin1());
}

// Two processes share each section and key. The files are made anew again and again: their creation
// is contended too.
TEST(Processes, LoseNoSettingOfOneFile) {
  constexpr int kSettings = 50;
  const auto place = [](int process) { return Text(u"s").append(number(process / 2)); };
  const auto name = [](int process, int i) { return number(process * kSettings + i); };
  for (int round = 0; round < 20; ++round) {
    const TestHost host;
    const std::string path = host / "drive/a.ini";
    EXPECT_TRUE(inProcesses([&](int process) {
      bool good = true;
      for (int i = 0; good && i < kSettings; ++i)
        good = putProfile(path, place(process), name(process, i), number(i)) &&
               putRegistry(place(process), name(process, i), number(i));
      return good;
    }));
    for (int process = 0; process < kProcesses; ++process) {
      const auto key = RegistryKey::open(kRoot, place(process), latin1());
      ASSERT_TRUE(key);
      for (int i = 0; i < kSettings; ++i) {
        ASSERT_EQ(getProfile(path, place(process), name(process, i)), number(i));
        ASSERT_EQ(key->query(name(process, i))->text, number(i));
      }
    }
  }
}

// One process changes without pause what another kills it over; `check` then looks at what is left.
void killAgainAndAgain(const std::function<void(int)>& change, const std::function<void()>& check) {
  for (int round = 0; round < 170 && !testing::Test::HasFailure(); ++round) {
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

TEST(Processes, KilledOverAProfileLeaveItWholeAndUnlocked) {
  const TestHost host;
  // Large enough that a write takes a while.
  std::string whole = "[pad]\r\n";
  for (int i = 0; i < 3000; ++i) whole += "pad" + std::to_string(i) + "=0123456789\r\n";
  whole += "[s]\r\nend=1\r\n";
  const std::string path = host.put("drive/a.ini", whole);
  const auto change = [&](int i) { putProfile(path, u"s", u"v", number(i % 10)); };
  killAgainAndAgain(change, [&] {
    const std::string left = contentOf(path);
    ASSERT_TRUE(left.starts_with(whole) && left.size() <= whole.size() + 5) << left.size();
    // Two, so that one is a change: that clears what the killed one left.
    for (const Text value : {u"a", u"b"}) {
      ASSERT_TRUE(putProfile(path, u"s", u"v", value));
      ASSERT_EQ(getProfile(path, u"s", u"v"), value);
    }
  });
  const std::filesystem::directory_iterator files(host / "drive");
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST(Processes, KilledOverTheRegistryLeaveItWholeAndUnlocked) {
  const TestHost host;
  const Text big(200, u'x');
  killAgainAndAgain([&](int i) { putRegistry(u"K", number(i % 50), big); },
                    [&] {
                      ASSERT_TRUE(putRegistry(u"K", u"after", big));
                      const auto key = RegistryKey::open(kRoot, u"K", latin1());
                      ASSERT_TRUE(key && key->query(u"after"));
                      for (const Text& name : key->valueNames())
                        ASSERT_EQ(key->query(name)->text, big);
                    });
}

TEST(Processes, KilledOverTheLogNeverJoinTwoLines) {
  const TestHost host;
  const std::string path = host / "drive/app.log";
  const std::string line = std::string(150, 'x') + "\r";
  const auto append = [&](int) { platform::appendToLog(path, 20000, line + "\n"); };
  killAgainAndAgain(append, [&] {
    append(0);
    for (const std::string& file : {path, path + ".old"}) {
      std::ifstream in(file, std::ios::binary);
      for (std::string read; std::getline(in, read);)
        ASSERT_TRUE(read == line || line.starts_with(read.substr(0, read.size() - 1))) << read;
    }
  });
  // As a killed process leaves it: the pages that it had filled.
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

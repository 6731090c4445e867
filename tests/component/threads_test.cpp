// Different objects on different threads: each thread works with its own, all of them over the same
// files, settings and tables of the process.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>

#include "automation/locale.h"
#include "support/test_host.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/component.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/registry_utility.h"
#include "veltgeneral/velt_inet.h"
#include "veltgeneral/veltgeneral_c.h"

namespace veltgeneral {
namespace {

void onThreads(int count, const std::function<void(int)>& body) {
  std::vector<std::jthread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back(body, i);
}

void useTables(const Text& path, const char* language) {
  const ScopedLocale locale(language);
  TextArray table({1, 1}, {1, 1});
  table.set(1, 1, u"perché; \"sì\"");
  TextArray again;
  std::int32_t rows = 0;
  EXPECT_TRUE(FileUtility().writeCsvFileFromArray(path, table, 1, 1).isSuccess());
  ASSERT_TRUE(FileUtility().getArrayFromCsvFile(path, again, 1, rows).isSuccess());
  EXPECT_EQ(again.at(1, rows), table.at(1, 1));
  Variant date = Text(u"20240229");
  const ObjectRef byName = createObject(u"Funzioni");
  EXPECT_EQ(byName->call(u"isDateYYYYMMDD", CallKind::method, {&date, 1}), Variant(true));
  EXPECT_EQ(Funzioni().getNumberFromXml(Text(u"1.5")), 1.5);
}

void useSettings(const test::TestHost& host, const Text& name, const Text& value) {
  EXPECT_TRUE(RegistryUtility().saveInfoForConnection(name, value, u"u", u"p").isSuccess());
  Text database;
  Text other;
  RegistryUtility().getInfoForConnection(name, database, other, other);
  EXPECT_EQ(database, value);
  cInifile ini;
  ini.setPath(host.text("shared.ini"));
  ini.setSection(u"s");
  ini.setKey(name);
  ini.setValue(database);
  EXPECT_EQ(ini.Value(), value);
  ErrInfo(eiABORTED, u"x", eiERRORTYPE, u"op").writeLog(host.text("shared.log"));
}

TEST(Threads, WorkWithObjectsOfTheirOwn) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 25;
  const test::TestHost host;
  // Each line has more than 40 bytes and fewer than 80: the log rotates once.
  host.setMachineKey("SOFTWARE\\Zoltra\\LogSystem", "\"SwitchDimension\"=\"4000\"");
  onThreads(kThreads, [&](int thread) {
    const Text name = fromUtf8("thread" + std::to_string(thread));
    // Modules are opened by whoever comes first; the generator refuses in its own words.
    std::int32_t session = 0;
    EXPECT_TRUE(VeltInet().IOpen(session).isSuccess());
    EXPECT_EQ(VeltInet().IClose(session), 0);
    EXPECT_EQ(Funzioni().createPdfFile(name, name).numberInfo(), eiABORTED);
    for (int round = 1; round <= kRounds; ++round) {
      useTables(host.text(toUtf8(name)), round % 2 == 0 ? "it_IT" : "en_US");
      useSettings(host, name, fromUtf8(std::to_string(round)));
    }
  });
  const std::string rotated = host.get("shared.log.old");
  EXPECT_GT(rotated.size(), 4000u);
  EXPECT_EQ(std::ranges::count(host.get("shared.log") + rotated, '\n'), kThreads * kRounds);
}

// A sort asks for the host's events while another thread exchanges who serves them.
TEST(Threads, HostEventsComeAndGoWhileOthersSort) {
  constexpr int kSorters = 3;
  std::atomic<int> served = 0;
  std::atomic<int> sorting = kSorters;
  const vg_host_events serve = [](void* context, vg_error*) -> vg_status {
    ++*static_cast<std::atomic<int>*>(context);
    return 0;
  };
  onThreads(kSorters + 1, [&](int thread) {
    if (thread == kSorters) {
      while (sorting > 0) vg_set_host_events(served % 2 == 0 ? serve : nullptr, &served);
      return;
    }
    // At least until the hook was seen at work.
    for (int round = 0; round < 2000 || served == 0; ++round) {
      TextArray list = TextArray::of({u"d", u"b", u"c", u"a", u"e"});
      Funzioni().quickSortArray(list, 1, 5, 1, 1, true);
      EXPECT_EQ(list, TextArray::of({u"a", u"b", u"c", u"d", u"e"}));
    }
    --sorting;
  });
  vg_set_host_events(nullptr, nullptr);
}

TEST(Threads, ShareAHandleAndItsCount) {
  vg_object* shared = nullptr;
  ASSERT_EQ(vg_create("Funzioni", &shared, nullptr), 0);
  onThreads(4, [&](int) {
    for (int round = 0; round < 1000; ++round) {
      vg_object* mine = nullptr;
      vg_create("ErrInfo", &mine, nullptr);
      vg_object_release(vg_object_retain(shared));
      vg_object_release(mine);
    }
  });
  EXPECT_EQ(DllCanUnloadNow(), 1);  // one object is left
  vg_object_release(shared);
  EXPECT_EQ(DllCanUnloadNow(), 0);
}

}  // namespace
}  // namespace veltgeneral

// Different objects on different threads: each thread works with its own, all of them over the same
// files, settings and tables of the process.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "automation/locale.h"
#include "support/temporary_folder.h"
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

class Worker {
 public:
  Worker(const test::TemporaryFolder& folder, int number)
      : folder_(folder),
        name_(fromUtf8(std::to_string(number))),
        application_(fromUtf8("App" + std::to_string(number))) {}

  // One round over everything; counts what is not as it should be.
  void work(int round) {
    tables();
    values(round);
    settings(round);
    lateBound();
    if (round == 1) modules();
  }
  int faults() const { return faults_; }

 private:
  void check(bool holds) { faults_ += holds ? 0 : 1; }

  void tables() {
    TextArray table({1, 2}, {1, 2});
    table.set(1, 1, name_);
    table.set(2, 2, u"perché; \"sì\"");
    const Text path = folder_.text("table" + toUtf8(name_));
    check(FileUtility().writeCsvFileFromArray(path, table, 2, 2).isSuccess());
    TextArray again;
    std::int32_t rows = 0;
    check(FileUtility().getArrayFromCsvFile(path, again, 2, rows).isSuccess());
    check(rows == 2 && again.at(2, 2) == table.at(2, 2));
    TextArray list = TextArray::of({u"c", u"B", u"a"});
    check(Funzioni().quickSortArray(list, 1, 3, 1, 1, false).isSuccess());
    check(list == TextArray::of({u"a", u"B", u"c"}));
  }

  void values(int round) {
    Funzioni values;
    check(values.isDateYYYYMMDD(u"20240229"));
    check(values.getDur2Xml(round * 600) == fromUtf8("PT" + std::to_string(round) + "H0M0S"));
    check(values.getNumberFromXml(Text(u"1.5")) == 1.5);
    const ScopedLocale locale(round % 2 == 0 ? "it_IT" : "en_US");
    Text out;
    check(values.normStringForDb(u"O'Neil", out).isSuccess() && out == u"O''Neil");
  }

  void settings(int round) {
    const Text value = fromUtf8(std::to_string(round));
    check(RegistryUtility().saveInfoForConnection(application_, value, u"u", u"p").isSuccess());
    Text database;
    Text user;
    Text password;
    RegistryUtility().getInfoForConnection(application_, database, user, password);
    check(database == value);
    cInifile ini;
    ini.setPath(folder_.text("shared.ini"));
    ini.setSection(u"s");
    ini.setKey(name_);
    Text stored = value;
    ini.setValue(stored);
    check(ini.Success() && ini.Value() == value);
    ErrInfo(eiABORTED, u"x", eiERRORTYPE, u"op").writeLog(folder_.text("shared.log"));
  }

  void lateBound() {
    const ObjectRef files = createObject(u"veltgeneral.fileutility");
    Variant arguments[] = {folder_.text("none"), Text(u"mine")};
    const Variant result = files->call(u"READFILE", CallKind::method, arguments);
    check(std::get<std::int32_t>(
              std::get<ObjectRef>(result)->call(u"numberInfo", CallKind::propertyGet, {})) == 53);
  }

  // Each is opened by whoever comes first.
  void modules() {
    std::int32_t session = 0;
    check(VeltInet().IOpen(session).isSuccess() && VeltInet().IClose(session) == 0);
    // Refused by the generator itself, in its own words.
    const ErrInfo refused = Funzioni().createPdfFile(folder_.text("none"), folder_.text("a.pdf"));
    check(refused.numberInfo() == eiABORTED);
  }

  const test::TemporaryFolder& folder_;
  Text name_;
  Text application_;
  int faults_ = 0;
};

TEST(Threads, WorkWithObjectsOfTheirOwn) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 25;
  const test::TemporaryFolder folder;
  setenv("VELTGENERAL_REGISTRY_DIR", folder.path().c_str(), 1);
  setenv("VELTGENERAL_HOME", folder.path().c_str(), 1);
  // Each line has more than 40 bytes and fewer than 80: the log rotates once.
  folder.put("machine.reg",
             "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Zoltra\\LogSystem]\n"
             "\"SwitchDimension\"=\"4000\"\n");
  std::vector<Worker> workers;
  for (int i = 0; i < kThreads; ++i) workers.emplace_back(folder, i);
  onThreads(kThreads, [&](int i) {
    for (int round = 1; round <= kRounds; ++round) workers[static_cast<std::size_t>(i)].work(round);
  });
  for (const Worker& worker : workers) EXPECT_EQ(worker.faults(), 0);
  const std::string rotated = folder.get("shared.log.old");
  EXPECT_GT(rotated.size(), 4000u);
  EXPECT_EQ(std::ranges::count(folder.get("shared.log") + rotated, '\n'), kThreads * kRounds);
  unsetenv("VELTGENERAL_REGISTRY_DIR");
  unsetenv("VELTGENERAL_HOME");
}

// A sort asks for the host's events while another thread exchanges who serves them.
TEST(Threads, HostEventsComeAndGoWhileOthersSort) {
  constexpr int kSorters = 3;
  std::atomic<int> served = 0;
  std::atomic<int> sorting = kSorters;
  std::vector<TextArray> lists(kSorters);
  onThreads(kSorters + 1, [&](int i) {
    const vg_host_events serve = [](void* context, vg_error*) -> vg_status {
      ++*static_cast<std::atomic<int>*>(context);
      return 0;
    };
    if (i == kSorters) {
      while (sorting > 0) vg_set_host_events(served % 2 == 0 ? serve : nullptr, &served);
      return;
    }
    // At least until the hook was seen at work.
    for (int round = 0; round < 20 || served == 0; ++round) {
      lists[static_cast<std::size_t>(i)] = TextArray::of({u"d", u"b", u"c", u"a", u"e"});
      Funzioni().quickSortArray(lists[static_cast<std::size_t>(i)], 1, 5, 1, 1, true);
    }
    --sorting;
  });
  vg_set_host_events(nullptr, nullptr);
  for (const TextArray& list : lists)
    EXPECT_EQ(list, TextArray::of({u"a", u"b", u"c", u"d", u"e"}));
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
  EXPECT_EQ(DllCanUnloadNow(), 1);  // one object is left, and it still answers
  const vg_member* member = nullptr;
  EXPECT_EQ(vg_resolve(shared, "isDateYYYYMMDD", VG_METHOD, &member, nullptr), 0);
  vg_object_release(shared);
  EXPECT_EQ(DllCanUnloadNow(), 0);
}

}  // namespace
}  // namespace veltgeneral

// Different objects on different threads: each thread works with its own, all of them over the same
// files, settings and tables of the process.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "support/temporary_folder.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/component.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/registry_utility.h"

namespace veltgeneral {
namespace {

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
  std::vector<Worker> workers;
  for (int i = 0; i < kThreads; ++i) workers.emplace_back(folder, i);
  std::vector<std::thread> threads;
  for (Worker& worker : workers) {
    threads.emplace_back([&worker] {
      for (int round = 1; round <= kRounds; ++round) worker.work(round);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Worker& worker : workers) EXPECT_EQ(worker.faults(), 0);
  const std::string log = folder.get("shared.log");
  EXPECT_EQ(std::ranges::count(log, '\n'), kThreads * kRounds);
  unsetenv("VELTGENERAL_REGISTRY_DIR");
  unsetenv("VELTGENERAL_HOME");
}

}  // namespace
}  // namespace veltgeneral

// One line to a log: beside the system calls it cannot do without, and beside a peer that opens its
// file for every line too.
#include <fcntl.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "floor.h"
#include "support/test_host.h"
#include "veltgeneral/err_info.h"

namespace veltgeneral {
namespace {

constexpr int kLines = 500;
const std::string kLine =
    "\"[21/11/26 9:00] [VELTGENERAL] [FileUtility] [readFile] [] [1] [53] [File not found]\"\r\n";

struct Host : test::TestHost {
  Host() {
    setMachineKey("SOFTWARE\\Zoltra\\LogSystem",
                  "\"Path\"=\"\"\n\"Trace\"=\"3\"\n\"SwitchDimension\"=\"1000000000\"");
  }
  std::string settings = *this / "registry/machine.reg";
};

void writeLines() {
  static ErrInfo result(53, u"File not found", eiINFORMATIONTYPE, u"readFile", Text(u"FileUtility"),
                        Text(u"VELTGENERAL"));
  static const Variant path = Text(u"C:\\app.log");
  for (int i = 0; i < kLines; ++i) result.writeLog(path);
}

void writeLog(benchmark::State& state) {
  const Host host;
  const std::string path = host / "drive/floor.log";
  bench::against(state, writeLines, [&] {
    struct stat status {};
    for (int i = 0; i < kLines; ++i) {
      ::stat(host.settings.c_str(), &status);
      const int file = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
      ::fstat(file, &status);
      benchmark::DoNotOptimize(::write(file, kLine.data(), kLine.size()));
      ::close(file);
    }
  });
  state.counters["lines"] = kLines;
}
BENCHMARK(writeLog)->Name("writeLog/floor")->UseManualTime()->Unit(benchmark::kMicrosecond);

void writeLogBesidePeer(benchmark::State& state) {
  const Host host;
  const std::string path = host / "drive/peer.log";
  bench::against(state, writeLines, [&] {
    for (int i = 0; i < kLines; ++i) {
      const auto sink = std::make_shared<spdlog::sinks::rotating_file_sink_st>(path, 1000000000, 1);
      spdlog::logger logger("bench", sink);
      logger.set_pattern("\"[%d/%m/%y %H:%M] %v\"");
      logger.info("[VELTGENERAL] [FileUtility] [readFile] [] [1] [53] [File not found]");
    }
  });
  state.counters["lines"] = kLines;
}
BENCHMARK(writeLogBesidePeer)
    ->Name("writeLog/spdlog")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace veltgeneral

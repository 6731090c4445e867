// A print system of a test's own: a scheduler on loopback without the rights of root, with all its
// files in a temporary folder. Its queues lead nowhere; it keeps what they were given.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/ports.h"
#include "support/process.h"
#include "support/temporary_folder.h"

namespace veltgeneral::test {

class PrintSystem {
 public:
  PrintSystem() {
    std::string files = "ServerRoot " + folder_ / "" + "\nTempDir " + folder_ / "" + "\n";
    for (const std::string name :
         {"RequestRoot", "CacheDir", "StateDir", "AccessLog", "ErrorLog", "PageLog"})
      files.append(name).append(" ").append(folder_ / name).append("\n");
    folder_.put("files.conf", files);
    folder_.put("cupsd.conf", "Listen " + address() +
                                  "\nBrowsing Off\nDefaultAuthType None\nWebInterface No\n"
                                  "DirtyCleanInterval 0\nPreserveJobFiles Yes\n"
                                  "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                                  "<Policy default>\n<Limit All>\nOrder allow,deny\nAllow all\n"
                                  "</Limit>\n</Policy>\n");
    constexpr unsigned kNobody = Process::kNobody;
    if (::geteuid() == 0 && ::chown(folder_.path().c_str(), kNobody, kNobody) != 0)
      throw std::runtime_error("chown");
    ::setenv("CUPS_SERVER", address().c_str(), 1);
    scheduler_.emplace(std::vector<std::string>{"cupsd", "-f", "-c", folder_ / "cupsd.conf", "-s",
                                                folder_ / "files.conf"},
                       Process::Options{.unprivileged = true});
    if (!waitUntil([] { return listening(kPort); }))
      throw std::runtime_error("cupsd does not start");
  }
  ~PrintSystem() { ::unsetenv("CUPS_SERVER"); }

  static std::string address() { return "127.0.0.1:" + std::to_string(kPort); }

  static void administer(std::vector<std::string> command) {
    command.insert(command.begin() + 1, {"-h", address()});
    if (const std::string name = command[0]; Process(std::move(command)).wait() != 0)
      throw std::runtime_error(name + " failed");
  }

  // The document of the next job.
  std::string received() {
    return folder_ / ("RequestRoot/d0000" + std::to_string(++jobs_) + "-001");
  }
  // Whether that job says `text`.
  bool jobSays(const std::string& text) const {
    return waitUntil([&] {
      return folder_.get("RequestRoot/c0000" + std::to_string(jobs_)).find(text) !=
             std::string::npos;
    });
  }

 private:
  TemporaryFolder folder_;
  // One for all: a thread of the print system's library looks for its scheduler once.
  inline static const int kPort = freePort();
  int jobs_ = 0;
  std::optional<Process> scheduler_;
};

}  // namespace veltgeneral::test

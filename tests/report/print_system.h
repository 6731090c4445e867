// A print system of a test's own: a scheduler and a printer that speaks IPP, both on loopback, both
// without the rights of root, with all their files in a temporary folder.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/temporary_folder.h"
#include "support/process.h"

namespace veltgeneral::test {

class PrintSystem {
 public:
  PrintSystem() {
    for (const char* name :
         {"spool", "spool/tmp", "cache", "state", "root", "incoming", "received"})
      std::filesystem::create_directory(folder_ / name);
    folder_.put("bus.conf", "<busconfig><type>system</type><listen>unix:path=" + folder_ / "bus" +
                                  "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                                  "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow "
                                  "eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    folder_.put("files.conf", "ServerRoot " + folder_ / "root" + "\nRequestRoot " +
                                    folder_ / "spool" + "\nTempDir " + folder_ / "spool/tmp" +
                                    "\nCacheDir " + folder_ / "cache" + "\nStateDir " +
                                    folder_ / "state" + "\nAccessLog " + folder_ / "access.log" +
                                    "\nErrorLog " + folder_ / "error.log" + "\nPageLog " +
                                    folder_ / "page.log" + "\n");
    folder_.put("cupsd.conf",
                  "Listen " + scheduler() +
                      "\nBrowsing Off\nDefaultAuthType None\nWebInterface No\n"
                      "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                      "<Policy default>\n<Limit All>\nOrder allow,deny\nAllow all\n</Limit>\n"
                      "</Policy>\n");
    // Printing is to keep the document.
    std::filesystem::permissions(
        folder_.put("print", "#!/bin/sh\ncp \"$1\" " + folder_ / "page" + " && mv " +
                                   folder_ / "page" + " " + folder_ / "received/" +
                                   "\"$(basename \"$1\")\"\n"),
        std::filesystem::perms::owner_all);
    if (::geteuid() == 0) giveAway();
    ::setenv("CUPS_SERVER", scheduler().c_str(), 1);
    // The printer asks for a system bus, though it has nothing to say on it.
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + folder_ / "bus").c_str(), 1);
    bus_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork",
                                          "--config-file=" + folder_ / "bus.conf"},
                 quiet());
    if (!waitUntil([&] { return std::filesystem::exists(folder_ / "bus"); }))
      throw std::runtime_error("dbus-daemon does not start");
  }
  ~PrintSystem() {
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    ::unsetenv("CUPS_SERVER");
  }

  std::string scheduler() const { return "127.0.0.1:" + std::to_string(schedulerPort_); }
  std::string printerAddress() const {
    return "ipp://localhost:" + std::to_string(printerPort_) + "/ipp/print";
  }

  void startScheduler() {
    start(scheduler_, schedulerPort_,
          {"cupsd", "-f", "-c", folder_ / "cupsd.conf", "-s", folder_ / "files.conf"}, quiet());
  }
  void startPrinter() {
    Process::Options options = quiet();
    options.output = folder_ / "printer.log";
    start(
        printer_, printerPort_,
        {"ippeveprinter", "-r", "off", "-n", "localhost", "-p", std::to_string(printerPort_), "-c",
         folder_ / "print", "-d", folder_ / "incoming", "-f", "application/pdf", "-vv", "Test"},
        options);
  }
  void stopPrinter() { printer_->end(); }

  void addDefaultQueue(const std::string& name) {
    administer({"lpadmin", "-p", name, "-E", "-v", printerAddress(), "-m", "everywhere"});
    administer({"lpadmin", "-d", name});
  }
  void refuseJobs(const std::string& name) { administer({"cupsreject", name}); }
  void acceptJobs(const std::string& name) { administer({"cupsaccept", name}); }

  // The document of the next job that the printer has received whole; empty where none comes.
  std::string received() {
    std::string file;
    ++jobs_;
    waitUntil([&] {
      for (const auto& entry : std::filesystem::directory_iterator(folder_ / "received"))
        if (entry.path().filename().string().starts_with(std::to_string(jobs_) + "-"))
          file = entry.path().string();
      return !file.empty();
    });
    return file;
  }
  std::string printerLog() const { return test::contentOf(folder_ / "printer.log"); }

 private:
  static Process::Options quiet() { return {.output = {}, .unprivileged = true}; }

  static int freePort() {
    const int s = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ::bind(s, reinterpret_cast<sockaddr*>(&address), length);
    ::getsockname(s, reinterpret_cast<sockaddr*>(&address), &length);
    ::close(s);
    return ntohs(address.sin_port);
  }
  static bool answers(int port) {
    const int s = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    const bool connected = ::connect(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::close(s);
    return connected;
  }

  void start(std::optional<Process>& program, int port, std::vector<std::string> command,
             const Process::Options& options) {
    const std::string name = command[0];
    program.emplace(std::move(command), options);
    if (!waitUntil([&] { return answers(port); }))
      throw std::runtime_error(name + " does not start");
  }
  void administer(std::vector<std::string> command) {
    command.insert(command.begin() + 1, {"-h", scheduler()});
    if (const std::string name = command[0]; Process(std::move(command)).wait() != 0)
      throw std::runtime_error(name + " failed");
  }
  void giveAway() {
    const auto give = [](const std::string& path) {
      if (::chown(path.c_str(), Process::kNobody, Process::kNobody) != 0)
        throw std::runtime_error("chown");
    };
    give(folder_ / "");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / ""))
      give(entry.path().string());
  }

  test::TemporaryFolder folder_;
  // One for all: a thread of the print system's library looks for its scheduler once.
  inline static const int schedulerPort_ = freePort();
  int printerPort_ = freePort();
  int jobs_ = 0;
  std::optional<Process> bus_;
  std::optional<Process> printer_;
  std::optional<Process> scheduler_;
};

}  // namespace veltgeneral::test

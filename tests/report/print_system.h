// A print system of a test's own: a scheduler and a printer that speaks IPP, both on loopback, both
// without the rights of root, with all their files in a temporary folder.
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
    for (const char* name : {"tmp", "root", "incoming", "received"})
      std::filesystem::create_directory(folder_ / name);
    folder_.put("bus.conf", "<busconfig><type>system</type><listen>unix:path=" + folder_ / "bus" +
                                "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                                "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow "
                                "eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    std::string files;
    for (const char* name :
         {"ServerRoot root", "RequestRoot root", "CacheDir root", "StateDir root", "TempDir tmp",
          "AccessLog access.log", "ErrorLog error.log", "PageLog page.log"}) {
      const std::string line = name;
      const std::size_t blank = line.find(' ') + 1;
      files += line.substr(0, blank) + folder_ / line.substr(blank) + "\n";
    }
    folder_.put("files.conf", files);
    folder_.put("cupsd.conf",
                "Listen " + scheduler() +
                    "\nBrowsing Off\nDefaultAuthType None\nWebInterface No\n"
                    "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                    "<Policy default>\n<Limit All>\nOrder allow,deny\nAllow all\n</Limit>\n"
                    "</Policy>\n");
    // Printing is to keep the document, whole.
    const std::string page = folder_ / "page";
    std::filesystem::permissions(
        folder_.put("print", "#!/bin/sh\ncp \"$1\" " + page + " && mv " + page + " " +
                                 folder_ / "received/" + "\"$(basename \"$1\")\"\n"),
        std::filesystem::perms::owner_all);
    if (::geteuid() == 0) giveAway();
    ::setenv("CUPS_SERVER", scheduler().c_str(), 1);
    // The printer asks for a system bus, though it has nothing to say on it.
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + folder_ / "bus").c_str(), 1);
    bus_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork",
                                          "--config-file=" + folder_ / "bus.conf"},
                 Process::Options{.unprivileged = true});
    if (!waitUntil([&] { return std::filesystem::exists(folder_ / "bus"); }))
      throw std::runtime_error("dbus-daemon does not start");
  }
  ~PrintSystem() {
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    ::unsetenv("CUPS_SERVER");
  }

  std::string printerAddress() const {
    return "ipp://localhost:" + std::to_string(printerPort_) + "/ipp/print";
  }
  void startScheduler() {
    start(scheduler_, schedulerPort_,
          {"cupsd", "-f", "-c", folder_ / "cupsd.conf", "-s", folder_ / "files.conf"});
  }
  void startPrinter() {
    start(
        printer_, printerPort_,
        {"ippeveprinter", "-r", "off", "-n", "localhost", "-p", std::to_string(printerPort_), "-c",
         folder_ / "print", "-d", folder_ / "incoming", "-f", "application/pdf", "-vv", "Test"},
        folder_ / "printer.log");
  }
  void stopPrinter() { printer_->end(); }

  void addDefaultQueue(const std::string& name) {
    administer({"lpadmin", "-p", name, "-E", "-v", printerAddress(), "-m", "everywhere"});
    administer({"lpadmin", "-d", name});
  }
  void administer(std::vector<std::string> command) {
    command.insert(command.begin() + 1, {"-h", scheduler()});
    if (const std::string name = command[0]; Process(std::move(command)).wait() != 0)
      throw std::runtime_error(name + " failed");
  }

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
  bool printerLogHas(const std::string& text) const {
    return folder_.get("printer.log").find(text) != std::string::npos;
  }

 private:
  std::string scheduler() const { return "127.0.0.1:" + std::to_string(schedulerPort_); }

  void start(std::optional<Process>& program, int port, std::vector<std::string> command,
             const std::string& log = {}) {
    const std::string name = command[0];
    program.emplace(std::move(command), Process::Options{.output = log, .unprivileged = true});
    if (!waitUntil([&] { return listening(port); }))
      throw std::runtime_error(name + " does not start");
  }
  void giveAway() {
    std::vector<std::string> paths{folder_ / ""};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / ""))
      paths.push_back(entry.path().string());
    for (const std::string& path : paths)
      if (::chown(path.c_str(), Process::kNobody, Process::kNobody) != 0)
        throw std::runtime_error("chown");
  }

  TemporaryFolder folder_;
  // One for all: a thread of the print system's library looks for its scheduler once.
  inline static const int schedulerPort_ = freePort();
  int printerPort_ = freePort();
  int jobs_ = 0;
  std::optional<Process> bus_;
  std::optional<Process> printer_;
  std::optional<Process> scheduler_;
};

}  // namespace veltgeneral::test

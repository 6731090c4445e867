// Programs that a test starts: servers that end with it, and commands whose output it wants; and
// processes of the test's own.
#pragma once

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

// Of a build that counts what runs, where nobody else writes the counts of such a process.
extern "C" [[gnu::weak]] void __gcov_dump();  // NOLINT(bugprone-reserved-identifier)

namespace veltgeneral::test {

// Ends a process that a test has forked, without what belongs to the one it came from.
[[noreturn]] inline void leave(int code) {
  if (__gcov_dump != nullptr) __gcov_dump();
  ::_exit(code);
}

// Asks until the answer is yes; false when that takes longer than `limit`.
template <class Question>
bool waitUntil(Question&& question, std::chrono::seconds limit = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!question()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

// A running program; it is ended, if need be by force, with this object or with the test.
class Process {
 public:
  struct Options {
    std::string output = {};    // a file for what it writes; nowhere when empty
    bool unprivileged = false;  // without the rights of root
    int inherited = -1;         // a descriptor that it keeps
  };

  static constexpr unsigned kNobody = 65534;

  explicit Process(std::vector<std::string> command) : Process(std::move(command), Options{}) {}
  Process(std::vector<std::string> command, const Options& options) {
    std::vector<char*> arguments;
    for (std::string& word : command) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const char* output = options.output.empty() ? "/dev/null" : options.output.c_str();
    id_ = ::fork();
    if (id_ < 0) throw std::runtime_error("fork");
    if (id_ > 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = ::open(output, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ::dup2(file, 1);
    ::dup2(file, 2);
    if (options.inherited >= 0) ::fcntl(options.inherited, F_SETFD, 0);
    const bool drop = options.unprivileged && ::geteuid() == 0;
    if (drop && (::setgroups(0, nullptr) != 0 || ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0))
      ::_exit(126);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // a change of user takes it away
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  ~Process() { end(); }

  bool running() {
    if (id_ > 0 && ::waitpid(id_, &status_, WNOHANG) == id_) id_ = 0;
    return id_ > 0;
  }
  void end(int signal = SIGTERM) {
    if (!running()) return;
    ::kill(id_, signal);
    if (waitUntil([this] { return !running(); }, std::chrono::seconds(5))) return;
    ::kill(id_, SIGKILL);
    ::waitpid(id_, &status_, 0);
    id_ = 0;
  }
  // Its exit code, -1 where it did not end by itself within 30 seconds.
  int wait() {
    if (!waitUntil([this] { return !running(); }, std::chrono::seconds(30))) return -1;
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
  }

 private:
  pid_t id_ = 0;
  int status_ = 0;
};

// A process of its own that runs `body`, which must not test anything; 0 when it went well.
inline pid_t inProcess(const std::function<bool()>& body) {
  const pid_t child = ::fork();
  if (child == 0) leave(body() ? 0 : 1);
  return child;
}

inline bool succeeded(pid_t child) {
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

constexpr int kProcesses = 8;

// Whether `body` went well in each of so many processes at the same time; they have a number.
inline bool inProcesses(const std::function<bool(int)>& body) {
  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process)
    children.push_back(inProcess([&] { return body(process); }));
  const auto failed = [](pid_t child) { return !succeeded(child); };
  return std::ranges::count_if(children, failed) == 0;
}

}  // namespace veltgeneral::test

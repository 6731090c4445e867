// Real servers on loopback for one test: each has its own folder and port, and is gone with its
// object. Waits end after ten seconds at most.
#pragma once

#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/ports.h"
#include "support/process.h"
#include "support/temporary_folder.h"

namespace veltgeneral::test {

constexpr std::chrono::seconds kPatience{10};

// A server program that is ready when something listens on its port.
class Daemon : public Process {
 public:
  Daemon(const std::vector<std::string>& command, int port) : Process(command) {
    if (!waitUntil([&] { return listening(port); }, kPatience))
      throw std::runtime_error("no " + command[0]);
  }
};

// A server in this process for what no decent server does. `answer` gets a connection and the head
// of its request, and the connection is closed when it returns.
class ScriptedServer {
 public:
  class Connection {
   public:
    explicit Connection(int socket);
    // False when the other side is gone or does not read for long.
    bool send(std::string_view bytes) const;
    // Waits for one; empty when the other side is gone.
    std::string receiveHead() const;
    // Answers a request with its path, and those that follow on the connection.
    void answerWithPaths(std::string head) const;

   private:
    int socket_;
  };
  using Answer = std::function<void(const Connection&, const std::string& head)>;

  explicit ScriptedServer(Answer answer);
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;
  ~ScriptedServer();

  std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

 private:
  void serve(int socket) const;

  Answer answer_;
  int listener_;
  int port_;
  std::list<int> sockets_;
  std::list<std::thread> threads_;
  std::thread acceptor_;
};

// nginx with the given `server` blocks; "PORT1", "PORT2" ... in them stand for its ports, and the
// folder "www" of `folder` is its root.
class Nginx {
 public:
  Nginx(const TemporaryFolder& folder, std::string servers, std::size_t ports = 1);

  std::string url(const std::string& path, std::size_t which = 1) const {
    return "http://127.0.0.1:" + std::to_string(ports_[which - 1]) + path;
  }

 private:
  std::vector<int> ports_;
  std::optional<Daemon> daemon_;
};

// A proxy that adds "the-proxy" to the Via header.
class TinyProxy {
 public:
  explicit TinyProxy(const TemporaryFolder& folder);

  std::string address() const { return "127.0.0.1:" + std::to_string(port_); }

 private:
  int port_ = freePort();
  Daemon daemon_;
};

}  // namespace veltgeneral::test

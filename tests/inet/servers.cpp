#include "servers.h"

#include <poll.h>
#include <tuple>

#include "support/ports.h"

namespace veltgeneral::test {

void run(const std::vector<std::string>& command) {
  if (Process(command).wait() != 0) throw std::runtime_error(command[0] + " failed");
}

Daemon::Daemon(const std::vector<std::string>& command, int port) : process_(command) {
  if (!eventually([&] { return listening(port); })) throw std::runtime_error("no " + command[0]);
}

bool ScriptedServer::Connection::send(std::string_view bytes) const {
  while (!bytes.empty()) {
    pollfd ready{socket_, POLLOUT, 0};
    if (::poll(&ready, 1, kPatienceSeconds * 1000) != 1) return false;
    const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

std::string ScriptedServer::Connection::receiveHead() const {
  std::string head;
  char piece[4096];
  while (head.find("\r\n\r\n") == head.npos) {
    const ssize_t count = ::recv(socket_, piece, sizeof piece, 0);
    if (count <= 0) return {};
    head.append(piece, static_cast<std::size_t>(count));
  }
  return head;
}

void ScriptedServer::Connection::answerWithPaths(std::string head) const {
  for (; !head.empty(); head = receiveHead()) {
    const std::string path = head.substr(4, head.find(' ', 4) - 4);
    send("HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(path.size()) + "\r\n\r\n" + path);
  }
}

void ScriptedServer::Connection::waitForEnd() const {
  char piece[4096];
  while (::recv(socket_, piece, sizeof piece, 0) > 0) {
  }
}

ScriptedServer::ScriptedServer(Answer answer) : answer_(std::move(answer)) {
  std::tie(listener_, port_) = boundSocket();
  ::listen(listener_, 16);
  acceptor_ = std::thread([this] {
    for (;;) {
      const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (ending_ || socket < 0) {
        if (socket >= 0) ::close(socket);
        return;
      }
      sockets_.push_back(socket);
      threads_.emplace_back([this, socket] { serve(socket); });
    }
  });
}

void ScriptedServer::serve(int socket) {
  const Connection connection(socket);
  const std::string head = connection.receiveHead();
  if (!head.empty()) answer_(connection, head);
  ::shutdown(socket, SHUT_RDWR);
}

ScriptedServer::~ScriptedServer() {
  ending_ = true;
  listening(port_);  // wakes the acceptor
  acceptor_.join();
  for (const int socket : sockets_) ::shutdown(socket, SHUT_RDWR);
  for (std::thread& thread : threads_) thread.join();
  for (const int socket : sockets_) ::close(socket);
  ::close(listener_);
}

Nginx::Nginx(const TemporaryFolder& folder, std::string servers, std::size_t ports) {
  const std::string root = folder.path().string();
  for (std::size_t i = 1; i <= ports; ++i) {
    ports_.push_back(freePort());
    const std::string name = "PORT" + std::to_string(i);
    for (auto at = servers.find(name); at != servers.npos; at = servers.find(name)) {
      servers.replace(at, name.size(), std::to_string(ports_.back()));
    }
  }
  folder.put("www/none", "");
  std::string paths;
  for (const char* each : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"}) {
    paths += std::string(each) + "_temp_path " + root + "/" + each + ";\n";
  }
  // One process, which stays what it is: no other user could see the folder.
  const std::string config = folder.put(
      "nginx.conf", "daemon off; master_process off; pid " + root + "/pid; error_log stderr;\n" +
                        "events { worker_connections 256; }\nhttp { access_log off;\n" + paths +
                        "root " + root + "/www; keepalive_requests 100000;\n" + servers + "}\n");
  daemon_.emplace_back(
      std::vector<std::string>{"nginx", "-p", root, "-c", config, "-e", root + "/error.log"},
      ports_[0]);
}

TinyProxy::TinyProxy(const TemporaryFolder& folder) : port_(freePort()) {
  const std::string config =
      folder.put("tinyproxy.conf", "Listen 127.0.0.1\nPort " + std::to_string(port_) +
                                       "\nViaProxyName \"the-proxy\"\nTimeout 10\n");
  daemon_.emplace_back(std::vector<std::string>{"tinyproxy", "-d", "-c", config}, port_);
}

}  // namespace veltgeneral::test

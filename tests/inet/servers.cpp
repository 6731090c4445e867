#include "servers.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

namespace veltgeneral::test {

namespace fs = std::filesystem;
namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

// A socket bound to a port of the system's choice.
std::pair<int, int> boundSocket() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  if (::bind(socket, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no port");
  }
  return {socket, ntohs(address.sin_port)};
}

bool listening(int port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = loopback(port);
  const int failed = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  ::close(socket);
  return failed == 0;
}

}  // namespace

std::string write(const TemporaryFolder& folder, const std::string& name,
                  std::string_view content) {
  fs::create_directories((folder.path() / name).parent_path());
  folder.put(name, content);
  return folder.file(name);
}

int freePort() {
  const auto [socket, port] = boundSocket();
  ::close(socket);
  return port;
}

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
  fs::create_directories(folder.path() / "www");
  std::string paths;
  for (const char* each : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"}) {
    paths += std::string(each) + "_temp_path " + root + "/" + each + ";\n";
  }
  // One process, which stays what it is: no other user could see the folder.
  const std::string config =
      write(folder, "nginx.conf",
            "daemon off; master_process off; pid " + root + "/pid; error_log stderr;\n" +
                "events { worker_connections 256; }\nhttp { access_log off;\n" + paths + "root " +
                root + "/www; keepalive_requests 100000;\n" + servers + "}\n");
  daemon_.emplace_back(
      std::vector<std::string>{"nginx", "-p", root, "-c", config, "-e", root + "/error.log"},
      ports_[0]);
}

}  // namespace veltgeneral::test

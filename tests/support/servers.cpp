#include "support/servers.h"

#include <tuple>

namespace veltgeneral::test {

using Words = std::vector<std::string>;

ScriptedServer::Connection::Connection(int socket) : socket_(socket) {
  const timeval patience{kPatience.count(), 0};
  ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
}

bool ScriptedServer::Connection::send(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

std::string ScriptedServer::Connection::receiveHead() const {
  std::string head;
  for (char piece[4096]; !head.ends_with("\r\n\r\n");) {
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

ScriptedServer::ScriptedServer(Answer answer) : answer_(std::move(answer)) {
  std::tie(listener_, port_) = boundSocket();
  ::listen(listener_, 16);
  acceptor_ = std::thread([this] {
    for (int next; (next = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
      sockets_.push_back(next);
      threads_.emplace_back([this, next] { serve(next); });
    }
  });
}

void ScriptedServer::serve(int socket) const {
  const Connection connection(socket);
  const std::string head = connection.receiveHead();
  if (!head.empty()) answer_(connection, head);
  ::shutdown(socket, SHUT_RDWR);
}

ScriptedServer::~ScriptedServer() {
  ::shutdown(listener_, SHUT_RDWR);  // wakes the acceptor
  acceptor_.join();
  for (const int socket : sockets_) ::shutdown(socket, SHUT_RDWR);
  for (std::thread& thread : threads_) thread.join();
  for (const int socket : sockets_) ::close(socket);
  ::close(listener_);
}

Nginx::Nginx(const TemporaryFolder& folder, std::string servers, std::size_t ports) {
  while (ports_.size() < ports) {
    ports_.push_back(freePort());
    const std::string name = "PORT" + std::to_string(ports_.size());
    for (auto at = servers.find(name); at != servers.npos; at = servers.find(name))
      servers.replace(at, name.size(), std::to_string(ports_.back()));
  }
  const std::string root = folder.path().string();
  folder.put("www/none", "");
  std::string paths;
  for (const std::string each : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
    paths += each + "_temp_path " + root + "/" + each + ";\n";
  // One process, which stays what it is: no other user could see the folder.
  const std::string config = folder.put(
      "nginx.conf", "daemon off; master_process off; pid " + root + "/pid; error_log stderr;\n" +
                        "events { worker_connections 256; }\nhttp { access_log off;\n" + paths +
                        "root " + root + "/www; keepalive_requests 100000;\n" + servers + "}\n");
  daemon_.emplace(Words{"nginx", "-p", root, "-c", config, "-e", root + "/error.log"}, ports_[0]);
}

TinyProxy::TinyProxy(const TemporaryFolder& folder)
    : daemon_({"tinyproxy", "-d", "-c",
               folder.put("tinyproxy.conf", "Listen 127.0.0.1\nPort " + std::to_string(port_) +
                                                "\nViaProxyName \"the-proxy\"\nTimeout 10\n")},
              port_) {}

}  // namespace veltgeneral::test

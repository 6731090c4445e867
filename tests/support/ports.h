// TCP on loopback: ports that are free, and whether somebody listens on one.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>
#include <utility>

namespace veltgeneral::test {

inline sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

// A socket bound to a port of the system's choice, and that port.
inline std::pair<int, int> boundSocket() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  if (::bind(socket, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no port");
  }
  return {socket, ntohs(address.sin_port)};
}

inline int freePort() {
  const auto [socket, port] = boundSocket();
  ::close(socket);
  return port;
}

inline bool listening(int port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = loopback(port);
  const int failed = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  ::close(socket);
  return failed == 0;
}

}  // namespace veltgeneral::test

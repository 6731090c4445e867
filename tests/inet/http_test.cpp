// Answers of real servers, good and bad ones, through the class.
#include <gtest/gtest.h>

#include <fstream>
#include <numeric>
#include <set>

#include "fetch.h"
#include "inet/body.h"
#include "servers.h"

namespace veltgeneral::test {
namespace {

constexpr const char* kServers = R"(
  server {
    listen 127.0.0.1:PORT1;
    location /chunked/ { ssi on; default_type text/html; }
    location /request { return 200 "$request"; }
    location /headers { return 200 "$http_user_agent|$http_cache_control|$http_pragma|$http_x_a|$http_x_b"; }
    location /500 { return 500 "it broke"; }
    location /empty { return 204; }
    location /moved { return 302 /request; }
    location /loop { return 302 /loop; }
    location /file { return 302 file:///etc/passwd; }
    location /ftp { return 302 ftp://127.0.0.1/; }
    location /login { add_header Set-Cookie "who=me; Path=/"; return 302 /home; }
    location /home { return 200 "$cookie_who"; }
  })";

std::string megabytes(std::size_t count) {
  std::string text(count << 20, '\0');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>('a' + i * 7 % 26);
  return text;
}

TEST(Http, BodiesComeAsTheyAre) {
  const TemporaryFolder folder;
  const Nginx nginx(folder, kServers);
  const std::string page(4096, 'p');
  const std::string big = megabytes(9);
  std::string all(256, '\0');
  std::iota(all.begin(), all.end(), '\0');
  folder.put("www/page", page);
  folder.put("www/big", big);
  folder.put("www/chunked/big", big);
  folder.put("www/all", all);
  folder.put("www/with blank", "blank");
  folder.put("www/\xE8", "accent");  // code page 1252

  Session session;
  const std::pair<const char*, std::string> kCases[] = {
      {"/page", page},
      {"/big", big},
      {"/chunked/big", big},
      {"/none", ""},
      {"/empty", ""},
      {"/500", "it broke"},
      {"/with blank", "blank"},
      {"/è", "accent"},
      {"/request", "GET /request HTTP/1.1"},
      {"/moved", "GET /request HTTP/1.1"},
      {"/login", "me"},
  };
  for (const auto& [path, body] : kCases) {
    SCOPED_TRACE(path);
    const auto fetched = session.fetch(nginx.url(path));
    EXPECT_TRUE(fetched == body) << fetched.value_or("failed").substr(0, 200);
  }
  EXPECT_NE(session.fetch(nginx.url("/missing")).value_or("").find("404"), std::string::npos);

  // Every byte is a character, and each its own: the page's, or the control code of its number.
  const std::string bytes = *session.fetch(nginx.url("/all"));
  const Text text = fromUtf8(bytes);
  EXPECT_EQ(text.size(), 256u);
  EXPECT_EQ(std::set(text.begin(), text.end()).size(), 256u);
  EXPECT_EQ(text[0x80], u'€');
  EXPECT_EQ(text[0x81], u'\x81');

  for (const char* path : {"/loop", "/file", "/ftp"}) {
    EXPECT_EQ(session.fetch(nginx.url(path)), std::nullopt) << path;
  }
}

TEST(Http, HeadersAreTheCallers) {
  const TemporaryFolder folder;
  const Nginx nginx(folder, kServers);
  const std::pair<const char*, std::optional<std::string>> kCases[] = {
      {"X-A: one\r\nX-B: two", "Prova di WinInet!|no-cache|no-cache|one|two"},
      {"user-agent: me\r\nCache-Control: max-age=1\r\n", "me|max-age=1|no-cache||"},
      {"X-A: one\r\n\r\nGET /500 HTTP/1.1", std::nullopt},
  };
  Session session;
  for (const auto& [headers, seen] : kCases) {
    EXPECT_EQ(session.fetch(nginx.url("/headers"), headers), seen);
  }
  EXPECT_EQ(Session(Missing{}).fetch(nginx.url("/headers")), "WinInet!|no-cache|no-cache||");
}

TEST(Http, ASessionKeepsItsConnection) {
  std::atomic<int> connections = 0;
  const ScriptedServer server([&](const auto& connection, std::string head) {
    ++connections;
    connection.answerWithPaths(std::move(head));
  });
  Session session;
  for (int i = 0; i < 20; ++i) EXPECT_EQ(session.fetch(server.url()), "/");
  EXPECT_EQ(connections, 1);
  // A body left unread costs the connection, and nothing else.
  std::int32_t unread = session.open(server.url());
  VeltInet().IClose(unread);
  EXPECT_EQ(session.fetch(server.url()), "/");
}

TEST(Http, OpeningWaitsForTheHeadOnly) {
  std::atomic<bool> opened = false;
  const ScriptedServer server([&](const auto& connection, const std::string&) {
    connection.send("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\n");
    if (eventually([&] { return opened.load(); })) connection.send("late");
  });
  Session session;
  const std::int32_t handle = session.open(server.url());
  ASSERT_NE(handle, 0);
  opened = true;
  Text body;
  EXPECT_TRUE(VeltInet().IReadFile(handle, body).isSuccess());
  EXPECT_EQ(body, u"late");
}

TEST(Http, WhatBreaksKeepsWhatCame) {
  const struct {
    const char* answer;
    std::optional<std::string> body;
  } kCases[] = {
      {"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf of it", "half of it"},
      {"HTTP/1.1 200 OK\r\nContent-Length: 5000000000000\r\n\r\nfew", "few"},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n", "half"},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\nZZ\r\n", "half"},
      {"HTTP/1.1 200 OK\r\n\r\nto the end", "to the end"},
      {"HTTP/1.1 200 OK\r\nContent-Le", std::nullopt},
      {"HTTP/1.1 302 Found\r\nLocation: /x\r\n", std::nullopt},
      {"220 no web server\r\n", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.answer);
    const ScriptedServer server(
        [&](const auto& connection, const std::string&) { connection.send(c.answer); });
    Session session;
    EXPECT_EQ(session.fetch(server.url()), c.body);
  }
  // A head without end, nobody there, and what no scheme of ours opens.
  const ScriptedServer server([](const auto& connection, const std::string&) {
    connection.send("HTTP/1.1 200 OK\r\n");
    while (connection.send("X-Filler: " + std::string(1000, 'x') + "\r\n")) {
    }
  });
  Session session;
  EXPECT_EQ(session.fetch(server.url()), std::nullopt);
  EXPECT_EQ(session.fetch("http://127.0.0.1:" + std::to_string(freePort())), std::nullopt);
  for (const char* url : {"", "http", "file:///etc/passwd", "gopher://127.0.0.1/", "no scheme"}) {
    EXPECT_EQ(session.fetch(url), std::nullopt) << url;
  }
}

std::size_t residentPages() {
  std::size_t all = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident;
}

TEST(Http, AnEndlessBodyCostsNoMemoryAndStopsAtTheLimit) {
  std::atomic<std::size_t> sent = 0;
  const ScriptedServer server([&](const auto& connection, const std::string&) {
    const std::string piece(1 << 16, 'x');
    connection.send("HTTP/1.1 200 OK\r\n\r\n");
    while (connection.send(piece)) sent += piece.size();
  });
  platform::Internet& internet = *platform::internet();
  Session session;
  const std::int32_t handle = session.open(server.url());
  std::vector<std::uint8_t> piece(4096);
  const auto readAll = [&](std::size_t bytes) {
    while (bytes > 0) {
      const auto read =
          internet.read(handle, std::span(piece).first(std::min(bytes, piece.size())));
      if (read.count == 0) break;
      bytes -= read.count;
    }
    EXPECT_EQ(bytes, 0u);
  };
  readAll(1 << 20);
  const std::size_t before = residentPages();
  readAll(200 << 20);
  // Nothing of it stays; a sanitizer keeps some of what was freed.
  EXPECT_LT(residentPages(), before + (100u << 20) / 4096);
  // Whoever does not read stops the server, but for what the system's own buffers take.
  std::size_t last = 0;
  EXPECT_TRUE(
      eventually([&] { return std::exchange(last, sent.load()) == sent.load() && last > 0; }));
  EXPECT_LT(sent, std::size_t{240} << 20);

  Text body;
  readBody(internet, handle, body, 5'000'001);
  EXPECT_EQ(body.size(), 5'000'001u);
}

TEST(Ftp, FilesAndTheirAbsence) {
  const TemporaryFolder folder;
  const std::string big = megabytes(3);
  folder.put("big", big);
  folder.put("none", "");
  const int port = freePort();
  const Daemon ftp({"/usr/bin/python3", "-m", "pyftpdlib", "-i", "127.0.0.1", "-p",
                    std::to_string(port), "-d", folder.path().string()},
                   port);
  const std::string url = "ftp://127.0.0.1:" + std::to_string(port) + "/";
  Session session;
  EXPECT_TRUE(session.fetch(url + "big") == big);
  EXPECT_EQ(session.fetch(url + "none"), "");
  EXPECT_EQ(session.fetch(url + "missing"), std::nullopt);
  EXPECT_NE(session.fetch(url).value_or("").find(" big"), std::string::npos);
}

}  // namespace
}  // namespace veltgeneral::test

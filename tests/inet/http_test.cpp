// Answers of real servers, good and bad ones, through the class.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <numeric>

#include "automation/code_page.h"
#include "fetch.h"
#include "inet/body.h"
#include "support/servers.h"

namespace veltgeneral::test {
namespace {

using namespace std::string_view_literals;

constexpr const char* kServers = R"(
  server {
    listen 127.0.0.1:PORT1;
    location /chunked/ { ssi on; default_type text/html; }
    location /request { return 200 "$request"; }
    location /headers { return 200 "$http_user_agent|$http_cache_control|$http_pragma|$http_x_a|$http_x_b"; }
    location /via { return 200 "via:$http_via"; }
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
  std::string all(256, '\0');
  std::iota(all.begin(), all.end(), '\0');
  folder.put("www/\xE8", "accent");  // code page 1252
  Session session;
  for (const auto& [name, content] :
       std::map<std::string, std::string>{{"page", std::string(4096, 'p')},
                                          {"big", megabytes(9)},
                                          {"chunked/big", megabytes(9)},
                                          {"with blank", "blank"},
                                          {"none", ""},
                                          {"all", all}}) {
    folder.put("www/" + name, content);
    EXPECT_TRUE(toBytes(fromUtf8(session.fetch(nginx.url("/" + name)).value_or("-"))) == content)
        << name;
  }
  // Every byte is a character: the page's, or the control code of its number.
  EXPECT_EQ(fromUtf8(session.fetch(nginx.url("/all")).value_or("")).substr(0x80, 2), u"€\x81");
  session.open(nginx.url("/login"));  // stays open: its cookie is the session's
  constexpr std::pair<const char*, const char*> kAnswers[] = {{"/home", "me"},
                                                              {"/login", "me"},
                                                              {"/è", "accent"},
                                                              {"/empty", ""},
                                                              {"/500", "it broke"},
                                                              {"/request", "GET /request HTTP/1.1"},
                                                              {"/moved", "GET /request HTTP/1.1"}};
  for (const auto& [path, body] : kAnswers) EXPECT_EQ(session.fetch(nginx.url(path)), body);
  for (const char* path : {"/loop", "/file", "/ftp"})
    EXPECT_EQ(session.fetch(nginx.url(path)), std::nullopt) << path;
  EXPECT_NE(session.fetch(nginx.url("/missing")).value_or("").find("404"), std::string::npos);
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
  for (const auto& [headers, seen] : kCases)
    EXPECT_EQ(session.fetch(nginx.url("/headers"), headers), seen);
  EXPECT_EQ(Session(Missing{}).fetch(nginx.url("/headers")), "WinInet!|no-cache|no-cache||");
}

// The proxy adds a Via header.
TEST(Http, EachSessionGoesItsWay) {
  const TemporaryFolder folder;
  const Nginx nginx(folder, kServers);
  const TinyProxy proxy(folder);
  const std::string address = proxy.address();
  ::setenv("http_proxy", ("http://" + address).c_str(), 1);

  const auto way = [&](Session& session) {
    const std::string body = session.fetch(nginx.url("/via")).value_or("failed");
    return body == "via:" ? "direct" : body.find("the-proxy") != body.npos ? "proxy" : body;
  };
  const auto named = [&](const std::string& name) {
    Session session(Variant(fromUtf8(name)));
    return way(session);
  };
  Session preconfigured, direct{Variant(Missing{})};
  EXPECT_EQ(way(preconfigured), "proxy");
  EXPECT_EQ(way(direct), "direct");
  ::setenv("no_proxy", "127.0.0.1", 1);
  EXPECT_EQ(way(preconfigured), "direct");
  EXPECT_EQ(named(address), "proxy");
  EXPECT_EQ(named("http=" + address + ";https=127.0.0.1:1"), "proxy");
  EXPECT_EQ(named("https=" + address), "direct");
  EXPECT_EQ(named("127.0.0.1:1"), "failed");
  // The field has 100 characters: what lies beyond them is cut off.
  EXPECT_EQ(named(std::string(100 - address.size(), ' ') + address + "9"), "proxy");
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

TEST(Http, WhatBreaksKeepsWhatCame) {
  const std::string ok = "HTTP/1.1 200 OK\r\n", chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
  std::string filler = ok;
  while (filler.size() < 2 << 20) filler += "X-Filler: " + std::string(1000, 'x') + "\r\n";
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {ok + "Content-Length: 100\r\n\r\nhalf of it", "half of it"},
      {ok + "Content-Length: 5000000000000\r\n\r\nfew", "few"},
      {chunked + "4\r\nhalf\r\n", "half"},
      {chunked + "4\r\nhalf\r\nZZ\r\n", "half"},
      {ok + "\r\nto the end", "to the end"},
      {ok + "Content-Le", std::nullopt},
      {"HTTP/1.1 302 Found\r\nLocation: /x\r\n", std::nullopt},
      {"220 no web server\r\n", std::nullopt},
      {"", std::nullopt},
      {"HTTP/1.1 100 Continue\r\n\r\n" + ok + "Content-Le", std::nullopt},
      {filler + "\r\nbehind a megabyte", std::nullopt},
  };
  Session session;
  for (const auto& [answer, body] : cases) {
    const ScriptedServer server(
        [&, text = answer](const auto& connection, const std::string&) { connection.send(text); });
    EXPECT_EQ(session.fetch(server.url()), body) << answer.substr(0, 100);
  }
  // Nobody there, and what no scheme of ours opens.
  const std::string nobody = "http://127.0.0.1:" + std::to_string(freePort());
  for (const std::string_view url :
       {std::string_view(nobody), ""sv, "http"sv, "file:///etc/passwd"sv, "gopher://127.0.0.1/"sv})
    EXPECT_EQ(session.fetch(url), std::nullopt) << url;
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
    for (connection.send("HTTP/1.1 200 OK\r\n\r\n"); connection.send(piece);) sent += piece.size();
  });
  platform::Internet& internet = *platform::internet();
  Session session;
  const std::int32_t handle = session.open(server.url());
  std::vector<std::uint8_t> piece(4096);
  const auto readAll = [&](std::size_t megabytes) {
    for (std::size_t left = megabytes << 20; left > 0;) {
      const auto some = std::span(piece).first(std::min(left, piece.size()));
      const std::size_t count = internet.read(handle, some).count;
      ASSERT_GT(count, 0u);
      left -= count;
    }
  };
  readAll(1);
  const std::size_t before = residentPages();
  readAll(200);
  // Nothing of it stays; a sanitizer keeps some of what was freed.
  EXPECT_LT(residentPages(), before + (100u << 20) / 4096);
  // Whoever does not read stops the server, but for what the system's own buffers take.
  std::size_t last = 0;
  EXPECT_TRUE(
      waitUntil([&] { return std::exchange(last, sent.load()) == sent.load(); }, kPatience));
  EXPECT_LT(sent, std::size_t{240} << 20);
  Text body;
  readBody(internet, handle, body, 5'000'001);
  EXPECT_EQ(body.size(), 5'000'001u);
}

TEST(Ftp, FilesAndTheirAbsence) {
  const TemporaryFolder folder;
  const std::string big = megabytes(3), port = std::to_string(freePort());
  folder.put("big", big);
  folder.put("none", "");
  const Daemon ftp({"/usr/bin/python3", "-m", "pyftpdlib", "-i", "127.0.0.1", "-p", port, "-d",
                    folder.path().string()},
                   std::stoi(port));
  const std::string url = "ftp://127.0.0.1:" + port + "/";
  Session session;
  EXPECT_TRUE(session.fetch(url + "big") == big);
  EXPECT_EQ(session.fetch(url + "none"), "");
  EXPECT_EQ(session.fetch(url + "missing"), std::nullopt);
  EXPECT_NE(session.fetch(url).value_or("").find(" big"), std::string::npos);
}

}  // namespace
}  // namespace veltgeneral::test

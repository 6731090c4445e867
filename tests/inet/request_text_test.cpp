#include "platform/linux/http/request_text.h"

#include <gtest/gtest.h>

#include <array>

namespace veltgeneral::platform::http {
namespace {

using Lines = std::optional<std::vector<std::string>>;
using namespace std::string_view_literals;

TEST(RequestText, HeadersAreHeadersAndNothingElse) {
  const std::pair<std::string_view, Lines> cases[] = {
      {"", Lines(std::in_place)},
      {"A: b", Lines({"A: b"})},
      {"A:b\r\nC:\td e \r\n", Lines({"A: b", "C: d e"})},
      {"A: b\r\n\r\n", Lines({"A: b"})},
      {"Empty:\r\nX: \xE8", Lines({"Empty;", "X: \xE8"})},
      {"Url: http://a:80/?b", Lines({"Url: http://a:80/?b"})},
      // A body is not announced.
      {"Content-Length: 5\r\nA: b\r\nTRANSFER-encoding: chunked", Lines({"A: b"})},
  };
  for (const auto& [text, lines] : cases) EXPECT_EQ(headerLines(text), lines) << text;
  // Another request, another header, a body, what is no header.
  for (const std::string_view text :
       {"A: b\r\n\r\nGET /secret HTTP/1.1"sv, "A: b\nC: d"sv, "A: b\rC: d"sv, "A: b\0C: d"sv,
        "\r\nA: b"sv, "GET /secret HTTP/1.1"sv, "GET http://a/ HTTP/1.1\r\nA: b"sv, "A : b"sv,
        ": b"sv, "A: b\r\n folded: c"sv, "Empty:\r\nX-\xE8: no"sv})
    EXPECT_EQ(headerLines(text), std::nullopt) << text;
}

TEST(RequestText, UrlsAreEncodedBehindTheHost) {
  const std::pair<std::string_view, std::optional<std::string>> cases[] = {
      {"HTTP://a.b:8/c%20d?e#f", "HTTP://a.b:8/c%20d?e#f"},
      {"http://a/b c\xE8?d e", "http://a/b%20c%E8?d%20e"},
      {"http://a b", "http://a b"},  // no such host, which is for libcurl to say
      {"www.example.com", std::nullopt},
      {"", std::nullopt},
      {"http://a/b\r\nX: y", std::nullopt},
      {"http://a/\tb", std::nullopt},
  };
  for (const auto& [url, out] : cases) EXPECT_EQ(requestUrl(url), out) << url;
}

TEST(RequestText, TheProxyOfAList) {
  constexpr std::string_view kEach = "http=a:80;https=b:81 ftp=c:82", kAny = "any:1 HTTP=a:2";
  constexpr std::array<std::string_view, 3> kCases[] = {
      // the list, a scheme, its proxy
      {"a:8080", "http", "a:8080"},
      {"a:8080", "https", "a:8080"},
      {"  a  ", "http", "a:80"},
      {"http://a", "http", "http://a:80"},
      {"https://a", "http", "https://a"},
      {"[::1]", "http", "[::1]:80"},
      {"[::1]:81", "http", "[::1]:81"},
      {kEach, "https", "b:81"},
      {kEach, "ftp", "c:82"},
      {"http=a:80", "https", ""},
      {kAny, "http", "a:2"},
      {kAny, "https", "any:1"},
      {"socks=s:1 http=a:2", "https", "socks4://s:1"},
      {"http=;;", "http", ""},
      {"", "http", ""}};
  for (const auto& [list, scheme, proxy] : kCases)
    EXPECT_EQ(proxyFor(list, scheme), proxy) << list << " for " << scheme;
}

}  // namespace
}  // namespace veltgeneral::platform::http

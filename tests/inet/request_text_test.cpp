#include "platform/linux/http/request_text.h"

#include <gtest/gtest.h>

namespace veltgeneral::platform::http {
namespace {

using Lines = std::optional<std::vector<std::string>>;
using namespace std::string_view_literals;

TEST(RequestText, HeadersAreHeadersAndNothingElse) {
  const struct {
    std::string_view text;
    Lines lines;
  } kCases[] = {
      {"", Lines(std::vector<std::string>())},
      {"A: b", Lines({"A: b"})},
      {"A:b\r\nC:\td e \r\n", Lines({"A: b", "C: d e"})},
      {"A: b\r\n\r\n", Lines({"A: b"})},
      {"Empty:\r\nX-\xE8: no"sv, std::nullopt},
      {"Empty:\r\nX: \xE8", Lines({"Empty;", "X: \xE8"})},
      {"Url: http://a:80/?b", Lines({"Url: http://a:80/?b"})},
      // A body is not announced.
      {"Content-Length: 5\r\nA: b\r\nTRANSFER-encoding: chunked", Lines({"A: b"})},
      // Another request, another header, a body.
      {"A: b\r\n\r\nGET /secret HTTP/1.1", std::nullopt},
      {"A: b\nC: d", std::nullopt},
      {"A: b\rC: d", std::nullopt},
      {"A: b\0C: d"sv, std::nullopt},
      {"\r\nA: b", std::nullopt},
      {"GET /secret HTTP/1.1", std::nullopt},
      {"GET http://a/ HTTP/1.1\r\nA: b", std::nullopt},
      {"A : b", std::nullopt},
      {": b", std::nullopt},
      {"A: b\r\n folded: c", std::nullopt},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(headerLines(c.text), c.lines);
  }
}

TEST(RequestText, UrlsAreEncodedBehindTheHost) {
  const struct {
    std::string_view url;
    std::optional<std::string> out;
  } kCases[] = {
      {"HTTP://a.b:8/c%20d?e#f", "HTTP://a.b:8/c%20d?e#f"},
      {"http://a/b c\xE8?d e", "http://a/b%20c%E8?d%20e"},
      {"http://a b", "http://a b"},  // no such host, which is for libcurl to say
      {"www.example.com", std::nullopt},
      {"", std::nullopt},
      {"http://a/b\r\nX: y", std::nullopt},
      {"http://a/\tb", std::nullopt},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.url);
    EXPECT_EQ(requestUrl(c.url), c.out);
  }
}

TEST(RequestText, TheProxyOfAList) {
  const struct {
    std::string_view list, scheme, proxy;
  } kCases[] = {
      {"a:8080", "http", "a:8080"},
      {"a:8080", "https", "a:8080"},
      {"  a  ", "http", "a:80"},
      {"http://a", "http", "http://a:80"},
      {"https://a", "http", "https://a"},
      {"[::1]", "http", "[::1]:80"},
      {"[::1]:81", "http", "[::1]:81"},
      {"http=a:80;https=b:81 ftp=c:82", "https", "b:81"},
      {"http=a:80;https=b:81 ftp=c:82", "ftp", "c:82"},
      {"http=a:80", "https", ""},
      {"any:1 HTTP=a:2", "http", "a:2"},
      {"any:1 HTTP=a:2", "https", "any:1"},
      {"socks=s:1 http=a:2", "https", "socks4://s:1"},
      {"http=;;", "http", ""},
      {"", "http", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.list);
    EXPECT_EQ(proxyFor(c.list, c.scheme), c.proxy);
  }
}

}  // namespace
}  // namespace veltgeneral::platform::http

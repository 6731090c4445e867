// Whatever a caller writes into a header, URL or proxy, a request stays one request without a body.
#include "platform/linux/http/request_text.h"

#include <algorithm>

#include "fuzz/fuzz_input.h"

namespace veltgeneral::platform::http {
namespace {

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

void checkHeaders(std::string_view text) {
  const auto lines = headerLines(text);
  if (!lines) return;
  for (const std::string& line : *lines) {
    const std::size_t name = line.find_first_of(":;");
    require(name != 0 && name != line.npos, "a header has a name");
    require(line.find_first_of(" \t\"(),/<=>?@[]{}") > name, "a name is a token");
    require(std::ranges::none_of(line, [](char c) { return c != '\t' && isControl(c); }),
            "a header is one line");
  }
  for (const char* name : {"content-length", "transfer-encoding"})
    require(!hasHeader(*lines, name), "no body is announced");
  const auto count = static_cast<std::size_t>(std::ranges::count(text, '\n'));
  require(lines->size() <= count + 1, "no header is made up");
}

void checkUrl(std::string_view text) {
  const auto url = requestUrl(text);
  if (!url) return;
  require(schemeOf(*url) == schemeOf(text), "the scheme stays");
  require(std::ranges::none_of(*url, isControl), "an URL is one line");
  require(requestUrl(*url) == url, "encoding again changes nothing");
}

}  // namespace
}  // namespace veltgeneral::platform::http

void veltgeneral::fuzz(std::string_view bytes) {
  platform::http::checkHeaders(bytes);
  platform::http::checkUrl(bytes);
  for (const char* scheme : {"http", "https", "ftp"}) {
    const std::string proxy = platform::http::proxyFor(bytes, scheme);
    require(proxy.find_first_of(" \t;") == proxy.npos, "a proxy is one entry");
  }
}

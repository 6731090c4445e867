// Strict where a loose reading could be turned against the server: see RFC 9112, section 11.1.
#include "platform/linux/http/request_text.h"

#include <algorithm>
#include <array>

namespace veltgeneral::platform::http {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kDefaultProxyPort = ":80";

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

bool isTokenCharacter(char c) {
  constexpr std::string_view kMarks = "!#$%&'*+-.^_`|~";
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         kMarks.find(c) != std::string_view::npos;
}

std::string lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return out;
}

std::string_view trimmed(std::string_view text, std::string_view blanks) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Adds the header of one line; false where it is none.
bool addHeader(std::vector<std::string>& out, std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos || colon == 0) return false;
  const std::string_view name = line.substr(0, colon);
  const std::string_view value = trimmed(line.substr(colon + 1), " \t");
  if (!std::ranges::all_of(name, isTokenCharacter)) return false;
  if (std::ranges::any_of(value, [](char c) { return c != '\t' && isControl(c); })) return false;
  const std::string key = lower(name);
  if (key == "content-length" || key == "transfer-encoding") return true;
  out.push_back(value.empty() ? std::string(name) + ";"
                              : std::string(name) + ": " + std::string(value));
  return true;
}

// "[type://]host[:port]" with a port: libcurl's own default is that of SOCKS.
std::string withPort(std::string_view server) {
  const std::size_t type = server.find("://");
  const std::string_view host = type == std::string_view::npos ? server : server.substr(type + 3);
  // The colons of an IPv6 address stand in brackets.
  const std::size_t colon = host.rfind(':');
  const std::size_t bracket = host.rfind(']');
  const bool has = colon != std::string_view::npos &&
                   (bracket == std::string_view::npos || colon > bracket) &&
                   colon + 1 < host.size();
  if (has || (type != std::string_view::npos && server.substr(0, type) != "http")) {
    return std::string(server);
  }
  return std::string(trimmed(server, ":")).append(kDefaultProxyPort);
}

}  // namespace

std::optional<std::vector<std::string>> headerLines(std::string_view text) {
  std::vector<std::string> out;
  // Line ends behind the last header are habit, one or several.
  while (text.ends_with(kLineEnd)) text.remove_suffix(kLineEnd.size());
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(kLineEnd), text.size());
    if (!addHeader(out, text.substr(0, end))) return std::nullopt;
    text.remove_prefix(std::min(end + kLineEnd.size(), text.size()));
  }
  return out;
}

bool hasHeader(const std::vector<std::string>& lines, std::string_view name) {
  return std::ranges::any_of(lines, [&](const std::string& line) {
    return lower(std::string_view(line).substr(0, line.find_first_of(":;"))) == name;
  });
}

std::optional<std::string> requestUrl(std::string_view url) {
  const std::size_t scheme = url.find("://");
  if (scheme == std::string_view::npos || std::ranges::any_of(url, isControl)) return std::nullopt;
  const std::size_t host = std::min(url.find_first_of("/?#", scheme + 3), url.size());
  std::string out(url.substr(0, host));
  for (const char c : url.substr(host)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte != ' ' && byte < 0x80) {
      out.push_back(c);
      continue;
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    out.append({'%', kDigits[byte >> 4], kDigits[byte & 0xF]});
  }
  return out;
}

std::string schemeOf(std::string_view url) {
  const std::size_t end = url.find("://");
  return end == std::string_view::npos ? std::string() : lower(url.substr(0, end));
}

std::string proxyFor(std::string_view list, std::string_view scheme) {
  constexpr std::string_view kSeparators = " \t;";
  // By rank: for the scheme, for all, for all through SOCKS.
  std::array<std::string, 3> found;
  while (!(list = trimmed(list, kSeparators)).empty()) {
    const std::string_view entry = list.substr(0, list.find_first_of(kSeparators));
    list.remove_prefix(entry.size());
    const std::size_t equals = entry.find('=');
    const std::string_view server =
        equals == std::string_view::npos ? entry : entry.substr(equals + 1);
    const std::string kind =
        equals == std::string_view::npos ? std::string() : lower(entry.substr(0, equals));
    if (server.empty()) continue;
    if (kind == scheme && found[0].empty()) found[0] = withPort(server);
    if (kind.empty() && found[1].empty()) found[1] = withPort(server);
    if (kind == "socks" && found[2].empty()) found[2] = "socks4://" + std::string(server);
  }
  const auto* best = std::ranges::find_if_not(found, &std::string::empty);
  return best == found.end() ? std::string() : *best;
}

}  // namespace veltgeneral::platform::http

// Caller's texts made fit for a request: nothing in them may become a request line, a header that
// was not meant, or a body.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veltgeneral::platform::http {

// The headers of "Name: value" lines with CR LF between them, in libcurl's spelling: "Name;" for an
// empty value. Content-Length and Transfer-Encoding are left out, for there never is a body.
//
// Nothing where a name is no token (RFC 9110, section 5.6.2), where a control character other than
// a tab stands in a value, and where an empty line comes before another header.
std::optional<std::vector<std::string>> headerLines(std::string_view text);

// Whether one of `lines` is a header of that name, given in lower case.
bool hasHeader(const std::vector<std::string>& lines, std::string_view name);

// `url` with blanks and non-ASCII bytes behind the host percent-encoded; nothing where it has no
// scheme or holds a control character.
std::optional<std::string> requestUrl(std::string_view url);

// "http" of "HTTP://..."; empty without "://".
std::string schemeOf(std::string_view url);

// The proxy of a list that serves an URL scheme, as libcurl wants it; empty for none. The entry for
// that very scheme goes first, then one without a scheme, then "socks=".
std::string proxyFor(std::string_view list, std::string_view scheme);

}  // namespace veltgeneral::platform::http

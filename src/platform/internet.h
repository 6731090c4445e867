// Sessions, URLs opened on them, and their bodies read piece by piece.
//
// Texts are bytes of the code page. Handles are positive numbers of one process-wide table: a
// number is not given out again while anybody could still hold it, so one that is closed, made up
// or of the wrong kind simply fails. Every function may be called from any thread, also with the
// same handle.
//
// What is trusted: the system's certificate authorities, or the file that CURL_CA_BUNDLE or
// SSL_CERT_FILE names instead of them (the first that is set; neither counts in a process that runs
// with more rights than its user). An administrator adds an authority to the system's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "veltgeneral/export.h"

namespace veltgeneral::platform {

// How an URL is opened: a sum of these.
inline constexpr std::uint32_t kInternetReload = 0x80000000;  // no copy from a cache on the way
inline constexpr std::uint32_t kInternetNoCacheWrite =
    0x04000000;                                               // keep no copy; none is kept ever
inline constexpr std::uint32_t kInternetSecure = 0x00800000;  // HTTPS, or nothing
inline constexpr std::uint32_t kInternetIgnoreCertName =
    0x00001000;  // any host's certificate will do

enum class InternetAccess : std::uint8_t {
  preconfigured,  // the proxies of the environment (http_proxy and its like), where it is trusted
  direct,         // no proxy, whatever the environment says
  proxy,          // the named ones
};

struct InternetRead {
  std::size_t count;        // bytes delivered; 0 at the end of the body and after a failure
  bool succeeded;           // false: no such URL handle, closed meanwhile, cut off, silent for 30 s
  std::uint64_t announced;  // bytes that the server says are still to come; 0 where it does not
};

// Nothing here throws: the implementation lives in a module of its own.
class Internet {
 public:
  Internet() = default;
  Internet(const Internet&) = delete;
  Internet& operator=(const Internet&) = delete;

  // Opens a session; the network is not asked. Cookies and idle connections live as long as it.
  //
  //   agent   the User-Agent of its requests.
  //   proxy   for InternetAccess::proxy: entries between blanks or ";", each "host:port" or
  //           "scheme=host:port"; an URL whose scheme no entry serves goes without. The port is
  //           80 where it is left out.
  //
  // Returns 0 where memory is short.
  virtual std::int32_t open(std::string_view agent, InternetAccess access,
                            std::string_view proxy) noexcept = 0;

  // Sends a GET for an http, https or ftp URL and waits for the head of the answer, whatever its
  // status. Follows up to 10 redirects to http or https, a secure request to https only. A
  // certificate must come from a trusted authority and be in date, and name the host unless the
  // flags say otherwise. Waits 60 s for a connection, 30 s for a sign of life.
  //
  //   url      blanks and non-ASCII bytes behind the host are percent-encoded; a control character
  //            fails the call.
  //   headers  "Name: value" lines with CR LF between them, perhaps also behind the last. A name
  //            that is no token, a control character, a lone CR or LF or an empty line between two
  //            headers fails the call; what would announce a body (Content-Length,
  //            Transfer-Encoding) is left out.
  //
  // Returns 0 on failure.
  virtual std::int32_t openUrl(std::int32_t session, std::string_view url, std::string_view headers,
                               std::uint32_t flags) noexcept = 0;

  // Waits for the next bytes of a body and delivers what is there, `out.size()` at most. What was
  // not asked for stays with the server, some hundred kilobytes excepted.
  virtual InternetRead read(std::int32_t urlHandle, std::span<std::uint8_t> out) noexcept = 0;

  // Closes a session with all its URLs, or an URL; a read that waits in another thread then ends.
  // Returns whether there was such a handle.
  virtual bool close(std::int32_t handle) noexcept = 0;

 protected:
  ~Internet() = default;
};

// The process's one; null where its module cannot be opened (tried again by the next call). Loading
// the HTTP library costs some milliseconds, which only the first caller pays.
VELTGENERAL_API Internet* internet() noexcept;

}  // namespace veltgeneral::platform

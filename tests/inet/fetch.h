// One session, one URL, one body, as a caller would.
#pragma once

#include <optional>
#include <string>

#include "veltgeneral/text.h"
#include "veltgeneral/velt_inet.h"

namespace veltgeneral::test {

// A session that closes itself.
class Session {
 public:
  Session() { VeltInet().IOpen(handle); }
  // As IOpenExtended.
  explicit Session(const Variant& proxy) {
    VeltInet().IOpenExtended(handle, Missing{}, Missing{}, proxy);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() { VeltInet().IClose(handle); }

  // 0 where the URL cannot be opened.
  std::int32_t open(std::string_view url, std::string_view headers = {}) {
    Text address = fromUtf8(url);
    Text lines = fromUtf8(headers);
    std::int32_t opened = 0;
    VeltInet().IOpenUrlExtended(handle, address, lines, opened);
    return opened;
  }

  // The body in UTF-8; nothing where the URL cannot be opened.
  std::optional<std::string> fetch(std::string_view url, std::string_view headers = {}) {
    std::int32_t opened = open(url, headers);
    if (opened == 0) return std::nullopt;
    Text body = u"old";
    VeltInet().IReadFile(opened, body);
    VeltInet().IClose(opened);
    return toUtf8(body);
  }

  std::int32_t handle = 0;
};

}  // namespace veltgeneral::test

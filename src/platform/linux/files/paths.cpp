#include "platform/paths.h"

#include <algorithm>

#include "platform/environment.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {
namespace {

bool isDriveLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

std::string driveFolder(char16_t letter) {
  char variable[] = "VELTGENERAL_DRIVE_X";
  variable[sizeof variable - 2] = static_cast<char>(letter & ~0x20);
  std::optional<std::string> folder = environment(variable);
  if (!folder || folder->empty()) throw RuntimeError(RunTime::pathNotFound);
  return *std::move(folder);
}

}  // namespace

std::string hostPath(TextView path) {
  if (path.find(u'\0') != TextView::npos) throw RuntimeError(RunTime::badFileName);
  std::string host;
  if (path.size() >= 2 && path[1] == u':' && isDriveLetter(path[0])) {
    host = driveFolder(path[0]);
    path.remove_prefix(2);
    // "C:name" is relative to the drive; the drive's folder is all the place it has.
    if (host.back() != '/' && !path.starts_with(u'\\') && !path.starts_with(u'/')) host += '/';
  }
  host += toUtf8(path);
  std::ranges::replace(host, '\\', '/');
  return host;
}

}  // namespace veltgeneral::platform

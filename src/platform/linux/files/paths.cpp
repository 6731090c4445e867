#include "platform/paths.h"

#include "platform/environment.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {
namespace {

bool isDriveLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

std::string driveFolder(char letter) {
  char variable[] = "VELTGENERAL_DRIVE_X";
  variable[sizeof variable - 2] = static_cast<char>(letter & ~0x20);
  std::optional<std::string> folder = environment(variable);
  if (!folder || folder->empty()) throw RuntimeError(RunTime::pathNotFound);
  return *std::move(folder);
}

}  // namespace

std::string hostPath(TextView path) {
  std::string host = toUtf8(path);
  if (host.find('\0') != std::string::npos) throw RuntimeError(RunTime::badFileName);
  if (host.size() >= 2 && host[1] == ':' && isDriveLetter(host[0])) {
    std::string folder = driveFolder(host[0]);
    host.erase(0, 2);
    // "C:name" is relative to the drive; the drive's folder is all the place it has.
    if (folder.back() != '/' && !host.starts_with('\\') && !host.starts_with('/')) folder += '/';
    host.insert(0, folder);
  }
  for (char& c : host) c = c == '\\' ? '/' : c;
  return host;
}

}  // namespace veltgeneral::platform

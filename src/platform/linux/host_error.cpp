#include "platform/linux/host_error.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace veltgeneral::platform {
namespace {

constexpr std::array kErrors{
    std::pair{EACCES, RunTime::permissionDenied},  std::pair{EPERM, RunTime::permissionDenied},
    std::pair{EROFS, RunTime::permissionDenied},   std::pair{EBUSY, RunTime::permissionDenied},
    std::pair{ETXTBSY, RunTime::permissionDenied}, std::pair{ENOTDIR, RunTime::pathNotFound},
    std::pair{ELOOP, RunTime::pathNotFound},       std::pair{EISDIR, RunTime::pathFileAccess},
    std::pair{ENAMETOOLONG, RunTime::badFileName}, std::pair{EINVAL, RunTime::badFileName},
    std::pair{ENOSPC, RunTime::diskFull},          std::pair{EDQUOT, RunTime::diskFull},
    std::pair{EFBIG, RunTime::diskFull},           std::pair{EMFILE, RunTime::tooManyFiles},
    std::pair{ENFILE, RunTime::tooManyFiles},      std::pair{ENOMEM, RunTime::outOfMemory},
};

bool folderExists(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return true;
  struct stat info {};
  const std::string folder = slash == 0 ? "/" : path.substr(0, slash);
  return stat(folder.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

RunTime errorFor(int host, const std::string& path) {
  // ENOENT covers a missing file, a missing folder and no name at all.
  if (host == ENOENT) {
    if (path.empty()) return RunTime::pathFileAccess;
    return folderExists(path) ? RunTime::fileNotFound : RunTime::pathNotFound;
  }
  const auto* found =
      std::ranges::find(kErrors, host, [](const auto& error) { return error.first; });
  return found == kErrors.end() ? RunTime::deviceIo : found->second;
}

}  // namespace

void failWith(int host, const std::string& path) { throw RuntimeError(errorFor(host, path)); }

}  // namespace veltgeneral::platform

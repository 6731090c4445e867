#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "platform/environment.h"
#include "platform/folders.h"
#include "platform/library.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kOthers = S_IRWXG | S_IRWXO;

std::string homeFolder() {
  if (auto home = environment("HOME"); home && !home->empty()) return *std::move(home);
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 4096> buffer;
  const bool known =
      ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found;
  return known ? entry.pw_dir : "";
}

std::string withoutSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

bool isFolder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

std::string baseFolder(const char* variable, const char* inHome) {
  // A relative path there is to be ignored.
  const auto chosen = environment(variable);
  const bool usable = chosen && chosen->starts_with('/');
  return (usable ? withoutSlash(*chosen) : homeFolder() + inHome) + "/veltgeneral";
}

std::string folderFrom(const char* variable, const char* name) {
  if (auto chosen = environment(variable); chosen && !chosen->empty()) {
    return withoutSlash(*std::move(chosen));
  }
  std::string folder = stateFolder() + name;
  return makePrivateFolder(folder) ? folder : "";
}

// A folder itself and no link to one, which its owner could turn elsewhere.
bool isOursAlone(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && (status.st_mode & kOthers) == 0;
}

}  // namespace

std::string stateFolder() { return baseFolder("XDG_STATE_HOME", "/.local/state"); }

std::string configFolder() { return baseFolder("XDG_CONFIG_HOME", "/.config"); }

bool makePrivateFolder(const std::string& path) {
  if (isFolder(path)) return true;
  const std::string parent = fs::path(path).parent_path().string();
  if (parent.empty() || parent == path || !makePrivateFolder(parent)) return false;
  return ::mkdir(path.c_str(), S_IRWXU) == 0 || isFolder(path);
}

std::string libraryHome() {
  if (auto chosen = environment("VELTGENERAL_HOME"); chosen && !chosen->empty())
    return withoutSlash(*std::move(chosen));
  std::string folder = libraryFolder() + "/";
  const bool system =
      std::ranges::any_of(std::array{"/usr/", "/lib/", "/lib64/", "/opt/"},
                          [&](const char* prefix) { return folder.starts_with(prefix); });
  if (!system) return withoutSlash(std::move(folder));
  folder = stateFolder();
  makePrivateFolder(folder);
  return folder;
}

std::string windowsFolder() { return folderFrom("VELTGENERAL_WINDOWS_DIR", "/windows"); }

std::string systemFolder() { return folderFrom("VELTGENERAL_SYSTEM_DIR", "/windows/system"); }

std::string temporaryFolder() {
  const auto chosen = environment("TMPDIR");
  std::string shared = chosen && !chosen->empty() ? withoutSlash(*chosen) : "/tmp";
  if (isOursAlone(shared)) return shared;
  std::string own = shared + "/veltgeneral-" + std::to_string(::geteuid());
  ::mkdir(own.c_str(), S_IRWXU);
  struct stat status {};
  if (::lstat(own.c_str(), &status) == 0 && !isOursAlone(own)) {
    throw RuntimeError(RunTime::permissionDenied);
  }
  return own;
}

}  // namespace veltgeneral::platform

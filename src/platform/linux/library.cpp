// The dynamic loader.
#include "platform/library.h"

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/environment.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::platform {

namespace fs = std::filesystem;

namespace {

// As the loader found it, links not resolved; empty where it cannot be found out.
std::string thisFile() noexcept {
  static const char kHere = 0;
  Dl_info info{};
  void* map = nullptr;
  if (::dladdr1(&kHere, &info, &map, RTLD_DL_LINKMAP) == 0) return {};
  // The program itself has no name in the loader's list.
  const char* name = static_cast<const link_map*>(map)->l_name;
  std::error_code failed;
  if (*name == 0) return fs::read_symlink("/proc/self/exe", failed).string();
  return fs::absolute(name, failed).string();
}

// Found out while the library is being loaded: its name may be relative to the working folder.
const std::string kFile = thisFile();
const std::string kFolder = [] {
  std::error_code failed;
  return fs::canonical(kFile, failed).parent_path().string();
}();

}  // namespace

Library::Library(const std::string& path) : handle_(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ != nullptr) return;
  // The loader tells a missing file only in prose, and a missing dependency in the same words.
  std::error_code ignored;
  const bool there = path.find('/') != std::string::npos && fs::exists(path, ignored);
  throw RuntimeError(there ? RunTime::libraryNotFound : RunTime::fileNotFound);
}

Library::Library(Library&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}

Library::~Library() {
  if (handle_ != nullptr) ::dlclose(handle_);
}

void* Library::symbol(const char* name) const {
  void* found = ::dlsym(handle_, name);
  if (found == nullptr) throw RuntimeError(RunTime::entryNotFound);
  return found;
}

std::string libraryFolder() {
  if (kFolder.empty()) throw RuntimeError(RunTime::fileNotFound);
  return kFolder;
}

std::string libraryFile() {
  if (kFile.empty()) throw RuntimeError(RunTime::fileNotFound);
  return kFile;
}

std::string modulePath(const std::string& name) {
  const auto folder = environment("VELTGENERAL_MODULE_DIR");
  return (folder && !folder->empty() ? *folder : libraryFolder() + "/veltgeneral") + "/" + name +
         ".so";
}

}  // namespace veltgeneral::platform

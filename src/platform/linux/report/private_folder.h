// A folder for work files that only the user can reach, gone with all it holds at the end.
#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "drawing/error.h"

namespace veltgeneral::platform {

class PrivateFolder {
 public:
  PrivateFolder()
      : path_((std::filesystem::temp_directory_path() / "veltgeneral-XXXXXX").string()) {
    if (::mkdtemp(path_.data()) == nullptr) throw drawing::Error::ofSystem(errno);
  }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;
  ~PrivateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string file(const char* name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace veltgeneral::platform

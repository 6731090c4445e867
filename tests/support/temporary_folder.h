// A folder of a test's own, gone with the object.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "veltgeneral/text.h"

namespace veltgeneral::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "veltgeneral-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const noexcept { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }
  Text text(const std::string& name) const { return fromUtf8(file(name)); }

  void put(const std::string& name, std::string_view bytes) const {
    std::ofstream(file(name), std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  std::string get(const std::string& name) const {
    std::ifstream in(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  std::filesystem::path path_;
};

}  // namespace veltgeneral::test

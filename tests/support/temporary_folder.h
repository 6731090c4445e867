// A folder of a test's own, gone with the object, and whole files.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "veltgeneral/text.h"

namespace veltgeneral::test {

inline std::string contentOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline void setContent(const std::string& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

class TemporaryFolder {
 public:
  explicit TemporaryFolder(
      const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::string name = (parent / "veltgeneral-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::filesystem::filesystem_error(name, {});
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const noexcept { return path_; }
  std::string operator/(std::string_view name) const { return (path_ / name).string(); }
  std::string file(std::string_view name) const { return *this / name; }
  Text text(std::string_view name) const { return fromUtf8(*this / name); }

  // The path of the file; the folders on its way are made.
  std::string put(std::string_view name, std::string_view bytes) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    setContent(*this / name, bytes);
    return *this / name;
  }
  std::string get(std::string_view name) const { return contentOf(*this / name); }
  std::size_t fileCount() const {
    const std::filesystem::directory_iterator all(path_);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
  }

 private:
  std::filesystem::path path_;
};

}  // namespace veltgeneral::test

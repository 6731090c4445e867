#include "file_io.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "command.h"

namespace veltgeneral::tool {
namespace {

namespace fs = std::filesystem;

// The standard streams open a folder as if it were a file.
bool isFolder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

}  // namespace

std::string readWhole(const std::string& path) {
  std::ifstream file;
  if (path != "-") {
    if (!isFolder(path)) file.open(path, std::ios::binary);
    if (!file.is_open()) throw UsageError("cannot read " + path);
  }
  std::istream& in = path == "-" ? std::cin : file;
  std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (in.bad()) throw UsageError("cannot read " + path);
  return content;
}

void writeWhole(const std::string& path, std::string_view content) {
  std::ofstream file;
  if (path != "-") file.open(path, std::ios::binary | std::ios::trunc);
  std::ostream& out = path == "-" ? std::cout : file;
  if (!out.write(content.data(), static_cast<std::streamsize>(content.size())).flush()) {
    throw std::runtime_error("cannot write " + path);
  }
}

void requireReadable(const std::string& path) {
  std::error_code ignored;
  if (fs::exists(path, ignored) && (isFolder(path) || !std::ifstream(path).is_open())) {
    throw std::runtime_error("cannot read " + path);
  }
}

}  // namespace veltgeneral::tool

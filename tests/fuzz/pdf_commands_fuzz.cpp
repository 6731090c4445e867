// Any command file gives either a document or a line at fault, and leaves nothing else behind.
#include <filesystem>
#include <fstream>

#include "fuzz/fuzz_input.h"
#include "pdf/vbravpdf.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;

class Folder {
 public:
  Folder() {
    std::string name = (fs::temp_directory_path() / "veltgeneral-fuzz-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~Folder() { fs::remove_all(path_); }
  std::string operator/(const char* name) const { return path_ / name; }
  std::ptrdiff_t fileCount() const { return std::distance(fs::directory_iterator(path_), {}); }

 private:
  fs::path path_;
};

void check(std::string_view commands) {
  static const Folder folder;
  const std::string commandFile = folder / "a.txt";
  const std::string pdfFile = folder / "a.pdf";
  std::ofstream(commandFile, std::ios::binary) << commands;
  fs::remove(pdfFile);
  std::string message(150, '#');
  const int result = VBRavpdf(commandFile.c_str(), pdfFile.c_str(), message.data());
  const Text shown = fromUtf8(commands);
  require(result == 0 || result == 1, "written, or a line at fault", shown);
  require(message.starts_with("line ") == (result == 1), "names the line", shown);
  require(message.find('\0') == std::string::npos, "a message without NUL", shown);
  require(fs::exists(pdfFile) == (result == 0), "a document only on success", shown);
  require(folder.fileCount() == (result == 0 ? 2 : 1), "nothing else left", shown);
}

}  // namespace
}  // namespace veltgeneral

// The font library keeps what it has read of its configuration.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig"; }

void veltgeneral::fuzz(std::string_view bytes) { check(bytes); }

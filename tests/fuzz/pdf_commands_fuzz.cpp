// Any command file gives either a document or a line at fault, and leaves nothing else behind.
#include "fuzz/fuzz_input.h"
#include "pdf/vbravpdf.h"
#include "support/temporary_folder.h"

void veltgeneral::fuzz(std::string_view bytes) {
  static const test::TemporaryFolder folder;
  const std::string pdfFile = folder / "a.pdf";
  std::filesystem::remove(pdfFile);
  std::string message(150, '#');
  const int result = VBRavpdf(folder.put("a.txt", bytes).c_str(), pdfFile.c_str(), message.data());
  require(result == 0 || result == 1, "written, or a line at fault");
  require(message.starts_with("line ") == (result == 1), "names the line");
  require(message.find('\0') == std::string::npos, "a message without NUL");
  require(std::filesystem::exists(pdfFile) == (result == 0), "a document only on success");
  require(folder.fileCount() == (result == 0 ? 2 : 1), "nothing else left");
}

// A PDF generator that does what its command file says: "copy" copies the file to the PDF with all
// 256 bytes behind it, "ended" and "full" refuse with a message that ends in a NUL, and one that
// fills its room.
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

extern "C" __attribute__((visibility("default"))) std::int16_t VBRavpdf(const char* commandFile,
                                                                        const char* pdfFile,
                                                                        char* message) {
  std::ifstream in(commandFile, std::ios::binary);
  std::string commands{std::istreambuf_iterator<char>(in), {}};
  if (commands.starts_with("copy")) {
    for (int byte = 0; byte < 256; ++byte) commands.push_back(static_cast<char>(byte));
    std::ofstream(pdfFile, std::ios::binary) << commands;
    return 0;
  }
  if (commands.starts_with("ended")) {
    std::strcpy(message, "  perch\xE9  ");
    return -7;
  }
  std::memset(message, 'x', 150);
  return 1;
}

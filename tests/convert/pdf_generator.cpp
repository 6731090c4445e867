// A PDF generator that does what its command file says: "copy" copies the file to the PDF with all
// 256 bytes behind it, "ended" and "full" refuse with a message that ends in a NUL, and one that
// fills its room.
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>

extern "C" __attribute__((visibility("default"))) std::int16_t VBRavpdf(const char* commandFile,
                                                                        const char* pdfFile,
                                                                        char* message) {
  std::string commands;
  std::getline(std::ifstream(commandFile, std::ios::binary), commands, '\0');
  if (commands.starts_with("copy")) {
    for (int byte = 0; byte < 256; ++byte) commands.push_back(static_cast<char>(byte));
    std::ofstream(pdfFile, std::ios::binary) << commands;
    return 0;
  }
  std::memset(message, 'x', 150);
  if (commands.starts_with("ended")) std::strcpy(message, "  perch\xE9  ");
  return -7;
}

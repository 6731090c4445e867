// The PDF generator's one entry, a contract of three arguments that any generator can stand behind.
#pragma once

#include <cstdint>

extern "C" {

// Writes the document that a command file describes (docs/pdf-commands.md).
//
//   commandFile, pdfFile  host paths in the code page of VELTGENERAL_CODEPAGE (CP1252 where that is
//                         not set), ended by a NUL.
//   message150            room for 150 characters; always filled to its end with blanks, never
//                         with a NUL. Blank on success, else the reason in the same code page.
//
// Returns 0: the PDF is written; 1: a command is at fault, the message begins "line N: "; 2: the
// command file cannot be read; 3: the PDF cannot be written; 4: the code page is not known, an
// argument is null, or memory ran out. A result other than 0 leaves `pdfFile` as it was.
__attribute__((visibility("default"))) std::int16_t VBRavpdf(const char* commandFile,
                                                             const char* pdfFile, char* message150);
}

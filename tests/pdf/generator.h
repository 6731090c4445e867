// Runs the generator in a folder of the test's own and reads its documents with independent tools.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/pdf_text.h"
#include "support/temporary_folder.h"

namespace veltgeneral::pdf {

using test::PdfText;
using test::Word;

constexpr double kCm = 72 / 2.54;

struct Result {
  std::int16_t number;
  std::string message;  // without the blanks that fill it
};

class Generator {
 public:
  // What the engine makes of `commands`, in `document`.
  Result run(std::string_view commands) const {
    folder.put("a.txt", commands);
    return run();
  }
  Result run() const { return runFiles((folder / "a.txt").c_str(), document.c_str()); }
  static Result runFiles(const char* commandFile, const char* pdfFile) {
    std::string message(151, '#');
    const std::int16_t number = entry()(commandFile, pdfFile, message.data());
    EXPECT_EQ(message.back(), '#') << "wrote beyond the buffer";
    message.pop_back();
    EXPECT_EQ(message.find('\0'), std::string::npos);
    message.erase(message.find_last_not_of(' ') + 1);
    return {number, message};
  }
  // The words and pages of good commands.
  PdfText make(std::string_view commands) const {
    const Result result = run(commands);
    EXPECT_EQ(result.number, 0) << result.message;
    return PdfText(document);
  }

  using Entry = std::int16_t(const char*, const char*, char*);
  static Entry* entry() {
    static auto* const kEntry =
        reinterpret_cast<Entry*>(::dlsym(::dlopen(PDF_MODULE, RTLD_NOW), "VBRavpdf"));
    return kEntry;
  }

  test::TemporaryFolder folder;
  const std::string document = folder / "a.pdf";
};

}  // namespace veltgeneral::pdf

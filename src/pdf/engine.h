// The generator: from a command file to a PDF file.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "pdf/code_page.h"

namespace veltgeneral::pdf {

// What a generation can fail with; its values are the entry's results.
enum class Outcome { written = 0, badCommand = 1, unreadable = 2, unwritable = 3, failed = 4 };

class Failure : public std::exception {
 public:
  // `message` is UTF-8.
  Failure(Outcome outcome, std::string message) : outcome_(outcome), message_(std::move(message)) {}
  Outcome outcome() const { return outcome_; }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  Outcome outcome_;
  std::string message_;
};

// Both names are host paths in UTF-8. Throws Failure, and leaves `pdfFile` as it was.
//
// Where {pages} occurs the commands run twice: a trial run counts the pages, so that memory does
// not grow with their number.
void generate(const std::string& commandFile, const std::string& pdfFile, const CodePage& codePage);

}  // namespace veltgeneral::pdf

// The lines of a `.reg` text: what each statement is and which bytes it covers.
//
// Works on inner text (settings_text.h) without its byte order mark. Every byte belongs to exactly
// one statement, so the text can be put together again from them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/narrow_page.h"
#include "platform/registry.h"

namespace veltgeneral::platform {

enum class RegStatement {
  blank,  // comments too
  version,
  key,
  removeKey,
  value,
  removeValue,
  malformed,
};

struct RegLine {
  RegStatement kind = RegStatement::blank;
  std::size_t begin = 0;
  std::size_t end = 0;         // behind the line end; a value in pieces covers several lines
  std::size_t line = 0;        // counts from 1 where the lexer began
  bool beginsKey = false;      // starts with "[", malformed or not
  std::string_view name = {};  // of a key: its whole path; of a value: still escaped, empty for "@"
  std::string_view data = {};  // behind "=", with the lines that carry it on
};

class RegLexer {
 public:
  explicit RegLexer(std::string_view content, std::size_t from = 0) noexcept
      : content_(content), at_(from) {}

  // False at the end of the text.
  bool next(RegLine& out);

 private:
  std::string_view takeLine();
  void readValue(std::string_view line, RegLine& out);
  bool readPieces();

  std::string_view content_;
  std::size_t at_;
  std::size_t line_ = 0;
};

// The position behind the quote that ends a text that began at `from`; npos where none does.
std::size_t behindRegQuote(std::string_view text, std::size_t from) noexcept;

// The next "[" at or behind `from` that begins a line; npos at the end.
std::size_t nextSection(std::string_view content, std::size_t from) noexcept;

// How texts are held in `hex` data.
struct RegDialect {
  bool version4 = false;  // in the code page, not in UTF-16LE
  const NarrowPage* page = nullptr;
};
RegDialect regDialect(std::string_view content, const NarrowPage& page) noexcept;

// Nothing for data that is malformed.
std::optional<RegistryValue> parseRegData(std::string_view data, const RegDialect& dialect);
// What follows the data of a value on its last line: a comment and the blanks before it, or
// nothing.
std::string_view regComment(std::string_view data) noexcept;
// "name"= or @= and the data, lines ended by `lineEnd` (also the last). `name` and the value are
// taken over whole, whatever characters they hold.
std::string formatRegValue(std::string_view name, const RegistryValue& value,
                           const RegDialect& dialect, std::string_view lineEnd);

std::string unescapeReg(std::string_view escaped);

}  // namespace veltgeneral::platform

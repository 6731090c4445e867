#include "platform/linux/settings/reg_lexer.h"

#include "platform/linux/settings/settings_text.h"

namespace veltgeneral::platform {
namespace {

constexpr std::string_view kVersion4 = "REGEDIT4";
constexpr std::string_view kVersion5 = "Windows Registry Editor Version 5.00";

bool startsPiece(std::string_view line) {
  if (line.empty()) return false;
  const char c = line.front();
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F') || c == ',' ||
         c == '\\';
}

bool isHex(std::string_view data) {
  return data.size() >= 4 && (data[0] | 32) == 'h' && (data[1] | 32) == 'e' &&
         (data[2] | 32) == 'x' && (data[3] == ':' || data[3] == '(');
}

void readKey(std::string_view line, RegLine& out) {
  const std::size_t close = line.rfind(']');
  const bool remove = line.size() > 1 && line[1] == '-';
  const std::size_t from = remove ? 2 : 1;
  if (close == std::string_view::npos || close < from) {
    out.kind = RegStatement::malformed;
    return;
  }
  out.kind = remove ? RegStatement::removeKey : RegStatement::key;
  out.name = line.substr(from, close - from);
}

}  // namespace

std::string_view RegLexer::takeLine() {
  const std::size_t begin = at_;
  const std::size_t newline = content_.find('\n', begin);
  at_ = newline == std::string_view::npos ? content_.size() : newline + 1;
  ++line_;
  std::string_view line = content_.substr(begin, at_ - begin);
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.remove_suffix(1);
  return trimmed(line);
}

// Goes on behind a line that ended in "\". False where the text ends or goes on with another
// statement, which is then left unread.
bool RegLexer::readPieces() {
  for (;;) {
    const std::size_t before = at_;
    const std::size_t lineBefore = line_;
    if (at_ >= content_.size()) return false;
    const std::string_view line = takeLine();
    if (line.empty() || line.front() == ';') continue;
    if (!startsPiece(line)) {
      at_ = before;
      line_ = lineBefore;
      return false;
    }
    if (line.back() != '\\') return true;
  }
}

void RegLexer::readValue(std::string_view line, RegLine& out) {
  out.kind = RegStatement::malformed;
  std::size_t behind = 1;
  if (line.front() == '"') {
    behind = behindRegQuote(line, 1);
    if (behind == std::string_view::npos) return;
    out.name = line.substr(1, behind - 2);
  }
  std::string_view rest = trimmed(line.substr(behind));
  if (rest.empty() || rest.front() != '=') return;
  rest = trimmed(rest.substr(1));
  out.data = rest;
  if (rest == "-") {
    out.kind = RegStatement::removeValue;
    return;
  }
  out.kind = RegStatement::value;
  if (!isHex(rest) || rest.back() != '\\') return;
  const bool whole = readPieces();
  const auto from = static_cast<std::size_t>(rest.data() - content_.data());
  out.data = content_.substr(from, at_ - from);
  if (!whole) out.kind = RegStatement::malformed;
}

bool RegLexer::next(RegLine& out) {
  if (at_ >= content_.size()) return false;
  const std::size_t begin = at_;
  const std::string_view line = takeLine();
  out = RegLine{.begin = begin, .line = line_};
  if (line.empty() || line.front() == ';') {
    out.kind = RegStatement::blank;
  } else if (line.front() == '[') {
    out.beginsKey = true;
    readKey(line, out);
  } else if (line.front() == '"' || line.front() == '@') {
    readValue(line, out);
  } else {
    const bool version = line == kVersion4 || line == kVersion5;
    out.kind = version ? RegStatement::version : RegStatement::malformed;
  }
  out.end = at_;
  return true;
}

std::size_t behindRegQuote(std::string_view text, std::size_t from) noexcept {
  for (std::size_t i = from; i < text.size(); ++i) {
    if (text[i] == '\\') {
      ++i;
    } else if (text[i] == '"') {
      return i + 1;
    }
  }
  return std::string_view::npos;
}

std::size_t nextSection(std::string_view content, std::size_t from) noexcept {
  for (std::size_t at = content.find('[', from); at != std::string_view::npos;
       at = content.find('[', at + 1)) {
    std::size_t back = at;
    while (back > 0 && isBlank(content[back - 1])) --back;
    if (back == 0 || content[back - 1] == '\n') return back;
  }
  return std::string_view::npos;
}

RegDialect regDialect(std::string_view content, const NarrowPage& page) noexcept {
  const std::size_t start = content.find_first_not_of(" \t\r\n");
  const bool version4 =
      start != std::string_view::npos && content.substr(start).starts_with(kVersion4);
  return {version4, &page};
}

}  // namespace veltgeneral::platform

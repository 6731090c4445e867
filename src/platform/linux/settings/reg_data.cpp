// The data of registry values as `.reg` text, both ways.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

#include "platform/linux/settings/reg_lexer.h"
#include "platform/linux/settings/settings_text.h"

namespace veltgeneral::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

bool isTextType(RegistryType type) {
  return type == RegistryType::text || type == RegistryType::expandableText ||
         type == RegistryType::texts;
}

int digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(c | 32);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::optional<std::uint32_t> hexNumber(std::string_view digits) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number, 16);
  if (digits.empty() || digits.size() > 8 || error != std::errc{} || end != digits.end())
    return std::nullopt;
  return number;
}

// One or two digits a byte, commas between; "\" and line ends, blank and comment lines between the
// pieces.
std::optional<Bytes> hexBytes(std::string_view data) {
  Bytes bytes;
  bytes.reserve(data.size() / 3 + 1);
  bool comma = true;  // a byte may come
  for (std::size_t i = 0; i < data.size(); ++i) {
    const char c = data[i];
    if (c == '\\' || c == '\n') {
      // Behind either a line begins that may be a comment.
      const std::size_t line = data.find_first_not_of(" \t\r\n", i + 1);
      if (line == std::string_view::npos) break;
      i = data[line] == ';' ? std::min(data.find('\n', line), data.size()) - 1 : line - 1;
    } else if (c == ';') {
      i = std::min(data.find('\n', i), data.size()) - 1;
    } else if (c == ',') {
      if (comma) return std::nullopt;
      comma = true;
    } else if (const int high = digit(c); high >= 0) {
      if (!comma) return std::nullopt;
      comma = false;
      const int low = i + 1 < data.size() ? digit(data[i + 1]) : -1;
      bytes.push_back(static_cast<std::uint8_t>(low < 0 ? high : high * 16 + low));
      if (low >= 0) ++i;
    } else if (c != ' ' && c != '\t' && c != '\r') {
      return std::nullopt;
    }
  }
  if (comma && !bytes.empty()) return std::nullopt;
  return bytes;
}

Text textOfBytes(const Bytes& bytes, const RegDialect& dialect) {
  Text text;
  if (dialect.version4) {
    for (const std::uint8_t byte : bytes) text.push_back(dialect.page->characters[byte]);
  } else {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
      text.push_back(static_cast<char16_t>(bytes[i] | (bytes[i + 1] << 8)));
  }
  return text;
}

Bytes bytesOfText(TextView text, const RegDialect& dialect) {
  Bytes bytes;
  for (const char16_t c : text) {
    bytes.push_back(dialect.version4 ? dialect.page->byte(c) : static_cast<std::uint8_t>(c & 0xFF));
    if (!dialect.version4) bytes.push_back(static_cast<std::uint8_t>(c >> 8));
  }
  return bytes;
}

RegistryValue ofBytes(RegistryType type, Bytes bytes, const RegDialect& dialect) {
  RegistryValue value{.type = type};
  if (!isTextType(type)) {
    value.bytes = std::move(bytes);
    return value;
  }
  value.text = textOfBytes(bytes, dialect);
  // The NUL that ends the text, or the list, is not part of it.
  if (!value.text.empty() && value.text.back() == u'\0') value.text.pop_back();
  if (type == RegistryType::texts && !value.text.empty() && value.text.back() != u'\0')
    value.text.push_back(u'\0');
  return value;
}

std::optional<RegistryValue> parseText(std::string_view data) {
  const std::size_t behind = behindRegQuote(data, 1);
  if (behind == std::string_view::npos) return std::nullopt;
  const std::string_view rest = trimmed(data.substr(behind));
  if (!rest.empty() && rest.front() != ';') return std::nullopt;
  const std::string_view inside = data.substr(1, behind - 2);
  const bool plain = inside.find('\\') == std::string_view::npos;
  return RegistryValue{.text = fromInner(plain ? inside : unescapeReg(inside))};
}

std::string escaped(std::string_view text) {
  std::string out;
  out.reserve(text.size() + 2);
  for (const char c : text) {
    switch (c) {
      case '\\':
      case '"':
        out += '\\';
        out += c;
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      default:
        out += c;
    }
  }
  return out;
}

// Whether quotes can hold it in a file that must stay well-formed UTF-8.
bool fitsQuotes(const RegistryValue& value, const RegDialect& dialect) {
  if (value.type != RegistryType::text || value.text.find(u'\0') != Text::npos) return false;
  if (dialect.version4) return true;
  const std::string inner = toInner(value.text);
  return isUtf8(inner);
}

void appendHex(std::string& out, std::size_t column, const Bytes& bytes, std::string_view lineEnd) {
  constexpr std::size_t kWidth = 77;
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string_view comma;
  for (const std::uint8_t byte : bytes) {
    out.append(comma);
    column += comma.size();
    if (column + 2 > kWidth - 1) {
      out.append("\\").append(lineEnd).append("  ");
      column = 2;
    }
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
    column += 2;
    comma = ",";
  }
}

}  // namespace

std::string unescapeReg(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    const char c = text[++i];
    out += c == 'n' ? '\n' : c == 'r' ? '\r' : c;
  }
  return out;
}

std::optional<RegistryValue> parseRegData(std::string_view data, const RegDialect& dialect) {
  if (data.starts_with('"')) return parseText(data);
  const auto behind = [&](std::string_view word) -> std::optional<std::string_view> {
    const bool same = std::ranges::equal(data.substr(0, word.size()), word,
                                         [](char a, char b) { return (a | 32) == (b | 32); });
    return same ? std::optional(data.substr(word.size())) : std::nullopt;
  };
  if (const auto digits = behind("dword:")) {
    const auto number = hexNumber(trimmed(digits->substr(0, digits->find(';'))));
    if (!number) return std::nullopt;
    Bytes bytes;
    for (int shift = 0; shift < 32; shift += 8)
      bytes.push_back(static_cast<std::uint8_t>(*number >> shift));
    return RegistryValue{RegistryType::number, {}, std::move(bytes)};
  }
  auto rest = behind("hex");
  if (!rest) return std::nullopt;
  auto type = RegistryType::binary;
  if (rest->starts_with('(')) {
    const std::size_t close = rest->find(')');
    const auto number = hexNumber(rest->substr(1, close == std::string_view::npos ? 0 : close - 1));
    if (!number) return std::nullopt;
    type = static_cast<RegistryType>(*number);
    rest = rest->substr(close + 1);
  }
  if (!rest->starts_with(':')) return std::nullopt;
  auto bytes = hexBytes(rest->substr(1));
  if (!bytes) return std::nullopt;
  return ofBytes(type, std::move(*bytes), dialect);
}

std::string_view regComment(std::string_view data) noexcept {
  data = data.substr(0, data.find_last_not_of(" \t\r\n") + 1);
  const bool text = data.starts_with('"');
  const std::size_t from = text ? behindRegQuote(data, 1) : data.rfind('\n') + 1;
  std::size_t at = from == std::string_view::npos ? from : data.find(';', from);
  if (at == std::string_view::npos) return {};
  while (at > from && isBlank(data[at - 1])) --at;
  return text && at != from ? std::string_view() : data.substr(at);
}

std::string formatRegValue(std::string_view name, const RegistryValue& value,
                           const RegDialect& dialect, std::string_view lineEnd) {
  std::string out;
  if (name.empty()) {
    out = "@=";
  } else {
    out.append("\"").append(escaped(name)).append("\"=");
  }
  if (fitsQuotes(value, dialect)) {
    out.append("\"").append(escaped(toInner(value.text))).append("\"");
  } else if (value.type == RegistryType::number && value.bytes.size() == 4) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "dword:%02x%02x%02x%02x", value.bytes[3],
                  value.bytes[2], value.bytes[1], value.bytes[0]);
    out += number.data();
  } else {
    std::array<char, 8> digits{};
    const auto number = static_cast<std::uint32_t>(value.type);
    const auto end = std::to_chars(digits.begin(), digits.end(), number, 16).ptr;
    if (value.type == RegistryType::binary) {
      out += "hex:";
    } else {
      out.append("hex(").append(digits.data(), end).append("):");
    }
    const Bytes bytes =
        isTextType(value.type) ? bytesOfText(value.text + u'\0', dialect) : value.bytes;
    appendHex(out, out.size(), bytes, lineEnd);
  }
  return out.append(lineEnd);
}

}  // namespace veltgeneral::platform

#include "platform/linux/settings/settings_text.h"

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>

#include "platform/upper_case.h"

namespace veltgeneral::platform {
namespace {

constexpr bool isHigh(char32_t c) { return (c & 0xFFFFFC00) == 0xD800; }
constexpr bool isLow(char32_t c) { return (c & 0xFFFFFC00) == 0xDC00; }
constexpr bool isPlain(char c) { return static_cast<unsigned char>(c) < 0x80; }
constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

void append(std::string& out, char32_t c) {
  const auto put = [&](char32_t bits) { out.push_back(static_cast<char>(bits)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6));
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | (c >> 12));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | (c >> 18));
    put(0x80 | ((c >> 12) & 0x3F));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

using UpperTable = std::array<char16_t, 65536>;

std::unique_ptr<const UpperTable> upperTable() {
  auto table = std::make_unique<UpperTable>();
  std::iota(table->begin(), table->end(), char16_t{0});
  mapToUpper(*table);
  return table;
}

}  // namespace

std::string toInner(TextView text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (isHigh(c) && i + 1 < text.size() && isLow(text[i + 1]))
      c = 0x10000 + ((c - 0xD800) << 10) + (char32_t{text[++i]} - 0xDC00);
    append(out, c);
  }
  return out;
}

Text fromInner(std::string_view inner) {
  Text out;
  if (isAscii(inner)) {
    out.resize(inner.size());
    for (std::size_t i = 0; i < inner.size(); ++i) out[i] = static_cast<unsigned char>(inner[i]);
    return out;
  }
  out.reserve(inner.size());
  const auto tail = [&](std::size_t i) -> char32_t {
    return i < inner.size() ? static_cast<unsigned char>(inner[i]) & 0x3Fu : 0u;
  };
  for (std::size_t i = 0; i < inner.size();) {
    const char32_t b = static_cast<unsigned char>(inner[i]);
    if (b < 0x80) {
      out.push_back(static_cast<char16_t>(b));
      ++i;
    } else if (b < 0xE0) {
      out.push_back(static_cast<char16_t>(((b & 0x1F) << 6) | tail(i + 1)));
      i += 2;
    } else if (b < 0xF0) {
      out.push_back(static_cast<char16_t>(((b & 0x0F) << 12) | (tail(i + 1) << 6) | tail(i + 2)));
      i += 3;
    } else {
      const char32_t c = ((b & 7) << 18) | (tail(i + 1) << 12) | (tail(i + 2) << 6) | tail(i + 3);
      out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
      i += 4;
    }
  }
  return out;
}

bool isAscii(std::string_view bytes) noexcept {
  unsigned char all = 0;
  for (const char c : bytes) all |= static_cast<unsigned char>(c);
  return all < 0x80;
}

bool isUtf8(std::string_view bytes) {
  // The rim replaces what is malformed, so only well-formed bytes come back as they were.
  return isAscii(bytes) || toUtf8(fromUtf8(bytes)) == bytes;
}

std::string innerOfUtf16(std::string_view units) {
  Text text(units.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i)
    text[i] = static_cast<char16_t>(static_cast<unsigned char>(units[2 * i]) |
                                    (static_cast<unsigned char>(units[2 * i + 1]) << 8));
  return toInner(text);
}

std::string utf16OfInner(std::string_view inner) {
  const Text text = fromInner(inner);
  std::string out(text.size() * 2, '\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    out[2 * i] = static_cast<char>(text[i] & 0xFF);
    out[2 * i + 1] = static_cast<char>(text[i] >> 8);
  }
  return out;
}

std::string innerOfPage(std::string_view bytes, const NarrowPage& page) {
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) append(out, page.characters[static_cast<unsigned char>(c)]);
  return out;
}

std::string pageOfInner(std::string_view inner, const NarrowPage& page) {
  if (isAscii(inner)) return std::string(inner);
  const Text text = fromInner(inner);
  std::string out(text.size(), '\0');
  std::ranges::transform(text, out.begin(),
                         [&](char16_t c) { return static_cast<char>(page.byte(c)); });
  return out;
}

char16_t foldUnit(char16_t unit) {
  if (unit < 0x80) return static_cast<char16_t>(upper(static_cast<char>(unit)));
  static const auto kUpper = upperTable();
  return (*kUpper)[unit];
}

void foldText(TextView text, std::string& out) {
  out.resize(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] >= 0x80) {
      Text folded(text);
      for (char16_t& unit : folded) unit = foldUnit(unit);
      out = toInner(folded);
      return;
    }
    out[i] = upper(static_cast<char>(text[i]));
  }
}

void foldInner(std::string_view inner, std::string& out) {
  out.resize(inner.size());
  for (std::size_t i = 0; i < inner.size(); ++i) {
    if (!isPlain(inner[i])) {
      foldText(fromInner(inner), out);
      return;
    }
    out[i] = upper(inner[i]);
  }
}

std::string_view trimmed(std::string_view text) noexcept {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace veltgeneral::platform

#include "veltgeneral/text.h"

#include "platform/ascii_copy.h"

namespace veltgeneral {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void appendUtf8(std::string& out, char32_t c) {
  const auto tail = [&](unsigned shift) {
    out.push_back(static_cast<char>(0x80 | ((c >> shift) & 0x3F)));
  };
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    tail(0);
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    tail(6);
    tail(0);
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    tail(12);
    tail(6);
    tail(0);
  }
}

void appendUtf16(Text& out, char32_t c) {
  if (c < 0x10000) {
    out.push_back(static_cast<char16_t>(c));
  } else {
    out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
  }
}

// What a lead byte allows: Unicode 15, table 3-7. The second byte's range excludes overlong forms,
// surrogates and values beyond U+10FFFF, so a sequence that passes is well formed.
struct Lead {
  int length;
  unsigned char low;
  unsigned char high;
};

constexpr Lead leadOf(unsigned char b) {
  if (b < 0x80) return {1, 0, 0};
  if (b < 0xC2) return {0, 0, 0};
  if (b < 0xE0) return {2, 0x80, 0xBF};
  if (b == 0xE0) return {3, 0xA0, 0xBF};
  if (b == 0xED) return {3, 0x80, 0x9F};
  if (b < 0xF0) return {3, 0x80, 0xBF};
  if (b == 0xF0) return {4, 0x90, 0xBF};
  if (b < 0xF4) return {4, 0x80, 0xBF};
  if (b == 0xF4) return {4, 0x80, 0x8F};
  return {0, 0, 0};
}

constexpr bool isHigh(char16_t c) { return (c & 0xFC00) == 0xD800; }
constexpr bool isLow(char16_t c) { return (c & 0xFC00) == 0xDC00; }

}  // namespace

std::string toUtf8(TextView text) {
  std::string out(text.size(), '\0');
  std::size_t i = platform::narrowAscii(text, reinterpret_cast<std::uint8_t*>(out.data()));
  for (; i < text.size() && text[i] < 0x80; ++i) out[i] = static_cast<char>(text[i]);
  out.resize(i);
  for (; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (isHigh(c) && i + 1 < text.size() && isLow(text[i + 1])) {
      appendUtf8(out, 0x10000 + ((char32_t{c} - 0xD800) << 10) + (char32_t{text[i + 1]} - 0xDC00));
      ++i;
    } else {
      appendUtf8(out, isHigh(c) || isLow(c) ? kReplacement : c);
    }
  }
  return out;
}

Text fromUtf8(std::string_view utf8) {
  Text out;
  out.reserve(utf8.size());
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
  for (std::size_t i = 0; i < utf8.size();) {
    const Lead lead = leadOf(byte(i));
    if (lead.length == 0) {
      out.push_back(static_cast<char16_t>(kReplacement));
      ++i;
      continue;
    }
    char32_t c = lead.length == 1 ? byte(i) : byte(i) & (0x7Fu >> lead.length);
    std::size_t used = 1;
    for (; used < static_cast<std::size_t>(lead.length) && i + used < utf8.size(); ++used) {
      const unsigned char b = byte(i + used);
      if (used == 1 ? b < lead.low || b > lead.high : (b & 0xC0) != 0x80) break;
      c = (c << 6) | (b & 0x3Fu);
    }
    appendUtf16(out, used == static_cast<std::size_t>(lead.length) ? c : kReplacement);
    i += used;
  }
  return out;
}

}  // namespace veltgeneral

#include "automation/code_page.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "platform/ascii_copy.h"
#include "platform/environment.h"
#include "platform/single_byte_page.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

using Page = std::array<char16_t, 256>;

constexpr std::uint8_t kUnknown = '?';

// Code page 1252: ISO 8859-1 but for these. 81, 8D, 8F, 90 and 9D have no character.
constexpr std::array<char16_t, 32> kCp1252From80{
    u'€', u'\x81', u'‚',    u'ƒ', u'„',    u'…',    u'†', u'‡',    u'ˆ', u'‰', u'Š',
    u'‹', u'Œ',    u'\x8D', u'Ž', u'\x8F', u'\x90', u'‘', u'’',    u'“', u'”', u'•',
    u'–', u'—',    u'˜',    u'™', u'š',    u'›',    u'œ', u'\x9D', u'ž', u'Ÿ'};

constexpr Page cp1252() {
  Page page{};
  for (std::size_t i = 0; i < page.size(); ++i) page[i] = static_cast<char16_t>(i);
  std::ranges::copy(kCp1252From80, page.begin() + 0x80);
  return page;
}

std::optional<Page> pageOf(std::string_view name) {
  std::string upper(name);
  std::ranges::transform(upper, upper.begin(), [](unsigned char c) { return std::toupper(c); });
  if (upper == "CP1252" || upper == "WINDOWS-1252") return cp1252();
  return platform::singleBytePage(upper);
}

}  // namespace

CodePage::CodePage(std::string_view name) {
  const auto page = pageOf(name);
  if (!page) throw RuntimeError(RunTime::invalidCall);
  characters_ = *page;
  bytes_.fill(kUnknown);
  // Downwards, so that of two bytes with one character the smaller is written.
  for (std::size_t i = characters_.size(); i-- > 0;) {
    bytes_[characters_[i]] = static_cast<std::uint8_t>(i);
  }
  for (std::size_t i = 0; i < 0x80; ++i) holdsAscii_ = holdsAscii_ && characters_[i] == i;
}

void CodePage::widen(std::span<const std::uint8_t> bytes, char16_t* out) const noexcept {
  for (std::size_t done = 0; done < bytes.size();) {
    if (holdsAscii_) done += platform::widenAscii(bytes.subspan(done), out + done);
    const std::size_t end = std::min(bytes.size(), done + platform::kAsciiBlock);
    for (; done < end; ++done) out[done] = characters_[bytes[done]];
  }
}

void CodePage::narrow(TextView text, std::uint8_t* out) const noexcept {
  for (std::size_t done = 0; done < text.size();) {
    if (holdsAscii_) done += platform::narrowAscii(text.substr(done), out + done);
    const std::size_t end = std::min(text.size(), done + platform::kAsciiBlock);
    for (; done < end; ++done) out[done] = bytes_[text[done]];
  }
}

const CodePage& systemCodePage() {
  static const CodePage page = [] {
    const auto name = platform::environment("VELTGENERAL_CODEPAGE");
    return CodePage(name && !name->empty() ? *name : "CP1252");
  }();
  return page;
}

std::string toBytes(TextView text, const CodePage& page) {
  std::string bytes(text.size(), '\0');
  page.narrow(text, reinterpret_cast<std::uint8_t*>(bytes.data()));
  return bytes;
}

Text fromBytes(std::string_view bytes, const CodePage& page) {
  Text text(bytes.size(), u'\0');
  page.widen({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, text.data());
  return text;
}

}  // namespace veltgeneral

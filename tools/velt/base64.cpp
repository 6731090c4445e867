#include "base64.h"

namespace veltgeneral::tool {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string toBase64(std::span<const std::uint8_t> bytes) {
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = 0;
    for (std::size_t j = 0; j < 3; ++j) group = group << 8 | (j < count ? bytes[i + j] : 0U);
    for (std::size_t j = 0; j < 4; ++j) {
      out += j <= count ? kAlphabet[group >> (18 - 6 * j) & 63] : '=';
    }
  }
  return out;
}

std::optional<Bytes> fromBase64(std::string_view text) {
  for (int padding = 0; padding < 2 && text.ends_with('='); ++padding) text.remove_suffix(1);
  if (text.size() % 4 == 1) return std::nullopt;
  Bytes out;
  out.reserve(text.size() / 4 * 3 + 2);
  std::uint32_t group = 0;
  unsigned bits = 0;
  for (const char c : text) {
    const std::size_t value = kAlphabet.find(c);
    if (value == std::string_view::npos) return std::nullopt;
    group = group << 6 | static_cast<std::uint32_t>(value);
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    out.push_back(static_cast<std::uint8_t>(group >> bits));
  }
  return out;
}

}  // namespace veltgeneral::tool

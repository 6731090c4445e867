#include "core/registry_text.h"

#include <algorithm>

#include "automation/coerce.h"
#include "core/narrow_page.h"

namespace veltgeneral {
namespace {

constexpr std::size_t kBuffer = 1024;

// Each byte's digits without leading zeros, from the highest byte that is used to the lowest:
// lossy, and what callers have come to store their numbers for.
Text numberText(const std::vector<std::uint8_t>& bytes) {
  constexpr TextView kDigits = u"0123456789ABCDEF";
  const auto used = std::ranges::find(bytes, 0) - bytes.begin();
  Text literal = u"&h";
  for (auto at = used; at-- > 0;) {
    const std::uint8_t byte = bytes[static_cast<std::size_t>(at)];
    if (byte > 15) literal.push_back(kDigits[byte >> 4]);
    literal.push_back(kDigits[byte & 15]);
  }
  return used == 0 ? literal : toText(toDouble(literal));
}

std::optional<platform::RegistryKey> open(std::int32_t root, TextView key) {
  return platform::RegistryKey::open(static_cast<platform::RegistryRoot>(root), key, narrowPage());
}

std::optional<Text> textOf(platform::RegistryValue value) {
  using platform::RegistryType;
  const bool isText =
      value.type == RegistryType::text || value.type == RegistryType::expandableText;
  const bool hasText = isText || value.type == RegistryType::texts;
  const std::size_t size = hasText ? value.text.size() + 1 : value.bytes.size();
  if (size > kBuffer) return std::nullopt;
  if (value.type == RegistryType::number) return numberText(value.bytes);
  if (!isText) return Text();
  value.text.resize(std::min(value.text.find(u'\0'), value.text.size()));
  return narrowed(std::move(value.text));
}

}  // namespace

RegistryTexts::RegistryTexts(std::int32_t root, TextView key)
    : key_(isAscii(key) ? open(root, key) : open(root, narrowed(Text(key)))) {}

std::optional<Text> RegistryTexts::read(TextView name) const {
  if (!key_) return std::nullopt;
  auto value = isAscii(name) ? key_->query(name) : key_->query(narrowed(Text(name)));
  return value ? textOf(std::move(*value)) : std::nullopt;
}

}  // namespace veltgeneral

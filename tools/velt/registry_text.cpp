#include "registry_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "command.h"
#include "number_text.h"

namespace veltgeneral::tool {

using platform::RegistryType;
using platform::RegistryValue;

namespace {

struct TypeName {
  std::string_view name;
  RegistryType type;
};
constexpr std::array kTypes{
    TypeName{"text", RegistryType::text},
    TypeName{"expand", RegistryType::expandableText},
    TypeName{"texts", RegistryType::texts},
    TypeName{"dword", RegistryType::number},
    TypeName{"dword-be", RegistryType::bigEndianNumber},
    TypeName{"qword", RegistryType::number64},
    TypeName{"binary", RegistryType::binary},
    TypeName{"none", RegistryType::none},
};

std::size_t numberWidth(RegistryType type) {
  if (type == RegistryType::number || type == RegistryType::bigEndianNumber) return 4;
  return type == RegistryType::number64 ? 8 : 0;
}

template <class Number>
std::optional<Number> readUnsigned(std::string_view text) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  Number number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
  return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::vector<std::uint8_t> bytesOf(std::uint64_t number, RegistryType type) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < numberWidth(type); ++i) {
    bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
  }
  if (type == RegistryType::bigEndianNumber) std::ranges::reverse(bytes);
  return bytes;
}

// Nothing where the bytes are not exactly the number's.
std::optional<std::uint64_t> numberOf(const RegistryValue& value) {
  const std::size_t width = numberWidth(value.type);
  if (width == 0 || value.bytes.size() != width) return std::nullopt;
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < width; ++i) {
    const bool bigEndian = value.type == RegistryType::bigEndianNumber;
    number = number << 8 | value.bytes[bigEndian ? i : width - 1 - i];
  }
  return number;
}

std::vector<std::uint8_t> readHex(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const std::string pair = "0x" + std::string(text.substr(i, 2));
    const auto byte = readUnsigned<std::uint8_t>(pair);
    if (!byte || pair.size() != 4) {
      throw UsageError("not bytes in hexadecimal: '" + std::string(text) + "'");
    }
    bytes.push_back(*byte);
  }
  return bytes;
}

std::string hexText(const std::vector<std::uint8_t>& bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

// The texts of a list: a NUL behind each.
std::vector<std::string> splitTexts(TextView list) {
  std::vector<std::string> texts;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(u'\0'), list.size());
    texts.push_back(toUtf8(list.substr(0, end)));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return texts;
}

Text joinTexts(const std::vector<std::string>& texts) {
  Text list;
  for (const std::string& each : texts) {
    const Text text = fromUtf8(each);
    // An empty one would end the list for every reader.
    if (text.empty() || text.find(u'\0') != Text::npos) {
      throw UsageError("a text in a list cannot be empty");
    }
    list += text;
    list += u'\0';
  }
  return list;
}

}  // namespace

std::string typeName(RegistryType type) {
  const auto found = std::ranges::find(kTypes, type, &TypeName::type);
  if (found != kTypes.end()) return std::string(found->name);
  return "type " + std::to_string(static_cast<std::uint32_t>(type));
}

std::string typeNames() {
  std::string names;
  for (const TypeName& each : kTypes) {
    names.append(names.empty() ? "" : "|").append(each.name);
  }
  return names;
}

RegistryValue parseValue(std::string_view type, const std::vector<std::string>& data) {
  const auto found = std::ranges::find(kTypes, type, &TypeName::name);
  if (found == kTypes.end()) {
    throw UsageError("no type '" + std::string(type) + "'; there are " + typeNames());
  }
  RegistryValue value{.type = found->type};
  if (value.type == RegistryType::texts) {
    value.text = joinTexts(data);
    return value;
  }
  if (data.size() > 1) throw UsageError("one DATA expected for type " + std::string(type));
  const std::string text = data.empty() ? std::string() : data.front();
  if (value.type == RegistryType::text || value.type == RegistryType::expandableText) {
    value.text = fromUtf8(text);
  } else if (const std::size_t width = numberWidth(value.type); width != 0) {
    const auto number = readUnsigned<std::uint64_t>(text);
    if (!number || (width == 4 && *number > 0xFFFFFFFFU)) {
      throw UsageError("not a number that fits " + std::string(type) + ": '" + text + "'");
    }
    value.bytes = bytesOf(*number, value.type);
  } else {
    value.bytes = readHex(text);
  }
  return value;
}

Json dataJson(const RegistryValue& value) {
  switch (value.type) {
    case RegistryType::text:
    case RegistryType::expandableText:
      return toUtf8(value.text);
    case RegistryType::texts:
      return splitTexts(value.text);
    default:
      if (const auto number = numberOf(value)) return *number;
      return hexText(value.bytes);
  }
}

std::string dataText(const RegistryValue& value) {
  if (value.type != RegistryType::texts) return toReadable(dataJson(value));
  std::string lines;
  for (const std::string& text : splitTexts(value.text)) {
    lines += (lines.empty() ? "" : "\n") + text;
  }
  return lines;
}

}  // namespace veltgeneral::tool

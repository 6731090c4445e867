// Numbers as plain text, the same in every locale.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

namespace veltgeneral::tool {

// The shortest text that reads back as the same number.
template <class Number>
std::string shortestText(Number value) {
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, value).ptr;
  return {text, end};
}

// Nothing for a text that is not wholly a number, or one that does not fit.
template <class Number>
std::optional<Number> readNumber(std::string_view text) {
  Number value{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

}  // namespace veltgeneral::tool

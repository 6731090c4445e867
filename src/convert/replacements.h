// Rewriting a text character by character: each one that a table names becomes a short text, all
// others stay, and blanks at the end go.
//
// Most texts hold little that is replaced. So each block of characters is first looked at as a
// whole, by a test that may name too many and that the compiler turns into vector instructions; a
// block without suspects is copied as it is.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>

#include "automation/coerce.h"
#include "automation/text_limit.h"
#include "veltgeneral/runtime_error.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// Row 0 stands for the character itself.
class ReplacementTexts {
 public:
  static constexpr std::size_t kLongest = 5;
  static constexpr std::size_t kRoom = 8;  // always written, so that no length is a branch

  constexpr ReplacementTexts(std::initializer_list<TextView> texts) {
    std::size_t row = 1;
    for (const TextView text : texts) {
      std::ranges::copy(text, units_[row].begin());
      sizes_[row++] = static_cast<std::uint8_t>(text.size());
    }
  }

  // Returns the place behind what was written; kRoom units are overwritten.
  char16_t* put(char16_t* out, std::size_t row, char16_t self) const noexcept {
    std::memcpy(out, units_[row].data(), sizeof units_[row]);
    if (row == 0) *out = self;
    return out + sizes_[row];
  }

 private:
  static constexpr std::size_t kRows = 12;
  std::array<std::array<char16_t, kRoom>, kRows> units_{};
  std::array<std::uint8_t, kRows> sizes_{1};
};

inline constexpr std::size_t kReplaceBlock = 64;

template <class Rule>
bool hasSuspect(const Rule& rule, const char16_t* text, std::size_t count) noexcept {
  char16_t found = 0;
  for (std::size_t i = 0; i < count; ++i) {
    found = static_cast<char16_t>(found | static_cast<char16_t>(rule.suspect(text[i])));
  }
  return found != 0;
}

// A known count saves the compiler the loop around its vectors.
template <class Rule>
bool hasSuspect(const Rule& rule, TextView block) noexcept {
  if (block.size() == kReplaceBlock) return hasSuspect(rule, block.data(), kReplaceBlock);
  return hasSuspect(rule, block.data(), block.size());
}

// The first character that is replaced, in whole blocks before it none; `text.size()` where there
// is none.
template <class Rule>
std::size_t firstReplaced(const Rule& rule, TextView text) noexcept {
  for (std::size_t at = 0; at < text.size(); at += kReplaceBlock) {
    const TextView block = text.substr(at, kReplaceBlock);
    if (!hasSuspect(rule, block)) continue;
    const auto found = std::ranges::find_if(block, [&](char16_t c) { return rule.row(c) != 0; });
    if (found != block.end()) return at + static_cast<std::size_t>(found - block.begin());
  }
  return text.size();
}

template <class Rule>
void appendReplaced(const Rule& rule, TextView text, Text& out) {
  std::array<char16_t, kReplaceBlock * ReplacementTexts::kLongest + ReplacementTexts::kRoom> room;
  for (std::size_t at = 0; at < text.size(); at += kReplaceBlock) {
    const TextView block = text.substr(at, kReplaceBlock);
    if (!hasSuspect(rule, block)) {
      out.append(block);
      continue;
    }
    char16_t* end = room.data();
    for (const char16_t c : block) end = rule.texts().put(end, rule.row(c), c);
    out.append(room.data(), end);
  }
}

// Stores `text` as `rule` rewrites it in `out`, a single blank where nothing is left. `text` may be
// a part of `out`. Throws RuntimeError 6 for a text longer than 16 bits count; `out` then stays.
template <class Rule>
void rewrite(const Rule& rule, TextView text, Text& out) {
  if (text.size() > kGreatestCounted) throw RuntimeError(RunTime::overflow);
  const std::size_t clean = firstReplaced(rule, text);
  if (clean == text.size()) {
    out.assign(trimRight(text));
  } else {
    Text built;
    built.reserve(text.size() + text.size() / 4);
    built.append(text.substr(0, clean));
    appendReplaced(rule, text.substr(clean), built);
    built.resize(trimRight(built).size());
    out = std::move(built);
  }
  if (out.empty()) out.push_back(u' ');
}

}  // namespace veltgeneral

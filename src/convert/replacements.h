// Rewriting a text character by character: each one that a rule names becomes a short text, all
// others stay, and blanks at the end go.
//
// A rule has `suspects()`, a set that holds at least all characters that are replaced, as the scan
// of platform/unit_scan.h counts them, and `row(c)`, the row of `texts()` for a character, 0 for
// one that stays. A rule that only puts blanks has kBlanks, and is `exact()` where all suspects go.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>
#include <span>

#include "automation/coerce.h"
#include "automation/text_limit.h"
#include "platform/unit_scan.h"
#include "veltgeneral/runtime_error.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// Row 0 is no text: it stands for the character itself.
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

// Copies the units from `from` to `to`, eight at a time as long as the text, which ends at `end`,
// has them. Returns the place behind the last; up to seven units more are overwritten.
inline char16_t* copyRun(char16_t* out, const char16_t* from, const char16_t* to,
                         const char16_t* end) noexcept {
  constexpr std::ptrdiff_t kStep = 8;
  for (; from < to && end - from >= kStep; from += kStep, out += kStep) {
    std::memcpy(out, from, kStep * sizeof *from);
  }
  if (from < to) return std::copy(from, to, out);
  return out - (from - to);
}

// Rewrites pieces of at most platform::kScanUnits units.
template <class Rule>
class PieceRewriter {
 public:
  explicit PieceRewriter(const Rule& rule) noexcept : rule_(rule) {}

  // False where the piece stays as it is; else `result` is the rewritten one.
  bool rewrite(TextView piece) noexcept {
    const std::size_t count = platform::findUnits(piece, rule_.suspects(), positions_);
    if (count == 0) return false;
    const char16_t* const end = piece.data() + piece.size();
    const char16_t* from = piece.data();
    char16_t* out = room_.data();
    for (std::size_t i = 0; i < count; ++i) {
      const char16_t* const at = piece.data() + positions_[i];
      out = copyRun(out, from, at, end);
      out = rule_.texts().put(out, rule_.row(*at), *at);
      from = at + 1;
    }
    size_ = static_cast<std::size_t>(copyRun(out, from, end, end) - room_.data());
    return true;
  }

  TextView result() const noexcept { return {room_.data(), size_}; }

 private:
  const Rule& rule_;
  platform::UnitPositions positions_;
  std::array<char16_t, platform::kScanUnits * ReplacementTexts::kLongest + ReplacementTexts::kRoom>
      room_;
  std::size_t size_ = 0;
};

template <class Rule>
void rewriteAll(const Rule& rule, TextView text, Text& out) {
  PieceRewriter<Rule> pieces(rule);
  Text built;
  bool changed = false;
  for (std::size_t at = 0; at < text.size(); at += platform::kScanUnits) {
    const TextView piece = text.substr(at, platform::kScanUnits);
    const bool rewritten = pieces.rewrite(piece);
    if (rewritten && !changed) {
      built.reserve(text.size() + text.size() / 4);
      built.append(text.substr(0, at));
      changed = true;
    }
    if (changed) built.append(rewritten ? pieces.result() : piece);
  }
  if (changed) {
    out = std::move(built);
  } else {
    out.assign(text);
  }
}

// Puts the blanks of a rule that has only those.
template <class Rule>
void blankIn(const Rule& rule, std::span<char16_t> text) noexcept {
  platform::UnitPositions positions;
  for (std::size_t at = 0; at < text.size(); at += platform::kScanUnits) {
    const auto piece = text.subspan(at, std::min(platform::kScanUnits, text.size() - at));
    const std::size_t count =
        platform::findUnits(TextView(piece.data(), piece.size()), rule.suspects(), positions);
    for (std::size_t i = 0; i < count; ++i) {
      char16_t& c = piece[positions[i]];
      if (rule.exact() || rule.row(c) != 0) c = u' ';
    }
  }
}

// Stores `text` as `rule` rewrites it in `out`, a single blank where nothing is left. `text` may be
// a part of `out`. Throws RuntimeError 6 for a text longer than 16 bits count; `out` then stays.
template <class Rule>
void rewrite(const Rule& rule, TextView text, Text& out) {
  if (text.size() > kGreatestCounted) throw RuntimeError(RunTime::overflow);
  if constexpr (Rule::kBlanks) {
    out.assign(text);
    blankIn(rule, std::span(out));
  } else {
    rewriteAll(rule, text, out);
  }
  out.resize(trimRight(out).size());
  if (out.empty()) out.push_back(u' ');
}

}  // namespace veltgeneral

// The words and marks of a date text, before anyone asks what they mean together.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "automation/locale.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

enum class TokenKind : std::uint8_t { number, month, am, pm };

// What stands after a token, before the next.
enum class Gap : std::uint8_t { none, blank, dateMark, timeMark, comma };

struct DateToken {
  TokenKind kind;
  Gap gap;
  char16_t mark;        // the character of a time mark
  std::uint8_t digits;  // of a number: 1 to 4
  std::int32_t value;   // of a number, or of a month: 1 to 12
};

class DateTokens {
 public:
  // False where the text holds anything else, more than the longest date with its time, or a mark
  // without a token behind it.
  bool scan(TextView text, const Locale& locale);

  std::span<const DateToken> all() const noexcept { return {tokens_.data(), count_}; }

 private:
  // Three of the date, three of the time, AM or PM.
  static constexpr std::size_t kMost = 7;

  // Filled up to count_ only: most texts end at their first characters.
  std::array<DateToken, kMost> tokens_;
  std::size_t count_ = 0;
};

}  // namespace veltgeneral

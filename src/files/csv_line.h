// The dialect of one semicolon-delimited line.
//
// Fields are separated by ";" outside quotes: where the number of double quotes before it in the
// line is even. A field that begins and ends with a quote loses both; then every doubled quote
// becomes one. Blanks are kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "veltgeneral/text.h"

namespace veltgeneral {

inline constexpr char kSeparator = ';';
inline constexpr char kQuote = '"';
inline constexpr TextView kTooManyFields = u"Array di input sottodimensionato";

// Cuts a line at its separators and calls `each(begin, end, quoted)` for every field; `quoted` says
// that it holds a quote. `marks` are the positions of the line's separators and quotes, ascending;
// `isQuote(position)` tells them apart. Stops before the first field beyond `most` and returns
// false.
template <class IsQuote, class Each>
bool splitLine(std::size_t begin, std::size_t end, std::span<const std::uint32_t> marks,
               std::size_t most, IsQuote&& isQuote, Each&& each) {
  std::size_t fields = 0;
  std::size_t fieldBegin = begin;
  bool open = false;
  bool quoted = false;
  for (const std::uint32_t mark : marks) {
    if (isQuote(mark)) {
      open = !open;
      quoted = true;
      continue;
    }
    if (open) continue;
    if (++fields > most) return false;
    each(fieldBegin, mark, quoted);
    fieldBegin = mark + std::size_t{1};
    quoted = false;
  }
  if (++fields > most) return false;
  each(fieldBegin, end, quoted);
  return true;
}

// Takes the quotes off a field in place; the answer is a piece of `field`. Throws RuntimeError 5
// for a field that is a single quote.
std::span<char16_t> unquote(std::span<char16_t> field);

}  // namespace veltgeneral

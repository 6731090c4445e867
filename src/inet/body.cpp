// Reads a body in the published steps; each byte is widened once, into memory asked for once.
#include "inet/body.h"

#include <algorithm>
#include <array>
#include <new>

#include "automation/code_page.h"
#include "platform/memory.h"

namespace veltgeneral {
namespace {

constexpr std::size_t kStep = 4096;
// From here on huge pages pay, and growing by less costs more than it saves.
constexpr std::size_t kBigText = std::size_t{1} << 21;

void reallocate(Text& text, std::size_t capacity) {
  Text bigger;
  bigger.reserve(capacity);
  platform::preferHugePages(bigger.data(), bigger.capacity() * sizeof(char16_t));
  bigger.append(text);
  text.swap(bigger);
}

// Room for `more` characters, and at once for all the `announced` ones behind them if there is as
// much memory. Else small texts grow fast towards the size that gets huge pages. False where memory
// is short.
bool makeRoom(Text& text, std::size_t more, std::size_t announced) {
  const std::size_t needed = text.size() + more;
  if (needed <= text.capacity()) return true;
  const std::size_t grown = text.size() * (text.size() < kBigText ? 4 : 2);
  const std::size_t all = needed + std::min(announced, kGreatestText - needed);
  for (const std::size_t capacity : {std::max(all, grown), std::max(needed, grown), needed}) {
    try {
      reallocate(text, std::min(capacity, kGreatestText));
      return true;
    } catch (const std::bad_alloc&) {
      continue;  // with less
    }
  }
  return false;
}

}  // namespace

void readBody(platform::Internet& internet, std::int32_t urlHandle, Text& out, std::size_t limit) {
  const CodePage& page = systemCodePage();
  std::array<std::uint8_t, kStep> bytes;
  std::array<char16_t, kStep> characters;
  out.clear();
  while (out.size() < limit) {
    const std::size_t wanted = std::min(kStep, limit - out.size());
    const platform::InternetRead read = internet.read(urlHandle, std::span(bytes).first(wanted));
    if (!read.succeeded || read.count == 0) break;
    if (!makeRoom(out, read.count, read.announced)) break;  // as promised: what was read stays
    page.widen(std::span(bytes).first(read.count), characters.data());
    out.append(characters.data(), read.count);
  }
  // A server may have announced more than it had.
  if (out.capacity() > kBigText && out.capacity() / 4 > out.size()) out.shrink_to_fit();
}

}  // namespace veltgeneral

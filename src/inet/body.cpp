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

// Room for `needed` characters. Small texts grow fast towards the size that gets huge pages.
void makeRoom(Text& text, std::size_t needed) {
  if (needed <= text.capacity()) return;
  Text bigger;
  if (!text.empty()) {
    needed =
        std::max(needed, std::min(text.size() * (text.size() < kBigText ? 4 : 2), kGreatestText));
  }
  bigger.reserve(needed);
  platform::preferHugePages(bigger.data(), bigger.capacity() * sizeof(char16_t));
  bigger.append(text);
  text.swap(bigger);
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
    if (!read.succeeded || read.count == 0) return;
    try {
      makeRoom(out, out.size() + read.count);
    } catch (const std::bad_alloc&) {
      return;  // as promised: what was read stays
    }
    page.widen(std::span(bytes).first(read.count), characters.data());
    out.append(characters.data(), read.count);
  }
}

}  // namespace veltgeneral

#include "platform/memory.h"

#include <sys/mman.h>

#include <cstdint>

namespace veltgeneral::platform {

void preferHugePages(void* begin, std::size_t bytes) noexcept {
  constexpr std::uintptr_t kHuge = 2u << 20;
  if (bytes < 2 * kHuge) return;
  const auto address = reinterpret_cast<std::uintptr_t>(begin);
  const auto from = (address + kHuge - 1) & ~(kHuge - 1);
  const auto to = (address + bytes) & ~(kHuge - 1);
  // Advice only: where it is refused the pages are small and all else is the same.
  if (from < to) madvise(static_cast<char*>(begin) + (from - address), to - from, MADV_HUGEPAGE);
}

}  // namespace veltgeneral::platform

#include "platform/memory.h"

#include <sys/mman.h>

#include <cstdint>

namespace veltgeneral::platform {

void preferHugePages(void* begin, std::size_t bytes) noexcept {
  constexpr std::uintptr_t kHuge = 2u << 20;
  if (bytes < 2 * kHuge) return;
  const auto from = (reinterpret_cast<std::uintptr_t>(begin) + kHuge - 1) & ~(kHuge - 1);
  const auto to = (reinterpret_cast<std::uintptr_t>(begin) + bytes) & ~(kHuge - 1);
  // Advice only: where it is refused the pages are small and all else is the same.
  if (from < to) madvise(reinterpret_cast<void*>(from), to - from, MADV_HUGEPAGE);
}

}  // namespace veltgeneral::platform

#include "veltgeneral/bytes.h"

#include <cstdlib>

#include "platform/memory.h"

namespace veltgeneral {

void* allocateForReading(std::size_t bytes) {
  void* memory = std::malloc(bytes);
  if (memory == nullptr) throw std::bad_alloc();
  platform::preferHugePages(memory, bytes);
  return memory;
}

void freeAfterReading(void* memory) noexcept { std::free(memory); }

}  // namespace veltgeneral

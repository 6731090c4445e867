// Bytes: what a file holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <vector>

#include "veltgeneral/export.h"

namespace veltgeneral {

// Memory for contents that are about to be read: not cleared first, and on huge pages where it is
// large. Throws std::bad_alloc.
VELTGENERAL_API void* allocateForReading(std::size_t bytes);
VELTGENERAL_API void freeAfterReading(void* memory) noexcept;

// Gives a vector such memory; elements without a value start unset instead of zero.
template <class T>
class ReadingAllocator {
 public:
  using value_type = T;
  ReadingAllocator() = default;
  template <class U>
  ReadingAllocator(const ReadingAllocator<U>& /*other*/) noexcept {
  }  // NOLINT: converts as required

  T* allocate(std::size_t count) {
    if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_alloc();
    return static_cast<T*>(allocateForReading(count * sizeof(T)));
  }
  void deallocate(T* memory, std::size_t /*count*/) noexcept { freeAfterReading(memory); }

  template <class U>
  void construct(U* place) noexcept {
    ::new (static_cast<void*>(place)) U;
  }
  template <class U, class... Arguments>
  void construct(U* place, Arguments&&... arguments) {
    ::new (static_cast<void*>(place)) U(static_cast<Arguments&&>(arguments)...);
  }

  friend bool operator==(const ReadingAllocator&, const ReadingAllocator&) = default;
};

using Bytes = std::vector<std::uint8_t, ReadingAllocator<std::uint8_t>>;

}  // namespace veltgeneral

// Keys of texts: a fixed slice, folded to upper case or not, packed so that most comparisons are
// of two numbers.
#pragma once

#include <cstdint>
#include <vector>

#include "automation/text_array_cells.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

struct KeySlice {
  std::size_t first;  // 0 is the first character
  std::size_t length;
  bool fold;
};

// A key as the sort holds it: its leading units, big end first, four of 16 bits a number; or, when
// no unit of any key is above 255, eight. `id` finds the rest.
struct PackedKey {
  std::uint64_t head;
  std::uint64_t next;
  std::uint32_t id;
};

class SortKeys {
 public:
  // The keys of `cells`, in their order. Each text is folded once.
  SortKeys(const TextArrayCells& array, std::span<const TextArrayCells::Cell> cells,
           KeySlice slice);

  std::vector<PackedKey>& packed() noexcept { return packed_; }

  // Below 0, 0 or above 0, by code units; a key that begins another one is less than that.
  int compare(const PackedKey& one, const PackedKey& other) const noexcept {
    if (one.head != other.head) return one.head < other.head ? -1 : 1;
    if (one.next != other.next) return one.next < other.next ? -1 : 1;
    return compareWhole(one.id, other.id);
  }

 private:
  TextView key(std::uint32_t id) const noexcept {
    return TextView(units_.data() + begins_[id], begins_[id + 1] - begins_[id]);
  }
  int compareWhole(std::uint32_t one, std::uint32_t other) const noexcept;
  void pack();

  std::vector<char16_t> units_;      // all keys, one behind the other
  std::vector<std::size_t> begins_;  // of each key, and the end of the last
  std::vector<PackedKey> packed_;
};

}  // namespace veltgeneral

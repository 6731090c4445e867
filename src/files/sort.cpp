// Funzioni's sort: a quicksort with a random pivot, whose draws, exchanges and calls for host
// events are published behaviour.
//
// A partition pass begins at both ends of its range again after each exchange. What it walks over
// first is known then: everything up to the place of the exchange lies on its side of the pivot. So
// the scans go on from there, and stop where the pass would have stopped. Nor is anything compared
// that the pivots of earlier partitions tell: a pivot equal to the greatest key of its range has
// nothing above it, one equal to the least nothing below. That keeps keys that are often equal, or
// always, from costing more than others.
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "automation/random.h"
#include "core/host_events.h"
#include "core/trap.h"
#include "files/sort_keys.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

// A drawn index from `low` to `high`, halves to even.
std::int64_t drawIndex(std::int64_t low, std::int64_t high) {
  const double place = nextRandom() * static_cast<double>(high - low) + static_cast<double>(low);
  return std::llrint(place);
}

class Sorter {
 public:
  // Positions in `cells` are indices of the array less `low`.
  Sorter(TextArrayCells array, std::span<TextArrayCells::Cell> cells, std::int64_t low,
         KeySlice slice)
      : cells_(cells), low_(low), keys_(array, cells, slice), packed_(keys_.packed()) {}

  void sort() { sortRange({0, static_cast<std::int64_t>(cells_.size()) - 1, {}, {}}); }

 private:
  // `least` and `greatest` are keys that no key of the range is below or above, where known.
  struct Range {
    std::int64_t low;
    std::int64_t high;
    std::optional<PackedKey> least;
    std::optional<PackedKey> greatest;
  };

  // The smaller side first and by recursion, so the depth is that of a logarithm; the greater side
  // in the loop.
  void sortRange(Range range) {
    while (range.low < range.high) {
      if (range.high - range.low == 1) {
        if (keys_.compare(at(range.low), at(range.high)) > 0) exchange(range.low, range.high);
        return;
      }
      exchange(drawIndex(low_ + range.low, low_ + range.high) - low_, range.high);
      const PackedKey pivot = at(range.high);
      const std::int64_t middle = partition(range, pivot);
      exchange(middle, range.high);
      Range left{range.low, middle - 1, range.least, pivot};
      Range right{middle + 1, range.high, pivot, range.greatest};
      if (middle - range.low >= range.high - middle) std::swap(left, right);
      sortRange(left);
      range = right;
    }
  }

  std::int64_t partition(const Range& range, const PackedKey& pivot) {
    const bool noneAbove = range.greatest && keys_.compare(*range.greatest, pivot) == 0;
    const bool noneBelow = range.least && keys_.compare(*range.least, pivot) == 0;
    std::int64_t i = range.low;
    std::int64_t j = range.high;
    while (true) {
      processHostEvents();
      if (noneAbove) return range.high;
      // Nothing stops the first scan but a key above the pivot, and the last one of an earlier pass
      // is at j; in the first pass j is the end.
      while (i < j && keys_.compare(at(i), pivot) <= 0) ++i;
      if (noneBelow) return i;
      while (j > i && keys_.compare(at(j), pivot) >= 0) --j;
      if (i == j) return i;
      exchange(i, j);
    }
  }

  const PackedKey& at(std::int64_t position) const noexcept {
    return packed_[static_cast<std::size_t>(position)];
  }

  void exchange(std::int64_t one, std::int64_t other) noexcept {
    const auto a = static_cast<std::size_t>(one);
    const auto b = static_cast<std::size_t>(other);
    std::swap(packed_[a], packed_[b]);
    std::swap(cells_[a], cells_[b]);
  }

  std::span<TextArrayCells::Cell> cells_;
  std::int64_t low_;
  SortKeys keys_;
  std::vector<PackedKey>& packed_;
};

[[noreturn]] void fail(RunTime error) { throw RuntimeError(error); }

// The sort of a range that it cannot finish, as far as it gets: the first index outside the bounds,
// or the first key, is the error. What is exchanged before that stays.
void sortUntilError(TextArray& array, std::int32_t low, std::int32_t high, bool validSlice) {
  const auto require = [&](std::int64_t index) {
    (void)array.at(static_cast<std::int32_t>(index));
  };
  if (std::int64_t{high} - low > 1) {
    const std::int64_t drawn = drawIndex(low, high);
    require(drawn);
    require(high);
    array.swap(static_cast<std::int32_t>(drawn), high);
    processHostEvents();
  }
  require(low);
  if (!validSlice) fail(RunTime::invalidCall);
  require(high);
}

}  // namespace

ErrInfo Funzioni::quickSortArray(TextArray& SortArray, std::int32_t Low, std::int32_t High,
                                 std::int16_t iByteStart, std::int16_t iByteLen,
                                 bool bIgnoreUcase) {
  return trapped(u"quickSortArray", u"Funzioni", [&] {
    if (Low >= High) return ErrInfo();
    const bool validSlice = iByteStart >= 1 && iByteLen >= 0;
    const bool inside = SortArray.dimensions() == 1 && SortArray.bounds().lower <= Low &&
                        High <= SortArray.bounds().upper;
    if (!inside || !validSlice) {
      sortUntilError(SortArray, Low, High, validSlice);
      fail(RunTime::internalError);
    }
    const TextArrayCells array(SortArray);
    const auto cells = array.all().subspan(array.position(Low),
                                           static_cast<std::size_t>(std::int64_t{High} - Low + 1));
    Sorter(array, cells, Low,
           {.first = static_cast<std::size_t>(iByteStart) - 1,
            .length = static_cast<std::size_t>(iByteLen),
            .fold = !bIgnoreUcase})
        .sort();
    return ErrInfo();
  });
}

}  // namespace veltgeneral

#include "files/csv_line.h"

#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

std::span<char16_t> unquote(std::span<char16_t> field) {
  if (field.front() == kQuote && field.back() == kQuote) {
    // One quote is both the first and the last, and there are not two characters to drop.
    if (field.size() == 1) throw RuntimeError(RunTime::invalidCall);
    field = field.subspan(1, field.size() - 2);
  }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < field.size(); ++i) {
    field[kept++] = field[i];
    if (field[i] == kQuote && i + 1 < field.size() && field[i + 1] == kQuote) ++i;
  }
  return field.first(kept);
}

}  // namespace veltgeneral

// What getCsvStringFromArray writes, getValueFromCsvString reads back, cell by cell. The input's
// bytes are the cells, ended by zeros.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "automation/code_page.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"

using namespace veltgeneral;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 4096) return 0;
  std::vector<Text> cells;
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  while (!rest.empty() && cells.size() < 64) {
    cells.push_back(fromBytes(rest.substr(0, rest.find('\0'))));
    rest.remove_prefix(std::min(rest.size(), cells.back().size() + 1));
  }
  if (cells.empty()) return 0;
  const auto count = static_cast<std::int32_t>(cells.size());
  TextArray table({1, count}, {1, 1});
  bool blank = true;
  for (std::int32_t f = 1; f <= count; ++f) {
    const Text& cell = cells[static_cast<std::size_t>(f - 1)];
    table.set(f, 1, cell);
    blank = blank && cell.find_first_not_of(u' ') == Text::npos;
  }
  Text text;
  require(FileUtility().getCsvStringFromArray(text, table, 1, count, u"").isSuccess());
  require(blank == text.empty());
  if (blank) return 0;
  require(text.ends_with(u"\r\n"));
  text.resize(text.size() - 2);
  TextArray fields({1, count});
  std::int32_t found = 0;
  require(Funzioni().getValueFromCsvString(text, fields, found).isSuccess());
  require(found == count);
  for (std::int32_t f = 1; f <= count; ++f) {
    require(fields.at(f) == cells[static_cast<std::size_t>(f - 1)]);
  }
  return 0;
}

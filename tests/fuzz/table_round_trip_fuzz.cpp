// What getCsvStringFromArray writes, getValueFromCsvString reads back, cell by cell. The input's
// bytes are the cells, ended by zeros.
#include <algorithm>
#include <vector>

#include "automation/code_page.h"
#include "fuzz/fuzz_input.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"

void veltgeneral::fuzz(std::string_view rest) {
  if (rest.size() > 4096) return;
  std::vector<Text> cells;
  while (!rest.empty() && cells.size() < 64) {
    cells.push_back(fromBytes(rest.substr(0, rest.find('\0'))));
    rest.remove_prefix(std::min(rest.size(), cells.back().size() + 1));
  }
  if (cells.empty()) return;
  const auto count = static_cast<std::int32_t>(cells.size());
  TextArray table({1, count}, {1, 1});
  bool blank = true;
  for (std::int32_t f = 1; f <= count; ++f) {
    const Text& cell = cells[static_cast<std::size_t>(f - 1)];
    table.set(f, 1, cell);
    blank = blank && cell.find_first_not_of(u' ') == Text::npos;
  }
  Text text;
  const bool written = FileUtility().getCsvStringFromArray(text, table, 1, count, u"").isSuccess();
  require(written && blank == text.empty(), "all but blank rows are written", text);
  if (blank) return;
  require(text.ends_with(u"\r\n"), "a whole line", text);
  text.resize(text.size() - 2);
  TextArray fields({1, count});
  std::int32_t found = 0;
  require(Funzioni().getValueFromCsvString(text, fields, found).isSuccess(), "reads", text);
  require(found == count && fields == TextArray::of(cells), "comes back", text);
}

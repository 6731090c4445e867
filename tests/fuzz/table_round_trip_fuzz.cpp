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
  Text all;
  std::int32_t last = 0;
  for (const Text& cell : cells) {
    table.set(++last, 1, cell);
    all += cell;
  }
  const bool blank = all.find_first_not_of(u' ') == Text::npos;
  Text text;
  const bool written = FileUtility().getCsvStringFromArray(text, table, 1, count, u"").isSuccess();
  require(written && blank == text.empty(), "all but blank rows are written");
  if (blank) return;
  require(text.ends_with(u"\r\n"), "a whole line");
  text.resize(text.size() - 2);
  TextArray fields({1, count});
  std::int32_t found = 0;
  require(Funzioni().getValueFromCsvString(text, fields, found).isSuccess(), "reads");
  require(found == count && fields == TextArray::of(cells), "comes back");
}

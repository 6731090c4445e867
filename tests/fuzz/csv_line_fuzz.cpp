// One delimited line: whatever the bytes, the fields hold no more than the line, and the line put
// together again from quoted fields gives the same fields.
#include "automation/code_page.h"
#include "fuzz/fuzz_input.h"
#include "veltgeneral/funzioni.h"

void veltgeneral::fuzz(std::string_view bytes) {
  if (bytes.size() > 4096) return;
  const Text line = fromBytes(bytes);
  constexpr std::int32_t kMost = 64;
  TextArray fields({1, kMost});
  std::int32_t found = 0;
  if (!Funzioni().getValueFromCsvString(line, fields, found).isSuccess()) return;
  require(found >= 1 && found <= kMost, "a count in range");
  Text again;
  std::size_t characters = 0;
  for (std::int32_t f = 1; f <= found; ++f) {
    characters += fields.at(f).size();
    again += f > 1 ? u";\"" : u"\"";
    for (const char16_t c : fields.at(f)) again.append(c == u'"' ? 2 : 1, c);
    again += u'"';
  }
  require(characters <= line.size(), "no more than the line");
  TextArray same({1, kMost});
  std::int32_t foundAgain = 0;
  require(Funzioni().getValueFromCsvString(again, same, foundAgain).isSuccess(), "reads");
  require(foundAgain == found && same == fields, "the same fields");
}

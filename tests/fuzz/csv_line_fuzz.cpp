// One delimited line: whatever the bytes, the fields hold no more than the line, and the line put
// together again from quoted fields gives the same fields.
#include "automation/code_page.h"
#include "fuzz/fuzz_input.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

Text quoted(TextView field) {
  Text out(1, u'"');
  for (const char16_t c : field) out.append(c == u'"' ? 2 : 1, c);
  return out + u'"';
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) {
  if (bytes.size() > 4096) return;
  const Text line = fromBytes(bytes);
  constexpr std::int32_t kMost = 64;
  TextArray fields({1, kMost});
  std::int32_t found = 0;
  const ErrInfo result = Funzioni().getValueFromCsvString(line, fields, found);
  if (!result.isSuccess()) return;
  require(found >= 1 && found <= kMost, "a count in range", line);
  Text again;
  std::size_t characters = 0;
  for (std::int32_t f = 1; f <= found; ++f) {
    characters += fields.at(f).size();
    if (f > 1) again += u';';
    again += quoted(fields.at(f));
  }
  require(characters <= line.size(), "no more than the line", line);
  TextArray same({1, kMost});
  std::int32_t foundAgain = 0;
  require(Funzioni().getValueFromCsvString(again, same, foundAgain).isSuccess(), "reads", line);
  require(foundAgain == found && same == fields, "the same fields", line);
}

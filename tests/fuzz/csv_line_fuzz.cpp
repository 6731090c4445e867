// One delimited line: whatever the bytes, the fields hold no more than the line, and the line put
// together again from quoted fields gives the same fields.
#include <cstdint>
#include <cstdlib>

#include "automation/code_page.h"
#include "veltgeneral/funzioni.h"

using namespace veltgeneral;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

Text quoted(TextView field) {
  Text out(1, u'"');
  for (const char16_t c : field) out.append(c == u'"' ? 2 : 1, c);
  return out + u'"';
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 4096) return 0;
  const Text line = fromBytes({reinterpret_cast<const char*>(data), size});
  constexpr std::int32_t kMost = 64;
  TextArray fields({1, kMost});
  std::int32_t found = 0;
  const ErrInfo result = Funzioni().getValueFromCsvString(line, fields, found);
  if (!result.isSuccess()) return 0;
  require(found >= 1 && found <= kMost);
  Text again;
  std::size_t characters = 0;
  for (std::int32_t f = 1; f <= found; ++f) {
    characters += fields.at(f).size();
    if (f > 1) again += u';';
    again += quoted(fields.at(f));
  }
  require(characters <= line.size());
  TextArray same({1, kMost});
  std::int32_t foundAgain = 0;
  require(Funzioni().getValueFromCsvString(again, same, foundAgain).isSuccess());
  require(foundAgain == found);
  for (std::int32_t f = 1; f <= found; ++f) require(same.at(f) == fields.at(f));
  return 0;
}

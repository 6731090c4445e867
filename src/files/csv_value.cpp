// Funzioni's member that cuts one delimited line into fields.
#include <limits>
#include <vector>

#include "automation/text_limit.h"
#include "core/trap.h"
#include "files/csv_line.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {

ErrInfo Funzioni::getValueFromCsvString(TextView sStringValue, TextArray& sArrayValue,
                                        std::int32_t& lNumFieldFound) {
  constexpr TextView kLocation = u"getValueFromCsvString";
  constexpr TextView kClass = u"Funzioni";
  return trapped(kLocation, kClass, [&] {
    const std::int32_t most = sArrayValue.bounds().upper;
    if (most > std::numeric_limits<std::int16_t>::max()) throw RuntimeError(RunTime::overflow);
    if (most < std::numeric_limits<std::int16_t>::min()) throw RuntimeError(RunTime::overflow);
    if (most < 0) throw RuntimeError(RunTime::subscriptOutOfRange);
    lNumFieldFound = 0;
    if (sStringValue.size() > kGreatestCounted) throw RuntimeError(RunTime::overflow);

    std::vector<std::uint32_t> marks;
    for (std::size_t i = 0; i < sStringValue.size(); ++i) {
      const char16_t c = sStringValue[i];
      if (c == kSeparator || c == kQuote) marks.push_back(static_cast<std::uint32_t>(i));
    }
    struct Field {
      std::size_t begin;
      std::size_t end;
      bool quoted;
    };
    std::vector<Field> fields;
    const bool fits = splitLine(
        0, sStringValue.size(), marks, static_cast<std::size_t>(most),
        [&](std::size_t at) { return sStringValue[at] == kQuote; },
        [&](std::size_t begin, std::size_t end, bool quoted) {
          fields.push_back({begin, end, quoted});
        });
    if (!fits) return resultOf(eiABORTED, kTooManyFields, eiERRORTYPE, kLocation, kClass);
    Text line(sStringValue);
    for (std::size_t f = 0; f < fields.size(); ++f) {
      std::span<char16_t> field =
          std::span(line).subspan(fields[f].begin, fields[f].end - fields[f].begin);
      if (fields[f].quoted) field = unquote(field);
      sArrayValue.set(static_cast<std::int32_t>(f + 1), TextView(field.data(), field.size()));
      ++lNumFieldFound;
    }
    return clearedResult();
  });
}

}  // namespace veltgeneral

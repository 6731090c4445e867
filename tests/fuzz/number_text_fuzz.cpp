// The test of a number's text agrees with every reading, and what the library writes it reads back.
#include <cmath>

#include "automation/coerce.h"
#include "fuzz/fuzz_input.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

// Whether `convert` answers; any other error than the two that a text can raise is a fault.
template <class Convert>
bool answers(TextView text, Convert convert) {
  try {
    convert();
    return true;
  } catch (const RuntimeError& error) {
    require(error.number() == 6 || error.number() == 13, "error 6 or 13", text);
    return false;
  }
}

void writesWhatItReads(TextView text, double value) {
  const Text written = toText(value);
  require(isNumeric(written), "a written number is numeric", text);
  const double again = toDouble(written);
  // 15 digits name each double that they round to within this.
  require(std::abs(again - value) <= std::abs(value) * 1e-14, "reads back", text);
  require(toText(again) == written, "writes the same again", text);
}

void check(TextView text) {
  double value = 0;
  const bool reads = answers(text, [&] { value = toDouble(text); });
  require(isNumeric(text) == reads, "the test agrees with the reading", text);
  const Variant variant = Text(text);
  Decimal decimal;
  const bool fits = answers(text, [&] { decimal = toDecimal(variant); });
  answers(text, [&] { toCurrency(variant); });
  answers(text, [&] { toInt32(variant); });
  if (!reads) return;
  require(std::isfinite(value), "a number is finite", text);
  if (std::abs(value) < 1.7976931348623e308) writesWhatItReads(text, value);
  if (fits) {
    require(std::abs(toDouble(Variant(decimal)) - value) <= std::abs(value) * 1e-14 + 1e-28,
            "a decimal and a double are near", text);
    require(toDecimal(Variant(toText(decimal))) == decimal, "a decimal reads back", text);
  } else {
    require(std::abs(value) > 7.9e28, "every smaller number is a decimal", text);
  }
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) { inALocale(bytes, check); }

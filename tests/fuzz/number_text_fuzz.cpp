// The test of a number's text agrees with every reading, and what the library writes it reads back.
#include <cmath>

#include "automation/coerce.h"
#include "fuzz/fuzz_input.h"

namespace veltgeneral {
namespace {

// Whether `convert` answers; any other error than the two that a text can raise is a fault.
template <class Convert>
bool answers(Convert convert) {
  const std::int32_t error = errorOf(convert);
  require(error == 0 || error == 6 || error == 13, "error 6 or 13");
  return error == 0;
}

void check(const Text& text) {
  double value = 0;
  Decimal decimal;
  const bool reads = answers([&] { value = toDouble(text); });
  const bool fits = answers([&] { decimal = toDecimal(Variant(text)); });
  answers([&] { toCurrency(Variant(text)); });
  answers([&] { toInt32(Variant(text)); });
  require(isNumeric(text) == reads, "the test agrees with the reading");
  if (!reads) return;
  require(std::isfinite(value), "a number is finite");
  if (std::abs(value) < 1.7976931348623e308) {
    const Text written = toText(value);
    require(isNumeric(written), "a written number is numeric");
    // 15 digits name each double that they round to within this.
    require(std::abs(toDouble(written) - value) <= std::abs(value) * 1e-14, "reads back");
    require(toText(toDouble(written)) == written, "writes the same again");
  }
  if (!fits) return require(std::abs(value) > 7.9e28, "every smaller number is a decimal");
  const double asDouble = toDouble(Variant(decimal));
  require(std::abs(asDouble - value) <= std::abs(value) * 1e-14 + 1e-28, "near the double");
  require(toDecimal(Variant(toText(decimal))) == decimal, "a decimal reads back");
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) { inALocale(bytes, check); }

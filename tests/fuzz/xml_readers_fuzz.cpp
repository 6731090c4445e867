// What the readers of XML values take is what their writers would have written; anything else is
// no value or a run-time error.
#include <cmath>

#include "automation/coerce.h"
#include "fuzz/fuzz_input.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

void checkDate(const Funzioni& f, const Text& text) {
  const Variant digits = f.getDateFromXml(text);
  if (kindOf(digits) == Kind::empty) return;
  require(f.isDateYYYYMMDDHH24MISS(std::get<Text>(digits)), "14 digits that are a date");
  const Text xml = f.getDate2Xml(std::get<Text>(digits));
  require(f.getDateFromXml(xml) == digits, "the written date reads back");
}

void checkDuration(const Funzioni& f, const Text& text) {
  const std::int32_t error = errorOf([&] {
    const double tenths = f.getDurFromXml(text);
    const double thousandths = f.getWorkFromXml(text);
    require(tenths >= 0 && thousandths >= tenths, "units of one duration");
    require(std::isfinite(thousandths) || text.size() > 300, "a number");
  });
  require(error == 0 || error == 13 || (error == 6 && text.size() > 300), "error 13");
}

void checkNumber(const Funzioni& f, const Text& text) {
  double number = 0;
  const std::int32_t error = errorOf([&] { number = f.getNumberFromXml(text); });
  require(std::isfinite(number), "a number");
  require(isNumeric(text) || (number == 0 && error == 0), "0 for what is none");
  require(error == 0 || error == 13 || error == 6, "error 13 or 6");
}

}  // namespace
}  // namespace veltgeneral

void veltgeneral::fuzz(std::string_view bytes) {
  inALocale(bytes, [](const Text& text) {
    checkDate(Funzioni(), text);
    checkDuration(Funzioni(), text);
    checkNumber(Funzioni(), text);
  });
}

// What the readers of XML values take is what their writers would have written; anything else is
// no value or a run-time error.
#include <cmath>

#include "automation/coerce.h"
#include "fuzz/fuzz_input.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

void checkDate(const Funzioni& f, const Text& text) {
  const Variant digits = f.getDateFromXml(text);
  if (kindOf(digits) == Kind::empty) return;
  require(f.isDateYYYYMMDDHH24MISS(std::get<Text>(digits)), "14 digits that are a date", text);
  const Text xml = f.getDate2Xml(std::get<Text>(digits));
  require(f.getDateFromXml(xml) == digits, "the written date reads back", text);
}

void checkDuration(const Funzioni& f, const Text& text) {
  try {
    const double tenths = f.getDurFromXml(text);
    const double thousandths = f.getWorkFromXml(text);
    require(tenths >= 0 && thousandths >= tenths, "units of one duration", text);
    require(std::isfinite(thousandths) || text.size() > 300, "a number", text);
  } catch (const RuntimeError& error) {
    require(error.number() == 13 || (error.number() == 6 && text.size() > 300), "error 13", text);
  }
}

void checkNumber(const Funzioni& f, const Text& text) {
  try {
    const double number = f.getNumberFromXml(text);
    require(std::isfinite(number), "a number", text);
    require(isNumeric(text) || number == 0, "0 for what is none", text);
  } catch (const RuntimeError& error) {
    require(isNumeric(text), "only numbers fail", text);
    require(error.number() == 13 || error.number() == 6, "error 13 or 6", text);
  }
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

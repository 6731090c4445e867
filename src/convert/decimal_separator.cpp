#include "convert/decimal_separator.h"

#include "automation/locale.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

thread_local char16_t separator = 0;

}  // namespace

void recordDecimalSeparator() { separator = userLocale().decimal; }

char16_t recordedDecimalSeparator() {
  if (separator == 0) recordDecimalSeparator();
  return separator;
}

Funzioni::Funzioni() { recordDecimalSeparator(); }

}  // namespace veltgeneral

#include "platform/upper_case.h"

#include <clocale>
#include <cwctype>

namespace veltgeneral::platform {

void mapToUpper(std::array<char16_t, 65536>& units) {
  // The C library's own UTF-8 locale is always there and knows all of Unicode.
  const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (unicode == nullptr) return;
  for (char16_t& unit : units) {
    const std::wint_t upper = towupper_l(unit, unicode);
    if (upper < 0x10000) unit = static_cast<char16_t>(upper);
  }
  freelocale(unicode);
}

}  // namespace veltgeneral::platform

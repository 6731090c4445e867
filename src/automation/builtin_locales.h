// The locales that need nothing from the host: Italian and US English.
#pragma once

#include "automation/locale.h"

namespace veltgeneral {

// Without the derived members.
Locale italianLocale();
Locale usEnglishLocale();

}  // namespace veltgeneral

// Currency and decimals as plain decimal text, the same in every locale: "-12.5".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "veltgeneral/variant.h"

namespace veltgeneral::tool {

// Without zeros at the end of the decimals.
std::string plainText(Currency value);
std::string plainText(const Decimal& value);

// Nothing for a text that is no such number, or has more digits than the kind holds.
std::optional<Currency> readCurrency(std::string_view text);
std::optional<Decimal> readDecimal(std::string_view text);

}  // namespace veltgeneral::tool

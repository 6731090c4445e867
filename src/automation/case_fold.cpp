#include "automation/case_fold.h"

#include <algorithm>
#include <memory>
#include <numeric>

#include "platform/upper_case.h"

namespace veltgeneral {

const std::array<char16_t, 65536>& upperCaseTable() {
  static const auto table = [] {
    auto built = std::make_unique<std::array<char16_t, 65536>>();
    std::iota(built->begin(), built->end(), char16_t{0});
    platform::mapToUpper(*built);
    for (const char16_t kept : {u'\u0131', u'\u017F'}) (*built)[kept] = kept;
    return built;
  }();
  return *table;
}

}  // namespace veltgeneral

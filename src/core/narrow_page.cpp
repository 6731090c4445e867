#include "core/narrow_page.h"

#include "automation/code_page.h"

namespace veltgeneral {

const platform::NarrowPage& narrowPage() {
  static const platform::NarrowPage kPage = [] {
    platform::NarrowPage page{};
    for (std::size_t byte = 0; byte < page.characters.size(); ++byte)
      page.characters[byte] = systemCodePage().character(static_cast<std::uint8_t>(byte));
    page.byte = [](char16_t character) { return systemCodePage().byte(character); };
    return page;
  }();
  return kPage;
}

Text narrowed(Text text) {
  if (isAscii(text)) return text;
  for (char16_t& c : text)
    if (c >= 0x80) c = narrowPage().characters[narrowPage().byte(c)];
  return text;
}

}  // namespace veltgeneral

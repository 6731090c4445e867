// The bytes of a settings file as text and back, losing nothing.
//
// Inside, the text of such a file is UTF-8 in which a surrogate without its partner takes three
// bytes of its own, so that any run of UTF-16 units survives (the generalised form that
// https://simonsapin.github.io/wtf-8/ describes). Files in the code page stay as they are where
// their reader works on bytes (profile files).
#pragma once

#include <string>
#include <string_view>

#include "platform/narrow_page.h"
#include "veltgeneral/text.h"

namespace veltgeneral::platform {

enum class Encoding { utf8, utf8Mark, utf16Mark, codePage };

inline constexpr std::string_view kUtf16Mark = "\xFF\xFE";
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string toInner(TextView text);
Text fromInner(std::string_view inner);

// Well-formed UTF-8, which excludes surrogates.
bool isUtf8(std::string_view bytes);
bool isAscii(std::string_view bytes) noexcept;

// UTF-16LE without a mark; `units` is cut to whole units.
std::string innerOfUtf16(std::string_view units);
std::string utf16OfInner(std::string_view inner);
std::string innerOfPage(std::string_view bytes, const NarrowPage& page);
// "?" for what the page does not have.
std::string pageOfInner(std::string_view inner, const NarrowPage& page);

// The form that is equal for texts that differ only in case (simple mappings, unit by unit).
char16_t foldUnit(char16_t unit);
// Replaces `out`; `inner` must not view into it.
void foldInner(std::string_view inner, std::string& out);
void foldText(TextView text, std::string& out);

// White space other than line ends.
constexpr bool isBlank(char c) noexcept { return c == ' ' || c == '\t' || c == '\v' || c == '\f'; }
// Without blanks at both ends.
std::string_view trimmed(std::string_view text) noexcept;

}  // namespace veltgeneral::platform

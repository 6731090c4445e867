// Profile strings: keys with values in the sections of an INI file.
//
// Section and key names match without regard to case; the first of equal sections and the first of
// equal keys count. Each file is in the code page, or in UTF-16 where it begins with the mark of
// UTF-16LE. The narrow calls take texts as the code page has them: what it cannot hold is "?".
//
// A null pointer is an absent argument, not an empty text; a text ends at its first NUL.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/narrow_page.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"

namespace veltgeneral::platform {

enum class ProfileCall : std::uint8_t { narrow, wide };

// Reads what a buffer of `size` characters would get, without its final NUL:
//   - the value of `key` in `section`, or `defaultText` where it is missing, cut at size - 1;
//   - without `key` the names of the section's keys, without `section` the names of all sections,
//     a NUL behind each, cut at size - 2; empty where there is none.
// `file` is a host path. Nothing fails: an unreadable file is an empty one. Costs one `stat` as
// long as the file does not change.
VELTGENERAL_API Text readProfile(ProfileCall call, const Text* section, const Text* key,
                                 const Text* defaultText, std::size_t size, const std::string& file,
                                 const NarrowPage& page);

// Sets `key` in `section`, creating file and section as needed. Without `text` the key is deleted,
// without `key` the whole section, whatever `text` says; one that is not there counts as deleted.
// A file that the wide call creates is UTF-16.
//
// False, and the file unchanged, for a missing section, a missing folder, and a file or folder that
// is read-only or out of reach.
VELTGENERAL_API bool writeProfile(ProfileCall call, const Text* section, const Text* key,
                                  const Text* text, const std::string& file,
                                  const NarrowPage& page);

}  // namespace veltgeneral::platform

// Changes to a file that many processes read and write at once: never half there, none lost.
//
// The new content is written beside the file and renamed over it, under a kernel lock on the file
// itself, so that a process killed at any moment leaves the old file or the new one and no lock.
// Owner, group, mode and extended attributes (access lists with them) stay; a symbolic link stays
// one and its target is replaced.
//
// Where this process may write the file and not create in its folder, or could not keep the owner,
// the file is overwritten in place. A file or folder without any write permission bit is refused,
// for processes with all rights too.
//
// Nothing waits for the disk: a kill loses nothing, and after a power failure the usual file
// systems order a file's bytes before the rename that puts it into place.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace veltgeneral::platform {

// Gives the new content for the old one (empty where there is no file yet), or nothing to leave
// everything as it is. May be asked again when another process created the file meanwhile.
using Edit = std::function<std::optional<std::string>(std::string_view before)>;

// `newFileMode` is for a file that was not there, before the process's mask. Returns the host's
// error; the file is then unchanged. An exception from `edit` passes through, likewise.
std::error_code changeFile(const std::string& path, mode_t newFileMode, const Edit& edit);

}  // namespace veltgeneral::platform

// The host's standing folders, as host paths without a slash at the end.
#pragma once

#include <string>

#include "veltgeneral/export.h"

namespace veltgeneral::platform {

// Where the library keeps what outlives a process and is not the user's own document:
// "veltgeneral" in $XDG_STATE_HOME, by default below the home folder (XDG Base Directory 0.8).
std::string stateFolder();

// Where the user's own settings are kept: "veltgeneral" in $XDG_CONFIG_HOME, by default in .config
// in the home folder.
std::string configFolder();

// Makes a folder and those missing above it, open to this user alone. False where it is not there
// afterwards.
bool makePrivateFolder(const std::string& path);

// The library's own folder, where its logs go by default: VELTGENERAL_HOME, else the folder of its
// file, or the state folder (made where it is missing) where that lies below a system prefix.
VELTGENERAL_API std::string libraryHome();

// VELTGENERAL_WINDOWS_DIR and VELTGENERAL_SYSTEM_DIR as they stand; where they are not set,
// "windows" in the state folder and "system" in that, created open to this user alone. Empty where
// there is no such folder and none could be made.
VELTGENERAL_API std::string windowsFolder();
VELTGENERAL_API std::string systemFolder();

// The folder for work files: TMPDIR (or /tmp) where that belongs to this user alone, else a folder
// of this user's in it, created here. Where it cannot be created the path is returned all the same,
// and writing there tells why. Throws RuntimeError 70 where somebody else holds its name.
std::string temporaryFolder();

}  // namespace veltgeneral::platform

// Whole files for the command line; "-" is standard input or output.
#pragma once

#include <string>
#include <string_view>

namespace veltgeneral::tool {

// Every byte. Throws UsageError where the file cannot be read.
std::string readWhole(const std::string& path);

// Replaces the file. Throws std::runtime_error where it cannot be written.
void writeWhole(const std::string& path, std::string_view content);

// Throws std::runtime_error for a file that is there and cannot be read, a folder for one; a
// missing file is none.
void requireReadable(const std::string& path);

}  // namespace veltgeneral::tool

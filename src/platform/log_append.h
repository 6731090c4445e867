// Log files that many processes append to and rotate.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace veltgeneral::platform {

// What becomes of a file that is longer than the limit: it is `path` + ".old" from then on, or
// stays and only a copy of it is.
enum class Rotation : std::uint8_t { moves, copies };

// Rotates a file that is longer than `limit` bytes, then appends `record` in one write; an empty
// record only rotates. The file takes the place of an older ".old", so that the next record begins
// a new one. Where ".old" cannot be replaced the file goes on growing; a file without any write
// permission bit is copied there and stays.
//
// Among any number of processes no record is lost, torn or doubled and a file rotates once: the
// rotation is decided again under a kernel lock on the file, and ".old" is always one whole earlier
// file. A process killed while it writes may leave the start of its record; that stays a line of
// its own. False where the record was not written, of which nothing else tells.
bool appendToLog(const std::string& path, std::int64_t limit, std::string_view record,
                 Rotation rotation = Rotation::moves) noexcept;

// Whether a listing of `path`, folders included, has an entry; its last part may hold "*" and "?".
bool hasListing(const std::string& path) noexcept;

}  // namespace veltgeneral::platform

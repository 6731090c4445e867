// The decimal separator that the objects of a thread share.
#pragma once

namespace veltgeneral {

// That of the user's locale as of now.
void recordDecimalSeparator();

// The one recorded last on this thread; the user's where none was.
char16_t recordedDecimalSeparator();

}  // namespace veltgeneral

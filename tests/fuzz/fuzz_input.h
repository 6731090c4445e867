// What the targets share: input bytes as a text in some locale, and how a broken promise ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>

#include "veltgeneral/text.h"

namespace veltgeneral {

// Ends the process, which is what the fuzzer watches for.
inline void require(bool promise, const char* what, TextView text) {
  if (promise) return;
  std::cerr << "broken: " << what << " for \"" << toUtf8(text) << "\"\n";
  std::abort();
}

// One byte chooses, the others are UTF-8; so seeds stay readable.
struct FuzzInput {
  FuzzInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return;
    choice = data[0];
    text = fromUtf8({reinterpret_cast<const char*>(data) + 1, size - 1});
  }

  std::uint8_t choice = 0;
  Text text;
};

}  // namespace veltgeneral
